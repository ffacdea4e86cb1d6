// Steps of undo: how typing becomes words, and what is kept.

#include "interface/text/UndoHistory.h"

#include <algorithm>
#include <new>
#include <string_view>

#include <server/text/Characters.h>
#include <support/ValidUTF8.h>

namespace BPrivate {

// What is done before so many bytes of later steps is forgotten.
static const size_t kMostUndoBytes = size_t(64) << 20;

size_t TextEdit::Size() const
{
    return sizeof(TextEdit) + removed.size() + inserted.size() +
           (removedRuns.size() + insertedRuns.size()) * sizeof(StyleRun);
}

void UndoHistory::Enable(bool enabled)
{
    fEnabled = enabled;
    if (!enabled)
        Clear();
}

void UndoHistory::Clear()
{
    fDone.clear();
    fUndone.clear();
    fSize = 0;
    fGeneration++;
}

void UndoHistory::Close()
{
    if (!fDone.empty())
        fDone.back().open = false;
}

void UndoHistory::Begin(undo_state kind, TextSelection selection)
{
    if (fDepth++ > 0)
        return;
    fStep = UndoStep();
    fForgot = false;
    fStep.kind = kind;
    fStep.before = selection;
}

static bool is_blank(const std::string& text)
{
    uint32 code = 0;
    if (!text.empty())
        next_character(text, &code);
    return server::ClassOf(code) == server::CharacterClass::Blank || code == '\n';
}

// A word ends with the blanks behind it; words that are deleted, with those before.
bool UndoHistory::_GoesOn(const UndoStep& step) const
{
    if (fDone.empty() || step.kind != B_UNDO_TYPING || step.edits.size() != 1)
        return false;
    const UndoStep& last = fDone.back();
    const TextEdit& edit = step.edits[0];
    if (!last.open || last.edits.empty() || edit.styles || last.edits.back().styles)
        return false;
    const TextEdit& before = last.edits.back();
    if (edit.removed.empty())
        return !before.inserted.empty() &&
               edit.offset == before.offset + int32(before.inserted.size()) &&
               (!last.blank || is_blank(edit.inserted));
    return edit.inserted.empty() && before.inserted.empty() &&
           (edit.offset + int32(edit.removed.size()) == before.offset ||
            edit.offset == before.offset) &&
           (last.blank || !is_blank(edit.removed));
}

static void join(TextEdit& before, const TextEdit& edit)
{
    if (edit.removed.empty()) {
        before.inserted += edit.inserted;
        return;
    }
    const bool forward = edit.offset == before.offset;
    before.offset = edit.offset;
    before.removed = forward ? before.removed + edit.removed : edit.removed + before.removed;
    std::vector<StyleRun> runs = forward ? before.removedRuns : edit.removedRuns;
    const std::vector<StyleRun>& more = forward ? edit.removedRuns : before.removedRuns;
    runs.insert(runs.end(), more.begin(), more.end());
    before.removedRuns = std::move(runs);
}

// Puts a step behind the others, or joins it to the last.
void UndoHistory::_Keep(UndoStep& step)
{
    for (const TextEdit& each : step.edits)
        step.size += each.Size();
    if (_GoesOn(step)) {
        UndoStep& last = fDone.back();
        join(last.edits.back(), step.edits.back());
        last.blank = step.blank;
        last.after = step.after;
        last.size += step.size;
        fSize += step.size;
    } else {
        const size_t size = step.size;
        fDone.push_back(std::move(step));
        fSize += size;
    }
    _Trim();
}

void UndoHistory::End(TextSelection selection)
{
    if (--fDepth > 0 || fForgot || fStep.edits.empty() || !Records())
        return;
    fUndone.clear();
    fStep.after = selection;
    fStep.open = fStep.kind == B_UNDO_TYPING;
    const TextEdit& edit = fStep.edits.back();
    fStep.blank = is_blank(edit.inserted.empty() ? edit.removed : edit.inserted);
    try {
        _Keep(fStep);
    } catch (const std::bad_alloc&) {
        _Forget();
    }
}

// Older steps would not meet the text that they were made of.
void UndoHistory::_Forget()
{
    Clear();
    fStep.edits.clear();
    fForgot = true;
}

void UndoHistory::_Trim()
{
    while (fSize > kMostUndoBytes && fDone.size() > 1) {
        fSize -= fDone.front().size;
        fDone.pop_front();
    }
}

template <class Fill>
void UndoHistory::_Add(int32 offset, Fill fill)
{
    if (!Records() || fForgot)
        return;
    try {
        TextEdit edit;
        edit.offset = offset;
        if (fill(edit))
            fStep.edits.push_back(std::move(edit));
    } catch (const std::bad_alloc&) {
        _Forget();
    }
}

void UndoHistory::AddInsertion(int32 offset, const char* text, int32 length)
{
    _Add(offset, [=](TextEdit& edit) {
        edit.inserted.assign(text, size_t(length));
        return true;
    });
}

void UndoHistory::AddRemoval(int32 offset, const TextBuffer& buffer, const StyleRuns& runs,
                             int32 length)
{
    _Add(offset, [&](TextEdit& edit) {
        edit.removed.resize(size_t(length));
        buffer.Copy(offset, length, edit.removed.data());
        edit.removedRuns = runs.Copy(offset, offset + length);
        return true;
    });
}

void UndoHistory::AddStyles(int32 offset, const std::vector<StyleRun>& before,
                            const StyleRuns& runs)
{
    _Add(offset, [&](TextEdit& edit) {
        int32 to = offset;
        for (const StyleRun& run : before)
            to += run.length;
        edit.styles = true;
        edit.removedRuns = before;
        edit.insertedRuns = runs.Copy(offset, to);
        return edit.removedRuns != edit.insertedRuns;
    });
}

UndoStep UndoHistory::Take(Side side)
{
    std::deque<UndoStep>& steps = side == Side::Done ? fDone : fUndone;
    UndoStep step = std::move(steps.back());
    steps.pop_back();
    if (side == Side::Done)
        fSize -= step.size;
    Close();
    return step;
}

void UndoHistory::Put(Side side, UndoStep step)
{
    step.open = false;
    const size_t size = step.size;
    try {
        (side == Side::Done ? fDone : fUndone).push_back(std::move(step));
        fSize += side == Side::Done ? size : 0;
    } catch (const std::bad_alloc&) {
        Clear();
    }
}

}  // namespace BPrivate
