// BTabView: views behind tabs. What the program does in its hooks may end the tab view: whoever
// goes on after one looks first.

#include <TabView.h>

#include <Looper.h>
#include <Message.h>
#include <PropertyInfo.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <new>

#include <app/looper/Scripting.h>
#include <interface/controls/ControlPrivate.h>
#include <interface/tabs/TabData.h>
#include <support/EnumNumbers.h>

using BPrivate::Look;
using BPrivate::TabViewData;
using BPrivate::ViewLock;
using BPrivate::ViewPrivate;
using BPrivate::ViewRef;

static const float kMinimumTab = 8;  // pixels, however many tabs there are

static property_info kProperties[] = {SCRIPT_VALUE("Selection", B_INT32_TYPE), {}};

namespace {

// On the ground of the tab view.
class Container : public BView {
public:
    Container() : BView(BRect(), "view container", B_FOLLOW_ALL, B_WILL_DRAW) {}
    void AttachedToWindow() override { BPrivate::adopt_ground(this); }
};

}  // namespace

// ---- Construction

BTabView::BTabView(const char* name, button_width width, uint32 flags)
    : BView(name, flags), fData(std::make_unique<TabViewData>())
{
    _Init(width);
}

BTabView::BTabView(BRect frame, const char* name, button_width width, uint32 resizeMask,
                   uint32 flags)
    : BView(frame, name, resizeMask, flags), fData(std::make_unique<TabViewData>())
{
    _Init(width);
}

BTabView::BTabView(BMessage* archive) : BView(archive), fData(std::make_unique<TabViewData>())
{
    _Init(B_WIDTH_AS_USUAL);
    if (archive == nullptr)
        return;
    fData->width = BPrivate::enum_up_to(archive->GetInt16("_but_width", B_WIDTH_AS_USUAL),
                                        B_WIDTH_FROM_LABEL, B_WIDTH_AS_USUAL);
    fData->height = archive->GetFloat("_high", fData->height);
    fData->border = BPrivate::enum_up_to(archive->GetInt32("_border_style", B_FANCY_BORDER),
                                         B_NO_BORDER, B_FANCY_BORDER);
    static const tab_side kSides[] = {kLeftSide, kRightSide, kTopSide, kBottomSide};
    fData->side = BPrivate::enum_among(archive->GetInt32("_tab_side", kTopSide), kSides, kTopSide);
    _PlaceContainer();
    BMessage part;
    for (int32 i = 0; archive->FindMessage("_l_items", i, &part) == B_OK; i++) {
        auto* tab = dynamic_cast<BTab*>(instantiate_object(&part));
        BView* view = nullptr;
        if (archive->FindMessage("_view_list", i, &part) == B_OK)
            view = dynamic_cast<BView*>(instantiate_object(&part));
        if (tab != nullptr)
            BTabView::AddTab(view, tab);
        else
            delete view;
    }
    BTabView::Select(archive->GetInt32("_sel", -1));
}

void BTabView::_Init(button_width width)
{
    SetViewColor(ui_color(B_PANEL_BACKGROUND_COLOR));
    SetLowColor(ui_color(B_PANEL_BACKGROUND_COLOR));
    fData->width = width;
    fData->height = Look(this).TabHeight();
    fData->container = new Container;
    AddChild(fData->container);
    _PlaceContainer();
}

BTabView::~BTabView()
{
    while (!fData->tabs.empty()) {
        BTab* const tab = fData->tabs.back();
        fData->tabs.pop_back();
        tab->fData->owner = nullptr;
        delete tab;
    }
}

BArchivable* BTabView::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BTabView") ? new (std::nothrow) BTabView(archive)
                                                       : nullptr;
}

