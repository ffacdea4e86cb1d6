// node_ref and BNode.

#include <Node.h>

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tuple>

#include <Entry.h>
#include <Path.h>

#include "Directories.h"
#include "HostErrors.h"
#include "StatFields.h"

using namespace storage;

node_ref::node_ref()
    : device(static_cast<dev_t>(-1)), node(static_cast<ino_t>(-1))
{
}

node_ref::node_ref(dev_t device, ino_t node)
    : device(device), node(node)
{
}

node_ref::node_ref(const node_ref& other) = default;

bool node_ref::operator==(const node_ref& other) const
{
    return device == other.device && node == other.node;
}

bool node_ref::operator!=(const node_ref& other) const
{
    return !(*this == other);
}

bool node_ref::operator<(const node_ref& other) const
{
    return std::tie(device, node) < std::tie(other.device, other.node);
}

node_ref& node_ref::operator=(const node_ref& other) = default;

BNode::BNode()
    : fFile(-1), fPath(nullptr), fStatus(B_NO_INIT)
{
}

BNode::BNode(const entry_ref* ref)
    : BNode()
{
    SetTo(ref);
}

BNode::BNode(const BEntry* entry)
    : BNode()
{
    SetTo(entry);
}

BNode::BNode(const char* path)
    : BNode()
{
    SetTo(path);
}

BNode::BNode(const BDirectory* dir, const char* path)
    : BNode()
{
    SetTo(dir, path);
}

BNode::BNode(const BNode& node)
    : BNode()
{
    *this = node;
}

BNode::~BNode()
{
    Unset();
}

status_t BNode::InitCheck() const
{
    return fStatus;
}

status_t BNode::GetStat(struct stat* stat) const
{
    if (fFile < 0)
        return B_NO_INIT;
    if (stat == nullptr)
        return fail(EINVAL);
    return fstat(fFile, stat) == 0 ? B_OK : host_failure();
}

status_t BNode::SetTo(const entry_ref* ref)
{
    BEntry entry(ref);
    return SetTo(&entry);
}

status_t BNode::SetTo(const BEntry* entry)
{
    BPath path(entry);
    if (path.InitCheck() == B_OK)
        return SetTo(path.Path());
    Unset();
    fStatus = path.InitCheck();
    return fStatus;
}

status_t BNode::SetTo(const char* path)
{
    Unset();
    if (path == nullptr) {
        fStatus = fail(EINVAL);
        return fStatus;
    }
    return _Open(path, O_RDONLY | O_NONBLOCK);
}

status_t BNode::SetTo(const BDirectory* dir, const char* path)
{
    BEntry entry(dir, path);
    return SetTo(&entry);
}

void BNode::Unset()
{
    if (fFile >= 0)
        close(fFile);
    fFile = -1;
    free(fPath);
    fPath = nullptr;
    fStatus = B_NO_INIT;
}

status_t BNode::Lock()
{
    if (fFile < 0)
        return B_NO_INIT;
    if (flock(fFile, LOCK_EX | LOCK_NB) == 0)
        return B_OK;
    return errno == EWOULDBLOCK ? B_BUSY : host_failure();
}

status_t BNode::Unlock()
{
    if (fFile < 0)
        return B_NO_INIT;
    return flock(fFile, LOCK_UN) == 0 ? B_OK : host_failure();
}

status_t BNode::Sync()
{
    if (fFile < 0)
        return B_NO_INIT;
    return fsync(fFile) == 0 ? B_OK : host_failure();
}

BNode& BNode::operator=(const BNode& node)
{
    if (this == &node)
        return *this;
    Unset();
    fStatus = node.fStatus;
    if (node.fFile < 0)
        return *this;
    fFile = fcntl(node.fFile, F_DUPFD_CLOEXEC, 0);
    if (fFile < 0)
        fStatus = host_failure();
    else
        fStatus = replace_path(&fPath, B_OK, node.fPath);
    return *this;
}

bool BNode::operator==(const BNode& node) const
{
    if (fFile < 0 || node.fFile < 0)
        return fFile < 0 && node.fFile < 0;
    node_ref mine, other;
    return GetNodeRef(&mine) == B_OK && node.GetNodeRef(&other) == B_OK && mine == other;
}

bool BNode::operator!=(const BNode& node) const
{
    return !(*this == node);
}

int BNode::Dup()
{
    return fFile < 0 ? -1 : fcntl(fFile, F_DUPFD_CLOEXEC, 0);
}

status_t BNode::set_stat(struct stat& stat, uint32 what)
{
    return fPath == nullptr ? B_NO_INIT : apply_stat(fPath, stat, what);
}

// Links, and nodes that may not be read, are opened for their names and numbers alone.
status_t BNode::_Open(const char* path, int flags)
{
    std::string resolved;
    fStatus = resolve_entry(path, false, &resolved);
    if (fStatus != B_OK)
        return fStatus;
    fFile = open(resolved.c_str(), flags | O_NOFOLLOW | O_CLOEXEC);
    if (fFile < 0 && (errno == ELOOP || errno == EACCES))
        fFile = open(resolved.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    fStatus = fFile < 0 ? host_failure() : replace_path(&fPath, B_OK, resolved.c_str());
    return fStatus;
}
