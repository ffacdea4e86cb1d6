#ifndef STORAGE_ACCESS_H
#define STORAGE_ACCESS_H

#include <stdio.h>

#include <Entry.h>
#include <Node.h>

namespace BPrivate {

// What the kit's own classes know of entries and nodes beyond their public calls.
struct __attribute__((visibility("hidden"))) StorageAccess {
    // Names the node of a descriptor to the calls that want a path.
    struct Name {
        char text[32];
    };
    static Name HostPath(int fd)
    {
        Name name;
        snprintf(name.text, sizeof(name.text), "/proc/self/fd/%d", fd);
        return name;
    }

    static int Descriptor(const BNode& node) { return node.fFd; }
    // Makes `node` hold `fd`, -1 for the failure in errno.
    static status_t Adopt(BNode& node, int fd) { return node._Adopt(fd); }
    // The same for what was just opened: B_BUSY if somebody has locked the node.
    static status_t AdoptOpened(BNode& node, int fd);
    static status_t Fail(BNode& node, status_t status) { return node._Fail(status); }

    // The absolute path; null when not set.
    static const char* Path(const BEntry& entry) { return entry.fPath; }
    // Sets `entry` to `leaf` of a directory whose path is known to be resolved.
    static status_t SetToChild(BEntry& entry, const char* directory, size_t directory_length,
                               const char* leaf);
};

}  // namespace BPrivate

#endif  // STORAGE_ACCESS_H
