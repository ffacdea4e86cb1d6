// String functions. Their results go into the string ring, but for the two parts of a path, which
// have buffers of their own. Main thread.

#include "runtime/strings.h"

#include "plinth.h"
#include "runtime/ring.h"

#include <Path.h>

#include <exception>
#include <algorithm>
#include <ctype.h>
#include <limits.h>
#include <string.h>

static const size_t kWorkText = 263;      // what the work buffer of Replace holds
static const int kFewSubstitutions = 64;  // a power of two; so many need no watch
static const int kMaxSubstitutions = 100000;
static const size_t kPathSize = 1024;

static char sNothing[1];  // a "" that is no constant, for results that callers may write to

static int32_t length_of(const char* text)
{
    return static_cast<int32_t>(std::min<size_t>(strlen(text), INT32_MAX));
}

// The limit of a copy of `count` characters into a slot; a negative count is no limit.
static size_t slot_limit(int32_t count)
{
    return count < 0 ? kSlotSize : std::min<size_t>(count, kSlotSize);
}

extern "C" char* Left(const char* s, int32_t n)
{
    char* slot = GetNextTab();
    bounded_copy(slot, text_or_empty(s), slot_limit(n));
    return slot;
}

extern "C" char* Right(const char* s, int32_t n)
{
    s = text_or_empty(s);
    const int64_t length = static_cast<int64_t>(strlen(s));
    const int64_t start = std::clamp<int64_t>(length - n, 0, length);
    char* slot = GetNextTab();
    bounded_copy(slot, s + start, slot_limit(n));
    return slot;
}

static char* take_mid()
{
    char* slot = GetNextTab();
    GetNextTab();
    return slot;
}

extern "C" char* Mid(const char* s, int32_t start, int32_t count)
{
    s = text_or_empty(s);
    char* slot = take_mid();
    if (count == -1)
        count = length_of(s);
    const size_t skipped = start > 0 ? start - 1 : 0;
    const bool is_inside = start == 0 || (start > 0 && strnlen(s, start) > skipped);
    if (is_inside)
        put_mid_of(slot, s + skipped, count);
    else
        put_empty_mid(slot, count);
    return slot;
}

extern "C" char* MidStr(const char* s, int32_t start)
{
    s = text_or_empty(s);
    char* slot = take_mid();
    const int32_t length = length_of(s);
    const int32_t skipped = start > 0 ? start - 1 : 0;
    if (start == 0 || (start > 0 && start <= length))
        put_mid(slot, s + skipped, length - skipped, length);
    else
        put_empty_mid(slot, length);
    return slot;
}

extern "C" int32_t Instr(int32_t offset, const char* s, const char* find)
{
    s = text_or_empty(s);
    find = text_or_empty(find);
    // Outside the text there is nothing, as at its end.
    const size_t skipped = offset < 0 ? strlen(s) : strnlen(s, offset);
    return static_cast<int32_t>(walk_for(s + skipped, skipped, find, strlen(find)));
}

extern "C" int32_t Len(const char* s) { return length_of(text_or_empty(s)); }

extern "C" char* Space(int32_t n)
{
    char* slot = GetNextTab();
    const size_t blanks = n > 0 ? std::min<size_t>(n, kSlotSize) : 0;
    fill_bytes(slot, ' ', blanks);
    fill_bytes(slot + blanks, '\0', kSlotSize - blanks);
    return slot;
}

extern "C" char* String(int32_t n, const char* s)
{
    s = text_or_empty(s);
    char own[kSlotSize];
    const size_t length = strnlen(s, kSlotSize);
    if (in_ring(s)) {  // it may lie in the slot
        copy_bytes(own, s, length);
        s = own;
    }
    char* slot = GetNextTab();
    size_t used = 0;
    for (int32_t i = 0; i < n && used < kSlotSize && length > 0; i++) {
        const size_t taken = std::min(length, kSlotSize - used);
        copy_bytes(slot + used, s, taken);
        used += taken;
    }
    fill_bytes(slot + used, '\0', kSlotSize - used);
    return slot;
}

static char* put_char(char* slot, char c)
{
    slot[0] = c;
    slot[1] = '\0';
    return slot;
}

extern "C" char* Chr(uint8_t c) { return put_char(GetNextTab(), static_cast<char>(c)); }

extern "C" int32_t Chr2(const char* s) { return static_cast<signed char>(text_or_empty(s)[0]); }

