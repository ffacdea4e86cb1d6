// BVolumeRoster: walks the mounted volumes, and has changes of them sent.

#include <VolumeRoster.h>

#include <errno.h>
#include <sys/stat.h>

#include <Node.h>
#include <NodeMonitor.h>
#include <Volume.h>
#include <fs_info.h>

#include "support/HostErrors.h"

using BPrivate::fail;
using BPrivate::host_failure;

BVolumeRoster::BVolumeRoster() : fNext(0) {}

BVolumeRoster::~BVolumeRoster() { StopWatching(); }

status_t BVolumeRoster::GetNextVolume(BVolume* volume)
{
    if (volume == nullptr)
        return fail(EINVAL);
    status_t status;
    do {
        const dev_t device = next_dev(&fNext);
        if (static_cast<int64>(device) < 0)
            return static_cast<status_t>(device);
        status = volume->SetTo(device);
    } while (status != B_OK);  // unmounted meanwhile
    return B_OK;
}

void BVolumeRoster::Rewind() { fNext = 0; }

status_t BVolumeRoster::GetBootVolume(BVolume* volume)
{
    if (volume == nullptr)
        return fail(EINVAL);
    struct stat info;
    return stat("/", &info) == 0 ? volume->SetTo(info.st_dev) : host_failure();
}

status_t BVolumeRoster::StartWatching(BMessenger messenger)
{
    StopWatching();
    status_t status = watch_node(nullptr, B_WATCH_MOUNT, messenger);
    if (status == B_OK)
        fTarget = messenger;
    return status;
}

void BVolumeRoster::StopWatching()
{
    if (fTarget == BMessenger())
        return;
    stop_watching(fTarget);
    fTarget = BMessenger();
}

BMessenger BVolumeRoster::Messenger() const { return fTarget; }
