// Images as a program loads and draws them, beside Qt's reader and a QPainter with smooth scaling
// on the same files and pixels, on the same thread.

#include "program_main.h"

#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPainter>

#include <TranslatorRoster.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

const int kWidth = 2304, kHeight = 1728;  // four megapixels
const int32_t kWindowWidth = 1024, kWindowHeight = 768;

// A picture as a camera makes it: smooth, with some grain; with `alpha`, an oval of it.
QImage make_photo(int width, int height, bool alpha)
{
    QImage photo(width, height, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    uint32_t grain = 1;
    for (int y = 0; y < height; y++) {
        auto* row = reinterpret_cast<QRgb*>(photo.scanLine(y));
        for (int x = 0; x < width; x++) {
            grain = grain * 1664525 + 1013904223;
            const int noise = int(grain >> 29);
            const double dx = 2.0 * x / width - 1, dy = 2.0 * y / height - 1;
            const double away = dx * dx + dy * dy;
            const int opacity = !alpha || away < 0.8 ? 255 : away > 1 ? 0 : int((1 - away) * 1275);
            row[x] = qRgba((x * 200 / width + noise) & 255, (y * 200 / height + noise) & 255,
                           ((x + y) * 120 / width + noise) & 255, opacity);
        }
    }
    return photo;
}

const std::string& folder()
{
    static const std::string path = [] {
        const std::string name =
            std::filesystem::temp_directory_path() / ("plinth-bench-" + std::to_string(getpid()));
        std::filesystem::create_directory(name);
        return name;
    }();
    return path;
}

std::string file_of(const char* format, bool alpha = false, int width = kWidth,
                    int height = kHeight)
{
    std::string path =
        folder() + "/" + (alpha ? "clear" : "photo") + std::to_string(width) + "." + format;
    BTranslatorRoster::Default();  // the kits are to meet Qt's plug-ins before this thread does
    if (!std::filesystem::exists(path))
        make_photo(width, height, alpha).save(QString::fromStdString(path), format, 90);
    return path;
}

void load(const char* format)
{
    benchmark::RegisterBenchmark((std::string("LoadImage 4 MP ") + format + "/plinth").c_str(),
                                 [=](benchmark::State& state) {
                                     const std::string path = file_of(format);
                                     for (auto _ : state)
                                         CloseIcon(LoadImage(path.c_str()));
                                 })
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((std::string("LoadImage 4 MP ") + format + "/Qt").c_str(),
                                 [=](benchmark::State& state) {
                                     const QString path = QString::fromStdString(file_of(format));
                                     for (auto _ : state) {
                                         QImageReader reader(path, format);
                                         const QImage image = reader.read();
                                         benchmark::DoNotOptimize(image.constBits());
                                     }
                                 })
        ->Unit(benchmark::kMillisecond);
}

void draw(const char* name, bool alpha, int width, int height, int to_width, int to_height)
{
    benchmark::RegisterBenchmark(
        (std::string("DrawImage ") + name + "/plinth").c_str(), [=](benchmark::State& state) {
            static const int32_t window = [] {
                const int32_t opened = OpenWindow(0, 0, kWindowWidth - 1, kWindowHeight - 1);
                SetRefreshWindowMode(opened, 0);
                return opened;
            }();
            const int32_t image = LoadImage(file_of("png", alpha, width, height).c_str());
            for (auto _ : state)
                DrawImage(window, image, 10, 10, to_width, to_height);
            CloseIcon(image);
        });
    benchmark::RegisterBenchmark(
        (std::string("DrawImage ") + name + "/Qt").c_str(),
        [=](benchmark::State& state) {
            static int argc = 1;
            static char program[] = "bench";
            static char* argv[] = {program, nullptr};
            qputenv("QT_QPA_PLATFORM", "offscreen");
            static auto* const application = new QGuiApplication(argc, argv);
            (void)application;
            // The formats that Qt itself recommends for drawing.
            QImage paper(kWindowWidth, kWindowHeight, QImage::Format_ARGB32_Premultiplied);
            paper.fill(Qt::white);
            const QImage image = make_photo(width, height, alpha)
                                     .convertToFormat(alpha ? QImage::Format_ARGB32_Premultiplied
                                                            : QImage::Format_RGB32);
            QPainter painter(&paper);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            for (auto _ : state)
                painter.drawImage(QRect(10, 10, to_width, to_height), image);
        })
        ->MeasureProcessCPUTime();  // of all threads that Qt shares the work with
}

}  // namespace

int main(int argc, char** argv)
{
    load("png");
    load("jpeg");
    draw("unscaled", false, 640, 480, 640, 480);
    draw("unscaled, alpha", true, 640, 480, 640, 480);
    draw("larger", false, 320, 240, 900, 700);
    draw("larger, alpha", true, 320, 240, 900, 700);
    draw("smaller", false, 1280, 960, 640, 480);
    draw("smaller, alpha", true, 1280, 960, 640, 480);
    const int status = bench_main(argc, argv);
    std::filesystem::remove_all(folder());
    return status;
}
