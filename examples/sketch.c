/* A small paint program. A click puts the pen on the paper, another one lifts it; the colours are
   at the top, and a line of keys under them says what else there is. */

#include <plinth.h>

#include <math.h>
#include <stdio.h>
#include <string.h>

#include "tour.h"

enum {
    LEFT = 80,
    TOP = 80,
    WIDTH = 759,
    HEIGHT = 539,
    BAR = 58, /* height of the tool bar */
    SWATCH = 24,
    GAP = 6,
    KEY_BACKSPACE = 8,
    KEY_ESCAPE = 27
};

static const uint32_t PAPER = 0xFFFFFFFF;
static const uint32_t PANEL = 0xD8D8D8FF;
static const uint32_t BLACK = 0x000000FF;
static const uint32_t DARK = 0x606060FF;

static const uint32_t colors[] = {0x000000FF, 0x6B6B6BFF, 0xC62828FF, 0xEF7B1AFF, 0xF6C915FF,
                                  0x3C9D3CFF, 0x1F7FB8FF, 0x27408BFF, 0x7B3FA0FF, 0xFFFFFFFF};
enum { COLORS = sizeof colors / sizeof colors[0] };

static const char *const help = "1-0 colour   +/- pen   C circle   B box   Bksp clear";

/* All of it belongs to the window's thread once the handlers are set. */
static int32_t window;
static int32_t color_index;
static int32_t pen = 3;
static int32_t drawing;        /* the pen is on the paper */
static int32_t last_x, last_y; /* where the pointer was */
static int32_t line_height;
static int32_t width = WIDTH; /* of the window as it is */
static int32_t unsaved;       /* something is on the paper */
static int32_t asked_to_close;

/* Text with its baseline `y`, whatever the font. */
static void label(int32_t x, int32_t y, uint32_t color, const char *text)
{
    SetForeColor(window, color, PANEL);
    MoveTo(window, x, y - line_height);
    Text(window, text);
}

static void measure_text(void)
{
    int32_t pen_position[2];
    MoveTo(window, -1000, 0);
    Text(window, "x");
    GetCurrentPos(window, pen_position);
    line_height = pen_position[1];
}

static int32_t swatch_left(int32_t index) { return GAP + index * (SWATCH + GAP); }

static void draw_swatch(int32_t index)
{
    const int32_t x = swatch_left(index);
    SetPenWidth(window, 1);
    SetForeColor(window, index == color_index ? BLACK : PANEL, PANEL);
    Rectangle(window, x - 2, GAP - 2, SWATCH + 3, SWATCH + 3);
    SetForeColor(window, DARK, PANEL);
    Rectangle(window, x, GAP, SWATCH - 1, SWATCH - 1);
    SetForeColor(window, colors[index], PANEL);
    FRectangle(window, x + 1, GAP + 1, SWATCH - 3, SWATCH - 3);
}

static void draw_pen_sample(void)
{
    const int32_t x = swatch_left(COLORS) + 10;
    SetPenWidth(window, 1);
    SetForeColor(window, PAPER, PANEL);
    FRectangle(window, x, GAP, 44, SWATCH - 1);
    SetForeColor(window, DARK, PANEL);
    Rectangle(window, x, GAP, 44, SWATCH - 1);
    SetForeColor(window, colors[color_index], PANEL);
    FCircle(window, x + 22, GAP + SWATCH / 2, (pen + 1) / 2);
}

static void draw_status(void)
{
    const char *state = asked_to_close ? "Close again to leave the drawing, or go on"
                        : drawing      ? "Pen down: click to lift it"
                                       : "Click to put the pen down";
    SetForeColor(window, PANEL, PANEL);
    FRectangle(window, 0, GAP + SWATCH + 4, WIDTH, BAR - GAP - SWATCH - 7);
    label(GAP, BAR - 9, asked_to_close ? 0xB00000FF : BLACK, state);
    const int32_t right = (width < WIDTH ? width : WIDTH) - GAP - GetTextWidth(window, help);
    if (right > GAP + GetTextWidth(window, state) + 12)
        label(right, BAR - 9, DARK, help);
}

static void draw_bar(void)
{
    SetForeColor(window, PANEL, PANEL);
    FRectangle(window, 0, 0, WIDTH, BAR - 2);
    for (int32_t i = 0; i < COLORS; i++)
        draw_swatch(i);
    draw_pen_sample();
    draw_status();
    DrawSeparatorHoriz(window, 0, BAR - 2, WIDTH);
}

static void clear_paper(void)
{
    SetForeColor(window, PAPER, PANEL);
    FRectangle(window, 0, BAR, WIDTH, HEIGHT - BAR);
    unsaved = 0;
}

