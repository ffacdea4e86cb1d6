// BAppFileInfo: what an executable says of itself.

#include <AppFileInfo.h>

#include <errno.h>
#include <string.h>

#include <string>

#include <Bitmap.h>
#include <File.h>
#include <Message.h>

#include "storage/desktop/DesktopEntries.h"
#include "support/HostErrors.h"
#include "storage/mime/InfoAttributes.h"
#include "storage/mime/MimeNames.h"
#include "storage/desktop/ThemeIcons.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::fail_again;
using BPrivate::host_failure;
using BPrivate::not_set;

static const type_code kAppFlagsType = 'APPF';
static const type_code kVersionType = 'APPV';

BAppFileInfo::BAppFileInfo() {}

BAppFileInfo::BAppFileInfo(BFile* file) : BNodeInfo(file) {}

BAppFileInfo::~BAppFileInfo() {}

status_t BAppFileInfo::SetTo(BFile* file) { return BNodeInfo::SetTo(file); }

status_t BAppFileInfo::GetType(char* type) const { return BNodeInfo::GetType(type); }

status_t BAppFileInfo::SetType(const char* type) { return BNodeInfo::SetType(type); }

status_t BAppFileInfo::GetSignature(char* signature) const
{
    if (InitCheck() != B_OK)
        return not_set();
    status_t status = read_info_text(*fNode, info::kSignature, signature, B_MIME_TYPE_LENGTH);
    if (status == B_OK || signature == nullptr)
        return status;
    const int number = errno;
    if (const ApplicationRef application = find_application_of(path_of_node(*fNode))) {
        strcpy(signature, application->signature.c_str());
        return B_OK;
    }
    errno = number;
    return status;
}

status_t BAppFileInfo::SetSignature(const char* signature)
{
    if (InitCheck() != B_OK)
        return not_set();
    if (signature != nullptr && signature[0] != '\0' && !is_mime_name(signature))
        return fail(EINVAL);
    return write_info_text(*fNode, info::kSignature, signature);
}

status_t BAppFileInfo::GetCatalogEntry(char* catalogEntry) const
{
    if (InitCheck() != B_OK)
        return not_set();
    return read_info_text(*fNode, info::kCatalogEntry, catalogEntry, B_MIME_TYPE_LENGTH * 3);
}

status_t BAppFileInfo::SetCatalogEntry(const char* catalogEntry)
{
    if (InitCheck() != B_OK)
        return not_set();
    if (catalogEntry != nullptr && strlen(catalogEntry) >= B_MIME_TYPE_LENGTH * 3)
        return fail(EINVAL);
    return write_info_text(*fNode, info::kCatalogEntry, catalogEntry);
}

status_t BAppFileInfo::GetAppFlags(uint32* flags) const
{
    if (flags == nullptr)
        return fail(EINVAL);
    if (InitCheck() != B_OK)
        return not_set();
    const auto value = read_info(*fNode, info::kAppFlags);
    if (!value)
        return host_failure();
    if (value->size() != sizeof(*flags)) {
        errno = EBADMSG;
        return B_BAD_DATA;
    }
    memcpy(flags, value->data(), sizeof(*flags));
    return B_OK;
}

status_t BAppFileInfo::SetAppFlags(uint32 flags)
{
    if (InitCheck() != B_OK)
        return not_set();
    return write_info(*fNode, info::kAppFlags, kAppFlagsType,
                      std::string(reinterpret_cast<const char*>(&flags), sizeof(flags)));
}

status_t BAppFileInfo::RemoveAppFlags()
{
    return InitCheck() == B_OK ? remove_info(*fNode, info::kAppFlags) : not_set();
}

// ---- Types

status_t BAppFileInfo::_UpdateDatabase()
{
    char signature[B_MIME_TYPE_LENGTH];
    if (read_info_text(*fNode, info::kSignature, signature, sizeof(signature)) != B_OK)
        return B_OK;
    return create_app_meta_mime(path_of_node(*fNode).c_str(), false, true,
                                B_UPDATE_MIME_INFO_FORCE_UPDATE_ALL);
}

