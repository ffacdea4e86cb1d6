// Numeric functions. Main thread.

#include "plinth.h"

#include <OS.h>

#include <math.h>
#include <stdlib.h>

// Kept on purpose: the floor is taken in single precision.
static double single_floor(double x) { return floorf(static_cast<float>(x)); }

extern "C" double Frac(double x) { return x - single_floor(x); }

extern "C" int32_t Sgn(double x)
{
    if (x < 0)
        return -1;
    return x == 0 ? 0 : 1;  // kept on purpose: 1 for a NaN
}

extern "C" double Rnd(int32_t n)
{
    const auto seed = static_cast<uint32_t>(system_time());
    srandom(seed);
    srand48(static_cast<int32_t>(seed));
    return n == 0 ? drand48() : rand() % n;
}

extern "C" double Round(double x)
{
    const double floor = single_floor(x);
    return x - floor < 0.5 ? floor : floor + 1;
}
