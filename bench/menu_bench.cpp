// Menus: building them from lines, changing one item among many, and from the press on a title to
// the first pixels of its menu.

#include "program_main.h"

#include <Injection.h>

#include <Application.h>
#include <Menu.h>
#include <MenuBar.h>
#include <MenuItem.h>
#include <OS.h>
#include <Window.h>

#include <string>
#include <vector>

namespace {

// A title and `count` items with codes from 1.
class Description {
public:
    explicit Description(int count)
    {
        fTexts.push_back("t*00000000Menu");
        for (int i = 1; i <= count; i++) {
            char line[40];
            snprintf(line, sizeof(line), "i*0010%04dItem number %d", i, i);
            fTexts.push_back(line);
        }
        fTexts.push_back("q");
        for (const std::string& text : fTexts)
            fLines.push_back(text.c_str());
    }
    const char* const* Lines() const { return fLines.data(); }

private:
    std::vector<std::string> fTexts;
    std::vector<const char*> fLines;
};

// The rate is that of lines.
void CreateMenuOfLines(benchmark::State& state)
{
    const Description description(1000);
    for (auto _ : state) {
        const int32_t menu = CreateMenu(description.Lines());
        state.PauseTiming();
        KillMenu(menu);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 1002);
}
BENCHMARK(CreateMenuOfLines)->Unit(benchmark::kMicrosecond);

void CheckOneOfThousand(benchmark::State& state)
{
    const Description description(1000);
    const int32_t window = OpenWindow(100, 100, 300, 200);
    const int32_t menu = CreateMenu(description.Lines());
    AttachMenuToWin(window, menu);
    int32_t turn = 0;
    for (auto _ : state) {
        SetCheckedLabel(window, 999, turn & 1);
        turn++;
    }
    RemoveMenu(window);
    KillMenu(menu);
    CloseWindow(window);
}
BENCHMARK(CheckOneOfThousand)->UseRealTime()->Unit(benchmark::kMicrosecond);

class DrawnMenu : public BMenu {
public:
    DrawnMenu() : BMenu("Menu") {}
    void Draw(BRect update) override
    {
        BMenu::Draw(update);
        drawn = true;
    }
    std::atomic<bool> drawn{false};
};

// Items of the state's number; until the menu has drawn itself all.
void PressUntilOpen(benchmark::State& state)
{
    auto* window = new BWindow(BRect(100, 100, 400, 300), "bench", B_TITLED_WINDOW, 0);
    auto* bar = new BMenuBar(BRect(0, 0, 10, 10), "bar");
    auto* menu = new DrawnMenu;
    for (int64_t i = 0; i < state.range(0); i++)
        menu->AddItem(new BMenuItem(("Item number " + std::to_string(i)).c_str(), nullptr));
    bar->AddItem(menu);
    window->AddChild(bar);
    window->Show();
    inject_pointer(110, 108);
    for (auto _ : state) {
        menu->drawn = false;
        inject_button(1, true);
        while (!menu->drawn)
            snooze(50);
        state.PauseTiming();
        inject_button(1, false);
        inject_key(0x01, true);
        inject_key(0x01, false);
        while (menu->Window() != nullptr)
            snooze(100);
        snooze(20000);
        state.ResumeTiming();
    }
    window->Lock();
    window->Quit();
}
BENCHMARK(PressUntilOpen)->Arg(30)->UseRealTime()->Iterations(50)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) { return bench_main(argc, argv); }
