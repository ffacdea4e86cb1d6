#ifndef INTERFACE_DESKBAR_SETTINGS_H
#define INTERFACE_DESKBAR_SETTINGS_H

#include <functional>
#include <string>

#include <Deskbar.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

// What is kept of the Deskbar, in a file of the user's configuration.
struct DeskbarSettings {
    deskbar_location location = B_DESKBAR_RIGHT_TOP;
    bool expanded = true;
    bool always_on_top = false;
    bool auto_raise = false;
    bool auto_hide = false;
    std::string panel;  // what the panel said of itself after it was told the above
};

// What is missing or makes no sense has the value above. Any thread.
DeskbarSettings read_deskbar_settings();

// Reads the settings, changes them and puts them in the former's place while no other program
// does. B_BUSY if one does for too long. Any thread.
status_t change_deskbar_settings(const std::function<void(DeskbarSettings&)>& change);

}  // namespace BPrivate

#endif  // INTERFACE_DESKBAR_SETTINGS_H
