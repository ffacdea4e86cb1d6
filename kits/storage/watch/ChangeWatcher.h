#ifndef STORAGE_CHANGE_WATCHER_H
#define STORAGE_CHANGE_WATCHER_H

#include <sys/stat.h>

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <Messenger.h>
#include <Node.h>
#include <SupportDefs.h>

#include "storage/volumes/MountTable.h"

class BMessage;

namespace [[gnu::visibility("hidden")]] storage {

// Tells messengers what happens to nodes and volumes. A thread of its own reads the host's
// events and turns them into messages in their order. The public calls may come from any
// thread; they, and the thread while it handles events, hold the lock. Sending never waits, so
// the lock is held while messages go out: after Stop() nothing more arrives.
class ChangeWatcher {
public:
    static ChangeWatcher& Get();

    // Replaces the flags with which `target` watches the node; 0 ends that.
    status_t Watch(const node_ref& node, uint32 flags, const BMessenger& target);
    status_t WatchVolumes(const BMessenger& target);
    void Stop(const BMessenger& target);

private:
    using Key = std::pair<uint32, ino_t>;  // device numbers as messages carry them
    struct Subject;
    struct Event;
    using Targets = std::vector<BMessenger>;

    ChangeWatcher() = default;

    status_t _Start();
    void _Run();
    void _ReadEvents();
    void _HandleEvents(bool waited);
    bool _TakePartner(const Event& from, bool waited, bool* undecided, Event* to);
    void _Handle(const Event& event);

    Subject* _Find(const Key& key) const;
    Subject* _FindWatch(int watch) const;
    Subject* _Meet(const Key& key, const std::string& path, const struct stat& info);
    status_t _Update(Subject& subject);
    status_t _SetMask(Subject& subject, uint32 mask);
    void _AttachToParent(Subject& subject);
    void _DetachFromParent(Subject& subject);
    void _RemoveIdle();
    void _ForgetWatch(Subject& subject);
    void _WatchEnded(Subject& subject);

    void _EntryCreated(Subject& directory, const std::string& name);
    void _EntryRemoved(Subject& directory, const std::string& name);
    void _EntryMoved(Subject& from, const std::string& fromName, Subject& to,
                     const std::string& toName, bool isDirectory);
    void _NodeRemoved(Subject& subject);
    void _NodeChanged(Subject& subject, bool written);
    void _ChangesLost();
    void _VolumesChanged();
    void _FollowMove(const std::string& from, const std::string& to, bool isDirectory);

    void _Send(BMessage& message, const Targets& targets);
    void _DropDead();

    std::mutex fLock;
    int fEvents = -1;                                   // lock; the host's events
    int fTable = -1;                                    // lock; the mount table
    std::map<Key, std::unique_ptr<Subject>> fSubjects;  // lock
    std::map<int, Subject*> fWatches;                   // lock
    std::vector<Key> fMaybeIdle;                        // lock; empty between events and calls
    std::deque<Event> fQueue;                           // lock; read, not handled
    Targets fVolumeTargets;                             // lock
    std::vector<Mount> fVolumes;                        // lock
    Targets fDead;                                      // lock; refused a message
};

}  // namespace storage

#endif  // STORAGE_CHANGE_WATCHER_H
