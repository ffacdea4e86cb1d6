// The desktop's bell, and the events that it is rung for. Any thread.

#include <Beep.h>

#include <mutex>
#include <set>
#include <string>

#include "server/screen/Bell.h"

static std::mutex sLock;

// The platform's own, and those of programs; sLock. Never destroyed: beeps may be the last to be
// heard of a program.
static std::set<std::string>& events()
{
    static auto* sEvents = new std::set<std::string>{
        "Beep",        "Startup",         "Key Down",         "Key Repeat",   "Key Up",
        "Mouse Down",  "Mouse Up",        "Window Activated", "Window Close", "Window Minimized",
        "Window Open", "Window Restored", "Window Zoomed",    "New E-mail",
    };
    return *sEvents;
}

status_t beep() { return server::RingBell() ? B_OK : B_ERROR; }

status_t system_beep(const char* eventName)
{
    if (eventName == nullptr || eventName[0] == '\0')
        return B_BAD_VALUE;
    {
        std::lock_guard<std::mutex> hold(sLock);
        if (events().count(eventName) == 0)
            return B_NAME_NOT_FOUND;
    }
    return beep();
}

status_t add_system_beep_event(const char* eventName, uint32)
{
    if (eventName == nullptr || eventName[0] == '\0')
        return B_BAD_VALUE;
    std::lock_guard<std::mutex> hold(sLock);
    events().insert(eventName);
    return B_OK;
}
