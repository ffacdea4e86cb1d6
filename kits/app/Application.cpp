// The application: its loop on the main thread, what is told it at the start, the list of all
// loopers, and the end of the program.
//
// Quitting never holds the application's lock, nor any list's, while it waits for a window: it
// works on a list of tokens taken before, and a window that went meanwhile just refuses its lock.

#include <Application.h>

#include <Clipboard.h>
#include <Cursor.h>
#include <Entry.h>
#include <Message.h>
#include <MessageQueue.h>
#include <PropertyInfo.h>
#include <Roster.h>
#include <Window.h>

#include <string.h>
#include <strings.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "app/roster/LaunchMessages.h"
#include "app/looper/LooperTable.h"
#include "app/message/MessageAccess.h"
#include "app/looper/MessengerAccess.h"
#include "app/QuitAsked.h"
#include "interface/menu/MenuTracker.h"
#include "app/roster/RunningApps.h"
#include "app/looper/Scripting.h"
#include "server/screen/Screen.h"

using BPrivate::LooperRef;
using BPrivate::LooperTable;
using BPrivate::MessengerAccess;

BApplication* be_app;
BMessenger be_app_messenger;

static const property_info kProperties[] = {
    {"Name", {B_GET_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_STRING_TYPE}, {}},
    {"Window", {B_COUNT_PROPERTIES}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_INT32_TYPE}, {}},
    {"Window",
     {B_GET_PROPERTY},
     {B_INDEX_SPECIFIER, B_NAME_SPECIFIER},
     nullptr,
     0,
     {B_MESSENGER_TYPE},
     {}},
    {"Looper", {B_COUNT_PROPERTIES}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_INT32_TYPE}, {}},
    {"Looper",
     {B_GET_PROPERTY},
     {B_INDEX_SPECIFIER, B_NAME_SPECIFIER},
     nullptr,
     0,
     {B_MESSENGER_TYPE},
     {}},
    {},
};

// "application/x-vnd.Something": the supertype is told apart without regard to case.
static bool is_signature(const char* signature)
{
    static const char kSupertype[] = "application/";
    const size_t length = sizeof(kSupertype) - 1;
    return signature != nullptr && strncasecmp(signature, kSupertype, length) == 0 &&
           signature[length] != '\0' && strlen(signature) < sizeof(app_info::signature);
}

// The command line as the kernel keeps it: each argument ends with a zero byte.
static std::vector<std::string> command_line()
{
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(file, argument, '\0');)
        arguments.push_back(argument);
    return arguments;
}

// What the program was started with: messages, else its arguments, if there are any.
static std::vector<BMessage> launch_messages()
{
    std::vector<BMessage> messages = BPrivate::take_messages();
    const std::vector<std::string> arguments = command_line();
    if (!messages.empty() || arguments.size() < 2)
        return messages;
    BMessage message(B_ARGV_RECEIVED);
    message.AddInt32("argc", static_cast<int32>(arguments.size()));
    for (const std::string& argument : arguments)
        message.AddString("argv", argument.c_str());
    char folder[PATH_MAX];
    message.AddString("cwd", getcwd(folder, sizeof(folder)) != nullptr ? folder : "/");
    messages.push_back(message);
    return messages;
}

// True if the program wants to run but once, and does: that one is told what this was started with.
static bool is_passed_on(const char* signature)
{
    const BPrivate::RunningApp app = BPrivate::only_instance(BPrivate::own_executable(), signature);
    if (app.team < 0)
        return false;
    if ((app.flags & B_ARGV_ONLY) != 0)
        return true;
    const BMessenger messenger = BPrivate::messenger_to(app);
    std::vector<BMessage> messages = launch_messages();
    if (messages.empty())
        messages.emplace_back(B_SILENT_RELAUNCH);
    for (BMessage& message : messages)
        messenger.SendMessage(&message);
    return true;
}

BApplication::BApplication(const char* signature) : BLooper("application")
{
    _InitApp(signature, nullptr);
}

BApplication::BApplication(const char* signature, status_t* error) : BLooper("application")
{
    _InitApp(signature, error);
}

BApplication::BApplication(BMessage* data) : BLooper(data)
{
    const char* signature = nullptr;
    if (data != nullptr)
        data->FindString("mime_sig", &signature);
    _InitApp(signature, nullptr);
    bigtime_t rate;
    if (data != nullptr && data->FindInt64("_pulse", &rate) == B_OK)
        SetPulseRate(rate);
}

BApplication::~BApplication()
{
    const bool is_the_one = be_app == this;
    if (is_the_one)
        BPrivate::unregister_app();
    Lock();
    if (is_the_one) {
        _QuitLoopers();
        be_app = nullptr;
        server::Shutdown();
    }
}

