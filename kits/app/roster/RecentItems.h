#ifndef APP_RECENT_ITEMS_H
#define APP_RECENT_ITEMS_H

// The desktop's list of recently used files. Any thread.

#include <Entry.h>

#include <functional>
#include <string>
#include <vector>

#include "storage/desktop/DesktopEntries.h"

namespace [[gnu::visibility("hidden")]] BPrivate {

struct RecentItem {
    std::string path;
    std::string type;                       // MIME
    std::vector<std::string> applications;  // names of those that added it; ours: signatures
    bool is_application = false;            // it was launched
    bool is_folder = false;
    bool is_private = false;  // to those that added it
};

// Notes the file as used now. The desktop's other programs see it, but for applications.
void add_recent_file(const std::string& path, const std::string& type, const char* signature);
void add_recent_app(const std::string& executable, const storage::ApplicationRef& application);

// Newest first, those for which `is_wanted` holds and that still exist.
std::vector<RecentItem> recent_items(int32 count,
                                     const std::function<bool(const RecentItem&)>& is_wanted);

}  // namespace BPrivate

#endif  // APP_RECENT_ITEMS_H
