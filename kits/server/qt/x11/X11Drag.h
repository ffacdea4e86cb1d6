#ifndef SERVER_QT_X11_DRAG_H
#define SERVER_QT_X11_DRAG_H

// The source's side of a drag to other programs of an X server (XDND, version 5), on a connection
// of its own. Other programs are never waited for: each is told of the newest place of the pointer
// when it has answered about the last one. Server's thread.

#include <SupportDefs.h>

#include <xcb/xcb.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "server/qt/x11/X11Atoms.h"
#include "server/qt/x11/X11Offer.h"

class QSocketNotifier;
class QTimer;

namespace server {

class X11Drag {
public:
    // `is_own` tells the windows of this program, to which nothing is said. Null without a server.
    static std::unique_ptr<X11Drag> Begin(ClipboardForms forms, std::function<bool(uint32)> is_own);
    ~X11Drag();
    X11Drag(const X11Drag&) = delete;

    // True if the window in front there is another program's.
    bool MoveTo(int32 x, int32 y);
    // The object stays, for what was dropped is asked for afterwards.
    void End(bool dropped);

private:
    struct Target {
        xcb_window_t window = XCB_NONE;    // none: it takes no drags
        xcb_window_t receiver = XCB_NONE;  // of the messages: mostly the same
        uint32 version = 0;
    };

    X11Drag(xcb_connection_t* connection, xcb_window_t root, ClipboardForms forms,
            std::function<bool(uint32)> is_own);
    xcb_window_t _ChildAt(xcb_window_t window, int32 x, int32 y);
    uint32 _Property(xcb_window_t window, const char* name, xcb_atom_t type);
    const Target& _Aware(xcb_window_t window);
    Target _TargetAt(int32 x, int32 y, bool* covered);
    void _Enter(const Target& target);
    void _Leave();
    void _TellPlace();
    void _Drop();
    void _Tell(const char* message, uint32 first = 0, uint32 second = 0, uint32 third = 0,
               uint32 fourth = 0);
    void _HandleEvents();
    void _Answered(bool accepts);

    xcb_connection_t* const fConnection;
    const xcb_window_t fRoot;
    const std::function<bool(uint32)> fIsOwn;
    X11Atoms fAtoms;
    X11Offer fOffer;
    std::vector<xcb_atom_t> fTypes;
    xcb_window_t fWindow;  // the source
    std::unique_ptr<QSocketNotifier> fNotifier;
    std::unique_ptr<QTimer> fPatience;      // with a target that has to say yes to the drop
    std::map<xcb_window_t, Target> fKnown;  // by window
    Target fTarget;                         // what the pointer is over
    int32 fX = 0, fY = 0;
    bool fIsAsked = false;   // and has not answered
    bool fHasMoved = false;  // since it was asked
    bool fAccepts = false;   // its last answer
    bool fDrops = false;     // as soon as it has answered
};

}  // namespace server

#endif  // SERVER_QT_X11_DRAG_H
