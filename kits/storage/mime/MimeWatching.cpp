// BMimeType: telling programs what changes in the type database. A thread waits for changes of the
// files behind it and compares what they say with what they said before.

#include <MimeType.h>

#include <errno.h>
#include <poll.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <Message.h>
#include <OS.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/FileReplacement.h"
#include "storage/watch/FolderChanges.h"
#include "support/HostErrors.h"
#include "storage/mime/MimeApplications.h"
#include "storage/mime/MimeNotes.h"
#include "storage/mime/MimeTypeRecords.h"
#include "storage/mime/SharedMime.h"
#include "app/looper/MessengerAccess.h"

using namespace storage;
using BPrivate::fail;

static const int kQuiet_ms = 20;        // the files of one change are written within this
static const int kBlindWait_ms = 1000;  // where the host does not tell

namespace {

struct TypeState {
    std::string name;
    bool in_database = false;  // the desktop's, which has the next two
    std::vector<std::string> extensions;
    std::vector<std::string> icons;
    std::vector<std::string> choices;
    std::map<std::string, std::string> notes;
};

using States = std::map<std::string, TypeState>;  // by lower case

struct Change {
    int32 which;
    int32 action;
    std::string extra_type;
    bool tells_size;
    bool large;

    auto operator<=>(const Change&) const = default;
};

// Public calls from any thread; sending never waits, so the lock is held while messages go out.
class MimeWatcher {
public:
    static MimeWatcher& Get();
    status_t Start(const BMessenger& target);
    status_t Stop(const BMessenger& target);

private:
    void _Run();
    void _Look();
    void _Send(const std::string& type, const Change& change);

    std::mutex fLock;
    FolderChanges fChanges;            // lock
    std::vector<BMessenger> fTargets;  // lock
    States fStates;                    // lock
    bool fRuns = false;                // lock
};

}  // namespace

// Those that we did not write: of ours, the notes tell more.
static std::vector<std::string> others_icons(std::vector<std::string> icons)
{
    std::erase_if(icons, [](const std::string& name) { return name.starts_with("beos-"); });
    return icons;
}

static States read_states()
{
    States states;
    const auto notes = MimeNotes::Get();
    const auto database = SharedMime::Get();
    for (const std::string& type : database->Types()) {
        states[lower_case(type)] = {
            type, true, database->Extensions(type), others_icons(database->IconNames(type)),
            {},   {}};
    }
    for (const std::string& type : notes->Types()) {
        TypeState& state = states[lower_case(type)];
        state.name = type;
        state.notes = notes->Values(type);
    }
    for (const auto& [type, ids] : users_choices()) {
        const auto known = states.find(type);
        if (known != states.end())
            known->second.choices = ids;
    }
    return states;
}

static Change plain_change(int32 which, bool removed)
{
    return {which, removed ? B_META_MIME_DELETED : B_META_MIME_MODIFIED, "", false, false};
}

// What another value of a note means; false for one that means nothing to programs.
static bool change_of_note(const std::string& key, bool removed, Change* change)
{
    static const struct {
        const char* key;
        int32 which;
    } kRows[] = {
        {keys::kShortDescription, B_SHORT_DESCRIPTION_CHANGED},
        {keys::kLongDescription, B_LONG_DESCRIPTION_CHANGED},
        {keys::kSnifferRule, B_SNIFFER_RULE_CHANGED},
        {keys::kVectorIcon, B_ICON_CHANGED},
        {keys::kPreferredApp, B_PREFERRED_APP_CHANGED},
        {keys::kAppHint, B_APP_HINT_CHANGED},
        {keys::kAttrInfo, B_ATTR_INFO_CHANGED},
    };
    std::string kind;
    *change = plain_change(0, removed);
    if (parse_icon_for_key(key, &kind, &change->extra_type)) {
        change->which = B_ICON_FOR_TYPE_CHANGED;
        change->tells_size = kind != "Vector";
        change->large = kind == "32";
        return true;
    }
    if (key == keys::kMiniIconState || key == keys::kLargeIconState) {
        change->which = B_ICON_CHANGED;
        change->tells_size = true;
        change->large = key == keys::kLargeIconState;
        return true;
    }
    for (const auto& row : kRows) {
        if (key == row.key)
            change->which = row.which;
    }
    return change->which != 0;
}

