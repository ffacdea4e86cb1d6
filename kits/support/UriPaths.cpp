// Paths as texts that any file can hold. Any thread.

#include "support/UriPaths.h"

#include <glib.h>

namespace storage {

static std::string take(char* text)
{
    std::string copy = text != nullptr ? text : "";
    g_free(text);
    return copy;
}

std::string uri_of_path(const std::string& path)
{
    return take(g_filename_to_uri(path.c_str(), nullptr, nullptr));
}

std::string path_of_uri(const std::string& uri)
{
    return take(g_filename_from_uri(uri.c_str(), nullptr, nullptr));
}

}  // namespace storage
