// Lists and tabs of a hundred thousand rows in a window that is shown, beside Qt's item views with
// a QStandardItemModel on its off-screen display, and beside GTK's tree view (lists_gtk.cpp).

#include "lists_rows.h"
#include "program_main.h"

#include <Application.h>
#include <Handler.h>
#include <Message.h>
#include <Messenger.h>
#include <View.h>
#include <Window.h>

#include <QApplication>
#include <QListView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTreeView>

#include <malloc.h>
#include <string.h>

#include <functional>

namespace {

const int32_t kFlat = 8, kOutline = 21;

BWindow* newest_window() { return be_app->WindowAt(be_app->CountWindows() - 1); }

// A list that shows forty rows.
class Ours {
public:
    explicit Ours(int32_t kind)
    {
        fWindow = OpenWindow(50, 50, 400, 740);
        ident = CreateGadget(kind, fWindow, 0, 0, 390, 40 * 18, nullptr, 0);
        window = newest_window();
        window->Sync();
    }
    ~Ours() { CloseWindow(fWindow), KillGadget(0, ident); }
    void Fill()
    {
        for (const std::string& text : texts())
            AddLvEntry(ident, text.c_str());
    }
    // Top rows with a thousand each.
    void FillTops()
    {
        for (int i = 0; i < kTops; i++)
            AddLvEntry(ident, texts()[i].c_str());
        for (int i = 0; i < kRows; i++)
            AddEntryInSub(ident, i / (kRows / kTops), texts()[i].c_str());
    }
    void Drawn()
    {
        window->Lock();
        window->UpdateIfNeeded();
        window->Unlock();
    }

    int32_t ident;
    BWindow* window;

private:
    int32_t fWindow;
};

void start_qt()
{
    static int argc = 1;
    static char name[] = "bench";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: the benchmark's thread is not the one that the process ends on.
    static auto* const app = new QApplication(argc, argv);
    static_cast<void>(app);
}

template <class View>
class Qts {
public:
    Qts()
    {
        start_qt();
        view = std::make_unique<View>();
        view->setEditTriggers(QAbstractItemView::NoEditTriggers);
        view->setSelectionMode(QAbstractItemView::ExtendedSelection);
        if constexpr (std::is_same_v<View, QTreeView>)
            view->setUniformRowHeights(true);
        else
            view->setUniformItemSizes(true);
        view->setModel(&model);
        view->resize(390, 40 * 18);
        view->show();
        QApplication::processEvents();
    }
    void Fill()
    {
        for (const std::string& text : texts())
            model.appendRow(new QStandardItem(QString::fromUtf8(text.c_str())));
    }
    void FillTops()
    {
        for (int i = 0; i < kTops; i++)
            model.appendRow(new QStandardItem(QString::fromUtf8(texts()[i].c_str())));
        for (int i = 0; i < kRows; i++)
            model.item(i / (kRows / kTops))
                ->appendRow(new QStandardItem(QString::fromUtf8(texts()[i].c_str())));
    }
    void Drawn() { QApplication::processEvents(); }

