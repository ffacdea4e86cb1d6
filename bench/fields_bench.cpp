// What a program's calls of entry fields and editors cost it, beside a document of Qt's.

#include "program_main.h"

#include <QTextBlock>
#include <QTextDocument>

#include <random>
#include <string>
#include <vector>

namespace {

const int32_t kLines = 200'000;
const size_t kLineLength = 49;  // ten megabytes in all

int32_t window()
{
    static const int32_t ident = OpenWindow(100, 100, 399, 299);
    return ident;
}

void SetAndGetString(benchmark::State& state)
{
    const int32_t field = CreateGadget(3, window(), 10, 10, 200, 24, "Name", 0);
    const char* const texts[] = {"first text", "second text"};
    for (int32_t i = 0; auto _ : state) {
        SetString(field, texts[i++ & 1]);
        benchmark::DoNotOptimize(GetString(field));
    }
    KillGadget(0, field);
}
BENCHMARK(SetAndGetString);

void SetAndGetString_Qt(benchmark::State& state)
{
    QTextDocument document;
    const QString texts[] = {"first text", "second text"};
    for (int32_t i = 0; auto _ : state) {
        document.setPlainText(texts[i++ & 1]);
        benchmark::DoNotOptimize(document.toPlainText());
    }
}
BENCHMARK(SetAndGetString_Qt);

std::string many_lines()
{
    std::string text;
    for (int32_t i = 0; i < kLines; i++) {
        text += "line " + std::to_string(i) + " ";
        text.resize(size_t(i + 1) * (kLineLength + 1) - 1, 'x');
        text += '\n';
    }
    return text;
}

// Lines at random, the same ones for all.
std::vector<int32_t> some_lines()
{
    std::mt19937 random(1);
    std::vector<int32_t> lines(4096);
    for (int32_t& line : lines)
        line = static_cast<int32_t>(random() % kLines);
    return lines;
}

int32_t full_editor()
{
    static const int32_t ident = [] {
        const int32_t made = CreateGadget(27, window(), 10, 40, 300, 200, nullptr, 0);
        TEditWordWrap(made, 0);
        TEditSetText(made, many_lines().c_str());
        return made;
    }();
    return ident;
}

void GetLine(benchmark::State& state)
{
    const int32_t editor = full_editor();
    const std::vector<int32_t> lines = some_lines();
    for (size_t i = 0; auto _ : state)
        benchmark::DoNotOptimize(TEditGetLine(editor, lines[i++ % lines.size()]));
}
BENCHMARK(GetLine);

void GetLine_Qt(benchmark::State& state)
{
    QTextDocument document;
    document.setPlainText(QString::fromStdString(many_lines()));
    const std::vector<int32_t> lines = some_lines();
    for (size_t i = 0; auto _ : state)
        benchmark::DoNotOptimize(document.findBlockByNumber(lines[i++ % lines.size()]).text());
}
BENCHMARK(GetLine_Qt);

// A word that is not there, over all of the text.
void Find(benchmark::State& state)
{
    const int32_t editor = full_editor();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            TEditFind(editor, "Linx", 0, static_cast<int32_t>(state.range(0))));
}
BENCHMARK(Find)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void Find_Qt(benchmark::State& state)
{
    QTextDocument document;
    document.setPlainText(QString::fromStdString(many_lines()));
    for (auto _ : state)
        benchmark::DoNotOptimize(document.find("Linx"));
}
BENCHMARK(Find_Qt)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return bench_main(argc, argv); }
