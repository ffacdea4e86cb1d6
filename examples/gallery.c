/* Every kind of gadget, live, in three windows: this one has sliders that set the size and the
   colours of all samples, a box that gadgets are moved into, pictures, a pop-up menu, and the log
   of all handler calls. */

#include <plinth.h>

#include <stdio.h>

#include "gallery.h"
#include "tour.h"

enum { LEFT = 20, TOP = 40, WIDTH = 379, HEIGHT = 659 };
enum { SMALLEST = 8, LARGEST = 36 };

static int32_t window, log_list, size_slider, colors[3], part_field, color_control;
static int32_t boxes[2], title_check, moved_button, disable_check, hide_check, tips_check;
static int32_t pictures[2], icons[2];

/* --- the log: handlers of any window */

void gallery_log(const char *gadget, const char *event, int32_t value)
{
    enum { MOST_LINES = 100 };
    char line[80];
    if (value == -1)
        snprintf(line, sizeof line, "%s %s", gadget, event);
    else
        snprintf(line, sizeof line, "%s %s %d", gadget, event, value);
    AddLvEntry(log_list, line);
    MoveItem(log_list, CountEntry(log_list) - 1, 0); /* the newest first */
    RemoveItem(log_list, MOST_LINES);
}

LOGGED(moved)
LOGGED(title)
LOGGED(picture)

/* --- sizes and colours */

/* A slider that is set in proportion tells a number that is none of its range. */
static void on_size(int32_t value)
{
    const int32_t most = LARGEST - SMALLEST;
    const int32_t points = SMALLEST + (value < 0 ? 0 : value > most ? most : value);
    gallery_log("size", "value", points);
    states_show(points);
}

static void show_color(int32_t red, int32_t green, int32_t blue)
{
    const uint32_t color = (uint32_t)ReturnIntFromRgb(red, green, blue) | 0xFF;
    const int32_t part = GetValue(part_field);
    states_color(part < 0 ? BARS : part, color);
}

static void on_color_slider(int32_t value)
{
    gallery_log("colour", "value", value);
    show_color(GetValue(colors[0]), GetValue(colors[1]), GetValue(colors[2]));
}

static void on_color_control(int32_t red, int32_t green, int32_t blue)
{
    gallery_log("control", "red", red);
    show_color(red, green, blue);
}

static void on_part(int32_t part) { gallery_log("part", "value", part); }

static void make_sliders(void)
{
    static const int32_t fills[] = {(int32_t)0xD03030FF, 0x30A040FF, 0x3060C0FF};
    static const char *const parts[] = {"Texts", "Ground", "Bars", NULL};
    size_slider = CreateGadget(PLINTH_SLIDER, window, 10, 8, 359, 54, "Size of the samples",
                               LARGEST - SMALLEST);
    SetHashCount(size_slider, LARGEST - SMALLEST + 1);
    SetHashType(size_slider, 2);
    SetLimitsLabel(size_slider, "8 points", "36 points");
    SetSliderPosition(size_slider, 10 - SMALLEST);
    SetHandlerForGadget(size_slider, PLINTH_GADGET_VALUE, (void *)on_size);
    for (int32_t i = 0; i < 3; i++) {
        colors[i] = CreateGadget(PLINTH_SLIDER, window, 10, 84 + 24 * i, 150, 20, NULL, 255);
        SetStyle(colors[i], 0);
        SetFillColor(colors[i], fills[i]);
        SetSliderPosition(colors[i], 96);
        SetHandlerForGadget(colors[i], PLINTH_GADGET_VALUE, (void *)on_color_slider);
    }
    part_field = CreateGadget(PLINTH_CHOICE_FIELD, window, 10, 162, 150, 24, parts, 0);
    SetDiviser(part_field, 0);
    MxSelected(part_field, BARS);
    SetHandlerForGadget(part_field, PLINTH_GADGET_VALUE, (void *)on_part);
    color_control = CreateGadget(PLINTH_COLOR_CONTROL, window, 168, 84, 0, 0, NULL, 0);
    SetLayout(color_control, 16);
    SetCellSize(color_control, 6);
    SetHandlerForGadget(color_control, PLINTH_GADGET_VALUE, (void *)on_color_control);
}

/* --- tool tips, on both pictures, on what sizes the samples, and on a box for all in it */

static void set_tips(void)
{
    SetTipsWindow(size_slider, "The size of the fonts of all samples");
    SetTipsWindow(part_field, "What the colours are for");
    SetTipsWindow(color_control, "The same colour, as numbers too");
    SetTipsWindow(boxes[0], "Pressed with the second button, what is in here has a menu");
    SetTipsWindow(pictures[0], "A button that is a picture");
    SetTipsWindow(pictures[1], "Another one");
    SetTipsWindow(icons[0], "A small icon, to be dragged out of here");
    SetTipsWindow(icons[1], "A large one");
}

static void on_tips(int32_t value)
{
    gallery_log("tips", "value", value);
    ToolTipsWindow(window, value != 0);
    if (value)
        set_tips();
}

/* --- the box, and what is moved */

static void on_left(void)
{
    gallery_log("left", "pressed", -1);
    BBoxAddGadget(boxes[0], moved_button);
}

static void on_right(void)
{
    gallery_log("right", "pressed", -1);
    BBoxAddGadget(boxes[1], moved_button);
}

