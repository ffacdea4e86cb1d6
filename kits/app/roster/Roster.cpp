// The roster: who runs, and which application is for what. Any thread.

#include <Roster.h>

#include <Application.h>
#include <List.h>
#include <Message.h>

#include <string.h>
#include <strings.h>
#include <unistd.h>

#include "app/roster/AppChannel.h"
#include "app/roster/LaunchTargets.h"
#include "app/roster/RosterWatch.h"
#include "app/roster/RunningApps.h"

using BPrivate::find_target;
using BPrivate::LaunchTarget;
using BPrivate::running_apps;
using BPrivate::RunningApp;

static const BRoster sRoster;
const BRoster* be_roster = &sRoster;

app_info::app_info() : thread(-1), team(-1), port(-1), flags(B_MULTIPLE_LAUNCH)
{
    memset(signature, 0, sizeof(signature));
}

app_info::~app_info() = default;

BRoster::BRoster() = default;
BRoster::~BRoster() = default;

// The first running application for which `is_wanted` holds; its team is -1 if there is none.
template <class Claim>
static RunningApp first_running(Claim is_wanted)
{
    for (const RunningApp& app : running_apps()) {
        if (is_wanted(app))
            return app;
    }
    return RunningApp();
}

static RunningApp find_running(const char* signature)
{
    return first_running([=](const RunningApp& app) {
        return signature != nullptr && strcasecmp(app.signature.c_str(), signature) == 0;
    });
}

static RunningApp find_running(const entry_ref* ref)
{
    return first_running([=](const RunningApp& app) {
        entry_ref own;
        return ref != nullptr && get_ref_for_path(app.path.c_str(), &own) == B_OK && own == *ref;
    });
}

static status_t fill_info(const RunningApp& app, app_info* info, status_t if_none)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    if (app.team < 0)
        return if_none;
    *info = app_info();
    info->team = app.team;
    info->thread = app.thread;
    info->flags = app.flags;
    app.signature.copy(info->signature, sizeof(info->signature) - 1);
    get_ref_for_path(app.path.c_str(), &info->ref);
    return B_OK;
}

bool BRoster::IsRunning(const char* signature) const { return TeamFor(signature) >= 0; }

bool BRoster::IsRunning(entry_ref* ref) const { return TeamFor(ref) >= 0; }

team_id BRoster::TeamFor(const char* signature) const
{
    return signature != nullptr ? find_running(signature).team : B_BAD_VALUE;
}

team_id BRoster::TeamFor(entry_ref* ref) const
{
    return ref != nullptr ? find_running(ref).team : B_BAD_VALUE;
}

template <class Claim>
static void list_teams(BList* list, Claim is_wanted)
{
    if (list == nullptr)
        return;
    for (const RunningApp& app : running_apps()) {
        if (is_wanted(app))
            list->AddItem(reinterpret_cast<void*>(static_cast<intptr_t>(app.team)));
    }
}

void BRoster::GetAppList(BList* teamIDList) const
{
    list_teams(teamIDList, [](const RunningApp&) { return true; });
}

void BRoster::GetAppList(const char* signature, BList* teamIDList) const
{
    list_teams(teamIDList, [=](const RunningApp& app) {
        return signature != nullptr && strcasecmp(app.signature.c_str(), signature) == 0;
    });
}

status_t BRoster::GetAppInfo(const char* signature, app_info* info) const
{
    return fill_info(find_running(signature), info, signature != nullptr ? B_ERROR : B_BAD_VALUE);
}

status_t BRoster::GetAppInfo(entry_ref* ref, app_info* info) const
{
    return fill_info(find_running(ref), info, ref != nullptr ? B_ERROR : B_BAD_VALUE);
}

status_t BRoster::GetRunningAppInfo(team_id team, app_info* info) const
{
    return fill_info(first_running([=](const RunningApp& app) { return app.team == team; }), info,
                     B_BAD_TEAM_ID);
}

status_t BRoster::GetActiveAppInfo(app_info* info) const
{
    const team_id active = BPrivate::active_team();
    return fill_info(first_running([=](const RunningApp& app) { return app.team == active; }), info,
                     B_ERROR);
}

status_t BRoster::FindApp(const char* mimeType, entry_ref* app) const
{
    LaunchTarget target;
    if (app == nullptr)
        return B_BAD_VALUE;
    const status_t status = find_target(mimeType, &target);
    return status == B_OK ? get_ref_for_path(target.executable.c_str(), app) : status;
}

status_t BRoster::FindApp(entry_ref* ref, entry_ref* app) const
{
    LaunchTarget target;
    if (app == nullptr)
        return B_BAD_VALUE;
    const status_t status = find_target(ref, &target);
    return status == B_OK ? get_ref_for_path(target.executable.c_str(), app) : status;
}

status_t BRoster::Broadcast(BMessage* message) const
{
    return Broadcast(message, be_app_messenger);
}

// Who went meanwhile needs no message.
status_t BRoster::Broadcast(BMessage* message, BMessenger replyTo) const
{
    if (message == nullptr)
        return B_BAD_VALUE;
    for (const RunningApp& app : running_apps()) {
        if (app.team != getpid())
            BPrivate::messenger_to(app).SendMessage(message, replyTo);
    }
    return B_OK;
}

status_t BRoster::StartWatching(BMessenger target, uint32 eventMask) const
{
    return BPrivate::start_watching_apps(target, eventMask);
}

status_t BRoster::StopWatching(BMessenger target) const
{
    return BPrivate::stop_watching_apps(target);
}

status_t BRoster::ActivateApp(team_id team) const
{
    const RunningApp found = first_running([=](const RunningApp& app) { return app.team == team; });
    if (found.team < 0)
        return B_BAD_TEAM_ID;
    return BPrivate::messenger_to(found).SendMessage(BPrivate::kActivateApp);
}
