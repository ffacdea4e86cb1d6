#ifndef SERVER_QT_DRAG_H
#define SERVER_QT_DRAG_H

#include <memory>

#include "server/screen/Screen.h"

namespace server {

class DragWindow;
class X11Drag;
class X11Screen;

// A drag on Qt's display: its picture, and what other programs see of it. Server's thread.
class QtDrag {
public:
    // `x11` null: where the compositor carries drags it does so with this one. Else other programs
    // see nothing of it, and there is no picture.
    QtDrag(X11Screen* x11, std::shared_ptr<const DragPicture> picture, ClipboardForms forms);
    ~QtDrag();

    // True if the pointer is over another program's window there.
    bool MoveTo(BPoint pointer);
    void End(bool dropped);

    // The compositor has the pointer, for a drag of ours: windows hear of drags alone.
    static bool IsCarried();
    // It is over one of our windows.
    static void Entered();
    // It has ended, as far as the compositor says.
    static void Over();

private:
    struct Carried;

    static Carried* sCarried;  // server's thread; null: none

    static void _Carry(std::shared_ptr<Carried> carried);

    std::shared_ptr<Carried> fCarried;    // by the compositor; null: not
    std::unique_ptr<DragWindow> fWindow;  // null: nothing to be seen, or it has ended
    std::unique_ptr<X11Drag> fOffer;      // null: none
    bool fEnded = false;
};

}  // namespace server

#endif  // SERVER_QT_DRAG_H
