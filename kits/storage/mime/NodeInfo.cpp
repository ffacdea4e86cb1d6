// BNodeInfo: a file's type, applications and icons.

#include <NodeInfo.h>

#include <errno.h>
#include <string.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include <Bitmap.h>
#include <Directory.h>
#include <Entry.h>
#include <Node.h>
#include <Path.h>
#include <Volume.h>

#include "storage/desktop/DesktopEntries.h"
#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/mime/InfoAttributes.h"
#include "storage/mime/MimeGuess.h"
#include "storage/mime/MimeNames.h"
#include "storage/mime/SharedMime.h"
#include "storage/StorageAccess.h"
#include "storage/desktop/ThemeIcons.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::fail_again;
using BPrivate::not_set;
using BPrivate::StorageAccess;

BNodeInfo::BNodeInfo() : fNode(nullptr), fStatus(B_NO_INIT) {}

BNodeInfo::BNodeInfo(BNode* node) : BNodeInfo() { SetTo(node); }

BNodeInfo::~BNodeInfo() {}

status_t BNodeInfo::SetTo(BNode* node)
{
    const bool usable = node != nullptr && node->InitCheck() == B_OK;
    fNode = usable ? node : nullptr;
    return fStatus = usable ? B_OK : fail(EINVAL);
}

status_t BNodeInfo::InitCheck() const { return fStatus; }

status_t BNodeInfo::GetType(char* type) const
{
    if (type == nullptr)
        return fail(EINVAL);
    if (fStatus != B_OK)
        return not_set();
    const int before = errno;
    if (read_info_text(*fNode, info::kType, type, B_MIME_TYPE_LENGTH) == B_OK && is_mime_name(type))
        return B_OK;
    errno = before;
    const auto name = StorageAccess::HostPath(StorageAccess::Descriptor(*fNode));
    const std::string path = path_of_node(*fNode);
    const std::string guess = guess_type_of_file(name.text, leaf_of(path.c_str()));
    strcpy(type, is_mime_name(guess.c_str()) ? guess.c_str() : B_FILE_MIME_TYPE);
    return B_OK;
}

status_t BNodeInfo::SetType(const char* type)
{
    if (fStatus != B_OK)
        return not_set();
    if (type != nullptr && type[0] != '\0' && !is_mime_name(type))
        return fail(EINVAL);
    return write_info_text(*fNode, info::kType, type);
}

status_t BNodeInfo::GetIcon(BBitmap* icon, icon_size which) const
{
    return fStatus == B_OK ? read_info_icon(*fNode, icon_attribute(which), icon, which) : not_set();
}

status_t BNodeInfo::SetIcon(const BBitmap* icon, icon_size which)
{
    return fStatus == B_OK ? write_info_icon(*fNode, icon_attribute(which), icon, which)
                           : not_set();
}

status_t BNodeInfo::GetIcon(uint8** data, size_t* size, type_code* type) const
{
    if (fStatus != B_OK)
        return not_set();
    if (type == nullptr)
        return fail(EINVAL);
    status_t status = read_info_bytes(*fNode, info::kVectorIcon, data, size);
    if (status == B_OK)
        *type = B_VECTOR_ICON_TYPE;
    return status;
}

status_t BNodeInfo::SetIcon(const uint8* data, size_t size)
{
    return fStatus == B_OK ? write_info_bytes(*fNode, info::kVectorIcon, data, size) : not_set();
}

status_t BNodeInfo::GetPreferredApp(char* signature, app_verb) const
{
    if (fStatus != B_OK)
        return not_set();
    return read_info_text(*fNode, info::kPreferredApp, signature, B_MIME_TYPE_LENGTH);
}

status_t BNodeInfo::SetPreferredApp(const char* signature, app_verb)
{
    if (fStatus != B_OK)
        return not_set();
    if (signature != nullptr && signature[0] != '\0' && !is_mime_name(signature))
        return fail(EINVAL);
    return write_info_text(*fNode, info::kPreferredApp, signature);
}

