// What gadgets cost a program: making, finding, changing and killing them among ten thousand, and
// drawing a window of two hundred, beside the same window of Qt Widgets in Qt's own style.

#include "program_main.h"

#include <Injection.h>
#include <OS.h>
#include <Looper.h>
#include <MessageFilter.h>
#include <View.h>
#include <Window.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QStyleFactory>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <malloc.h>
#include <time.h>
#include <unistd.h>

namespace {

const int32_t kMany = 10'000;

// A window of the program, closed with the bench.
class Opened {
public:
    Opened() : fIdent(OpenWindow(20, 20, 799, 599)) {}
    ~Opened() { CloseWindow(fIdent); }
    int32_t Ident() const { return fIdent; }
    BWindow* Object() const { return reinterpret_cast<BWindow*>(GetAdress(fIdent)); }

private:
    int32_t fIdent;
};

std::vector<int32_t> make_many(int32_t window)
{
    std::vector<int32_t> idents;
    for (int32_t i = 0; i < kMany; i++)
        idents.push_back(CreateGadget(1, window, i % 700, i / 20, 80, 24, "button", 0));
    return idents;
}

void kill_all(const std::vector<int32_t>& idents)
{
    for (const int32_t ident : idents)
        KillGadget(0, ident);
}

std::vector<int32_t> shuffled(std::vector<int32_t> idents)
{
    std::shuffle(idents.begin(), idents.end(), std::minstd_rand(1));
    return idents;
}

double seconds_since(nanotime_t start)
{
    return static_cast<double>(system_time_nsecs() - start) * 1e-9;
}

// What the calling thread has used of a processor, which others may want as well.
double own_seconds()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Each iteration is one gadget; the last hundred of ten thousand are told apart.
void Create(benchmark::State& state)
{
    const Opened window;
    double last = 0;
    for (auto _ : state) {
        std::vector<int32_t> idents;
        const nanotime_t start = system_time_nsecs();
        nanotime_t late = start;
        for (int32_t i = 0; i < kMany; i++) {
            if (i == kMany - 100)
                late = system_time_nsecs();
            idents.push_back(CreateGadget(1, window.Ident(), i % 700, i / 20, 80, 24, "b", 0));
        }
        last += seconds_since(late) / 100;
        state.SetIterationTime(seconds_since(start) / kMany);
        kill_all(idents);
    }
    state.counters["last_us"] = last * 1e6 / static_cast<double>(state.iterations());
}
BENCHMARK(Create)->UseManualTime()->Iterations(10);

void Kill(benchmark::State& state)
{
    const Opened window;
    double own = 0;
    for (auto _ : state) {
        const std::vector<int32_t> idents = shuffled(make_many(window.Ident()));
        const double own_start = own_seconds();
        const nanotime_t start = system_time_nsecs();
        kill_all(idents);
        state.SetIterationTime(seconds_since(start) / kMany);
        own += own_seconds() - own_start;
    }
    state.counters["own_us"] = own * 1e6 / kMany / static_cast<double>(state.iterations());
}
BENCHMARK(Kill)->UseManualTime()->Iterations(10);

void LookUp(benchmark::State& state)
{
    const Opened window;
    const std::vector<int32_t> idents = shuffled(make_many(window.Ident()));
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(is_gadget_ident(idents[i]));
        i = i + 1 < idents.size() ? i + 1 : 0;
    }
    kill_all(idents);
}
BENCHMARK(LookUp);

// The same gadget again, as in a loop that changes one.
void LookUpAgain(benchmark::State& state)
{
    const Opened window;
    const std::vector<int32_t> idents = make_many(window.Ident());
    for (auto _ : state)
        benchmark::DoNotOptimize(is_gadget_ident(idents[kMany / 2]));
    kill_all(idents);
}
BENCHMARK(LookUpAgain);

void Slider(benchmark::State& state)
{
    const Opened window;
    const int32_t slider = CreateGadget(15, window.Ident(), 10, 10, 200, 40, "value", 1000);
    int32_t value = 0;
    for (auto _ : state)
        SetValue(slider, value++ % 1000);
    KillGadget(0, slider);
}
BENCHMARK(Slider);

std::atomic<int64_t> sUpdates;

