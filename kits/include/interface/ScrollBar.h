#ifndef _SCROLL_BAR_H
#define _SCROLL_BAR_H

#include <View.h>

#include <memory>

#define B_V_SCROLL_BAR_WIDTH 14
#define B_H_SCROLL_BAR_HEIGHT 14

class BMessageRunner;

namespace BPrivate {
struct ScrollBarParts;
struct ScrollBarPrivate;
}

/* Scrolls its target to its value, and has the value that the target is scrolled to. Its frame is
   14 wide or high. Without a range there is nothing to be pressed. */
class BScrollBar : public BView {
public:
    // Follows the right or bottom edge of its parent.
    BScrollBar(BRect frame, const char* name, BView* target, float min, float max,
               orientation direction);
    /* Without a frame: as thick as it wants to be. */
    BScrollBar(const char* name, BView* target, float min, float max, orientation direction);
    BScrollBar(BMessage* archive);
    virtual ~BScrollBar();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void Draw(BRect updateRect);
    virtual void MessageReceived(BMessage* message);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);

    // Rounded and kept in the range; ValueChanged() is called if it differs from what it was.
    void SetValue(float value);
    float Value() const;
    // How much of the whole the target shows, 0 to 1; 0 goes by the large step.
    virtual void SetProportion(float proportion);
    float Proportion() const;
    // Hook: scrolls the target.
    virtual void ValueChanged(float newValue);

    // Rounded; a minimum above the maximum gives 0 to 0.
    void SetRange(float min, float max);
    void GetRange(float* _min, float* _max) const;
    // What the arrows, and what presses beside the thumb, scroll by.
    void SetSteps(float smallStep, float largeStep);
    void GetSteps(float* _smallStep, float* _largeStep) const;

    void SetTarget(BView* target);
    // The view of that name in the window, when there is one.
    void SetTarget(const char* targetName);
    BView* Target() const;
    void SetOrientation(orientation direction);
    orientation Orientation() const;

    // With the edges of what has the keyboard.
    status_t SetBorderHighlighted(bool highlight);
    virtual void GetPreferredSize(float* _width, float* _height);

private:
    friend struct BPrivate::ScrollBarParts;
    friend struct BPrivate::ScrollBarPrivate;

    enum Part : int8 { kNone, kLess, kMore, kPageLess, kPageMore, kThumb };

    bool _HasRange() const { return fMax > fMin; }
    bool _ScrollBy(float delta);
    void _Settle() const
    {
        if (fAsk != nullptr)
            _Ask();
    }
    void _Ask() const;
    void _Redraw();
    void _Link(bool link);
    void _Press(Part part, BPoint where);
    void _Repeat();
    Part _PartAt(BPoint where) const;
    void _EndPress();

    float fMin, fMax;
    float fSmallStep = 1, fLargeStep = 10;
    float fValue = 0;
    float fProportion = 0;
    BView* fTarget = nullptr;                       // tells when it goes
    mutable void (*fAsk)(BView* target) = nullptr;  // has it say what changed, once somebody looks
    mutable bool fAsking = false;
    char* fTargetName = nullptr;
    orientation fOrientation;
    bool fHighlighted = false;
    Part fPressed = kNone;
    bool fPressShown = false;  // the pointer is where it pressed
    float fGrip = 0;           // the pointer's place in the thumb
    BPoint fPointer;
    std::unique_ptr<BMessageRunner> fRepeater;
};

#endif  // _SCROLL_BAR_H
