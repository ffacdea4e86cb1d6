#ifndef TESTS_TEXT_HARNESS_H
#define TESTS_TEXT_HARNESS_H

// A text view in a window, for tests of what keys and the pointer make of it.

#include <Application.h>
#include <Message.h>
#include <TextView.h>

#include <tests/interface/window_harness.h>

#include <server/screen/Screen.h>

#include <string>
#include <vector>

namespace text_test {

using namespace window_test;

const int32_t kKeyHome = 0x20, kKeyPageUp = 0x21, kKeyDelete = 0x34, kKeyEnd = 0x35;
const int32_t kKeyPageDown = 0x36, kKeyBackspace = 0x1e, kKeyZ = 0x4c, kKeyX = 0x4d, kKeyV = 0x4f;
const int32_t kKeyUp = 0x57, kKeyLeft = 0x61, kKeyDown = 0x62, kKeyRight = 0x63;

// Writes down what its hooks are told.
class LoggedText : public BTextView {
public:
    LoggedText(Log& log, BRect frame, BRect rect)
        : BTextView(frame, "text", rect, B_FOLLOW_ALL, B_WILL_DRAW), fLog(log)
    {
    }
    void InsertText(const char* text, int32 length, int32 offset,
                    const text_run_array* runs) override
    {
        fLog.Add(nullptr, "insert %s at %d", std::string(text, size_t(length)).c_str(),
                 int(offset));
        BTextView::InsertText(text, length, offset, runs);
    }
    void DeleteText(int32 from, int32 to) override
    {
        fLog.Add(nullptr, "delete %d to %d", int(from), int(to));
        BTextView::DeleteText(from, to);
    }

private:
    Log& fLog;
};

class TextTest : public WindowTest {
protected:
    static void SetUpTestSuite()
    {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
    }

    // Content from (100, 100); the text begins at (104, 103) of the screen.
    LoggedText* MakeText(const char* content = "", float width = 300, float height = 200)
    {
        Make(width, height);
        BRect rect(0, 0, width, height);
        text = new LoggedText(log, rect, rect.InsetByCopy(4, 3));
        text->SetText(content);
        window->AddChild(text);
        text->MakeFocus();
        return text;
    }
    std::string Content()
    {
        Settle();
        window->Lock();
        const std::string content(text->Text(), size_t(text->TextLength()));
        window->Unlock();
        return content;
    }
    // The text with its selection in brackets, its caret as a bar.
    std::string State()
    {
        std::string content = Content();
        window->Lock();
        int32 start, end;
        text->GetSelection(&start, &end);
        window->Unlock();
        if (start == end)
            return content.insert(size_t(start), "|");
        return content.insert(size_t(end), "]").insert(size_t(start), "[");
    }
    template <class Act>
    void Do(Act act)
    {
        window->Lock();
        act(*text);
        window->Unlock();
    }
    void Select(int32 from, int32 to)
    {
        Do([=](BTextView& view) { view.Select(from, to); });
    }
    BPoint ScreenPoint(int32 offset)
    {
        BPoint point;
        Do([&](BTextView& view) {
            float height;
            point = view.ConvertToScreen(view.PointAt(offset, &height));
            point.y += height / 2;
        });
        return point;
    }
    // Pixels of the screen in a row, whose middle is what is asked for.
    std::vector<uint32> ScreenRow(float from, float to, float y)
    {
        window->Lock();
        window->UpdateIfNeeded();
        window->Sync();
        window->Unlock();
        std::vector<uint32> pixels;
        int32 width, height;
        server::ReadScreen(BRect(from, y, to, y), &pixels, &width, &height);
        return pixels;
    }

    BApplication application{"application/x-vnd.plinth-text-test"};
    LoggedText* text = nullptr;
};

}  // namespace text_test

#endif  // TESTS_TEXT_HARNESS_H
