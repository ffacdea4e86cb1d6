// Text on the system's clipboard. Any thread.

#include "plinth.h"

#include <Clipboard.h>
#include <Message.h>
#include <TypeConstants.h>

#include <exception>
#include <new>
#include <string.h>

#include <string>
#include <string_view>

#include "runtime/thread_text.h"
#include "runtime/trace.h"

static const char* const kText = "text/plain";

namespace {

// Holds the application's clipboard; gives back only a lock that it got.
class ClipboardLock {
public:
    explicit ClipboardLock(const char* call)
        : fHeld(be_clipboard != nullptr && be_clipboard->Lock())
    {
        if (!fHeld)
            show_dbg(kNoService, 0, call);
    }
    ~ClipboardLock()
    {
        if (fHeld)
            be_clipboard->Unlock();
    }
    ClipboardLock(const ClipboardLock&) = delete;
    bool Held() const { return fHeld; }

private:
    bool fHeld;
};

}  // namespace

static bool find_text(const void** bytes, ssize_t* size)
{
    const BMessage* data = be_clipboard->Data();
    return data != nullptr && data->FindData(kText, B_MIME_TYPE, bytes, size) == B_OK;
}

// The stored text has no terminator, and another thread may replace it at any time: each thread
// gets a copy, which only moves when the text has changed.
extern "C" char* GetStringClipboard(void)
try {
    static thread_local std::string* tText = nullptr;
    std::string* text = thread_text(&tText);
    if (text == nullptr)
        throw std::bad_alloc();
    ClipboardLock lock(__func__);
    const void* bytes = "";
    ssize_t size = 0;
    if (lock.Held())
        find_text(&bytes, &size);
    const std::string_view stored(static_cast<const char*>(bytes), static_cast<size_t>(size));
    if (*text != stored)
        *text = stored;
    return text->data();
} catch (const std::exception&) {
    static char nothing[] = "";
    show_dbg(kNoMemory, 0, __func__);
    return nothing;
}

extern "C" bool SetStringClipboard(const char* s)
try {
    if (s == nullptr) {
        show_dbg(kBadArgument, 0, __func__);
        return false;
    }
    ClipboardLock lock(__func__);
    if (!lock.Held())
        return false;
    be_clipboard->Clear();
    BMessage* data = be_clipboard->Data();
    if (data == nullptr)
        return false;
    if (data->AddData(kText, B_MIME_TYPE, s, static_cast<ssize_t>(strlen(s)), false) != B_OK)
        return false;
    return be_clipboard->Commit() == B_OK;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return false;
}

extern "C" bool ClearClipboard(void)
try {
    ClipboardLock lock(__func__);
    if (!lock.Held())
        return false;
    be_clipboard->Clear();  // kept on purpose: other programs keep what is on the clipboard
    return true;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return false;
}

extern "C" bool IsEmptyClipboard(void)
try {
    ClipboardLock lock(__func__);
    const void* bytes;
    ssize_t size;
    return lock.Held() && find_text(&bytes, &size);  // kept on purpose: true when there is text
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return false;
}