filter_result count_update(BMessage*, BHandler**, BMessageFilter*)
{
    sUpdates++;
    return B_DISPATCH_MESSAGE;
}

// The counter tells how often the window drew in a display frame's time.
void SliderRedraws(benchmark::State& state)
{
    const Opened window;
    const int32_t slider = CreateGadget(15, window.Ident(), 10, 10, 200, 40, "value", 1000);
    window.Object()->Lock();
    window.Object()->AddCommonFilter(new BMessageFilter('_UPD', count_update));
    window.Object()->Unlock();
    int32_t value = 0;
    sUpdates = 0;
    const nanotime_t start = system_time_nsecs();
    for (auto _ : state)
        SetValue(slider, value++ % 1000);
    state.counters["a_frame"] = static_cast<double>(sUpdates) / (seconds_since(start) * 60);
    KillGadget(0, slider);
}
BENCHMARK(SliderRedraws)->Iterations(1'000'000);

void Label(benchmark::State& state)
{
    const Opened window;
    const int32_t button = CreateGadget(1, window.Ident(), 10, 10, 200, 40, "label", 0);
    int32_t turn = 0;
    for (auto _ : state)
        SetLabel(button, turn++ % 2 == 0 ? "one label" : "another one");
    KillGadget(0, button);
}
BENCHMARK(Label);

// --- a window of two hundred

const char* const kLabels[] = {"One", "Two", "Three", nullptr};

// Ten kinds in turn, in a grid of 10 times 20.
std::vector<int32_t> make_mixed(int32_t window)
{
    const int32_t kinds[] = {1, 2, 18, 15, 13, 17, 11, 19, 24, 12};
    std::vector<int32_t> idents;
    for (int32_t i = 0; i < 200; i++) {
        const int32_t kind = kinds[i % 10];
        const void* text = kind == 18 || kind == 19 ? static_cast<const void*>(kLabels) : "Label";
        const int32_t ident =
            CreateGadget(kind, window, i % 10 * 80, i / 10 * 30, 76, 28, text, 100);
        SetValue(ident, 40);
        idents.push_back(ident);
    }
    return idents;
}

std::atomic<double> sRedrawn;

// On the window's thread, the only one that draws it: its seconds for one of ten redraws.
void redraw(int32_t, int32_t)
{
    auto* window = dynamic_cast<BWindow*>(BLooper::LooperForThread(find_thread(nullptr)));
    BView* top = window->ChildAt(0);
    const double start = own_seconds();
    for (int i = 0; i < 10; i++) {
        top->Invalidate();
        for (BView* view = top->ChildAt(0); view != nullptr; view = view->NextSibling())
            view->Invalidate();
        window->UpdateIfNeeded();
    }
    sRedrawn = (own_seconds() - start) / 10;
}

