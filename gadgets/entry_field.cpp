// Entry fields: one line of text, or a number, of which a filter takes the keys that fit. Keys and
// clicks come on the window's thread; calls have the window locked, and leave a field alone that
// is in no window: kept on purpose.

#include "gadgets/entry_rules.h"
#include "gadgets/hidden_text.h"
#include "gadgets/kinds.h"
#include "gadgets/text_entry.h"
#include "plinth.h"
#include "runtime/guarded.h"
#include "runtime/strings.h"
#include "runtime/thread_text.h"
#include "windows/screen_reader.h"
#include "windows/timers.h"

#include <Clipboard.h>
#include <InterfaceDefs.h>
#include <MenuField.h>
#include <MessageFilter.h>
#include <ScrollView.h>
#include <StringView.h>
#include <TextControl.h>
#include <TextView.h>
#include <Window.h>

#include <algorithm>
#include <iterator>
#include <stdio.h>
#include <string>
#include <utility>

static const int32_t kMaximum = 15;           // bytes, of a new field
static const int32_t kPasswordMaximum = 256;  // of one that becomes a password
static const char kMask = '*';

namespace {

class PassControl : public BTextControl, public TextEntry {
public:
    PassControl(const GadgetSpec& spec, int32_t filter, int32_t maximum);

    void AllAttached() override
    {
        BTextControl::AllAttached();
        keep_timer_rate(this);
        ComeIntoWindow();
    }
    void DetachedFromWindow() override
    {
        LeaveWindow();
        BTextControl::DetachedFromWindow();
    }
    void MouseDown(BPoint where) override;
    void MakeFocus(bool focus = true) override;
    status_t Perform(perform_code code, void* data) override;

    const char* EntryText() const override { return _Told({Text(), size_t(TextLength())}); }

    // What becomes of a key on its way to the text view.
    filter_result FilterKey(BMessage* message, BHandler** target);

    void SetFilter(int32_t filter);
    void SetMaximum(int32_t maximum);
    void Show(const char* text);
    void ShowNumber(int32_t number);

    void* fEnterHandler = nullptr;  // window's lock

private:
    filter_result _Act(EntryAction action, BMessage* message, BHandler** target);
    filter_result _Tell();
    void _PushMasked(BMessage* message);
    void _Enter(const char* text);
    const char* _Told(std::string_view text) const
    {
        fTold = text;
        return fTold.c_str();
    }
    void _FocusBack();

    int8_t (*fCharacterCheck)(int32_t key) = nullptr;
    HiddenText fHidden;
    // What a handler is told, which may change the field, or close the window and never return.
    mutable std::string fTold;
    MyGadget* const fGadget;
    int32_t fFilter = kNoFilter;
    const bool fInputEnabled = true;  // keys are swallowed while it is not
};

class KeyFilter : public BMessageFilter {
public:
    explicit KeyFilter(PassControl* field)
        : BMessageFilter(B_ANY_DELIVERY, B_ANY_SOURCE, B_KEY_DOWN), fField(field)
    {
    }
    filter_result Filter(BMessage* message, BHandler** target) override
    {
        return fField->FilterKey(message, target);
    }

private:
    PassControl* const fField;
};

}  // namespace

PassControl::PassControl(const GadgetSpec& spec, int32_t filter, int32_t maximum)
    : BTextControl(spec.frame, nullptr, spec.Text(), nullptr, nullptr, B_FOLLOW_NONE,
                   B_WILL_DRAW | B_NAVIGABLE),
      TextEntry(spec.record->ident),
      fGadget(spec.record)
{
    TextView()->AddFilter(new KeyFilter(this));
    TextView()->SetMaxBytes(std::max(maximum, 1));
    SetFilter(filter);
}

