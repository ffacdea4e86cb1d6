// The host's mount table, and what it tells of volumes. Any thread.

#include "storage/volumes/MountTable.h"

#include <ctype.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include <fs_info.h>

#include "storage/Attributes.h"
#include "storage/volumes/VolumeLabels.h"

namespace storage {

static const char* const kTable = "/proc/self/mountinfo";
static const char* const kRootName = "root";  // of a root volume without a label

static const std::string_view kSharedTypes[] = {"nfs", "nfs4", "cifs",       "smb3",
                                                "9p",  "ceph", "fuse.sshfs", "virtiofs"};

// File systems whose contents go with the machine's power.
static const std::string_view kVolatileTypes[] = {
    "tmpfs",   "ramfs",  "devtmpfs", "devpts",  "proc",       "sysfs",    "cgroup",
    "cgroup2", "mqueue", "debugfs",  "tracefs", "securityfs", "hugetlbfs"};

template <class List>
static bool is_one_of(const std::string& type, const List& list)
{
    return std::find(std::begin(list), std::end(list), type) != std::end(list);
}

// The table writes blanks, tabs, line feeds and backslashes as three octal digits.
static std::string unescaped(std::string_view text)
{
    std::string plain;
    for (size_t i = 0; i < text.size(); i++) {
        if (text[i] == '\\' && i + 3 < text.size() && isdigit(static_cast<uint8>(text[i + 1]))) {
            plain += static_cast<char>((text[i + 1] - '0') << 6 | (text[i + 2] - '0') << 3 |
                                       (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

static std::vector<std::string_view> split(std::string_view text, char at)
{
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const size_t end = std::min(text.find(at), text.size());
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

static bool parse_line(std::string_view line, Mount* mount)
{
    // id parent major:minor root point options [tags ...] - type source super-options
    const std::vector<std::string_view> words = split(line, ' ');
    const auto dash = std::find(words.begin(), words.end(), "-");
    if (dash - words.begin() < 6 || words.end() - dash < 3)
        return false;
    unsigned major_number, minor_number;
    if (sscanf(std::string(words[2]).c_str(), "%u:%u", &major_number, &minor_number) != 2)
        return false;
    mount->id = atoi(std::string(words[0]).c_str());
    mount->parent = atoi(std::string(words[1]).c_str());
    mount->device = makedev(major_number, minor_number);
    mount->root = unescaped(words[3]);
    mount->point = unescaped(words[4]);
    mount->options = words[5];
    mount->type = dash[1];
    mount->source = unescaped(dash[2]);
    return true;
}

std::vector<Mount> parse_mounts(std::string_view text)
{
    std::vector<Mount> mounts;
    for (std::string_view line : split(text, '\n')) {
        Mount mount;
        if (parse_line(line, &mount))
            mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::vector<Mount> read_mounts()
{
    std::string text;
    std::unique_ptr<FILE, decltype(&fclose)> table(fopen(kTable, "re"), &fclose);
    char piece[4096];
    for (size_t size; table != nullptr && (size = fread(piece, 1, sizeof(piece), table.get())) > 0;)
        text.append(piece, size);
    return parse_mounts(text);
}

static bool is_block_device(const Mount& mount)
{
    return mount.source.compare(0, 5, "/dev/") == 0 && mount.type != "devtmpfs";
}

// Of two mounts of a device: all of it before a part, then what was mounted first.
static bool shows_more(const Mount& a, const Mount& b) { return a.root == "/" && b.root != "/"; }

std::vector<Mount> volumes_of(const std::vector<Mount>& mounts)
{
    std::vector<Mount> volumes;
    for (const Mount& mount : mounts) {
        if (mount.point != "/" && !is_block_device(mount))
            continue;
        auto same = std::find_if(volumes.begin(), volumes.end(), [&](const Mount& volume) {
            return volume.device == mount.device;
        });
        if (same == volumes.end())
            volumes.push_back(mount);
        else if (same->point != "/" && (mount.point == "/" || shows_more(mount, *same)))
            *same = mount;
    }
    return volumes;
}

static void add_missing(const std::vector<Mount>& from, const std::vector<Mount>& in, bool mounted,
                        std::vector<VolumeChange>* changes)
{
    for (const Mount& mount : from) {
        const bool found = std::any_of(
            in.begin(), in.end(), [&](const Mount& other) { return other.device == mount.device; });
        if (!found)
            changes->push_back({mounted, mount});
    }
}

std::vector<VolumeChange> compare_volumes(const std::vector<Mount>& before,
                                          const std::vector<Mount>& after)
{
    std::vector<VolumeChange> changes;
    add_missing(before, after, false, &changes);
    add_missing(after, before, true, &changes);
    return changes;
}

std::optional<Mount> find_mount(dev_t device)
{
    const std::vector<Mount> mounts = read_mounts();
    const Mount* found = nullptr;
    for (const Mount& mount : mounts) {
        if (mount.device == device && (found == nullptr || shows_more(mount, *found)))
            found = &mount;
    }
    // Some file systems give their files a device number that the table does not show.
    for (size_t i = 0; found == nullptr && i < mounts.size(); i++) {
        struct stat info;
        if (is_block_device(mounts[i]) && stat(mounts[i].point.c_str(), &info) == 0 &&
            info.st_dev == device)
            found = &mounts[i];
    }
    if (found != nullptr)
        return *found;
    if (!mounts.empty())
        errno = ENODEV;
    return std::nullopt;
}

std::string volume_name(const Mount& mount)
{
    std::string name;
    if (is_block_device(mount))
        name = label_of(mount.source);
    if (name.empty())
        name = mount.point.substr(mount.point.rfind('/') + 1);
    if (name.empty())
        name = kRootName;
    return name.substr(0, B_FILE_NAME_LENGTH - 1);
}

// A partition's disk says whether it can be taken out.
static bool is_removable(dev_t device)
{
    for (const char* where : {"removable", "../removable"}) {
        char path[64];
        snprintf(path, sizeof(path), "/sys/dev/block/%u:%u/%s", major(device), minor(device),
                 where);
        std::unique_ptr<FILE, decltype(&fclose)> file(fopen(path, "re"), &fclose);
        if (file != nullptr && getc(file.get()) == '1')
            return true;
    }
    return false;
}

uint32 volume_flags(const Mount& mount)
{
    uint32 flags = B_FS_SUPPORTS_NODE_MONITORING;
    struct statvfs info;
    if (statvfs(mount.point.c_str(), &info) == 0 && (info.f_flag & ST_RDONLY) != 0)
        flags |= B_FS_IS_READONLY;
    if (is_block_device(mount) && is_removable(mount.device))
        flags |= B_FS_IS_REMOVABLE;
    if (!is_one_of(mount.type, kVolatileTypes))
        flags |= B_FS_IS_PERSISTENT;
    if (is_one_of(mount.type, kSharedTypes))
        flags |= B_FS_IS_SHARED;
    if (has_attributes(mount.point.c_str()))
        flags |= B_FS_HAS_ATTR | B_FS_HAS_MIME;
    return flags;
}

}  // namespace storage
