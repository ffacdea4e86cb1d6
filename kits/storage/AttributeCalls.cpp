// Attributes as plain calls on descriptors. Any thread, one for each list.

#include <fs_attr.h>

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "storage/Attributes.h"
#include "support/HostErrors.h"
#include "storage/StorageAccess.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::StorageAccess;

// The list behind the DIR of these calls.
struct AttributeList {
    int fd;
    std::vector<std::string> names;
    size_t next;
    struct dirent record;
};

// Kit status codes become the plain calls' -1; errno is set already.
template <class Number>
static Number plain(Number result)
{
    return result < 0 ? -1 : result;
}

extern "C" ssize_t fs_read_attr(int fd, const char* attribute, uint32, off_t pos, void* buffer,
                                size_t readBytes)
{
    return plain(
        read_attribute_at(StorageAccess::HostPath(fd).text, attribute, pos, buffer, readBytes));
}

extern "C" ssize_t fs_write_attr(int fd, const char* attribute, uint32 type, off_t pos,
                                 const void* buffer, size_t writeBytes)
{
    return plain(write_attribute_at(StorageAccess::HostPath(fd).text, attribute, type, pos, buffer,
                                    writeBytes));
}

extern "C" int fs_remove_attr(int fd, const char* attribute)
{
    return plain(remove_attribute(StorageAccess::HostPath(fd).text, attribute));
}

extern "C" int fs_stat_attr(int fd, const char* attribute, struct attr_info* attrInfo)
{
    return plain(get_attribute_info(StorageAccess::HostPath(fd).text, attribute, attrInfo));
}

// Takes over `fd`.
static DIR* open_list(int fd)
{
    if (fd < 0)
        return nullptr;
    auto list = std::make_unique<AttributeList>();
    if (list_attributes(StorageAccess::HostPath(fd).text, &list->names) != B_OK) {
        const int number = errno;
        close(fd);
        errno = number;
        return nullptr;
    }
    list->fd = fd;
    return reinterpret_cast<DIR*>(list.release());
}

static DIR* open_list(const char* path, int flags)
{
    if (path == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    return open_list(open(path, O_PATH | O_CLOEXEC | flags));
}

extern "C" DIR* fs_open_attr_dir(const char* path) { return open_list(path, 0); }

extern "C" DIR* fs_lopen_attr_dir(const char* path) { return open_list(path, O_NOFOLLOW); }

extern "C" DIR* fs_fopen_attr_dir(int fd) { return open_list(fcntl(fd, F_DUPFD_CLOEXEC, 0)); }

static AttributeList* list_behind(DIR* dir) { return reinterpret_cast<AttributeList*>(dir); }

extern "C" int fs_close_attr_dir(DIR* dir)
{
    if (dir == nullptr)
        return plain(fail(EINVAL));
    std::unique_ptr<AttributeList> list(list_behind(dir));
    return close(list->fd);
}

extern "C" struct dirent* fs_read_attr_dir(DIR* dir)
{
    AttributeList* list = list_behind(dir);
    if (list == nullptr || list->next >= list->names.size())
        return nullptr;
    list->record = {};
    list->record.d_reclen = sizeof(list->record);
    snprintf(list->record.d_name, sizeof(list->record.d_name), "%s",
             list->names[list->next++].c_str());
    return &list->record;
}

extern "C" void fs_rewind_attr_dir(DIR* dir)
{
    AttributeList* list = list_behind(dir);
    if (list == nullptr)
        return;
    list_attributes(StorageAccess::HostPath(list->fd).text, &list->names);
    list->next = 0;
}