void PassControl::SetFilter(int32_t filter)
{
    fFilter = filter;
    if (filter == kPasswordFilter && TextView()->MaxBytes() > kPasswordMaximum)
        SetMaximum(kPasswordMaximum);
    // What an input method composes goes past the filter, and would show a password.
    const uint32 flags = TextView()->Flags();
    const bool takes_any = filter == kNoFilter || filter == kSecondNoFilter;
    TextView()->SetFlags(takes_any ? flags | B_INPUT_METHOD_AWARE : flags & ~B_INPUT_METHOD_AWARE);
}

void PassControl::SetMaximum(int32_t maximum)
{
    TextView()->SetMaxBytes(maximum);
    fHidden.Cut(TextView()->MaxBytes());
}

void PassControl::Show(const char* text)
{
    SetText(text);
    fHidden.Set({Text(), static_cast<size_t>(TextLength())});
}

// A negative number loses its sign where one may be typed: kept on purpose. No field forbids it.
void PassControl::ShowNumber(int32_t number)
{
    if (fFilter != kIntegerFilter)
        return;
    char text[16];
    const auto bits = static_cast<uint32_t>(number);
    snprintf(text, sizeof(text), "%u", number < 0 ? 0u - bits : bits);
    Show(text);
}

// --- keys

filter_result PassControl::FilterKey(BMessage* message, BHandler** target)
{
    int8 key;
    if (!fInputEnabled || message->FindInt8("byte", &key) != B_OK)
        return B_SKIP_MESSAGE;
    int32 held = 0, end;
    message->FindInt32("modifiers", &held);
    EntryState state;
    state.text = {Text(), static_cast<size_t>(TextLength())};
    state.character_check = fCharacterCheck;
    TextView()->GetSelection(&state.selection, &end);
    const EntryAction action =
        entry_action(fFilter, static_cast<uint8_t>(key), static_cast<uint32_t>(held), state);
    if (action == EntryAction::Push)
        fHidden.PushChar(static_cast<char>(key), TextView()->MaxBytes());
    return _Act(action, message, target);
}

filter_result PassControl::_Act(EntryAction action, BMessage* message, BHandler** target)
{
    switch (action) {
        case EntryAction::Pass:
            return B_DISPATCH_MESSAGE;
        case EntryAction::Tell:
        case EntryAction::Push:
            return _Tell();
        case EntryAction::Pop:
            fHidden.PopChar();
            return _Tell();
        case EntryAction::PushMasked:
            _PushMasked(message);
            return _Tell();
        case EntryAction::LeaveForwards:
            *target = this;
            return _Tell();
        case EntryAction::LeaveBackwards:
            _FocusBack();
            break;
        case EntryAction::EnterShown:
            _Enter(EntryText());
            break;
        case EntryAction::EnterHidden:
            _Enter(_Told(fHidden.Text()));
            break;
        case EntryAction::FocusNext:
            if (BView* next = NextSibling())
                next->MakeFocus(true);
            break;
        case EntryAction::DropFocus:
            MakeFocus(false);
            break;
        case EntryAction::Skip:
            break;
    }
    return B_SKIP_MESSAGE;
}

// The key goes on. The message arrives when it has changed the text.
filter_result PassControl::_Tell()
{
    if (fInputHandler != nullptr && Window() != nullptr) {
        BMessage message(kClickMessage);
        NameIn(&message);
        Window()->PostMessage(&message);
    }
    return B_DISPATCH_MESSAGE;
}

// The window finds no shortcut in the key that is left, which comes to the text view.
void PassControl::_PushMasked(BMessage* message)
{
    int8 key = 0;
    int32 held = 0;
    message->FindInt8("byte", &key);
    message->FindInt32("modifiers", &held);
    fHidden.PushChar(static_cast<char>(key), TextView()->MaxBytes());
    const char text[] = {kMask, '\0'};
    message->ReplaceInt8("byte", kMask);
    message->ReplaceString("bytes", text);
    message->ReplaceInt32("raw_char", kMask);
    message->ReplaceInt32("modifiers",
                          held & ~(B_COMMAND_KEY | B_LEFT_COMMAND_KEY | B_RIGHT_COMMAND_KEY));
}

