// The roster's folder is watched; whatever changes in it, the list of who runs is compared with the
// one before. A program that crashes closes its file, which the host tells, too.

#include "app/roster/RosterWatch.h"

#include <Entry.h>
#include <Message.h>
#include <Roster.h>

#include <errno.h>
#include <signal.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "app/looper/MessengerAccess.h"
#include "app/roster/RunningApps.h"
#include "support/Mutex.h"

namespace BPrivate {

namespace {

struct AppWatcher {
    BMessenger target;
    uint32 mask;
};

using Apps = std::map<team_id, RunningApp>;

// Never destroyed: the thread runs on while the process exits.
struct AppWatch {
    BPrivate::Mutex lock;
    std::vector<AppWatcher> watchers GUARDED_BY(lock);
    std::string folder GUARDED_BY(lock);  // that is watched; empty before the first watcher
    Apps known GUARDED_BY(lock);          // as they were told
    team_id active GUARDED_BY(lock) = -1;
};

}  // namespace

static AppWatch& app_watch()
{
    static AppWatch* const the = new AppWatch;
    return *the;
}

static Apps apps_now()
{
    Apps apps;
    for (const RunningApp& app : running_apps())
        apps[app.team] = app;
    return apps;
}

static void tell(AppWatch& watch, uint32 what, uint32 kind, const RunningApp& app)
    REQUIRES(watch.lock)
{
    BMessage message(what);
    entry_ref ref;
    get_ref_for_path(app.path.c_str(), &ref);
    message.AddString("be:signature", app.signature.c_str());
    message.AddInt32("be:team", app.team);
    message.AddInt32("be:thread", app.thread);
    message.AddInt32("be:flags", static_cast<int32>(app.flags));
    message.AddRef("be:ref", &ref);
    for (const AppWatcher& watcher : watch.watchers) {
        if ((watcher.mask & kind) != 0)
            MessengerAccess::Notify(watcher.target, message);
    }
}

static void compare(AppWatch& watch)
{
    BPrivate::MutexLock hold(watch.lock);
    const Apps now = apps_now();
    const team_id active = active_team();
    for (const auto& [team, app] : watch.known) {
        const auto found = now.find(team);
        if (found == now.end() || found->second.began != app.began)
            tell(watch, B_SOME_APP_QUIT, B_REQUEST_QUIT, app);
    }
    for (const auto& [team, app] : now) {
        const auto found = watch.known.find(team);
        if (found == watch.known.end() || found->second.began != app.began)
            tell(watch, B_SOME_APP_LAUNCHED, B_REQUEST_LAUNCHED, app);
    }
    const auto activated = now.find(active);
    if (active != watch.active && activated != now.end())
        tell(watch, B_SOME_APP_ACTIVATED, B_REQUEST_ACTIVATED, activated->second);
    watch.active = active;
    watch.known = now;
    std::erase_if(watch.watchers,
                  [](const AppWatcher& watcher) { return !watcher.target.IsValid(); });
}

static void run_watch(int queue)
{
    alignas(inotify_event) char events[4096];
    for (;;) {
        const ssize_t size = read(queue, events, sizeof(events));
        if (size < 0 && errno != EINTR)
            return;
        compare(app_watch());
    }
}

// Begins to watch the folder, once.
static status_t begin(AppWatch& watch) REQUIRES(watch.lock)
{
    if (!watch.folder.empty())
        return B_OK;
    const std::string folder = make_roster_folder();
    const int queue = folder.empty() ? -1 : inotify_init1(IN_CLOEXEC);
    if (queue < 0)
        return B_ERROR;
    if (inotify_add_watch(queue, folder.c_str(), IN_MOVED_TO | IN_DELETE | IN_CLOSE_WRITE) < 0) {
        close(queue);
        return B_ERROR;
    }
    sigset_t all, former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    std::thread(run_watch, queue).detach();
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    watch.folder = folder;
    return B_OK;
}

status_t start_watching_apps(const BMessenger& target, uint32 mask)
{
    if (!target.IsValid())
        return B_BAD_VALUE;
    AppWatch& watch = app_watch();
    BPrivate::MutexLock hold(watch.lock);
    if (const status_t status = begin(watch); status != B_OK)
        return status;
    if (watch.watchers.empty()) {
        watch.known = apps_now();
        watch.active = active_team();
    }
    std::erase_if(watch.watchers,
                  [&](const AppWatcher& watcher) { return watcher.target == target; });
    watch.watchers.push_back({target, mask});
    return B_OK;
}

status_t stop_watching_apps(const BMessenger& target)
{
    AppWatch& watch = app_watch();
    BPrivate::MutexLock hold(watch.lock);
    return std::erase_if(watch.watchers,
                         [&](const AppWatcher& watcher) { return watcher.target == target; }) > 0
               ? B_OK
               : B_BAD_VALUE;
}

}  // namespace BPrivate
