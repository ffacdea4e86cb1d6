#ifndef _VIEW_H
#define _VIEW_H

#include <Handler.h>
#include <AffineTransform.h>
#include <Alignment.h>
#include <Font.h>
#include <GraphicsDefs.h>
#include <InterfaceDefs.h>
#include <Point.h>
#include <Rect.h>
#include <Size.h>
#include <SupportDefs.h>

class BArchivable;
class BBitmap;
class BCursor;
class BGradient;
class BLayout;
class BLayoutItem;
class BMessage;
class BPicture;
class BPolygon;
class BRegion;
class BScrollBar;
class BScrollView;
class BShape;
class BString;
class BToolTip;
class BWindow;

namespace BPrivate {
class Canvas;
struct ViewData;
struct ViewPrivate;
}  // namespace BPrivate

// Mouse buttons, as bits.
enum { B_PRIMARY_MOUSE_BUTTON = 1, B_SECONDARY_MOUSE_BUTTON = 2, B_TERTIARY_MOUSE_BUTTON = 4 };
#define B_MOUSE_BUTTON(n) (1 << ((n)-1))

// Where the pointer went, for MouseMoved().
enum { B_ENTERED_VIEW = 0, B_INSIDE_VIEW = 1, B_EXITED_VIEW = 2, B_OUTSIDE_VIEW = 3 };

// Event masks and their options.
enum { B_POINTER_EVENTS = 1, B_KEYBOARD_EVENTS = 2 };
enum {
    B_LOCK_WINDOW_FOCUS = 1,
    B_SUSPEND_VIEW_FOCUS = 2,
    B_NO_POINTER_HISTORY = 4,
    B_FULL_POINTER_HISTORY = 8
};

enum rect_tracking_style { B_TRACK_WHOLE_RECT = 0, B_TRACK_RECT_CORNER = 1 };

enum set_font_mask {
    B_FONT_FAMILY_AND_STYLE = 1,
    B_FONT_SIZE = 2,
    B_FONT_SHEAR = 4,
    B_FONT_ROTATION = 8,
    B_FONT_SPACING = 16,
    B_FONT_ENCODING = 32,
    B_FONT_FACE = 64,
    B_FONT_FLAGS = 128,
    B_FONT_FALSE_BOLD_WIDTH = 0x100,
    B_FONT_ALL = 255
};

enum coordinate_space {
    B_CURRENT_STATE_COORDINATES = 0,
    B_PREVIOUS_STATE_COORDINATES = 1,
    B_VIEW_COORDINATES = 2,
    B_PARENT_VIEW_DRAW_COORDINATES = 3,
    B_PARENT_VIEW_COORDINATES = 4,
    B_WINDOW_COORDINATES = 5,
    B_SCREEN_COORDINATES = 6
};

// Flags of a view.
const uint32 B_FULL_UPDATE_ON_RESIZE = 0x80000000;
const uint32 B_WILL_DRAW = 0x20000000;
const uint32 B_PULSE_NEEDED = 0x10000000;
const uint32 B_NAVIGABLE_JUMP = 0x08000000;
const uint32 B_FRAME_EVENTS = 0x04000000;
const uint32 B_NAVIGABLE = 0x02000000;
const uint32 B_SUBPIXEL_PRECISE = 0x01000000;
const uint32 B_DRAW_ON_CHILDREN = 0x00800000;
const uint32 B_INPUT_METHOD_AWARE = 0x00400000;
const uint32 B_SCROLL_VIEW_AWARE = 0x00200000;
const uint32 B_SUPPORTS_LAYOUT = 0x00100000;
const uint32 B_INVALIDATE_AFTER_LAYOUT = 0x00080000;
const uint32 B_TRANSPARENT_BACKGROUND = 0x00040000;
// Resizing modes. Four digits, for top, left, bottom and right edge: the side of the parent that
// the edge keeps its distance to (1 top, 2 left, 3 bottom, 4 right, 5 the middle).
const uint32 B_FOLLOW_NONE = 0;
const uint32 B_FOLLOW_ALL_SIDES = 0x1234;
const uint32 B_FOLLOW_ALL = 0x1234;
const uint32 B_FOLLOW_LEFT = 0x202;
const uint32 B_FOLLOW_RIGHT = 0x404;
const uint32 B_FOLLOW_LEFT_RIGHT = 0x204;
const uint32 B_FOLLOW_H_CENTER = 0x505;
const uint32 B_FOLLOW_TOP = 0x1010;
const uint32 B_FOLLOW_BOTTOM = 0x3030;
const uint32 B_FOLLOW_TOP_BOTTOM = 0x1030;
const uint32 B_FOLLOW_V_CENTER = 0x5050;
const uint32 B_FOLLOW_LEFT_TOP = 0x1212;

