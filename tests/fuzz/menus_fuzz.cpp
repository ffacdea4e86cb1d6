// Builds menus from lines of any bytes, shows them, lets a hand and a keyboard loose on them,
// changes items, takes the menus off and frees them.

#include <plinth.h>

#include <Injection.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

using Bytes = std::vector<uint8_t>;

std::vector<Bytes> FuzzSeeds()
{
    std::vector<Bytes> seeds;
    for (const char* text : {"t*00000000File\niO00000101Open\n-\nx*00010000More\ne*00100102abc\n"
                             "s*00000103abc\ni*10000104Quit\nq\n",
                             "i*00000001One\ni*00100002Two\nt*00000000Three\ni*00000003Four\nq",
                             "q\ni*0\nt\ni\nx\nx\nx\ni\ns\ns\ns\ns\n-\nq\nz",
                             "t*00000000A\nt*00000000B\nx*0000\nt*00000000C\ne*\ns*\ne*\nq"})
        seeds.emplace_back(text, text + std::string(text).size());
    return seeds;
}

static void press(int32_t key)
{
    inject_key(key, true);
    inject_key(key, false);
}

// A pop-up menu keeps its window until somebody closes it, also one that opens late.
static void keep_escaping()
{
    std::thread([] {
        for (;;) {
            press(0x01);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }).detach();
}

// Opens what there is, by the pointer or by the keyboard, and walks about in it.
static void play(uint8_t way)
{
    static const int32_t kKeys[] = {0x0b, 0x62, 0x63, 0x61, 0x57, 0x47, 0x5e, 0x01};
    inject_pointer(static_cast<float>(105 + way % 64), 108);
    inject_button(way % 3 == 0 ? 2 : 1, true);
    inject_pointer(static_cast<float>(110 + way % 32), static_cast<float>(120 + way % 128));
    inject_button(way % 3 == 0 ? 2 : 1, false);
    for (int32_t i = 0; i < way % 7; i++)
        press(kKeys[(way + i * 3) % 8]);
    press(0x01);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static void** const registry = Open_Sys(1);
    static const int32_t window = registry != nullptr ? OpenWindow(100, 100, 200, 150) : 0;
    static const bool escaping = (keep_escaping(), true);
    (void)escaping;
    const uint8_t way = size > 0 ? data[0] : 0;
    std::vector<std::string> texts(1);
    for (size_t i = 0; i < size; i++) {
        if (data[i] == '\n')
            texts.emplace_back();
        else if (data[i] != 0)
            texts.back() += static_cast<char>(data[i]);
    }
    std::vector<const char*> lines;
    for (const std::string& text : texts)
        lines.push_back(text.c_str());
    lines.push_back(nullptr);

    const int32_t bar = CreateMenu(lines.data());
    const int32_t pop_up = CreatePopUpMenu(lines.data());
    AttachMenuToWin(window, bar);
    AttachPopUpToWindow(window, pop_up);
    if (way % 8 == 0)
        play(static_cast<uint8_t>(size));
    for (int32_t code : {0, 1, 101, 102, 103, way * 37}) {
        SetCheckedLabel(window, code, way & 1);
        SetEnableLabel(window, code, way & 2);
        SetNameLabel(window, code, lines[0]);
    }
    if (way % 2 == 0)
        RemoveMenu(window);
    KillMenu(bar);
    press(0x01);
    AttachPopUpToWindow(window, 0);
    KillMenu(pop_up);
    RemoveMenu(window);
    KillMenu(bar);
    return 0;
}
