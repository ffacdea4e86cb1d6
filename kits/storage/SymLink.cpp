// BSymLink: what a link says, and where that leads.

#include <SymLink.h>

#include <errno.h>
#include <limits.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include <Directory.h>
#include <Path.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/StorageAccess.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;
using BPrivate::StorageAccess;

BSymLink::BSymLink() {}

BSymLink::BSymLink(const BSymLink& other) = default;

BSymLink::BSymLink(const entry_ref* ref) : BNode(ref) {}

BSymLink::BSymLink(const BEntry* entry) : BNode(entry) {}

BSymLink::BSymLink(const char* path) : BNode(path) {}

BSymLink::BSymLink(const BDirectory* dir, const char* path) : BNode(dir, path) {}

BSymLink::~BSymLink() {}

static ssize_t read_link(const BNode& link, std::string* text)
{
    const int fd = StorageAccess::Descriptor(link);
    if (fd < 0)
        return fail(EBADF);
    char buffer[PATH_MAX];
    const ssize_t length = readlinkat(fd, "", buffer, sizeof(buffer));
    if (length < 0)
        return errno == ENOENT ? fail(EINVAL) : host_failure();  // what the host says of non-links
    text->assign(buffer, length);
    return length;
}

ssize_t BSymLink::ReadLink(char* buffer, size_t size)
{
    if (buffer == nullptr)
        return fail(EINVAL);
    std::string text;
    const ssize_t length = read_link(*this, &text);
    if (length >= 0 && size > 0) {
        const size_t copied = std::min(text.size(), size - 1);
        memcpy(buffer, text.data(), copied);
        buffer[copied] = '\0';
    }
    return length;
}

ssize_t BSymLink::MakeLinkedPath(const char* dirPath, BPath* path)
{
    BDirectory dir(dirPath);
    return MakeLinkedPath(&dir, path);
}

ssize_t BSymLink::MakeLinkedPath(const BDirectory* dir, BPath* path)
{
    if (dir == nullptr || path == nullptr)
        return fail(EINVAL);
    std::string text;
    const ssize_t length = read_link(*this, &text);
    if (length < 0)
        return length;
    status_t status = text[0] == '/' ? path->SetTo(text.c_str()) : path->SetTo(dir, text.c_str());
    return status == B_OK ? static_cast<ssize_t>(strlen(path->Path())) : status;
}

bool BSymLink::IsAbsolute()
{
    std::string text;
    return read_link(*this, &text) > 0 && text[0] == '/';
}

BSymLink& BSymLink::operator=(const BSymLink& other) = default;
