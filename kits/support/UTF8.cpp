// Text between UTF-8 and other character sets, by the host's converter.

#include <UTF8.h>

#include <errno.h>
#include <iconv.h>
#include <limits.h>
#include <string.h>

#include <iterator>

#include "support/UTF8Characters.h"

// By B_..._CONVERSION.
static const char* const kCharacterSets[] = {
    "ISO-8859-1", "ISO-8859-2",  "ISO-8859-3",   "ISO-8859-4",   "ISO-8859-5",  "ISO-8859-6",
    "ISO-8859-7", "ISO-8859-8",  "ISO-8859-9",   "ISO-8859-10",  "MACINTOSH",   "SHIFT_JIS",
    "EUC-JP",     "ISO-2022-JP", "WINDOWS-1252", "UCS-2BE",      "KOI8-R",      "WINDOWS-1251",
    "IBM866",     "IBM437",      "EUC-KR",       "ISO-8859-13",  "ISO-8859-14", "ISO-8859-15",
    "BIG5",       "GB18030",     "UTF-16BE",     "WINDOWS-1250",
};
static_assert(std::size(kCharacterSets) == B_MS_WINDOWS_1250_CONVERSION + 1, "one name per set");

class Converter {
public:
    Converter(const char* to, const char* from) : fHandle(iconv_open(to, from)) {}
    ~Converter()
    {
        if (IsOpen())
            iconv_close(fHandle);
    }
    Converter(const Converter&) = delete;

    bool IsOpen() const { return fHandle != reinterpret_cast<iconv_t>(-1); }

    // 0, or the converter's reason to stop.
    int Run(char** from, size_t* from_left, char** to, size_t* to_left)
    {
        errno = 0;
        const size_t result = iconv(fHandle, from, from_left, to, to_left);
        return result == static_cast<size_t>(-1) ? errno : 0;
    }

    // Goes back to the set's first shift state, in which a text ends.
    void Reset(char** to, size_t* to_left) { iconv(fHandle, nullptr, nullptr, to, to_left); }

private:
    iconv_t fHandle;
};

static status_t convert(const char* to_set, const char* from_set, bool from_utf8,
                        const char* source, int32* sourceLength, char* dest, int32* destLength,
                        char substitute)
{
    if (source == nullptr || sourceLength == nullptr || dest == nullptr || destLength == nullptr ||
        *sourceLength < 0 || *destLength < 0)
        return B_BAD_VALUE;
    Converter converter(to_set, from_set);
    Converter replacing(to_set, "ISO-8859-1");
    if (!converter.IsOpen() || !replacing.IsOpen())
        return B_ERROR;
    char* from = const_cast<char*>(source);
    char* to = dest;
    size_t from_left = *sourceLength;
    size_t to_left = *destLength;
    while (from_left > 0) {
        const int reason = converter.Run(&from, &from_left, &to, &to_left);
        if (reason != EILSEQ)
            break;  // all done, or cut off at one of the two ends
        char replacement = substitute;
        char* replacement_at = &replacement;
        size_t replacement_left = 1;
        if (replacing.Run(&replacement_at, &replacement_left, &to, &to_left) == E2BIG)
            break;
        const size_t skipped = from_utf8 ? BPrivate::utf8_piece_length({from, from_left}) : 1;
        from += skipped;
        from_left -= skipped;
    }
    converter.Reset(&to, &to_left);
    const bool had_source = *sourceLength > 0;
    *sourceLength = static_cast<int32>(from - source);
    *destLength = static_cast<int32>(to - dest);
    return had_source && *sourceLength == 0 ? B_ERROR : B_OK;
}

status_t convert_to_utf8(uint32 sourceEncoding, const char* source, int32* sourceLength, char* dest,
                         int32* destLength, int32*, char substitute)
{
    if (sourceEncoding >= std::size(kCharacterSets))
        return B_ERROR;
    return convert("UTF-8", kCharacterSets[sourceEncoding], false, source, sourceLength, dest,
                   destLength, substitute);
}

status_t convert_from_utf8(uint32 destEncoding, const char* source, int32* sourceLength, char* dest,
                           int32* destLength, int32*, char substitute)
{
    if (destEncoding >= std::size(kCharacterSets))
        return B_ERROR;
    return convert(kCharacterSets[destEncoding], "UTF-8", true, source, sourceLength, dest,
                   destLength, substitute);
}
