#ifndef APP_FILTER_LIST_H
#define APP_FILTER_LIST_H

// The lists of filters of handlers and loopers: plain BLists that own what is in them.

#include <List.h>
#include <MessageFilter.h>

#include <memory>

namespace [[gnu::visibility("hidden")]] BPrivate {

using FilterList = std::unique_ptr<BList>;

inline BMessageFilter* filter_at(const BList& filters, int32 index)
{
    return static_cast<BMessageFilter*>(filters.ItemAt(index));
}

// False, and nothing changes, for a null filter or one that is in the list.
inline bool add_filter(FilterList& filters, BMessageFilter* filter)
{
    if (filter == nullptr)
        return false;
    if (filters == nullptr)
        filters = std::make_unique<BList>();
    return !filters->HasItem(filter) && filters->AddItem(filter);
}

inline bool remove_filter(FilterList& filters, BMessageFilter* filter)
{
    return filter != nullptr && filters != nullptr && filters->RemoveItem(filter);
}

// Deletes the filters, but for those that stay in `keep`, and the list.
inline void delete_filters(FilterList& filters, const BList* keep = nullptr)
{
    const FilterList gone = std::move(filters);
    for (int32 i = 0; gone != nullptr && i < gone->CountItems(); i++) {
        if (keep == nullptr || !keep->HasItem(gone->ItemAt(i)))
            delete filter_at(*gone, i);
    }
}

}  // namespace BPrivate

#endif  // APP_FILTER_LIST_H