status_t BTabView::Archive(BMessage* into, bool deep) const
{
    status_t status = BView::Archive(into, false);
    const auto keep = [&](status_t added) { status = status == B_OK ? added : status; };
    if (status != B_OK)
        return status;
    keep(into->AddInt16("_but_width", static_cast<int16>(fData->width)));
    keep(into->AddFloat("_high", fData->height));
    keep(into->AddInt32("_sel", fData->selection));
    if (fData->border != B_FANCY_BORDER)
        keep(into->AddInt32("_border_style", fData->border));
    if (fData->side != kTopSide)
        keep(into->AddInt32("_tab_side", fData->side));
    for (size_t i = 0; deep && i < fData->tabs.size(); i++) {
        const BTab* tab = fData->tabs[i];
        BMessage archive, view;
        keep(tab->Archive(&archive, true));
        if (tab->View() != nullptr)
            keep(tab->View()->Archive(&view, true));
        keep(into->AddMessage("_l_items", &archive));
        keep(into->AddMessage("_view_list", &view));
    }
    return status;
}

status_t BTabView::AllUnarchived(const BMessage* from) { return BView::AllUnarchived(from); }
status_t BTabView::Perform(perform_code d, void* arg) { return BView::Perform(d, arg); }

// ---- Places

// What the tabs leave.
BRect BTabView::_Box() const
{
    BRect box = Bounds();
    switch (fData->side) {
        case kLeftSide:
            box.left += fData->height;
            break;
        case kRightSide:
            box.right -= fData->height;
            break;
        case kBottomSide:
            box.bottom -= fData->height;
            break;
        default:
            box.top += fData->height;
    }
    return box;
}

void BTabView::_PlaceContainer()
{
    const float inset = Look::GroupInset(fData->border);
    const BRect inner = _Box().InsetByCopy(inset, inset);
    fData->container->MoveTo(inner.LeftTop());
    fData->container->ResizeTo(inner.Width(), inner.Height());
    Invalidate();
}

// The ends of the tabs along their side, from the start of the first.
static std::vector<float> tab_ends(const BTabView* view, const TabViewData& data)
{
    const Look look(const_cast<BTabView*>(view));
    const BRect bounds = view->Bounds();
    const float start = look.ItemSpacing();
    std::vector<float> widths;
    float all = 0;
    for (const BTab* tab : data.tabs) {
        widths.push_back(data.width == B_WIDTH_AS_USUAL ? look.UsualTabWidth()
                                                        : look.TabWidth(tab->Label()));
        all += widths.back();
    }
    if (data.width == B_WIDTH_FROM_WIDEST && !widths.empty()) {
        const float widest = *std::max_element(widths.begin(), widths.end());
        std::fill(widths.begin(), widths.end(), widest);
        all = widest * static_cast<float>(widths.size());
    }
    const float room = (data.IsUpright() ? bounds.Height() : bounds.Width()) - 2 * start;
    const float share = all > room ? std::max(room, 0.0f) / all : 1;
    std::vector<float> ends = {start};
    for (const float width : widths)
        ends.push_back(ends.back() + std::max(std::floor(width * share), kMinimumTab));
    return ends;
}

BRect BTabView::TabFrame(int32 index) const
{
    if (index < 0 || index >= CountTabs())
        return BRect();
    const std::vector<float> ends = tab_ends(this, *fData);
    const float start = ends[static_cast<size_t>(index)];
    const float end = ends[static_cast<size_t>(index) + 1];
    const BRect bounds = Bounds();
    const float height = fData->height;
    switch (fData->side) {
        case kLeftSide:
            return BRect(0, start, height, end);
        case kRightSide:
            return BRect(bounds.right - height, start, bounds.right, end);
        case kBottomSide:
            return BRect(start, bounds.bottom - height, end, bounds.bottom);
        default:
            return BRect(start, 0, end, height);
    }
}

// The tabs look different: they, and the edge of the box beside them, are drawn anew.
void BTabView::_TabsChanged()
{
    BRect tabs = Bounds();
    const BRect box = _Box();
    const float inset = Look::GroupInset(fData->border);
    switch (fData->side) {
        case kLeftSide:
            tabs.right = box.left + inset;
            break;
        case kRightSide:
            tabs.left = box.right - inset;
            break;
        case kBottomSide:
            tabs.top = box.bottom - inset;
            break;
        default:
            tabs.bottom = box.top + inset;
    }
    Invalidate(tabs);
}

