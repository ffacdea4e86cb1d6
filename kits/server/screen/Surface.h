#ifndef SERVER_SURFACE_H
#define SERVER_SURFACE_H

#include <GraphicsDefs.h>
#include <SupportDefs.h>

namespace server {

// Pixels somebody owns: a window's back buffer or the bits of a BBitmap. It owns nothing itself;
// whoever holds the owner's lock may read and write the pixels.
struct Surface {
    uint8* bits = nullptr;
    int32 bytesPerRow = 0;
    int32 width = 0;   // pixels
    int32 height = 0;  // rows
    color_space space = B_RGBA32;
};

}  // namespace server

#endif  // SERVER_SURFACE_H
