// The clipboard's thread: what it is asked for, what the X server tells it, and the asking side of
// a selection.

#include "server/qt/x11/X11Clipboard.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <new>
#include <utility>

namespace server {

// Against programs that send without an end, or as if there were none. A picture of 4096 pixels
// across and down takes that many bytes.
static const size_t kMostBytes = 64 << 20;
static const bigtime_t kLongestRead = 10000000;
static const bigtime_t kHurryAfter = 2000000;
static const size_t kSlowest = 64 << 10;  // bytes a second

struct X11Clipboard::Task {
    std::function<void()> work;
    bool done = false;  // fMutex
};

// What is only selected goes with who selected it.
static const char* const kKeptSelection = "CLIPBOARD";

X11Clipboard::X11Clipboard(const char* selection)
    : fName(selection), fWakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    const char* display = getenv("DISPLAY");
    fDisplayName = display != nullptr ? display : "";
}

X11Clipboard::~X11Clipboard()
{
    End();
    close(fWakeUp);
}

// True once the work is done; false when there is no connection, or the X server does not answer:
// the work itself gives other programs up. It may still be done later, and owns all that it needs.
bool X11Clipboard::Call(std::function<void()> work)
{
    auto task = std::make_shared<Task>(std::move(work));
    std::unique_lock lock(fMutex);
    if (fEnded)
        return false;
    fTasks.push_back(task);
    if (!std::exchange(fStarted, true))
        fThread = std::thread([this] { _Run(); });
    _Wake();
    uint32 progress;
    do {
        progress = fProgress;
        fProgressed.wait_for(lock, std::chrono::microseconds(kScreenPatience),
                             [&] { return task->done || fEnded || fProgress != progress; });
    } while (!task->done && !fEnded && fProgress != progress);
    return task->done;
}

void X11Clipboard::_Wake()
{
    const uint64_t one = 1;
    [[maybe_unused]] ssize_t written = write(fWakeUp, &one, sizeof(one));
}

uint32 X11Clipboard::Changes()
{
    Call([this] { _Sync(); });
    return fChanges;
}

status_t X11Clipboard::WriteNow(ClipboardForms forms, std::optional<uint32> expected,
                                uint32* changes)
{
    _Sync();
    if (expected.value_or(fChanges) != fChanges)
        return B_ERROR;
    const uint32 before = fOwnChange;
    fNext = std::move(forms);
    xcb_set_selection_owner(fConnection, fWindow, fSelection, XCB_CURRENT_TIME);
    _Sync();
    *changes = fOwnChange;
    return fOwnChange != before ? B_OK : B_ERROR;
}

void X11Clipboard::SetListener(std::function<void()> listener)
{
    {
        std::lock_guard guard(fMutex);
        fListener = std::move(listener);
    }
    Changes();  // the thread has to run to hear of any
}

void X11Clipboard::End()
{
    {
        std::lock_guard guard(fMutex);
        if (!fStarted)
            fEnded = true;
    }
    Call([this] {
        fEnding = true;
        _SaveWithManager();
    });
    {
        std::lock_guard guard(fMutex);
        fEnded = true;
    }
    if (fThread.joinable() && fThread.get_id() != std::this_thread::get_id())
        fThread.join();
}

void X11Clipboard::_Run()
{
    if (_Connect()) {
        while (!fEnding && xcb_connection_has_error(fConnection) == 0) {
            // What a reply brought along is there already, without a sign on the connection.
            _HandleEvents();
            _RunTasks();
            if (_HandleEvents() || fEnding)
                continue;
            fOffer->DropStalled();
            xcb_flush(fConnection);
            _Sleep(fOffer->IsSending() ? 1000000 : B_INFINITE_TIMEOUT);
        }
    }
    {
        std::lock_guard guard(fMutex);
        fEnded = true;
        fTasks.clear();
    }
    fProgressed.notify_all();
    xcb_disconnect(fConnection);
}

