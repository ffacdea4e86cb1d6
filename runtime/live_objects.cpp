// Sets of objects that messages name by their address. Any thread.

#include "runtime/live_objects.h"

#include <Autolock.h>

#include <new>

void LiveSet::Add(const void* object)
{
    BAutolock lock(fLock);
    try {
        fObjects.insert(object);
    } catch (const std::bad_alloc&) {
    }
}

void LiveSet::Remove(const void* object)
{
    BAutolock lock(fLock);
    fObjects.erase(object);
}

bool LiveSet::Has(const void* object)
{
    BAutolock lock(fLock);
    return fObjects.count(object) > 0;
}
