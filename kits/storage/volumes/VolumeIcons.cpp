// What volumes and devices look like. Any thread.

#include "storage/volumes/VolumeIcons.h"

#include <fs_info.h>

#include "storage/volumes/MountTable.h"

namespace storage {

std::vector<std::string> device_icons(const std::string& device)
{
    const std::string name = device.substr(device.rfind('/') + 1);
    if (name.starts_with("sr") || name.starts_with("cdrom"))
        return {"media-optical", "drive-optical", "media-removable"};
    if (name.starts_with("fd"))
        return {"media-floppy", "media-removable"};
    if (name.starts_with("mmcblk"))
        return {"media-flash", "media-removable", "drive-harddisk"};
    return {"drive-harddisk"};
}

std::vector<std::string> volume_icons(const Mount& mount)
{
    const uint32 flags = volume_flags(mount);
    if ((flags & B_FS_IS_SHARED) != 0)
        return {"folder-remote", "network-server", "drive-harddisk"};
    if (mount.type == "iso9660" || mount.type == "udf")
        return {"media-optical", "media-removable"};
    if ((flags & B_FS_IS_REMOVABLE) != 0)
        return {"media-removable", "drive-removable-media", "drive-harddisk"};
    return device_icons(mount.source);
}

}  // namespace storage
