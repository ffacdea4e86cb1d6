// BEntryList and BDirectory.

#include <Directory.h>

#include <dirent.h>
#include <errno.h>
#include <string.h>
#include <sys/stat.h>

#include <string>

#include <Entry.h>
#include <Path.h>

#include "Directories.h"
#include "HostErrors.h"

using namespace storage;

BEntryList::BEntryList() {}

BEntryList::~BEntryList() {}

BDirectory::BDirectory()
    : fStream(nullptr)
{
}

BDirectory::BDirectory(const BDirectory& dir)
    : BDirectory()
{
    *this = dir;
}

BDirectory::BDirectory(const entry_ref* ref)
    : BDirectory()
{
    SetTo(ref);
}

BDirectory::BDirectory(const node_ref* nref)
    : BDirectory()
{
    SetTo(nref);
}

BDirectory::BDirectory(const BEntry* entry)
    : BDirectory()
{
    SetTo(entry);
}

BDirectory::BDirectory(const char* path)
    : BDirectory()
{
    SetTo(path);
}

BDirectory::BDirectory(const BDirectory* dir, const char* path)
    : BDirectory()
{
    SetTo(dir, path);
}

BDirectory::~BDirectory()
{
    _CloseStream();
}

status_t BDirectory::SetTo(const entry_ref* ref)
{
    BEntry entry(ref, true);
    return SetTo(&entry);
}

status_t BDirectory::SetTo(const node_ref* nref)
{
    Unset();
    if (nref == nullptr)
        return _CheckDirectory(fail(EINVAL));
    std::string path;
    status_t status = find_directory_path(nref->device, nref->node, &path);
    return status == B_OK ? SetTo(path.c_str()) : _CheckDirectory(status);
}

status_t BDirectory::SetTo(const BEntry* entry)
{
    BPath path(entry);
    if (path.InitCheck() == B_OK)
        return SetTo(path.Path());
    Unset();
    return _CheckDirectory(path.InitCheck());
}

status_t BDirectory::SetTo(const char* path)
{
    Unset();
    BEntry entry(path, true);
    return _CheckDirectory(BNode::SetTo(&entry));
}

status_t BDirectory::SetTo(const BDirectory* dir, const char* path)
{
    BEntry entry(dir, path, true);
    return SetTo(&entry);
}

void BDirectory::Unset()
{
    _CloseStream();
    BNode::Unset();
}

status_t BDirectory::GetEntry(BEntry* entry) const
{
    if (entry == nullptr)
        return fail(EINVAL);
    return fPath == nullptr ? B_NO_INIT : entry->SetTo(fPath);
}

bool BDirectory::IsRootDirectory() const
{
    return fPath != nullptr && strcmp(fPath, "/") == 0;
}

status_t BDirectory::FindEntry(const char* path, BEntry* entry, bool traverse) const
{
    if (entry == nullptr)
        return fail(EINVAL);
    status_t status = entry->SetTo(this, path, traverse);
    if (status == B_OK && !entry->Exists()) {
        entry->Unset();
        status = fail(ENOENT);
    }
    return status;
}

bool BDirectory::Contains(const char* path, int32 nodeFlags) const
{
    BEntry entry;
    return FindEntry(path, &entry) == B_OK && Contains(&entry, nodeFlags);
}

bool BDirectory::Contains(const BEntry* entry, int32 nodeFlags) const
{
    BPath path(entry);
    if (fPath == nullptr || path.InitCheck() != B_OK || !entry->Exists())
        return false;
    const std::string front = join(fPath, "");
    if (strncmp(path.Path(), front.c_str(), front.size()) != 0)
        return false;
    return ((nodeFlags & B_FILE_NODE) != 0 && entry->IsFile())
        || ((nodeFlags & B_SYMLINK_NODE) != 0 && entry->IsSymLink())
        || ((nodeFlags & B_DIRECTORY_NODE) != 0 && entry->IsDirectory());
}

status_t BDirectory::GetStatFor(const char* path, struct stat* stat) const
{
    BEntry entry(this, path);
    return entry.InitCheck() == B_OK ? entry.GetStat(stat) : entry.InitCheck();
}

status_t BDirectory::GetNextEntry(BEntry* entry, bool traverse)
{
    if (entry == nullptr)
        return fail(EINVAL);
    const struct dirent* next = _Next();
    return next == nullptr ? host_failure() : entry->SetTo(this, next->d_name, traverse);
}

status_t BDirectory::GetNextRef(entry_ref* ref)
{
    BEntry entry;
    status_t status = GetNextEntry(&entry);
    return status == B_OK ? entry.GetRef(ref) : status;
}

int32 BDirectory::GetNextDirents(struct dirent* buf, size_t bufSize, int32 count)
{
    if (buf == nullptr || fPath == nullptr)
        return fail(EINVAL);
    char* at = reinterpret_cast<char*>(buf);
    int32 read = 0;
    while (read < count) {
        const long before = fStream == nullptr ? -1 : telldir(static_cast<DIR*>(fStream));
        const struct dirent* next = _Next();
        if (next == nullptr)
            break;
        if (next->d_reclen > bufSize) {
            if (before >= 0)
                seekdir(static_cast<DIR*>(fStream), before);
            else
                Rewind();
            return read > 0 ? read : fail(EINVAL);
        }
        memcpy(at, next, next->d_reclen);
        at += next->d_reclen;
        bufSize -= next->d_reclen;
        read++;
    }
    return read;
}

status_t BDirectory::Rewind()
{
    if (fPath == nullptr)
        return B_NO_INIT;
    if (fStream != nullptr)
        rewinddir(static_cast<DIR*>(fStream));
    return B_OK;
}

int32 BDirectory::CountEntries()
{
    status_t status = Rewind();
    if (status != B_OK)
        return status;
    int32 count = 0;
    while (_Next() != nullptr)
        count++;
    Rewind();
    return count;
}

status_t BDirectory::CreateDirectory(const char* path, BDirectory* dir)
{
    BEntry entry(this, path);
    BPath made(&entry);
    if (made.InitCheck() != B_OK)
        return made.InitCheck();
    if (mkdir(made.Path(), 0777) != 0)
        return host_failure();
    return dir == nullptr ? B_OK : dir->SetTo(&entry);
}

BDirectory& BDirectory::operator=(const BDirectory& dir)
{
    if (this != &dir) {
        _CloseStream();
        BNode::operator=(dir);
    }
    return *this;
}

status_t BDirectory::_CheckDirectory(status_t status)
{
    if (status == B_OK && !IsDirectory())
        status = fail(ENOTDIR);
    if (status != B_OK)
        BNode::Unset();
    fStatus = status;
    return status;
}

void BDirectory::_CloseStream()
{
    if (fStream != nullptr)
        closedir(static_cast<DIR*>(fStream));
    fStream = nullptr;
}

// The next entry but "." and ".."; null behind the last, and then errno says ENOENT.
struct dirent* BDirectory::_Next()
{
    if (fStream == nullptr && fPath != nullptr)
        fStream = opendir(fPath);
    if (fStream == nullptr)
        return nullptr;
    errno = ENOENT;
    struct dirent* next;
    do {
        next = readdir(static_cast<DIR*>(fStream));
    } while (next != nullptr
        && (strcmp(next->d_name, ".") == 0 || strcmp(next->d_name, "..") == 0));
    return next;
}
