#ifndef STORAGE_MIME_NOTES_H
#define STORAGE_MIME_NOTES_H

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// What programs set for types, as far as the desktop has no place for it or not the same one:
// the key file "beos/types.ini" in the user's data folder, a group for each type. What other
// programs of ours change is seen with the next Get(). Types are found without case.
class MimeNotes {
public:
    // The notes as they are now; they stay as they are. Any thread.
    static std::shared_ptr<const MimeNotes> Get();
    // Set a value, or remove it. `type` names the group if it is new. With the TypesLock.
    static status_t Set(const std::string& type, const std::string& key,
                        const std::optional<std::string>& value);
    static status_t Remove(const std::string& type);

    bool Contains(std::string_view type) const;
    std::optional<std::string> Find(std::string_view type, const std::string& key) const;
    std::vector<std::string> Types() const;
    // All values of a type by their keys.
    std::map<std::string, std::string> Values(std::string_view type) const;

private:
    friend struct NotesFile;

    struct Group {
        std::string type;
        std::map<std::string, std::string> values;
    };
    std::map<std::string, Group, std::less<>> fGroups;  // by lower case
};

// Bytes as text, for a value.
std::string encode_bytes(const void* bytes, size_t size);
std::string decode_bytes(const std::string& text);

}  // namespace storage

#endif  // STORAGE_MIME_NOTES_H
