#ifndef GRAPHICS_ICONS_H
#define GRAPHICS_ICONS_H

// Icons of the registry as drawing needs them.

#include <stdint.h>

class BBitmap;

// A block from MyAlloc in the list kIcons.
struct IconRecord {
    int32_t ident;
    BBitmap* image;
    BBitmap* selected_image;  // null: the same as image
};

// The image of an icon, null if no icon has that ident. Main thread.
const BBitmap* icon_image(int32_t ident, bool selected);

#endif  // GRAPHICS_ICONS_H
