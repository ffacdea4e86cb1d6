/* Fonts: installed families, kinds, faces, sizes, shear, spacing and rotation. */

#include <plinth.h>

#include <stdio.h>

#include "pages.h"

enum {
    ITALIC = 0x04,
    BOLD = 0x02,
    STRUCK = 0x08,
    UNDERLINED = 0x10,
    NEGATIVE = 0x20,
    OUTLINED = 0x40
};

static const uint32_t PANEL = 0xD8D8D8FF;
static const uint32_t WHITE = 0xFFFFFFFF;
static const uint32_t BLACK = 0x000000FF;
static const uint32_t GREY = 0x909090FF;
static const uint32_t BLUE = 0x336698FF;

/* The window's font as every part of the page begins. */
static void plain_font(int32_t target)
{
    SetFontType(target, 0);
    SetForeColor(target, BLACK, PANEL);
}

/* Text goes a line below the pen: fonts of all heights get one baseline. */
static void write_at(int32_t target, int32_t x, int32_t baseline, const char *text)
{
    int32_t pen[2] = {0, 0};
    MoveTo(target, -1000, -1000);
    Text(target, "x");
    GetCurrentPos(target, pen);
    MoveTo(target, x, baseline - (pen[1] + 1000));
    Text(target, text);
}

/* A white field with its name above. */
static void field(int32_t target, int32_t x, int32_t y, int32_t w, int32_t h, const char *name)
{
    plain_font(target);
    write_at(target, x, y + 13, name);
    SetForeColor(target, WHITE, WHITE);
    FRectangle(target, x, y + 18, w, h - 18);
    SetForeColor(target, GREY, WHITE);
    Rectangle(target, x, y + 18, w, h - 18);
    SetForeColor(target, BLACK, WHITE);
}

/* Each family is written in itself; where there are many, every so many of them. */
static void families(int32_t target, int32_t x, int32_t y)
{
    enum { LINES = 15 };
    const int32_t count = CountFontList();
    const int32_t step = count > LINES ? count / LINES : 1;
    char name[80], line[160];
    snprintf(line, sizeof line, "GetFontNameList: %d families", (int)count);
    field(target, x, y, 250, 362, line);
    for (int32_t i = 0; i < LINES && i * step < count; i++) {
        snprintf(name, sizeof name, "%s", GetFontNameList(i * step));
        plain_font(target);
        SetForeColor(target, BLACK, WHITE);
        SetClipping(target, x + 1, y + 19, 248, 342);
        SetFontName(target, name);
        SetFontSize(target, 14);
        write_at(target, x + 8, y + 39 + i * 22, name);
        DrawAcces(target, 0);
    }
}

static void faces(int32_t target, int32_t x, int32_t y)
{
    static const struct {
        const char *name;
        int32_t kind, face;
    } rows[] = {
        {"plain", 0, 0},
        {"bold", 1, 0},
        {"fixed width", 2, 0},
        {"italic", 0, ITALIC},
        {"bold and italic", 0, BOLD | ITALIC},
        {"fixed and bold", 2, BOLD},
        {"struck out", 0, STRUCK},
        {"underlined", 0, UNDERLINED},
        {"negative", 0, NEGATIVE},
        {"outlined", 0, OUTLINED},
        {"outlined and bold", 0, OUTLINED | BOLD},
    };
    field(target, x, y, 190, 362, "SetFontType, SetFontAttribut");
    for (int32_t i = 0; i < (int32_t)(sizeof rows / sizeof rows[0]); i++) {
        SetFontType(target, rows[i].kind);
        SetFontAttribut(target, rows[i].face);
        SetFontSize(target, 18);
        write_at(target, x + 10, y + 46 + i * 30, rows[i].name);
    }
}

static void sizes(int32_t target, int32_t x, int32_t y)
{
    static const int32_t sizes[] = {9, 12, 18, 24, 36};
    int32_t at = x + 8;
    field(target, x, y, 200, 84, "SetFontSize, FontLeasing");
    for (int32_t i = 0; i < 5; i++) {
        SetFontSize(target, sizes[i]);
        write_at(target, at, y + 52, "Ag");
        at += GetTextWidth(target, "Ag") + 6;
    }
    FontLeasing(target, 0);
    SetFontSize(target, 14);
    write_at(target, x + 8, y + 78, "without smooth edges");
}

static void shears(int32_t target, int32_t x, int32_t y)
{
    field(target, x, y, 200, 58, "SetShear");
    SetFontSize(target, 20);
    for (int32_t i = 0; i < 5; i++) {
        SetShear(target, 130 - i * 20);
        write_at(target, x + 14 + i * 36, y + 45, "Hg");
    }
}

static void spacings(int32_t target, int32_t x, int32_t y)
{
    static const char *const names[] = {"0 exact widths", "1 whole places", "2 whole widths",
                                        "3 fixed widths"};
    field(target, x, y, 200, 118, "SetSpacing");
    SetFontSize(target, 13);
    for (int32_t i = 0; i < 4; i++) {
        SetSpacing(target, i);
        write_at(target, x + 8, y + 38 + i * 23, names[i]);
    }
}

static void rotations(int32_t target, int32_t x, int32_t y)
{
    field(target, x, y, 205, 362, "SetRotation");
    SetFontSize(target, 15);
    SetForeColor(target, BLUE, WHITE);
    for (int32_t angle = 0; angle < 360; angle += 30) {
        SetRotation(target, angle);
        write_at(target, x + 102, y + 122, "      Rotation");
    }
    SetFontSize(target, 26);
    SetFontAttribut(target, OUTLINED | BOLD);
    SetRotation(target, 20);
    write_at(target, x + 14, y + 305, "Outline");
    SetForeColor(target, 0xE88A1AFF, WHITE);
    SetFontAttribut(target, BOLD);
    SetShear(target, 70);
    write_at(target, x + 28, y + 348, "and all");
}

void draw_fonts_page(int32_t target, int32_t left, int32_t top)
{
    families(target, left, top);
    faces(target, left + 262, top);
    sizes(target, left + 464, top);
    shears(target, left + 464, top + 94);
    spacings(target, left + 464, top + 162);
    field(target, left + 464, top + 290, 200, 72, "OpenFontInListe");
    OpenFontInListe(target, "dejavu serif", "Bold Italic", 20);
    write_at(target, left + 474, top + 340, GetFontName(target));
    rotations(target, left + 676, top);
    plain_font(target);
}
