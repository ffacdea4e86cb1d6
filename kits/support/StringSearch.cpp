// BString: comparing, finding and replacing.

#include <String.h>

#include <string.h>
#include <strings.h>

#include <algorithm>
#include <limits>
#include <string_view>

#include "support/UTF8Characters.h"

using BPrivate::utf8_bytes;
using BPrivate::utf8_char_length;

static const int32 kAll = std::numeric_limits<int32>::max();

static const char* safe(const char* string) { return string != nullptr ? string : ""; }

static int32 length_of(const char* string)
{
    return string != nullptr ? static_cast<int32>(std::min<size_t>(strlen(string), kAll)) : 0;
}

static size_t unsigned_length(int32 length) { return length > 0 ? static_cast<size_t>(length) : 0; }

static char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

static bool same_letter(char a, char b) { return lower(a) == lower(b); }

bool BString::operator<(const BString& string) const { return Compare(string) < 0; }

bool BString::operator<=(const BString& string) const { return Compare(string) <= 0; }

bool BString::operator==(const BString& string) const { return Compare(string) == 0; }

bool BString::operator>=(const BString& string) const { return Compare(string) >= 0; }

bool BString::operator>(const BString& string) const { return Compare(string) > 0; }

bool BString::operator!=(const BString& string) const { return Compare(string) != 0; }

bool BString::operator<(const char* string) const { return Compare(string) < 0; }

bool BString::operator<=(const char* string) const { return Compare(string) <= 0; }

bool BString::operator==(const char* string) const { return Compare(string) == 0; }

bool BString::operator>=(const char* string) const { return Compare(string) >= 0; }

bool BString::operator>(const char* string) const { return Compare(string) > 0; }

bool BString::operator!=(const char* string) const { return Compare(string) != 0; }

BString::operator const char*() const { return String(); }

int BString::Compare(const BString& string) const { return strcmp(String(), string.String()); }

int BString::Compare(const char* string) const { return strcmp(String(), safe(string)); }

int BString::Compare(const BString& string, int32 length) const
{
    return strncmp(String(), string.String(), unsigned_length(length));
}

int BString::Compare(const char* string, int32 length) const
{
    return strncmp(String(), safe(string), unsigned_length(length));
}

int BString::CompareAt(size_t offset, const BString& string, int32 length) const
{
    const size_t start = std::min(offset, fText.size());
    return strncmp(String() + start, string.String(), unsigned_length(length));
}

int BString::CompareChars(const BString& string, int32 charCount) const
{
    return CompareChars(string.String(), charCount);
}

int BString::CompareChars(const char* string, int32 charCount) const
{
    const int32 theirs = utf8_bytes(safe(string), length_of(string), charCount);
    return Compare(string, std::max(CountBytes(0, charCount), theirs));
}

int BString::ICompare(const BString& string) const { return strcasecmp(String(), string.String()); }

int BString::ICompare(const char* string) const { return strcasecmp(String(), safe(string)); }

int BString::ICompare(const BString& string, int32 length) const
{
    return strncasecmp(String(), string.String(), unsigned_length(length));
}

int BString::ICompare(const char* string, int32 length) const
{
    return strncasecmp(String(), safe(string), unsigned_length(length));
}

int32 BString::FindFirst(const BString& string) const
{
    return _Find(string.String(), string.Length(), 0, false);
}

int32 BString::FindFirst(const char* string) const
{
    return _Find(string, length_of(string), 0, false);
}

int32 BString::FindFirst(const BString& string, int32 fromOffset) const
{
    return _Find(string.String(), string.Length(), fromOffset, false);
}

int32 BString::FindFirst(const char* string, int32 fromOffset) const
{
    return _Find(string, length_of(string), fromOffset, false);
}

int32 BString::FindFirst(char c) const { return _Find(&c, 1, 0, false); }

int32 BString::FindFirst(char c, int32 fromOffset) const { return _Find(&c, 1, fromOffset, false); }

int32 BString::FindFirstChars(const BString& string, int32 fromCharOffset) const
{
    return FindFirst(string, _CharOffset(fromCharOffset));
}

