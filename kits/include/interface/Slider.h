#ifndef _SLIDER_H
#define _SLIDER_H

#include <Control.h>

#include <memory>

enum hash_mark_location {
    B_HASH_MARKS_NONE = 0,
    B_HASH_MARKS_TOP = 1,
    B_HASH_MARKS_LEFT = 1,
    B_HASH_MARKS_BOTTOM = 2,
    B_HASH_MARKS_RIGHT = 2,
    B_HASH_MARKS_BOTH = 3
};

enum thumb_style { B_BLOCK_THUMB = 0, B_TRIANGLE_THUMB = 1 };

/* A thumb on a bar that stands for a value between two limits, from left to right or from the lower
   end up. The modification message is sent while the thumb moves, the message when it is let go.
   Arrow keys move it by the increment, Home and End to the limits. Its bar has a default thickness
   that goes with the font. */
class BSlider : public BControl {
public:
    BSlider(BRect frame, const char* name, const char* label, BMessage* message, int32 minValue,
            int32 maxValue, thumb_style thumbType = B_BLOCK_THUMB,
            uint32 resizingMode = B_FOLLOW_LEFT_TOP,
            uint32 flags = B_NAVIGABLE | B_WILL_DRAW | B_FRAME_EVENTS);
    BSlider(BRect frame, const char* name, const char* label, BMessage* message, int32 minValue,
            int32 maxValue, orientation posture, thumb_style thumbType = B_BLOCK_THUMB,
            uint32 resizingMode = B_FOLLOW_LEFT_TOP,
            uint32 flags = B_NAVIGABLE | B_WILL_DRAW | B_FRAME_EVENTS);
    /* Without a frame: as large as it wants to be. */
    BSlider(const char* name, const char* label, BMessage* message, int32 minValue, int32 maxValue,
            orientation posture, thumb_style thumbType = B_BLOCK_THUMB,
            uint32 flags = B_NAVIGABLE | B_WILL_DRAW | B_FRAME_EVENTS);
    BSlider(BMessage* archive);
    virtual ~BSlider();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    // Gives it its preferred size.
    virtual void AttachedToWindow();
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void KeyUp(const char* bytes, int32 numBytes);
    virtual void MouseDown(BPoint point);
    virtual void MouseUp(BPoint point);
    virtual void MouseMoved(BPoint point, uint32 transit, const BMessage* dragMessage);

    virtual void SetLabel(const char* label);
    virtual void SetLimitLabels(const char* minLabel, const char* maxLabel);
    const char* MinLimitLabel() const;
    const char* MaxLimitLabel() const;

    // Kept between the limits; the value it has already does nothing.
    virtual void SetValue(int32 value);
    virtual int32 ValueForPoint(BPoint point) const;
    // 0 for the minimum to 1 for the maximum.
    virtual void SetPosition(float position);
    float Position() const;
    void GetLimits(int32* minimum, int32* maximum) const;
    virtual void SetLimits(int32 minimum, int32 maximum);

    // Hooks: Draw() calls DrawSlider(), and that the others in this order.
    virtual void Draw(BRect updateRect);
    virtual void DrawSlider();
    virtual void DrawBar();
    virtual void DrawHashMarks();
    virtual void DrawThumb();
    virtual void DrawFocusMark();
    virtual void DrawText();
    // Hook: what is written beside the label; tell UpdateTextChanged() when it changes.
    virtual const char* UpdateText() const;
    void UpdateTextChanged();
    // Hook: the widest that UpdateText() gets; negative if it is not known.
    virtual float MaxUpdateTextWidth();

    virtual BRect BarFrame() const;
    virtual BRect HashMarksFrame() const;
    virtual BRect ThumbFrame() const;
    virtual void GetPreferredSize(float* _width, float* _height);

    virtual void SetModificationMessage(BMessage* message);
    BMessage* ModificationMessage() const;
    // Microseconds between two looks at the pointer, without B_ASYNCHRONOUS_CONTROLS.
    virtual void SetSnoozeAmount(int32 microSeconds);
    int32 SnoozeAmount() const;
    virtual void SetKeyIncrementValue(int32 value);
    int32 KeyIncrementValue() const;
    virtual void SetHashMarkCount(int32 count);
    int32 HashMarkCount() const;
    virtual void SetHashMarks(hash_mark_location where);
    hash_mark_location HashMarks() const;
    virtual void SetStyle(thumb_style style);
    thumb_style Style() const;
    virtual void SetBarColor(rgb_color color);
    rgb_color BarColor() const;
    // Of the bar between the minimum and the thumb.
    virtual void UseFillColor(bool useFill, const rgb_color* color = nullptr);
    bool FillColor(rgb_color* color) const;
    // The view that the hooks draw in.
    BView* OffscreenView() const;
    orientation Orientation() const;
    virtual void SetOrientation(orientation posture);
    float BarThickness() const;
    virtual void SetBarThickness(float thickness);
    virtual void SetFont(const BFont* font, uint32 properties = B_FONT_ALL);

private:
    void _Refit();
    void _Modified(int32 before);
    float _Center() const;

    std::unique_ptr<BMessage> fModification;
    int32 fMin = 0, fMax = 100;
    int32 fIncrement = 1;
    int32 fSnooze_us = 20000;
    int32 fHashCount = 0;
    hash_mark_location fHashes = B_HASH_MARKS_NONE;
    thumb_style fStyle;
    orientation fOrientation;
    BString fMinLabel, fMaxLabel;
    bool fHasMinLabel = false, fHasMaxLabel = false;
    rgb_color fBarColor;
    rgb_color fFillColor;
    bool fUseFill = false;
    float fThickness = -1;  // negative: by the font
    float fGrip = 0;        // the pointer's distance from the thumb's middle
    bool fKeyMoved = false;
};

#endif  // _SLIDER_H
