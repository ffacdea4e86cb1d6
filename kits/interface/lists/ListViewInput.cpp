// BListView: pointer and keys. What the program does in its hooks may end the list: whoever goes on
// after one looks first.

#include <ListView.h>

#include <Looper.h>
#include <StringItem.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <strings.h>

#include <interface/lists/ListData.h>
#include <interface/view/ViewPrivate.h>

using BPrivate::ListData;
using BPrivate::ViewRef;

static const float kDoubleClickSlack = 6;  // pixels
static const float kDragSlack = 4;
static const bigtime_t kTypingPause_us = 1'000'000;

// The modifiers of the event that is being handled, which may be some time ago.
static uint32 held_keys(const BListView* list)
{
    const BMessage* event = list->Looper() != nullptr ? list->Looper()->CurrentMessage() : nullptr;
    int32 held;
    return event != nullptr && event->FindInt32("modifiers", &held) == B_OK
               ? static_cast<uint32>(held)
               : modifiers();
}

static bool adds_to_selection(uint32 held)
{
    return (held & (B_CONTROL_KEY | B_COMMAND_KEY | B_OPTION_KEY)) != 0;
}

static bool is_near(BPoint a, BPoint b, float slack)
{
    return std::fabs(a.x - b.x) < slack && std::fabs(a.y - b.y) < slack;
}

// ---- The pointer

// True for the second click on a row.
static bool is_double_click(ListData& data, const BListItem* item, BPoint where)
{
    bigtime_t speed = 0;
    get_click_speed(&speed);
    const bigtime_t now = system_time();
    const bool again = item != nullptr && item == data.clicked && now - data.clickedAt < speed &&
                       is_near(where, data.clickedPlace, kDoubleClickSlack);
    data.clicked = again ? nullptr : item;
    data.clickedAt = now;
    data.clickedPlace = where;
    return again;
}

void BListView::MouseDown(BPoint where)
{
    ListData& data = *fData;
    const ViewRef self(this);
    if (!IsFocus())
        MakeFocus();
    const BMessage* message = Looper() != nullptr ? Looper()->CurrentMessage() : nullptr;
    const int32 buttons =
        message != nullptr ? message->GetInt32("buttons", B_PRIMARY_MOUSE_BUTTON) : 0;
    const int32 index = IndexOf(where);
    BListItem* item = ItemAt(index);
    data.pressed = false;
    if (is_double_click(data, item, where) && (buttons & B_PRIMARY_MOUSE_BUTTON) != 0) {
        Invoke();
        return;
    }
    if (item == nullptr) {
        if ((held_keys(this) & B_SHIFT_KEY) == 0 && !adds_to_selection(held_keys(this)))
            DeselectAll();
        return;
    }
    data.pressed = true;
    data.dragged = data.follows = data.narrows = false;
    data.wasSelected = item->IsSelected();
    data.row = index;
    data.place = where;
    SetMouseEventMask(B_POINTER_EVENTS, B_NO_POINTER_HISTORY);
    _Press(index, data.wasSelected);
}

// Changes the selection as a press on a row does.
void BListView::_Press(int32 index, bool wasSelected)
{
    ListData& data = *fData;
    const ViewRef self(this);
    const uint32 held = held_keys(this);
    if (data.type == B_SINGLE_SELECTION_LIST) {
        if (wasSelected && adds_to_selection(held))
            Deselect(index);
        else
            Select(index);
        return;
    }
    if ((held & B_SHIFT_KEY) != 0 && data.anchor >= 0) {
        const auto [low, high] = std::minmax({data.anchor, index});
        const bool less = data.rows.DeselectExcept(low, high);
        const bool more = data.rows.SelectRange(low, high);
        data.lead = index;
        if (less || more) {
            Invalidate();
            _SelectionHasChanged();
        }
        return;
    }
    if (adds_to_selection(held)) {
        if (wasSelected)
            Deselect(index);
        else
            Select(index, true);
        return;
    }
    if (wasSelected)
        data.narrows = true;  // with the release: the selection may be dragged
    else
        Select(index);
    if (self.View() != nullptr)  // the hook may have deleted it
        data.anchor = data.lead = index;
}

void BListView::MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage)
{
    ListData& data = *fData;
    if (!data.pressed || dragMessage != nullptr) {
        BView::MouseMoved(where, code, dragMessage);
        return;
    }
    if (!data.dragged && !is_near(where, data.place, kDragSlack)) {
        data.dragged = true;
        const ViewRef self(this);
        const bool drags = InitiateDrag(data.place, data.row, data.wasSelected);
        if (self.View() == nullptr)
            return;
        data.follows = !drags;
        data.narrows = data.narrows && !drags;
    }
    const int32 index = data.follows ? IndexOf(where) : -1;
    if (index < 0 || index == data.row)
        return;
    data.row = index;
    data.narrows = false;
    if (data.type == B_MULTIPLE_SELECTION_LIST && data.anchor >= 0) {
        const auto [low, high] = std::minmax({data.anchor, index});
        Select(low, high);
    } else {
        Select(index);
    }
}

