// BTextView: the keys.

#include <TextView.h>

#include <Looper.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <server/text/Characters.h>
#include <support/ValidUTF8.h>

#include "interface/text/TextData.h"
#include "interface/view/ViewPrivate.h"

namespace BPrivate {

uint32 held_keys(const BView* view)
{
    const BMessage* event = view->Looper() != nullptr ? view->Looper()->CurrentMessage() : nullptr;
    int32 held;
    return event != nullptr && event->FindInt32("modifiers", &held) == B_OK ? uint32(held)
                                                                            : modifiers();
}

// ---- Moving

// Over blanks, then over one word.
int32 TextData::WordBefore(int32 offset) const
{
    using server::CharacterClass;
    const auto kind = [&](int32 at) { return server::ClassOf(body.CharacterAt(at)); };
    const auto is_gap = [](CharacterClass c) {
        return c == CharacterClass::Blank || c == CharacterClass::LineFeed;
    };
    int32 at = offset;
    while (at > 0 && is_gap(kind(body.Previous(at))))
        at = body.Previous(at);
    if (at == 0)
        return 0;
    at = body.Previous(at);
    const CharacterClass word = kind(at);
    for (int32 before; at > 0; at = before) {
        before = body.Previous(at);
        if (kind(before) != word)
            break;
    }
    return at;
}

int32 TextData::WordBehind(int32 offset) const
{
    using server::CharacterClass;
    const int32 end = body.Length();
    const auto kind = [&](int32 at) { return server::ClassOf(body.CharacterAt(at)); };
    int32 at = offset;
    while (at < end && (kind(at) == CharacterClass::Blank || kind(at) == CharacterClass::LineFeed))
        at = body.Next(at);
    const CharacterClass word = at < end ? kind(at) : CharacterClass::Blank;
    while (at < end && kind(at) == word)
        at = body.Next(at);
    return at;
}

void TextData::GoVertically(int32 lines, bool extend)
{
    const LineTable::Place line = LineOf(lead);
    const float x = goalX >= 0 ? goalX : Left(line) + body.XAt(line, lead);
    const int32 to = line.index + lines;
    int32 offset = to < 0 ? 0 : body.Length();
    if (to >= 0 && to < body.Lines().CountLines()) {
        const LineTable::Place place = body.Lines().At(to);
        offset = body.OffsetAt(place, x - Left(place));
    }
    const ViewRef self(view);
    MoveCaret(offset, extend);
    if (self.View() != nullptr)
        goalX = x;
}

static const float kMostLines = 1 << 24;  // of a page, in a view of any height

void TextData::GoByPage(bool down, bool extend)
{
    const LineTable::Place line = LineOf(lead);
    const float height = view->Bounds().Height() + 1;
    const float room = std::floor(height / line.line.height) - 1;
    const int32 lines = room >= 1 ? int32(std::min(room, kMostLines)) : 1;
    const int32 last = body.Lines().CountLines() - 1;
    const int32 to = std::clamp(line.index + (down ? lines : -lines), int32(0), last);
    GoVertically(to == line.index ? (down ? 1 : -1) : to - line.index, extend);
}

// ---- Editing

void TextData::Enter()
{
    std::string text = "\n";
    if (autoindent) {
        int32 at = body.Buffer().LineStart(selStart);
        for (; at < selStart && (body.Buffer().At(at) == ' ' || body.Buffer().At(at) == '\t'); at++)
            text += char(body.Buffer().At(at));
    }
    ReplaceTyped(text.data(), int32(text.size()));
}

// Typing goes on with a step of undo where the caret stayed.
void TextData::ReplaceTyped(const char* text, int32 length)
{
    if (!Fits(length - (selEnd - selStart)))
        return;
    const bool plain = selStart == selEnd;
    const ViewRef self(view);
    {
        const UndoScope step(*this, B_UNDO_TYPING);
        int32 style = caretStyle;
        if (!plain) {
            style = body.Runs().At(selStart).style;
            DeleteHook(selStart, selEnd);
        }
        if (!step.IsThere())
            return;
        caretStyle = stylable ? style : -1;
        if (length > 0)
            InsertHook(text, length, selStart, nullptr);
    }
    if (self.View() == nullptr)
        return;
    SelectFrom(selEnd, selEnd);
    if (self.View() != nullptr)
        view->ScrollToOffset(lead);
}

void TextData::Erase(bool forward, bool word)
{
    int32 from = selStart, to = selEnd;
    if (from == to && forward)
        to = word ? WordBehind(from) : body.Next(from);
    else if (from == to)
        from = word ? WordBefore(to) : body.Previous(to);
    if (from == to)
        return;
    const ViewRef self(view);
    DeleteRange(from, to, B_UNDO_TYPING);
    if (self.View() == nullptr)
        return;
    SelectFrom(selStart, selStart);
    if (self.View() != nullptr)
        view->ScrollToOffset(lead);
}

void TextData::Type(const char* bytes, int32 count)
{
    uint32 code;
    next_character(std::string_view(bytes, size_t(count)), &code);
    if (disallowed.count(code) == 0)
        ReplaceTyped(bytes, count);
}

// False for a key that means nothing here.
bool TextData::RunKey(const char* bytes, int32 count, uint32 held)
{
    const bool extend = (held & B_SHIFT_KEY) != 0;
    const bool word = (held & B_CONTROL_KEY) != 0;
    const bool caret = selStart == selEnd || extend;
    const char key = count == 1 ? bytes[0] : '\0';
    if (!editable && (key == B_BACKSPACE || key == B_DELETE || key == B_ENTER || key == B_TAB))
        return false;
    if (!editable && !selectable)
        return false;
    const LineTable::Place line = LineOf(lead);
    switch (key) {
        case B_LEFT_ARROW:
            MoveCaret(word ? WordBefore(lead) : caret ? body.Previous(lead) : selStart, extend);
            return true;
        case B_RIGHT_ARROW:
            MoveCaret(word ? WordBehind(lead) : caret ? body.Next(lead) : selEnd, extend);
            return true;
        case B_UP_ARROW:
            GoVertically(-1, extend);
            return true;
        case B_DOWN_ARROW:
            GoVertically(1, extend);
            return true;
        case B_PAGE_UP:
        case B_PAGE_DOWN:
            GoByPage(key == B_PAGE_DOWN, extend);
            return true;
        case B_HOME:
            MoveCaret(word ? 0 : line.offset, extend);
            return true;
        case B_END:
            MoveCaret(word ? body.Length() : LineEnd(line), extend);
            return true;
        case B_BACKSPACE:
        case B_DELETE:
            Erase(key == B_DELETE, word);
            return true;
        case B_ENTER:
            if (disallowed.count('\n') == 0)
                Enter();
            return true;
        default:
            break;
    }
    if (!editable || count < 1 || (count == 1 && uint8(key) < ' ' && key != B_TAB))
        return false;
    Type(bytes, count);
    return true;
}

// True for the keys that select.
static bool moves(char key)
{
    switch (key) {
        case B_LEFT_ARROW:
        case B_RIGHT_ARROW:
        case B_UP_ARROW:
        case B_DOWN_ARROW:
        case B_HOME:
        case B_END:
        case B_PAGE_UP:
        case B_PAGE_DOWN:
            return true;
        default:
            return false;
    }
}

}  // namespace BPrivate

