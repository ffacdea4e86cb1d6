// Drives random sequences of string, number and console calls: bytes choose the function and its
// arguments, which are pieces of the input, results of earlier calls, and odd numbers.

#include <plinth.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <iterator>
#include <string>
#include <vector>

namespace {

class Input {
public:
    Input(const uint8_t* data, size_t size) : fData(data), fEnd(data + size) {}
    bool IsEmpty() const { return fData == fEnd; }
    uint8_t Byte() { return fData < fEnd ? *fData++ : 0; }
    int32_t Count()
    {
        static const int32_t kCounts[] = {INT32_MIN, -258, -2,   -1,      0,        1,    255,
                                          256,       257,  258,  513,     514,      1023, 1024,
                                          1025,      4368, 4369, 1000000, INT32_MAX};
        uint8_t choice = Byte();
        if (choice < std::size(kCounts))
            return kCounts[choice];
        return choice < 64 ? static_cast<int8_t>(Byte()) : Byte() << 8 | Byte();
    }
    double Number()
    {
        uint8_t bytes[8];
        for (uint8_t& byte : bytes)
            byte = Byte();
        double x;
        memcpy(&x, bytes, sizeof(x));
        return x;
    }
    // A null, an earlier result or the middle of one, or a text of its own (perhaps repeated).
    const char* Text()
    {
        uint8_t choice = Byte();
        if (choice == 0)
            return nullptr;
        if (choice < 64 && !fResults.empty())
            return fResults[choice % fResults.size()] + (choice & 32 ? 1 : 0);
        std::string piece;
        for (size_t length = Byte() % 32; length > 0 && !IsEmpty(); length--) {
            char c = static_cast<char>(Byte());
            piece += c == '\0' ? ' ' : c;
        }
        std::string text;
        for (size_t times = choice < 96 ? Byte() : 1; times > 0; times--)
            text += piece;
        fTexts.push_back(std::move(text));
        return fTexts.back().c_str();
    }
    // Results in the ring may be read later, up to their byte 256 at least.
    void Keep(const char* result)
    {
        if (result[0] == '\0')
            return;
        if (fResults.size() == 20)
            fResults.erase(fResults.begin());
        fResults.push_back(result);
    }

private:
    const uint8_t* fData;
    const uint8_t* fEnd;
    std::deque<std::string> fTexts;  // texts stay where they are
    std::vector<const char*> fResults;
};

void call(Input& input)
{
    uint8_t function = input.Byte() % 32;
    switch (function) {
        case 0:
            return input.Keep(Left(input.Text(), input.Count()));
        case 1:
            return input.Keep(Right(input.Text(), input.Count()));
        case 2: {
            const char* s = input.Text();
            int32_t start = input.Count();
            return input.Keep(Mid(s, start, input.Count()));
        }
        case 3:
            return input.Keep(MidStr(input.Text(), input.Count()));
        case 4: {
            const char* s = input.Text();
            const char* find = input.Text();
            Instr(input.Count(), s, find);
            return;
        }
        case 5:
            Len(input.Text());
            return;
        case 6:
            return input.Keep(Space(input.Count()));
        case 7: {
            int32_t n = input.Count();
            return input.Keep(String(n, input.Text()));
        }
        case 8:
            return input.Keep(Chr(input.Byte()));
        case 9:
            Chr2(input.Text());
            return;
        case 10:
            return input.Keep(Lcase(input.Text()));
        case 11:
            return input.Keep(Ucase(input.Text()));
        case 12:
            return input.Keep(TitleCase(input.Text()));
        case 13:
            return input.Keep(Ltrim(input.Text()));
        case 14:
            return input.Keep(Rtrim(input.Text()));
        case 15:
            return input.Keep(Trim(input.Text()));
        case 16:
        case 17: {
            const char* s = input.Text();
            return input.Keep(Extract(s, input.Text()));
        }
        case 18:
        case 19: {
            const char* s = input.Text();
            const char* find = input.Text();
            return input.Keep(Replace(s, find, input.Text()));
        }
        case 20:
            return input.Keep(ExtractPathName(input.Text()));
        case 21:
            return input.Keep(ExtractFileName(input.Text()));
        case 22:
            return input.Keep(Str(input.Number()));
        case 23:
            return input.Keep(Cstr(input.Number()));
        case 24:
            Val(input.Text());
            return;
        case 25:
            Cdbl(input.Text());
            return;
        case 26:
        case 27: {
            double x = input.Number();
            return input.Keep(Format(x, input.Text()));
        }
        case 28:
            return input.Keep(Oct(input.Count()));
        case 29:
            return input.Keep(Hex(input.Count()));
        case 30:
            return input.Keep(Bin(input.Count()));
        default: {
            double x = input.Number();
            Print(x);
            WriteCR();
            Frac(x);
            Round(x);
            Sgn(x);
            Sort(&x, input.Byte());
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static FILE* nowhere = freopen("/dev/null", "w", stdout);
    if (nowhere == nullptr)
        return 0;
    Input input(data, size);
    while (!input.IsEmpty())
        call(input);
    return 0;
}
