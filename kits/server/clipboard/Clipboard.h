#ifndef SERVER_CLIPBOARD_H
#define SERVER_CLIPBOARD_H

// What programs hand each other by copying and pasting. All functions may be called from any
// thread, with any window locked; none waits longer than kClipboardPatience for another program,
// and the server's thread, which runs all windows, waits for none.

#include <OS.h>
#include <SupportDefs.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace server {

// Microseconds of silence after which a program that owns the clipboard counts as dead.
const bigtime_t kClipboardPatience = 800000;
// The same of the screen itself, which is slow only where the machine is busy.
const bigtime_t kScreenPatience = 10000000;

// The text form, in UTF-8 on every host. Other forms have their MIME type's name.
inline const char* const kTextForm = "text/plain";

// What is dragged whole, for programs of this kind: a flattened message.
inline const char* const kDragForm = "application/x-vnd.be-drag-message";

// The content in one of its forms.
struct ClipboardForm {
    std::string type;
    std::string bytes;
};

using ClipboardForms = std::vector<ClipboardForm>;

class Clipboard {
public:
    virtual ~Clipboard() = default;

    // Rises with every change, whoever makes it; says nothing between programs.
    virtual uint32 Changes() = 0;
    // The first of `types` that is offered. B_ENTRY_NOT_FOUND when none is, B_TIMED_OUT when the
    // program that offers it does not answer.
    virtual status_t Read(const std::vector<std::string>& types, ClipboardForm* form) = 0;
    // Replaces the content and tells the number of this change. With `expected`, only if there was
    // none since that one: else B_ERROR.
    virtual status_t Write(ClipboardForms forms, const uint32* expected, uint32* changes) = 0;
    // Called after every change, on a thread that must not be held up; null for none.
    virtual void SetListener(std::function<void()> listener) = 0;
    // Takes leave of the host; what is called later fails.
    virtual void End() {}
};

// The one that all programs of the screen share.
std::shared_ptr<Clipboard> SystemClipboard();

// What is selected at present, where the screen's programs hand that on without a command, and the
// middle button inserts it; null where they do not.
std::shared_ptr<Clipboard> PrimarySelection();

// One of this process alone.
std::shared_ptr<Clipboard> make_memory_clipboard();

// The first of `types` among `forms`, null for none.
const ClipboardForm* find_form(const ClipboardForms& forms, const std::vector<std::string>& types);

}  // namespace server

#endif  // SERVER_CLIPBOARD_H
