// BList: an array of pointers that grows by half, and gives room back when it is mostly empty.

#include <List.h>

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <limits>

BList::BList(int32 blockSize)
    : fItems(nullptr), fCount(0), fCapacity(0), fBlockSize(std::clamp(blockSize, 1, 1 << 20))
{
}

BList::BList(const BList& other) : BList(other.fBlockSize) { AddList(&other); }

BList::~BList() { free(fItems); }

BList& BList::operator=(const BList& other)
{
    if (this != &other) {
        fCount = 0;
        AddList(&other);
    }
    return *this;
}

bool BList::operator==(const BList& other) const
{
    return std::equal(fItems, fItems + fCount, other.fItems, other.fItems + other.fCount);
}

bool BList::operator!=(const BList& other) const { return !(*this == other); }

bool BList::AddItem(void* item, int32 index)
{
    if (!_MakeRoom(index, 1))
        return false;
    fItems[index] = item;
    return true;
}

bool BList::AddItem(void* item) { return AddItem(item, fCount); }

bool BList::AddList(const BList* list, int32 index)
{
    if (list == nullptr)
        return false;
    const int32 count = list->fCount;
    if (!_MakeRoom(index, count))
        return false;
    // A list added to itself has moved apart: what was behind `index` comes after the new room.
    const int32 head = list == this ? index : count;
    std::copy_n(list->fItems, head, fItems + index);
    if (list == this)
        std::copy_n(fItems + index + count, count - head, fItems + index + head);
    return true;
}

bool BList::AddList(const BList* list) { return AddList(list, fCount); }

bool BList::RemoveItem(void* item) { return RemoveItems(IndexOf(item), 1); }

void* BList::RemoveItem(int32 index)
{
    void* item = ItemAt(index);
    RemoveItems(index, 1);
    return item;
}

bool BList::RemoveItems(int32 index, int32 count)
{
    if (index < 0 || index >= fCount || count <= 0)
        return false;
    count = std::min(count, fCount - index);
    std::copy(fItems + index + count, fItems + fCount, fItems + index);
    fCount -= count;
    if (fCapacity > 8 * fBlockSize && fCount < fCapacity / 4) {
        const int32 capacity = fCapacity / 2;
        if (void* smaller = realloc(fItems, capacity * sizeof(void*))) {
            fItems = static_cast<void**>(smaller);
            fCapacity = capacity;
        }
    }
    return true;
}

bool BList::ReplaceItem(int32 index, void* item)
{
    if (index < 0 || index >= fCount)
        return false;
    fItems[index] = item;
    return true;
}

void BList::MakeEmpty()
{
    free(fItems);
    fItems = nullptr;
    fCount = 0;
    fCapacity = 0;
}

void BList::SortItems(int (*compareFunc)(const void*, const void*))
{
    if (compareFunc != nullptr && fCount > 1)
        qsort(fItems, fCount, sizeof(void*), compareFunc);
}

bool BList::SwapItems(int32 indexA, int32 indexB)
{
    if (indexA < 0 || indexA >= fCount || indexB < 0 || indexB >= fCount)
        return false;
    std::swap(fItems[indexA], fItems[indexB]);
    return true;
}

bool BList::MoveItem(int32 from, int32 to)
{
    if (from < 0 || from >= fCount || to < 0 || to >= fCount)
        return false;
    void** first = fItems + std::min(from, to);
    void** last = fItems + std::max(from, to) + 1;
    std::rotate(first, from < to ? first + 1 : last - 1, last);
    return true;
}

bool BList::HasItem(void* item) const { return IndexOf(item) >= 0; }

bool BList::HasItem(const void* item) const { return IndexOf(item) >= 0; }

int32 BList::IndexOf(void* item) const { return IndexOf(const_cast<const void*>(item)); }

int32 BList::IndexOf(const void* item) const
{
    void** const end = fItems + fCount;
    void** const found = std::find(fItems, end, item);
    return found == end ? -1 : static_cast<int32>(found - fItems);
}

void BList::DoForEach(bool (*func)(void*))
{
    if (func == nullptr)
        return;
    for (int32 i = 0; i < fCount; ++i) {
        if (func(fItems[i]))
            return;
    }
}

void BList::DoForEach(bool (*func)(void*, void*), void* arg2)
{
    if (func == nullptr)
        return;
    for (int32 i = 0; i < fCount; ++i) {
        if (func(fItems[i], arg2))
            return;
    }
}

// Opens a gap of `count` items at `index`, and counts them in.
bool BList::_MakeRoom(int32 index, int32 count)
{
    if (index < 0 || index > fCount || count > std::numeric_limits<int32>::max() - fCount)
        return false;
    const int32 needed = fCount + count;
    if (needed > fCapacity) {
        const int64 grown = std::max<int64>(needed, fCapacity + int64(fCapacity) / 2);
        const int64 blocks = (grown + fBlockSize - 1) / fBlockSize;
        const int32 capacity = static_cast<int32>(
            std::min<int64>(blocks * fBlockSize, std::numeric_limits<int32>::max()));
        void* items = realloc(fItems, capacity * sizeof(void*));
        if (items == nullptr)
            return false;
        fItems = static_cast<void**>(items);
        fCapacity = capacity;
    }
    std::copy_backward(fItems + index, fItems + fCount, fItems + needed);
    fCount = needed;
    return true;
}
