#include <interface/accessible/TextUnits.h>

#include <support/UTF8Characters.h>
#include <support/ValidUTF8.h>

namespace BPrivate {

static const char16_t kDot = u'\u2022';

int32 TextUnits::_Length(int32 byte) const
{
    return utf8_char_length(fBytes.data() + byte, static_cast<int32>(fBytes.size()) - byte);
}

// Bytes that are no UTF-8 are Latin-1, as they are shown.
static void append_character(const char* bytes, int32 length, std::u16string* units)
{
    uint32 code = utf8_code(bytes, static_cast<size_t>(length));
    const bool is_surrogate = code >= 0xd800 && code < 0xe000;
    if (is_surrogate || code > 0x10ffff || code == 0)
        code = 0xfffd;
    if (code < 0x10000) {
        units->push_back(static_cast<char16_t>(code));
        if (length == 4)
            units->push_back(u'\ufffd');  // four bytes count two
    } else {
        units->push_back(static_cast<char16_t>(0xd800 + ((code - 0x10000) >> 10)));
        units->push_back(static_cast<char16_t>(0xdc00 + (code & 0x3ff)));
    }
}

std::u16string TextUnits::UpTo(int32 byte, int32* end) const
{
    std::u16string units;
    units.reserve(static_cast<size_t>(byte));
    int32 at = 0;
    while (at < byte) {
        const int32 length = _Length(at);
        if (fHidden)
            units.push_back(kDot);
        else
            append_character(fBytes.data() + at, length, &units);
        at += length;
    }
    *end = at;
    return units;
}

int32 TextUnits::UnitAt(int32 byte) const
{
    int32 units = 0;
    for (int32 at = 0; at < byte && at < static_cast<int32>(fBytes.size());) {
        const int32 length = _Length(at);
        units += _Units(length);
        at += length;
    }
    return units;
}

int32 TextUnits::ByteAt(int32 unit) const
{
    int32 at = 0;
    for (int32 units = 0; at < static_cast<int32>(fBytes.size());) {
        const int32 length = _Length(at);
        units += _Units(length);
        if (units > unit)
            break;
        at += length;
    }
    return at;
}

}  // namespace BPrivate
