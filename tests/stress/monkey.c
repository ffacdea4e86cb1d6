/* The gallery under a monkey's hands: clicks, drags, wheels, keys, what a person does to windows,
   and calls of the program's thread, by chance and at once. `monkey [SECONDS [SEED]]`. The hands
   are a thread of their own, which calls nothing of the library: it is what closes a menu that the
   program's thread waits for. */

#include "monkey.h"

#include <Injection.h>
#include <plinth.h>

#include <pthread.h>
#include <signal.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include "gallery.h"

enum { STEPS = 64, STEP_SIZE = 120, PATIENCE_SECONDS = 100, ROUND = 4000, MOST_GADGETS = 400 };

static char steps[STEPS][STEP_SIZE];
static _Atomic uint32_t step_count;
static uint32_t seed;

/* --- what happened last */

void monkey_note(const char* format, ...)
{
    static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER; /* the hands' thread has its say too */
    va_list words;
    va_start(words, format);
    pthread_mutex_lock(&lock);
    vsnprintf(steps[step_count++ % STEPS], STEP_SIZE, format, words);
    pthread_mutex_unlock(&lock);
    va_end(words);
}

static void write_line(const char* line)
{
    const ssize_t length = snprintf(NULL, 0, "%s\n", line);
    char text[STEP_SIZE + 2];
    snprintf(text, sizeof text, "%s\n", line);
    if (write(STDERR_FILENO, text, (size_t)length) < 0)
        _exit(2);
}

/* The monkey's end, if it hangs or something breaks. */
static void tell_steps(int number)
{
    char line[STEP_SIZE];
    const uint32_t end = step_count;
    signal(number, SIG_DFL);
    snprintf(line, sizeof line, "monkey: signal %d with seed %u after %u steps", number, seed, end);
    write_line(line);
    for (uint32_t step = end > STEPS ? end - STEPS : 0; step < end; step++)
        write_line(steps[step % STEPS]);
    if (number == SIGALRM)
        abort();
    raise(number);
}

/* --- chance */

static _Thread_local uint64_t row;

void monkey_seed(uint32_t first) { row = first * 2654435761u + 1; }

uint32_t monkey_number(uint32_t limit)
{
    if (row == 0)
        monkey_seed(seed);
    row ^= row << 13;
    row ^= row >> 7;
    row ^= row << 17;
    return (uint32_t)(row >> 32) % limit;
}

/* --- a person's hands */

/* Frames of windows, as they were lately: left, top, width and height, 16 bits each. */
enum { PLACES = 4 };
static _Atomic uint64_t places[PLACES];

static void look_at_windows(void)
{
    for (int i = 0; i < PLACES; i++) {
        const int32_t window = monkey_window();
        uint64_t place = 0;
        for (int32_t part = 0; part < 4; part++)
            place = place << 16 | (uint16_t)GetWindowPosition(window, part);
        places[i] = place;
    }
}

static void point_at(uint64_t place, float* x, float* y)
{
    const int32_t width = (int16_t)(place >> 16), height = (int16_t)place;
    *x = (float)((int16_t)(place >> 48) + (int32_t)monkey_number(width > 0 ? width : 900));
    *y = (float)((int16_t)(place >> 32) + (int32_t)monkey_number(height > 0 ? height : 700));
}

static void click(float x, float y)
{
    static const int32_t buttons[] = {1, 1, 1, 1, 2, 4};
    const int32_t button = buttons[monkey_number(6)];
    monkey_note("click %d at %d %d", button, (int)x, (int)y);
    inject_pointer(x, y);
    inject_button(button, true);
    inject_button(button, false);
}

static void drag(float x, float y)
{
    monkey_note("drag from %d %d", (int)x, (int)y);
    inject_pointer(x, y);
    inject_button(1, true);
    for (uint32_t i = monkey_number(6); i > 0; i--)
        inject_pointer(x + (float)monkey_number(80) - 40, y + (float)monkey_number(80) - 40);
    inject_button(1, false);
}

/* Modifier keys are held for one key; none that has the application quit. */
static void press_keys(void)
{
    static const int32_t useful[] = {0x47, 0x5e, 0x26, 0x57, 0x62, 0x61, 0x63,
                                     0x01, 0x1e, 0x34, 0x20, 0x35, 0x21, 0x36};
    static const int32_t shift = 0x4b;
    const int32_t key = monkey_number(3) != 0
                            ? useful[monkey_number(sizeof useful / sizeof useful[0])]
                            : 0x12 + (int32_t)monkey_number(0x14);
    const bool shifted = monkey_number(5) == 0;
    monkey_note("key %d", key);
    if (shifted)
        inject_key(shift, true);
    inject_key(key, true);
    inject_key(key, false);
    if (shifted)
        inject_key(shift, false);
}

