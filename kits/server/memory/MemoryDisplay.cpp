// The display of a machine without a screen. Everything happens at once on the calling thread, as
// a window manager with click to focus would do it; the pictures stay in the windows' front
// buffers until somebody asks for the screen.

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "server/screen/Displays.h"
#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"

namespace server {

namespace {

// The pixels of the screen a unit.
std::atomic<float> sScale{1};

class MemoryWindow final : public ScreenWindow {
public:
    using ScreenWindow::ScreenWindow;

    static MemoryWindow* Make(const WindowSpec& spec, EventSink* sink) REQUIRES(gStageLock)
    {
        auto* window = new MemoryWindow(spec, sink);
        if (!window->ResizePixels(window->fSpec.frame)) {
            delete window;
            return nullptr;
        }
        window->SettleWorkspaces();
        return window;
    }

    void Destroy() override
    {
        {
            StageLock lock;
            Silence();
            bool wasActive = stage().Active() == this;
            stage().Remove(this);
            if (wasActive)
                stage().ActivateNext();
        }
        delete this;
    }

    void Show() override;
    void Hide() override;
    void Activate(bool active) override;
    void SendBehind(ScreenWindow* other) override;
    void SetCursor(const BCursor*) override {}
    void Present(const Surface& surface, const clipping_rect* rects, int32 count) override;
    float Scale() const override { return sScale; }

    void ActivateByUser() override REQUIRES(gStageLock);

private:
    ~MemoryWindow() override = default;
    void Place(BRect frame) override REQUIRES(gStageLock);
    void Iconify(bool minimize) override REQUIRES(gStageLock);
    void WorkspacesSet() override REQUIRES(gStageLock) { _Unseen(); }
    void _Activate() REQUIRES(gStageLock);
    void _Seen() REQUIRES(gStageLock);    // it came into sight
    void _Unseen() REQUIRES(gStageLock);  // it may have gone out of sight
};

class MemoryDisplay final : public Display {
public:
    MemoryDisplay()
    {
        int width = 0, height = 0;
        const char* size = getenv("PLINTH_SCREEN");
        if (size != nullptr && sscanf(size, "%dx%d", &width, &height) == 2 && width > 0 &&
            height > 0 && width <= 16384 && height <= 16384)
            fScreen.Set(0, 0, float(width - 1), float(height - 1));
        // To see here what others see on a screen of finer pixels.
        const char* scale = getenv("PLINTH_DISPLAY_SCALE");
        if (scale != nullptr)
            sScale = sensible_scale(strtod(scale, nullptr));
    }

    ScreenWindow* Create(const WindowSpec& spec, EventSink* sink) override REQUIRES(gStageLock)
    {
        return MemoryWindow::Make(spec, sink);
    }

    BRect ScreenFrame() const override REQUIRES(gStageLock) { return fScreen; }
    bigtime_t FrameInterval() const override REQUIRES(gStageLock) { return 1000000 / 60; }
    float Scale() const override REQUIRES(gStageLock) { return sScale; }
    void SetScale(float scale) override REQUIRES(gStageLock)
    {
        if (sScale.exchange(scale) == scale)
            return;
        Event event;
        event.kind = EventKind::ScaleChanged;
        for (ScreenWindow* window : stage().Windows())
            window->Deliver(event);
    }
    void SetPointer(BPoint where) override REQUIRES(gStageLock) { stage().MovePointer(where); }
    int32 CountWorkspaces() override REQUIRES(gStageLock) { return stage().WorkspaceCount(); }
    int32 CurrentWorkspace() override REQUIRES(gStageLock) { return stage().Workspace(); }
    void ActivateWorkspace(int32 workspace) override REQUIRES(gStageLock)
    {
        stage().ShowWorkspace(workspace);
    }
    void SetWorkspaceCount(int32 count) override REQUIRES(gStageLock)
    {
        stage().SetWorkspaceCount(count);
    }
    void UpdateCursors() override REQUIRES(gStageLock) {}
    void InputHeld(bool) override REQUIRES(gStageLock) {}
    std::shared_ptr<Clipboard> SystemClipboard() override { return fClipboard; }
    std::shared_ptr<Clipboard> PrimarySelection() override { return fPrimary; }

    // There is nothing to be ended: the windows stay with their owners, who destroy them.
    void Shutdown() override {}

private:
    BRect fScreen{0, 0, 1023, 767};
    const std::shared_ptr<Clipboard> fClipboard = make_memory_clipboard();
    const std::shared_ptr<Clipboard> fPrimary = make_memory_clipboard();
};

void MemoryWindow::Place(BRect frame)
{
    const BRect before = fSpec.frame;
    frame = SaneFrame(fSpec, frame);
    if (!ResizePixels(frame)) {
        frame.right = frame.left + before.Width();
        frame.bottom = frame.top + before.Height();
    }
    fSpec.frame = frame;
    ReportFrame(before);
}

void MemoryWindow::_Activate()
{
    if (!stage().IsVisible(this) || stage().Blocker(this) != nullptr)
        return;
    if ((fSpec.flags & B_AVOID_FRONT) == 0)
        stage().Raise(this);
    if ((fSpec.flags & B_AVOID_FOCUS) == 0)
        stage().SetActive(this);
}

void MemoryWindow::_Seen()
{
    if ((fSpec.flags & B_AVOID_FRONT) != 0)
        stage().PutBehind(this, nullptr);
    _Activate();
    stage().MindBlockers();
}

void MemoryWindow::_Unseen()
{
    if (stage().Active() == this && !stage().IsVisible(this))
        stage().ActivateNext();
}

void MemoryWindow::Iconify(bool minimize)
{
    if (!ReportMinimized(minimize))
        return;
    if (minimize)
        _Unseen();
    else
        _Seen();
}

void MemoryWindow::Show()
{
    StageLock lock;
    if (std::exchange(fShown, true))
        return;
    stage().Raise(this);
    _Seen();
}

void MemoryWindow::Hide()
{
    StageLock lock;
    fShown = false;
    _Unseen();
}

void MemoryWindow::Activate(bool active)
{
    StageLock lock;
    if (active) {
        if (fMinimized)
            Iconify(false);
        _Activate();
    } else if (stage().IsVisible(this)) {
        stage().PutBehind(this, nullptr);
        if (stage().Active() == this)
            stage().ActivateNext();
    }
}

void MemoryWindow::SendBehind(ScreenWindow* other)
{
    StageLock lock;
    bool wasActive = stage().Active() == this;
    stage().PutBehind(this, other);
    if (wasActive && stage().IsVisible(this))
        stage().ActivateNext();
}

void MemoryWindow::Present(const Surface& surface, const clipping_rect* rects, int32 count)
{
    fPixels.Copy(surface, rects, count);
}

void MemoryWindow::ActivateByUser() { _Activate(); }

}  // namespace

Display* make_memory_display() { return new MemoryDisplay; }

}  // namespace server
