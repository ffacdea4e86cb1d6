// Text editors. Hooks run on the window's thread, calls on any thread with the window locked.

#include "files/filesystem.h"
#include "files/whole_file.h"
#include "gadgets/kinds.h"
#include "gadgets/text_search.h"
#include "graphics/fonts.h"
#include "graphics/raster_port.h"
#include "plinth.h"
#include "runtime/guarded.h"
#include "runtime/ring.h"
#include "runtime/strings.h"
#include "windows/drawing_view.h"
#include "windows/timers.h"

#include <Clipboard.h>
#include <Input.h>
#include <ScrollBar.h>
#include <TextView.h>

#include <algorithm>
#include <errno.h>
#include <exception>
#include <iterator>
#include <math.h>
#include <string.h>
#include <string>
#include <utility>

static const int32_t kLineText = 256;  // bytes of a line that a program gets

namespace {

class MyBTextView : public BTextView {
public:
    MyBTextView(MyGadget* gadget, BRect frame);

    void AllAttached() override
    {
        BTextView::AllAttached();
        keep_timer_rate(this);
    }
    // A press, and what takes the keyboard away, end a composition and keep what it made.
    void MouseDown(BPoint where) override
    {
        ByUser([&] { BTextView::MouseDown(where); });
        _TellComposed();
    }
    void MakeFocus(bool focused) override
    {
        BTextView::MakeFocus(focused);
        if (!focused)
            _TellComposed();
    }
    void WindowActivated(bool active) override
    {
        BTextView::WindowActivated(active);
        if (!active)
            _TellComposed();
    }
    void MouseMoved(BPoint where, uint32 transit, const BMessage* dragged) override
    {
        ByUser([&] { BTextView::MouseMoved(where, transit, dragged); });
    }
    void MouseUp(BPoint where) override
    {
        ByUser([&] { BTextView::MouseUp(where); });
    }
    void KeyDown(const char* bytes, int32 count) override
    {
        ByUser([&] { BTextView::KeyDown(bytes, count); });
        if (count > 0 && fGadget->ident != 0)
            call_key_handler(this, *fGadget, bytes);
    }
    void MessageReceived(BMessage* message) override;
    void Draw(BRect update) override;
    bool AcceptsPaste(BClipboard* clipboard) override;
    bool AcceptsDrop(const BMessage* message) override;
    void Select(int32 start, int32 end) override;

    // The end of the selection that moves.
    int32_t Caret() const
    {
        int32 start, end;
        GetSelection(&start, &end);
        return fMovesStart ? start : end;
    }

protected:
    void InsertText(const char* text, int32 length, int32 offset,
                    const text_run_array* runs) override
    {
        BTextView::InsertText(text, length, offset, runs);
        fChanged = true;
    }
    void DeleteText(int32 from, int32 to) override
    {
        BTextView::DeleteText(from, to);
        fChanged = true;
    }

private:
    // Does what the user wants, and tells the program if that changed the text.
    template <class Action>
    void ByUser(Action act)
    {
        fChanged = false;
        act();
        if (fChanged)
            _Tell();
    }
    void _Tell() { call_handler(*fGadget, &MyGadget::value_handler, int32_t{TextLength()}); }
    void _Compose(BMessage* message);
    void _TellComposed();

    MyGadget* const fGadget;
    DroppedFiles fDropped;
    bool fMovesStart = false;  // of the selection, rather than its end
    bool fChanged = false;
    bool fComposed = false;     // changed by an input method, and not told yet
    int32_t fLengthBefore = 0;  // when the composition began
};

}  // namespace

MyBTextView::MyBTextView(MyGadget* gadget, BRect frame)
    : BTextView(frame, nullptr, BRect(0, 0, ceilf(frame.Width()), ceilf(frame.Height())),
                B_FOLLOW_NONE, B_WILL_DRAW),
      fGadget(gadget)
{
    SetStylable(true);
    SetInsets(0, 0, 0, 0);  // lines are broken at the view's edge, also when that moves
}

void MyBTextView::MessageReceived(BMessage* message)
{
    if (message->WasDropped() && message->HasRef("refs")) {
        // Files are no text, but something that the program may open.
        fDropped.Pass(message, reinterpret_cast<DroppedFiles::Handler>(
                                   handler_in(*fGadget, &MyGadget::drop_handler)));
        BView::MessageReceived(message);
        return;
    }
    if (message->what == B_INPUT_METHOD_EVENT)
        _Compose(message);
    else
        ByUser([&] { BTextView::MessageReceived(message); });
}

