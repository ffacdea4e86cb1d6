#ifndef _LIST_H
#define _LIST_H

#include <SupportDefs.h>

/* An array of pointers. The list never touches what they point at. Not locked: one thread at a
   time. Adding answers false, and changes nothing, for a bad index or without memory. */
class BList {
public:
    BList(int32 blockSize = 20);  // room is made for so many items at a time, at least
    BList(const BList& other);
    virtual ~BList();

    BList& operator=(const BList& other);
    bool operator==(const BList& other) const;  // the same pointers in the same order
    bool operator!=(const BList& other) const;

    /* Before the item that is at `index`, 0 to CountItems(). */
    bool AddItem(void* item, int32 index);
    bool AddItem(void* item);
    bool AddList(const BList* list, int32 index);
    bool AddList(const BList* list);

    bool RemoveItem(void* item);    // the first such; false if there is none
    void* RemoveItem(int32 index);  // returns the item, null for a bad index
    /* Removes up to `count` items; false if `index` is bad or there is nothing to remove. */
    bool RemoveItems(int32 index, int32 count);
    bool ReplaceItem(int32 index, void* item);
    void MakeEmpty();

    /* `compareFunc` gets pointers to two items, as that of qsort() does. */
    void SortItems(int (*compareFunc)(const void*, const void*));
    bool SwapItems(int32 indexA, int32 indexB);
    /* Takes the item out and puts it back so that it has the index `to`. */
    bool MoveItem(int32 from, int32 to);

    void* ItemAt(int32 index) const;  // null for a bad index
    void* FirstItem() const;
    void* ItemAtFast(int32 index) const;  // the index is not checked
    void* LastItem() const;
    void* Items() const;  // the array itself, until the list changes
    bool HasItem(void* item) const;
    bool HasItem(const void* item) const;
    int32 IndexOf(void* item) const;  // -1 if it is not there
    int32 IndexOf(const void* item) const;
    int32 CountItems() const;
    bool IsEmpty() const;

    /* Calls `func` for one item after the other until it answers true. It may change the list. */
    void DoForEach(bool (*func)(void*));
    void DoForEach(bool (*func)(void*, void*), void* arg2);

private:
    bool _MakeRoom(int32 index, int32 count);

    void** fItems;
    int32 fCount;
    int32 fCapacity;
    int32 fBlockSize;
};

inline void* BList::ItemAt(int32 index) const
{
    return index >= 0 && index < fCount ? fItems[index] : nullptr;
}

inline void* BList::ItemAtFast(int32 index) const { return fItems[index]; }

inline void* BList::FirstItem() const { return ItemAt(0); }

inline void* BList::LastItem() const { return ItemAt(fCount - 1); }

inline void* BList::Items() const { return fItems; }

inline int32 BList::CountItems() const { return fCount; }

inline bool BList::IsEmpty() const { return fCount == 0; }

#endif  // _LIST_H
