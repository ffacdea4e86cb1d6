// BString: making, copying and changing text. Every change goes through _Splice().

#include <String.h>

#include <StringList.h>

#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

#include "support/UTF8Characters.h"

using BPrivate::utf8_bytes;
using BPrivate::utf8_char_length;

static const int32 kAll = std::numeric_limits<int32>::max();

static const char* safe(const char* string) { return string != nullptr ? string : ""; }

static int32 length_of(const char* string, int32 maxLength = kAll)
{
    if (string == nullptr || maxLength <= 0)
        return 0;
    return static_cast<int32>(strnlen(string, maxLength));
}

static int32 in_range(int32 value, int32 most) { return std::clamp(value, 0, most); }

// Bytes of the first `charCount` characters of a terminated text.
static int32 bytes_of_chars(const char* string, int32 charCount)
{
    return string != nullptr ? utf8_bytes(string, length_of(string), charCount) : 0;
}

BString::BString() {}

BString::BString(const char* string) { SetTo(string); }

BString::BString(const BString& string) : fText(string.fText) {}

BString::BString(const char* string, int32 maxLength)
{
    _Splice(0, 0, string, length_of(string, maxLength));
}

BString::BString(BString&& string) : fText(std::move(string.fText)) { string.fText.clear(); }

BString::~BString() {}

int32 BString::CountChars() const
{
    int32 count = 0;
    for (int32 at = 0; at < Length(); ++count)
        at += utf8_char_length(fText.data() + at, Length() - at);
    return count;
}

int32 BString::CountBytes(int32 fromCharOffset, int32 charCount) const
{
    const int32 from = _CharOffset(fromCharOffset);
    return utf8_bytes(fText.data() + from, Length() - from, charCount);
}

uint32 BString::HashValue() const { return HashValue(String()); }

uint32 BString::HashValue(const char* string)
{
    uint32 hash = 2166136261u;
    for (const char* at = safe(string); *at != '\0'; ++at)
        hash = (hash ^ static_cast<uint8>(*at)) * 16777619u;
    return hash;
}

BString& BString::operator=(const BString& string) { return SetTo(string); }

BString& BString::operator=(const char* string) { return SetTo(string); }

BString& BString::operator=(char c) { return _Splice(0, Length(), &c, c != '\0' ? 1 : 0); }

BString& BString::operator=(BString&& string) { return Adopt(string); }

BString& BString::SetTo(const char* string)
{
    return _Splice(0, Length(), string, length_of(string));
}

BString& BString::SetTo(const char* string, int32 maxLength)
{
    return _Splice(0, Length(), string, length_of(string, maxLength < 0 ? kAll : maxLength));
}

BString& BString::SetTo(const BString& string)
{
    return _Splice(0, Length(), string.String(), string.Length());
}

BString& BString::Adopt(BString& from)
{
    if (this != &from) {
        fText = std::move(from.fText);
        from.fText.clear();
    }
    return *this;
}

BString& BString::SetTo(const BString& string, int32 maxLength)
{
    const int32 length = maxLength < 0 ? string.Length() : std::min(maxLength, string.Length());
    return _Splice(0, Length(), string.String(), length);
}

BString& BString::Adopt(BString& from, int32 maxLength)
{
    Adopt(from);
    return maxLength < 0 ? *this : Truncate(maxLength);
}

BString& BString::SetTo(char c, int32 count)
{
    BString filled;
    filled.Append(c, count);
    return Adopt(filled);
}

BString& BString::SetToChars(const char* string, int32 charCount)
{
    return SetTo(string, bytes_of_chars(string, charCount));
}

BString& BString::SetToChars(const BString& string, int32 charCount)
{
    return SetTo(string, string.CountBytes(0, charCount));
}

BString& BString::AdoptChars(BString& from, int32 charCount)
{
    return Adopt(from, from.CountBytes(0, charCount));
}

