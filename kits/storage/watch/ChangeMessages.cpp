// What has happened, as messages to those who watch it. Called by the watcher's thread, which holds
// the lock.

#include "storage/watch/ChangeSubject.h"

#include <sys/stat.h>

#include <AppDefs.h>
#include <Message.h>
#include <NodeMonitor.h>

#include "storage/Directories.h"
#include "app/looper/MessengerAccess.h"

namespace storage {

static BMessage change_message(int32 opcode, dev_t device)
{
    BMessage message(B_NODE_MONITOR);
    message.AddInt32("opcode", opcode);
    message.AddInt32("device", static_cast<int32>(device));
    return message;
}

static void add_node(BMessage& message, const char* field, ino_t node)
{
    message.AddInt64(field, static_cast<int64>(node));
}

void ChangeWatcher::_EntryCreated(Subject& directory, const std::string& name)
{
    const std::string path = join(directory.path, name);
    struct stat info = {};  // node 0: it is gone again
    if (lstat(path.c_str(), &info) == 0)
        remember_node(path, info);
    auto [entry, is_new] = directory.entries.try_emplace(name, info.st_ino);
    if (!is_new && entry->second != info.st_ino && info.st_ino != 0) {
        _EntryRemoved(directory, name);  // it was moved onto another entry
        directory.entries[name] = info.st_ino;
    }
    BMessage message = change_message(B_ENTRY_CREATED, directory.key.first);
    add_node(message, "directory", directory.key.second);
    add_node(message, "node", info.st_ino);
    message.AddString("name", name.c_str());
    Targets targets;
    directory.AddTargets(B_WATCH_DIRECTORY, &targets);
    _Send(message, targets);
}

void ChangeWatcher::_EntryRemoved(Subject& directory, const std::string& name)
{
    ino_t node = 0;
    auto entry = directory.entries.find(name);
    if (entry != directory.entries.end()) {
        node = entry->second;
        directory.entries.erase(entry);
    }
    BMessage message = change_message(B_ENTRY_REMOVED, directory.key.first);
    add_node(message, "directory", directory.key.second);
    add_node(message, "node", node);
    message.AddString("name", name.c_str());
    Targets targets;
    directory.AddTargets(B_WATCH_DIRECTORY, &targets);
    Subject* subject = _Find({directory.key.first, node});
    const bool is_its_name = subject != nullptr && subject->directory == &directory &&
                             subject->path == join(directory.path, name);
    if (is_its_name)
        subject->AddTargets(B_WATCH_NAME, &targets);
    _Send(message, targets);
    if (!is_its_name)
        return;
    subject->removal_told = true;
    const bool is_gone = subject->watch < 0;
    if (is_gone)
        subject->interests.clear();
    _DetachFromParent(*subject);
    if (is_gone)
        fMaybeIdle.push_back({directory.key.first, node});
}

void ChangeWatcher::_EntryMoved(Subject& from, const std::string& fromName, Subject& to,
                                const std::string& toName, bool isDirectory)
{
    const std::string path = join(to.path, toName);
    struct stat info = {};
    ino_t node = 0;
    auto entry = from.entries.find(fromName);
    if (entry != from.entries.end()) {
        node = entry->second;
        from.entries.erase(entry);
    } else if (lstat(path.c_str(), &info) == 0) {
        node = info.st_ino;
    }
    auto replaced = to.entries.find(toName);
    if (replaced != to.entries.end() && replaced->second != node)
        _EntryRemoved(to, toName);
    to.entries[toName] = node;

    BMessage message = change_message(B_ENTRY_MOVED, to.key.first);
    add_node(message, "from directory", from.key.second);
    add_node(message, "to directory", to.key.second);
    add_node(message, "node", node);
    message.AddString("name", toName.c_str());
    message.AddInt32("node device", static_cast<int32>(to.key.first));
    message.AddString("from name", fromName.c_str());
    Targets targets;
    from.AddTargets(B_WATCH_DIRECTORY, &targets);
    to.AddTargets(B_WATCH_DIRECTORY, &targets);
    if (Subject* subject = _Find({to.key.first, node}))
        subject->AddTargets(B_WATCH_NAME, &targets);
    const Key key = {to.key.first, node};
    _FollowMove(join(from.path, fromName), path, isDirectory);
    if (lstat(path.c_str(), &info) == 0)
        remember_node(path, info);
    _Send(message, targets);

    Subject* subject = _Find(key);
    if (subject != nullptr && subject->directory == &from && &from != &to) {
        _DetachFromParent(*subject);
        _AttachToParent(*subject);
    }
}

void ChangeWatcher::_FollowMove(const std::string& from, const std::string& to, bool isDirectory)
{
    if (isDirectory)
        follow_moved_directory(from, to);
    for (auto& [key, subject] : fSubjects) {
        std::string& path = subject->path;
        const bool is_below = isDirectory && path.size() > from.size() &&
                              path.compare(0, from.size(), from) == 0 && path[from.size()] == '/';
        if (path == from || is_below)
            path.replace(0, from.size(), to);
    }
}

// For a node whose directory can not be watched.
void ChangeWatcher::_NodeRemoved(Subject& subject)
{
    if (subject.directory != nullptr || subject.removal_told)
        return;
    BMessage message = change_message(B_ENTRY_REMOVED, subject.key.first);
    struct stat info = {};
    stat(directory_of(subject.path).c_str(), &info);
    add_node(message, "directory", info.st_ino);
    add_node(message, "node", subject.key.second);
    message.AddString("name", leaf_of(subject.path.c_str()));
    Targets targets;
    subject.AddTargets(B_WATCH_NAME, &targets);
    _Send(message, targets);
}

static bool same_time(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

static int32 changed_fields(const struct stat& before, const struct stat& after)
{
    int32 fields = 0;
    if (before.st_mode != after.st_mode)
        fields |= B_STAT_MODE;
    if (before.st_uid != after.st_uid)
        fields |= B_STAT_UID;
    if (before.st_gid != after.st_gid)
        fields |= B_STAT_GID;
    if (before.st_size != after.st_size)
        fields |= B_STAT_SIZE;
    if (!same_time(before.st_atim, after.st_atim))
        fields |= B_STAT_ACCESS_TIME;
    if (!same_time(before.st_mtim, after.st_mtim))
        fields |= B_STAT_MODIFICATION_TIME;
    if (!same_time(before.st_ctim, after.st_ctim))
        fields |= B_STAT_CHANGE_TIME;
    return fields;
}

struct AttributeChange {
    std::string name;
    int32 cause;
};

static std::vector<AttributeChange> changed_attributes(const std::map<std::string, size_t>& before,
                                                       const std::map<std::string, size_t>& after)
{
    std::vector<AttributeChange> changes;
    for (const auto& [name, hash] : before) {
        if (after.count(name) == 0)
            changes.push_back({name, B_ATTR_REMOVED});
    }
    for (const auto& [name, hash] : after) {
        auto former = before.find(name);
        if (former == before.end())
            changes.push_back({name, B_ATTR_CREATED});
        else if (former->second != hash)
            changes.push_back({name, B_ATTR_CHANGED});
    }
    return changes;
}

void ChangeWatcher::_NodeChanged(Subject& subject, bool written)
{
    struct stat info;
    if (lstat(subject.path.c_str(), &info) != 0 || Key(info.st_dev, info.st_ino) != subject.key)
        return;
    const uint32 flags = subject.Flags();
    std::vector<AttributeChange> attributes;
    if ((flags & B_WATCH_ATTR) != 0) {
        std::map<std::string, size_t> now = read_attributes(subject.path);
        attributes = changed_attributes(subject.attributes, now);
        subject.attributes = std::move(now);
    }
    int32 fields = changed_fields(subject.last, info);
    subject.last = info;
    if (written && fields == 0)  // within one tick of the file system's clock
        fields = B_STAT_MODIFICATION_TIME | B_STAT_CHANGE_TIME;
    if (!attributes.empty() && fields == B_STAT_CHANGE_TIME)
        fields = 0;
    if (fields != 0) {
        BMessage message = change_message(B_STAT_CHANGED, subject.key.first);
        add_node(message, "node", subject.key.second);
        message.AddInt32("fields", fields);
        Targets targets;
        subject.AddTargets(kStatFlags, &targets);
        _Send(message, targets);
    }
    for (const AttributeChange& change : attributes) {
        BMessage message = change_message(B_ATTR_CHANGED, subject.key.first);
        add_node(message, "node", subject.key.second);
        if (subject.directory != nullptr)
            add_node(message, "directory", subject.directory->key.second);
        message.AddString("attr", change.name.c_str());
        message.AddInt32("cause", change.cause);
        Targets targets;
        subject.AddTargets(B_WATCH_ATTR, &targets);
        _Send(message, targets);
    }
}

void ChangeWatcher::_ChangesLost()
{
    Targets targets;
    for (auto& [key, subject] : fSubjects) {
        subject->AddTargets(~0u, &targets);
        if (!subject->entries.empty())
            subject->entries = read_entries(subject->path);
        if ((subject->Flags() & B_WATCH_ATTR) != 0)
            subject->attributes = read_attributes(subject->path);
        lstat(subject->path.c_str(), &subject->last);
    }
    BMessage message(B_NODE_MONITOR);
    message.AddInt32("opcode", B_CHANGES_LOST);
    _Send(message, targets);
}

// The number of the directory that a volume's root covers.
static ino_t covered_directory(const std::string& point)
{
    const std::map<std::string, ino_t> entries = read_entries(directory_of(point));
    auto entry = entries.find(leaf_of(point.c_str()));
    return entry == entries.end() ? 0 : entry->second;
}

void ChangeWatcher::_VolumesChanged()
{
    if (fVolumeTargets.empty())
        return;
    std::vector<Mount> now = volumes_of(read_mounts());
    for (const VolumeChange& change : compare_volumes(fVolumes, now)) {
        const Mount& mount = change.mount;
        BMessage message(B_NODE_MONITOR);
        if (change.mounted) {
            struct stat above = {};
            stat(directory_of(mount.point).c_str(), &above);
            message = change_message(B_DEVICE_MOUNTED, above.st_dev);
            message.AddInt32("new device", static_cast<int32>(mount.device));
            add_node(message, "directory", covered_directory(mount.point));
        } else {
            message = change_message(B_DEVICE_UNMOUNTED, mount.device);
        }
        _Send(message, fVolumeTargets);
    }
    fVolumes = std::move(now);
}

void ChangeWatcher::_Send(BMessage& message, const Targets& targets)
{
    for (const BMessenger& target : targets) {
        if (!BPrivate::MessengerAccess::Notify(target, message))
            fDead.push_back(target);
    }
}

}  // namespace storage
