// Windows that take drags say so by a property; messages then go to and fro, and what is dropped is
// read like a clipboard.

#include "server/qt/x11/X11Drag.h"

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

namespace server {

static const uint32 kVersion = 5;
static const uint32 kOldest = 3;  // what older programs say means something else
static const std::chrono::seconds kPatience(3);

std::unique_ptr<X11Drag> X11Drag::Begin(ClipboardForms forms, std::function<bool(uint32)> is_own)
{
    int number = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &number);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; number--)
        xcb_screen_next(&screens);
    return std::unique_ptr<X11Drag>(
        new X11Drag(connection, screens.data->root, std::move(forms), std::move(is_own)));
}

X11Drag::X11Drag(xcb_connection_t* connection, xcb_window_t root, ClipboardForms forms,
                 std::function<bool(uint32)> is_own)
    : fConnection(connection),
      fRoot(root),
      fIsOwn(std::move(is_own)),
      fAtoms(connection),
      fOffer(connection, fAtoms),
      fWindow(xcb_generate_id(connection))
{
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(fConnection, 0, fWindow, fRoot, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    fOffer.Set(std::move(forms), XCB_CURRENT_TIME);
    const size_t kNotTypes = 3;  // what can be asked of any selection
    fTypes = fOffer.Targets();
    fTypes.erase(fTypes.begin(), fTypes.begin() + kNotTypes);
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, fWindow, fAtoms.Find("XdndTypeList"),
                        XCB_ATOM_ATOM, 32, uint32_t(fTypes.size()), fTypes.data());
    xcb_set_selection_owner(fConnection, fWindow, fAtoms.Find("XdndSelection"), XCB_CURRENT_TIME);
    xcb_flush(fConnection);

    fNotifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(fConnection),
                                                  QSocketNotifier::Read);
    QObject::connect(fNotifier.get(), &QSocketNotifier::activated, [this] { _HandleEvents(); });
    fPatience = std::make_unique<QTimer>();
    fPatience->setSingleShot(true);
    QObject::connect(fPatience.get(), &QTimer::timeout, [this] {
        _Leave();
        xcb_flush(fConnection);
    });
}

X11Drag::~X11Drag()
{
    fNotifier.reset();
    xcb_disconnect(fConnection);
}

// The window in `window` that has the place of the screen, among those that take input.
xcb_window_t X11Drag::_ChildAt(xcb_window_t window, int32 x, int32 y)
{
    auto cookie = xcb_translate_coordinates(fConnection, fRoot, window, int16_t(x), int16_t(y));
    auto* reply = xcb_translate_coordinates_reply(fConnection, cookie, nullptr);
    const xcb_window_t child = reply != nullptr ? reply->child : xcb_window_t(XCB_NONE);
    free(reply);
    return child;
}

// A property of one number; 0 if there is none.
uint32 X11Drag::_Property(xcb_window_t window, const char* name, xcb_atom_t type)
{
    auto cookie = xcb_get_property(fConnection, 0, window, fAtoms.Find(name), type, 0, 1);
    auto* reply = xcb_get_property_reply(fConnection, cookie, nullptr);
    uint32 number = 0;
    if (reply != nullptr && xcb_get_property_value_length(reply) == 4)
        number = *static_cast<uint32*>(xcb_get_property_value(reply));
    free(reply);
    return number;
}

// Whether a window takes drags, or has another one take them, which says so of itself.
const X11Drag::Target& X11Drag::_Aware(xcb_window_t window)
{
    const auto [place, is_new] = fKnown.try_emplace(window);
    if (!is_new)
        return place->second;
    xcb_window_t receiver = _Property(window, "XdndProxy", XCB_ATOM_WINDOW);
    if (receiver == XCB_NONE || _Property(receiver, "XdndProxy", XCB_ATOM_WINDOW) != receiver)
        receiver = window;
    const uint32 version = _Property(receiver, "XdndAware", XCB_ATOM_ATOM);
    if (version >= kOldest)
        place->second = {window, receiver, std::min(version, kVersion)};
    return place->second;
}

X11Drag::Target X11Drag::_TargetAt(int32 x, int32 y, bool* covered)
{
    const int kDeepest = 32;
    *covered = false;
    xcb_window_t window = _ChildAt(fRoot, x, y);
    if (window == XCB_NONE)
        return _Aware(fRoot);  // a desktop
    for (int i = 0; i < kDeepest && window != XCB_NONE; i++) {
        if (fIsOwn(window))
            return {};
        const Target& target = _Aware(window);
        if (target.window != XCB_NONE) {
            *covered = true;
            return target;
        }
        window = _ChildAt(window, x, y);
    }
    *covered = true;
    return {};
}

