#ifndef INTERFACE_ROUNDING_H
#define INTERFACE_ROUNDING_H

#include <SupportDefs.h>

#include <cmath>

namespace BPrivate {

// Float to integer where any float may come in: NaN is 0, what lies beyond `limit` stops there.
inline int32 clamped_int(double value, double limit)
{
    if (!(value > -limit))  // NaN too
        return value <= -limit ? int32(-limit) : 0;
    return int32(value < limit ? value : limit);
}

inline int32 ceil_to_int32(float value)
{
    return clamped_int(std::ceil(double(value)), 2147483647.0);
}

}  // namespace BPrivate

#endif  // INTERFACE_ROUNDING_H
