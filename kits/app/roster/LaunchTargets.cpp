// Finding what to launch: desktop entries by signature or type, programs by their path.

#include "app/roster/LaunchTargets.h"

#include <FindDirectory.h>
#include <MimeType.h>
#include <Node.h>
#include <NodeInfo.h>
#include <Path.h>
#include <Roster.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/roster/RunningApps.h"
#include "storage/mime/MimeNames.h"
#include "storage/mime/SharedMime.h"
#include "support/RealPath.h"

namespace BPrivate {

std::string type_of_file(const std::string& path)
{
    BNode node(path.c_str());
    const BNodeInfo info(&node);
    char type[B_MIME_TYPE_LENGTH];
    return info.GetType(type) == B_OK ? type : "application/octet-stream";
}

// The signature of the application for this very file; empty if it names none.
static std::string preferred_for_file(const std::string& path)
{
    BNode node(path.c_str());
    const BNodeInfo info(&node);
    char signature[B_MIME_TYPE_LENGTH];
    return info.GetPreferredApp(signature) == B_OK ? signature : "";
}

static std::string preferred_for_type(const char* type)
{
    char signature[B_MIME_TYPE_LENGTH];
    return BMimeType(type).GetPreferredApp(signature) == B_OK ? signature : "";
}

// True for what the host runs: on file systems where every file is executable, the bytes tell.
static bool is_program(const std::string& path)
{
    struct stat info;
    if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode) || access(path.c_str(), X_OK) != 0)
        return false;
    char head[4] = {};
    FILE* file = fopen(path.c_str(), "re");
    if (file == nullptr)
        return true;  // it can be run, though not read
    const size_t length = fread(head, 1, sizeof(head), file);
    fclose(file);
    return (length == 4 && memcmp(head, "\177ELF", 4) == 0) ||
           (length >= 2 && memcmp(head, "#!", 2) == 0);
}

static bool is_in_trash(const std::string& path)
{
    BPath trash;
    return find_directory(B_TRASH_DIRECTORY, &trash) == B_OK &&
           path.starts_with(std::string(trash.Path()) + '/');
}

static status_t use(const storage::ApplicationRef& application, LaunchTarget* target)
{
    target->application = application;
    target->executable = application->executable;
    target->as_told = true;
    return B_OK;
}

// By desktop entry, else where it runs, else where it was when it was installed.
static status_t find_by_signature(const char* signature, LaunchTarget* target)
{
    if (storage::ApplicationRef application = storage::find_application(signature))
        return use(application, target);
    for (const RunningApp& app : running_apps()) {
        if (strcasecmp(app.signature.c_str(), signature) == 0) {
            target->executable = app.path;
            return B_OK;
        }
    }
    entry_ref hint;
    if (BMimeType(signature).GetAppHint(&hint) != B_OK)
        return B_LAUNCH_FAILED_APP_NOT_FOUND;
    const BPath path(&hint);
    if (path.InitCheck() != B_OK || !is_program(path.Path()))
        return B_LAUNCH_FAILED_APP_NOT_FOUND;
    target->executable = path.Path();
    return B_OK;
}

static status_t find_by_type(const char* type, LaunchTarget* target)
{
    const std::string preferred = preferred_for_type(type);
    if (!preferred.empty() && find_by_signature(preferred.c_str(), target) == B_OK)
        return B_OK;
    const storage::ApplicationRef application = storage::default_application(type);
    return application != nullptr ? use(application, target) : B_LAUNCH_FAILED_NO_PREFERRED_APP;
}

status_t find_target(const char* type, LaunchTarget* target)
{
    if (type == nullptr || !storage::is_mime_name(type) || strchr(type, '/') == nullptr)
        return B_BAD_VALUE;
    if (find_by_signature(type, target) == B_OK)
        return B_OK;
    const status_t status = find_by_type(type, target);
    return status == B_OK || storage::SharedMime::Get()->Contains(type)
               ? status
               : B_LAUNCH_FAILED_APP_NOT_FOUND;
}

static status_t find_for_document(const std::string& path, LaunchTarget* target)
{
    target->document = path;
    const std::string preferred = preferred_for_file(path);
    if (!preferred.empty() && find_by_signature(preferred.c_str(), target) == B_OK)
        return B_OK;
    return find_by_type(type_of_file(path).c_str(), target);
}

status_t find_target(const entry_ref* ref, LaunchTarget* target)
{
    if (ref == nullptr || ref->name == nullptr)
        return B_BAD_VALUE;
    const BPath entry(ref);
    struct stat info;
    if (entry.InitCheck() != B_OK || lstat(entry.Path(), &info) != 0)
        return B_ENTRY_NOT_FOUND;
    const std::string path = real_path(entry.Path());
    if (path.empty())
        return S_ISLNK(info.st_mode) ? B_LAUNCH_FAILED_NO_RESOLVE_LINK : B_ENTRY_NOT_FOUND;
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
    return find_for_document(path, target);
}

}  // namespace BPrivate
