// Tools of the desktop, such as those that build its databases.

#include "storage/desktop/RunProgram.h"

#include <errno.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/HostErrors.h"

namespace storage {

using BPrivate::fail;

status_t run_program(std::vector<std::string> command)
{
    std::vector<char*> arguments;
    for (std::string& word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
    pid_t process = -1;
    const int number =
        posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (number != 0)
        return fail(number);
    int how = 0;
    while (waitpid(process, &how, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(how) && WEXITSTATUS(how) == 0 ? B_OK : fail(EIO);
}

}  // namespace storage
