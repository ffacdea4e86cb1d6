// The functions of Mime.h. Any thread.

#include <Mime.h>

#include <errno.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <AppFileInfo.h>
#include <Bitmap.h>
#include <Directory.h>
#include <Entry.h>
#include <File.h>
#include <Message.h>
#include <Path.h>
#include <Roster.h>

#include "storage/desktop/ApplicationEntry.h"
#include "storage/desktop/DesktopEntries.h"
#include "support/HostErrors.h"
#include "storage/mime/InfoAttributes.h"
#include "storage/mime/MimeGuess.h"
#include "storage/volumes/MountTable.h"
#include "storage/desktop/ThemeIcons.h"
#include "storage/volumes/VolumeIcons.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;

// Calls `act` for a file, or with `recursive` for the files of a folder and those below; the first
// failure is the result, but does not end it. Links are not followed.
static status_t for_files(const std::string& path, bool recursive,
                          const std::function<status_t(const std::string& path)>& act)
{
    struct stat info;
    if (lstat(path.c_str(), &info) != 0)
        return host_failure();
    if (!S_ISDIR(info.st_mode))
        return S_ISREG(info.st_mode) ? act(path) : B_OK;
    if (!recursive)
        return B_OK;
    BDirectory folder(path.c_str());
    status_t result = folder.InitCheck();
    BEntry entry;
    while (folder.GetNextEntry(&entry) == B_OK) {
        const BPath below(&entry);
        status_t status = below.InitCheck() == B_OK ? for_files(below.Path(), true, act) : B_OK;
        result = result == B_OK ? status : result;
    }
    return result;
}

static status_t update_file(const std::string& path, int force)
{
    BNode node(path.c_str());
    if (node.InitCheck() != B_OK)
        return node.InitCheck();
    BNodeInfo info(&node);
    char signature[B_MIME_TYPE_LENGTH];
    if (read_info_text(node, info::kSignature, signature, sizeof(signature)) == B_OK)
        create_app_meta_mime(path.c_str(), false, true, force);
    if (force != B_UPDATE_MIME_INFO_FORCE_UPDATE_ALL && read_info(node, info::kType))
        return B_OK;
    const BPath name(path.c_str());
    const std::string leaf = name.Leaf() != nullptr ? name.Leaf() : "";
    return info.SetType(guess_type_of_file(path, leaf).c_str());
}

int update_mime_info(const char* path, int recursive, int, int force)
{
    if (path == nullptr)
        return fail(EINVAL);
    return for_files(path, recursive != 0,
                     [=](const std::string& file) { return update_file(file, force); });
}

static status_t make_known(const std::string& path, bool force)
{
    BFile file(path.c_str(), B_READ_ONLY);
    if (file.InitCheck() != B_OK)
        return file.InitCheck();
    BAppFileInfo info(&file);
    ApplicationEntry entry;
    char signature[B_MIME_TYPE_LENGTH];
    status_t status = read_info_text(file, info::kSignature, signature, sizeof(signature));
    if (status != B_OK)
        return status;
    if (access(path.c_str(), X_OK) != 0)
        return host_failure();
    if (!force && find_application(signature) != nullptr)
        return B_OK;
    entry.signature = signature;
    entry.executable = path_of_node(file);
    uint32 flags = 0;
    info.GetAppFlags(&flags);
    entry.in_menus = (flags & B_BACKGROUND_APP) == 0;
    BMessage types;
    const char* type = nullptr;
    if (read_info(file, info::kSupportedTypes))
        info.GetSupportedTypes(&types);
    for (int32 i = 0; types.FindString("types", i, &type) == B_OK; i++)
        entry.types.push_back(type);
    return write_application_entry(entry);
}

status_t create_app_meta_mime(const char* path, int recursive, int, int force)
{
    if (path == nullptr)
        return fail(EINVAL);
    struct stat info;
    if (stat(path, &info) != 0)
        return host_failure();
    if (!S_ISDIR(info.st_mode))
        return make_known(path, force != 0);
    return for_files(path, recursive != 0, [=](const std::string& file) {
        BNode node(file.c_str());
        return read_info(node, info::kSignature) ? make_known(file, force != 0) : B_OK;
    });
}

status_t get_device_icon(const char* device, BBitmap* icon, icon_size which)
{
    struct stat info;
    if (device == nullptr)
        return fail(EINVAL);
    if (stat(device, &info) != 0)
        return host_failure();
    for (const Mount& mount : read_mounts()) {
        if (mount.source == device)
            return load_theme_icon(volume_icons(mount), icon, which);
    }
    return load_theme_icon(device_icons(device), icon, which);
}

status_t get_device_icon(const char* device, void* icon, int32 size)
{
    if (icon == nullptr || (size != B_MINI_ICON && size != B_LARGE_ICON))
        return fail(EINVAL);
    BBitmap bitmap(BRect(0, 0, static_cast<float>(size - 1), static_cast<float>(size - 1)), 0,
                   B_CMAP8, size);
    status_t status = get_device_icon(device, &bitmap, static_cast<icon_size>(size));
    if (status == B_OK)
        memcpy(icon, bitmap.Bits(), static_cast<size_t>(size) * static_cast<size_t>(size));
    return status;
}

status_t get_device_icon(const char*, uint8**, size_t*, type_code*) { return fail(EOPNOTSUPP); }

status_t get_named_icon(const char* name, BBitmap* icon, icon_size which)
{
    return name != nullptr ? load_theme_icon({name}, icon, which) : fail(EINVAL);
}

status_t get_named_icon(const char*, uint8**, size_t*, type_code*) { return fail(EOPNOTSUPP); }
