// Place and size of a window. A change by the program holds at once and its hook follows as a
// message; the screen's echo of it is told from a change that the user made.

#include <Window.h>

#include <Autolock.h>
#include <Message.h>
#include <MessageQueue.h>
#include <View.h>

#include <algorithm>
#include <cmath>

#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>

using BPrivate::ViewPrivate;

// Far beyond every screen, and still a whole number as a float.
static const float kFarthest = 1000000;
static const float kLargest = 32768;

static float nearest(float value, float low, float high)
{
    return std::isnan(value) ? low : std::clamp(std::round(value), low, high);
}

static BPoint whole_place(BPoint place)
{
    return BPoint(nearest(place.x, -kFarthest, kFarthest), nearest(place.y, -kFarthest, kFarthest));
}

BRect BPrivate::window_frame(BRect frame)
{
    const BPoint place = whole_place(frame.LeftTop());
    // Rounded edges rather than a rounded width: neighbours stay neighbours.
    const BPoint far = whole_place(frame.RightBottom());
    const float width = nearest(far.x - place.x, 0, kLargest);
    const float height = nearest(far.y - place.y, 0, kLargest);
    return BRect(place.x, place.y, place.x + width, place.y + height);
}

BRect BWindow::Frame() const
{
    BPrivate::MutexLock state(fData->stateLock);
    return fData->frame;
}

BRect BWindow::Bounds() const { return Frame().OffsetToCopy(B_ORIGIN); }

BSize BWindow::Size() const
{
    const BRect frame = Frame();
    return BSize(frame.Width(), frame.Height());
}

BRect BWindow::DecoratorFrame() const
{
    const BRect frame = Frame();
    return fData->display != nullptr ? fData->display->DecoratorFrame(frame) : frame;
}

void BWindow::MoveTo(BPoint place)
{
    if (std::isnan(place.x) || std::isnan(place.y))
        return;
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    place = whole_place(place);
    {
        BPrivate::MutexLock state(fData->stateLock);
        if (fData->frame.LeftTop() == place)
            return;
        fData->frame.OffsetTo(place);
        fData->moves.Asked(place);
    }
    if (fData->display == nullptr)
        return;
    fData->PostOwnMove(place);
    fData->display->MoveTo(place);
}

void BWindow::MoveTo(float x, float y) { MoveTo(BPoint(x, y)); }

void BWindow::MoveBy(float dx, float dy)
{
    BAutolock lock(this);
    if (lock.IsLocked())
        MoveTo(Frame().LeftTop() + BPoint(dx, dy));
}

void BWindow::ResizeTo(float width, float height)
{
    if (std::isnan(width) || std::isnan(height))
        return;
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    width = nearest(width, fData->minWidth, fData->maxWidth);
    height = nearest(height, fData->minHeight, fData->maxHeight);
    const BRect frame = Frame();
    if ((frame.Width() == width && frame.Height() == height) || fData->offscreen)
        return;
    {
        BPrivate::MutexLock state(fData->stateLock);
        fData->sizes.Asked({width, height});
    }
    if (!_AdoptSize(width, height))
        return;
    fData->PostResized(width, height, system_time());
    if (fData->display != nullptr)
        fData->display->ResizeTo(width, height);
}

void BWindow::ResizeBy(float dx, float dy)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    const BRect frame = Frame();
    ResizeTo(frame.Width() + dx, frame.Height() + dy);
}

void BWindow::ResizeToPreferred()
{
    BAutolock lock(this);
    if (!lock.IsLocked() || CountChildren() != 1)
        return;  // only a view that fills the window can speak for it
    float width, height;
    ChildAt(0)->GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

// Canvas and views take a new size; what became visible waits for Draw().
bool BWindow::_AdoptSize(float width, float height)
{
    if (!fData->canvas->Resize(static_cast<int32>(width) + 1, static_cast<int32>(height) + 1))
        return false;
    {
        BPrivate::MutexLock state(fData->stateLock);
        fData->frame.right = fData->frame.left + width;
        fData->frame.bottom = fData->frame.top + height;
    }
    ViewPrivate::ResizeTop(fData->topView, width, height);
    return true;
}

// Dispatch of B_WINDOW_RESIZED: the user's change is taken over, and is drawn before the screen
// sees anything of it.
void BWindow::_Resized(float width, float height)
{
    const BRect frame = Frame();
    if (frame.Width() != width || frame.Height() != height)
        _AdoptSize(width, height);
    FrameResized(width, height);
    _Update();
}

// Dispatch of B_WINDOW_MOVED. The last word has the newest of those in the queue.
void BWindow::_Moved(BPoint place)
{
    if (MessageQueue()->FindMessage(static_cast<uint32>(B_WINDOW_MOVED), 0) == nullptr) {
        BPrivate::MutexLock state(fData->stateLock);
        fData->frame.OffsetTo(place);
    }
    FrameMoved(place);
}

void BWindow::FrameMoved(BPoint) {}

void BWindow::FrameResized(float, float) {}

void BWindow::SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight)
{
    // Written so that a NaN is refused too.
    if (!(minWidth <= maxWidth) || !(minHeight <= maxHeight))
        return;
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    fData->minWidth = nearest(minWidth, 0, kLargest);
    fData->maxWidth = nearest(maxWidth, 0, kLargest);
    fData->minHeight = nearest(minHeight, 0, kLargest);
    fData->maxHeight = nearest(maxHeight, 0, kLargest);
    const BRect frame = Frame();
    const float width = std::clamp(frame.Width(), fData->minWidth, fData->maxWidth);
    const float height = std::clamp(frame.Height(), fData->minHeight, fData->maxHeight);
    if (fData->display != nullptr) {
        {
            // The screen puts the window into the limits as well.
            BPrivate::MutexLock state(fData->stateLock);
            fData->sizes.Asked({width, height});
        }
        fData->display->SetSizeLimits(fData->minWidth, fData->maxWidth, fData->minHeight,
                                      fData->maxHeight);
    }
    ResizeTo(width, height);
}

