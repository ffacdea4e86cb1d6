#ifndef SERVER_QT_WINDOW_KIND_H
#define SERVER_QT_WINDOW_KIND_H

// What a window's look, feel and flags come to on a desktop that is not BeOS's.

#include <Window.h>

#include <Qt>

namespace server {

struct WindowKind {
    window_look look = B_TITLED_WINDOW_LOOK;
    window_feel feel = B_NORMAL_WINDOW_FEEL;
    uint32 flags = 0;

    bool operator==(const WindowKind&) const = default;

    // Stands where it is told to, at once: menus and the like, which no window manager is to touch.
    bool IsUnmanaged() const;
    bool IsModal() const;
    bool IsFloating() const;
    // Above the windows of other programs too.
    bool IsAboveAll() const;
    bool HasTitle() const;
    bool HasBorder() const { return look != B_NO_BORDER_WINDOW_LOOK; }
    // What the user may do.
    bool Allows(uint32 forbidding) const { return (flags & forbidding) == 0; }
    bool IsResizable() const;
    bool IsZoomable() const { return IsResizable() && Allows(B_NOT_ZOOMABLE); }
    bool IsMinimizable() const;

    // The kind in Qt's words.
    Qt::WindowFlags QtFlags() const;
};

}  // namespace server

#endif  // SERVER_QT_WINDOW_KIND_H