BString& BString::SetToFormat(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    SetToFormatVarArgs(format, args);
    va_end(args);
    return *this;
}

BString& BString::SetToFormatVarArgs(const char* format, va_list args)
{
    if (format == nullptr)
        return *this;
    char small[256];
    va_list again;
    va_copy(again, args);
    const int length = vsnprintf(small, sizeof(small), format, args);
    if (length >= static_cast<int>(sizeof(small))) {
        std::unique_ptr<char[]> large(new (std::nothrow) char[static_cast<size_t>(length) + 1]);
        if (large != nullptr) {
            vsnprintf(large.get(), static_cast<size_t>(length) + 1, format, again);
            _Splice(0, Length(), large.get(), length);
        }
    } else if (length >= 0) {
        _Splice(0, Length(), small, length);
    }
    va_end(again);
    return *this;
}

int BString::ScanWithFormat(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int count = ScanWithFormatVarArgs(format, args);
    va_end(args);
    return count;
}

int BString::ScanWithFormatVarArgs(const char* format, va_list args)
{
    return format != nullptr ? vsscanf(String(), format, args) : 0;
}

BString& BString::CopyInto(BString& into, int32 fromOffset, int32 length) const
{
    const int32 from = in_range(fromOffset, Length());
    return into._Splice(0, into.Length(), String() + from, in_range(length, Length() - from));
}

void BString::CopyInto(char* into, int32 fromOffset, int32 length) const
{
    const int32 from = in_range(fromOffset, Length());
    if (into != nullptr)
        memcpy(into, String() + from, in_range(length, Length() - from));
}

BString& BString::CopyCharsInto(BString& into, int32 fromCharOffset, int32 charCount) const
{
    return CopyInto(into, _CharOffset(fromCharOffset), CountBytes(fromCharOffset, charCount));
}

bool BString::CopyCharsInto(char* into, int32* intoLength, int32 fromCharOffset,
                            int32 charCount) const
{
    const int32 bytes = CountBytes(fromCharOffset, charCount);
    if (into == nullptr || intoLength == nullptr || bytes > *intoLength)
        return false;
    CopyInto(into, _CharOffset(fromCharOffset), bytes);
    *intoLength = bytes;
    return true;
}

bool BString::Split(const char* separator, bool noEmptyStrings, BStringList& _list) const
{
    const int32 separator_length = length_of(separator);
    if (separator_length == 0)
        return false;
    const BString text(*this);  // it may be in the list
    const std::string between(separator, separator_length);
    _list.MakeEmpty();
    for (int32 start = 0; start <= text.Length();) {
        int32 end = text.FindFirst(between.c_str(), start);
        if (end < 0)
            end = text.Length();
        if (end > start || !noEmptyStrings) {
            if (!_list.Add(BString(text.String() + start, end - start)))
                return false;
        }
        start = end + separator_length;
    }
    return true;
}

BString& BString::operator+=(const BString& string) { return Append(string); }

BString& BString::operator+=(const char* string) { return Append(string); }

BString& BString::operator+=(char c) { return Append(c, 1); }

BString& BString::Append(const BString& string)
{
    return _Splice(Length(), 0, string.String(), string.Length());
}

BString& BString::Append(const char* string)
{
    return _Splice(Length(), 0, string, length_of(string));
}

BString& BString::Append(const BString& string, int32 length)
{
    return _Splice(Length(), 0, string.String(), in_range(length, string.Length()));
}

BString& BString::Append(const char* string, int32 length)
{
    return _Splice(Length(), 0, string, length_of(string, length));
}

BString& BString::Append(char c, int32 count) { return Insert(c, count, Length()); }

BString& BString::AppendChars(const BString& string, int32 charCount)
{
    return Append(string, string.CountBytes(0, charCount));
}

BString& BString::AppendChars(const char* string, int32 charCount)
{
    return Append(string, bytes_of_chars(string, charCount));
}

