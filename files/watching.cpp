// Changes of watched nodes and volumes, told to the program's handler. The calls belong to the main
// thread; the messages arrive, and the handler is called, on the application's.

#include "files/filesystem.h"

#include "plinth.h"
#include "runtime/lasting_locker.h"
#include "runtime/strings.h"

#include <Application.h>
#include <Autolock.h>
#include <Directory.h>
#include <Entry.h>
#include <Handler.h>
#include <Message.h>
#include <Messenger.h>
#include <Node.h>
#include <NodeMonitor.h>
#include <Path.h>
#include <Volume.h>
#include <VolumeRoster.h>

#include <exception>
#include <atomic>
#include <errno.h>
#include <map>
#include <string>

using WatchHandler = void (*)(int32_t opcode, const char* path, const char* second_path);

static std::atomic<void*> sHandler = nullptr;

// Where the watched nodes and the volumes are: their messages name them by number.
struct WatchedPaths {
    LastingLocker lock{"watched paths"};
    std::map<node_ref, std::string> nodes GUARDED_BY(lock);
    std::map<int32, std::string> volumes GUARDED_BY(lock);  // by device
};

static WatchedPaths& watched()
{
    static auto* const paths = new WatchedPaths;  // outlives the application's thread
    return *paths;
}

// A node as a message names it: devices have 32 bits there.
static node_ref numbered(int32 device, int64 node)
{
    return node_ref(static_cast<dev_t>(static_cast<uint32>(device)), static_cast<ino_t>(node));
}

static int32 number_in(const BMessage& message, const char* field)
{
    int32 number;
    return message.FindInt32(field, &number) == B_OK ? number : -1;
}

static int64 node_in(const BMessage& message, const char* field)
{
    int64 node;
    return message.FindInt64(field, &node) == B_OK ? node : 0;
}

static const char* text_in(const BMessage& message, const char* field, const char* otherwise)
{
    const char* text;
    return message.FindString(field, &text) == B_OK ? text : otherwise;
}

static std::string node_path(const node_ref& node)
{
    Autolock guard(watched().lock);
    auto found = watched().nodes.find(node);
    return found == watched().nodes.end() ? std::string() : found->second;
}

static std::string entry_path(int32 device, int64 directory, const char* name)
{
    const node_ref node = numbered(device, directory);
    const std::string path = node_path(node);
    if (!path.empty())
        return path.back() == '/' ? path + name : path + '/' + name;
    const entry_ref ref(node.device, node.node, name);
    const BPath found(&ref);
    return found.InitCheck() == B_OK ? found.Path() : "";
}

static std::string volume_path(const BVolume& volume)
{
    BDirectory root;
    BEntry entry;
    if (volume.GetRootDirectory(&root) != B_OK || root.GetEntry(&entry) != B_OK)
        return "";
    const BPath path(&entry);
    return path.InitCheck() == B_OK ? path.Path() : "";
}

static int32 device_number(const BVolume& volume) { return static_cast<int32>(volume.Device()); }

static void remember_volumes()
{
    BVolumeRoster roster;
    BVolume volume;
    Autolock guard(watched().lock);
    while (roster.GetNextVolume(&volume) == B_OK)
        watched().volumes[device_number(volume)] = volume_path(volume);
}

// Calls the program's handler, "" for a path that is not known.
static void tell(int32 opcode, const std::string& path, const std::string* second_path)
{
    void* handler = sHandler.load();
    if (handler != nullptr)
        reinterpret_cast<WatchHandler>(handler)(
            opcode, path.c_str(), second_path != nullptr ? second_path->c_str() : nullptr);
}

// What is watched at `from`, or below it, is at `to` now.
static void follow_move(const std::string& from, const std::string& to)
{
    if (from.empty() || to.empty())
        return;
    Autolock guard(watched().lock);
    for (auto& [node, path] : watched().nodes) {
        if (path == from || path.starts_with(from + '/'))
            path.replace(0, from.size(), to);
    }
}

static void tell_moved(const BMessage& message)
{
    const int32 device = number_in(message, "device");
    const char* name = text_in(message, "name", "");
    const std::string to = entry_path(device, node_in(message, "to directory"), name);
    const std::string from =
        entry_path(device, node_in(message, "from directory"), text_in(message, "from name", name));
    follow_move(from, to);
    tell(B_ENTRY_MOVED, from, &to);
}

static bool is_at(const std::string& path, const node_ref& node)
{
    node_ref there;
    return BEntry(path.c_str()).GetNodeRef(&there) == B_OK &&
           numbered(static_cast<int32>(there.device), static_cast<int64>(there.node)) == node;
}

// A watched node that left its place may be anywhere, if it is at all.
static void forget_removed(const node_ref& node, const std::string& path)
{
    Autolock guard(watched().lock);
    auto found = watched().nodes.find(node);
    if (found != watched().nodes.end() && found->second == path && !is_at(path, node))
        watched().nodes.erase(found);
}

