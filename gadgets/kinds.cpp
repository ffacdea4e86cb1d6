// The table of kinds, and what their classes share.

#include "gadgets/kinds.h"

#include "plinth.h"
#include "windows/menus.h"

#include <InterfaceDefs.h>
#include <Message.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <View.h>
#include <Window.h>

#include <iterator>

static const int32_t kLastKind = 46;

// By kind, from 1. CreateGadget does not come to those behind 34: kept on purpose.
static constexpr KindRow kKinds[] = {
    {1, kButton, create_button, Inside::None},
    {2, kCheckBox, create_checkbox, Inside::None},
    {3, kStringField, create_string, Inside::None},
    {4, kStringField, create_integer, Inside::None},
    {5, kStringField, create_integer, Inside::None},
    {6, kStringField, create_integer, Inside::None},
    {7, kListView, create_listview, Inside::None},
    {8, kListView, create_listview, Inside::None},
    {9, kListView, create_listview, Inside::None},
    {10, kListView, create_listview, Inside::None},
    {11, kTextLabel, create_text, Inside::None},
    {12, kNumberLabel, create_number, Inside::None},
    {13, kScrollBar, create_scroller, Inside::None},
    {14, kScrollBar, create_scroller, Inside::None},
    {15, kSlider, create_slider, Inside::None},
    {16, kSlider, create_slider, Inside::None},
    {17, kStatusBar, create_statusbar, Inside::None},
    {18, kRadioGroup, create_radio, Inside::None},
    {19, kChoiceField, create_mx, Inside::None},
    {20, kListView, create_outlistview, Inside::None},
    {21, kListView, create_outlistview, Inside::None},
    {22, kListView, create_outlistview, Inside::None},
    {23, kListView, create_outlistview, Inside::None},
    {24, kBox, create_bbox, Inside::LetGo},
    {25, kTabView, create_tab, Inside::LetGo},
    {26, kTextEditor, create_tedit, Inside::None},
    {27, kTextEditor, create_tedit, Inside::None},
    {28, kTextEditor, create_tedit, Inside::None},
    {29, kTextEditor, create_tedit, Inside::None},
    {30, kColorControl, create_color, Inside::None},
    {31, kDraggableIcon, create_draggableicon, Inside::None},
    {32, kSecondDraggableIcon, create_draggableicon, Inside::None},
    {33, kPictureButton, create_picture, Inside::None},
    {34, kVideoView, nullptr, Inside::None},
    {35, 35, nullptr, Inside::None},
    {36, kStringField, create_integer, Inside::None},
    {37, kStringField, create_integer, Inside::None},
    {38, 38, nullptr, Inside::None},
    {39, 39, nullptr, Inside::None},
    {40, 40, nullptr, Inside::None},
    {41, 41, nullptr, Inside::None},
    {42, 42, nullptr, Inside::None},
    {43, 43, nullptr, Inside::None},
    {44, 44, nullptr, Inside::None},
    {45, kStringField, create_integer, Inside::None},
    {46, kStringField, create_integer, Inside::None},
};

static constexpr bool kinds_are_in_order()
{
    for (int32_t i = 0; i < kLastKind; i++) {
        if (kKinds[i].kind != i + 1)
            return false;
    }
    return std::size(kKinds) == kLastKind;
}
static_assert(kinds_are_in_order(), "one row per kind, by its number");

struct NamedKind {
    int32_t kind;  // as plinth.h numbers it
    int32_t family;
};

