#ifndef APP_SCRIPTING_H
#define APP_SCRIPTING_H

// Short ways for classes that answer scripting messages from a table of properties.

#include <AppDefs.h>
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

// Tells who sent a message that what its specifier names is not there.
inline void answer_missing(BMessage* message, status_t error, const char* what)
{
    BMessage reply(B_MESSAGE_NOT_UNDERSTOOD);
    reply.AddInt32("error", error);
    reply.AddString("message", what);
    message->SendReply(&reply);
}

// What is wrong with the name or the index of a specifier of that form.
inline status_t missing_error(int32 form)
{
    return form == B_NAME_SPECIFIER ? B_NAME_NOT_FOUND : B_BAD_INDEX;
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

/* Answers a message that gets or sets a property of the table; false if it is none of them. `get`
   adds the "result" to the reply it is given, `set` reads the "data" of the message; both are told
   the name of the property and return the error. */
template <class Get, class Set>
bool answer_property(const property_info* table, BMessage* message, Get get, Set set)
{
    if (!message->HasSpecifiers() ||
        (message->what != B_GET_PROPERTY && message->what != B_SET_PROPERTY))
        return false;
    int32 index, form;
    BMessage specifier;
    const char* property = nullptr;
    if (message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        !knows_property(table, message, index, &specifier, form, property))
        return false;
    BMessage reply(B_REPLY);
    const status_t status =
        message->what == B_GET_PROPERTY ? get(property, &reply) : set(property, *message);
    reply.AddInt32("error", status);
    message->SendReply(&reply);
    return true;
}

// A row of such a table: a value that can be read and set.
#define SCRIPT_VALUE(name, type)                                                             \
    {                                                                                        \
        name, {B_GET_PROPERTY, B_SET_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {type}, {} \
    }

}  // namespace BPrivate

#endif  // APP_SCRIPTING_H
