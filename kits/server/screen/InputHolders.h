#ifndef SERVER_INPUT_HOLDERS_H
#define SERVER_INPUT_HOLDERS_H

// Who takes all input while menus are open. Every member function runs with the stage locked.

#include <vector>

#include <server/screen/Screen.h>

namespace server {

class ScreenWindow;

class InputHolders {
public:
    bool IsEmpty() const { return fHolders.empty(); }
    void Add(EventSink* sink, const ScreenWindow* owner) { fHolders.push_back({sink, owner}); }
    void Remove(EventSink* sink);
    // It goes by itself when its owner is no longer active.
    void End(EventSink* sink);
    const ScreenWindow* Owner() const { return fHolders.empty() ? nullptr : fHolders.back().owner; }

    // Pointer events go to all of them: each knows what it has on the screen.
    void Tell(const Event& event);
    // True if the key event is theirs, and has been delivered to the newest. A key that was down
    // before comes up where it went down, and one that went down here does not come up elsewhere.
    bool TakeKey(const Event& event);
    // A window is no longer the active one, or no longer there.
    void Deactivated(const ScreenWindow* window);

private:
    struct Holder {
        EventSink* sink;
        const ScreenWindow* owner;
        bool ends = false;
    };

    std::vector<Holder> fHolders;  // the newest last
    bool fTaken[128] = {};         // keys that went down here
};

}  // namespace server

#endif  // SERVER_INPUT_HOLDERS_H
