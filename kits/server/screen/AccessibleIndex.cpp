#include "server/screen/AccessibleIndex.h"

#include <algorithm>
#include <utility>

namespace server {

AccessibleIndex::AccessibleIndex(std::shared_ptr<const AccessibleTree> tree)
    : fTree(std::move(tree)), fChildren(fTree->items.size())
{
    for (size_t i = 0; i < fTree->items.size(); i++) {
        const AccessibleItem& item = fTree->items[i];
        fPlaces[item.id] = int32(i);
        if (item.parent >= 0 && size_t(item.parent) < i)
            fChildren[size_t(item.parent)].push_back(int32(i));
    }
}

int32 AccessibleIndex::_Place(AccessibleId id) const
{
    const auto found = fPlaces.find(id);
    return found != fPlaces.end() ? found->second : -1;
}

const AccessibleItem* AccessibleIndex::Find(AccessibleId id) const
{
    const int32 place = _Place(id);
    return place >= 0 ? &fTree->items[size_t(place)] : nullptr;
}

const AccessibleItem* AccessibleIndex::ListOf(AccessibleId id) const
{
    const uint32 part = part_of(id);
    const AccessibleItem* const list = part != 0 ? Find(accessible_id(view_of(id))) : nullptr;
    return list != nullptr && int64(part) <= list->rows ? list : nullptr;
}

int32 AccessibleIndex::CountChildren(AccessibleId id) const
{
    const int32 place = _Place(id);
    if (place < 0)
        return 0;
    const int32 rows = fTree->items[size_t(place)].rows;
    return rows >= 0 ? rows : int32(fChildren[size_t(place)].size());
}

AccessibleId AccessibleIndex::ChildAt(AccessibleId id, int32 child) const
{
    const auto place = size_t(_Place(id));
    if (fTree->items[place].rows >= 0)
        return accessible_id(view_of(id), uint32(child) + 1);
    return fTree->items[size_t(fChildren[place][size_t(child)])].id;
}

AccessibleId AccessibleIndex::ParentOf(AccessibleId id) const
{
    if (const AccessibleItem* list = ListOf(id))
        return list->id;
    const AccessibleItem* const item = Find(id);
    return item != nullptr && item->parent >= 0 ? fTree->items[size_t(item->parent)].id : 0;
}

int32 AccessibleIndex::IndexOf(AccessibleId id) const
{
    if (ListOf(id) != nullptr)
        return int32(part_of(id)) - 1;
    const int32 place = _Place(id);
    const int32 parent = place >= 0 ? fTree->items[size_t(place)].parent : -1;
    if (parent < 0)
        return -1;
    const std::vector<int32>& children = fChildren[size_t(parent)];
    return int32(std::find(children.begin(), children.end(), place) - children.begin());
}

AccessibleId AccessibleIndex::At(AccessibleId inside, BPoint where) const
{
    for (int32 place = _Place(inside); place >= 0;) {
        const std::vector<int32>& children = fChildren[size_t(place)];
        inside = fTree->items[size_t(place)].id;
        const auto hit = std::find_if(children.rbegin(), children.rend(), [&](int32 child) {
            const AccessibleItem& item = fTree->items[size_t(child)];
            return (item.states & kIsOutOfSight) == 0 && item.frame.Contains(where);
        });
        place = hit != children.rend() ? *hit : -1;
    }
    return inside;
}

}  // namespace server
