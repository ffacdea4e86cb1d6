// Bitmaps: sizes, formats, copies, conversions, archives, views and their lock.

#include "Drawing.h"

#include <Message.h>
#include <Messenger.h>
#include <TypeConstants.h>
#include <Window.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

struct SpaceRow {
    color_space space;
    int32 row7;    // bytes of a row of 7 pixels
    int32 row300;  // and of 300
};

TEST(Bitmap, RowsArePaddedByColourSpace)
{
    const SpaceRow rows[] = {
        {B_RGBA32, 28, 1216}, {B_RGB32, 28, 1216}, {B_RGB24, 24, 900}, {B_RGB16, 16, 600},
        {B_RGB15, 16, 600},   {B_CMAP8, 8, 300},   {B_GRAY8, 8, 300},  {B_GRAY1, 4, 40},
    };
    for (const SpaceRow& row : rows) {
        BBitmap narrow(BRect(0, 0, 6, 2), 0, row.space);
        BBitmap wide(BRect(0, 0, 299, 0), 0, row.space);
        ASSERT_EQ(narrow.InitCheck(), B_OK) << row.space;
        EXPECT_EQ(narrow.BytesPerRow(), row.row7) << row.space;
        EXPECT_EQ(narrow.BitsLength(), row.row7 * 3) << row.space;
        EXPECT_EQ(wide.BytesPerRow(), row.row300) << row.space;
    }
    BBitmap page(BRect(0, 0, 1023, 1), 0, B_RGBA32);
    EXPECT_EQ(page.BytesPerRow(), 4096 + 64);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(page.Bits()) % 64, 0u);
    BBitmap given(BRect(0, 0, 6, 2), 0, B_GRAY8, 11);
    EXPECT_EQ(given.BytesPerRow(), 11);
    EXPECT_EQ(BBitmap(BRect(0, 0, 6, 2), 0, B_GRAY8, 6).InitCheck(), B_BAD_VALUE);
}

TEST(Bitmap, ImpossibleOnesAreInvalidAndHarmless)
{
    const float huge = std::numeric_limits<float>::max(), max = float(INT32_MAX);
    const BRect sizes[] = {BRect(0, 0, -1, 5),        BRect(0, 0, max, max),
                           BRect(0, 0, huge, 0),      BRect(-huge, 0, huge, 1),
                           BRect(0, 0, 40000, 40000), BRect(NAN, 0, 5, 5),
                           BRect(0, 0, INFINITY, 1)};
    for (const BRect& size : sizes) {
        BBitmap bitmap(size, B_BITMAP_ACCEPTS_VIEWS, B_RGBA32);
        EXPECT_FALSE(bitmap.IsValid()) << size;
        EXPECT_NE(bitmap.InitCheck(), B_OK);
        EXPECT_EQ(bitmap.Bits(), nullptr);
        EXPECT_EQ(bitmap.BitsLength(), 0);
        EXPECT_FALSE(bitmap.Lock());
        EXPECT_NE(bitmap.LockBits(), B_OK);
        bitmap.SetBits("abcd", 4, 0, B_RGBA32);
        EXPECT_NE(bitmap.ImportBits("abcd", 4, 4, 0, B_RGBA32), B_OK);
        BBitmap copy(bitmap);
        EXPECT_FALSE(copy.IsValid());
        BView* view = new_view(BRect());
        bitmap.AddChild(view);
        EXPECT_EQ(bitmap.ChildAt(0), nullptr);
        delete view;
    }
    EXPECT_EQ(BBitmap(BRect(0, 0, 1, 1), 0, B_YUV422).InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BBitmap(BRect(0, 0, 1, 1), 0, color_space(12345)).InitCheck(), B_BAD_VALUE);
}

TEST(Bitmap, ViewsGetAWhiteSheetOthersAnEmptyOne)
{
    for (color_space space : {B_RGBA32, B_RGB24, B_RGB16, B_GRAY8, B_CMAP8}) {
        BBitmap bitmap(BRect(0, 0, 3, 0), B_BITMAP_CLEAR_TO_WHITE, space);
        BBitmap seen(BRect(0, 0, 3, 0), 0, B_RGBA32);
        ASSERT_EQ(seen.ImportBits(&bitmap), B_OK);
        EXPECT_EQ(static_cast<uint32*>(seen.Bits())[3] & 0xF8F8F8, 0xF8F8F8u) << space;
    }
    BBitmap empty(BRect(0, 0, 3, 0), 0, B_RGBA32);
    EXPECT_EQ(static_cast<uint32*>(empty.Bits())[0], 0u);
}

