#ifndef INTERFACE_VIEW_PRIVATE_H
#define INTERFACE_VIEW_PRIVATE_H

// What a BView holds, and what windows, bitmaps and canvases do with views. All of it is guarded by
// the lock of the view's window, but for what says otherwise.

#include <AffineTransform.h>
#include <Bitmap.h>
#include <Cursor.h>
#include <Font.h>
#include <Region.h>
#include <String.h>
#include <View.h>
#include <Window.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include <interface/view/Canvas.h>
#include <interface/view/SiblingGrid.h>
#include <interface/drawing/GradientMap.h>
#include <interface/drawing/PictureOps.h>
#include <server/screen/Accessible.h>
#include <server/text/Fonts.h>
#include <server/painter/Painter.h>
#include <support/Boxes.h>

class BScrollBar;
class BToolTip;

namespace BPrivate {

const uint32 kInvalidateLater = '_DIV';  // "rect"

// A view with more is not asked about each of them.
const int32 kFewChildren = 64;

// Answers a script that asks for a property of the view, or sets one; false for other messages.
[[gnu::visibility("hidden")]] bool answer_view_script(BView& view, BMessage* message);

// The picture of a view's background: SetViewBitmap().
struct ViewBitmap {
    std::unique_ptr<BBitmap> bitmap;
    BRect source;
    BRect target;  // in the view, before `follow` moves it
    uint32 follow = B_FOLLOW_LEFT_TOP;
    uint32 options = 0;
};

// One entry of the state stack. What the pixels get to see is kept ready in `paint`; its pen size,
// pattern phase and transform are set when the view gets ready to draw.
struct DrawState {
    server::Paint paint;
    BPoint pen;
    float penSize = 1;
    BPoint origin;
    float scale = 1;
    BPoint baseOrigin;  // of all states below: view = baseScale * place + baseOrigin
    float baseScale = 1;
    struct Transforms {
        BAffineTransform own;   // of this state
        BAffineTransform base;  // all of the states below, as an affine map
    };
    std::shared_ptr<const Transforms> transforms;  // null without any, here and below
    std::shared_ptr<const BRegion> clip;           // of this state, in its own coordinates
    std::shared_ptr<const BRegion> viewClip;       // of this state too, in the view's coordinates
    std::shared_ptr<const BRegion> baseClip;       // of the states below, in the view's coordinates
    BFont font;
    server::FontSpec fontSpec;

    float FullScale() const { return baseScale * scale; }
    BPoint FullOrigin() const
    {
        return BPoint(baseOrigin.x + baseScale * origin.x, baseOrigin.y + baseScale * origin.y);
    }
    bool IsTransformed() const { return transforms != nullptr; }
    // From the coordinates of this state to the view's, transforms included.
    BAffineTransform Full() const;
    BAffineTransform Own() const;
    BAffineTransform Base() const;
    void SetTransform(const BAffineTransform& matrix);
    void SetFont(const BFont& newFont);
    // What this state and those below leave of `region`, which is in the view's coordinates.
    void ClipInView(BRegion* region) const;
};

struct [[gnu::visibility("hidden")]] SavedState
{
    DrawState state;
    std::unique_ptr<SavedState> below;
};

struct LineArray {
    struct Line {
        BPoint start, end;
        rgb_color color;
    };
    std::vector<Line> lines;
    size_t limit = 0;
};

struct RectTracking {
    uint32 style = B_TRACK_WHOLE_RECT;
    BRect rect;
    BPoint grip;  // the pointer's place as the rectangle is
};

// What few views have.
struct [[gnu::visibility("hidden")]] ViewExtras
{
    BSize minSize{B_SIZE_UNSET, B_SIZE_UNSET};
    BSize maxSize{B_SIZE_UNSET, B_SIZE_UNSET};
    BSize preferredSize{B_SIZE_UNSET, B_SIZE_UNSET};
    BAlignment alignment;
    BLayout* layout = nullptr;
    int32 layoutDisabled = 0;
    BString toolTipText;
    BToolTip* toolTip = nullptr;
    std::unique_ptr<ViewBitmap> background;
    std::unique_ptr<BCursor> cursor;
    std::vector<std::pair<BPicture*, PictureData*>> pictures;  // being recorded, innermost last
    std::unique_ptr<RectTracking> tracking;                    // while one is tracked
};

// A scroll bar that has the view as its target, by what the view wants of it.
struct ScrollBarLink {
    BScrollBar* bar = nullptr;
    void (*scrolled)(BScrollBar* bar, float value) = nullptr;  // the view is at `value`
    status_t (*wheel)(BScrollBar* bar, float delta) = nullptr;
    void (*target_gone)(BScrollBar* bar) = nullptr;
};

struct [[gnu::visibility("hidden")]] ViewData
{
    ViewData(BView * view);
    ~ViewData();

