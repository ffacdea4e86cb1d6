// Observers of a handler. A notice is sent without the list's lock.

#include "app/looper/ObserverList.h"

#include <Handler.h>
#include <Message.h>

#include <algorithm>

#include "app/message/MessageAccess.h"
#include "app/looper/MessengerAccess.h"
#include "app/looper/Tokens.h"
#include "support/Mutex.h"

namespace BPrivate {

bool ObserverList::Observer::operator==(const Observer& other) const
{
    return what == other.what && handler == other.handler && messenger == other.messenger;
}

status_t ObserverList::Add(const Observer& observer)
{
    BPrivate::MutexLock guard(fLock);
    if (std::find(fObservers.begin(), fObservers.end(), observer) == fObservers.end())
        fObservers.push_back(observer);
    return B_OK;
}

status_t ObserverList::Remove(const Observer& observer)
{
    BPrivate::MutexLock guard(fLock);
    auto found = std::find(fObservers.begin(), fObservers.end(), observer);
    if (found == fObservers.end())
        return B_BAD_HANDLER;
    fObservers.erase(found);
    return B_OK;
}

void ObserverList::Notify(uint32 what, const BMessage& notice)
{
    std::vector<Observer> observers;
    {
        BPrivate::MutexLock guard(fLock);
        observers = fObservers;
    }
    BMessage copy(notice);
    for (const Observer& observer : observers) {
        if (observer.what != what && observer.what != B_OBSERVER_OBSERVE_ALL)
            continue;
        const bool is_handler = observer.handler != kNoToken;
        const BMessenger messenger =
            is_handler ? MessengerAccess::ForHandler(observer.handler) : observer.messenger;
        if (messenger.SendMessage(&copy) == B_OK)
            continue;
        if (!is_handler || !Tokens::IsHandler(observer.handler))
            Remove(observer);
    }
}

bool ObserverList::IsEmpty() const
{
    BPrivate::MutexLock guard(fLock);
    return fObservers.empty();
}

}  // namespace BPrivate