/* A part of a window, or of a bitmap that takes views: it draws and takes input there. Calls of an
   attached view want the window locked, but for Window() and LockLooper(). Frames are whole pixels:
   what is given is rounded; Bounds() are the view's own coordinates, whose left top corner moves
   when it scrolls. What is drawn goes to the nearest pixels.

   Children clip their parent, unless it has B_DRAW_ON_CHILDREN; a view later in its parent's list
   lies in front of the earlier ones. A child with B_TRANSPARENT_BACKGROUND clips nobody. Drawing
   shows at once in the window's back buffer; without a window it does nothing. */
class BView : public BHandler {
public:
    BView(const char* name, uint32 flags, BLayout* layout = nullptr);
    BView(BRect frame, const char* name, uint32 resizingMode, uint32 flags);
    virtual ~BView();

    BView(BMessage* archive);
    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;
    virtual status_t AllUnarchived(const BMessage* archive);
    virtual status_t AllArchived(BMessage* archive) const;

    /* Hooks. A branch that comes to a window gets AttachedToWindow() from the top down, then
       AllAttached() from the leaves up; one that leaves DetachedFromWindow() and AllDetached() in
       the same orders, while Window() still holds. */
    virtual void AttachedToWindow();
    virtual void AllAttached();
    virtual void DetachedFromWindow();
    virtual void AllDetached();

    virtual void MessageReceived(BMessage* message);

    /* The parent owns its children and deletes them with itself. A child that hangs somewhere
       already stays there; `before` is a child of this view, or null for the end. A view that is
       deleted leaves its parent and its window. */
    void AddChild(BView* child, BView* before = nullptr);
    bool AddChild(BLayoutItem* child);
    bool RemoveChild(BView* child);
    int32 CountChildren() const;
    BView* ChildAt(int32 index) const;
    BView* NextSibling() const;
    BView* PreviousSibling() const;
    bool RemoveSelf();
    BWindow* Window() const;

