// Sets of objects that messages name by their address. Any thread.

#include "runtime/live_objects.h"

#include <new>

void LiveSet::Add(const void* object)
{
    Autolock lock(fLock);
    try {
        fObjects.insert(object);
    } catch (const std::bad_alloc&) {
    }
}

void LiveSet::Remove(const void* object)
{
    Autolock lock(fLock);
    fObjects.erase(object);
}

bool LiveSet::Has(const void* object)
{
    Autolock lock(fLock);
    return fObjects.count(object) > 0;
}
