// Texts that live as long as a thread. Any thread.

#include "runtime/thread_text.h"

#include <OS.h>

#include <new>
#include <utility>

static void forget(void* place)
{
    delete std::exchange(*static_cast<std::string**>(place), nullptr);
}

std::string* thread_text(std::string** place)
{
    if (*place == nullptr) {
        auto* text = new (std::nothrow) std::string;
        if (text == nullptr || on_exit_thread(forget, place) != B_OK) {
            delete text;
            return nullptr;
        }
        *place = text;
    }
    return *place;
}
