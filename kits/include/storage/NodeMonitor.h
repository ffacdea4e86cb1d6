#ifndef _NODE_MONITOR_H
#define _NODE_MONITOR_H

#include <Messenger.h>
#include <Node.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

#include <sys/types.h>

class BHandler;
class BLooper;

// What to watch: a set.
enum {
    B_STOP_WATCHING = 0,
    B_WATCH_NAME = 0x01,       // the node is moved or removed
    B_WATCH_STAT = 0x02,       // its stat fields
    B_WATCH_ATTR = 0x04,       // its attributes
    B_WATCH_DIRECTORY = 0x08,  // entries of the directory come, go and move
    B_WATCH_ALL = 0x0F,
    B_WATCH_MOUNT = 0x10,  // volumes; of no node
    B_WATCH_INTERIM_STAT = 0x20,
    B_WATCH_CHILDREN = 0x40
};

// The field "opcode" of a B_NODE_MONITOR message.
enum {
    B_ENTRY_CREATED = 1,
    B_ENTRY_REMOVED = 2,
    B_ENTRY_MOVED = 3,
    B_STAT_CHANGED = 4,
    B_ATTR_CHANGED = 5,
    B_DEVICE_MOUNTED = 6,
    B_DEVICE_UNMOUNTED = 7,
    // Changes came faster than they could be kept, and some were lost: look for yourself. Of this
    // host; no further fields.
    B_CHANGES_LOST = 100
};

// The field "cause" of B_ATTR_CHANGED; B_ATTR_CHANGED itself for a new value.
enum { B_ATTR_CREATED = 1, B_ATTR_REMOVED = 2 };

// The field "fields" of B_STAT_CHANGED: a set.
enum {
    B_STAT_MODE = 0x0001,
    B_STAT_UID = 0x0002,
    B_STAT_GID = 0x0004,
    B_STAT_SIZE = 0x0008,
    B_STAT_ACCESS_TIME = 0x0010,
    B_STAT_MODIFICATION_TIME = 0x0020,
    B_STAT_CREATION_TIME = 0x0040,
    B_STAT_CHANGE_TIME = 0x0080,
    B_STAT_INTERIM_UPDATE = 0x1000
};

// Sends `target` a B_NODE_MONITOR message for every change of `node`, in the order of the changes.
// A further call for the same node and target replaces the flags, no flags end that watch.
// `node` may be null when `flags` is B_WATCH_MOUNT alone. The node must have been met by the kit in
// this process, as for every node_ref that the kits hand out (B_ENTRY_NOT_FOUND). The host tells no
// longer where a node goes that leaves the watched directories: that is B_ENTRY_REMOVED, and
// B_ENTRY_CREATED where one comes in. Any thread.
status_t watch_node(const node_ref* node, uint32 flags, BMessenger target);
status_t watch_node(const node_ref* node, uint32 flags, const BHandler* handler,
                    const BLooper* looper = nullptr);

// Ends every watch of the target, that of the volumes included.
status_t stop_watching(BMessenger target);
status_t stop_watching(const BHandler* handler, const BLooper* looper = nullptr);

#endif  // _NODE_MONITOR_H
