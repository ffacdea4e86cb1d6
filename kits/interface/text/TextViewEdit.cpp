// BTextView: text that comes and goes, the selection, the clipboard, undo.

#include <TextView.h>

#include <Clipboard.h>
#include <File.h>
#include <Window.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "interface/text/TextData.h"
#include "interface/view/ViewPrivate.h"
#include "support/UTF8Characters.h"

namespace BPrivate {

// ---- Changes of the text

void TextData::Added(int32 offset, int32 length)
{
    const bool caret = selStart == selEnd;
    if (selStart >= offset)
        selStart += length;
    if (selEnd > offset || (caret && selEnd == offset))
        selEnd += length;
    if (composed && composed->offset >= offset)
        composed->offset += length;
    anchor = selStart;
    lead = selEnd;
    caretStyle = -1;
    goalX = -1;
}

void TextData::Removed(int32 from, int32 to)
{
    const auto moved = [=](int32 place) {
        return place >= to ? place - (to - from) : std::min(place, from);
    };
    selStart = moved(selStart);
    selEnd = moved(selEnd);
    if (composed)
        composed->offset = moved(composed->offset);
    anchor = selStart;
    lead = selEnd;
    goalX = -1;
}

void TextData::InsertHook(const char* text, int32 length, int32 offset, const text_run_array* runs)
{
    view->InsertText(text, length, offset, runs);
}

void TextData::DeleteHook(int32 from, int32 to) { view->DeleteText(from, to); }

bool TextData::ReplaceSelection(const char* text, int32 length, const text_run_array* runs,
                                undo_state kind)
{
    if (!Fits(length - (selEnd - selStart)))
        return false;
    {
        const UndoScope step(*this, kind);
        const int32 style = selStart < selEnd ? body.Runs().At(selStart).style : -1;
        if (selStart < selEnd) {
            DeleteHook(selStart, selEnd);
            if (!step.IsThere())
                return false;
            // What takes the place of other text looks like it.
            if (stylable && runs == nullptr && length > 0)
                caretStyle = style;
        }
        if (length > 0)
            InsertHook(text, length, selStart, runs);
        if (!step.IsThere())
            return false;
    }
    MoveCaret(selEnd, false);
    return true;
}

void TextData::DeleteRange(int32 from, int32 to, undo_state kind)
{
    from = Clamp(from);
    to = Clamp(to);
    if (from >= to)
        return;
    const UndoScope step(*this, kind);
    DeleteHook(from, to);
}

// ---- Selection

void TextData::SetSelection(int32 start, int32 end)
{
    if (start == selStart && end == selEnd)
        return;
    InvalidateCaret();
    ViewPrivate::Data(view).TellReader();
    const int32 oldStart = selStart, oldEnd = selEnd;
    selStart = start;
    selEnd = end;
    caretStyle = -1;
    if (active && selectable) {
        // What both have stays as it is.
        if (start >= oldEnd || end <= oldStart) {
            InvalidateRange(oldStart, oldEnd);
            InvalidateRange(start, end);
        } else {
            InvalidateRange(std::min(start, oldStart), std::max(start, oldStart));
            InvalidateRange(std::min(end, oldEnd), std::max(end, oldEnd));
        }
    }
    SetCaretOn(true);
}

void TextData::SelectFrom(int32 from, int32 to)
{
    const ViewRef self(view);
    view->Select(std::min(from, to), std::max(from, to));
    if (self.View() == nullptr)
        return;
    anchor = from <= to ? selStart : selEnd;
    lead = from <= to ? selEnd : selStart;
}

void TextData::MoveCaret(int32 to, bool extend)
{
    const ViewRef self(view);
    history.Close();
    SelectFrom(extend && selectable ? anchor : to, to);
    if (self.View() != nullptr)
        view->ScrollToOffset(lead);
}

// ---- Undo

static std::string copied(const TextBuffer& buffer, int32 from, int32 to)
{
    std::string bytes(size_t(to - from), '\0');
    buffer.Copy(from, to - from, bytes.data());
    return bytes;
}

// Takes one side of an edit out and puts the other in; false if the view went.
bool TextData::CarryOut(TextEdit& edit, bool back)
{
    const ViewRef self(view);
    const int32 from = Clamp(edit.offset);
    const std::string& gone = back ? edit.inserted : edit.removed;
    const std::string& comes = back ? edit.removed : edit.inserted;
    std::vector<StyleRun>& goneRuns = back ? edit.insertedRuns : edit.removedRuns;
    const std::vector<StyleRun>& runs = back ? edit.removedRuns : edit.insertedRuns;
    if (!gone.empty()) {
        const int32 to = Clamp(from + int32(gone.size()));
        goneRuns = body.Runs().Copy(from, to);
        DeleteHook(from, to);
    }
    if (self.View() != nullptr && !comes.empty())
        InsertHook(comes.data(), int32(comes.size()), from, nullptr);
    if (self.View() == nullptr)
        return false;
    int32 to = from;
    for (const StyleRun& run : runs)
        to += run.length;
    if (to > from && to <= body.Length()) {
        body.PutRuns(from, runs);
        ChangedStyle(from, to);
    }
    return true;
}

// Takes the last step back, from its last edit on, or does it again. What the hooks make of it is
// left to them.
void TextData::CarryOutStep(UndoHistory::Side from)
{
    using Side = UndoHistory::Side;
    const ViewRef self(view);
    const bool back = from == Side::Done;
    UndoStep step = history.Take(from);
    const uint32 generation = history.Generation();
    try {
        const UnrecordedScope unrecorded(*this);
        for (size_t i = 0; i < step.edits.size(); i++) {
            if (!CarryOut(step.edits[back ? step.edits.size() - 1 - i : i], back))
                return;
        }
    } catch (const std::bad_alloc&) {
        // Half of it is done.
        if (self.View() != nullptr)
            history.Clear();
        throw;
    }
    const TextSelection selection = back ? step.before : step.after;
    if (generation == history.Generation())
        history.Put(back ? Side::Undone : Side::Done, std::move(step));
    SelectFrom(Clamp(selection.start), Clamp(selection.end));
    if (self.View() != nullptr)
        view->ScrollToOffset(lead);
}

bool TextData::Redo()
{
    if (!editable || history.Next() == nullptr)
        return false;
    CarryOutStep(UndoHistory::Side::Undone);
    return true;
}

}  // namespace BPrivate

