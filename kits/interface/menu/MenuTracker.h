#ifndef INTERFACE_MENU_TRACKER_H
#define INTERFACE_MENU_TRACKER_H

// Follows the user through a menu and its submenus, from the opening to the choice: for bars,
// fields and pop-ups alike. It takes all input of the screen meanwhile and waits for it on the
// thread that runs it. Menus and items may be changed, taken out and deleted under its hands: what
// it knows of them it finds anew under their window's lock, and it is told when they go.

#include <Menu.h>

#include <atomic>
#include <memory>
#include <vector>

#include <interface/menu/MenuInput.h>

class BWindow;

namespace [[gnu::visibility("hidden")]] BPrivate {

class MenuWindow;

class MenuTracker {
public:
    struct Options {
        BPoint where;               // on the screen: where a menu opens that is in no window
        BRect openRect;             // on the screen: a release there leaves the menus open
        bool sticky = false;        // they stay open without a button held
        bool byKey = false;         // the keyboard opened them
        bool showMenu = true;       // the menu of the title `index` opens
        int32 index = -1;           // of a bar; -1: the title under the pointer
        BWindow* caller = nullptr;  // whose thread waits, and which draws itself meanwhile
    };

    // With the lock of the window that the menu is in, if it is in one.
    static std::shared_ptr<MenuTracker> Make(BMenu* root, const Options& options);
    ~MenuTracker();

    // Takes the input, on the thread that opens the menus: the caller's, which still has in its
    // queue what the user did behind the press or key that it is at. Who runs it has to release it.
    void Hold();
    // Returns the item chosen, null for none, once all is closed again.
    BMenuItem* Run();
    // Sends the message of the item chosen, if it is still there.
    void InvokeChosen();
    // Gives the input back, and what waits of it, which is meant to meet what the choice has done.
    void Release();
    // All is closed; what was chosen may still be on its way.
    bool IsDone() const { return fDone; }

    // Somebody takes a menu or an item away: menus that show it close. Does not wait. Any thread.
    static void Forget(const BMenu* menu);
    static void Forget(const BMenuItem* item);
    // The menus that show this one close, or all. False if nobody follows the user through it.
    static bool Cancel(const BMenu* menu);
    static void CancelAll();
    // As if the user had chosen an item of an open menu, or what opens its own menu. Does not wait.
    static void Choose(const BMenu* menu, BMenuItem* item);

private:
    // An open menu. Only the root may be in a window that is not the menus' own.
    struct Level {
        MenuWindow* window;  // null: the root's
        BRect frame;         // of that, on the screen
    };

    MenuTracker(BMenu* root, const Options& options);

    bool _LockRoot();
    bool _LockRootOrRelease();
    void _UnlockRoot();
    template <class Action>
    bool _With(size_t level, Action act);
    bool _IsBar(size_t level) const { return fLevels[level].window == nullptr; }
    bool _IsRow(size_t level);

    // Opening and closing.
    void _Begin();
    void _BeginAtPointer();
    void _End(BMenuItem* chosen);
    bool _Open(BMenu* menu, BPoint where, BRect from);
    bool _AddDynamicItems(BMenu* menu, BRect from) const;
    bool _OpenSelected(size_t level);
    void _CloseTo(size_t count);
    void _Finish();

    // The pointer.
    void _Handle(const server::Event& event);
    void _Pressed(BPoint where);
    void _Released(BPoint where);
    void _Moved(BPoint where);
    void _Follow();
    void _Wheel(float lines);
    int32 _LevelAt(BPoint where);
    bool _HeadsForSubmenu(size_t level, BPoint where);
    BMenuItem* _ItemAt(size_t level, BPoint where, bool* isChoice);
    void _PointAt(size_t level, BPoint where, bool openNow);
    bool _LeavesOpen(BPoint where) const;
    void _WatchStrip(int32 level, BPoint where);

    // What is due.
    bigtime_t _Deadline() const;
    void _TimesUp();
    void _ScrollOn();
    void _CallHooks();

    // The keyboard.
    void _Key(const server::Event& event);
    bool _Walk(uint8 key);
    void _Step(int32 step);
    void _Page(int32 step);
    void _GoTo(BMenuItem* item, size_t level);
    void _Enter();
    void _Into();
    void _OutOf();
    void _NextTitle(int32 step);
    void _Letter(const char* character, bool triggers);
    void _Obey();
    void _UseKeyboard();

    BMenu* const fRoot;
    BWindow* const fRootWindow;  // that of a bar; null for menus in windows of their own
    const Options fOptions;
    std::atomic<bool> fRootGone{false};
    std::atomic<BMenuItem*> fChosen{nullptr};
    std::atomic<bool> fDone{false};
    std::vector<const BMenu*> fMenus;   // open ones and the root; lock of the list of trackers
    const BMenu* fAskedMenu = nullptr;  // what somebody else chose, and where; same lock
    BMenuItem* fAskedItem = nullptr;
    MenuInput fInput;

    // Only the thread in Run().
    std::vector<Level> fLevels;
    bool fEnded = false;
    bool fHolds = false;     // the input
    bool fHeld = false;      // a button is down
    bool fOpening = false;   // the one that opened the menus
    bool fSticky = false;    // they stay open without one
    bool fKeyboard = false;  // triggers can be typed
    BPoint fPointer;
    BPoint fPressedAt;
    bigtime_t fPressedWhen = 0;
    struct Trail {
        BPoint where;
        bigtime_t when;
    };
    std::vector<Trail> fTrail;  // where the pointer was a moment ago, the oldest first

    bigtime_t fOpenAt = B_INFINITE_TIMEOUT;    // the selected item's menu opens
    bigtime_t fSettleAt = B_INFINITE_TIMEOUT;  // a pointer that headed for a submenu has given up
    bigtime_t fScrollAt = B_INFINITE_TIMEOUT;
    bigtime_t fScrollBegan = 0;
    size_t fScrollLevel = 0;
    int32 fScrollWay = 0;
};

}  // namespace BPrivate

#endif  // INTERFACE_MENU_TRACKER_H
