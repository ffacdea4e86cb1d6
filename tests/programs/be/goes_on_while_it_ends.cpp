// Threads go on while another takes the process down: what they use of the kits stays to the end,
// and the status is the program's own.

#include <Application.h>
#include <Clipboard.h>
#include <Injection.h>

#include <atomic>
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

static const int kPasses = 20;  // behind the end
static const bigtime_t kPatience_us = 60000000;
static const int kStatus = 7;

static std::atomic<int> sPasses{0};
static bool sHasWorker = false;

static void take_part()
{
    BApplication application("application/x-vnd.example-that-goes-on-while-others-end");
}

static void paste()
{
    static auto* application = new BApplication("application/x-vnd.example-that-pastes");
    assert(application->InitCheck() == B_OK);
    BClipboard clipboard("system");
    assert(clipboard.Lock());
    clipboard.Data();
    clipboard.Unlock();
}

// The end comes while the first picture is taken.
static void take_picture()
{
    sPasses++;
    inject_save_screen("/dev/null");
}

// Freed memory is handed out to others before long.
static std::vector<std::vector<char>> take_what_was_freed()
{
    std::vector<std::vector<char>> blocks;
    for (int i = 0; i < 20; i++) {
        for (size_t size = 24; size <= 1024; size += 16)
            blocks.emplace_back(size, '\x5a');
    }
    return blocks;
}

// Runs behind everything that was to be taken down.
static void go_on()
{
    if (!sHasWorker)
        return;
    const std::vector<std::vector<char>> blocks = take_what_was_freed();
    const int before = sPasses;
    const bigtime_t deadline = system_time() + kPatience_us;
    while (sPasses < before + kPasses && system_time() < deadline)
        snooze(1000);
    if (sPasses < before + kPasses)
        _exit(1);
    for (const std::vector<char>& block : blocks) {
        if (block != std::vector<char>(block.size(), '\x5a'))
            _exit(2);
    }
}

// Before the libraries are made ready, so that what they register runs before.
static void register_first() { atexit(go_on); }
[[gnu::section(".preinit_array"), gnu::used]] static void (*sRegisterFirst)() = register_first;

static status_t work_for_ever(void* work)
{
    for (;;) {
        reinterpret_cast<void (*)()>(work)();
        sPasses++;
    }
}

struct Way {
    void (*work)();
    int passes;  // before the end
    int runs;
    bigtime_t later_us;  // each run ends later than the one before
};

static int end_in_the_middle(const Way& way, int run)
{
    sHasWorker = true;
    resume_thread(spawn_thread(work_for_ever, "worker", B_NORMAL_PRIORITY,
                               reinterpret_cast<void*>(way.work)));
    while (sPasses < way.passes)
        snooze(100);
    snooze(run * way.later_us);
    exit(kStatus);
}

int main()
{
    for (const Way& way :
         {Way{take_part, 20, 15, 0}, Way{paste, 20, 5, 0}, Way{take_picture, 1, 20, 2000}}) {
        for (int run = 0; run < way.runs; run++) {
            const pid_t child = fork();
            if (child == 0)
                return end_in_the_middle(way, run);
            int status = 0;
            assert(child > 0 && waitpid(child, &status, 0) == child);
            assert(WIFEXITED(status) && WEXITSTATUS(status) == kStatus);
        }
    }
    return 0;
}
