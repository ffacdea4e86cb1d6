// Windows in order, and the way of input to them. Every member function runs with the stage locked.

#include "server/screen/Stage.h"

#include <OS.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "server/screen/ScreenWindow.h"
#include "support/UTF8Characters.h"

namespace server {

static const int32 kMaxWorkspaces = 32;

Stage& stage()
{
    static auto* stage = new Stage;
    return *stage;
}

void Stage::Add(ScreenWindow* window)
{
    auto above = std::find_if(
        fWindows.begin(), fWindows.end(),
        [=](ScreenWindow* other) REQUIRES(gStageLock) { return other->Layer() > window->Layer(); });
    fWindows.insert(above, window);
}

void Stage::Remove(ScreenWindow* window)
{
    std::erase(fWindows, window);
    for (ScreenWindow* other : fWindows)
        other->Forget(window);
    fClicks.Forget(window);
    fHolders.Deactivated(window);
    if (fHover == window)
        fHover = nullptr;
    if (fPressed == window)
        fPressed = nullptr;
    if (fActive == window)
        fActive = nullptr;
    if (fComposer == window)
        fComposer = nullptr;
    if (fUnder == window)
        fUnder = nullptr;
}

void Stage::Raise(ScreenWindow* window)
{
    if (std::erase(fWindows, window) != 0)
        Add(window);
}

void Stage::PutBehind(ScreenWindow* window, const ScreenWindow* other)
{
    if (window == other || std::erase(fWindows, window) == 0)
        return;
    auto place = std::find(fWindows.begin(), fWindows.end(), other);
    if (place == fWindows.end())
        place = fWindows.begin();
    auto lowest = std::find_if(
        fWindows.begin(), fWindows.end(),
        [=](ScreenWindow* each) REQUIRES(gStageLock) { return each->Layer() >= window->Layer(); });
    auto above = std::find_if(fWindows.begin(), fWindows.end(),
                              [=](ScreenWindow* each)
                                  REQUIRES(gStageLock) { return each->Layer() > window->Layer(); });
    fWindows.insert(std::clamp(place, lowest, above), window);
}

bool Stage::IsVisible(const ScreenWindow* window) const
{
    return window->IsOpen() && (window->Workspaces() & (1u << fWorkspace)) != 0;
}

bool Stage::_Has(const ScreenWindow* window) const
{
    return std::find(fWindows.begin(), fWindows.end(), window) != fWindows.end();
}

void Stage::SetActive(ScreenWindow* window)
{
    if (!_Has(window))
        window = nullptr;
    if (window == fActive)
        return;
    Event event;
    event.kind = EventKind::Activated;
    ScreenWindow* before = std::exchange(fActive, window);
    if (before != nullptr) {
        before->Deliver(event);
        fHolders.Deactivated(before);
    }
    event.active = true;
    if (window != nullptr)
        window->Deliver(event);
}

void Stage::ActivateNext()
{
    for (auto it = fWindows.rbegin(); it != fWindows.rend(); ++it) {
        if (IsVisible(*it) && ((*it)->Flags() & B_AVOID_FOCUS) == 0 && Blocker(*it) == nullptr) {
            SetActive(*it);
            return;
        }
    }
    SetActive(nullptr);
}

ScreenWindow* Stage::Blocker(const ScreenWindow* window) const
{
    for (auto it = fWindows.rbegin(); it != fWindows.rend() && *it != window; ++it) {
        if ((*it)->IsModalFor(window) && IsVisible(*it))
            return *it;
    }
    return nullptr;
}

void Stage::MindBlockers()
{
    if (fActive != nullptr) {
        if (ScreenWindow* blocker = Blocker(fActive))
            blocker->ActivateByUser();
        return;
    }
    for (ScreenWindow* window : fWindows) {
        if (window->HasHostFocus() && Blocker(window) == nullptr)
            SetActive(window);
    }
}

ScreenWindow* Stage::ContentAt(BPoint where) const
{
    ScreenWindow* window = FrameAt(where);
    if (window == nullptr)
        return nullptr;
    BPoint pixel(std::floor(where.x), std::floor(where.y));
    return window->Frame().Contains(pixel) ? window : nullptr;
}

ScreenWindow* Stage::FrameAt(BPoint where) const
{
    BPoint pixel(std::floor(where.x), std::floor(where.y));
    for (auto it = fWindows.rbegin(); it != fWindows.rend(); ++it) {
        if (IsVisible(*it) && (*it)->OuterFrame().Contains(pixel))
            return *it;
    }
    return nullptr;
}

ScreenWindow* Stage::IconAt(BPoint where) const
{
    BPoint pixel(std::floor(where.x), std::floor(where.y));
    for (auto it = fWindows.rbegin(); it != fWindows.rend(); ++it) {
        if ((*it)->IsMinimized() && (*it)->OuterFrame().Contains(pixel))
            return *it;
    }
    return nullptr;
}

void Stage::SetWorkspaceCount(int32 count)
{
    fWorkspaceCount = std::clamp(count, 1, kMaxWorkspaces);
    ShowWorkspace(std::min(fWorkspace, fWorkspaceCount - 1));
}

void Stage::ShowWorkspace(int32 workspace)
{
    if (workspace < 0 || workspace >= fWorkspaceCount || workspace == fWorkspace)
        return;
    int32 before = std::exchange(fWorkspace, workspace);
    Event event;
    event.kind = EventKind::WorkspaceActivated;
    for (bool active : {false, true}) {
        event.workspace = active ? workspace : before;
        event.active = active;
        for (ScreenWindow* window : fWindows) {
            if ((window->Workspaces() & (1u << event.workspace)) != 0)
                window->Deliver(event);
        }
    }
    if (fActive == nullptr || !IsVisible(fActive))
        ActivateNext();
}

ScreenWindow* Stage::_PointerTarget(ScreenWindow* target) const
{
    if (fPressed != nullptr)
        return fPressed;
    if (target == nullptr)
        return ContentAt(fPointer);
    return _Has(target) ? target : nullptr;
}

Event Stage::_PointerEvent(EventKind kind, const ScreenWindow* window) const
{
    Event event;
    event.kind = kind;
    event.when = fLastInput;
    event.screenWhere = fPointer;
    event.where = fPointer - window->Frame().LeftTop();
    ScreenWindow* const seen = fUnder != nullptr ? fUnder : ContentAt(fPointer);
    if (ScreenWindow* under = fCovered ? nullptr : seen) {
        event.under = under->Sink();
        event.underWhere = fPointer - under->Frame().LeftTop();
    }
    event.buttons = fButtons;
    event.modifiers = fKeyboard.Modifiers();
    return event;
}

void Stage::_Enter(ScreenWindow* window)
{
    if (window == fHover)
        return;
    if (fHover != nullptr)
        fHover->Deliver(_PointerEvent(EventKind::MouseExited, fHover));
    fHover = window;
}

void Stage::_InputAt(bigtime_t when) { fLastInput = when != 0 ? when : system_time(); }

void Stage::MovePointer(BPoint where, ScreenWindow* target, bigtime_t when)
{
    if (std::isnan(where.x) || std::isnan(where.y))
        return;
    fCursorObscured = fCursorObscured && where == fPointer;
    fPointer = where;
    _InputAt(when);
    if (IsInputHeld())
        fHolders.Tell(_ScreenEvent(EventKind::MouseMoved));
    if (IsInputHeld() || fHeldPress)
        return;
    target = _PointerTarget(target);
    _Enter(target);
    if (target != nullptr && !fSwallow)
        target->Deliver(_PointerEvent(EventKind::MouseMoved, target));
}

void Stage::LeavePointer(ScreenWindow* window)
{
    if (fHover == window && fPressed == nullptr)
        _Enter(nullptr);
}

void Stage::HoldInput(EventSink* sink, const EventSink* owner)
{
    const ScreenWindow* window = fActive;
    for (const ScreenWindow* each : fWindows) {
        if (owner != nullptr && each->Sink() == owner)
            window = each;
    }
    if (fPressed == nullptr)
        _Enter(nullptr);
    fHolders.Add(sink, window);
}

bool Stage::ReleaseInput(EventSink* sink)
{
    fHolders.Remove(sink);
    if (IsInputHeld())
        return false;
    if (!fHeldPress && fPressed == nullptr)
        MovePointer(fPointer, nullptr, fLastInput);  // the windows see it again
    return true;
}

void Stage::CancelHolders()
{
    Event event;
    event.kind = EventKind::Activated;
    event.when = system_time();
    fHolders.Tell(event);
}

Event Stage::_ScreenEvent(EventKind kind) const
{
    Event event;
    event.kind = kind;
    event.when = fLastInput;
    event.where = event.screenWhere = fPointer;
    event.buttons = fButtons;
    event.modifiers = fKeyboard.Modifiers();
    return event;
}

static bool is_first_press(const Event& event)
{
    return event.kind == EventKind::MouseDown && event.buttons == event.button;
}

static bool is_key(const Event& event)
{
    return event.kind == EventKind::KeyDown || event.kind == EventKind::KeyUp;
}

// A press among them is the holders', and so is its end.
void Stage::HandOver(const std::vector<Event>& events, EventSink* sink)
{
    bool pressed = false;
    for (const Event& event : events) {
        if (is_key(event))
            fHolders.TakeKey(event);
        else
            sink->Deliver(event);
        pressed = is_first_press(event) ||
                  (pressed && (event.kind != EventKind::MouseUp || event.buttons != 0));
    }
    if (!pressed)
        return;
    fHeldPress = true;
    fPressed = nullptr;
}

// The end of a press or of a key is for who had its beginning; the other holders of the input have
// been told of the pointer. From the first press on that does again what it has done.
void Stage::GiveBack(const std::vector<Event>& events)
{
    const BPoint pointer = fPointer;
    const bigtime_t when = fLastInput;
    const uint32 presses = fPresses;
    std::vector<int32> down;
    bool again = false;
    for (const Event& event : events) {
        if (event.kind == EventKind::Activated)
            continue;
        if (event.kind == EventKind::KeyDown)
            down.push_back(event.key);
        if (!again && is_first_press(event) && !IsInputHeld()) {
            again = true;
            fHeldPress = false;
            fButtons = 0;
        }
        if (!is_key(event) && again)
            _GiveBackPointer(event);
        else if (is_key(event) && std::find(down.begin(), down.end(), event.key) != down.end())
            _DeliverKeys({event});
    }
    fPresses = presses;
    if (again && fPressed == nullptr && !fHeldPress)
        MovePointer(pointer, nullptr, when);
    fPointer = pointer;
}

void Stage::_GiveBackPointer(const Event& event)
{
    MovePointer(event.screenWhere, nullptr, event.when);
    if (event.kind == EventKind::MouseWheel)
        TurnWheel(event.wheelX, event.wheelY, nullptr, event.when);
    else if (event.kind == EventKind::MouseUp)
        _ChangeButton(event.button, false, nullptr, event.when);
    else if (event.kind == EventKind::MouseDown)
        _GiveBackPress(event);
}

// A press that a menu's window had is for the active one below it, if it is there; what other
// programs have on the screen is not known here.
void Stage::_GiveBackPress(const Event& press)
{
    ScreenWindow* target = nullptr;
    for (ScreenWindow* window : fWindows) {
        if (press.under != nullptr && window->Sink() == press.under)
            target = window;
    }
    if (target == nullptr && press.under != nullptr && ContentAt(fPointer) == fActive)
        target = fActive;
    if (target != nullptr || press.under == nullptr) {
        _ChangeButton(press.button, true, target, press.when);
        return;
    }
    fButtons |= press.button;
    fHeldPress = true;
}

// True if the change of a button is nothing to any window.
bool Stage::_HeldButton(int32 button, bool down, const ScreenWindow* target)
{
    if (down && fButtons == button)
        fHeldPress = IsInputHeld();
    if (IsInputHeld()) {
        Event event = _ScreenEvent(down ? EventKind::MouseDown : EventKind::MouseUp);
        event.button = button;
        event.under = _Has(target) ? target->Sink() : nullptr;
        fHolders.Tell(event);
    }
    const bool ends_at_window = fPressed != nullptr && fButtons == 0;
    const bool is_held = fHeldPress || (IsInputHeld() && !ends_at_window);
    if (fHeldPress && fButtons == 0) {
        fHeldPress = false;
        if (!IsInputHeld())
            MovePointer(fPointer, nullptr, fLastInput);
    }
    return is_held;
}

void Stage::ChangeButton(int32 button, bool down, ScreenWindow* target, bigtime_t when)
{
    _ChangeButton(button, down, target, when);
    if (fButtons == 0)
        EndDrag(true);
}

void Stage::_ChangeButton(int32 button, bool down, ScreenWindow* target, bigtime_t when)
{
    if (button <= 0 || ((fButtons & button) != 0) == down)
        return;
    _InputAt(when);
    fButtons ^= button;
    fPresses += down;
    if (_HeldButton(button, down, target))
        return;
    if (down && fPressed == nullptr && target == nullptr) {
        // The title and the border belong to the window, but not to its content.
        target = FrameAt(fPointer);
        if (target != nullptr && ContentAt(fPointer) != target) {
            target->ActivateByUser();
            target = nullptr;
        }
    }
    target = _PointerTarget(target);
    if (target != nullptr) {
        if (down && fPressed == nullptr) {
            ScreenWindow* blocker = Blocker(target);
            bool wasActive = fActive == target;
            (blocker != nullptr ? blocker : target)->ActivateByUser();
            fSwallow = blocker != nullptr ||
                       (!wasActive && !acceptsFirstClick &&
                        (target->Flags() & (B_WILL_ACCEPT_FIRST_CLICK | B_AVOID_FOCUS)) == 0);
            fPressed = target;
        }
        Event event = _PointerEvent(down ? EventKind::MouseDown : EventKind::MouseUp, target);
        event.button = button;
        if (down) {
            event.clicks =
                fClicks.Press(fButtons, fPointer, event.modifiers, target, fLastInput, clickSpeed);
        }
        if (!fSwallow)
            target->Deliver(event);
    }
    if (fButtons == 0) {
        bool held = fPressed != nullptr;
        fPressed = nullptr;
        fSwallow = false;
        // The pointer may be over another window by this time.
        if (held && ContentAt(fPointer) != fHover)
            MovePointer(fPointer, nullptr, fLastInput);
    }
}

void Stage::SyncButtons(int32 held)
{
    // Without a window that saw the press, nobody waits for the release.
    if (fPressed == nullptr && !fHeldPress) {
        fButtons &= held;
        if (fButtons == 0)
            EndDrag(false);
    }
    fSwallow = fSwallow && fButtons != 0;
    for (int32 button = 1; (fButtons & ~held) != 0; button <<= 1) {
        if ((fButtons & ~held & button) != 0)
            ChangeButton(button, false);
    }
}

void Stage::TurnWheel(float dx, float dy, ScreenWindow* target, bigtime_t when)
{
    _InputAt(when);
    fClicks.End();
    if (IsInputHeld()) {
        Event event = _ScreenEvent(EventKind::MouseWheel);
        event.wheelX = dx;
        event.wheelY = dy;
        fHolders.Tell(event);
        return;
    }
    target = _PointerTarget(target);
    if (target == nullptr || Blocker(target) != nullptr)
        return;
    Event event = _PointerEvent(EventKind::MouseWheel, target);
    event.wheelX = dx;
    event.wheelY = dy;
    target->Deliver(event);
}

void Stage::_DeliverKeys(const std::vector<Event>& events)
{
    fLastInput = system_time();
    ScreenWindow* target = fActive;
    if (target != nullptr && Blocker(target) != nullptr)
        target = Blocker(target);  // which the host has not made the active one yet
    for (const Event& event : events) {
        if (!_CancelsDrag(event) && !fHolders.TakeKey(event) && target != nullptr)
            target->Deliver(event);
    }
}

// Escape ends a drag, and is nothing to anybody else until it is up.
bool Stage::_CancelsDrag(const Event& key)
{
    const int32 kEscape = 0x01;
    if (key.key != kEscape || (fDragged == nullptr && !fTookEscape))
        return false;
    fTookEscape = key.kind == EventKind::KeyDown;
    if (fDragged == nullptr || !fTookEscape)
        return true;
    EndDrag(false);
    if (fPressed != nullptr)
        fPressed->Deliver(_PointerEvent(EventKind::DragCancelled, fPressed));
    return true;
}

void Stage::CarryTo(BPoint where, ScreenWindow* over)
{
    fCovered = false;
    fUnder = over;
    MovePointer(where);
}

void Stage::BeginDrag(std::shared_ptr<const DragPicture> picture, std::function<void(bool)> ended)
{
    EndDrag(false);
    fDragged = std::move(picture);
    fDragEnded = std::move(ended);
}

void Stage::EndDrag(bool dropped)
{
    if (fDragged == nullptr)
        return;
    fDragged = nullptr;
    fCovered = false;
    fUnder = nullptr;
    std::exchange(fDragEnded, nullptr)(dropped);
}

void Stage::ChangeKey(int32 key, bool down, const char* text, int32 rawChar)
{
    std::vector<Event> events;
    fKeyboard.Change(key, down, text, rawChar, &events);
    _DeliverKeys(events);
}

void Stage::TypeCharacter(const char* utf8)
{
    std::vector<Event> events;
    fKeyboard.Type(utf8, &events);
    _DeliverKeys(events);
}

void Stage::_Tell(ScreenWindow* window, Composition composition)
{
    Event event;
    event.kind = EventKind::Composed;
    event.composition = std::make_shared<const Composition>(std::move(composition));
    window->Deliver(event);
}

static Composition composition_step(Composition::Step step, std::string text = "",
                                    bool confirmed = false)
{
    Composition composition;
    composition.step = step;
    composition.text = std::move(text);
    composition.confirmed = confirmed;
    return composition;
}

static void type_all(Stage& stage, const std::string& text) REQUIRES(gStageLock)
{
    for (size_t at = 0; at < text.size();) {
        const std::string character =
            text.substr(at, BPrivate::utf8_piece_length(std::string_view(text).substr(at)));
        stage.TypeCharacter(character.c_str());
        at += character.size();
    }
}

void Stage::Compose(Composition composing, const std::string& committed)
{
    using Step = Composition::Step;
    fLastInput = system_time();
    if (!_Has(fComposer) || fComposer != fActive || IsInputHeld()) {
        if (_Has(fComposer))
            _Tell(fComposer, composition_step(Step::Stopped));
        fComposer = nullptr;
    }
    if (fComposer == nullptr && !committed.empty())
        type_all(*this, committed);
    if (fComposer == nullptr && (fActive == nullptr || IsInputHeld() || composing.text.empty()))
        return;
    if (fComposer != nullptr && !committed.empty())
        _Tell(fComposer, composition_step(Step::Changed, committed, true));
    else if (fComposer != nullptr && composing.text.empty())
        _Tell(fComposer, composition_step(Step::Changed));
    if (fComposer != nullptr && (composing.text.empty() || !committed.empty())) {
        _Tell(fComposer, composition_step(Step::Stopped));
        fComposer = nullptr;
    }
    if (composing.text.empty())
        return;
    if (fComposer == nullptr) {
        fComposer = fActive;
        _Tell(fComposer, composition_step(Step::Started));
    }
    composing.step = Step::Changed;
    _Tell(fComposer, std::move(composing));
}

void Stage::SyncModifiers(uint32 modifiers, uint32 mask)
{
    std::vector<Event> events;
    fKeyboard.Sync(modifiers, mask, &events);
    _DeliverKeys(events);
}

void Stage::ReleaseKeys()
{
    std::vector<Event> events;
    fKeyboard.Release(&events);
    _DeliverKeys(events);
}

void Stage::Drop(BPoint where, Event event, ScreenWindow* target)
{
    fPointer = where;
    fLastInput = system_time();
    if (target == nullptr)
        target = ContentAt(where);
    if (!_Has(target) || Blocker(target) != nullptr)
        return;
    Event place = _PointerEvent(event.kind, target);
    event.when = place.when;
    event.where = place.where;
    event.screenWhere = place.screenWhere;
    event.buttons = place.buttons;
    event.modifiers = place.modifiers;
    target->Deliver(event);
}

}  // namespace server
