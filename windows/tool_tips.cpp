// Tool tips: a text beside the pointer when it has rested over a gadget for a second. Each window
// that has some has a small window of its own for them, with a thread that waits and shows; a
// filter of the program's window tells it where the pointer is.
//
// The texts belong to the program's window and are looked up under one lock, which is the
// innermost. Neither window ever waits for the other one's thread to end.

#include "windows/tool_tips.h"

#include "plinth.h"
#include "gadgets/gadget.h"
#include "runtime/guarded.h"
#include "runtime/lasting_locker.h"
#include "windows/window_access.h"

#include <InterfaceDefs.h>
#include <Message.h>
#include <MessageFilter.h>
#include <Messenger.h>
#include <Screen.h>
#include <StringView.h>
#include <Window.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

static const uint32 kPointerMoved = 'ttSt';
static const uint32 kHide = 'ttSw';

static const bigtime_t kRest_us = 1'000'000;
static const bigtime_t kShown_us = 3'000'000;
// How long the window may keep its lock from its tool tip, which then is left out.
static const bigtime_t kPatience_us = 100'000;

static const BPoint kOffScreen(-1000, -1000);
static const float kBelowPointer = 18;
static const float kMargin = 4;  // beside the text, in all

namespace Marlin {

// The tool tips of a window, as the window knows them.
struct TipTexts {
    BWindow* target;
    BMessenger tip;          // the window that shows them
    BMessageFilter* filter;  // the target's
    std::unordered_map<const BView*, std::string> texts;
};

}  // namespace Marlin

using Marlin::TipTexts;

static LastingLocker sTipsLock("tool tips");

// Of all windows. A window may have older ones that it knows no more.
static std::vector<std::shared_ptr<TipTexts>>& all_tips() REQUIRES(sTipsLock)
{
    static auto* const all = new std::vector<std::shared_ptr<TipTexts>>;
    return *all;
}

static std::atomic<int32> sCount;  // of them: most programs have none

// The text of a view or of the nearest one around it that has some.
static bool find_text(const TipTexts& tips, const BView* view, std::string* text)
{
    Autolock lock(sTipsLock);
    for (; view != nullptr; view = view->Parent()) {
        const auto known = tips.texts.find(view);
        if (known == tips.texts.end())
            continue;
        *text = known->second;
        return !text->empty();
    }
    return false;
}

namespace Marlin {

// Tells the tool tip where the pointer is, and when it is used.
class ToolTipWatcher : public BMessageFilter {
public:
    explicit ToolTipWatcher(const BMessenger& tip)
        : BMessageFilter(B_PROGRAMMED_DELIVERY, B_LOCAL_SOURCE), fTip(tip)
    {
    }

    filter_result Filter(BMessage* message, BHandler**) override
    {
        switch (message->what) {
            case B_MOUSE_MOVED:
                _TellMove(*message);
                break;
            case B_MOUSE_DOWN:
            case B_MOUSE_UP:
            case B_MOUSE_WHEEL_CHANGED:
            case B_WINDOW_ACTIVATED:
                _Tell(BMessage(kHide));
                break;
            default:
                break;
        }
        return B_DISPATCH_MESSAGE;
    }

private:
    void _TellMove(const BMessage& move)
    {
        BMessage message(kPointerMoved);
        BPoint where;
        int32 transit;
        if (move.FindPoint("where", &where) == B_OK)
            message.AddPoint("where", where);
        if (move.FindInt32("be:transit", &transit) == B_OK)
            message.AddInt32("be:transit", transit);
        _Tell(message);
    }
    void _Tell(BMessage message) { fTip.SendMessage(&message, static_cast<BHandler*>(nullptr), 0); }

    const BMessenger fTip;
};

class ToolTipView : public BStringView {
public:
    explicit ToolTipView(BRect frame)
        : BStringView(frame, "tt", nullptr, B_FOLLOW_ALL, B_WILL_DRAW | B_PULSE_NEEDED)
    {
        SetAlignment(B_ALIGN_CENTER);
    }

