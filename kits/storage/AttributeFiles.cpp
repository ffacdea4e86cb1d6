// Descriptors of single attributes. The host has none: each is a file in memory that goes back into
// the attribute when it is closed. Any thread.

#include <fs_attr.h>

#include <TypeConstants.h>

#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "storage/Attributes.h"
#include "storage/StorageAccess.h"
#include "support/HostErrors.h"

using namespace storage;
using BPrivate::StorageAccess;

struct OpenAttribute {
    int node;  // descriptor
    std::string name;
    type_code type;
    bool writes;
};

struct OpenAttributes {
    std::mutex lock;
    std::map<int, OpenAttribute> by_descriptor;  // lock
};

static OpenAttributes& open_attributes()
{
    static auto* sOpen = new OpenAttributes;  // outlives every static that closes one
    return *sOpen;
}

static int fail_with(int number, int node)
{
    close(node);
    errno = number;
    return -1;
}

// A file in memory with these bytes, at its beginning; readable alone where nothing may be written.
static int file_of(const std::string& bytes, bool writes)
{
    const int fd = memfd_create("attribute", MFD_CLOEXEC);
    if (fd < 0 || (write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                   lseek(fd, 0, SEEK_SET) == 0 && writes))
        return fd;
    const int reads = open(StorageAccess::HostPath(fd).text, O_RDONLY | O_CLOEXEC);
    close(fd);
    return reads;
}

// Takes over `node`.
static int open_attribute(int node, const char* name, type_code type, int mode)
{
    if (node < 0)
        return -1;
    if (name == nullptr)
        return fail_with(EINVAL, node);
    const std::string node_path = StorageAccess::HostPath(node).text;
    Attribute attribute;
    const status_t status = read_attribute(node_path.c_str(), name, &attribute);
    const bool writes = (mode & O_ACCMODE) != O_RDONLY;
    if (status != B_OK && (mode & O_CREAT) == 0)
        return fail_with(errno, node);
    if (status == B_OK && (mode & (O_CREAT | O_EXCL)) == (O_CREAT | O_EXCL))
        return fail_with(EEXIST, node);
    if (status != B_OK && write_attribute_at(node_path.c_str(), name, type, 0, "", 0) < 0)
        return fail_with(errno, node);
    if ((mode & O_TRUNC) != 0 && writes)
        attribute.bytes.clear();
    const int fd = file_of(attribute.bytes, writes);
    if (fd < 0)
        return fail_with(errno, node);
    const type_code kept = status == B_OK && type == B_ANY_TYPE ? attribute.type : type;
    OpenAttributes& open = open_attributes();
    std::lock_guard<std::mutex> guard(open.lock);
    auto [former, is_new] = open.by_descriptor.try_emplace(fd);
    if (!is_new)
        close(former->second.node);  // it was closed by close()
    former->second = {node, name, kept, writes};
    return fd;
}

extern "C" int fs_open_attr(const char* path, const char* attribute, uint32 type, int openMode)
{
    if (path == nullptr) {
        errno = EINVAL;
        return -1;
    }
    return open_attribute(open(path, O_PATH | O_CLOEXEC), attribute, type, openMode);
}

extern "C" int fs_fopen_attr(int fd, const char* attribute, uint32 type, int openMode)
{
    return open_attribute(fcntl(fd, F_DUPFD_CLOEXEC, 0), attribute, type, openMode);
}

// Writes what the file holds into the attribute.
static bool write_back(int fd, const OpenAttribute& attribute)
{
    struct stat info;
    if (fstat(fd, &info) != 0)
        return false;
    std::string bytes(static_cast<size_t>(info.st_size), '\0');
    if (pread(fd, bytes.data(), bytes.size(), 0) != info.st_size)
        return false;
    const char* name = attribute.name.c_str();
    const std::string node = StorageAccess::HostPath(attribute.node).text;
    // A shorter value does not end a longer one.
    Attribute former;
    if (read_attribute(node.c_str(), name, &former) == B_OK && former.bytes.size() > bytes.size())
        remove_attribute(node.c_str(), name);
    return write_attribute_at(node.c_str(), name, attribute.type, 0, bytes.data(), bytes.size()) >=
           0;
}

extern "C" int fs_close_attr(int fd)
{
    OpenAttribute attribute;
    {
        OpenAttributes& open = open_attributes();
        std::lock_guard<std::mutex> guard(open.lock);
        auto found = open.by_descriptor.find(fd);
        if (found == open.by_descriptor.end()) {
            errno = EBADF;
            return -1;
        }
        attribute = std::move(found->second);
        open.by_descriptor.erase(found);
    }
    const bool written = !attribute.writes || write_back(fd, attribute);
    const int number = errno;
    close(fd);
    close(attribute.node);
    errno = number;
    return written ? 0 : -1;
}
