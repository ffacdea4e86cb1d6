// The roster's folder. Locks are the host's record locks: they end with the process, whatever its
// end, are not inherited, and name their holder. They also end when their holder closes any
// descriptor of the file, so nobody opens his own a second time.

#include "app/roster/RunningApps.h"

#include <AppFileInfo.h>
#include <Directory.h>
#include <File.h>
#include <Roster.h>

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <string_view>

#include "app/roster/AppChannel.h"
#include "app/message/MessageAccess.h"
#include "app/looper/MessengerAccess.h"
#include "storage/desktop/FileReplacement.h"
#include "support/Mutex.h"

namespace BPrivate {

static const char* const kActive = "/active";  // a link that names the team
static const size_t kMaxEntry = 8192;          // bytes of a file

static BPrivate::Mutex sOwnLock;
// They outlive the process' exit handlers: where the X server is lost, the application may end
// while another thread runs those.
static RunningApp& sOwn GUARDED_BY(sOwnLock) = *new RunningApp;  // no team while not registered
static std::string& sOwnFile GUARDED_BY(sOwnLock) = *new std::string;
static int sOwnDescriptor GUARDED_BY(sOwnLock) = -1;  // holds the file's lock

// True for a folder of this user's that no other may enter.
static bool is_private(const std::string& path)
{
    struct stat info;
    return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid() &&
           (info.st_mode & 077) == 0;
}

// The user's runtime directory if there is one. Else a name below the directory for temporary
// files, and one in the user's data folder where somebody else has taken that.
static std::vector<std::string> folder_paths()
{
    const char* runtime = getenv("XDG_RUNTIME_DIR");
    struct stat info;
    if (runtime != nullptr && runtime[0] == '/' && stat(runtime, &info) == 0 &&
        S_ISDIR(info.st_mode) && info.st_uid == geteuid())
        return {std::string(runtime) + "/beos-roster"};
    const char* temporary = getenv("TMPDIR");
    const std::string base = temporary != nullptr && temporary[0] == '/' ? temporary : "/tmp";
    char host[HOST_NAME_MAX + 1] = "";
    gethostname(host, sizeof(host) - 1);  // homes may be shared by several
    return {base + "/beos-roster-" + std::to_string(geteuid()),
            storage::own_data_folder() + "/roster-" + host};
}

std::string roster_folder()
{
    for (const std::string& folder : folder_paths()) {
        if (is_private(folder))
            return folder;
    }
    return "";
}

std::string make_roster_folder()
{
    for (const std::string& folder : folder_paths()) {
        create_directory(folder.substr(0, folder.rfind('/')).c_str(), 0700);
        mkdir(folder.c_str(), 0700);
        if (is_private(folder))
            return folder;
    }
    return "";
}

// A line each; the path, which may hold line feeds, to the end.
static std::string as_text(const RunningApp& app)
{
    return app.signature + '\n' + std::to_string(app.flags) + '\n' + std::to_string(app.thread) +
           '\n' + std::to_string(app.looper) + '\n' + std::to_string(app.began) + '\n' + app.path;
}

static std::string_view take_line(std::string_view* text)
{
    const size_t end = std::min(text->find('\n'), text->size());
    const std::string_view line = text->substr(0, end);
    text->remove_prefix(std::min(end + 1, text->size()));
    return line;
}

template <class Number>
static bool take_number(std::string_view* text, Number* number)
{
    const std::string_view line = take_line(text);
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), *number);
    return error == std::errc() && end == line.data() + line.size();
}

static bool from_text(std::string_view text, RunningApp* app)
{
    app->signature = take_line(&text);
    if (!take_number(&text, &app->flags) || !take_number(&text, &app->thread) ||
        !take_number(&text, &app->looper) || !take_number(&text, &app->began))
        return false;
    app->path = text;
    return !app->signature.empty() && app->signature.size() < sizeof(app_info::signature) &&
           app->path.starts_with('/');
}

static struct flock whole_file()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

uint32 launch_flags_of(const char* path)
{
    BFile file(path, B_READ_ONLY);
    const BAppFileInfo info(&file);
    uint32 flags;
    if (info.GetAppFlags(&flags) != B_OK)
        return B_MULTIPLE_LAUNCH;
    return flags & (B_LAUNCH_MASK | B_BACKGROUND_APP | B_ARGV_ONLY);
}

std::string own_executable()
{
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof(path));
    return std::string(path, std::max<ssize_t>(length, 0));
}