// The handler may kill the field, which then lives on until this key is done.
void PassControl::_Enter(const char* text)
{
    if (auto* handler = reinterpret_cast<int32_t (*)(const char*)>(fEnterHandler))
        handler(text);
    TextView()->MakeFocus(false);
}

static bool takes_focus(const BView* view)
{
    if (auto* control = dynamic_cast<const BControl*>(view))
        return control->IsEnabled();
    const auto* field = dynamic_cast<const BMenuField*>(view);
    return field != nullptr && field->IsEnabled();
}

// Back to the nearest sibling that can have the focus. Only the first of them all goes round to the
// last: kept on purpose.
void PassControl::_FocusBack()
{
    BView* view = PreviousSibling();
    if (view == nullptr && Parent() != nullptr)
        view = Parent()->ChildAt(Parent()->CountChildren() - 1);
    while (view != nullptr && !takes_focus(view))
        view = view->PreviousSibling();
    if (view != nullptr)
        view->MakeFocus(true);
}

// --- hooks

void PassControl::MouseDown(BPoint where)
{
    const int32_t buttons = pressed_buttons(this);
    if (!IsEnabled())
        return;
    if (buttons == B_PRIMARY_MOUSE_BUTTON)
        tell_press(this, *fGadget);
    else if (buttons == B_SECONDARY_MOUSE_BUTTON)
        open_attached_menu(this, *fGadget, where);
}

void PassControl::MakeFocus(bool focus)
{
    if (!focus || IsEnabled())
        BTextControl::MakeFocus(focus);
}

status_t PassControl::Perform(perform_code code, void* data)
{
    if (code != kTellReader || data == nullptr)
        return BTextControl::Perform(code, data);
    return static_cast<BMessage*>(data)->AddBool(kReaderPassword, fFilter == kPasswordFilter);
}

// --- creation

BView* create_string(const GadgetSpec& spec)
{
    return new PassControl(spec, kTextFilter, kMaximum);
}

static int32_t filter_of(int32_t kind)
{
    static const std::pair<int32_t, int32_t> kFilters[] = {
        {4, kIntegerFilter}, {5, kPasswordFilter}, {6, kDecimalFilter},   {36, kDateFilter},
        {37, kTimeFilter},   {45, kNoFilter},      {46, kSecondNoFilter},
    };
    const auto* row = std::find_if(std::begin(kFilters), std::end(kFilters),
                                   [=](const auto& each) { return each.first == kind; });
    return row != std::end(kFilters) ? row->second : int32_t{kNoFilter};
}

BView* create_integer(const GadgetSpec& spec)
{
    return new PassControl(spec, filter_of(spec.kind), kMaximum);
}

// --- calls

template <class Action>
static void on_field(int32_t ident, Action act)
{
    on_gadget<PassControl>(ident, kStringField, Unlocked::Skip,
                           [&](PassControl& field, MyGadget&) { guarded([&] { act(field); }); });
}

extern "C" void SetString(int32_t ident, const char* text)
{
    on_field(ident, [=](PassControl& field) { field.Show(text_or_empty(text)); });
}

extern "C" void SetInteger(int32_t ident, int32_t value)
{
    on_field(ident, [=](PassControl& field) { field.ShowNumber(value); });
}

extern "C" const char* GetString(int32_t ident)
{
    // Handlers ask for it on their windows' threads.
    static thread_local std::string* tText = nullptr;
    std::string* text = thread_text(&tText);
    if (text == nullptr)
        return "";
    text->clear();
    on_gadget<PassControl>(ident, kStringField, Unlocked::Act, [=](PassControl& field, MyGadget&) {
        guarded([&] { text->assign(field.Text(), static_cast<size_t>(field.TextLength())); });
    });
    return text->c_str();
}

extern "C" const char* TEditGetText(int32_t ident) { return GetString(ident); }

extern "C" void SetMaxSizeString(int32_t ident, int32_t maximum)
{
    on_field(ident, [=](PassControl& field) { field.SetMaximum(maximum); });
}

