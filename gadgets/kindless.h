#ifndef GADGETS_KINDLESS_H
#define GADGETS_KINDLESS_H

// Classes of controls that no kind of CreateGadget makes. A program that has a record of its own
// makes them by these calls and puts them into a window itself; who calls deletes the view.

#include "gadgets/gadget.h"

#include <Rect.h>

class BPopUpMenu;

#pragma GCC visibility push(default)

extern "C" {
// A choice among options, several values side by side, and several values without a face.
BView* create_myoptionup(MyGadget* gadget, BRect frame);
BView* create_channelcontrol(MyGadget* gadget, BRect frame);
BView* create_multichannelcontrol(MyGadget* gadget, BRect frame);
// A title that opens the menu, which belongs to it.
BView* create_mymenufield(MyGadget* gadget, BRect frame, BPopUpMenu* menu);
}

#pragma GCC visibility pop

#endif  // GADGETS_KINDLESS_H
