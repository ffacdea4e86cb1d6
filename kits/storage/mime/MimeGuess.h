#ifndef STORAGE_MIME_GUESS_H
#define STORAGE_MIME_GUESS_H

#include <stddef.h>

#include <string>

namespace [[gnu::visibility("hidden")]] storage {

// What type the desktop takes a file for, by its kind, name and content. `path` may be the
// host's name of a descriptor, `name` is the file's own. Any thread.
std::string guess_type_of_file(const std::string& path, const std::string& name);
std::string guess_type_of_name(const std::string& name);
std::string guess_type_of_bytes(const void* bytes, size_t size);

}  // namespace storage

#endif  // STORAGE_MIME_GUESS_H
