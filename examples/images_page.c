/* Icons and images: loaded, made, drawn into, scaled, cut out of the window, saved and read back.
 */

#include <plinth.h>

#include <stdio.h>
#include <unistd.h>

#include "pages.h"

static const uint32_t PANEL = 0xD8D8D8FF;
static const uint32_t BLACK = 0x000000FF;
static const uint32_t GREY = 0x909090FF;
static const uint32_t BLUE = 0x336698FF;
static const uint32_t ORANGE = 0xE88A1AFF;

static void label(int32_t target, int32_t x, int32_t y, const char *text)
{
    SetForeColor(target, BLACK, PANEL);
    MoveTo(target, x, y);
    Text(target, text);
}

/* A ball with a shine on a transparent ground; drawing copies how opaque its colours are. */
static int32_t make_ball(int32_t side, uint32_t opacity)
{
    const int32_t ball = CreateImage(side, side);
    const int32_t middle = side / 2;
    for (int32_t i = 0; i < middle; i++) {
        const uint32_t light = (uint32_t)(60 + 195 * i / middle);
        SetForeColor(ball, light << 24 | light / 2 << 16 | 0x2000 | opacity, 0);
        FCircle(ball, middle - i / 3, middle - i / 3, middle - 1 - i);
    }
    return ball;
}

static void checks(int32_t target, int32_t x, int32_t y, int32_t w, int32_t h)
{
    for (int32_t i = 0; i < w; i += 8)
        for (int32_t j = 0; j < h; j += 8) {
            SetForeColor(target, (i + j) / 8 % 2 ? 0xFFFFFFFF : 0xE8E8E8FF, PANEL);
            FRectangle(target, x + i, y + j, 7, 7);
        }
}

static void icons(int32_t target, int32_t x, int32_t y)
{
    static const char *const paths[] = {"/", "/usr/include/plinth.h", "/bin/sh", "/etc/passwd"};
    static const char *const types[] = {"text/html", "image/png", "audio/mpeg", "text/plain"};
    int32_t at = x;
    label(target, x, y - 4, "LoadIcon, LoadMimeIcon; DrawIcon");
    for (int32_t i = 0; i < 8; i++) {
        const int32_t icon = i < 4 ? LoadIcon(paths[i]) : LoadMimeIcon(types[i - 4]);
        if (icon == 0)
            continue;
        DrawIcon(target, icon, at, y + 32, 0);
        DrawIcon(target, icon, at + 20, y + 24, 1);
        at += 64;
        CloseIcon(icon);
    }
}

static void sprites(int32_t target, int32_t x, int32_t y)
{
    const int32_t ball = make_ball(64, 255);
    const int32_t faded = make_ball(64, 100);
    label(target, x, y - 4, "CreateImage, drawn into; DrawIcon, selected; DrawImage, with alpha");
    checks(target, x, y + 20, 440, 72);
    DrawIcon(target, ball, x + 8, y + 24, 0);
    DrawIcon(target, ball, x + 88, y + 24, 1);
    DrawImage(target, faded, x + 168, y + 24, 0, 0);
    for (int32_t i = 0; i < 5; i++)
        DrawImage(target, faded, x + 248 + i * 28, y + 24, 0, 0);
    CloseIcon(faded);
    CloseIcon(ball);
}

static void sizes(int32_t target, int32_t x, int32_t y)
{
    const int32_t ball = make_ball(48, 255);
    label(target, x, y - 4, "DrawImage, scaled");
    checks(target, x, y + 20, 440, 152);
    DrawImage(target, ball, x + 4, y + 24, 144, 144);
    DrawImage(target, ball, x + 160, y + 24, 96, 144);
    for (int32_t side = 48, at = x + 270; side > 2; at += side + 4, side = side * 2 / 3)
        DrawImage(target, ball, at, y + 96 - side / 2, side, side);
    CloseIcon(ball);
}

static void cuttings(int32_t target, int32_t x, int32_t y, int32_t from_x, int32_t from_y)
{
    const int32_t part = ImageFromWindow(target, from_x, from_y, from_x + 219, from_y + 95);
    label(target, x, y - 4, "ImageFromWindow");
    SetForeColor(target, GREY, PANEL);
    Rectangle(target, x - 1, y + 19, 221, 97);
    DrawIcon(target, part, x, y + 20, 0);
    DrawImage(target, part, x + 232, y + 20, 110, 48);
    DrawImage(target, part, x + 352, y + 20, 55, 24);
    CloseIcon(part);
}

static void files(int32_t target, int32_t x, int32_t y)
{
    static const char *const names[] = {"TGA", "PPM", "PNG", "JPEG", "BMP", "GIF", "TIFF"};
    const int32_t picture = CreateImage(48, 48);
    char path[64];
    snprintf(path, sizeof path, "/tmp/primitives-%d", (int)getpid());
    SetForeColor(picture, 0xFFFFFFFF, 0);
    FRectangle(picture, 0, 0, 47, 47);
    SetForeColor(picture, BLUE, 0);
    FCircle(picture, 18, 20, 15);
    SetForeColor(picture, ORANGE, 0);
    FTriangle(picture, 28, 8, 45, 45, 12, 45);
    label(target, x, y - 4, "SaveImageFile, LoadImage");
    for (int32_t format = 0; format < 7; format++) {
        SaveImageFile(path, picture, format);
        const int32_t loaded = LoadImage(path);
        DrawIcon(target, loaded, x + format * 60, y + 24, 0);
        label(target, x + format * 60 + 6, y + 72, names[format]);
        CloseIcon(loaded);
        DeleteFile(path);
    }
    CloseIcon(picture);
}

void draw_images_page(int32_t target, int32_t left, int32_t top)
{
    SetDrawMode(target, 0);
    icons(target, left, top);
    sprites(target, left, top + 70);
    sizes(target, left, top + 176);
    cuttings(target, left + 456, top, left, top + 90);
    files(target, left + 456, top + 176);
}
