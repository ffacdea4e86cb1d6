#ifndef INTERFACE_TEXT_UNITS_H
#define INTERFACE_TEXT_UNITS_H

// A text as screen readers have it: UTF-16 instead of bytes that may be no UTF-8, and dots instead
// of a text that is hidden.

#include <SupportDefs.h>

#include <string>
#include <string_view>

namespace [[gnu::visibility("hidden")]] BPrivate {

class TextUnits {
public:
    TextUnits(std::string_view bytes, bool hidden) : fBytes(bytes), fHidden(hidden) {}

    std::u16string All() const
    {
        int32 end;
        return UpTo(static_cast<int32>(fBytes.size()), &end);
    }
    // The characters that begin before a byte, and the byte that they end before.
    std::u16string UpTo(int32 byte, int32* end) const;
    // The place, in units, of a byte; and the byte that a unit begins with, moved out of the middle
    // of characters. Places beyond the ends are the ends.
    int32 UnitAt(int32 byte) const;
    int32 ByteAt(int32 unit) const;

private:
    int32 _Length(int32 byte) const;
    int32 _Units(int32 length) const { return !fHidden && length == 4 ? 2 : 1; }

    const std::string_view fBytes;
    const bool fHidden;
};

}  // namespace BPrivate

#endif  // INTERFACE_TEXT_UNITS_H
