// Lets a program and a user loose on one editor and one entry field: calls with any arguments, keys
// of any filter, presses and drags, cuts and pastes, files.

#include <plinth.h>

#include <Injection.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using Bytes = std::vector<uint8_t>;

int32_t sWindow, sField, sEditor;
std::string sFolder;

// What is left of the input, and what it says.
class Input {
public:
    Input(const uint8_t* data, size_t size) : fAt(data), fEnd(data + size) {}
    bool IsEmpty() const { return fAt == fEnd; }
    uint8_t Byte() { return IsEmpty() ? uint8_t{0} : *fAt++; }
    // Mostly a place in a text, at times a number of any size.
    int32_t Number()
    {
        static const int32_t kOdd[] = {INT32_MIN, -1, 0, 255, 256, 1023, 1 << 20, INT32_MAX};
        const uint8_t byte = Byte();
        return byte < 200 ? byte : kOdd[byte % 8];
    }
    std::string Text()
    {
        const size_t size = Byte() % 64;
        std::string text;
        while (text.size() < size && !IsEmpty())
            text += static_cast<char>(Byte());
        for (uint8_t doublings = Byte() % 12; doublings > 8 && !text.empty(); doublings--)
            text += text + text;
        return text;
    }

private:
    const uint8_t* fAt;
    const uint8_t* const fEnd;
};

int32_t ignore_text(const char* text) { return text[0]; }
int32_t refuse() { return 0; }

// Handlers that change what they are called about.
int32_t set_field(const char* text)
{
    SetString(sField, text);
    return 0;
}
int32_t set_editor(int32_t length)
{
    if (length > 100)
        TEditSetText(sEditor, "short");
    return 0;
}

void open_window()
{
    Open_Sys(1);
    sWindow = OpenWindow(100, 100, 300, 200);
    SetHandlerForWindow(sWindow, PLINTH_CLOSE_REQUESTED, reinterpret_cast<void*>(refuse));
    char name[] = "/tmp/plinth-fuzz-XXXXXX";
    sFolder = mkdtemp(name);
    atexit([] {
        unlink((sFolder + "/text").c_str());
        rmdir(sFolder.c_str());
    });
}

void play(Input& input)
{
    static const int32_t kHeld[] = {0, 0, 0, 0x4b, 0x5c, 0x5d};
    const int32_t held = kHeld[input.Byte() % 6];
    if (held != 0)
        inject_key(held, true);
    const int32_t key = input.Byte() % 0x6a;
    inject_key(key, true);
    inject_key(key, false);
    if (held != 0)
        inject_key(held, false);
}

void press(Input& input)
{
    const int32_t button = 1 << input.Byte() % 3;
    inject_pointer(static_cast<float>(100 + input.Byte()), static_cast<float>(100 + input.Byte()));
    inject_button(button, true);
    inject_pointer(static_cast<float>(100 + input.Byte()), static_cast<float>(100 + input.Byte()));
    inject_button(button, false);
}

using Step = void (*)(Input& input);

