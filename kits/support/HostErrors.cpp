// Turns the host's error numbers into the kits' status codes.

#include "support/HostErrors.h"

#include <errno.h>

namespace BPrivate {

struct StatusRow {
    int host;
    status_t status;
};

// Of numbers with the same status, the usual one comes first.
static const StatusRow kStatuses[] = {
    {ENOENT, B_ENTRY_NOT_FOUND},
    {ENODATA, B_ENTRY_NOT_FOUND},  // no such attribute
    {EEXIST, B_FILE_EXISTS},
    {EACCES, B_PERMISSION_DENIED},
    {EPERM, B_NOT_ALLOWED},
    {ENOTDIR, B_NOT_A_DIRECTORY},
    {EISDIR, B_IS_A_DIRECTORY},
    {ENOTEMPTY, B_DIRECTORY_NOT_EMPTY},
    {ENAMETOOLONG, B_NAME_TOO_LONG},
    {ELOOP, B_LINK_LIMIT},
    {EXDEV, B_CROSS_DEVICE_LINK},
    {ENOSPC, B_DEVICE_FULL},
    {EROFS, B_READ_ONLY_DEVICE},
    {EMFILE, B_NO_MORE_FDS},
    {EPIPE, B_BUSTED_PIPE},
    {EBADF, B_FILE_ERROR},
    {EINVAL, B_BAD_VALUE},
    {EFAULT, B_BAD_ADDRESS},
    {ENOMEM, B_NO_MEMORY},
    {EIO, B_IO_ERROR},
    {EFBIG, B_FILE_TOO_LARGE},
    {ENOEXEC, B_NOT_AN_EXECUTABLE},
    {E2BIG, B_TOO_MANY_ARGS},
    {EOVERFLOW, B_BUFFER_OVERFLOW},
    {ENODEV, B_DEVICE_NOT_FOUND},
    {ENXIO, B_DEVICE_NOT_FOUND},
    {EBUSY, B_BUSY},
    {ETXTBSY, B_BUSY},
    {EINTR, B_INTERRUPTED},
    {ETIMEDOUT, B_TIMED_OUT},
    {EAGAIN, B_WOULD_BLOCK},
    {EOPNOTSUPP, B_NOT_SUPPORTED},
    {ENOSYS, B_NOT_SUPPORTED},
};

static status_t status_for(int host_number)
{
    for (const StatusRow& row : kStatuses) {
        if (row.host == host_number)
            return row.status;
    }
    return B_ERROR;
}

status_t host_failure() { return status_for(errno); }

status_t fail(int host_number)
{
    errno = host_number;
    return status_for(host_number);
}

status_t not_set()
{
    errno = EBADF;
    return B_NO_INIT;
}

status_t fail_again(status_t status)
{
    if (status == B_NO_INIT)
        return not_set();
    errno = EIO;
    for (const StatusRow& row : kStatuses) {
        if (row.status == status) {
            errno = row.host;
            break;
        }
    }
    return status;
}

}  // namespace BPrivate