// The file comes by its name complete and locked.
static int write_entry(const std::string& folder, const std::string& file, const std::string& text)
{
    const std::string unfinished = folder + "/." + std::to_string(getpid());
    unlink(unfinished.c_str());
    const int fd =
        open(unfinished.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return -1;
    struct flock lock = whole_file();
    const bool written = fcntl(fd, F_SETLK, &lock) == 0 &&
                         write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
                         rename(unfinished.c_str(), file.c_str()) == 0;
    if (written)
        return fd;
    unlink(unfinished.c_str());
    close(fd);
    return -1;
}

// Reads another's file; removes it if its program is gone.
static bool read_entry(int folder, const char* name, RunningApp* app)
{
    const int fd = openat(folder, name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0)
        return false;
    struct flock lock = whole_file();
    struct stat info;
    bool valid = fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && fcntl(fd, F_GETLK, &lock) == 0;
    if (valid && lock.l_type == F_UNLCK) {
        for (const char* suffix : {"", ".port", ".messages"})
            unlinkat(folder, (std::string(name) + suffix).c_str(), 0);
    }
    valid = valid && lock.l_type != F_UNLCK && lock.l_pid == app->team;
    if (valid) {
        std::string text(kMaxEntry, '\0');
        const ssize_t length = pread(fd, text.data(), text.size(), 0);
        valid = length > 0 && from_text(std::string_view(text).substr(0, length), app);
    }
    close(fd);
    return valid;
}

static bool is_gone(team_id team) { return kill(team, 0) != 0 && errno == ESRCH; }

// Programs that were killed leave names behind: their entries, and what they were about to write.
static void remove_leftovers(const std::string& path)
{
    const int before = errno;
    DIR* folder = opendir(path.c_str());
    while (const dirent* entry = folder != nullptr ? readdir(folder) : nullptr) {
        std::string_view name = entry->d_name;
        RunningApp app;
        const bool unfinished = name.starts_with('.');
        for (const std::string_view mark : {".active-", "."}) {
            if (name.starts_with(mark))
                name.remove_prefix(mark.size());
        }
        const std::string number(name.substr(0, name.find('.')));
        std::string_view digits = number;
        if (!take_number(&digits, &app.team) || app.team <= 0 || app.team == getpid())
            continue;
        struct stat info;
        if (number == entry->d_name)
            read_entry(dirfd(folder), entry->d_name, &app);
        else if (is_gone(app.team) &&
                 (unfinished || fstatat(dirfd(folder), number.c_str(), &info, 0) != 0))
            unlinkat(dirfd(folder), entry->d_name, 0);
    }
    if (folder != nullptr)
        closedir(folder);
    const team_id active = active_team();
    if (active > 0 && is_gone(active))
        unlink((path + kActive).c_str());
    errno = before;
}

void register_app(const char* signature, thread_id thread, int32 looper)
{
    BPrivate::MutexLock hold(sOwnLock);
    sOwn.team = getpid();
    sOwn.thread = thread;
    sOwn.looper = looper;
    sOwn.began = real_time_clock_usecs();
    sOwn.signature = signature;
    sOwn.path = own_executable();
    sOwn.flags = launch_flags_of(sOwn.path.c_str());
    const std::string folder = make_roster_folder();
    if (folder.empty())
        return;
    remove_leftovers(folder);
    sOwnFile = folder + "/" + std::to_string(sOwn.team);
    open_channel(folder);
    sOwnDescriptor = write_entry(folder, sOwnFile, as_text(sOwn));
}

std::string registered_folder()
{
    {
        BPrivate::MutexLock hold(sOwnLock);
        if (!sOwnFile.empty())
            return sOwnFile.substr(0, sOwnFile.find_last_of('/'));
    }
    return roster_folder();
}

void unregister_app()
{
    note_active(false);
    {
        BPrivate::MutexLock hold(sOwnLock);
        if (sOwn.team != getpid())
            return;
    }
    close_channel();
    BPrivate::MutexLock hold(sOwnLock);
    sOwn = RunningApp();
    if (sOwnDescriptor < 0)
        return;
    unlink(sOwnFile.c_str());
    close(sOwnDescriptor);
    sOwnDescriptor = -1;
}

std::vector<RunningApp> running_apps()
{
    std::vector<RunningApp> apps;
    {
        BPrivate::MutexLock hold(sOwnLock);
        if (sOwn.team == getpid())
            apps.push_back(sOwn);
    }
    const int saved = errno;
    const std::string path = roster_folder();
    DIR* folder = path.empty() ? nullptr : opendir(path.c_str());
    while (const dirent* entry = folder != nullptr ? readdir(folder) : nullptr) {
        RunningApp app;
        std::string_view name = entry->d_name;
        if (take_number(&name, &app.team) && app.team > 0 && app.team != getpid() &&
            read_entry(dirfd(folder), entry->d_name, &app))
            apps.push_back(app);
    }
    if (folder != nullptr)
        closedir(folder);
    errno = saved;
    std::sort(apps.begin(), apps.end(), [](const RunningApp& a, const RunningApp& b) {
        return a.began != b.began ? a.began < b.began : a.team < b.team;
    });
    return apps;
}

bool is_registered(team_id team)
{
    const std::string folder = roster_folder();
    const int fd = folder.empty() ? -1 : open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return false;
    RunningApp app;
    app.team = team;
    const bool found = read_entry(fd, std::to_string(team).c_str(), &app);
    close(fd);
    return found;
}

RunningApp only_instance(const std::string& path, const std::string& signature)
{
    const uint32 mode = launch_flags_of(path.c_str()) & B_LAUNCH_MASK;
    if (mode == B_MULTIPLE_LAUNCH)
        return RunningApp();
    for (const RunningApp& app : running_apps()) {
        const bool is_exclusive =
            mode == B_EXCLUSIVE_LAUNCH && strcasecmp(app.signature.c_str(), signature.c_str()) == 0;
        if (is_exclusive || app.path == path)
            return app;
    }
    return RunningApp();
}

BMessenger messenger_to(const RunningApp& app)
{
    return MessengerAccess::MakeFor(app.team, app.looper, kPreferredToken);
}

team_id active_team()
{
    char target[16];
    const std::string folder = roster_folder();
    const ssize_t length = readlink((folder + kActive).c_str(), target, sizeof(target));
    std::string_view name(target, std::max<ssize_t>(length, 0));
    team_id team;
    return take_number(&name, &team) ? team : -1;
}

// The link is replaced as a whole, so that the last that became active stands in it.
void note_active(bool active)
{
    const std::string folder = roster_folder();
    if (folder.empty() || (!active && active_team() != getpid()))
        return;
    const std::string link = folder + kActive;
    const std::string team = std::to_string(getpid());
    if (!active) {
        unlink(link.c_str());
        return;
    }
    const std::string unfinished = folder + "/.active-" + team;
    unlink(unfinished.c_str());
    if (symlink(team.c_str(), unfinished.c_str()) == 0)
        rename(unfinished.c_str(), link.c_str());
}

}  // namespace BPrivate
