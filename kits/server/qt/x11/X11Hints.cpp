#include "server/qt/x11/X11Hints.h"

#include <cstdlib>

namespace server {

// Motif's window manager hints, which all window managers read.
namespace motif {
enum : uint32 { kHasFunctions = 1, kHasDecorations = 2 };
enum : uint32 { kResize = 2, kMove = 4, kMinimize = 8, kMaximize = 16, kClose = 32 };
enum : uint32 {
    kBorder = 2,
    kResizeHandle = 4,
    kTitle = 8,
    kMenu = 16,
    kMinimizeButton = 32,
    kMaximizeButton = 64
};
struct Hints {
    uint32 flags = kHasFunctions | kHasDecorations;
    uint32 functions = 0;
    uint32 decorations = 0;
    int32 inputMode = 0;
    uint32 status = 0;
};
}  // namespace motif

// EWMH, _NET_WM_STATE.
static const uint32 kRemove = 0;
static const uint32 kAdd = 1;
static const uint32 kFromApplication = 1;

static motif::Hints motif_hints(const WindowKind& kind)
{
    motif::Hints hints;
    const auto offer = [&](bool offered, uint32 function, uint32 decoration) {
        if (offered) {
            hints.functions |= function;
            hints.decorations |= decoration;
        }
    };
    // Where there is no title there is no place for buttons.
    const uint32 titled = kind.HasTitle() ? ~0u : 0u;
    offer(kind.HasBorder(), 0, motif::kBorder);
    offer(kind.HasTitle(), 0, motif::kTitle | motif::kMenu);
    offer(kind.Allows(B_NOT_MOVABLE), motif::kMove, 0);
    offer(kind.Allows(B_NOT_CLOSABLE), motif::kClose, 0);
    offer(kind.IsResizable(), motif::kResize, titled & motif::kResizeHandle);
    offer(kind.IsMinimizable(), motif::kMinimize, titled & motif::kMinimizeButton);
    offer(kind.IsZoomable(), motif::kMaximize, titled & motif::kMaximizeButton);
    return hints;
}

void X11Hints::_TellDecoration(uint32 window, const WindowKind& kind)
{
    const motif::Hints hints = motif_hints(kind);
    const xcb_atom_t property = fAtoms.Find("_MOTIF_WM_HINTS");
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, property, property, 32,
                        sizeof(hints) / sizeof(uint32), &hints);
}

// A window of the root belongs to all windows of its program.
void X11Hints::_TellOwner(uint32 window, const WindowKind& kind, uint32 above)
{
    if (!kind.IsModal() && !kind.IsFloating()) {
        xcb_delete_property(fConnection, window, XCB_ATOM_WM_TRANSIENT_FOR);
        return;
    }
    const uint32 owner = above != 0 ? above : fRoot;
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_TRANSIENT_FOR,
                        XCB_ATOM_WINDOW, 32, 1, &owner);
}

std::vector<xcb_atom_t> X11Hints::_States(uint32 window)
{
    std::vector<xcb_atom_t> states;
    const auto cookie = xcb_get_property(fConnection, 0, window, fAtoms.Find("_NET_WM_STATE"),
                                         XCB_ATOM_ATOM, 0, 64);
    auto* reply = xcb_get_property_reply(fConnection, cookie, nullptr);
    if (reply == nullptr)
        return states;
    const auto* first = static_cast<xcb_atom_t*>(xcb_get_property_value(reply));
    states.assign(first, first + xcb_get_property_value_length(reply) / sizeof(xcb_atom_t));
    free(reply);
    return states;
}

void X11Hints::_AskForState(uint32 window, xcb_atom_t state, bool on)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = fAtoms.Find("_NET_WM_STATE");
    event.data.data32[0] = on ? kAdd : kRemove;
    event.data.data32[1] = state;
    event.data.data32[3] = kFromApplication;
    xcb_send_event(fConnection, 0, fRoot,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

// Of a window that is shown the window manager keeps the states; before, the window does.
void X11Hints::_TellStates(uint32 window, const WindowKind& kind, bool isShown)
{
    const struct {
        const char* name;
        bool on;
    } wanted[] = {
        {"_NET_WM_STATE_MODAL", kind.IsModal()},
        {"_NET_WM_STATE_ABOVE", kind.IsAboveAll()},
        {"_NET_WM_STATE_SKIP_TASKBAR", kind.IsFloating()},
    };
    std::vector<xcb_atom_t> states;
    if (!isShown)
        states = _States(window);
    for (const auto& each : wanted) {
        const xcb_atom_t state = fAtoms.Find(each.name);
        if (isShown) {
            _AskForState(window, state, each.on);
            continue;
        }
        std::erase(states, state);
        if (each.on)
            states.push_back(state);
    }
    if (!isShown)
        xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window,
                            fAtoms.Find("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, uint32(states.size()),
                            states.data());
}

void X11Hints::Tell(uint32 window, const WindowKind& kind, uint32 above, bool isShown)
{
    if (kind.IsUnmanaged())
        return;
    _TellDecoration(window, kind);
    _TellOwner(window, kind, above);
    _TellStates(window, kind, isShown);
}

void X11Hints::RemoveTitle(uint32 window)
{
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, fAtoms.Find("_NET_WM_NAME"),
                        fAtoms.Find("UTF8_STRING"), 8, 0, nullptr);
}

}  // namespace server
