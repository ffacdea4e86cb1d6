#ifndef GADGETS_KINDS_H
#define GADGETS_KINDS_H

// What CreateGadget knows of each kind.

#include "gadgets/gadget.h"

#include <Rect.h>

// What a create function is told. The record has its ident, and nothing else yet.
struct GadgetSpec {
    MyGadget* record;
    int32_t kind;
    int32_t window;    // the window's ident, -1 for none
    BRect frame;       // x, y, x + width, y + height
    const void* text;  // a string, or an array of strings for kinds that show several
    int32_t value;     // of the creation

    const char* Text() const { return static_cast<const char*>(text); }
    const char* const* Texts() const { return static_cast<const char* const*>(text); }
};

// Returns the view, which belongs to the record then; null if there can be none.
using CreateGadgetView = BView* (*)(const GadgetSpec& spec);

// What becomes of gadgets whose views are inside the view of a gadget that is killed.
enum class Inside { None, LetGo };

struct KindRow {
    int32_t kind;
    int32_t family;           // the kind that stands for it
    CreateGadgetView create;  // null: CreateGadget makes none
    Inside inside;
};

// Null for a number that is no kind's.
const KindRow* kind_row(int32_t kind);

// Each makes the views of the kinds whose rows name it.
BView* create_button(const GadgetSpec& spec);
BView* create_checkbox(const GadgetSpec& spec);
BView* create_text(const GadgetSpec& spec);
BView* create_number(const GadgetSpec& spec);
BView* create_scroller(const GadgetSpec& spec);
BView* create_slider(const GadgetSpec& spec);
BView* create_statusbar(const GadgetSpec& spec);
BView* create_radio(const GadgetSpec& spec);
BView* create_mx(const GadgetSpec& spec);
BView* create_bbox(const GadgetSpec& spec);
BView* create_color(const GadgetSpec& spec);
BView* create_draggableicon(const GadgetSpec& spec);
BView* create_picture(const GadgetSpec& spec);
BView* create_listview(const GadgetSpec& spec);
BView* create_outlistview(const GadgetSpec& spec);
BView* create_tab(const GadgetSpec& spec);
BView* create_string(const GadgetSpec& spec);
BView* create_integer(const GadgetSpec& spec);
BView* create_tedit(const GadgetSpec& spec);

// Puts a frame with scroll bars around a view, which is returned itself if it gets none. The bars
// have nothing to scroll until the view says so.
BView* with_bars(BView* view, bool vertical, bool horizontal);

// Places the buttons of a group anew, whose font has changed.
void fit_radio(BView* group);

// How many strings an array has before its null pointer, or before an empty one.
int32_t count_labels(const char* const* labels);
// A view on the colour of the one around it. Its window's thread or lock.
void take_ground(BView* view);
// The buttons that are down, as the message says that a window's thread works on.
int32_t pressed_buttons(const BView* view);
// How often they were pressed in a row, as that message says; 0 without one.
int32_t current_clicks(const BView* view);
// The modifiers that are held, as that message says; as they are at present without one.
int32_t held_modifiers(const BView* view);
// Opens the pop-up menu attached to the gadget, if there is one, at a place in its view. Returns
// when it is closed. The window's thread.
void open_attached_menu(const BView* view, const MyGadget& gadget, BPoint where);
// A press with the primary button alone.
bool is_primary_press(const BView* view);
// A control was pressed: calls its handler, and gives it the focus if it takes that.
void tell_press(BView* view, const MyGadget& gadget);
// Calls slot 2 with the first byte of a key that `view` got, and the modifiers held.
void call_key_handler(const BView* view, const MyGadget& gadget, const char* bytes);

#endif  // GADGETS_KINDS_H
