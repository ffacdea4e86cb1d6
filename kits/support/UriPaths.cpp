// Paths as texts that any file can hold. Any thread.

#include "support/UriPaths.h"

#include <glib.h>
#include "support/Held.h"

namespace BPrivate {

std::string uri_of_path(const std::string& path)
{
    return take_text(g_filename_to_uri(path.c_str(), nullptr, nullptr));
}

std::string path_of_uri(const std::string& uri)
{
    return take_text(g_filename_from_uri(uri.c_str(), nullptr, nullptr));
}

}  // namespace BPrivate
