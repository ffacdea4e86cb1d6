#ifndef SERVER_QT_CLIPBOARD_H
#define SERVER_QT_CLIPBOARD_H

// Qt's clipboard, for screens other than X11's. Qt asks other programs on the server's thread and
// waits for them there; who asks us to gives up earlier.

#include <QClipboard>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "server/qt/WaitingClipboard.h"

class QMimeData;

namespace server {

class QtDisplay;

// The forms as Qt takes them; the caller's.
QMimeData* mime_data_of(const ClipboardForms& forms);

class QtClipboard final : public WaitingClipboard {
public:
    // Server's thread; `context` lives as long as that runs.
    QtClipboard(QtDisplay* display, QObject* context, QClipboard::Mode mode);

    uint32 Changes() override { return fChanges; }
    void SetListener(std::function<void()> listener) override;

private:
    bool Call(std::function<void()> work) override;
    status_t ReadNow(const std::vector<std::string>& types, ClipboardForm* form) override;
    status_t WriteNow(ClipboardForms forms, std::optional<uint32> expected,
                      uint32* changes) override;
    void _Changed();

    QtDisplay* fDisplay;
    const QClipboard::Mode fMode;
    std::atomic<uint32> fChanges{0};
    std::mutex fMutex;  // the next
    std::function<void()> fListener;
};

}  // namespace server

#endif  // SERVER_QT_CLIPBOARD_H
