// The host's locks on whole files, which end with the program that holds them. Any thread.

#include "storage/desktop/FileLock.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "support/HostErrors.h"

namespace storage {

using BPrivate::fail;
using BPrivate::host_failure;

static const bigtime_t kPause_us = 1'000;

FileLock::FileLock(const std::string& path, int flags, bigtime_t patience_us)
    : fFile(open(path.c_str(), flags | O_CLOEXEC, 0600))
{
    if (fFile < 0) {
        fStatus = host_failure();
        return;
    }
    const bigtime_t end = system_time() + patience_us;
    while (flock(fFile, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK && system_time() <= end) {
            snooze(kPause_us);
        } else if (errno != EINTR) {
            fStatus = fail(errno == EWOULDBLOCK ? EBUSY : errno);
            return;
        }
    }
}

FileLock::~FileLock()
{
    const int before = errno;
    if (fFile >= 0)
        close(fFile);
    errno = before;
}

}  // namespace storage
