// Cursors as objects: what makes one, copies, archives, and the application's.

#include <Application.h>
#include <Bitmap.h>
#include <Cursor.h>
#include <Message.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

TEST(Cursors, DataHasToBeACursor)
{
    uint8 data[68];
    memcpy(data, B_HAND_CURSOR, sizeof(data));
    EXPECT_EQ(B_OK, BCursor(data).InitCheck());
    for (int place : {0, 1, 2, 3}) {
        uint8 bad[68];
        memcpy(bad, data, sizeof(bad));
        bad[place] = 17;
        EXPECT_EQ(B_BAD_VALUE, BCursor(bad).InitCheck()) << place;
    }
    EXPECT_EQ(B_BAD_VALUE, BCursor(static_cast<const void*>(nullptr)).InitCheck());
    EXPECT_EQ(B_OK, BCursor(B_CURSOR_ID_GRAB).InitCheck());
    EXPECT_EQ(B_BAD_VALUE, BCursor(static_cast<BCursorID>(0)).InitCheck());
    EXPECT_EQ(B_BAD_VALUE, BCursor(static_cast<BCursorID>(30)).InitCheck());
}

TEST(Cursors, BitmapsOfReasonableSizeMakeOne)
{
    BBitmap small(BRect(0, 0, 31, 15), B_RGBA32);
    EXPECT_EQ(B_OK, BCursor(&small, BPoint(3, 4)).InitCheck());
    EXPECT_EQ(B_OK, BCursor(&small, BPoint(-100, 1e9f)).InitCheck());
    BBitmap large(BRect(0, 0, 256, 9), B_RGBA32);
    EXPECT_EQ(B_BAD_VALUE, BCursor(&large, BPoint(0, 0)).InitCheck());
    EXPECT_EQ(B_BAD_VALUE, BCursor(static_cast<const BBitmap*>(nullptr), BPoint()).InitCheck());
}

TEST(Cursors, CopiesAndArchivesAreEqual)
{
    BBitmap bitmap(BRect(0, 0, 3, 2), B_RGBA32);
    memset(bitmap.Bits(), 0x5A, static_cast<size_t>(bitmap.BitsLength()));
    const BCursor cursors[] = {BCursor(B_HAND_CURSOR), BCursor(B_CURSOR_ID_I_BEAM),
                               BCursor(&bitmap, BPoint(1, 2))};
    for (const BCursor& cursor : cursors) {
        const BCursor copy(cursor);
        EXPECT_TRUE(copy == cursor);
        BCursor assigned(B_CURSOR_ID_HELP);
        EXPECT_TRUE(assigned != cursor);
        assigned = cursor;
        EXPECT_TRUE(assigned == cursor);

        BMessage archive;
        ASSERT_EQ(B_OK, cursor.Archive(&archive));
        std::unique_ptr<BArchivable> made(BCursor::Instantiate(&archive));
        auto* restored = dynamic_cast<BCursor*>(made.get());
        ASSERT_NE(nullptr, restored);
        EXPECT_EQ(B_OK, restored->InitCheck());
        BMessage again;
        ASSERT_EQ(B_OK, restored->Archive(&again));
        EXPECT_TRUE(again.HasSameData(archive));
    }
}

TEST(Cursors, DamagedArchivesMakeNone)
{
    BBitmap bitmap(BRect(0, 0, 3, 2), B_RGBA32);
    const BCursor cursor(&bitmap, BPoint(1, 2));
    BMessage archive;
    ASSERT_EQ(B_OK, cursor.Archive(&archive));
    const auto broken = [&](auto damage) {
        BMessage bad(archive);
        damage(bad);
        return BCursor(&bad).InitCheck();
    };
    EXPECT_EQ(B_OK, broken([](BMessage&) {}));
    EXPECT_EQ(B_BAD_VALUE, broken([](BMessage& m) { m.RemoveName("_pixels"); }));
    EXPECT_EQ(B_BAD_VALUE, broken([](BMessage& m) { m.RemoveName("_hot"); }));
    for (int32 width : {0, -1, 5, 257})
        EXPECT_EQ(B_BAD_VALUE, broken([=](BMessage& m) { m.ReplaceInt32("_width", width); }));
    EXPECT_EQ(B_BAD_VALUE, BCursor(static_cast<BMessage*>(nullptr)).InitCheck());
}