status_t BAppFileInfo::GetSupportedTypes(BMessage* types) const
{
    if (types == nullptr)
        return fail(EINVAL);
    if (InitCheck() != B_OK)
        return not_set();
    if (const auto value = read_info(*fNode, info::kSupportedTypes)) {
        BMemoryIO bytes(value->data(), value->size());
        status_t status = types->Unflatten(&bytes);
        return status == B_OK ? status : fail_again(status);
    }
    const ApplicationRef application = find_application_of(path_of_node(*fNode));
    if (application == nullptr)
        return fail(ENOENT);
    types->MakeEmpty();
    for (const std::string& type : application->types)
        types->AddString("types", type.c_str());
    return B_OK;
}

status_t BAppFileInfo::SetSupportedTypes(const BMessage* types, bool updateMimeDB, bool)
{
    if (InitCheck() != B_OK)
        return not_set();
    status_t status;
    if (types == nullptr) {
        status = remove_info(*fNode, info::kSupportedTypes);
    } else {
        const char* type = nullptr;
        for (int32 i = 0; types->FindString("types", i, &type) == B_OK; i++) {
            if (!is_mime_name(type))
                return fail(EINVAL);
        }
        std::string bytes(static_cast<size_t>(types->FlattenedSize()), '\0');
        status = types->Flatten(bytes.data(), static_cast<ssize_t>(bytes.size()));
        if (status == B_OK)
            status = write_info(*fNode, info::kSupportedTypes, B_MESSAGE_TYPE, bytes);
    }
    return status == B_OK && updateMimeDB ? _UpdateDatabase() : status;
}

status_t BAppFileInfo::SetSupportedTypes(const BMessage* types, bool syncAll)
{
    return SetSupportedTypes(types, true, syncAll);
}

status_t BAppFileInfo::SetSupportedTypes(const BMessage* types)
{
    return SetSupportedTypes(types, true, false);
}

// True if `accept` holds for one of the supported types.
template <class Accept>
static bool any_supported(const BAppFileInfo& info, Accept accept)
{
    BMessage types;
    const char* type = nullptr;
    if (info.GetSupportedTypes(&types) != B_OK)
        return false;
    for (int32 i = 0; types.FindString("types", i, &type) == B_OK; i++) {
        if (accept(BMimeType(type)))
            return true;
    }
    return false;
}

bool BAppFileInfo::IsSupportedType(const char* type) const
{
    const BMimeType wanted(type);
    return wanted.IsValid() && any_supported(*this, [&](const BMimeType& supported) {
               return supported == B_FILE_MIME_TYPE || supported.Contains(&wanted);
           });
}

bool BAppFileInfo::Supports(BMimeType* type) const
{
    const auto contains = [&](const BMimeType& supported) { return supported.Contains(type); };
    return type != nullptr && type->IsValid() && any_supported(*this, contains);
}

// ---- Icons and version

status_t BAppFileInfo::GetIcon(BBitmap* icon, icon_size which) const
{
    status_t status = BNodeInfo::GetIcon(icon, which);
    if (status == B_OK || InitCheck() != B_OK || check_icon(icon, which) != B_OK)
        return status;
    const ApplicationRef application = find_application_of(path_of_node(*fNode));
    return application != nullptr ? load_theme_icon({application->icon}, icon, which)
                                  : fail(ENOENT);
}

status_t BAppFileInfo::SetIcon(const BBitmap* icon, icon_size which, bool updateMimeDB)
{
    return SetIconForType(nullptr, icon, which, updateMimeDB);
}

status_t BAppFileInfo::SetIcon(const BBitmap* icon, icon_size which)
{
    return SetIcon(icon, which, true);
}

status_t BAppFileInfo::GetIcon(uint8** data, size_t* size) const
{
    return GetIconForType(nullptr, data, size);
}

status_t BAppFileInfo::SetIcon(const uint8* data, size_t size, bool updateMimeDB)
{
    return SetIconForType(nullptr, data, size, updateMimeDB);
}

status_t BAppFileInfo::SetIcon(const uint8* data, size_t size) { return SetIcon(data, size, true); }

