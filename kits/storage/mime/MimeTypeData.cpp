// BMimeType: what the type database says of the type, but for icons.

#include <MimeType.h>

#include <errno.h>
#include <string.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <DataIO.h>
#include <Entry.h>
#include <Message.h>
#include <String.h>

#include <gio/gio.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/DesktopEntries.h"
#include "storage/Directories.h"
#include "storage/desktop/FileReplacement.h"
#include "support/HostErrors.h"
#include "storage/mime/MimeApplications.h"
#include "storage/mime/MimeNames.h"
#include "storage/mime/MimeNotes.h"
#include "storage/mime/MimePackages.h"
#include "storage/mime/MimeTypeRecords.h"
#include "storage/mime/SharedMime.h"
#include "storage/mime/SnifferRule.h"
#include "support/UTF8Characters.h"
#include "support/UriPaths.h"
#include "support/Held.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::fail_again;
using BPrivate::not_set;
using BPrivate::path_of_uri;
using BPrivate::uri_of_path;

status_t BMimeType::_CheckInstalled() const
{
    if (fStatus != B_OK)
        return not_set();
    return is_installed(fType) ? B_OK : fail(ENOENT);
}

status_t BMimeType::Install() { return fStatus == B_OK ? install_type(fType) : not_set(); }

status_t BMimeType::Delete() { return fStatus == B_OK ? delete_type(fType) : not_set(); }

bool BMimeType::IsInstalled() const { return fStatus == B_OK && is_installed(fType); }

// ---- Applications

static status_t copy_text(const std::string& text, char* buffer)
{
    const size_t length = BPrivate::utf8_fitting(text, B_MIME_TYPE_LENGTH - 1).size();
    memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return B_OK;
}