static void on_disable(int32_t value)
{
    gallery_log("disable", "value", value);
    const int32_t all[] = {moved_button, part_field,  color_control, colors[0],  colors[1],
                           colors[2],    title_check, pictures[0],   pictures[1]};
    for (uint32_t i = 0; i < sizeof all / sizeof all[0]; i++)
        SetEnabled(all[i], !value);
}

static void on_hide(int32_t value)
{
    gallery_log("hide", "value", value);
    for (int32_t i = 0; i < 2; i++) {
        (value ? HideGadget : ShowGadget)(window, pictures[i]);
        (value ? HideGadget : ShowGadget)(window, icons[i]);
    }
}

static int32_t push(int32_t x, int32_t y, int32_t w, const char *label, void (*handler)(void))
{
    const int32_t ident = CreateGadget(PLINTH_BUTTON, window, x, y, w, 24, label, 0);
    SetHandlerForGadget(ident, PLINTH_GADGET_ACTION, (void *)handler);
    return ident;
}

static int32_t check(int32_t x, int32_t y, const char *label, void (*handler)(int32_t))
{
    const int32_t ident = CreateGadget(PLINTH_CHECK_BOX, window, x, y, 150, 18, label, 0);
    SetHandlerForGadget(ident, PLINTH_GADGET_VALUE, (void *)handler);
    return ident;
}

static void make_boxes(void)
{
    static const char *const pop_up[] = {"i*00000001To the left", "i*00000002To the right", "q",
                                         NULL};
    push(10, 200, 110, "To the left", on_left);
    push(130, 200, 110, "To the right", on_right);
    for (int32_t i = 0; i < 2; i++)
        boxes[i] = CreateGadget(PLINTH_BOX, window, 10 + 120 * i, 240, 110, 80, "Box", 0);
    title_check = CreateGadget(PLINTH_CHECK_BOX, window, 0, 0, 64, 18, "Title", 0);
    title_log(title_check);
    BBoxAddGadgetTitle(boxes[0], title_check);
    moved_button = CreateGadget(PLINTH_BUTTON, window, 14, 34, 80, 24, "Moved", 0);
    moved_log(moved_button);
    BBoxAddGadget(boxes[0], moved_button);
    AttachPopUpToGadget(moved_button, CreatePopUpMenu(pop_up));
    disable_check = check(250, 200, "Disable some", on_disable);
    hide_check = check(250, 218, "Hide pictures", on_hide);
    tips_check = check(250, 236, "Tool tips", on_tips);
    FocusOnClick(disable_check, 1);
}

static void on_menu(int32_t code)
{
    gallery_log("menu", "item", code);
    if (code == 1)
        on_left();
    else if (code == 2)
        on_right();
}

/* --- pictures */

static int32_t make_ball(int32_t side, uint32_t hue)
{
    const int32_t ball = CreateImage(side, side);
    for (int32_t i = 0; i < side / 2; i++) {
        const uint32_t light = (uint32_t)(80 + 170 * 2 * i / side);
        SetForeColor(ball,
                     (light * (hue >> 8) / 255) << 24 | (light * (hue & 255) / 255) << 8 | 255, 0);
        FCircle(ball, side / 2 - i / 3, side / 2 - i / 3, side / 2 - 1 - i);
    }
    return ball;
}

static void make_pictures(void)
{
    enum { SMALL_ICON = 31, LARGE_ICON = 32 };
    const int32_t red = make_ball(32, 0xFF40), blue = make_ball(32, 0x40FF);
    pictures[0] = CreateGadget(PLINTH_PICTURE_BUTTON, window, 250, 260, 32, 32, NULL, red);
    pictures[1] = CreateGadget(PLINTH_PICTURE_BUTTON, window, 294, 260, 32, 32, NULL, blue);
    for (int32_t i = 0; i < 2; i++)
        picture_log(pictures[i]);
    icons[0] = CreateGadget(SMALL_ICON, window, 250, 302, 0, 0, NULL, LoadIcon("/"));
    icons[1] = CreateGadget(LARGE_ICON, window, 294, 298, 0, 0, NULL, LoadIcon("/"));
    CloseIcon(red);
    CloseIcon(blue);
}

static void make_panel(void)
{
    window = OpenWindow(LEFT, TOP, WIDTH, HEIGHT);
    SetWindowTitle(window, "Gallery");
    log_list = CreateGadget(8, window, 10, 336, 359, 313, NULL, 0);
    make_sliders();
    make_boxes();
    make_pictures();
    SetChecked(tips_check, 1);
    SetHandlerForWindow(window, PLINTH_MENU_ITEM, (void *)on_menu);
}

/* A visit: another size, a colour, gadgets into the box, and a choice. */
static int32_t play(const char *picture)
{
    tour_begin(LEFT, TOP);
    tour_pause(100);
    tour_click(36, 30);   /* size */
    tour_click(100, 92);  /* red */
    tour_click(180, 210); /* To the right */
    tour_click(20, 250);  /* Title */
    tour_pause(100);
    tour_click(40, 170); /* the parts */
    tour_pause(200);
    tour_click(40, 150); /* Ground, above the one that was chosen */
    return tour_end(picture);
}

void gallery_open(void)
{
    make_panel();
    states_open(LEFT + WIDTH + 30, TOP);
    texts_open(LEFT + WIDTH + 30, 768 - 318);
}

void ProgramMain(void)
{
    const char *picture = tour_picture();
    Open_Sys(0);
    gallery_open();
    if (picture != NULL) {
        if (play(picture) != 0)
            fprintf(stderr, "gallery: cannot save %s\n", picture);
        End();
    }
}
