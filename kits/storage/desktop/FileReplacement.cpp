// Files of the user's that other programs write, too: changed whole, never in place. Any thread.

#include "storage/desktop/FileReplacement.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <OS.h>

#include <Directory.h>

#include "storage/desktop/DataFolders.h"
#include "support/HostErrors.h"
#include "support/RealPath.h"

namespace storage {

using BPrivate::fail;
using BPrivate::host_failure;

static const bigtime_t kPatience_us = 10'000'000;  // the host's database takes seconds
static const int kAttempts = 1000;                 // against programs that write all the time
static const mode_t kNewFileMode = 0600;           // what the user chose and used is nobody else's

static std::string folder_of(const std::string& path)
{
    return path.substr(0, std::max<size_t>(path.rfind('/'), 1));
}

std::string own_data_folder() { return data_folders().front() + "/beos"; }

UsersLock::UsersLock(const char* name)
{
    const int before = errno;
    if (create_directory(own_data_folder().c_str(), 0700) == B_OK)
        fLock.emplace(own_data_folder() + "/" + name, O_RDWR | O_CREAT, kPatience_us);
    errno = before;
}

// What stands between a file's name and the team that is about to replace it.
static const char* const kNewMark = ".beos-";

// Removes what programs that were killed have left beside a file.
static void remove_leftovers(const std::string& target)
{
    const int before = errno;
    const std::string start = target.substr(target.rfind('/') + 1) + kNewMark;
    DIR* folder = opendir(folder_of(target).c_str());
    while (const struct dirent* entry = folder != nullptr ? readdir(folder) : nullptr) {
        const std::string name = entry->d_name;
        if (!name.starts_with(start))
            continue;
        const pid_t team = atoi(name.c_str() + start.size());
        if (team > 0 && kill(team, 0) != 0 && errno == ESRCH)
            unlinkat(dirfd(folder), name.c_str(), 0);
    }
    if (folder != nullptr)
        closedir(folder);
    errno = before;
}

// A file beside another until it takes that one's place; removed if it never does.
class NewFile {
public:
    NewFile(const std::string& target, mode_t mode)
        : fName(target + kNewMark + std::to_string(getpid()) + ".XXXXXX")
    {
        remove_leftovers(target);
        fFd = mkostemp(fName.data(), O_CLOEXEC);
        if (fFd >= 0)
            fchmod(fFd, mode);
    }
    ~NewFile()
    {
        const int before = errno;
        if (fFd >= 0) {
            close(fFd);
            unlink(fName.c_str());
        }
        errno = before;
    }
    NewFile(const NewFile&) = delete;