BString& BString::Prepend(const char* string) { return _Splice(0, 0, string, length_of(string)); }

BString& BString::Prepend(const BString& string)
{
    return _Splice(0, 0, string.String(), string.Length());
}

BString& BString::Prepend(const char* string, int32 length)
{
    return _Splice(0, 0, string, length_of(string, length));
}

BString& BString::Prepend(const BString& string, int32 length)
{
    return _Splice(0, 0, string.String(), in_range(length, string.Length()));
}

BString& BString::Prepend(char c, int32 count) { return Insert(c, count, 0); }

BString& BString::PrependChars(const char* string, int32 charCount)
{
    return Prepend(string, bytes_of_chars(string, charCount));
}

BString& BString::PrependChars(const BString& string, int32 charCount)
{
    return Prepend(string, string.CountBytes(0, charCount));
}

BString& BString::Insert(const char* string, int32 position)
{
    return Insert(string, kAll, position);
}

BString& BString::Insert(const char* string, int32 length, int32 position)
{
    length = length_of(string, length);
    if (position < 0) {
        const int32 left_out = position < -length ? length : -position;
        string += left_out;
        length -= left_out;
    }
    return _Splice(in_range(position, Length()), 0, string, length);
}

BString& BString::Insert(const char* string, int32 fromOffset, int32 length, int32 position)
{
    if (string == nullptr)
        return *this;
    return Insert(string + length_of(string, fromOffset), length, position);
}

BString& BString::Insert(const BString& string, int32 position)
{
    return Insert(string.String(), kAll, position);
}

BString& BString::Insert(const BString& string, int32 length, int32 position)
{
    return Insert(string.String(), length, position);
}

BString& BString::Insert(const BString& string, int32 fromOffset, int32 length, int32 position)
{
    return Insert(string.String(), fromOffset, length, position);
}

BString& BString::Insert(char c, int32 count, int32 position)
{
    if (position < 0) {
        count = count <= 0 || position < -count ? 0 : count + position;
        position = 0;
    }
    if (count <= 0 || count > kAll - Length())
        return *this;
    try {
        fText.insert(std::min(position, Length()), count, c);
    } catch (const std::exception&) {
    }
    return *this;
}

BString& BString::InsertChars(const char* string, int32 charPosition)
{
    return InsertChars(string, kAll, charPosition);
}

BString& BString::InsertChars(const char* string, int32 charCount, int32 charPosition)
{
    const int32 length = bytes_of_chars(string, charCount);
    if (charPosition >= 0)
        return _Splice(_CharOffset(charPosition), 0, string, length);
    const int32 skipped = charPosition == std::numeric_limits<int32>::min()
                              ? length
                              : std::min(bytes_of_chars(string, -charPosition), length);
    return _Splice(0, 0, safe(string) + skipped, length - skipped);
}

BString& BString::InsertChars(const char* string, int32 fromCharOffset, int32 charCount,
                              int32 charPosition)
{
    return InsertChars(safe(string) + bytes_of_chars(string, fromCharOffset), charCount,
                       charPosition);
}

BString& BString::InsertChars(const BString& string, int32 charPosition)
{
    return InsertChars(string.String(), kAll, charPosition);
}

BString& BString::InsertChars(const BString& string, int32 charCount, int32 charPosition)
{
    return InsertChars(string.String(), charCount, charPosition);
}

BString& BString::InsertChars(const BString& string, int32 fromCharOffset, int32 charCount,
                              int32 charPosition)
{
    return InsertChars(string.String(), fromCharOffset, charCount, charPosition);
}

BString& BString::Truncate(int32 newLength, bool) { return _Cut(std::max(newLength, 0), kAll); }

BString& BString::TruncateChars(int32 newCharCount, bool)
{
    return _Cut(_CharOffset(newCharCount), kAll);
}

BString& BString::Remove(int32 from, int32 length)
{
    return _Cut(in_range(from, Length()), length);
}

