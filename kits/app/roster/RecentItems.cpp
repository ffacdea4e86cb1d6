// recently-used.xbel in the user's data folder, written by GTK and other programs, too.
//
// Every change reads the file anew and replaces it whole. A file that is not understood stays as it
// is. Applications are entries of their own, marked private and by a group: the desktop's menus of
// recent files do not show them.

#include "app/roster/RecentItems.h"

#include <Application.h>

#include <errno.h>
#include <string.h>
#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include <gio/gio.h>

#include "app/roster/BookmarkText.h"
#include "app/roster/RunningApps.h"
#include "storage/desktop/DataFolders.h"
#include "storage/desktop/FileReplacement.h"
#include "support/Held.h"
#include "support/UriPaths.h"

namespace BPrivate {

static const char* const kApplications = "BeOSApplications";

using Bookmarks = Held<GBookmarkFile>;

static std::string list_path() { return storage::data_folders().front() + "/recently-used.xbel"; }

// Null for a text that is no list of bookmarks.
static Bookmarks parse(const std::string& text)
{
    Bookmarks file(g_bookmark_file_new());
    if (!text.empty() &&
        !g_bookmark_file_load_from_data(file.get(), text.data(), text.size(), nullptr))
        file.reset();
    return file;
}

// Who adds: the signature, else the name of the program.
static std::string own_name(const char* signature)
{
    if (signature != nullptr && signature[0] != '\0')
        return signature;
    return be_app != nullptr ? be_app->Signature() : program_invocation_short_name;
}

// What any program can read as text, whatever bytes it came in: one odd byte, and all of them would
// take the whole list for damaged.
static std::string readable(const std::string& text)
{
    std::string plain = take_text(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    const auto is_control = [](char c) { return static_cast<uint8>(c) < ' ' || c == 0x7F; };
    std::replace_if(plain.begin(), plain.end(), is_control, '?');
    return plain;
}

// How the desktop opens the file again with the one that added it.
static std::string command_of(const std::string& name)
{
    const storage::ApplicationRef application = storage::find_application(name);
    const std::string executable =
        application != nullptr ? application->executable : own_executable();
    return take_text(g_shell_quote(readable(executable).c_str())) + " %u";
}

static std::string text_of(GBookmarkFile* file)
{
    gsize size = 0;
    const Held<char> data(g_bookmark_file_to_data(file, &size, nullptr));
    return data != nullptr ? std::string(data.get(), size) : "";
}

// A list of one bookmark, as `text` has it, or of none.
static Bookmarks extract(const std::string& text, const std::string& uri)
{
    Bookmarks none = parse("");
    const std::string element = bookmark_in(text, uri);
    Bookmarks one = parse(element.empty() ? "" : with_bookmark(text_of(none.get()), uri, element));
    return one != nullptr ? std::move(one) : std::move(none);
}

using Edit = std::function<void(GBookmarkFile* file)>;

// Changes one bookmark of a list; empty if that did not give a list that is understood.
static std::string edit_one(const std::string& text, const std::string& uri, const Edit& edit)
{
    const Bookmarks one = extract(text, uri);
    edit(one.get());
    const std::string whole = text_of(one.get());
    const std::string edited = with_bookmark(text, uri, bookmark_in(whole, uri));
    const Bookmarks check = parse(edited);
    return check != nullptr && g_bookmark_file_has_item(check.get(), uri.c_str()) ? edited : "";
}

// Has `edit` change a bookmark, and writes the list. The rest of it is left alone where that can
// be, since GLib drops what it does not know of.
static void edit_list(const std::string& uri, const Edit& edit)
{
    // Two of ours that exchange the file at once could take a text that is to be given back for the
    // list: they take turns.
    const storage::RecentLock lock;
    storage::edit_file(list_path(), [&](const std::string& text) {
        const Bookmarks file = parse(text);
        if (file == nullptr)
            return text;
        std::string edited = text.empty() ? "" : edit_one(text, uri, edit);
        if (edited.empty()) {
            edit(file.get());
            edited = text_of(file.get());
        }
        return parse(edited) == nullptr || edited.empty() ? text : edited;
    });
}

// With its time to the microsecond: the desktop's own are in whole seconds at times.
static void touch(GBookmarkFile* file, const std::string& uri, const std::string& type,
                  const std::string& name)
{
    g_bookmark_file_set_mime_type(file, uri.c_str(), readable(type).c_str());
    g_bookmark_file_add_application(file, uri.c_str(), readable(name).c_str(),
                                    command_of(name).c_str());
    const Held<GDateTime> now(g_date_time_new_now_utc());
    g_bookmark_file_set_visited_date_time(file, uri.c_str(), now.get());
    g_bookmark_file_set_modified_date_time(file, uri.c_str(), now.get());
}

void add_recent_file(const std::string& path, const std::string& type, const char* signature)
{
    const std::string uri = uri_of_path(path);
    const std::string name = own_name(signature);
    if (!uri.empty())
        edit_list(uri, [&](GBookmarkFile* file) { touch(file, uri, type, name); });
}

void add_recent_app(const std::string& executable, const storage::ApplicationRef& application)
{
    const std::string uri = uri_of_path(executable);
    const std::string name = application != nullptr ? application->signature : executable;
    if (uri.empty())
        return;
    edit_list(uri, [&](GBookmarkFile* file) {
        touch(file, uri, "application/x-executable", name);
        g_bookmark_file_add_group(file, uri.c_str(), kApplications);
        g_bookmark_file_set_is_private(file, uri.c_str(), TRUE);
    });
}

// All entries, newest first; of those with the same time, the one that was added last.
static std::vector<std::string> uris_by_time(GBookmarkFile* file)
{
    std::vector<std::pair<gint64, std::string>> timed;
    for (std::string& uri : take_texts(g_bookmark_file_get_uris(file, nullptr))) {
        GDateTime* time = g_bookmark_file_get_modified_date_time(file, uri.c_str(), nullptr);
        const gint64 moment = time != nullptr ? g_date_time_to_unix(time) * G_USEC_PER_SEC +
                                                    g_date_time_get_microsecond(time)
                                              : 0;
        timed.emplace_back(moment, std::move(uri));
    }
    std::reverse(timed.begin(), timed.end());
    std::stable_sort(timed.begin(), timed.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<std::string> uris;
    for (auto& [moment, uri] : timed)
        uris.push_back(std::move(uri));
    return uris;
}

static RecentItem item_of(GBookmarkFile* file, const std::string& uri)
{
    RecentItem item;
    item.path = path_of_uri(uri);
    item.type = take_text(g_bookmark_file_get_mime_type(file, uri.c_str(), nullptr));
    item.applications =
        take_texts(g_bookmark_file_get_applications(file, uri.c_str(), nullptr, nullptr));
    item.is_application = g_bookmark_file_has_group(file, uri.c_str(), kApplications, nullptr);
    item.is_private = g_bookmark_file_get_is_private(file, uri.c_str(), nullptr);
    return item;
}

std::vector<RecentItem> recent_items(int32 count,
                                     const std::function<bool(const RecentItem&)>& is_wanted)
{
    std::vector<RecentItem> items;
    const int saved = errno;
    const Bookmarks file = parse(storage::read_text_file(list_path()));
    if (file != nullptr && count > 0) {
        for (const std::string& uri : uris_by_time(file.get())) {
            RecentItem item = item_of(file.get(), uri);
            struct stat info;
            if (item.path.empty() || stat(item.path.c_str(), &info) != 0)
                continue;
            item.is_folder = S_ISDIR(info.st_mode);
            if (is_wanted(item))
                items.push_back(std::move(item));
            if (static_cast<int32>(items.size()) == count)
                break;
        }
    }
    errno = saved;
    return items;
}

}  // namespace BPrivate
