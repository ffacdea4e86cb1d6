#ifndef STORAGE_APPLICATION_ENTRY_H
#define STORAGE_APPLICATION_ENTRY_H

#include <string>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// An application of BeOS's kind, as the desktop is to know it.
struct ApplicationEntry {
    std::string signature;
    std::string executable;
    std::vector<std::string> types;
    bool in_menus = true;
};

// Writes the desktop entry "beos-<signature>.desktop" of the user's own. Failures leave the
// host's number in errno. Any thread.
status_t write_application_entry(const ApplicationEntry& entry);

}  // namespace storage

#endif  // STORAGE_APPLICATION_ENTRY_H
