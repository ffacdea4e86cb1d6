// Attributes of files and executables about themselves: text, bytes and icons. Any thread.

#include "storage/mime/InfoAttributes.h"

#include <errno.h>
#include <string.h>

#include <Bitmap.h>
#include <Node.h>
#include <TypeConstants.h>
#include <fs_attr.h>

#include "storage/desktop/DataFolders.h"
#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/StorageAccess.h"
#include "storage/desktop/ThemeIcons.h"

using BPrivate::StorageAccess;

namespace storage {

using BPrivate::fail;
using BPrivate::host_failure;

std::string icon_attribute(icon_size which, const char* type)
{
    const std::string name = which == B_LARGE_ICON ? "BEOS:L:" : "BEOS:M:";
    return name + (type != nullptr ? lower_case(type) : "STD_ICON");
}

std::optional<std::string> read_info(const BNode& node, const char* name)
{
    attr_info info;
    if (node.GetAttrInfo(name, &info) != B_OK)
        return std::nullopt;
    std::string value(static_cast<size_t>(info.size), '\0');
    const ssize_t size = node.ReadAttr(name, B_RAW_TYPE, 0, value.data(), value.size());
    if (size < 0)
        return std::nullopt;
    value.resize(static_cast<size_t>(size));
    return value;
}

status_t write_info(BNode& node, const char* name, type_code type, const std::string& value)
{
    const ssize_t size = node.WriteAttr(name, type, 0, value.data(), value.size());
    return size < 0 ? static_cast<status_t>(size) : B_OK;
}

status_t remove_info(BNode& node, const char* name)
{
    const int before = errno;
    status_t status = node.RemoveAttr(name);
    if (status == B_ENTRY_NOT_FOUND) {
        errno = before;
        status = B_OK;
    }
    return status;
}

status_t read_info_text(const BNode& node, const char* name, char* text, size_t size)
{
    if (text == nullptr)
        return fail(EINVAL);
    const std::optional<std::string> value = read_info(node, name);
    if (!value)
        return host_failure();
    const size_t length = strnlen(value->data(), value->size());
    if (length >= size) {
        errno = EBADMSG;
        return B_BAD_DATA;
    }
    memcpy(text, value->data(), length);
    text[length] = '\0';
    return B_OK;
}

status_t write_info_text(BNode& node, const char* name, const char* text)
{
    if (text == nullptr || text[0] == '\0')
        return remove_info(node, name);
    return write_info(node, name, B_MIME_STRING_TYPE, std::string(text, strlen(text) + 1));
}

status_t read_info_icon(const BNode& node, const std::string& name, BBitmap* icon, icon_size which)
{
    status_t status = check_icon(icon, which);
    if (status != B_OK)
        return status;
    const std::optional<std::string> bits = read_info(node, name.c_str());
    if (!bits)
        return host_failure();
    if (bits->size() != static_cast<size_t>(which) * which) {
        errno = EBADMSG;
        return B_BAD_DATA;
    }
    return icon->ImportBits(bits->data(), static_cast<int32>(bits->size()), which, 0, B_CMAP8);
}

status_t write_info_icon(BNode& node, const std::string& name, const BBitmap* icon, icon_size which)
{
    if (icon == nullptr)
        return remove_info(node, name.c_str());
    status_t status = check_icon(icon, which);
    if (status != B_OK)
        return status;
    BBitmap copy(icon->Bounds(), 0, B_CMAP8, which);
    status = copy_icon(*icon, &copy);
    if (status != B_OK)
        return status;
    const std::string bits(static_cast<const char*>(copy.Bits()),
                           static_cast<size_t>(which) * which);
    return write_info(node, name.c_str(),
                      which == B_LARGE_ICON ? B_LARGE_ICON_TYPE : B_MINI_ICON_TYPE, bits);
}

status_t read_info_bytes(const BNode& node, const std::string& name, uint8** data, size_t* size)
{
    if (data == nullptr || size == nullptr)
        return fail(EINVAL);
    const std::optional<std::string> value = read_info(node, name.c_str());
    if (!value)
        return host_failure();
    *data = new uint8[value->size()];
    memcpy(*data, value->data(), value->size());
    *size = value->size();
    return B_OK;
}

status_t write_info_bytes(BNode& node, const std::string& name, const uint8* data, size_t size)
{
    if (data == nullptr || size == 0)
        return remove_info(node, name.c_str());
    return write_info(node, name.c_str(), B_VECTOR_ICON_TYPE,
                      std::string(reinterpret_cast<const char*>(data), size));
}

std::string path_of_node(const BNode& node)
{
    std::string path;
    return path_of_descriptor(StorageAccess::Descriptor(node), &path) == B_OK ? path : "";
}

}  // namespace storage
