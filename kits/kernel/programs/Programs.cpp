// Starting programs. Each has a thread of ours that starts it, since the host binds tracing to a
// thread, and then waits for its end, so that it leaves no zombie and its status can be told.
//
// A new program is stopped before its first instruction by tracing it over its exec: only that
// tells a file that can not be executed and still runs nothing. It is let go at once, stopped.

#include "kernel/programs/Programs.h"

#include <image.h>

#include <elf.h>
#include <errno.h>
#include <limits.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <deque>
#include <future>
#include <map>
#include <string>
#include <vector>

#include "kernel/HostActions.h"
#include "kernel/threads/Priorities.h"
#include "kernel/threads/Threads.h"
#include "support/HostErrors.h"
#include "support/Mutex.h"

namespace BPrivate {

static const size_t kMaxRemembered = 512;

struct Program {
    Mutex lock;
    bool begun GUARDED_BY(lock) = false;
    bool ended GUARDED_BY(lock) = false;
    bool killed GUARDED_BY(lock) = false;
    status_t status GUARDED_BY(lock) = B_OK;
    WaitList waiting_for_end GUARDED_BY(lock);
};

struct Programs {
    Mutex lock;
    std::map<thread_id, std::shared_ptr<Program>> all GUARDED_BY(lock);
    std::deque<thread_id> ended GUARDED_BY(lock);  // that nobody has waited for yet
};

// Never destroyed: threads run on while the process exits.
static Programs& programs()
{
    static Programs* const the = new Programs;
    return *the;
}

static std::shared_ptr<Program> find_program(thread_id id)
{
    Programs& list = programs();
    MutexLock hold(list.lock);
    const auto found = list.all.find(id);
    return found != list.all.end() ? found->second : nullptr;
}

bool is_loaded_program(thread_id id) { return find_program(id) != nullptr; }

void program_resumed(thread_id id)
{
    if (std::shared_ptr<Program> program = find_program(id)) {
        MutexLock hold(program->lock);
        program->begun = true;
    }
}

static void enter(thread_id id)
{
    begin_with_normal_priority(id);
    Programs& list = programs();
    MutexLock hold(list.lock);
    std::erase(list.ended, id);
    list.all[id] = std::make_shared<Program>();
}

static void leave(thread_id id, status_t status, bool killed)
{
    forget_priority(id);
    Programs& list = programs();
    MutexLock hold(list.lock);
    const std::shared_ptr<Program> program = list.all[id];
    MutexLock hold_program(program->lock);
    program->ended = true;
    program->killed = killed;
    program->status = status;
    if (!program->waiting_for_end.IsEmpty()) {
        list.all.erase(id);
        program->waiting_for_end.WakeAll(B_OK);
        return;
    }
    list.ended.push_back(id);
    if (list.ended.size() > kMaxRemembered) {
        list.all.erase(list.ended.front());
        list.ended.pop_front();
    }
}

// False if nobody is to hear of that end any more.
static bool take_ended(thread_id id)
{
    Programs& list = programs();
    MutexLock hold(list.lock);
    if (std::erase(list.ended, id) == 0)
        return false;
    list.all.erase(id);
    return true;
}

status_t wait_for_program(thread_id id, bigtime_t deadline, uint32 flags, status_t* exit_status)
{
    current();  // enters the caller while no lock is held
    std::shared_ptr<Program> program = find_program(id);
    if (program == nullptr)
        return B_BAD_THREAD_ID;
    MutexLock hold(program->lock);
    if (!program->begun && !program->ended) {
        program->begun = true;
        host_actions().signal_team(id, SIGCONT);
    }
    if (!program->ended) {
        WaitList::Waiter waiter;
        const status_t status =
            program->waiting_for_end.Wait(hold, waiter, deadline, flags, B_THREAD_WAITING);
        if (status != B_OK)
            return status;
    } else {
        hold.Unlock();  // the list's comes first
        if (!take_ended(id))
            return B_BAD_THREAD_ID;  // another thread heard of it first
        hold.Lock();
    }
    if (exit_status != nullptr)
        *exit_status = program->status;
    return program->killed ? B_INTERRUPTED : B_OK;
}

// Ends a new process. The library's _exit may do more where the code is instrumented, and wait for
// locks that were held when the process was made.
[[noreturn]] static void leave_new_process(int status)
{
    for (;;)
        syscall(SYS_exit_group, status);
}

// What a program is started with: copies, since its thread may begin late.
struct Start {
    std::vector<std::string> texts;
    std::vector<char*> argv;
    std::vector<char*> environment;
    std::string folder;        // to run in; empty for this one's
    std::promise<int> result;  // the process, or the negative error number
    const char* Path() const { return argv[0]; }
    // In the new process. Does not return.
    [[noreturn]] void Exec() const
    {
        if (folder.empty() || chdir(folder.c_str()) == 0) {
            close_range(STDERR_FILENO + 1, ~0u, CLOSE_RANGE_CLOEXEC);
            execve(Path(), argv.data(), environment.data());
        }
        leave_new_process(errno);
    }
};

// The host gives set-user-id programs and the like no rights while they are traced.
static bool gains_rights(const char* path)
{
    struct stat file;
    return (stat(path, &file) == 0 && (file.st_mode & (S_ISUID | S_ISGID)) != 0) ||
           getxattr(path, "security.capability", nullptr, 0) >= 0;
}

// Until a stop is over, or the process.
static void wait_until_stopped(pid_t process)
{
    siginfo_t info;
    while (waitid(P_PID, process, &info, WSTOPPED | WEXITED | WCONTINUED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
}

static const int kTracingRefused = -1;

// In the new process, which shares nothing with this one: only calls that need no lock. All signals
// are blocked, and the tracer unblocks them behind the exec, for one that came between would stop
// the process too early.
[[noreturn]] static void become_program(const Start& start)
{
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
        leave_new_process(0);
    start.Exec();
}

// 0 and the stopped process, kTracingRefused, or the host's error number.
static int start_traced(const Start& start, pid_t* process)
{
    *process = _Fork();
    if (*process < 0)
        return errno;
    if (*process == 0)
        become_program(start);
    for (;;) {
        int status;
        if (waitpid(*process, &status, 0) < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        if (WIFEXITED(status))
            return WEXITSTATUS(status) != 0 ? WEXITSTATUS(status) : kTracingRefused;
        if (WIFSIGNALED(status))
            return EINTR;
        if (WSTOPSIG(status) == SIGTRAP)
            break;
        ptrace(PTRACE_CONT, *process, nullptr, nullptr);
    }
    uint64 blocked = 0;
    ptrace(PTRACE_SETSIGMASK, *process, sizeof(blocked), &blocked);
    ptrace(PTRACE_DETACH, *process, nullptr, reinterpret_cast<void*>(SIGSTOP));
    wait_until_stopped(*process);
    return 0;
}

// 0 if the host would most likely execute the file, else its error number.
static int check_program(const char* path)
{
    struct stat file;
    if (stat(path, &file) != 0)
        return errno;
    if (!S_ISREG(file.st_mode))
        return EACCES;
    if (access(path, X_OK) != 0)
        return errno;
    FILE* stream = fopen(path, "re");
    if (stream == nullptr)
        return 0;  // it need not be readable
    char head[PATH_MAX] = {};
    const size_t length = fread(head, 1, sizeof(head) - 1, stream);
    fclose(stream);
    if (length >= SELFMAG && memcmp(head, ELFMAG, SELFMAG) == 0)
        return 0;
    if (memcmp(head, "#!", 2) != 0)
        return ENOEXEC;
    const char* interpreter = head + 2 + strspn(head + 2, " \t");
    head[interpreter - head + strcspn(interpreter, " \t\n")] = '\0';
    return access(interpreter, X_OK) == 0 ? 0 : errno;
}

// In the new process: it becomes the program when it is continued.
[[noreturn]] static void become_program_later(const Start& start)
{
    raise(SIGSTOP);
    // What comes before the exec is not to run a handler of the program that this was.
    struct sigaction action;
    for (int signal = 1; signal < NSIG; ++signal) {
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            action.sa_handler = SIG_DFL;
            action.sa_flags = 0;
            sigaction(signal, &action, nullptr);
        }
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    start.Exec();
}

// Without tracing, the process is stopped before it becomes the program, so that what is told of
// the file is told without trying.
static int start_untraced(const Start& start, pid_t* process)
{
    if (const int failed = check_program(start.Path()); failed != 0)
        return failed;
    *process = _Fork();
    if (*process < 0)
        return errno;
    if (*process == 0)
        become_program_later(start);
    wait_until_stopped(*process);
    return 0;
}

static void wait_for_end(pid_t process)
{
    siginfo_t info = {};
    while (waitid(P_PID, process, &info, WEXITED) != 0 && errno == EINTR) {
    }
    // Where somebody else has waited for it, its status is lost.
    const bool exited = info.si_pid == 0 || info.si_code == CLD_EXITED;
    leave(process, exited ? info.si_status : B_INTERRUPTED, !exited);
}

static void* run_starter(void* argument)
{
    const std::unique_ptr<Start> start(static_cast<Start*>(argument));
    pid_t process = 0;
    int failed = gains_rights(start->Path()) ? kTracingRefused : start_traced(*start, &process);
    if (failed == kTracingRefused)
        failed = start_untraced(*start, &process);
    if (failed != 0) {
        start->result.set_value(-failed);
        return nullptr;
    }
    enter(process);
    start->result.set_value(process);
    wait_for_end(process);
    return nullptr;
}

// Hands `start` over to a thread of its own: 0, or the host's error number.
static int spawn_starter(std::unique_ptr<Start> start)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    // No handler of the program's is to run on that thread, nor in the child before its exec.
    sigset_t all, former;
    sigfillset(&all);
    sigdelset(&all, SIGTRAP);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    pthread_t handle;
    const int failed = pthread_create(&handle, &attributes, run_starter, start.get());
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    pthread_attr_destroy(&attributes);
    if (failed == 0)
        start.release();
    return failed;
}

static std::vector<char*> pointers(std::vector<std::string>& texts, size_t first, size_t count)
{
    std::vector<char*> list;
    for (size_t i = first; i < first + count; ++i)
        list.push_back(texts[i].data());
    list.push_back(nullptr);
    return list;
}

static std::unique_ptr<Start> make_start(int32 argc, const char** argv, const char** environment)
{
    auto start = std::make_unique<Start>();
    for (int32 i = 0; i < argc; ++i)
        start->texts.emplace_back(argv[i]);
    for (; environment != nullptr && *environment != nullptr; ++environment)
        start->texts.emplace_back(*environment);
    start->argv = pointers(start->texts, 0, argc);
    start->environment = pointers(start->texts, argc, start->texts.size() - argc);
    return start;
}

thread_id load_program(int32 argc, const char** argv, const char** environment, const char* folder)
{
    if (argc < 1 || argv == nullptr)
        return BPrivate::fail(EINVAL);
    for (int32 i = 0; i < argc; ++i) {
        if (argv[i] == nullptr)
            return BPrivate::fail(EINVAL);
    }
    if (environment == nullptr)
        environment = const_cast<const char**>(environ);
    std::future<int> result;
    try {
        std::unique_ptr<Start> start = make_start(argc, argv, environment);
        start->folder = folder != nullptr ? folder : "";
        result = start->result.get_future();
        if (spawn_starter(std::move(start)) != 0)
            return B_NO_MORE_THREADS;
    } catch (const std::exception&) {
        return BPrivate::fail(ENOMEM);
    }
    const int process = result.get();
    if (process > 0)
        return process;
    const int failed = -process;
    const status_t status = BPrivate::fail(failed);
    return failed == EAGAIN ? B_NO_MORE_TEAMS : status;
}

}  // namespace BPrivate

thread_id load_image(int32 argc, const char** argv, const char** environment)
{
    return BPrivate::load_program(argc, argv, environment, nullptr);
}