void BListView::MouseUp(BPoint where)
{
    ListData& data = *fData;
    const bool narrows = data.pressed && data.narrows;
    data.pressed = data.narrows = false;
    const ViewRef self(this);
    BView::MouseUp(where);
    if (self.View() != nullptr && narrows)
        Select(data.row);
}

// ---- Keys

// Selects the nearest row from `index` on that can be; with Shift all from where it began.
void BListView::_Go(int32 index, int32 step)
{
    ListData& data = *fData;
    while (index >= 0 && index < CountItems() && !ItemAt(index)->IsEnabled())
        index += step;
    if (index < 0 || index >= CountItems())
        return;
    const ViewRef self(this);
    if (data.type == B_MULTIPLE_SELECTION_LIST && (held_keys(this) & B_SHIFT_KEY) != 0 &&
        data.anchor >= 0) {
        const auto [low, high] = std::minmax({data.anchor, index});
        Select(low, high);
        data.lead = index;
    } else {
        Select(index);
        data.anchor = data.lead = index;
    }
    if (self.View() != nullptr)
        ScrollTo(index);
}

// Goes on behind the selection with a first letter, within the names with those that follow.
bool BListView::_GoToLetter(const char* bytes, int32 count)
{
    ListData& data = *fData;
    if (static_cast<uint8>(bytes[0]) <= ' ' || bytes[0] == B_DELETE || IsEmpty() ||
        (held_keys(this) & (B_CONTROL_KEY | B_COMMAND_KEY)) != 0)
        return false;
    const bigtime_t now = system_time();
    if (now - data.typedAt > kTypingPause_us)
        data.typed.clear();
    data.typedAt = now;
    data.typed.append(bytes, static_cast<size_t>(count));
    const int32 start =
        CurrentSelection(0) + (data.typed.size() > static_cast<size_t>(count) ? 0 : 1);
    for (int32 i = 0; i < CountItems(); i++) {
        const int32 index = (std::max(start, 0) + i) % CountItems();
        const auto* item = dynamic_cast<BStringItem*>(ItemAt(index));
        if (item != nullptr && item->Text() != nullptr && item->IsEnabled() &&
            strncasecmp(item->Text(), data.typed.c_str(), data.typed.size()) == 0) {
            _Go(index, 1);
            return true;
        }
    }
    return false;
}

// Space adds or takes away the row that the keys have come to, with Control, which makes it 0.
bool BListView::_ToggleByKey(const char* bytes, int32 count)
{
    ListData& data = *fData;
    if (count != 1 || (bytes[0] != B_SPACE && bytes[0] != '\0') ||
        (held_keys(this) & B_CONTROL_KEY) == 0 || data.type != B_MULTIPLE_SELECTION_LIST)
        return false;
    if (IsItemSelected(data.lead))
        Deselect(data.lead);
    else
        Select(data.lead, true);
    return true;
}

void BListView::KeyDown(const char* bytes, int32 numBytes)
{
    ListData& data = *fData;
    const int32 last = CountItems() - 1;
    const int32 at = IsItemSelected(data.lead) ? data.lead : CurrentSelection(0);
    const float page = Bounds().Height();
    if (_ToggleByKey(bytes, numBytes))
        return;
    switch (numBytes == 1 ? bytes[0] : '\0') {
        case B_UP_ARROW:
            _Go(at < 0 ? 0 : at - 1, at < 0 ? 1 : -1);
            break;
        case B_DOWN_ARROW:
            _Go(at + 1, 1);
            break;
        case B_HOME:
            _Go(0, 1);
            break;
        case B_END:
            _Go(last, -1);
            break;
        case B_PAGE_UP:
            ScrollTo(BPoint(LeftTop().x, std::max(LeftTop().y - page, 0.0f)));
            break;
        case B_PAGE_DOWN: {
            const auto height = static_cast<float>(data.rows.Height());
            const float lowest = std::max(height - page - 1, 0.0f);
            ScrollTo(BPoint(LeftTop().x, std::min(LeftTop().y + page, lowest)));
            break;
        }
        case B_SPACE:
        case B_ENTER:
            Invoke();
            break;
        default:
            if (numBytes < 1 || !_GoToLetter(bytes, numBytes))
                BView::KeyDown(bytes, numBytes);
    }
}
