#ifndef SERVER_SCREEN_WINDOW_H
#define SERVER_SCREEN_WINDOW_H

// What the windows of both displays share: their place, state and pixels as the stage knows them.
// Everything but the front buffer is guarded by the stage's lock.

#include <server/Display.h>
#include <server/FrontBuffer.h>

namespace server {

class ScreenWindow : public Window {
public:
    // Pixels around the content.
    struct Border {
        int32 side = 0;  // left, right and bottom
        int32 top = 0;   // with the title's tab
    };

    ScreenWindow(const WindowSpec& spec, EventSink* sink);

    // Whole pixels within the limits; null sizes and what is no number become the nearest thing
    // that a window can have.
    static BRect SaneFrame(const WindowSpec& spec, BRect frame);

    // Queues the event for the window; nothing once it is destroyed. Stage locked.
    void Deliver(Event event);

    // No more events. Stage locked.
    void Silence() { fSink = nullptr; }

    BRect Frame() const { return fSpec.frame; }
    BRect OuterFrame() const;  // with the decoration
    const std::string& Title() const { return fSpec.title; }
    window_look Look() const { return fSpec.look; }
    uint32 Flags() const { return fSpec.flags; }
    bool IsModal() const;
    // Whether it keeps windows below it from getting clicks.
    bool Blocks() const;
    int32 Layer() const;  // a window stays below those of higher layers
    // Shown, and not an icon; the workspace left aside.
    bool IsOpen() const { return fShown && !fMinimized; }
    bool IsMinimized() const { return fShown && fMinimized; }
    uint32 Workspaces() const { return fSpec.workspaces; }
    EventSink* Sink() const { return fSink; }
    virtual Border Decoration() const;
    FrontBuffer& Pixels() { return fPixels; }

    // What a person does to a window, as far as its flags allow. Stage locked.
    virtual void ActivateByUser() = 0;
    virtual void MoveByUser(BPoint leftTop) = 0;
    virtual void ResizeByUser(float width, float height) = 0;
    virtual void MinimizeByUser(bool minimize) = 0;
    void CloseByUser();
    void ZoomByUser();
    // The size that the flags allow a person to give.
    void LimitResize(float* width, float* height) const;

    BRect DecoratorFrame(BRect content) const override;

protected:
    ~ScreenWindow() override = default;

    WindowSpec fSpec;
    EventSink* fSink;
    bool fShown = false;
    bool fMinimized = false;
    FrontBuffer fPixels;
};

}  // namespace server

#endif  // SERVER_SCREEN_WINDOW_H
