#ifndef _LIST_VIEW_H
#define _LIST_VIEW_H

#include <Invoker.h>
#include <List.h>
#include <ListItem.h>
#include <View.h>

#include <memory>

namespace BPrivate {
struct ListData;
}

enum list_view_type { B_SINGLE_SELECTION_LIST, B_MULTIPLE_SELECTION_LIST };

/* Rows below one another, of which the user selects one or several. The list does not own its
   items. It tells its scroll bars how much there is. A double click, Enter and Space invoke it;
   arrows, Home and End select, with Shift in a list of several from where the selection began; with
   Control or Command a click adds or takes away; a letter goes to the next row that begins so.
   Row i begins where row i - 1 ends: at the sum of the heights, each rounded up and with a pixel
   more. Rows are found in logarithmic time. */
class BListView : public BView, public BInvoker {
public:
    BListView(BRect frame, const char* name, list_view_type type = B_SINGLE_SELECTION_LIST,
              uint32 resizeMask = B_FOLLOW_LEFT_TOP,
              uint32 flags = B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE);
    BListView(const char* name, list_view_type type = B_SINGLE_SELECTION_LIST,
              uint32 flags = B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE);
    BListView(list_view_type type = B_SINGLE_SELECTION_LIST);
    BListView(BMessage* data);
    virtual ~BListView();

    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    virtual void Draw(BRect updateRect);
    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void AllAttached();
    virtual void AllDetached();
    virtual void FrameResized(float newWidth, float newHeight);
    virtual void FrameMoved(BPoint newPosition);
    virtual void TargetedByScrollView(BScrollView* view);
    virtual void WindowActivated(bool active);
    virtual void MessageReceived(BMessage* message);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);
    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual void MakeFocus(bool state = true);
    virtual void SetFont(const BFont* font, uint32 mask = B_FONT_ALL);
    virtual void ScrollTo(BPoint where);
    void ScrollTo(float x, float y) { ScrollTo(BPoint(x, y)); }

    // False for a bad index, and for an item that is in a list already.
    virtual bool AddItem(BListItem* item);
    virtual bool AddItem(BListItem* item, int32 atIndex);
    virtual bool AddList(BList* newItems);
    virtual bool AddList(BList* newItems, int32 atIndex);
    // Removed items pass to the caller, deselected.
    virtual bool RemoveItem(BListItem* item);
    virtual BListItem* RemoveItem(int32 index);
    virtual bool RemoveItems(int32 index, int32 count);

    // The list adopts its messages.
    virtual void SetSelectionMessage(BMessage* message);
    virtual void SetInvocationMessage(BMessage* message);
    BMessage* SelectionMessage() const;
    uint32 SelectionCommand() const;
    BMessage* InvocationMessage() const;
    uint32 InvocationCommand() const;

    // A list that becomes one of a single selection keeps the first.
    virtual void SetListType(list_view_type type);
    list_view_type ListType() const;

    BListItem* ItemAt(int32 index) const;
    int32 IndexOf(BPoint point) const;  // -1 below the last row
    int32 IndexOf(BListItem* item) const;
    BListItem* FirstItem() const;
    BListItem* LastItem() const;
    bool HasItem(BListItem* item) const;
    int32 CountItems() const;
    virtual void MakeEmpty();
    bool IsEmpty() const;
    // Until `func` answers true. It may change the list.
    void DoForEach(bool (*func)(BListItem*));
    void DoForEach(bool (*func)(BListItem*, void*), void* arg);
    const BListItem** Items() const;  // until the list changes
    void InvalidateItem(int32 index);
    void ScrollTo(int32 index);
    void ScrollToSelection();

    // Bad indexes select nothing, disabled rows are left out, and a single selection is one row.
    void Select(int32 index, bool extend = false);
    void Select(int32 from, int32 to, bool extend = false);
    bool IsItemSelected(int32 index) const;
    int32 CurrentSelection(int32 index = 0) const;  // -1 behind the last one
    /* Sends a copy with "when", "source", "be:sender" and an "index" for each selected row. */
    virtual status_t Invoke(BMessage* message = nullptr);

    void DeselectAll();
    void DeselectExcept(int32 exceptFrom, int32 exceptTo);
    void Deselect(int32 index);

    // Hook: after each change of the selection, before the selection message goes out.
    virtual void SelectionChanged();
    /* Hook: the pointer moves with the button held since `where`. Starts a drag and returns true;
       else the selection follows the pointer. */
    virtual bool InitiateDrag(BPoint where, int32 index, bool wasSelected);

    // As qsort() does; nothing is selected afterwards.
    void SortItems(int (*cmp)(const void*, const void*));
    bool SwapItems(int32 a, int32 b);
    bool MoveItem(int32 from, int32 to);
    bool ReplaceItem(int32 index, BListItem* item);
    BRect ItemFrame(int32 index);  // not valid for a bad index

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code code, void* arg);

protected:
    enum MiscCode { B_NO_OP, B_REPLACE_OP, B_MOVE_OP, B_SWAP_OP };
    union MiscData {
        struct Spare {
            int32 data[5];
        };
        struct Replace {
            int32 index;
            BListItem* item;
        } replace;
        struct Move {
            int32 from;
            int32 to;
        } move;
        struct Swap {
            int32 a;
            int32 b;
        } swap;
    };
    virtual bool DoMiscellaneous(MiscCode code, MiscData* data);

private:
    friend class BOutlineListView;
    friend struct BPrivate::ListData;

    virtual void DrawItem(BListItem* item, BRect itemRect, bool complete = false);
    virtual void _Sort(int (*cmp)(const void*, const void*));

    void _Init(list_view_type type);
    void _RowsChanged(int32 from);
    void _FixScrollBars();
    void _FixScrollBarsLater();
    void _UpdateItems();
    void _UpdateItem(BListItem* item);
    void _InvalidateFrom(int32 index);
    void _SelectionHasChanged();
    bool _Reselect(int32 from, int32 to, bool extend);
    void _Press(int32 index, bool wasSelected);
    void _Go(int32 index, int32 step);
    bool _GoToLetter(const char* bytes, int32 count);
    bool _ToggleByKey(const char* bytes, int32 count);

    std::unique_ptr<BPrivate::ListData> fData;
};

#endif  // _LIST_VIEW_H
