#ifndef _CURSOR_H
#define _CURSOR_H

#include <Archivable.h>
#include <InterfaceDefs.h>
#include <SupportDefs.h>

#include <memory>

class BBitmap;
class BMessage;
class BCursor;
class BPoint;

enum BCursorID {
    B_CURSOR_ID_SYSTEM_DEFAULT = 1,
    B_CURSOR_ID_CONTEXT_MENU = 3,
    B_CURSOR_ID_COPY = 4,
    B_CURSOR_ID_CREATE_LINK = 29,
    B_CURSOR_ID_CROSS_HAIR = 5,
    B_CURSOR_ID_FOLLOW_LINK = 6,
    B_CURSOR_ID_GRAB = 7,
    B_CURSOR_ID_GRABBING = 8,
    B_CURSOR_ID_HELP = 9,
    B_CURSOR_ID_I_BEAM = 2,
    B_CURSOR_ID_I_BEAM_HORIZONTAL = 10,
    B_CURSOR_ID_MOVE = 11,
    B_CURSOR_ID_NO_CURSOR = 12,
    B_CURSOR_ID_NOT_ALLOWED = 13,
    B_CURSOR_ID_PROGRESS = 14,
    B_CURSOR_ID_RESIZE_NORTH = 15,
    B_CURSOR_ID_RESIZE_EAST = 16,
    B_CURSOR_ID_RESIZE_SOUTH = 17,
    B_CURSOR_ID_RESIZE_WEST = 18,
    B_CURSOR_ID_RESIZE_NORTH_EAST = 19,
    B_CURSOR_ID_RESIZE_NORTH_WEST = 20,
    B_CURSOR_ID_RESIZE_SOUTH_EAST = 21,
    B_CURSOR_ID_RESIZE_SOUTH_WEST = 22,
    B_CURSOR_ID_RESIZE_NORTH_SOUTH = 23,
    B_CURSOR_ID_RESIZE_EAST_WEST = 24,
    B_CURSOR_ID_RESIZE_NORTH_EAST_SOUTH_WEST = 25,
    B_CURSOR_ID_RESIZE_NORTH_WEST_SOUTH_EAST = 26,
    B_CURSOR_ID_ZOOM_IN = 27,
    B_CURSOR_ID_ZOOM_OUT = 28
};

namespace BPrivate {
struct CursorImage;
[[gnu::visibility("hidden")]] std::shared_ptr<const CursorImage> cursor_image(
    const BCursor* cursor);
}  // namespace BPrivate

/* A picture for the pointer. It copies what it is made from, and copies share it. */
class BCursor : public BArchivable {
public:
    /* 68 bytes: size 16, depth 1, hot spot as row and column, 16 rows of two image bytes, 16 rows
       of two mask bytes. An image bit is black; else a mask bit is white, the rest transparent. */
    BCursor(const void* cursorData);
    BCursor(const BCursor& other);
    /* One of the host's cursors. */
    BCursor(BCursorID id);
    BCursor(BMessage* data);
    BCursor(const BBitmap* bitmap, const BPoint& hotspot);
    virtual ~BCursor();

    /* B_OK, or B_BAD_VALUE for data that is no cursor. */
    status_t InitCheck() const;
    virtual status_t Archive(BMessage* archive, bool deep = true) const;
    static BArchivable* Instantiate(BMessage* archive);
    BCursor& operator=(const BCursor& other);
    bool operator==(const BCursor& other) const;
    bool operator!=(const BCursor& other) const;

private:
    friend std::shared_ptr<const BPrivate::CursorImage> BPrivate::cursor_image(
        const BCursor* cursor);

    std::shared_ptr<const BPrivate::CursorImage> fImage;  // null: not made
};

#endif  // _CURSOR_H
