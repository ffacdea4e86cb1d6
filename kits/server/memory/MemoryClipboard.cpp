// A clipboard in this process: that of the display in memory, and those that only one program
// knows by name.

#include "server/clipboard/Clipboard.h"
#include "support/Mutex.h"

#include <algorithm>
#include <utility>

namespace server {

namespace {

class MemoryClipboard final : public Clipboard {
public:
    uint32 Changes() override
    {
        BPrivate::MutexLock guard(fMutex);
        return fChanges;
    }

    status_t Read(const std::vector<std::string>& types, ClipboardForm* form) override
    {
        BPrivate::MutexLock guard(fMutex);
        const ClipboardForm* found = find_form(fForms, types);
        if (found == nullptr)
            return B_ENTRY_NOT_FOUND;
        *form = *found;
        return B_OK;
    }

    status_t Write(ClipboardForms forms, const uint32* expected, uint32* changes) override
    {
        std::function<void()> listener;
        {
            BPrivate::MutexLock guard(fMutex);
            if (expected != nullptr && *expected != fChanges)
                return B_ERROR;
            fForms = std::move(forms);
            *changes = ++fChanges;
            listener = fListener;
        }
        if (listener)
            listener();
        return B_OK;
    }

    void SetListener(std::function<void()> listener) override
    {
        BPrivate::MutexLock guard(fMutex);
        fListener = std::move(listener);
    }

private:
    BPrivate::Mutex fMutex;
    ClipboardForms fForms GUARDED_BY(fMutex);
    uint32 fChanges GUARDED_BY(fMutex) = 0;
    std::function<void()> fListener GUARDED_BY(fMutex);
};

}  // namespace

std::shared_ptr<Clipboard> make_memory_clipboard() { return std::make_shared<MemoryClipboard>(); }

const ClipboardForm* find_form(const ClipboardForms& forms, const std::vector<std::string>& types)
{
    for (const std::string& type : types) {
        auto found = std::find_if(forms.begin(), forms.end(),
                                  [&](const ClipboardForm& form) { return form.type == type; });
        if (found != forms.end())
            return &*found;
    }
    return nullptr;
}

}  // namespace server
