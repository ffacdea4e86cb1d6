// Window manager hints of X that Qt has no calls for.

#include "server/qt/x11/X11Screen.h"

#include <QGuiApplication>

#include <xcb/xcb.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

#include "server/qt/QtWindow.h"
#include "server/screen/Stage.h"

namespace server {

static const uint32 kAllDesktops = 0xffffffff;

std::unique_ptr<X11Screen> X11Screen::Connect()
{
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (native == nullptr || native->connection() == nullptr)
        return nullptr;
    xcb_connection_t* connection = native->connection();
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    std::unique_ptr<X11Screen> result(new X11Screen(connection, screen->root));
    result->_ReadWorkspaces();
    result->_RepeatWithoutReleases();
    qGuiApp->installNativeEventFilter(result.get());
    return result;
}

X11Screen::X11Screen(xcb_connection_t* connection, uint32 root)
    : fConnection(connection),
      fRoot(root),
      fHints(connection, root),
      fReadsPixels(X11Pixels::AreKnownTo(connection))
{
    fCount = _Atom("_NET_NUMBER_OF_DESKTOPS");
    fCurrent = _Atom("_NET_CURRENT_DESKTOP");
    fOfWindow = _Atom("_NET_WM_DESKTOP");
    fRestack = _Atom("_NET_RESTACK_WINDOW");
}

// Asks for repeats as presses alone. Without it the releases between them look like the user's own
// whenever the next press is not yet there to be seen. Qt has opened the extension already.
void X11Screen::_RepeatWithoutReleases()
{
    static xcb_extension_t extension = {"XKEYBOARD", 0};
    const uint8_t kPerClientFlags = 21;
    const uint32 kDetectableRepeat = 1;
    struct {
        uint8_t major = 0, minor = 0;  // xcb's to fill in
        uint16_t length = 0;
        uint16_t device = 0x100;  // the core keyboard
        uint16_t padding = 0;
        uint32_t change = kDetectableRepeat;
        uint32_t value = kDetectableRepeat;
        uint32_t controlsToChange = 0, controls = 0, controlValues = 0;
    } request;
    const xcb_query_extension_reply_t* present = xcb_get_extension_data(fConnection, &extension);
    if (present == nullptr || !present->present)
        return;
    static const xcb_protocol_request_t kProtocol = {1, &extension, kPerClientFlags, 0};
    iovec parts[3] = {};
    parts[2].iov_base = &request;
    parts[2].iov_len = sizeof(request);
    unsigned sequence = xcb_send_request(fConnection, XCB_REQUEST_CHECKED, parts + 2, &kProtocol);
    xcb_discard_reply(fConnection, sequence);
}

X11Screen::~X11Screen() { qGuiApp->removeNativeEventFilter(this); }

uint32 X11Screen::_Atom(const char* name)
{
    auto cookie = xcb_intern_atom(fConnection, 0, uint16_t(strlen(name)), name);
    auto* reply = xcb_intern_atom_reply(fConnection, cookie, nullptr);
    uint32 atom = reply != nullptr ? reply->atom : 0;
    free(reply);
    return atom;
}

int64 X11Screen::_Number(uint32 window, uint32 property)
{
    auto cookie = xcb_get_property(fConnection, 0, window, property, XCB_ATOM_CARDINAL, 0, 1);
    auto* reply = xcb_get_property_reply(fConnection, cookie, nullptr);
    int64 number = -1;
    if (reply != nullptr && xcb_get_property_value_length(reply) == 4)
        number = *static_cast<uint32*>(xcb_get_property_value(reply));
    free(reply);
    return number;
}

void X11Screen::_ReadWorkspaces()
{
    int64 count = _Number(fRoot, fCount);
    int64 current = _Number(fRoot, fCurrent);
    StageLock lock;
    stage().SetWorkspaceCount(int32(std::clamp<int64>(count, 1, 32)));
    stage().ShowWorkspace(int32(current));
}

void X11Screen::_Tell(uint32 window, uint32 message, uint32 first, uint32 second, uint32 third)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = message;
    event.data.data32[0] = first;
    event.data.data32[1] = second;
    event.data.data32[2] = third;
    xcb_send_event(fConnection, 0, fRoot,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(fConnection);
}

std::unique_ptr<X11Pixels> X11Screen::PixelsOf(uint32 window)
{
    return fReadsPixels ? X11Pixels::Of(fConnection, window) : nullptr;
}

void X11Screen::Flush() { xcb_flush(fConnection); }

void X11Screen::ActivateWorkspace(int32 workspace) { _Tell(fRoot, fCurrent, uint32(workspace)); }

static bool is_on_one(uint32 workspaces) { return std::has_single_bit(workspaces); }

static uint32 desktop_of(uint32 workspaces)
{
    return is_on_one(workspaces) ? uint32(std::countr_zero(workspaces)) : kAllDesktops;
}

uint32 X11Screen::Possible(uint32 workspaces)
{
    return is_on_one(workspaces) ? workspaces : B_ALL_WORKSPACES;
}

void X11Screen::SetWorkspaces(uint32 window, uint32 workspaces)
{
    const uint32 desktop = desktop_of(workspaces);
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, fOfWindow, XCB_ATOM_CARDINAL,
                        32, 1, &desktop);
}