bool X11Drag::MoveTo(int32 x, int32 y)
{
    if (xcb_connection_has_error(fConnection) != 0)
        return false;
    bool covered;
    const Target target = _TargetAt(x, y, &covered);
    fX = x;
    fY = y;
    if (target.window != fTarget.window) {
        _Leave();
        _Enter(target);
    }
    if (fTarget.window != XCB_NONE)
        _TellPlace();
    xcb_flush(fConnection);
    _HandleEvents();  // what the replies brought along
    return covered;
}

void X11Drag::_Enter(const Target& target)
{
    fTarget = target;
    if (fTarget.window == XCB_NONE)
        return;
    const size_t kInMessage = 3;
    uint32 first[kInMessage] = {};
    std::copy_n(fTypes.begin(), std::min(fTypes.size(), kInMessage), first);
    _Tell("XdndEnter", fTarget.version << 24 | (fTypes.size() > kInMessage), first[0], first[1],
          first[2]);
}

void X11Drag::_Leave()
{
    if (fTarget.window != XCB_NONE)
        _Tell("XdndLeave");
    fTarget = {};
    fIsAsked = fHasMoved = fAccepts = fDrops = false;
}

void X11Drag::_TellPlace()
{
    fHasMoved = fIsAsked;
    if (fIsAsked)
        return;
    fIsAsked = true;
    _Tell("XdndPosition", 0, uint32(fX) << 16 | (uint32(fY) & 0xffff), XCB_CURRENT_TIME,
          fAtoms.Find("XdndActionCopy"));
}

void X11Drag::End(bool dropped)
{
    if (!dropped)
        _Leave();
    else if (fTarget.window != XCB_NONE)
        _Drop();
    xcb_flush(fConnection);
}

// Goes through once the target has said what it thinks of the last place.
void X11Drag::_Drop()
{
    fDrops = true;
    if (fIsAsked) {
        fPatience->start(kPatience);
        return;
    }
    fPatience->stop();
    if (!fAccepts) {
        _Leave();
        return;
    }
    _Tell("XdndDrop", 0, XCB_CURRENT_TIME);
    fTarget = {};
}

// The first word of all messages is the source.
void X11Drag::_Tell(const char* message, uint32 first, uint32 second, uint32 third, uint32 fourth)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = fTarget.window;
    event.type = fAtoms.Find(message);
    const uint32 words[] = {fWindow, first, second, third, fourth};
    std::copy(std::begin(words), std::end(words), event.data.data32);
    xcb_send_event(fConnection, 0, fTarget.receiver, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
}

void X11Drag::_Answered(bool accepts)
{
    fIsAsked = false;
    fAccepts = accepts;
    if (fHasMoved)
        _TellPlace();
    if (fDrops)
        _Drop();
    xcb_flush(fConnection);
}

void X11Drag::_HandleEvents()
{
    if (xcb_connection_has_error(fConnection) != 0) {
        fNotifier->setEnabled(false);
        return;
    }
    while (xcb_generic_event_t* event = xcb_poll_for_event(fConnection)) {
        const uint8_t kind = event->response_type & 0x7f;
        if (kind == XCB_CLIENT_MESSAGE) {
            const auto& message = *reinterpret_cast<xcb_client_message_event_t*>(event);
            // An answer that was on its way when the pointer left is nobody's.
            if (message.type == fAtoms.Find("XdndStatus") && fIsAsked &&
                message.data.data32[0] == fTarget.window)
                _Answered((message.data.data32[1] & 1) != 0);
        } else if (kind == XCB_SELECTION_REQUEST) {
            fOffer.Answer(*reinterpret_cast<xcb_selection_request_event_t*>(event));
        } else if (kind == XCB_PROPERTY_NOTIFY) {
            const auto& change = *reinterpret_cast<xcb_property_notify_event_t*>(event);
            if (change.state == XCB_PROPERTY_DELETE)
                fOffer.PieceTaken(change.window, change.atom);
        } else if (kind == XCB_DESTROY_NOTIFY) {
            fOffer.WindowGone(reinterpret_cast<xcb_destroy_notify_event_t*>(event)->window);
        }
        free(event);
    }
    fOffer.DropStalled();
    xcb_flush(fConnection);
}

}  // namespace server
