// Packages of the user's own part of the desktop's MIME database: a file "beos-<type>.xml" for each
// type.

#include "storage/mime/MimePackages.h"

#include <dirent.h>
#include <errno.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

#include <glib.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/FileReplacement.h"
#include "support/HostErrors.h"
#include "storage/desktop/RunProgram.h"
#include "storage/mime/SharedMime.h"
#include "storage/mime/SnifferRule.h"
#include "support/Held.h"

namespace storage {

using BPrivate::fail;
using BPrivate::host_failure;

static std::string mime_folder() { return data_folders().front() + "/mime"; }

static std::string package_path(const std::string& type)
{
    std::string name;
    for (const char c : lower_case(type))
        name += c == '/' ? "%2F" : c == '%' ? "%25" : std::string(1, c);
    return mime_folder() + "/packages/beos-" + name + ".xml";
}

static bool is_plain_text(const std::string& text)
{
    const auto is_control = [](char c) {
        return static_cast<uint8>(c) < ' ' && c != '\n' && c != '\t';
    };
    return g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) &&
           std::none_of(text.begin(), text.end(), is_control);
}

// What the desktop's program has in the folder of the database, beside the supertypes' folders. It
// writes each file with ".new" behind its name first.
static const char* const kDatabasesOwn[] = {
    "aliases",  "generic-icons", "globs",     "globs2", "icons",         "magic",   "mime.cache",
    "packages", "subclasses",    "treemagic", "types",  "xmlnamespaces", "version",
};

static bool is_databases_own(std::string supertype)
{
    while (supertype.ends_with(".new"))
        supertype.resize(supertype.size() - strlen(".new"));
    return std::find(std::begin(kDatabasesOwn), std::end(kDatabasesOwn), supertype) !=
           std::end(kDatabasesOwn);
}

bool can_be_packaged(const std::string& type)
{
    // The supertype is a folder beside that of the packages, the subtype a file in it.
    const size_t slash = type.find('/');
    return slash != std::string::npos && type[0] != '.' && type[slash + 1] != '.' &&
           !is_databases_own(lower_case(type.substr(0, slash))) && is_plain_text(type);
}

bool is_extension(const std::string& extension)
{
    return !extension.empty() && is_plain_text(extension) &&
           extension.find_first_of("*?[]\\/: \t\n") == std::string::npos;
}

static std::string xml(const std::string& text)
{
    return BPrivate::take_text(g_markup_escape_text(text.c_str(), -1));
}

static std::string xml_of(const MimePackage& package)
{
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
        "  <mime-type type=\"" +
        xml(package.type) + "\">\n";
    if (!package.description.empty())
        text += "    <comment>" + xml(package.description) + "</comment>\n";
    if (!package.icon.empty())
        text += "    <icon name=\"" + xml(package.icon) + "\"/>\n";
    if (package.extensions) {
        text += "    <glob-deleteall/>\n";
        for (const std::string& extension : *package.extensions)
            text += "    <glob pattern=\"*." + xml(extension) + "\"/>\n";
    }
    SnifferRule rule;
    if (!package.rule.empty() && parse_sniffer_rule(package.rule.c_str(), &rule, nullptr) == B_OK)
        text += "    <magic-deleteall/>\n    " + magic_of(rule) + "\n";
    return text + "  </mime-type>\n</mime-info>\n";
}

// The desktop's own program makes the files that all others read.
static status_t update_database()
{
    status_t status = run_program({"update-mime-database", mime_folder()});
    SharedMime::Refresh();
    return status;
}

// The desktop's program leaves the descriptions of types that are gone, but for supertypes that it
// knows.
static void remove_description(const std::string& type)
{
    if (!can_be_packaged(type) || SharedMime::Get()->Contains(type))
        return;
    const int before = errno;
    const std::string path = mime_folder() + "/" + type;
    unlink((path + ".xml").c_str());
    rmdir(path.substr(0, path.rfind('/')).c_str());  // if it was the last
    errno = before;
}

static status_t update_database_without(const std::string& type)
{
    const status_t status = update_database();
    remove_description(type);
    return status;
}

status_t write_package(const MimePackage& package)
{
    if (!can_be_packaged(package.type))
        return fail(EINVAL);
    const std::string path = package_path(package.type);
    const bool existed = access(path.c_str(), F_OK) == 0;
    const std::string former = read_text_file(path);
    status_t status = replace_file(path, xml_of(package));
    if (status != B_OK)
        return status;
    status = update_database();
    if (status == B_OK && SharedMime::Get()->Contains(package.type))
        return B_OK;
    // Back to what was there, in the package as in what may have come of it.
    if (status == B_OK)
        status = fail(EIO);
    const int number = errno;
    if (existed)
        replace_file(path, former);
    else
        unlink(path.c_str());
    update_database_without(package.type);
    errno = number;
    return status;
}

status_t remove_package(const std::string& type)
{
    if (unlink(package_path(type).c_str()) != 0)
        return errno == ENOENT ? B_OK : host_failure();
    return update_database_without(type);
}

// The types that a package tells.
static std::vector<std::string> types_in(const std::string& package)
{
    std::vector<std::string> types;
    GMarkupParser parser = {};
    parser.start_element = [](GMarkupParseContext*, const char* element, const char** names,
                              const char** values, gpointer list, GError**) {
        for (; strcmp(element, "mime-type") == 0 && *names != nullptr; names++, values++) {
            if (strcmp(*names, "type") == 0)
                static_cast<std::vector<std::string>*>(list)->push_back(lower_case(*values));
        }
    };
    GMarkupParseContext* context =
        g_markup_parse_context_new(&parser, GMarkupParseFlags(0), &types, nullptr);
    const std::string text = read_text_file(package);
    g_markup_parse_context_parse(context, text.data(), static_cast<gssize>(text.size()), nullptr);
    g_markup_parse_context_free(context);
    return types;
}

bool remove_others_packages(const std::string& type)
{
    const std::string folder = mime_folder() + "/packages";
    DIR* stream = opendir(folder.c_str());
    std::vector<std::string> found;
    while (const struct dirent* entry = stream != nullptr ? readdir(stream) : nullptr) {
        const std::string path = folder + "/" + entry->d_name;
        if (path.ends_with(".xml") && types_in(path) == std::vector{lower_case(type)})
            found.push_back(path);
    }
    if (stream != nullptr)
        closedir(stream);
    for (const std::string& path : found)
        unlink(path.c_str());
    return !found.empty() && update_database_without(type) == B_OK;
}

}  // namespace storage
