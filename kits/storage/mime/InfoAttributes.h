#ifndef STORAGE_INFO_ATTRIBUTES_H
#define STORAGE_INFO_ATTRIBUTES_H

#include <optional>
#include <string>

#include <Mime.h>
#include <SupportDefs.h>

class BBitmap;
class BNode;

namespace [[gnu::visibility("hidden")]] storage {

// Attributes in which files and executables tell about themselves, by their names on the
// platform.
namespace info {
inline const char* const kType = "BEOS:TYPE";
inline const char* const kPreferredApp = "BEOS:PREF_APP";
inline const char* const kAppHint = "BEOS:PPATH";
inline const char* const kVectorIcon = "BEOS:ICON";
inline const char* const kSignature = "BEOS:APP_SIG";
inline const char* const kAppFlags = "BEOS:APP_FLAGS";
inline const char* const kSupportedTypes = "BEOS:FILE_TYPES";
inline const char* const kVersion = "BEOS:APP_VERSION";
inline const char* const kCatalogEntry = "SYS:NAME";
}  // namespace info

// "BEOS:L:STD_ICON" or "BEOS:M:STD_ICON"; with a type "BEOS:L:text/plain".
std::string icon_attribute(icon_size which, const char* type = nullptr);

// The whole value; none if there is no such attribute.
std::optional<std::string> read_info(const BNode& node, const char* name);
status_t write_info(BNode& node, const char* name, type_code type, const std::string& value);
// It is no failure if there is none.
status_t remove_info(BNode& node, const char* name);

// Text up to its terminator, for a buffer of `size` bytes: B_BAD_DATA if it is longer,
// B_ENTRY_NOT_FOUND if there is none.
status_t read_info_text(const BNode& node, const char* name, char* text, size_t size);
// Null or empty text removes the attribute.
status_t write_info_text(BNode& node, const char* name, const char* text);

// Icons in 256 colours.
status_t read_info_icon(const BNode& node, const std::string& name, BBitmap* icon, icon_size which);
status_t write_info_icon(BNode& node, const std::string& name, const BBitmap* icon,
                         icon_size which);
// Into memory of the caller's.
status_t read_info_bytes(const BNode& node, const std::string& name, uint8** data, size_t* size);
status_t write_info_bytes(BNode& node, const std::string& name, const uint8* data, size_t size);

// The path of a node; empty if the host does not tell.
std::string path_of_node(const BNode& node);

}  // namespace storage

#endif  // STORAGE_INFO_ATTRIBUTES_H
