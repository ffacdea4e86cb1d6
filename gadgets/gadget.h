#ifndef GADGETS_GADGET_H
#define GADGETS_GADGET_H

// The record of a gadget: what the program placed in a window, beside the view that shows it; and
// the ways to find it.

#include "runtime/guarded.h"
#include "runtime/registry.h"
#include "windows/window_lock.h"

#include <Message.h>

#include <stdint.h>

class BView;
class BWindow;

// What-codes of the messages that gadgets post to their window.
static const uint32_t kClickMessage = 753;
static const uint32_t kChoiceMessage = 75000;  // plus the index chosen

// Kinds as CreateGadget numbers them. Families have a kind that stands for them, which Find_Gadget
// asks for; see kinds.h.
enum GadgetKind {
    kButton = 1,
    kCheckBox = 2,
    kStringField = 3,  // string and number fields
    kListView = 7,     // list views and outline list views, with and without scroll bars
    kTextLabel = 11,
    kNumberLabel = 12,
    kScrollBar = 13,
    kVerticalScrollBar = 14,
    kSlider = 15,
    kVerticalSlider = 16,
    kStatusBar = 17,
    kRadioGroup = 18,
    kChoiceField = 19,
    kOutlineListView = 20,
    kBox = 24,
    kTabView = 25,
    kTextEditor = 26,  // with and without scroll bars
    kColorControl = 30,
    kDraggableIcon = 31,
    kSecondDraggableIcon = 32,
    kPictureButton = 33,
    kVideoView = 34
};

enum GadgetFlags : uint32_t {
    kTakesFocus = 1,  // when clicked or selected
    kDisabled = 2     // as SetEnabled set it last
};

// One block of 26 words from MyAlloc, in the list kGadgets (see gadget_list.h). It is taken out
// with the registry's lock held and its window locked, if it has one, and freed when nothing holds
// it any more; see the end of gadgets below.
struct MyGadget {
    static const RegistrySlot kSlot = kGadgets;

    int32_t left, top, width, height;  // as created, window coordinates
    int32_t kind;                      // GadgetKind
    int32_t ident;                     // 0 once it is killed
    uint32_t flags;                    // GadgetFlags
    BView* view;                       // the control, or the scroll view around it
    // Ident of the menu that the secondary button opens.
    intptr_t popup GUARDED_BY(gRegistryLocker);
    intptr_t reserved10[2];
    int32_t selection;
    int32_t minimum, maximum, value;
    intptr_t holds;  // calls and windows' threads, beside the registry: atomic
    // Ident of the gadget that it was put into, 0 for none.
    intptr_t holder GUARDED_BY(gRegistryLocker);
    intptr_t reserved18[2];
    void* action_handler;  // slot 1
    void* key_handler;     // slot 2
    void* value_handler;   // slot 3
    void* color_call;      // copy of slot 3 while the colour control calls it
    void* list_handler;    // slot 6
    void* drop_handler;    // slot 7
    void* unused_handler;  // slot 8: stored only
};

// The record of a gadget, null if there is none. See MyGadget for how long it may be read.
MyGadget* gadget_record(int32_t ident);
MyGadget* find_gadget(const RegistryLock& registry, int32_t ident);
// Its view, or the view inside if that is a scroll view.
BView* FindGadget(int32_t ident);
// Its view if its kind belongs to the family that the kind `family` stands for, else null.
BView* Find_Gadget(int32_t ident, int32_t family);

// Holds the gadgets that are in no window. Who has it waits for no window: those are locked before.
// Clang's analysis does not follow it: a call takes it or a window's lock, as the gadget is found.
class [[nodiscard]] LooseLock {
public:
    LooseLock() = default;
    ~LooseLock() { Release(); }
    LooseLock(const LooseLock&) = delete;
    void Take();
    void Release();

private:
    bool fHeld = false;
};

