// Attributes of nodes: their encoding as extended attributes, and the calls. Any thread.

#include "storage/Attributes.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/xattr.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include <TypeConstants.h>

#include "support/HostErrors.h"
#include "support/UTF8Characters.h"

namespace storage {

using BPrivate::fail;
using BPrivate::host_failure;

static const std::string_view kPrefix = "user.";
static const std::string_view kTypePrefix = "user.beos-type.";
static const size_t kMaxHostName = 255;
static const size_t kMaxValue = 64 * 1024;

// Attributes that desktops know by a name of their own, and such whose text is of another type than
// most.
static const struct {
    std::string_view name;
    std::string_view host_name;
    type_code type;
} kHostNames[] = {
    {"BEOS:TYPE", "mime_type", B_MIME_STRING_TYPE},
    {"BEOS:PREF_APP", "BEOS:PREF_APP", B_MIME_STRING_TYPE},
    {"BEOS:PPATH", "BEOS:PPATH", B_MIME_STRING_TYPE},
    {"BEOS:APP_SIG", "BEOS:APP_SIG", B_MIME_STRING_TYPE},
};

struct HostName {
    std::string value;      // the name of the value
    std::string companion;  // the name of its type
    type_code text_type;    // of text without a companion
};

static status_t host_name(const char* name, HostName* host)
{
    if (name == nullptr || name[0] == '\0')
        return fail(EINVAL);
    std::string_view leaf = name;
    host->text_type = B_STRING_TYPE;
    for (const auto& row : kHostNames) {
        if (leaf == row.name) {
            leaf = row.host_name;
            host->text_type = row.type;
        }
    }
    host->value = std::string(kPrefix).append(leaf);
    host->companion = std::string(kTypePrefix).append(leaf);
    if (host->value.starts_with(kTypePrefix))
        return fail(EINVAL);
    return host->value.size() <= kMaxHostName ? B_OK : fail(ENAMETOOLONG);
}

// Reads what may grow meanwhile. `read` takes a buffer and its size, as the host's calls do: it
// asks for the size with 0, and fails with ERANGE when the buffer is too small.
template <class Read>
static status_t read_growing(std::string* bytes, Read read)
{
    bytes->resize(256);  // most are shorter
    while (true) {
        ssize_t size = read(bytes->data(), bytes->size());
        if (size >= 0) {
            bytes->resize(size);
            return B_OK;
        }
        if (errno == ERANGE)
            size = read(nullptr, 0);
        if (size < 0) {
            bytes->clear();
            return host_failure();
        }
        bytes->resize(size + 1);  // never 0, which would only ask again
    }
}

static status_t get_host_value(const char* path, const std::string& name, std::string* value)
{
    return read_growing(value, [&](char* buffer, size_t size) {
        return getxattr(path, name.c_str(), buffer, size);
    });
}

static status_t set_host_value(const char* path, const std::string& name, const std::string& value)
{
    if (name.size() > kMaxHostName)
        return fail(ENAMETOOLONG);
    return setxattr(path, name.c_str(), value.data(), value.size(), 0) == 0 ? B_OK : host_failure();
}

// UTF-8 without zero bytes.
static bool is_text(std::string_view bytes)
{
    for (size_t at = 0; at < bytes.size();) {
        const size_t length =
            BPrivate::utf8_char_length(bytes.data() + at, static_cast<int32>(bytes.size() - at));
        if (bytes[at] == '\0' || (length == 1 && (bytes[at] & 0x80) != 0))
            return false;
        at += length;
    }
    return true;
}

struct Type {
    type_code code;
    bool terminated;  // the value lacks its terminator

