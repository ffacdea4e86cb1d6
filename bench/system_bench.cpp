// The clock, the clipboard and starting programs beside what the host offers itself.

#include "program_main.h"

#include <Clipboard.h>
#include <OS.h>

#include <spawn.h>
#include <sys/wait.h>
#include <time.h>

#include <cstdio>
#include <string>

namespace {

void ticks_bare(benchmark::State& state)
{
    for (auto _ : state) {
        timespec now;
        clock_gettime(CLOCK_MONOTONIC, &now);
        benchmark::DoNotOptimize(now.tv_sec * 1000000 + now.tv_nsec / 1000);
    }
}

void ticks(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(GetTicks(1));
}

void time_bare(benchmark::State& state)
{
    char text[64];
    for (auto _ : state) {
        const time_t now = time(nullptr);
        struct tm local;
        localtime_r(&now, &local);
        strftime(text, sizeof(text), "%H:%M:%S", &local);
        benchmark::DoNotOptimize(text[0]);
    }
}

void time_text(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(GetTime()[0]);
}

void date_bare(benchmark::State& state)
{
    char text[64];
    for (auto _ : state) {
        const time_t now = time(nullptr);
        struct tm local;
        localtime_r(&now, &local);
        snprintf(text, sizeof(text), "%02d/%02d/%04d", local.tm_mday, local.tm_mon + 1,
                 local.tm_year + 1900);
        benchmark::DoNotOptimize(text[0]);
    }
}

void date_text(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(GetDate()[0]);
}

// A text goes to the clipboard of the display in memory and comes back.
void clipboard_text(benchmark::State& state)
{
    const std::string text(static_cast<size_t>(state.range(0)), 'x');
    for (auto _ : state) {
        SetStringClipboard(text.c_str());
        benchmark::DoNotOptimize(GetStringClipboard()[0]);
    }
}

void clipboard_again(benchmark::State& state)
{
    SetStringClipboard("some text");
    for (auto _ : state)
        benchmark::DoNotOptimize(GetStringClipboard()[0]);
}

void run_bare(benchmark::State& state)
{
    char path[] = "/bin/true";
    char* const arguments[] = {path, nullptr};
    for (auto _ : state) {
        pid_t process;
        posix_spawn(&process, path, nullptr, nullptr, arguments, environ);
        int status;
        waitpid(process, &status, 0);
    }
}

void run_program(benchmark::State& state)
{
    for (auto _ : state) {
        status_t status;
        wait_for_thread(RunProg("/bin/true", nullptr), &status);
    }
}

BENCHMARK(ticks_bare);
BENCHMARK(ticks);
BENCHMARK(time_bare);
BENCHMARK(time_text);
BENCHMARK(date_bare);
BENCHMARK(date_text);
BENCHMARK(clipboard_text)->Arg(20)->Arg(100000);
BENCHMARK(clipboard_again);
BENCHMARK(run_bare)->UseRealTime();
BENCHMARK(run_program)->UseRealTime();

}  // namespace

int main(int argc, char** argv) { return bench_main(argc, argv); }
