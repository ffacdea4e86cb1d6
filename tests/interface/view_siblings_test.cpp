// Many views side by side and over one another: what shows of each.

#include "Drawing.h"

#include <random>
#include <vector>

static rgb_color color_of(int32 number)
{
    return make_color(uint8(number / 100 + 1), uint8(number % 100 + 1), 77);
}

static uint32 pixel_of(int32 number)
{
    const rgb_color color = color_of(number);
    return uint32(color.red) << 16 | uint32(color.green) << 8 | color.blue;
}

// Fills each from the front one to the back one, so that one which draws on another shows.
static void expect_hidden_parts_left_alone(int32 count, float largest)
{
    Board board(199, 149);
    std::minstd_rand random(7);
    std::vector<BView*> views;
    const uint32 ground = 0x0000FE;
    std::vector<uint32> expected(200 * 150, ground);
    for (int32 i = 0; i < count; i++) {
        const float left = float(random() % 220) - 10, top = float(random() % 170) - 10;
        const BRect frame(left, top, left + float(random() % uint32(largest)),
                          top + float(random() % uint32(largest)));
        views.push_back(new BView(frame, nullptr, B_FOLLOW_NONE, B_WILL_DRAW));
        board.view->AddChild(views.back());
        if (i % 10 == 9) {
            views.back()->Hide();
            continue;
        }
        for (int32 y = 0; y < 150; y++) {
            for (int32 x = 0; x < 200; x++) {
                if (frame.Contains(BPoint(float(x), float(y))))
                    expected[size_t(y * 200 + x)] = pixel_of(i);
            }
        }
    }
    for (int32 i = count - 1; i >= 0; i--) {
        views[size_t(i)]->SetHighColor(color_of(i));
        views[size_t(i)]->FillRect(views[size_t(i)]->Bounds());
    }
    // The one that holds them draws around them.
    board.view->SetHighColor(0, 0, 0xFE);
    board.view->FillRect(board.view->Bounds());
    for (int32 y = 0; y < 150; y++) {
        for (int32 x = 0; x < 200; x++) {
            ASSERT_EQ(board.At(x, y), expected[size_t(y * 200 + x)])
                << count << " views, at " << x << ", " << y;
        }
    }
}

TEST(ViewSiblings, CoverThoseBehindThemWhateverTheirNumber)
{
    for (const int32 count : {1, 8, 9, 10, 64, 65, 200, 1500}) {
        expect_hidden_parts_left_alone(count, 30);
        expect_hidden_parts_left_alone(count, 250);
    }
}

TEST(ViewSiblings, AreLookedAtAnewWhenOneMoves)
{
    Board board(199, 149);
    std::vector<BView*> views;
    for (int32 i = 0; i < 200; i++) {
        const float left = float(i % 20 * 10), top = float(i / 20 * 10);
        views.push_back(new BView(BRect(left, top, left + 9, top + 9), nullptr, B_FOLLOW_NONE, 0));
        board.view->AddChild(views.back());
    }
    const auto fill_all = [&] {
        for (int32 i = 199; i >= 0; i--) {
            views[size_t(i)]->SetHighColor(color_of(i));
            views[size_t(i)]->FillRect(views[size_t(i)]->Bounds());
        }
    };
    fill_all();
    EXPECT_EQ(board.At(5, 5), pixel_of(0));
    views[199]->MoveTo(0, 0);
    fill_all();
    EXPECT_EQ(board.At(5, 5), pixel_of(199));
    views[199]->RemoveSelf();
    fill_all();
    EXPECT_EQ(board.At(5, 5), pixel_of(0));
    EXPECT_EQ(board.view->CountChildren(), 199);
    delete views[199];
}
