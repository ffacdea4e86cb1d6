#ifndef SERVER_STAGE_LOCK_H
#define SERVER_STAGE_LOCK_H

// The lock of the stage and of what stands on it: windows, their order, and where input goes.

#include "support/Mutex.h"

namespace server {

inline constinit BPrivate::Mutex gStageLock;

// Holds the stage.
class [[nodiscard]] THREAD_SAFETY(scoped_lockable) StageLock {
public:
    StageLock() THREAD_SAFETY(acquire_capability(gStageLock)) { gStageLock.lock(); }
    ~StageLock() THREAD_SAFETY(release_capability()) { gStageLock.unlock(); }
    StageLock(const StageLock&) = delete;
    StageLock& operator=(const StageLock&) = delete;
};

}  // namespace server

#endif  // SERVER_STAGE_LOCK_H
