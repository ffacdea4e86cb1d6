// Desktop entries, read once and again when one has changed. Any thread.

#include "storage/desktop/DesktopEntries.h"

#include <ctype.h>
#include <dirent.h>
#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>

#include <glib.h>

#include "storage/desktop/DataFolders.h"
#include "support/Held.h"
#include "storage/desktop/KeptFiles.h"
#include "storage/mime/MimeNames.h"
#include "support/UriPaths.h"
#include "support/RealPath.h"

namespace storage {

using BPrivate::path_of_uri;
using BPrivate::uri_of_path;

static const char* const kSignatureKey = "X-BeOS-Signature";
static const std::string_view kIdPrefix = "application/x-vnd.desktop.";
static const std::string_view kSuffix = ".desktop";
static const size_t kMaxDepth = 8;  // of folders in the applications folder

namespace {

struct Entries {
    std::vector<ApplicationRef> all;
    std::map<std::string, ApplicationRef, std::less<>> by_id;
    std::map<std::string, ApplicationRef, std::less<>> by_signature;  // lower case; the first
    std::map<std::string, ApplicationRef> by_executable;  // also by the path without links
};

}  // namespace

// ---- Signatures

std::string signature_of_id(std::string_view id)
{
    if (id.ends_with(kSuffix))
        id.remove_suffix(kSuffix.size());
    std::string signature(kIdPrefix);
    for (const char c : id) {
        char code[4];
        if (c == '%' || !is_mime_character(c)) {
            snprintf(code, sizeof(code), "%%%02X", static_cast<unsigned char>(c));
            signature += code;
        } else {
            signature += c;
        }
    }
    return is_mime_name(signature.c_str()) ? signature : "";
}

std::string id_of_signature(std::string_view signature)
{
    if (signature.size() <= kIdPrefix.size() ||
        lower_case(signature.substr(0, kIdPrefix.size())) != kIdPrefix)
        return "";
    std::string id;
    for (size_t i = kIdPrefix.size(); i < signature.size(); i++) {
        if (signature[i] == '%' && i + 2 < signature.size() && isxdigit(signature[i + 1]) &&
            isxdigit(signature[i + 2])) {
            id += static_cast<char>(g_ascii_xdigit_value(signature[i + 1]) << 4 |
                                    g_ascii_xdigit_value(signature[i + 2]));
            i += 2;
        } else {
            id += signature[i];
        }
    }
    return id.append(kSuffix);
}

// ---- Reading

using BPrivate::take_text;
using KeyFile = BPrivate::Held<GKeyFile>;

static std::string get_text(const KeyFile& file, const char* key)
{
    return take_text(g_key_file_get_string(file.get(), G_KEY_FILE_DESKTOP_GROUP, key, nullptr));
}

static std::string get_local_text(const KeyFile& file, const char* key)
{
    return take_text(
        g_key_file_get_locale_string(file.get(), G_KEY_FILE_DESKTOP_GROUP, key, nullptr, nullptr));
}

static bool get_flag(const KeyFile& file, const char* key)
{
    return g_key_file_get_boolean(file.get(), G_KEY_FILE_DESKTOP_GROUP, key, nullptr);
}

static std::vector<std::string> split_command(const std::string& text)
{
    char** list = nullptr;  // stays so if the text is no command
    g_shell_parse_argv(text.c_str(), nullptr, &list, nullptr);
    return BPrivate::take_texts(list);
}

// Where a command's program begins: behind "env" and what that sets.
static size_t program_index(const std::vector<std::string>& command)
{
    if (command.empty() || (command[0] != "env" && !command[0].ends_with("/env")))
        return 0;
    size_t at = 1;
    while (at < command.size() && command[at].find('=') != std::string::npos)
        at++;
    return at < command.size() ? at : 0;
}

static std::string find_program(const std::string& name)
{
    return take_text(g_find_program_in_path(name.c_str()));
}

// A word of a command in which "%%" stands for "%".
static std::string without_codes(std::string word)
{
    for (size_t at = word.find("%%"); at != std::string::npos; at = word.find("%%", at + 1))
        word.erase(at, 1);
    return word;
}

// False for an entry that is no application, or that can not be run.
static bool read_application(const KeyFile& file, Application* application)
{
    if (get_text(file, "Type") != "Application")
        return false;
    const std::string proof = get_text(file, "TryExec");
    if (!proof.empty() && find_program(proof).empty())
        return false;
    application->command = split_command(get_text(file, "Exec"));
    if (application->command.empty())
        return false;
    application->executable =
        find_program(without_codes(application->command[program_index(application->command)]));
    if (application->executable.empty())
        return false;
    application->signature = get_text(file, kSignatureKey);
    if (!is_mime_name(application->signature.c_str()))
        application->signature = signature_of_id(application->id);
    application->name = get_local_text(file, "Name");
    application->icon = get_local_text(file, "Icon");
    application->folder = get_text(file, "Path");
    application->types = split_text(get_text(file, "MimeType"), ';');
    application->in_terminal = get_flag(file, "Terminal");
    application->in_menus = !get_flag(file, "NoDisplay");
    return !application->signature.empty();
}

// How well an entry stands for its executable: 2 it is all that the entry runs, 1 it runs it with
// options, 0 what runs is named by the arguments.
static int claim_on_executable(const Application& application)
{
    int claim = 2;
    const auto& command = application.command;
    for (size_t i = program_index(command) + 1; i < command.size(); i++) {
        if (command[i].starts_with('-'))
            claim = 1;
        else if (!command[i].starts_with('%'))
            return 0;
    }
    return claim;
}

static void index_executables(Entries* entries)
{
    for (const int claim : {2, 1}) {
        for (const bool resolved : {false, true}) {
            for (const ApplicationRef& application : entries->all) {
                if (claim_on_executable(*application) != claim)
                    continue;
                const std::string& path = application->executable;
                entries->by_executable.try_emplace(resolved ? BPrivate::real_path(path) : path,
                                                   application);
            }
        }
    }
}

// Calls `each` with the paths of a folder's files and their ids, and `folder` with those of the
// folders below, itself first.
static void walk(const std::string& path, const std::string& prefix, size_t depth,
                 const std::function<void(const std::string& path)>& folder,
                 const std::function<void(const std::string& path, const std::string& id)>& each)
{
    folder(path);
    DIR* stream = opendir(path.c_str());
    while (const struct dirent* entry = stream != nullptr ? readdir(stream) : nullptr) {
        const std::string name = entry->d_name;
        const std::string full = path + "/" + name;
        struct stat info;
        if (name.ends_with(kSuffix))
            each(full, prefix + name);
        else if (name[0] != '.' && entry->d_type != DT_REG && depth < kMaxDepth &&
                 stat(full.c_str(), &info) == 0 && S_ISDIR(info.st_mode))
            walk(full, prefix + name + "-", depth + 1, folder, each);
    }
    if (stream != nullptr)
        closedir(stream);
}

static std::vector<FolderChanges::Folder> folders_to_watch()
{
    std::vector<FolderChanges::Folder> folders;
    for (const std::string& data : data_folders()) {
        walk(
            data + "/applications", "", 0,
            [&](const std::string& path) {
                folders.push_back({path, ""});
            },
            [](const std::string&, const std::string&) {});
    }
    return folders;
}

static void read_entry(const std::string& path, const std::string& id, size_t place,
                       Entries* entries)
{
    if (entries->by_id.contains(id))
        return;  // the user's own, or the weightier folder's
    const KeyFile file(g_key_file_new());
    ApplicationRef& known = entries->by_id[id];  // null for one that hides others
    if (!g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr) ||
        get_flag(file, "Hidden"))
        return;
    auto application = std::make_shared<Application>();
    application->id = id;
    application->path = path;
    application->place = place;
    if (read_application(file, application.get()))
        known = application;
}

