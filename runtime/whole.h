#ifndef RUNTIME_WHOLE_H
#define RUNTIME_WHOLE_H

// Floats of the platform as the whole numbers of a program.

#include <algorithm>
#include <cmath>
#include <stdint.h>

// Toward zero, the nearest number that fits.
inline int32_t truncated(double value)
{
    return static_cast<int32_t>(std::clamp(value, double{INT32_MIN}, double{INT32_MAX}));
}

// The next whole number, halves up, or the nearest one that fits.
inline int32_t rounded(double value) { return truncated(std::floor(value + 0.5)); }

#endif  // RUNTIME_WHOLE_H
