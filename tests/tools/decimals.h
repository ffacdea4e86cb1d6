#ifndef TESTS_TOOLS_DECIMALS_H
#define TESTS_TOOLS_DECIMALS_H

// Compares Str, Cstr, Format, Val and Cdbl with snprintf and strtod under the C locale, double by
// double, for tests and for the long run in bench/.

#include <plinth.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace decimals {

inline double from_bits(uint64_t bits)
{
    double x;
    memcpy(&x, &bits, sizeof(x));
    return x;
}

inline bool same_bits(double a, double b) { return memcmp(&a, &b, sizeof(a)) == 0; }

// What differs from the C library for `x`; "" if nothing does.
inline std::string difference(double x)
{
    char expected[2048];
    auto differs = [&](const char* result, const char* what) {
        std::string text(expected);
        if (text.substr(0, 256) == result)
            return std::string();
        return std::string(what) + ": \"" + result + "\" instead of \"" + expected + "\"";
    };
    std::string found;
    snprintf(expected, sizeof(expected), "%g", x);
    if (!(found = differs(Str(x), "Str")).empty())
        return found;
    if (char* point = strchr(expected, '.'))
        *point = ',';
    if (!(found = differs(Cstr(x), "Cstr")).empty())
        return found;
    for (const char* format : {"%.2f", "%f", "%.0f", "%.17f"}) {
        snprintf(expected, sizeof(expected), format, x);
        if (!(found = differs(Format(x, format), format)).empty())
            return found;
    }
    for (const char* format : {"%.17g", "%g", "%.3f", "%.25e", "%.0f", "%a"}) {
        snprintf(expected, sizeof(expected), format, x);
        double number = strtod(expected, nullptr);
        if (!same_bits(Val(expected), number))
            return std::string("Val of ") + expected;
        if (char* point = strchr(expected, '.'))
            *point = ',';
        if (!same_bits(Cdbl(expected), number))
            return std::string("Cdbl of ") + expected;
    }
    return found;
}

// The first difference over all special values and `count` random doubles: any bit pattern, short
// decimals, integers, and numbers half-way between two results.
inline std::string first_difference(uint64_t count, uint64_t seed)
{
    using Limits = std::numeric_limits<double>;
    const double specials[] = {0,
                               1,
                               0.5,
                               1.5,
                               2.5,
                               0.125,
                               0.375,
                               9.5,
                               99.5,
                               999999.5,
                               9999995,
                               999999.49999999994,
                               0.0001,
                               0.00009999995,
                               1e15,
                               1e16,
                               1e17,
                               1e21,
                               1e22,
                               1e23,
                               1e100,
                               1e200,
                               1e300,
                               1e-100,
                               1e-300,
                               2.2250738585072011e-308,
                               2.2250738585072014e-308,
                               0.045,
                               9007199254740992.,
                               9007199254740993.,
                               4503599627370496.5,
                               18446744073709551616.,
                               5e-324,
                               Limits::min(),
                               Limits::max(),
                               Limits::denorm_min(),
                               Limits::epsilon(),
                               Limits::infinity(),
                               Limits::quiet_NaN()};
    for (double x : specials) {
        for (double y : {x, -x, std::nextafter(x, 0.), std::nextafter(x, Limits::infinity())}) {
            std::string found = difference(y);
            if (!found.empty())
                return found;
        }
    }
    for (int exponent = 0; exponent < 2048; exponent++) {
        for (uint64_t mantissa : {0ull, 1ull, 0x8000000000000ull, 0xFFFFFFFFFFFFFull}) {
            std::string found = difference(from_bits(uint64_t(exponent) << 52 | mantissa));
            if (!found.empty())
                return found;
        }
    }
    std::mt19937_64 random(seed);
    for (uint64_t i = 0; i < count; i++) {
        const uint64_t bits = random();
        const auto number = static_cast<double>(static_cast<int64_t>(bits) >> (bits % 60));
        double x;
        switch (i % 4) {
            case 0:
                x = from_bits(bits);
                break;
            case 1:
                x = number / std::pow(10, static_cast<double>(random() % 20));
                break;
            case 2:
                x = number + static_cast<double>(random() % 8) / 8;
                break;
            default:
                x = std::ldexp(number, static_cast<int>(random() % 128) - 64);
                break;
        }
        std::string found = difference(x);
        if (!found.empty())
            return found;
    }
    return "";
}

}  // namespace decimals

#endif  // TESTS_TOOLS_DECIMALS_H
