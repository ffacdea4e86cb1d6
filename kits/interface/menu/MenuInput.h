#ifndef INTERFACE_MENU_INPUT_H
#define INTERFACE_MENU_INPUT_H

// The input of the whole screen on its way to who follows the user through menus.

#include <OS.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

#include <server/screen/Screen.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

class MenuInput final : public server::EventSink {
public:
    void Deliver(const server::Event& event) override;
    std::vector<server::Event> TakeWaiting() override;

    // Ends the waiting, now and from now on. Any thread.
    void Cancel();
    bool IsCancelled() const;
    // Ends one waiting. Any thread.
    void Wake();
    // The next event, waited for until `deadline`; false if there was none, no more are wanted, or
    // somebody woke who waits.
    bool Next(bigtime_t deadline, server::Event* event);
    // True if the user has gone elsewhere: pressed or typed something, or left `area`. Who has let
    // a button or a key go there waits for the menu.
    bool HasLeft(BRect area) const;

private:
    mutable std::mutex fLock;  // a leaf
    std::condition_variable fChanged;
    std::deque<server::Event> fEvents;
    bool fCancelled = false;
    bool fWoken = false;
};

}  // namespace BPrivate

#endif  // INTERFACE_MENU_INPUT_H
