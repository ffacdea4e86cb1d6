#ifndef BENCH_PROGRAM_MAIN_H
#define BENCH_PROGRAM_MAIN_H

// Runs the benchmarks as a compiled program runs, beside the application's loop, on the in-memory
// display.

#include <benchmark/benchmark.h>

#include <Application.h>
#include <AppDefs.h>
#include <plinth.h>

#include <cstdlib>

inline void** gRegistry = nullptr;

inline void run_all_benchmarks()
{
    gRegistry = Open_Sys(1);
    benchmark::RunSpecifiedBenchmarks();
    be_app->PostMessage(B_QUIT_REQUESTED);
}

inline int bench_main(int argc, char** argv)
{
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    benchmark::Initialize(&argc, argv);
    return PlinthStart(argc, argv, run_all_benchmarks);
}

#endif  // BENCH_PROGRAM_MAIN_H
