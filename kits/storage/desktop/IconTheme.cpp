// Icon themes: which one the user chose, and where its files are. Any thread.

#include "storage/desktop/IconTheme.h"

#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include <gio/gio.h>

#include "storage/desktop/DataFolders.h"
#include "support/Held.h"

namespace storage {

using BPrivate::Held;
using BPrivate::HeldObject;
using BPrivate::take_text;

static const size_t kMaxDepth = 16;  // of themes that inherit
static const char* const kFallbacks[] = {"Adwaita", "breeze", "hicolor"};
static const char* const kGroup = "Icon Theme";
static const char* const kEndings[] = {".png", ".svg", ".xpm"};

// ---- The user's choice

static std::string read_key(const std::string& path, const char* group, const char* key)
{
    const Held<GKeyFile> file(g_key_file_new());
    if (!g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr))
        return "";
    return take_text(g_key_file_get_string(file.get(), group, key, nullptr));
}

// <property name="IconThemeName" type="string" value="..."/>
static std::string xfce_theme(const std::string& config)
{
    const std::string text =
        read_text_file(config + "/xfce4/xfconf/xfce-perchannel-xml/xsettings.xml");
    size_t at = text.find("\"IconThemeName\"");
    at = at != std::string::npos ? text.find("value=\"", at) : at;
    const size_t end = at != std::string::npos ? text.find('"', at + 7) : at;
    return end != std::string::npos ? text.substr(at + 7, end - at - 7) : "";
}

static std::string gnome_theme(const char* schema)
{
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    const Held<GSettingsSchema> found(
        source != nullptr ? g_settings_schema_source_lookup(source, schema, true) : nullptr);
    if (found == nullptr || !g_settings_schema_has_key(found.get(), "icon-theme"))
        return "";
    const HeldObject<GSettings> settings(g_settings_new_full(found.get(), nullptr, nullptr));
    return take_text(g_settings_get_string(settings.get(), "icon-theme"));
}

std::string users_icon_theme()
{
    const std::string config = config_folders().front();
    std::string theme;
    for (const std::string& desktop : desktop_names()) {
        if (!theme.empty())
            break;
        if (desktop == "kde")
            theme = read_key(config + "/kdeglobals", "Icons", "Theme");
        else if (desktop == "xfce")
            theme = xfce_theme(config);
        else if (desktop == "gnome" || desktop == "unity" || desktop == "budgie")
            theme = gnome_theme("org.gnome.desktop.interface");
        else if (desktop == "x-cinnamon")
            theme = gnome_theme("org.cinnamon.desktop.interface");
        else if (desktop == "mate")
            theme = gnome_theme("org.mate.interface");
    }
    for (const char* toolkit : {"/gtk-4.0", "/gtk-3.0"}) {
        if (theme.empty())
            theme = read_key(config + toolkit + "/settings.ini", "Settings", "gtk-icon-theme-name");
    }
    return theme.find('/') == std::string::npos ? theme : "";
}

// ---- Files

static std::vector<std::string> icon_folders()
{
    std::vector<std::string> folders = {std::string(g_get_home_dir()) + "/.icons"};
    for (const std::string& data : data_folders())
        folders.push_back(data + "/icons");
    return folders;
}

static bool is_folder(const std::string& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

static int get_number(GKeyFile* file, const std::string& group, const char* key, int otherwise)
{
    GError* error = nullptr;
    const int value = g_key_file_get_integer(file, group.c_str(), key, &error);
    const Held<GError> failure(error);
    return failure != nullptr ? otherwise : value;
}

IconTheme::IconTheme(const std::string& name)
{
    _Add(name, 0);
    for (const char* fallback : kFallbacks)
        _Add(fallback, 0);
}

static std::string get_text(GKeyFile* file, const std::string& group, const char* key)
{
    return take_text(g_key_file_get_string(file, group.c_str(), key, nullptr));
}

// A folder of a theme as its index tells it, wherever the theme has one of that name.
void IconTheme::_AddFolder(GKeyFile* index, const std::string& leaf,
                           const std::vector<std::string>& places)
{
    const int size = get_number(index, leaf, "Size", 0);
    if (size <= 0 || get_number(index, leaf, "Scale", 1) != 1)
        return;
    Folder folder = {"", size, size, size};
    const std::string type = get_text(index, leaf, "Type");
    if (type == "Scalable") {
        folder.min_size = get_number(index, leaf, "MinSize", size);
        folder.max_size = get_number(index, leaf, "MaxSize", size);
    } else if (type != "Fixed") {
        const int slack = get_number(index, leaf, "Threshold", 2);
        folder.min_size = size - slack;
        folder.max_size = size + slack;
    }
    for (const std::string& place : places) {
        folder.path = place + "/" + leaf;
        if (is_folder(folder.path))
            fThemes.back().push_back(folder);
    }
}

void IconTheme::_Add(const std::string& name, size_t depth)
{
    if (name.empty() || depth > kMaxDepth ||
        std::find(fNames.begin(), fNames.end(), name) != fNames.end())
        return;
    std::vector<std::string> places;
    const Held<GKeyFile> index(g_key_file_new());
    bool loaded = false;
    for (const std::string& folder : icon_folders()) {
        const std::string place = folder + "/" + name;
        if (!is_folder(place))
            continue;
        places.push_back(place);
        loaded = loaded || g_key_file_load_from_file(index.get(), (place + "/index.theme").c_str(),
                                                     G_KEY_FILE_NONE, nullptr);
    }
    if (!loaded)
        return;
    fNames.push_back(name);
    fThemes.emplace_back();
    for (const std::string& leaf : split_text(get_text(index.get(), kGroup, "Directories"), ','))
        _AddFolder(index.get(), leaf, places);
    for (const std::string& parent : split_text(get_text(index.get(), kGroup, "Inherits"), ',')) {
        // What all fall back to stays the last.
        if (std::find(std::begin(kFallbacks), std::end(kFallbacks), parent) == std::end(kFallbacks))
            _Add(parent, depth + 1);
    }
}

std::string IconTheme::Find(const std::string& icon, int size) const
{
    for (const std::vector<Folder>& theme : fThemes) {
        std::string best;
        int best_distance = INT_MAX;
        for (const Folder& folder : theme) {
            // Too large is better than too small: it can be made smaller.
            const int distance = size < folder.min_size   ? folder.min_size - size
                                 : size > folder.max_size ? (size - folder.max_size) * 1000
                                                          : 0;
            if (distance >= best_distance)
                continue;
            for (const char* ending : kEndings) {
                const std::string path = folder.path + "/" + icon + ending;
                if (distance < best_distance && access(path.c_str(), R_OK) == 0) {
                    best = path;
                    best_distance = distance;
                }
            }
        }
        if (!best.empty())
            return best;
    }
    return "";
}

}  // namespace storage
