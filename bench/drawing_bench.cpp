// Every drawing call as a program makes it, with its look-ups and locks, beside a persistent
// QPainter without anti-aliasing on an image of the same size, on the same thread.

#include "program_main.h"

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <Injection.h>
#include <List.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace {

const int32_t kWidth = 1024;
const int32_t kHeight = 768;

int32_t open_window()
{
    const int32_t opened = OpenWindow(0, 0, kWidth - 1, kHeight - 1);
    SetRefreshWindowMode(opened, 0);
    SetForeColor(opened, 0x336698FF, 0xFFFFFFFF);
    SetBackColor(opened, 0xFFFFFFFF);
    return opened;
}

// The window drawn into; refresh off, so that only the drawing itself is measured.
int32_t window()
{
    static const int32_t ident = open_window();
    return ident;
}

// Another one, on a screen of two pixels a unit.
int32_t fine_window()
{
    static const int32_t ident = [] {
        inject_display_scale(2);
        const int32_t opened = open_window();
        inject_display_scale(1);
        return opened;
    }();
    return ident;
}

struct Raw {
    QImage image{kWidth, kHeight, QImage::Format_ARGB32};
    QPainter painter;

    Raw()
    {
        static int argc = 1;
        static char name[] = "bench";
        static char* argv[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static auto* application = new QGuiApplication(argc, argv);
        (void)application;
        image.fill(Qt::white);
        painter.begin(&image);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QColor(0x33, 0x66, 0x98));
        painter.setBrush(Qt::NoBrush);
        QFont font("DejaVu Sans");
        font.setPixelSize(12);
        painter.setFont(font);
    }
};

Raw& raw()
{
    static Raw* const one = new Raw;
    return *one;
}

// Runs a pair of benchmarks, ours and Qt's, under one name.
template <class Ours, class Qts>
void pair(const char* name, Ours ours, Qts qts)
{
    benchmark::RegisterBenchmark((std::string(name) + "/plinth").c_str(),
                                 [=](benchmark::State& state) {
                                     const int32_t target = window();
                                     for (auto _ : state)
                                         ours(target);
                                 });
    benchmark::RegisterBenchmark((std::string(name) + "/qpainter").c_str(),
                                 [=](benchmark::State& state) {
                                     QPainter& painter = raw().painter;
                                     for (auto _ : state)
                                         qts(painter);
                                 });
}

struct Segment {
    int32_t x1, y1, x2, y2;
};

const std::vector<Segment>& random_segments()
{
    static const auto segments = [] {
        std::minstd_rand random(7);
        std::vector<Segment> made(256);
        for (Segment& s : made)
            s = {static_cast<int32_t>(random() % kWidth), static_cast<int32_t>(random() % kHeight),
                 static_cast<int32_t>(random() % kWidth), static_cast<int32_t>(random() % kHeight)};
        return made;
    }();
    return segments;
}

const int16_t kStar[] = {200, 40,  226, 112, 302, 112, 242, 160, 264, 236,
                         200, 190, 136, 236, 158, 160, 98,  112, 174, 112};

QPolygon star()
{
    QPolygon polygon;
    for (int i = 0; i < 20; i += 2)
        polygon << QPoint(kStar[i], kStar[i + 1]);
    return polygon;
}

void register_rectangles()
{
    for (int side : {10, 100, 500}) {
        pair(("FRectangle " + std::to_string(side)).c_str(),
             [=](int32_t w) { FRectangle(w, 20, 20, side - 1, side - 1); },
             [=](QPainter& p) { p.fillRect(20, 20, side, side, QColor(0x33, 0x66, 0x98)); });
    }
    pair(
        "Rectangle 100", [](int32_t w) { Rectangle(w, 20, 20, 99, 99); },
        [](QPainter& p) { p.drawRect(20, 20, 99, 99); });
}

