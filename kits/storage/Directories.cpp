// Paths of entries and of the directories they live in. Any thread.

#include "Directories.h"

#include <errno.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include <StorageDefs.h>

#include "HostErrors.h"

namespace storage {

struct KnownDirectories {
    std::mutex lock;
    std::map<std::pair<dev_t, ino_t>, std::string> paths;  // lock
};

static KnownDirectories& known()
{
    static auto* directories = new KnownDirectories;  // outlives every static that holds a ref
    return *directories;
}

static status_t stat_directory(const std::string& path, struct stat* info)
{
    if (stat(path.c_str(), info) != 0)
        return host_failure();
    return S_ISDIR(info->st_mode) ? B_OK : fail(ENOTDIR);
}

status_t remember_directory(const std::string& path, dev_t* device, ino_t* inode)
{
    struct stat info;
    status_t status = stat_directory(path, &info);
    if (status != B_OK)
        return status;
    *device = info.st_dev;
    *inode = info.st_ino;
    KnownDirectories& directories = known();
    std::lock_guard guard(directories.lock);
    directories.paths[{ info.st_dev, info.st_ino }] = path;
    return B_OK;
}

status_t find_directory_path(dev_t device, ino_t inode, std::string* path)
{
    {
        KnownDirectories& directories = known();
        std::lock_guard guard(directories.lock);
        auto found = directories.paths.find({ device, inode });
        if (found == directories.paths.end())
            return fail(ENOENT);
        *path = found->second;
    }
    struct stat info;
    status_t status = stat_directory(*path, &info);
    if (status != B_OK)
        return status;
    return info.st_dev == device && info.st_ino == inode ? B_OK : fail(ENOENT);
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
    const char* leaf = strrchr(path, '/') + 1;
    return *leaf == '\0' ? "." : leaf;
}

static status_t real_path(const std::string& path, std::string* resolved)
{
    std::unique_ptr<char, decltype(&free)> real(realpath(path.c_str(), nullptr), &free);
    if (real == nullptr)
        return host_failure();
    *resolved = real.get();
    return B_OK;
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
        status_t status
            = real_path(slash == std::string::npos ? "." : directory_of(path), &directory);
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
