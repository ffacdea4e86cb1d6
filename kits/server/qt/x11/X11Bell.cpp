// The bell of the X server, over a connection of its own: a program may ring that has no window.

#include "server/screen/Bell.h"

#include <stdlib.h>

#include <xcb/xcb.h>

bool server::RingBell()
{
    if (getenv("DISPLAY") == nullptr)
        return false;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    if (connected) {
        xcb_bell(connection, 0);
        free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
    xcb_disconnect(connection);
    return connected;
}
