// Paths of entries and of the directories they live in. Any thread.

#include "storage/Directories.h"

#include <errno.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <mutex>
#include <string_view>

#include <Directory.h>
#include <Entry.h>
#include <StorageDefs.h>

#include "support/HostErrors.h"
#include "storage/KnownPaths.h"
#include "storage/StorageAccess.h"
#include "support/RealPath.h"

using BPrivate::StorageAccess;

namespace storage {

using BPrivate::fail;
using BPrivate::fail_again;
using BPrivate::host_failure;

// Device numbers travel in messages as 32 bits, which is all that the host uses of them.
static KnownPaths::Key key_of(dev_t device, ino_t inode)
{
    return {static_cast<uint32>(device), inode};
}

static const size_t kKeptDirectories = 32768;
static const size_t kKeptNodes = 16384;

// What the host writes behind the path of a node that is gone, though a name may end so too.
static const std::string_view kGoneMark = " (deleted)";

namespace {

struct Known {
    std::mutex lock;
    KnownPaths directories{kKeptDirectories};  // lock
    KnownPaths nodes{kKeptNodes};              // lock; all else
};

}  // namespace

static Known& known()
{
    static auto* paths = new Known;  // outlives every static that holds a ref
    return *paths;
}

static status_t stat_directory(const std::string& path, struct stat* info)
{
    if (stat(path.c_str(), info) != 0)
        return host_failure();
    return S_ISDIR(info->st_mode) ? B_OK : fail(ENOTDIR);
}

void remember_node(const std::string& path, const struct stat& info)
{
    Known& paths = known();
    std::lock_guard guard(paths.lock);
    KnownPaths& kind = S_ISDIR(info.st_mode) ? paths.directories : paths.nodes;
    kind.Remember(key_of(info.st_dev, info.st_ino), path);
}

status_t remember_directory(const std::string& path, dev_t* device, ino_t* inode)
{
    struct stat info;
    status_t status = stat_directory(path, &info);
    if (status != B_OK)
        return status;
    *device = info.st_dev;
    *inode = info.st_ino;
    remember_node(path, info);
    return B_OK;
}

// What is remembered of a node, if that is still there.
static status_t look_up(KnownPaths& paths, const KnownPaths::Key& key, std::string* path)
{
    {
        std::lock_guard guard(known().lock);
        if (!paths.Find(key, path))
            return fail(ENOENT);
    }
    struct stat info;
    if (lstat(path->c_str(), &info) != 0)
        return host_failure();
    return key_of(info.st_dev, info.st_ino) == key ? B_OK : fail(ENOENT);
}

status_t find_directory_path(dev_t device, ino_t inode, std::string* path)
{
    return look_up(known().directories, key_of(device, inode), path);
}

std::string known_directory_path(dev_t device, ino_t inode)
{
    std::lock_guard guard(known().lock);
    std::string path;
    return known().directories.Find(key_of(device, inode), &path) ? path : std::string();
}

void learn_directory(dev_t device, ino_t inode, const std::string& path)
{
    if (path[0] != '/' || known_directory_path(device, inode) == path)
        return;
    std::string known_path;
    struct stat info;
    if (find_directory_path(device, inode, &known_path) != B_OK &&
        lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
        key_of(info.st_dev, info.st_ino) == key_of(device, inode))
        remember_node(path, info);
}

status_t find_node_path(dev_t device, ino_t inode, std::string* path)
{
    const KnownPaths::Key key = key_of(device, inode);
    status_t status = look_up(known().directories, key, path);
    return status == B_OK ? status : look_up(known().nodes, key, path);
}

void follow_moved_directory(const std::string& from, const std::string& to)
{
    Known& paths = known();
    std::lock_guard guard(paths.lock);
    paths.directories.Move(from, to);
    paths.nodes.Move(from, to);
}

status_t path_of_descriptor(int fd, std::string* path)
{
    char text[PATH_MAX];
    ssize_t length = readlink(StorageAccess::HostPath(fd).text, text, sizeof(text));
    if (length < 0)
        return host_failure();
    path->assign(text, length);
    struct stat held, named;
    if (path->ends_with(kGoneMark) && fstat(fd, &held) == 0 &&
        (lstat(path->c_str(), &named) != 0 || named.st_ino != held.st_ino ||
         named.st_dev != held.st_dev))
        return fail(ENOENT);
    return B_OK;
}

status_t path_of(const entry_ref* ref, std::string* path)
{
    BEntry entry(ref);
    return path_of(&entry, path);
}

status_t path_of(const BEntry* entry, std::string* path)
{
    if (entry == nullptr)
        return fail(EINVAL);
    if (entry->InitCheck() != B_OK)
        return fail_again(entry->InitCheck());
    *path = StorageAccess::Path(*entry);
    return B_OK;
}

status_t path_of(const BDirectory* dir, const char* relative, std::string* path)
{
    if (dir == nullptr || relative == nullptr || relative[0] == '/')
        return fail(EINVAL);
    if (dir->InitCheck() != B_OK)
        return fail(EINVAL);
    status_t status = path_of_descriptor(StorageAccess::Descriptor(*dir), path);
    if (status == B_OK && relative[0] != '\0')
        *path = join(*path, relative);
    return status;
}

status_t path_of(const BStatable& statable, std::string* path)
{
    if (auto* entry = dynamic_cast<const BEntry*>(&statable))
        return path_of(entry, path);
    auto* node = dynamic_cast<const BNode*>(&statable);
    return node == nullptr ? fail(EINVAL)
                           : path_of_descriptor(StorageAccess::Descriptor(*node), path);
}

std::string join(const std::string& directory, const std::string& leaf)
{
    bool has_slash = !directory.empty() && directory.back() == '/';
    return has_slash ? directory + leaf : directory + '/' + leaf;
}

std::string directory_of(const std::string& path)
{
    size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

const char* leaf_of(const char* path)
{
    const char* slash = strrchr(path, '/');
    return slash == nullptr || slash[1] == '\0' ? "." : slash + 1;
}

static status_t real_path(const std::string& path, std::string* resolved)
{
    *resolved = BPrivate::real_path(path);
    return resolved->empty() ? host_failure() : B_OK;
}

// What a link says; false if `path` is none.
static bool read_link(const std::string& path, std::string* target)
{
    char text[PATH_MAX];
    ssize_t length = readlink(path.c_str(), text, sizeof(text));
    if (length < 0)
        return false;
    target->assign(text, length);
    return true;
}

status_t resolve_entry(std::string path, bool traverse, std::string* resolved)
{
    for (int links = 0; links <= B_MAX_SYMLINKS; links++) {
        if (path.empty())
            return fail(ENOENT);
        while (path.size() > 1 && path.back() == '/')
            path.pop_back();
        if (path.size() >= PATH_MAX)
            return fail(ENAMETOOLONG);
        size_t slash = path.rfind('/');
        std::string leaf = slash == std::string::npos ? path : path.substr(slash + 1);
        if (leaf.empty() || leaf == "." || leaf == "..")
            return real_path(path, resolved);
        if (leaf.size() > NAME_MAX)
            return fail(ENAMETOOLONG);

        std::string directory;
        status_t status =
            real_path(slash == std::string::npos ? "." : directory_of(path), &directory);
        struct stat info;
        if (status == B_OK)
            status = stat_directory(directory, &info);
        if (status != B_OK)
            return status;
        *resolved = join(directory, leaf);
        std::string target;
        if (!traverse || !read_link(*resolved, &target))
            return B_OK;
        path = target[0] == '/' ? target : join(directory, target);
    }
    return fail(ELOOP);
}

status_t replace_path(char** owned, status_t status, const char* text)
{
    char* copy = nullptr;
    if (status == B_OK) {
        copy = strdup(text);
        if (copy == nullptr)
            status = B_NO_MEMORY;
    }
    free(*owned);
    *owned = copy;
    return status;
}

}  // namespace storage
