// BFile: unbuffered reading and writing through the host's descriptor.

#include <File.h>

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <string>

#include <Directory.h>
#include <Entry.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/StorageAccess.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;
using BPrivate::StorageAccess;

static const uint32 kAccessBits = 3;
static const mode_t kNewFileMode = 0666;

static const struct {
    uint32 flag;
    int host;
} kOpenFlags[] = {
    {B_FAIL_IF_EXISTS, O_EXCL},
    {B_CREATE_FILE, O_CREAT},
    {B_OPEN_AT_END, O_APPEND},
};

// The open itself must not wait for the other end of a pipe or for a device; reading may.
static int open_file(int at, const char* path, uint32 mode)
{
    int flags = static_cast<int>(mode & kAccessBits) | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    for (const auto& row : kOpenFlags) {
        if ((mode & row.flag) != 0)
            flags |= row.host;
    }
    const int fd = openat(at, path, flags, kNewFileMode);
    if (fd >= 0)
        fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

// Pipes and devices have nothing to be emptied of.
static status_t empty_file(int fd)
{
    struct stat info;
    if (fstat(fd, &info) != 0)
        return host_failure();
    if (!S_ISREG(info.st_mode) || info.st_size == 0)
        return B_OK;
    // By its name, since it need not be open for writing.
    return truncate(StorageAccess::HostPath(fd).text, 0) == 0 ? B_OK : host_failure();
}

BFile::BFile() : fMode(0) {}

BFile::BFile(const BFile& file) : BFile() { *this = file; }

BFile::BFile(const entry_ref* ref, uint32 openMode) : BFile() { SetTo(ref, openMode); }

BFile::BFile(const BEntry* entry, uint32 openMode) : BFile() { SetTo(entry, openMode); }

BFile::BFile(const char* path, uint32 openMode) : BFile() { SetTo(path, openMode); }

BFile::BFile(const BDirectory* dir, const char* path, uint32 openMode) : BFile()
{
    SetTo(dir, path, openMode);
}

BFile::~BFile() {}

status_t BFile::SetTo(const entry_ref* ref, uint32 openMode)
{
    std::string path;
    status_t status = path_of(ref, &path);
    return status == B_OK ? _Open(AT_FDCWD, path.c_str(), openMode)
                          : StorageAccess::Fail(*this, status);
}

status_t BFile::SetTo(const BEntry* entry, uint32 openMode)
{
    std::string path;
    status_t status = path_of(entry, &path);
    return status == B_OK ? _Open(AT_FDCWD, path.c_str(), openMode)
                          : StorageAccess::Fail(*this, status);
}

status_t BFile::SetTo(const char* path, uint32 openMode)
{
    if (path == nullptr)
        return StorageAccess::Fail(*this, fail(EINVAL));
    return _Open(AT_FDCWD, path, openMode);
}

status_t BFile::SetTo(const BDirectory* dir, const char* path, uint32 openMode)
{
    if (dir == nullptr || path == nullptr || path[0] == '/')
        return StorageAccess::Fail(*this, fail(EINVAL));
    return _Open(StorageAccess::Descriptor(*dir), path, openMode);
}

bool BFile::IsReadable() const
{
    return InitCheck() == B_OK && (fMode & kAccessBits) != B_WRITE_ONLY;
}

bool BFile::IsWritable() const
{
    return InitCheck() == B_OK && (fMode & kAccessBits) != B_READ_ONLY;
}

// Repeats a call that a signal cut short before it moved a byte.
template <class Call>
static ssize_t transfer(Call call)
{
    ssize_t moved;
    do {
        moved = call();
    } while (moved < 0 && errno == EINTR);
    return moved < 0 ? host_failure() : moved;
}

static size_t at_most(size_t size)
{
    return std::min(size, static_cast<size_t>(std::numeric_limits<ssize_t>::max()));
}

ssize_t BFile::Read(void* buffer, size_t size)
{
    const int fd = StorageAccess::Descriptor(*this);
    return transfer([&] { return read(fd, buffer, at_most(size)); });
}

ssize_t BFile::ReadAt(off_t location, void* buffer, size_t size)
{
    const int fd = StorageAccess::Descriptor(*this);
    return transfer([&] { return pread(fd, buffer, at_most(size), location); });
}

ssize_t BFile::Write(const void* buffer, size_t size)
{
    const int fd = StorageAccess::Descriptor(*this);
    return transfer([&] { return write(fd, buffer, at_most(size)); });
}

ssize_t BFile::WriteAt(off_t location, const void* buffer, size_t size)
{
    const int fd = StorageAccess::Descriptor(*this);
    return transfer([&] { return pwrite(fd, buffer, at_most(size), location); });
}

off_t BFile::Seek(off_t offset, uint32 seekMode)
{
    if (seekMode > SEEK_END)
        return fail(EINVAL);
    const off_t position =
        lseek(StorageAccess::Descriptor(*this), offset, static_cast<int>(seekMode));
    return position < 0 ? host_failure() : position;
}

off_t BFile::Position() const
{
    const off_t position = lseek(StorageAccess::Descriptor(*this), 0, SEEK_CUR);
    return position < 0 ? host_failure() : position;
}

status_t BFile::SetSize(off_t size)
{
    return ftruncate(StorageAccess::Descriptor(*this), size) == 0 ? B_OK : host_failure();
}

status_t BFile::GetSize(off_t* size) const { return BStatable::GetSize(size); }

BFile& BFile::operator=(const BFile& file)
{
    if (this == &file)
        return *this;
    if (file.InitCheck() != B_OK) {
        StorageAccess::Fail(*this, file.InitCheck());
        return *this;
    }
    const uint32 once = B_FAIL_IF_EXISTS | B_CREATE_FILE | B_ERASE_FILE;
    const int fd = StorageAccess::Descriptor(file);
    fMode = file.fMode & ~once;
    StorageAccess::Adopt(*this, open_file(AT_FDCWD, StorageAccess::HostPath(fd).text, fMode));
    return *this;
}

status_t BFile::_Open(int at, const char* path, uint32 openMode)
{
    if ((openMode & kAccessBits) > B_READ_WRITE)
        return StorageAccess::Fail(*this, fail(EINVAL));
    fMode = openMode;
    status_t status = StorageAccess::AdoptOpened(*this, open_file(at, path, openMode));
    if (status != B_OK || (openMode & B_ERASE_FILE) == 0)
        return status;
    // What is locked is not emptied either.
    status = empty_file(StorageAccess::Descriptor(*this));
    return status == B_OK ? B_OK : StorageAccess::Fail(*this, status);
}
