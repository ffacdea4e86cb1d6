// A clipboard in this process: that of the display in memory, and those that only one program
// knows by name.

#include "server/clipboard/Clipboard.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace server {

namespace {

class MemoryClipboard final : public Clipboard {
public:
    uint32 Changes() override
    {
        std::lock_guard guard(fMutex);
        return fChanges;
    }

    status_t Read(const std::vector<std::string>& types, ClipboardForm* form) override
    {
        std::lock_guard guard(fMutex);
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
            std::lock_guard guard(fMutex);
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
        std::lock_guard guard(fMutex);
        fListener = std::move(listener);
    }

private:
    std::mutex fMutex;  // all below
    ClipboardForms fForms;
    uint32 fChanges = 0;
    std::function<void()> fListener;
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
