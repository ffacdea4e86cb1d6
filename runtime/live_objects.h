#ifndef RUNTIME_LIVE_OBJECTS_H
#define RUNTIME_LIVE_OBJECTS_H

// Which objects are still there. Messages name objects by their address ("it", "fi"; "gd" is a
// record of the registry): one may outlive its object, or come from who made the address up. Such a
// pointer is looked up here before it is followed:
//
//     if (auto* item = live_pointer<MyMenuItem>(message, "it"))
//         ...
//
// An object is entered as what the message calls it (its address as that type), by a member
//
//     const Live<MyMenuItem> fLive{this};
//
// of its class, the last one.
//
// That an object was there when it was looked up does not keep it: it is deleted, too, only with
// the lock held under which it was looked up, most often that of the window that the message came
// to.

#include <Message.h>

#include <unordered_set>

#include "runtime/lasting_locker.h"

// Addresses of objects of one type. Any thread; its lock is the innermost.
class LiveSet {
public:
    // Where memory runs out the object is not known, and its messages do nothing.
    void Add(const void* object);
    void Remove(const void* object);
    bool Has(const void* object);

private:
    LastingLocker fLock{"live objects"};
    std::unordered_set<const void*> fObjects GUARDED_BY(fLock);
};

// The set of a type. It is never deleted: objects may outlive the end of main.
template <class Object>
LiveSet& live_set()
{
    static auto* const set = new LiveSet;
    return *set;
}

// Keeps an object in the set of its type.
template <class Object>
class Live {
public:
    explicit Live(const Object* object) : fObject(object) { live_set<Object>().Add(object); }
    ~Live() { live_set<Object>().Remove(fObject); }
    Live(const Live&) = delete;
    Live& operator=(const Live&) = delete;

private:
    const Object* const fObject;
};

// The object that a field of a message points to; null if there is no such field, or it points to
// none that is there.
template <class Object>
Object* live_pointer(const BMessage& message, const char* field)
{
    void* pointer = nullptr;
    if (message.FindPointer(field, &pointer) != B_OK || !live_set<Object>().Has(pointer))
        return nullptr;
    return static_cast<Object*>(pointer);
}

#endif  // RUNTIME_LIVE_OBJECTS_H