void BTabView::ResizeToPreferred()
{
    float width, height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

void BTabView::GetPreferredSize(float* _width, float* _height)
{
    float page_width = 0, page_height = 0;
    for (const BTab* tab : fData->tabs) {
        if (const BView* view = tab->View()) {
            page_width = std::max(page_width, view->Bounds().Width());
            page_height = std::max(page_height, view->Bounds().Height());
        }
    }
    const float inset = 2 * Look::GroupInset(fData->border);
    float along = 0;
    for (const BTab* tab : fData->tabs)
        along += std::max(Look(this).TabWidth(tab->Label()),
                          fData->width == B_WIDTH_AS_USUAL ? Look(this).UsualTabWidth() : 0);
    along += 2 * Look(this).ItemSpacing();
    const float across = fData->height + inset;
    const bool upright = fData->IsUpright();
    if (_width != nullptr)
        *_width = upright ? page_width + across : std::max(page_width + inset, along);
    if (_height != nullptr)
        *_height = upright ? std::max(page_height + inset, along) : page_height + across;
}

BSize BTabView::MinSize() { return BView::MinSize(); }
BSize BTabView::MaxSize() { return BView::MaxSize(); }
BSize BTabView::PreferredSize() { return BView::PreferredSize(); }
void BTabView::SetFlags(uint32 flags) { BView::SetFlags(flags); }
void BTabView::SetResizingMode(uint32 mode) { BView::SetResizingMode(mode); }
void BTabView::FrameMoved(BPoint newPosition) { BView::FrameMoved(newPosition); }

void BTabView::FrameResized(float newWidth, float newHeight)
{
    BView::FrameResized(newWidth, newHeight);
}

// ---- Hooks of the view

void BTabView::AttachedToWindow()
{
    BView::AttachedToWindow();
    if (fData->selection < 0 && CountTabs() > 0)
        Select(0);
}

void BTabView::DetachedFromWindow() { BView::DetachedFromWindow(); }
void BTabView::AllAttached() { BView::AllAttached(); }
void BTabView::AllDetached() { BView::AllDetached(); }
void BTabView::Pulse() { BView::Pulse(); }
void BTabView::MouseUp(BPoint where) { BView::MouseUp(where); }

void BTabView::MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage)
{
    BView::MouseMoved(where, transit, dragMessage);
}

void BTabView::MouseDown(BPoint where)
{
    const BMessage* message = Looper() != nullptr ? Looper()->CurrentMessage() : nullptr;
    if (message != nullptr &&
        (message->GetInt32("buttons", B_PRIMARY_MOUSE_BUTTON) & B_PRIMARY_MOUSE_BUTTON) == 0)
        return;
    for (int32 i = 0; i < CountTabs(); i++) {
        if (!TabFrame(i).Contains(where))
            continue;
        if (i != fData->selection && fData->tabs[static_cast<size_t>(i)]->IsEnabled()) {
            if (fData->focus >= 0)
                SetFocusTab(i, true);
            Select(i);
        }
        return;
    }
}

// To the next tab in a direction that can be brought to the front, and round about.
void BTabView::_MoveFocus(int32 step)
{
    const int32 count = CountTabs();
    int32 at = fData->focus >= 0 ? fData->focus : fData->selection;
    for (int32 i = 0; i < count; i++) {
        at = (at + step + count) % count;
        if (fData->tabs[static_cast<size_t>(at)]->IsEnabled()) {
            SetFocusTab(at, true);
            return;
        }
    }
}

void BTabView::KeyDown(const char* bytes, int32 numBytes)
{
    switch (numBytes == 1 ? bytes[0] : '\0') {
        case B_LEFT_ARROW:
        case B_UP_ARROW:
            _MoveFocus(-1);
            break;
        case B_RIGHT_ARROW:
        case B_DOWN_ARROW:
            _MoveFocus(1);
            break;
        case B_ENTER:
        case B_SPACE: {
            const BTab* tab = TabAt(fData->focus);
            if (tab != nullptr && tab->IsEnabled())
                Select(fData->focus);
            break;
        }
        default:
            BView::KeyDown(bytes, numBytes);
    }
}

