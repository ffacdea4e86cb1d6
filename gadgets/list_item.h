#ifndef GADGETS_LIST_ITEM_H
#define GADGETS_LIST_ITEM_H

// A row of a list gadget: a line of text in the list's colours or in its own.

#include "gadgets/gadget.h"
#include "windows/drawing_view.h"

#include <ListItem.h>

#include <array>
#include <memory>
#include <string>

// In the order of the calls that set them.
enum ListColor {
    kUnselectedGround,
    kUnselectedText,
    kSelectedText,
    kSelectedGround,
    kDisabledGround,
    kDisabledText,
    kListColors
};

// What flat and outline lists have beside their views. The window's lock.
class ListFrame {
public:
    virtual ~ListFrame() = default;

    MyGadget* fGadget = nullptr;  // null once the list is being deleted
    std::array<uint32_t, kListColors> fColors = {0xe2e2e2ff, 0x000000ff, 0x000000ff,
                                                 0xffffffff, 0x960a28ff, 0xde110aff};
    int32_t fAnchor = 0;    // the fixed end of a Shift range
    int32_t fRemovals = 0;  // rises whenever rows are deleted
    bool fDragEnabled = false;
    DroppedFiles fDropped;
};

using ListDrawHook = int32_t (*)(int32_t, int32_t);

class TListItem : public BListItem {
public:
    explicit TListItem(const char* text) : BListItem(0, true), fText(text) {}

    void DrawItem(BView* owner, BRect frame, bool complete) override;
    void Update(BView* owner, const BFont* font) override;

    std::string fText;
    std::unique_ptr<std::array<uint32_t, 4>> fOwnColors;  // null: the list's first four
    ListDrawHook fDrawHook = nullptr;
};

#endif  // GADGETS_LIST_ITEM_H
