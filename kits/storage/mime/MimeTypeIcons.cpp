// BMimeType: icons.

#include <MimeType.h>

#include <errno.h>
#include <string.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Bitmap.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/DesktopEntries.h"
#include "support/HostErrors.h"
#include "storage/mime/MimeNotes.h"
#include "storage/mime/MimeTypeRecords.h"
#include "storage/mime/SharedMime.h"
#include "storage/desktop/ThemeIcons.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::not_set;

// The name of the icon of our own for a type, which no theme has.
static std::string own_icon_name(const std::string& type)
{
    std::string name = "beos-" + lower_case(SharedMime::Get()->CanonicalName(type));
    std::replace(name.begin(), name.end(), '/', '-');
    return name;
}

status_t BMimeType::GetIcon(BBitmap* icon, icon_size size) const
{
    status_t status = check_icon(icon, size);
    if (status == B_OK)
        status = _CheckInstalled();
    if (status != B_OK)
        return status;
    std::vector<std::string> names;
    if (const auto own = type_value(fType, keys::kIcon))
        names.push_back(*own);
    const auto database = SharedMime::Get();
    if (database->Contains(fType)) {
        // The theme's drawing for a kind says nothing of a type that a program has installed.
        for (const std::string& name :
             database->IsOwn(fType) ? database->OwnIconNames(fType) : database->IconNames(fType))
            names.push_back(name);
    } else if (const ApplicationRef application = find_application(fType)) {
        names.push_back(application->icon);
    } else if (IsSupertypeOnly()) {
        names.push_back(lower_case(fType) + "-x-generic");
    }
    return load_theme_icon(names, icon, size);
}

static std::string fingerprint(const BBitmap& icon)
{
    const std::string_view bits(static_cast<const char*>(icon.Bits()),
                                static_cast<size_t>(icon.BitsLength()));
    return std::to_string(std::hash<std::string_view>()(bits));
}

status_t BMimeType::SetIcon(const BBitmap* icon, icon_size size)
{
    if (fStatus != B_OK)
        return not_set();
    status_t status = icon != nullptr ? check_icon(icon, size) : B_OK;
    if (status != B_OK)
        return status;
    const std::string name = own_icon_name(fType);
    if (icon == nullptr && !type_value(fType, keys::kIcon))
        return _CheckInstalled();
    status = write_users_icon(name, icon, size);
    if (status == B_OK) {
        const bool mini = size == B_MINI_ICON;
        status = set_type_value(fType, mini ? keys::kMiniIconState : keys::kLargeIconState,
                                icon != nullptr ? std::optional(fingerprint(*icon)) : std::nullopt);
    }
    if (status != B_OK)
        return status;
    // The theme's icon counts again when both of ours are gone.
    const bool gone = icon == nullptr && !has_theme_icon(name, B_MINI_ICON);
    if (gone)
        return set_type_value(fType, keys::kIcon, std::nullopt);
    return type_value(fType, keys::kIcon) ? B_OK : set_type_value(fType, keys::kIcon, name);
}

// ---- Kept as they are

static status_t copy_bytes(const std::optional<std::string>& noted, uint8** data, size_t* size)
{
    if (!noted)
        return fail(ENOENT);
    const std::string bytes = decode_bytes(*noted);
    *data = new uint8[bytes.size()];
    memcpy(*data, bytes.data(), bytes.size());
    *size = bytes.size();
    return B_OK;
}

status_t BMimeType::GetIcon(uint8** _data, size_t* _size) const
{
    if (_data == nullptr || _size == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    return status == B_OK ? copy_bytes(type_value(fType, keys::kVectorIcon), _data, _size) : status;
}

status_t BMimeType::SetIcon(const uint8* data, size_t size)
{
    if (fStatus != B_OK)
        return not_set();
    const bool given = data != nullptr && size > 0;
    return set_type_value(fType, keys::kVectorIcon,
                          given ? std::optional(encode_bytes(data, size)) : std::nullopt);
}

status_t BMimeType::GetIconForType(const char* type, BBitmap* icon, icon_size which) const
{
    if (type == nullptr)
        return GetIcon(icon, which);
    status_t status = IsValid(type) ? check_icon(icon, which) : fail(EINVAL);
    if (status == B_OK)
        status = _CheckInstalled();
    if (status != B_OK)
        return status;
    const auto noted = type_value(fType, icon_for_key(std::to_string(which), type).c_str());
    const std::string bits = decode_bytes(noted.value_or(""));
    if (bits.size() != static_cast<size_t>(which) * which * 4)
        return fail(ENOENT);
    BBitmap kept(icon->Bounds(), 0, B_RGBA32, which * 4);
    memcpy(kept.Bits(), bits.data(), bits.size());
    return copy_icon(kept, icon);
}

status_t BMimeType::SetIconForType(const char* type, const BBitmap* icon, icon_size which)
{
    if (type == nullptr)
        return SetIcon(icon, which);
    if (fStatus != B_OK)
        return not_set();
    if (!IsValid(type))
        return fail(EINVAL);
    const std::string key = icon_for_key(std::to_string(which), type);
    if (icon == nullptr)
        return set_type_value(fType, key, std::nullopt);
    status_t status = check_icon(icon, which);
    if (status != B_OK)
        return status;
    BBitmap copy(icon->Bounds(), 0, B_RGBA32, which * 4);
    status = copy.ImportBits(icon);
    if (status != B_OK)
        return status;
    const size_t length = static_cast<size_t>(which) * which * 4;
    return set_type_value(fType, key, encode_bytes(copy.Bits(), length));
}

status_t BMimeType::GetIconForType(const char* type, uint8** _data, size_t* _size) const
{
    if (type == nullptr)
        return GetIcon(_data, _size);
    if (_data == nullptr || _size == nullptr || !IsValid(type))
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    return copy_bytes(type_value(fType, icon_for_key("Vector", type).c_str()), _data, _size);
}

status_t BMimeType::SetIconForType(const char* type, const uint8* data, size_t size)
{
    if (type == nullptr)
        return SetIcon(data, size);
    if (fStatus != B_OK)
        return not_set();
    if (!IsValid(type))
        return fail(EINVAL);
    const bool given = data != nullptr && size > 0;
    return set_type_value(fType, icon_for_key("Vector", type),
                          given ? std::optional(encode_bytes(data, size)) : std::nullopt);
}
