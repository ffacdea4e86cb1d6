// node_ref and BNode. A BNode holds its node open; the host names it as a path below /proc.

#include <Node.h>

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <Directory.h>
#include <Entry.h>
#include <StorageDefs.h>
#include <String.h>
#include <TypeConstants.h>

#include "storage/Attributes.h"
#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/StatFields.h"
#include "storage/StorageAccess.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;
using BPrivate::not_set;
using BPrivate::StorageAccess;

static const int kNodeFlags = O_PATH | O_NOFOLLOW | O_CLOEXEC;

namespace {

// The nodes that this process has locked. The host's locks tell nothing to who only names a node.
class LockedNodes {
public:
    void Add(int fd)
    {
        std::lock_guard guard(fLock);
        fNodes.insert(_KeyOf(fd));
        fCount = fNodes.size();
    }
    void Remove(int fd)
    {
        std::lock_guard guard(fLock);
        fNodes.erase(_KeyOf(fd));
        fCount = fNodes.size();
    }
    bool Has(int fd)
    {
        if (fCount == 0)
            return false;
        std::lock_guard guard(fLock);
        return fNodes.contains(_KeyOf(fd));
    }

private:
    static std::pair<dev_t, ino_t> _KeyOf(int fd)
    {
        struct stat info = {};
        fstat(fd, &info);
        return {info.st_dev, info.st_ino};
    }

    std::mutex fLock;
    std::set<std::pair<dev_t, ino_t>> fNodes;  // fLock
    std::atomic<size_t> fCount{0};
};

}  // namespace

static LockedNodes& locked_nodes()
{
    static auto* nodes = new LockedNodes;  // static objects may hold nodes
    return *nodes;
}

// Whether somebody holds the node locked. The descriptor is of an open file or names a node.
static bool is_locked(int fd)
{
    if (flock(fd, LOCK_SH | LOCK_NB) == 0) {
        flock(fd, LOCK_UN);
        return false;
    }
    return errno == EWOULDBLOCK || locked_nodes().Has(fd);
}

node_ref::node_ref() : device(static_cast<dev_t>(-1)), node(static_cast<ino_t>(-1)) {}

node_ref::node_ref(dev_t device, ino_t node) : device(device), node(node) {}

node_ref::node_ref(const node_ref& other) = default;

bool node_ref::operator==(const node_ref& other) const
{
    return device == other.device && node == other.node;
}

bool node_ref::operator!=(const node_ref& other) const { return !(*this == other); }

bool node_ref::operator<(const node_ref& other) const
{
    return std::tie(device, node) < std::tie(other.device, other.node);
}

node_ref& node_ref::operator=(const node_ref& other) = default;

BNode::BNode()
    : fFd(-1), fLockFd(-1), fStatus(B_NO_INIT), fAttrNames(nullptr), fAttrNamesSize(0), fAttrNext(0)
{
}

BNode::BNode(const entry_ref* ref) : BNode() { SetTo(ref); }

BNode::BNode(const BEntry* entry) : BNode() { SetTo(entry); }

BNode::BNode(const char* path) : BNode() { SetTo(path); }

BNode::BNode(const BDirectory* dir, const char* path) : BNode() { SetTo(dir, path); }

BNode::BNode(const BNode& node) : BNode() { *this = node; }

BNode::~BNode() { BNode::Unset(); }

status_t BNode::InitCheck() const { return fStatus; }

status_t BNode::GetStat(struct stat* stat) const
{
    if (fFd < 0)
        return not_set();
    if (stat == nullptr)
        return fail(EINVAL);
    return fstat(fFd, stat) == 0 ? B_OK : host_failure();
}

status_t BNode::SetTo(const entry_ref* ref)
{
    std::string path;
    status_t status = path_of(ref, &path);
    return status == B_OK ? BNode::SetTo(path.c_str()) : _Fail(status);
}

status_t BNode::SetTo(const BEntry* entry)
{
    std::string path;
    status_t status = path_of(entry, &path);
    return status == B_OK ? BNode::SetTo(path.c_str()) : _Fail(status);
}

status_t BNode::SetTo(const char* path)
{
    if (path == nullptr)
        return _Fail(fail(EINVAL));
    return StorageAccess::AdoptOpened(*this, open(path, kNodeFlags));
}

status_t BNode::SetTo(const BDirectory* dir, const char* path)
{
    if (dir == nullptr || path == nullptr || path[0] == '/' || path[0] == '\0')
        return _Fail(fail(EINVAL));
    return StorageAccess::AdoptOpened(*this,
                                      openat(StorageAccess::Descriptor(*dir), path, kNodeFlags));
}

void BNode::Unset() { _Fail(B_NO_INIT); }

status_t BNode::Lock()
{
    if (fFd < 0)
        return fail(EBADF);
    if (fLockFd >= 0)
        return fail(EBUSY);
    const int fd = open(StorageAccess::HostPath(fFd).text, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return host_failure();
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const int number = errno;
        close(fd);
        return fail(number == EWOULDBLOCK ? EBUSY : number);
    }
    fLockFd = fd;
    locked_nodes().Add(fd);
    return B_OK;
}

status_t BNode::Unlock()
{
    if (fLockFd < 0)
        return fFd < 0 ? fail(EBADF) : fail(EINVAL);
    locked_nodes().Remove(fLockFd);
    close(std::exchange(fLockFd, -1));
    return B_OK;
}