    bool operator==(const Type&) const = default;
};

static Type type_without_companion(const HostName& host, std::string_view value)
{
    if (is_text(value))
        return {host.text_type, true};
    return {B_RAW_TYPE, false};
}

static const std::string_view kTerminated = "+0";

static std::string write_type(const Type& type)
{
    char text[16];
    char letters[4];
    for (int i = 0; i < 4; i++)
        letters[i] = static_cast<char>(type.code >> (24 - 8 * i));
    const bool prints = std::all_of(letters, letters + 4, [](char c) { return c > 32 && c < 127; });
    if (prints)
        snprintf(text, sizeof(text), "%.4s", letters);
    else
        snprintf(text, sizeof(text), "0x%08X", static_cast<unsigned>(type.code));
    return std::string(text).append(type.terminated ? kTerminated : "");
}

static std::optional<Type> read_type(std::string_view text)
{
    Type type = {0, false};
    if (text.ends_with(kTerminated)) {
        type.terminated = true;
        text.remove_suffix(kTerminated.size());
    }
    if (text.size() == 4) {
        for (char c : text)
            type.code = type.code << 8 | static_cast<uint8>(c);
        return type;
    }
    if (text.size() != 10 || !text.starts_with("0x"))
        return std::nullopt;
    char* end = nullptr;
    const std::string digits(text);
    type.code = static_cast<type_code>(strtoul(digits.c_str(), &end, 16));
    return *end == '\0' ? std::optional(type) : std::nullopt;
}

static status_t read_decoded(const char* path, const HostName& host, Attribute* attribute)
{
    status_t status = get_host_value(path, host.value, &attribute->bytes);
    if (status != B_OK)
        return status;
    std::string companion;
    std::optional<Type> type;
    const int before = errno;
    if (get_host_value(path, host.companion, &companion) == B_OK)
        type = read_type(companion);
    errno = before;
    if (!type)
        type = type_without_companion(host, attribute->bytes);
    attribute->type = type->code;
    if (type->terminated && !attribute->bytes.ends_with('\0'))
        attribute->bytes.push_back('\0');
    return B_OK;
}

status_t read_attribute(const char* path, const char* name, Attribute* attribute)
{
    HostName host;
    status_t status = host_name(name, &host);
    return status == B_OK ? read_decoded(path, host, attribute) : status;
}

ssize_t read_attribute_at(const char* path, const char* name, off_t offset, void* buffer,
                          size_t length)
{
    if (offset < 0 || (buffer == nullptr && length > 0))
        return fail(EINVAL);
    Attribute attribute;
    status_t status = read_attribute(path, name, &attribute);
    if (status != B_OK)
        return status;
    const auto start = static_cast<size_t>(offset);
    if (start >= attribute.bytes.size() || length == 0)
        return 0;
    length = std::min(length, attribute.bytes.size() - start);
    memcpy(buffer, attribute.bytes.data() + start, length);
    return static_cast<ssize_t>(length);
}

// Writes the value and what tells its type. If the value finds no room, the type stays as it was.
static status_t write_encoded(const char* path, const HostName& host, Attribute attribute)
{
    Type type = {attribute.type, false};
    const bool may_lack_terminator = type.code == B_STRING_TYPE || type.code == B_MIME_STRING_TYPE;
    if (may_lack_terminator && attribute.bytes.ends_with('\0') &&
        is_text(std::string_view(attribute.bytes).substr(0, attribute.bytes.size() - 1))) {
        type.terminated = true;
        attribute.bytes.pop_back();
    }
    const bool needs_companion = type != type_without_companion(host, attribute.bytes);
    std::string former;
    const bool had_companion = get_host_value(path, host.companion, &former) == B_OK;
    if (needs_companion) {
        status_t status = set_host_value(path, host.companion, write_type(type));
        if (status != B_OK)
            return status;
    }
    status_t status = set_host_value(path, host.value, attribute.bytes);
    const int number = errno;
    if (status != B_OK && needs_companion) {
        if (had_companion)
            set_host_value(path, host.companion, former);
        else
            removexattr(path, host.companion.c_str());
    } else if (status == B_OK && had_companion && !needs_companion) {
        removexattr(path, host.companion.c_str());
    }
    errno = number;
    return status;
}

ssize_t write_attribute_at(const char* path, const char* name, type_code type, off_t offset,
                           const void* buffer, size_t length)
{
    HostName host;
    status_t status = host_name(name, &host);
    if (status != B_OK)
        return status;
    if (offset < 0 || (buffer == nullptr && length > 0))
        return fail(EINVAL);
    if (length > kMaxValue || static_cast<size_t>(offset) > kMaxValue - length)
        return fail(E2BIG);
    Attribute attribute = {type, {}};
    if (offset > 0) {
        status = read_decoded(path, host, &attribute);
        if (status != B_OK && errno != ENODATA)
            return status;
        attribute.type = type;
    }
    const size_t end = static_cast<size_t>(offset) + length;
    if (attribute.bytes.size() < end)
        attribute.bytes.resize(end);
    if (length > 0)
        memcpy(attribute.bytes.data() + offset, buffer, length);
    status = write_encoded(path, host, std::move(attribute));
    return status == B_OK ? static_cast<ssize_t>(length) : status;
}

status_t remove_attribute(const char* path, const char* name)
{
    HostName host;
    status_t status = host_name(name, &host);
    if (status != B_OK)
        return status;
    if (removexattr(path, host.value.c_str()) != 0)
        return host_failure();
    const int before = errno;
    removexattr(path, host.companion.c_str());
    errno = before;
    return B_OK;
}

status_t rename_attribute(const char* path, const char* from, const char* to)
{
    HostName target;
    status_t status = host_name(to, &target);
    Attribute attribute;
    if (status == B_OK)
        status = read_attribute(path, from, &attribute);
    if (status != B_OK || strcmp(from, to) == 0)
        return status;
    status = write_encoded(path, target, std::move(attribute));
    return status == B_OK ? remove_attribute(path, from) : status;
}

status_t get_attribute_info(const char* path, const char* name, attr_info* info)
{
    if (info == nullptr)
        return fail(EINVAL);
    Attribute attribute;
    status_t status = read_attribute(path, name, &attribute);
    if (status == B_OK) {
        info->type = attribute.type;
        info->size = static_cast<off_t>(attribute.bytes.size());
    }
    return status;
}

static std::string beos_name(std::string_view host_leaf)
{
    for (const auto& row : kHostNames) {
        if (host_leaf == row.host_name)
            return std::string(row.name);
    }
    return std::string(host_leaf);
}

status_t list_attributes(const char* path, std::vector<std::string>* names)
{
    std::string list;
    status_t status = read_growing(
        &list, [&](char* buffer, size_t size) { return listxattr(path, buffer, size); });
    if (status != B_OK)
        return status;
    names->clear();
    for (size_t at = 0; at < list.size();) {
        std::string_view name = list.c_str() + at;
        at += name.size() + 1;
        if (name.starts_with(kPrefix) && !name.starts_with(kTypePrefix))
            names->push_back(beos_name(name.substr(kPrefix.size())));
    }
    return B_OK;
}

bool has_attributes(const char* path)
{
    return getxattr(path, "user.beos-type.", nullptr, 0) >= 0 || errno == ENODATA;
}

}  // namespace storage
