// What screen readers ask for, done as the user would: by a click where it can be seen, by keys, or
// by the calls that follow from both. On the window's thread; handlers may delete all there is.

#include <ChannelControl.h>
#include <InterfaceDefs.h>
#include <ListView.h>
#include <MenuBar.h>
#include <MenuField.h>
#include <MenuItem.h>
#include <ScrollBar.h>
#include <Slider.h>
#include <TabView.h>
#include <TextControl.h>
#include <TextView.h>

#include <algorithm>
#include <cmath>

#include <interface/accessible/Teller.h>
#include <interface/accessible/TextUnits.h>
#include <interface/menu/MenuPrivate.h>
#include <interface/menu/MenuTracker.h>
#include <interface/menu/MenuWindow.h>
#include <interface/text/TextData.h>
#include <interface/window/WindowPrivate.h>
#include <support/ValidUTF8.h>

namespace BPrivate {

using server::AccessibleRequest;

// The index among the parts of a view; -1 for the view itself.
static int32 index_of(const AccessibleRequest& request)
{
    return static_cast<int32>(server::part_of(request.item)) - 1;
}

static bool is_disabled(const BView& view)
{
    if (const auto* control = dynamic_cast<const BControl*>(&view))
        return !control->IsEnabled();
    if (const auto* field = dynamic_cast<const BMenuField*>(&view))
        return !field->IsEnabled();
    const auto* around = dynamic_cast<const BTextControl*>(view.Parent());
    return around != nullptr && !around->IsEnabled();
}

static server::Event key_event(std::string_view bytes)
{
    server::Event event;
    event.kind = server::EventKind::KeyDown;
    event.when = system_time();
    event.byteCount = static_cast<int32>(bytes.copy(event.bytes, sizeof(event.bytes) - 1));
    event.rawChar = static_cast<uint8>(event.bytes[0]) & 0x7f;
    return event;
}

// --- pressing

static BRect part_frame(BView& view, int32 index)
{
    if (auto* list = dynamic_cast<BListView*>(&view); list != nullptr && index >= 0) {
        list->ScrollTo(index);
        return list->ItemFrame(index);
    }
    if (const auto* tabs = dynamic_cast<const BTabView*>(&view); tabs != nullptr && index >= 0)
        return tabs->TabFrame(index);
    return view.Bounds();
}

static void press_menu_item(BMenu& menu, int32 index)
{
    BMenuItem* const item = menu.ItemAt(index);
    if (item == nullptr || !item->IsEnabled())
        return;
    if (dynamic_cast<MenuWindow*>(menu.Window()) != nullptr) {
        MenuTracker::Choose(&menu, item);  // somebody waits for the choice there
        return;
    }
    auto* const bar = dynamic_cast<BMenuBar*>(&menu);
    if (item->Submenu() == nullptr) {
        MenuTracker::CancelAll();
        MenuPrivate::Invoke(item);
    } else if (bar != nullptr) {
        MenuPrivate::StartBar(bar, index);
    }
}

static void press(WindowData& window, BView& view, int32 index)
{
    if (auto* menu = dynamic_cast<BMenu*>(&view)) {
        press_menu_item(*menu, index);
        return;
    }
    BRect frame = part_frame(view, index);  // which may scroll
    frame = frame & view.Bounds();
    const BPoint place(std::floor((frame.left + frame.right) / 2),
                       std::floor((frame.top + frame.bottom) / 2));
    const BPoint where = ViewPrivate::FromView(&view, place);
    const bool opens = dynamic_cast<BMenuField*>(&view) != nullptr;
    if (!opens && ViewPrivate::Under(window.topView, where) == &view) {
        window.Press(where);
    } else if (auto* tabs = dynamic_cast<BTabView*>(&view)) {
        tabs->Select(index);
    } else if (auto* list = dynamic_cast<BListView*>(&view)) {
        list->Select(index);
    } else {
        const std::string_view space(" ", 1);
        window.DispatchKey(key_event(space), &view);
    }
}

// --- the keyboard

static void take_focus(BView& view, int32 index)
{
    if (auto* control = dynamic_cast<BTextControl*>(view.Parent())) {
        control->MakeFocus(true);
        return;
    }
    const ViewRef self(&view);
    view.MakeFocus(true);
    if (self.View() == nullptr || index < 0)
        return;
    if (auto* list = dynamic_cast<BListView*>(&view))
        list->Select(index);
    else if (auto* tabs = dynamic_cast<BTabView*>(&view))
        tabs->SetFocusTab(index, true);
}

// --- values

static int32 whole_between(double value, int32 least, int32 most)
{
    if (std::isnan(value) || most < least)
        return least;
    return static_cast<int32>(
        std::clamp(std::round(value), static_cast<double>(least), static_cast<double>(most)));
}

static void set_slider(BSlider& slider, double value)
{
    const ViewRef self(&slider);
    const int32 before = slider.Value();
    int32 least, most;
    slider.GetLimits(&least, &most);
    slider.SetValue(whole_between(value, least, most));
    if (self.View() == nullptr || slider.Value() == before)
        return;
    slider.InvokeNotify(slider.ModificationMessage(), B_CONTROL_MODIFIED);
    if (self.View() != nullptr)
        slider.Invoke();
}

static void set_channel(BChannelControl& control, int32 channel, double value)
{
    const ViewRef self(&control);
    int32 least, most;
    if (control.GetLimitsFor(channel, &least, &most) != B_OK)
        return;
    const int32 before = control.ValueFor(channel);
    control.SetValueFor(channel, whole_between(value, least, most));
    if (self.View() == nullptr || control.ValueFor(channel) == before)
        return;
    control.InvokeNotifyChannel(control.ModificationMessage(), B_CONTROL_MODIFIED);
    if (self.View() != nullptr)
        control.Invoke();
}

static void set_value(BView& view, int32 index, double value)
{
    if (auto* slider = dynamic_cast<BSlider*>(&view))
        set_slider(*slider, value);
    else if (auto* channels = dynamic_cast<BChannelControl*>(&view))
        set_channel(*channels, index, value);
    else if (auto* bar = dynamic_cast<BScrollBar*>(&view))
        bar->SetValue(static_cast<float>(value));
}

// --- texts

static TextUnits units_of(BTextView& view)
{
    TextBody& body = TextData::Of(&view).body;
    const char* const text = body.Text();
    const size_t length = text != nullptr ? static_cast<size_t>(body.Length()) : 0;
    return TextUnits({text != nullptr ? text : "", length}, is_password(view));
}

static void select(BTextView& view, int32 from, int32 to)
{
    const TextUnits units = units_of(view);
    const int32 start = units.ByteAt(std::max(0, from)), end = units.ByteAt(std::max(0, to));
    view.Select(std::min(start, end), std::max(start, end));
}

// The UTF-8 of the first character of a text, and how many units it takes.
static std::string first_character(std::u16string_view text, size_t* units)
{
    uint32 code = text[0];
    *units = 1;
    if (code >= 0xd800 && code < 0xdc00 && text.size() > 1) {
        code = 0x10000 + ((code - 0xd800) << 10) + ((text[1] - 0xdc00u) & 0x3ff);
        *units = 2;
    }
    char bytes[4];
    return std::string(bytes, put_utf8(code, bytes));
}

// By keys, which the field may want to filter.
static void type(WindowData& window, BTextView& view, std::u16string_view text)
{
    const bool has_lines = dynamic_cast<BTextControl*>(view.Parent()) == nullptr;
    while (!text.empty() && window.Holds(&view)) {
        size_t units;
        const std::string bytes = first_character(text, &units);
        text.remove_prefix(units);
        const auto first = static_cast<uint8>(bytes[0]);
        const bool is_text = first >= ' ' && first != B_DELETE;
        if (is_text || (has_lines && (first == '\n' || first == '\t')))
            window.DispatchKey(key_event(bytes), &view);
    }
}

static void replace(WindowData& window, BTextView& view, const AccessibleRequest& request)
{
    if (!view.IsEditable())
        return;
    const ViewRef self(&view);
    select(view, request.from, request.to);
    if (self.View() == nullptr)
        return;
    int32 start, end;
    view.GetSelection(&start, &end);
    const char remove[] = {B_DELETE};
    if (!request.text.empty())
        type(window, view, request.text);
    else if (start < end)
        window.DispatchKey(key_event({remove, 1}), &view);
}

static void show(BView& view, int32 index)
{
    auto* const list = dynamic_cast<BListView*>(&view);
    if (list != nullptr && index >= 0)
        list->ScrollTo(index);
}

// --- all of them

void WindowData::ObeyReader(const AccessibleRequest& request)
{
    const uint32 id = server::view_of(request.item);
    if (id == 0 && request.what == AccessibleRequest::What::TakeFocus)
        window->Activate(true);
    BView* const view = id != 0 ? view_for_reader(topView, id) : nullptr;
    if (view == nullptr || is_disabled(*view))
        return;
    const int32 index = index_of(request);
    auto* const text = dynamic_cast<BTextView*>(view);
    switch (request.what) {
        case AccessibleRequest::What::Press:
            press(*this, *view, index);
            break;
        case AccessibleRequest::What::TakeFocus:
            take_focus(*view, index);
            break;
        case AccessibleRequest::What::SetValue:
            set_value(*view, index, request.value);
            break;
        case AccessibleRequest::What::Select:
            if (text != nullptr)
                select(*text, request.from, request.to);
            break;
        case AccessibleRequest::What::Replace:
            if (text != nullptr)
                replace(*this, *text, request);
            break;
        case AccessibleRequest::What::Show:
            show(*view, index);
            break;
    }
}

}  // namespace BPrivate
