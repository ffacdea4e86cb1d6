// Replace: each search begins at the front of the text again, and its pieces, like those that the
// text is put together of, stay behind in the string ring. Main thread.

#include "plinth.h"
#include "runtime/ring.h"
#include "runtime/strings.h"

#include <algorithm>
#include <string.h>

static const size_t kWorkText = 263;      // what the work buffer holds
static const int kFewSubstitutions = 64;  // a power of two; so many need no watch
static const int kMaxSubstitutions = 100000;
static const size_t kVector = 16;  // bytes that one instruction copies

namespace {

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

}  // namespace

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

// Replaces what does not come from the ring where the last search, which finds nothing, writes over
// all that the others leave there: those leave nothing then. False where that does not hold in the
// end; the ring then has nothing that replacing once more would not write too.
static bool replace_with_one_walk(WorkText* work, const Pattern& find, const Pattern& repl,
                                  int32_t rest_count)
{
    const size_t find_length = find.Length();
    if (find_length == 0 || find_length >= kSlotSize)
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

// True if no match can lie across the ends of a replacement or inside it.
static bool are_apart(const Pattern& find, const Pattern& repl)
{
    if (repl.Length() == 0)
        return find.Length() == 1;
    for (size_t i = 0; i < find.Length(); i++) {
        if (memchr(repl.Text(), find.Text()[i], repl.Length()) != nullptr)
            return false;
    }
    return find.Length() > 0;
}

namespace {

// A text that goes on with as many zeros as it has bytes.
class PaddedText {
public:
    PaddedText(const char* text, size_t length) : fLength(length)
    {
        copy_bytes(fText, text, length);
        fill_bytes(fText + length, '\0', length + kVector);
    }
    const char* Begin() const { return fText; }
    const char* End() const { return fText + fLength; }
    size_t Length() const { return fLength; }

private:
    char fText[2 * kSlotText + kVector];
    const size_t fLength;
};

// A text that is written from its front to its end.
class Output {
public:
    const char* Text() const { return fText; }
    size_t Length() const { return fLength; }

    void Append(const char* text, size_t length)
    {
        copy_bytes(fText + fLength, text, length);
        fLength += length;
    }
    // From where a whole vector more can be read than is wanted.
    void AppendVectors(const char* text, size_t length)
    {
        for (size_t i = 0; i < length; i += kVector)
            memcpy(fText + fLength + i, text + i, kVector);
        fLength += length;
    }

private:
    char fText[kSlotSize + kVector];
    size_t fLength = 0;
};

// The pieces that substitutions from the front of a text to its end leave in the ring. Those to the
// left of a match grow, and the rests behind one are all filled up to the text's first length: so
// a slot shows the last of each sort.
class Pieces {
public:
    void AddLeft(uint32_t pair, size_t length)
    {
        Pair& slots = fPairs[pair % kPairs];
        slots.left_length = static_cast<int16_t>(length);
        slots.is_rest_last = false;
    }
    void AddRest(uint32_t pair, size_t start)
    {
        Pair& slots = fPairs[pair % kPairs];
        slots.rest_start = static_cast<int16_t>(start);
        slots.is_rest_last = true;
    }

    void Leave(const Output& output, const PaddedText& text) const
    {
        const auto count = static_cast<int>(text.Length());
        for (size_t i = 0; i < kPairs; i++) {
            const Pair& pair = fPairs[i];
            char* slot = walk_slot(i + 1);
            const bool is_left_longer = pair.left_length > count;
            if (pair.is_rest_last && is_left_longer)
                put_text(slot, output.Text(), pair.left_length);
            if (pair.rest_start >= 0 && (pair.is_rest_last || !is_left_longer))
                put_text(slot, text.Begin() + pair.rest_start, count);
            if (pair.left_length >= 0 && !pair.is_rest_last)
                put_text(slot, output.Text(), pair.left_length);
        }
    }

private:
    struct Pair {
        int16_t left_length = -1;
        int16_t rest_start = -1;
        bool is_rest_last = false;
    };
    Pair fPairs[kPairs];  // counted from the one that is taken next
};

}  // namespace

static const char* find_in_rest(const char* rest, const char* end, const Pattern& find)
{
    if (find.Length() == 1)
        return static_cast<const char*>(memchr(rest, find.Text()[0], end - rest));
    return strstr(rest, find.Text());
}

// Replaces each match once, from the front to the end, which is enough where the pattern and its
// replacement are apart. The pieces of the searches are left out but for the last one's, which
// finds nothing: it has to reach all slots. False where it does not, or the text outgrows a slot;
// nothing has changed then.
static bool replace_forward(char* result, const PaddedText& text, const Pattern& find,
                            const Pattern& repl)
{
    char vector[kVector];
    const bool is_short = repl.Length() <= kVector;
    copy_bytes(vector, repl.Text(), std::min(repl.Length(), kVector));
    Output output;
    Pieces pieces;
    uint32_t pairs = 0;  // taken so far
    const char* rest = text.Begin();
    while (const char* hit = find_in_rest(rest, text.End(), find)) {
        if (output.Length() + (text.End() - rest) + repl.Length() > kSlotText + find.Length())
            return false;
        output.AppendVectors(rest, hit - rest);
        rest = hit + find.Length();
        pairs += static_cast<uint32_t>(output.Length()) + 1;
        pieces.AddLeft(pairs++, output.Length());
        if (rest < text.End())
            pieces.AddRest(pairs, rest - text.Begin());
        pairs++;
        if (is_short)
            output.AppendVectors(vector, repl.Length());
        else
            output.Append(repl.Text(), repl.Length());
    }
    const bool has_empty_rest = rest == text.End();
    output.AppendVectors(rest, text.End() - rest);
    if (output.Length() < kPairs || output.Length() < find.Length())
        return false;

    pieces.Leave(output, text);
    StrCnt = (StrCnt + 2 * pairs) % kSlots;
    if (has_empty_rest)
        put_empty_mid(walk_slot(0), static_cast<int32_t>(text.Length()));
    leave_missed_walk(output.Text(), output.Length(), find.Length());
    put_text(result, output.Text(), output.Length());
    return true;
}

extern "C" char* Replace(const char* s, const char* find, const char* repl)
{
    s = text_or_empty(s);
    const Pattern pattern(find);
    const Pattern replacement(repl);
    char* slot = GetNextTab();
    const uint32_t first_slot = StrCnt;
    const size_t length = strnlen(s, kSlotSize);
    // What is written to the ring may change a text that lies there.
    const bool from_ring = in_ring(s) || pattern.IsInRing() || replacement.IsInRing();
    if (!from_ring && length <= kSlotText && are_apart(pattern, replacement) &&
        replace_forward(slot, PaddedText(s, length), pattern, replacement))
        return slot;
    const auto rest_count = static_cast<int32_t>(length);
    WorkText work;
    work.Append(s, length);
    if (from_ring || !replace_with_one_walk(&work, pattern, replacement, rest_count)) {
        StrCnt = first_slot;
        work = WorkText();
        work.Append(s, length);
        replace_each(&work, pattern, replacement, rest_count);
    }
    put_text(slot, work.Text(), work.Length());
    return slot;
}
