// File channels beside bare C library streams, with a thousand other channels open. The files lie
// in a folder of their own below $TMPDIR or /tmp.

#include <plinth.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <sys/resource.h>

namespace {

const int kOthers = 1000;
const int64_t kTextBytes = 100 << 20;
const int64_t kNumbers = 10000000;  // 80 MB of doubles

std::filesystem::path sFolder;

std::string path_of(const char* name) { return (sFolder / name).string(); }

void write_text(const std::string& path)
{
    std::mt19937 random(3);
    FILE* file = fopen(path.c_str(), "w");
    std::string line;
    for (int64_t written = 0; written < kTextBytes; written += line.size()) {
        line.assign(20 + random() % 80, 'x');
        line += '\n';
        fwrite(line.data(), 1, line.size(), file);
    }
    fclose(file);
}

// What is read does not come from what is timed: the rows run in any order.
void write_numbers_to(const std::string& path)
{
    FILE* file = fopen(path.c_str(), "w");
    for (int64_t i = 0; i < kNumbers; i++) {
        const auto number = static_cast<double>(i);
        fwrite_unlocked(&number, sizeof(number), 1, file);
    }
    fclose(file);
}

void read_lines(benchmark::State& state)
{
    for (auto _ : state) {
        int32_t ch = OpenFile(path_of("text").c_str(), 0);
        char line[256];
        int64_t lines = 0;
        while (ReadFile(ch, line))
            lines++;
        benchmark::DoNotOptimize(lines);
        CloseFile(ch);
    }
}

void read_lines_bare(benchmark::State& state)
{
    for (auto _ : state) {
        FILE* file = fopen(path_of("text").c_str(), "r+");
        char line[256];
        int64_t lines = 0;
        while (fgets(line, sizeof(line), file) != nullptr) {
            size_t length = strlen(line);
            if (length > 0 && line[length - 1] == '\n')
                line[length - 1] = '\0';
            benchmark::DoNotOptimize(line);
            lines++;
        }
        fclose(file);
    }
}

template <class Number, bool (*Write)(int32_t, Number)>
void write_numbers(benchmark::State& state)
{
    for (auto _ : state) {
        int32_t ch = OpenFile(path_of("written").c_str(), 1);
        for (int64_t i = 0; i < kNumbers; i++)
            Write(ch, static_cast<Number>(i));
        CloseFile(ch);
    }
}

template <class Number>
void write_numbers_bare(benchmark::State& state)
{
    for (auto _ : state) {
        FILE* file = fopen(path_of("written").c_str(), "w+");
        for (int64_t i = 0; i < kNumbers; i++) {
            auto number = static_cast<Number>(i);
            fwrite_unlocked(&number, sizeof(number), 1, file);
        }
        fclose(file);
    }
}

template <class Number, bool (*Read)(int32_t, Number*)>
void read_numbers(benchmark::State& state)
{
    for (auto _ : state) {
        int32_t ch = OpenFile(path_of("numbers").c_str(), 0);
        Number number = 0;
        for (int64_t i = 0; i < kNumbers; i++) {
            Read(ch, &number);
            benchmark::DoNotOptimize(number);
        }
        CloseFile(ch);
    }
}

template <class Number>
void read_numbers_bare(benchmark::State& state)
{
    for (auto _ : state) {
        FILE* file = fopen(path_of("numbers").c_str(), "r+");
        Number number = 0;
        for (int64_t i = 0; i < kNumbers; i++) {
            if (fread_unlocked(&number, sizeof(number), 1, file) == 1)
                benchmark::DoNotOptimize(number);
        }
        fclose(file);
    }
}

void read_at_random(benchmark::State& state)
{
    std::mt19937 random(6);
    int32_t ch = OpenFile(path_of("numbers").c_str(), 0);
    for (auto _ : state) {
        double number = 0;
        SeekFile(ch, 0, static_cast<int32_t>(random() % kNumbers * 8));
        ReadDouble(ch, &number);
        benchmark::DoNotOptimize(number);
    }
    CloseFile(ch);
}

void read_at_random_bare(benchmark::State& state)
{
    std::mt19937 random(6);
    FILE* file = fopen(path_of("numbers").c_str(), "r+");
    for (auto _ : state) {
        double number = 0;
        fseek(file, static_cast<int32_t>(random() % kNumbers * 8), SEEK_SET);
        if (fread(&number, sizeof(number), 1, file) == 1)
            benchmark::DoNotOptimize(number);
    }
    fclose(file);
}

// Two channels in turn: the one found last is not the one wanted.
void write_in_turn(benchmark::State& state)
{
    int32_t channels[] = {OpenFile(path_of("a").c_str(), 1), OpenFile(path_of("b").c_str(), 1)};
    int32_t i = 0;
    for (auto _ : state) {
        WriteInteger(channels[i & 1], i);
        i++;
    }
    CloseFile(channels[0]);
    CloseFile(channels[1]);
}

void write_in_turn_bare(benchmark::State& state)
{
    FILE* files[] = {fopen(path_of("a").c_str(), "w+"), fopen(path_of("b").c_str(), "w+")};
    int32_t i = 0;
    for (auto _ : state) {
        fwrite_unlocked(&i, sizeof(i), 1, files[i & 1]);
        i++;
    }
    fclose(files[0]);
    fclose(files[1]);
}

void add(const char* name, void (*ours)(benchmark::State&), void (*bare)(benchmark::State&))
{
    benchmark::RegisterBenchmark((std::string(name) + "/ours").c_str(), ours);
    benchmark::RegisterBenchmark((std::string(name) + "/bare").c_str(), bare);
}

}  // namespace

int main(int argc, char** argv)
{
    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
    std::string pattern = (std::filesystem::temp_directory_path() / "plinth-bench-XXXXXX").string();
    sFolder = mkdtemp(pattern.data());
    write_text(path_of("text"));
    write_numbers_to(path_of("numbers"));

    void** table = Open_Sys(1);
    for (int i = 0; i < kOthers; i++)
        OpenFile(path_of("other").c_str(), 1);

    add("ReadFile, 100 MB of lines", read_lines, read_lines_bare);
    add("WriteInteger, 10 million", write_numbers<int32_t, WriteInteger>,
        write_numbers_bare<int32_t>);
    add("ReadInteger, 10 million", read_numbers<int32_t, ReadInteger>, read_numbers_bare<int32_t>);
    add("WriteDouble, 10 million", write_numbers<double, WriteDouble>, write_numbers_bare<double>);
    add("ReadDouble, 10 million", read_numbers<double, ReadDouble>, read_numbers_bare<double>);
    add("SeekFile and ReadDouble in 80 MB", read_at_random, read_at_random_bare);
    add("WriteInteger, two channels in turn", write_in_turn, write_in_turn_bare);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();

    Close_Sys(table);
    std::filesystem::remove_all(sFolder);
    return 0;
}
