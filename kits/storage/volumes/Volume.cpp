// BVolume: a mounted file system. What it tells is read from the host with each call.

#include <Volume.h>

#include <errno.h>
#include <string.h>
#include <sys/statvfs.h>

#include <optional>
#include <string>

#include <Directory.h>
#include <fs_info.h>

#include "support/HostErrors.h"
#include "storage/volumes/MountTable.h"
#include "storage/desktop/ThemeIcons.h"
#include "storage/volumes/VolumeIcons.h"
#include "storage/volumes/VolumeLabels.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::fail_again;
using BPrivate::host_failure;

static const dev_t kNoDevice = static_cast<dev_t>(-1);

BVolume::BVolume() : fDevice(kNoDevice), fStatus(B_NO_INIT) {}

BVolume::BVolume(dev_t device) : BVolume() { SetTo(device); }

BVolume::BVolume(const BVolume& volume) = default;

BVolume::~BVolume() {}

status_t BVolume::InitCheck() const { return fStatus; }

status_t BVolume::SetTo(dev_t device)
{
    Unset();
    if (find_mount(device)) {
        fDevice = device;
        return fStatus = B_OK;
    }
    return fStatus = errno == ENODEV ? fail(ENOENT) : host_failure();
}

void BVolume::Unset()
{
    fDevice = kNoDevice;
    fStatus = B_NO_INIT;
}

dev_t BVolume::Device() const { return fDevice; }

status_t BVolume::GetRootDirectory(BDirectory* directory) const
{
    if (directory == nullptr)
        return fail(EINVAL);
    if (fStatus != B_OK)
        return fail_again(fStatus);
    const std::optional<Mount> mount = find_mount(fDevice);
    return mount ? directory->SetTo(mount->point.c_str()) : fail(ENOENT);
}

// A number of the file system; negative on failure.
template <class Number>
static off_t read_number(dev_t device, Number number)
{
    const std::optional<Mount> mount = find_mount(device);
    if (!mount)
        return host_failure();
    struct statvfs info;
    if (statvfs(mount->point.c_str(), &info) != 0)
        return host_failure();
    return static_cast<off_t>(number(info));
}

off_t BVolume::Capacity() const
{
    return read_number(fDevice, [](const auto& info) { return info.f_blocks * info.f_frsize; });
}

off_t BVolume::FreeBytes() const
{
    return read_number(fDevice, [](const auto& info) { return info.f_bavail * info.f_frsize; });
}

off_t BVolume::BlockSize() const
{
    return read_number(fDevice, [](const auto& info) { return info.f_frsize; });
}

status_t BVolume::GetName(char* name) const
{
    if (name == nullptr)
        return fail(EINVAL);
    const std::optional<Mount> mount = find_mount(fDevice);
    if (!mount)
        return host_failure();
    strcpy(name, volume_name(*mount).c_str());
    return B_OK;
}

status_t BVolume::SetName(const char* name)
{
    if (name == nullptr)
        return fail(EINVAL);
    const std::optional<Mount> mount = find_mount(fDevice);
    if (!mount)
        return host_failure();
    if (strlen(name) >= B_FILE_NAME_LENGTH)
        return fail(ENAMETOOLONG);
    return set_label(*mount, name);
}

status_t BVolume::GetIcon(BBitmap* icon, icon_size which) const
{
    const std::optional<Mount> mount = find_mount(fDevice);
    return mount ? load_theme_icon(volume_icons(*mount), icon, which) : host_failure();
}

status_t BVolume::GetIcon(uint8**, size_t*, type_code*) const { return fail(EOPNOTSUPP); }

bool BVolume::IsRemovable() const { return (_Flags() & B_FS_IS_REMOVABLE) != 0; }
bool BVolume::IsReadOnly() const { return (_Flags() & B_FS_IS_READONLY) != 0; }
bool BVolume::IsPersistent() const { return (_Flags() & B_FS_IS_PERSISTENT) != 0; }
bool BVolume::IsShared() const { return (_Flags() & B_FS_IS_SHARED) != 0; }
bool BVolume::KnowsMime() const { return (_Flags() & B_FS_HAS_MIME) != 0; }
bool BVolume::KnowsAttr() const { return (_Flags() & B_FS_HAS_ATTR) != 0; }
bool BVolume::KnowsQuery() const { return (_Flags() & B_FS_HAS_QUERY) != 0; }

bool BVolume::operator==(const BVolume& volume) const { return fDevice == volume.fDevice; }

bool BVolume::operator!=(const BVolume& volume) const { return !(*this == volume); }

BVolume& BVolume::operator=(const BVolume& volume) = default;

uint32 BVolume::_Flags() const
{
    const std::optional<Mount> mount = find_mount(fDevice);
    return mount ? volume_flags(*mount) : 0;
}
