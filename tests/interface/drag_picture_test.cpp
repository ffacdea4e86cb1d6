// What a person sees of a drag: a picture under the pointer, which Escape takes away.

#include <Bitmap.h>
#include <InterfaceDefs.h>
#include <Screen.h>

#include <cstring>
#include <memory>

#include "window_harness.h"

using namespace window_test;

namespace {

const rgb_color kGround = {200, 100, 50, 255};

rgb_color pixel_at(float x, float y)
{
    BBitmap* shot = nullptr;
    BRect place(x, y, x, y);
    if (BScreen().GetBitmap(&shot, false, &place) != B_OK)
        return {};
    const std::unique_ptr<BBitmap> owner(shot);
    uint8 bits[4];
    memcpy(bits, shot->Bits(), sizeof(bits));
    return {bits[2], bits[1], bits[0], 255};
}

bool are_close(rgb_color a, rgb_color b)
{
    return abs(a.red - b.red) <= 1 && abs(a.green - b.green) <= 1 && abs(a.blue - b.blue) <= 1;
}

rgb_color half_way(rgb_color a, rgb_color b)
{
    return {uint8((a.red + b.red) / 2), uint8((a.green + b.green) / 2),
            uint8((a.blue + b.blue) / 2), 255};
}

// 8 pixels square, but for its right half, which is clear.
BBitmap* blue_half(uint32 alpha)
{
    auto* image = new BBitmap(BRect(0, 0, 7, 7), B_RGBA32);
    for (int32 i = 0; i < 64; i++)
        static_cast<uint32*>(image->Bits())[i] = i % 8 < 4 ? alpha << 24 | 0x0000ff : 0x0000ff;
    return image;
}

class DragPicture : public WindowTest {
protected:
    void SetUp() override
    {
        Make();
        a = Add(BRect(0, 0, 99, 149), "a");
        a->SetViewColor(kGround);
        b = Add(BRect(100, 0, 200, 149), "b");
        b->SetViewColor(kGround);
        Start();
        for (bool drawn = false; !drawn; snooze(1000))
            drawn =
                are_close(pixel_at(120, 120), kGround) && are_close(pixel_at(250, 200), kGround);
    }
    void StartDrag(const std::function<void(BMessage*)>& drag)
    {
        a->onDown = [=] {
            BMessage message('drag');
            drag(&message);
        };
        inject_pointer(120, 120);
        inject_button(1, true);
        Settle();
    }
    void DragImage(uint32 alpha, drawing_mode mode)
    {
        StartDrag([=, this](BMessage* message) {
            a->DragMessage(message, blue_half(alpha), mode, BPoint(2, 3));
        });
    }

    TestView* a = nullptr;
    TestView* b = nullptr;
};

}  // namespace

TEST_F(DragPicture, FollowsThePointerAsTransparentAsItIs)
{
    DragImage(128, B_OP_ALPHA);
    const rgb_color mixed = half_way(kGround, {0, 0, 255, 255});
    EXPECT_PRED2(are_close, pixel_at(118, 117), mixed);
    EXPECT_PRED2(are_close, pixel_at(121, 124), mixed);
    EXPECT_PRED2(are_close, pixel_at(122, 120), kGround);
    EXPECT_PRED2(are_close, pixel_at(117, 117), kGround);
    EXPECT_PRED2(are_close, pixel_at(118, 125), kGround);
    inject_pointer(250, 200);
    EXPECT_PRED2(are_close, pixel_at(118, 117), kGround);
    EXPECT_PRED2(are_close, pixel_at(248, 197), mixed);
    // Half of it outside of the screen.
    inject_pointer(0, 0);
    const rgb_color desktop = pixel_at(30, 30);
    EXPECT_PRED2(are_close, pixel_at(0, 0), half_way(desktop, {0, 0, 255, 255}));
    inject_button(1, false);
    Settle();
    EXPECT_PRED2(are_close, pixel_at(0, 0), desktop);
}

