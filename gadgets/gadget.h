#ifndef GADGETS_GADGET_H
#define GADGETS_GADGET_H

// The record of a gadget: what the program placed in a window, beside the view that shows it.

#include <stdint.h>

class BPopUpMenu;
class BView;

// What-codes of the messages that gadgets post to their window.
static const uint32_t kClickMessage = 753;
static const uint32_t kChoiceMessage = 75000;  // plus the index chosen

// One block of 26 words from MyAlloc, in the list kGadgets. The program's thread makes and frees
// it; the window's thread reads its handlers.
struct MyGadget {
    int32_t left, top, width, height;  // as created, window coordinates
    int32_t kind;                      // 1..46
    int32_t ident;
    uint32_t flags;  // bit 0: takes the focus when clicked or selected
    BView* view;     // the control, or the scroll view around it
    BPopUpMenu* popup;
    intptr_t reserved10[2];
    int32_t selection;
    int32_t minimum, maximum, value;
    intptr_t reserved16[4];
    void* action_handler;  // slot 1
    void* key_handler;     // slot 2
    void* value_handler;   // slot 3
    void* color_call;      // copy of slot 3 while the colour control calls it
    void* list_handler;    // slot 6
    void* drop_handler;    // slot 7
    void* unused_handler;  // slot 8: stored only
};

// `kind` of Find_Gadget that asks for no family.
static const int32_t kAnyKind = -1;
static const int32_t kRecord = -2;

// The view of a gadget whose kind belongs to the family `kind`, its view whatever the kind
// (kAnyKind), or the record itself (kRecord); null if there is none.
void* Find_Gadget(int32_t ident, int32_t kind);
// True while the record is in the registry: messages may outlive their gadget.
bool is_listed_gadget(const MyGadget* gadget);

#endif  // GADGETS_GADGET_H
