// Guesses types as the desktop does: by name, and by content where the name does not settle it.

#include "storage/mime/MimeGuess.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

#include <gio/gio.h>

#include <SupportDefs.h>

#include "storage/mime/MimeNotes.h"
#include "storage/mime/MimeTypeRecords.h"
#include "storage/mime/SharedMime.h"
#include "storage/mime/SnifferRule.h"
#include "support/Held.h"

namespace storage {

static const size_t kLookedAt = 4096;  // bytes from the start
static const char* const kUnknown = "application/octet-stream";

static const char* const kText = "text/plain";

static std::string guess(const char* name, const void* bytes, size_t size, bool* uncertain)
{
    SharedMime::Get();  // GIO then knows the types as they are
    gboolean is_uncertain = false;
    const std::string type = BPrivate::take_text(
        g_content_type_guess(name, static_cast<const guchar*>(bytes), size, &is_uncertain));
    *uncertain = is_uncertain;
    return type.empty() ? kUnknown : type;
}

// ---- What GIO still has: it goes on for seconds with types, names and rules that are gone

static bool is_deleted(const std::string& type, const SharedMime& database)
{
    return type != kUnknown && type != kText && !database.Types().empty() &&
           !database.Contains(type);
}

static bool is_outdated(const std::string& type, std::string_view bytes)
{
    const auto database = SharedMime::Get();
    const auto notes = MimeNotes::Get();
    const auto text = notes->Find(type, keys::kSnifferRule);
    SnifferRule rule;
    if (text && parse_sniffer_rule(text->c_str(), &rule, nullptr) == B_OK)
        return !magic_of(rule).empty() && !matches(rule, bytes);
    if (notes->Contains(type))
        return database->IsOwn(type);  // it has no rule
    return is_deleted(type, *database);
}

// Whether a name ends with one of the type's extensions.
static bool has_extension(const std::string& name, const std::string& type,
                          const SharedMime& database)
{
    const auto extensions = database.Extensions(type);
    return std::any_of(extensions.begin(), extensions.end(), [&](const std::string& extension) {
        const size_t size = extension.size() + 1;
        return name.size() >= size && name[name.size() - size] == '.' &&
               strcasecmp(name.c_str() + name.size() - size + 1, extension.c_str()) == 0;
    });
}

static std::string guess_by_name(const std::string& name, bool* uncertain)
{
    const std::string type = guess(name.c_str(), nullptr, 0, uncertain);
    const auto database = SharedMime::Get();
    const bool named = !database->IsOwn(type) || !MimeNotes::Get()->Contains(type) ||
                       has_extension(name, type, *database);
    if (named && !is_deleted(type, *database))
        return type;
    *uncertain = true;
    const auto& types = database->Types();
    const auto other = std::find_if(types.begin(), types.end(), [&](const std::string& each) {
        return has_extension(name, each, *database);
    });
    return other == types.end() ? kUnknown : *other;
}

static std::string guess_by_own_rules(std::string_view bytes)
{
    const auto notes = MimeNotes::Get();
    std::string best;
    double best_priority = -1.0;
    for (const std::string& type : notes->Types()) {
        const auto text = notes->Find(type, keys::kSnifferRule);
        SnifferRule rule;
        if (text && parse_sniffer_rule(text->c_str(), &rule, nullptr) == B_OK &&
            rule.priority > best_priority && matches(rule, bytes)) {
            best = type;
            best_priority = rule.priority;
        }
    }
    return best;
}

static bool is_text(std::string_view bytes)
{
    return std::none_of(bytes.begin(), bytes.end(), [](char c) {
        return (static_cast<uint8>(c) < ' ' && strchr("\b\t\n\f\r\x1B", c) == nullptr) || c == '\0';
    });
}

// By bytes, and by a name if there is one.
static std::string guess_content(const char* name, const void* data, size_t size)
{
    bool uncertain = false;
    const std::string type = guess(name, data, size, &uncertain);
    const std::string by_name = name != nullptr ? guess_by_name(name, &uncertain) : kUnknown;
    const std::string_view bytes(static_cast<const char*>(data), size);
    if (type == by_name || !is_outdated(type, bytes))
        return type;
    const std::string own = guess_by_own_rules(bytes);
    if (!own.empty() || by_name != kUnknown)
        return own.empty() ? by_name : own;
    return is_text(bytes) ? kText : kUnknown;
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
    std::string type = guess_by_name(name, &uncertain);
    if (!uncertain)
        return type;
    if (size == 0)  // only the name can tell, though it may fit several types
        return type == kUnknown ? "application/x-zerosize" : type;
    char bytes[kLookedAt];
    const size_t length = read_start(path, bytes, sizeof(bytes));
    return length > 0 ? guess_content(name.c_str(), bytes, length) : type;
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
    return guess_by_name(name, &uncertain);
}

std::string guess_type_of_bytes(const void* bytes, size_t size)
{
    return guess_content(nullptr, bytes, size);
}

}  // namespace storage
