#ifndef INTERFACE_DESKTOP_PANEL_H
#define INTERFACE_DESKTOP_PANEL_H

#include <optional>
#include <string>

#include <Deskbar.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

// What a running panel of the desktop says of itself.
struct PanelState {
    std::string text;                          // the same as long as nothing of it changes
    std::optional<deskbar_location> location;  // if it is one of the Deskbar's
    bool auto_hide;
};

// What it is told; nothing of what is left out.
struct PanelChange {
    std::optional<deskbar_location> location;
    std::optional<bool> auto_hide;
};

// Any thread. A panel that once did not answer in time is left alone for a while.
bool is_panel_running();
std::optional<PanelState> read_panel();
// Answers what the panel then says.
std::optional<PanelState> change_panel(const PanelChange& change);

}  // namespace BPrivate

#endif  // INTERFACE_DESKTOP_PANEL_H
