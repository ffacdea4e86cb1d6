// String functions beside the cheapest straightforward code that puts the same bytes into static
// slots, on sixteen texts in turn: of 8 to 40 bytes ("short") and of 200 ("long").

#include <plinth.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#pragma GCC diagnostic ignored "-Wstringop-truncation"  // slots without terminator are meant

namespace {

const size_t kSlotSize = 257;
const size_t kTexts = 16;

char sSlots[17][kSlotSize];
unsigned sIndex;

char* take()
{
    sIndex = sIndex == 15 ? 0 : sIndex + 1;
    return sSlots[sIndex];
}

struct Texts {
    std::vector<std::string> texts;
    const char* at(size_t i) const { return texts[i % kTexts].c_str(); }
    int32_t length(size_t i) const { return static_cast<int32_t>(texts[i % kTexts].size()); }
};

Texts random_texts(size_t shortest, size_t longest)
{
    std::mt19937 random(4);
    Texts made;
    for (size_t i = 0; i < kTexts; i++) {
        std::string text(shortest + random() % (longest - shortest + 1), ' ');
        for (char& c : text)
            c = "abcdefghijklmnopqrstuvwxyz"[random() % 26];
        text.replace(0, 2, "  ");  // blanks to trim
        text[text.size() - 2] = ' ';
        made.texts.push_back(text);
    }
    return made;
}

const Texts kShort = random_texts(8, 40);
const Texts kLong = random_texts(200, 200);

// Both sides are called, as a program calls a library.
template <class Work>
[[gnu::noinline]] const char* call(const Work& work, const char* text, int32_t length)
{
    return reinterpret_cast<const char*>(work(text, length));
}

template <class Work>
void run(benchmark::State& state, const Texts& texts, Work work)
{
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(call(work, texts.at(i), texts.length(i)));
        benchmark::ClobberMemory();
        i++;
    }
}

// Registers both sides of a call, for both sets of texts.
template <class Ours, class Bare>
void compare(const std::string& name, Ours ours, Bare bare)
{
    for (const auto& [set, texts] : {std::pair("short", &kShort), std::pair("long", &kLong)}) {
        benchmark::RegisterBenchmark(
            (name + "/" + set + "/ours").c_str(),
            [=, texts = texts](benchmark::State& state) { run(state, *texts, ours); });
        benchmark::RegisterBenchmark(
            (name + "/" + set + "/bare").c_str(),
            [=, texts = texts](benchmark::State& state) { run(state, *texts, bare); });
    }
}

// Both sides of a call on one text, held in sixteen copies.
template <class Ours, class Bare>
void compare_on(const std::string& name, const std::string& text, Ours ours, Bare bare)
{
    auto* texts = new Texts{std::vector<std::string>(kTexts, text)};  // lives with the benchmark
    benchmark::RegisterBenchmark((name + "/ours").c_str(),
                                 [=](benchmark::State& state) { run(state, *texts, ours); });
    benchmark::RegisterBenchmark((name + "/bare").c_str(),
                                 [=](benchmark::State& state) { run(state, *texts, bare); });
}

// What a search leaves: sixteen slots taken, a piece of the text in every other.
void write_pieces(const char* text, size_t width)
{
    for (int i = 0; i < 8; i++) {
        char* slot = take();
        take();
        memcpy(slot, text + i, width);
        slot[width] = '\0';
    }
}

void compare_searches()
{
    auto instr = [](const char* find) {
        return [=](const char* s, int32_t) { return static_cast<intptr_t>(Instr(0, s, find)); };
    };
    auto search = [](const char* find) {
        return [=](const char* s, int32_t) { return strstr(s, find); };
    };
    auto search_and_write = [](const char* find) {
        return [=](const char* s, int32_t length) {
            const char* hit = find[1] == '\0' ? static_cast<const char*>(memchr(s, find[0], length))
                                              : strstr(s, find);
            write_pieces(s, strlen(find));
            return hit;
        };
    };
    std::string letters(200, ' ');
    std::mt19937 random(5);
    for (char& c : letters)
        c = "abcdefghijklmnop"[random() % 16];
    const std::string ending = letters.substr(0, 195) + "vwxyz";
    struct {
        const char *name, *find;
        const std::string& text;
    } cases[] = {
        {"Instr/hit at the end", "vwxyz", ending},
        {"Instr/5-byte miss", "vwxyz", letters},
        {"Instr/1-byte miss", "z", letters},
    };
    for (auto& c : cases) {
        compare_on(c.name, c.text, instr(c.find), search_and_write(c.find));
        compare_on(std::string(c.name) + "/search alone", c.text, instr(c.find), search(c.find));
    }
    const std::string bad(200, 'a');
    compare_on("Instr/bad case", bad, instr("aaaab"), search_and_write("aaaab"));
    compare_on("Instr/bad case/search alone", bad, instr("aaaab"), search("aaaab"));
}

