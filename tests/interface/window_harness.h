#ifndef TESTS_WINDOW_HARNESS_H
#define TESTS_WINDOW_HARNESS_H

// Windows and views that write down what their hooks are told, and a way to wait for it.

#include <AppDefs.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <Messenger.h>
#include <OS.h>
#include <TypeConstants.h>
#include <View.h>
#include <Window.h>

#include <Injection.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace window_test {

const int32_t kKeyEscape = 0x01, kKeyF1 = 0x02, kKeyTab = 0x26, kKeyQ = 0x27, kKeyW = 0x28;
const int32_t kKeyA = 0x3c, kKeyEnter = 0x47, kKeyC = 0x4e, kKeySpace = 0x5e;
const int32_t kKeyShift = 0x4b, kKeyControl = 0x5c, kKeyCommand = 0x5d, kKeyOption = 0x66;

// Lines in the order of the calls, with a copy of the message of each.
class Log {
public:
    void Add(const BMessage* message, const char* format, ...) __attribute__((format(printf, 3, 4)))
    {
        char line[256];
        va_list arguments;
        va_start(arguments, format);
        vsnprintf(line, sizeof(line), format, arguments);
        va_end(arguments);
        std::lock_guard<std::mutex> lock(fLock);
        fLines.push_back(line);
        fMessages.push_back(message != nullptr ? *message : BMessage());
        fChanged.notify_all();
    }

    // True as soon as `count` lines begin with `start`.
    bool Wait(const std::string& start, int count = 1)
    {
        std::unique_lock<std::mutex> lock(fLock);
        return fChanged.wait_for(lock, std::chrono::seconds(20),
                                 [&] { return _Count(start) >= count; });
    }
    int Count(const std::string& start)
    {
        std::lock_guard<std::mutex> lock(fLock);
        return _Count(start);
    }
    // All lines that begin with one of `starts`, by "; ".
    std::string Lines(const std::vector<std::string>& starts = {""})
    {
        std::lock_guard<std::mutex> lock(fLock);
        std::string all;
        for (const std::string& line : fLines) {
            bool fits = false;
            for (const std::string& start : starts)
                fits = fits || line.compare(0, start.size(), start) == 0;
            if (fits)
                all += (all.empty() ? "" : "; ") + line;
        }
        return all;
    }
    // The message of the newest line that begins with `start`.
    BMessage Message(const std::string& start)
    {
        std::lock_guard<std::mutex> lock(fLock);
        for (size_t i = fLines.size(); i-- > 0;) {
            if (fLines[i].compare(0, start.size(), start) == 0)
                return fMessages[i];
        }
        return BMessage();
    }
    void Clear()
    {
        std::lock_guard<std::mutex> lock(fLock);
        fLines.clear();
        fMessages.clear();
    }

private:
    int _Count(const std::string& start)
    {
        int count = 0;
        for (const std::string& line : fLines)
            count += line.compare(0, start.size(), start) == 0;
        return count;
    }

    std::mutex fLock;
    std::condition_variable fChanged;
    std::vector<std::string> fLines;
    std::vector<BMessage> fMessages;
};

inline std::string code_text(uint32 what)
{
    std::string code;
    for (int shift = 24; shift >= 0; shift -= 8)
        code += char(what >> shift);
    return code;
}

class TestView : public BView {
public:
    TestView(Log& log, BRect frame, const char* name, uint32 flags = B_WILL_DRAW,
             uint32 mode = B_FOLLOW_LEFT_TOP)
        : BView(frame, name, mode, flags), fLog(log)
    {
    }

    // What a hook does besides, on the window's thread.
    std::function<void()> onDown, onUp, onMoved, onDraw;
    std::function<void(BMessage*)> onMessage;

    void AttachedToWindow() override { fLog.Add(nullptr, "%s attached", Name()); }
    void DetachedFromWindow() override { fLog.Add(nullptr, "%s detached", Name()); }
    void MouseDown(BPoint where) override { _Add("down", where, onDown); }
    void MouseUp(BPoint where) override { _Add("up", where, onUp); }
    void MouseMoved(BPoint where, uint32 transit, const BMessage* drag) override
    {
        static const char* const kTransits[] = {"entered", "inside", "exited", "outside"};
        std::string line = kTransits[transit & 3];
        if (drag != nullptr)
            line = "drag " + line;
        _Add(line.c_str(), where, onMoved);
    }
    void KeyDown(const char* bytes, int32 count) override
    {
        fLog.Add(_Current(), "%s key %s %d", Name(), bytes, int(count));
        BView::KeyDown(bytes, count);
    }
    void KeyUp(const char* bytes, int32 count) override
    {
        fLog.Add(_Current(), "%s keyup %s %d", Name(), bytes, int(count));
    }
    void Pulse() override { fLog.Add(_Current(), "%s pulse", Name()); }
    void Draw(BRect update) override
    {
        fLog.Add(nullptr, "%s draw %g,%g,%g,%g", Name(), update.left, update.top, update.right,
                 update.bottom);
        if (onDraw)
            onDraw();
    }
    void WindowActivated(bool active) override
    {
        fLog.Add(_Current(), "%s active %d", Name(), active);
    }
    void FrameResized(float width, float height) override
    {
        fLog.Add(_Current(), "%s resized %g,%g", Name(), width, height);
    }
    void MessageReceived(BMessage* message) override
    {
        fLog.Add(message, "%s %s %s", Name(), message->WasDropped() ? "dropped" : "message",
                 code_text(message->what).c_str());
        if (onMessage)
            onMessage(message);
        BView::MessageReceived(message);
    }

private:
    const BMessage* _Current() const { return Window()->CurrentMessage(); }
    void _Add(const char* what, BPoint where, const std::function<void()>& more)
    {
        fLog.Add(_Current(), "%s %s %g,%g", Name(), what, where.x, where.y);
        if (more)
            more();
    }