// A gadget for a call: found, and its window locked as long as this lives, or that of the tabs on
// whose page it waits; if it is in none, the lock of such gadgets. It stays in memory as long, even
// if a handler kills it.
class GadgetAccess {
public:
    explicit GadgetAccess(int32_t ident) : GadgetAccess(ident, kAnyFamily) {}
    // Finds only gadgets of a family, as Find_Gadget does.
    GadgetAccess(int32_t ident, int32_t family);
    ~GadgetAccess();
    GadgetAccess(const GadgetAccess&) = delete;

    explicit operator bool() const { return fGadget != nullptr; }
    MyGadget& Record() const { return *fGadget; }
    BView* View() const { return fGadget->view; }
    // False if the view is in no window.
    bool Held() const { return fLock.Held(); }
    // Its view was put into that of another gadget, or, for 0, into a window.
    void SetHolder(int32_t ident) const;

    static const int32_t kAnyFamily = -1;

private:
    bool _Lock(BWindow* window);
    bool _LockLoose();

    MyGadget* fGadget = nullptr;
    WindowLock fLock;
    LooseLock fLoose;
};

// The view that shows what the gadget is about: its view, or the one in a scroll view.
BView* shown_view(BView* view);
inline BView* shown_view(const MyGadget& gadget) { return shown_view(gadget.view); }

// Whether a call goes on when the window of its gadget refused the lock.
enum class Unlocked { Act, Skip };

// Acts on a gadget of a family, with its window locked. Does nothing if there is none, and stops
// where memory fails.
template <class Action>
void with_gadget(int32_t ident, int32_t family, Action act)
{
    guarded([&] {
        const GadgetAccess gadget(ident, family);
        if (gadget)
            act(gadget);
    });
}

// The same on its view, as `View`: the frame of most calls.
template <class View, class Action>
void on_gadget(int32_t ident, int32_t family, Unlocked rule, Action act)
{
    with_gadget(ident, family, [&](const GadgetAccess& gadget) {
        if (rule == Unlocked::Skip && !gadget.Held())
            return;
        if (auto* view = dynamic_cast<View*>(gadget.View()))
            act(*view, gadget.Record());
    });
}

// Gives the lock of gadgets in no window up as long as it lives, if the calling thread has it: a
// handler may wait for windows.
class LooseGivenUp {
public:
    LooseGivenUp();
    ~LooseGivenUp();
    LooseGivenUp(const LooseGivenUp&) = delete;

private:
    int32_t fLevels;
};

// Calls the handler in a slot, if there is one, with 32-bit integers or pointers; none of a gadget
// that was killed. The thread of the gadget's window, or who has that locked.
void* handler_in(const MyGadget& gadget, void* MyGadget::*slot);
template <class... Words>
void call_handler(const MyGadget& gadget, void* MyGadget::*slot, Words... words)
{
    auto* handler = reinterpret_cast<int32_t (*)(Words...)>(handler_in(gadget, slot));
    if (handler == nullptr)
        return;
    const LooseGivenUp given_up;
    handler(words...);
}

// --- the end of gadgets
//
// A gadget may be killed while its view is in the middle of a call: by its own handler, by that of
// another window that it was moved to meanwhile, by the program's thread while a handler waits for
// a window. So calls hold the gadgets that they are about, and every killed gadget is held by the
// threads of windows that dispatch a message at the time, until they have done so.

void hold_gadget(MyGadget* gadget);
void release_gadget(MyGadget* gadget);

// Takes a gadget's record out of the registry and its view out of its window, and lets go of it.
// Its window locked, or the lock of gadgets in no window.
void dispose_gadget(MyGadget* gadget);

// A new window: its dispatches need no memory from here on.
void expect_dispatches(const BWindow* window);
// A window's thread begins to dispatch a message, and has done so: it is in no call of a view. The
// window's thread.
void begin_dispatch(const BWindow* window);
void end_dispatch(const BWindow* window);
// The window dispatches nothing any more: its thread may have left inside a handler.
void forget_dispatches(const BWindow* window);

// Puts into a message which gadget it is about.
void name_gadget(BMessage* message, MyGadget* gadget);
// What stands in a slot of the gadget that field "gd" of a message points to; null if that is no
// gadget. Any thread.
void* gadget_handler(const BMessage& message, void* MyGadget::*slot);

#endif  // GADGETS_GADGET_H
