#ifndef SERVER_QT_X11_HINTS_H
#define SERVER_QT_X11_HINTS_H

// What window managers of X are told of a window in words that Qt does not have.

#include <vector>

#include "server/qt/WindowKind.h"
#include "server/qt/x11/X11Atoms.h"

namespace server {

// Server's thread.
class X11Hints {
public:
    X11Hints(xcb_connection_t* connection, uint32 root)
        : fConnection(connection), fRoot(root), fAtoms(connection)
    {
    }

    // Says all of it anew; Qt overwrites some whenever it is told of a new kind. `above` is the
    // window that a modal or floating one belongs to, 0 for all of the program's.
    void Tell(uint32 window, const WindowKind& kind, uint32 above, bool isShown);
    // Takes away the program's name, which Qt puts where there is no title.
    void RemoveTitle(uint32 window);

private:
    void _TellDecoration(uint32 window, const WindowKind& kind);
    void _TellOwner(uint32 window, const WindowKind& kind, uint32 above);
    void _TellStates(uint32 window, const WindowKind& kind, bool isShown);
    std::vector<xcb_atom_t> _States(uint32 window);
    void _AskForState(uint32 window, xcb_atom_t state, bool on);

    xcb_connection_t* fConnection;
    uint32 fRoot;
    X11Atoms fAtoms;
};

}  // namespace server

#endif  // SERVER_QT_X11_HINTS_H
