// Pixels that the X server reads itself.

#include "server/qt/x11/X11Pixels.h"

#include <sys/socket.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace server {

static const uint8_t kDepth = 24;  // bits of a pixel that count
static const uint8_t kBits = 32;   // that it takes

// Descriptors go over a socket of this machine alone.
static bool is_near(xcb_connection_t* connection)
{
    sockaddr_storage address = {};
    socklen_t size = sizeof(address);
    return getsockname(xcb_get_file_descriptor(connection), reinterpret_cast<sockaddr*>(&address),
                       &size) == 0 &&
           address.ss_family == AF_UNIX;
}

static bool has_our_pixels(const xcb_setup_t* setup)
{
    const bool little = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    if (little != (std::endian::native == std::endian::little))
        return false;
    const xcb_format_t* formats = xcb_setup_pixmap_formats(setup);
    return std::any_of(formats, formats + xcb_setup_pixmap_formats_length(setup),
                       [](const xcb_format_t& format) {
                           return format.depth == kDepth && format.bits_per_pixel == kBits &&
                                  format.scanline_pad == kBits;
                       });
}

// Red, green and blue where we have them.
static bool has_our_colors(const xcb_screen_t* screen)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem > 0;
         xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            const xcb_visualtype_t& visual = *visuals.data;
            if (visual.visual_id == screen->root_visual)
                return depths.data->depth == kDepth && visual.red_mask == 0xff0000 &&
                       visual.green_mask == 0xff00 && visual.blue_mask == 0xff;
        }
    }
    return false;
}

static bool takes_descriptors(xcb_connection_t* connection)
{
    const xcb_query_extension_reply_t* known = xcb_get_extension_data(connection, &xcb_shm_id);
    if (known == nullptr || !known->present)
        return false;
    auto* version =
        xcb_shm_query_version_reply(connection, xcb_shm_query_version(connection), nullptr);
    const bool takes =
        version != nullptr && (version->major_version > 1 ||
                               (version->major_version == 1 && version->minor_version >= 2));
    free(version);
    return takes;
}

bool X11Pixels::AreKnownTo(xcb_connection_t* connection)
{
    const xcb_setup_t* setup = xcb_get_setup(connection);
    return is_near(connection) && has_our_pixels(setup) &&
           has_our_colors(xcb_setup_roots_iterator(setup).data) && takes_descriptors(connection);
}

std::unique_ptr<X11Pixels> X11Pixels::Of(xcb_connection_t* connection, uint32 window)
{
    auto* place = xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
    const bool fits = place != nullptr && place->depth == kDepth;
    free(place);
    return std::unique_ptr<X11Pixels>(fits ? new X11Pixels(connection, window) : nullptr);
}

X11Pixels::X11Pixels(xcb_connection_t* connection, uint32 window)
    : fConnection(connection), fWindow(window), fContext(xcb_generate_id(connection))
{
    const uint32 kNoEvents = 0;
    xcb_create_gc(connection, fContext, window, XCB_GC_GRAPHICS_EXPOSURES, &kNoEvents);
}

X11Pixels::~X11Pixels()
{
    _Detach();
    xcb_free_gc(fConnection, fContext);
    if (fAsked != 0)
        xcb_discard_reply(fConnection, fAsked);
    xcb_flush(fConnection);
}

void X11Pixels::_Detach()
{
    if (fSegment != 0)
        xcb_shm_detach(fConnection, fSegment);
    fSegment = 0;
}

void X11Pixels::Attach(int descriptor, int32 width, int32 height)
{
    _Detach();
    const uint8_t kReadsOnly = 1;
    fSegment = xcb_generate_id(fConnection);
    xcb_shm_attach_fd(fConnection, fSegment, descriptor, kReadsOnly);
    fWidth = width;
    fHeight = height;
}

void X11Pixels::Show(const std::vector<clipping_rect>& rects)
{
    for (const clipping_rect& rect : rects) {
        const auto width = uint16_t(rect.right - rect.left + 1);
        const auto height = uint16_t(rect.bottom - rect.top + 1);
        xcb_shm_put_image(fConnection, fWindow, fContext, uint16_t(fWidth), uint16_t(fHeight),
                          uint16_t(rect.left), uint16_t(rect.top), width, height,
                          int16_t(rect.left), int16_t(rect.top), kDepth, XCB_IMAGE_FORMAT_Z_PIXMAP,
                          0, fSegment, 0);
    }
    if (fAsked == 0)
        fAsked = xcb_get_input_focus(fConnection).sequence;
    xcb_flush(fConnection);
}

bool X11Pixels::IsBusy()
{
    if (fAsked == 0)
        return false;
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(fConnection, fAsked, &reply, &error) == 0)
        return true;
    free(reply);
    free(error);
    fAsked = 0;
    return false;
}

}  // namespace server
