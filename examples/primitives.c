/* Every drawing call in a labelled grid, and pages of fonts and images. A click on its name shows
   a page. */

#include <plinth.h>

#include <stdio.h>

#include "pages.h"
#include "tour.h"

enum { COLUMNS = 8, CELL_W = 112, CELL_H = 92, MARGIN = 8, LEFT = 20, TOP = 50 };
enum { TAB_W = 90, TAB_H = 22 };

static const uint32_t PANEL = 0xD8D8D8FF;
static const uint32_t WHITE = 0xFFFFFFFF;
static const uint32_t BLACK = 0x000000FF;
static const uint32_t GREY = 0x909090FF;
static const uint32_t BLUE = 0x336698FF;
static const uint32_t ORANGE = 0xE88A1AFF;
static const uint32_t GREEN = 0x3C9D3CFF;

static int32_t window;
static int32_t line_height;

/* Cells are drawn in their own coordinates: (x, y) is the left top, 96 x 64 pixels are free. */

static void frectangle(int32_t x, int32_t y) { FRectangle(window, x + 8, y + 8, 80, 48); }
static void rectangle(int32_t x, int32_t y) { Rectangle(window, x + 8, y + 8, 80, 48); }
static void round_rectangle(int32_t x, int32_t y)
{
    SetStrokeRectangle(window, x + 8, y + 8, 80, 48, 16, 16);
}
static void round_fill(int32_t x, int32_t y)
{
    SetStrokeFill(window, x + 8, y + 8, 80, 48, 16, 16);
}
static void ellipse(int32_t x, int32_t y) { Ellipse(window, x + 48, y + 32, 40, 24); }
static void fellipse(int32_t x, int32_t y) { FEllipse(window, x + 48, y + 32, 40, 24); }
static void circle(int32_t x, int32_t y) { Circle(window, x + 48, y + 32, 26); }
static void fcircle(int32_t x, int32_t y) { FCircle(window, x + 48, y + 32, 26); }
static void arc(int32_t x, int32_t y) { Arc(window, x + 48, y + 32, 40, 26, 30, 240); }
static void farc(int32_t x, int32_t y) { FArc(window, x + 48, y + 32, 40, 26, 30, 240); }
static void triangle(int32_t x, int32_t y)
{
    Triangle(window, x + 48, y + 6, x + 88, y + 58, x + 8, y + 58);
}
static void ftriangle(int32_t x, int32_t y)
{
    FTriangle(window, x + 48, y + 6, x + 88, y + 58, x + 8, y + 58);
}

static void line(int32_t x, int32_t y)
{
    for (int32_t i = 0; i <= 80; i += 10)
        Line(window, x + 8, y + 58, x + 8 + i, y + 6);
}

static void line_to(int32_t x, int32_t y)
{
    MoveTo(window, x + 8, y + 56);
    for (int32_t i = 1; i <= 8; i++)
        LineTo(window, x + 8 + i * 10, y + (i % 2 ? 8 : 56));
}

static void current_pos(int32_t x, int32_t y)
{
    int32_t xy[2];
    char text[32];
    MoveTo(window, x + 20, y + 24);
    GetCurrentPos(window, xy);
    snprintf(text, sizeof text, "%d, %d", (int)xy[0] - (int)x, (int)xy[1] - (int)y);
    FCircle(window, xy[0], xy[1], 2);
    MoveTo(window, x + 26, y + 22);
    Text(window, text);
}

static void text(int32_t x, int32_t y)
{
    MoveTo(window, x + 8, y + 4);
    Text(window, "Hello world");
    Text(window, "next line");
    Text(window,
         "Gr\xc3\xbc\xc3\x9f"
         "e, \xc3\xa9t\xc3\xa9");
}

static void text_width(int32_t x, int32_t y)
{
    const char *word = "measured";
    const int32_t width = GetTextWidth(window, word);
    MoveTo(window, x + 12, y + 14);
    Text(window, word);
    Line(window, x + 12, y + 40, x + 12 + width, y + 40);
    Line(window, x + 12, y + 36, x + 12, y + 44);
    Line(window, x + 12 + width, y + 36, x + 12 + width, y + 44);
}

static void write_pixel(int32_t x, int32_t y)
{
    for (int32_t i = 0; i < 80; i++)
        for (int32_t j = 0; j < 48; j++) {
            SetForeColor(window, (uint32_t)(i * 3) << 24 | (uint32_t)(j * 5) << 16 | 0x80FF, PANEL);
            WritePixel(window, x + 8 + i, y + 8 + j);
        }
}

static void get_pixel(int32_t x, int32_t y)
{
    char number[16];
    WritePixel(window, x + 12, y + 32);
    snprintf(number, sizeof number, "colour %d", (int)GetPixel(window, x + 12, y + 32));
    FRectangle(window, x + 8, y + 28, 8, 8);
    MoveTo(window, x + 24, y + 22);
    Text(window, number);
}

static void pen_width(int32_t x, int32_t y)
{
    for (int32_t width = 1, i = 0; width <= 9; width += 2, i++) {
        SetPenWidth(window, width);
        Line(window, x + 14, y + 8 + i * 12, x + 82, y + 8 + i * 12);
    }
}