int32 BString::FindFirstChars(const char* string, int32 fromCharOffset) const
{
    return FindFirst(string, _CharOffset(fromCharOffset));
}

int32 BString::FindLast(const BString& string) const
{
    return _FindLast(string.String(), string.Length(), Length(), false);
}

int32 BString::FindLast(const char* string) const
{
    return _FindLast(string, length_of(string), Length(), false);
}

int32 BString::FindLast(const BString& string, int32 beforeOffset) const
{
    return _FindLast(string.String(), string.Length(), beforeOffset, false);
}

int32 BString::FindLast(const char* string, int32 beforeOffset) const
{
    return _FindLast(string, length_of(string), beforeOffset, false);
}

int32 BString::FindLast(char c) const { return _FindLast(&c, 1, Length(), false); }

int32 BString::FindLast(char c, int32 beforeOffset) const
{
    // Unlike a text, a character may stand at the offset itself.
    return beforeOffset < 0 ? B_ERROR
                            : _FindLast(&c, 1, std::min(beforeOffset, Length()) + 1, false);
}

int32 BString::FindLastChars(const BString& string, int32 beforeCharOffset) const
{
    return FindLast(string, _CharOffset(beforeCharOffset));
}

int32 BString::FindLastChars(const char* string, int32 beforeCharOffset) const
{
    return FindLast(string, _CharOffset(beforeCharOffset));
}

int32 BString::IFindFirst(const BString& string) const
{
    return _Find(string.String(), string.Length(), 0, true);
}

int32 BString::IFindFirst(const char* string) const
{
    return _Find(string, length_of(string), 0, true);
}

int32 BString::IFindFirst(const BString& string, int32 fromOffset) const
{
    return _Find(string.String(), string.Length(), fromOffset, true);
}

int32 BString::IFindFirst(const char* string, int32 fromOffset) const
{
    return _Find(string, length_of(string), fromOffset, true);
}

int32 BString::IFindLast(const BString& string) const
{
    return _FindLast(string.String(), string.Length(), Length(), true);
}

int32 BString::IFindLast(const char* string) const
{
    return _FindLast(string, length_of(string), Length(), true);
}

int32 BString::IFindLast(const BString& string, int32 beforeOffset) const
{
    return _FindLast(string.String(), string.Length(), beforeOffset, true);
}

int32 BString::IFindLast(const char* string, int32 beforeOffset) const
{
    return _FindLast(string, length_of(string), beforeOffset, true);
}

bool BString::StartsWith(const BString& string) const
{
    return StartsWith(string.String(), string.Length());
}

bool BString::StartsWith(const char* string) const { return StartsWith(string, length_of(string)); }

bool BString::StartsWith(const char* string, int32 length) const
{
    return string != nullptr && length >= 0 && length <= Length() &&
           strncmp(String(), string, length) == 0;
}

bool BString::IStartsWith(const BString& string) const
{
    return IStartsWith(string.String(), string.Length());
}

bool BString::IStartsWith(const char* string) const
{
    return IStartsWith(string, length_of(string));
}

bool BString::IStartsWith(const char* string, int32 length) const
{
    return string != nullptr && length >= 0 && length <= Length() &&
           strncasecmp(String(), string, length) == 0;
}

bool BString::EndsWith(const BString& string) const
{
    return EndsWith(string.String(), string.Length());
}

bool BString::EndsWith(const char* string) const { return EndsWith(string, length_of(string)); }

bool BString::EndsWith(const char* string, int32 length) const
{
    return string != nullptr && length >= 0 && length <= Length() &&
           strncmp(String() + Length() - length, string, length) == 0;
}

bool BString::IEndsWith(const BString& string) const
{
    return IEndsWith(string.String(), string.Length());
}

bool BString::IEndsWith(const char* string) const { return IEndsWith(string, length_of(string)); }

bool BString::IEndsWith(const char* string, int32 length) const
{
    return string != nullptr && length >= 0 && length <= Length() &&
           strncasecmp(String() + Length() - length, string, length) == 0;
}

