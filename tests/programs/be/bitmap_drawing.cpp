// Drawing into a bitmap, and reading what is in it.

#include <Application.h>
#include <Bitmap.h>
#include <Region.h>
#include <View.h>

#include <assert.h>

static rgb_color color_at(BBitmap* bitmap, int32 x, int32 y)
{
    const uint8* bits = (const uint8*)bitmap->Bits() + y * bitmap->BytesPerRow() + x * 4;
    rgb_color color = {bits[2], bits[1], bits[0], 255};
    return color;
}

static bool is(rgb_color color, uint8 red, uint8 green, uint8 blue)
{
    return color.red == red && color.green == green && color.blue == blue;
}

int main()
{
    BApplication app("application/x-vnd.bitmap-drawing");
    BBitmap* bitmap = new BBitmap(BRect(0, 0, 63, 47), B_RGB32, true);
    assert(bitmap->InitCheck() == B_OK);
    BView* view = new BView(bitmap->Bounds(), "pen", B_FOLLOW_NONE, B_WILL_DRAW);
    bitmap->AddChild(view);

    bitmap->Lock();
    view->SetHighColor(0, 0, 255);
    view->FillRect(BRect(10, 10, 19, 19));
    view->SetHighColor(255, 0, 0);
    view->StrokeLine(BPoint(0, 5), BPoint(63, 5));
    view->SetDrawingMode(B_OP_INVERT);
    view->FillRect(BRect(15, 10, 19, 19));
    view->SetDrawingMode(B_OP_COPY);
    BRegion clip(BRect(40, 20, 49, 29));
    view->ConstrainClippingRegion(&clip);
    view->SetHighColor(0, 255, 0);
    view->FillEllipse(BRect(30, 10, 59, 39));
    view->ConstrainClippingRegion(NULL);
    view->SetFontSize(12);
    view->SetHighColor(0, 0, 0);
    view->DrawString("M", BPoint(2, 45));
    view->Sync();
    bitmap->Unlock();

    assert(is(color_at(bitmap, 30, 5), 255, 0, 0));
    assert(is(color_at(bitmap, 10, 10), 0, 0, 255));
    assert(is(color_at(bitmap, 9, 10), 255, 255, 255));
    assert(is(color_at(bitmap, 19, 19), 255, 255, 0));
    assert(is(color_at(bitmap, 45, 25), 0, 255, 0));
    assert(is(color_at(bitmap, 45, 31), 255, 255, 255));
    bool has_ink = false;
    for (int32 y = 30; y < 46; y++)
        for (int32 x = 0; x < 20; x++)
            has_ink = has_ink || color_at(bitmap, x, y).red < 100;
    assert(has_ink);

    // Another bitmap takes its pixels over.
    BBitmap copy(bitmap->Bounds(), B_RGB32);
    copy.SetBits(bitmap->Bits(), bitmap->BitsLength(), 0, B_RGB32);
    assert(is(color_at(&copy, 12, 12), 0, 0, 255));
    delete bitmap;
    return 0;
}