status_t BNodeInfo::GetAppHint(entry_ref* ref) const
{
    if (ref == nullptr)
        return fail(EINVAL);
    if (fStatus != B_OK)
        return not_set();
    char path[B_PATH_NAME_LENGTH];
    status_t status = read_info_text(*fNode, info::kAppHint, path, sizeof(path));
    return status == B_OK ? get_ref_for_path(path, ref) : status;
}

status_t BNodeInfo::SetAppHint(const entry_ref* ref)
{
    if (fStatus != B_OK)
        return not_set();
    std::string path;
    status_t status = ref != nullptr ? path_of(ref, &path) : B_OK;
    if (status == B_OK && path.size() >= B_PATH_NAME_LENGTH)
        status = fail(ENAMETOOLONG);
    return status == B_OK ? write_info_text(*fNode, info::kAppHint, path.c_str()) : status;
}

// ---- What a browser shows

// Of an executable: the icon of the signature it has, else that of its desktop entry.
static status_t get_application_icon(const BNode& node, const std::string& path, BBitmap* icon,
                                     icon_size which)
{
    char signature[B_MIME_TYPE_LENGTH];
    if (read_info_text(node, info::kSignature, signature, sizeof(signature)) == B_OK &&
        BMimeType(signature).GetIcon(icon, which) == B_OK)
        return B_OK;
    const ApplicationRef application = find_application_of(path);
    return application != nullptr ? load_theme_icon({application->icon}, icon, which)
                                  : fail(ENOENT);
}

static status_t get_folder_icon(const std::string& path, const struct stat& info, BBitmap* icon,
                                icon_size which)
{
    struct stat above;
    const bool is_root = path == "/" || (stat(directory_of(path).c_str(), &above) == 0 &&
                                         above.st_dev != info.st_dev);
    return is_root ? BVolume(info.st_dev).GetIcon(icon, which) : fail(ENOENT);
}

static status_t get_type_icon(const BNodeInfo& node, BBitmap* icon, icon_size which)
{
    char type[B_MIME_TYPE_LENGTH];
    char signature[B_MIME_TYPE_LENGTH];
    if (node.GetType(type) != B_OK)
        return fail(ENOENT);
    if (node.GetPreferredApp(signature) == B_OK &&
        BMimeType(signature).GetIconForType(type, icon, which) == B_OK)
        return B_OK;
    BMimeType mime(type);
    if (mime.GetIcon(icon, which) == B_OK)
        return B_OK;
    if (mime.GetPreferredApp(signature) == B_OK &&
        BMimeType(signature).GetIconForType(type, icon, which) == B_OK)
        return B_OK;
    if (load_theme_icon(SharedMime::Get()->IconNames(type), icon, which) == B_OK)
        return B_OK;
    BMimeType supertype;
    return mime.GetSupertype(&supertype) == B_OK ? supertype.GetIcon(icon, which) : fail(ENOENT);
}

status_t BNodeInfo::GetTrackerIcon(BBitmap* icon, icon_size which) const
{
    if (fStatus != B_OK)
        return not_set();
    status_t status = check_icon(icon, which);
    if (status != B_OK)
        return status;
    const int before = errno;
    status = GetIcon(icon, which);
    struct stat info = {};
    if (status != B_OK && fNode->GetStat(&info) == B_OK) {
        const std::string path = path_of_node(*fNode);
        if (S_ISDIR(info.st_mode))
            status = get_folder_icon(path, info, icon, which);
        else if (S_ISREG(info.st_mode) && (info.st_mode & 0111) != 0)
            status = get_application_icon(*fNode, path, icon, which);
    }
    if (status != B_OK)
        status = get_type_icon(*this, icon, which);
    if (status != B_OK)
        status =
            load_theme_icon({"application-octet-stream", "unknown", "text-x-generic"}, icon, which);
    if (status == B_OK)
        errno = before;
    return status;
}

status_t BNodeInfo::GetTrackerIcon(const entry_ref* ref, BBitmap* icon, icon_size which)
{
    // A link has the icon of what it leads to, one that leads nowhere its own.
    BEntry entry(ref, true);
    BNode node(ref);
    if (entry.InitCheck() == B_OK && entry.Exists())
        node.SetTo(&entry);
    if (node.InitCheck() != B_OK)
        return fail_again(node.InitCheck());
    return BNodeInfo(&node).GetTrackerIcon(icon, which);
}