BString& BString::ReplaceFirst(char replaceThis, char withThis)
{
    return SetByteAt(FindFirst(replaceThis), withThis);
}

BString& BString::ReplaceLast(char replaceThis, char withThis)
{
    return SetByteAt(FindLast(replaceThis), withThis);
}

BString& BString::ReplaceAll(char replaceThis, char withThis, int32 fromOffset)
{
    return _Replace(&replaceThis, 1, &withThis, 1, kAll, fromOffset, false);
}

BString& BString::Replace(char replaceThis, char withThis, int32 maxReplaceCount, int32 fromOffset)
{
    return _Replace(&replaceThis, 1, &withThis, 1, maxReplaceCount, fromOffset, false);
}

BString& BString::ReplaceFirst(const char* replaceThis, const char* withThis)
{
    return Replace(replaceThis, withThis, 1);
}

BString& BString::ReplaceLast(const char* replaceThis, const char* withThis)
{
    const int32 offset = FindLast(replaceThis);
    if (offset < 0 || withThis == nullptr)
        return *this;
    return _Splice(offset, length_of(replaceThis), withThis, length_of(withThis));
}

BString& BString::ReplaceAll(const char* replaceThis, const char* withThis, int32 fromOffset)
{
    return Replace(replaceThis, withThis, kAll, fromOffset);
}

BString& BString::Replace(const char* replaceThis, const char* withThis, int32 maxReplaceCount,
                          int32 fromOffset)
{
    return _Replace(replaceThis, length_of(replaceThis), withThis, length_of(withThis),
                    maxReplaceCount, fromOffset, false);
}

BString& BString::ReplaceAllChars(const char* replaceThis, const char* withThis,
                                  int32 fromCharOffset)
{
    return ReplaceAll(replaceThis, withThis, _CharOffset(fromCharOffset));
}

BString& BString::ReplaceChars(const char* replaceThis, const char* withThis, int32 maxReplaceCount,
                               int32 fromCharOffset)
{
    return Replace(replaceThis, withThis, maxReplaceCount, _CharOffset(fromCharOffset));
}

BString& BString::IReplaceFirst(char replaceThis, char withThis)
{
    return IReplace(replaceThis, withThis, 1);
}

BString& BString::IReplaceLast(char replaceThis, char withThis)
{
    return SetByteAt(_FindLast(&replaceThis, 1, Length(), true), withThis);
}

BString& BString::IReplaceAll(char replaceThis, char withThis, int32 fromOffset)
{
    return IReplace(replaceThis, withThis, kAll, fromOffset);
}

BString& BString::IReplace(char replaceThis, char withThis, int32 maxReplaceCount, int32 fromOffset)
{
    return _Replace(&replaceThis, 1, &withThis, 1, maxReplaceCount, fromOffset, true);
}

BString& BString::IReplaceFirst(const char* replaceThis, const char* withThis)
{
    return IReplace(replaceThis, withThis, 1);
}

BString& BString::IReplaceLast(const char* replaceThis, const char* withThis)
{
    const int32 offset = IFindLast(replaceThis);
    if (offset < 0 || withThis == nullptr)
        return *this;
    return _Splice(offset, length_of(replaceThis), withThis, length_of(withThis));
}

BString& BString::IReplaceAll(const char* replaceThis, const char* withThis, int32 fromOffset)
{
    return IReplace(replaceThis, withThis, kAll, fromOffset);
}

BString& BString::IReplace(const char* replaceThis, const char* withThis, int32 maxReplaceCount,
                           int32 fromOffset)
{
    return _Replace(replaceThis, length_of(replaceThis), withThis, length_of(withThis),
                    maxReplaceCount, fromOffset, true);
}

BString& BString::ReplaceSet(const char* setOfBytes, char with)
{
    if (setOfBytes == nullptr)
        return *this;
    for (char& c : fText) {
        if (c != '\0' && strchr(setOfBytes, c) != nullptr)
            c = with;
    }
    return *this;
}

