// Pop-up menus: opened at a place, by a thread that waits or by one of their own.

#include <PopUpMenu.h>

#include <MenuItem.h>
#include <Message.h>
#include <Window.h>

#include <atomic>
#include <functional>

#include <interface/menu/MenuPrivate.h>
#include <interface/menu/MenuTracker.h>
#include <interface/menu/MenuWindow.h>

using BPrivate::MenuTracker;

// Outlives the menu: what it has sent may have deleted it.
class BPopUpMenu::Opening {
public:
    bool Begin() { return !fOpen.exchange(true); }
    void End() { fOpen = false; }

private:
    std::atomic<bool> fOpen{false};
};

BPopUpMenu::BPopUpMenu(const char* name, bool radioMode, bool labelFromMarked, menu_layout layout)
    : BMenu(name, layout), fOpening(std::make_shared<Opening>())
{
    SetRadioMode(radioMode);
    if (labelFromMarked)
        SetLabelFromMarked(true);
}

BPopUpMenu::BPopUpMenu(BMessage* data) : BMenu(data), fOpening(std::make_shared<Opening>()) {}

BPopUpMenu::~BPopUpMenu()
{
    MenuTracker::Cancel(this);
    _WaitForTracking();
    BPrivate::MenuWindow::TakeDown(this);  // while it still draws as the class that it is
}

BPopUpMenu& BPopUpMenu::operator=(const BPopUpMenu&) { return *this; }

BArchivable* BPopUpMenu::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BPopUpMenu") ? new BPopUpMenu(archive) : nullptr;
}

status_t BPopUpMenu::Archive(BMessage* archive, bool deep) const
{
    return BMenu::Archive(archive, deep);
}

void BPopUpMenu::AttachedToWindow() { BMenu::AttachedToWindow(); }

void BPopUpMenu::SetAsyncAutoDestruct(bool on) { fAutoDestruct = on; }
bool BPopUpMenu::AsyncAutoDestruct() const { return fAutoDestruct; }

// As the choice of a field: over it, with the marked item on its title.
BPoint BPopUpMenu::ScreenLocation()
{
    BMenu* const super = Supermenu();
    if (super == nullptr)
        return fWhere;
    if (!IsLabelFromMarked() || super->Window() == nullptr)
        return BMenu::ScreenLocation();
    BMenuItem* marked = FindMarked();
    if (marked == nullptr)
        marked = ItemAt(0);
    float left, other;
    GetItemMargins(&left, &other, &other, &other);
    float titleLeft;
    super->GetItemMargins(&titleLeft, &other, &other, &other);
    const BRect title = Superitem()->Frame();
    const float top = marked != nullptr ? marked->Frame().top : 0;
    return super->ConvertToScreen(BPoint(title.left + titleLeft - left, title.top - top));
}

BMenuItem* BPopUpMenu::Go(BPoint where, bool autoInvoke, bool keepOpen, bool async)
{
    return Go(where, autoInvoke, keepOpen, BRect(), async);
}

BMenuItem* BPopUpMenu::Go(BPoint where, bool autoInvoke, bool keepOpen, BRect openRect, bool async)
{
    if (!fOpening->Begin())
        return nullptr;
    _WaitForTracking();
    fWhere = where;
    BLooper* const looper = BLooper::LooperForThread(find_thread(nullptr));
    MenuTracker::Options options;
    options.where = ScreenLocation();
    options.openRect = openRect;
    options.sticky = keepOpen;
    options.caller = dynamic_cast<BWindow*>(looper);
    const auto tracker = MenuTracker::Make(this, options);
    // The menu may be gone when its message has been sent.
    auto follow = [tracker, autoInvoke, opening = fOpening] {
        BMenuItem* const chosen = tracker->Run();
        opening->End();
        if (autoInvoke)
            tracker->InvokeChosen();
        tracker->Release();
        return chosen;
    };
    tracker->Hold();
    if (!async)
        return follow();
    auto* job = new std::function<void()>([=, this] {
        follow();
        if (fAutoDestruct)
            delete this;
    });
    fTracking = spawn_thread(
        [](void* data) -> status_t {
            auto* work = static_cast<std::function<void()>*>(data);
            (*work)();
            delete work;
            return B_OK;
        },
        "menu tracking", B_DISPLAY_PRIORITY, job);
    if (fTracking < B_OK || resume_thread(fTracking) != B_OK) {
        delete job;
        tracker->Release();
        fOpening->End();
    }
    return nullptr;
}

// A menu that has closed may still be sending its choice.
void BPopUpMenu::_WaitForTracking()
{
    status_t result;
    if (fTracking >= B_OK && fTracking != find_thread(nullptr))
        wait_for_thread(fTracking, &result);
    fTracking = -1;
}

// --- hooks of the view

void BPopUpMenu::DetachedFromWindow() { BMenu::DetachedFromWindow(); }
void BPopUpMenu::AllAttached() { BMenu::AllAttached(); }
void BPopUpMenu::AllDetached() { BMenu::AllDetached(); }
void BPopUpMenu::MessageReceived(BMessage* message) { BMenu::MessageReceived(message); }
void BPopUpMenu::MouseDown(BPoint where) { BMenu::MouseDown(where); }
void BPopUpMenu::MouseUp(BPoint where) { BMenu::MouseUp(where); }
void BPopUpMenu::FrameMoved(BPoint place) { BMenu::FrameMoved(place); }
void BPopUpMenu::FrameResized(float width, float height) { BMenu::FrameResized(width, height); }
void BPopUpMenu::ResizeToPreferred() { BMenu::ResizeToPreferred(); }
void BPopUpMenu::MakeFocus(bool focus) { BMenu::MakeFocus(focus); }
status_t BPopUpMenu::Perform(perform_code code, void* data) { return BMenu::Perform(code, data); }
status_t BPopUpMenu::GetSupportedSuites(BMessage* data) { return BMenu::GetSupportedSuites(data); }

void BPopUpMenu::MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage)
{
    BMenu::MouseMoved(where, transit, dragMessage);
}

void BPopUpMenu::GetPreferredSize(float* _width, float* _height)
{
    BMenu::GetPreferredSize(_width, _height);
}

BHandler* BPopUpMenu::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property)
{
    return BMenu::ResolveSpecifier(message, index, specifier, form, property);
}
