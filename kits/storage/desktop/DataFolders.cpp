// The desktop's base directories. Any thread.

#include "storage/desktop/DataFolders.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <memory>

#include <glib.h>

namespace storage {

static std::vector<std::string> folders(const char* user, const char* const* system)
{
    std::vector<std::string> list = {user};
    for (; *system != nullptr; system++)
        list.push_back(*system);
    for (std::string& folder : list) {
        while (folder.size() > 1 && folder.back() == '/')
            folder.pop_back();
    }
    return list;
}

std::vector<std::string> data_folders()
{
    return folders(g_get_user_data_dir(), g_get_system_data_dirs());
}

std::vector<std::string> config_folders()
{
    return folders(g_get_user_config_dir(), g_get_system_config_dirs());
}

std::vector<std::string> desktop_names()
{
    const char* names = getenv("XDG_CURRENT_DESKTOP");
    return split_text(lower_case(names != nullptr ? names : ""), ':');
}

std::vector<std::string> split_text(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (!text.empty()) {
        const size_t end = std::min(text.find(separator), text.size());
        if (end > 0)
            parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string lower_case(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower)
        c = g_ascii_tolower(c);
    return lower;
}

std::string read_text_file(const std::string& path)
{
    const int before = errno;
    std::string text;
    std::unique_ptr<FILE, decltype(&fclose)> file(fopen(path.c_str(), "re"), &fclose);
    char block[8192];
    size_t size;
    while (file != nullptr && (size = fread(block, 1, sizeof(block), file.get())) > 0)
        text.append(block, size);
    errno = before;
    return text;
}

}  // namespace storage
