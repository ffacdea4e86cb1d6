// Guesses types as the desktop does: by name, and by content where the name does not settle it.

#include "storage/mime/MimeGuess.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gio/gio.h>

#include "storage/mime/SharedMime.h"

namespace storage {

static const size_t kLookedAt = 4096;  // bytes from the start
static const char* const kUnknown = "application/octet-stream";

static std::string guess(const char* name, const void* bytes, size_t size, bool* uncertain)
{
    SharedMime::Get();  // GIO then knows the types as they are
    gboolean is_uncertain = false;
    char* type = g_content_type_guess(name, static_cast<const guchar*>(bytes), size, &is_uncertain);
    std::string copy = type != nullptr ? type : kUnknown;
    g_free(type);
    *uncertain = is_uncertain;
    return copy;
}

static size_t read_start(const std::string& path, char* bytes, size_t size)
{
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return 0;
    const ssize_t length = pread(fd, bytes, size, 0);
    close(fd);
    return length > 0 ? static_cast<size_t>(length) : 0;
}

static std::string guess_regular(const std::string& path, const std::string& name, off_t size)
{
    bool uncertain = false;
    std::string type = guess(name.c_str(), nullptr, 0, &uncertain);
    if (!uncertain)
        return type;
    if (size == 0)  // only the name can tell, though it may fit several types
        return type == kUnknown ? "application/x-zerosize" : type;
    char bytes[kLookedAt];
    const size_t length = read_start(path, bytes, sizeof(bytes));
    return length > 0 ? guess(name.c_str(), bytes, length, &uncertain) : type;
}

std::string guess_type_of_file(const std::string& path, const std::string& name)
{
    const int before = errno;
    struct stat info = {};
    std::string type = kUnknown;
    if (lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode) &&
        path.starts_with("/proc/self/fd/"))
        stat(path.c_str(), &info);
    switch (info.st_mode & S_IFMT) {
        case S_IFREG:
            type = guess_regular(path, name, info.st_size);
            break;
        case S_IFDIR:
            type = "inode/directory";
            break;
        case S_IFLNK:
            type = "inode/symlink";
            break;
        case S_IFIFO:
            type = "inode/fifo";
            break;
        case S_IFSOCK:
            type = "inode/socket";
            break;
        case S_IFCHR:
            type = "inode/chardevice";
            break;
        case S_IFBLK:
            type = "inode/blockdevice";
            break;
        default:
            break;
    }
    errno = before;
    return type;
}

std::string guess_type_of_name(const std::string& name)
{
    bool uncertain = false;
    return guess(name.c_str(), nullptr, 0, &uncertain);
}

std::string guess_type_of_bytes(const void* bytes, size_t size)
{
    bool uncertain = false;
    return guess(nullptr, bytes, size, &uncertain);
}

}  // namespace storage