static void line_mode(int32_t x, int32_t y)
{
    static const int32_t joins[] = {0, 1, 2}; /* round, mitre, bevel */
    SetPenWidth(window, 7);
    for (int32_t i = 0; i < 3; i++) {
        const int16_t bend[] = {(int16_t)(x + 10 + i * 30), (int16_t)(y + 54),
                                (int16_t)(x + 19 + i * 30), (int16_t)(y + 26),
                                (int16_t)(x + 28 + i * 30), (int16_t)(y + 54)};
        SetLineMode(window, joins[i] == 0 ? 0 : 1, joins[i]);
        StrokePolygon(window, 3, bend, 0);
    }
}

static void draw_mode(int32_t x, int32_t y)
{
    SetForeColor(window, ORANGE, PANEL);
    FRectangle(window, x + 8, y + 20, 80, 24);
    for (int32_t mode = 0, i = 0; i < 5; i++) {
        static const int32_t modes[] = {0, 3, 4, 5, 6}; /* copy, invert, add, subtract, blend */
        mode = modes[i];
        SetDrawMode(window, mode);
        SetForeColor(window, BLUE, PANEL);
        FRectangle(window, x + 10 + i * 16, y + 10, 10, 44);
    }
}

static void alpha_mode(int32_t x, int32_t y)
{
    SetForeColor(window, ORANGE, PANEL);
    FCircle(window, x + 34, y + 32, 24);
    SetDrawMode(window, 10);
    SetAlphaMode(window, 0, 0);
    SetForeColor(window, 0x33669880, PANEL);
    FCircle(window, x + 62, y + 32, 24);
}

static void clipping(int32_t x, int32_t y)
{
    SetClipping(window, x + 20, y + 16, 56, 32);
    FCircle(window, x + 48, y + 32, 40);
    SetForeColor(window, WHITE, PANEL);
    FCircle(window, x + 48, y + 32, 12);
    DrawAcces(window, 0);
}

static void blit(int32_t x, int32_t y)
{
    FCircle(window, x + 24, y + 18, 14);
    SetForeColor(window, ORANGE, PANEL);
    FRectangle(window, x + 20, y + 14, 8, 8);
    Blit(window, x + 8, y + 2, 32, 32, x + 54, y + 2);
    Blit(window, x + 8, y + 2, 32, 32, x + 31, y + 30);
}

static void separators(int32_t x, int32_t y)
{
    SetForeColor(window, PANEL, PANEL);
    FRectangle(window, x, y, 96, 64);
    DrawSeparatorHoriz(window, x + 8, y + 14, 80);
    DrawSeparatorHoriz(window, x + 8, y + 50, 80);
    DrawSeparatorVert(window, x + 32, y + 18, 28);
    DrawSeparatorVert(window, x + 64, y + 18, 28);
}

static void star(int16_t *points, int32_t x, int32_t y)
{
    static const int8_t shape[] = {0, -28, 7,   -9, 27,  -9, 11,  4,  17, 24,
                                   0, 12,  -17, 24, -11, 4,  -27, -9, -7, -9};
    for (int32_t i = 0; i < 20; i += 2) {
        points[i] = (int16_t)(x + 48 + shape[i]);
        points[i + 1] = (int16_t)(y + 34 + shape[i + 1]);
    }
}

static void fill_polygon(int32_t x, int32_t y)
{
    int16_t points[20];
    star(points, x, y);
    FillPolygon(window, 10, points);
}

static void stroke_polygon(int32_t x, int32_t y)
{
    int16_t points[20];
    star(points, x, y);
    StrokePolygon(window, 10, points, 1);
}

static void poly_draw(int32_t x, int32_t y)
{
    int16_t points[2 * 41];
    for (int32_t i = 0; i <= 40; i++) {
        points[2 * i] = (int16_t)(x + 8 + 2 * i);
        points[2 * i + 1] = (int16_t)(y + 32 + (i % 8 < 4 ? 20 - 4 * (i % 4) : 4 * (i % 4) - 20));
    }
    PolyDraw(window, 41, points);
}

static void curve(int16_t *points, int32_t x, int32_t y)
{
    const int16_t p[] = {8, 56, 30, -30, 66, 96, 88, 8};
    for (int32_t i = 0; i < 8; i += 2) {
        points[i] = (int16_t)(x + p[i]);
        points[i + 1] = (int16_t)(y + p[i + 1]);
    }
}

static void fill_bezier(int32_t x, int32_t y)
{
    int16_t points[8];
    curve(points, x, y);
    FillBezier(window, points);
}

static void stroke_bezier(int32_t x, int32_t y)
{
    int16_t points[8];
    curve(points, x, y);
    StrokeBezier(window, points);
}