using BPrivate::LineChange;
using BPrivate::TextData;
using BPrivate::UndoScope;
using BPrivate::UndoStep;
using BPrivate::UnrecordedScope;
using BPrivate::ViewRef;

// ---- Hooks of the text

void BTextView::InsertText(const char* text, int32 length, int32 offset, const text_run_array* runs)
{
    TextData& data = *fText;
    if (text == nullptr || length <= 0 || !data.Fits(length))
        return;
    offset = data.Clamp(offset);
    const int32 style =
        data.selStart == data.selEnd && offset == data.selStart ? data.caretStyle : -1;
    const UndoScope step(data, B_UNDO_PASTE);
    data.InvalidateCaret();
    LineChange change;
    if (!data.body.Insert(offset, text, length, &change))
        return;
    data.history.AddInsertion(offset, text, length);
    data.Added(offset, length);
    data.InvalidateChange(change);
    if (data.stylable && runs != nullptr) {
        data.ApplyRuns(offset, length, runs);
    } else if (style >= 0) {
        data.body.SetStyle(offset, offset + length, style);
        data.ChangedStyle(offset, offset + length);
    }
    data.Resized();
}

void BTextView::DeleteText(int32 fromOffset, int32 toOffset)
{
    TextData& data = *fText;
    fromOffset = data.Clamp(fromOffset);
    toOffset = data.Clamp(toOffset);
    if (fromOffset >= toOffset)
        return;
    const UndoScope step(data, B_UNDO_CLEAR);
    data.InvalidateCaret();
    data.history.AddRemoval(fromOffset, data.body.Buffer(), data.body.Runs(),
                            toOffset - fromOffset);
    LineChange change;
    data.body.Remove(fromOffset, toOffset, &change);
    data.Removed(fromOffset, toOffset);
    data.InvalidateChange(change);
    data.Resized();
}

// ---- Text

void BTextView::SetText(const char* text, const text_run_array* runs)
{
    SetText(text, text != nullptr ? int32(strnlen(text, INT32_MAX)) : 0, runs);
}

