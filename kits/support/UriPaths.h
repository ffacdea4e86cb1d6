#ifndef STORAGE_URI_PATHS_H
#define STORAGE_URI_PATHS_H

#include <string>

namespace [[gnu::visibility("hidden")]] storage {

// "file:" URIs; empty for what can not be one, or is none of this machine.
std::string uri_of_path(const std::string& path);
std::string path_of_uri(const std::string& uri);

}  // namespace storage

#endif  // STORAGE_URI_PATHS_H