// The steps to a text that an input method makes are one change, told when it is done.
void MyBTextView::_Compose(BMessage* message)
{
    const int32 step = message->GetInt32("be:opcode", -1);
    if (step == B_INPUT_METHOD_STARTED)
        fLengthBefore = TextLength();
    fChanged = false;
    BTextView::MessageReceived(message);
    fComposed = fComposed || fChanged;
    if (step == B_INPUT_METHOD_STOPPED) {
        _TellComposed();
    } else if (fComposed && message->GetBool("be:confirmed", false)) {
        fComposed = false;
        fLengthBefore = TextLength();
        _Tell();
    }
}

// What was cancelled leaves the text as it was, unless it took the place of a selection.
void MyBTextView::_TellComposed()
{
    if (std::exchange(fComposed, false) && TextLength() != fLengthBefore)
        _Tell();
}

void MyBTextView::Draw(BRect update)
{
    for (const orientation direction : {B_HORIZONTAL, B_VERTICAL}) {
        if (BScrollBar* bar = ScrollBar(direction))
            bar->Invalidate();
    }
    BTextView::Draw(update);
}

// Both accept whatever they find: kept on purpose. What has no text changes nothing.

bool MyBTextView::AcceptsPaste(BClipboard*) { return true; }

bool MyBTextView::AcceptsDrop(const BMessage*) { return true; }

void MyBTextView::Select(int32 start, int32 end)
{
    int32 former_start, former_end;
    GetSelection(&former_start, &former_end);
    BTextView::Select(start, end);
    GetSelection(&start, &end);
    fMovesStart = start != former_start && end == former_end;
}

BView* create_tedit(const GadgetSpec& spec)
{
    const int32_t bars = spec.kind - kTextEditor;
    auto* editor = new MyBTextView(spec.record, spec.frame);
    if (bars != 0)
        editor->SetResizingMode(B_FOLLOW_ALL_SIDES);
    return with_bars(editor, (bars & 1) != 0, (bars & 2) != 0);
}

// --- calls

template <class Action>
static void on_editor(int32_t ident, Action act)
{
    const GadgetAccess gadget(ident, kTextEditor);
    if (auto* editor = gadget ? dynamic_cast<MyBTextView*>(shown_view(gadget.View())) : nullptr)
        guarded([&] { act(*editor); });
}

// Asks an editor for a number.
template <class Ask>
static int32_t ask_editor(int32_t ident, int32_t otherwise, Ask ask)
{
    on_editor(ident, [&](MyBTextView& editor) { otherwise = ask(editor); });
    return otherwise;
}

static std::string_view text_of(const BTextView& editor)
{
    return {editor.Text(), static_cast<size_t>(editor.TextLength())};
}

// The part between two places, whichever is first.
template <class Action>
static void on_part(int32_t ident, int32_t from, int32_t to, Action act)
{
    on_editor(ident, [&](MyBTextView& editor) {
        const int32_t length = editor.TextLength();
        const auto [start, end] =
            std::minmax({std::clamp(from, 0, length), std::clamp(to, 0, length)});
        act(editor, start, end);
    });
}

static void insert_text(BTextView& editor, const char* text)
{
    int32 start, end;
    editor.GetSelection(&start, &end);
    const int32 before = editor.TextLength();
    editor.Insert(text);
    const int32 caret = start + editor.TextLength() - before;
    editor.Select(caret, caret);
}

extern "C" void TEditSetTextCommand(int32_t ident, const char* text, int8_t insert)
{
    on_editor(ident, [=](MyBTextView& editor) {
        if (insert != 0)
            insert_text(editor, text_or_empty(text));
        else
            editor.SetText(text_or_empty(text));
    });
}

extern "C" void TEditSetText(int32_t ident, const char* text)
{
    TEditSetTextCommand(ident, text, 0);
}

extern "C" void TEditInsertText(int32_t ident, const char* text)
{
    TEditSetTextCommand(ident, text, 1);
}

extern "C" void TEditSetMaxSize(int32_t ident, int32_t maximum)
{
    on_editor(ident, [=](MyBTextView& editor) { editor.SetMaxBytes(maximum); });
}

extern "C" void TEditGotoLine(int32_t ident, int32_t line)
{
    on_editor(ident, [=](MyBTextView& editor) { editor.GoToLine(line); });
}

