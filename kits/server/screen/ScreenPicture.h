#ifndef SERVER_SCREEN_PICTURE_H
#define SERVER_SCREEN_PICTURE_H

#include <Point.h>

#include <server/screen/StageLock.h>
#include <server/screen/Surface.h>

namespace server {

// The colour behind the windows.
rgb_color desktop_color() REQUIRES(gStageLock);
void set_desktop_color(rgb_color color) REQUIRES(gStageLock);

// Draws this program's windows with title tabs and borders over the desktop. `leftTop` is the
// place on the screen of the target's first pixel.
void draw_screen(const Surface& target, BPoint leftTop) REQUIRES(gStageLock);

}  // namespace server

#endif  // SERVER_SCREEN_PICTURE_H
