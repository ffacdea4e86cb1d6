// find_directory: the host's places for the system's and the user's files. Any thread.

#include <FindDirectory.h>

#include <errno.h>
#include <pwd.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <memory>
#include <string>

#include <Directory.h>
#include <Path.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"

using namespace storage;
using BPrivate::fail;

// What the path in a row starts from.
enum class Base { System, Home, Config, Data, Cache, State, Desktop };

struct DirectoryRow {
    int which;
    Base base;
    const char* below;
};

static const DirectoryRow kDirectories[] = {
    {B_DESKTOP_DIRECTORY, Base::Desktop, ""},
    {B_TRASH_DIRECTORY, Base::Data, "/Trash/files"},

    {B_SYSTEM_DIRECTORY, Base::System, "/usr"},
    {B_BEOS_SYSTEM_DIRECTORY, Base::System, "/usr"},
    {B_SYSTEM_ADDONS_DIRECTORY, Base::System, "/usr/lib"},
    {B_SYSTEM_BOOT_DIRECTORY, Base::System, "/boot"},
    {B_SYSTEM_FONTS_DIRECTORY, Base::System, "/usr/share/fonts"},
    {B_SYSTEM_LIB_DIRECTORY, Base::System, "/usr/lib"},
    {B_SYSTEM_SERVERS_DIRECTORY, Base::System, "/usr/sbin"},
    {B_SYSTEM_APPS_DIRECTORY, Base::System, "/usr/share/applications"},
    {B_SYSTEM_BIN_DIRECTORY, Base::System, "/usr/bin"},
    {B_BEOS_ETC_DIRECTORY, Base::System, "/etc"},
    {B_SYSTEM_DOCUMENTATION_DIRECTORY, Base::System, "/usr/share/doc"},
    {B_SYSTEM_PREFERENCES_DIRECTORY, Base::System, "/usr/share/applications"},
    {B_SYSTEM_SOUNDS_DIRECTORY, Base::System, "/usr/share/sounds"},
    {B_SYSTEM_DATA_DIRECTORY, Base::System, "/usr/share"},
    {B_SYSTEM_DEVELOP_DIRECTORY, Base::System, "/usr"},
    {B_SYSTEM_HEADERS_DIRECTORY, Base::System, "/usr/include"},
    {B_COMMON_DIRECTORY, Base::System, "/usr/local"},
    {B_COMMON_SYSTEM_DIRECTORY, Base::System, "/usr/local"},
    {B_COMMON_ADDONS_DIRECTORY, Base::System, "/usr/local/lib"},
    {B_COMMON_BOOT_DIRECTORY, Base::System, "/etc/xdg/autostart"},
    {B_COMMON_FONTS_DIRECTORY, Base::System, "/usr/local/share/fonts"},
    {B_COMMON_LIB_DIRECTORY, Base::System, "/usr/local/lib"},
    {B_COMMON_SERVERS_DIRECTORY, Base::System, "/usr/local/sbin"},
    {B_COMMON_BIN_DIRECTORY, Base::System, "/usr/local/bin"},
    {B_COMMON_DOCUMENTATION_DIRECTORY, Base::System, "/usr/local/share/doc"},
    {B_COMMON_DEVELOP_DIRECTORY, Base::System, "/usr/local"},
    {B_SYSTEM_ETC_DIRECTORY, Base::System, "/etc"},
    {B_SYSTEM_SETTINGS_DIRECTORY, Base::System, "/etc"},
    {B_SYSTEM_LOG_DIRECTORY, Base::System, "/var/log"},
    {B_SYSTEM_SPOOL_DIRECTORY, Base::System, "/var/spool"},
    {B_SYSTEM_TEMP_DIRECTORY, Base::System, "/tmp"},
    {B_SYSTEM_VAR_DIRECTORY, Base::System, "/var"},
    {B_SYSTEM_CACHE_DIRECTORY, Base::System, "/var/cache"},
    {B_SYSTEM_NONPACKAGED_DIRECTORY, Base::System, "/usr/local"},
    {B_SYSTEM_NONPACKAGED_ADDONS_DIRECTORY, Base::System, "/usr/local/lib"},
    {B_SYSTEM_NONPACKAGED_BIN_DIRECTORY, Base::System, "/usr/local/bin"},
    {B_SYSTEM_NONPACKAGED_DATA_DIRECTORY, Base::System, "/usr/local/share"},
    {B_SYSTEM_NONPACKAGED_FONTS_DIRECTORY, Base::System, "/usr/local/share/fonts"},
    {B_SYSTEM_NONPACKAGED_SOUNDS_DIRECTORY, Base::System, "/usr/local/share/sounds"},
    {B_SYSTEM_NONPACKAGED_DOCUMENTATION_DIRECTORY, Base::System, "/usr/local/share/doc"},
    {B_SYSTEM_NONPACKAGED_LIB_DIRECTORY, Base::System, "/usr/local/lib"},
    {B_SYSTEM_NONPACKAGED_HEADERS_DIRECTORY, Base::System, "/usr/local/include"},
    {B_SYSTEM_NONPACKAGED_DEVELOP_DIRECTORY, Base::System, "/usr/local"},
    {B_APPS_DIRECTORY, Base::System, "/usr/share/applications"},
    {B_PREFERENCES_DIRECTORY, Base::System, "/usr/share/applications"},
    {B_UTILITIES_DIRECTORY, Base::System, "/usr/bin"},

    {B_USER_DIRECTORY, Base::Home, ""},
    {B_USER_CONFIG_DIRECTORY, Base::Config, ""},
    {B_USER_SETTINGS_DIRECTORY, Base::Config, ""},
    {B_USER_ETC_DIRECTORY, Base::Config, ""},
    {B_USER_ADDONS_DIRECTORY, Base::Home, "/.local/lib"},
    {B_USER_BOOT_DIRECTORY, Base::Config, "/autostart"},
    {B_USER_FONTS_DIRECTORY, Base::Data, "/fonts"},
    {B_USER_LIB_DIRECTORY, Base::Home, "/.local/lib"},
    {B_USER_SOUNDS_DIRECTORY, Base::Data, "/sounds"},
    {B_USER_DATA_DIRECTORY, Base::Data, ""},
    {B_USER_CACHE_DIRECTORY, Base::Cache, ""},
    {B_USER_HEADERS_DIRECTORY, Base::Home, "/.local/include"},
    {B_USER_DEVELOP_DIRECTORY, Base::Home, "/.local"},
    {B_USER_DOCUMENTATION_DIRECTORY, Base::Data, "/doc"},
    {B_USER_APPS_DIRECTORY, Base::Data, "/applications"},
    {B_USER_PREFERENCES_DIRECTORY, Base::Data, "/applications"},
    {B_USER_BIN_DIRECTORY, Base::Home, "/.local/bin"},
    {B_USER_NONPACKAGED_DIRECTORY, Base::Home, "/.local"},
    {B_USER_NONPACKAGED_BIN_DIRECTORY, Base::Home, "/.local/bin"},
    {B_USER_NONPACKAGED_DATA_DIRECTORY, Base::Data, ""},
    {B_USER_NONPACKAGED_FONTS_DIRECTORY, Base::Data, "/fonts"},
    {B_USER_NONPACKAGED_LIB_DIRECTORY, Base::Home, "/.local/lib"},
    {B_USER_LOG_DIRECTORY, Base::State, ""},
    {B_USER_VAR_DIRECTORY, Base::State, ""},
    {B_USER_SPOOL_DIRECTORY, Base::State, "/spool"},
};