status_t BNode::Sync()
{
    if (fFd < 0)
        return fail(EBADF);
    if (fsync(fFd) == 0)
        return B_OK;
    if (errno != EBADF)
        return host_failure();
    const int fd = open(StorageAccess::HostPath(fFd).text, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return host_failure();
    status_t status = fsync(fd) == 0 ? B_OK : host_failure();
    close(fd);
    return status;
}

ssize_t BNode::WriteAttr(const char* name, type_code type, off_t offset, const void* buffer,
                         size_t length)
{
    if (fFd < 0)
        return fail(EBADF);
    return write_attribute_at(StorageAccess::HostPath(fFd).text, name, type, offset, buffer,
                              length);
}

ssize_t BNode::ReadAttr(const char* name, type_code, off_t offset, void* buffer,
                        size_t length) const
{
    if (fFd < 0)
        return fail(EBADF);
    return read_attribute_at(StorageAccess::HostPath(fFd).text, name, offset, buffer, length);
}

status_t BNode::RemoveAttr(const char* name)
{
    return fFd < 0 ? fail(EBADF) : remove_attribute(StorageAccess::HostPath(fFd).text, name);
}

status_t BNode::RenameAttr(const char* oldName, const char* newName)
{
    if (fFd < 0)
        return fail(EBADF);
    return rename_attribute(StorageAccess::HostPath(fFd).text, oldName, newName);
}

status_t BNode::GetAttrInfo(const char* name, attr_info* info) const
{
    if (fFd < 0)
        return fail(EBADF);
    return get_attribute_info(StorageAccess::HostPath(fFd).text, name, info);
}

status_t BNode::GetNextAttrName(char* buffer)
{
    if (buffer == nullptr)
        return fail(EINVAL);
    if (fAttrNames == nullptr) {
        status_t status = RewindAttrs();
        if (status != B_OK)
            return status;
    }
    if (fAttrNext >= fAttrNamesSize)
        return fail(ENOENT);
    const size_t size = strlen(fAttrNames + fAttrNext) + 1;
    memcpy(buffer, fAttrNames + fAttrNext, size);
    fAttrNext += size;
    return B_OK;
}

status_t BNode::RewindAttrs()
{
    if (fFd < 0)
        return fail(EBADF);
    std::vector<std::string> names;
    status_t status = list_attributes(StorageAccess::HostPath(fFd).text, &names);
    if (status != B_OK)
        return status;
    std::string joined;
    for (const std::string& name : names)
        joined.append(name).push_back('\0');
    char* copy = static_cast<char*>(malloc(joined.size() + 1));
    if (copy == nullptr)
        return fail(ENOMEM);
    memcpy(copy, joined.c_str(), joined.size() + 1);
    free(std::exchange(fAttrNames, copy));
    fAttrNamesSize = joined.size();
    fAttrNext = 0;
    return B_OK;
}

status_t BNode::WriteAttrString(const char* name, const BString* data)
{
    if (data == nullptr)
        return fail(EINVAL);
    const ssize_t written = WriteAttr(name, B_STRING_TYPE, 0, data->String(), data->Length() + 1);
    return written < 0 ? static_cast<status_t>(written) : B_OK;
}

status_t BNode::ReadAttrString(const char* name, BString* result) const
{
    if (fFd < 0)
        return fail(EBADF);
    if (result == nullptr)
        return fail(EINVAL);
    Attribute attribute;
    status_t status = read_attribute(StorageAccess::HostPath(fFd).text, name, &attribute);
    if (status == B_OK)
        result->SetTo(attribute.bytes.c_str());
    return status;
}

BNode& BNode::operator=(const BNode& node)
{
    if (this == &node)
        return *this;
    if (node.fFd < 0)
        _Fail(node.fStatus);
    else
        _Adopt(fcntl(node.fFd, F_DUPFD_CLOEXEC, 0));
    return *this;
}

bool BNode::operator==(const BNode& node) const
{
    if (fFd < 0 || node.fFd < 0)
        return fFd < 0 && node.fFd < 0;
    struct stat here, there;
    return fstat(fFd, &here) == 0 && fstat(node.fFd, &there) == 0 && here.st_dev == there.st_dev &&
           here.st_ino == there.st_ino;
}

bool BNode::operator!=(const BNode& node) const { return !(*this == node); }

int BNode::Dup() { return fcntl(fFd, F_DUPFD_CLOEXEC, 0); }

status_t BNode::set_stat(struct stat& stat, uint32 what)
{
    if (fFd < 0)
        return fail(EBADF);
    return apply_stat(StorageAccess::HostPath(fFd).text, stat, what, 0);
}

status_t BNode::_Adopt(int fd)
{
    const status_t status = fd < 0 ? host_failure() : B_OK;
    _Fail(status);
    fFd = fd < 0 ? -1 : fd;
    return status;
}

status_t BPrivate::StorageAccess::AdoptOpened(BNode& node, int fd)
{
    const int before = errno;
    if (fd >= 0 && is_locked(fd)) {
        close(fd);
        return node._Fail(fail(EBUSY));
    }
    errno = before;
    return node._Adopt(fd);
}

// Lets go of the node. Returns the status that the object has from here on; errno stays.
status_t BNode::_Fail(status_t status)
{
    const int number = errno;
    if (fLockFd >= 0)
        Unlock();
    if (fFd >= 0)
        close(std::exchange(fFd, -1));
    free(std::exchange(fAttrNames, nullptr));
    fAttrNamesSize = 0;
    fAttrNext = 0;
    fStatus = status;
    errno = number;
    return status;
}
