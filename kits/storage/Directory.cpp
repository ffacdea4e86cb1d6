// BDirectory: scanning, finding and creating entries. The scan reads the host's records in large
// pieces; entries are named by the path that the directory has when a piece is read.

#include <Directory.h>

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <new>
#include <string>
#include <utility>

#include <File.h>
#include <Path.h>
#include <SymLink.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/StorageAccess.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::fail_again;
using BPrivate::host_failure;
using BPrivate::not_set;
using BPrivate::StorageAccess;

static const int kDirectoryFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
static const mode_t kNewDirectoryMode = 0777;

static bool is_dot_or_dots(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// The records of a directory's descriptor, one by one.
class BDirectory::Scan {
public:
    // Null and B_OK at the end.
    status_t Peek(int fd, const struct dirent64** record)
    {
        if (fNext == fEnd) {
            const ssize_t size = getdents64(fd, fRecords, sizeof(fRecords));
            if (size < 0 && errno != ENOENT)  // a removed directory is at its end
                return host_failure();
            fNext = 0;
            fEnd = size < 0 ? 0 : size;
            fPathStatus = path_of_descriptor(fd, &fPath);
        }
        *record = fNext < fEnd ? reinterpret_cast<struct dirent64*>(fRecords + fNext) : nullptr;
        return B_OK;
    }
    void Step(const struct dirent64& record) { fNext += record.d_reclen; }
    // The directory's path when the records were read; not every directory has one.
    const std::string& Path() const { return fPath; }
    status_t PathStatus() const { return fPathStatus; }

private:
    alignas(struct dirent64) char fRecords[64 * 1024];
    ssize_t fNext = 0;
    ssize_t fEnd = 0;
    std::string fPath;
    status_t fPathStatus = B_NO_INIT;
};

BDirectory::BDirectory() : fScan(nullptr) {}

BDirectory::BDirectory(const BDirectory& dir) : BDirectory() { *this = dir; }

BDirectory::BDirectory(const entry_ref* ref) : BDirectory() { SetTo(ref); }

BDirectory::BDirectory(const node_ref* nref) : BDirectory() { SetTo(nref); }

BDirectory::BDirectory(const BEntry* entry) : BDirectory() { SetTo(entry); }

BDirectory::BDirectory(const char* path) : BDirectory() { SetTo(path); }

BDirectory::BDirectory(const BDirectory* dir, const char* path) : BDirectory() { SetTo(dir, path); }

BDirectory::~BDirectory() { delete fScan; }

status_t BDirectory::SetTo(const entry_ref* ref)
{
    std::string path;
    status_t status = path_of(ref, &path);
    return status == B_OK ? SetTo(path.c_str()) : StorageAccess::Fail(*this, status);
}

status_t BDirectory::SetTo(const node_ref* nref)
{
    if (nref == nullptr)
        return StorageAccess::Fail(*this, fail(EINVAL));
    std::string path;
    status_t status = find_directory_path(nref->device, nref->node, &path);
    return status == B_OK ? SetTo(path.c_str()) : StorageAccess::Fail(*this, status);
}

status_t BDirectory::SetTo(const BEntry* entry)
{
    std::string path;
    status_t status = path_of(entry, &path);
    return status == B_OK ? SetTo(path.c_str()) : StorageAccess::Fail(*this, status);
}

status_t BDirectory::SetTo(const char* path)
{
    return path == nullptr ? StorageAccess::Fail(*this, fail(EINVAL)) : _Open(AT_FDCWD, path);
}

status_t BDirectory::SetTo(const BDirectory* dir, const char* path)
{
    if (dir == nullptr || path == nullptr || path[0] == '/')
        return StorageAccess::Fail(*this, fail(EINVAL));
    return _Open(StorageAccess::Descriptor(*dir), path[0] == '\0' ? "." : path);
}

status_t BDirectory::GetEntry(BEntry* entry) const
{
    if (InitCheck() != B_OK)
        return not_set();
    return entry == nullptr ? fail(EINVAL) : entry->SetTo(this, "");
}

bool BDirectory::IsRootDirectory() const
{
    struct stat here, above;
    return GetStat(&here) == B_OK &&
           fstatat(StorageAccess::Descriptor(*this), "..", &above, 0) == 0 &&
           (here.st_dev != above.st_dev || here.st_ino == above.st_ino);
}

// An object that was to be set anew does not keep what it was before. errno stays.
template <class Object>
static status_t unset(Object* object, status_t status)
{
    const int number = errno;
    if (object != nullptr)
        object->Unset();
    errno = number;
    return status;
}

status_t BDirectory::FindEntry(const char* path, BEntry* entry, bool traverse) const
{
    if (entry == nullptr)
        return fail(EINVAL);
    if (path == nullptr)
        return unset(entry, fail(EINVAL));
    status_t status = entry->SetTo(this, path, traverse);
    if (status != B_OK)
        return status;
    struct stat info;
    status = entry->GetStat(&info);
    return status == B_OK ? B_OK : unset(entry, status);
}

static bool is_of_kind(const BEntry& entry, int32 kinds)
{
    struct stat info;
    if (entry.GetStat(&info) != B_OK)
        return false;
    if (kinds == B_ANY_NODE)
        return true;
    return ((kinds & B_FILE_NODE) != 0 && S_ISREG(info.st_mode)) ||
           ((kinds & B_SYMLINK_NODE) != 0 && S_ISLNK(info.st_mode)) ||
           ((kinds & B_DIRECTORY_NODE) != 0 && S_ISDIR(info.st_mode));
}

bool BDirectory::Contains(const char* path, int32 nodeFlags) const
{
    if (path == nullptr)
        return false;
    BEntry entry;
    if (path[0] == '/')
        entry.SetTo(path);
    else
        entry.SetTo(this, path);
    return Contains(&entry, nodeFlags);
}

bool BDirectory::Contains(const BEntry* entry, int32 nodeFlags) const
{
    std::string inner, outer;
    if (path_of(entry, &inner) != B_OK || path_of(this, "", &outer) != B_OK)
        return false;
    if (outer.back() != '/')
        outer += '/';
    return inner.size() > outer.size() && inner.compare(0, outer.size(), outer) == 0 &&
           is_of_kind(*entry, nodeFlags);
}

status_t BDirectory::GetStatFor(const char* path, struct stat* stat) const
{
    if (stat == nullptr)
        return fail(EINVAL);
    if (path == nullptr)
        return GetStat(stat);
    return fstatat(StorageAccess::Descriptor(*this), path, stat, AT_SYMLINK_NOFOLLOW) == 0
               ? B_OK
               : host_failure();
}

status_t BDirectory::GetNextEntry(BEntry* entry, bool traverse)
{
    if (entry == nullptr)
        return fail(EINVAL);
    const char* name;
    status_t status = _NextName(&name);
    if (status != B_OK)
        return status;
    if (fScan->PathStatus() != B_OK)
        return fail_again(fScan->PathStatus());
    const std::string& path = fScan->Path();
    if (traverse)
        return entry->SetTo(join(path, name).c_str(), true);
    return StorageAccess::SetToChild(*entry, path.data(), path.size(), name);
}

status_t BDirectory::GetNextRef(entry_ref* ref)
{
    if (ref == nullptr)
        return fail(EINVAL);
    const char* name;
    status_t status = _NextName(&name);
    struct stat info;
    if (status == B_OK)
        status = GetStat(&info);
    if (status != B_OK)
        return status;
    if (fScan->PathStatus() == B_OK)
        remember_node(fScan->Path(), info);
    ref->device = info.st_dev;
    ref->directory = info.st_ino;
    return ref->set_name(name);
}

int32 BDirectory::GetNextDirents(struct dirent* buffer, size_t size, int32 count)
{
    static_assert(sizeof(struct dirent) == sizeof(struct dirent64));
    if (buffer == nullptr)
        return fail(EINVAL);
    if (fScan == nullptr)
        fScan = new Scan;
    char* at = reinterpret_cast<char*>(buffer);
    int32 copied = 0;
    while (copied < count) {
        const struct dirent64* record = nullptr;
        status_t status = fScan->Peek(StorageAccess::Descriptor(*this), &record);
        if (status != B_OK)
            return copied > 0 ? copied : status;
        if (record == nullptr)
            break;
        if (record->d_reclen > size)
            return copied > 0 ? copied : fail(EOVERFLOW);
        memcpy(at, record, record->d_reclen);
        at += record->d_reclen;
        size -= record->d_reclen;
        fScan->Step(*record);
        copied++;
    }
    return copied;
}

status_t BDirectory::Rewind()
{
    delete std::exchange(fScan, nullptr);
    return lseek(StorageAccess::Descriptor(*this), 0, SEEK_SET) == 0 ? B_OK : host_failure();
}

int32 BDirectory::CountEntries()
{
    if (InitCheck() != B_OK)
        return fail(EBADF);
    BDirectory other(*this);
    if (other.InitCheck() != B_OK)
        return fail_again(other.InitCheck());
    int32 count = 0;
    const char* name;
    status_t status;
    while ((status = other._NextName(&name)) == B_OK)
        count++;
    return status == B_ENTRY_NOT_FOUND ? count : status;
}

// What was created need not be below the directory: an absolute path is taken as it is.
template <class Node, class... Mode>
static status_t set_to(Node& node, const BDirectory& dir, const char* path, Mode... mode)
{
    const bool is_absolute = path != nullptr && path[0] == '/';
    return is_absolute ? node.SetTo(path, mode...) : node.SetTo(&dir, path, mode...);
}

status_t BDirectory::CreateDirectory(const char* path, BDirectory* dir)
{
    if (path == nullptr)
        return unset(dir, fail(EINVAL));
    if (mkdirat(StorageAccess::Descriptor(*this), path, kNewDirectoryMode) != 0)
        return unset(dir, host_failure());
    return dir == nullptr ? B_OK : set_to(*dir, *this, path);
}

status_t BDirectory::CreateFile(const char* path, BFile* file, bool failIfExists)
{
    BFile own;
    const uint32 exists = failIfExists ? B_FAIL_IF_EXISTS : B_ERASE_FILE;
    status_t status =
        set_to(file == nullptr ? own : *file, *this, path, B_READ_WRITE | B_CREATE_FILE | exists);
    return status == B_OK ? B_OK : unset(file, status);
}

status_t BDirectory::CreateSymLink(const char* path, const char* linkToPath, BSymLink* link)
{
    if (path == nullptr || linkToPath == nullptr)
        return unset(link, fail(EINVAL));
    if (symlinkat(linkToPath, StorageAccess::Descriptor(*this), path) != 0)
        return unset(link, host_failure());
    return link == nullptr ? B_OK : set_to(*link, *this, path);
}

BDirectory& BDirectory::operator=(const BDirectory& dir)
{
    if (this == &dir)
        return *this;
    delete std::exchange(fScan, nullptr);
    if (dir.InitCheck() == B_OK)
        StorageAccess::Adopt(*this, openat(StorageAccess::Descriptor(dir), ".", kDirectoryFlags));
    else
        StorageAccess::Fail(*this, dir.InitCheck());
    return *this;
}

status_t BDirectory::_Open(int at, const char* path)
{
    delete std::exchange(fScan, nullptr);
    return StorageAccess::AdoptOpened(*this, openat(at, path, kDirectoryFlags));
}

// The next name but "." and ".."; it lives until the next call.
status_t BDirectory::_NextName(const char** name)
{
    if (InitCheck() != B_OK)
        return fail(EBADF);
    if (fScan == nullptr && (fScan = new (std::nothrow) Scan) == nullptr)
        return fail(ENOMEM);
    const struct dirent64* record = nullptr;
    do {
        status_t status = fScan->Peek(StorageAccess::Descriptor(*this), &record);
        if (status != B_OK)
            return status;
        if (record == nullptr)
            return fail(ENOENT);
        fScan->Step(*record);
    } while (is_dot_or_dots(record->d_name));
    *name = record->d_name;
    return B_OK;
}

status_t create_directory(const char* path, mode_t mode)
{
    if (path == nullptr)
        return fail(EINVAL);
    if (path[0] == '\0')
        return fail(ENOENT);
    const std::string whole(path);
    if (whole.size() >= PATH_MAX)
        return fail(ENAMETOOLONG);
    const int before = errno;
    for (size_t slash = whole.find('/', 1);; slash = whole.find('/', slash + 1)) {
        const std::string part = whole.substr(0, slash);
        const mode_t part_mode = slash == std::string::npos ? mode : mode | 0300;
        if (mkdir(part.c_str(), part_mode) != 0 && errno != EEXIST) {
            const int number = errno;  // a place where nothing can be made, but that is there
            struct stat info;
            if (stat(part.c_str(), &info) != 0)
                return fail(number);
        }
        if (slash == std::string::npos)
            break;
    }
    struct stat info;
    if (stat(path, &info) != 0)
        return host_failure();
    if (!S_ISDIR(info.st_mode))
        return fail(ENOTDIR);
    errno = before;
    return B_OK;
}
