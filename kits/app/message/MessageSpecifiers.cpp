// BMessage as a scripting message: the stack of specifiers.

#include <Message.h>

#include <TypeConstants.h>

static const char* const kSpecifiers = "specifiers";

status_t BMessage::AddSpecifier(const char* property)
{
    BMessage specifier(B_DIRECT_SPECIFIER);
    const status_t status = specifier.AddString("property", property);
    return status == B_OK ? AddSpecifier(&specifier) : status;
}

status_t BMessage::AddSpecifier(const char* property, int32 index)
{
    BMessage specifier(B_INDEX_SPECIFIER);
    status_t status = specifier.AddString("property", property);
    if (status == B_OK)
        status = specifier.AddInt32("index", index);
    return status == B_OK ? AddSpecifier(&specifier) : status;
}

status_t BMessage::AddSpecifier(const char* property, int32 index, int32 range)
{
    if (range < 0)
        return B_BAD_VALUE;
    BMessage specifier(B_RANGE_SPECIFIER);
    status_t status = specifier.AddString("property", property);
    if (status == B_OK)
        status = specifier.AddInt32("index", index);
    if (status == B_OK)
        status = specifier.AddInt32("range", range);
    return status == B_OK ? AddSpecifier(&specifier) : status;
}

status_t BMessage::AddSpecifier(const char* property, const char* name)
{
    BMessage specifier(B_NAME_SPECIFIER);
    status_t status = specifier.AddString("property", property);
    if (status == B_OK)
        status = specifier.AddString("name", name);
    return status == B_OK ? AddSpecifier(&specifier) : status;
}

status_t BMessage::AddSpecifier(const BMessage* specifier)
{
    const status_t status = AddMessage(kSpecifiers, specifier);
    if (status == B_OK)
        ++fCurrentSpecifier;
    return status;
}

status_t BMessage::SetCurrentSpecifier(int32 index)
{
    if (!HasMessage(kSpecifiers, index))
        return B_BAD_INDEX;
    fCurrentSpecifier = index;
    return B_OK;
}

status_t BMessage::GetCurrentSpecifier(int32* index, BMessage* specifier, int32* what,
                                       const char** property) const
{
    if (index != nullptr)
        *index = fCurrentSpecifier;
    if (fCurrentSpecifier < 0 || !WasDelivered())
        return B_BAD_SCRIPT_SYNTAX;
    if (specifier == nullptr)
        return B_OK;
    if (FindMessage(kSpecifiers, fCurrentSpecifier, specifier) != B_OK)
        return B_BAD_SCRIPT_SYNTAX;
    if (what != nullptr)
        *what = specifier->what;
    if (property != nullptr && specifier->FindString("property", property) != B_OK)
        return B_BAD_SCRIPT_SYNTAX;
    return B_OK;
}

bool BMessage::HasSpecifiers() const { return HasMessage(kSpecifiers); }

status_t BMessage::PopSpecifier()
{
    if (fCurrentSpecifier < 0 || !WasDelivered())
        return B_BAD_VALUE;
    --fCurrentSpecifier;
    return B_OK;
}