    void AttachedToWindow() override
    {
        SetViewColor(ui_color(B_WINDOW_TAB_COLOR));
        SetLowColor(ViewColor());
        SetHighColor(tint_color(ViewColor(), B_DARKEN_4_TINT));
    }
    void GetPreferredSize(float* width, float* height) override
    {
        BStringView::GetPreferredSize(width, height);
        *width += kMargin;
    }
    void Draw(BRect update) override;
};

void ToolTipView::Draw(BRect update)
{
    const BRect r = Bounds();
    const rgb_color light = tint_color(ViewColor(), 0.385f);
    const rgb_color dark = tint_color(ViewColor(), 1.147f);
    BeginLineArray(4);
    AddLine(r.LeftTop(), r.LeftBottom(), light);
    AddLine(r.LeftTop(), r.RightTop(), light);
    AddLine(r.RightTop(), r.RightBottom(), dark);
    AddLine(r.LeftBottom(), r.RightBottom(), dark);
    EndLineArray();
    BStringView::Draw(update);
}

// All but the construction on its own thread.
class ToolTip : public BWindow {
public:
    ToolTip(BWindow* target, std::shared_ptr<const TipTexts> texts);

    void DispatchMessage(BMessage* message, BHandler* handler) override;

private:
    void _PointerMoved(const BMessage& message);
    void _WaitAnew();
    void _Hide();
    void _ShowText();
    void _Place(BPoint pointer);

    BWindow* const fTarget;  // may be gone
    const std::shared_ptr<const TipTexts> fTexts;
    ToolTipView* const fView;
    BPoint fLastPoint;       // of the pointer, in the target
    bool fIsInside = false;  // of one of its views
    bool fIsUp = false;
};

ToolTip::ToolTip(BWindow* target, std::shared_ptr<const TipTexts> texts)
    : BWindow(BRect(0, 0, -1, -1), "", B_BORDERED_WINDOW_LOOK, B_FLOATING_ALL_WINDOW_FEEL,
              B_NOT_MOVABLE | B_AVOID_FOCUS, B_CURRENT_WORKSPACE),
      fTarget(target),
      fTexts(std::move(texts)),
      fView(new ToolTipView(Bounds()))
{
    AddChild(fView);
    MoveTo(kOffScreen);
    SetPulseRate(0);
    Show();
}

void ToolTip::DispatchMessage(BMessage* message, BHandler* handler)
{
    switch (message->what) {
        case kPointerMoved:
            _PointerMoved(*message);
            break;
        case kHide:
            _WaitAnew();
            break;
        case B_PULSE:
            if (PulseRate() == kRest_us) {
                _ShowText();
                SetPulseRate(kShown_us);
            } else {
                _Hide();
                SetPulseRate(0);
            }
            break;
        default:
            BWindow::DispatchMessage(message, handler);
            break;
    }
}

void ToolTip::_PointerMoved(const BMessage& message)
{
    int32 transit;
    if (message.FindInt32("be:transit", &transit) == B_OK && transit != B_OUTSIDE_VIEW)
        fIsInside = transit != B_EXITED_VIEW;
    BPoint where;
    if (message.FindPoint("where", &where) != B_OK || where == fLastPoint)
        return;
    fLastPoint = where;
    _WaitAnew();
}

// The second begins again with each move: a rate that is set already would go on.
void ToolTip::_WaitAnew()
{
    _Hide();
    SetPulseRate(0);
    SetPulseRate(kRest_us);
}

void ToolTip::_Hide()
{
    if (!fIsUp)
        return;
    fIsUp = false;
    MoveTo(kOffScreen);
    fView->SetText(nullptr);
}

void ToolTip::_ShowText()
{
    if (!fIsInside || fTarget->LockWithTimeout(kPatience_us) != B_OK)
        return;
    std::string text;
    if (fTarget->IsActive() && find_text(*fTexts, fTarget->FindView(fLastPoint), &text)) {
        fView->SetText(text.c_str());
        _Place(fTarget->ConvertToScreen(fLastPoint));
    }
    fTarget->Unlock();
}

// Below the pointer; above it where there is no room, for a tip under the pointer takes it away
// from the gadget.
void ToolTip::_Place(BPoint pointer)
{
    float width, height;
    fView->GetPreferredSize(&width, &height);
    const BRect screen = BScreen(this).Frame();
    BPoint place = pointer;
    place.y += kBelowPointer;
    if (place.y + height > screen.bottom)
        place.y = pointer.y - kMargin - height;
    place.x = std::max(screen.left, std::min(place.x, screen.right - width));
    place.y = std::max(screen.top, std::min(place.y, screen.bottom - height));
    ResizeTo(width, height);
    UpdateIfNeeded();
    SetWorkspaces(B_CURRENT_WORKSPACE);
    MoveTo(place);
    fIsUp = true;
}

}  // namespace Marlin

