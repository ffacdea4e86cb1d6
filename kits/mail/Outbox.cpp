// Mails in files. The name tells when a mail was made, and whether it is kept once it was sent.

#include "mail/Outbox.h"

#include <Directory.h>
#include <FindDirectory.h>
#include <OS.h>
#include <Path.h>
#include <StorageDefs.h>

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <string_view>
#include <vector>

#include "mail/Sendmail.h"

namespace mail {

static const mode_t kPrivateFolder = 0700;
static const mode_t kPrivateFile = 0600;
static const char* const kKept = ".keep.eml";  // else ".eml"

static status_t find_folder(const char* leaf, std::string* folder)
{
    BPath path;
    status_t status = find_directory(B_USER_DATA_DIRECTORY, &path, true);
    if (status == B_OK)
        status = path.Append("beos/mail");
    if (status == B_OK)
        status = path.Append(leaf);
    if (status == B_OK)
        status = create_directory(path.Path(), kPrivateFolder);
    if (status == B_OK)
        *folder = path.Path();
    return status;
}

static status_t lock(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0 ? B_OK : B_BUSY; }

// Hidden names are not in the outbox yet.
QueuedMail::~QueuedMail()
{
    if (fFile < 0)
        return;
    if (!fEnqueued)
        unlink(_Path().c_str());
    close(fFile);
}

status_t QueuedMail::Create(bool remove_after_sending)
{
    static std::atomic<uint32> counter{0};
    const status_t status = find_folder("outbox", &fFolder);
    if (status != B_OK)
        return status;
    char name[64];
    snprintf(name, sizeof(name), ".%020lld-%d-%u%s",
             static_cast<long long>(real_time_clock_usecs()), static_cast<int>(getpid()),
             static_cast<unsigned>(counter++), remove_after_sending ? ".eml" : kKept);
    fName = name;
    fFile = open(_Path().c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kPrivateFile);
    if (fFile < 0)
        return errno == ENOSPC ? B_DEVICE_FULL : B_PERMISSION_DENIED;
    return lock(fFile);
}

status_t QueuedMail::Enqueue()
{
    const std::string hidden = _Path();
    const std::string name = fName.substr(1);
    if (fdatasync(fFile) != 0 || rename(hidden.c_str(), (fFolder + "/" + name).c_str()) != 0)
        return errno == ENOSPC ? B_DEVICE_FULL : B_IO_ERROR;
    fName = name;
    fEnqueued = true;
    return B_OK;
}

status_t QueuedMail::Open(const std::string& folder, const std::string& name)
{
    fFolder = folder;
    fName = name;
    fEnqueued = true;
    fFile = open(_Path().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (fFile < 0)
        return B_ENTRY_NOT_FOUND;
    const status_t status = lock(fFile);
    struct stat info;
    if (status == B_OK && (fstat(fFile, &info) != 0 || !S_ISREG(info.st_mode) ||
                           info.st_nlink == 0 || info.st_uid != geteuid()))
        return B_ENTRY_NOT_FOUND;  // sent a moment ago, or not our business
    return status;
}

status_t QueuedMail::Deliver()
{
    const status_t status = run_sendmail(_Path().c_str());
    if (status != B_OK)
        return status;
    std::string sent;
    const size_t ending = strlen(kKept);
    const bool is_kept =
        fName.size() > ending && fName.compare(fName.size() - ending, ending, kKept) == 0;
    if (!is_kept || find_folder("sent", &sent) != B_OK ||
        rename(_Path().c_str(), (sent + "/" + fName).c_str()) != 0)
        unlink(_Path().c_str());
    return B_OK;
}

// A mail that was enqueued: not one that is being written, nor what somebody else put beside it.
static bool is_mail_name(std::string_view name)
{
    return !name.starts_with('.') && name.ends_with(".eml");
}

void deliver_waiting()
{
    std::string folder;
    if (find_folder("outbox", &folder) != B_OK)
        return;
    BDirectory directory(folder.c_str());
    std::vector<std::string> names;
    entry_ref ref;
    while (directory.GetNextRef(&ref) == B_OK) {
        if (ref.name != nullptr && is_mail_name(ref.name))
            names.push_back(ref.name);
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        QueuedMail mail;
        if (mail.Open(folder, name) == B_OK && mail.Deliver() == B_TIMED_OUT)
            return;
    }
}

}  // namespace mail