static std::string home()
{
    const char* set = getenv("HOME");
    if (set != nullptr && set[0] == '/')
        return set;
    struct passwd entry;
    struct passwd* found = nullptr;
    char text[4096];
    getpwuid_r(getuid(), &entry, text, sizeof(text), &found);
    return found == nullptr ? "/" : found->pw_dir;
}

// Only an absolute path counts, as the desktops have it.
static std::string base_or(const char* variable, const char* below_home)
{
    const char* set = getenv(variable);
    return set != nullptr && set[0] == '/' ? set : home() + below_home;
}

// The user's own choice: a line XDG_DESKTOP_DIR="$HOME/..." or ="/...".
static std::string desktop()
{
    const std::string list = base_or("XDG_CONFIG_HOME", "/.config") + "/user-dirs.dirs";
    std::unique_ptr<FILE, decltype(&fclose)> file(fopen(list.c_str(), "re"), &fclose);
    char line[4096];
    while (file != nullptr && fgets(line, sizeof(line), file.get()) != nullptr) {
        char value[4096];
        if (sscanf(line, " XDG_DESKTOP_DIR = \"%4095[^\"\n]\"", value) != 1)
            continue;
        if (strncmp(value, "$HOME", 5) == 0)
            return home() + (value + 5);
        if (value[0] == '/')
            return value;
    }
    return home() + "/Desktop";
}

static std::string path_of_base(Base base)
{
    switch (base) {
        case Base::System:
            return "";
        case Base::Home:
            return home();
        case Base::Config:
            return base_or("XDG_CONFIG_HOME", "/.config");
        case Base::Data:
            return base_or("XDG_DATA_HOME", "/.local/share");
        case Base::Cache:
            return base_or("XDG_CACHE_HOME", "/.cache");
        case Base::State:
            return base_or("XDG_STATE_HOME", "/.local/state");
        case Base::Desktop:
            return desktop();
    }
    return "";
}

static status_t find(int which, bool create, std::string* path)
{
    for (const DirectoryRow& row : kDirectories) {
        if (row.which != which)
            continue;
        *path = path_of_base(row.base) + row.below;
        while (path->size() > 1 && path->back() == '/')
            path->pop_back();
        return create ? create_directory(path->c_str(), 0755) : B_OK;
    }
    return fail(EINVAL);
}

status_t find_directory(directory_which which, BPath* path, bool createIt, BVolume*)
{
    if (path == nullptr)
        return fail(EINVAL);
    std::string found;
    status_t status = find(which, createIt, &found);
    return status == B_OK ? path->SetTo(found.c_str()) : status;
}

extern "C" status_t find_directory(directory_which which, dev_t, bool createIt, char* pathString,
                                   int32 length)
{
    if (pathString == nullptr || length <= 0)
        return fail(EINVAL);
    std::string found;
    status_t status = find(which, createIt, &found);
    if (status != B_OK)
        return status;
    if (found.size() >= static_cast<size_t>(length))
        return fail(EOVERFLOW);
    strcpy(pathString, found.c_str());
    return B_OK;
}
