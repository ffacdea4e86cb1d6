/* A hundred windows that ask for the clipboard's text at once and take none of its pieces. Says
   "asked" when all have an answer, and stays until it is ended. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <xcb/xcb.h>

enum { kAskers = 100 };

static xcb_atom_t atom(xcb_connection_t* connection, const char* name)
{
    xcb_intern_atom_cookie_t cookie = xcb_intern_atom(connection, 0, (uint16_t)strlen(name), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, NULL);
    xcb_atom_t result = reply->atom;
    free(reply);
    return result;
}

int main(void)
{
    xcb_connection_t* connection = xcb_connect(NULL, NULL);
    if (xcb_connection_has_error(connection))
        return 1;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_atom_t text = atom(connection, "UTF8_STRING");
    const xcb_atom_t clipboard = atom(connection, "CLIPBOARD");
    for (int i = 0; i < kAskers; i++) {
        const xcb_window_t window = xcb_generate_id(connection);
        xcb_create_window(connection, 0, window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, screen->root_visual, 0, NULL);
        xcb_convert_selection(connection, window, clipboard, text, text, XCB_CURRENT_TIME);
    }
    xcb_flush(connection);
    int answers = 0;
    xcb_generic_event_t* event;
    while ((event = xcb_wait_for_event(connection)) != NULL) {
        const uint8_t kind = event->response_type & 0x7f;
        if (kind == XCB_SELECTION_NOTIFY && ++answers == kAskers) {
            puts("asked");
            fflush(stdout);
        }
        free(event);
    }
    return 0;
}
