#ifndef SERVER_QT_X11_CLIPBOARD_H
#define SERVER_QT_X11_CLIPBOARD_H

// One of the X server's selections as a clipboard, on a connection and a thread of its own: other
// programs are asked and answered while windows go on, whose thread would have to wait for them
// inside Qt. The thread starts with the first use.

#include <xcb/xcb.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "server/qt/WaitingClipboard.h"
#include "server/qt/x11/X11Atoms.h"
#include "server/qt/x11/X11Offer.h"

struct xcb_xfixes_selection_notify_event_t;

namespace server {

class X11Clipboard final : public WaitingClipboard {
public:
    explicit X11Clipboard(const char* selection);
    ~X11Clipboard() override;

    uint32 Changes() override;
    void SetListener(std::function<void()> listener) override;
    // Hands the content to the desktop's clipboard manager, where there is one.
    void End() override;

private:
    struct Task;

    // Any thread.
    bool Call(std::function<void()> work) override;
    void _Wake();

    // The clipboard's thread, as all below.
    void _Run();
    bool _Connect();
    void _RunTasks();
    void _Sleep(bigtime_t timeout);
    bool _HandleEvents();
    void _Handle(xcb_generic_event_t* event);
    void _OwnerChanged(const xcb_xfixes_selection_notify_event_t& event);
    void _Sync();
    template <class Condition>
    bool _WaitFor(Condition condition);
    status_t ReadNow(const std::vector<std::string>& types, ClipboardForm* form) override;
    status_t WriteNow(ClipboardForms forms, std::optional<uint32> expected,
                      uint32* changes) override;
    status_t _ReadOffered(const std::vector<std::string>& types, ClipboardForm* form);
    status_t _Convert(xcb_atom_t selection, xcb_atom_t target, xcb_atom_t* type,
                      std::string* bytes);
    status_t _ReadPieces(std::string* bytes);
    void _ChangeRequestor();
    xcb_atom_t _TakeProperty(std::string* bytes);
    void _SaveWithManager();

    const std::string fName;  // of the selection
    std::string fDisplayName;
    int fWakeUp = -1;
    std::thread fThread;

    std::mutex fMutex;  // the next five
    std::condition_variable fProgressed;
    std::vector<std::shared_ptr<Task>> fTasks;
    bool fStarted = false, fEnded = false;
    std::function<void()> fListener;
    std::atomic<uint32> fProgress{0};  // rises while the thread gets on with its work
    std::atomic<uint32> fChanges{0};

    xcb_connection_t* fConnection = nullptr;
    std::unique_ptr<X11Atoms> fAtoms;
    std::unique_ptr<X11Offer> fOffer;
    uint8_t fOwnerEvent = 0;
    bool fEnding = false;
    xcb_window_t fWindow = XCB_NONE;  // owns the clipboard when this program does
    xcb_window_t fOwner = XCB_NONE;
    uint32 fOwnChange = 0;  // the change that made it ours last
    ClipboardForms fNext;   // offered from that change on
    // The windows that ask in turn; what the current one asked for, and how far that is.
    xcb_window_t fRequestors[8] = {};
    uint32 fRequestor = 0;
    xcb_atom_t fTarget = XCB_ATOM_NONE;
    bool fAnswered = false, fRefused = false;
    uint32 fPieces = 0;
    bigtime_t fReadEnd = 0;  // of the whole question, however many answers it takes
    xcb_atom_t fSelection = XCB_ATOM_NONE, fProperty = XCB_ATOM_NONE;
};

}  // namespace server

#endif  // SERVER_QT_X11_CLIPBOARD_H
