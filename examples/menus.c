/* A drawing that is changed by menus alone: a bar with submenus, marks, choices and shortcuts, and
   a menu that pops up at the secondary button. Items change other items, and themselves. */

#include <plinth.h>

#include <stdio.h>

#include "tour.h"

enum { LEFT = 80, TOP = 80, WIDTH = 479, HEIGHT = 339 };

enum { SMALL = 40, MIDDLE = 80, LARGE = 120 }; /* their labels begin with these */
enum { NEW = 101, CLOSE = 109 };
enum { CIRCLE = 201, SQUARE, CROSS };
enum { FILLED = 301, GRID, LOCKED, COUNTER };
enum { RED = 401, GREEN, BLUE };

/* The title of a menu stands for the code of its last item, so that each ends with one that nobody
   changes. */
static const char *const bar_lines[] = {
    "t*00000000Drawing",
    "iN00000101New",
    "-",
    "iW00000109Close",

    "t*00010000Shape",
    "i101100201Circle",
    "i200100202Square",
    "i300100203Cross",
    "-",
    "x*00010000Size",
    "e*00100040 pixels",
    "e*01100080 pixels",
    "s*00100120 pixels",
    "i*10000299Nothing else",

    "t*00000000Options",
    "iF00100301Filled",
    "iG01100302Grid",
    "-",
    "iL00100303Lock the shape",
    "i*00000304Choose me",
    "-",
    "i*10000399Never available",
    "q",
};

static const char *const pop_up_lines[] = {
    "i*00000401Red",
    "i*00000402Green",
    "i*00000403Blue",
    "q",
};

/* All of it belongs to the window's thread once the handlers are set. */
static int32_t window;
static int32_t shape = CIRCLE;
static int32_t size = MIDDLE;
static int32_t filled, grid = 1, locked, counter;
static uint32_t color = 0x1F7FB8FF;
static int32_t last_code;

static void draw_grid(void)
{
    SetForeColor(window, 0xDCE4ECFF, 0xFFFFFFFF);
    for (int32_t x = 0; x <= WIDTH; x += 20)
        Line(window, x, 0, x, HEIGHT);
    for (int32_t y = 0; y <= HEIGHT; y += 20)
        Line(window, 0, y, WIDTH, y);
}

static void draw_shape(void)
{
    const int32_t x = WIDTH / 2;
    const int32_t y = HEIGHT / 2 - 20;
    SetPenWidth(window, 3);
    SetForeColor(window, color, 0xFFFFFFFF);
    if (shape == CIRCLE)
        (filled ? FCircle : Circle)(window, x, y, size);
    else if (shape == SQUARE)
        (filled ? FRectangle : Rectangle)(window, x - size, y - size, 2 * size, 2 * size);
    if (shape == CROSS) {
        Line(window, x - size, y - size, x + size, y + size);
        Line(window, x - size, y + size, x + size, y - size);
    }
    SetPenWidth(window, 1);
}

static void draw(void)
{
    char text[80];
    SetRefreshWindowMode(window, 0);
    SetForeColor(window, 0xFFFFFFFF, 0xFFFFFFFF);
    FRectangle(window, 0, 0, WIDTH, HEIGHT);
    if (grid)
        draw_grid();
    draw_shape();
    SetForeColor(window, 0x404040FF, 0xFFFFFFFF);
    MoveTo(window, 10, HEIGHT - 60);
    snprintf(text, sizeof text, "Choice %d. The secondary button has the colours.", last_code);
    Text(window, text);
    SetRefreshWindowMode(window, 1);
}

/* Items that cannot be chosen any more are grey. */
static void lock_shape(void)
{
    locked = !locked;
    for (int32_t code = CIRCLE; code <= CROSS; code++)
        SetEnableLabel(window, code, locked);
}

static void count(void)
{
    char label[40];
    snprintf(label, sizeof label, "Chosen %d times", ++counter);
    SetNameLabel(window, COUNTER, label);
}

static void start_again(void)
{
    shape = CIRCLE;
    size = MIDDLE;
    SetCheckedLabel(window, CIRCLE, 1);
    SetCheckedLabel(window, MIDDLE, 1);
}

static void on_menu(int32_t code)
{
    static const uint32_t colors[] = {0xC62828FF, 0x3C9D3CFF, 0x1F7FB8FF};
    last_code = code;
    if (code == NEW)
        start_again();
    else if (code == CLOSE)
        CloseWindow(window);
    else if (code >= CIRCLE && code <= CROSS)
        shape = code;
    else if (code >= RED && code <= BLUE)
        color = colors[code - RED];
    else if (code == SMALL || code == MIDDLE || code == LARGE)
        size = code;
    else if (code == FILLED)
        filled = !filled;
    else if (code == GRID)
        grid = !grid;
    else if (code == LOCKED)
        lock_shape();
    else if (code == COUNTER)
        count();
    draw();
}

/* A visit: another shape, filled, and the options open for the picture. */
static int32_t play(const char *picture)
{
    tour_begin(LEFT, TOP);
    tour_type("\x1b");
    tour_click(100, 10); /* Shape */
    tour_pause(200);
    tour_click(130, 52); /* Square */
    tour_pause(200);
    tour_click(160, 10); /* Options */
    tour_pause(200);
    tour_click(180, 32); /* Filled */
    tour_pause(200);
    tour_click(100, 10);
    tour_pause(200);
    tour_move(120, 95); /* Size */
    tour_pause(400);
    return tour_end(picture);
}

void ProgramMain(void)
{
    const char *picture = tour_picture();
    int32_t status = 0;
    Open_Sys(0);
    window = OpenWindow(LEFT, TOP, WIDTH, HEIGHT);
    SetWindowTitle(window, "Menus");
    AttachMenuToWin(window, CreateMenu(bar_lines));
    AttachPopUpToWindow(window, CreatePopUpMenu(pop_up_lines));
    draw();
    SetHandlerForWindow(window, PLINTH_MENU_ITEM, (void *)on_menu);
    if (picture != NULL) {
        status = play(picture);
        if (status != 0)
            fprintf(stderr, "menus: cannot save %s\n", picture);
        End();
    }
}