static const struct {
    const char *name;
    void (*draw)(int32_t x, int32_t y);
} cells[] = {
    {"FRectangle", frectangle},
    {"Rectangle", rectangle},
    {"SetStrokeRectangle", round_rectangle},
    {"SetStrokeFill", round_fill},
    {"Ellipse", ellipse},
    {"FEllipse", fellipse},
    {"Circle", circle},
    {"FCircle", fcircle},
    {"Arc", arc},
    {"FArc", farc},
    {"Triangle", triangle},
    {"FTriangle", ftriangle},
    {"Line", line},
    {"MoveTo, LineTo", line_to},
    {"GetCurrentPos", current_pos},
    {"Text", text},
    {"GetTextWidth", text_width},
    {"WritePixel", write_pixel},
    {"GetPixel", get_pixel},
    {"SetPenWidth", pen_width},
    {"SetLineMode", line_mode},
    {"SetDrawMode", draw_mode},
    {"SetAlphaMode", alpha_mode},
    {"SetClipping", clipping},
    {"Blit", blit},
    {"DrawSeparator...", separators},
    {"FillPolygon", fill_polygon},
    {"StrokePolygon", stroke_polygon},
    {"PolyDraw", poly_draw},
    {"FillBezier", fill_bezier},
    {"StrokeBezier", stroke_bezier},
};
enum { CELLS = sizeof cells / sizeof cells[0], ROWS = (CELLS + COLUMNS - 1) / COLUMNS };

static void draw_cell(int32_t index)
{
    const int32_t x = MARGIN + index % COLUMNS * CELL_W;
    const int32_t y = TAB_H + MARGIN + index / COLUMNS * CELL_H;
    SetForeColor(window, WHITE, WHITE);
    FRectangle(window, x, y, 96, 64);
    SetForeColor(window, GREY, WHITE);
    Rectangle(window, x - 1, y - 1, 98, 66);
    SetForeColor(window, index % 3 == 0 ? BLUE : index % 3 == 1 ? GREEN : ORANGE, WHITE);
    cells[index].draw(x, y);
    SetDrawMode(window, 0);
    SetPenWidth(window, 1);
    SetLineMode(window, 1, 1);
    SetForeColor(window, BLACK, PANEL);
    MoveTo(window, x + (97 - GetTextWidth(window, cells[index].name)) / 2, y + 79 - line_height);
    Text(window, cells[index].name);
}

static void draw_shapes(int32_t target, int32_t left, int32_t top)
{
    int32_t pen[2];
    (void)left;
    (void)top;
    MoveTo(target, -1000, 0);
    Text(target, "x");
    GetCurrentPos(target, pen);
    line_height = pen[1];
    for (int32_t i = 0; i < CELLS; i++)
        draw_cell(i);
}

static const struct {
    const char *name;
    void (*draw)(int32_t target, int32_t left, int32_t top);
} pages[] = {
    {"Shapes", draw_shapes},
    {"Fonts", draw_fonts_page},
    {"Images", draw_images_page},
};
enum { PAGES = sizeof pages / sizeof pages[0] };

static void draw_tab(int32_t index, int32_t is_shown)
{
    const int32_t x = MARGIN + index * TAB_W;
    SetForeColor(window, is_shown ? WHITE : PANEL, PANEL);
    FRectangle(window, x, 2, TAB_W - 8, TAB_H - 4);
    SetForeColor(window, GREY, PANEL);
    Rectangle(window, x, 2, TAB_W - 8, TAB_H - 4);
    SetForeColor(window, BLACK, PANEL);
    MoveTo(window, x + (TAB_W - 7 - GetTextWidth(window, pages[index].name)) / 2, 0);
    Text(window, pages[index].name);
}

static _Atomic int32_t page_shown = -1;

static void show_page(int32_t index)
{
    SetRefreshWindowMode(window, 0);
    Clear(window);
    for (int32_t i = 0; i < PAGES; i++)
        draw_tab(i, i == index);
    pages[index].draw(window, MARGIN, TAB_H + MARGIN);
    SetRefreshWindowMode(window, 1);
    page_shown = index;
}

static void pressed(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    (void)button;
    (void)clicks;
    const int32_t index = (x - MARGIN) / TAB_W;
    if (y < TAB_H && x >= MARGIN && index < PAGES)
        show_page(index);
}

void ProgramMain(void)
{
    Open_Sys(0);
    window = OpenWindow(LEFT, TOP, 2 * MARGIN + COLUMNS * CELL_W - 15,
                        TAB_H + 2 * MARGIN + ROWS * CELL_H - 9);
    if (window == 0)
        return;
    SetWindowTitle(window, "Primitives");
    SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, (void *)pressed);
    SetBackColor(window, PANEL);
    show_page(0);

    const char *picture = tour_picture();
    if (picture != NULL) {
        tour_begin(LEFT, TOP);
        /* A further word of the command line is the number of the page. */
        const int32_t number = (int32_t)Val(__GetCommand(3));
        const int32_t page = number > 0 && number < PAGES ? number : 0;
        tour_click(MARGIN + page * TAB_W + 10, 10);
        tour_wait(&page_shown, page);
        tour_move(200, 200);
        if (tour_end(picture) != 0)
            fprintf(stderr, "primitives: can not write %s\n", picture);
        End();
    }
}