bool X11Clipboard::_Connect()
{
    int number = 0;
    fConnection = xcb_connect(fDisplayName.empty() ? nullptr : fDisplayName.c_str(), &number);
    if (xcb_connection_has_error(fConnection) != 0)
        return false;
    const xcb_query_extension_reply_t* fixes = xcb_get_extension_data(fConnection, &xcb_xfixes_id);
    if (fixes == nullptr || !fixes->present)
        return false;
    fOwnerEvent = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    auto version = xcb_xfixes_query_version(fConnection, 1, 0);
    free(xcb_xfixes_query_version_reply(fConnection, version, nullptr));

    fAtoms = std::make_unique<X11Atoms>(fConnection);
    fOffer = std::make_unique<X11Offer>(fConnection, *fAtoms);
    fSelection = fAtoms->Find(fName);
    fProperty = fAtoms->Find("_BEOS_CLIPBOARD");
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(fConnection));
    for (; screens.rem > 1 && number > 0; number--)
        xcb_screen_next(&screens);
    const auto make_window = [&] {
        const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        const xcb_window_t window = xcb_generate_id(fConnection);
        xcb_create_window(fConnection, 0, window, screens.data->root, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, screens.data->root_visual, XCB_CW_EVENT_MASK,
                          &events);
        return window;
    };
    fWindow = make_window();
    for (xcb_window_t& window : fRequestors)
        window = make_window();
    xcb_xfixes_select_selection_input(fConnection, fWindow, fSelection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    _Sync();
    return true;
}

void X11Clipboard::_RunTasks()
{
    std::vector<std::shared_ptr<Task>> tasks;
    {
        std::lock_guard guard(fMutex);
        tasks.swap(fTasks);
    }
    for (const auto& task : tasks) {
        try {
            task->work();
        } catch (const std::bad_alloc&) {
            // The caller sees what its result began as: a failure.
        }
        task->work = nullptr;
        {
            std::lock_guard guard(fMutex);
            task->done = true;
            fProgress++;
        }
        fProgressed.notify_all();
    }
}

void X11Clipboard::_Sleep(bigtime_t timeout)
{
    pollfd files[] = {{xcb_get_file_descriptor(fConnection), POLLIN, 0}, {fWakeUp, POLLIN, 0}};
    const bool is_timed = timeout != B_INFINITE_TIMEOUT;
    poll(files, 2, is_timed ? int((timeout + 999) / 1000) : -1);
    uint64_t count;
    [[maybe_unused]] ssize_t got = read(fWakeUp, &count, sizeof(count));
}

// True if there were some.
bool X11Clipboard::_HandleEvents()
{
    bool some = false;
    while (xcb_generic_event_t* event = xcb_poll_for_event(fConnection)) {
        try {
            _Handle(event);
        } catch (const std::bad_alloc&) {
            // One who asked for too much gets no answer.
        }
        free(event);
        some = true;
    }
    return some;
}

void X11Clipboard::_Handle(xcb_generic_event_t* event)
{
    const xcb_window_t requestor = fRequestors[fRequestor];
    const uint8_t kind = event->response_type & 0x7f;
    if (kind == fOwnerEvent) {
        _OwnerChanged(*reinterpret_cast<xcb_xfixes_selection_notify_event_t*>(event));
    } else if (kind == XCB_SELECTION_REQUEST) {
        fOffer->Answer(*reinterpret_cast<xcb_selection_request_event_t*>(event));
        fProgress++;
    } else if (kind == XCB_SELECTION_NOTIFY) {
        auto* answer = reinterpret_cast<xcb_selection_notify_event_t*>(event);
        if (answer->requestor == requestor && answer->target == fTarget) {
            fAnswered = true;
            fRefused = answer->property == XCB_ATOM_NONE;
        }
    } else if (kind == XCB_PROPERTY_NOTIFY) {
        auto* change = reinterpret_cast<xcb_property_notify_event_t*>(event);
        if (change->state == XCB_PROPERTY_DELETE)
            fOffer->PieceTaken(change->window, change->atom);
        else if (change->window == requestor && change->atom == fProperty)
            fPieces++;
        fProgress++;
    } else if (kind == XCB_DESTROY_NOTIFY) {
        fOffer->WindowGone(reinterpret_cast<xcb_destroy_notify_event_t*>(event)->window);
    }
}