void X11Screen::MoveToWorkspaces(uint32 window, uint32 workspaces)
{
    _Tell(window, fOfWindow, desktop_of(workspaces), 1);
}

// The user, or we, have sent a window of ours to another workspace.
void X11Screen::_ReadWorkspacesOf(uint32 window)
{
    const int64 desktop = _Number(window, fOfWindow);
    if (desktop < 0 || (desktop >= 32 && desktop != kAllDesktops))
        return;
    StageLock lock;
    for (ScreenWindow* each : stage().Windows()) {
        auto* owner = static_cast<QtWindow*>(each);
        if (owner->IsNative(window))
            owner->NativeWorkspaces(desktop == kAllDesktops ? B_ALL_WORKSPACES : 1u << desktop);
    }
}

void X11Screen::SetWorkspaceCount(int32 count) { _Tell(fRoot, fCount, uint32(count)); }

void X11Screen::PutBehind(uint32 window, uint32 other)
{
    _Tell(window, fRestack, 2, other, XCB_STACK_MODE_BELOW);
}

bool X11Screen::HasCompositor()
{
    auto cookie = xcb_get_selection_owner(fConnection, _Atom("_NET_WM_CM_S0"));
    auto* reply = xcb_get_selection_owner_reply(fConnection, cookie, nullptr);
    const bool is_owned = reply != nullptr && reply->owner != XCB_NONE;
    free(reply);
    return is_owned;
}

void X11Screen::PassInputThrough(uint32 window)
{
    const xcb_xfixes_region_t nothing = xcb_generate_id(fConnection);
    xcb_xfixes_create_region(fConnection, nothing, 0, nullptr);
    xcb_xfixes_set_window_shape_region(fConnection, window, XCB_SHAPE_SK_INPUT, 0, 0, nothing);
    xcb_xfixes_destroy_region(fConnection, nothing);
    // Other connections see it so from here on: a drag asks at once what is below its picture.
    free(xcb_get_input_focus_reply(fConnection, xcb_get_input_focus(fConnection), nullptr));
}

bool X11Screen::nativeEventFilter(const QByteArray& type, void* message, qintptr*)
{
    if (type != "xcb_generic_event_t")
        return false;
    auto* event = static_cast<xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
        auto* change = reinterpret_cast<xcb_property_notify_event_t*>(event);
        if (change->window == fRoot && (change->atom == fCount || change->atom == fCurrent))
            _ReadWorkspaces();
        else if (change->atom == fOfWindow && change->window != fRoot)
            _ReadWorkspacesOf(change->window);
    }
    return false;
}

}  // namespace server
