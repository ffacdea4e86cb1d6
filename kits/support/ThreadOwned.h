#ifndef SUPPORT_THREAD_OWNED_H
#define SUPPORT_THREAD_OWNED_H

// Objects on the heap that go with their thread: what a library keeps in thread-local places must
// stay small, or it can not be loaded at run time, and one with a destructor ends the process where
// there is no memory to note it.

#include <OS.h>

#include <new>
#include <utility>

namespace BPrivate {

// The calling thread's object at `place`, which is thread-local and null at first; null if there is
// no memory for it.
template <class Object>
Object* thread_owned(Object** place)
{
    if (*place != nullptr)
        return *place;
    auto* object = new (std::nothrow) Object;
    const auto forget = [](void* owner) {
        delete std::exchange(*static_cast<Object**>(owner), nullptr);
    };
    if (object != nullptr && on_exit_thread(forget, place) != B_OK)
        delete std::exchange(object, nullptr);
    return *place = object;
}

}  // namespace BPrivate

#endif  // SUPPORT_THREAD_OWNED_H