void BTextView::SetText(const char* text, int32 length, const text_run_array* runs)
{
    TextData& data = *fText;
    const ViewRef self(this);
    length = text != nullptr ? std::max(length, int32(0)) : 0;
    if (length > data.maxBytes)
        length =
            int32(BPrivate::utf8_fitting({text, size_t(length)}, size_t(data.maxBytes)).size());
    {
        const UnrecordedScope unrecorded(data);
        data.history.Clear();
        if (TextLength() > 0)
            DeleteText(0, TextLength());
        if (self.View() != nullptr && length > 0)
            InsertText(text, length, 0, runs);
    }
    if (self.View() == nullptr)
        return;
    data.history.Clear();
    data.SelectFrom(0, 0);
    if (self.View() != nullptr)
        ScrollToOffset(0);
}

void BTextView::SetText(BFile* file, int32 offset, int32 length, const text_run_array* runs)
{
    off_t size = 0;
    if (file == nullptr || file->GetSize(&size) != B_OK || offset < 0 || length < 0) {
        SetText("", int32(0), nullptr);
        return;
    }
    const off_t left = std::max<off_t>(size - offset, 0);
    std::string bytes;
    try {
        bytes.resize(size_t(std::min<off_t>(left, length)));
    } catch (const std::bad_alloc&) {
        return;
    }
    const ssize_t count = file->ReadAt(offset, bytes.data(), bytes.size());
    SetText(bytes.data(), int32(std::max<ssize_t>(count, 0)), runs);
}

void BTextView::Insert(const char* text, const text_run_array* runs)
{
    if (text != nullptr)
        Insert(text, int32(strnlen(text, INT32_MAX)), runs);
}

// The length is at most that of a text that ends before.
void BTextView::Insert(const char* text, int32 length, const text_run_array* runs)
{
    Insert(fText->selStart, text, length, runs);
}

void BTextView::Insert(int32 offset, const char* text, int32 length, const text_run_array* runs)
{
    TextData& data = *fText;
    if (text == nullptr || length <= 0)
        return;
    length = int32(strnlen(text, size_t(length)));
    if (length == 0 || !data.Fits(length))
        return;
    const UndoScope step(data, B_UNDO_PASTE);
    InsertText(text, length, data.Clamp(offset), runs);
}

void BTextView::Delete() { Delete(fText->selStart, fText->selEnd); }

void BTextView::Delete(int32 startOffset, int32 endOffset)
{
    fText->DeleteRange(startOffset, endOffset, B_UNDO_CLEAR);
}

const char* BTextView::Text() const
{
    const char* text = fText->body.Text();
    return text != nullptr ? text : "";
}

int32 BTextView::TextLength() const { return fText->body.Length(); }

void BTextView::GetText(int32 offset, int32 length, char* buffer) const
{
    if (buffer == nullptr)
        return;
    const int32 count = length > 0 ? fText->body.Buffer().Copy(offset, length, buffer) : 0;
    buffer[count] = '\0';
}

uint8 BTextView::ByteAt(int32 offset) const { return fText->body.Buffer().At(offset); }

// ---- Selection

void BTextView::Select(int32 startOffset, int32 endOffset)
{
    TextData& data = *fText;
    if (startOffset > endOffset)
        return;
    const int32 start = data.body.Aligned(startOffset);
    int32 end = data.body.Aligned(endOffset);
    if (end < data.Clamp(endOffset))
        end = data.body.Next(end);
    data.goalX = -1;
    data.anchor = start;
    data.lead = startOffset == endOffset ? start : end;
    data.SetSelection(start, data.lead);
}

void BTextView::SelectAll() { fText->SelectFrom(0, TextLength()); }

void BTextView::GetSelection(int32* _start, int32* _end) const
{
    if (_start != nullptr)
        *_start = fText->selStart;
    if (_end != nullptr)
        *_end = fText->selEnd;
}

// ---- Clipboard

static const char kPlain[] = "text/plain";
static const char kRuns[] = "application/x-vnd.Be-text_run_array";

