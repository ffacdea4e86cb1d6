// Places on a line of very many letters: after edits those of a text that was there at once.

#include <TextView.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>

namespace {

std::unique_ptr<BTextView> view_of(const std::string& text)
{
    auto view = std::make_unique<BTextView>(BRect(0, 0, 199, 49), "text", BRect(0, 0, 199, 49),
                                            B_FOLLOW_NONE, B_WILL_DRAW);
    view->SetStylable(true);
    view->SetWordWrap(false);
    view->SetText(text.data(), int32(text.size()));
    return view;
}

// Widths are summed in another order: they may differ by a part of a pixel.
void expect_same_places(const BTextView& edited, const BTextView& fresh, std::mt19937& random)
{
    ASSERT_EQ(edited.TextLength(), fresh.TextLength());
    ASSERT_EQ(edited.CountLines(), fresh.CountLines());
    for (int i = 0; i < 8; i++) {
        const auto at = int32(random() % (uint32(fresh.TextLength()) + 1));
        const BPoint place = fresh.PointAt(at);
        EXPECT_NEAR(edited.PointAt(at).x, place.x, 1) << at;
        EXPECT_EQ(edited.PointAt(at).y, place.y) << at;
        const BPoint inside(place.x + 1, place.y + 3);
        EXPECT_NEAR(edited.OffsetAt(inside), fresh.OffsetAt(inside), 1) << at;
    }
    const int32 line = fresh.LineAt(fresh.TextLength() / 2);
    EXPECT_NEAR(edited.LineWidth(line), fresh.LineWidth(line), 2);
}

void edit_at_random(const std::vector<std::string>& pieces, uint32 seed)
{
    std::mt19937 random(seed);
    std::string text;
    while (text.size() < 60000)
        text += pieces[random() % pieces.size()];
    const std::unique_ptr<BTextView> view = view_of(text);
    for (int turn = 0; turn < 300; turn++) {
        auto at = int32(random() % (text.size() + 1));
        while (at > 0 && at < int32(text.size()) && (text[size_t(at)] & 0xC0) == 0x80)
            at--;
        if (random() % 2 == 0) {
            std::string more;
            for (uint32 i = random() % (turn % 10 == 0 ? 2000 : 4); i-- > 0;)
                more += pieces[random() % pieces.size()];
            view->Insert(at, more.data(), int32(more.size()));
            text.insert(size_t(at), more);
        } else {
            auto end = std::min(int32(text.size()), at + int32(random() % 600));
            while (end < int32(text.size()) && (text[size_t(end)] & 0xC0) == 0x80)
                end++;
            view->Delete(at, end);
            text.erase(size_t(at), size_t(end - at));
        }
        if (turn % 10 == 9) {
            const std::unique_ptr<BTextView> fresh = view_of(text);
            expect_same_places(*view, *fresh, random);
        }
    }
}

}  // namespace

TEST(LongLine, PlacesAfterEditsAreThoseOfAFreshText)
{
    edit_at_random({"word ", "i", "W", "longerword", " "}, 1);
    edit_at_random({"no blanks at all, ", "\xC3\xA9", "\xE6\x97\xA5"}, 2);
}

TEST(LongLine, TabsMoveWithWhatIsBeforeThem) { edit_at_random({"a", "bc", "\t"}, 3); }

TEST(LongLine, MayBeSplitAndJoined)
{
    edit_at_random({"letters ", "more", std::string(3000, 'x'), "\n"}, 4);
}

TEST(LongLine, StylesChangeItsWidth)
{
    const std::unique_ptr<BTextView> view = view_of(std::string(20000, 'a'));
    const float before = view->LineWidth(0);
    BFont font(be_plain_font);
    font.SetSize(2 * font.Size());
    view->SetFontAndColor(5000, 15000, &font);
    const float both = view->LineWidth(0);
    EXPECT_GT(both, 1.4f * before);
    EXPECT_NEAR(view->PointAt(20000).x - view->PointAt(0).x, both, 1);
    view->SetFontAndColor(0, 20000, be_plain_font);
    EXPECT_NEAR(view->LineWidth(0), before, 1);
    view->SetTabWidth(100);
    view->Insert(10000, "\t", 1);
    const float tab = view->LineWidth(0);
    view->SetTabWidth(3000);
    EXPECT_GT(view->LineWidth(0), tab + 1);
    view->HideTyping(true);
    EXPECT_NE(view->LineWidth(0), tab);
}
