// Keys: who gets them, and the ways of the focus from view to view.

#include <Window.h>

#include <Autolock.h>
#include <Button.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <View.h>

#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>

using BPrivate::EventListener;
using BPrivate::InputMessage;
using BPrivate::ViewPrivate;

static const int32 kTabKey = 0x26;
static const int32 kF10Key = 0x0b;
static const int32 kHeldModifiers =
    B_SHIFT_KEY | B_COMMAND_KEY | B_CONTROL_KEY | B_OPTION_KEY | B_MENU_KEY;

static bool types(const BMessage* message, char character)
{
    int8 byte, more;
    return message->FindInt8("byte", 0, &byte) == B_OK && byte == character &&
           message->FindInt8("byte", 1, &more) != B_OK;
}

static int32 held_modifiers(const BMessage* message)
{
    int32 modifiers = 0;
    message->FindInt32("modifiers", &modifiers);
    return modifiers & kHeldModifiers;
}

void BWindow::_DeliverKey(InputMessage* message)
{
    BHandler* target = fData->focus != nullptr ? fData->focus : static_cast<BHandler*>(this);
    if ((message->what == B_KEY_DOWN || message->what == B_KEY_UP) && types(message, B_ENTER) &&
        held_modifiers(message) == 0) {
        if (BView* button = _DefaultButtonView())
            target = button;
    }
    std::vector<BView*> others;
    for (const EventListener& listener : fData->listeners) {
        if (((listener.mask | listener.mouseMask) & B_KEYBOARD_EVENTS) != 0 &&
            listener.view != target)
            others.push_back(listener.view);
    }
    fData->delivering = others.empty() ? nullptr : message;
    _DispatchCopy(message, target);
    fData->ForTargets(message, others, [&](BView* view) {
        if (fData->Holds(view))
            _DispatchCopy(message, view);
    });
}

// Keys that the window keeps from KeyDown(): shortcuts, the way to another group of views, and the
// key that closes.
bool BWindow::_KeyDown(BMessage* message)
{
    int32 key = 0;
    message->FindInt32("key", &key);
    const int32 held = held_modifiers(message);
    if (held == B_COMMAND_KEY && types(message, B_ESCAPE) && _EnterMenuBar())
        return true;
    if ((held & B_COMMAND_KEY) != 0) {
        _RunShortcut(message, held);
        return true;
    }
    if ((held & B_CONTROL_KEY) != 0 && _RunControlShortcut(message, held))
        return true;
    if (key == kF10Key && held == 0 && _EnterMenuBar())
        return true;
    if (key == kTabKey && (held & ~B_SHIFT_KEY) == B_OPTION_KEY) {
        _Navigate((held & B_SHIFT_KEY) != 0, true);
        return true;
    }
    if (held == 0 && (fData->flags & B_CLOSE_ON_ESCAPE) != 0 && types(message, B_ESCAPE)) {
        _CloseByKey(message);
        return true;
    }
    return false;
}

// A key that reached the window itself: Tab finds the first view there is.
void BWindow::_UnwantedKey(BMessage* message)
{
    const int32 held = held_modifiers(message);
    if (fData->focus == nullptr && types(message, B_TAB) && (held & ~B_SHIFT_KEY) == 0)
        _Navigate((held & B_SHIFT_KEY) != 0, false);
}

void BWindow::_Navigate(bool backwards, bool jump)
{
    BView* next = ViewPrivate::NextNavigable(fData->topView, fData->focus, backwards, jump);
    if (next != nullptr && next != fData->focus)
        next->MakeFocus(true);
}

BView* BWindow::CurrentFocus() const { return fData->focus; }

void BWindow::_SetFocus(BView* view)
{
    fData->focus = view;
    BPrivate::tell_typing(*fData);
    SetPreferredHandler(view);
    fData->TellReaderSoon();
}

void BWindow::_ForgetView(BView* view)
{
    if (fData->focus == view)
        _SetFocus(nullptr);
    if (fData->mouseView == view)
        fData->mouseView = nullptr;
    if (fData->clickView == view)
        fData->clickView = nullptr;
    if (static_cast<void*>(view) == fData->defaultButton)
        fData->defaultButton = nullptr;
    std::erase_if(fData->listeners,
                  [=](const EventListener& listener) { return listener.view == view; });
    fData->ListenersChanged();
}

// Programs name views of any kind, so the pointer is only compared with the views that are there.
static bool is_button(BView* view, const BButton* button)
{
    return static_cast<const void*>(view) == button || dynamic_cast<BButton*>(view) == button;
}

BView* BWindow::_DefaultButtonView() const
{
    BView* found = nullptr;
    if (fData->defaultButton == nullptr)
        return nullptr;
    ViewPrivate::ForEach(fData->topView, [&](BView* view) {
        if (is_button(view, fData->defaultButton))
            found = view;
    });
    return found;
}

void BWindow::SetDefaultButton(BButton* button)
{
    BAutolock lock(this);
    if (!lock.IsLocked() || button == fData->defaultButton)
        return;
    auto* before = dynamic_cast<BButton*>(_DefaultButtonView());
    fData->defaultButton = button;
    if (before != nullptr)
        before->MakeDefault(false);
    if (auto* now = dynamic_cast<BButton*>(_DefaultButtonView()))
        now->MakeDefault(true);
}

BButton* BWindow::DefaultButton() const { return fData->defaultButton; }