namespace BPrivate {

void TextData::PutData(BMessage* data, int32 from, int32 to) const
{
    const std::string text = copied(body.Buffer(), from, to);
    data->AddData(kPlain, B_MIME_TYPE, text.data(), ssize_t(text.size()));
    if (!stylable)
        return;
    text_run_array* runs = view->RunArray(from, to);
    int32 size = 0;
    void* flat = runs != nullptr ? BTextView::FlattenRunArray(runs, &size) : nullptr;
    if (flat != nullptr)
        data->AddData(kRuns, B_MIME_TYPE, flat, size);
    free(flat);
    BTextView::FreeRunArray(runs);
}

bool TextData::TakeData(const BMessage* data, undo_state kind)
{
    const void* text;
    const void* flat;
    ssize_t length, size;
    if (data == nullptr || data->FindData(kPlain, B_MIME_TYPE, &text, &length) != B_OK)
        return false;
    const auto* bytes = static_cast<const char*>(text);
    length = ssize_t(strnlen(bytes, size_t(length)));
    if (length > INT32_MAX - 1)
        return false;
    text_run_array* runs = nullptr;
    if (stylable && data->FindData(kRuns, B_MIME_TYPE, &flat, &size) == B_OK) {
        int32 flatSize = int32(size);
        runs = BTextView::UnflattenRunArray(flat, &flatSize);
    }
    // The text may go with the message while hooks run.
    const std::string kept(bytes, size_t(length));
    const bool took = ReplaceSelection(kept.data(), int32(length), runs, kind);
    BTextView::FreeRunArray(runs);
    return took;
}

}  // namespace BPrivate

namespace {

// Holds a clipboard, if there is one; also where memory fails it is let go.
class ClipboardLock {
public:
    explicit ClipboardLock(BClipboard* clipboard)
        : fClipboard(clipboard != nullptr && clipboard->Lock() ? clipboard : nullptr)
    {
    }
    ~ClipboardLock()
    {
        if (fClipboard != nullptr)
            fClipboard->Unlock();
    }
    ClipboardLock(const ClipboardLock&) = delete;
    bool Held() const { return fClipboard != nullptr; }

private:
    BClipboard* const fClipboard;
};

}  // namespace

// Empties the clipboard, has it filled, and gives it to the others.
template <class Fill>
static bool fill_clipboard(BClipboard* clipboard, Fill fill)
{
    const ClipboardLock lock(clipboard);
    if (!lock.Held())
        return false;
    clipboard->Clear();
    BMessage* data = clipboard->Data();
    if (data != nullptr) {
        fill(data);
        clipboard->Commit();
    }
    return data != nullptr;
}

void BTextView::Copy(BClipboard* clipboard)
{
    TextData& data = *fText;
    if (data.hidesTyping || data.selStart == data.selEnd)
        return;
    fill_clipboard(clipboard,
                   [&](BMessage* message) { data.PutData(message, data.selStart, data.selEnd); });
}

void BTextView::Cut(BClipboard* clipboard)
{
    TextData& data = *fText;
    if (!data.editable || data.hidesTyping || data.selStart == data.selEnd)
        return;
    const bool copied = fill_clipboard(
        clipboard, [&](BMessage* message) { data.PutData(message, data.selStart, data.selEnd); });
    if (copied)
        data.ReplaceSelection("", 0, nullptr, B_UNDO_CUT);
}

bool BTextView::AcceptsPaste(BClipboard* clipboard)
{
    if (!fText->editable)
        return false;
    const ClipboardLock lock(clipboard);
    if (!lock.Held())
        return false;
    const BMessage* data = clipboard->Data();
    const bool accepts = data != nullptr && data->HasData(kPlain, B_MIME_TYPE);
    return accepts;
}

void BTextView::Paste(BClipboard* clipboard)
{
    if (!fText->editable || clipboard == nullptr || !AcceptsPaste(clipboard))
        return;
    BMessage copy;
    {
        const ClipboardLock lock(clipboard);
        const BMessage* data = lock.Held() ? clipboard->Data() : nullptr;
        if (data == nullptr)
            return;
        copy = *data;
    }
    fText->TakeData(&copy, B_UNDO_PASTE);
}

void BTextView::Clear()
{
    if (fText->editable && fText->selStart < fText->selEnd)
        fText->ReplaceSelection("", 0, nullptr, B_UNDO_CLEAR);
}

// ---- Undo

void BTextView::Undo(BClipboard*)
{
    TextData& data = *fText;
    if (!data.editable)
        return;
    if (data.history.Last() != nullptr)
        data.CarryOutStep(BPrivate::UndoHistory::Side::Done);
    else
        data.Redo();
}

undo_state BTextView::UndoState(bool* isRedo) const
{
    const UndoStep* last = fText->history.Last();
    const UndoStep* next = fText->history.Next();
    if (isRedo != nullptr)
        *isRedo = last == nullptr && next != nullptr;
    return last != nullptr ? last->kind : next != nullptr ? next->kind : B_UNDO_UNAVAILABLE;
}
