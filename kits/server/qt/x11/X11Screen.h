#ifndef SERVER_QT_X11_SCREEN_H
#define SERVER_QT_X11_SCREEN_H

// What Qt leaves to the X server and its window manager: workspaces, and putting windows behind
// each other. Server's thread.

#include <QAbstractNativeEventFilter>

#include <SupportDefs.h>

#include <memory>

#include "server/qt/x11/X11Hints.h"
#include "server/qt/x11/X11Pixels.h"

struct xcb_connection_t;

namespace server {

class X11Screen final : public QAbstractNativeEventFilter {
public:
    // Null if Qt does not run on X.
    static std::unique_ptr<X11Screen> Connect();
    ~X11Screen() override;

    // Sends waiting requests to the server.
    void Flush();
    void ActivateWorkspace(int32 workspace);
    // X has a window on one workspace or on all. The set of bits that comes of asking for one.
    static uint32 Possible(uint32 workspaces);
    // Before a window is shown it says itself where it is to be; later the window manager is asked.
    void SetWorkspaces(uint32 window, uint32 workspaces);
    void MoveToWorkspaces(uint32 window, uint32 workspaces);
    void PutBehind(uint32 window, uint32 other);
    // As far as the window manager lets us.
    void SetWorkspaceCount(int32 count);
    // Whether the screen blends translucent windows with what is below them.
    bool HasCompositor();
    // Has a window that is only to be seen take no input: the one below it is in front for that.
    void PassInputThrough(uint32 window);
    X11Hints& Hints() { return fHints; }
    // Whether the X server reads pixels where they are; null for a window of which it does not.
    bool ReadsPixels() const { return fReadsPixels; }
    std::unique_ptr<X11Pixels> PixelsOf(uint32 window);

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    X11Screen(xcb_connection_t* connection, uint32 root);
    uint32 _Atom(const char* name);
    int64 _Number(uint32 window, uint32 property);
    void _ReadWorkspaces();
    void _ReadWorkspacesOf(uint32 window);
    void _RepeatWithoutReleases();
    void _Tell(uint32 window, uint32 message, uint32 first, uint32 second = 0, uint32 third = 0);

    xcb_connection_t* fConnection;
    uint32 fRoot;
    X11Hints fHints;
    const bool fReadsPixels;
    uint32 fCount, fCurrent, fOfWindow, fRestack;  // atoms
};

}  // namespace server

#endif  // SERVER_QT_X11_SCREEN_H