/* Drawing on the paper leaves the tool bar alone. */
static void begin_paper(void)
{
    SetRefreshWindowMode(window, 0);
    SetClipping(window, 0, BAR, WIDTH, HEIGHT - BAR);
    SetRefreshWindowMode(window, 1);
    SetForeColor(window, colors[color_index], PANEL);
    SetPenWidth(window, pen);
    SetLineMode(window, 0, 0);
}

static void end_paper(void)
{
    SetRefreshWindowMode(window, 0);
    SetClippingAll(window);
    SetRefreshWindowMode(window, 1);
    SetPenWidth(window, 1);
    unsaved = 1;
}

static void draw_dot(int32_t x, int32_t y)
{
    begin_paper();
    FCircle(window, x, y, pen / 2);
    end_paper();
}

static void choose_color(int32_t index)
{
    const int32_t before = color_index;
    color_index = index;
    draw_swatch(before);
    draw_swatch(index);
    draw_pen_sample();
}

static void choose_pen(int32_t size)
{
    pen = size < 1 ? 1 : size > 19 ? 19 : size;
    draw_pen_sample();
}

static void go_on(void)
{
    if (asked_to_close) {
        asked_to_close = 0;
        draw_status();
    }
}

/* --- handlers: the window's thread */

static void on_mouse_down(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    (void)clicks;
    go_on();
    if (y < BAR) {
        for (int32_t i = 0; i < COLORS; i++)
            if (x >= swatch_left(i) && x < swatch_left(i) + SWATCH)
                choose_color(i);
        return;
    }
    drawing = button == 1 ? !drawing : 0;
    last_x = x;
    last_y = y;
    if (drawing)
        draw_dot(x, y);
    draw_status();
}

static void on_mouse_moved(int32_t x, int32_t y)
{
    if (drawing) {
        begin_paper();
        Line(window, last_x, last_y, x, y);
        end_paper();
    }
    last_x = x;
    last_y = y;
}

static void draw_shape(int32_t key)
{
    begin_paper();
    if (key == 'c')
        Circle(window, last_x, last_y, 12 + 6 * pen);
    else
        Rectangle(window, last_x - 12 - 6 * pen, last_y - 8 - 4 * pen, 24 + 12 * pen, 16 + 8 * pen);
    end_paper();
}

static void on_key(int32_t key, int32_t modifiers)
{
    (void)modifiers;
    go_on();
    if (key >= '0' && key <= '9')
        choose_color(key == '0' ? COLORS - 1 : key - '1');
    else if (key == '+' || key == '=')
        choose_pen(pen + 2);
    else if (key == '-')
        choose_pen(pen - 2);
    else if (key == 'c' || key == 'b')
        draw_shape(key);
    else if (key == KEY_BACKSPACE)
        clear_paper();
    else if (key == KEY_ESCAPE)
        drawing = 0;
    draw_status();
}

static void on_resized(int32_t new_width, int32_t new_height)
{
    (void)new_height;
    width = new_width;
    draw_status();
}

static int32_t on_close(void)
{
    if (!unsaved || asked_to_close)
        return 1;
    asked_to_close = 1;
    drawing = 0;
    draw_status();
    return 0;
}

/* --- the visit */

static void draw_wave(int32_t top, double height, double turns)
{
    tour_click(40, top);
    for (int32_t x = 44; x <= 700; x += 4)
        tour_move(x, top + (int32_t)(height * sin((x - 40) / 660.0 * turns * 6.2832)));
    tour_click(700, top);
}

static void play_visit(void)
{
    tour_begin(LEFT, TOP);
    draw_wave(200, 60, 2);
    tour_type("3++");
    draw_wave(290, 70, 3);
    tour_click(swatch_left(6) + 8, GAP + 8);
    tour_type("++");
    draw_wave(380, 50, 1.5);
    for (int32_t i = 0; i < 5; i++) {
        tour_move(120 + 130 * i, 470);
        tour_type(i % 2 ? "5-c" : "6-b");
    }
    tour_move(200, 420);
    tour_close();
}

void ProgramMain(void)
{
    void **registry = Open_Sys(0);
    window = OpenWindow(LEFT, TOP, WIDTH, HEIGHT);
    if (registry == NULL || window == 0)
        return;
    SetWindowTitle(window, "Sketch");
    measure_text();
    clear_paper();
    draw_bar();
    SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, (void *)on_mouse_down);
    SetHandlerForWindow(window, PLINTH_MOUSE_MOVED, (void *)on_mouse_moved);
    SetHandlerForWindow(window, PLINTH_KEY, (void *)on_key);
    SetHandlerForWindow(window, PLINTH_RESIZED, (void *)on_resized);
    SetHandlerForWindow(window, PLINTH_CLOSE_REQUESTED, (void *)on_close);

    const char *picture = tour_picture();
    if (picture != NULL) {
        play_visit();
        if (tour_end(picture) != 0)
            fprintf(stderr, "sketch: can not write %s\n", picture);
        End();
    }
}
