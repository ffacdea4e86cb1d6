// What can be done to a gadget of any kind: showing, hiding, killing, fonts, colours, handlers. Any
// thread, with the gadget's window locked.

#include "gadgets/kinds.h"
#include "graphics/fonts.h"
#include "graphics/raster_port.h"
#include "plinth.h"
#include "windows/drawing_view.h"
#include "windows/window_access.h"

#include <Font.h>
#include <MenuField.h>
#include <TextControl.h>
#include <TextView.h>
#include <View.h>

// Views that are parts of the gadget: the buttons of a radio group, the title of a choice field.
static bool has_parts(const MyGadget& gadget)
{
    return gadget.kind == kRadioGroup || gadget.kind == kChoiceField;
}

// Acts on the view that shows the gadget, and on its parts.
template <class Action>
static void on_shown_views(int32_t ident, Action act)
{
    with_gadget(ident, GadgetAccess::kAnyFamily, [&](const GadgetAccess& gadget) {
        if (gadget.View() == nullptr)
            return;
        BView* view = shown_view(gadget.Record());
        act(*view);
        if (!has_parts(gadget.Record()))
            return;
        for (BView* child = view->ChildAt(0); child != nullptr; child = child->NextSibling())
            act(*child);
    });
}

BView* FindGadget(int32_t ident)
{
    const GadgetAccess gadget(ident);
    return gadget && gadget.View() != nullptr ? shown_view(gadget.Record()) : nullptr;
}

extern "C" void HideGadget(int32_t, int32_t ident)
{
    on_gadget<BView>(ident, GadgetAccess::kAnyFamily, Unlocked::Act, [](BView& view, MyGadget&) {
        if (!view.IsHidden(&view))
            view.Hide();
    });
}

extern "C" void SetGadget(int32_t, int32_t ident)
{
    on_gadget<BView>(ident, GadgetAccess::kAnyFamily, Unlocked::Act, [](BView& view, MyGadget&) {
        if (view.IsHidden(&view))
            view.Show();
    });
}

extern "C" void ShowGadget(int32_t window_ident, int32_t ident) { SetGadget(window_ident, ident); }

extern "C" void KillGadget(int32_t, int32_t ident)
{
    with_gadget(ident, GadgetAccess::kAnyFamily,
                [](const GadgetAccess& gadget) { dispose_gadget(&gadget.Record()); });
}

// --- style: shows with the view's next redraw, which nothing here asks for: kept on purpose

// Texts have fonts of their own.
static void set_font(BView& view, const BFont& font, uint32 mask)
{
    view.SetFont(&font, mask);
    if (auto* field = dynamic_cast<BTextControl*>(&view))
        set_font(*field->TextView(), font, mask);
    else if (auto* text = dynamic_cast<BTextView*>(&view))
        text->SetFontAndColor(0, text->TextLength(), &font, mask);
}

static void fit_height(BTextControl& field)
{
    float height;
    field.GetPreferredSize(nullptr, &height);
    field.ResizeTo(field.Bounds().Width(), height);
}

extern "C" void SetFontGadget(int32_t ident, int32_t font_ident)
{
    guarded([=] {
        BFont font;
        if (!Find_Font(font_ident, &font))
            return;
        on_shown_views(ident, [&](BView& view) { set_font(view, font, B_FONT_ALL); });
    });
    on_gadget<BView>(ident, kRadioGroup, Unlocked::Act,
                     [](BView& group, MyGadget&) { fit_radio(&group); });
    on_gadget<BMenuField>(ident, kChoiceField, Unlocked::Act,
                          [](BMenuField& field, MyGadget&) { field.SetDivider(field.Divider()); });
    on_gadget<BTextControl>(ident, kStringField, Unlocked::Act,
                            [](BTextControl& field, MyGadget&) { fit_height(field); });
}

extern "C" void SetAntiliasingGadget(int32_t ident, int8_t flag)
{
    on_shown_views(ident, [=](BView& view) {
        BFont font;
        view.GetFont(&font);
        font.SetFlags(flag == 0 ? B_DISABLE_ANTIALIASING : 0);
        set_font(view, font, B_FONT_FLAGS);
    });
}

extern "C" void SetForeColorGadget(int32_t ident, int32_t high, int32_t low)
{
    on_shown_views(ident, [=](BView& view) {
        view.SetHighColor(GetRgbFromInteger(static_cast<uint32_t>(high)));
        view.SetLowColor(GetRgbFromInteger(static_cast<uint32_t>(low)));
    });
}

extern "C" void SetBackColorGadget(int32_t ident, int32_t color)
{
    on_shown_views(ident, [=](BView& view) {
        view.SetViewColor(GetRgbFromInteger(static_cast<uint32_t>(color)));
    });
}

// --- handlers

extern "C" void FocusOnClick(int32_t ident, int8_t flag)
{
    const GadgetAccess gadget(ident);
    if (!gadget)
        return;
    uint32_t& flags = gadget.Record().flags;
    flags = flag != 0 ? flags | kTakesFocus : flags & ~uint32_t{kTakesFocus};
}

// By slot; those of entry fields are not the record's.
static constexpr void* MyGadget::*kHandlerSlots[] = {
    nullptr, &MyGadget::action_handler, &MyGadget::key_handler,  &MyGadget::value_handler,  nullptr,
    nullptr, &MyGadget::list_handler,   &MyGadget::drop_handler, &MyGadget::unused_handler,
};

static_assert(kHandlerSlots[PLINTH_GADGET_ACTION] == &MyGadget::action_handler);
static_assert(kHandlerSlots[PLINTH_GADGET_KEY] == &MyGadget::key_handler);
static_assert(kHandlerSlots[PLINTH_GADGET_VALUE] == &MyGadget::value_handler);
static_assert(kHandlerSlots[PLINTH_GADGET_INPUT] == nullptr);
static_assert(kHandlerSlots[PLINTH_GADGET_ENTER] == nullptr);
static_assert(kHandlerSlots[PLINTH_GADGET_LIST] == &MyGadget::list_handler);
static_assert(kHandlerSlots[PLINTH_GADGET_DROP] == &MyGadget::drop_handler);

extern "C" void SetHandlerForGadget(int32_t ident, int32_t slot, void* handler)
{
    if (slot == PLINTH_GADGET_INPUT)
        SetStringInputHandler(ident, handler);
    else if (slot == PLINTH_GADGET_ENTER)
        SetStringEnterHandler(ident, handler);
    if (slot < 1 || slot > 8 || kHandlerSlots[slot] == nullptr)
        return;
    RegistryLock registry;
    if (MyGadget* gadget = find_gadget(registry, ident))
        gadget->*kHandlerSlots[slot] = handler;
}

extern "C" void RemoveAll(int32_t window_ident)
{
    on_window(window_ident, __func__, [](WindowAccess& window) {
        BView* top = window->fTopView;
        // Every second one stays, for the later ones move up: kept on purpose.
        for (int32 i = 0; i < top->CountChildren(); i++)
            top->RemoveChild(top->ChildAt(i));
    });
}

extern "C" bool is_gadget_ident(int32_t ident) { return gadget_record(ident) != nullptr; }
