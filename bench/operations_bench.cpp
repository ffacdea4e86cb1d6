// What a program's calls of fonts and windows cost it, with their look-ups and locks. Those of
// windows do not wait for the screen: nor does one that is behind with a million of them.

#include "program_main.h"

#include <Window.h>

#include <cstdio>

namespace {

int32_t window()
{
    static const int32_t ident = OpenWindow(100, 100, 299, 199);
    return ident;
}

BWindow* platform_window() { return reinterpret_cast<BWindow*>(GetAdress(window())); }

void FontSize(benchmark::State& state)
{
    const int32_t target = window();
    for (int32_t i = 0; auto _ : state)
        SetFontSize(target, 8 + (i++ & 15));
}
BENCHMARK(FontSize);

void FontType(benchmark::State& state)
{
    const int32_t target = window();
    for (int32_t i = 0; auto _ : state)
        SetFontType(target, i++ % 3);
}
BENCHMARK(FontType);

void OpenAndCloseFont(benchmark::State& state)
{
    for (auto _ : state)
        CloseFont(OpenFont("Noto Sans", "Bold", 14));
}
BENCHMARK(OpenAndCloseFont);

void FontIsThere(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(FontExists("noto sans"));
}
BENCHMARK(FontIsThere);

void FontIsNotThere(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(FontExists("Swiss 721"));
}
BENCHMARK(FontIsNotThere);

void CountFonts(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(CountFontList());
}
BENCHMARK(CountFonts);

// With the window's hook, on its own thread, going on beside.
void Move(benchmark::State& state)
{
    const int32_t target = window();
    for (int32_t i = 0; auto _ : state) {
        MoveWindow(target, 100 + (i & 63), 100);
        i++;
    }
}
BENCHMARK(Move);

void MoveOfThePlatform(benchmark::State& state)
{
    BWindow* target = platform_window();
    for (int32_t i = 0; auto _ : state) {
        target->MoveTo(static_cast<float>(100 + (i & 63)), 100);
        i++;
    }
}
BENCHMARK(MoveOfThePlatform);

void Title(benchmark::State& state)
{
    const int32_t target = window();
    char title[32];
    for (int32_t i = 0; auto _ : state) {
        snprintf(title, sizeof(title), "%d", i++);
        SetWindowTitle(target, title);
    }
}
BENCHMARK(Title);

void Place(benchmark::State& state)
{
    const int32_t target = window();
    for (auto _ : state)
        benchmark::DoNotOptimize(GetWindowPosition(target, 2));
}
BENCHMARK(Place);

}  // namespace

int main(int argc, char** argv) { return bench_main(argc, argv); }