// Maps `length` bytes. ASCII goes the fast way, the same whatever the locale; only other bytes are
// the C library's affair.
template <char First, char Last, int (*Map)(int)>
static void map_case(char* to, const char* from, size_t length)
{
    unsigned char high = 0;
    for (size_t i = 0; i < length; i++) {
        const auto c = static_cast<unsigned char>(from[i]);
        const bool changes = static_cast<unsigned char>(c - First) <= Last - First;
        to[i] = static_cast<char>(c ^ (changes ? 0x20 : 0));
        high |= c;
    }
    if (high < 0x80)
        return;
    for (size_t i = 0; i < length; i++) {
        const auto c = static_cast<unsigned char>(to[i]);
        if (c >= 0x80)
            to[i] = static_cast<char>(Map(c));
    }
}

static constexpr auto to_lower_case = map_case<'A', 'Z', tolower>;
static constexpr auto to_upper_case = map_case<'a', 'z', toupper>;

// A text of 257 bytes has its terminator in the following slot.
template <auto Map>
static char* take_mapped(const char* s)
{
    s = text_or_empty(s);
    char work[kSlotSize + 1];  // s may lie in the slot
    const size_t length = strnlen(s, kSlotSize);
    Map(work, s, length);
    char* slot = GetNextTab();
    copy_bytes(slot, work, length);
    slot[length] = '\0';
    return slot;
}

extern "C" char* Lcase(const char* s) { return take_mapped<to_lower_case>(s); }

extern "C" char* Ucase(const char* s) { return take_mapped<to_upper_case>(s); }

extern "C" char* TitleCase(const char* s)
{
    char* slot = GetNextTab();
    bounded_copy(slot, text_or_empty(s), kSlotSize);
    const size_t length = strnlen(slot, kSlotSize);
    to_lower_case(slot, slot, length);
    to_upper_case(slot, slot, std::min<size_t>(length, 1));
    return slot;
}

// The first byte that is no blank.
static size_t skip_blanks(const char* text)
{
    size_t blanks = 0;
    while (text[blanks] == ' ')
        blanks++;
    return blanks;
}

extern "C" char* Ltrim(const char* s)
{
    s = text_or_empty(s);
    char* slot = GetNextTab();
    const char* rest;
    if (in_ring(s)) {  // the pieces may overwrite what is still to be read
        int32_t start = 1;
        while (strcmp(Mid(s, start, 1), " ") == 0)
            start++;
        rest = Mid(s, start, kSlotSize);
    } else {
        const size_t blanks = skip_blanks(s);
        for (size_t i = blanks < kPairs ? 1 : blanks + 2 - kPairs; i <= blanks + 1; i++)
            put_char(walk_slot(i), s[i - 1]);
        StrCnt = (StrCnt + 2 * static_cast<uint32_t>(blanks + 1)) % kSlots;
        char* piece = take_mid();
        rest = s + blanks;
        if (rest[0] == '\0')
            put_empty_mid(piece, kSlotSize);
        else
            put_mid_of(piece, rest, kSlotSize);
    }
    // A rest of 257 bytes has its terminator in the following slot.
    const size_t length = strnlen(rest, kSlotSize);
    copy_bytes(slot, rest, length);
    slot[length] = '\0';
    return slot;
}

// Where the text of a slot just filled from `s` can be read: `s` itself, whose bytes need not wait
// for the copy, unless it lies in the ring or the slot is full. A full slot has no terminator; its
// text runs on into the next ones.
static const char* readable_text(const char* slot, const char* s)
{
    return in_ring(s) || slot[kSlotText] != '\0' ? slot : s;
}

extern "C" char* Rtrim(const char* s)
{
    s = text_or_empty(s);
    char* slot = GetNextTab();
    bounded_copy(slot, s, kSlotSize);
    const char* text = readable_text(slot, s);
    // Every blank goes, last to first, so the text ends at the first.
    const char* blank = text + skip_blanks(text);
    while ((blank = strchr(blank, ' ')) != nullptr) {
        slot[blank - text] = '\0';
        blank++;
    }
    return slot;
}

extern "C" char* Trim(const char* s)
{
    char* slot = GetNextTab();
    if (s == nullptr)
        return sNothing;
    bounded_copy(slot, s, kSlotSize);
    const char* text = readable_text(slot, s);
    const size_t blanks = skip_blanks(text);
    if (const char* blank = strrchr(text + blanks, ' '))
        slot[blank - text] = '\0';  // kept on purpose: one cut at the last blank, wherever it is
    return slot + blanks;
}

