// Whole files: read into memory, and replaced by a new file that takes the old one's name.

#include "files/whole_file.h"

#include <Entry.h>
#include <File.h>
#include <OS.h>
#include <Path.h>
#include <fs_attr.h>

#include <algorithm>
#include <errno.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

static const size_t kBlock = size_t{1} << 20;
static const int kTries = 100;  // to find a name that is free

static bool fail_with(int number)
{
    errno = number;
    return false;
}

static bool is_plain_file(const BNode& node, struct stat* info)
{
    if (node.GetStat(info) != B_OK)
        return false;
    if (S_ISREG(info->st_mode))
        return true;
    return fail_with(S_ISDIR(info->st_mode) ? EISDIR : EINVAL);
}

bool read_whole_file(const char* path, size_t most, std::string* bytes)
{
    BFile file(path, B_READ_ONLY);
    struct stat info;
    if (file.InitCheck() != B_OK || !is_plain_file(file, &info))
        return false;
    // It may have grown, and there are files that do not know their length.
    const auto length = static_cast<size_t>(std::max(info.st_size, off_t{0}));
    if (length > most)
        return fail_with(EFBIG);
    bytes->resize(length + 1);
    size_t size = 0;
    for (;;) {
        const ssize_t more = file.Read(bytes->data() + size, bytes->size() - size);
        if (more < 0)
            return false;
        if (more == 0)
            break;
        size += static_cast<size_t>(more);
        if (size > most)
            return fail_with(EFBIG);
        if (size == bytes->size())
            bytes->resize(size + kBlock);
    }
    bytes->resize(size);
    return true;
}

// --- writing

namespace {

// A file beside another one, which is removed unless it takes that one's name: also where there is
// no memory left.
class Successor {
public:
    explicit Successor(const char* path);
    ~Successor()
    {
        const int number = errno;
        if (fIsThere)
            unlink(fName.c_str());
        errno = number;
    }
    Successor(const Successor&) = delete;

    bool IsReady() const { return fIsThere; }
    void TakeAfter(BNode& old, const struct stat& info);
    bool Write(std::string_view bytes);
    bool Replace(const char* path)
    {
        if (fFile.Sync() != B_OK || rename(fName.c_str(), path) != 0)
            return false;
        fIsThere = false;
        return true;
    }

private:
    BFile fFile;
    std::string fName;
    bool fIsThere = false;
};

}  // namespace

Successor::Successor(const char* path)
{
    static const uint32 kMode = B_WRITE_ONLY | B_CREATE_FILE | B_FAIL_IF_EXISTS;
    BPath folder(path);
    if (folder.GetParent(&folder) != B_OK)
        return;
    const std::string base =
        std::string(folder.Path()) + "/.saved~" + std::to_string(find_thread(nullptr)) + "-";
    status_t status = B_FILE_EXISTS;
    for (int i = 0; i < kTries && status == B_FILE_EXISTS; i++) {
        fName = base + std::to_string(i);
        status = fFile.SetTo(fName.c_str(), kMode);
    }
    fIsThere = status == B_OK;
}

static void copy_attribute(BNode& from, BNode& to, const char* name)
{
    attr_info info;
    if (from.GetAttrInfo(name, &info) != B_OK)
        return;
    std::vector<char> value(static_cast<size_t>(info.size));
    const ssize_t size = from.ReadAttr(name, info.type, 0, value.data(), value.size());
    if (size >= 0)
        to.WriteAttr(name, info.type, 0, value.data(), static_cast<size_t>(size));
}

void Successor::TakeAfter(BNode& old, const struct stat& info)
{
    fFile.SetOwner(info.st_uid);
    fFile.SetGroup(info.st_gid);
    fFile.SetPermissions(info.st_mode);
    char name[B_ATTR_NAME_LENGTH];
    while (old.GetNextAttrName(name) == B_OK)
        copy_attribute(old, fFile, name);
}

bool Successor::Write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t size = fFile.Write(bytes.data(), std::min(bytes.size(), kBlock));
        if (size <= 0)
            return size < 0 ? false : fail_with(ENOSPC);
        bytes.remove_prefix(static_cast<size_t>(size));
    }
    return true;
}

bool replace_whole_file(const char* path, std::string_view bytes)
{
    const BEntry entry(path, true);
    BPath place;
    if (entry.InitCheck() != B_OK || entry.GetPath(&place) != B_OK)
        return false;
    const bool is_there = entry.Exists();
    BFile old;
    struct stat info;
    if (is_there) {
        // Who may not write into a file shall not replace it, though the directory would let him.
        if (old.SetTo(place.Path(), B_WRITE_ONLY) != B_OK || !is_plain_file(old, &info))
            return false;
    }
    Successor successor(place.Path());
    if (!successor.IsReady())
        return false;
    if (is_there)
        successor.TakeAfter(old, info);
    return successor.Write(bytes) && successor.Replace(place.Path());
}