    // Counts who looks at this; the data goes with the last one.
    void Acquire() { fReferences.fetch_add(1, std::memory_order_relaxed); }
    void Release()
    {
        if (fReferences.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    // Drawing. True if target, mapping and paint still hold since they were made.
    bool Ready() const { return readyAt == *generation; }
    // Records the call if a picture is being recorded; else makes the view ready. False if there
    // is nothing to be drawn.
    template <class... Args>
    bool Begin(PictureOp op, const Args&... args)
    {
        if (Ready())
            return target.count > 0;
        if (recording != nullptr) {
            recording->Add(op, args...);
            return false;
        }
        return MakeReady();
    }
    bool MakeReady();
    // Narrows the clipping of the state by a region of the view.
    void NarrowClip(const BRegion& region, bool inverse);
    void PushState();
    void PopState();
    // The paint or the clipping has to be made anew before the next drawing.
    void Outdate() { readyAt = 0; }
    BPoint Map(BPoint p) const { return BPoint(p.x * scale + mapX, p.y * scale + mapY); }
    BRect Map(const BRect& r) const
    {
        return BRect(r.left * scale + mapX, r.top * scale + mapY, r.right * scale + mapX,
                     r.bottom * scale + mapY);
    }
    // A bitmap's place, whose right bottom pixel is `scale` pixels large.
    BRect MapPixels(const BRect& r) const
    {
        return BRect(r.left * scale + mapX, r.top * scale + mapY, (r.right + 1) * scale + mapX - 1,
                     (r.bottom + 1) * scale + mapY - 1);
    }
    BPoint Unmap(BPoint p) const { return BPoint((p.x - mapX) / scale, (p.y - mapY) / scale); }
    template <class... Args>
    bool Recorded(PictureOp op, const Args&... args)
    {
        if (recording == nullptr)
            return false;
        recording->Add(op, args...);
        return true;
    }

    bool IsVisible() const;  // neither this view nor one above is hidden
    // Place of the view's (0, 0) in the window. Holds for a tree without window too.
    void Offset(int32 * x, int32 * y) const;
    // The view's rectangle in the window, cut by those above.
    bool ClippedFrame(clipping_rect * frame) const;
    // What of the view shows in the window: without what lies in front of it; without the children
    // unless `with_children`. False if nothing.
    bool Visible(BRegion * region, bool with_children) const;
    const BRegion& OwnVisible();    // cached: without children if they clip
    const BRegion& WholeVisible();  // cached: with the children
    // Whether anything of the view or its children shows within `region`.
    bool Shows(const BRegion& region);
    void SetCanvas(Canvas * newCanvas);
    void InvalidateVisible(bool with_children) const;
    // What screen readers are told of the view may be another.
    void TellReader() const
    {
        if (server::reader_listens())
            _TellReader();
    }
    // What is set of the extras, or what they are unset; and those to be set.
    const ViewExtras& Extras() const;
    ViewExtras& NeedExtras();
    void TreeChanged();  // the clipping of views in the window is to be made anew
    // Takes the children from `child` on, whose places count from (x, y), out of a region.
    void ExcludeChildren(BRegion * region, BView * child, double x, double y) const;

    // The part that drawing reads.
    const uint32* generation;  // of the canvas; without one a number that `readyAt` never has
    uint32 readyAt = 0;
    float scale = 1, mapX = 0, mapY = 0;
    Canvas* canvas = nullptr;  // null without window
    server::Target target;
    DrawState state;

    PictureData* recording = nullptr;
    std::unique_ptr<SavedState> saved;  // those below this state
    std::unique_ptr<BAffineTransform> paintTransform;
    BRegion visible;
    uint32 visibleAt = 0;
    std::unique_ptr<BRegion> whole;  // of views with children that were invalidated
    uint32 wholeAt = 0;
    BRegion clip;                       // what may be drawn on, if it is cut further than `visible`
    const BRegion* drawable = nullptr;  // one of these two
    PixelClip pixelClip;                // of it
    int32 stateDepth = 0;

    // Tree. `parent` is the window's top view for the views that hang in the window.
    BView* const self;
    std::atomic<bool> alive{true};          // false once the view is being deleted
    std::atomic<BWindow*> window{nullptr};  // any thread may read it
    BView* parent = nullptr;
    BView* first = nullptr;
    BView* last = nullptr;
    int32 children = 0;
    // Where many children lie, made once many of them were asked for in one generation.
    mutable std::unique_ptr<SiblingGrid> grid;
    mutable uint32 gridAt = 0;
    mutable int32 gridAsked = 0;
    int32 place = 0;  // among the siblings, in the parent's grid
    BView* previous = nullptr;
    BView* next = nullptr;
    bool isTop = false;
    bool attached = false;     // AttachedToWindow() was called
    bool allAttached = false;  // AllAttached() was

    BPoint leftTop;  // in the parent
    BRect bounds;
    uint32 flags = 0;
    uint32 resizingMode = B_FOLLOW_LEFT_TOP;
    int32 hidden = 0;
    bool moveTold = false;    // a B_VIEW_MOVED is under way
    bool resizeTold = false;  // a B_VIEW_RESIZED is under way

    rgb_color viewColor = {255, 255, 255, 255};
    color_which viewWhich = B_NO_COLOR, highWhich = B_NO_COLOR, lowWhich = B_NO_COLOR;
    float viewTint = B_NO_TINT, highTint = B_NO_TINT, lowTint = B_NO_TINT;
    std::unique_ptr<ViewExtras> extras;  // made with the first that is set
    std::unique_ptr<LineArray> lineArray;
    uint32 eventMask = 0, eventOptions = 0;
    std::unique_ptr<ScrollBarLink[]> bars;  // by orientation; null without any

    uint32 readerId = 0;  // its name for screen readers, never used again; 0: they know nothing yet

private:
    void _TellReader() const;

    std::atomic<int32> fReferences{1};
};

// A view that a walk knows: View() is null once the view is being deleted.
class [[gnu::visibility("hidden")]] ViewRef
{
public:
    ViewRef() = default;
    explicit ViewRef(BView * view);
    ViewRef(const ViewRef& other) : fData(other.fData) { _Acquire(); }
    ViewRef(ViewRef && other) noexcept : fData(std::exchange(other.fData, nullptr)) {}
    ViewRef& operator=(ViewRef other) noexcept
    {
        std::swap(fData, other.fData);
        return *this;
    }
    ~ViewRef()
    {
        if (fData != nullptr)
            fData->Release();
    }
    BView* View() const { return fData != nullptr && fData->alive ? fData->self : nullptr; }
    ViewData* Data() const { return fData; }

private:
    void _Acquire()
    {
        if (fData != nullptr)
            fData->Acquire();
    }

    ViewData* fData = nullptr;
};

// Pixels of `mask` with any alpha, as a region whose left top pixel is (x, y). B_RGBA32 only.
BRegion opaque_region(const server::Surface& mask, int32 x, int32 y);
// `outer` after `inner`.
BAffineTransform composed(const BAffineTransform& outer, const BAffineTransform& inner);

// Holds the window of a view, if it has one.
class ViewLock {
public:
    explicit ViewLock(const BView* view)
        : fWindow(view->Window()), fHeld(fWindow != nullptr && fWindow->Lock())
    {
    }
    ~ViewLock()
    {
        if (fHeld)
            fWindow->Unlock();
    }
    ViewLock(const ViewLock&) = delete;

private:
    BWindow* fWindow;
    bool fHeld;
};

// Whole pixels for what a program gives; NaN is 0, and no sum of two of them leaves an int32.
float whole_pixels(float value);
BPoint whole_pixels(BPoint point);
// Where a view may be scrolled to.
BPoint scroll_place(BPoint place);

// The views' side of windows, bitmaps and controls. With the window locked.
struct [[gnu::visibility("hidden")]] ViewPrivate
{
    static ViewData& Data(const BView* view) { return *view->fData; }
    // The finer picture of a bitmap that takes views; null without one.
    static FinePicture* Fine(const BBitmap& bitmap)
    {
        return bitmap.fWindow != nullptr ? bitmap.fWindow->_Canvas().Fine() : nullptr;
    }
    // The same for a bitmap that is shown in this scale.
    static FinePicture* FineIn(const BBitmap& bitmap, float scale)
    {
        return bitmap.fWindow != nullptr ? bitmap.fWindow->_Canvas().FineIn(scale) : nullptr;
    }
    // How many pixels a unit has where the view draws.
    static float Scale(const BView* view)
    {
        const Canvas* canvas = view->fData->canvas;
        return canvas != nullptr ? canvas->Scale() : 1;
    }

    // The view that holds a window's views, which see it as no parent. It fills the window, draws
    // nothing but its colour, and is attached at once. Delete it with DeleteTop() before the
    // canvas goes.
    static BView* NewTop(BWindow * window, Canvas * canvas, float width, float height);
    static void DeleteTop(BView * top);
    // The window has a new size: the views follow by their resizing modes.
    static void ResizeTop(BView * top, float width, float height);

    // Draws with a gradient in place of the high colour: `draw` makes one solid call.
    template <class Draw>
    static void WithGradient(BView * view, const BGradient& gradient, Draw draw)
    {
        ViewData& data = *view->fData;
        if (data.recording != nullptr) {
            data.recording->AddGradient(gradient, draw);
            return;
        }
        if (!data.Ready() && !data.MakeReady()) {
            draw();
            return;
        }
        const MappedGradient mapped(gradient, data.scale, data.mapX, data.mapY);
        data.state.paint.gradient = mapped.Gradient();
        draw();
        data.state.paint.gradient = nullptr;
    }

    // Narrows the clipping to what a picture draws; null takes the narrowing away.
    static void ClipToPicture(BView * view, const std::shared_ptr<const PictureData>& picture,
                              BPoint where, bool inverse);

    // A view's place in its window.
    static BPoint ToView(const BView* view, BPoint windowPoint);
    static BPoint FromView(const BView* view, BPoint viewPoint);
    static BRect FromView(const BView* view, BRect viewRect);
    // The deepest view at a place, honouring what is hidden and what lies in front; the top view
    // itself for a place without one, null outside of it.
    static BView* Under(BView * top, BPoint windowPoint);

    // All views below and with `top`, parents first, as they are at the start. Call `visit` for
    // those that are still in the same window when it is their turn.
    template <class Visit>
    static void ForEach(BView * top, Visit visit)
    {
        std::vector<ViewRef> views;
        Collect(top, &views);
        BWindow* window = views.front().Data()->window;
        for (const ViewRef& ref : views) {
            BView* view = ref.View();
            if (view != nullptr && ref.Data()->window == window)
                visit(view);
        }
    }
    static void CollectUpwards(BView * top, std::vector<ViewRef> * views);  // children first
    static void Collect(BView * top, std::vector<ViewRef> * views);
    static bool Holds(const BView* top, const BView* branch);  // `branch` may be a stale pointer

    // The cursor over a view: its own, or that of the nearest view above; null for the default.
    static const BCursor* Cursor(const BView* view);
    // The next view that Tab reaches after `from` (null: the first), around the window; with
    // `jump` the first of the next group. Null if there is none.
    static BView* NextNavigable(BView * top, BView * from, bool backwards, bool jump);
    // Moves the focus for a Tab that nobody else wanted.
    static bool Navigate(BView * view, bool backwards, bool jump);

    // Dispatch of B_VIEW_MOVED and B_VIEW_RESIZED: the hook is told the newest frame.
    static void FrameChanged(BView * view, uint32 what);

    // For a pointer message before its hook runs: place in the window, buttons after it.
    static void TrackPointer(BView * view, BPoint windowPoint, uint32 buttons);

    // A branch comes to or leaves its parent's window, with hooks.
    static void Attach(BView * branch, BWindow * window, Canvas * canvas);
    static void Detach(BView * branch);
    static void Forget(BView * branch, BWindow * window);
    // New place in the parent and new size; children follow. Pixels of a view that only moves are
    // kept where they can be.
    static void SetFrame(BView * view, BPoint leftTop, float width, float height);
    enum class Repaint : bool { No, Yes };
    static void Reshape(BView * view, BPoint leftTop, float width, float height, Repaint repaint);
    static void Follow(BView * child, float oldWidth, float oldHeight, float width, float height,
                       Repaint repaint);
    // Moves what shows in `area` of the window, and what of it waits for Draw().
    static void MovePixels(BView * view, const BRegion& area, int32 dx, int32 dy);

    // A scroll bar has the view as its target; an empty link leaves it.
    static void SetScrollBar(BView * view, orientation direction, const ScrollBarLink& link);
    static void ForgetScrollBars(BView * view);

    // How deep the stack of states is; cut back to a depth it had.
    static int32 StateDepth(const BView* view);
    static void RestoreState(BView * view, int32 depth);
};

}  // namespace BPrivate

#endif  // INTERFACE_VIEW_PRIVATE_H