extern "C" char* Extract(const char* s, const char* sep)
{
    s = text_or_empty(s);
    sep = text_or_empty(sep);
    char* slot = GetNextTab();
    const size_t position = walk_for(s, 0, sep, strlen(sep));
    if (position == 0) {
        put_text(slot, s, strnlen(s, kSlotText));
        return slot;
    }
    const size_t left_length = position - 1;
    const auto count = static_cast<int32_t>(left_length);
    if (in_ring(s) || left_length > kSlotText) {
        // The search may have written over its text, and a full piece runs on into the next slots.
        const char* left = Mid(s, 1, count);
        put_text(slot, left, strnlen(left, kSlotText));
        return slot;
    }
    // What the piece holds need not be read back from it.
    char* left = take_mid();
    copy_bytes(left, s, left_length);
    terminate(left, count);
    copy_bytes(slot, s, left_length);
    slot[left_length] = '\0';
    return slot;
}

// The work buffer of Replace. What does not fit is cut off.
class WorkText {
public:
    const char* Text() const { return fText; }
    size_t Length() const { return fLength; }
    bool IsFull() const { return fIsFull; }

    void Append(const char* text, size_t length)
    {
        const size_t taken = std::min(length, kWorkText - fLength);
        copy_bytes(fText + fLength, text, taken);
        fLength += taken;
        fText[fLength] = '\0';
        fIsFull |= taken < length;
    }
    // Puts `text` between the first `left` bytes and the `kept` bytes at `after`.
    void Splice(size_t left, const char* text, size_t length, size_t after, size_t kept)
    {
        const size_t taken = std::min(length, kWorkText - left);
        const size_t rest = std::min(kept, kWorkText - left - taken);
        copy_bytes(fText + left + taken, fText + after, rest);
        copy_bytes(fText + left, text, taken);
        fLength = left + taken + rest;
        fText[fLength] = '\0';
        fIsFull |= taken + rest < length + kept;
    }
    bool operator==(const WorkText& other) const
    {
        return fLength == other.fLength && memcmp(fText, other.fText, fLength) == 0;
    }

private:
    char fText[kWorkText + 1];
    size_t fLength = 0;
    bool fIsFull = false;
};

// A text whose length is measured once, unless it lies in the ring and may change.
class Pattern {
public:
    explicit Pattern(const char* text)
        : fText(text_or_empty(text)), fLength(strlen(fText)), fInRing(in_ring(fText))
    {
    }
    const char* Text() const { return fText; }
    size_t Length() const { return fInRing ? strlen(fText) : fLength; }
    bool IsInRing() const { return fInRing; }

private:
    const char* fText;
    size_t fLength;
    bool fInRing;
};

// Replaces the match at `position` as two Mids and their joining do. The search and the first of
// them may have written over a pattern in the ring, whose length then is no longer the match's.
static void substitute(WorkText* work, size_t position, const Pattern& find, const Pattern& repl,
                       int32_t rest_count)
{
    const size_t left_length = position - 1;
    char* left = take_mid();
    put_mid(left, work->Text(), work->Length(), static_cast<int32_t>(left_length));
    const size_t after = std::min(left_length + find.Length(), work->Length());
    const size_t right_length = work->Length() - after;
    char* rest = take_mid();
    if (right_length > 0)
        put_mid(rest, work->Text() + after, right_length, rest_count);
    else
        put_empty_mid(rest, rest_count);

    const size_t kept = std::min<size_t>(right_length, rest_count);
    if (left_length < kSlotSize) {
        work->Splice(left_length, repl.Text(), repl.Length(), after, kept);
        return;
    }
    WorkText joined;  // the left piece goes on with what follows its slot
    joined.Append(left, strlen(left));
    joined.Append(repl.Text(), repl.Length());
    joined.Append(rest, kept);
    *work = joined;
}

// All that the further substitutions of a Replace depend on: its text and, where its arguments lie
// in the ring, the ring.
class ReplaceState {
public:
    explicit ReplaceState(bool has_ring) : fHasRing(has_ring) {}
    void Keep(const WorkText& work)
    {
        fWork = work;
        if (!fHasRing)
            return;
        memcpy(fRing, StrFunction, kRingSize);
        fLastSlot = StrCnt;
    }
    bool IsBackAt(const WorkText& work) const
    {
        return work == fWork &&
               (!fHasRing || (StrCnt == fLastSlot && memcmp(fRing, StrFunction, kRingSize) == 0));
    }

private:
    const bool fHasRing;
    WorkText fWork;
    uint32_t fLastSlot = 0;
    char fRing[kRingSize];
};