    QStandardItemModel model;
    std::unique_ptr<View> view;
};

struct Flat : Ours {
    Flat() : Ours(kFlat) {}
};
struct Outline : Ours {
    Outline() : Ours(kOutline) {}
};
using QtFlat = Qts<QListView>;
using QtOutline = Qts<QTreeView>;

template <class List>
void fill(List& list)
{
    list.Fill();
}
template <class List>
void fill_tops(List& list)
{
    list.FillTops();
}
template <class List>
void leave_empty(List&)
{
}

void AddRows(benchmark::State& state) { once<Flat>(state, kRows, leave_empty<Flat>, fill<Flat>); }
ROW(AddRows);
void QtAddRows(benchmark::State& state)
{
    once<QtFlat>(state, kRows, leave_empty<QtFlat>, fill<QtFlat>);
}
ROW(QtAddRows);

void AddRowsBelow(benchmark::State& state)
{
    once<Outline>(state, kRows, leave_empty<Outline>, fill_tops<Outline>);
}
ROW(AddRowsBelow);
void QtAddRowsBelow(benchmark::State& state)
{
    once<QtOutline>(state, kRows, leave_empty<QtOutline>, fill_tops<QtOutline>);
}
ROW(QtAddRowsBelow);

void AddRowsBelowTheLast(benchmark::State& state)
{
    once<Outline>(
        state, kRows,
        [](Outline& list) {
            for (int i = 0; i < kTops; i++)
                AddLvEntry(list.ident, texts()[i].c_str());
        },
        [](Outline& list) {
            for (const std::string& text : texts())
                AddEntryInSub(list.ident, kTops - 1, text.c_str());
        });
}
ROW(AddRowsBelowTheLast);

void Sort(benchmark::State& state)
{
    once<Flat>(state, 1, fill<Flat>, [](Flat& list) { SortLv(list.ident); });
}
ROW(Sort);
void QtSort(benchmark::State& state)
{
    once<QtFlat>(state, 1, fill<QtFlat>, [](QtFlat& list) { list.model.sort(0); });
}
ROW(QtSort);

void RemoveAtTheFront(benchmark::State& state)
{
    once<Flat>(state, kRows, fill<Flat>, [](Flat& list) {
        for (int i = 0; i < kRows; i++)
            RemoveItem(list.ident, 0);
    });
}
ROW(RemoveAtTheFront);
void QtRemoveAtTheFront(benchmark::State& state)
{
    once<QtFlat>(state, kRows, fill<QtFlat>, [](QtFlat& list) {
        for (int i = 0; i < kRows; i++)
            list.model.removeRow(0);
    });
}
ROW(QtRemoveAtTheFront);

uint32_t next_place(uint32_t& seed)
{
    seed = seed * 1664525 + 1013904223;
    return (seed >> 8) % kRows;
}

void GetAtRandom(benchmark::State& state)
{
    Flat list;
    list.Fill();
    uint32_t seed = 1;
    for (auto _ : state)
        benchmark::DoNotOptimize(*GetLvItem(list.ident, int32_t(next_place(seed))));
}
BENCHMARK(GetAtRandom);
// What a call costs whose row is in the processor's cache.
void GetTheSame(benchmark::State& state)
{
    Flat list;
    list.Fill();
    for (auto _ : state)
        benchmark::DoNotOptimize(*GetLvItem(list.ident, kRows / 2));
}
BENCHMARK(GetTheSame);
// The machine's own floor: the same texts in a vector, copied out at the same places. In turn, each
// place is known only once the text before it has come from memory.
void get_bare(benchmark::State& state, bool in_turn)
{
    const std::vector<std::string> rows = texts();
    static char copy[64];
    uint32_t seed = 1;
    for (auto _ : state) {
        strcpy(copy, rows[next_place(seed)].c_str());
        benchmark::DoNotOptimize(copy[0]);
        if (in_turn)
            seed += uint8_t(copy[0]) >> 7;  // 0, which nobody knows before
    }
}
void BareGetAtRandom(benchmark::State& state) { get_bare(state, false); }
BENCHMARK(BareGetAtRandom);
void BareGetInTurn(benchmark::State& state) { get_bare(state, true); }
BENCHMARK(BareGetInTurn);
void QtGetAtRandom(benchmark::State& state)
{
    QtFlat list;
    list.Fill();
    uint32_t seed = 1;
    for (auto _ : state) {
        const int place = int(next_place(seed));
        benchmark::DoNotOptimize(*list.model.item(place)->text().toUtf8().constData());
    }
}
BENCHMARK(QtGetAtRandom);

void SelectEverything(benchmark::State& state)
{
    once<Flat>(
        state, 1,
        [](Flat& list) {
            list.Fill();
            SetMultiSelect(list.ident, 1);
        },
        [](Flat& list) { LvSelectAll(list.ident); });
}
ROW(SelectEverything);
void QtSelectEverything(benchmark::State& state)
{
    once<QtFlat>(state, 1, fill<QtFlat>, [](QtFlat& list) { list.view->selectAll(); });
}
ROW(QtSelectEverything);

void SelectNothing(benchmark::State& state)
{
    once<Flat>(
        state, 1,
        [](Flat& list) {
            list.Fill();
            SetMultiSelect(list.ident, 1);
            LvSelectAll(list.ident);
        },
        [](Flat& list) { LvSelectNone(list.ident); });
}
ROW(SelectNothing);

void ExpandEverything(benchmark::State& state)
{
    once<Outline>(
        state, 1,
        [](Outline& list) {
            list.FillTops();
            LvCollapseAll(list.ident);
        },
        [](Outline& list) { LvExpandAll(list.ident); });
}
ROW(ExpandEverything);
void QtExpandEverything(benchmark::State& state)
{
    once<QtOutline>(state, 1, fill_tops<QtOutline>,
                    [](QtOutline& list) { list.view->expandAll(); });
}
ROW(QtExpandEverything);

void Clear(benchmark::State& state)
{
    once<Flat>(state, 1, fill<Flat>, [](Flat& list) { ClearListView(list.ident); });
}
ROW(Clear);
void QtClear(benchmark::State& state)
{
    once<QtFlat>(state, 1, fill<QtFlat>, [](QtFlat& list) { list.model.clear(); });
}
ROW(QtClear);

// The view of the newest gadget in a window: the list in its scroll view.
BView* list_view(BWindow* window) { return window->ChildAt(0)->ChildAt(0)->ChildAt(0); }

// Acts on the thread of a window, where it draws.
class Runner : public BHandler {
public:
    explicit Runner(std::function<void()> act) : fAct(std::move(act)) {}
    void MessageReceived(BMessage* message) override
    {
        fAct();
        message->SendReply(B_REPLY);
    }
    void RunIn(BWindow* window)
    {
        window->Lock();
        window->AddHandler(this);
        window->Unlock();
        BMessage request('run '), reply;
        BMessenger(this).SendMessage(&request, &reply);
        window->Lock();
        window->RemoveHandler(this);
        window->Unlock();
    }

private:
    const std::function<void()> fAct;
};

void ScrollByPage(benchmark::State& state)
{
    Flat list;
    list.Fill();
    BView* view = list_view(list.window);
    Runner([&] {
        const float page = view->Bounds().Height();
        float y = 0;
        for (auto _ : state) {
            y = y > 1e6f ? 0 : y + page;
            view->ScrollTo(0, y);
            list.window->UpdateIfNeeded();
        }
    }).RunIn(list.window);
}
BENCHMARK(ScrollByPage)->Unit(benchmark::kMicrosecond);
void QtScrollByPage(benchmark::State& state)
{
    QtFlat list;
    list.Fill();
    QScrollBar* bar = list.view->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() >= bar->maximum() ? 0 : bar->value() + bar->pageStep());
        QApplication::processEvents();
    }
}
BENCHMARK(QtScrollByPage)->Unit(benchmark::kMicrosecond);

