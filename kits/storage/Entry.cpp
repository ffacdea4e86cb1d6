// entry_ref and BEntry. A BEntry keeps one resolved absolute path.

#include <Entry.h>

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include <Directory.h>
#include <Path.h>
#include <StorageDefs.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/StatFields.h"
#include "storage/StorageAccess.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;
using BPrivate::not_set;

entry_ref::entry_ref()
    : device(static_cast<dev_t>(-1)), directory(static_cast<ino_t>(-1)), name(nullptr)
{
}

entry_ref::entry_ref(dev_t dev, ino_t dir, const char* name)
    : device(dev), directory(dir), name(nullptr)
{
    set_name(name);
}

entry_ref::entry_ref(const entry_ref& ref) : entry_ref(ref.device, ref.directory, ref.name) {}

entry_ref::~entry_ref() { free(name); }

status_t entry_ref::set_name(const char* newName)
{
    return replace_path(&name, newName == nullptr ? B_BAD_VALUE : B_OK, newName) == B_NO_MEMORY
               ? B_NO_MEMORY
               : B_OK;
}

// A ref without a name comes before every name.
static int compare_names(const char* a, const char* b)
{
    if (a == nullptr || b == nullptr)
        return (a != nullptr) - (b != nullptr);
    return strcmp(a, b);
}

bool entry_ref::operator==(const entry_ref& ref) const
{
    return device == ref.device && directory == ref.directory && compare_names(name, ref.name) == 0;
}

bool entry_ref::operator!=(const entry_ref& ref) const { return !(*this == ref); }

entry_ref& entry_ref::operator=(const entry_ref& ref)
{
    if (this != &ref) {
        device = ref.device;
        directory = ref.directory;
        set_name(ref.name);
    }
    return *this;
}

BEntry::BEntry() : fPath(nullptr), fStatus(B_NO_INIT) {}

BEntry::BEntry(const BDirectory* dir, const char* path, bool traverse) : BEntry()
{
    SetTo(dir, path, traverse);
}

BEntry::BEntry(const entry_ref* ref, bool traverse) : BEntry() { SetTo(ref, traverse); }

BEntry::BEntry(const char* path, bool traverse) : BEntry() { SetTo(path, traverse); }

BEntry::BEntry(const BEntry& entry) : BEntry() { *this = entry; }

BEntry::~BEntry() { free(fPath); }

status_t BEntry::InitCheck() const { return fStatus; }

bool BEntry::Exists() const
{
    struct stat info;
    return GetStat(&info) == B_OK;
}

const char* BEntry::Name() const { return fPath == nullptr ? nullptr : leaf_of(fPath); }

status_t BEntry::GetStat(struct stat* stat) const
{
    if (fPath == nullptr)
        return not_set();
    if (stat == nullptr)
        return fail(EINVAL);
    return lstat(fPath, stat) == 0 ? B_OK : host_failure();
}

status_t BEntry::SetTo(const BDirectory* dir, const char* path, bool traverse)
{
    std::string full;
    status_t status = path_of(dir, path, &full);
    return status == B_OK ? SetTo(full.c_str(), traverse) : _Adopt(status, nullptr);
}

status_t BEntry::SetTo(const entry_ref* ref, bool traverse)
{
    if (ref == nullptr || ref->name == nullptr)
        return _Adopt(fail(EINVAL), nullptr);
    std::string path;
    status_t status = find_directory_path(ref->device, ref->directory, &path);
    if (status == B_OK)
        status = resolve_entry(join(path, ref->name), traverse, &path);
    return _Adopt(status, path.c_str());
}

status_t BEntry::SetTo(const char* path, bool traverse)
{
    if (path == nullptr)
        return _Adopt(fail(EINVAL), nullptr);
    std::string resolved;
    status_t status = resolve_entry(path, traverse, &resolved);
    return _Adopt(status, resolved.c_str());
}

void BEntry::Unset() { _Adopt(B_NO_INIT, nullptr); }

status_t BEntry::GetRef(entry_ref* ref) const
{
    if (fPath == nullptr)
        return not_set();
    if (ref == nullptr)
        return fail(EINVAL);
    entry_ref made;
    status_t status = remember_directory(directory_of(fPath), &made.device, &made.directory);
    if (status == B_OK)
        status = made.set_name(leaf_of(fPath));
    if (status == B_OK)
        *ref = made;
    return status;
}

status_t BEntry::GetPath(BPath* path) const
{
    if (fPath == nullptr)
        return not_set();
    return path == nullptr ? fail(EINVAL) : path->SetTo(fPath);
}