void BWindow::GetSizeLimits(float* minWidth, float* maxWidth, float* minHeight, float* maxHeight)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    if (minWidth != nullptr)
        *minWidth = fData->minWidth;
    if (maxWidth != nullptr)
        *maxWidth = fData->maxWidth;
    if (minHeight != nullptr)
        *minHeight = fData->minHeight;
    if (maxHeight != nullptr)
        *maxHeight = fData->maxHeight;
}

void BWindow::UpdateSizeLimits()
{
    // Limits come from SetSizeLimits() alone where no layout computes them.
}

void BWindow::SetZoomLimits(float maxWidth, float maxHeight)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    fData->maxZoomWidth = nearest(maxWidth, 0, kLargest);
    fData->maxZoomHeight = nearest(maxHeight, 0, kLargest);
}

// One side of the zoomed frame: as long as limits and screen allow, moved no more than needed.
static void zoom_side(float low, float high, float limit, float* from, float* to)
{
    const float length = std::max(0.0f, std::min(high - low, limit));
    *from = std::clamp(*from, low, std::max(low, high - length));
    *to = *from + length;
}

void BWindow::Zoom()
{
    BAutolock lock(this);
    if (!lock.IsLocked() || fData->offscreen)
        return;
    const BRect frame = Frame();
    if (frame == fData->zoomedFrame && fData->frameBeforeZoom.IsValid()) {
        const BRect back = fData->frameBeforeZoom;
        Zoom(back.LeftTop(), back.Width(), back.Height());
        return;
    }
    const BRect border = DecoratorFrame();
    const BRect screen = server::ScreenFrame();
    BRect zoomed = frame;
    zoom_side(screen.left + (frame.left - border.left), screen.right - (border.right - frame.right),
              std::min(fData->maxZoomWidth, fData->maxWidth), &zoomed.left, &zoomed.right);
    zoom_side(screen.top + (frame.top - border.top), screen.bottom - (border.bottom - frame.bottom),
              std::min(fData->maxZoomHeight, fData->maxHeight), &zoomed.top, &zoomed.bottom);
    fData->frameBeforeZoom = frame;
    fData->zoomedFrame = BPrivate::window_frame(zoomed);
    zoomed = fData->zoomedFrame;
    Zoom(zoomed.LeftTop(), zoomed.Width(), zoomed.Height());
}

void BWindow::Zoom(BPoint origin, float width, float height)
{
    MoveTo(origin);
    ResizeTo(width, height);
}

void BWindow::CenterIn(const BRect& rect)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    const BRect frame = Frame();
    MoveTo(std::floor(rect.left + (rect.Width() - frame.Width()) / 2),
           std::floor(rect.top + (rect.Height() - frame.Height()) / 2));
}

void BWindow::CenterOnScreen() { CenterIn(server::ScreenFrame()); }

void BWindow::CenterOnScreen(screen_id)
{
    CenterOnScreen();  // all screens are one
}

void BWindow::MoveOnScreen(uint32 flags)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    const BRect screen = server::ScreenFrame();
    const BRect border = DecoratorFrame();
    if (screen.Contains(border))
        return;
    // Partly outside is often the user's own wish.
    if ((flags & B_MOVE_IF_PARTIALLY_OFFSCREEN) == 0 && screen.Intersects(border))
        return;
    const BRect frame = Frame();
    if ((flags & B_DO_NOT_RESIZE_TO_FIT) == 0) {
        ResizeBy(std::min(0.0f, screen.Width() - border.Width()),
                 std::min(0.0f, screen.Height() - border.Height()));
    }
    const BRect fitted = DecoratorFrame();
    const BPoint place(std::max(screen.left, std::min(fitted.left, screen.right - fitted.Width())),
                       std::max(screen.top, std::min(fitted.top, screen.bottom - fitted.Height())));
    MoveTo(frame.LeftTop() + place - fitted.LeftTop());
}

void BWindow::ConvertToScreen(BPoint* point) const
{
    if (point != nullptr)
        *point = ConvertToScreen(*point);
}

BPoint BWindow::ConvertToScreen(BPoint point) const { return point + Frame().LeftTop(); }

void BWindow::ConvertFromScreen(BPoint* point) const
{
    if (point != nullptr)
        *point = ConvertFromScreen(*point);
}

BPoint BWindow::ConvertFromScreen(BPoint point) const { return point - Frame().LeftTop(); }

void BWindow::ConvertToScreen(BRect* rect) const
{
    if (rect != nullptr)
        *rect = ConvertToScreen(*rect);
}

BRect BWindow::ConvertToScreen(BRect rect) const { return rect.OffsetBySelf(Frame().LeftTop()); }

void BWindow::ConvertFromScreen(BRect* rect) const
{
    if (rect != nullptr)
        *rect = ConvertFromScreen(*rect);
}

BRect BWindow::ConvertFromScreen(BRect rect) const
{
    return rect.OffsetBySelf(BPoint() - Frame().LeftTop());
}
