#ifndef _B_STRING_H
#define _B_STRING_H

#include <SupportDefs.h>

#include <stdarg.h>
#include <string.h>
#include <string>

class BStringList;

/* Text that grows and shrinks, UTF-8 where characters matter. Offsets and lengths count bytes,
   those of the functions with Chars in their names characters. Null pointers stand for no text,
   and change nothing; offsets and lengths out of range are brought into it. What cannot be had for
   want of memory leaves the text as it was. Text given as an argument may be the object's own.
   One thread at a time. */
class BString {
public:
    BString();
    BString(const char* string);
    BString(const BString& string);
    BString(const char* string, int32 maxLength);
    BString(BString&& string);
    ~BString();

    const char* String() const;  // until the text changes; never null
    int32 Length() const;
    int32 CountChars() const;
    int32 CountBytes(int32 fromCharOffset, int32 charCount) const;
    bool IsEmpty() const;
    uint32 HashValue() const;
    static uint32 HashValue(const char* string);

    /* Assignment. Adopt() empties `from`; SetTo() with a negative length takes all. */
    BString& operator=(const BString& string);
    BString& operator=(const char* string);
    BString& operator=(char c);
    BString& operator=(BString&& string);
    BString& SetTo(const char* string);
    BString& SetTo(const char* string, int32 maxLength);
    BString& SetTo(const BString& string);
    BString& Adopt(BString& from);
    BString& SetTo(const BString& string, int32 maxLength);
    BString& Adopt(BString& from, int32 maxLength);
    BString& SetTo(char c, int32 count);
    BString& SetToChars(const char* string, int32 charCount);
    BString& SetToChars(const BString& string, int32 charCount);
    BString& AdoptChars(BString& from, int32 charCount);

    /* As printf() and scanf(). */
    BString& SetToFormat(const char* format, ...);
    BString& SetToFormatVarArgs(const char* format, va_list args);
    int ScanWithFormat(const char* format, ...);
    int ScanWithFormatVarArgs(const char* format, va_list args);

    /* Copy a part. Into a plain buffer without a terminator; the form with `intoLength`, which
       tells the room and then the bytes, answers false for too little. */
    BString& CopyInto(BString& into, int32 fromOffset, int32 length) const;
    void CopyInto(char* into, int32 fromOffset, int32 length) const;
    BString& CopyCharsInto(BString& into, int32 fromCharOffset, int32 charCount) const;
    bool CopyCharsInto(char* into, int32* intoLength, int32 fromCharOffset, int32 charCount) const;
    /* Adds the parts between separators to the list, which is emptied first. */
    bool Split(const char* separator, bool noEmptyStrings, BStringList& _list) const;

    BString& operator+=(const BString& string);
    BString& operator+=(const char* string);
    BString& operator+=(char c);
    BString& Append(const BString& string);
    BString& Append(const char* string);
    BString& Append(const BString& string, int32 length);
    BString& Append(const char* string, int32 length);
    BString& Append(char c, int32 count);
    BString& AppendChars(const BString& string, int32 charCount);
    BString& AppendChars(const char* string, int32 charCount);

    BString& Prepend(const char* string);
    BString& Prepend(const BString& string);
    BString& Prepend(const char* string, int32 length);
    BString& Prepend(const BString& string, int32 length);
    BString& Prepend(char c, int32 count);
    BString& PrependChars(const char* string, int32 charCount);
    BString& PrependChars(const BString& string, int32 charCount);

    /* A negative position leaves out as many bytes of what is inserted. */
    BString& Insert(const char* string, int32 position);
    BString& Insert(const char* string, int32 length, int32 position);
    BString& Insert(const char* string, int32 fromOffset, int32 length, int32 position);
    BString& Insert(const BString& string, int32 position);
    BString& Insert(const BString& string, int32 length, int32 position);
    BString& Insert(const BString& string, int32 fromOffset, int32 length, int32 position);
    BString& Insert(char c, int32 count, int32 position);
    BString& InsertChars(const char* string, int32 charPosition);
    BString& InsertChars(const char* string, int32 charCount, int32 charPosition);
    BString& InsertChars(const char* string, int32 fromCharOffset, int32 charCount,
                         int32 charPosition);
    BString& InsertChars(const BString& string, int32 charPosition);
    BString& InsertChars(const BString& string, int32 charCount, int32 charPosition);
    BString& InsertChars(const BString& string, int32 fromCharOffset, int32 charCount,
                         int32 charPosition);

