#ifndef _LIST_H
#define _LIST_H

#include <SupportDefs.h>

class BList {
public:
    BList(int32 blockSize = 20);
    BList(const BList& other);
    virtual ~BList();
    BList& operator=(const BList& other);
    bool operator==(const BList& other) const;
    bool operator!=(const BList& other) const;
    bool AddItem(void* item, int32 index);
    bool AddItem(void* item);
    bool AddList(const BList* list, int32 index);
    bool AddList(const BList* list);
    bool RemoveItem(void* item);
    void* RemoveItem(int32 index);
    bool RemoveItems(int32 index, int32 count);
    bool ReplaceItem(int32 index, void* item);
    void MakeEmpty();
    void SortItems(int (*compareFunc)(const void *, const void *));
    bool SwapItems(int32 indexA, int32 indexB);
    bool MoveItem(int32 from, int32 to);
    void* ItemAt(int32 index) const;
    void* FirstItem() const;
    void* ItemAtFast(int32 index) const;
    void* LastItem() const;
    void* Items() const;
    bool HasItem(void* item) const;
    bool HasItem(const void* item) const;
    int32 IndexOf(void* item) const;
    int32 IndexOf(const void* item) const;
    int32 CountItems() const;
    bool IsEmpty() const;
    void DoForEach(bool (*func)(void *));
    void DoForEach(bool (*func)(void *, void *), void* arg2);

private:
};

#endif  // _LIST_H
