#ifndef _OUTLINE_LIST_VIEW_H
#define _OUTLINE_LIST_VIEW_H

#include <ListView.h>

/* A list whose rows may have rows below them, which a latch before the row shows and hides. What
   BListView calls an index counts the rows that show; an index of the full list counts all. A row
   hangs under the nearest row above that has a lower level. The right arrow shows what is below a
   row, or goes there, the left one hides it, or goes to the row above. What is hidden is not
   selected. */
class BOutlineListView : public BListView {
public:
    BOutlineListView(BRect frame, const char* name, list_view_type type = B_SINGLE_SELECTION_LIST,
                     uint32 resizingMode = B_FOLLOW_LEFT_TOP,
                     uint32 flags = B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE);
    BOutlineListView(const char* name, list_view_type type = B_SINGLE_SELECTION_LIST,
                     uint32 flags = B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE);
    BOutlineListView(BMessage* archive);
    virtual ~BOutlineListView();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void MouseDown(BPoint where);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);
    virtual void MouseUp(BPoint where);

    // As the last one below `superItem`, a level deeper; at the end of the list if that is null.
    virtual bool AddUnder(BListItem* item, BListItem* superItem);
    virtual bool AddItem(BListItem* item);
    virtual bool AddItem(BListItem* item, int32 fullListIndex);
    virtual bool AddList(BList* newItems);
    virtual bool AddList(BList* newItems, int32 fullListIndex);
    // With all that is below it; these items, too, are in no list then, and the caller's.
    virtual bool RemoveItem(BListItem* item);
    virtual BListItem* RemoveItem(int32 fullListIndex);
    virtual bool RemoveItems(int32 fullListIndex, int32 count);

    BListItem* FullListItemAt(int32 fullListIndex) const;
    int32 FullListIndexOf(BPoint where) const;
    int32 FullListIndexOf(BListItem* item) const;
    BListItem* FullListFirstItem() const;
    BListItem* FullListLastItem() const;
    bool FullListHasItem(BListItem* item) const;
    int32 FullListCountItems() const;
    int32 FullListCurrentSelection(int32 index = 0) const;
    virtual void MakeEmpty();
    bool FullListIsEmpty() const;
    void FullListDoForEach(bool (*func)(BListItem*));
    void FullListDoForEach(bool (*func)(BListItem*, void*), void* arg);

    BListItem* Superitem(const BListItem* item);
    void Expand(BListItem* item);
    void Collapse(BListItem* item);
    bool IsExpanded(int32 fullListIndex);

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code code, void* data);
    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void MakeFocus(bool focus = true);
    virtual void AllAttached();
    virtual void AllDetached();
    virtual void DetachedFromWindow();

    // Rows move with what is below them. Null for the rows that hang under none.
    void FullListSortItems(int (*compareFunc)(const BListItem*, const BListItem*));
    void SortItemsUnder(BListItem* superItem, bool oneLevelOnly,
                        int (*compareFunc)(const BListItem*, const BListItem*));
    int32 CountItemsUnder(BListItem* superItem, bool oneLevelOnly) const;
    // Until `eachFunc` answers an item, which is returned.
    BListItem* EachItemUnder(BListItem* superItem, bool oneLevelOnly,
                             BListItem* (*eachFunc)(BListItem*, void*), void* arg);
    BListItem* ItemUnderAt(BListItem* superItem, bool oneLevelOnly, int32 index) const;

protected:
    // Swaps and moves rows that hang under the same one.
    virtual bool DoMiscellaneous(MiscCode code, MiscData* data);
    virtual void MessageReceived(BMessage* message);

    virtual void ExpandOrCollapse(BListItem* superItem, bool expand);
    virtual BRect LatchRect(BRect itemRect, int32 level) const;
    virtual void DrawLatch(BRect itemRect, int32 level, bool collapsed, bool highlighted,
                           bool misTracked);
    virtual void DrawItem(BListItem* item, BRect itemRect, bool complete = false);

private:
    virtual void _Sort(int (*cmp)(const void*, const void*));

    bool _Insert(BListItem* item, int32 row);
    void _ShowBelow(int32 row, int32 count);
    void _Refresh();
    void _Came(int32 row, BListItem* super);
    bool _Range(const BListItem* super, int32* _first, int32* _count) const;

    const BListItem* fPressedLatch = nullptr;  // of the press under way; only compared
    BRect fPressedRow;
};

#endif  // _OUTLINE_LIST_VIEW_H
