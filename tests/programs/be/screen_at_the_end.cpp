// A process ends while its threads ask for the screen and open windows: nothing that they ask is
// taken from under them, and its status is its own.

#include <Application.h>
#include <Bitmap.h>
#include <Screen.h>
#include <Window.h>

#include <cassert>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

static const int kRuns = 10;

static status_t read_screen(void*)
{
    BBitmap picture(BRect(0, 0, 199, 149), B_RGB32);
    for (;;) {
        BRect frame(100, 100, 299, 249);
        BScreen screen;
        screen.ReadBitmap(&picture, false, &frame);
        assert(screen.Frame().IsValid());
    }
}

static status_t open_windows(void*)
{
    for (;;) {
        auto* window =
            new BWindow(BRect(100, 100, 200, 200), "", B_TITLED_WINDOW, B_QUIT_ON_WINDOW_CLOSE);
        window->Show();
        window->Lock();
        window->Quit();
    }
}

static int end_in_the_middle(int run)
{
    BApplication application("application/x-vnd.example-screen");
    for (thread_func work : {&read_screen, &read_screen, &open_windows})
        resume_thread(spawn_thread(work, "worker", B_NORMAL_PRIORITY, nullptr));
    snooze(1000 * run);
    exit(7);
}

int main()
{
    for (int run = 0; run < kRuns; run++) {
        const pid_t child = fork();
        if (child == 0)
            return end_in_the_middle(run);
        int status = 0;
        assert(child > 0 && waitpid(child, &status, 0) == child);
        assert(WIFEXITED(status) && WEXITSTATUS(status) == 7);
    }
    return 0;
}
