#ifndef SUPPORT_ENUM_NUMBERS_H
#define SUPPORT_ENUM_NUMBERS_H

// Enumerators from numbers that may come from anywhere, as those of archives do.

#include <SupportDefs.h>

#include <algorithm>
#include <iterator>

namespace BPrivate {

// The enumerator of a number from 0 to `last`, and `otherwise` for any other number.
template <class Enum>
Enum enum_up_to(int32 number, Enum last, Enum otherwise)
{
    return number >= 0 && number <= static_cast<int32>(last) ? static_cast<Enum>(number)
                                                             : otherwise;
}

// The same of those that leave numbers out.
template <class Enum, size_t N>
Enum enum_among(int32 number, const Enum (&known)[N], Enum otherwise)
{
    const auto* found = std::find_if(std::begin(known), std::end(known),
                                     [=](Enum each) { return static_cast<int32>(each) == number; });
    return found != std::end(known) ? *found : otherwise;
}

}  // namespace BPrivate

#endif  // SUPPORT_ENUM_NUMBERS_H