status_t BEntry::GetParent(BEntry* entry) const
{
    if (fPath == nullptr)
        return not_set();
    if (entry == nullptr)
        return fail(EINVAL);
    if (strcmp(fPath, "/") == 0)
        return fail(ENOENT);
    return entry->SetTo(directory_of(fPath).c_str());
}

status_t BEntry::GetParent(BDirectory* dir) const
{
    if (fPath == nullptr)
        return not_set();
    if (dir == nullptr)
        return fail(EINVAL);
    if (strcmp(fPath, "/") == 0)
        return fail(ENOENT);
    return dir->SetTo(directory_of(fPath).c_str());
}

status_t BEntry::GetName(char* buffer) const
{
    if (fPath == nullptr)
        return not_set();
    if (buffer == nullptr)
        return fail(EINVAL);
    strcpy(buffer, leaf_of(fPath));
    return B_OK;
}

status_t BEntry::Rename(const char* path, bool clobber)
{
    if (fPath == nullptr)
        return not_set();
    if (path == nullptr)
        return fail(EINVAL);
    if (path[0] == '\0')
        return fail(ENOENT);
    return _MoveTo(path[0] == '/' ? path : join(directory_of(fPath), path).c_str(), clobber);
}

status_t BEntry::MoveTo(BDirectory* dir, const char* path, bool clobber)
{
    if (fPath == nullptr)
        return not_set();
    std::string target;
    status_t status = path_of(dir, path == nullptr ? leaf_of(fPath) : path, &target);
    return status == B_OK ? _MoveTo(target.c_str(), clobber) : status;
}

status_t BEntry::Remove()
{
    if (fPath == nullptr)
        return not_set();
    return remove(fPath) == 0 ? B_OK : host_failure();
}

bool BEntry::operator==(const BEntry& item) const { return compare_names(fPath, item.fPath) == 0; }

bool BEntry::operator!=(const BEntry& item) const { return !(*this == item); }

BEntry& BEntry::operator=(const BEntry& item)
{
    if (this != &item)
        _Adopt(item.fStatus, item.fPath);
    return *this;
}

status_t BEntry::set_stat(struct stat& stat, uint32 what)
{
    return fPath == nullptr ? not_set() : apply_stat(fPath, stat, what, AT_SYMLINK_NOFOLLOW);
}

status_t BEntry::_Adopt(status_t status, const char* path)
{
    fStatus = replace_path(&fPath, status, path);
    return fStatus;
}

// Without `clobber` nothing that comes to the new place meanwhile is replaced either, but on file
// systems that can not tell.
static int rename_entry(const char* from, const char* to, bool clobber)
{
    if (clobber)
        return rename(from, to);
    const int before = errno;
    const int result = renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
    if (result == 0 || (errno != EINVAL && errno != ENOSYS))
        return result;
    errno = before;
    return rename(from, to);
}

// Moves what the entry names, and then names the new place.
status_t BEntry::_MoveTo(const char* target, bool clobber)
{
    std::string resolved;
    status_t status = resolve_entry(target, false, &resolved);
    if (status != B_OK)
        return status;
    struct stat info, other;
    status = GetStat(&info);
    if (status != B_OK)
        return status;
    if (!clobber && lstat(resolved.c_str(), &other) == 0)
        return fail(EEXIST);
    if (rename_entry(fPath, resolved.c_str(), clobber) != 0)
        return host_failure();
    if (S_ISDIR(info.st_mode))
        follow_moved_directory(fPath, resolved);
    return _Adopt(B_OK, resolved.c_str());
}

status_t BPrivate::StorageAccess::SetToChild(BEntry& entry, const char* directory,
                                             size_t directory_length, const char* leaf)
{
    const size_t leaf_size = strlen(leaf) + 1;
    auto* path = static_cast<char*>(realloc(entry.fPath, directory_length + 1 + leaf_size));
    if (path == nullptr)
        return entry._Adopt(fail(ENOMEM), nullptr);
    memcpy(path, directory, directory_length);
    size_t at = directory_length;
    if (at > 1)  // not the root directory
        path[at++] = '/';
    memcpy(path + at, leaf, leaf_size);
    entry.fPath = path;
    entry.fStatus = B_OK;
    return B_OK;
}

status_t get_ref_for_path(const char* path, entry_ref* ref)
{
    if (path == nullptr || ref == nullptr)
        return fail(EINVAL);
    BEntry entry(path);
    return entry.InitCheck() == B_OK ? entry.GetRef(ref) : entry.InitCheck();
}

bool operator<(const entry_ref& a, const entry_ref& b)
{
    if (a.device != b.device)
        return a.device < b.device;
    if (a.directory != b.directory)
        return a.directory < b.directory;
    return compare_names(a.name, b.name) < 0;
}
