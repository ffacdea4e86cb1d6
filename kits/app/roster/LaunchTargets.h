#ifndef APP_LAUNCH_TARGETS_H
#define APP_LAUNCH_TARGETS_H

// What a signature, a type or a file stands for when it is to be launched. Any thread.

#include <Entry.h>
#include <SupportDefs.h>

#include <string>

#include "storage/desktop/DesktopEntries.h"

namespace [[gnu::visibility("hidden")]] BPrivate {

struct LaunchTarget {
    storage::ApplicationRef application;  // null for a program without desktop entry
    std::string executable;               // absolute
    std::string document;                 // that the application is to open; may be empty
    bool as_told = false;                 // run as the entry tells, not by its path alone
};

// The errors are those of BRoster::FindApp().
status_t find_target(const char* type, LaunchTarget* target);
status_t find_target(const entry_ref* ref, LaunchTarget* target);

// The MIME type of the file, as it says itself or as the desktop guesses from name and content.
std::string type_of_file(const std::string& path);

}  // namespace BPrivate

#endif  // APP_LAUNCH_TARGETS_H
