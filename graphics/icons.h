#ifndef GRAPHICS_ICONS_H
#define GRAPHICS_ICONS_H

// Icons of the registry as drawing needs them.

#include "runtime/registry.h"

#include <stdint.h>

class BBitmap;

// A block from MyAlloc in the list kIcons. The icon of a type has its small image first, then the
// large one.
struct IconRecord {
    static const RegistrySlot kSlot = kIcons;

    int32_t ident;
    BBitmap* image;
    BBitmap* selected_image;  // null: the same as image
};

// A record without ident, with bitmaps of 16 and of 32 pixels square as types' icons are kept in;
// null if there is no memory. It is in no list. Main thread.
IconRecord* MyAllocIcon();
// Deletes a record that is in no list, and its bitmaps.
void MyFreeIcon(IconRecord* icon);

// The image of an icon, null if no icon has that ident. Main thread.
const BBitmap* icon_image(int32_t ident, bool selected);

#endif  // GRAPHICS_ICONS_H
