// Starting applications. Any thread.

#include <Roster.h>

#include <AppDefs.h>
#include <List.h>
#include <Message.h>
#include <Path.h>

#include <limits.h>
#include <stdlib.h>
#include <strings.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include <glib.h>

#include "app/roster/LaunchMessages.h"
#include "app/roster/LaunchTargets.h"
#include "app/roster/RecentItems.h"
#include "app/roster/RunningApps.h"
#include "kernel/programs/HostProcess.h"
#include "kernel/programs/Programs.h"
#include "support/Held.h"

using BPrivate::find_target;
using BPrivate::LaunchTarget;
using BPrivate::RunningApp;

using Line = std::vector<std::string>;

// What an application is started with.
struct Order {
    Line arguments;                  // behind the program and the files
    Line files;                      // paths
    std::vector<BMessage> messages;  // for an application of ours
};

// Terminals, and how each is told what to run in it. They outlive the exit handlers.
static const auto& kTerminals = *new std::vector<Line>{
    {"xdg-terminal-exec"}, {"x-terminal-emulator", "-e"}, {"gnome-terminal", "--"},
    {"konsole", "-e"},     {"xfce4-terminal", "-x"},      {"xterm", "-e"},
};

static std::string program_in_path(const std::string& name)
{
    const std::string path = BPrivate::take_text(g_find_program_in_path(name.c_str()));
    return path.empty() ? name : path;
}

// Without a terminal to start, a program has ours, if there is one; else the line is empty.
static Line in_terminal(const Line& line)
{
    for (const Line& terminal : kTerminals) {
        if (program_in_path(terminal[0])[0] != '/')
            continue;
        Line whole = terminal;
        whole.insert(whole.end(), line.begin(), line.end());
        return whole;
    }
    return isatty(STDIN_FILENO) != 0 ? line : Line();
}

static void add_message(Order* order, const BMessage* message)
{
    if (message == nullptr)
        return;
    order->messages.push_back(*message);
    entry_ref ref;
    for (int32 i = 0; message->FindRef("refs", i, &ref) == B_OK; ++i) {
        const BPath path(&ref);
        if (path.InitCheck() == B_OK)
            order->files.push_back(path.Path());
    }
    const char* argument;
    for (int32 i = 1;
         message->what == B_ARGV_RECEIVED && message->FindString("argv", i, &argument) == B_OK; ++i)
        order->arguments.push_back(argument);
}

static Order order_of(const BMessage* message)
{
    Order order;
    add_message(&order, message);
    return order;
}

static Order order_of(const BList* messages)
{
    Order order;
    for (int32 i = 0; messages != nullptr && i < messages->CountItems(); ++i)
        add_message(&order, static_cast<const BMessage*>(messages->ItemAt(i)));
    return order;
}

static Order order_of(int argc, const char* const* args)
{
    Order order;
    for (int i = 0; args != nullptr && i < argc && args[i] != nullptr; ++i)
        order.arguments.push_back(args[i]);
    return order;
}

// The command lines that an order makes; more than one where the application opens but one file.
static std::vector<Line> lines_for(const LaunchTarget& target, const Order& order)
{
    std::vector<Line> lines;
    if (target.as_told) {
        lines = storage::commands_for(*target.application, order.files);
    } else {
        lines = {{target.executable}};
        lines[0].insert(lines[0].end(), order.files.begin(), order.files.end());
    }
    for (Line& line : lines) {
        line.insert(line.end(), order.arguments.begin(), order.arguments.end());
        if (target.as_told && target.application->in_terminal)
            line = in_terminal(line);
    }
    return lines;
}

static bool wants_arguments_only(const std::string& executable)
{
    return (BPrivate::launch_flags_of(executable.c_str()) & B_ARGV_ONLY) != 0;
}

// How long a program may take until it is known: one that has mapped the kits, and one that has
// not.
static const bigtime_t kKitsWait = 5'000'000;
static const bigtime_t kStrangerWait = 500'000;

static bool has_ended(team_id team)
{
    BPrivate::HostProcess host;
    return !BPrivate::read_host_process(team, team, &host) || host.HasEnded();
}

static bool has_mapped_kits(team_id team)
{
    std::ifstream maps("/proc/" + std::to_string(team) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find("/libbe.so") != std::string::npos)
            return true;
    }
    return false;
}

// Returns when the application is registered, has ended, or seems to be none.
static void wait_until_known(team_id team)
{
    const bigtime_t begin = system_time();
    bigtime_t limit = begin + kStrangerWait;
    while (!BPrivate::is_registered(team) && !has_ended(team)) {
        const bigtime_t now = system_time();
        if (now >= limit && (limit >= begin + kKitsWait || !has_mapped_kits(team)))
            return;
        if (now >= limit)
            limit = begin + kKitsWait;
        snooze(1000);
    }
}

