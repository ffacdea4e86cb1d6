// The painter beside a QPainter that stays open on an image of the same size, not anti-aliased.
// Each pair draws the same pixels; the exported calls add their look-ups and locks to ours.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <server/painter/Painter.h>

#include <random>
#include <vector>

namespace {

const int kWidth = 1000, kHeight = 800;

struct Ours {
    Ours() : bits(size_t(kPitch) * kHeight)
    {
        surface = {bits.data(), kPitch, kWidth, kHeight, B_RGBA32};
        target = {&surface, &clip, 1, clip};
        paint.high = {10, 20, 30, 255};
    }
    static const int kPitch = kWidth * 4 + 64;
    std::vector<uint8> bits;
    server::Surface surface;
    clipping_rect clip = {0, 0, kWidth - 1, kHeight - 1};
    server::Target target;
    server::Paint paint;
};

struct Qts {
    explicit Qts(bool fill) : image(kWidth, kHeight, QImage::Format_ARGB32)
    {
        image.fill(Qt::white);
        painter.begin(&image);
        if (fill) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(10, 20, 30));
        } else {
            painter.setPen(QColor(10, 20, 30));
        }
    }
    QImage image;
    QPainter painter;
};

// Places of lines and shapes, the same for both.
std::vector<BPoint> places(int count, int width, int height)
{
    std::mt19937 random(1);
    std::vector<BPoint> points;
    for (int i = 0; i < count; i++)
        points.push_back(BPoint(random() % width, random() % height));
    return points;
}

void OursFillRect(benchmark::State& state)
{
    Ours ours;
    const float size = state.range(0) - 1;
    for (auto _ : state)
        server::FillRect(ours.target, ours.paint, BRect(5, 6, 5 + size, 6 + size));
}

void QtFillRect(benchmark::State& state)
{
    Qts qt(true);
    const QColor color(10, 20, 30);
    for (auto _ : state)
        qt.painter.fillRect(QRect(5, 6, state.range(0), state.range(0)), color);
}

BENCHMARK(OursFillRect)->Arg(10)->Arg(100)->Arg(500);
BENCHMARK(QtFillRect)->Arg(10)->Arg(100)->Arg(500);

void OursLine(benchmark::State& state)
{
    Ours ours;
    const BPoint to(100 + state.range(0), 100 + state.range(1));
    for (auto _ : state)
        server::StrokeLine(ours.target, ours.paint, BPoint(100, 100), to);
}

void QtLine(benchmark::State& state)
{
    Qts qt(false);
    for (auto _ : state)
        qt.painter.drawLine(100, 100, 100 + state.range(0), 100 + state.range(1));
}

BENCHMARK(OursLine)->Args({299, 0})->Args({0, 299})->Args({299, 299})->Args({299, 120});
BENCHMARK(QtLine)->Args({299, 0})->Args({0, 299})->Args({299, 299})->Args({299, 120});

void OursRandomLines(benchmark::State& state)
{
    Ours ours;
    const std::vector<BPoint> points = places(1024, kWidth, kHeight);
    size_t i = 0;
    for (auto _ : state) {
        server::StrokeLine(ours.target, ours.paint, points[i & 1023], points[(i + 1) & 1023]);
        i++;
    }
}

void QtRandomLines(benchmark::State& state)
{
    Qts qt(false);
    const std::vector<BPoint> points = places(1024, kWidth, kHeight);
    size_t i = 0;
    for (auto _ : state) {
        const BPoint a = points[i & 1023], b = points[(i + 1) & 1023];
        qt.painter.drawLine(int(a.x), int(a.y), int(b.x), int(b.y));
        i++;
    }
}

BENCHMARK(OursRandomLines);
BENCHMARK(QtRandomLines);

void OursStrokeRect(benchmark::State& state)
{
    Ours ours;
    for (auto _ : state)
        server::StrokeRect(ours.target, ours.paint, BRect(50, 60, 149, 159));
}

void QtStrokeRect(benchmark::State& state)
{
    Qts qt(false);
    for (auto _ : state)
        qt.painter.drawRect(50, 60, 99, 99);
}

BENCHMARK(OursStrokeRect);
BENCHMARK(QtStrokeRect);

void OursCircle(benchmark::State& state)
{
    Ours ours;
    const float r = state.range(0);
    for (auto _ : state) {
        if (state.range(1) != 0)
            server::FillEllipse(ours.target, ours.paint, BPoint(300, 300), r, r);
        else
            server::StrokeEllipse(ours.target, ours.paint, BPoint(300, 300), r, r);
    }
}

void QtCircle(benchmark::State& state)
{
    Qts qt(state.range(1) != 0);
    const int r = state.range(0);
    for (auto _ : state)
        qt.painter.drawEllipse(QPoint(300, 300), r, r);
}

BENCHMARK(OursCircle)->ArgsProduct({{10, 100}, {0, 1}});
BENCHMARK(QtCircle)->ArgsProduct({{10, 100}, {0, 1}});

void OursPolygon(benchmark::State& state)
{
    Ours ours;
    const int count = state.range(0);
    const std::vector<BPoint> points = places(count, 300, 300);
    for (auto _ : state)
        server::FillPolygon(ours.target, ours.paint, points.data(), count);
}

void QtPolygon(benchmark::State& state)
{
    Qts qt(true);
    const int count = state.range(0);
    QPolygon polygon;
    for (const BPoint& point : places(count, 300, 300))
        polygon << QPoint(point.x, point.y);
    for (auto _ : state)
        qt.painter.drawPolygon(polygon, Qt::WindingFill);
}

BENCHMARK(OursPolygon)->Arg(3)->Arg(10);
BENCHMARK(QtPolygon)->Arg(3)->Arg(10);

void OursMode(benchmark::State& state)
{
    Ours ours;
    ours.paint.mode = drawing_mode(state.range(0));
    ours.paint.high.alpha = 100;
    for (auto _ : state)
        server::FillRect(ours.target, ours.paint, BRect(5, 6, 104, 105));
}

BENCHMARK(OursMode)->DenseRange(0, 10);

void OursPatternRect(benchmark::State& state)
{
    Ours ours;
    ours.paint.pattern = B_MIXED_COLORS;
    for (auto _ : state)
        server::FillRect(ours.target, ours.paint, BRect(5, 6, 104, 105));
}

BENCHMARK(OursPatternRect);

void OursBitmap(benchmark::State& state)
{
    Ours ours, source;
    ours.paint.mode = drawing_mode(state.range(0));
    const BRect from(0, 0, 99, 99);
    const BRect to(200, 200, 200 + state.range(1) - 1, 200 + state.range(1) - 1);
    for (auto _ : state)
        server::DrawBitmap(ours.target, ours.paint, source.surface, from, to, 0);
}

BENCHMARK(OursBitmap)->Args({B_OP_COPY, 100})->Args({B_OP_OVER, 100})->Args({B_OP_ALPHA, 100});
BENCHMARK(OursBitmap)->Args({B_OP_COPY, 200});

void OursScroll(benchmark::State& state)
{
    Ours ours;
    for (auto _ : state)
        server::CopyRect(ours.target, BRect(0, 10, 499, 499), BPoint(0, 0));
}

void MemmoveScroll(benchmark::State& state)
{
    Ours ours;
    for (auto _ : state) {
        for (int y = 0; y < 490; y++)
            memmove(&ours.bits[y * Ours::kPitch], &ours.bits[(y + 10) * Ours::kPitch], 500 * 4);
    }
}

BENCHMARK(OursScroll);
BENCHMARK(MemmoveScroll);

}  // namespace

BENCHMARK_MAIN();
