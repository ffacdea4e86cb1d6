#ifndef BENCH_LISTS_ROWS_H
#define BENCH_LISTS_ROWS_H

// What is measured of every library's lists: the same rows, and one act at a time on a new list.

#include <benchmark/benchmark.h>

#include <stdio.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

const int kRows = 100000, kTops = 100;

// The X display that the program was started on, "" for none.
extern std::string gDisplay;

// Twenty bytes each, in no order.
inline const std::vector<std::string>& texts()
{
    static const auto* const all = [] {
        auto* made = new std::vector<std::string>;
        std::mt19937 random(1);
        for (int i = 0; i < kRows; i++) {
            char text[32];
            snprintf(text, sizeof(text), "%010u row %5d", unsigned(random()), i);
            made->push_back(text);
        }
        return made;
    }();
    return *all;
}

inline void set_each(benchmark::State& state, double count)
{
    state.counters["each"] = benchmark::Counter(
        count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Fills, measures what `act` does once, and starts anew with the next round.
template <class List, class Fill, class Act>
void once(benchmark::State& state, double count, Fill fill, Act act)
{
    for (auto _ : state) {
        state.PauseTiming();
        {
            auto list = std::make_unique<List>();
            fill(*list);
            list->Drawn();
            state.ResumeTiming();
            act(*list);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    set_each(state, count);
}

#define ROW(name) BENCHMARK(name)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime()

#endif  // BENCH_LISTS_ROWS_H
