// What gadgets of several kinds have in common: labels, values, the enabled state, the focus,
// sizes, and the window that they are in. Any thread, with the gadget's window locked.

#include "gadgets/gadget.h"
#include "plinth.h"
#include "runtime/strings.h"
#include "runtime/whole.h"
#include "windows/drawing_view.h"
#include "windows/menus.h"
#include "windows/window_access.h"

#include <CheckBox.h>
#include <Control.h>
#include <Menu.h>
#include <MenuField.h>
#include <MenuBar.h>
#include <ScrollBar.h>
#include <Slider.h>
#include <StatusBar.h>
#include <TabView.h>

#include <string>

template <class View, class Action>
static void on_any(int32_t ident, Action act)
{
    on_gadget<View>(ident, GadgetAccess::kAnyFamily, Unlocked::Act,
                    [&](View& view, MyGadget&) { act(view); });
}

extern "C" void SetLabel(int32_t ident, const char* text)
{
    on_any<BControl>(ident, [=](BControl& control) { control.SetLabel(text); });
}

extern "C" const char* GetLabel(int32_t ident)
{
    return guarded("", [=]() -> const char* {
        static auto* const label = new std::string;
        label->clear();
        on_any<BControl>(ident, [](BControl& control) { *label = text_or_empty(control.Label()); });
        return label->c_str();
    });
}

static void set_enabled(const GadgetAccess& gadget, bool enabled)
{
    if (gadget.View() == nullptr)
        return;
    uint32_t& flags = gadget.Record().flags;
    flags = enabled ? flags & ~uint32_t{kDisabled} : flags | kDisabled;
    if (auto* field = dynamic_cast<BMenuField*>(gadget.View())) {
        field->SetEnabled(enabled);
        field->MenuBar()->SetEnabled(enabled);
        return;
    }
    if (gadget.Record().kind != kRadioGroup) {
        if (auto* control = dynamic_cast<BControl*>(gadget.View()))
            control->SetEnabled(enabled);
        return;
    }
    for (BView* view = gadget.View()->ChildAt(0); view != nullptr; view = view->NextSibling()) {
        if (auto* radio = dynamic_cast<BControl*>(view))
            radio->SetEnabled(enabled);
    }
}

extern "C" void SetEnabled(int32_t ident, int8_t flag)
{
    with_gadget(ident, GadgetAccess::kAnyFamily,
                [=](const GadgetAccess& gadget) { set_enabled(gadget, flag != 0); });
}

extern "C" int32_t GetEnabled(int32_t ident)
{
    const GadgetAccess gadget(ident);
    if (!gadget)
        return 0;
    if (const auto* control = dynamic_cast<BControl*>(gadget.View()))
        return control->IsEnabled() ? 1 : 0;
    return (gadget.Record().flags & kDisabled) == 0 ? 1 : 0;
}

extern "C" void ActivateGadget(int32_t ident)
{
    with_gadget(ident, GadgetAccess::kAnyFamily, [](const GadgetAccess& gadget) {
        if (gadget.View() == nullptr)
            return;
        BView* view = shown_view(gadget.Record());
        view->MakeFocus(true);
        if (auto* window = dynamic_cast<MyWinClass*>(view->Window()))
            window->fSavedFocus = view;
    });
}

extern "C" void SetChecked(int32_t ident, int32_t flag)
{
    on_gadget<BCheckBox>(ident, kCheckBox, Unlocked::Act, [=](BCheckBox& box, MyGadget&) {
        box.SetValue(flag != 0 ? B_CONTROL_ON : B_CONTROL_OFF);
    });
}

extern "C" bool GetChecked(int32_t ident)
{
    bool checked = false;
    on_gadget<BCheckBox>(ident, kCheckBox, Unlocked::Act,
                         [&](BCheckBox& box, MyGadget&) { checked = box.Value() == B_CONTROL_ON; });
    return checked;
}

extern "C" void SetValue(int32_t ident, int32_t value)
{
    const GadgetAccess gadget(ident);
    BView* view = gadget ? gadget.View() : nullptr;
    if (view == nullptr)
        return;
    switch (gadget.Record().kind) {
        case kStatusBar:  // goes on by it: kept on purpose
            static_cast<BStatusBar*>(view)->Update(static_cast<float>(value));
            break;
        case kScrollBar:
        case kVerticalScrollBar:
            static_cast<BScrollBar*>(view)->SetValue(static_cast<float>(value));
            break;
        case kSlider:
        case kVerticalSlider:
            static_cast<BSlider*>(view)->SetValue(value);
            break;
        case kChoiceField:
            MxSelected(ident, value);
            break;
        default:
            break;
    }
}

extern "C" int32_t GetValue(int32_t ident)
{
    const GadgetAccess gadget(ident);
    if (!gadget || gadget.View() == nullptr)
        return 0;
    const MyGadget& record = gadget.Record();
    switch (record.kind) {
        case kCheckBox:
        case kSlider:
        case kVerticalSlider:
        case kColorControl:
            return static_cast<BControl*>(gadget.View())->Value();
        case kScrollBar:
        case kVerticalScrollBar:
            return truncated(static_cast<BScrollBar*>(gadget.View())->Value());
        case kStatusBar:
            return truncated(static_cast<BStatusBar*>(gadget.View())->CurrentValue());
        case kRadioGroup:
            return record.selection;
        case kChoiceField: {
            BMenu* menu = static_cast<BMenuField*>(gadget.View())->Menu();
            return menu != nullptr ? menu->FindMarkedIndex() : 0;
        }
        case kTabView:
            return static_cast<BTabView*>(gadget.View())->Selection();
        default:
            return 0;
    }
}

extern "C" int32_t ReturnIntFromRgb(int32_t red, int32_t green, int32_t blue)
{
    return static_cast<int32_t>((static_cast<uint32_t>(red) << 24) +
                                (static_cast<uint32_t>(green) << 16) +
                                (static_cast<uint32_t>(blue) << 8));
}

extern "C" void AttachGadgetToWindow(int32_t window_ident, int32_t ident)
{
    on_window(window_ident, __func__, [=](WindowAccess& window) {
        const GadgetAccess gadget(ident);
        BView* view = gadget ? gadget.View() : nullptr;
        if (view != nullptr && view->Window() == nullptr && view->Parent() == nullptr) {
            window->fTopView->AddChild(view);
            gadget.SetHolder(0);
        }
    });
}

extern "C" void AttachPopUpToGadget(int32_t ident, int32_t menu_ident)
{
    RegistryLock registry;
    MyGadget* gadget = find_gadget(registry, ident);
    if (gadget != nullptr && (menu_ident == 0 || is_pop_up(registry, menu_ident)))
        gadget->popup = menu_ident;
}

extern "C" void ResizeGadget(int32_t ident, int32_t width, int32_t height)
{
    on_any<BView>(ident, [=](BView& view) {
        view.ResizeTo(static_cast<float>(width), static_cast<float>(height));
    });
}
