#ifndef APP_OBSERVER_LIST_H
#define APP_OBSERVER_LIST_H

// Who watches a handler. Has a lock of its own: observers come from any thread.

#include <Messenger.h>

#include <vector>

#include "support/Mutex.h"

class BMessage;

namespace BPrivate {

class ObserverList {
public:
    // An observer is a messenger, or the token of a handler, which may have no looper yet.
    struct Observer {
        uint32 what;  // or B_OBSERVER_OBSERVE_ALL
        BMessenger messenger;
        int32 handler;
        bool operator==(const Observer& other) const;
    };

    status_t Add(const Observer& observer);
    status_t Remove(const Observer& observer);
    void Notify(uint32 what, const BMessage& notice);
    bool IsEmpty() const;

private:
    mutable BPrivate::Mutex fLock;
    std::vector<Observer> fObservers GUARDED_BY(fLock);
};

}  // namespace BPrivate

#endif  // APP_OBSERVER_LIST_H
