// The display of a machine without a screen. Everything happens at once on the calling thread, as
// a window manager with click to focus would do it; the pictures stay in the windows' front
// buffers until somebody asks for the screen.

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "server/Backend.h"
#include "server/ScreenWindow.h"
#include "server/Stage.h"

namespace server {

namespace {

class MemoryWindow final : public ScreenWindow {
public:
    using ScreenWindow::ScreenWindow;

    static MemoryWindow* Make(const WindowSpec& spec, EventSink* sink)
    {
        auto* window = new MemoryWindow(spec, sink);
        if (!window->_ResizePixels(window->fSpec.frame)) {
            delete window;
            return nullptr;
        }
        if (spec.workspaces == B_CURRENT_WORKSPACE)
            window->fSpec.workspaces = 1u << stage().Workspace();
        stage().Add(window);
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
    void Minimize(bool minimize) override;
    void Activate(bool active) override;
    void SendBehind(Window* other) override;
    void MoveTo(BPoint leftTop) override;
    void ResizeTo(float width, float height) override;
    void SetTitle(const std::string& title) override;
    void SetLook(window_look look) override;
    void SetFeel(window_feel feel) override;
    void SetFlags(uint32 flags) override;
    void SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight) override;
    void SetWorkspaces(uint32 workspaces) override;
    void SetCursor(const BCursor*) override {}
    void Present(const Surface& surface, const clipping_rect* rects, int32 count) override;

    void ActivateByUser() override;
    void MoveByUser(BPoint leftTop) override;
    void ResizeByUser(float width, float height) override;
    void MinimizeByUser(bool minimize) override;

private:
    ~MemoryWindow() override = default;
    bool _ResizePixels(BRect frame);
    void _SetFrame(BRect frame);
    void _Minimize(bool minimize);
    void _Activate();
    void _Seen();   // it came into sight
    void _Unseen();  // it may have gone out of sight
};

class MemoryDisplay final : public Backend {
public:
    MemoryDisplay()
    {
        int width = 0, height = 0;
        const char* size = getenv("PLINTH_SCREEN");
        if (size != nullptr && sscanf(size, "%dx%d", &width, &height) == 2 && width > 0 &&
            height > 0 && width <= 16384 && height <= 16384)
            fScreen.Set(0, 0, float(width - 1), float(height - 1));
    }

    ScreenWindow* Create(const WindowSpec& spec, EventSink* sink) override
    {
        return MemoryWindow::Make(spec, sink);
    }

    BRect ScreenFrame() const override { return fScreen; }
    bigtime_t FrameInterval() const override { return 1000000 / 60; }
    void SetPointer(BPoint where) override { stage().MovePointer(where); }
    int32 CountWorkspaces() override { return stage().WorkspaceCount(); }
    int32 CurrentWorkspace() override { return stage().Workspace(); }
    void ActivateWorkspace(int32 workspace) override { stage().ShowWorkspace(workspace); }
    void SetWorkspaceCount(int32 count) override { stage().SetWorkspaceCount(count); }
    void UpdateCursors() override {}
    std::shared_ptr<Clipboard> SystemClipboard() override { return fClipboard; }