static void drop_files(float x, float y)
{
    static const char* const paths[] = {"/tmp", "/usr/bin/env"};
    inject_file_drop(x, y, paths, (int32_t)monkey_number(3));
}

static void treat_window(float x, float y)
{
    monkey_note("window at %d %d", (int)x, (int)y);
    switch (monkey_number(7)) {
        case 0:
            inject_window_move(x, y, (float)monkey_number(500), (float)monkey_number(300));
            break;
        case 1:
            inject_window_resize(x, y, (float)monkey_number(600), (float)monkey_number(500));
            break;
        case 2:
            inject_window_minimize(x, y, true);
            inject_window_minimize(x, y, false);
            break;
        case 3:
            inject_window_zoom(x, y);
            break;
        case 4:
            if (monkey_number(10) == 0)
                inject_window_close(x, y);
            break;
        default:
            inject_window_activate(x, y);
    }
}

static void do_something(void)
{
    float x, y;
    point_at(places[monkey_number(PLACES)], &x, &y);
    switch (monkey_number(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
            click(x, y);
            break;
        case 4:
        case 5:
            drag(x, y);
            break;
        case 6:
        case 7:
            press_keys();
            break;
        case 8:
            monkey_note("wheel");
            inject_wheel(0, (float)monkey_number(5) - 2);
            break;
        case 9:
            if (monkey_number(10) == 0)
                treat_window(x, y);
            break;
        case 10:
            inject_pointer(x, y);
            break;
        default:
            drop_files(x, y);
    }
}

static _Atomic bool resting;

static void press_escape(void)
{
    inject_key(0x01, true);
    inject_key(0x01, false);
}

static void* work_hands(void* none)
{
    const struct timespec pause = {0, 1000000};
    monkey_seed(seed ^ 0xABCD);
    for (uint32_t i = 0; !resting; i++) {
        do_something();
        if (i % 30 == 0)
            press_escape(); /* closes menus */
        if (i % 4 == 0)
            nanosleep(&pause, NULL);
    }
    press_escape();
    return none;
}

/* --- rounds */

static int32_t keep_open(void) { return 0; }

static void close_all(int32_t first)
{
    const int32_t end = (int32_t)GetUniqueID();
    for (int32_t ident = first; ident < end; ident++) {
        if (is_window_ident(ident))
            alarm(PATIENCE_SECONDS); /* it waits for the handler that is called there */
        CloseWindow(ident);
    }
    monkey_kill_all();
}

/* A gallery that nobody has touched yet, and some thousand calls. */
static void play_round(time_t end)
{
    const int32_t first = (int32_t)GetUniqueID();
    monkey_keep_below(first);
    gallery_open();
    for (int32_t i = 0; i < ROUND && time(NULL) < end; i++) {
        monkey_call();
        if (i % 100 == 0) {
            alarm(PATIENCE_SECONDS);
            look_at_windows();
            if (monkey_count() > MOST_GADGETS)
                break;
        }
    }
    monkey_note("close all");
    close_all(first);
}

static uint32_t argument(int32_t index, const char* variable, uint32_t otherwise)
{
    const char* text = __GetCommand(index);
    if (text[0] == '\0')
        text = getenv(variable);
    return text != NULL ? (uint32_t)strtoul(text, NULL, 10) : otherwise;
}

void ProgramMain(void)
{
    Open_Sys(0);
    const int32_t keeper = OpenWindow(900, 700, 50, 30); /* the program goes on while it is open */
    SetHandlerForWindow(keeper, PLINTH_CLOSE_REQUESTED, (void*)keep_open);
    seed = argument(2, "PLINTH_MONKEY_SEED", 1);
    monkey_seed(seed);
    static const int signals[] = {SIGSEGV, SIGBUS, SIGABRT, SIGALRM};
    for (uint32_t i = 0; i < sizeof signals / sizeof signals[0]; i++)
        signal(signals[i], tell_steps);
    alarm(PATIENCE_SECONDS);
    const time_t end = time(NULL) + (time_t)argument(1, "PLINTH_MONKEY_SECONDS", 2);
    pthread_t hands;
    if (pthread_create(&hands, NULL, work_hands, NULL) != 0)
        abort();
    int32_t rounds = 0;
    for (; time(NULL) < end; rounds++)
        play_round(end);
    resting = true;
    pthread_join(hands, NULL);
    printf("monkey: seed %u, %d rounds, %u steps\n", seed, rounds, step_count);
    End();
}
