#ifndef SERVER_QT_X11_OFFER_H
#define SERVER_QT_X11_OFFER_H

// What this program has put on the clipboard, handed out to programs that ask the X server for it.
// Large forms go in pieces, each when the last one was taken. The clipboard's thread; nothing
// waits.

#include <OS.h>

#include <xcb/xcb.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "server/clipboard/Clipboard.h"
#include "server/qt/x11/X11Atoms.h"

namespace server {

class X11Offer {
public:
    X11Offer(xcb_connection_t* connection, X11Atoms& atoms);

    // From `since` on, a time of the X server, these forms are handed out.
    void Set(ClipboardForms forms, xcb_timestamp_t since)
    {
        fForms = std::make_shared<const ClipboardForms>(std::move(forms));
        fLatin1 = nullptr;
        fSince = since;
    }
    // Somebody else has the clipboard. What is on its way gets there.
    void Clear() { Set({}, XCB_CURRENT_TIME); }
    const ClipboardForms& Forms() const { return *fForms; }
    // Everything that may be asked for.
    std::vector<xcb_atom_t> Targets();

    void Answer(const xcb_selection_request_event_t& request);
    // A property was taken from a window, or a window is gone.
    void PieceTaken(xcb_window_t window, xcb_atom_t property);
    void WindowGone(xcb_window_t window);

    bool IsSending() const { return !fTransfers.empty(); }
    // Gives up on programs that have taken nothing for long.
    void DropStalled();

private:
    // Whoever asks for a form gets the same bytes: they lie in the memory but once.
    using Bytes = std::shared_ptr<const std::string>;
    struct Transfer {
        xcb_window_t window;
        xcb_atom_t property, type;
        Bytes bytes;
        size_t sent;
        bigtime_t since;  // the last sign of life
    };

    bool _Convert(xcb_window_t window, xcb_atom_t target, xcb_atom_t property);
    bool _ConvertMultiple(xcb_window_t window, xcb_atom_t property);
    Bytes _Render(xcb_atom_t target, xcb_atom_t* type);
    void _Send(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, Bytes bytes);
    void _Listen(xcb_window_t window);

    xcb_connection_t* fConnection;
    X11Atoms& fAtoms;
    size_t fPiece;  // bytes that go at once
    std::shared_ptr<const ClipboardForms> fForms = std::make_shared<const ClipboardForms>();
    Bytes fLatin1;  // the text form so; null until somebody wants it
    xcb_timestamp_t fSince = XCB_CURRENT_TIME;
    std::vector<Transfer> fTransfers;
};

// The names under which X programs ask for text, those that keep all of it first.
extern const char* const kX11TextTargets[6];

std::string latin1_to_utf8(const std::string& text);

}  // namespace server

#endif  // SERVER_QT_X11_OFFER_H
