#ifndef STORAGE_STAT_FIELDS_H
#define STORAGE_STAT_FIELDS_H

#include <sys/stat.h>
#include <sys/types.h>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// What a call of set_stat changes.
enum StatField {
    kStatMode = 1,
    kStatOwner = 2,
    kStatGroup = 4,
    kStatModified = 8,
    kStatAccessed = 16
};

constexpr mode_t kPermissionBits = 07777;

// Sets one field of the node at `path`. `at_flags` is AT_SYMLINK_NOFOLLOW for a path that may
// be a link itself, of which owner and times are set.
status_t apply_stat(const char* path, const struct stat& stat, uint32 what, int at_flags);

}  // namespace storage

#endif  // STORAGE_STAT_FIELDS_H