extern "C" void TEditSetTabWidth(int32_t ident, int32_t width)
{
    on_editor(ident, [=](MyBTextView& editor) { editor.SetTabWidth(static_cast<float>(width)); });
}

using EditorCommand = void (*)(BTextView& editor, bool flag);

// By number.
static const EditorCommand kEditorCommands[] = {
    [](BTextView& editor, bool flag) { editor.SetWordWrap(flag); },
    [](BTextView& editor, bool flag) { editor.SetAutoindent(flag); },
    [](BTextView& editor, bool flag) { editor.MakeEditable(flag); },
    [](BTextView& editor, bool flag) { editor.MakeSelectable(flag); },
};

extern "C" void TEditCommand(int32_t ident, int32_t command, int8_t flag)
{
    if (command >= 0 && command < static_cast<int32_t>(std::size(kEditorCommands)))
        on_editor(ident, [=](MyBTextView& editor) { kEditorCommands[command](editor, flag != 0); });
}

extern "C" void TEditWordWrap(int32_t ident, int8_t flag) { TEditCommand(ident, 0, flag); }
extern "C" void TEditAutoIdent(int32_t ident, int8_t flag) { TEditCommand(ident, 1, flag); }
extern "C" void TEditMakeEditable(int32_t ident, int8_t flag) { TEditCommand(ident, 2, flag); }
extern "C" void TEditMakeSelectable(int32_t ident, int8_t flag) { TEditCommand(ident, 3, flag); }

extern "C" int32_t TEditCountLines(int32_t ident)
{
    return ask_editor(ident, 0, [](MyBTextView& editor) { return editor.CountLines(); });
}

extern "C" int32_t TEditGetSize(int32_t ident)
{
    return ask_editor(ident, 0, [](MyBTextView& editor) { return editor.TextLength(); });
}

extern "C" char* TEditGetLine(int32_t ident, int32_t line)
{
    char* const text = ring_slot(0);
    fill_bytes(text, '\0', kLineText + 1);
    on_editor(ident, [=](MyBTextView& editor) {
        if (line >= editor.CountLines())
            return;
        const int32_t start = editor.OffsetAt(std::max(line, 0));
        editor.GetText(start, std::min(kLineText, editor.TextLength() - start), text);
        if (auto* end = static_cast<char*>(memchr(text, '\n', kLineText)))
            fill_bytes(end, '\0', static_cast<size_t>(text + kLineText - end));
    });
    return text;
}

// --- ours: the whole text, the selection, searching, styles

extern "C" char* TEditGetAll(int32_t ident)
{
    char* block = nullptr;
    on_editor(ident, [&](MyBTextView& editor) {
        const int32_t length = editor.TextLength();
        block = static_cast<char*>(MyAlloc(static_cast<size_t>(length) + 1));
        if (block != nullptr)
            editor.GetText(0, length, block);
    });
    return block;
}

extern "C" int32_t TEditGetSelection(int32_t ident, int32_t which)
{
    return ask_editor(ident, 0, [=](MyBTextView& editor) {
        int32 start, end;
        editor.GetSelection(&start, &end);
        return which == 0 ? start : which == 1 ? end : 0;
    });
}

extern "C" int32_t TEditCaret(int32_t ident)
{
    return ask_editor(ident, 0, [](MyBTextView& editor) { return editor.Caret(); });
}

extern "C" int32_t TEditLineAt(int32_t ident, int32_t offset)
{
    return ask_editor(ident, 0, [=](MyBTextView& editor) {
        return editor.LineAt(std::clamp(offset, 0, editor.TextLength()));
    });
}

extern "C" int32_t TEditLineStart(int32_t ident, int32_t line)
{
    return ask_editor(ident, 0, [=](MyBTextView& editor) {
        return line < editor.CountLines() ? editor.OffsetAt(std::max(line, 0))
                                          : editor.TextLength();
    });
}

extern "C" void TEditSelect(int32_t ident, int32_t from, int32_t to)
{
    on_part(ident, from, to, [](MyBTextView& editor, int32_t start, int32_t end) {
        editor.Select(start, end);
        editor.ScrollToSelection();
    });
}

static const int32_t kFurther = -2;