static std::shared_ptr<const Entries> read_entries()
{
    auto entries = std::make_shared<Entries>();
    const std::vector<std::string> data = data_folders();
    for (size_t place = 0; place < data.size(); place++) {
        std::vector<std::pair<std::string, std::string>> found;
        walk(
            data[place] + "/applications", "", 0, [](const std::string&) {},
            [&](const std::string& path, const std::string& id) { found.emplace_back(id, path); });
        std::sort(found.begin(), found.end());
        for (const auto& [id, path] : found) {
            read_entry(path, id, place, entries.get());
            const ApplicationRef& application = entries->by_id[id];
            if (application != nullptr && application->path == path)
                entries->all.push_back(application);
        }
    }
    for (const ApplicationRef& application : entries->all)
        entries->by_signature.try_emplace(lower_case(application->signature), application);
    for (const ApplicationRef& application : entries->all) {
        const std::string by_id = lower_case(signature_of_id(application->id));
        entries->by_signature.try_emplace(by_id, application);
    }
    index_executables(entries.get());
    return entries;
}

static std::shared_ptr<const Entries> current_entries()
{
    auto& [lock, changes, entries] = kept_while_running<std::shared_ptr<const Entries>>();
    const int before = errno;
    std::lock_guard guard(lock);
    if (entries == nullptr || changes.Changed()) {
        // A folder that comes between the listing and the watch is waited for by none.
        std::vector<FolderChanges::Folder> watched;
        for (auto folders = folders_to_watch(); folders.size() != watched.size();
             folders = folders_to_watch()) {
            watched = folders;
            changes.Watch(watched);
        }
        entries = read_entries();
    }
    errno = before;
    return entries;
}