void register_lines()
{
    pair(
        "Line horizontal 300", [](int32_t w) { Line(w, 20, 33, 319, 33); },
        [](QPainter& p) { p.drawLine(20, 33, 319, 33); });
    pair(
        "Line vertical 300", [](int32_t w) { Line(w, 33, 20, 33, 319); },
        [](QPainter& p) { p.drawLine(33, 20, 33, 319); });
    pair(
        "Line 45 degrees", [](int32_t w) { Line(w, 20, 20, 319, 319); },
        [](QPainter& p) { p.drawLine(20, 20, 319, 319); });
    static uint32_t ours, qts;
    pair(
        "Line random",
        [](int32_t w) {
            const Segment& s = random_segments()[ours++ % 256];
            Line(w, s.x1, s.y1, s.x2, s.y2);
        },
        [](QPainter& p) {
            const Segment& s = random_segments()[qts++ % 256];
            p.drawLine(s.x1, s.y1, s.x2, s.y2);
        });
}

void register_ellipses()
{
    for (int r : {10, 100}) {
        pair(("Circle r " + std::to_string(r)).c_str(), [=](int32_t w) { Circle(w, 200, 200, r); },
             [=](QPainter& p) { p.drawEllipse(QPoint(200, 200), r, r); });
        pair(("FCircle r " + std::to_string(r)).c_str(),
             [=](int32_t w) { FCircle(w, 200, 200, r); },
             [=](QPainter& p) {
                 p.setBrush(QColor(0x33, 0x66, 0x98));
                 p.drawEllipse(QPoint(200, 200), r, r);
                 p.setBrush(Qt::NoBrush);
             });
    }
}

void register_polygons()
{
    pair(
        "FTriangle", [](int32_t w) { FTriangle(w, 200, 40, 320, 240, 80, 240); },
        [](QPainter& p) {
            static const QPolygon triangle({QPoint(200, 40), QPoint(320, 240), QPoint(80, 240)});
            p.setBrush(QColor(0x33, 0x66, 0x98));
            p.drawPolygon(triangle);
            p.setBrush(Qt::NoBrush);
        });
    pair(
        "FillPolygon 10", [](int32_t w) { FillPolygon(w, 10, kStar); },
        [](QPainter& p) {
            static const QPolygon polygon = star();
            p.setBrush(QColor(0x33, 0x66, 0x98));
            p.drawPolygon(polygon, Qt::WindingFill);
            p.setBrush(Qt::NoBrush);
        });
}

void register_text()
{
    pair(
        "Text Hello world",
        [](int32_t w) {
            MoveTo(w, 40, 40);
            Text(w, "Hello world");
        },
        [](QPainter& p) { p.drawText(40, 55, QStringLiteral("Hello world")); });
    pair(
        "GetTextWidth", [](int32_t w) { benchmark::DoNotOptimize(GetTextWidth(w, "Hello world")); },
        [](QPainter& p) {
            static const QFontMetrics metrics(p.font());
            benchmark::DoNotOptimize(metrics.horizontalAdvance(QStringLiteral("Hello world")));
        });
}

// Rows of 100 pixels moved with memmove inside memory as large as the window's.
std::vector<uint32_t>& raw_rows()
{
    static auto* const rows = new std::vector<uint32_t>(kWidth * kHeight, 0xFFFFFFFF);
    return *rows;
}

void move_rows(int x, int y, int width, int height, int to_x, int to_y)
{
    uint32_t* bits = raw_rows().data();
    for (int row = 0; row < height; row++)
        memmove(bits + (to_y + row) * kWidth + to_x, bits + (y + row) * kWidth + x, 4 * width);
    benchmark::ClobberMemory();
}

