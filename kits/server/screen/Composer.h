#ifndef SERVER_COMPOSER_H
#define SERVER_COMPOSER_H

#include <Point.h>

#include <server/screen/Surface.h>

namespace server {

// The colour behind the windows. Stage locked.
rgb_color desktop_color();
void set_desktop_color(rgb_color color);

// Draws this program's windows with title tabs and borders over the desktop. `leftTop` is the
// place on the screen of the target's first pixel. Stage locked.
void compose(const Surface& target, BPoint leftTop);

// Any thread, nothing locked.
status_t write_png(const char* path, const uint32* pixels, int32 width, int32 height);

}  // namespace server

#endif  // SERVER_COMPOSER_H