// Starts one line; the team, or why not.
static team_id start(const LaunchTarget& target, Line line, const Order& order)
{
    if (line.empty())
        return B_LAUNCH_FAILED_EXECUTABLE;
    line[0] = program_in_path(line[0]);
    std::vector<const char*> argv;
    for (const std::string& word : line)
        argv.push_back(word.c_str());
    const char* folder = target.as_told && !target.application->folder.empty()
                             ? target.application->folder.c_str()
                             : nullptr;
    const thread_id thread =
        BPrivate::load_program(static_cast<int32>(argv.size()), argv.data(), nullptr, folder);
    if (thread == B_PERMISSION_DENIED || thread == B_NOT_AN_EXECUTABLE)
        return B_LAUNCH_FAILED_EXECUTABLE;
    if (thread > 0) {
        if (!wants_arguments_only(target.executable))
            BPrivate::leave_messages(thread, order.messages);
        resume_thread(thread);
        wait_until_known(thread);
    }
    return thread;
}

static BMessage message_of(const Line& arguments, const std::string& executable)
{
    BMessage message(B_ARGV_RECEIVED);
    message.AddInt32("argc", static_cast<int32>(arguments.size() + 1));
    message.AddString("argv", executable.c_str());
    for (const std::string& argument : arguments)
        message.AddString("argv", argument.c_str());
    char folder[PATH_MAX];
    message.AddString("cwd", getcwd(folder, sizeof(folder)) != nullptr ? folder : "/");
    return message;
}

// The file that was to be launched comes before those of the messages; with messages, arguments
// are one of them.
static Order complete_order(const LaunchTarget& target, Order order)
{
    if (!target.document.empty()) {
        order.files.insert(order.files.begin(), target.document);
        BMessage document(B_REFS_RECEIVED);
        entry_ref ref;
        get_ref_for_path(target.document.c_str(), &ref);
        document.AddRef("refs", &ref);
        order.messages.insert(order.messages.begin(), document);
    }
    if (!order.messages.empty() && !order.arguments.empty()) {
        std::erase_if(order.messages,
                      [](const BMessage& message) { return message.what == B_ARGV_RECEIVED; });
        order.messages.insert(order.messages.begin(),
                              message_of(order.arguments, target.executable));
    }
    return order;
}

static RunningApp find_only_one(const LaunchTarget& target)
{
    return BPrivate::only_instance(
        target.executable, target.application != nullptr ? target.application->signature : "");
}

// Has an application that runs do what it would have been started for.
static void pass_on(const RunningApp& app, const Order& order, const std::string& executable)
{
    if ((app.flags & B_ARGV_ONLY) != 0)
        return;
    const BMessenger messenger = BPrivate::messenger_to(app);
    for (BMessage message : order.messages)
        messenger.SendMessage(&message);
    if (!order.messages.empty())
        return;
    BMessage message = order.arguments.empty() ? BMessage(B_SILENT_RELAUNCH)
                                               : message_of(order.arguments, executable);
    messenger.SendMessage(&message);
}

static status_t launch(const LaunchTarget& target, const Order& told, team_id* team)
{
    const Order order = complete_order(target, told);
    if (const RunningApp app = find_only_one(target); app.team >= 0) {
        pass_on(app, order, target.executable);
        if (team != nullptr)
            *team = app.team;
        return B_ALREADY_RUNNING;
    }
    bool is_first = true;
    for (const Line& line : lines_for(target, order)) {
        const team_id started = start(target, line, order);
        if (started < 0)
            return started;
        if (is_first && team != nullptr)
            *team = started;
        is_first = false;
    }
    if ((BPrivate::launch_flags_of(target.executable.c_str()) & B_BACKGROUND_APP) == 0)
        BPrivate::add_recent_app(target.executable, target.application);
    return B_OK;
}

template <class Named>
static status_t launch_named(const Named* named, const Order& order, team_id* team)
{
    LaunchTarget target;
    const status_t status = find_target(named, &target);
    return status == B_OK ? launch(target, order, team) : status;
}

status_t BRoster::Launch(const char* mimeType, BMessage* initialMessage, team_id* _appTeam) const
{
    return launch_named(mimeType, order_of(initialMessage), _appTeam);
}

status_t BRoster::Launch(const char* mimeType, BList* messageList, team_id* _appTeam) const
{
    return launch_named(mimeType, order_of(messageList), _appTeam);
}

status_t BRoster::Launch(const char* mimeType, int argc, const char* const* args,
                         team_id* _appTeam) const
{
    return launch_named(mimeType, order_of(argc, args), _appTeam);
}

status_t BRoster::Launch(const entry_ref* ref, const BMessage* initialMessage,
                         team_id* _appTeam) const
{
    return launch_named(ref, order_of(initialMessage), _appTeam);
}

status_t BRoster::Launch(const entry_ref* ref, const BList* messageList, team_id* _appTeam) const
{
    return launch_named(ref, order_of(messageList), _appTeam);
}

status_t BRoster::Launch(const entry_ref* ref, int argc, const char* const* args,
                         team_id* _appTeam) const
{
    return launch_named(ref, order_of(argc, args), _appTeam);
}