    /* Removing. MoveInto() copies first, as CopyInto() does. */
    BString& Truncate(int32 newLength, bool lazy = true);
    BString& TruncateChars(int32 newCharCount, bool lazy = true);
    BString& Remove(int32 from, int32 length);
    BString& RemoveChars(int32 fromCharOffset, int32 charCount);
    BString& RemoveFirst(const BString& string);
    BString& RemoveLast(const BString& string);
    BString& RemoveAll(const BString& string);
    BString& RemoveFirst(const char* string);
    BString& RemoveLast(const char* string);
    BString& RemoveAll(const char* string);
    BString& RemoveSet(const char* setOfBytesToRemove);
    BString& RemoveCharsSet(const char* setOfCharsToRemove);
    BString& MoveInto(BString& into, int32 from, int32 length);
    void MoveInto(char* into, int32 from, int32 length);
    BString& MoveCharsInto(BString& into, int32 fromCharOffset, int32 charCount);
    bool MoveCharsInto(char* into, int32* intoLength, int32 fromCharOffset, int32 charCount);

    /* Comparing byte by byte; the I forms take ASCII letters of both cases as equal. */
    bool operator<(const BString& string) const;
    bool operator<=(const BString& string) const;
    bool operator==(const BString& string) const;
    bool operator>=(const BString& string) const;
    bool operator>(const BString& string) const;
    bool operator!=(const BString& string) const;
    bool operator<(const char* string) const;
    bool operator<=(const char* string) const;
    bool operator==(const char* string) const;
    bool operator>=(const char* string) const;
    bool operator>(const char* string) const;
    bool operator!=(const char* string) const;
    operator const char*() const;
    int Compare(const BString& string) const;
    int Compare(const char* string) const;
    int Compare(const BString& string, int32 length) const;
    int Compare(const char* string, int32 length) const;
    int CompareAt(size_t offset, const BString& string, int32 length) const;
    int CompareChars(const BString& string, int32 charCount) const;
    int CompareChars(const char* string, int32 charCount) const;
    int ICompare(const BString& string) const;
    int ICompare(const char* string) const;
    int ICompare(const BString& string, int32 length) const;
    int ICompare(const char* string, int32 length) const;

    /* The byte offset, B_ERROR if there is none, B_BAD_VALUE for null. What FindLast() finds ends
       at `beforeOffset` or before; a character may stand there. */
    int32 FindFirst(const BString& string) const;
    int32 FindFirst(const char* string) const;
    int32 FindFirst(const BString& string, int32 fromOffset) const;
    int32 FindFirst(const char* string, int32 fromOffset) const;
    int32 FindFirst(char c) const;
    int32 FindFirst(char c, int32 fromOffset) const;
    int32 FindFirstChars(const BString& string, int32 fromCharOffset) const;
    int32 FindFirstChars(const char* string, int32 fromCharOffset) const;
    int32 FindLast(const BString& string) const;
    int32 FindLast(const char* string) const;
    int32 FindLast(const BString& string, int32 beforeOffset) const;
    int32 FindLast(const char* string, int32 beforeOffset) const;
    int32 FindLast(char c) const;
    int32 FindLast(char c, int32 beforeOffset) const;
    int32 FindLastChars(const BString& string, int32 beforeCharOffset) const;
    int32 FindLastChars(const char* string, int32 beforeCharOffset) const;
    int32 IFindFirst(const BString& string) const;
    int32 IFindFirst(const char* string) const;
    int32 IFindFirst(const BString& string, int32 fromOffset) const;
    int32 IFindFirst(const char* string, int32 fromOffset) const;
    int32 IFindLast(const BString& string) const;
    int32 IFindLast(const char* string) const;
    int32 IFindLast(const BString& string, int32 beforeOffset) const;
    int32 IFindLast(const char* string, int32 beforeOffset) const;

    bool StartsWith(const BString& string) const;
    bool StartsWith(const char* string) const;
    bool StartsWith(const char* string, int32 length) const;
    bool IStartsWith(const BString& string) const;
    bool IStartsWith(const char* string) const;
    bool IStartsWith(const char* string, int32 length) const;
    bool EndsWith(const BString& string) const;
    bool EndsWith(const char* string) const;
    bool EndsWith(const char* string, int32 length) const;
    bool IEndsWith(const BString& string) const;
    bool IEndsWith(const char* string) const;
    bool IEndsWith(const char* string, int32 length) const;

