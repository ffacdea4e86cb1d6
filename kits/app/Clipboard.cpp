// Clipboards: a message each, carried to the display's clipboard in the forms that other programs
// understand, and beside them whole, for programs of this kind.

#include <Clipboard.h>

#include <Application.h>
#include <DataIO.h>
#include <Locker.h>
#include <Message.h>
#include <TypeConstants.h>

#include <algorithm>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "app/looper/MessengerAccess.h"
#include "app/message/MessageForms.h"
#include "server/clipboard/Clipboard.h"
#include "support/Mutex.h"

using server::ClipboardForm;
using server::ClipboardForms;

BClipboard* be_clipboard;

static const char* const kSystemName = "system";

// The whole message: "data" and, as "source", the application that it comes from.
static const char* const kMessageForm = "application/x-vnd.be-clipboard-message";
static const uint32 kMessageCode = 'Clip';

// What is taken of another program: its text, else the picture that loses least. It outlives the
// exit handlers, as other threads may paste while they run.
static const auto& kForeignForms = *new std::vector<std::string>{
    server::kTextForm, "image/png", "image/tiff", "image/bmp", "image/jpeg", "image/gif",
};

namespace {

// What all clipboards of one name share. Never destroyed.
struct NamedClipboard {
    std::shared_ptr<server::Clipboard> own;  // null for the system's
    std::vector<BMessenger> watchers;
};

BPrivate::Mutex& names_mutex()
{
    static auto* const mutex = new BPrivate::Mutex;
    return *mutex;
}

NamedClipboard& named_clipboard(const std::string& name) REQUIRES(names_mutex())
{
    static auto* const all = new std::map<std::string, NamedClipboard>;
    NamedClipboard& named = (*all)[name];
    if (named.own == nullptr && name != kSystemName)
        named.own = server::make_memory_clipboard();
    return named;
}

std::shared_ptr<server::Clipboard> find_clipboard(const std::string& name)
{
    if (name == kSystemName)
        return server::SystemClipboard();
    BPrivate::MutexLock guard(names_mutex());
    return named_clipboard(name).own;
}

// On the thread that saw the change.
void tell_watchers(const std::string& name)
{
    BPrivate::MutexLock guard(names_mutex());
    std::vector<BMessenger>& watchers = named_clipboard(name).watchers;
    std::erase_if(watchers, [](const BMessenger& target) {
        return !BPrivate::MessengerAccess::Notify(target, BMessage(B_CLIPBOARD_CHANGED));
    });
}

}  // namespace

struct BClipboard::State {
    std::string name;
    BLocker lock{"clipboard"};
    // All below: locked.
    std::shared_ptr<server::Clipboard> host;
    BMessage data;
    BMessenger source;
    uint32 seen = 0;       // changes when the lock was taken
    uint32 fetched = 0;    // changes that `data` belongs to
    bool current = false;  // `data` was fetched from `host`, or takes its place
};

BClipboard::BClipboard(const char* name, bool) : fState(new State)
{
    fState->name = name != nullptr ? name : kSystemName;
}

BClipboard::~BClipboard() = default;

const char* BClipboard::Name() const { return fState->name.c_str(); }

uint32 BClipboard::LocalCount() const
{
    fState->lock.Lock();
    const uint32 count = fState->seen;
    fState->lock.Unlock();
    return count;
}

uint32 BClipboard::SystemCount() const
{
    return be_app != nullptr ? find_clipboard(fState->name)->Changes() : 0;
}

status_t BClipboard::StartWatching(BMessenger target)
{
    if (!target.IsValid() || be_app == nullptr)
        return B_BAD_VALUE;
    const std::shared_ptr<server::Clipboard> host = find_clipboard(fState->name);
    {
        BPrivate::MutexLock guard(names_mutex());
        std::vector<BMessenger>& watchers = named_clipboard(fState->name).watchers;
        if (std::find(watchers.begin(), watchers.end(), target) == watchers.end())
            watchers.push_back(target);
    }
    host->SetListener([name = fState->name] { tell_watchers(name); });
    return B_OK;
}

status_t BClipboard::StopWatching(BMessenger target)
{
    BPrivate::MutexLock guard(names_mutex());
    return std::erase(named_clipboard(fState->name).watchers, target) > 0 ? B_OK : B_BAD_VALUE;
}

