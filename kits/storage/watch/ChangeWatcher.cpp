// Turns the host's events (inotify, the mount table) into node monitor messages.
//
// A watched node is a Subject. Whoever watches a node's name makes its directory a subject too, for
// the host tells of moves and removals there. A subject that is a directory keeps the numbers of
// its entries, since a removed entry has none to ask for.

#include "storage/watch/ChangeSubject.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <functional>

#include <NodeMonitor.h>
#include <OS.h>

#include "storage/Attributes.h"
#include "storage/Directories.h"
#include "support/HostErrors.h"

namespace storage {

using BPrivate::fail;
using BPrivate::host_failure;

// A move's two halves stand close together in the host's queue, though not always side by side,
// and the second may come a moment later.
static const bigtime_t kPartnerWait_us = 10'000;
static const size_t kPartnerDistance = 256;

// Events taken from the host's queue before some are handled.
static const size_t kQueueLimit = 8192;

static const uint32 kEntryEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;

ChangeWatcher& ChangeWatcher::Get()
{
    static auto* watcher = new ChangeWatcher;  // its thread runs until the process ends
    return *watcher;
}

status_t ChangeWatcher::_Start()
{
    if (fEvents >= 0)
        return B_OK;
    const int events = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (events < 0)
        return host_failure();
    fTable = open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    const thread_id thread = spawn_thread(
        [](void* self) -> status_t {
            static_cast<ChangeWatcher*>(self)->_Run();
            return B_OK;
        },
        "node monitor", B_NORMAL_PRIORITY, this);
    if (thread < B_OK || resume_thread(thread) != B_OK) {
        close(events);
        if (fTable >= 0)
            close(fTable);
        fTable = -1;
        return fail(EAGAIN);
    }
    fEvents = events;
    return B_OK;
}

std::map<std::string, ino_t> read_entries(const std::string& path)
{
    std::map<std::string, ino_t> entries;
    DIR* directory = opendir(path.c_str());
    if (directory == nullptr)
        return entries;
    while (const struct dirent* entry = readdir(directory))
        entries.emplace(entry->d_name, entry->d_ino);
    closedir(directory);
    return entries;
}

std::map<std::string, size_t> read_attributes(const std::string& path)
{
    std::map<std::string, size_t> attributes;
    std::vector<std::string> names;
    list_attributes(path.c_str(), &names);
    for (const std::string& name : names) {
        Attribute attribute;
        if (read_attribute(path.c_str(), name.c_str(), &attribute) == B_OK)
            attributes[name] = std::hash<std::string>()(attribute.bytes) ^ attribute.type;
    }
    return attributes;
}

status_t ChangeWatcher::Watch(const node_ref& node, uint32 flags, const BMessenger& target)
{
    std::lock_guard guard(fLock);
    const Key key(node.device, node.node);
    Subject* subject = _Find(key);
    auto find_interest = [&] {
        return std::find_if(subject->interests.begin(), subject->interests.end(),
                            [&](const Interest& interest) { return interest.target == target; });
    };
    if (flags == 0) {
        if (subject == nullptr || find_interest() == subject->interests.end())
            return fail(ENOENT);
        subject->interests.erase(find_interest());
        _Update(*subject);
        fMaybeIdle.push_back(key);
        _RemoveIdle();
        return B_OK;
    }
    status_t status = _Start();
    if (status != B_OK)
        return status;
    std::string path;
    struct stat info;
    status = find_node_path(node.device, node.node, &path);
    if (status != B_OK)
        return status;
    if (lstat(path.c_str(), &info) != 0)
        return host_failure();
    subject = _Meet(key, path, info);
    auto interest = find_interest();
    if (interest == subject->interests.end())
        subject->interests.push_back({target, flags});
    else
        interest->flags = flags;
    status = _Update(*subject);
    if (status != B_OK) {
        const int number = errno;
        subject->interests.erase(find_interest());
        _Update(*subject);
        fMaybeIdle.push_back(key);
        _RemoveIdle();
        errno = number;
    } else {
        _RemoveIdle();
    }
    return status;
}

status_t ChangeWatcher::WatchVolumes(const BMessenger& target)
{
    std::lock_guard guard(fLock);
    status_t status = _Start();
    if (status != B_OK)
        return status;
    if (fVolumeTargets.empty())
        fVolumes = volumes_of(read_mounts());
    if (std::find(fVolumeTargets.begin(), fVolumeTargets.end(), target) == fVolumeTargets.end())
        fVolumeTargets.push_back(target);
    return B_OK;
}

void ChangeWatcher::Stop(const BMessenger& target)
{
    std::lock_guard guard(fLock);
    fDead.push_back(target);
    _DropDead();
}

// Ends the watches of targets that asked for it, or are gone.
void ChangeWatcher::_DropDead()
{
    if (fDead.empty())
        return;
    const Targets dead = std::move(fDead);
    fDead.clear();
    auto is_dead = [&](const BMessenger& target) {
        return std::find(dead.begin(), dead.end(), target) != dead.end();
    };
    std::erase_if(fVolumeTargets, is_dead);
    std::vector<Key> touched;
    for (auto& [key, subject] : fSubjects) {
        if (std::erase_if(subject->interests,
                          [&](const Interest& interest) { return is_dead(interest.target); }) > 0)
            touched.push_back(key);
    }
    for (const Key& key : touched) {
        if (Subject* subject = _Find(key))
            _Update(*subject);
        fMaybeIdle.push_back(key);
    }
    _RemoveIdle();
}

ChangeWatcher::Subject* ChangeWatcher::_Find(const Key& key) const
{
    auto found = fSubjects.find(key);
    return found == fSubjects.end() ? nullptr : found->second.get();
}

ChangeWatcher::Subject* ChangeWatcher::_FindWatch(int watch) const
{
    auto found = fWatches.find(watch);
    return found == fWatches.end() ? nullptr : found->second;
}

// The subject of a node that is at `path` now. Numbers are used again: a subject whose watch is not
// that of the path's node belonged to one that is gone.
ChangeWatcher::Subject* ChangeWatcher::_Meet(const Key& key, const std::string& path,
                                             const struct stat& info)
{
    Subject* subject = _Find(key);
    if (subject == nullptr) {
        subject = (fSubjects[key] = std::make_unique<Subject>()).get();
        subject->key = key;
    } else if (subject->mask != 0 &&
               inotify_add_watch(fEvents, path.c_str(), subject->mask | IN_DONT_FOLLOW) ==
                   subject->watch) {
        subject->path = path;
        return subject;
    } else {
        _ForgetWatch(*subject);
        _DetachFromParent(*subject);
        subject->interests.clear();
        subject->entries.clear();
        subject->attributes.clear();
        subject->removal_told = false;
    }
    subject->path = path;
    subject->is_directory = S_ISDIR(info.st_mode);
    subject->last = info;
    return subject;
}

// Has the host tell what the subject's interests want to know.
status_t ChangeWatcher::_Update(Subject& subject)
{
    const uint32 flags = subject.Flags();
    if ((flags & B_WATCH_NAME) != 0)
        _AttachToParent(subject);
    else
        _DetachFromParent(subject);
    uint32 mask = 0;
    if ((flags & B_WATCH_NAME) != 0)
        mask |= IN_DELETE_SELF;
    if ((flags & kStatFlags) != 0)
        mask |= IN_ATTRIB;
    if ((flags & kStatFlags) != 0 && !subject.is_directory)  // it would tell of all its files
        mask |= IN_MODIFY;
    if ((flags & B_WATCH_ATTR) != 0)
        mask |= IN_ATTRIB;
    const bool wants_entries =
        subject.is_directory && ((flags & B_WATCH_DIRECTORY) != 0 || subject.named_entries > 0);
    if (wants_entries)
        mask |= kEntryEvents;
    status_t status = _SetMask(subject, mask);
    if (status != B_OK)
        return status;
    // Read once the host watches, so that nothing falls between.
    if (!wants_entries)
        subject.entries.clear();
    else if (subject.entries.empty())
        subject.entries = read_entries(subject.path);
    if ((flags & B_WATCH_ATTR) == 0)
        subject.attributes.clear();
    else if (subject.attributes.empty())
        subject.attributes = read_attributes(subject.path);
    return B_OK;
}

status_t ChangeWatcher::_SetMask(Subject& subject, uint32 mask)
{
    if (mask == subject.mask)
        return B_OK;
    if (mask == 0) {
        inotify_rm_watch(fEvents, subject.watch);
        fWatches.erase(subject.watch);
        subject.watch = -1;
        subject.mask = 0;
        return B_OK;
    }
    const int watch = inotify_add_watch(fEvents, subject.path.c_str(), mask | IN_DONT_FOLLOW);
    if (watch < 0)
        return errno == ENOSPC ? B_NO_MEMORY : host_failure();
    struct stat info;
    const bool is_it =
        lstat(subject.path.c_str(), &info) == 0 && Key(info.st_dev, info.st_ino) == subject.key;
    if (!is_it || (subject.watch >= 0 && subject.watch != watch)) {
        if (_FindWatch(watch) == nullptr)
            inotify_rm_watch(fEvents, watch);
        return fail(ENOENT);  // another node took the path's place
    }
    fWatches[watch] = &subject;
    subject.watch = watch;
    subject.mask = mask;
    return B_OK;
}

// Where the directory can not be watched, only the end of the node is told.
void ChangeWatcher::_AttachToParent(Subject& subject)
{
    if (subject.directory != nullptr || subject.path == "/")
        return;
    const std::string path = directory_of(subject.path);
    struct stat info;
    if (stat(path.c_str(), &info) != 0)
        return;
    remember_node(path, info);
    const Key key(info.st_dev, info.st_ino);
    Subject* directory = _Meet(key, path, info);
    directory->named_entries++;
    if (_Update(*directory) == B_OK) {
        subject.directory = directory;
        return;
    }
    directory->named_entries--;
    _Update(*directory);
    fMaybeIdle.push_back(key);
}

void ChangeWatcher::_DetachFromParent(Subject& subject)
{
    Subject* directory = std::exchange(subject.directory, nullptr);
    if (directory == nullptr)
        return;
    directory->named_entries--;
    _Update(*directory);
    fMaybeIdle.push_back(directory->key);
}

// Removes what nobody watches any more, once nobody holds a pointer to a subject.
void ChangeWatcher::_RemoveIdle()
{
    while (!fMaybeIdle.empty()) {
        const Key key = fMaybeIdle.back();
        fMaybeIdle.pop_back();
        Subject* subject = _Find(key);
        if (subject == nullptr || subject->named_entries > 0 || !subject->interests.empty())
            continue;
        _SetMask(*subject, 0);
        _DetachFromParent(*subject);
        fSubjects.erase(key);
    }
}

// Nothing comes from the subject's watch any more, nor for the entries that it told of.
void ChangeWatcher::_ForgetWatch(Subject& subject)
{
    fWatches.erase(subject.watch);
    subject.watch = -1;
    subject.mask = 0;
    for (auto& [key, other] : fSubjects) {
        if (other->directory == &subject)
            other->directory = nullptr;
    }
    subject.named_entries = 0;
}

// The host watches the node no longer: it is gone, or its file system is.
void ChangeWatcher::_WatchEnded(Subject& subject)
{
    _ForgetWatch(subject);
    if (subject.directory != nullptr)  // which has yet to tell of the removal
        return;
    subject.interests.clear();
    fMaybeIdle.push_back(subject.key);
}

void ChangeWatcher::_Run()
{
    int events, table;
    {
        std::lock_guard guard(fLock);
        events = fEvents;
        table = fTable;
    }
    while (true) {
        bool waits_for_partner;
        {
            std::lock_guard guard(fLock);
            waits_for_partner = !fQueue.empty();
        }
        pollfd sources[] = {{events, POLLIN, 0}, {table, POLLPRI, 0}};
        const int timeout_ms = waits_for_partner ? kPartnerWait_us / 1000 : -1;
        const int ready = poll(sources, 2, timeout_ms);
        std::lock_guard guard(fLock);
        if (ready > 0 && sources[0].revents != 0)
            _ReadEvents();
        _HandleEvents(ready == 0);
        if (ready > 0 && sources[1].revents != 0)
            _VolumesChanged();
        _DropDead();
    }
}

void ChangeWatcher::_ReadEvents()
{
    alignas(inotify_event) char buffer[64 * 1024];
    ssize_t size;
    while (fQueue.size() < kQueueLimit && (size = read(fEvents, buffer, sizeof(buffer))) > 0) {
        const bigtime_t now = system_time();
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            fQueue.push_back(
                {event->wd, event->mask, event->cookie, event->len > 0 ? event->name : "", now});
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}

// Finds the second half of a move. `undecided` if it may still come.
bool ChangeWatcher::_TakePartner(const Event& from, bool waited, bool* undecided, Event* to)
{
    const size_t near = std::min(fQueue.size(), kPartnerDistance);
    for (size_t i = 1; i < near; i++) {
        Event& event = fQueue[i];
        if ((event.mask & IN_MOVED_TO) != 0 && event.cookie == from.cookie) {
            *to = std::move(event);
            fQueue.erase(fQueue.begin() + static_cast<ptrdiff_t>(i));
            return true;
        }
    }
    *undecided = !waited && fQueue.size() < kPartnerDistance &&
                 system_time() - from.read_at < kPartnerWait_us;
    return false;
}

void ChangeWatcher::_HandleEvents(bool waited)
{
    while (!fQueue.empty()) {
        const Event event = fQueue.front();
        Event to;
        bool undecided = false;
        const bool is_move =
            (event.mask & IN_MOVED_FROM) != 0 && _TakePartner(event, waited, &undecided, &to);
        if (undecided)
            return;
        fQueue.pop_front();
        Subject* from_directory = _FindWatch(event.watch);
        Subject* to_directory = is_move ? _FindWatch(to.watch) : nullptr;
        if (from_directory != nullptr && to_directory != nullptr) {
            _EntryMoved(*from_directory, event.name, *to_directory, to.name,
                        (event.mask & IN_ISDIR) != 0);
        } else {
            _Handle(event);
            if (is_move)
                _Handle(to);
        }
        _RemoveIdle();
    }
}

void ChangeWatcher::_Handle(const Event& event)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        _ChangesLost();
        return;
    }
    Subject* subject = _FindWatch(event.watch);
    if (subject == nullptr)
        return;
    if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0)
        _EntryCreated(*subject, event.name);
    else if ((event.mask & (IN_DELETE | IN_MOVED_FROM)) != 0)
        _EntryRemoved(*subject, event.name);
    else if ((event.mask & IN_IGNORED) != 0)
        _WatchEnded(*subject);
    else if ((event.mask & IN_DELETE_SELF) != 0)
        _NodeRemoved(*subject);
    else if ((event.mask & (IN_ATTRIB | IN_MODIFY)) != 0 && event.name.empty())
        _NodeChanged(*subject, (event.mask & IN_MODIFY) != 0);  // with a name: an entry's
}

}  // namespace storage
