// Folders whose files are kept read. A folder that is missing is waited for in the next one above.

#include "storage/watch/FolderChanges.h"

#include <errno.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

#include <OS.h>

namespace storage {

static const uint32 kMask = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE |
                            IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
// How long the files count as unchanged where the host does not watch them.
static const bigtime_t kBlindInterval_us = 1'000'000;

FolderChanges::~FolderChanges()
{
    if (fFd >= 0)
        close(fFd);
}

void FolderChanges::Watch(const std::vector<Folder>& folders)
{
    const int before = errno;
    fRules.clear();
    if (fFd < 0)  // what is watched already stays: to close it takes the host milliseconds
        fFd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    fBlind = fFd < 0;
    fLastGuess = system_time();
    for (const Folder& folder : folders) {
        if (!fBlind)
            _WatchOne(folder);
    }
    errno = before;
}

// False if there is no such folder.
bool FolderChanges::_Add(const std::string& path, const Rule& rule)
{
    const int watch = inotify_add_watch(fFd, path.c_str(), kMask);
    if (watch >= 0)
        fRules[watch].push_back(rule);
    else if (errno != ENOENT && errno != ENOTDIR && errno != EACCES)
        fBlind = true;
    return watch >= 0;
}

void FolderChanges::_WatchOne(const Folder& folder)
{
    std::string path = folder.path;
    while (!fBlind && !_Add(path, {folder.suffix, false})) {
        // Wait where the first missing part will appear. If it does so meanwhile, look again.
        std::string missing;
        bool watched = false;
        while (!fBlind && !watched && path.size() > 1) {
            missing = path;
            const size_t slash = missing.rfind('/');
            path = missing.substr(0, std::max<size_t>(slash, 1));
            watched = _Add(path, {missing.substr(slash + 1), true});
        }
        if (!watched || access(missing.c_str(), X_OK) != 0)
            return;
        path = folder.path;
        if (access(path.c_str(), R_OK) != 0 && errno == EACCES)
            return;
    }
}

bool FolderChanges::_Counts(const inotify_event& event) const
{
    const auto rules = fRules.find(event.wd);
    if (rules == fRules.end())
        return (event.mask & IN_Q_OVERFLOW) != 0;
    if ((event.mask & (IN_DELETE_SELF | IN_MOVE_SELF)) != 0)
        return true;
    const std::string_view name = event.len > 0 ? event.name : "";
    for (const Rule& rule : rules->second) {
        if (rule.whole ? name == rule.name : !name.empty() && name.ends_with(rule.name))
            return true;
    }
    return false;
}

bool FolderChanges::Changed()
{
    if (fBlind) {
        const bigtime_t now = system_time();
        const bool due = fFd < 0 || now - fLastGuess > kBlindInterval_us;
        fLastGuess = due ? now : fLastGuess;
        return due;
    }
    const int before = errno;
    bool changed = false;
    alignas(inotify_event) char events[16 * 1024];
    ssize_t size;
    while ((size = read(fFd, events, sizeof(events))) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(events + at);
            changed |= _Counts(*event);
            at += static_cast<ssize_t>(sizeof(*event) + event->len);
        }
    }
    errno = before;
    return changed;
}

}  // namespace storage