status_t BAppFileInfo::GetVersionInfo(version_info* info, version_kind kind) const
{
    if (info == nullptr || (kind != B_APP_VERSION_KIND && kind != B_SYSTEM_VERSION_KIND))
        return fail(EINVAL);
    if (InitCheck() != B_OK)
        return not_set();
    const auto value = read_info(*fNode, info::kVersion);
    if (!value)
        return host_failure();
    const size_t start = kind == B_APP_VERSION_KIND ? 0 : sizeof(*info);
    if (value->size() < start + sizeof(*info))
        return fail(ENOENT);
    memcpy(info, value->data() + start, sizeof(*info));
    info->short_info[sizeof(info->short_info) - 1] = '\0';
    info->long_info[sizeof(info->long_info) - 1] = '\0';
    return B_OK;
}

status_t BAppFileInfo::SetVersionInfo(const version_info* info, version_kind kind)
{
    if (kind != B_APP_VERSION_KIND && kind != B_SYSTEM_VERSION_KIND)
        return fail(EINVAL);
    if (InitCheck() != B_OK)
        return not_set();
    if (info == nullptr)
        return remove_info(*fNode, info::kVersion);
    std::string value = read_info(*fNode, info::kVersion).value_or("");
    value.resize(2 * sizeof(*info));
    memcpy(value.data() + (kind == B_APP_VERSION_KIND ? 0 : sizeof(*info)), info, sizeof(*info));
    return write_info(*fNode, info::kVersion, kVersionType, value);
}

// ---- Icons for documents; without a type the application's own

static std::string vector_attribute(const char* type)
{
    return type != nullptr ? std::string(info::kVectorIcon) + ":" + type : info::kVectorIcon;
}

status_t BAppFileInfo::GetIconForType(const char* type, BBitmap* icon, icon_size which) const
{
    if (type == nullptr)
        return GetIcon(icon, which);
    if (InitCheck() != B_OK)
        return not_set();
    if (!is_mime_name(type))
        return fail(EINVAL);
    return read_info_icon(*fNode, icon_attribute(which, type), icon, which);
}

status_t BAppFileInfo::SetIconForType(const char* type, const BBitmap* icon, icon_size which,
                                      bool updateMimeDB)
{
    if (InitCheck() != B_OK)
        return not_set();
    if (type != nullptr && !is_mime_name(type))
        return fail(EINVAL);
    status_t status = write_info_icon(*fNode, icon_attribute(which, type), icon, which);
    char signature[B_MIME_TYPE_LENGTH];
    if (status != B_OK || !updateMimeDB ||
        read_info_text(*fNode, info::kSignature, signature, sizeof(signature)) != B_OK)
        return status;
    BMimeType application(signature);
    return icon != nullptr || application.IsInstalled()
               ? application.SetIconForType(type, icon, which)
               : B_OK;
}

status_t BAppFileInfo::SetIconForType(const char* type, const BBitmap* icon, icon_size which)
{
    return SetIconForType(type, icon, which, true);
}

status_t BAppFileInfo::GetIconForType(const char* type, uint8** data, size_t* size) const
{
    if (InitCheck() != B_OK)
        return not_set();
    if (type != nullptr && !is_mime_name(type))
        return fail(EINVAL);
    return read_info_bytes(*fNode, vector_attribute(type), data, size);
}

status_t BAppFileInfo::SetIconForType(const char* type, const uint8* data, size_t size,
                                      bool updateMimeDB)
{
    if (InitCheck() != B_OK)
        return not_set();
    if (type != nullptr && !is_mime_name(type))
        return fail(EINVAL);
    status_t status = write_info_bytes(*fNode, vector_attribute(type), data, size);
    char signature[B_MIME_TYPE_LENGTH];
    if (status != B_OK || !updateMimeDB ||
        read_info_text(*fNode, info::kSignature, signature, sizeof(signature)) != B_OK)
        return status;
    BMimeType application(signature);
    return (data != nullptr && size > 0) || application.IsInstalled()
               ? application.SetIconForType(type, data, size)
               : B_OK;
}

status_t BAppFileInfo::SetIconForType(const char* type, const uint8* data, size_t size)
{
    return SetIconForType(type, data, size, true);
}

// ---- Places

void BAppFileInfo::SetInfoLocation(info_location) {}

bool BAppFileInfo::IsUsingAttributes() const { return InitCheck() == B_OK; }

bool BAppFileInfo::IsUsingResources() const { return false; }
