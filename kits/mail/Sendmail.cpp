// One run of sendmail. The mail is its standard input, straight from the file, so that nobody waits
// at a pipe.

#include "mail/Sendmail.h"

#include <OS.h>

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sysexits.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "support/ProgramStart.h"

namespace mail {

static const bigtime_t kDefaultTimeout = 60000000;

static bool is_program(const std::string& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

// "" if there is none. The current directory is never searched.
static std::string find_sendmail()
{
    const char* named = getenv("PLINTH_SENDMAIL");
    if (named != nullptr && named[0] != '\0')
        return is_program(named) ? named : "";
    const char* variable = getenv("PATH");
    std::string folders = variable != nullptr ? variable : "";
    folders += ":/usr/sbin:/usr/lib";
    for (std::string_view left = folders; !left.empty();) {
        const std::string_view folder = left.substr(0, left.find(':'));
        left.remove_prefix(std::min(folder.size() + 1, left.size()));
        const std::string path = std::string(folder) + "/sendmail";
        if (!folder.empty() && folder[0] == '/' && is_program(path))
            return path;
    }
    return "";
}

static bigtime_t timeout_us()
{
    const char* variable = getenv("PLINTH_MAIL_TIMEOUT");
    const double seconds = variable != nullptr ? strtod(variable, nullptr) : 0;
    return seconds > 0 && seconds < 1e6 ? bigtime_t(seconds * 1e6) : kDefaultTimeout;
}

// In a process group of its own, to end it with what it started. A lone dot is no end of the mail
// (-i).
static pid_t start(const std::string& program, const char* mail_path)
{
    BPrivate::ProgramStart start;
    start.Open(STDIN_FILENO, mail_path, O_RDONLY);
    start.Open(STDOUT_FILENO, "/dev/null", O_WRONLY);
    start.Give(STDERR_FILENO, STDOUT_FILENO);
    start.LeadGroup();
    return start.Run(program.c_str(), {"sendmail", "-t", "-i"});
}

static status_t status_of(int exit_code)
{
    switch (exit_code) {
        case EX_OK:
            return B_OK;
        case EX_USAGE:
        case EX_DATAERR:
            return B_MAIL_INVALID_MAIL;
        case EX_NOUSER:
            return B_MAIL_UNKNOWN_USER;
        case EX_NOHOST:
            return B_MAIL_UNKNOWN_HOST;
        case EX_NOPERM:
            return B_MAIL_ACCESS_ERROR;
        default:
            return B_ERROR;
    }
}

static status_t wait_for(pid_t process)
{
    const bigtime_t deadline = system_time() + timeout_us();
    bigtime_t pause = 500;
    int status = 0;
    pid_t ended;
    while ((ended = waitpid(process, &status, WNOHANG)) == 0) {
        if (system_time() >= deadline) {
            kill(-process, SIGKILL);
            while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
            }
            return B_TIMED_OUT;
        }
        snooze(pause);
        pause = std::min<bigtime_t>(pause * 2, 20000);
    }
    // A program that ignores its children's ends never hears how they ended.
    return ended == process && WIFEXITED(status) ? status_of(WEXITSTATUS(status)) : B_ERROR;
}

status_t run_sendmail(const char* mail_path)
{
    const std::string program = find_sendmail();
    if (program.empty())
        return B_MAIL_NO_DAEMON;
    const pid_t process = start(program, mail_path);
    return process >= 0 ? wait_for(process) : B_MAIL_NO_DAEMON;
}

}  // namespace mail