TEST(Bitmap, ImportTurnsColourSpaces)
{
    BBitmap bitmap(BRect(0, 0, 2, 1), 0, B_RGBA32);
    const uint32* pixels = static_cast<const uint32*>(bitmap.Bits());
    const uint8 grey[] = {0, 128, 255, 7, 9, 10};
    EXPECT_EQ(bitmap.ImportBits(grey, sizeof(grey), 3, 0, B_GRAY8), B_OK);
    EXPECT_EQ(pixels[1] & 0xFFFFFF, 0x808080u);
    EXPECT_EQ(pixels[bitmap.BytesPerRow() / 4 + 2] & 0xFFFFFF, 0x0A0A0Au);

    // A part of rows, to a place; what does not fit is left out.
    EXPECT_EQ(
        bitmap.ImportBits(grey, sizeof(grey), 3, B_GRAY8, BPoint(1, 0), BPoint(2, 1), BSize(9, 9)),
        B_OK);
    EXPECT_EQ(pixels[bitmap.BytesPerRow() / 4 + 2] & 0xFFFFFF, 0x808080u);
    EXPECT_EQ(pixels[2] & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(bitmap.ImportBits(nullptr, 4, 4, 0, B_GRAY8), B_BAD_VALUE);
    EXPECT_EQ(bitmap.ImportBits(grey, 6, 3, 1 << 20, B_GRAY8), B_BAD_VALUE);
    EXPECT_EQ(bitmap.ImportBits(grey, 6, 3, -1, B_GRAY8), B_BAD_VALUE);
    EXPECT_EQ(bitmap.ImportBits(grey, 6, 3, 0, B_YUV422), B_BAD_VALUE);

    // Short data: only the pixels that are there.
    const uint8 one[] = {77};
    EXPECT_EQ(bitmap.ImportBits(one, 1, 3, 0, B_GRAY8), B_OK);
    EXPECT_EQ(pixels[0] & 0xFFFFFF, 0x4D4D4Du);
    EXPECT_EQ(pixels[1] & 0xFFFFFF, 0x808080u);
}

TEST(Bitmap, SetBitsKnowsPackedTripletsKept)
{
    BBitmap bitmap(BRect(0, 0, 1, 1), 0, B_RGBA32);
    const uint8 triplets[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    bitmap.SetBits(triplets, sizeof(triplets), 0, B_RGB32);
    const uint32* pixels = static_cast<const uint32*>(bitmap.Bits());
    EXPECT_EQ(pixels[1] & 0xFFFFFF, 0x040506u);
    EXPECT_EQ(pixels[3] & 0xFFFFFF, 0x0A0B0Cu);
    const uint8 row[] = {21, 22, 23, 24, 25, 26};
    bitmap.SetBits(row, sizeof(row), bitmap.BytesPerRow(), B_RGB32);
    EXPECT_EQ(pixels[1] & 0xFFFFFF, 0x040506u);
    EXPECT_EQ(pixels[2] & 0xFFFFFF, 0x151617u);
    EXPECT_EQ(pixels[3] & 0xFFFFFF, 0x18191Au) << "a part of the bitmap";
    const uint32 words[] = {0x11223344, 0x55667788, 0x99AABBCC, 0xDDEEFF00};
    bitmap.SetBits(words, sizeof(words), 0, B_RGBA32);
    EXPECT_EQ(memcmp(pixels, words, sizeof(words)), 0);
    bitmap.SetBits(words, sizeof(words), 12, B_RGBA32);  // only one pixel is left
    EXPECT_EQ(pixels[3], words[0]);
    EXPECT_EQ(pixels[2], words[2]);
}

TEST(Bitmap, CopiesAndArchivesHaveTheSamePixels)
{
    BBitmap bitmap(BRect(2, 3, 8, 9), 0, B_RGB16);
    auto* bits = static_cast<uint8*>(bitmap.Bits());
    for (int32 i = 0; i < bitmap.BitsLength(); i++)
        bits[i] = uint8(i * 7);
    BMessage archive;
    ASSERT_EQ(bitmap.Archive(&archive), B_OK);
    std::unique_ptr<BArchivable> object(instantiate_object(&archive));
    BBitmap copy(bitmap), assigned(BRect(0, 0, 1, 1), B_BITMAP_ACCEPTS_VIEWS, B_RGBA32);
    assigned = bitmap;
    for (BBitmap* other : {&copy, &assigned, dynamic_cast<BBitmap*>(object.get())}) {
        ASSERT_NE(other, nullptr);
        EXPECT_EQ(other->Bounds(), bitmap.Bounds());
        EXPECT_EQ(other->ColorSpace(), B_RGB16);
        ASSERT_EQ(other->BitsLength(), bitmap.BitsLength());
        EXPECT_EQ(memcmp(other->Bits(), bits, size_t(bitmap.BitsLength())), 0);
    }
    EXPECT_FALSE(assigned.Lock());

    BMessage damaged;
    damaged.AddString("class", "BBitmap");
    damaged.AddRect("_frame", BRect(0, 0, 99, 99));
    damaged.AddInt32("_cspace", B_RGBA32);
    damaged.AddInt32("_bmflags", 0);
    damaged.AddInt32("_rowbytes", 3);
    std::unique_ptr<BArchivable> bad(BBitmap::Instantiate(&damaged));
    EXPECT_FALSE(static_cast<BBitmap*>(bad.get())->IsValid());
}

TEST(Bitmap, TheLockIsThatOfItsViewsAndRecursive)
{
    BBitmap bitmap(BRect(0, 0, 9, 9), B_RGBA32, true);
    BView* view = new_view(bitmap.Bounds(), B_FOLLOW_ALL, 0, "sheet");
    bitmap.AddChild(view);
    EXPECT_EQ(bitmap.FindView("sheet"), view);
    EXPECT_EQ(bitmap.CountChildren(), 1);
    ASSERT_NE(view->Window(), nullptr);
    EXPECT_TRUE(view->Window()->IsOffscreenWindow());
    EXPECT_FALSE(bitmap.IsLocked());
    ASSERT_TRUE(bitmap.Lock());
    ASSERT_TRUE(bitmap.Lock());
    EXPECT_TRUE(view->LockLooper());
    view->UnlockLooper();
    bitmap.Unlock();
    EXPECT_TRUE(bitmap.IsLocked());
    bool elsewhere = true;
    std::thread([&] {
        elsewhere = bitmap.IsLocked() || view->LockLooperWithTimeout(1000) == B_OK;
    }).join();
    EXPECT_FALSE(elsewhere);
    bitmap.Unlock();
    EXPECT_FALSE(bitmap.IsLocked());
    BBitmap plain(BRect(0, 0, 9, 9), B_RGBA32);
    EXPECT_FALSE(plain.Lock());
}

// Its looper never runs: what would be queued there stayed for ever.
TEST(Bitmap, TheLooperOfItsViewsTakesNoMessages)
{
    BBitmap bitmap(BRect(0, 0, 9, 9), B_RGBA32, true);
    auto* view = new BView(BRect(0, 0, 9, 9), "", 0, 0);
    ASSERT_TRUE(bitmap.Lock());
    bitmap.AddChild(view);
    BLooper* looper = view->Looper();
    ASSERT_NE(looper, nullptr);
    EXPECT_NE(looper->PostMessage('msg '), B_OK);
    EXPECT_NE(BMessenger(view).SendMessage('msg '), B_OK);
    BMessage reply;
    EXPECT_NE(BMessenger(view).SendMessage('msg ', &reply), B_OK);
    EXPECT_FALSE(looper->IsMessageWaiting());
    bitmap.Unlock();
}

TEST(Bitmap, ViewsDrawInAnySpace)
{
    for (color_space space : {B_RGBA32, B_RGB32, B_RGB24, B_RGB16, B_RGB15, B_CMAP8, B_GRAY8}) {
        BBitmap bitmap(BRect(0, 0, 19, 9), B_BITMAP_ACCEPTS_VIEWS, space);
        BView* view = new_view(bitmap.Bounds());
        ASSERT_TRUE(bitmap.Lock()) << space;
        bitmap.AddChild(view);
        view->SetHighColor(0, 0, 0);
        view->FillRect(BRect(3, 2, 5, 4));
        BBitmap seen(bitmap.Bounds(), 0, B_RGBA32);
        ASSERT_EQ(seen.ImportBits(&bitmap), B_OK);
        const auto at = [&](int32 x, int32 y) {
            return static_cast<uint32*>(seen.Bits())[y * seen.BytesPerRow() / 4 + x] & 0xFFFFFF;
        };
        EXPECT_EQ(at(5, 4), 0u) << space;
        EXPECT_NE(at(6, 4), 0u) << space;
        bitmap.Unlock();
    }
}
