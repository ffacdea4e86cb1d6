#ifndef INTERFACE_TEXT_DATA_H
#define INTERFACE_TEXT_DATA_H

// What a BTextView holds, and what its families of calls share. With its window locked.

#include <Message.h>
#include <MessageRunner.h>
#include <Messenger.h>
#include <TextView.h>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "interface/text/TextBody.h"
#include "interface/text/UndoHistory.h"
#include "interface/view/ViewPrivate.h"

namespace BPrivate {

struct [[gnu::visibility("hidden")]] TextData
{
    TextData(BTextView * view, const BFont& font, rgb_color color);
    static TextData& Of(const BTextView* view) { return *view->fText; }

    BTextView* const view;
    TextBody body;
    UndoHistory history;

    // ---- Settings
    BRect textRect;
    BRect insets;              // as four widths
    bool followsView = false;  // the text rectangle keeps its insets
    bool stylable = false;
    bool wraps = true;
    bool selectable = true;
    bool editable = true;  // wanted, and not disabled
    bool wantsEditable = true;
    bool disabled = false;
    bool autoindent = false;
    bool hidesTyping = false;
    bool resizable = false;
    bool systemColors = false;
    BView* resizeView = nullptr;
    int32 maxBytes = INT32_MAX;
    alignment align = B_ALIGN_LEFT;
    color_space colors = B_CMAP8;
    std::set<uint32> disallowed;

    // ---- Selection
    int32 selStart = 0, selEnd = 0;
    int32 anchor = 0, lead = 0;  // where it began, and where it goes with the keys
    float goalX = -1;            // of the caret as it goes up and down; negative: where it is
    int32 caretStyle = -1;       // for what is typed next; -1: that of the text
    bool active = false;         // selection and caret show
    bool caretOn = false;
    bigtime_t blinkedAt = 0;

    // ---- What an input method makes
    struct Composed {
        BMessenger method;
        int32 offset = 0, length = 0;
        std::vector<std::pair<int32, int32>> clauses;  // from the offset
    };
    std::optional<Composed> composed;

    // ---- The pointer
    enum class Press { None, Selects, MayDrag };
    Press press = Press::None;
    BPoint pressedAt;
    int32 clicks = 1;
    int32 pressStart = 0, pressEnd = 0;  // what the press selected: a word, a line
    int32 dropAt = -1;                   // where what is dragged over the view would go
    std::unique_ptr<BMessageRunner> scroller;

    // ---- The text as it shows (TextViewPlaces.cpp)
    float Left(const LineTable::Place& line) const;
    float Top(const LineTable::Place& line) const { return textRect.top + float(line.top); }
    LineTable::Place LineOf(int32 offset) const { return body.Lines().AtOffset(offset); }
    BRect CaretRect(int32 offset) const;
    bool EndsParagraph(const LineTable::Place& line) const;  // by a line feed
    int32 LineEnd(const LineTable::Place& line) const;  // before the break or what hangs over it
    int32 Clamp(int32 offset) const;
    float LayoutWidth() const;  // 0 if lines are not broken

    // Calls `act` with the rectangle of each line's part between two offsets, as they meet `limit`.
    template <class Act>
    void EachRect(int32 start, int32 end, BRect limit, Act act) const;

    // ---- What has to be drawn anew
    void InvalidateRange(int32 start, int32 end);
    void InvalidateChange(const LineChange& change);
    void InvalidateCaret();
    // Lines are broken anew, all of them.
    void Relayout();
    void MendLines();  // those that there was no memory for
    void FollowInsets();
    // Scroll bars, and the frame of a view that follows its text.
    void Resized();
    void UpdateBars();
    void Activate(bool activate);
    void ShowEditable();
    void SetCaretOn(bool on);

    // ---- Edits (TextViewEdit.cpp)
    void Added(int32 offset, int32 length);
    void Removed(int32 from, int32 to);
    void ApplyRuns(int32 offset, int32 length, const text_run_array* runs);
    void InsertHook(const char* text, int32 length, int32 offset, const text_run_array* runs);
    void DeleteHook(int32 from, int32 to);
    bool Fits(int32 more) const { return more <= maxBytes - body.Length(); }
    // Puts a text in the place of the selection, as one step; false if it does not fit.
    bool ReplaceSelection(const char* text, int32 length, const text_run_array* runs,
                          undo_state kind);
    void DeleteRange(int32 from, int32 to, undo_state kind);
    TextSelection Selection() const { return {selStart, selEnd}; }
    bool CarryOut(TextEdit & edit, bool back);
    void CarryOutStep(UndoHistory::Side from);
    bool Redo();