static void tell_entry(int32 opcode, const BMessage& message)
{
    const int32 device = number_in(message, "device");
    const std::string path =
        entry_path(device, node_in(message, "directory"), text_in(message, "name", ""));
    if (opcode == B_ENTRY_REMOVED)
        forget_removed(numbered(device, node_in(message, "node")), path);
    tell(opcode, path, nullptr);
}

static void tell_mounted(const BMessage& message)
{
    const BVolume volume(numbered(number_in(message, "new device"), 0).device);
    const std::string path = volume_path(volume);
    {
        Autolock guard(watched().lock);
        watched().volumes[device_number(volume)] = path;
    }
    tell(B_DEVICE_MOUNTED, path, nullptr);
}

static void tell_unmounted(const BMessage& message)
{
    std::string path;
    {
        Autolock guard(watched().lock);
        auto volume = watched().volumes.find(number_in(message, "device"));
        if (volume != watched().volumes.end()) {
            path = volume->second;
            watched().volumes.erase(volume);
        }
    }
    tell(B_DEVICE_UNMOUNTED, path, nullptr);
}

// Programs are told the platform's own numbers.
static_assert(int{PLINTH_ENTRY_CREATED} == B_ENTRY_CREATED);
static_assert(int{PLINTH_ENTRY_REMOVED} == B_ENTRY_REMOVED);
static_assert(int{PLINTH_ENTRY_MOVED} == B_ENTRY_MOVED);
static_assert(int{PLINTH_STAT_CHANGED} == B_STAT_CHANGED);
static_assert(int{PLINTH_ATTR_CHANGED} == B_ATTR_CHANGED);
static_assert(int{PLINTH_DEVICE_MOUNTED} == B_DEVICE_MOUNTED);
static_assert(int{PLINTH_DEVICE_UNMOUNTED} == B_DEVICE_UNMOUNTED);

static void tell_change(const BMessage& message)
{
    const int32 opcode = number_in(message, "opcode");
    switch (opcode) {
        case B_ENTRY_CREATED:
        case B_ENTRY_REMOVED:
            tell_entry(opcode, message);
            break;
        case B_ENTRY_MOVED:
            tell_moved(message);
            break;
        case B_DEVICE_MOUNTED:
            tell_mounted(message);
            break;
        case B_DEVICE_UNMOUNTED:
            tell_unmounted(message);
            break;
        default:
            tell(opcode,
                 node_path(numbered(number_in(message, "device"), node_in(message, "node"))),
                 nullptr);
            break;
    }
}

// Receives the changes in the application's loop, whoever the application belongs to.
class MyWatcher : public BHandler {
public:
    MyWatcher() : BHandler("watcher") {}
    void MessageReceived(BMessage* message) override
    {
        if (message->what == B_NODE_MONITOR)
            tell_change(*message);
        else
            BHandler::MessageReceived(message);
    }
};

// Invalid without an application, errno then says so.
static BMessenger watcher()
{
    static MyWatcher* const handler = new MyWatcher;  // outlives the application
    errno = EINVAL;
    if (be_app == nullptr)
        return BMessenger();
    if (handler->Looper() != be_app) {
        BAutolock guard(be_app);  // given back also where no memory is left for the handler
        if (!guard.IsLocked())
            return BMessenger();
        be_app->AddHandler(handler);
    }
    return BMessenger(handler);
}

extern "C" void SetHandlerForWatch(void* handler) { sHandler = handler; }

extern "C" bool WatchDir(const char* path, int8_t on)
try {
    const BEntry entry(text_or_empty(path), true);
    node_ref node;
    if (entry.InitCheck() != B_OK || entry.GetNodeRef(&node) != B_OK)
        return keep_file_error(__func__);
    const BPath full(&entry);
    const BMessenger target = watcher();
    const node_ref key = numbered(static_cast<int32>(node.device), static_cast<int64>(node.node));
    Autolock guard(watched().lock);  // so that the first message finds the path
    if (watch_node(&node, on != 0 ? B_WATCH_ALL : B_STOP_WATCHING, target) != B_OK)
        return keep_file_error(__func__);
    if (on != 0 && full.InitCheck() == B_OK)
        watched().nodes[key] = full.Path();
    else
        watched().nodes.erase(key);
    return true;
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" int32_t WatchDevices(int8_t on)
try {
    const BMessenger target = watcher();
    status_t status;
    if (on != 0) {
        remember_volumes();
        status = watch_node(nullptr, B_WATCH_MOUNT, target);
    } else {
        status = stop_watching(target);
        Autolock guard(watched().lock);
        watched().nodes.clear();
        watched().volumes.clear();
    }
    if (status != B_OK)
        keep_file_error(__func__);
    return status;
} catch (const std::exception&) {
    no_memory(__func__);
    return B_NO_MEMORY;
}