BArchivable* BApplication::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BApplication") ? new BApplication(data) : nullptr;
}

status_t BApplication::Archive(BMessage* data, bool deep) const
{
    status_t status = BLooper::Archive(data, deep);
    if (status == B_OK)
        status = data->AddString("mime_sig", Signature());
    return status == B_OK ? data->AddInt64("_pulse", fPulseRate) : status;
}

void BApplication::_InitApp(const char* signature, status_t* error)
{
    fSignature = signature != nullptr ? signature : "";
    fInitStatus = is_signature(signature) ? B_OK : B_BAD_VALUE;
    fLaunching = true;
    fCursorHidden = false;
    fPulseRate = 0;
    fNextPulse = B_INFINITE_TIMEOUT;
    _SetKind(Kind::Application);
    if (be_app != nullptr || (fInitStatus == B_OK && is_passed_on(signature)))
        fInitStatus = B_ALREADY_RUNNING;
    if (fInitStatus == B_OK) {
        be_app_messenger = BMessenger(nullptr, this);
        if (be_clipboard == nullptr)  // kept for threads that outlive the application
            be_clipboard = new BClipboard(nullptr);
        be_app = this;
        BPrivate::register_app(signature, find_thread(nullptr),
                               MessengerAccess::PartsOf(be_app_messenger).looper);
    }
    if (error != nullptr)
        *error = fInitStatus;
}

status_t BApplication::InitCheck() const { return fInitStatus; }

thread_id BApplication::Run()
{
    if (fInitStatus != B_OK)
        return fInitStatus;
    if (fRunCalled)
        return B_ALREADY_RUNNING;
    _PostLaunchMessages();
    Loop();
    const thread_id thread = Thread();
    _QuitLoopers();
    return thread;
}

void BApplication::Quit()
{
    if (!Lock())
        return;
    if (!fRunCalled) {
        delete this;
        return;
    }
    fTerminating = true;
    _Wake();
    Unlock();
}

// Calls `act` with each window and each registered looper locked, in the order of their making;
// stops when it answers false. What was never run is left out while another thread, most likely
// its maker, holds it. `act` may give the lock back by ending the looper.
template <class Act>
static bool for_each_client(Act act)
{
    for (const LooperRef& ref : LooperTable::List()) {
        if (!LooperTable::IsWindow(ref.slot) && !ref.slot->registered.load())
            continue;
        const bool runs = ref.slot->thread.load() != 0;
        if (LooperTable::Lock(ref.slot, ref.token, runs ? B_INFINITE_TIMEOUT : 0) != B_OK)
            continue;
        const bool go_on = act(*ref.slot->looper.load());
        if (ref.slot->token.load() == ref.token)
            ref.slot->lock.Unlock();
        if (!go_on)
            return false;
    }
    return true;
}

static std::atomic<int32> sQuitsAsked;

namespace {

class QuitAsked {
public:
    QuitAsked()
    {
        sQuitsAsked++;
        BPrivate::MenuTracker::CancelAll();
    }
    ~QuitAsked() { sQuitsAsked--; }
    QuitAsked(const QuitAsked&) = delete;
};

}  // namespace

bool BPrivate::is_quit_asked() { return sQuitsAsked > 0; }

bool BApplication::QuitRequested()
{
    const QuitAsked asked;
    const int32 levels = fSlot->lock.UnlockAll();
    const bool agreed = for_each_client([](BLooper& looper) { return looper.QuitRequested(); });
    fSlot->lock.LockTimes(levels);
    return agreed;
}

// The oldest window that can be seen.
void BApplication::_ActivateWindow()
{
    for_each_client([](BLooper& looper) {
        auto* window = dynamic_cast<BWindow*>(&looper);
        const bool can_be_seen = window != nullptr && !window->IsHidden();
        if (can_be_seen)
            window->Activate();
        return !can_be_seen;
    });
}

// New windows may come while the others go.
void BApplication::_QuitLoopers()
{
    const QuitAsked asked;
    const int32 levels = fSlot->lock.UnlockAll();
    bool some;
    do {
        some = false;
        for_each_client([&](BLooper& looper) {
            some = true;
            looper.Quit();
            return true;
        });
    } while (some);
    fSlot->lock.LockTimes(levels);
}

void BApplication::Pulse() {}

void BApplication::ReadyToRun() {}

static bool is_window_property(const char* property)
{
    return property != nullptr && strcmp(property, "Window") == 0;
}

// A window's name for scripts is its title.
static std::string script_name(BLooper& looper)
{
    if (auto* window = dynamic_cast<BWindow*>(&looper))
        return window->Title() != nullptr ? window->Title() : "";
    return looper.Name() != nullptr ? looper.Name() : "";
}

