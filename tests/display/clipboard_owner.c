/* A program that owns a selection of the X server and behaves as its argument says:
   mute      never answers
   dies      ends when it is first asked
   stalls    begins to send a text in pieces and stops
   drips     sends one byte after the other, for ever, each just in time
   trickles  sends for ever, fast enough to be waited for
   floods    sends at once what no program should want to hold
   old       knows STRING alone, in Latin-1, and tells nobody
   picture   offers image/bmp and image/png
   manager   the desktop's clipboard manager: fetches the text and says which
   mute-manager  the same, but silent
   Says "owns" when it does, and "lost" when it is taken away. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <xcb/xcb.h>

static xcb_connection_t* connection;
static xcb_window_t window;

static xcb_atom_t atom(const char* name)
{
    xcb_intern_atom_cookie_t cookie = xcb_intern_atom(connection, 0, (uint16_t)strlen(name), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, NULL);
    xcb_atom_t result = reply->atom;
    free(reply);
    return result;
}

static void own(xcb_atom_t selection)
{
    xcb_set_selection_owner(connection, window, selection, XCB_CURRENT_TIME);
    free(xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection),
                                       NULL));
    puts("owns");
}

static void put(const xcb_selection_request_event_t* request, xcb_atom_t type, uint8_t format,
                uint32_t count, const void* data)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request->requestor, request->property,
                        type, format, count, data);
}

static void answer(const xcb_selection_request_event_t* request, int granted)
{
    xcb_selection_notify_event_t notice = {0};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.requestor = request->requestor;
    notice.selection = request->selection;
    notice.target = request->target;
    notice.property = granted ? request->property : XCB_ATOM_NONE;
    xcb_send_event(connection, 0, request->requestor, 0, (const char*)&notice);
    xcb_flush(connection);
}

/* Offers `targets` and answers only to TARGETS; returns whether that was asked for. */
static int tell_targets(const xcb_selection_request_event_t* request, const xcb_atom_t* targets,
                        uint32_t count)
{
    if (request->target != atom("TARGETS"))
        return 0;
    put(request, XCB_ATOM_ATOM, 32, count, targets);
    answer(request, 1);
    return 1;
}

/* Pieces of `size` bytes, a pause of `pause_us` behind each; only one without a pause. */
static void send_pieces(const xcb_selection_request_event_t* request, uint32_t length,
                        useconds_t pause_us)
{
    char* piece = malloc(length);
    memset(piece, 'x', length);
    const uint32_t listen = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const uint32_t size = 100;
    xcb_change_window_attributes(connection, request->requestor, XCB_CW_EVENT_MASK, &listen);
    put(request, atom("INCR"), 32, 1, &size);
    answer(request, 1);
    for (;;) {
        xcb_generic_event_t* event = xcb_wait_for_event(connection);
        xcb_property_notify_event_t* change = (xcb_property_notify_event_t*)event;
        if (event == NULL)
            exit(0);
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
            change->state == XCB_PROPERTY_DELETE) {
            put(request, atom("UTF8_STRING"), 8, length, piece);
            xcb_flush(connection);
            usleep(pause_us);
            if (pause_us == 0) {
                free(event);
                free(piece);
                return;
            }
        }
        free(event);
    }
}

static void send_flood(const xcb_selection_request_event_t* request)
{
    const uint32_t length = 8 << 20;
    char* piece = malloc(length);
    memset(piece, 'x', length);
    for (int i = 0; i < 9; i++)
        xcb_change_property(connection, XCB_PROP_MODE_APPEND, request->requestor, request->property,
                            atom("UTF8_STRING"), 8, length, piece);
    free(piece);
    answer(request, 1);
}

static void serve(const char* manner, const xcb_selection_request_event_t* request)
{
    if (strcmp(manner, "dies") == 0)
        exit(0);
    const xcb_atom_t text = atom("UTF8_STRING");
    if (strcmp(manner, "stalls") == 0) {
        if (!tell_targets(request, &text, 1))
            send_pieces(request, 1, 0);
    } else if (strcmp(manner, "drips") == 0) {
        if (!tell_targets(request, &text, 1))
            send_pieces(request, 1, 400000);
    } else if (strcmp(manner, "trickles") == 0) {
        if (!tell_targets(request, &text, 1))
            send_pieces(request, 200000, 100000);
    } else if (strcmp(manner, "floods") == 0) {
        if (!tell_targets(request, &text, 1))
            send_flood(request);
    } else if (strcmp(manner, "old") == 0) {
        int is_text = request->target == XCB_ATOM_STRING;
        if (is_text)
            put(request, XCB_ATOM_STRING, 8, 3, "\xe9t\xe9");
        answer(request, is_text);
    } else if (strcmp(manner, "picture") == 0) {
        const xcb_atom_t pictures[] = {atom("image/bmp"), atom("image/png")};
        if (!tell_targets(request, pictures, 2)) {
            put(request, request->target, 8, 3, request->target == pictures[1] ? "PNG" : "BMP");
            answer(request, 1);
        }
    } else if (strcmp(manner, "manager") == 0) {
        xcb_convert_selection(connection, window, atom("CLIPBOARD"), atom("UTF8_STRING"),
                              atom("SAVED"), XCB_CURRENT_TIME);
        xcb_flush(connection);
        for (;;) {
            xcb_generic_event_t* event = xcb_wait_for_event(connection);
            if (event == NULL)
                exit(1);
            if ((event->response_type & 0x7f) == XCB_SELECTION_NOTIFY)
                break;
            free(event);
        }
        xcb_get_property_reply_t* text = xcb_get_property_reply(
            connection,
            xcb_get_property(connection, 1, window, atom("SAVED"), XCB_ATOM_ANY, 0, 1000), NULL);
        printf("saved %.*s\n", xcb_get_property_value_length(text),
               (char*)xcb_get_property_value(text));
        put(request, atom("NULL"), 32, 0, NULL);
        answer(request, 1);
    }
}

int main(int argc, char** argv)
{
    const char* manner = argc > 1 ? argv[1] : "";
    setvbuf(stdout, NULL, _IOLBF, 0);
    connection = xcb_connect(NULL, NULL);
    if (xcb_connection_has_error(connection))
        return 1;
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    window = xcb_generate_id(connection);
    xcb_create_window(connection, 0, window, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, screen->root_visual, 0, NULL);
    own(atom(strstr(manner, "manager") != NULL ? "CLIPBOARD_MANAGER" : "CLIPBOARD"));
    for (;;) {
        xcb_generic_event_t* event = xcb_wait_for_event(connection);
        if (event == NULL)
            return 0;
        const uint8_t kind = event->response_type & 0x7f;
        if (kind == XCB_SELECTION_REQUEST)
            serve(manner, (xcb_selection_request_event_t*)event);
        else if (kind == XCB_SELECTION_CLEAR)
            puts("lost");
        free(event);
    }
}
