#ifndef STORAGE_MOUNT_TABLE_H
#define STORAGE_MOUNT_TABLE_H

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// One mounted file system of the host's table.
struct Mount {
    int id;
    int parent;
    dev_t device;
    std::string root;   // what of the file system is mounted, "/" for all
    std::string point;  // where
    std::string options;
    std::string type;
    std::string source;  // the block device, or a name
};

// The host's table; empty, and its number in errno, if the host does not show it. Any thread.
std::vector<Mount> read_mounts();

// Reads the text of a table; lines that are none are left out.
std::vector<Mount> parse_mounts(std::string_view text);

// The mounts that count as volumes, each device once: those of block devices, and the root's.
std::vector<Mount> volumes_of(const std::vector<Mount>& mounts);

struct VolumeChange {
    bool mounted;  // else unmounted
    Mount mount;
};

// What became of one list of volumes to make it the other; what went comes first.
std::vector<VolumeChange> compare_volumes(const std::vector<Mount>& before,
                                          const std::vector<Mount>& after);

// The mount of a device, volume or not; with several the one that shows most of it. None leaves
// ENODEV in errno, or the host's number if it does not show its table.
std::optional<Mount> find_mount(dev_t device);

// The label of the file system, else the last part of its mount point.
std::string volume_name(const Mount& mount);

// A set of B_FS_... bits.
uint32 volume_flags(const Mount& mount);

}  // namespace storage

#endif  // STORAGE_MOUNT_TABLE_H
