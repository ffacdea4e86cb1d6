#ifndef TESTS_GADGETS_GADGET_WINDOW_H
#define TESTS_GADGETS_GADGET_WINDOW_H

// A program's window with gadgets, a log of its handlers, and the views that show them.

#include "support/program.h"

#include <Application.h>
#include <Message.h>
#include <Messenger.h>
#include <View.h>
#include <Window.h>

#include <condition_variable>
#include <mutex>
#include <string>

#include <gtest/gtest.h>

// Calls of handlers in order. Handlers are plain functions, so the log is global.
class HandlerLog {
public:
    void Add(const std::string& call)
    {
        std::lock_guard<std::mutex> lock(fMutex);
        fCalls += (fCalls.empty() ? "" : ", ") + call;
    }
    std::string Take()
    {
        std::lock_guard<std::mutex> lock(fMutex);
        std::string calls;
        calls.swap(fCalls);
        return calls;
    }

private:
    std::mutex fMutex;
    std::string fCalls;
};

inline HandlerLog gHandlers;

inline int32_t on_action()
{
    gHandlers.Add("action");
    return 0;
}
inline int32_t on_key(int32_t key, int32_t)
{
    gHandlers.Add("key " + std::to_string(key));
    return 0;
}
inline int32_t on_value(int32_t value)
{
    gHandlers.Add("value " + std::to_string(value));
    return 0;
}

class GadgetTest : public testing::Test {
protected:
    // The window has been activated, which gives its top view the focus.
    GadgetTest()
    {
        EXPECT_TRUE(eventually([] { return Object()->IsActive(); }));
        Settle();
        gHandlers.Take();
    }
    ~GadgetTest() override
    {
        for (int32_t button : {1, 2, 4})
            inject_button(button, false);
    }

    int32_t Make(int32_t kind, int32_t x, int32_t y, int32_t width, int32_t height,
                 const void* text = "label", int32_t value = 100)
    {
        const int32_t ident = CreateGadget(kind, window.Ident(), x, y, width, height, text, value);
        SetHandlerForGadget(ident, 1, reinterpret_cast<void*>(on_action));
        SetHandlerForGadget(ident, 2, reinterpret_cast<void*>(on_key));
        SetHandlerForGadget(ident, 3, reinterpret_cast<void*>(on_value));
        return ident;
    }
    // The window's object: the newest one there is.
    static BWindow* Object() { return be_app->WindowAt(be_app->CountWindows() - 1); }
    // The view of a gadget by its place among those of the window; locked while `act` looks.
    template <class Act>
    auto WithView(int32 index, Act act)
    {
        BWindow* object = Object();
        object->Lock();
        BView* view = object->ChildAt(0)->ChildAt(index);
        auto answer = act(view);
        object->Unlock();
        return answer;
    }
    BRect FrameOf(int32 index)
    {
        return WithView(index,
                        [](BView* view) { return view != nullptr ? view->Frame() : BRect(); });
    }
    int32 CountViews()
    {
        BWindow* object = Object();
        object->Lock();
        const int32 count = object->ChildAt(0)->CountChildren();
        object->Unlock();
        return count;
    }
    // Everything that was injected has reached the handlers, and what these posted as well.
    static void Settle()
    {
        for (int round = 0; round < 3; round++) {
            BMessage request(B_GET_PROPERTY), reply;
            request.AddSpecifier("Title");
            BMessenger(Object()).SendMessage(&request, &reply, 20000000, 20000000);
        }
    }
    std::string Calls()
    {
        Settle();
        return gHandlers.Take();
    }
    void Press(int32_t x, int32_t y, int32_t button = 1)
    {
        window.Point(x, y);
        inject_button(button, true);
    }
    void Release(int32_t button = 1) { inject_button(button, false); }
    void Click(int32_t x, int32_t y, int32_t button = 1)
    {
        Press(x, y, button);
        Release(button);
    }
    void Key(int32_t key)
    {
        inject_key(key, true);
        inject_key(key, false);
    }

    TestWindow window{100, 100, 300, 300};
};

#endif  // TESTS_GADGETS_GADGET_WINDOW_H
