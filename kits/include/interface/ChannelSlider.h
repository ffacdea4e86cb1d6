#ifndef _CHANNEL_SLIDER_H
#define _CHANNEL_SLIDER_H

#include <ChannelControl.h>
#include <InterfaceDefs.h>

/* A slider with a thumb for each channel, side by side. Shift while one is dragged moves it alone;
   else all move by the same part of their way. Keys move the current one. */
class BChannelSlider : public BChannelControl {
public:
    BChannelSlider(BRect area, const char* name, const char* label, BMessage* message,
                   int32 channels = 1, uint32 resizeMode = B_FOLLOW_LEFT_TOP,
                   uint32 flags = B_WILL_DRAW);
    BChannelSlider(BRect area, const char* name, const char* label, BMessage* message,
                   orientation orientation, int32 channels = 1,
                   uint32 resizeMode = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW);
    /* Without a frame: as large as it wants to be. */
    BChannelSlider(const char* name, const char* label, BMessage* message, orientation orientation,
                   int32 channels = 1, uint32 flags = B_WILL_DRAW);
    BChannelSlider(BMessage* archive);
    virtual ~BChannelSlider();

    static BArchivable* Instantiate(BMessage* from);
    virtual status_t Archive(BMessage* into, bool deep = true) const;

    virtual void Draw(BRect updateRect);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void KeyUp(const char* bytes, int32 numBytes);
    virtual void GetPreferredSize(float* _width, float* _height);

    virtual orientation Orientation() const;
    void SetOrientation(orientation orientation);
    virtual int32 MaxChannelCount() const;
    virtual bool SupportsIndividualLimits() const;

    // Hooks of Draw().
    virtual void DrawChannel(BView* into, int32 channel, BRect area, bool pressed);
    virtual void DrawGroove(BView* into, int32 channel, BPoint leftTop, BPoint rightBottom);
    virtual void DrawThumb(BView* into, int32 channel, BPoint where, bool pressed);
    // No bitmap: DrawThumb() draws.
    virtual const BBitmap* ThumbFor(int32 channel, bool pressed);
    virtual BRect ThumbFrameFor(int32 channel);
    // The way of the thumb from the minimum, and all its way.
    virtual float ThumbDeltaFor(int32 channel);
    virtual float ThumbRangeFor(int32 channel);
    /* What the tool tip says while a thumb is dragged: the value. */
    virtual void UpdateToolTip(int32 currentValue);

private:
    BRect _ChannelFrame(int32 channel) const;
    void _Drag(BPoint where);

    orientation fOrientation;
    int32 fDragged = -1;
    float fGrip = 0;  // the pointer's place in the thumb
    bool fKeyMoved = false;
};

#endif  // _CHANNEL_SLIDER_H