TEST_F(DragPicture, ModeSaysWhatIsTransparent)
{
    const rgb_color blue = {0, 0, 255, 255};
    const struct {
        drawing_mode mode;
        rgb_color solid, clear;
    } cases[] = {
        {B_OP_COPY, blue, blue},
        {B_OP_OVER, blue, kGround},
        {B_OP_BLEND, half_way(kGround, blue), kGround},
        {B_OP_ALPHA, blue, kGround},
    };
    for (const auto& each : cases) {
        DragImage(255, each.mode);
        EXPECT_PRED2(are_close, pixel_at(119, 119), each.solid) << each.mode;
        EXPECT_PRED2(are_close, pixel_at(123, 119), each.clear) << each.mode;
        inject_button(1, false);
        Settle();
    }
}

TEST_F(DragPicture, WithoutAnImageItIsAnOutline)
{
    StartDrag([this](BMessage* message) { a->DragMessage(message, BRect(10, 10, 29, 24)); });
    inject_pointer(150, 150);
    const rgb_color line = half_way(kGround, {0, 0, 0, 255});
    // The pointer was pressed 10 pixels to the right of its left top and below it.
    for (BPoint corner : {BPoint(140, 140), BPoint(159, 140), BPoint(140, 154), BPoint(159, 154)})
        EXPECT_PRED2(are_close, pixel_at(corner.x, corner.y), line) << corner.x << " " << corner.y;
    EXPECT_PRED2(are_close, pixel_at(141, 141), kGround);
    EXPECT_PRED2(are_close, pixel_at(160, 154), kGround);
    inject_button(1, false);
}

TEST_F(DragPicture, RectThatIsNoneShowsNothing)
{
    for (BRect rect : {BRect(), BRect(0, 0, 1e9f, 1e9f), BRect(-1e9f, 5, -1e8f, 2)}) {
        StartDrag([=, this](BMessage* message) { a->DragMessage(message, rect); });
        inject_pointer(150, 150);
        EXPECT_PRED2(are_close, pixel_at(150, 151), kGround);
        inject_button(1, false);
        Settle();
        EXPECT_EQ(log.Count("a dropped drag"), 1);
        log.Clear();
    }
}

TEST_F(DragPicture, EscapeCancelsTheDrag)
{
    DragImage(255, B_OP_ALPHA);
    inject_pointer(220, 150);
    Settle();
    EXPECT_EQ(log.Count("b drag entered"), 1);
    b->MakeFocus(true);
    inject_key(kKeyEscape, true);
    EXPECT_PRED2(are_close, pixel_at(219, 148), kGround);
    inject_key(kKeyEscape, false);
    inject_pointer(221, 150);
    inject_button(1, false);
    Settle();
    EXPECT_EQ(log.Count("b drag inside"), 0);
    EXPECT_EQ(log.Count("b inside"), 1);
    EXPECT_EQ(log.Count("b dropped") + log.Count("a dropped") + log.Count("dropped"), 0);
    // The next one is a key as any other.
    Press(kKeyEscape);
    Settle();
    EXPECT_EQ(log.Lines({"b key"}), "b key \x1b 1; b keyup \x1b 1");
}

TEST_F(DragPicture, EscapeTellsTheWindowThatThePointerIsIn)
{
    Log other_log;
    auto* other = new TestWindow(other_log, BRect(400, 100, 499, 199));
    other->AddChild(new TestView(other_log, BRect(0, 0, 99, 99), "other"));
    other->Show();
    Settle(other);
    DragImage(255, B_OP_ALPHA);
    inject_pointer(420, 130);
    Settle(other);
    Press(kKeyEscape);
    inject_button(1, false);
    Settle();
    Settle(other);
    EXPECT_EQ(other_log.Count("other drag entered"), 1);
    EXPECT_EQ(other_log.Count("other exited"), 1);
    EXPECT_EQ(other_log.Count("other dropped"), 0);
    Close(other);
}

TEST_F(DragPicture, GoesWithItsWindow)
{
    DragImage(255, B_OP_COPY);
    const rgb_color desktop = pixel_at(30, 30);
    Close(window);
    EXPECT_PRED2(are_close, pixel_at(120, 120), desktop);
    inject_button(1, false);
}
