#ifndef STORAGE_MIME_APPLICATIONS_H
#define STORAGE_MIME_APPLICATIONS_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <SupportDefs.h>

#include "storage/desktop/DesktopEntries.h"

namespace [[gnu::visibility("hidden")]] storage {

// The user's own choice for a type; null if there is none.
ApplicationRef chosen_application(std::string_view type);
// What the user's list says of every type: ids by lower-case type.
std::map<std::string, std::vector<std::string>> users_choices();

// Makes an application the user's choice for a type, null takes the choice back. Failures leave
// the host's number in errno. Any thread that holds the TypesLock.
status_t choose_application(std::string_view type, const ApplicationRef& application);

}  // namespace storage

#endif  // STORAGE_MIME_APPLICATIONS_H
