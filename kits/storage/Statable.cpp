// BStatable: reads the fields of a stat record and sets them one at a time.

#include <Statable.h>

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include <Node.h>
#include <Volume.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/StatFields.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;

// Copies one value out of the object's stat record.
template <class Value, class Field>
static status_t read_field(const BStatable& statable, Value* value, Field field)
{
    if (value == nullptr)
        return fail(EINVAL);
    struct stat info;
    status_t status = statable.GetStat(&info);
    if (status == B_OK)
        *value = field(info);
    return status;
}

static bool has_type(const BStatable& statable, mode_t type)
{
    struct stat info;
    return statable.GetStat(&info) == B_OK && (info.st_mode & S_IFMT) == type;
}

status_t storage::apply_stat(const char* path, const struct stat& stat, uint32 what, int at_flags)
{
    int result = -1;
    if (what == kStatMode) {
        result = chmod(path, stat.st_mode & kPermissionBits);
    } else if (what == kStatOwner) {
        result = fchownat(AT_FDCWD, path, stat.st_uid, static_cast<gid_t>(-1), at_flags);
    } else if (what == kStatGroup) {
        result = fchownat(AT_FDCWD, path, static_cast<uid_t>(-1), stat.st_gid, at_flags);
    } else {
        timespec times[2] = {{0, UTIME_OMIT}, {0, UTIME_OMIT}};
        times[what == kStatModified] = what == kStatModified ? stat.st_mtim : stat.st_atim;
        result = utimensat(AT_FDCWD, path, times, at_flags);
    }
    return result == 0 ? B_OK : host_failure();
}

BStatable::~BStatable() {}

bool BStatable::IsFile() const { return has_type(*this, S_IFREG); }

bool BStatable::IsDirectory() const { return has_type(*this, S_IFDIR); }

bool BStatable::IsSymLink() const { return has_type(*this, S_IFLNK); }

// The ref leads back to the node, for as long as it keeps its path.
status_t BStatable::GetNodeRef(node_ref* ref) const
{
    if (ref == nullptr)
        return fail(EINVAL);
    struct stat info;
    status_t status = GetStat(&info);
    if (status != B_OK)
        return status;
    std::string path;
    if (path_of(*this, &path) == B_OK)
        remember_node(path, info);
    *ref = node_ref(info.st_dev, info.st_ino);
    return B_OK;
}

status_t BStatable::GetOwner(uid_t* owner) const
{
    return read_field(*this, owner, [](const struct stat& info) { return info.st_uid; });
}

status_t BStatable::SetOwner(uid_t owner)
{
    struct stat info = {};
    info.st_uid = owner;
    return set_stat(info, kStatOwner);
}

status_t BStatable::GetGroup(gid_t* group) const
{
    return read_field(*this, group, [](const struct stat& info) { return info.st_gid; });
}

status_t BStatable::SetGroup(gid_t group)
{
    struct stat info = {};
    info.st_gid = group;
    return set_stat(info, kStatGroup);
}

status_t BStatable::GetPermissions(mode_t* permissions) const
{
    return read_field(*this, permissions,
                      [](const struct stat& info) { return info.st_mode & kPermissionBits; });
}

status_t BStatable::SetPermissions(mode_t permissions)
{
    struct stat info = {};
    info.st_mode = permissions & kPermissionBits;
    return set_stat(info, kStatMode);
}

status_t BStatable::GetSize(off_t* size) const
{
    return read_field(*this, size, [](const struct stat& info) { return info.st_size; });
}

status_t BStatable::GetModificationTime(time_t* mtime) const
{
    return read_field(*this, mtime, [](const struct stat& info) { return info.st_mtime; });
}

status_t BStatable::SetModificationTime(time_t mtime)
{
    struct stat info = {};
    info.st_mtime = mtime;
    return set_stat(info, kStatModified);
}

status_t BStatable::GetCreationTime(time_t* ctime) const
{
    return read_field(*this, ctime, [](const struct stat& info) { return info.st_ctime; });
}

status_t BStatable::SetCreationTime(time_t) { return fail(EOPNOTSUPP); }

status_t BStatable::GetAccessTime(time_t* atime) const
{
    return read_field(*this, atime, [](const struct stat& info) { return info.st_atime; });
}

status_t BStatable::SetAccessTime(time_t atime)
{
    struct stat info = {};
    info.st_atime = atime;
    return set_stat(info, kStatAccessed);
}

status_t BStatable::GetVolume(BVolume* volume) const
{
    if (volume == nullptr)
        return fail(EINVAL);
    struct stat info;
    status_t status = GetStat(&info);
    return status == B_OK ? volume->SetTo(info.st_dev) : status;
}
