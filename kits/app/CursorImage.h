#ifndef APP_CURSOR_IMAGE_H
#define APP_CURSOR_IMAGE_H

// What a cursor looks like; never changed once made, so threads may share it.

#include <Cursor.h>
#include <SupportDefs.h>

#include <memory>
#include <vector>

namespace BPrivate {

struct CursorImage {
    int32 id = 0;                // BCursorID, or 0: the pixels say it all
    std::vector<uint32> pixels;  // B_RGBA32, not premultiplied
    int32 width = 0, height = 0;
    int32 hotX = 0, hotY = 0;
    bool operator==(const CursorImage&) const = default;
};

// The image of a cursor, null for a null cursor or one that could not be made.
std::shared_ptr<const CursorImage> cursor_image(const BCursor* cursor);

}  // namespace BPrivate

#endif  // APP_CURSOR_IMAGE_H
