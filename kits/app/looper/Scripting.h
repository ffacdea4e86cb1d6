#ifndef APP_SCRIPTING_H
#define APP_SCRIPTING_H

// Short ways for classes that answer scripting messages from a table of properties.

#include <Message.h>
#include <PropertyInfo.h>
#include <TypeConstants.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

inline bool knows_property(const property_info* table, BMessage* message, int32 index,
                           BMessage* specifier, int32 form, const char* property)
{
    BPropertyInfo info(const_cast<property_info*>(table));
    return info.FindMatch(message, index, specifier, form, property) >= 0;
}

// For GetSupportedSuites(): the name of the suite and its table.
inline status_t add_suite(BMessage* data, const char* name, const property_info* table)
{
    if (data == nullptr)
        return B_BAD_VALUE;
    BPropertyInfo info(const_cast<property_info*>(table));
    const status_t status = data->AddString("suites", name);
    return status == B_OK ? data->AddFlat("messages", &info) : status;
}

}  // namespace BPrivate

#endif  // APP_SCRIPTING_H