void BTabView::WindowActivated(bool active)
{
    BView::WindowActivated(active);
    if (IsFocus())
        _TabsChanged();
}

void BTabView::MakeFocus(bool focused)
{
    const ViewRef self(this);
    BView::MakeFocus(focused);
    if (self.View() != nullptr)
        SetFocusTab(fData->selection, focused && IsFocus());
}

void BTabView::SetFocusTab(int32 tab, bool focused)
{
    if (focused && TabAt(tab) == nullptr)
        return;
    ViewLock lock(this);
    if (BTab* before = TabAt(fData->focus))
        before->MakeFocus(false);
    fData->focus = focused ? tab : -1;
    if (BTab* now = TabAt(fData->focus))
        now->MakeFocus(true);
    _TabsChanged();
}

int32 BTabView::FocusTab() const { return fData->focus; }

// ---- Drawing

BRect BTabView::DrawTabs()
{
    for (int32 i = 0; i < CountTabs(); i++) {
        if (i != fData->selection)
            fData->tabs[static_cast<size_t>(i)]->DrawTab(
                this, TabFrame(i), i == 0 ? B_TAB_FIRST : B_TAB_ANY, i + 1 != fData->selection);
    }
    BTab* front = TabAt(fData->selection);
    if (front == nullptr)
        return BRect();
    const BRect frame = TabFrame(fData->selection);
    front->DrawTab(this, frame, B_TAB_FRONT);
    return frame;
}

void BTabView::DrawBox(BRect selectedTabRect)
{
    Look(this).DrawTabBox(_Box(), selectedTabRect, fData->Side(), fData->border);
}

void BTabView::Draw(BRect)
{
    DrawBox(DrawTabs());
    BTab* focused = TabAt(fData->focus);
    if (focused != nullptr && BPrivate::shows_focus(this))
        focused->DrawFocusMark(this, TabFrame(fData->focus));
}

// ---- Tabs

void BTabView::Select(int32 index)
{
    BTab* const tab = TabAt(index);
    if (tab == nullptr || index == fData->selection)
        return;
    ViewLock lock(this);
    const ViewRef self(this);
    if (BTab* before = TabAt(fData->selection)) {
        fData->selection = -1;
        before->fData->room = fData->container->Bounds().Size();
        before->Deselect();
    }
    if (self.View() == nullptr || fData->selection >= 0 || IndexOf(tab) < 0)
        return;  // a hook was faster
    fData->selection = IndexOf(tab);
    tab->Select(fData->container);
    if (self.View() == nullptr)
        return;
    _TabsChanged();
    const BSize room = fData->container->Bounds().Size();
    if (IndexOf(tab) < 0 || tab->View() == nullptr || tab->View()->Parent() != fData->container)
        return;
    const BSize before = tab->fData->room;
    tab->fData->room = room;
    if (before != room)
        ViewPrivate::Follow(tab->View(), before.width, before.height, room.width, room.height,
                            BPrivate::ViewPrivate::Repaint::Yes);
}

int32 BTabView::Selection() const { return fData->selection; }

void BTabView::AddTab(BView* target, BTab* tab)
{
    if (tab != nullptr && tab->fData->owner != nullptr)
        return;
    ViewLock lock(this);
    fData->tabs.reserve(fData->tabs.size() + 1);
    if (tab == nullptr)
        tab = new BTab(target);
    else
        tab->SetView(target);
    tab->fData->owner = this;
    tab->fData->room = fData->container->Bounds().Size();
    fData->tabs.push_back(tab);
    _TabsChanged();
    if (CountTabs() == 1 && Window() != nullptr)
        Select(0);
}

