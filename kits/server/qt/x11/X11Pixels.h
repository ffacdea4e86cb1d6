#ifndef SERVER_QT_X11_PIXELS_H
#define SERVER_QT_X11_PIXELS_H

// The way of a window's pixels to its X window: the X server reads them where they are, in memory
// that it has been given the descriptor of. Server's thread.

#include <Region.h>
#include <SupportDefs.h>

#include <memory>
#include <vector>

struct xcb_connection_t;

namespace server {

class X11Pixels {
public:
    // Whether the X server is on this machine, and has pixels as we do.
    static bool AreKnownTo(xcb_connection_t* connection);
    // Null where the window has other pixels than the screen.
    static std::unique_ptr<X11Pixels> Of(xcb_connection_t* connection, uint32 window);
    ~X11Pixels();
    X11Pixels(const X11Pixels&) = delete;
    X11Pixels& operator=(const X11Pixels&) = delete;

    // Where the pixels are from here on; closes the descriptor.
    void Attach(int descriptor, int32 width, int32 height);
    // Shows parts of them.
    void Show(const std::vector<clipping_rect>& rects);
    // True as long as the X server has not come to what was shown last.
    bool IsBusy();

private:
    X11Pixels(xcb_connection_t* connection, uint32 window);
    void _Detach();

    xcb_connection_t* fConnection;
    uint32 fWindow;
    uint32 fContext;
    uint32 fSegment = 0;  // 0: none
    int32 fWidth = 0, fHeight = 0;
    unsigned fAsked = 0;  // the request that is answered once all is shown; 0: none
};

}  // namespace server

#endif  // SERVER_QT_X11_PIXELS_H
