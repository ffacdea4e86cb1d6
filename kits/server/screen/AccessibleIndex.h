#ifndef SERVER_ACCESSIBLE_INDEX_H
#define SERVER_ACCESSIBLE_INDEX_H

// Looks things up in a tree: by name, upwards and downwards. Rows that were not told are there too,
// with a place and nothing else.

#include <memory>
#include <unordered_map>
#include <vector>

#include "server/screen/Accessible.h"

namespace server {

class AccessibleIndex {
public:
    AccessibleIndex() = default;
    explicit AccessibleIndex(std::shared_ptr<const AccessibleTree> tree);

    const AccessibleTree* Tree() const { return fTree.get(); }
    const AccessibleItem* Find(AccessibleId id) const;  // null for what was not told
    bool Has(AccessibleId id) const { return Find(id) != nullptr || ListOf(id) != nullptr; }
    // The list that a row belongs to; null for what is no row of one.
    const AccessibleItem* ListOf(AccessibleId id) const;
    int32 CountChildren(AccessibleId id) const;
    AccessibleId ChildAt(AccessibleId id, int32 child) const;  // one that there is
    AccessibleId ParentOf(AccessibleId id) const;              // 0 for the window too
    int32 IndexOf(AccessibleId id) const;                      // in its parent; -1 for none
    // The last of the deepest that hold a place of the window: what lies in front comes later.
    AccessibleId At(AccessibleId inside, BPoint where) const;

private:
    int32 _Place(AccessibleId id) const;

    std::shared_ptr<const AccessibleTree> fTree;
    std::unordered_map<AccessibleId, int32> fPlaces;  // in the tree
    std::vector<std::vector<int32>> fChildren;        // by place
};

}  // namespace server

#endif  // SERVER_ACCESSIBLE_INDEX_H