using BPrivate::held_keys;

// What a key means: with Control some send what others send, and letters send the arrows' codes.
// Zero for a letter.
static char meant_key(const BView* view, char key, uint32 held)
{
    const BMessage* event = view->Looper() != nullptr ? view->Looper()->CurrentMessage() : nullptr;
    int32 plain;
    if ((held & B_CONTROL_KEY) == 0 || event == nullptr ||
        event->FindInt32("raw_char", &plain) != B_OK || plain == 0)
        return key;
    return plain < ' ' || plain == B_DELETE ? char(plain) : '\0';
}

void BTextView::KeyDown(const char* bytes, int32 numBytes)
{
    if (bytes == nullptr || numBytes < 1)
        return;
    const uint32 held = held_keys(this);
    const char key = numBytes == 1 ? meant_key(this, bytes[0], held) : bytes[0];
    const bool navigates = key == B_TAB && (held & B_OPTION_KEY) != 0;
    const bool means_nothing = numBytes == 1 && key == '\0';
    const BPrivate::ViewRef self(this);
    if (navigates || means_nothing || !fText->RunKey(numBytes == 1 ? &key : bytes, numBytes, held))
        BView::KeyDown(bytes, numBytes);
    else if (self.View() != nullptr && (held & B_SHIFT_KEY) != 0 && BPrivate::moves(key))
        fText->TellSelected();
}