bool BClipboard::Lock()
{
    if (be_app == nullptr || !fState->lock.Lock())
        return false;
    if (fState->lock.CountLocks() > 1)
        return true;
    std::shared_ptr<server::Clipboard> host;
    try {
        host = find_clipboard(fState->name);
    } catch (const std::bad_alloc&) {
        fState->lock.Unlock();
        return false;
    }
    if (host != fState->host) {
        fState->host = std::move(host);
        fState->current = false;
    }
    fState->seen = fState->host->Changes();
    return true;
}

void BClipboard::Unlock() { fState->lock.Unlock(); }

bool BClipboard::IsLocked() const { return fState->lock.IsLocked(); }

status_t BClipboard::Clear()
{
    if (!IsLocked())
        return B_NOT_ALLOWED;
    fState->data.MakeEmpty();
    fState->source = BMessenger();
    fState->fetched = fState->seen;
    fState->current = true;
    return B_OK;
}

status_t BClipboard::Commit() { return _Commit(nullptr); }

status_t BClipboard::Commit(bool failIfChanged)
{
    if (!IsLocked())
        return B_NOT_ALLOWED;
    const uint32 expected = fState->seen;
    return _Commit(failIfChanged ? &expected : nullptr);
}

status_t BClipboard::Revert()
{
    if (!IsLocked())
        return B_NOT_ALLOWED;
    fState->seen = fState->host->Changes();
    fState->current = false;
    return _Fetch();
}

BMessenger BClipboard::DataSource() const
{
    fState->lock.Lock();
    if (fState->lock.CountLocks() > 1)
        _Fetch();
    const BMessenger source = fState->source;
    fState->lock.Unlock();
    return source;
}

BMessage* BClipboard::Data() const
{
    if (!IsLocked())
        return nullptr;
    _Fetch();
    return &fState->data;
}

// Puts the message back together that another clipboard object, or program, has sent.
static bool take_message(const std::string& bytes, BMessage* data, BMessenger* source)
{
    BMessage whole;
    BMemoryIO stream(bytes.data(), bytes.size());
    if (whole.Unflatten(&stream) != B_OK || whole.what != kMessageCode ||
        whole.FindMessage("data", data) != B_OK)
        return false;
    BMessenger found;
    if (whole.FindMessenger("source", &found) == B_OK && found.Team() == be_app_messenger.Team())
        *source = found;
    return true;
}

status_t BClipboard::_Fetch() const
{
    State& state = *fState;
    if (state.current && state.fetched == state.seen)
        return B_OK;
    state.data.MakeEmpty();
    state.data.what = 0;
    state.source = BMessenger();
    state.fetched = state.seen;

    ClipboardForm form;
    std::vector<std::string> types{kMessageForm};
    types.insert(types.end(), kForeignForms.begin(), kForeignForms.end());
    status_t status = state.host->Read(types, &form);
    if (status == B_OK && form.type == kMessageForm &&
        !take_message(form.bytes, &state.data, &state.source))
        status = state.host->Read(kForeignForms, &form);
    if (status == B_OK && form.type != kMessageForm)
        status = state.data.AddData(form.type.c_str(), B_MIME_TYPE, form.bytes.data(),
                                    static_cast<ssize_t>(form.bytes.size()), false);
    if (status == B_ENTRY_NOT_FOUND)
        status = B_OK;
    state.current = status == B_OK;  // else the next call tries again
    return status;
}

// The message, and each of its MIME fields for those who know only that.
static status_t make_forms(const BMessage& data, const BMessenger& source, ClipboardForms* forms)
{
    BMessage whole(kMessageCode);
    status_t status = whole.AddMessage("data", &data);
    if (status == B_OK)
        status = whole.AddMessenger("source", source);
    if (status != B_OK)
        return status;
    status = BPrivate::add_message_form(whole, kMessageForm, forms);
    if (status != B_OK)
        return status;
    BPrivate::add_mime_forms(data, kMessageForm, forms);
    return B_OK;
}

status_t BClipboard::_Commit(const uint32* expected)
{
    if (!IsLocked())
        return B_NOT_ALLOWED;
    State& state = *fState;
    if (!state.current) {
        const status_t status = _Fetch();
        if (status != B_OK)
            return status;
    }
    ClipboardForms forms;
    status_t status;
    try {
        status = make_forms(state.data, be_app_messenger, &forms);
    } catch (const std::bad_alloc&) {
        status = B_NO_MEMORY;
    }
    if (status != B_OK)
        return status;
    uint32 changes;
    status = state.host->Write(std::move(forms), expected, &changes);
    if (status == B_OK) {
        state.source = be_app_messenger;
        state.seen = state.fetched = changes;
    }
    return status;
}
