#ifndef TESTS_GADGETS_TEXT_WINDOW_H
#define TESTS_GADGETS_TEXT_WINDOW_H

// Entry fields and editors in a window, typed in by keys as hardware makes them.

#include "gadget_window.h"

#include <Clipboard.h>
#include <TextControl.h>
#include <TextView.h>

const int32_t kEscapeKey = 0x01, kF1Key = 0x02, kBackspaceKey = 0x1e, kHomeKey = 0x20;
const int32_t kTabKey = 0x26, kDeleteKey = 0x34, kEndKey = 0x35, kEnterKey = 0x47;
const int32_t kShiftKey = 0x4b, kControlKey = 0x5c, kCommandKey = 0x5d, kLeftKey = 0x61;

inline int32_t on_input(const char* text)
{
    gHandlers.Add(std::string("input ") + text);
    return 0;
}
inline int32_t on_enter(const char* text)
{
    gHandlers.Add(std::string("enter ") + text);
    return 0;
}

class TextTest : public GadgetTest {
protected:
    ~TextTest() override
    {
        for (int32_t key : {kShiftKey, kControlKey, kCommandKey})
            inject_key(key, false);
    }
    // A field with its handlers, which has the focus.
    int32_t Field(int32_t kind = 3, int32_t top = 10)
    {
        const int32_t ident = Make(kind, 10, top, 250, 24, "Name");
        SetHandlerForGadget(ident, 4, reinterpret_cast<void*>(on_input));
        SetHandlerForGadget(ident, 5, reinterpret_cast<void*>(on_enter));
        ActivateGadget(ident);
        return ident;
    }
    int32_t FilteredField(int32_t filter)
    {
        const int32_t ident = Field();
        SetFilterString(ident, filter);
        return ident;
    }
    // One key after the other: the handler of a key gets the text as it is when it is called.
    static void Type(const std::string& text)
    {
        for (size_t i = 0; i < text.size();) {
            size_t end = i + 1;
            while (end < text.size() && (text[end] & 0xC0) == 0x80)
                end++;
            inject_text(text.substr(i, end - i).c_str());
            Settle();
            i = end;
        }
    }
    void Key(int32_t key)
    {
        GadgetTest::Key(key);
        Settle();
    }
    void KeyWith(int32_t modifier, int32_t key)
    {
        inject_key(modifier, true);
        GadgetTest::Key(key);
        inject_key(modifier, false);
        Settle();
    }
    // The view of the window that has the keyboard is the gadget's at this place, or inside of it.
    bool HasFocus(int32 index)
    {
        Settle();
        return WithView(index, [](BView* view) {
            for (BView* focus = view->Window()->CurrentFocus(); focus != nullptr;
                 focus = focus->Parent()) {
                if (focus == view)
                    return true;
            }
            return false;
        });
    }
    static bool NobodyHasFocus()
    {
        Settle();
        BWindow* object = Object();
        object->Lock();
        const bool none = object->CurrentFocus() == nullptr;
        object->Unlock();
        return none;
    }
    template <class Act>
    auto WithField(int32 index, Act act)
    {
        return WithView(index,
                        [&](BView* view) { return act(*dynamic_cast<BTextControl*>(view)); });
    }
    static std::string Clip()
    {
        std::string text;
        const void* data;
        ssize_t size;
        be_clipboard->Lock();
        if (be_clipboard->Data()->FindData("text/plain", B_MIME_TYPE, &data, &size) == B_OK)
            text.assign(static_cast<const char*>(data), static_cast<size_t>(size));
        be_clipboard->Unlock();
        return text;
    }
    static void SetClip(const std::string& text)
    {
        be_clipboard->Lock();
        be_clipboard->Clear();
        be_clipboard->Data()->AddData("text/plain", B_MIME_TYPE, text.data(),
                                      static_cast<ssize_t>(text.size()));
        be_clipboard->Commit();
        be_clipboard->Unlock();
    }
};

#endif  // TESTS_GADGETS_TEXT_WINDOW_H
