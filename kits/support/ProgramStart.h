#ifndef SUPPORT_PROGRAM_START_H
#define SUPPORT_PROGRAM_START_H

// Starts a program of the host. Its signals are as for a new program, and of our files it gets
// those alone that are named here, as its standard ones. In the header: the kits that have programs
// work for them are libraries of their own.

#include <signal.h>
#include <spawn.h>
#include <sys/types.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

class ProgramStart {
public:
    ProgramStart();
    ~ProgramStart();
    ProgramStart(const ProgramStart&) = delete;
    ProgramStart& operator=(const ProgramStart&) = delete;

    // What its file of that number is: one of ours, or one that it opens.
    void Give(int number, int ours);
    void Open(int number, const char* path, int mode);
    // It is the first of a process group, to be ended with what it starts.
    void LeadGroup();

    // Its process, -1 if it can not be started.
    pid_t Run(const char* path, const std::vector<std::string>& words);

private:
    posix_spawn_file_actions_t fFiles;
    posix_spawnattr_t fAttributes;
    short fFlags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
};

inline ProgramStart::ProgramStart()
{
    posix_spawn_file_actions_init(&fFiles);
    posix_spawnattr_init(&fAttributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&fAttributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&fAttributes, &signals);
}

inline ProgramStart::~ProgramStart()
{
    posix_spawnattr_destroy(&fAttributes);
    posix_spawn_file_actions_destroy(&fFiles);
}

inline void ProgramStart::Give(int number, int ours)
{
    posix_spawn_file_actions_adddup2(&fFiles, ours, number);
}

inline void ProgramStart::Open(int number, const char* path, int mode)
{
    posix_spawn_file_actions_addopen(&fFiles, number, path, mode, 0);
}

inline void ProgramStart::LeadGroup()
{
    posix_spawnattr_setpgroup(&fAttributes, 0);
    fFlags |= POSIX_SPAWN_SETPGROUP;
}

inline pid_t ProgramStart::Run(const char* path, const std::vector<std::string>& words)
{
    posix_spawn_file_actions_addclosefrom_np(&fFiles, STDERR_FILENO + 1);
    posix_spawnattr_setflags(&fAttributes, fFlags);
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));  // a new program has copies
    arguments.push_back(nullptr);
    pid_t process = -1;
    const int error = posix_spawn(&process, path, &fFiles, &fAttributes, arguments.data(), environ);
    return error == 0 ? process : -1;
}

}  // namespace BPrivate

#endif  // SUPPORT_PROGRAM_START_H