    Log& fLog;
};

const uint32 kSettle = 'Setl';

class TestWindow : public BWindow {
public:
    TestWindow(Log& log, BRect frame, uint32 flags = 0, window_type type = B_TITLED_WINDOW)
        : BWindow(frame, "test", type, flags), fLog(log)
    {
    }
    ~TestWindow() override { fLog.Add(nullptr, "deleted"); }

    // What a hook does besides, on the window's thread.
    std::function<void(BMessage*)> onMessage;
    std::function<bool()> onQuitRequested;
    std::function<void()> onResized, onMoved, onMenus;
    bool acceptsMinimize = true;

    void FrameMoved(BPoint place) override
    {
        fLog.Add(_Current(), "moved %g,%g", place.x, place.y);
        if (onMoved)
            onMoved();
    }
    void FrameResized(float width, float height) override
    {
        fLog.Add(_Current(), "resized %g,%g", width, height);
        if (onResized)
            onResized();
    }
    void Minimize(bool minimize) override
    {
        fLog.Add(_Current(), "minimize %d", minimize);
        if (acceptsMinimize)
            BWindow::Minimize(minimize);
    }
    using BWindow::Zoom;
    void Zoom(BPoint origin, float width, float height) override
    {
        fLog.Add(_Current(), "zoom %g,%g %g,%g", origin.x, origin.y, width, height);
        BWindow::Zoom(origin, width, height);
    }
    void WindowActivated(bool active) override { fLog.Add(_Current(), "window active %d", active); }
    void WorkspaceActivated(int32 workspace, bool active) override
    {
        fLog.Add(_Current(), "workspace %d %d", int(workspace), active);
    }
    void WorkspacesChanged(uint32 before, uint32 after) override
    {
        fLog.Add(_Current(), "workspaces %u %u", before, after);
    }
    void Show() override
    {
        fLog.Add(nullptr, "show");
        BWindow::Show();
    }
    void Hide() override
    {
        fLog.Add(nullptr, "hide");
        BWindow::Hide();
    }
    void MenusBeginning() override
    {
        fLog.Add(nullptr, "menus");
        if (onMenus)
            onMenus();
    }
    void MenusEnded() override { fLog.Add(nullptr, "menus ended"); }
    bool QuitRequested() override
    {
        fLog.Add(_Current(), "quit requested");
        return !onQuitRequested || onQuitRequested();
    }
    void MessageReceived(BMessage* message) override
    {
        if (message->what == kSettle) {
            UpdateIfNeeded();  // not with the next display frame
            message->SendReply(B_REPLY);
            return;
        }
        fLog.Add(message, "%s %s", message->WasDropped() ? "dropped" : "message",
                 code_text(message->what).c_str());
        if (onMessage)
            onMessage(message);
        BWindow::MessageReceived(message);
    }

private:
    // Hooks that a program calls itself have none.
    const BMessage* _Current() const
    {
        return Thread() == find_thread(nullptr) ? CurrentMessage() : nullptr;
    }

    Log& fLog;
};

// A window on the screen with a log; closed with the test.
class WindowTest : public testing::Test {
protected:
    // Content from (100, 100).
    TestWindow* Make(float width = 200, float height = 150, uint32 flags = 0)
    {
        window = new TestWindow(log, BRect(100, 100, 100 + width, 100 + height), flags);
        return window;
    }
    TestView* Add(BRect frame, const char* name, uint32 flags = B_WILL_DRAW,
                  uint32 mode = B_FOLLOW_LEFT_TOP)
    {
        auto* view = new TestView(log, frame, name, flags, mode);
        window->AddChild(view);
        return view;
    }
    // Shown, active and drawn; the pointer is away from it.
    void Start()
    {
        inject_pointer(1000, 750);
        window->Show();
        Settle();
        log.Clear();
    }
    // Everything that was queued before has been dispatched, and what that queued as well; the
    // views have drawn what was invalid.
    void Settle(BWindow* which = nullptr)
    {
        for (int round = 0; round < 2; round++) {
            BMessage request(kSettle), reply;
            BMessenger(which != nullptr ? which : window)
                .SendMessage(&request, &reply, 60000000, 60000000);
        }
    }
    // With the window locked: acts and settles, or asks.
    void Do(const std::function<void()>& act)
    {
        window->Lock();
        act();
        window->Unlock();
        Settle();
    }
    template <class Ask>
    auto Locked(Ask ask)
    {
        window->Lock();
        auto answer = ask();
        window->Unlock();
        return answer;
    }
    static void Click(float x, float y, int32_t button = 1)
    {
        inject_pointer(x, y);
        inject_button(button, true);
        inject_button(button, false);
    }
    static void Press(int32_t key, std::vector<int32_t> held = {})
    {
        for (int32_t modifier : held)
            inject_key(modifier, true);
        inject_key(key, true);
        inject_key(key, false);
        for (size_t i = held.size(); i-- > 0;)
            inject_key(held[i], false);
    }
    // What `act` does finds the window's thread busy, so that it all waits in the queue.
    void WhileBusy(const std::function<void()>& act)
    {
        ASSERT_TRUE(window->Lock());
        act();
        window->Unlock();
    }
    static void Close(TestWindow*& which)
    {
        if (which != nullptr && which->Lock())
            which->Quit();
        which = nullptr;
    }
    void TearDown() override
    {
        for (int32_t button : {1, 2, 4})
            inject_button(button, false);
        Close(window);
    }

    Log log;
    TestWindow* window = nullptr;
};

}  // namespace window_test

#endif  // TESTS_WINDOW_HARNESS_H
