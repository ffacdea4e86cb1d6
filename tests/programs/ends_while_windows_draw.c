/* The program ends while the handlers of three windows draw into one another's without end. One
   that goes on for ever keeps its window from those who want it, but never all are kept. */

#include <plinth.h>
#include <stdatomic.h>
#include <unistd.h>

enum { kWindows = 3, kRounds = 50 };

static int32_t windows[kWindows];
static atomic_int inside, drawn;

static void draw_into(int32_t own, int32_t other)
{
    inside++;
    while (inside < kWindows)
        usleep(100);
    for (int round = 0;; round++) {
        FRectangle(other, 0, 0, 20, 20);
        FRectangle(own, 30, 30, 10, 10);
        drawn += round == kRounds;
    }
}

static void draw_0(void) { draw_into(windows[0], windows[1]); }
static void draw_1(void) { draw_into(windows[1], windows[2]); }
static void draw_2(void) { draw_into(windows[2], windows[0]); }

void ProgramMain(void)
{
    Open_Sys(0);
    void (*const handlers[kWindows])(void) = {draw_0, draw_1, draw_2};
    for (int i = 0; i < kWindows; i++)
        windows[i] = OpenWindow(100 + 250 * i, 100, 200, 150);
    for (int i = 0; i < kWindows; i++) {
        SetHandlerForWindow(windows[i], PLINTH_REDRAWN, (void*)handlers[i]);
        FRectangle(windows[i], 0, 0, 5, 5);
    }
    while (inside < kWindows || drawn == 0)
        usleep(1000);
    End();
}