// Extensions are told by the database, where they arrive first.
static std::set<Change> changes_between(const TypeState& before, const TypeState& now)
{
    std::set<Change> changes;
    // A type comes into the database before it is noted, and leaves it before it is forgotten.
    const bool stayed = before.in_database && now.in_database;
    if (now.in_database && before.extensions != now.extensions)
        changes.insert(plain_change(B_FILE_EXTENSIONS_CHANGED, now.extensions.empty()));
    if (before.choices != now.choices)
        changes.insert(plain_change(B_PREFERRED_APP_CHANGED, now.choices.empty()));
    if (stayed && before.icons != now.icons)
        changes.insert(plain_change(B_ICON_CHANGED, false));
    std::map<std::string, std::string> all = before.notes;
    all.insert(now.notes.begin(), now.notes.end());
    for (const auto& [key, unused] : all) {
        const auto old_value = before.notes.find(key);
        const auto value = now.notes.find(key);
        const bool removed = value == now.notes.end();
        Change change;
        if ((old_value == before.notes.end() || removed || old_value->second != value->second) &&
            change_of_note(key, removed, &change))
            changes.insert(change);
    }
    return changes;
}

static std::vector<FolderChanges::Folder> watched_folders()
{
    std::vector<FolderChanges::Folder> folders = {{own_data_folder(), "types.ini"},
                                                  {config_folders().front(), "mimeapps.list"}};
    for (const std::string& data : data_folders())
        folders.push_back({data + "/mime", ""});
    return folders;
}

MimeWatcher& MimeWatcher::Get()
{
    static auto* watcher = new MimeWatcher;  // its thread runs until the process ends
    return *watcher;
}

status_t MimeWatcher::Start(const BMessenger& target)
{
    std::lock_guard guard(fLock);
    if (!fRuns) {
        fChanges.Watch(watched_folders());
        const thread_id thread = spawn_thread(
            [](void* self) -> status_t {
                static_cast<MimeWatcher*>(self)->_Run();
                return B_OK;
            },
            "type database", B_LOW_PRIORITY, this);
        if (thread < B_OK || resume_thread(thread) != B_OK)
            return fail(EAGAIN);
        fRuns = true;
        fStates = read_states();
    }
    _Look();  // what was before is not for this one
    if (std::find(fTargets.begin(), fTargets.end(), target) == fTargets.end())
        fTargets.push_back(target);
    return B_OK;
}

status_t MimeWatcher::Stop(const BMessenger& target)
{
    std::lock_guard guard(fLock);
    return std::erase(fTargets, target) > 0 ? B_OK : fail(EINVAL);
}

void MimeWatcher::_Run()
{
    while (true) {
        int fd;
        {
            std::lock_guard guard(fLock);
            fd = fChanges.Descriptor();
        }
        struct pollfd wait = {fd, POLLIN, 0};
        poll(&wait, 1, fd >= 0 ? -1 : kBlindWait_ms);
        snooze(kQuiet_ms * 1000);
        std::lock_guard guard(fLock);
        _Look();
    }
}

void MimeWatcher::_Look()
{
    if (!fChanges.Changed())
        return;
    // A folder that came or went is watched anew, and what it holds is read after that.
    fChanges.Watch(watched_folders());
    States now = read_states();
    if (!fTargets.empty()) {
        for (const auto& [key, state] : fStates) {
            if (!now.contains(key))
                _Send(state.name, plain_change(B_MIME_TYPE_DELETED, false));
        }
        for (const auto& [key, state] : now) {
            const auto before = fStates.find(key);
            if (before == fStates.end())
                _Send(state.name, plain_change(B_MIME_TYPE_CREATED, false));
            for (const Change& change :
                 changes_between(before != fStates.end() ? before->second : TypeState(), state))
                _Send(state.name, change);
        }
    }
    fStates = std::move(now);
}

void MimeWatcher::_Send(const std::string& type, const Change& change)
{
    BMessage message(B_META_MIME_CHANGED);
    message.AddInt32("be:which", change.which);
    message.AddString("be:type", type.c_str());
    message.AddInt32("be:action", change.action);
    if (!change.extra_type.empty())
        message.AddString("be:extra_type", change.extra_type.c_str());
    if (change.tells_size)
        message.AddBool("be:large_icon", change.large);
    std::erase_if(fTargets, [&](const BMessenger& target) {
        return !BPrivate::MessengerAccess::Notify(target, message);
    });
}

status_t BMimeType::StartWatching(BMessenger target)
{
    return target.IsValid() ? MimeWatcher::Get().Start(target) : fail(EINVAL);
}

status_t BMimeType::StopWatching(BMessenger target) { return MimeWatcher::Get().Stop(target); }