BString& BString::RemoveChars(int32 fromCharOffset, int32 charCount)
{
    return _Cut(_CharOffset(fromCharOffset), CountBytes(fromCharOffset, charCount));
}

BString& BString::RemoveFirst(const BString& string)
{
    return _Cut(FindFirst(string), string.Length());
}

BString& BString::RemoveLast(const BString& string)
{
    return _Cut(FindLast(string), string.Length());
}

BString& BString::RemoveAll(const BString& string) { return RemoveAll(string.String()); }

BString& BString::RemoveFirst(const char* string)
{
    return _Cut(FindFirst(string), length_of(string));
}

BString& BString::RemoveLast(const char* string)
{
    return _Cut(FindLast(string), length_of(string));
}

BString& BString::RemoveAll(const char* string)
{
    return _Replace(string, length_of(string), "", 0, kAll, 0, false);
}

BString& BString::RemoveSet(const char* setOfBytesToRemove)
{
    return ReplaceSet(setOfBytesToRemove, "");
}

BString& BString::RemoveCharsSet(const char* setOfCharsToRemove)
{
    return ReplaceCharsSet(setOfCharsToRemove, "");
}

BString& BString::MoveInto(BString& into, int32 from, int32 length)
{
    if (&into == this) {
        const BString part(String() + in_range(from, Length()), length);
        return SetTo(part);
    }
    CopyInto(into, from, length);
    Remove(from, length);
    return into;
}

void BString::MoveInto(char* into, int32 from, int32 length)
{
    if (into == nullptr)
        return;
    CopyInto(into, from, length);
    Remove(from, length);
}

BString& BString::MoveCharsInto(BString& into, int32 fromCharOffset, int32 charCount)
{
    return MoveInto(into, _CharOffset(fromCharOffset), CountBytes(fromCharOffset, charCount));
}

bool BString::MoveCharsInto(char* into, int32* intoLength, int32 fromCharOffset, int32 charCount)
{
    if (!CopyCharsInto(into, intoLength, fromCharOffset, charCount))
        return false;
    RemoveChars(fromCharOffset, charCount);
    return true;
}

char BString::operator[](int32 index) const { return ByteAt(index); }

char BString::ByteAt(int32 index) const
{
    return index >= 0 && index < Length() ? fText[index] : '\0';
}

const char* BString::CharAt(int32 charIndex, int32* bytes) const
{
    const int32 offset = _CharOffset(charIndex);
    if (charIndex < 0 || offset >= Length()) {
        if (bytes != nullptr)
            *bytes = 0;
        return nullptr;
    }
    if (bytes != nullptr)
        *bytes = utf8_char_length(String() + offset, Length() - offset);
    return String() + offset;
}

bool BString::CharAt(int32 charIndex, char* buffer, int32* bytes) const
{
    int32 length;
    const char* from = CharAt(charIndex, &length);
    if (from == nullptr || buffer == nullptr || bytes == nullptr || length > *bytes)
        return false;
    memcpy(buffer, from, length);
    *bytes = length;
    return true;
}

char* BString::LockBuffer(int32 maxLength)
{
    try {
        // The text stays as long as the room, until it is told how much of it counts.
        fText.resize(std::max(maxLength, Length()) + size_t(1), '\0');
    } catch (const std::exception&) {
        return nullptr;
    }
    return fText.data();
}

BString& BString::UnlockBuffer(int32 length)
{
    const size_t most = fText.size();
    fText.resize(length < 0 ? strnlen(fText.data(), most) : std::min<size_t>(length, most));
    return *this;
}

BString& BString::SetByteAt(int32 pos, char to)
{
    if (pos >= 0 && pos < Length())
        fText[pos] = to;
    return *this;
}

static char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

static char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

static bool is_letter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

BString& BString::ToLower()
{
    std::transform(fText.begin(), fText.end(), fText.begin(), lower);
    return *this;
}

