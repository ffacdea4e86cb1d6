// Measuring and drawing text, beside Qt's metrics and painter on pixels of the same size. Qt draws
// into an image without anti-aliasing of shapes, with a persistent painter and font.

#include <Bitmap.h>
#include <Font.h>
#include <View.h>

#include <benchmark/benchmark.h>

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char kShort[] = "Hello world";
constexpr char kLine[] =
    "The quick brown fox jumps over the lazy dog, and the dog does not mind: "
    "it has seen 1234567890 foxes jump before.";

QFont qt_font()
{
    QFont font(QStringLiteral("Noto Sans"));
    font.setPixelSize(12);
    return font;
}

void WidthOurs(benchmark::State& state, const char* text)
{
    BFont font;
    for (auto _ : state)
        benchmark::DoNotOptimize(font.StringWidth(text));
}

void WidthQt(benchmark::State& state, const char* text)
{
    QFontMetrics metrics(qt_font());
    QString string = QString::fromUtf8(text);
    for (auto _ : state)
        benchmark::DoNotOptimize(metrics.horizontalAdvance(string));
}

// A text that was never seen before, as counters and clocks have them.
void WidthOfNewTextOurs(benchmark::State& state)
{
    BFont font;
    char text[32];
    for (int i = 0; auto _ : state) {
        snprintf(text, sizeof(text), "Value %d", i++);
        benchmark::DoNotOptimize(font.StringWidth(text));
    }
}

void WidthOfNewTextQt(benchmark::State& state)
{
    QFontMetrics metrics(qt_font());
    char text[32];
    for (int i = 0; auto _ : state) {
        snprintf(text, sizeof(text), "Value %d", i++);
        benchmark::DoNotOptimize(metrics.horizontalAdvance(QString::fromUtf8(text)));
    }
}

void HeightOurs(benchmark::State& state)
{
    BFont font;
    font_height height;
    for (auto _ : state) {
        font.GetHeight(&height);
        benchmark::DoNotOptimize(height);
    }
}

template <class Next>
void draw_ours(benchmark::State& state, Next next)
{
    BBitmap bitmap(BRect(0, 0, 799, 99), B_RGBA32, true);
    BView* view = new BView(bitmap.Bounds(), "bench", B_FOLLOW_NONE, 0);
    bitmap.AddChild(view);
    bitmap.Lock();
    for (auto _ : state)
        view->DrawString(next(), BPoint(40, 55));
    bitmap.Unlock();
}

template <class Next>
void draw_qt(benchmark::State& state, Next next)
{
    QImage image(800, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(qt_font());
    for (auto _ : state)
        painter.drawText(40, 55, next());
}

void DrawOurs(benchmark::State& state, const char* text)
{
    draw_ours(state, [=] { return text; });
}

void DrawQt(benchmark::State& state, const char* text)
{
    draw_qt(state, [string = QString::fromUtf8(text)] { return string; });
}

void DrawNewTextOurs(benchmark::State& state)
{
    draw_ours(state, [i = 0, text = std::array<char, 32>()]() mutable {
        snprintf(text.data(), text.size(), "Value %d", i++);
        return text.data();
    });
}

void DrawNewTextQt(benchmark::State& state)
{
    draw_qt(state, [i = 0]() mutable { return QStringLiteral("Value %1").arg(i++); });
}

}  // namespace

BENCHMARK_CAPTURE(WidthOurs, hello, kShort);
BENCHMARK_CAPTURE(WidthQt, hello, kShort);
BENCHMARK_CAPTURE(WidthOurs, line, kLine);
BENCHMARK_CAPTURE(WidthQt, line, kLine);
BENCHMARK(WidthOfNewTextOurs);
BENCHMARK(WidthOfNewTextQt);
BENCHMARK(HeightOurs);
BENCHMARK_CAPTURE(DrawOurs, hello, kShort);
BENCHMARK_CAPTURE(DrawQt, hello, kShort);
BENCHMARK_CAPTURE(DrawOurs, line, kLine);
BENCHMARK_CAPTURE(DrawQt, line, kLine);
BENCHMARK(DrawNewTextOurs);
BENCHMARK(DrawNewTextQt);

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