const Step kSteps[] = {
    play,
    play,
    press,
    [](Input& input) { inject_text(input.Text().c_str()); },
    [](Input&) { ActivateGadget(sField); },
    [](Input&) { ActivateGadget(sEditor); },
    // --- the field
    [](Input& input) { SetString(sField, input.Text().c_str()); },
    [](Input& input) { SetInteger(sField, input.Number()); },
    [](Input& input) { SetMaxSizeString(sField, input.Number()); },
    [](Input& input) { SetFilterString(sField, input.Byte() % 9); },
    [](Input& input) { SetDiviser(sField, input.Number()); },
    [](Input& input) { MakeStringSelectable(sField, input.Byte() % 3, input.Byte() & 1); },
    [](Input& input) { SetEnabled(sField, input.Byte() & 1); },
    [](Input& input) { SelectCommand(sField, input.Number() % 8); },
    [](Input&) { SetString(sField, GetString(sField)); },
    // --- the editor
    [](Input& input) { TEditSetText(sEditor, input.Text().c_str()); },
    [](Input& input) { TEditInsertText(sEditor, input.Text().c_str()); },
    [](Input& input) { TEditReplaceSelection(sEditor, input.Text().c_str()); },
    [](Input& input) { TEditSetMaxSize(sEditor, input.Number()); },
    [](Input& input) { TEditGotoLine(sEditor, input.Number()); },
    [](Input& input) { TEditSetTabWidth(sEditor, input.Number()); },
    [](Input& input) { TEditCommand(sEditor, input.Byte() % 5, input.Byte() & 1); },
    [](Input& input) { TEditGetLine(sEditor, input.Number()); },
    [](Input& input) { TEditSelect(sEditor, input.Number(), input.Number()); },
    [](Input& input) { SelectCommand(sEditor, input.Byte() % 6); },
    [](Input& input) {
        TEditFind(sEditor, input.Text().c_str(), input.Number(), input.Byte() % 8);
    },
    [](Input&) { TEditUndo(sEditor); },
    [](Input&) { TEditRedo(sEditor); },
    [](Input& input) { TEditSetColor(sEditor, input.Number(), input.Number(), input.Number()); },
    [](Input& input) {
        const int32_t font = OpenFont(nullptr, nullptr, input.Byte() % 40);
        TEditSetFont(sEditor, input.Number(), input.Number(), font);
        CloseFont(font);
    },
    [](Input& input) { ResizeGadget(sEditor, input.Number() % 2000, input.Number() % 2000); },
    [](Input&) { TEditSaveFile(sEditor, (sFolder + "/text").c_str()); },
    [](Input&) { TEditLoadFile(sEditor, (sFolder + "/text").c_str()); },
    [](Input&) { MyFree(TEditGetAll(sEditor)); },
    [](Input& input) {
        TEditLineStart(sEditor, TEditLineAt(sEditor, input.Number()));
        TEditLineStart(sEditor, input.Number());
    },
};

}  // namespace

std::vector<Bytes> FuzzSeeds()
{
    std::vector<Bytes> seeds;
    Bytes all;
    for (uint8_t step = 0; step < std::size(kSteps); step++)
        all.insert(all.end(), {step, 5, 'a', 0xC3, 0xA9, '\n', ' ', 10, 3, 1});
    seeds.push_back(all);
    seeds.push_back({5, 3, 4, 'o', 'n', 'e', ' ', 0, 0, 4, 0x1e, 26, 26, 27, 27, 23, 0, 9, 24, 1});
    seeds.push_back({4, 9, 1, 3, 3, 'a', '*', 'b', 0, 0, 0, 0x47, 9, 4, 3, 4, '1', '/', '2', '/'});
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (sWindow == 0)
        open_window();
    Input input(data, size);
    const uint8_t way = input.Byte();
    sField = CreateGadget(3 + way % 4, sWindow, 10, 10, 200, 24, way & 4 ? "Name" : nullptr, 0);
    sEditor = CreateGadget(26 + way % 4, sWindow, 10, 50, 200, 100, nullptr, 0);
    SetHandlerForGadget(sField, PLINTH_GADGET_INPUT,
                        reinterpret_cast<void*>(way & 16 ? set_field : ignore_text));
    SetHandlerForGadget(sField, PLINTH_GADGET_ENTER,
                        reinterpret_cast<void*>(way & 32 ? set_field : ignore_text));
    if (way & 64)
        SetHandlerForGadget(sEditor, PLINTH_GADGET_VALUE, reinterpret_cast<void*>(set_editor));
    ActivateGadget(way & 128 ? sField : sEditor);
    for (int steps = 0; steps < 200 && !input.IsEmpty(); steps++)
        kSteps[input.Byte() % std::size(kSteps)](input);
    KillGadget(0, sField);
    KillGadget(0, sEditor);
    return 0;
}
