#ifndef SUPPORT_URI_PATHS_H
#define SUPPORT_URI_PATHS_H

#include <string>

namespace [[gnu::visibility("hidden")]] BPrivate {

// "file:" URIs; empty for what can not be one, or is none of this machine.
std::string uri_of_path(const std::string& path);
std::string path_of_uri(const std::string& uri);

}  // namespace BPrivate

#endif  // SUPPORT_URI_PATHS_H