void compare_with_slots()
{
    compare(
        "Left", [](const char* s, int32_t n) { return Left(s, n / 2); },
        [](const char* s, int32_t n) { return strncpy(take(), s, std::min(n / 2, 257)); });
    compare(
        "Right", [](const char* s, int32_t n) { return Right(s, n / 2); },
        [](const char* s, int32_t n) {
            size_t length = strlen(s);
            return strncpy(take(), s + (length - n / 2), std::min(n / 2, 257));
        });
    auto mid = [](const char* s, size_t start, size_t count) {
        char* slot = take();
        take();
        if (start > strlen(s))
            slot[0] = '\0';
        else
            strncpy(slot, s + start - 1, std::min<size_t>(count, 257));
        slot[count] = '\0';
        return slot;
    };
    compare(
        "Mid", [](const char* s, int32_t n) { return Mid(s, 3, n / 2); },
        [=](const char* s, int32_t n) { return mid(s, 3, n / 2); });
    compare(
        "MidStr", [](const char* s, int32_t) { return MidStr(s, 3); },
        [=](const char* s, int32_t) { return mid(s, 3, strlen(s)); });
    compare(
        "Space", [](const char*, int32_t n) { return Space(n); },
        [](const char*, int32_t n) {
            char* slot = take();
            memset(slot, ' ', n);
            memset(slot + n, 0, kSlotSize - n);
            return slot;
        });
    compare(
        "String", [](const char* s, int32_t) { return String(2, s); },
        [](const char* s, int32_t) {
            char* slot = take();
            size_t length = strlen(s), rest = std::min(length, kSlotSize - length);
            memcpy(slot, s, length);
            memcpy(slot + length, s, rest);
            memset(slot + length + rest, 0, kSlotSize - length - rest);
            return slot;
        });
    compare(
        "Chr", [](const char*, int32_t n) { return Chr(n); },
        [](const char*, int32_t n) {
            char* slot = take();
            slot[0] = static_cast<char>(n);
            slot[1] = '\0';
            return slot;
        });
    compare(
        "Ltrim", [](const char* s, int32_t) { return Ltrim(s); },
        [](const char* s, int32_t) {
            char* slot = take();
            size_t blanks = 0;
            for (; s[blanks] == ' '; blanks++)
                memcpy(take(), " ", 2), take();
            char* stop = take();
            stop[0] = s[blanks];
            stop[1] = '\0';
            take();
            char* rest = strncpy(take(), s + blanks, kSlotSize);
            take()[0] = '\0';
            return strcpy(slot, rest);
        });
    compare(
        "Rtrim", [](const char* s, int32_t) { return Rtrim(s); },
        [](const char* s, int32_t) {
            char* slot = strncpy(take(), s, kSlotSize);
            char* text = slot;
            while (*text == ' ')
                text++;
            while (char* blank = strrchr(text, ' '))
                *blank = '\0';
            return slot;
        });
    compare(
        "Trim", [](const char* s, int32_t) { return Trim(s); },
        [](const char* s, int32_t) {
            char* text = strncpy(take(), s, kSlotSize);
            while (*text == ' ')
                text++;
            if (char* blank = strrchr(text, ' '))
                *blank = '\0';
            return text;
        });
}

template <int (*Map)(int)>
char* map_each(const char* s, int32_t n)
{
    char* slot = take();
    for (int32_t i = 0; i < n; i++)
        slot[i] = static_cast<char>(Map(static_cast<unsigned char>(s[i])));
    slot[n] = '\0';
    return slot;
}

void compare_cases()
{
    compare(
        "Ucase", [](const char* s, int32_t) { return Ucase(s); }, map_each<toupper>);
    compare(
        "Lcase", [](const char* s, int32_t) { return Lcase(s); }, map_each<tolower>);
}

void compare_replacing()
{
    // A program's patterns are not known when its calls are compiled.
    static const char* sMark = "#";
    static const char* sDashes = "--";
    benchmark::DoNotOptimize(sMark);
    benchmark::DoNotOptimize(sDashes);
    for (int width : {9, 49}) {
        std::string text;
        for (int i = 0; i < 4; i++)
            text += std::string(width, 'x') + "#";
        const std::string name = std::to_string(text.size()) + " bytes";
        compare_on(
            "Extract/" + name, std::string(text.size() - 1, 'x') + "#",
            [](const char* s, int32_t) { return Extract(s, sMark); },
            [](const char* s, int32_t) {
                char* slot = take();
                const char* hit = strstr(s, sMark);
                write_pieces(hit - 7, 1);
                char* left = take();
                memcpy(left, s, hit - s);
                left[hit - s] = '\0';
                take();
                memcpy(slot, s, hit - s);
                slot[hit - s] = '\0';
                return slot;
            });
        compare_on(
            "Replace, 4 hits/" + name, text,
            [](const char* s, int32_t) { return Replace(s, sMark, sDashes); },
            [](const char* s, int32_t) {
                // Searches from the front again, as the rule says.
                char buffers[2][264];
                char *from = buffers[0], *to = buffers[1];
                strcpy(from, s);
                const size_t find_length = strlen(sMark), length = strlen(sDashes);
                while (const char* hit = strstr(from, sMark)) {
                    size_t left = hit - from;
                    memcpy(to, from, left);
                    memcpy(to + left, sDashes, length);
                    strcpy(to + left + length, hit + find_length);
                    std::swap(from, to);
                }
                return strcpy(take(), from);
            });
    }
}

}  // namespace

int main(int argc, char** argv)
{
    compare_with_slots();
    compare_searches();
    compare_cases();
    compare_replacing();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
