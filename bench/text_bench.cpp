// A text view with a book in it, beside Qt's text document with its layout, and a bare buffer whose
// bytes are moved, on the same text and thread.

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <InterfaceDefs.h>
#include <Message.h>
#include <Messenger.h>
#include <TextView.h>
#include <Window.h>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstring>
#include <functional>
#include <string>

namespace {

const int32 kLines = 200'000;
const float kWidth = 600, kHeight = 1020;  // sixty lines

// Lines of 52 bytes on average: ten megabytes.
const std::string& book()
{
    static const std::string text = [] {
        static const char* const kWords[] = {"the", "quick", "brown", "fox", "jumps", "over",
                                             "a",   "lazy",  "dog",   "and", "then",  "sleeps"};
        std::string made;
        uint32_t seed = 1;
        for (int32 line = 0; line < kLines; line++) {
            size_t length = 0;
            do {
                seed = seed * 1664525 + 1013904223;
                const char* word = kWords[(seed >> 20) % 12];
                made += word;
                made += ' ';
                length += strlen(word) + 1;
            } while (length < 49);
            made += '\n';
        }
        return made;
    }();
    return text;
}

const uint32 kRun = 'Run ';

// Runs what it is given on its thread, where it draws.
class RunningWindow : public BWindow {
public:
    using BWindow::BWindow;
    void MessageReceived(BMessage* message) override
    {
        if (message->what != kRun)
            return BWindow::MessageReceived(message);
        run();
        message->SendReply(B_REPLY);
    }
    std::function<void()> run;
};

// A text view in a window.
class OpenText {
public:
    explicit OpenText(bool wraps, float width = kWidth, float height = kHeight)
        : fWindow(new RunningWindow(BRect(0, 0, width, height), "bench", B_TITLED_WINDOW, 0))
    {
        const BRect rect(0, 0, width, height);
        view = new BTextView(rect, "text", rect, B_FOLLOW_ALL, B_WILL_DRAW);
        view->SetWordWrap(wraps);
        fWindow->AddChild(view);
        view->MakeFocus();
        fWindow->Show();
    }
    ~OpenText()
    {
        fWindow->Lock();
        fWindow->Quit();
    }
    void Run(const std::function<void()>& act)
    {
        fWindow->run = act;
        BMessage reply;
        BMessenger(fWindow).SendMessage(kRun, &reply);
    }
    void Fill() { view->SetText(book().data(), int32(book().size()), nullptr); }
    void Update() { fWindow->UpdateIfNeeded(); }

    BTextView* view;

private:
    RunningWindow* fWindow;
};

// Qt's document, laid out to a width, 0 for lines as they are.
void fill(QTextDocument& document, double width)
{
    QFont font("Noto Sans");
    font.setPixelSize(12);
    document.setDefaultFont(font);
    document.setUndoRedoEnabled(false);
    document.setTextWidth(width > 0 ? width : -1);
    document.setPlainText(QString::fromUtf8(book().data(), qsizetype(book().size())));
    document.documentLayout()->documentSize();
}

void SetBook(benchmark::State& state)
{
    OpenText open(state.range(0) != 0);
    open.Run([&] {
        const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        size_t used = 0;
        for (auto _ : state) {
            open.view->SetText("");
            open.Fill();
            open.Update();
            used = mallinfo2().uordblks + mallinfo2().hblkhd - before;
        }
        state.counters["memory/text"] = double(used) / double(book().size());
    });
}
BENCHMARK(SetBook)->ArgName("wrap")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void SetBookQt(benchmark::State& state)
{
    for (auto _ : state) {
        QTextDocument document;
        fill(document, state.range(0) != 0 ? double(kWidth) : 0);
    }
}
BENCHMARK(SetBookQt)->ArgName("wrap")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

void SetBookBare(benchmark::State& state)
{
    std::string bytes;
    for (auto _ : state) {
        bytes.assign(book());
        benchmark::DoNotOptimize(bytes.data());
    }
}
BENCHMARK(SetBookBare)->Unit(benchmark::kMillisecond);

// In the middle of a text of the state's kilobytes.
void TypeToPixels(benchmark::State& state)
{
    OpenText open(true);
    open.Run([&] {
        const std::string text = book().substr(0, size_t(state.range(0)) * 1000);
        open.view->SetText(text.data(), int32(text.size()), nullptr);
        const int32 middle = int32(text.size() / 2);
        open.view->Select(middle, middle);
        open.view->ScrollToSelection();
        open.Update();
        int32 turn = 0;
        for (auto _ : state) {
            open.view->KeyDown(++turn % 64 == 0 ? "\b" : turn % 7 == 0 ? " " : "x", 1);
            open.Update();
        }
    });
}
BENCHMARK(TypeToPixels)->ArgName("KB")->Arg(1)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);

