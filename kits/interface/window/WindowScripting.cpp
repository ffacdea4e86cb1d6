// The window's properties for scripts.

#include <Window.h>

#include <Message.h>
#include <PropertyInfo.h>
#include <TypeConstants.h>
#include <View.h>

#include <cstring>

#include <app/looper/Scripting.h>
#include <interface/window/WindowPrivate.h>

static const property_info kProperties[] = {
#define VALUE(name, type)                                                                    \
    {                                                                                        \
        name, {B_GET_PROPERTY, B_SET_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {type}, {} \
    }
    VALUE("Feel", B_INT32_TYPE),
    VALUE("Flags", B_INT32_TYPE),
    VALUE("Frame", B_RECT_TYPE),
    VALUE("Hidden", B_BOOL_TYPE),
    VALUE("Look", B_INT32_TYPE),
    VALUE("Minimize", B_BOOL_TYPE),
    VALUE("Title", B_STRING_TYPE),
    VALUE("Workspaces", B_INT32_TYPE),
#undef VALUE
    {"View", {B_COUNT_PROPERTIES}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_INT32_TYPE}, {}},
    {"View", {}, {B_INDEX_SPECIFIER, B_NAME_SPECIFIER}, nullptr, 0, {}, {}},
    {},
};

static bool is_view(const char* property)
{
    return property != nullptr && strcmp(property, "View") == 0;
}

BHandler* BWindow::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 form,
                                    const char* property)
{
    if (is_view(property) && (form == B_INDEX_SPECIFIER || form == B_NAME_SPECIFIER)) {
        const char* name = nullptr;
        int32 number = -1;
        BView* view = specifier->FindString("name", &name) == B_OK     ? FindView(name)
                      : specifier->FindInt32("index", &number) == B_OK ? ChildAt(number)
                                                                       : nullptr;
        if (view != nullptr) {
            message->PopSpecifier();
            return view;
        }
        BPrivate::answer_missing(message, B_BAD_INDEX, "no such view");
        return nullptr;
    }
    if (BPrivate::knows_property(kProperties, message, index, specifier, form, property))
        return this;
    return BLooper::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BWindow::GetSupportedSuites(BMessage* data)
{
    const status_t status = BPrivate::add_suite(data, "suite/vnd.Be-window", kProperties);
    return status == B_OK ? BLooper::GetSupportedSuites(data) : status;
}

static status_t get_property(const BWindow& window, const char* property, BMessage* reply)
{
    const auto is = [=](const char* name) { return strcmp(property, name) == 0; };
    if (is("Feel"))
        return reply->AddInt32("result", window.Feel());
    if (is("Flags"))
        return reply->AddInt32("result", static_cast<int32>(window.Flags()));
    if (is("Frame"))
        return reply->AddRect("result", window.Frame());
    if (is("Hidden"))
        return reply->AddBool("result", window.IsHidden());
    if (is("Look"))
        return reply->AddInt32("result", window.Look());
    if (is("Minimize"))
        return reply->AddBool("result", window.IsMinimized());
    if (is("Title"))
        return reply->AddString("result", window.Title());
    if (is("Workspaces"))
        return reply->AddInt32("result", static_cast<int32>(window.Workspaces()));
    return B_BAD_VALUE;
}

static status_t set_number(BWindow& window, const char* property, int32 number)
{
    if (strcmp(property, "Feel") == 0)
        return window.SetFeel(static_cast<window_feel>(number));
    if (strcmp(property, "Look") == 0)
        return window.SetLook(static_cast<window_look>(number));
    if (strcmp(property, "Flags") == 0)
        return window.SetFlags(static_cast<uint32>(number));
    if (strcmp(property, "Workspaces") != 0)
        return B_BAD_VALUE;
    window.SetWorkspaces(static_cast<uint32>(number));
    return B_OK;
}

static status_t set_property(BWindow& window, const char* property, const BMessage& message)
{
    const auto is = [=](const char* name) { return strcmp(property, name) == 0; };
    BRect frame;
    bool flag;
    int32 number;
    const char* title;
    if (is("Frame") && message.FindRect("data", &frame) == B_OK) {
        window.MoveTo(frame.LeftTop());
        window.ResizeTo(frame.Width(), frame.Height());
    } else if (is("Hidden") && message.FindBool("data", &flag) == B_OK) {
        if (flag != window.IsHidden())
            flag ? window.Hide() : window.Show();
    } else if (is("Minimize") && message.FindBool("data", &flag) == B_OK) {
        window.Minimize(flag);
    } else if (is("Title") && message.FindString("data", &title) == B_OK) {
        window.SetTitle(title);
    } else if (message.FindInt32("data", &number) == B_OK) {
        return set_number(window, property, number);
    } else {
        return B_BAD_VALUE;
    }
    return B_OK;
}

// Answers a scripting message; false if it is none of the window's.
bool BWindow::_Script(BMessage* message)
{
    int32 index, form;
    BMessage specifier;
    const char* property = nullptr;
    if (message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        !BPrivate::knows_property(kProperties, message, index, &specifier, form, property))
        return false;
    BMessage reply(B_REPLY);
    status_t status = B_BAD_SCRIPT_SYNTAX;
    if (message->what == B_COUNT_PROPERTIES && is_view(property))
        status = reply.AddInt32("result", CountChildren());
    else if (message->what == B_GET_PROPERTY)
        status = get_property(*this, property, &reply);
    else if (message->what == B_SET_PROPERTY)
        status = set_property(*this, property, *message);
    reply.AddInt32("error", status);
    message->SendReply(&reply);
    return true;
}
