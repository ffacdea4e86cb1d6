#define _POSIX_C_SOURCE 200809L

#include "tour.h"

#include <plinth.h>

#include <string.h>
#include <time.h>

#include <Injection.h>

static int32_t origin_x, origin_y;

static void pause_ms(long ms)
{
    struct timespec time = {ms / 1000, ms % 1000 * 1000000};
    nanosleep(&time, NULL);
}

const char *tour_picture(void)
{
    return strcmp(__GetCommand(1), "--tour") == 0 ? __GetCommand(2) : NULL;
}

void tour_begin(int32_t left, int32_t top)
{
    origin_x = left;
    origin_y = top;
    pause_ms(100);
}

void tour_move(int32_t x, int32_t y)
{
    inject_pointer((float)(origin_x + x), (float)(origin_y + y));
    pause_ms(4);
}

void tour_click(int32_t x, int32_t y)
{
    tour_move(x, y);
    inject_button(1, true);
    pause_ms(4);
    inject_button(1, false);
    pause_ms(4);
}

void tour_type(const char *text)
{
    inject_text(text);
    pause_ms(20);
}

void tour_pause(int32_t ms) { pause_ms(ms); }

void tour_close(void)
{
    inject_window_close((float)(origin_x + 10), (float)(origin_y + 10));
    pause_ms(50);
}

void tour_wait(const _Atomic int32_t *word, int32_t value)
{
    for (int32_t i = 0; i < 2500 && *word != value; i++)
        pause_ms(4);
}

int32_t tour_end(const char *picture)
{
    pause_ms(200);
    return inject_save_screen(picture);
}
