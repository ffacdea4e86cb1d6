// Buttons that show an icon. Hooks run on the window's thread, window locked.

#include "gadgets/kinds.h"
#include "graphics/icons.h"

#include <Bitmap.h>
#include <Control.h>
#include <OS.h>

#include <memory>

static const float kFrame = 2;  // pixels around the picture
static const bigtime_t kPressedLook_us = 200'000;

static const rgb_color kBlack = {0, 0, 0, 255};

// The edges inside of the black frame, left and top and right and bottom.
struct Shading {
    rgb_color light, dark;
};
static const Shading kReleased = {{255, 255, 255, 255}, {127, 127, 127, 255}};
static const Shading kPressed = {{96, 96, 96, 255}, {200, 200, 200, 255}};

class YBitmapButton : public BControl {
public:
    YBitmapButton(BRect frame, std::unique_ptr<BBitmap> bitmap)
        : BControl(frame, "", "", nullptr, B_FOLLOW_NONE, B_WILL_DRAW), fBitmap(std::move(bitmap))
    {
    }

    void AttachedToWindow() override
    {
        BControl::AttachedToWindow();
        take_ground(this);
    }
    void Draw(BRect) override
    {
        DrawButtonFrame(fPressed);
        SetDrawingMode(B_OP_OVER);
        DrawBitmap(fBitmap.get(), BPoint(kFrame, kFrame));
    }
    void MouseDown(BPoint) override
    {
        SetMouseEventMask(B_POINTER_EVENTS);
        fPressed = true;
        Invalidate();
    }
    void MouseUp(BPoint where) override;
    // It looks pressed until the release, wherever the pointer goes.
    void MouseMoved(BPoint, uint32, const BMessage*) override {}

    virtual void DrawButtonFrame(bool pressed);

private:
    const std::unique_ptr<BBitmap> fBitmap;
    bool fPressed = false;
};

// The window waits while the button looks pressed: kept on purpose.
void YBitmapButton::MouseUp(BPoint where)
{
    if (!fPressed)
        return;
    if (Bounds().Contains(where))
        Invoke();
    snooze(kPressedLook_us);
    fPressed = false;
    Invalidate();
}

void YBitmapButton::DrawButtonFrame(bool pressed)
{
    const Shading& shading = pressed ? kPressed : kReleased;
    BRect r = Bounds();
    BeginLineArray(8);
    AddLine(BPoint(r.left, r.top + 1), BPoint(r.left, r.bottom - 1), kBlack);
    AddLine(BPoint(r.left + 1, r.top), BPoint(r.right - 1, r.top), kBlack);
    AddLine(BPoint(r.right, r.top + 1), BPoint(r.right, r.bottom - 1), kBlack);
    AddLine(BPoint(r.left + 1, r.bottom), BPoint(r.right - 1, r.bottom), kBlack);
    r.InsetBy(1, 1);
    AddLine(BPoint(r.left, r.top), BPoint(r.left, r.bottom - 1), shading.light);
    AddLine(BPoint(r.left + 1, r.top), BPoint(r.right, r.top), shading.light);
    AddLine(BPoint(r.right, r.top + 1), BPoint(r.right, r.bottom), shading.dark);
    AddLine(BPoint(r.left, r.bottom), BPoint(r.right - 1, r.bottom), shading.dark);
    EndLineArray();
}

BView* create_picture(const GadgetSpec& spec)
{
    std::unique_ptr<BBitmap> copy;
    {
        ImagesLock images;
        if (const BBitmap* image = icon_image(images, spec.value, false))
            copy = std::make_unique<BBitmap>(*image);
    }
    if (copy == nullptr || copy->InitCheck() != B_OK)
        return nullptr;
    BRect frame = spec.frame;
    frame.right += 2 * kFrame;
    frame.bottom += 2 * kFrame;
    return new YBitmapButton(frame, std::move(copy));
}