    /* Replacing. At most `maxReplaceCount` times, from an offset on; ReplaceSet() every byte or
       character that is in the set. */
    BString& ReplaceFirst(char replaceThis, char withThis);
    BString& ReplaceLast(char replaceThis, char withThis);
    BString& ReplaceAll(char replaceThis, char withThis, int32 fromOffset = 0);
    BString& Replace(char replaceThis, char withThis, int32 maxReplaceCount, int32 fromOffset = 0);
    BString& ReplaceFirst(const char* replaceThis, const char* withThis);
    BString& ReplaceLast(const char* replaceThis, const char* withThis);
    BString& ReplaceAll(const char* replaceThis, const char* withThis, int32 fromOffset = 0);
    BString& Replace(const char* replaceThis, const char* withThis, int32 maxReplaceCount,
                     int32 fromOffset = 0);
    BString& ReplaceAllChars(const char* replaceThis, const char* withThis, int32 fromCharOffset);
    BString& ReplaceChars(const char* replaceThis, const char* withThis, int32 maxReplaceCount,
                          int32 fromCharOffset);
    BString& IReplaceFirst(char replaceThis, char withThis);
    BString& IReplaceLast(char replaceThis, char withThis);
    BString& IReplaceAll(char replaceThis, char withThis, int32 fromOffset = 0);
    BString& IReplace(char replaceThis, char withThis, int32 maxReplaceCount, int32 fromOffset = 0);
    BString& IReplaceFirst(const char* replaceThis, const char* withThis);
    BString& IReplaceLast(const char* replaceThis, const char* withThis);
    BString& IReplaceAll(const char* replaceThis, const char* withThis, int32 fromOffset = 0);
    BString& IReplace(const char* replaceThis, const char* withThis, int32 maxReplaceCount,
                      int32 fromOffset = 0);
    BString& ReplaceSet(const char* setOfBytes, char with);
    BString& ReplaceSet(const char* setOfBytes, const char* with);
    BString& ReplaceCharsSet(const char* setOfChars, const char* with);

    /* Bytes and characters; 0 or null, false, outside the text. */
    char operator[](int32 index) const;
    char ByteAt(int32 index) const;
    const char* CharAt(int32 charIndex, int32* bytes = nullptr) const;
    bool CharAt(int32 charIndex, char* buffer, int32* bytes) const;

    /* Room for `maxLength` bytes and a terminator, to be written to directly. UnlockBuffer() takes
       so many bytes of it, or as many as there are up to the first zero byte. */
    char* LockBuffer(int32 maxLength);
    BString& UnlockBuffer(int32 length = -1);

    BString& SetByteAt(int32 pos, char to);

    /* ASCII letters only. */
    BString& ToLower();
    BString& ToUpper();
    BString& Capitalize();
    BString& CapitalizeEachWord();

    /* Put `escapeWith` before each character of the set, and take it away. */
    BString& CharacterEscape(const char* original, const char* setOfCharsToEscape, char escapeWith);
    BString& CharacterEscape(const char* setOfCharsToEscape, char escapeWith);
    BString& CharacterDeescape(const char* original, char escapeChar);
    BString& CharacterDeescape(char escapeChar);
    BString& Trim();  // white space at both ends

    BString& operator<<(const char* string);
    BString& operator<<(const BString& string);
    BString& operator<<(char c);
    BString& operator<<(bool value);
    BString& operator<<(int value);
    BString& operator<<(unsigned int value);
    BString& operator<<(unsigned long value);
    BString& operator<<(long value);
    BString& operator<<(unsigned long long value);
    BString& operator<<(long long value);
    BString& operator<<(float value);  // two decimals
    BString& operator<<(double value);

private:
    BString& _Splice(int32 offset, int32 removed, const char* bytes, int32 inserted);
    int32 _CharOffset(int32 charOffset) const;
    int32 _Find(const char* string, int32 length, int32 fromOffset, bool anyCase) const;
    int32 _FindLast(const char* string, int32 length, int32 beforeOffset, bool anyCase) const;
    BString& _Replace(const char* replaceThis, int32 length, const char* withThis, int32 withLength,
                      int32 maxReplaceCount, int32 fromOffset, bool anyCase);
    BString& _Cut(int32 offset, int32 length);

    std::string fText;
};

bool operator<(const char* a, const BString& b);
bool operator<=(const char* a, const BString& b);
bool operator==(const char* a, const BString& b);
bool operator>(const char* a, const BString& b);
bool operator>=(const char* a, const BString& b);
bool operator!=(const char* a, const BString& b);

/* For sorting. */
int Compare(const BString& a, const BString& b);
int ICompare(const BString& a, const BString& b);
int Compare(const BString* a, const BString* b);
int ICompare(const BString* a, const BString* b);

inline const char* BString::String() const { return fText.c_str(); }

inline int32 BString::Length() const { return static_cast<int32>(fText.size()); }

inline bool BString::IsEmpty() const { return fText.empty(); }

#endif  // _B_STRING_H