static constexpr NamedKind kNamedKinds[] = {
    {PLINTH_BUTTON, kButton},
    {PLINTH_CHECK_BOX, kCheckBox},
    {PLINTH_STRING_FIELD, kStringField},
    {PLINTH_INTEGER_FIELD, kStringField},
    {PLINTH_PASSWORD_FIELD, kStringField},
    {PLINTH_DECIMAL_FIELD, kStringField},
    {PLINTH_TEXT_LABEL, kTextLabel},
    {PLINTH_NUMBER_LABEL, kNumberLabel},
    {PLINTH_SCROLL_BAR, kScrollBar},
    {PLINTH_VERTICAL_SCROLL_BAR, kScrollBar},
    {PLINTH_SLIDER, kSlider},
    {PLINTH_VERTICAL_SLIDER, kSlider},
    {PLINTH_STATUS_BAR, kStatusBar},
    {PLINTH_RADIO_GROUP, kRadioGroup},
    {PLINTH_CHOICE_FIELD, kChoiceField},
    {PLINTH_BOX, kBox},
    {PLINTH_TEXT_EDITOR, kTextEditor},
    {PLINTH_COLOR_CONTROL, kColorControl},
    {PLINTH_ICON, kDraggableIcon},
    {PLINTH_LARGE_ICON, kSecondDraggableIcon},
    {PLINTH_PICTURE_BUTTON, kPictureButton},
};

static constexpr bool named_kinds_are_in_their_families()
{
    for (const NamedKind& named : kNamedKinds) {
        if (kKinds[named.kind - 1].family != named.family)
            return false;
    }
    return true;
}
static_assert(named_kinds_are_in_their_families(), "plinth.h numbers the kinds as the table does");
static_assert(int{PLINTH_VERTICAL_SCROLL_BAR} == kVerticalScrollBar);
static_assert(int{PLINTH_VERTICAL_SLIDER} == kVerticalSlider);

const KindRow* kind_row(int32_t kind)
{
    return kind >= 1 && kind <= kLastKind ? &kKinds[kind - 1] : nullptr;
}

BView* with_bars(BView* view, bool vertical, bool horizontal)
{
    if (!vertical && !horizontal)
        return view;
    auto* scroller = new BScrollView(nullptr, view, B_FOLLOW_ALL_SIDES, B_WILL_DRAW, horizontal,
                                     vertical, B_FANCY_BORDER);
    for (const orientation direction : {B_HORIZONTAL, B_VERTICAL}) {
        if (BScrollBar* bar = scroller->ScrollBar(direction))
            bar->SetRange(0, 0);
    }
    return scroller;
}

int32_t count_labels(const char* const* labels)
{
    int32_t count = 0;
    while (labels != nullptr && labels[count] != nullptr && labels[count][0] != '\0')
        count++;
    return count;
}

void take_ground(BView* view)
{
    if (view->Parent() != nullptr)
        view->SetViewColor(view->Parent()->ViewColor());
}

// A number of the message that the view's window works on; `otherwise` if there is none.
static int32_t current_number(const BView* view, const char* field, int32_t otherwise)
{
    int32 number = otherwise;
    BWindow* window = view->Window();
    BMessage* message = window != nullptr && window->Thread() == find_thread(nullptr)
                            ? window->CurrentMessage()
                            : nullptr;
    if (message != nullptr)
        message->FindInt32(field, &number);
    return number;
}

int32_t pressed_buttons(const BView* view) { return current_number(view, "buttons", 0); }

int32_t current_clicks(const BView* view) { return current_number(view, "clicks", 0); }

int32_t held_modifiers(const BView* view)
{
    return current_number(view, "modifiers", static_cast<int32_t>(modifiers()));
}

static int32_t attached_menu(const MyGadget& gadget)
{
    RegistryLock registry;
    return static_cast<int32_t>(gadget.popup);
}

void open_attached_menu(const BView* view, const MyGadget& gadget, BPoint where)
{
    const int32_t menu = attached_menu(gadget);
    if (menu != 0 && view->Window() != nullptr)
        open_pop_up(menu, view->Window(), view->ConvertToScreen(where));
}

bool is_primary_press(const BView* view) { return pressed_buttons(view) == B_PRIMARY_MOUSE_BUTTON; }

void tell_press(BView* view, const MyGadget& gadget)
{
    call_handler(gadget, &MyGadget::action_handler);
    if ((gadget.flags & kTakesFocus) != 0)
        view->MakeFocus(true);
}

void call_key_handler(const BView* view, const MyGadget& gadget, const char* bytes)
{
    call_handler(gadget, &MyGadget::key_handler, int32_t{static_cast<signed char>(bytes[0])},
                 held_modifiers(view));
}