void TypeToPixelsQt(benchmark::State& state)
{
    QTextDocument document;
    fill(document, double(kWidth));
    QTextCursor cursor(&document);
    cursor.setPosition(int(book().size() / 2));
    QImage image(int(kWidth), int(kHeight), QImage::Format_RGB32);
    image.fill(Qt::white);
    for (auto _ : state) {
        cursor.insertText("x");
        const QRectF box = document.documentLayout()->blockBoundingRect(cursor.block());
        QPainter painter(&image);
        painter.translate(0, -box.top());
        painter.fillRect(box, Qt::white);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = box;
        document.documentLayout()->draw(&painter, context);
    }
}
BENCHMARK(TypeToPixelsQt)->Iterations(20)->Unit(benchmark::kMicrosecond);

void TypeInSmallField(benchmark::State& state)
{
    OpenText open(false, 200, 20);
    open.Run([&] {
        open.view->SetText("a name");
        int32 turn = 0;
        for (auto _ : state) {
            open.view->KeyDown(++turn % 16 < 8 ? "x" : "\b", 1);
            open.Update();
        }
    });
}
BENCHMARK(TypeInSmallField)->Unit(benchmark::kMicrosecond);

// A page of sixty lines at a time, all of it drawn anew.
void ScrollScreen(benchmark::State& state)
{
    OpenText open(true);
    open.Run([&] {
        open.Fill();
        float y = 1'000'000;
        for (auto _ : state) {
            y = y < 2'000'000 ? y + kHeight + 1 : 1'000'000;
            open.view->ScrollTo(0, y);
            open.Update();
        }
    });
}
BENCHMARK(ScrollScreen)->Unit(benchmark::kMicrosecond);

void PasteMegabyte(benchmark::State& state)
{
    OpenText open(true);
    open.Run([&] {
        open.Fill();
        const std::string more = book().substr(0, 1'000'000);
        const int32 middle = int32(book().size() / 2);
        open.view->SetDoesUndo(false);
        for (auto _ : state) {
            open.view->Insert(middle, more.data(), int32(more.size()), nullptr);
            open.Update();
            state.PauseTiming();
            open.view->Delete(middle, middle + int32(more.size()));
            state.ResumeTiming();
        }
    });
}
BENCHMARK(PasteMegabyte)->Unit(benchmark::kMillisecond);

void PasteMegabyteBare(benchmark::State& state)
{
    std::string bytes = book();
    const std::string more = book().substr(0, 1'000'000);
    for (auto _ : state) {
        bytes.insert(bytes.size() / 2, more);
        state.PauseTiming();
        bytes.erase(bytes.size() / 2, more.size());
        state.ResumeTiming();
    }
}
BENCHMARK(PasteMegabyteBare)->Unit(benchmark::kMillisecond);

void FindLine(benchmark::State& state)
{
    OpenText open(true);
    open.Run([&] {
        open.Fill();
        char line[256];
        uint32_t seed = 1;
        for (auto _ : state) {
            seed = seed * 1664525 + 1013904223;
            open.view->GetText(open.view->OffsetAt(int32(seed % kLines)), 52, line);
            benchmark::DoNotOptimize(line);
        }
    });
}
BENCHMARK(FindLine);

}  // namespace

int main(int argc, char** argv)
{
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
