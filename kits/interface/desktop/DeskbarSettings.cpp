// The file that keeps the Deskbar's settings. What others wrote into it stays.

#include "interface/desktop/DeskbarSettings.h"

#include <errno.h>
#include <fcntl.h>
#include <glib.h>

#include <iterator>
#include <memory>

#include <Directory.h>
#include <FindDirectory.h>
#include <Path.h>

#include "interface/desktop/DeskbarPatience.h"
#include "storage/desktop/FileLock.h"
#include "support/HostErrors.h"
#include "support/Held.h"

namespace BPrivate {

static const char* const kGroup = "Deskbar";

// By deskbar_location.
static const char* const kLocations[] = {
    "top", "bottom", "left-top", "right-top", "left-bottom", "right-bottom",
};
static_assert(std::size(kLocations) == B_DESKBAR_RIGHT_BOTTOM + 1, "one row per location");

struct FlagRow {
    const char* key;
    bool DeskbarSettings::*flag;
};

static const FlagRow kFlags[] = {
    {"expanded", &DeskbarSettings::expanded},
    {"always-on-top", &DeskbarSettings::always_on_top},
    {"auto-raise", &DeskbarSettings::auto_raise},
    {"auto-hide", &DeskbarSettings::auto_hide},
};

static BPath settings_folder()
{
    BPath path;
    if (find_directory(B_USER_SETTINGS_DIRECTORY, &path) == B_OK)
        path.Append("beos");
    return path;
}

static std::string settings_path(const BPath& folder)
{
    return std::string(folder.Path()) + "/deskbar";
}

// An unreadable file counts as empty.
static Held<GKeyFile> load(const BPath& folder)
{
    Held<GKeyFile> file(g_key_file_new());
    const auto flags = GKeyFileFlags(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    if (folder.Path() == nullptr ||
        !g_key_file_load_from_file(file.get(), settings_path(folder).c_str(), flags, nullptr))
        file.reset(g_key_file_new());
    return file;
}

static std::string get_text(GKeyFile* file, const char* key)
{
    return take_text(g_key_file_get_string(file, kGroup, key, nullptr));
}

static DeskbarSettings read_from(GKeyFile* file)
{
    DeskbarSettings settings;
    const std::string location = get_text(file, "location");
    for (size_t i = 0; i < std::size(kLocations); i++) {
        if (location == kLocations[i])
            settings.location = static_cast<deskbar_location>(i);
    }
    for (const FlagRow& row : kFlags) {
        GError* error = nullptr;
        const bool value = g_key_file_get_boolean(file, kGroup, row.key, &error);
        const Held<GError> failure(error);
        if (failure == nullptr)
            settings.*row.flag = value;
    }
    settings.panel = get_text(file, "panel");
    return settings;
}

static void write_to(GKeyFile* file, const DeskbarSettings& settings)
{
    g_key_file_set_string(file, kGroup, "location", kLocations[settings.location]);
    for (const FlagRow& row : kFlags)
        g_key_file_set_boolean(file, kGroup, row.key, settings.*row.flag);
    g_key_file_set_string(file, kGroup, "panel", settings.panel.c_str());
}

DeskbarSettings read_deskbar_settings() { return read_from(load(settings_folder()).get()); }

status_t change_deskbar_settings(const std::function<void(DeskbarSettings&)>& change)
{
    const BPath folder = settings_folder();
    if (folder.Path() == nullptr)
        return BPrivate::fail(ENOENT);
    status_t status = create_directory(folder.Path(), 0700);
    if (status != B_OK)
        return status;
    // All programs that change the settings hold the folder meanwhile.
    const storage::FileLock lock(folder.Path(), O_RDONLY | O_DIRECTORY,
                                 deskbar_patience().settings);
    if (lock.Status() != B_OK)
        return lock.Status();
    const Held<GKeyFile> file = load(folder);
    DeskbarSettings settings = read_from(file.get());
    change(settings);
    write_to(file.get(), settings);
    // Replaces the file in one step, so that a reader sees the former or the new one.
    errno = 0;
    if (!g_key_file_save_to_file(file.get(), settings_path(folder).c_str(), nullptr))
        return errno != 0 ? BPrivate::host_failure() : B_ERROR;
    return B_OK;
}

}  // namespace BPrivate
