// What is kept of types: in our notes, and from there in the desktop's database. Any thread.

#include "storage/mime/MimeTypeRecords.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/DesktopEntries.h"
#include "storage/desktop/FileReplacement.h"
#include "support/HostErrors.h"
#include "storage/mime/MimeApplications.h"
#include "storage/mime/MimeNotes.h"
#include "storage/mime/MimePackages.h"
#include "storage/mime/SharedMime.h"
#include "storage/desktop/ThemeIcons.h"

namespace storage {

using BPrivate::fail;

static bool is_supertype(const std::string& type) { return type.find('/') == std::string::npos; }

// The name that notes and packages go by.
static std::string own_name(const std::string& type)
{
    return SharedMime::Get()->CanonicalName(type);
}

static bool has_subtypes(const std::string& supertype)
{
    const std::string start = lower_case(supertype) + "/";
    const auto begins = [&](const std::string& type) {
        return lower_case(type).starts_with(start);
    };
    const auto& types = SharedMime::Get()->Types();
    const auto noted = MimeNotes::Get()->Types();
    return start == "application/" || std::any_of(types.begin(), types.end(), begins) ||
           std::any_of(noted.begin(), noted.end(), begins);
}

bool is_installed(const std::string& type)
{
    return SharedMime::Get()->Contains(type) || MimeNotes::Get()->Contains(own_name(type)) ||
           (is_supertype(type) ? has_subtypes(type) : find_application(type) != nullptr);
}

std::vector<std::string> installed_types()
{
    std::vector<std::string> types = SharedMime::Get()->Types();
    for (const std::string& type : MimeNotes::Get()->Types())
        types.push_back(type);
    for (const ApplicationRef& application : all_applications())
        types.push_back(application->signature);
    const auto before = [](const std::string& a, const std::string& b) {
        return lower_case(a) < lower_case(b);
    };
    const auto same = [](const std::string& a, const std::string& b) {
        return lower_case(a) == lower_case(b);
    };
    std::stable_sort(types.begin(), types.end(), before);
    types.erase(std::unique(types.begin(), types.end(), same), types.end());
    return types;
}

std::optional<std::string> type_value(const std::string& type, const char* key)
{
    return MimeNotes::Get()->Find(own_name(type), key);
}

// Keys have letters, digits and dashes only.
std::string icon_for_key(const std::string& kind, const std::string& type)
{
    std::string key = keys::kIconFor + kind + "-";
    char code[4];
    for (const char c : lower_case(type)) {
        snprintf(code, sizeof(code), "%02X", static_cast<uint8>(c));
        key += code;
    }
    return key;
}

bool parse_icon_for_key(const std::string& key, std::string* kind, std::string* type)
{
    const size_t start = strlen(keys::kIconFor);
    const size_t dash = key.find('-');
    if (!key.starts_with(keys::kIconFor) || dash == std::string::npos)
        return false;
    *kind = key.substr(start, dash - start);
    type->clear();
    for (size_t i = dash + 1; i + 1 < key.size(); i += 2)
        *type += static_cast<char>(strtol(key.substr(i, 2).c_str(), nullptr, 16));
    return true;
}

std::vector<std::string> split_extensions(const std::string& value)
{
    return split_text(value, ';');
}

// ---- Packages

static bool is_for_package(const std::string& key)
{
    return key == keys::kShortDescription || key == keys::kExtensions ||
           key == keys::kSnifferRule || key == keys::kIcon;
}

// The package of a type whose value of `key` is about to be another one.
static MimePackage package_with(const std::string& type, const std::string& key,
                                const std::optional<std::string>& value)
{
    const auto notes = MimeNotes::Get();
    const auto find = [&](const char* wanted) {
        return key == wanted ? value : notes->Find(type, wanted);
    };
    MimePackage package = {type, find(keys::kShortDescription).value_or(""), std::nullopt,
                           find(keys::kSnifferRule).value_or(""), find(keys::kIcon).value_or("")};
    if (const auto extensions = find(keys::kExtensions))
        package.extensions = split_extensions(*extensions);
    return package;
}

// Supertypes are in nobody's package, and what the system brings needs none of ours.
static status_t write_package_with(const std::string& type, const std::string& key,
                                   const std::optional<std::string>& value)
{
    if (is_supertype(type))
        return can_be_packaged(type + "/x") ? B_OK : fail(EINVAL);
    const MimePackage package = package_with(type, key, value);
    const bool says_something = !package.description.empty() || package.extensions ||
                                !package.rule.empty() || !package.icon.empty();
    const bool needed =
        says_something || !SharedMime::Get()->Contains(type) || SharedMime::Get()->IsOwn(type);
    return needed ? write_package(package) : remove_package(type);
}

static status_t install(const std::string& type)
{
    status_t status = write_package_with(type, "", std::nullopt);
    return status == B_OK ? MimeNotes::Set(type, keys::kInstalled, "true") : status;
}

status_t set_type_value(const std::string& type, const std::string& key,
                        const std::optional<std::string>& value)
{
    TypesLock lock;
    const std::string name = own_name(type);
    const bool installed = is_installed(type);
    if (!value && !installed)
        return fail(ENOENT);
    status_t status = B_OK;
    if (is_for_package(key) && (value || MimeNotes::Get()->Find(name, key)))
        status = write_package_with(name, key, value);
    else if (!installed)
        status = install(name);
    if (status == B_OK && value && !MimeNotes::Get()->Contains(name))
        status = MimeNotes::Set(name, keys::kInstalled, "true");
    return status == B_OK ? MimeNotes::Set(name, key, value) : status;
}

status_t install_type(const std::string& type)
{
    TypesLock lock;
    return is_installed(type) ? fail(EEXIST) : install(type);
}

status_t delete_type(const std::string& type)
{
    TypesLock lock;
    const std::string name = own_name(type);
    const auto database = SharedMime::Get();
    if (!is_installed(type))
        return fail(ENOENT);
    if ((database->Contains(name) && !database->IsOwn(name)) || find_application(type) != nullptr ||
        (is_supertype(type) && has_subtypes(type)))
        return fail(EPERM);
    status_t status = remove_package(name);
    if (status == B_OK && SharedMime::Get()->Contains(name) && !remove_others_packages(name))
        status = fail(EPERM);
    if (status == B_OK)
        status = choose_application(name, nullptr);
    if (status == B_OK) {
        remove_users_icons(MimeNotes::Get()->Find(name, keys::kIcon).value_or(""));
        status = MimeNotes::Remove(name);
    }
    return status;
}

}  // namespace storage