BString& BString::ReplaceSet(const char* setOfBytes, const char* with)
{
    if (setOfBytes == nullptr || with == nullptr)
        return *this;
    BString replaced;
    for (const char c : fText) {
        if (c != '\0' && strchr(setOfBytes, c) != nullptr)
            replaced += with;
        else
            replaced += c;
    }
    return Adopt(replaced);
}

BString& BString::ReplaceCharsSet(const char* setOfChars, const char* with)
{
    if (setOfChars == nullptr || with == nullptr)
        return *this;
    // A character is only found whole: bytes of the set that follow one another may look like it.
    const int32 set_length = length_of(setOfChars);
    const auto is_in_set = [=](std::string_view wanted) {
        for (int32 at = 0; at < set_length;) {
            const int32 length = utf8_char_length(setOfChars + at, set_length - at);
            if (wanted == std::string_view(setOfChars + at, length))
                return true;
            at += length;
        }
        return false;
    };
    BString replaced;
    for (int32 at = 0; at < Length();) {
        const int32 length = utf8_char_length(String() + at, Length() - at);
        if (is_in_set(std::string_view(String() + at, length)))
            replaced += with;
        else
            replaced.Append(String() + at, length);
        at += length;
    }
    return Adopt(replaced);
}

int32 BString::_Find(const char* string, int32 length, int32 fromOffset, bool anyCase) const
{
    if (string == nullptr)
        return B_BAD_VALUE;
    if (fromOffset < 0 || fromOffset > Length())
        return B_ERROR;
    size_t found;
    if (anyCase) {
        const auto start = fText.begin() + fromOffset;
        const auto at = std::search(start, fText.end(), string, string + length, same_letter);
        found = at == fText.end() && length > 0 ? std::string::npos : at - fText.begin();
    } else {
        found = fText.find(string, fromOffset, length);
    }
    return found != std::string::npos ? static_cast<int32>(found) : B_ERROR;
}

int32 BString::_FindLast(const char* string, int32 length, int32 beforeOffset, bool anyCase) const
{
    if (string == nullptr)
        return B_BAD_VALUE;
    const int32 end = std::min(beforeOffset, Length());
    if (end < length)
        return B_ERROR;
    size_t found;
    if (anyCase) {
        const auto limit = fText.begin() + end;
        const auto at = std::find_end(fText.begin(), limit, string, string + length, same_letter);
        found = at == limit && length > 0 ? std::string::npos : at - fText.begin();
    } else {
        found = fText.rfind(string, end - length, length);
    }
    return found != std::string::npos ? static_cast<int32>(found) : B_ERROR;
}

BString& BString::_Replace(const char* replaceThis, int32 length, const char* withThis,
                           int32 withLength, int32 maxReplaceCount, int32 fromOffset, bool anyCase)
{
    if (withThis == nullptr || length == 0)
        return *this;
    BString replaced;
    int32 done = 0;  // of the old text
    for (int32 from = fromOffset; maxReplaceCount > 0; --maxReplaceCount) {
        const int32 found = _Find(replaceThis, length, from, anyCase);
        if (found < 0)
            break;
        replaced._Splice(replaced.Length(), 0, String() + done, found - done);
        replaced._Splice(replaced.Length(), 0, withThis, withLength);
        from = done = found + length;
    }
    if (done == 0)
        return *this;
    replaced._Splice(replaced.Length(), 0, String() + done, Length() - done);
    return Adopt(replaced);
}

bool operator<(const char* a, const BString& b) { return b > a; }

bool operator<=(const char* a, const BString& b) { return b >= a; }

bool operator==(const char* a, const BString& b) { return b == a; }

bool operator>(const char* a, const BString& b) { return b < a; }

bool operator>=(const char* a, const BString& b) { return b <= a; }

bool operator!=(const char* a, const BString& b) { return b != a; }

int Compare(const BString& a, const BString& b) { return a.Compare(b); }

int ICompare(const BString& a, const BString& b) { return a.ICompare(b); }

int Compare(const BString* a, const BString* b) { return a->Compare(*b); }

int ICompare(const BString* a, const BString* b) { return a->ICompare(*b); }