void register_areas()
{
    pair(
        "Blit 100 (beside memmove)", [](int32_t w) { Blit(w, 20, 20, 99, 99, 300, 300); },
        [](QPainter&) { move_rows(20, 20, 100, 100, 300, 300); });
    pair(
        "Blit scroll (beside memmove)",
        [](int32_t w) { Blit(w, 0, 16, kWidth - 1, kHeight - 17, 0, 0); },
        [](QPainter&) { move_rows(0, 16, kWidth, kHeight - 16, 0, 0); });
    pair(
        "Clear (beside memset)", [](int32_t w) { Clear(w); },
        [](QPainter&) {
            memset(raw_rows().data(), 0xFF, raw_rows().size() * 4);
            benchmark::ClobberMemory();
        });
    pair(
        "WritePixel", [](int32_t w) { WritePixel(w, 30, 40); },
        [](QPainter&) { raw().image.setPixel(30, 40, 0xFF336698); });
    pair(
        "GetPixel", [](int32_t w) { benchmark::DoNotOptimize(GetPixel(w, 30, 40)); },
        [](QPainter&) { benchmark::DoNotOptimize(raw().image.pixel(30, 40)); });
}

// A million small primitives with the refresh mode off and on.
void refresh_mode(benchmark::State& state)
{
    const int32_t target = window();
    SetRefreshWindowMode(target, static_cast<int32_t>(state.range(0)));
    uint32_t place = 0;
    for (auto _ : state) {
        place = place * 1664525 + 1013904223;
        FRectangle(target, static_cast<int32_t>(place >> 8 & 511),
                   static_cast<int32_t>(place >> 18 & 511), 9, 9);
    }
    SetRefreshWindowMode(target, 0);
}

// Calls that others time on a plain screen, on one of two pixels a unit. Last of all: the windows
// that are open go there as well.
template <class Ours>
void fine_row(const std::string& name, Ours ours)
{
    benchmark::RegisterBenchmark((name + ", scale 2").c_str(), [=](benchmark::State& state) {
        const int32_t target = fine_window();
        for (auto _ : state)
            ours(target);
    });
}

void register_fine_rows()
{
    for (int side : {10, 100, 500}) {
        fine_row("FRectangle " + std::to_string(side),
                 [=](int32_t w) { FRectangle(w, 20, 20, side - 1, side - 1); });
    }
    fine_row("FRectangle 10, everywhere", [](int32_t w) {
        static uint32_t place;
        place = place * 1664525 + 1013904223;
        FRectangle(w, static_cast<int32_t>(place >> 8 & 511),
                   static_cast<int32_t>(place >> 18 & 511), 9, 9);
    });
    fine_row("Text Hello world", [](int32_t w) {
        MoveTo(w, 40, 40);
        Text(w, "Hello world");
    });
}

// With ten thousand other records before it in the registry's list of windows, and after it.
void many_idents(benchmark::State& state)
{
    const int32_t target = window();
    auto* windows = static_cast<BList*>(gRegistry[0]);
    struct Record {
        intptr_t window, ident, rest[9];
    };
    std::vector<Record> others(10'000, Record{});
    void* own = windows->ItemAt(0);
    windows->MakeEmpty();
    for (size_t i = 0; i < others.size(); i++) {
        const auto number = static_cast<intptr_t>(i);
        others[i].ident = i < 5000 ? number + 1 : INT32_MAX - 10'000 + number;
        if (i == 5000)
            windows->AddItem(own);
        windows->AddItem(&others[i]);
    }
    for (auto _ : state)
        FRectangle(target, 20, 20, 9, 9);
    windows->MakeEmpty();
    windows->AddItem(own);
}

}  // namespace

int main(int argc, char** argv)
{
    register_rectangles();
    register_lines();
    register_ellipses();
    register_polygons();
    register_text();
    register_areas();
    benchmark::RegisterBenchmark("FRectangle 10, refresh", refresh_mode)
        ->Arg(0)
        ->Arg(1)
        ->Iterations(1'000'000);
    benchmark::RegisterBenchmark("FRectangle 10, 10000 idents", many_idents);
    register_fine_rows();
    return bench_main(argc, argv);
}
