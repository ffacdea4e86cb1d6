#ifndef STORAGE_KEPT_FILES_H
#define STORAGE_KEPT_FILES_H

#include <mutex>

#include "storage/watch/FolderChanges.h"

namespace [[gnu::visibility("hidden")]] storage {

// What was read from files, to be read again when they have changed.
template <class Content>
struct KeptFiles {
    std::mutex lock;
    FolderChanges changes;  // lock
    Content content;        // lock
};

// The one of that content. It outlives all threads, since some run until the process ends.
template <class Content>
KeptFiles<Content>& kept_while_running()
{
    static auto* kept = new KeptFiles<Content>;
    return *kept;
}

}  // namespace storage

#endif  // STORAGE_KEPT_FILES_H