// Busy ones are not waited for longer than that: they may wait for the application themselves.
static BMessenger find_named(bool windows, const char* name)
{
    const bigtime_t kPatience = 1'000'000;
    const bigtime_t deadline = system_time() + kPatience;
    for (const LooperRef& ref : LooperTable::List()) {
        if ((windows && !LooperTable::IsWindow(ref.slot)) ||
            LooperTable::Lock(ref.slot, ref.token, deadline) != B_OK)
            continue;
        BLooper& looper = *ref.slot->looper.load();
        const BMessenger found =
            script_name(looper) == name ? BMessenger(nullptr, &looper) : BMessenger();
        ref.slot->lock.Unlock();
        if (found.IsValid())
            return found;
    }
    return BMessenger();
}

// The window or looper that a script asks for; invalid if there is none.
static BMessenger find_asked(const BApplication& app, const char* property,
                             const BMessage& specifier)
{
    const bool windows = is_window_property(property);
    const char* name = nullptr;
    if (specifier.FindString("name", &name) == B_OK)
        return find_named(windows, name);
    const int32 at = specifier.GetInt32("index", -1);
    return BMessenger(nullptr, windows ? app.WindowAt(at) : app.LooperAt(at));
}

void BApplication::MessageReceived(BMessage* message)
{
    int32 index, form;
    BMessage specifier;
    const char* property;
    if (message == nullptr || !message->HasSpecifiers() ||
        message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        !BPrivate::knows_property(kProperties, message, index, &specifier, form, property)) {
        BLooper::MessageReceived(message);
        return;
    }
    BMessage reply(B_REPLY);
    status_t status;
    const bool windows = is_window_property(property);
    if (strcmp(property, "Name") == 0)
        status = reply.AddString("result", Name());
    else if (message->what == B_COUNT_PROPERTIES)
        status = reply.AddInt32("result", windows ? CountWindows() : CountLoopers());
    else {
        const BMessenger messenger = find_asked(*this, property, specifier);
        status = messenger.IsValid()        ? reply.AddMessenger("result", messenger)
                 : form == B_NAME_SPECIFIER ? B_NAME_NOT_FOUND
                                            : B_BAD_INDEX;
    }
    reply.AddInt32("error", status);
    message->SendReply(&reply);
}

void BApplication::ArgvReceived(int32, char**) {}

void BApplication::AppActivated(bool) {}

void BApplication::RefsReceived(BMessage*) {}

void BApplication::AboutRequested() {}

BHandler* BApplication::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                         int32 form, const char* property)
{
    if (BPrivate::knows_property(kProperties, message, index, specifier, form, property))
        return this;
    const bool of_client = property != nullptr &&
                           (is_window_property(property) || strcmp(property, "Looper") == 0) &&
                           (form == B_INDEX_SPECIFIER || form == B_NAME_SPECIFIER);
    if (index < 1 || !of_client)
        return BLooper::ResolveSpecifier(message, index, specifier, form, property);
    // What is asked is a property of the window or looper, which answers instead.
    message->PopSpecifier();
    if (MessengerAccess::PassOn(find_asked(*this, property, *specifier), message) != B_OK) {
        BPrivate::answer_missing(message, BPrivate::missing_error(form),
                                 "no such window or looper");
    }
    return nullptr;
}

void BApplication::ShowCursor() { _SetCursorHidden(false); }

void BApplication::HideCursor() { _SetCursorHidden(true); }

void BApplication::ObscureCursor() { server::ObscureCursor(); }

bool BApplication::IsCursorHidden() const { return fCursorHidden; }

void BApplication::_SetCursorHidden(bool hidden)
{
    fCursorHidden = hidden;
    server::SetCursorHidden(hidden);
}

// The old form, 68 bytes; null is the arrow.
void BApplication::SetCursor(const void* cursor)
{
    if (cursor == nullptr) {
        SetCursor(static_cast<const BCursor*>(nullptr));
        return;
    }
    const BCursor made(cursor);
    SetCursor(&made);
}

void BApplication::SetCursor(const BCursor* cursor, bool) { server::SetAppCursor(cursor); }

int32 BApplication::CountWindows() const
{
    const std::vector<LooperRef> loopers = LooperTable::List();
    return static_cast<int32>(
        std::count_if(loopers.begin(), loopers.end(),
                      [](const LooperRef& ref) { return LooperTable::IsWindow(ref.slot); }));
}

BWindow* BApplication::WindowAt(int32 index) const
{
    for (const LooperRef& ref : LooperTable::List()) {
        if (LooperTable::IsWindow(ref.slot) && index-- == 0)
            return static_cast<BWindow*>(ref.looper);
    }
    return nullptr;
}

