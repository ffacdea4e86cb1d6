#ifndef STORAGE_KNOWN_PATHS_H
#define STORAGE_KNOWN_PATHS_H

#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// The last known paths of nodes, by whatever number names a node. At most `limit` are kept; the
// ones that were not asked for longest go first. Paths share their folders in a tree, so that a
// folder that moves takes along all that is below it in one step. One thread at a time.
class KnownPaths {
public:
    using Key = std::pair<uint32, uint64>;

    explicit KnownPaths(size_t limit) : fLimit(limit) {}

    // `path` is absolute and resolved. Another node that had it is forgotten.
    void Remember(const Key& key, std::string_view path);
    // False for a node that is not known.
    bool Find(const Key& key, std::string* path);
    // What was known below `from` is below `to` from here on.
    void Move(std::string_view from, std::string_view to);
    size_t Count() const { return fKnown.size(); }

private:
    // A name in the tree; the root's is empty.
    struct Place {
        std::string name;
        Place* above = nullptr;
        std::map<std::string, std::unique_ptr<Place>, std::less<>> below;
        bool is_known = false;  // `order` is valid
        std::list<std::pair<Key, Place*>>::iterator order;
    };
    struct Hash {
        size_t operator()(const Key& key) const
        {
            return key.second * 0x9E3779B97F4A7C15 + key.first;
        }
    };

    Place* _PlaceOf(std::string_view path, bool make);
    static std::string _PathOf(const Place* place);
    void _Forget(Place* place);
    void _Prune(Place* place);
    void _HandOver(Place* from, Place* to);
    void _Merge(std::unique_ptr<Place> moved, Place* into);
    void _Replace(Place* place, std::unique_ptr<Place> moved);

    const size_t fLimit;
    Place fRoot;
    std::list<std::pair<Key, Place*>> fOrder;  // the longest unused first
    std::unordered_map<Key, Place*, Hash> fKnown;
};

}  // namespace storage

#endif  // STORAGE_KNOWN_PATHS_H
