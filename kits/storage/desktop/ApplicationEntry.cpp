// Desktop entries that the kits write.

#include "storage/desktop/ApplicationEntry.h"

#include <errno.h>

#include <glib.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/FileReplacement.h"
#include "support/HostErrors.h"
#include "storage/desktop/RunProgram.h"
#include "support/Held.h"

namespace storage {

using BPrivate::fail;
using BPrivate::Held;

// A program's path as the first word of a command: in quotes, and no field codes.
static std::string as_command(const std::string& path)
{
    std::string quoted = "\"";
    for (const char c : path) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            quoted += '\\';
        quoted += c;
        if (c == '%')
            quoted += '%';
    }
    return quoted + "\" %F";
}

static std::string file_name(const std::string& signature)
{
    const std::string lower = lower_case(signature);
    std::string name = "beos-";
    for (const char c : lower.substr(lower.find('/') + 1))
        name += g_ascii_isalnum(c) || c == '.' || c == '-' ? c : '_';
    return name + ".desktop";
}

status_t write_application_entry(const ApplicationEntry& entry)
{
    if (!g_utf8_validate(entry.executable.c_str(), -1, nullptr))
        return fail(EINVAL);
    const std::string leaf = entry.executable.substr(entry.executable.rfind('/') + 1);
    std::string types;
    for (const std::string& type : entry.types) {
        if (type.find('/') != std::string::npos)  // desktops know no supertypes alone
            types.append(type).append(";");
    }
    const Held<GKeyFile> file(g_key_file_new());
    const auto set = [&](const char* key, const std::string& value) {
        g_key_file_set_string(file.get(), G_KEY_FILE_DESKTOP_GROUP, key, value.c_str());
    };
    set("Type", "Application");
    set("Name", leaf);
    set("Exec", as_command(entry.executable));
    set("X-BeOS-Signature", entry.signature);
    if (!types.empty())
        set("MimeType", types);
    if (!entry.in_menus)
        set("NoDisplay", "true");
    gsize size = 0;
    const Held<char> text(g_key_file_to_data(file.get(), &size, nullptr));
    const std::string folder = data_folders().front() + "/applications";
    TypesLock lock;
    status_t status =
        replace_file(folder + "/" + file_name(entry.signature), std::string(text.get(), size));
    if (status == B_OK) {
        // Desktops without that tool read the entries themselves.
        const int before = errno;
        run_program({"update-desktop-database", "-q", folder});
        errno = before;
    }
    return status;
}

}  // namespace storage
