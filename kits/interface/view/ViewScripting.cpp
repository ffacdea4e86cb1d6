// The view's properties for scripts: its frame, whether it hides, and the views in it.

#include <View.h>

#include <Message.h>
#include <PropertyInfo.h>
#include <TypeConstants.h>

#include <cstring>

#include <app/looper/Scripting.h>
#include <interface/view/ViewPrivate.h>

static const property_info kProperties[] = {
    SCRIPT_VALUE("Frame", B_RECT_TYPE),
    SCRIPT_VALUE("Hidden", B_BOOL_TYPE),
    {"View", {B_COUNT_PROPERTIES}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_INT32_TYPE}, {}},
    {"View",
     {},
     {B_INDEX_SPECIFIER, B_REVERSE_INDEX_SPECIFIER, B_NAME_SPECIFIER},
     nullptr,
     0,
     {},
     {}},
    {},
};

// The view that a script asks for; null if there is none.
static BView* find_asked(const BView& view, const BMessage& specifier, int32 form)
{
    const char* name = nullptr;
    if (form == B_NAME_SPECIFIER)
        return specifier.FindString("name", &name) == B_OK ? view.FindView(name) : nullptr;
    int32 at;
    if (specifier.FindInt32("index", &at) != B_OK || at < 0)
        return nullptr;
    return view.ChildAt(form == B_REVERSE_INDEX_SPECIFIER ? view.CountChildren() - at : at);
}

BHandler* BView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 form,
                                  const char* property)
{
    if (!BPrivate::knows_property(kProperties, message, index, specifier, form, property))
        return BHandler::ResolveSpecifier(message, index, specifier, form, property);
    if (strcmp(property, "View") != 0 || form == B_DIRECT_SPECIFIER)
        return this;
    if (BView* const found = find_asked(*this, *specifier, form)) {
        message->PopSpecifier();
        return found;
    }
    BPrivate::answer_missing(message, BPrivate::missing_error(form), "no such view");
    return nullptr;
}

status_t BView::GetSupportedSuites(BMessage* data)
{
    const status_t status = BPrivate::add_suite(data, "suite/vnd.Be-view", kProperties);
    return status == B_OK ? BHandler::GetSupportedSuites(data) : status;
}

static status_t set_property(BView& view, const char* property, const BMessage& message)
{
    BRect frame;
    bool hidden;
    if (strcmp(property, "Frame") == 0 && message.FindRect("data", &frame) == B_OK) {
        view.MoveTo(frame.LeftTop());
        view.ResizeTo(frame.Width(), frame.Height());
        return B_OK;
    }
    if (strcmp(property, "Hidden") != 0 || message.FindBool("data", &hidden) != B_OK)
        return B_BAD_VALUE;
    if (hidden != view.IsHidden(&view))
        hidden ? view.Hide() : view.Show();
    return B_OK;
}

static bool answer_count(const BView& view, BMessage* message)
{
    int32 index, form;
    BMessage specifier;
    const char* property = nullptr;
    if (message->what != B_COUNT_PROPERTIES || !message->HasSpecifiers() ||
        message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        form != B_DIRECT_SPECIFIER || property == nullptr || strcmp(property, "View") != 0)
        return false;
    BMessage reply(B_REPLY);
    reply.AddInt32("result", view.CountChildren());
    reply.AddInt32("error", B_OK);
    message->SendReply(&reply);
    return true;
}

bool BPrivate::answer_view_script(BView& view, BMessage* message)
{
    const auto get = [&](const char* property, BMessage* reply) {
        return strcmp(property, "Frame") == 0 ? reply->AddRect("result", view.Frame())
                                              : reply->AddBool("result", view.IsHidden(&view));
    };
    const auto set = [&](const char* property, const BMessage& data) {
        return set_property(view, property, data);
    };
    return answer_count(view, message) || answer_property(kProperties, message, get, set);
}
