// What MIME strings look like on BeOS.

#include "storage/mime/MimeNames.h"

#include <string.h>

#include <StorageDefs.h>

namespace storage {

bool is_mime_character(char c)
{
    return c != '\0' && strchr(" \t\n\v\f\r/<>@,;:\"()[]?=\\", c) == nullptr;
}

bool is_mime_name(const char* text)
{
    if (text == nullptr)
        return false;
    const size_t length = strlen(text);
    if (length == 0 || length >= B_MIME_TYPE_LENGTH)
        return false;
    const char* slash = strchr(text, '/');
    if (slash == text || slash == text + length - 1)
        return false;
    for (const char* c = text; *c != '\0'; c++) {
        if (c != slash && !is_mime_character(*c))
            return false;
    }
    return true;
}

}  // namespace storage
