#ifndef GRAPHICS_ICONS_H
#define GRAPHICS_ICONS_H

// Icons and images of the registry.

#include "runtime/registry.h"

#include <stdint.h>

class BBitmap;
class BView;

// A block from MyAlloc in the list kIcons. The icon of a file or type has its small image first,
// then the large one; an image of any size is followed by itself as it looks when selected. The
// bitmaps may be used, and the fields changed, under the images' lock.
struct IconRecord {
    static const RegistrySlot kSlot = kIcons;

    int32_t ident;
    BBitmap* image;
    BBitmap* selected_image;  // null until asked for, if it is made from the first
    BView* canvas;            // draws into the first image, which owns it; null until then
    bool has_own_second;      // the second image is not made from the first
};

extern LastingLocker gImagesLocker;

// Holds all images: what was looked up stays, and nobody else draws into one. A window is locked
// before it, and the registry may be looked up under it. Any thread; it may be held twice.
class [[nodiscard]] THREAD_SAFETY(scoped_lockable) ImagesLock {
public:
    ImagesLock() THREAD_SAFETY(acquire_capability(gImagesLocker)) { gImagesLocker.Lock(); }
    ~ImagesLock() THREAD_SAFETY(release_capability()) { gImagesLocker.Unlock(); }
    ImagesLock(const ImagesLock&) = delete;
    ImagesLock& operator=(const ImagesLock&) = delete;
};

// A record without ident, with bitmaps of 16 and of 32 pixels square as types' icons are kept in;
// null if there is no memory. It is in no list.
IconRecord* MyAllocIcon();
// Deletes a record that is in no list, and its bitmaps.
void MyFreeIcon(IconRecord* icon);

// The image of an icon, null if no icon has that ident. Who keeps it makes a copy.
const BBitmap* icon_image(const ImagesLock& images, int32_t ident, bool selected);
// The large image of an icon that has one, else its only one.
const BBitmap* large_icon_image(const ImagesLock& images, int32_t ident);

// An image for one drawing call: it stays as long as this lives. Clang's analysis does not follow
// the lock that an open one has, since Open() may fail.
class [[nodiscard]] ImageAccess {
public:
    ImageAccess() = default;
    ~ImageAccess() { Close(); }
    ImageAccess(const ImageAccess&) = delete;
    ImageAccess& operator=(const ImageAccess&) = delete;

    // False if there is no image with that ident.
    bool Open(int32_t ident);
    void Close();
    // What draws into the first image, and that image; of one that is open.
    BView* View() const { return fIcon->canvas; }
    BBitmap* Raster() const { return fIcon->image; }

private:
    IconRecord* fIcon = nullptr;
};

#endif  // GRAPHICS_ICONS_H
