// The tree of known paths. Places without a known node or a place below are pruned at once.

#include "storage/KnownPaths.h"

#include <algorithm>

namespace storage {

// Takes the first name off an absolute path; empty at its end.
static std::string_view take_name(std::string_view* path)
{
    path->remove_prefix(std::min(path->find_first_not_of('/'), path->size()));
    const std::string_view name = path->substr(0, path->find('/'));
    path->remove_prefix(name.size());
    return name;
}

// Null for a path that is not there, unless it is to be made.
KnownPaths::Place* KnownPaths::_PlaceOf(std::string_view path, bool make)
{
    Place* place = &fRoot;
    for (std::string_view name = take_name(&path); !name.empty(); name = take_name(&path)) {
        auto found = place->below.find(name);
        if (found == place->below.end()) {
            if (!make)
                return nullptr;
            auto added = std::make_unique<Place>();
            added->name = name;
            added->above = place;
            found = place->below.emplace(name, std::move(added)).first;
        }
        place = found->second.get();
    }
    return place;
}

std::string KnownPaths::_PathOf(const Place* place)
{
    if (place->above == nullptr)
        return "/";
    size_t size = 0;
    for (const Place* at = place; at->above != nullptr; at = at->above)
        size += at->name.size() + 1;
    std::string path(size, '/');
    for (const Place* at = place; at->above != nullptr; at = at->above) {
        size -= at->name.size();
        path.replace(size, at->name.size(), at->name);
        size--;
    }
    return path;
}

void KnownPaths::_Prune(Place* place)
{
    while (place->above != nullptr && !place->is_known && place->below.empty()) {
        Place* above = place->above;
        above->below.erase(above->below.find(place->name));
        place = above;
    }
}

// The place itself stays.
void KnownPaths::_Forget(Place* place)
{
    if (!place->is_known)
        return;
    fKnown.erase(place->order->first);
    fOrder.erase(place->order);
    place->is_known = false;
}

void KnownPaths::Remember(const Key& key, std::string_view path)
{
    const auto known = fKnown.find(key);
    Place* const former = known != fKnown.end() ? known->second : nullptr;
    Place* const place = _PlaceOf(path, true);
    if (former == place) {
        fOrder.splice(fOrder.end(), fOrder, place->order);
        return;
    }
    if (former != nullptr)
        _Forget(former);
    _Forget(place);
    place->order = fOrder.insert(fOrder.end(), {key, place});
    place->is_known = true;
    fKnown[key] = place;
    if (former != nullptr)
        _Prune(former);
    if (fKnown.size() > fLimit) {
        Place* const oldest = fOrder.front().second;
        _Forget(oldest);
        _Prune(oldest);
    }
}

bool KnownPaths::Find(const Key& key, std::string* path)
{
    const auto known = fKnown.find(key);
    if (known == fKnown.end())
        return false;
    fOrder.splice(fOrder.end(), fOrder, known->second->order);
    *path = _PathOf(known->second);
    return true;
}

// What is known at a place is known at the other one, of which nothing was.
void KnownPaths::_HandOver(Place* from, Place* to)
{
    to->order = from->order;
    to->order->second = to;
    to->is_known = true;
    from->is_known = false;
    fKnown[to->order->first] = to;
}

// What is known of the new place came after the move.
void KnownPaths::_Merge(std::unique_ptr<Place> moved, Place* into)
{
    if (moved->is_known && into->is_known)
        _Forget(moved.get());
    else if (moved->is_known)
        _HandOver(moved.get(), into);
    for (auto& [name, below] : moved->below) {
        const auto found = into->below.find(name);
        if (found != into->below.end()) {
            _Merge(std::move(below), found->second.get());
        } else {
            below->above = into;
            into->below.emplace(name, std::move(below));
        }
    }
}

// Takes the place of one that has nothing below it, with all that is below the moved one.
void KnownPaths::_Replace(Place* place, std::unique_ptr<Place> moved)
{
    if (place->is_known) {
        _Forget(moved.get());
        _HandOver(place, moved.get());
    }
    moved->name = place->name;
    moved->above = place->above;
    place->above->below.find(place->name)->second = std::move(moved);
}

static bool is_at_or_below(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

void KnownPaths::Move(std::string_view from, std::string_view to)
{
    Place* const place = _PlaceOf(from, false);
    if (place == nullptr || place == &fRoot || is_at_or_below(to, from))
        return;
    Place* const above = place->above;
    auto taken = above->below.extract(above->below.find(place->name));
    Place* const into = _PlaceOf(to, true);
    if (into->below.empty() && into != above && into != &fRoot) {
        _Replace(into, std::move(taken.mapped()));
    } else {
        _Merge(std::move(taken.mapped()), into);
        _Prune(into);
    }
    _Prune(above);
}

}  // namespace storage