extern "C" void SetFilterString(int32_t ident, int32_t type)
{
    if (type >= 0 && type < kEntryFilters)
        on_field(ident, [=](PassControl& field) { field.SetFilter(type); });
}

extern "C" void SetStringEnterHandler(int32_t ident, void* handler)
{
    on_field(ident, [=](PassControl& field) { field.fEnterHandler = handler; });
}

extern "C" void SetStringInputHandler(int32_t ident, void* handler)
{
    on_field(ident, [=](PassControl& field) { field.fInputHandler = handler; });
}

extern "C" void MakeStringSelectable(int32_t ident, int32_t mode, int8_t flag)
{
    on_field(ident, [=](PassControl& field) {
        if (mode == 0)
            field.TextView()->MakeEditable(flag != 0);
        else if (mode == 1)
            field.TextView()->MakeSelectable(flag != 0);
    });
}

extern "C" void MakeEditable(int32_t ident, int8_t flag) { MakeStringSelectable(ident, 0, flag); }
extern "C" void MakeSelectable(int32_t ident, int8_t flag) { MakeStringSelectable(ident, 1, flag); }

// From the label's end if the place is negative.
template <class Labelled>
static void set_divider(Labelled& view, int32_t place)
{
    const auto offset = static_cast<float>(place);
    view.SetDivider(place >= 0 ? offset : view.StringWidth(text_or_empty(view.Label())) - offset);
}

extern "C" void SetDiviser(int32_t ident, int32_t place)
{
    on_field(ident, [=](PassControl& field) { set_divider(field, place); });
    on_gadget<BMenuField>(ident, kChoiceField, Unlocked::Skip, [=](BMenuField& field, MyGadget&) {
        guarded([&] { set_divider(field, place); });
    });
}

extern "C" void SetTextString(int32_t ident, const char* text)
{
    on_gadget<BStringView>(ident, kTextLabel, Unlocked::Skip, [=](BStringView& view, MyGadget&) {
        guarded([&] { view.SetText(text); });
    });
}

extern "C" void SetNumberString(int32_t ident, int32_t value)
{
    on_gadget<BStringView>(ident, kNumberLabel, Unlocked::Skip, [=](BStringView& view, MyGadget&) {
        guarded([&] { view.SetText(std::to_string(value).c_str()); });
    });
}

// --- the selection, of fields and of editors

using TextCommand = void (*)(BTextView& text);

static void select_none(BTextView& text)
{
    int32 start, end;
    text.GetSelection(&start, &end);
    text.Select(start, start);
}

// By number.
static const TextCommand kCommands[] = {
    [](BTextView& text) { text.Clear(); },
    [](BTextView& text) { text.Cut(be_clipboard); },
    [](BTextView& text) { text.Copy(be_clipboard); },
    [](BTextView& text) { text.Paste(be_clipboard); },
    [](BTextView& text) { text.SelectAll(); },
    select_none,
};

extern "C" void SelectCommand(int32_t ident, int32_t command)
{
    if (command < 0 || command >= static_cast<int32_t>(std::size(kCommands)))
        return;
    on_gadget<BView>(ident, GadgetAccess::kAnyFamily, Unlocked::Skip, [=](BView& view, MyGadget&) {
        auto* field = dynamic_cast<BTextControl*>(&view);
        auto* text =
            field != nullptr ? field->TextView() : dynamic_cast<BTextView*>(shown_view(&view));
        if (text != nullptr)
            guarded([&] { kCommands[command](*text); });
    });
}

extern "C" void ClearString(int32_t ident) { SelectCommand(ident, 0); }
extern "C" void CutString(int32_t ident) { SelectCommand(ident, 1); }
extern "C" void CopyString(int32_t ident) { SelectCommand(ident, 2); }
extern "C" void PasteString(int32_t ident) { SelectCommand(ident, 3); }
extern "C" void SelectAll(int32_t ident) { SelectCommand(ident, 4); }
extern "C" void SelectNone(int32_t ident) { SelectCommand(ident, 5); }