// Takes a tab out; another one comes to the front only with the caller.
BTab* BTabView::_Take(int32 index)
{
    BTab* const tab = TabAt(index);
    if (tab == nullptr)
        return nullptr;
    fData->tabs.erase(fData->tabs.begin() + index);
    tab->fData->owner = nullptr;
    tab->MakeFocus(false);
    for (int32* kept : {&fData->selection, &fData->focus})
        *kept = *kept > index ? *kept - 1 : *kept == index ? -1 : *kept;
    _TabsChanged();
    if (tab->IsSelected())
        tab->Deselect();
    return tab;
}

void BTabView::_SelectBeside(int32 index)
{
    const auto is_enabled = [this](int32 i) {
        return i >= 0 && i < CountTabs() && fData->tabs[static_cast<size_t>(i)]->IsEnabled();
    };
    int32 next = index - 1;
    while (next >= 0 && !is_enabled(next))
        next--;
    if (next < 0) {
        next = index;
        while (next < CountTabs() && !is_enabled(next))
            next++;
    }
    Select(next);
}

BTab* BTabView::RemoveTab(int32 tabIndex)
{
    ViewLock lock(this);
    const ViewRef self(this);
    const bool in_front = tabIndex == fData->selection;
    BTab* const tab = _Take(tabIndex);
    if (tab != nullptr && in_front && self.View() != nullptr && fData->selection < 0)
        _SelectBeside(tabIndex);
    return tab;
}

BTab* BTabView::TabAt(int32 index) const
{
    return index >= 0 && index < CountTabs() ? fData->tabs[static_cast<size_t>(index)] : nullptr;
}

void BTabView::SetTabWidth(button_width width)
{
    fData->width = width;
    _TabsChanged();
}

button_width BTabView::TabWidth() const { return fData->width; }

void BTabView::SetTabHeight(float height)
{
    fData->height = std::isfinite(height) ? std::clamp(height, 0.0f, 1e6f) : fData->height;
    _PlaceContainer();
}

float BTabView::TabHeight() const { return fData->height; }

void BTabView::SetBorder(border_style borderStyle)
{
    fData->border = borderStyle;
    _PlaceContainer();
}

border_style BTabView::Border() const { return fData->border; }

void BTabView::SetTabSide(tab_side tabSide)
{
    if (tabSide != kLeftSide && tabSide != kRightSide && tabSide != kTopSide &&
        tabSide != kBottomSide)
        return;
    fData->side = tabSide;
    _PlaceContainer();
}

BTabView::tab_side BTabView::TabSide() const { return fData->side; }
BView* BTabView::ContainerView() const { return fData->container; }
int32 BTabView::CountTabs() const { return static_cast<int32>(fData->tabs.size()); }

BView* BTabView::ViewForTab(int32 tabIndex) const
{
    const BTab* tab = TabAt(tabIndex);
    return tab != nullptr ? tab->View() : nullptr;
}

int32 BTabView::IndexOf(BTab* tab) const
{
    const auto found = std::find(fData->tabs.begin(), fData->tabs.end(), tab);
    return found != fData->tabs.end() ? static_cast<int32>(found - fData->tabs.begin()) : -1;
}

// ---- Scripting

BHandler* BTabView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                     int32 what, const char* property)
{
    if (BPrivate::knows_property(kProperties, message, index, specifier, what, property))
        return this;
    return BView::ResolveSpecifier(message, index, specifier, what, property);
}

status_t BTabView::GetSupportedSuites(BMessage* message)
{
    const status_t status = BPrivate::add_suite(message, "suite/vnd.Be-tab-view", kProperties);
    return status == B_OK ? BView::GetSupportedSuites(message) : status;
}

void BTabView::MessageReceived(BMessage* message)
{
    const bool answered = BPrivate::answer_property(
        kProperties, message,
        [this](const char*, BMessage* reply) {
            return reply->AddInt32("result", fData->selection);
        },
        [this](const char*, const BMessage& data) {
            const int32 index = data.GetInt32("data", -1);
            if (TabAt(index) == nullptr)
                return B_BAD_INDEX;
            Select(index);
            return B_OK;
        });
    if (!answered)
        BView::MessageReceived(message);
}
