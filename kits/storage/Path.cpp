// BPath: an absolute path, resolved against the file system only where its text asks for it.

#include <Path.h>

#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <string_view>

#include <Directory.h>
#include <TypeConstants.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::fail_again;

static const ssize_t kFlatHeader = sizeof(dev_t) + sizeof(ino_t);

BPath::BPath() : fPath(nullptr), fStatus(B_NO_INIT) {}

BPath::BPath(const BPath& path) : BPath() { *this = path; }

BPath::BPath(const entry_ref* ref) : BPath() { SetTo(ref); }

BPath::BPath(const BEntry* entry) : BPath() { SetTo(entry); }

BPath::BPath(const char* dir, const char* leaf, bool normalize) : BPath()
{
    SetTo(dir, leaf, normalize);
}

BPath::BPath(const BDirectory* dir, const char* leaf, bool normalize) : BPath()
{
    SetTo(dir, leaf, normalize);
}

BPath::~BPath() { free(fPath); }

status_t BPath::InitCheck() const { return fStatus; }

status_t BPath::SetTo(const entry_ref* ref)
{
    BEntry entry(ref);
    return SetTo(&entry);
}

status_t BPath::SetTo(const BEntry* entry)
{
    if (entry == nullptr)
        return _Adopt(fail(EINVAL), nullptr);
    if (entry->InitCheck() != B_OK)
        return _Adopt(fail_again(entry->InitCheck()), nullptr);
    return entry->GetPath(this);
}

status_t BPath::SetTo(const char* path, const char* leaf, bool normalize)
{
    if (path == nullptr || (leaf != nullptr && leaf[0] == '/'))
        return _Adopt(fail(EINVAL), nullptr);
    if (leaf == nullptr || leaf[0] == '\0')
        return _Resolve(path, normalize);
    return _Resolve(join(path[0] == '\0' ? "." : path, leaf).c_str(), normalize);
}

status_t BPath::SetTo(const BDirectory* dir, const char* leaf, bool normalize)
{
    std::string path;
    status_t status = path_of(dir, "", &path);
    return status == B_OK ? SetTo(path.c_str(), leaf, normalize) : _Adopt(status, nullptr);
}

void BPath::Unset() { _Adopt(B_NO_INIT, nullptr); }

status_t BPath::Append(const char* path, bool normalize)
{
    if (fPath == nullptr)
        return _Adopt(fail(EINVAL), nullptr);
    return SetTo(fPath, path, normalize);
}

const char* BPath::Path() const { return fPath; }

const char* BPath::Leaf() const { return fPath == nullptr ? nullptr : strrchr(fPath, '/') + 1; }

status_t BPath::GetParent(BPath* path) const
{
    if (path == nullptr)
        return fail(EINVAL);
    if (fPath == nullptr)
        return fail_again(fStatus);
    if (strcmp(fPath, "/") == 0)
        return fail(ENOENT);
    return path->SetTo(directory_of(fPath).c_str());
}

bool BPath::IsAbsolute() const { return fPath != nullptr && fPath[0] == '/'; }

bool BPath::operator==(const BPath& item) const { return *this == item.Path(); }

bool BPath::operator==(const char* path) const
{
    if (fPath == nullptr || path == nullptr)
        return fPath == path;
    return strcmp(fPath, path) == 0;
}

bool BPath::operator!=(const BPath& item) const { return !(*this == item); }

bool BPath::operator!=(const char* path) const { return !(*this == path); }

BPath& BPath::operator=(const BPath& item)
{
    if (this != &item)
        _Adopt(item.fStatus, item.fPath);
    return *this;
}

BPath& BPath::operator=(const char* path)
{
    if (path == nullptr)
        Unset();
    else
        SetTo(path);
    return *this;
}

bool BPath::IsFixedSize() const { return false; }

type_code BPath::TypeCode() const { return B_REF_TYPE; }

ssize_t BPath::FlattenedSize() const
{
    entry_ref ref;
    if (fPath == nullptr || get_ref_for_path(fPath, &ref) != B_OK)
        return kFlatHeader;
    return kFlatHeader + strlen(ref.name) + 1;
}

status_t BPath::Flatten(void* buffer, ssize_t size) const
{
    entry_ref ref;
    if (fPath != nullptr) {
        status_t status = get_ref_for_path(fPath, &ref);
        if (status != B_OK)
            return status;
    }
    ssize_t name_size = ref.name == nullptr ? 0 : strlen(ref.name) + 1;
    if (buffer == nullptr || size < kFlatHeader + name_size)
        return fail(EINVAL);
    char* at = static_cast<char*>(buffer);
    memcpy(at, &ref.device, sizeof(dev_t));
    memcpy(at + sizeof(dev_t), &ref.directory, sizeof(ino_t));
    if (name_size > 0)
        memcpy(at + kFlatHeader, ref.name, name_size);
    return B_OK;
}

bool BPath::AllowsTypeCode(type_code code) const { return code == B_REF_TYPE; }

status_t BPath::Unflatten(type_code code, const void* buffer, ssize_t size)
{
    if (code != B_REF_TYPE || buffer == nullptr || size < kFlatHeader)
        return _Adopt(fail(EINVAL), nullptr);
    if (size == kFlatHeader) {  // an unset path was flattened
        Unset();
        return B_OK;
    }
    const char* at = static_cast<const char*>(buffer);
    if (memchr(at + kFlatHeader, '\0', size - kFlatHeader) == nullptr)
        return _Adopt(fail(EINVAL), nullptr);
    entry_ref ref(0, 0, at + kFlatHeader);
    memcpy(&ref.device, at, sizeof(dev_t));
    memcpy(&ref.directory, at + sizeof(dev_t), sizeof(ino_t));
    return SetTo(&ref);
}

// A relative path, and any path with ".", "..", doubled or trailing slashes.
static bool must_resolve(const char* path)
{
    if (path[0] != '/')
        return true;
    if (path[1] == '\0')
        return false;
    std::string_view rest(path + 1);
    while (true) {
        size_t end = rest.find('/');
        std::string_view name = rest.substr(0, end);
        if (name.empty() || name == "." || name == "..")
            return true;
        if (end == std::string_view::npos)
            return false;
        rest.remove_prefix(end + 1);
    }
}

status_t BPath::_Resolve(const char* path, bool normalize)
{
    if (!normalize && !must_resolve(path))
        return _Adopt(B_OK, path);
    std::string resolved;
    status_t status = resolve_entry(path, false, &resolved);
    return _Adopt(status, resolved.c_str());
}

status_t BPath::_Adopt(status_t status, const char* path)
{
    fStatus = replace_path(&fPath, status, path);
    return fStatus;
}
