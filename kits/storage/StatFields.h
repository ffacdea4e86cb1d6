#ifndef STORAGE_STAT_FIELDS_H
#define STORAGE_STAT_FIELDS_H

#include <sys/types.h>

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

}  // namespace storage

#endif  // STORAGE_STAT_FIELDS_H
