// Numbers to text and back. The decimal point is "." whatever the locale: the conversions of the
// C++ library know no locale, and the rest runs under the C locale. Main thread.

#include "plinth.h"
#include "runtime/numbers.h"
#include "runtime/ring.h"
#include "runtime/strings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctype.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const size_t kNumberSize = 64;   // the private buffers of Hex and Bin
static const size_t kCommaText = 1023;  // what Cdbl reads of its text
static const size_t kShortNumber = 40;
static const int32_t kMaxWidth = 4096;
static const int32_t kMaxPrecision = 2000;  // no double has more digits than that

namespace {

// The calling thread's conversions follow the C locale while this lives.
class CLocale {
public:
    CLocale()
    {
        static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
        fPrevious = uselocale(c_locale);
    }
    ~CLocale() { uselocale(fPrevious); }
    CLocale(const CLocale&) = delete;
    CLocale& operator=(const CLocale&) = delete;

private:
    locale_t fPrevious;
};

// One conversion of a format text, "%-8.2f" say.
struct Conversion {
    char flags[8];
    int32_t width;      // -1 for none
    int32_t precision;  // -1 for none
    char letter;
};

}  // namespace

char* put_general(char* to, double x)
{
    char* end = std::to_chars(to, to + kGeneralSize, x, std::chars_format::general, 6).ptr;
    *end = '\0';
    return end;
}

char* put_fixed(char* to, double x, int precision)
{
    char* end =
        std::to_chars(to, to + kFixedSize + precision, x, std::chars_format::fixed, precision).ptr;
    *end = '\0';
    return end;
}

extern "C" char* Str(double x)
{
    char* slot = GetNextTab();
    put_general(slot, x);
    return slot;
}

extern "C" char* Cstr(double x)
{
    char* slot = GetNextTab();
    char* end = put_general(slot, x);
    if (void* point = memchr(slot, '.', end - slot))
        *static_cast<char*>(point) = ',';
    return slot;
}

static bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

static bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Plain decimals go the fast way; the C library reads what else it accepts (hexadecimal, infinities
// and the like) and what a double cannot hold.
extern "C" double Val(const char* s)
{
    s = text_or_empty(s);
    const char* start = s;
    while (is_space(*start))
        start++;
    const char* digits = *start == '+' || *start == '-' ? start + 1 : start;
    const bool is_hex = digits[0] == '0' && (digits[1] | 0x20) == 'x';
    const bool is_decimal = is_digit(digits[0]) || (digits[0] == '.' && is_digit(digits[1]));
    if (is_decimal && !is_hex) {
        const char* end = digits;
        while (is_digit(*end) || *end == '.' || (*end | 0x20) == 'e' || *end == '+' || *end == '-')
            end++;
        double x = 0;
        if (std::from_chars(*start == '+' ? digits : start, end, x).ec == std::errc())
            return x;
    }
    CLocale c_locale;
    return strtod(s, nullptr);
}

static bool is_numeric(char c)
{
    return is_digit(c) || c == ',' || c == '.' || c == '-' || c == '+' || (c | 0x20) == 'e';
}

// Only the number itself is copied, unless it is long or goes on with a letter, as hexadecimals do.
extern "C" double Cdbl(const char* s)
{
    s = text_or_empty(s);
    char work[kCommaText + 1];
    const char* at = s;
    while (is_space(*at))
        at++;
    size_t length = 0;
    for (; length < kShortNumber && is_numeric(*at); at++)
        work[length++] = *at;
    const bool is_whole = length < kShortNumber && (*at | 0x20) < 'a';
    if (!is_whole || at - s > static_cast<ptrdiff_t>(kCommaText)) {
        length = strnlen(s, kCommaText);
        memcpy(work, s, length);
    }
    work[length] = '\0';
    for (size_t i = 0; i < length; i++) {
        if (work[i] == ',') {
            work[i] = '.';
            break;
        }
    }
    return Val(work);
}

// Reads digits into `value`, which stays where it is beyond nine of them.
static const char* read_count(const char* at, int32_t* value)
{
    *value = 0;
    for (; is_digit(*at); at++) {
        if (*value < 100000000)
            *value = *value * 10 + (*at - '0');
    }
    return at;
}

// Reads a conversion that takes one double. Returns its end, null if it is anything else.
static const char* read_conversion(const char* at, Conversion* conversion)
{
    size_t flags = 0;
    for (; *at != '\0' && strchr("-+ #0'", *at) != nullptr; at++) {
        if (memchr(conversion->flags, *at, flags) == nullptr)
            conversion->flags[flags++] = *at;
    }
    conversion->flags[flags] = '\0';
    conversion->width = conversion->precision = -1;
    if (is_digit(*at))
        at = read_count(at, &conversion->width);
    if (*at == '.')
        at = read_count(at + 1, &conversion->precision);
    if (*at == 'l')  // means nothing for a double
        at++;
    conversion->letter = *at;
    return *at != '\0' && strchr("aAeEfFgG", *at) != nullptr ? at + 1 : nullptr;
}

// Bounds width and precision so that the first 256 characters of `x` stay the same.
static void bound_conversion(double x, Conversion* conversion)
{
    const int32_t excess = conversion->precision - kMaxPrecision;
    if (excess > 0) {
        conversion->precision = kMaxPrecision;
        // Digits that are left out leave room for as much padding in front.
        const bool has_digits = std::isfinite(x) && (tolower(conversion->letter) != 'g' ||
                                                     strchr(conversion->flags, '#') != nullptr);
        if (has_digits && conversion->width >= 0)
            conversion->width = std::max(conversion->width - excess, 0);
    }
    conversion->width = std::min(conversion->width, kMaxWidth);
}

// Formats `x` into `to` (257 bytes), cut at 256 characters. Returns the length.
static size_t put_conversion(char* to, double x, const Conversion& conversion)
{
    const bool is_plain = conversion.flags[0] == '\0' && conversion.width <= 0;
    const int precision = conversion.precision < 0 ? 6 : conversion.precision;
    if (is_plain && conversion.letter == 'f' && precision <= 17) {
        char digits[kFixedSize + 17];
        const size_t length = put_fixed(digits, x, precision) - digits;
        put_text(to, digits, length);
        return std::min(length, kSlotText);
    }
    char format[32];
    char* at = format + snprintf(format, sizeof(format), "%%%s", conversion.flags);
    if (conversion.width >= 0)
        at += snprintf(at, format + sizeof(format) - at, "%d", conversion.width);
    if (conversion.precision >= 0)
        at += snprintf(at, format + sizeof(format) - at, ".%d", conversion.precision);
    *at++ = conversion.letter;
    *at = '\0';
    CLocale c_locale;
    const int length = snprintf(to, kSlotSize, format, x);
    return std::clamp<size_t>(length, 0, kSlotText);
}

// True if `fmt` holds exactly one conversion, of a double, beside any "%%".
static bool find_conversion(const char* fmt, Conversion* conversion)
{
    int conversions = 0;
    for (const char* at = fmt; (at = strchr(at, '%')) != nullptr;) {
        if (at[1] == '%') {
            at += 2;
            continue;
        }
        at = read_conversion(at + 1, conversion);
        if (at == nullptr || ++conversions > 1)
            return false;
    }
    return conversions == 1;
}

// Prints a text that is not one conversion of a double as it stands, so that nothing is read that
// was not passed.
extern "C" char* Format(double x, const char* fmt)
{
    fmt = text_or_empty(fmt);
    char* slot = GetNextTab();
    Conversion conversion;
    if (!find_conversion(fmt, &conversion)) {
        put_text(slot, fmt, strnlen(fmt, kSlotText));
        return slot;
    }
    bound_conversion(x, &conversion);
    char text[kSlotText];  // fmt may lie in the slot
    size_t length = 0;
    for (const char* at = fmt; *at != '\0' && length < kSlotText;) {
        if (at[0] == '%' && at[1] != '%') {
            char number[kSlotSize];
            const size_t taken =
                std::min(put_conversion(number, x, conversion), kSlotText - length);
            memcpy(text + length, number, taken);
            length += taken;
            Conversion again;
            at = read_conversion(at + 1, &again);
        } else {
            text[length++] = *at;
            at += at[0] == '%' ? 2 : 1;
        }
    }
    put_text(slot, text, length);
    return slot;
}

extern "C" char* Oct(uint32_t n)
{
    char* slot = GetNextTab();
    *std::to_chars(slot, slot + kSlotText, n, 8).ptr = '\0';
    return slot;
}

extern "C" char* Hex(uint32_t n)
{
    static char digits[kNumberSize];  // main thread
    const int last = (31 - __builtin_clz(n | 1)) / 4;
    for (int i = last; i >= 0; i--, n >>= 4)
        digits[i] = "0123456789ABCDEF"[n & 15];
    digits[last + 1] = '\0';
    return digits;
}

extern "C" char* Bin(int32_t n)
{
    static char digits[kNumberSize];  // main thread
    auto bits = static_cast<uint32_t>(n);
    const int last = 31 - __builtin_clz(bits | 1);
    for (int i = last; i >= 0; i--, bits >>= 1)
        digits[i] = static_cast<char>('0' + (bits & 1));
    digits[last + 1] = '\0';
    return digits;
}
