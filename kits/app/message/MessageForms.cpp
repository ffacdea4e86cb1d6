#include "app/message/MessageForms.h"

#include <Message.h>
#include <TypeConstants.h>

#include <string.h>

#include <string>
#include <string_view>
#include <utility>

#include "support/ValidUTF8.h"

namespace BPrivate {

status_t add_message_form(const BMessage& message, const char* type, server::ClipboardForms* forms)
{
    std::string flat(static_cast<size_t>(message.FlattenedSize()), '\0');
    const status_t status = message.Flatten(flat.data(), static_cast<ssize_t>(flat.size()));
    if (status == B_OK)
        forms->push_back({type, std::move(flat)});
    return status;
}

void add_mime_forms(const BMessage& message, const char* except, server::ClipboardForms* forms)
{
    char* name;
    type_code type;
    for (int32 i = 0; message.GetInfo(B_MIME_TYPE, i, &name, &type) == B_OK; i++) {
        const void* bytes;
        ssize_t size;
        if (strchr(name, '/') == nullptr || strcmp(name, except) == 0 ||
            message.FindData(name, B_MIME_TYPE, &bytes, &size) != B_OK)
            continue;
        const std::string_view value(static_cast<const char*>(bytes), static_cast<size_t>(size));
        const bool is_text = strcmp(name, server::kTextForm) == 0;
        forms->push_back({name, is_text ? valid_utf8(value) : std::string(value)});
    }
}

}  // namespace BPrivate
