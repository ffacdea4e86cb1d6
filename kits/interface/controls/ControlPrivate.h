#ifndef INTERFACE_CONTROLS_CONTROL_PRIVATE_H
#define INTERFACE_CONTROLS_CONTROL_PRIVATE_H

// What controls have in common beside BControl's public face: the press with the pointer, the state
// that they are drawn in, and their ground.

#include <Control.h>
#include <Point.h>

#include <interface/controls/Look.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

// On the thread of the control's window, with the window locked.
struct ControlPrivate {
    /* One press, from MouseDown() to MouseUp(), while which the control gets all that the pointer
       does. Press() is false if the control is disabled. Once it shows that it is pressed, Follow()
       stays until the release in a window without B_ASYNCHRONOUS_CONTROLS. */
    static bool Press(BControl* control);
    static void Follow(BControl* control, bigtime_t interval_us = 10000);
    // The pointer moved while it holds the control: true if it left or came back.
    static bool Drag(BControl* control, BPoint where);
    // The end of a press: true if it was inside. A release that belongs to no press is none.
    static bool Release(BControl* control, BPoint where);
    static bool IsPressed(const BControl* control) { return control->fPressed; }

    // Bits of Look::State.
    static uint32 State(const BControl* control);
    // The picture beside the label, of the control's state; null for none.
    static const BBitmap* Icon(const BControl* control, uint32 which);
    // A box or knob, drawn by `mark`, with the label beside it; and the room that it wants.
    static void DrawMarked(BControl* control, void (Look::*mark)(BRect, uint32) const);
    static void MarkedSize(const BControl* control, float* _width, float* _height);

    // The one byte of a key, 0 for what is not one byte.
    static char Key(const char* bytes, int32 count) { return count == 1 ? bytes[0] : '\0'; }
};

// True while a view has the keyboard in an active window.
bool shows_focus(const BView* view);
// Puts a view on the ground of its parent, or of the windows.
void adopt_ground(BView* view);
// A view of `frame` is not lower than `height`.
void grow_to_height(BView* view, float height);

}  // namespace BPrivate

#endif  // INTERFACE_CONTROLS_CONTROL_PRIVATE_H