status_t BMimeType::GetPreferredApp(char* signature, app_verb) const
{
    if (signature == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    if (const ApplicationRef chosen = chosen_application(fType))
        return copy_text(chosen->signature, signature);
    if (const auto noted = type_value(fType, keys::kPreferredApp))
        return copy_text(*noted, signature);
    ApplicationRef application = find_application(fType);
    if (application == nullptr)
        application = default_application(fType);
    return application != nullptr ? copy_text(application->signature, signature) : fail(ENOENT);
}

static status_t choose(const char* type, const ApplicationRef& application)
{
    TypesLock lock;
    return choose_application(type, application);
}

status_t BMimeType::SetPreferredApp(const char* signature, app_verb)
{
    if (fStatus != B_OK)
        return not_set();
    if (signature == nullptr || signature[0] == '\0') {
        status_t status = set_type_value(fType, keys::kPreferredApp, std::nullopt);
        return status == B_OK ? choose(fType, nullptr) : status;
    }
    if (!is_mime_name(signature))
        return fail(EINVAL);
    // An application that the desktop does not know is noted; the desktop's list must not say
    // another one meanwhile.
    const bool is_listed = !IsSupertypeOnly() && fType[0] != '#';  // a line of that is a comment
    const ApplicationRef application = is_listed ? find_application(signature) : nullptr;
    status_t status = is_installed(fType) ? B_OK : install_type(fType);
    if (status == B_OK)
        status = choose(fType, application);
    if (status != B_OK)
        return status;
    return set_type_value(
        fType, keys::kPreferredApp,
        application == nullptr ? std::optional<std::string>(signature) : std::nullopt);
}

static status_t add_applications(const std::vector<ApplicationRef>& own,
                                 const std::vector<ApplicationRef>& parents, BMessage* message)
{
    std::set<std::string> told;
    int32 counts[2] = {0, 0};
    const std::vector<ApplicationRef>* const lists[2] = {&own, &parents};
    status_t status = B_OK;
    for (int i = 0; i < 2; i++) {
        for (const ApplicationRef& application : *lists[i]) {
            if (status != B_OK || !told.insert(application->id).second)
                continue;
            status = message->AddString("applications", application->signature.c_str());
            counts[i]++;
        }
    }
    if (status == B_OK)
        status = message->AddInt32("be:sub", counts[0]);
    return status == B_OK ? message->AddInt32("be:super", counts[1]) : status;
}

status_t BMimeType::GetSupportingApps(BMessage* signatures) const
{
    if (signatures == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    return add_applications(applications_for(fType), applications_for_parents(fType), signatures);
}

status_t BMimeType::GetWildcardApps(BMessage* wildcardApps)
{
    if (wildcardApps == nullptr)
        return fail(EINVAL);
    return add_applications(applications_for(B_FILE_MIME_TYPE), {}, wildcardApps);
}

status_t BMimeType::GetAppHint(entry_ref* ref) const
{
    if (ref == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    if (const auto hint = type_value(fType, keys::kAppHint)) {
        const std::string path = path_of_uri(*hint);
        return get_ref_for_path(path.empty() ? hint->c_str() : path.c_str(), ref);
    }
    const ApplicationRef application = find_application(fType);
    return application != nullptr ? get_ref_for_path(application->executable.c_str(), ref)
                                  : fail(ENOENT);
}

status_t BMimeType::SetAppHint(const entry_ref* ref)
{
    if (fStatus != B_OK)
        return not_set();
    if (ref == nullptr)
        return set_type_value(fType, keys::kAppHint, std::nullopt);
    std::string path;
    status_t status = path_of(ref, &path);
    return status == B_OK ? set_type_value(fType, keys::kAppHint, uri_of_path(path)) : status;
}

// ---- Descriptions

static bool is_description(const char* text)
{
    return strlen(text) < B_MIME_TYPE_LENGTH && g_utf8_validate(text, -1, nullptr) &&
           std::none_of(text, text + strlen(text), [](char c) { return c > 0 && c < ' '; });
}

// GIO makes one up from the name of a type that has none.
static std::string desktops_description(const std::string& type)
{
    const std::string copy = BPrivate::take_text(g_content_type_get_description(type.c_str()));
    return copy.find(type) == std::string::npos ? copy : "";
}

status_t BMimeType::GetShortDescription(char* description) const
{
    if (description == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    if (const auto noted = type_value(fType, keys::kShortDescription))
        return copy_text(*noted, description);
    const auto database = SharedMime::Get();
    std::string text;
    if (database->Contains(fType))
        text = desktops_description(database->CanonicalName(fType));
    else if (const ApplicationRef application = find_application(fType))
        text = application->name;
    return text.empty() ? fail(ENOENT) : copy_text(text, description);
}

status_t BMimeType::GetLongDescription(char* description) const
{
    if (description == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    const auto noted = type_value(fType, keys::kLongDescription);
    return noted ? copy_text(*noted, description) : fail(ENOENT);
}

static status_t set_description(const char* type, const char* key, const char* text)
{
    if (text == nullptr || text[0] == '\0')
        return set_type_value(type, key, std::nullopt);
    return is_description(text) ? set_type_value(type, key, text) : fail(EINVAL);
}

status_t BMimeType::SetShortDescription(const char* description)
{
    return fStatus == B_OK ? set_description(fType, keys::kShortDescription, description)
                           : not_set();
}

status_t BMimeType::SetLongDescription(const char* description)
{
    return fStatus == B_OK ? set_description(fType, keys::kLongDescription, description)
                           : not_set();
}

// ---- Attributes, extensions, rules

status_t BMimeType::GetAttrInfo(BMessage* info) const
{
    if (info == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    const auto noted = type_value(fType, keys::kAttrInfo);
    if (!noted)
        return fail(ENOENT);
    const std::string bytes = decode_bytes(*noted);
    BMemoryIO stream(bytes.data(), bytes.size());  // which ends where the bytes do
    status = info->Unflatten(&stream);
    return status == B_OK ? status : fail_again(status);
}

status_t BMimeType::SetAttrInfo(const BMessage* info)
{
    if (fStatus != B_OK)
        return not_set();
    if (info == nullptr)
        return set_type_value(fType, keys::kAttrInfo, std::nullopt);
    std::string bytes(static_cast<size_t>(info->FlattenedSize()), '\0');
    status_t status = info->Flatten(bytes.data(), static_cast<ssize_t>(bytes.size()));
    if (status != B_OK)
        return status;
    return set_type_value(fType, keys::kAttrInfo, encode_bytes(bytes.data(), bytes.size()));
}

status_t BMimeType::GetFileExtensions(BMessage* extensions) const
{
    if (extensions == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    const auto noted = type_value(fType, keys::kExtensions);
    for (const std::string& extension :
         noted ? split_extensions(*noted) : SharedMime::Get()->Extensions(fType)) {
        if (status == B_OK)
            status = extensions->AddString("extensions", extension.c_str());
    }
    return status;
}

status_t BMimeType::SetFileExtensions(const BMessage* extensions)
{
    if (fStatus != B_OK)
        return not_set();
    std::string value;
    const char* text = nullptr;
    for (int32 i = 0;
         extensions != nullptr && extensions->FindString("extensions", i, &text) == B_OK; i++) {
        const std::string extension = text[0] == '.' ? text + 1 : text;
        if (!is_extension(extension) || extension.find(';') != std::string::npos)
            return fail(EINVAL);
        value.append(extension).append(";");
    }
    return set_type_value(fType, keys::kExtensions,
                          extensions != nullptr ? std::optional(value) : std::nullopt);
}

status_t BMimeType::GetSnifferRule(BString* result) const
{
    if (result == nullptr)
        return fail(EINVAL);
    status_t status = _CheckInstalled();
    if (status != B_OK)
        return status;
    const auto noted = type_value(fType, keys::kSnifferRule);
    if (!noted)
        return fail(ENOENT);
    result->SetTo(noted->c_str());
    return B_OK;
}

status_t BMimeType::SetSnifferRule(const char* rule)
{
    if (fStatus != B_OK)
        return not_set();
    if (rule == nullptr || rule[0] == '\0')
        return set_type_value(fType, keys::kSnifferRule, std::nullopt);
    status_t status = CheckSnifferRule(rule, nullptr);
    if (status == B_OK && !g_utf8_validate(rule, -1, nullptr))
        status = fail(EINVAL);
    return status == B_OK ? set_type_value(fType, keys::kSnifferRule, rule) : status;
}

status_t BMimeType::CheckSnifferRule(const char* rule, BString* parseError)
{
    if (rule == nullptr)
        return fail(EINVAL);
    SnifferRule parsed;
    std::string error;
    if (parse_sniffer_rule(rule, &parsed, &error) == B_OK)
        return B_OK;
    if (parseError != nullptr)
        parseError->SetTo(error.c_str());
    errno = EINVAL;
    return B_BAD_MIME_SNIFFER_RULE;
}

// ---- All types

status_t BMimeType::GetInstalledSupertypes(BMessage* supertypes)
{
    if (supertypes == nullptr)
        return fail(EINVAL);
    std::set<std::string> told;
    status_t status = B_OK;
    for (const std::string& type : installed_types()) {
        const std::string supertype = type.substr(0, type.find('/'));
        if (status == B_OK && told.insert(lower_case(supertype)).second)
            status = supertypes->AddString("super_types", supertype.c_str());
    }
    return status;
}

status_t BMimeType::GetInstalledTypes(BMessage* types) { return GetInstalledTypes(nullptr, types); }

status_t BMimeType::GetInstalledTypes(const char* supertype, BMessage* subtypes)
{
    if (subtypes == nullptr || (supertype != nullptr && !is_mime_name(supertype)))
        return fail(EINVAL);
    const std::string start = supertype != nullptr ? lower_case(supertype) + "/" : "";
    status_t status = B_OK;
    for (const std::string& type : installed_types()) {
        if (status == B_OK && lower_case(type).starts_with(start))
            status = subtypes->AddString("types", type.c_str());
    }
    return status;
}