void X11Clipboard::_OwnerChanged(const xcb_xfixes_selection_notify_event_t& event)
{
    if (event.selection != fSelection)
        return;
    fOwner = event.owner;
    fChanges++;
    fProgress++;
    if (fOwner == fWindow) {
        fOwnChange = fChanges;
        fOffer->Set(std::move(fNext), event.selection_timestamp);
    } else {
        fOffer->Clear();
    }
    std::function<void()> listener;
    {
        std::lock_guard guard(fMutex);
        listener = fListener;
    }
    if (listener)
        listener();
}

// The X server tells of changes before it answers.
void X11Clipboard::_Sync()
{
    auto cookie = xcb_get_selection_owner(fConnection, fSelection);
    auto* reply = xcb_get_selection_owner_reply(fConnection, cookie, nullptr);
    _HandleEvents();
    if (reply != nullptr && fChanges == 0)
        fOwner = reply->owner;
    free(reply);
}

// Handles events until the condition holds; false after a silence, or when all of it takes too
// long.
template <class Condition>
bool X11Clipboard::_WaitFor(Condition condition)
{
    bigtime_t deadline = std::min(system_time() + kClipboardPatience, fReadEnd);
    uint32 progress = fProgress;
    for (;;) {
        _HandleEvents();
        if (condition())
            return true;
        const bigtime_t now = system_time();
        if (std::exchange(progress, fProgress) != progress)
            deadline = std::min(now + kClipboardPatience, fReadEnd);
        if (now >= deadline || xcb_connection_has_error(fConnection) != 0)
            return false;
        xcb_flush(fConnection);
        _Sleep(deadline - now);
    }
}

status_t X11Clipboard::ReadNow(const std::vector<std::string>& types, ClipboardForm* form)
{
    const int kMostOwners = 3;
    status_t status = B_ENTRY_NOT_FOUND;
    uint32 changes;
    int tries = 0;
    fReadEnd = system_time() + kLongestRead;
    do {
        _Sync();
        changes = fChanges;
        if (fOwner == XCB_NONE)
            return B_ENTRY_NOT_FOUND;
        if (fOwner == fWindow) {
            const ClipboardForm* found = find_form(fOffer->Forms(), types);
            if (found == nullptr)
                return B_ENTRY_NOT_FOUND;
            *form = *found;
            return B_OK;
        }
        status = _ReadOffered(types, form);
    } while (status != B_OK && fChanges != changes && ++tries < kMostOwners);
    return status;
}

// Owners that do not tell what they have are asked for each.
status_t X11Clipboard::_ReadOffered(const std::vector<std::string>& types, ClipboardForm* form)
{
    xcb_atom_t type;
    std::string bytes;
    status_t status = _Convert(fSelection, fAtoms->Find("TARGETS"), &type, &bytes);
    if (status != B_OK && status != B_ENTRY_NOT_FOUND)
        return status;
    std::vector<xcb_atom_t> offered(bytes.size() / sizeof(xcb_atom_t));
    std::copy_n(bytes.data(), offered.size() * sizeof(xcb_atom_t),
                reinterpret_cast<char*>(offered.data()));
    const bool tells = status == B_OK && (type == XCB_ATOM_ATOM || type == fAtoms->Find("TARGETS"));

    const auto read = [&](const char* target) {
        const xcb_atom_t atom = fAtoms->Find(target);
        if (tells && std::find(offered.begin(), offered.end(), atom) == offered.end())
            return status_t(B_ENTRY_NOT_FOUND);
        return _Convert(fSelection, atom, &type, &form->bytes);
    };
    for (const std::string& wanted : types) {
        form->type = wanted;
        if (wanted != kTextForm) {
            status = tells ? read(wanted.c_str()) : B_ENTRY_NOT_FOUND;
            if (status != B_ENTRY_NOT_FOUND)
                return status;
            continue;
        }
        for (const char* target : kX11TextTargets) {
            status = read(target);
            if (status == B_OK && type == XCB_ATOM_STRING)
                form->bytes = latin1_to_utf8(form->bytes);
            if (status != B_ENTRY_NOT_FOUND)
                return status;
        }
    }
    return B_ENTRY_NOT_FOUND;
}