    // The windows stay with their owners, who destroy them.
    void Shutdown() override { delete this; }

private:
    BRect fScreen{0, 0, 1023, 767};
    const std::shared_ptr<Clipboard> fClipboard = make_memory_clipboard();
};

bool MemoryWindow::_ResizePixels(BRect frame)
{
    return fPixels.Resize(int32(frame.Width()) + 1, int32(frame.Height()) + 1);
}

void MemoryWindow::_SetFrame(BRect frame)
{
    BRect before = fSpec.frame;
    frame = SaneFrame(fSpec, frame);
    if (!_ResizePixels(frame)) {
        frame.right = frame.left + before.Width();
        frame.bottom = frame.top + before.Height();
    }
    fSpec.frame = frame;
    Event event;
    event.frame = frame;
    if (frame.LeftTop() != before.LeftTop()) {
        event.kind = EventKind::Moved;
        Deliver(event);
    }
    if (frame.Width() != before.Width() || frame.Height() != before.Height()) {
        event.kind = EventKind::Resized;
        Deliver(event);
    }
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
}

void MemoryWindow::_Unseen()
{
    if (stage().Active() == this && !stage().IsVisible(this))
        stage().ActivateNext();
}

void MemoryWindow::_Minimize(bool minimize)
{
    if (std::exchange(fMinimized, minimize) == minimize)
        return;
    Event event;
    event.kind = EventKind::Minimized;
    event.active = minimize;
    Deliver(event);
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

void MemoryWindow::Minimize(bool minimize)
{
    StageLock lock;
    _Minimize(minimize);
}

void MemoryWindow::Activate(bool active)
{
    StageLock lock;
    if (active) {
        if (fMinimized)
            _Minimize(false);
        _Activate();
    } else if (stage().IsVisible(this)) {
        stage().PutBehind(this, nullptr);
        if (stage().Active() == this)
            stage().ActivateNext();
    }
}

void MemoryWindow::SendBehind(Window* other)
{
    StageLock lock;
    bool wasActive = stage().Active() == this;
    stage().PutBehind(this, static_cast<ScreenWindow*>(other));
    if (wasActive && stage().IsVisible(this))
        stage().ActivateNext();
}

void MemoryWindow::MoveTo(BPoint leftTop)
{
    StageLock lock;
    _SetFrame(fSpec.frame.OffsetToCopy(leftTop));
}

void MemoryWindow::ResizeTo(float width, float height)
{
    StageLock lock;
    BRect frame = fSpec.frame;
    _SetFrame(BRect(frame.left, frame.top, frame.left + width, frame.top + height));
}

void MemoryWindow::SetTitle(const std::string& title)
{
    StageLock lock;
    fSpec.title = title;
}

void MemoryWindow::SetLook(window_look look)
{
    StageLock lock;
    fSpec.look = look;
}

void MemoryWindow::SetFeel(window_feel feel)
{
    StageLock lock;
    fSpec.feel = feel;
    stage().Raise(this);
}

void MemoryWindow::SetFlags(uint32 flags)
{
    StageLock lock;
    fSpec.flags = flags;
}

void MemoryWindow::SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight)
{
    StageLock lock;
    fSpec.minWidth = minWidth;
    fSpec.maxWidth = maxWidth;
    fSpec.minHeight = minHeight;
    fSpec.maxHeight = maxHeight;
    _SetFrame(fSpec.frame);
}

void MemoryWindow::SetWorkspaces(uint32 workspaces)
{
    StageLock lock;
    if (workspaces == B_CURRENT_WORKSPACE)
        workspaces = 1u << stage().Workspace();
    Event event;
    event.kind = EventKind::WorkspacesChanged;
    event.workspaces = workspaces;
    event.oldWorkspaces = std::exchange(fSpec.workspaces, workspaces);
    if (event.oldWorkspaces == workspaces)
        return;
    Deliver(event);
    _Unseen();
}

void MemoryWindow::Present(const Surface& surface, const clipping_rect* rects, int32 count)
{
    fPixels.Copy(surface, rects, count);
}

void MemoryWindow::ActivateByUser() { _Activate(); }

void MemoryWindow::MoveByUser(BPoint leftTop)
{
    if ((fSpec.flags & B_NOT_MOVABLE) == 0)
        _SetFrame(fSpec.frame.OffsetToCopy(leftTop));
}

void MemoryWindow::ResizeByUser(float width, float height)
{
    LimitResize(&width, &height);
    BRect frame = fSpec.frame;
    _SetFrame(BRect(frame.left, frame.top, frame.left + width, frame.top + height));
}

void MemoryWindow::MinimizeByUser(bool minimize)
{
    if ((fSpec.flags & B_NOT_MINIMIZABLE) == 0 && fShown)
        _Minimize(minimize);
}

}  // namespace

Backend* make_memory_display() { return new MemoryDisplay; }

}  // namespace server