int32 BApplication::CountLoopers() const { return static_cast<int32>(LooperTable::List().size()); }

BLooper* BApplication::LooperAt(int32 index) const
{
    const std::vector<LooperRef> loopers = LooperTable::List();
    return index >= 0 && index < static_cast<int32>(loopers.size()) ? loopers[index].looper
                                                                    : nullptr;
}

bool BApplication::IsLaunching() const { return fLaunching; }

const char* BApplication::Signature() const { return fSignature.c_str(); }

status_t BApplication::GetAppInfo(app_info* info) const
{
    if (info == nullptr)
        return B_BAD_VALUE;
    *info = app_info();
    info->thread = Thread();
    info->team = Team();
    fSignature.copy(info->signature, sizeof(info->signature) - 1);
    const std::string path = BPrivate::own_executable();
    if (path.empty())
        return B_ENTRY_NOT_FOUND;
    info->flags = BPrivate::launch_flags_of(path.c_str());
    return get_ref_for_path(path.c_str(), &info->ref);
}

// Programs are built without resources here.
BResources* BApplication::AppResources() { return nullptr; }

void BApplication::DispatchMessage(BMessage* message, BHandler* handler)
{
    if (message == nullptr || handler != this) {
        BLooper::DispatchMessage(message, handler);
        return;
    }
    switch (message->what) {
        case B_ARGV_RECEIVED:
            _ArgvReceived(message);
            break;
        case B_REFS_RECEIVED:
            RefsReceived(message);
            break;
        case B_READY_TO_RUN:
            if (fLaunching)
                ReadyToRun();
            fLaunching = false;
            break;
        case B_APP_ACTIVATED:
            BPrivate::note_active(message->FindBool("active"));
            AppActivated(message->FindBool("active"));
            break;
        case B_ABOUT_REQUESTED:
            AboutRequested();
            break;
        case BPrivate::kActivateApp:
            _ActivateWindow();
            break;
        case B_PULSE:
            Pulse();
            break;
        default:
            BLooper::DispatchMessage(message, handler);
    }
}

void BApplication::SetPulseRate(bigtime_t rate)
{
    if (!Lock())
        return;
    fPulseRate = max_c(rate, 0);
    // Centuries are never: the sum must not overflow.
    fNextPulse = fPulseRate > 0 && fPulseRate < B_INFINITE_TIMEOUT / 2 ? system_time() + fPulseRate
                                                                       : B_INFINITE_TIMEOUT;
    Unlock();
    _Wake();
}

bigtime_t BApplication::_Idle()
{
    const bigtime_t now = system_time();
    if (fPulseRate > 0 && now >= fNextPulse) {
        fNextPulse = max_c(fNextPulse, now - fPulseRate) + fPulseRate;
        PostMessage(B_PULSE);
    }
    return fNextPulse;
}

status_t BApplication::RegisterLooper(BLooper* looper) { return _SetRegistered(looper, true); }

status_t BApplication::UnregisterLooper(BLooper* looper) { return _SetRegistered(looper, false); }

status_t BApplication::_SetRegistered(BLooper* looper, bool registered)
{
    BPrivate::LooperSlot* slot = LooperTable::Find(looper);
    if (slot == nullptr || looper == this || LooperTable::IsWindow(slot) ||
        slot->registered.exchange(registered) == registered)
        return B_BAD_VALUE;
    return B_OK;
}

status_t BApplication::GetSupportedSuites(BMessage* data)
{
    const status_t status = BPrivate::add_suite(data, "suite/vnd.Be-application", kProperties);
    return status == B_OK ? BLooper::GetSupportedSuites(data) : status;
}

status_t BApplication::Perform(perform_code d, void* arg) { return BLooper::Perform(d, arg); }

// What was posted before comes behind them.
void BApplication::_PostLaunchMessages()
{
    std::vector<BMessage> messages = launch_messages();
    BMessageQueue& queue = fSlot->queue;
    queue.Lock();
    std::vector<BMessage*> waiting;
    while (BMessage* message = queue.NextMessage())
        waiting.push_back(message);
    for (BMessage& message : messages)
        PostMessage(&message);
    PostMessage(B_READY_TO_RUN);
    for (BMessage* message : waiting)
        queue.AddMessage(message);
    queue.Unlock();
}

// argv[argc] is null; the strings belong to the message.
void BApplication::_ArgvReceived(BMessage* message)
{
    std::vector<char*> arguments;
    const char* argument;
    while (message->FindString("argv", static_cast<int32>(arguments.size()), &argument) == B_OK)
        arguments.push_back(const_cast<char*>(argument));
    const int32 count = static_cast<int32>(arguments.size());
    arguments.push_back(nullptr);
    ArgvReceived(count, arguments.data());
}
