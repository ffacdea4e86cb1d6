#ifndef SERVER_SCREEN_PICTURE_H
#define SERVER_SCREEN_PICTURE_H

#include <Point.h>

#include <server/screen/Surface.h>

namespace server {

// The colour behind the windows. Stage locked.
rgb_color desktop_color();
void set_desktop_color(rgb_color color);

// Draws this program's windows with title tabs and borders over the desktop. `leftTop` is the
// place on the screen of the target's first pixel. Stage locked.
void draw_screen(const Surface& target, BPoint leftTop);

}  // namespace server

#endif  // SERVER_SCREEN_PICTURE_H
