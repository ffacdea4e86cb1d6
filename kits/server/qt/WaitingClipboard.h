#ifndef SERVER_QT_WAITING_CLIPBOARD_H
#define SERVER_QT_WAITING_CLIPBOARD_H

// A clipboard whose work a thread of its own does, while the caller waits for a while. What is
// handed over lives until both are through with it, since the caller may give up first.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "server/clipboard/Clipboard.h"

namespace server {

class WaitingClipboard : public Clipboard {
public:
    status_t Read(const std::vector<std::string>& types, ClipboardForm* form) override;
    status_t Write(ClipboardForms forms, const uint32* expected, uint32* changes) override;

protected:
    // Has the work done. False if it was not in time; it may be later.
    virtual bool Call(std::function<void()> work) = 0;
    // The work, on that thread.
    virtual status_t ReadNow(const std::vector<std::string>& types, ClipboardForm* form) = 0;
    virtual status_t WriteNow(ClipboardForms forms, std::optional<uint32> expected,
                              uint32* changes) = 0;
};

}  // namespace server

#endif  // SERVER_QT_WAITING_CLIPBOARD_H