BString& BString::ToUpper()
{
    std::transform(fText.begin(), fText.end(), fText.begin(), upper);
    return *this;
}

BString& BString::Capitalize()
{
    ToLower();
    return SetByteAt(0, upper(ByteAt(0)));
}

BString& BString::CapitalizeEachWord()
{
    bool inside = false;
    for (char& c : fText) {
        c = inside ? lower(c) : upper(c);
        inside = is_letter(c);
    }
    return *this;
}

BString& BString::CharacterEscape(const char* original, const char* setOfCharsToEscape,
                                  char escapeWith)
{
    if (original == nullptr || setOfCharsToEscape == nullptr)
        return *this;
    BString escaped;
    for (const char* at = original; *at != '\0'; ++at) {
        if (strchr(setOfCharsToEscape, *at) != nullptr)
            escaped += escapeWith;
        escaped += *at;
    }
    return Adopt(escaped);
}

BString& BString::CharacterEscape(const char* setOfCharsToEscape, char escapeWith)
{
    return CharacterEscape(String(), setOfCharsToEscape, escapeWith);
}

BString& BString::CharacterDeescape(const char* original, char escapeChar)
{
    if (original == nullptr)
        return *this;
    BString plain;
    for (const char* at = original; *at != '\0'; ++at) {
        if (*at == escapeChar && *++at == '\0')
            break;
        plain += *at;
    }
    return Adopt(plain);
}

BString& BString::CharacterDeescape(char escapeChar)
{
    return CharacterDeescape(String(), escapeChar);
}

static bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

BString& BString::Trim()
{
    const auto end = std::find_if_not(fText.rbegin(), fText.rend(), is_space).base();
    const auto start = std::find_if_not(fText.begin(), end, is_space);
    fText.erase(end, fText.end());
    fText.erase(fText.begin(), start);
    return *this;
}

BString& BString::operator<<(const char* string) { return Append(string); }

BString& BString::operator<<(const BString& string) { return Append(string); }

BString& BString::operator<<(char c) { return Append(c, 1); }

BString& BString::operator<<(bool value) { return Append(value ? "true" : "false"); }

template <class Number>
static BString& append_number(BString& string, const char* format, Number value)
{
    char text[400];  // the largest double has 309 digits before the point
    snprintf(text, sizeof(text), format, value);
    return string.Append(text);
}

BString& BString::operator<<(int value) { return append_number(*this, "%d", value); }

BString& BString::operator<<(unsigned int value) { return append_number(*this, "%u", value); }

BString& BString::operator<<(unsigned long value) { return append_number(*this, "%lu", value); }

BString& BString::operator<<(long value) { return append_number(*this, "%ld", value); }

BString& BString::operator<<(unsigned long long value)
{
    return append_number(*this, "%llu", value);
}

BString& BString::operator<<(long long value) { return append_number(*this, "%lld", value); }

BString& BString::operator<<(float value)
{
    return append_number(*this, "%.2f", static_cast<double>(value));
}

BString& BString::operator<<(double value) { return append_number(*this, "%.2f", value); }

// Puts `inserted` bytes in place of `removed` ones. The offsets are in range; the bytes may be the
// text's own. Nothing changes without memory, or where the length would not fit its type.
BString& BString::_Splice(int32 offset, int32 removed, const char* bytes, int32 inserted)
{
    if (inserted > kAll - (Length() - removed))
        return *this;
    try {
        fText.replace(offset, removed, safe(bytes), inserted);
    } catch (const std::exception&) {
    }
    return *this;
}

// Removes up to `length` bytes; a negative offset is that of nothing found.
BString& BString::_Cut(int32 offset, int32 length)
{
    if (offset >= 0 && offset < Length() && length > 0)
        fText.erase(offset, length);
    return *this;
}

int32 BString::_CharOffset(int32 charOffset) const
{
    return utf8_bytes(fText.data(), Length(), charOffset);
}
