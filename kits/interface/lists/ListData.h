#ifndef INTERFACE_LISTS_LIST_DATA_H
#define INTERFACE_LISTS_LIST_DATA_H

// What a BListView holds. With its window locked.

#include <ListView.h>
#include <Message.h>

#include <memory>
#include <string>

#include "interface/lists/Rows.h"

class BScrollView;

namespace BPrivate {

struct [[gnu::visibility("hidden")]] ListData
{
    Rows rows;
    list_view_type type = B_SINGLE_SELECTION_LIST;
    std::unique_ptr<BMessage> selectionMessage;
    BScrollView* scroller = nullptr;
    int64 drawnHeight = -1;  // of all rows, when scroll bars and pixels were made

    int32 anchor = -1;  // where the selection began
    int32 lead = -1;    // and where it went to

    // A press, until the release.
    bool pressed = false;
    bool dragged = false;  // the pointer has moved, and somebody was told
    bool follows = false;  // the selection goes with it
    bool narrows = false;  // the release selects the row alone
    bool wasSelected = false;
    int32 row = -1;  // index
    BPoint place;

    // The click before, for double clicks.
    const BListItem* clicked = nullptr;
    bigtime_t clickedAt = 0;
    BPoint clickedPlace;

    // The letters of a name.
    std::string typed;
    bigtime_t typedAt = 0;
};

}  // namespace BPrivate

#endif  // INTERFACE_LISTS_LIST_DATA_H
