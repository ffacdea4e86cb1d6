#ifndef STORAGE_STAT_FIELDS_H
#define STORAGE_STAT_FIELDS_H

#include <SupportDefs.h>

struct stat;

namespace storage __attribute__((visibility("hidden"))) {

// What a call of set_stat changes.
enum StatField {
    kStatMode = 1,
    kStatOwner = 2,
    kStatGroup = 4,
    kStatModified = 8,
    kStatAccessed = 16
};

constexpr mode_t kPermissionBits = 07777;

// Applies one field to the node at `path`; links are not followed.
status_t apply_stat(const char* path, const struct stat& stat, uint32 field);

}  // namespace storage

#endif  // STORAGE_STAT_FIELDS_H
