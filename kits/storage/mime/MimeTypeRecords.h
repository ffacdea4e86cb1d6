#ifndef STORAGE_MIME_TYPE_RECORDS_H
#define STORAGE_MIME_TYPE_RECORDS_H

#include <optional>
#include <string>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// Keys of what is known of a type, in the notes.
namespace keys {
inline const char* const kInstalled = "Installed";
inline const char* const kShortDescription = "ShortDescription";
inline const char* const kLongDescription = "LongDescription";
inline const char* const kExtensions = "Extensions";
inline const char* const kSnifferRule = "SnifferRule";
inline const char* const kIcon = "Icon";             // a name in the icon theme
inline const char* const kMiniIconState = "Icon16";  // changes with the icon
inline const char* const kLargeIconState = "Icon32";
inline const char* const kVectorIcon = "VectorIcon";
inline const char* const kPreferredApp = "PreferredApp";  // one that the desktop does not know
inline const char* const kAppHint = "AppHint";            // a file URI
inline const char* const kAttrInfo = "AttrInfo";
inline const char* const kIconFor = "IconFor";  // followed by a size, a dash and the type
}  // namespace keys

// Any thread. Types are found without case and by their aliases.
bool is_installed(const std::string& type);
std::vector<std::string> installed_types();
std::optional<std::string> type_value(const std::string& type, const char* key);

// The key of an application's icon for a type, by its kind ("16", "32" or "Vector"); and back.
std::string icon_for_key(const std::string& kind, const std::string& type);
bool parse_icon_for_key(const std::string& key, std::string* kind, std::string* type);

// Install the type if it is not. Keys that the desktop's database has a place for go there,
// too. Failures leave the host's number in errno.
status_t set_type_value(const std::string& type, const std::string& key,
                        const std::optional<std::string>& value);
status_t install_type(const std::string& type);
status_t delete_type(const std::string& type);

// The list in a value of kExtensions.
std::vector<std::string> split_extensions(const std::string& value);

}  // namespace storage

#endif  // STORAGE_MIME_TYPE_RECORDS_H