// ---- Looking up

ApplicationRef find_application_by_id(const std::string& id)
{
    const auto entries = current_entries();
    const auto found = entries->by_id.find(id);
    return found != entries->by_id.end() ? found->second : nullptr;
}

ApplicationRef find_application(std::string_view signature)
{
    const auto entries = current_entries();
    const std::string id = id_of_signature(signature);
    if (!id.empty()) {
        const auto found = entries->by_id.find(id);
        if (found != entries->by_id.end() && found->second != nullptr)
            return found->second;
    }
    const auto found = entries->by_signature.find(lower_case(signature));
    return found != entries->by_signature.end() ? found->second : nullptr;
}

ApplicationRef find_application_of(const std::string& executable)
{
    const auto entries = current_entries();
    const int before = errno;
    auto found = entries->by_executable.find(executable);
    if (found == entries->by_executable.end())
        found = entries->by_executable.find(BPrivate::real_path(executable));
    errno = before;
    return found != entries->by_executable.end() ? found->second : nullptr;
}

std::vector<ApplicationRef> all_applications() { return current_entries()->all; }

// ---- Running

static bool is_uri(const std::string& file)
{
    return file.find("://") != std::string::npos && file[0] != '/';
}

// What can not be changed into the other stays as it is.
static std::string as_uri(const std::string& file)
{
    const std::string uri = is_uri(file) ? std::string() : uri_of_path(file);
    return uri.empty() ? file : uri;
}

static std::string as_path(const std::string& file)
{
    const std::string path = is_uri(file) ? path_of_uri(file) : std::string();
    return path.empty() ? file : path;
}

// One word of a command, its codes replaced; true if that gave any file.
static bool expand_word(const std::string& word, const Application& application,
                        const std::vector<std::string>& files, std::vector<std::string>* line)
{
    if (word == "%F" || word == "%U") {
        for (const std::string& file : files)
            line->push_back(word == "%U" ? as_uri(file) : as_path(file));
        return true;
    }
    if (word == "%i") {
        if (!application.icon.empty())
            line->insert(line->end(), {"--icon", application.icon});
        return false;
    }
    std::string text;
    bool takes_files = false;
    for (size_t i = 0; i < word.size(); i++) {
        if (word[i] != '%' || i + 1 == word.size()) {
            text += word[i];
            continue;
        }
        switch (word[++i]) {
            case '%':
                text += '%';
                break;
            case 'c':
                text += application.name;
                break;
            case 'k':
                text += application.path;
                break;
            case 'f':
            case 'F':
                takes_files = true;
                text += files.empty() ? "" : as_path(files[0]);
                break;
            case 'u':
            case 'U':
                takes_files = true;
                text += files.empty() ? "" : as_uri(files[0]);
                break;
            default:
                break;  // codes of former times stand for nothing
        }
    }
    if (!text.empty() || word.empty())
        line->push_back(text);
    return takes_files;
}

static bool takes_all_files(const Application& application)
{
    return std::any_of(application.command.begin(), application.command.end(),
                       [](const std::string& word) { return word == "%F" || word == "%U"; });
}

static std::vector<std::string> command_for(const Application& application,
                                            const std::vector<std::string>& files,
                                            bool* takes_files)
{
    std::vector<std::string> line;
    *takes_files = false;
    for (const std::string& word : application.command)
        *takes_files |= expand_word(word, application, files, &line);
    return line;
}

std::vector<std::vector<std::string>> commands_for(const Application& application,
                                                   const std::vector<std::string>& files)
{
    bool takes_files = false;
    std::vector<std::string> whole = command_for(application, files, &takes_files);
    if (!takes_files) {
        for (const std::string& file : files)
            whole.push_back(as_path(file));
    }
    if (!takes_files || files.size() < 2 || takes_all_files(application))
        return {whole};
    std::vector<std::vector<std::string>> lines;
    for (const std::string& file : files)
        lines.push_back(command_for(application, {file}, &takes_files));
    return lines;
}

}  // namespace storage
