#ifndef SERVER_QT_X11_ATOMS_H
#define SERVER_QT_X11_ATOMS_H

#include <xcb/xcb.h>

#include <map>
#include <string>

namespace server {

// Numbers that an X server gives to names, each asked for once. One thread.
class X11Atoms {
public:
    explicit X11Atoms(xcb_connection_t* connection) : fConnection(connection) {}
    xcb_atom_t Find(const std::string& name);

private:
    xcb_connection_t* fConnection;
    std::map<std::string, xcb_atom_t> fKnown;
};

}  // namespace server

#endif  // SERVER_QT_X11_ATOMS_H