size_t used_bytes() { return mallinfo2().uordblks; }

// The counter is the number of bytes a row.
template <class List>
void measure_memory(benchmark::State& state)
{
    texts();
    for (auto _ : state) {
        List list;
        const size_t before = used_bytes();
        list.Fill();
        state.counters["bytes"] = double(used_bytes() - before) / kRows;
    }
}
void MemoryOfRows(benchmark::State& state) { measure_memory<Flat>(state); }
BENCHMARK(MemoryOfRows)->Iterations(1);
void QtMemoryOfRows(benchmark::State& state) { measure_memory<QtFlat>(state); }
BENCHMARK(QtMemoryOfRows)->Iterations(1);

// Fifty gadgets on each page; until it is drawn.
void SwitchTabs(benchmark::State& state)
{
    const int32_t own = OpenWindow(50, 50, 500, 400);
    const int32_t tabs = CreateGadget(25, own, 0, 0, 480, 380, nullptr, 0);
    std::vector<int32_t> idents = {tabs};
    for (int page = 0; page < 2; page++) {
        AddTab(tabs, "page");
        for (int i = 0; i < 50; i++) {
            idents.push_back(CreateGadget(1, own, 5 + i % 5 * 90, i / 5 * 30, 80, 24, "button", 0));
            AddGadgetInTab(idents.back(), tabs, page);
        }
    }
    BWindow* window = newest_window();
    int32_t turn = 0;
    Runner([&] {
        for (auto _ : state) {
            TabSelect(tabs, ++turn & 1);
            window->UpdateIfNeeded();
        }
    }).RunIn(window);
    CloseWindow(own);
    for (const int32_t ident : idents)
        KillGadget(0, ident);
}
BENCHMARK(SwitchTabs)->Unit(benchmark::kMicrosecond);

}  // namespace

std::string gDisplay;

int main(int argc, char** argv)
{
    const char* display = getenv("DISPLAY");
    gDisplay = display != nullptr ? display : "";
    return bench_main(argc, argv);
}
