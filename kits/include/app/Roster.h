#ifndef _ROSTER_H
#define _ROSTER_H

#include <Entry.h>
#include <List.h>
#include <Message.h>
#include <Messenger.h>
#include <OS.h>
#include <SupportDefs.h>

// How a program wants to be launched, in app_info::flags.
#define B_SINGLE_LAUNCH 0
#define B_MULTIPLE_LAUNCH 1
#define B_EXCLUSIVE_LAUNCH 2
#define B_LAUNCH_MASK 3
#define B_BACKGROUND_APP 4
#define B_ARGV_ONLY 8

/* A running program, as BApplication::GetAppInfo() tells. */
struct app_info {
    app_info();
    ~app_info();

    thread_id thread;  // of the application's loop
    team_id team;
    port_id port;   // -1: messages do not travel through ports here
    uint32 flags;   // launch mode and the bits above
    entry_ref ref;  // the executable
    char signature[240];
};

enum watching_request_flags { B_REQUEST_LAUNCHED = 1, B_REQUEST_QUIT = 2, B_REQUEST_ACTIVATED = 4 };

enum {
    B_SOME_APP_LAUNCHED = 0x42524153,  // 'BRAS'
    B_SOME_APP_QUIT = 0x42524151,      // 'BRAQ'
    B_SOME_APP_ACTIVATED = 0x42524157  // 'BRAW'
};

/* Which programs run, how others are started, and what was used lately. Running are those with a
   BApplication; startable are all programs, by path, and those that have a desktop entry, by
   signature. Without state: any thread. */
class BRoster {
public:
    BRoster();
    ~BRoster();

    /* Of several with that signature or executable, the one that began first; -1 for none. */
    bool IsRunning(const char* signature) const;
    bool IsRunning(entry_ref* ref) const;
    team_id TeamFor(const char* signature) const;
    team_id TeamFor(entry_ref* ref) const;
    /* Appends each team_id as an item, in the order in which they began. */
    void GetAppList(BList* teamIDList) const;
    void GetAppList(const char* signature, BList* teamIDList) const;
    /* B_ERROR if it does not run; B_BAD_TEAM_ID for a team without application. */
    status_t GetAppInfo(const char* signature, app_info* info) const;
    status_t GetAppInfo(entry_ref* ref, app_info* info) const;
    status_t GetRunningAppInfo(team_id team, app_info* info) const;
    /* The one whose window is active; B_ERROR if that is none of ours. */
    status_t GetActiveAppInfo(app_info* info) const;

    /* The executable for a signature or, by its preferred application, for a type or a file; a
       program is its own. B_BAD_VALUE, B_ENTRY_NOT_FOUND, B_LAUNCH_FAILED_APP_NOT_FOUND,
       B_LAUNCH_FAILED_NO_PREFERRED_APP, B_LAUNCH_FAILED_NO_RESOLVE_LINK. */
    status_t FindApp(const char* mimeType, entry_ref* app) const;
    status_t FindApp(entry_ref* ref, entry_ref* app) const;

    /* To all running applications but this one; answers go to `replyTo`. */
    status_t Broadcast(BMessage* message) const;
    status_t Broadcast(BMessage* message, BMessenger replyTo) const;
    /* `target` hears of others' start, end and activation (B_SOME_APP_...) until StopWatching(). */
    status_t StartWatching(BMessenger target,
                           uint32 eventMask = B_REQUEST_LAUNCHED | B_REQUEST_QUIT) const;
    status_t StopWatching(BMessenger target) const;
    /* B_BAD_TEAM_ID. Brings the application's windows to the front. */
    status_t ActivateApp(team_id team) const;

    /* Starts the application for a signature, a type or a file. A file that is no program, and
       "refs" of the messages, are what it is to open; "argv" of a B_ARGV_RECEIVED message, behind
       the first, and `args` (argc of them, without the program) are its arguments. Where the
       application runs, and wants to run but once, it gets the messages instead:
       B_ALREADY_RUNNING. An application that wants its arguments only gets no messages. Returns
       when the application is known and can be sent messages; a program that is none is waited for
       half a second at most. The errors of FindApp(), B_LAUNCH_FAILED_EXECUTABLE, and those of
       load_image(). */
    status_t Launch(const char* mimeType, BMessage* initialMessage = nullptr,
                    team_id* _appTeam = nullptr) const;
    status_t Launch(const char* mimeType, BList* messageList, team_id* _appTeam = nullptr) const;
    status_t Launch(const char* mimeType, int argc, const char* const* args,
                    team_id* _appTeam = nullptr) const;
    status_t Launch(const entry_ref* ref, const BMessage* initialMessage = nullptr,
                    team_id* _appTeam = nullptr) const;
    status_t Launch(const entry_ref* ref, const BList* messageList,
                    team_id* _appTeam = nullptr) const;
    status_t Launch(const entry_ref* ref, int argc, const char* const* args,
                    team_id* _appTeam = nullptr) const;

    /* The desktop's recent files, newest first, as "refs" of the emptied message, at most
       `maxCount`. A type may be a supertype alone. With a signature, only what that application
       has added. What is gone is left out. Applications are those that Launch() has started. */
    void GetRecentDocuments(BMessage* refList, int32 maxCount, const char* fileType = nullptr,
                            const char* signature = nullptr) const;
    void GetRecentDocuments(BMessage* refList, int32 maxCount, const char* fileTypes[],
                            int32 fileTypesCount, const char* signature = nullptr) const;
    void GetRecentFolders(BMessage* refList, int32 maxCount, const char* signature = nullptr) const;
    void GetRecentApps(BMessage* refList, int32 maxCount) const;
    /* In the name of the application with that signature; null: of the one that calls. */
    void AddToRecentDocuments(const entry_ref* document, const char* signature = nullptr) const;
    void AddToRecentFolders(const entry_ref* folder, const char* signature = nullptr) const;
};

extern const BRoster* be_roster;

#endif  // _ROSTER_H
