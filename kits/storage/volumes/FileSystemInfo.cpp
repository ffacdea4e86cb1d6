// Devices and file systems as plain calls. Any thread.

#include <fs_info.h>

#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <optional>
#include <string>
#include <vector>

#include "support/HostErrors.h"
#include "storage/volumes/MountTable.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;

// dev_t has no sign on this host: a status code is cast into its upper end.
static dev_t as_device(status_t status) { return static_cast<dev_t>(static_cast<int64>(status)); }

extern "C" dev_t dev_for_path(const char* path)
{
    if (path == nullptr)
        return as_device(fail(EINVAL));
    struct stat info;
    return stat(path, &info) == 0 ? info.st_dev : as_device(host_failure());
}

extern "C" dev_t next_dev(int32* pos)
{
    if (pos == nullptr || *pos < 0)
        return as_device(fail(EINVAL));
    const std::vector<Mount> volumes = volumes_of(read_mounts());
    if (static_cast<size_t>(*pos) >= volumes.size())
        return as_device(fail(EINVAL));
    return volumes[(*pos)++].device;
}

template <size_t Size>
static void copy_text(char (&field)[Size], const std::string& text)
{
    snprintf(field, Size, "%s", text.c_str());
}

extern "C" int fs_stat_dev(dev_t dev, fs_info* info)
{
    if (info == nullptr) {
        errno = EINVAL;
        return -1;
    }
    const std::optional<Mount> mount = find_mount(dev);
    if (!mount)
        return -1;
    struct statvfs numbers;
    struct stat root;
    if (statvfs(mount->point.c_str(), &numbers) != 0 || stat(mount->point.c_str(), &root) != 0)
        return -1;
    memset(info, 0, sizeof(*info));
    info->dev = dev;
    info->root = root.st_ino;
    info->flags = volume_flags(*mount);
    info->block_size = static_cast<off_t>(numbers.f_frsize);
    info->io_size = static_cast<off_t>(numbers.f_bsize);
    info->total_blocks = static_cast<off_t>(numbers.f_blocks);
    info->free_blocks = static_cast<off_t>(numbers.f_bavail);
    info->total_nodes = static_cast<off_t>(numbers.f_files);
    info->free_nodes = static_cast<off_t>(numbers.f_favail);
    copy_text(info->device_name, mount->source);
    copy_text(info->volume_name, volume_name(*mount));
    copy_text(info->fsh_name, mount->type);
    return 0;
}
