/* Every control in each of its states, in columns: off, on, and both disabled. All of it is killed
   and made again whenever the size of the font changes. */

#include <plinth.h>

#include <stdlib.h>

#include "gallery.h"

enum { COLUMNS = 4, ROWS = 10, MOST = COLUMNS * (ROWS + 2) };

static const char *const titles[COLUMNS] = {"Off", "On", "Disabled", "Disabled, on"};
static const char *const choices[] = {"One", "Two", "Three", NULL};

static int32_t window;
static int32_t samples[MOST], count;
static int32_t size = 10;
static uint32_t colors[] = {0x000000FF, 0xD8D8D8FF, 0x336698FF};
static int32_t font;

LOGGED(button)
LOGGED(check)
LOGGED(radio)
LOGGED(slider)
LOGGED(scroll)
LOGGED(choice)

/* What is as wide as `pixels` at 12 points. */
static int32_t scaled(int32_t pixels) { return (pixels * size + 6) / 12; }

static int32_t make(int32_t kind, int32_t column, int32_t y, int32_t width, int32_t height,
                    const void *text, int32_t value)
{
    const int32_t x = scaled(12) + column * scaled(138);
    const int32_t ident =
        CreateGadget(kind, window, x, y, scaled(width), scaled(height), text, value);
    HideGadget(window, ident); /* its style shows with the next redraw */
    SetFontGadget(ident, font);
    SetForeColorGadget(ident, (int32_t)colors[TEXTS], (int32_t)colors[GROUND]);
    SetGadget(window, ident);
    if (count < MOST)
        samples[count++] = ident;
    return ident;
}

static void buttons(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_BUTTON, column, y, 100, 24, "Button", 0);
    button_log(ident);
    if (column == 1)
        SetDefaultButton(window, ident);
    SetEnabled(ident, column < 2);
}

static void check_boxes(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_CHECK_BOX, column, y, 120, 18, "Check box", 0);
    SetChecked(ident, column % 2);
    check_log(ident);
    SetEnabled(ident, column < 2);
}

/* A group is one row short of its buttons, so that the last one belongs to the space below. */
static void radio_groups(int32_t column, int32_t y)
{
    static const char *const labels[] = {"Radio one", "Radio two", "", NULL};
    const int32_t ident = make(PLINTH_RADIO_GROUP, column, y, 120, 46, labels, 0);
    RadSelected(ident, column % 2 ? 0 : -1);
    ResizeGadget(ident, scaled(120), scaled(46));
    radio_log(ident);
    SetEnabled(ident, column < 2);
}

static void sliders(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_SLIDER, column, y, 120, 52, "Slider", 100);
    SetHashCount(ident, 11);
    SetHashType(ident, 2);
    SetLimitsLabel(ident, "low", "high");
    ResizeGadget(ident, scaled(120), scaled(58));
    SetStyle(ident, column % 2);
    SetSliderPosition(ident, 40);
    if (column % 2)
        SetFillColor(ident, (int32_t)colors[BARS]);
    slider_log(ident);
    SetEnabled(ident, column < 2);
}

static void upright_sliders(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_VERTICAL_SLIDER, column, y, 60, 100, "Up", 10);
    const int32_t bar =
        CreateGadget(PLINTH_VERTICAL_SCROLL_BAR, window, scaled(100) + column * scaled(138), y, 14,
                     scaled(100), NULL, 0);
    if (count < MOST)
        samples[count++] = bar;
    ResizeGadget(ident, scaled(60), scaled(100));
    SetHashCount(ident, 5);
    SetHashType(ident, 3);
    SetStyle(ident, column % 2);
    SetSliderPosition(ident, 7);
    if (column % 2)
        SetFillColor(ident, (int32_t)colors[BARS]);
    SetProportion(bar, 40);
    SetValue(bar, column % 2 ? 15 : 5);
    if (column >= 2)
        SetRange(bar, 0, 0);
    slider_log(ident);
    scroll_log(bar);
    SetEnabled(ident, column < 2);
}

static void scroll_bars(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_SCROLL_BAR, column, y, 120, 14, NULL, 0);
    SetProportion(ident, column % 2 ? 10 : 50);
    SetValue(ident, column % 2 ? 15 : 4);
    if (column >= 2)
        SetRange(ident, 0, 0);
    scroll_log(ident);
}

static void choice_fields(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_CHOICE_FIELD, column, y, 120, 24, choices, 0);
    if (column % 2)
        MxSelected(ident, 1);
    choice_log(ident);
    SetEnabled(ident, column < 2);
}

static void status_bars(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_STATUS_BAR, column, y, 120, 34, NULL, 0);
    SetStatusLabel(ident, "Status");
    SetStatusTrail(ident, column % 2 ? "done" : "half");
    SetStatusBarColor(ident, (int32_t)colors[BARS]);
    SetStatusBarHeight(ident, scaled(14));
    SetStatusValue(ident, column % 2 ? 100 : 45);
    SetEnabled(ident, column < 2);
}

static void labels(int32_t column, int32_t y)
{
    SetTextString(make(PLINTH_TEXT_LABEL, column, y, 70, 18, NULL, 0), "Label");
    SetNumberString(make(PLINTH_NUMBER_LABEL, column, y + scaled(18), 70, 18, NULL, 0), column);
}

static void boxes(int32_t column, int32_t y)
{
    const int32_t ident = make(PLINTH_BOX, column, y, 120, 40, column < 3 ? "Box" : NULL, 0);
    SetBorder(ident, column == 3 ? 1 : (column + 1) % 3);
}

/* One row of the picture, and how high it is at 12 points. */
static const struct {
    void (*make)(int32_t column, int32_t y);
    int32_t height;
} rows[ROWS] = {
    {buttons, 34},          {check_boxes, 24}, {radio_groups, 48},  {sliders, 64},
    {upright_sliders, 110}, {scroll_bars, 24}, {choice_fields, 32}, {status_bars, 44},
    {labels, 40},           {boxes, 46},
};

static void draw_titles(void)
{
    SetRefreshWindowMode(window, 0);
    SetForeColor(window, colors[GROUND], colors[GROUND]);
    FRectangle(window, 0, 0, 2000, 1500);
    SetForeColor(window, colors[TEXTS], colors[GROUND]);
    SetFontSize(window, size);
    for (int32_t column = 0; column < COLUMNS; column++) {
        MoveTo(window, scaled(12) + column * scaled(138), 0);
        Text(window, titles[column]);
    }
    SetRefreshWindowMode(window, 1);
}

void states_show(int32_t points)
{
    size = points;
    for (int32_t i = 0; i < count; i++)
        KillGadget(window, samples[i]);
    count = 0;
    CloseFont(font);
    font = OpenFont(NULL, NULL, size);
    ChangeWindow(window, scaled(564), scaled(496));
    draw_titles();
    for (int32_t column = 0; column < COLUMNS; column++) {
        int32_t y = scaled(24);
        for (int32_t row = 0; row < ROWS; row++) {
            rows[row].make(column, y);
            y += scaled(rows[row].height);
        }
    }
}

void states_color(int32_t part, uint32_t color)
{
    colors[part] = color;
    states_show(size);
}

void states_open(int32_t left, int32_t top)
{
    window = OpenWindow(left, top, 3 * 564, 3 * 496); /* its bitmap holds the largest size */
    SetWindowTitle(window, "States");
    states_show(size);
}
