// Conversions between numbers and text beside the C library's, on sixteen values in turn: prices
// with three decimals, and doubles of any size.

#include <plinth.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

const size_t kValues = 16;
const size_t kSlotSize = 257;

char sSlots[16][kSlotSize];
unsigned sIndex;

char* take()
{
    sIndex = (sIndex + 1) % 16;
    return sSlots[sIndex];
}

struct Values {
    std::vector<double> numbers;
    std::vector<std::string> texts;  // 17 digits at most
    std::vector<std::string> comma_texts;
};

Values make_values(bool is_wild)
{
    std::mt19937_64 random(7);
    Values values;
    for (size_t i = 0; i < kValues; i++) {
        const uint64_t bits = random();
        double x = static_cast<double>(static_cast<int64_t>(bits % 2000000000) - 1000000000) / 1000;
        const uint64_t finite = bits & ~(1ull << 62);
        if (is_wild)
            memcpy(&x, &finite, sizeof(x));
        values.numbers.push_back(x);
        char text[64];
        snprintf(text, sizeof(text), "%.17g", x);
        if (!is_wild)
            snprintf(text, sizeof(text), "%.3f", x);
        values.texts.push_back(text);
        if (char* point = strchr(text, '.'))
            *point = ',';
        values.comma_texts.push_back(text);
    }
    return values;
}

const Values kPrices = make_values(false);
const Values kWild = make_values(true);

template <class Work>
void run(benchmark::State& state, const Values& values, Work work)
{
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(work(values, i % kValues));
        benchmark::ClobberMemory();
        i++;
    }
}

template <class Ours, class Bare>
void compare(const std::string& name, Ours ours, Bare bare)
{
    for (const auto& [set, values] : {std::pair("prices", &kPrices), std::pair("wild", &kWild)}) {
        benchmark::RegisterBenchmark(
            (name + "/" + set + "/ours").c_str(),
            [=, values = values](benchmark::State& state) { run(state, *values, ours); });
        benchmark::RegisterBenchmark(
            (name + "/" + set + "/bare").c_str(),
            [=, values = values](benchmark::State& state) { run(state, *values, bare); });
    }
}

uint32_t integer(size_t i) { return static_cast<uint32_t>(i * 0x9E3779B9u) >> (i * 2); }

}  // namespace

int main(int argc, char** argv)
{
    compare(
        "Str", [](const Values& v, size_t i) { return Str(v.numbers[i]); },
        [](const Values& v, size_t i) { return snprintf(take(), kSlotSize, "%g", v.numbers[i]); });
    compare(
        "Format %.2f", [](const Values& v, size_t i) { return Format(v.numbers[i], "%.2f"); },
        [](const Values& v, size_t i) {
            return snprintf(take(), kSlotSize, "%.2f", v.numbers[i]);
        });
    compare(
        "Val", [](const Values& v, size_t i) { return Val(v.texts[i].c_str()); },
        [](const Values& v, size_t i) { return strtod(v.texts[i].c_str(), nullptr); });
    compare(
        "Cdbl", [](const Values& v, size_t i) { return Cdbl(v.comma_texts[i].c_str()); },
        [](const Values& v, size_t i) { return strtod(v.texts[i].c_str(), nullptr); });
    compare(
        "Hex", [](const Values&, size_t i) { return Hex(integer(i)); },
        [](const Values&, size_t i) { return snprintf(take(), kSlotSize, "%X", integer(i)); });
    compare(
        "Oct", [](const Values&, size_t i) { return Oct(integer(i)); },
        [](const Values&, size_t i) { return snprintf(take(), kSlotSize, "%o", integer(i)); });
    compare(
        "Bin", [](const Values&, size_t i) { return Bin(static_cast<int32_t>(integer(i))); },
        [](const Values&, size_t i) { return snprintf(take(), kSlotSize, "%X", integer(i)); });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
