#ifndef STORAGE_DESKTOP_ENTRIES_H
#define STORAGE_DESKTOP_ENTRIES_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace [[gnu::visibility("hidden")]] storage {

// The desktop's entries as BeOS applications.
//
// An entry names its application's signature by the key "X-BeOS-Signature". One without it has
// the signature "application/x-vnd.desktop." followed by its id without ".desktop", in which
// characters that no MIME string has, and "%", stand as "%" and two hexadecimal digits:
// "application/x-vnd.desktop.org.example.Editor". That form names every entry, also those with
// a key. Signatures compare without case, ids that differ in case alone are told apart.
//
// All functions: any thread. Entries that come, change and go are seen with the next call;
// entries that are hidden by the user's own, or whose program is missing, do not count.
struct Application {
    std::string id;    // "org.example.Editor.desktop"
    std::string path;  // of the entry's file
    std::string signature;
    std::string executable;            // absolute
    std::string name;                  // in the user's language
    std::string icon;                  // a name in the icon theme or an absolute path; may be empty
    std::string folder;                // to run in; may be empty
    std::vector<std::string> command;  // the program and its arguments, with field codes
    std::vector<std::string> types;    // MIME types, as the entry tells them
    size_t place = 0;                  // of its folder among the data folders
    bool in_terminal = false;
    bool in_menus = true;
};

using ApplicationRef = std::shared_ptr<const Application>;

// Null if there is none.
ApplicationRef find_application(std::string_view signature);
ApplicationRef find_application_by_id(const std::string& id);
// The application that this executable is, links in the path followed. Entries that run
// another's script or a part of a program that has more of them do not count.
ApplicationRef find_application_of(const std::string& executable);
// All, in the order of the data folders and by id.
std::vector<ApplicationRef> all_applications();

// The signature that an id gives; empty if the id is too long for a MIME string.
std::string signature_of_id(std::string_view id);
// The id that a signature of that form tells; empty for any other.
std::string id_of_signature(std::string_view signature);

// What to run to open `files` (absolute paths or URIs; may be none): several commands if the
// application takes but one file at a time.
std::vector<std::vector<std::string>> commands_for(const Application& application,
                                                   const std::vector<std::string>& files);

// The application that the desktop opens a type with: the user's choice, else the system's,
// else one that tells the type, else the same for what the type is a kind of.
ApplicationRef default_application(std::string_view type);
// The applications that tell the type itself, or were given it; the preferred ones first.
std::vector<ApplicationRef> applications_for(std::string_view type);
// Those for what the type is a kind of.
std::vector<ApplicationRef> applications_for_parents(std::string_view type);

}  // namespace storage

#endif  // STORAGE_DESKTOP_ENTRIES_H