void Redraw(benchmark::State& state)
{
    inject_display_scale(static_cast<float>(state.range(0)));
    const Opened window;
    const std::vector<int32_t> idents = make_mixed(window.Ident());
    SetHandlerForWindow(window.Ident(), PLINTH_KEY, reinterpret_cast<void*>(redraw));
    ActivateWindow(window.Ident());
    snooze(100'000);
    for (auto _ : state) {
        sRedrawn = 0;
        inject_text("a");
        while (sRedrawn == 0)
            snooze(100);
        state.SetIterationTime(sRedrawn);
    }
    kill_all(idents);
    inject_display_scale(1);
}
BENCHMARK(Redraw)
    ->ArgName("scale")
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(100);

QWidget* new_widget(int i, QWidget* parent)
{
    const QString label = QStringLiteral("Label");
    switch (i % 10) {
        case 0:
            return new QPushButton(label, parent);
        case 1:
            return new QCheckBox(label, parent);
        case 2:
            return new QRadioButton(label, parent);
        case 3:
            return new QSlider(Qt::Horizontal, parent);
        case 4:
            return new QScrollBar(Qt::Horizontal, parent);
        case 5: {
            auto* bar = new QProgressBar(parent);
            bar->setValue(40);
            return bar;
        }
        case 7: {
            auto* box = new QComboBox(parent);
            box->addItems({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
            return box;
        }
        case 8:
            return new QGroupBox(label, parent);
        default:
            return new QLabel(label, parent);
    }
}

void RedrawOfQt(benchmark::State& state)
{
    static int argc = 1;
    static char name[] = "gadget_bench";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: the benchmark's thread is not the one that the process ends on.
    static auto* const application = new QApplication(argc, argv);
    static_cast<void>(application);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Windows")));
    QWidget window;
    window.resize(800, 600);
    for (int i = 0; i < 200; i++)
        new_widget(i, &window)->setGeometry(i % 10 * 80, i / 10 * 30, 77, 29);
    window.show();
    QCoreApplication::processEvents();
    for (auto _ : state) {
        const double start = own_seconds();
        window.repaint();
        state.SetIterationTime(own_seconds() - start);
    }
}
BENCHMARK(RedrawOfQt)->Unit(benchmark::kMicrosecond)->UseManualTime()->Iterations(100);

void Memory(benchmark::State& state)
{
    size_t used = 0;
    for (auto _ : state) {
        const Opened window;
        const size_t before = mallinfo2().uordblks;
        const std::vector<int32_t> idents = make_mixed(window.Ident());
        window.Object()->Lock();
        window.Object()->UpdateIfNeeded();
        window.Object()->Unlock();
        used = mallinfo2().uordblks - before;
        kill_all(idents);
    }
    state.counters["kB"] = static_cast<double>(used) / 1024;
}
BENCHMARK(Memory)->Unit(benchmark::kMicrosecond);

// How often the threads of the process but this one have gone to sleep.
int64_t count_sleeps()
{
    int64_t sum = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        if (task.path().filename() == std::to_string(gettid()))
            continue;
        std::ifstream status(task.path() / "status");
        for (std::string word; status >> word;) {
            if (word == "voluntary_ctxt_switches:" && status >> word)
                sum += std::stoll(word);
        }
    }
    return sum;
}

// The counters tell how often a thread woke in a second while a tool tip waits over a gadget, and
// while the pointer rests over none.
void TipAtRest(benchmark::State& state)
{
    const Opened window;
    const int32_t button = CreateGadget(1, window.Ident(), 10, 10, 100, 24, "tip", 0);
    ToolTipsWindow(window.Ident(), 1);
    SetTipsWindow(button, "a text");
    const auto wakes = [](int32_t x, int32_t y, bigtime_t after_us) {
        inject_pointer(x, y);
        snooze(after_us);
        const int64_t before = count_sleeps();
        snooze(500'000);
        return static_cast<double>(count_sleeps() - before) * 2;
    };
    for (auto _ : state) {
        state.counters["elsewhere"] = wakes(400, 400, 1'500'000);
        state.counters["waiting"] = wakes(50, 40, 200'000);
        state.counters["shown"] = wakes(51, 40, 1'500'000);
    }
    KillGadget(0, button);
}
BENCHMARK(TipAtRest)->Iterations(1);

// --- the hand

std::atomic<nanotime_t> sHeard;

void on_action() { sHeard.store(system_time_nsecs(), std::memory_order_release); }

void ClickToHandler(benchmark::State& state)
{
    const Opened window;
    const int32_t button = CreateGadget(1, window.Ident(), 10, 10, 100, 24, "click", 0);
    SetHandlerForGadget(button, PLINTH_GADGET_ACTION, reinterpret_cast<void*>(on_action));
    inject_pointer(50, 40);
    std::vector<nanotime_t> delays;
    for (auto _ : state) {
        sHeard = 0;
        inject_button(1, true);
        snooze(2000);  // as a hand holds it
        const nanotime_t released = system_time_nsecs();
        inject_button(1, false);
        while (sHeard.load(std::memory_order_acquire) == 0) {
        }
        delays.push_back(sHeard - released);
        state.SetIterationTime(static_cast<double>(delays.back()) * 1e-9);
        snooze(1000);
    }
    std::sort(delays.begin(), delays.end());
    state.counters["median_us"] = static_cast<double>(delays[delays.size() / 2]) / 1000;
    state.counters["p99_us"] = static_cast<double>(delays[delays.size() * 99 / 100]) / 1000;
    KillGadget(0, button);
}
BENCHMARK(ClickToHandler)->UseManualTime()->Iterations(1000);

}  // namespace

int main(int argc, char** argv) { return bench_main(argc, argv); }
