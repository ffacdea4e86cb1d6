#ifndef STORAGE_ATTRIBUTES_H
#define STORAGE_ATTRIBUTES_H

#include <string>
#include <vector>

#include <SupportDefs.h>
#include <fs_attr.h>

// BeOS attributes as the host's extended attributes.
//
// The attribute NAME is the host's "user.NAME", but for the few names that desktops have their own
// for (kHostNames). Its value is stored byte for byte, except that text (B_STRING_TYPE,
// B_MIME_STRING_TYPE) is stored without its terminator, as other programs write and expect it.
// A value without a type of its own is B_STRING_TYPE, with a terminator, if it is text (UTF-8
// without zero bytes), else B_RAW_TYPE. Any other type is told by a companion, the host's attribute
// "user.beos-type.NAME": the four characters of the type code, or "0x" and eight hexadecimal digits
// where they do not print. It is followed by "+0" if the value lacks its terminator.
namespace [[gnu::visibility("hidden")]] storage {

struct Attribute {
    type_code type;
    std::string bytes;
};

// `path` is the node's, or names it by a descriptor; links are followed. Failures leave the
// host's number in errno.
status_t read_attribute(const char* path, const char* name, Attribute* attribute);
ssize_t read_attribute_at(const char* path, const char* name, off_t offset, void* buffer,
                          size_t length);
ssize_t write_attribute_at(const char* path, const char* name, type_code type, off_t offset,
                           const void* buffer, size_t length);
status_t remove_attribute(const char* path, const char* name);
status_t rename_attribute(const char* path, const char* from, const char* to);
status_t get_attribute_info(const char* path, const char* name, attr_info* info);
status_t list_attributes(const char* path, std::vector<std::string>* names);

// Whether the file system of `path` keeps attributes.
bool has_attributes(const char* path);

}  // namespace storage

#endif  // STORAGE_ATTRIBUTES_H