    // ---- Selection
    // Through the hook, with the end that moves.
    void SelectFrom(int32 from, int32 to);
    void MoveCaret(int32 to, bool extend);
    // Without the hook.
    void SetSelection(int32 start, int32 end);

    // ---- Keys and pointer (TextViewKeys.cpp, TextViewPointer.cpp)
    bool RunKey(const char* bytes, int32 count, uint32 held);
    void ReplaceTyped(const char* text, int32 length);
    void Type(const char* bytes, int32 count);
    void Enter();
    void Erase(bool forward, bool word);
    void GoVertically(int32 lines, bool extend);
    void GoByPage(bool down, bool extend);
    int32 WordBefore(int32 offset) const;
    int32 WordBehind(int32 offset) const;
    void ExtendTo(BPoint where);
    void StartDrag();
    void AutoScroll();
    void ShowDrop(int32 offset);
    bool TakeDrop(BMessage * message);
    // What is selected, for other programs' middle button, and of theirs for ours.
    void TellSelected() const;
    bool InsertSelected(int32 offset);
    bool TakeData(const BMessage* data, undo_state kind);
    void PutData(BMessage * data, int32 from, int32 to) const;

    // ---- Input methods (TextViewComposition.cpp)
    void InputMethodEvent(const BMessage& message);
    void Compose(const BMessage& message);
    bool SetComposed(const std::string& text);
    void EndComposition();
    void TellPlaces(const BMessage& request) const;
    void DrawComposed(BRect update) const;

    bool Answer(BMessage * message);

    // ---- Styles
    void Restyle(int32 from, int32 to, const BFont* font, uint32 mode, const rgb_color* color);
    void Restyled(int32 from, const std::vector<StyleRun>& before);
    void ChangedStyle(int32 from, int32 to);
};

// One step of undo, to the end of a block; a view that went has none.
class [[gnu::visibility("hidden")]] UndoScope
{
public:
    UndoScope(TextData & text, undo_state kind) : fText(text), fSelf(text.view)
    {
        fText.history.Begin(kind, fText.Selection());
    }
    ~UndoScope()
    {
        if (fSelf.View() != nullptr)
            fText.history.End(fText.Selection());
    }
    UndoScope(const UndoScope&) = delete;
    UndoScope& operator=(const UndoScope&) = delete;
    bool IsThere() const { return fSelf.View() != nullptr; }  // the view

private:
    TextData& fText;
    const ViewRef fSelf;
};

// What is done to a text in a block is not written down.
class [[gnu::visibility("hidden")]] UnrecordedScope
{
public:
    explicit UnrecordedScope(TextData & text) : fText(text), fSelf(text.view)
    {
        fText.history.Suspend(true);
    }
    ~UnrecordedScope()
    {
        if (fSelf.View() != nullptr)
            fText.history.Suspend(false);
    }
    UnrecordedScope(const UnrecordedScope&) = delete;
    UnrecordedScope& operator=(const UnrecordedScope&) = delete;
    bool IsThere() const { return fSelf.View() != nullptr; }  // the view

private:
    TextData& fText;
    const ViewRef fSelf;
};

// The modifiers of the event that is being handled, which may be some time ago.
uint32 held_keys(const BView* view);

template <class Act>
void TextData::EachRect(int32 start, int32 end, BRect limit, Act act) const
{
    if (start >= end)
        return;
    const LineTable& lines = body.Lines();
    const auto above = double(limit.top - textRect.top);
    LineTable::Place from = lines.AtOffset(start);
    if (from.top + double(from.line.height) <= above)
        from = lines.AtHeight(above);
    lines.EachFrom(from.index, [&](const LineTable::Place& line) {
        const float top = Top(line);
        if (line.offset >= end || top > limit.bottom)
            return false;
        const int32 behind = line.offset + line.line.length;
        const float left = Left(line);
        float right = std::max(textRect.right, left + line.line.width);
        const bool whole = end > behind || (end == behind && EndsParagraph(line));
        if ((!whole || start > line.offset) && body.Turns(line)) {
            const float bottom = top + line.line.height - 1;
            for (const auto& span : body.Spans(line, start, end))
                act(BRect(left + span.left, top, left + span.right - 1, bottom));
            if (whole && right > left + line.line.width)
                act(BRect(left + line.line.width, top, right, bottom));
            return true;
        }
        if (!whole)
            right = left + body.XAt(line, end) - 1;
        const float x =
            start > line.offset ? left + body.XAt(line, start) : std::min(left, textRect.left);
        const float from_x = start > line.offset || whole ? x : left;
        if (right >= from_x)
            act(BRect(from_x, top, right, top + line.line.height - 1));
        return true;
    });
}

}  // namespace BPrivate

#endif  // INTERFACE_TEXT_DATA_H
