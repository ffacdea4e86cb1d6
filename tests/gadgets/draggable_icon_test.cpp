// Icons that can be dragged, in a program's windows.

#include "gadgets/gadget_window.h"

#include <Bitmap.h>
#include <MessageFilter.h>
#include <Screen.h>

#include <climits>
#include <memory>
#include <string.h>

namespace {

enum Kind { kSmall = 31, kLarge = 32 };

const uint32 kDrag = 'ddms';

// Notes the drags that fall on a window.
class DropFilter : public BMessageFilter {
public:
    explicit DropFilter(HandlerLog& log) : BMessageFilter(kDrag), fLog(log) {}

    filter_result Filter(BMessage* message, BHandler**) override
    {
        const BPoint where = message->DropPoint();
        fLog.Add((message->WasDropped() ? "drop " : "message ") +
                 std::to_string(message->FindInt32("nb")) + " at " +
                 std::to_string(static_cast<int>(where.x)) + "," +
                 std::to_string(static_cast<int>(where.y)));
        BLooper* answered = nullptr;
        message->ReturnAddress().Target(&answered);
        EXPECT_NE(dynamic_cast<BWindow*>(answered), nullptr) << "its own window hears of it";
        return B_DISPATCH_MESSAGE;
    }

private:
    HandlerLog& fLog;
};

class DraggableIcon : public GadgetTest {
protected:
    DraggableIcon() : fRed(CreateImage(32, 32))
    {
        SetForeColor(fRed, static_cast<int32_t>(0xff0000ff), 0);
        FRectangle(fRed, 0, 0, 31, 31);
        EXPECT_TRUE(eventually([this] { return Pixel(105, 130) == 0xd8d8d8; }));
    }
    ~DraggableIcon() override { CloseIcon(fRed); }

    // The drops on a window of the program are told to `log`.
    static void Listen(int32_t ident, HandlerLog& log)
    {
        auto* object = reinterpret_cast<BWindow*>(GetAdress(ident));
        object->Lock();
        object->AddCommonFilter(new DropFilter(log));
        object->Unlock();
    }
    std::string DropOf(int32_t icon, int32_t x, int32_t y) const
    {
        return "drop " + std::to_string(icon) + " at " +
               std::to_string(static_cast<int>(window.X(x))) + "," +
               std::to_string(static_cast<int>(window.Y(y)));
    }
    uint32 Pixel(int32_t x, int32_t y) const
    {
        BBitmap* shot = nullptr;
        BRect place(window.X(x), window.Y(y), window.X(x), window.Y(y));
        if (BScreen().GetBitmap(&shot, false, &place) != B_OK)
            return 0;
        const std::unique_ptr<BBitmap> owner(shot);
        uint32 pixel;
        memcpy(&pixel, shot->Bits(), sizeof(pixel));
        return pixel & 0xffffff;
    }
    bool BecomesRed(int32_t x, int32_t y) const
    {
        return eventually([=, this] { return Pixel(x, y) == 0xff0000; });
    }

    const int32_t fRed;
};

}  // namespace

TEST_F(DraggableIcon, SizeIsTheIconsWhateverWasAskedFor)
{
    for (int32_t size : {0, 100, -5, INT32_MAX, INT32_MIN}) {
        Make(kSmall, 10, 20, size, size, nullptr, fRed);
        EXPECT_EQ(FrameOf(CountViews() - 1), BRect(10, 20, 25, 35)) << size;
        Make(kLarge, 10, 20, size, size, nullptr, fRed);
        EXPECT_EQ(FrameOf(CountViews() - 1), BRect(10, 20, 41, 51)) << size;
    }
}

TEST_F(DraggableIcon, ShowsItsIcon)
{
    Make(kLarge, 10, 20, 0, 0, nullptr, fRed);
    EXPECT_TRUE(BecomesRed(10, 20));
    EXPECT_TRUE(BecomesRed(41, 51));
    EXPECT_EQ(Pixel(42, 51), 0xd8d8d8u);
    // It has a copy.
    FRectangle(fRed, 0, 0, 31, 31);
    CloseIcon(fRed);
    EXPECT_EQ(Pixel(20, 30), 0xff0000u);
}

TEST_F(DraggableIcon, DragShowsItHalfTransparentAndDropsItsIdent)
{
    const int32_t icon = Make(kLarge, 10, 20, 0, 0, nullptr, fRed);
    EXPECT_TRUE(BecomesRed(10, 20));
    Listen(window, gHandlers);
    Press(15, 30);
    Settle();
    window.Point(105, 130);
    const uint32 mixed = Pixel(100, 120);
    EXPECT_NEAR(mixed >> 16, (0xff + 0xd8) / 2, 2);
    EXPECT_NEAR(mixed & 0xff, 0xd8 / 2, 2);
    EXPECT_EQ(Pixel(99, 120), 0xd8d8d8u);
    EXPECT_EQ(mixed, Pixel(131, 151));
    Release();
    EXPECT_EQ(Calls(), DropOf(icon, 105, 130));
    EXPECT_EQ(Pixel(100, 120), 0xd8d8d8u);
}

TEST_F(DraggableIcon, AnotherWindowSeesTheDrop)
{
    const int32_t icon = Make(kSmall, 10, 20, 0, 0, nullptr, fRed);
    Listen(window, gHandlers);
    Press(15, 30);
    Settle();
    TestWindow other{500, 300};
    HandlerLog other_log;
    Listen(other, other_log);
    other.Point(20, 30);
    Release();
    EXPECT_TRUE(eventually(
        [&] { return other_log.Take() == "drop " + std::to_string(icon) + " at 520,330"; }));
    EXPECT_EQ(Calls(), "");
}

TEST_F(DraggableIcon, EscapeCancels)
{
    Make(kLarge, 10, 20, 0, 0, nullptr, fRed);
    Listen(window, gHandlers);
    Press(15, 30);
    Settle();
    window.Point(105, 130);
    Key(0x01);
    Release();
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(Pixel(105, 130), 0xd8d8d8u);
}

TEST_F(DraggableIcon, OneWithoutAnIconIsDraggedUnseen)
{
    Listen(window, gHandlers);
    for (int32_t none : {0, -1, INT32_MAX, window.Ident()}) {
        const int32_t icon = Make(kLarge, 10, 20, 0, 0, nullptr, none);
        ASSERT_NE(icon, 0);
        Press(15, 30);
        Settle();
        window.Point(105, 130);
        EXPECT_EQ(Pixel(105, 130), 0xd8d8d8u);
        Release();
        EXPECT_EQ(Calls(), DropOf(icon, 105, 130));
        KillGadget(window, icon);
    }
}

TEST_F(DraggableIcon, ImageOfAnotherSizeGivesItsBytesKept)
{
    // Two rows of the image are one of the icon.
    const int32_t small = CreateImage(16, 16);
    SetForeColor(small, static_cast<int32_t>(0xff0000ff), 0);
    FRectangle(small, 0, 0, 15, 15);
    Make(kLarge, 10, 20, 0, 0, nullptr, small);
    EXPECT_TRUE(BecomesRed(41, 27));
    EXPECT_NE(Pixel(10, 28), 0xff0000u);
    CloseIcon(small);
}

TEST_F(DraggableIcon, KilledWhileItIsDragged)
{
    const int32_t icon = Make(kLarge, 10, 20, 0, 0, nullptr, fRed);
    Listen(window, gHandlers);
    Press(15, 30);
    Settle();
    KillGadget(window, icon);
    window.Point(105, 130);
    Release();
    EXPECT_EQ(Calls(), DropOf(icon, 105, 130));
}