// --- the tool tips of a window

// Takes those out that `is_meant` names, and ends their windows.
template <class IsMeant>
static void end_tips(IsMeant is_meant)
{
    std::vector<std::shared_ptr<TipTexts>> ended;
    {
        Autolock lock(sTipsLock);
        std::erase_if(all_tips(), [&](const std::shared_ptr<TipTexts>& tips) {
            if (!is_meant(*tips))
                return false;
            tips->texts.clear();
            ended.push_back(tips);
            return true;
        });
        sCount -= static_cast<int32>(ended.size());
    }
    for (const auto& tips : ended)
        tips->tip.SendMessage(B_QUIT_REQUESTED);
}

static void enter_tips(const std::shared_ptr<TipTexts>& tips)
{
    Autolock lock(sTipsLock);
    all_tips().push_back(tips);
    sCount++;
}

static void make_tips(MyWinClass* window)
{
    auto tips = std::make_shared<TipTexts>();
    tips->target = window;
    enter_tips(tips);
    try {
        tips->tip = BMessenger(new Marlin::ToolTip(window, tips));
        auto filter = std::make_unique<Marlin::ToolTipWatcher>(tips->tip);
        window->AddCommonFilter(filter.get());
        tips->filter = filter.release();
    } catch (const std::bad_alloc&) {
        end_tips([&](const TipTexts& each) { return &each == tips.get(); });
        throw;
    }
    window->fToolTip = tips.get();
}

void release_tool_tips(MyWinClass* window)
{
    window->fToolTip = nullptr;
    if (sCount != 0)
        end_tips([=](const TipTexts& tips) { return tips.target == window; });
}

bool tip_of(const BView* view, std::string* text)
{
    if (sCount == 0)
        return false;
    Autolock lock(sTipsLock);
    for (const auto& tips : all_tips()) {
        const auto known = tips->texts.find(view);
        if (known != tips->texts.end() && !known->second.empty())
            *text = known->second;
    }
    return !text->empty();
}

void forget_tip(const BView* view)
{
    if (sCount == 0)
        return;
    Autolock lock(sTipsLock);
    for (const auto& tips : all_tips()) {
        if (tips->texts.erase(view) != 0)
            tips->tip.SendMessage(kHide);
    }
}

// --- exported

// Those that a window has stay, and go on showing their texts, when it gets new ones: kept on
// purpose.
static void turn_tips(WindowAccess& window, int8_t on)
{
    if (!window)
        return;
    if (on != 0) {
        make_tips(window.Window());
        return;
    }
    TipTexts* tips = window->fToolTip;
    if (tips == nullptr)
        return;
    window->fToolTip = nullptr;
    window->RemoveCommonFilter(tips->filter);
    delete tips->filter;
    end_tips([=](const TipTexts& each) { return &each == tips; });
}

extern "C" void ToolTipsWindow(int32_t ident, int8_t on)
{
    guarded([=, call = __func__] {
        WindowAccess window(ident, call);
        turn_tips(window, on);
    });
}

static void set_tip(const GadgetAccess& gadget, const char* text)
{
    BView* view = gadget ? gadget.View() : nullptr;
    auto* window = view != nullptr ? dynamic_cast<MyWinClass*>(view->Window()) : nullptr;
    if (window == nullptr)
        return;
    if (window->fToolTip == nullptr)
        make_tips(window);
    Autolock lock(sTipsLock);
    if (text != nullptr)
        window->fToolTip->texts[view] = text;
    else
        window->fToolTip->texts.erase(view);
    view->Invalidate();  // for screen readers, which hear of what is drawn anew
}

extern "C" void SetTipsWindow(int32_t ident, const char* text)
{
    guarded([=] { set_tip(GadgetAccess(ident), text); });
}
