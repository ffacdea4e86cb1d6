#ifndef STORAGE_FILE_REPLACEMENT_H
#define STORAGE_FILE_REPLACEMENT_H

#include <functional>
#include <optional>
#include <string>

#include <SupportDefs.h>

#include "storage/desktop/FileLock.h"

namespace [[gnu::visibility("hidden")]] storage {

// Held by whoever changes files of the user's, in this process or another of ours. One that
// holds it too long is passed over: files are replaced whole, so that little can go wrong.
// errno stays.
class UsersLock {
public:
    explicit UsersLock(const char* name);

private:
    std::optional<FileLock> fLock;
};

// For types and choices.
struct TypesLock : UsersLock {
    TypesLock() : UsersLock("types.lock") {}
};

// For the list of recent files, which need not wait for a new type.
struct RecentLock : UsersLock {
    RecentLock() : UsersLock("recent.lock") {}
};

// The folder of the kits' own files below the user's data folder.
std::string own_data_folder();

// Puts a file with these bytes in the place of `path`, at once and whole; missing folders are
// made. Failures leave the host's number in errno.
status_t replace_file(const std::string& path, const std::string& bytes);

// Replaces a text by what `edit` makes of it; a missing file is an empty text. Other programs
// that replace the file at the same time lose nothing: if one comes between reading and
// replacing, its text is edited before anybody can read ours, or, where the host does not hold
// readers back, comes back at once and is edited in turn. A link is followed, the file's
// permissions stay.
status_t edit_file(const std::string& path,
                   const std::function<std::string(const std::string& text)>& edit);

}  // namespace storage

#endif  // STORAGE_FILE_REPLACEMENT_H
