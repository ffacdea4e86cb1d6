// watch_node and stop_watching. Any thread.

#include <NodeMonitor.h>

#include <errno.h>

#include <Node.h>

#include "storage/watch/ChangeWatcher.h"
#include "support/HostErrors.h"

using namespace storage;
using BPrivate::fail;

status_t watch_node(const node_ref* node, uint32 flags, BMessenger target)
{
    const uint32 node_flags = flags & ~static_cast<uint32>(B_WATCH_MOUNT);
    const bool has_mount = (flags & B_WATCH_MOUNT) != 0;
    if (node == nullptr && (node_flags != 0 || !has_mount))
        return fail(EINVAL);
    if (flags != B_STOP_WATCHING && !target.IsValid())
        return fail(EINVAL);
    if (node != nullptr && (node_flags != 0 || !has_mount)) {
        status_t status = ChangeWatcher::Get().Watch(*node, node_flags, target);
        if (status != B_OK)
            return status;
    }
    return has_mount ? ChangeWatcher::Get().WatchVolumes(target) : B_OK;
}

status_t watch_node(const node_ref* node, uint32 flags, const BHandler* handler,
                    const BLooper* looper)
{
    return watch_node(node, flags, BMessenger(handler, looper));
}

status_t stop_watching(BMessenger target)
{
    ChangeWatcher::Get().Stop(target);
    return B_OK;
}

status_t stop_watching(const BHandler* handler, const BLooper* looper)
{
    return stop_watching(BMessenger(handler, looper));
}
