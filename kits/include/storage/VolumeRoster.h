#ifndef _VOLUME_ROSTER_H
#define _VOLUME_ROSTER_H

#include <Application.h>
#include <Messenger.h>
#include <SupportDefs.h>
#include <Volume.h>

// The mounted volumes: the file systems of block devices, each once, and the root's.
class BVolumeRoster {
public:
    BVolumeRoster();
    virtual ~BVolumeRoster();
    // B_BAD_VALUE after the last.
    status_t GetNextVolume(BVolume* volume);
    void Rewind();
    // The volume of the root directory.
    status_t GetBootVolume(BVolume* volume);
    // Sends B_NODE_MONITOR messages with B_DEVICE_MOUNTED and B_DEVICE_UNMOUNTED.
    status_t StartWatching(BMessenger messenger = be_app_messenger);
    void StopWatching();
    BMessenger Messenger() const;

private:
    BVolumeRoster(const BVolumeRoster&) = delete;
    BVolumeRoster& operator=(const BVolumeRoster&) = delete;

    int32 fNext;
    BMessenger fTarget;
};

#endif  // _VOLUME_ROSTER_H
