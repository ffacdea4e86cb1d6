#ifndef APP_RUNNING_APPS_H
#define APP_RUNNING_APPS_H

// The running programs that have a BApplication, as they tell one another. Any thread.
//
// Each keeps a file, named by its team, in a folder that only its user may enter, and holds a lock
// on it as long as it lives: a file without one is a program's that crashed, and is removed by who
// finds it.

#include <Messenger.h>
#include <OS.h>

#include <string>
#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

struct RunningApp {
    team_id team = -1;
    thread_id thread = -1;
    int32 looper = 0;     // token of the application's looper
    uint32 flags = 0;     // launch mode, as app_info has it
    bigtime_t began = 0;  // when it registered, microseconds since 1970
    std::string signature;
    std::string path;  // of the executable
};

// The folder: "beos-roster" below the user's runtime directory, else a private one below the
// directory for temporary files, else one in the user's data folder. Empty if there is none that
// nobody else can write to.
std::string roster_folder();
std::string make_roster_folder();

// To its BApplication.
BMessenger messenger_to(const RunningApp& app);

// Asks an application to bring its windows to the front.
enum : uint32 { kActivateApp = '_RAC' };

void register_app(const char* signature, thread_id thread, int32 looper);
void unregister_app();

// The folder in which this program is registered, or may be. Once it is, the environment is not
// asked again, since the program's own threads may change it by then.
std::string registered_folder();

// Whether the program of another team can be found among those that run.
bool is_registered(team_id team);

// All that run, this one included, in the order in which they began.
std::vector<RunningApp> running_apps();

// Notes whether a window of this application is the active one of the screen.
void note_active(bool active);
team_id active_team();  // -1 for none of ours

// The file that this process runs; empty if the host does not tell.
std::string own_executable();

// How the program at `path` wants to be launched.
uint32 launch_flags_of(const char* path);

// The application that runs where the program at `path` wants to run but once; its team is -1
// for none. A single launch is meant by executable, an exclusive one by signature, which may be
// empty.
RunningApp only_instance(const std::string& path, const std::string& signature);

}  // namespace BPrivate

#endif  // APP_RUNNING_APPS_H