    /* Hooks. Draw() is asked for views with B_WILL_DRAW, on a cleared background, with drawing
       limited to what has to be drawn anew; the state afterwards is the one from before.
       FrameMoved() and FrameResized() want B_FRAME_EVENTS, Pulse() B_PULSE_NEEDED. KeyDown()
       takes Tab to the next view with B_NAVIGABLE. */
    virtual void Draw(BRect updateRect);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);
    virtual void WindowActivated(bool active);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void KeyUp(const char* bytes, int32 numBytes);
    virtual void Pulse();
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);
    virtual void TargetedByScrollView(BScrollView* scrollView);

    /* A rectangle that follows the pointer, all of it or its right bottom corner, until
       EndRectTracking() or the release of the button. */
    void BeginRectTracking(BRect startRect, uint32 style = B_TRACK_WHOLE_RECT);
    void EndRectTracking();

    /* The oldest press, release or move that waits in the queue, taken out of it, if
       `checkMessageQueue`; else, or if there is none, the present state. Runs a pending update
       first. */
    void GetMouse(BPoint* location, uint32* buttons, bool checkMessageQueue = true);

    /* Starts a drag with the button that is held: a copy of the message goes to the view under the
       last release. The bitmap passes to the kit; `offset` is the pointer's place in it. */
    void DragMessage(BMessage* message, BRect dragRect, BHandler* replyTo = nullptr);
    void DragMessage(BMessage* message, BBitmap* bitmap, BPoint offset,
                     BHandler* replyTo = nullptr);
    void DragMessage(BMessage* message, BBitmap* bitmap, drawing_mode dragMode, BPoint offset,
                     BHandler* replyTo = nullptr);

    // This view or one below it; null if none has the name.
    BView* FindView(const char* name) const;
    // Null for a view that hangs in the window itself.
    BView* Parent() const;

    BRect Bounds() const;
    BRect Frame() const;
    void ConvertToScreen(BPoint* point) const;
    BPoint ConvertToScreen(BPoint point) const;
    void ConvertFromScreen(BPoint* point) const;
    BPoint ConvertFromScreen(BPoint point) const;
    void ConvertToScreen(BRect* rect) const;
    BRect ConvertToScreen(BRect rect) const;
    void ConvertFromScreen(BRect* rect) const;
    BRect ConvertFromScreen(BRect rect) const;
    void ConvertToParent(BPoint* point) const;
    BPoint ConvertToParent(BPoint point) const;
    void ConvertFromParent(BPoint* point) const;
    BPoint ConvertFromParent(BPoint point) const;
    void ConvertToParent(BRect* rect) const;
    BRect ConvertToParent(BRect rect) const;
    void ConvertFromParent(BRect* rect) const;
    BRect ConvertFromParent(BRect rect) const;
    BPoint LeftTop() const;

    // What drawing reaches at present, in the view's coordinates.
    void GetClippingRegion(BRegion* region) const;
    /* Limit drawing, in the coordinates of the state; together with the limits of the states below.
       Null lifts the limit of this state; the others narrow it. */
    virtual void ConstrainClippingRegion(BRegion* region);
    void ClipToPicture(BPicture* picture, BPoint where = B_ORIGIN, bool sync = true);
    void ClipToInversePicture(BPicture* picture, BPoint where = B_ORIGIN, bool sync = true);
    void ClipToRect(BRect rect);
    void ClipToInverseRect(BRect rect);
    void ClipToShape(BShape* shape);
    void ClipToInverseShape(BShape* shape);

    virtual void SetDrawingMode(drawing_mode mode);
    drawing_mode DrawingMode() const;
    void SetBlendingMode(source_alpha srcAlpha, alpha_function alphaFunc);
    void GetBlendingMode(source_alpha* srcAlpha, alpha_function* alphaFunc) const;
    virtual void SetPenSize(float size);
    float PenSize() const;

    void SetViewCursor(const BCursor* cursor, bool sync = true);

    // B_TRANSPARENT_COLOR as view colour: the background is not cleared.
    bool HasDefaultColors() const;
    bool HasSystemColors() const;
    void AdoptParentColors();
    void AdoptSystemColors();
    void AdoptViewColors(BView* view);
    virtual void SetViewColor(rgb_color color);
    void SetViewColor(uchar red, uchar green, uchar blue, uchar alpha = 255);
    rgb_color ViewColor() const;
    void SetViewUIColor(color_which which, float tint = B_NO_TINT);
    color_which ViewUIColor(float* tint = nullptr) const;

    // Lies on the background colour; copied.
    void SetViewBitmap(const BBitmap* bitmap, BRect srcRect, BRect dstRect,
                       uint32 followFlags = B_FOLLOW_LEFT_TOP, uint32 options = B_TILE_BITMAP);
    void SetViewBitmap(const BBitmap* bitmap, uint32 followFlags = B_FOLLOW_LEFT_TOP,
                       uint32 options = B_TILE_BITMAP);
    void ClearViewBitmap();
    status_t SetViewOverlay(const BBitmap* overlay, BRect srcRect, BRect dstRect,
                            rgb_color* colorKey, uint32 followFlags = B_FOLLOW_LEFT_TOP,
                            uint32 options = 0);
    status_t SetViewOverlay(const BBitmap* overlay, rgb_color* colorKey,
                            uint32 followFlags = B_FOLLOW_LEFT_TOP, uint32 options = 0);
    void ClearViewOverlay();

    virtual void SetHighColor(rgb_color color);
    void SetHighColor(uchar red, uchar green, uchar blue, uchar alpha = 255);
    rgb_color HighColor() const;
    void SetHighUIColor(color_which which, float tint = B_NO_TINT);
    color_which HighUIColor(float* tint = nullptr) const;
    virtual void SetLowColor(rgb_color color);
    void SetLowColor(uchar red, uchar green, uchar blue, uchar alpha = 255);
    rgb_color LowColor() const;
    void SetLowUIColor(color_which which, float tint = B_NO_TINT);
    color_which LowUIColor(float* tint = nullptr) const;

    void SetLineMode(cap_mode lineCap, join_mode lineJoin,
                     float miterLimit = B_DEFAULT_MITER_LIMIT);
    join_mode LineJoinMode() const;
    cap_mode LineCapMode() const;
    float LineMiterLimit() const;
    void SetFillRule(int32 rule);
    int32 FillRule() const;

    /* Of the state: coordinates are transformed, then scaled, then moved by the origin, then by
       the states below. PushState() starts with none of these, and keeps everything else. */
    void SetOrigin(BPoint where);
    void SetOrigin(float x, float y);
    BPoint Origin() const;
    void SetTransform(BAffineTransform transform);
    BAffineTransform Transform() const;
    void TranslateBy(double x, double y);
    void ScaleBy(double x, double y);
    void RotateBy(double angleRadians);
    BAffineTransform TransformTo(coordinate_space basis) const;
    void PushState();
    void PopState();

    void MovePenTo(BPoint pt);
    void MovePenTo(float x, float y);
    void MovePenBy(float x, float y);
    BPoint PenLocation() const;

    // Without a start it is the pen's place; the pen goes to the end of a line.
    void StrokeLine(BPoint toPoint, ::pattern pattern = B_SOLID_HIGH);
    void StrokeLine(BPoint start, BPoint end, ::pattern pattern = B_SOLID_HIGH);
    void StrokeLine(BPoint toPoint, const BGradient& gradient);
    void StrokeLine(BPoint start, BPoint end, const BGradient& gradient);
    void BeginLineArray(int32 count);
    void AddLine(BPoint start, BPoint end, rgb_color color);
    void EndLineArray();

    void StrokePolygon(const BPolygon* polygon, bool closed = true,
                       ::pattern pattern = B_SOLID_HIGH);
    void StrokePolygon(const BPoint* pointArray, int32 numPoints, bool closed = true,
                       ::pattern pattern = B_SOLID_HIGH);
    void StrokePolygon(const BPoint* pointArray, int32 numPoints, BRect bounds, bool closed = true,
                       ::pattern pattern = B_SOLID_HIGH);
    void StrokePolygon(const BPolygon* polygon, bool closed, const BGradient& gradient);
    void StrokePolygon(const BPoint* pointArray, int32 numPoints, bool closed,
                       const BGradient& gradient);
    void StrokePolygon(const BPoint* pointArray, int32 numPoints, BRect bounds, bool closed,
                       const BGradient& gradient);
    void FillPolygon(const BPolygon* polygon, ::pattern pattern = B_SOLID_HIGH);
    void FillPolygon(const BPoint* pointArray, int32 numPoints, ::pattern pattern = B_SOLID_HIGH);
    void FillPolygon(const BPoint* pointArray, int32 numPoints, BRect bounds,
                     ::pattern pattern = B_SOLID_HIGH);
    void FillPolygon(const BPolygon* polygon, const BGradient& gradient);
    void FillPolygon(const BPoint* pointArray, int32 numPoints, const BGradient& gradient);
    void FillPolygon(const BPoint* pointArray, int32 numPoints, BRect bounds,
                     const BGradient& gradient);
    void StrokeTriangle(BPoint point1, BPoint point2, BPoint point3, BRect bounds,
                        ::pattern pattern = B_SOLID_HIGH);
    void StrokeTriangle(BPoint point1, BPoint point2, BPoint point3,
                        ::pattern pattern = B_SOLID_HIGH);
    void StrokeTriangle(BPoint point1, BPoint point2, BPoint point3, BRect bounds,
                        const BGradient& gradient);
    void StrokeTriangle(BPoint point1, BPoint point2, BPoint point3, const BGradient& gradient);
    void FillTriangle(BPoint point1, BPoint point2, BPoint point3,
                      ::pattern pattern = B_SOLID_HIGH);
    void FillTriangle(BPoint point1, BPoint point2, BPoint point3, BRect bounds,
                      ::pattern pattern = B_SOLID_HIGH);
    void FillTriangle(BPoint point1, BPoint point2, BPoint point3, const BGradient& gradient);
    void FillTriangle(BPoint point1, BPoint point2, BPoint point3, BRect bounds,
                      const BGradient& gradient);

    void StrokeRect(BRect rect, ::pattern pattern = B_SOLID_HIGH);
    void StrokeRect(BRect rect, const BGradient& gradient);
    void FillRect(BRect rect, ::pattern pattern = B_SOLID_HIGH);
    void FillRect(BRect rect, const BGradient& gradient);
    void FillRegion(BRegion* rectegion, ::pattern pattern = B_SOLID_HIGH);
    void FillRegion(BRegion* rectegion, const BGradient& gradient);
    void InvertRect(BRect rect);
    void StrokeRoundRect(BRect rect, float xRadius, float yRadius,
                         ::pattern pattern = B_SOLID_HIGH);
    void StrokeRoundRect(BRect rect, float xRadius, float yRadius, const BGradient& gradient);
    void FillRoundRect(BRect rect, float xRadius, float yRadius, ::pattern pattern = B_SOLID_HIGH);
    void FillRoundRect(BRect rect, float xRadius, float yRadius, const BGradient& gradient);

    // Angles in degrees, counter-clockwise from three o'clock.
    void StrokeEllipse(BPoint center, float xRadius, float yRadius,
                       ::pattern pattern = B_SOLID_HIGH);
    void StrokeEllipse(BRect rect, ::pattern pattern = B_SOLID_HIGH);
    void StrokeEllipse(BPoint center, float xRadius, float yRadius, const BGradient& gradient);
    void StrokeEllipse(BRect rect, const BGradient& gradient);
    void FillEllipse(BPoint center, float xRadius, float yRadius, ::pattern pattern = B_SOLID_HIGH);
    void FillEllipse(BRect rect, ::pattern pattern = B_SOLID_HIGH);
    void FillEllipse(BPoint center, float xRadius, float yRadius, const BGradient& gradient);
    void FillEllipse(BRect rect, const BGradient& gradient);
    void StrokeArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                   ::pattern pattern = B_SOLID_HIGH);
    void StrokeArc(BRect rect, float startAngle, float arcAngle, ::pattern pattern = B_SOLID_HIGH);
    void StrokeArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                   const BGradient& gradient);
    void StrokeArc(BRect rect, float startAngle, float arcAngle, const BGradient& gradient);
    void FillArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                 ::pattern pattern = B_SOLID_HIGH);
    void FillArc(BRect rect, float startAngle, float arcAngle, ::pattern pattern = B_SOLID_HIGH);
    void FillArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                 const BGradient& gradient);
    void FillArc(BRect rect, float startAngle, float arcAngle, const BGradient& gradient);

    // Four points each; a shape starts at the pen.
    void StrokeBezier(BPoint* controlPoints, ::pattern pattern = B_SOLID_HIGH);
    void StrokeBezier(BPoint* controlPoints, const BGradient& gradient);
    void FillBezier(BPoint* controlPoints, ::pattern pattern = B_SOLID_HIGH);
    void FillBezier(BPoint* controlPoints, const BGradient& gradient);
    void StrokeShape(BShape* shape, ::pattern pattern = B_SOLID_HIGH);
    void StrokeShape(BShape* shape, const BGradient& gradient);
    void FillShape(BShape* shape, ::pattern pattern = B_SOLID_HIGH);
    void FillShape(BShape* shape, const BGradient& gradient);

    /* Moves pixels of the view. What had no picture at the source is invalid at the
       destination. */
    void CopyBits(BRect src, BRect dst);

    // The rectangle of the bitmap is fitted into that of the view.
    void DrawBitmapAsync(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect, uint32 options);
    void DrawBitmapAsync(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect);
    void DrawBitmapAsync(const BBitmap* aBitmap, BRect viewRect);
    void DrawBitmapAsync(const BBitmap* aBitmap, BPoint where);
    void DrawBitmapAsync(const BBitmap* aBitmap);
    void DrawBitmap(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect, uint32 options);
    void DrawBitmap(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect);
    void DrawBitmap(const BBitmap* aBitmap, BRect viewRect);
    void DrawBitmap(const BBitmap* aBitmap, BPoint where);
    void DrawBitmap(const BBitmap* aBitmap);
    void DrawTiledBitmapAsync(const BBitmap* aBitmap, BRect viewRect, BPoint phase = B_ORIGIN);
    void DrawTiledBitmap(const BBitmap* aBitmap, BRect viewRect, BPoint phase = B_ORIGIN);

    // On the base line at the pen, which goes to the end of the text.
    void DrawChar(char aChar);
    void DrawChar(char aChar, BPoint location);
    void DrawString(const char* string, escapement_delta* delta = nullptr);
    void DrawString(const char* string, BPoint location, escapement_delta* delta = nullptr);
    void DrawString(const char* string, int32 length, escapement_delta* delta = nullptr);
    void DrawString(const char* string, int32 length, BPoint location,
                    escapement_delta* delta = 0L);
    void DrawString(const char* string, const BPoint* locations, int32 locationCount);
    void DrawString(const char* string, int32 length, const BPoint* locations, int32 locationCount);

    virtual void SetFont(const BFont* font, uint32 mask = B_FONT_ALL);
    void GetFont(BFont* font) const;
    void TruncateString(BString* in_out, uint32 mode, float width) const;
    float StringWidth(const char* string) const;
    float StringWidth(const char* string, int32 length) const;
    void GetStringWidths(char* stringArray[], int32 lengthArray[], int32 numStrings,
                         float widthArray[]) const;
    void SetFontSize(float size);
    void ForceFontAliasing(bool enable);
    void GetFontHeight(font_height* height) const;

    // The view, and its children that lie there, are asked to Draw() soon.
    void Invalidate(BRect invalRect);
    void Invalidate(const BRegion* invalRegion);
    void Invalidate();
    void DelayedInvalidate(bigtime_t delay);
    void DelayedInvalidate(bigtime_t delay, BRect invalRect);

    void SetDiskMode(char* filename, long offset);
    void BeginPicture(BPicture* a_picture);
    void AppendToPicture(BPicture* a_picture);
    BPicture* EndPicture();
    void DrawPicture(const BPicture* a_picture);
    void DrawPicture(const BPicture* a_picture, BPoint where);
    void DrawPicture(const char* filename, long offset, BPoint where);
    void DrawPictureAsync(const BPicture* a_picture);
    void DrawPictureAsync(const BPicture* a_picture, BPoint where);
    void DrawPictureAsync(const char* filename, long offset, BPoint where);
    void BeginLayer(uint8 opacity);
    void EndLayer();

    /* Events that are not meant for this view: always, or from a B_MOUSE_DOWN (where alone the
       call works) to the last release. */
    status_t SetEventMask(uint32 mask, uint32 options = 0);
    uint32 EventMask();
    status_t SetMouseEventMask(uint32 mask, uint32 options = 0);

    virtual void SetFlags(uint32 flags);
    uint32 Flags() const;
    virtual void SetResizingMode(uint32 mode);
    uint32 ResizingMode() const;
    void MoveBy(float dh, float dv);
    void MoveTo(BPoint where);
    void MoveTo(float x, float y);
    void ResizeBy(float dh, float dv);
    void ResizeTo(float width, float height);
    void ResizeTo(BSize size);
    void ScrollBy(float dh, float dv);
    void ScrollTo(float x, float y);
    virtual void ScrollTo(BPoint where);

    virtual void MakeFocus(bool focus = true);
    bool IsFocus() const;
    // Calls count. IsHidden() also asks the parents and the window.
    virtual void Show();
    virtual void Hide();
    bool IsHidden() const;
    bool IsHidden(const BView* looking_from) const;

    void Flush() const;
    void Sync() const;
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void ResizeToPreferred();
    BScrollBar* ScrollBar(orientation direction) const;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);

    bool IsPrinting() const;
    void SetScale(float scale) const;
    float Scale() const;
    virtual status_t Perform(perform_code code, void* data);
    virtual void DrawAfterChildren(BRect updateRect);

    // Views do not lay themselves out: sizes are kept and told, but move nothing.
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual BAlignment LayoutAlignment();
    void SetExplicitMinSize(BSize size);
    void SetExplicitMaxSize(BSize size);
    void SetExplicitPreferredSize(BSize size);
    void SetExplicitSize(BSize size);
    void SetExplicitAlignment(BAlignment alignment);
    BSize ExplicitMinSize() const;
    BSize ExplicitMaxSize() const;
    BSize ExplicitPreferredSize() const;
    BAlignment ExplicitAlignment() const;
    virtual bool HasHeightForWidth();
    virtual void GetHeightForWidth(float width, float* min, float* max, float* preferred);
    void InvalidateLayout(bool descendants = false);
    virtual void SetLayout(BLayout* layout);
    BLayout* GetLayout() const;
    void EnableLayoutInvalidation();
    void DisableLayoutInvalidation();
    bool IsLayoutInvalidationDisabled();
    bool IsLayoutValid() const;
    void ResetLayoutInvalidation();
    void Layout(bool force);
    void Relayout();

protected:
    virtual void LayoutInvalidated(bool descendants = false);
    virtual void DoLayout();

public:
    // Kept, never shown.
    void SetToolTip(const char* text);
    void SetToolTip(BToolTip* tip);
    BToolTip* ToolTip() const;
    void ShowToolTip(BToolTip* tip = nullptr);
    void HideToolTip();

protected:
    virtual bool GetToolTipAt(BPoint point, BToolTip** _tip);
    virtual void LayoutChanged();
    status_t ScrollWithMouseWheelDelta(BScrollBar*, float);

private:
    friend class BBitmap;
    friend class BWindow;
    friend class BPrivate::Canvas;
    friend struct BPrivate::ViewData;
    friend struct BPrivate::ViewPrivate;

    BView(const BView&) = delete;
    BView& operator=(const BView&) = delete;

    void _Init(BRect frame, uint32 resizingMode, uint32 flags);

    BPrivate::ViewData* fData;  // outlives the view while a walk through the tree knows it
};

#endif  // _VIEW_H
