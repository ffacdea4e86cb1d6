// Finding what to launch: desktop entries by signature or type, programs by their path.

#include "app/LaunchTargets.h"

#include <FindDirectory.h>
#include <Node.h>
#include <Path.h>
#include <Roster.h>
#include <StorageDefs.h>
#include <TypeConstants.h>

#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include <gio/gio.h>

#include "app/RunningApps.h"
#include "storage/MimeNames.h"
#include "storage/SharedMime.h"

namespace BPrivate {

static std::string text_attribute(const std::string& path, const char* name)
{
    BNode node(path.c_str());
    char text[B_PATH_NAME_LENGTH];
    const ssize_t size = node.ReadAttr(name, B_STRING_TYPE, 0, text, sizeof(text) - 1);
    return size > 0 ? std::string(text, strnlen(text, size)) : "";
}

std::string type_of_file(const std::string& path)
{
    std::string type = text_attribute(path, "BEOS:TYPE");
    if (storage::is_mime_name(type.c_str()))
        return type;
    GFile* file = g_file_new_for_path(path.c_str());
    GFileInfo* info = g_file_query_info(file, G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
                                        G_FILE_QUERY_INFO_NONE, nullptr, nullptr);
    g_object_unref(file);
    const char* guessed = info != nullptr ? g_file_info_get_content_type(info) : nullptr;
    type = guessed != nullptr ? guessed : "application/octet-stream";
    g_clear_object(&info);
    return type;
}

// True for what the host runs: on file systems where every file is executable, the bytes tell.
static bool is_program(const std::string& path)
{
    struct stat info;
    if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)
        || access(path.c_str(), X_OK) != 0)
        return false;
    char head[4] = {};
    FILE* file = fopen(path.c_str(), "re");
    if (file == nullptr)
        return true;  // it can be run, though not read
    const size_t length = fread(head, 1, sizeof(head), file);
    fclose(file);
    return (length == 4 && memcmp(head, "\177ELF", 4) == 0)
        || (length >= 2 && memcmp(head, "#!", 2) == 0);
}

static bool is_in_trash(const std::string& path)
{
    BPath trash;
    return find_directory(B_TRASH_DIRECTORY, &trash) == B_OK
        && path.starts_with(std::string(trash.Path()) + '/');
}

static status_t use(const storage::ApplicationRef& application, LaunchTarget* target)
{
    target->application = application;
    target->executable = application->executable;
    target->as_told = true;
    return B_OK;
}

status_t find_target(const char* type, LaunchTarget* target)
{
    if (type == nullptr || !storage::is_mime_name(type) || strchr(type, '/') == nullptr)
        return B_BAD_VALUE;
    if (storage::ApplicationRef application = storage::find_application(type))
        return use(application, target);
    if (storage::ApplicationRef application = storage::default_application(type))
        return use(application, target);
    for (const RunningApp& app : running_apps()) {
        if (strcasecmp(app.signature.c_str(), type) == 0) {
            target->executable = app.path;
            return B_OK;
        }
    }
    return storage::SharedMime::Get()->Contains(type) ? B_LAUNCH_FAILED_NO_PREFERRED_APP
                                                      : B_LAUNCH_FAILED_APP_NOT_FOUND;
}

static status_t find_target_for_document(const std::string& path, LaunchTarget* target)
{
    target->document = path;
    const std::string preferred = text_attribute(path, "BEOS:PREF_APP");
    if (!preferred.empty() && find_target(preferred.c_str(), target) == B_OK)
        return B_OK;
    const storage::ApplicationRef application = storage::default_application(type_of_file(path));
    return application != nullptr ? use(application, target) : B_LAUNCH_FAILED_NO_PREFERRED_APP;
}

status_t find_target(const entry_ref* ref, LaunchTarget* target)
{
    if (ref == nullptr || ref->name == nullptr)
        return B_BAD_VALUE;
    const BPath entry(ref);
    struct stat info;
    if (entry.InitCheck() != B_OK || lstat(entry.Path(), &info) != 0)
        return B_ENTRY_NOT_FOUND;
    char resolved[PATH_MAX];
    if (realpath(entry.Path(), resolved) == nullptr)
        return S_ISLNK(info.st_mode) ? B_LAUNCH_FAILED_NO_RESOLVE_LINK : B_ENTRY_NOT_FOUND;
    const std::string path = resolved;
    if (is_program(path)) {
        target->executable = path;
        target->application = storage::find_application_of(path);
        return is_in_trash(path) ? B_LAUNCH_FAILED_APP_IN_TRASH : B_OK;
    }
    // A desktop entry stands for its application.
    const storage::ApplicationRef named =
        storage::find_application_by_id(path.substr(path.rfind('/') + 1));
    if (named != nullptr && named->path == path)
        return use(named, target);
    return find_target_for_document(entry.Path(), target);
}

}  // namespace BPrivate
