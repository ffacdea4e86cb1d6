#ifndef STORAGE_MIME_PACKAGES_H
#define STORAGE_MIME_PACKAGES_H

#include <optional>
#include <string>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// What our package for one type tells the desktop.
struct MimePackage {
    std::string type;
    std::string description;
    std::optional<std::vector<std::string>> extensions;  // in place of what others tell
    std::string rule;
    std::string icon;  // a name in the icon theme
};

// True if the desktop's database can hold a type of that name.
bool can_be_packaged(const std::string& type);
bool is_extension(const std::string& extension);

// Writes our package for the type into the user's part of the database and updates that. With
// the TypesLock; failures leave the host's number in errno and everything as it was.
status_t write_package(const MimePackage& package);
// Removes it. The type may still be there, if others tell it.
status_t remove_package(const std::string& type);
// Removes the packages of other programs in the user's part that tell no other type. False if
// there are none.
bool remove_others_packages(const std::string& type);

}  // namespace storage

#endif  // STORAGE_MIME_PACKAGES_H