// Looks no further than `reach` bytes from a place. Also kFurther: it may stand beyond.
static int32_t find_near(const BTextView& editor, std::string_view wanted, int32_t from,
                         int32_t flags, int64_t reach)
{
    static const int32_t kCharacter = 4;  // bytes at most
    const bool backwards = (flags & kBackwards) != 0;
    const int64_t length = editor.TextLength();
    const int64_t start = std::max(from - (backwards ? reach : kCharacter), int64_t{0});
    const int64_t end = std::min(from + (backwards ? kCharacter : reach), length);
    std::string part(static_cast<size_t>(end - start) + 1, '\0');
    editor.GetText(static_cast<int32>(start), static_cast<int32>(end - start), part.data());
    part.pop_back();
    const int64_t found = find_text(part, wanted, static_cast<int32_t>(from - start), flags);
    // Neither what was found nor the characters beside it may be cut off.
    const auto longest = static_cast<int64_t>(kCharacter * (wanted.size() + 2));
    const bool is_sure = backwards
                             ? start == 0 || found >= kCharacter
                             : end == length || (found >= 0 && found + longest <= end - start);
    if (!is_sure)
        return kFurther;
    return found < 0 ? -1 : static_cast<int32_t>(start + found);
}

// All bytes in a row are made of a text only where nothing is found nearby: who replaces one place
// after another would have it made each time.
static int32_t find_in(const BTextView& editor, std::string_view wanted, int32_t from,
                       int32_t flags)
{
    if (wanted.empty())
        return -1;
    for (const int64_t reach : {1 << 12, 1 << 16, 1 << 20}) {
        const int32_t found = find_near(editor, wanted, from, flags, reach);
        if (found != kFurther)
            return found;
    }
    return find_text(text_of(editor), wanted, from, flags);
}

extern "C" int32_t TEditFind(int32_t ident, const char* text, int32_t from, int32_t flags)
{
    return ask_editor(ident, -1, [=](MyBTextView& editor) {
        const int32_t place = std::clamp(from, 0, editor.TextLength());
        return find_in(editor, text_or_empty(text), place, flags);
    });
}

extern "C" void TEditReplaceSelection(int32_t ident, const char* text)
{
    on_editor(ident, [=](MyBTextView& editor) {
        editor.Delete();
        insert_text(editor, text_or_empty(text));
    });
}

extern "C" void TEditUndo(int32_t ident)
{
    on_editor(ident, [](MyBTextView& editor) {
        bool is_redo;
        if (editor.UndoState(&is_redo) != B_UNDO_UNAVAILABLE && !is_redo)
            editor.Undo(be_clipboard);
    });
}

extern "C" void TEditRedo(int32_t ident)
{
    on_editor(ident, [](MyBTextView& editor) {
        BMessage redo(B_REDO);
        editor.BTextView::MessageReceived(&redo);
    });
}

extern "C" void TEditSetColor(int32_t ident, int32_t from, int32_t to, int32_t color)
{
    const rgb_color ink = GetRgbFromInteger(static_cast<uint32_t>(color));
    on_part(ident, from, to, [&](MyBTextView& editor, int32_t start, int32_t end) {
        editor.SetFontAndColor(start, end, nullptr, B_FONT_ALL, &ink);
    });
}

extern "C" void TEditSetFont(int32_t ident, int32_t from, int32_t to, int32_t font_ident)
{
    BFont font;
    if (!Find_Font(font_ident, &font))
        return;
    on_part(ident, from, to, [&](MyBTextView& editor, int32_t start, int32_t end) {
        editor.SetFontAndColor(start, end, &font, B_FONT_ALL);
    });
}

// --- ours: files

extern "C" bool TEditLoadFile(int32_t ident, const char* path)
try {
    const int32_t most =
        ask_editor(ident, -1, [](MyBTextView& editor) { return editor.MaxBytes(); });
    if (most < 0)
        return false;
    std::string bytes;
    // Read before the window is locked: a disk may be slow.
    if (!read_whole_file(text_or_empty(path), static_cast<size_t>(most), &bytes))
        return keep_file_error(__func__);
    bool shown = false;
    on_editor(ident, [&](MyBTextView& editor) {
        editor.SetText(bytes.data(), static_cast<int32>(bytes.size()));
        shown = true;
    });
    return shown || no_memory(__func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" bool TEditSaveFile(int32_t ident, const char* path)
try {
    bool found = false, copied = false;
    std::string bytes;
    on_editor(ident, [&](MyBTextView& editor) {
        found = true;
        bytes = text_of(editor);
        copied = true;
    });
    if (!found)
        return false;
    if (!copied)
        return no_memory(__func__);
    return replace_whole_file(text_or_empty(path), bytes) || keep_file_error(__func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}