// B_ENTRY_NOT_FOUND for a refusal.
status_t X11Clipboard::_Convert(xcb_atom_t selection, xcb_atom_t target, xcb_atom_t* type,
                                std::string* bytes)
{
    const uint32 changes = fChanges;
    const xcb_window_t window = fRequestors[fRequestor];
    fAnswered = false;
    fTarget = target;
    xcb_convert_selection(fConnection, window, selection, target, fProperty, XCB_CURRENT_TIME);
    const bool in_time = _WaitFor([&] { return fAnswered || fChanges != changes; });
    if (!fAnswered) {
        _ChangeRequestor();
        return in_time ? B_ENTRY_NOT_FOUND : B_TIMED_OUT;
    }
    if (fRefused)
        return B_ENTRY_NOT_FOUND;
    fPieces = 0;  // the value that announces pieces is not one
    bytes->clear();
    *type = _TakeProperty(bytes);
    if (bytes->size() > kMostBytes)
        return B_NO_MEMORY;
    if (*type == fAtoms->Find("INCR")) {
        const status_t status = _ReadPieces(bytes);
        if (status != B_OK)
            _ChangeRequestor();
        return status;
    }
    return *type != XCB_ATOM_NONE ? B_OK : B_ENTRY_NOT_FOUND;
}

// What may still come for the window so far is not mistaken for the answer to the next question.
void X11Clipboard::_ChangeRequestor()
{
    fRequestor = (fRequestor + 1) % std::size(fRequestors);
    xcb_delete_property(fConnection, fRequestors[fRequestor], fProperty);
}

// Each piece comes when the one before was taken; one without bytes is the end.
status_t X11Clipboard::_ReadPieces(std::string* bytes)
{
    const uint32 changes = fChanges;
    const bigtime_t start = system_time();
    bytes->clear();
    size_t size;
    do {
        if (!_WaitFor([&] { return fPieces > 0 || fChanges != changes; }))
            return B_TIMED_OUT;
        if (fPieces == 0)
            return B_ENTRY_NOT_FOUND;
        const bigtime_t elapsed = system_time() - start;
        if (elapsed > kHurryAfter && bytes->size() < kSlowest * size_t(elapsed) / 1000000)
            return B_TIMED_OUT;
        fPieces = 0;
        size = bytes->size();
        _TakeProperty(bytes);
        if (bytes->size() > kMostBytes)
            return B_NO_MEMORY;
    } while (bytes->size() > size);
    return B_OK;
}

// Adds a value to `bytes`, which may be a few more than the most then, but never many. Returns the
// type of what it took off, none for nothing.
xcb_atom_t X11Clipboard::_TakeProperty(std::string* bytes)
{
    const xcb_window_t window = fRequestors[fRequestor];
    const auto words = uint32_t((kMostBytes - std::min(bytes->size(), kMostBytes)) / 4 + 1);
    auto cookie =
        xcb_get_property(fConnection, 1, window, fProperty, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
    auto* reply = xcb_get_property_reply(fConnection, cookie, nullptr);
    if (reply == nullptr)
        return XCB_ATOM_NONE;
    const xcb_atom_t type = reply->type;
    if (reply->bytes_after > 0)  // the X server keeps what was not read whole
        xcb_delete_property(fConnection, window, fProperty);
    bytes->append(static_cast<char*>(xcb_get_property_value(reply)),
                  size_t(xcb_get_property_value_length(reply)));
    free(reply);
    return type;
}

// The manager asks for all that we have before it says that it is done.
void X11Clipboard::_SaveWithManager()
{
    _Sync();
    if (fOwner != fWindow || fName != kKeptSelection)
        return;
    const xcb_atom_t manager = fAtoms->Find("CLIPBOARD_MANAGER");
    auto cookie = xcb_get_selection_owner(fConnection, manager);
    auto* reply = xcb_get_selection_owner_reply(fConnection, cookie, nullptr);
    const bool has_manager = reply != nullptr && reply->owner != XCB_NONE;
    free(reply);
    if (!has_manager)
        return;
    // The property of the question names what is worth keeping.
    const std::vector<xcb_atom_t> targets = fOffer->Targets();
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, fRequestors[fRequestor], fProperty,
                        XCB_ATOM_ATOM, 32, uint32_t(targets.size()), targets.data());
    fReadEnd = system_time() + kLongestRead;
    xcb_atom_t type;
    std::string bytes;
    _Convert(manager, fAtoms->Find("SAVE_TARGETS"), &type, &bytes);
}

}  // namespace server
