// A program that does what it is told, line by line on its standard input, with the clipboard, and
// says what came of it. "-" in what it prints stands for nothing.

#include <plinth.h>

#include <Clipboard.h>
#include <Looper.h>
#include <Message.h>
#include <TypeConstants.h>

#include <stdio.h>
#include <string.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

class Watcher : public BLooper {
public:
    void MessageReceived(BMessage* message) override
    {
        if (message->what == B_CLIPBOARD_CHANGED)
            puts("changed");
    }
};

std::string from_file(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void put(const char* type, const std::string& bytes)
{
    be_clipboard->Lock();
    be_clipboard->Clear();
    be_clipboard->Data()->AddData(type, B_MIME_TYPE, bytes.data(),
                                  static_cast<ssize_t>(bytes.size()));
    printf("put %d\n", be_clipboard->Commit() == B_OK);
    be_clipboard->Unlock();
}

// Writes the field to the file, if it is there.
void take(const char* type, const std::string& path)
{
    const void* bytes;
    ssize_t size = -1;
    be_clipboard->Lock();
    if (be_clipboard->Data()->FindData(type, B_MIME_TYPE, &bytes, &size) == B_OK)
        std::ofstream(path, std::ios::binary).write(static_cast<const char*>(bytes), size);
    be_clipboard->Unlock();
    printf("took %s %d\n", type, static_cast<int>(size));
}

void put_message()
{
    be_clipboard->Lock();
    be_clipboard->Clear();
    BMessage nested('nest');
    nested.AddString("name", "inside");
    be_clipboard->Data()->AddInt32("answer", 42);
    be_clipboard->Data()->AddMessage("nested", &nested);
    printf("put %d\n", be_clipboard->Commit() == B_OK);
    be_clipboard->Unlock();
}

void take_message()
{
    be_clipboard->Lock();
    BMessage nested;
    be_clipboard->Data()->FindMessage("nested", &nested);
    printf("message %d %s from %s\n", static_cast<int>(be_clipboard->Data()->FindInt32("answer")),
           nested.GetString("name", "-"), be_clipboard->DataSource().IsValid() ? "here" : "afar");
    be_clipboard->Unlock();
}

void get()
{
    const char* text = GetStringClipboard();
    printf("text %s\n", text[0] != '\0' ? text : "-");
}

// Tries again where the X server does not answer a busy machine in the time that is waited for it.
bool set_in_the_end(const std::string& text)
{
    int tries = 8;
    while (!SetStringClipboard(text.c_str())) {
        if (--tries == 0)
            return false;
    }
    return true;
}

// Sets and gets while another program does the same: a text is one of the two, and whole.
void contend(const std::string& letter)
{
    int bad = 0;
    for (int i = 0; i < 100; i++) {
        const std::string own(i % 10 == 0 ? 600000 : 100, letter.at(0));
        if (!set_in_the_end(own))
            bad++;
        const std::string text = GetStringClipboard();
        if (!text.empty() && text != std::string(text.size(), text[0]))
            bad++;
    }
    printf("contended, %d bad\n", bad);
}

void pressed(int32_t x, int32_t y, int32_t, int32_t) { printf("press %d %d\n", x, y); }

}  // namespace

extern "C" void ProgramMain(void)
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    Open_Sys(0);
    const int32_t window = OpenWindow(100, 120, 299, 199);
    SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, reinterpret_cast<void*>(pressed));
    puts("ready");
    auto* watcher = new Watcher;
    watcher->Run();
    for (std::string line; std::getline(std::cin, line);) {
        const std::string word = line.substr(0, line.find(' '));
        const std::string rest = word.size() < line.size() ? line.substr(word.size() + 1) : "";
        if (word == "set")
            printf("set %d\n", SetStringClipboard(rest.c_str()));
        else if (word == "get")
            get();
        else if (word == "clear")
            printf("clear %d\n", ClearClipboard());
        else if (word == "is-empty")
            printf("is-empty %d\n", IsEmptyClipboard());
        else if (word == "put-text")
            put("text/plain", from_file(rest));
        else if (word == "take-text")
            take("text/plain", rest);
        else if (word == "put-image")
            put("image/png", from_file(rest));
        else if (word == "take-image")
            take("image/png", rest);
        else if (word == "put-message")
            put_message();
        else if (word == "take-message")
            take_message();
        else if (word == "contend")
            contend(rest);
        else if (word == "watch")
            printf("watch %d\n", be_clipboard->StartWatching(BMessenger(watcher)) == B_OK);
        else if (word == "quit")
            break;
    }
    End();
}