// Replaces where nothing comes from the ring and the last search, which finds nothing, writes over
// all that the others leave there: those leave nothing then. False where that does not hold in the
// end; the ring then has nothing that replacing once more would not write too.
static bool replace_with_one_walk(WorkText* work, const Pattern& find, const Pattern& repl,
                                  int32_t rest_count)
{
    const size_t find_length = find.Length();
    if (find.IsInRing() || repl.IsInRing() || find_length == 0 || find_length >= kSlotSize)
        return false;
    for (int substitutions = 0; substitutions < kFewSubstitutions; substitutions++) {
        const size_t position = search_only(work->Text(), find.Text(), find_length);
        if (position == 0) {
            if (work->Length() < kPairs || find_length > work->Length())
                return false;
            leave_missed_walk(work->Text(), work->Length(), find_length);
            return true;
        }
        if (position > kSlotSize)
            return false;
        substitute(work, position, find, repl, rest_count);
        if (work->IsFull())
            return false;
    }
    return false;
}

// Each search begins at the front again, so a replacement that makes new matches might never come
// to an end: it stops where the text does not fit any more or all comes back to what it was, and at
// a count that no text which ends by itself comes near.
static void replace_each(WorkText* work, const Pattern& find, const Pattern& repl,
                         int32_t rest_count)
{
    ReplaceState earlier(find.IsInRing() || repl.IsInRing());  // after the last power of two
    for (int substitutions = 1; substitutions <= kMaxSubstitutions; substitutions++) {
        const size_t position = walk_for(work->Text(), 0, find.Text(), find.Length());
        if (position == 0)
            break;
        substitute(work, position, find, repl, rest_count);
        if (work->IsFull() || (substitutions > kFewSubstitutions && earlier.IsBackAt(*work)))
            break;
        if (substitutions >= kFewSubstitutions && (substitutions & (substitutions - 1)) == 0)
            earlier.Keep(*work);
    }
}

extern "C" char* Replace(const char* s, const char* find, const char* repl)
{
    s = text_or_empty(s);
    const Pattern pattern(find);
    const Pattern replacement(repl);
    char* slot = GetNextTab();
    const uint32_t first_slot = StrCnt;
    const auto rest_count = static_cast<int32_t>(strnlen(s, kSlotSize));
    WorkText work;
    work.Append(s, rest_count);
    // What is written to the ring may change a text that lies there.
    if (in_ring(s) || !replace_with_one_walk(&work, pattern, replacement, rest_count)) {
        StrCnt = first_slot;
        work = WorkText();
        work.Append(s, rest_count);
        replace_each(&work, pattern, replacement, rest_count);
    }
    put_text(slot, work.Text(), work.Length());
    return slot;
}

extern "C" char* ExtractPathName(const char* path)
try {
    static char directory[kPathSize];  // main thread
    memset(directory, 0, kPathSize);
    const BPath object(text_or_empty(path));
    if (object.InitCheck() != B_OK)
        return directory;
    const size_t leaf_at = object.Leaf() - object.Path();
    size_t length = leaf_at > 1 ? leaf_at : strlen(object.Path());
    length = std::min(length, kPathSize - 1);
    memcpy(directory, object.Path(), length);
    if (directory[length - 1] != '/' && length < kPathSize - 1)
        directory[length] = '/';
    return directory;
} catch (const std::exception&) {
    static char nothing[] = "";
    return nothing;
}

extern "C" char* ExtractFileName(const char* path)
try {
    static char leaf[kPathSize];  // main thread
    memset(leaf, 0, kPathSize);
    const BPath object(text_or_empty(path));
    if (object.InitCheck() == B_OK)
        memcpy(leaf, object.Leaf(), strnlen(object.Leaf(), kPathSize - 1));
    return leaf;
} catch (const std::exception&) {
    static char nothing[] = "";
    return nothing;
}

char* MyStringStr(const char* text)
{
    if (text == nullptr || text[0] == '\0')
        return nullptr;
    const size_t size = strlen(text) + 1;
    if (size > INT32_MAX)
        return nullptr;
    auto* copy = static_cast<char*>(MyAlloc(static_cast<int32_t>(size)));
    if (copy != nullptr)
        memcpy(copy, text, size);
    return copy;
}

char* StrLower(char* text)
{
    if (text == nullptr)
        return sNothing;
    to_lower_case(text, text, strlen(text));
    return text;
}