    const char* Name() const { return fName.c_str(); }
    // Until this object goes, whoever opens the file waits. False where the host can not do that.
    bool HoldBackReaders()
    {
        // A reader that waits is announced by a signal: to nobody, or by one that does no harm.
        fcntl(fFd, F_SETSIG, SIGURG);
        if (fcntl(fFd, F_SETLEASE, F_WRLCK) != 0)
            return false;
        fcntl(fFd, F_SETOWN, 0);
        return true;
    }
    bool IsAt(const std::string& path) const
    {
        struct stat own, there;
        return fstat(fFd, &own) == 0 && stat(path.c_str(), &there) == 0 &&
               own.st_ino == there.st_ino && own.st_dev == there.st_dev;
    }
    // The whole content, in place of what there was.
    status_t Write(const std::string& bytes)
    {
        if (fFd < 0)
            return host_failure();
        for (size_t done = 0; done < bytes.size();) {
            const ssize_t size =
                pwrite(fFd, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
            if (size < 0 && errno != EINTR)
                return host_failure();
            done += static_cast<size_t>(std::max<ssize_t>(size, 0));
        }
        if (ftruncate(fFd, static_cast<off_t>(bytes.size())) != 0 || fdatasync(fFd) != 0)
            return host_failure();
        return B_OK;
    }

private:
    std::string fName;
    int fFd = -1;
};

status_t replace_file(const std::string& path, const std::string& bytes)
{
    status_t status = create_directory(folder_of(path).c_str(), 0755);
    if (status != B_OK)
        return status;
    NewFile file(path, 0644);
    status = file.Write(bytes);
    if (status == B_OK && rename(file.Name(), path.c_str()) != 0)
        status = host_failure();
    return status;
}

static bool is_same_version(const std::string& path, const struct stat& before)
{
    struct stat now;
    return stat(path.c_str(), &now) == 0 && now.st_ino == before.st_ino &&
           now.st_size == before.st_size && now.st_mtim.tv_sec == before.st_mtim.tv_sec &&
           now.st_mtim.tv_nsec == before.st_mtim.tv_nsec;
}

// Gives the versions at two names each other's name until `path` has the one that came last: each
// time, what comes out must be what went in before.
static void give_back(const char* name, const std::string& path, std::string went_in)
{
    for (int i = 0; i < kAttempts; i++) {
        const std::string goes_in = read_text_file(name);
        if (renameat2(AT_FDCWD, name, AT_FDCWD, path.c_str(), RENAME_EXCHANGE) != 0 ||
            read_text_file(name) == went_in)
            return;
        went_in = goes_in;
    }
}

// B_WOULD_BLOCK if another program came between.
static status_t try_to_edit(const std::string& path,
                            const std::function<std::string(const std::string&)>& edit)
{
    struct stat info;
    const bool exists = stat(path.c_str(), &info) == 0;
    if (!exists && errno != ENOENT)
        return host_failure();
    if (exists && access(path.c_str(), R_OK) != 0)
        return host_failure();
    if (exists && !S_ISREG(info.st_mode))
        return fail(S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
    const std::string text = read_text_file(path);
    if (exists && static_cast<off_t>(text.size()) != info.st_size)
        return B_WOULD_BLOCK;  // changed, or not read whole
    const std::string edited = edit(text);
    if (edited == text)
        return B_OK;
    NewFile file(path, exists ? info.st_mode & 07777 : kNewFileMode);
    status_t status = file.Write(edited);
    if (status != B_OK)
        return status;
    const bool unread = file.HoldBackReaders();
    if (exists && !is_same_version(path, info))
        return B_WOULD_BLOCK;
    if (renameat2(AT_FDCWD, file.Name(), AT_FDCWD, path.c_str(),
                  exists ? RENAME_EXCHANGE : RENAME_NOREPLACE) != 0) {
        if (errno == EEXIST || errno == ENOENT)
            return B_WOULD_BLOCK;
        // A file system that can not exchange: the check before has to do.
        if (errno != EINVAL || rename(file.Name(), path.c_str()) != 0)
            return host_failure();
        return B_OK;
    }
    if (!exists)
        return B_OK;
    const std::string replaced = read_text_file(file.Name());
    if (replaced == text)
        return B_OK;
    if (unread) {
        // Nobody has seen ours yet: it still becomes what it should have been made of.
        status = file.Write(edit(replaced));
        return status != B_OK || file.IsAt(path) ? status : B_WOULD_BLOCK;
    }
    give_back(file.Name(), path, edited);
    return B_WOULD_BLOCK;
}

status_t edit_file(const std::string& path,
                   const std::function<std::string(const std::string& text)>& edit)
{
    status_t status = create_directory(folder_of(path).c_str(), 0700);
    if (status != B_OK)
        return status;
    const int before = errno;
    const std::string real = BPrivate::real_path(path);
    const std::string target = real.empty() ? path : real;
    for (int i = 0; i < kAttempts; i++) {
        status = try_to_edit(target, edit);
        if (status != B_WOULD_BLOCK) {
            if (status == B_OK)
                errno = before;
            return status;
        }
        if (i > 10)
            snooze(100);  // the other is faster
    }
    return fail(EBUSY);
}

}  // namespace storage
