// A text view as programs use it, without a window: what is set, styled, found and kept.

#include <Application.h>
#include <Clipboard.h>
#include <File.h>
#include <Message.h>
#include <Region.h>
#include <TextView.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

const rgb_color kRed = {255, 0, 0, 255}, kBlue = {0, 0, 255, 255};

class TextViewTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
    }
    std::string Text() { return {view.Text(), size_t(view.TextLength())}; }
    std::string Selection()
    {
        int32 start, end;
        view.GetSelection(&start, &end);
        return std::to_string(start) + "-" + std::to_string(end);
    }
    uint8 RedAt(int32 offset)
    {
        rgb_color color;
        view.GetFontAndColor(offset, nullptr, &color);
        return color.red;
    }
    static float Width(const char* text) { return be_plain_font->StringWidth(text); }

    BTextView view{BRect(0, 0, 199, 99), "text", BRect(4, 3, 195, 96), B_FOLLOW_NONE};
};

}  // namespace

TEST_F(TextViewTest, NewOneIsEmptyAndAsThePlatformMakesIt)
{
    EXPECT_EQ(view.TextLength(), 0);
    EXPECT_STREQ(view.Text(), "");
    EXPECT_EQ(view.CountLines(), 1);
    EXPECT_TRUE(view.DoesWordWrap());
    EXPECT_TRUE(view.IsEditable());
    EXPECT_TRUE(view.IsSelectable());
    EXPECT_FALSE(view.IsStylable());
    EXPECT_FALSE(view.DoesAutoindent());
    EXPECT_TRUE(view.DoesUndo());
    EXPECT_EQ(view.TabWidth(), 28);
    EXPECT_EQ(view.MaxBytes(), INT_MAX);
    EXPECT_EQ(view.Alignment(), B_ALIGN_LEFT);
    font_height height;
    be_plain_font->GetHeight(&height);
    EXPECT_EQ(view.LineHeight(), std::ceil(height.ascent + height.descent + height.leading));
    EXPECT_EQ(view.PointAt(0), BPoint(4, 3));
}

TEST_F(TextViewTest, OffsetsAndLengthsOfAnySizeAreTheNearest)
{
    view.SetText("abc\nd");
    view.Insert(INT_MAX, "!", 1);
    view.Insert(INT_MIN, "?", 1);
    EXPECT_EQ(Text(), "?abc\nd!");
    view.Delete(INT_MIN, 1);
    view.Delete(6, INT_MAX);
    view.Delete(3, 2);
    EXPECT_EQ(Text(), "abc\nd!");
    view.Select(INT_MIN, INT_MAX);
    EXPECT_EQ(Selection(), "0-6");
    view.Select(4, 2);
    EXPECT_EQ(Selection(), "0-6");
    char buffer[16] = "xxxx";
    view.GetText(4, INT_MAX, buffer);
    EXPECT_STREQ(buffer, "d!");
    view.GetText(1, -1, buffer);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(view.ByteAt(-1), 0);
    EXPECT_EQ(view.ByteAt(6), 0);
    EXPECT_EQ(view.OffsetAt(int32(-1)), 0);
    EXPECT_EQ(view.OffsetAt(INT_MAX), 6);
    EXPECT_EQ(view.LineAt(int32(INT_MAX)), 1);
    EXPECT_EQ(view.LineHeight(INT_MAX), view.LineHeight(0));
    EXPECT_EQ(view.TextHeight(INT_MIN, INT_MAX), 2 * view.LineHeight());
    EXPECT_EQ(view.OffsetAt(BPoint(NAN, NAN)), 0);
    EXPECT_EQ(view.OffsetAt(BPoint(1e30f, 1e30f)), 6);
    view.SetText(nullptr);
    view.Insert(nullptr);
    view.Insert(0, nullptr, 5);
    EXPECT_EQ(view.TextLength(), 0);
}

TEST_F(TextViewTest, TextMayHoldZeroBytesAndAnyOthers)
{
    const std::string bytes("a\0b\xFF\xC3\x28", 6);
    view.SetText(bytes.data(), int32(bytes.size()));
    EXPECT_EQ(Text(), bytes);
    EXPECT_EQ(view.LineWidth(0), Width("ab") + Width("\xFF") + Width("\xC3") + Width("("));
    view.Delete(2, 3);
    EXPECT_EQ(Text(), std::string("a\0\xFF\xC3\x28", 5));
}

TEST_F(TextViewTest, MaximumCutsWhatIsSetAndRefusesWhatIsInserted)
{
    view.SetMaxBytes(4);
    view.SetText("ab\u20ACc");
    EXPECT_EQ(Text(), "ab");
    view.Insert("xyz");
    EXPECT_EQ(Text(), "ab");
    view.Insert("xy");
    EXPECT_EQ(view.TextLength(), 4);
    view.SetMaxBytes(3);
    EXPECT_EQ(view.TextLength(), 3);
    view.SetMaxBytes(-1);
    EXPECT_EQ(view.TextLength(), 0);
}

TEST_F(TextViewTest, LinesBreakAtWordsToTheTextRectangle)
{
    view.SetTextRect(BRect(4, 3, 4 + Width("one two"), 96));
    view.SetText("one two three\nfour");
    EXPECT_EQ(view.CountLines(), 3);
    EXPECT_EQ(view.OffsetAt(int32(1)), 8);
    EXPECT_EQ(view.LineWidth(0), Width("one two"));
    EXPECT_EQ(view.LineAt(int32(8)), 1);
    view.SetWordWrap(false);
    EXPECT_EQ(view.CountLines(), 2);
    EXPECT_EQ(view.LineWidth(0), Width("one two three"));
    view.SetWordWrap(true);
    view.SetTextRect(BRect(0, 0, 1, 1));
    EXPECT_EQ(view.CountLines(), 15);  // blanks and the line feed hang over
}

TEST_F(TextViewTest, AlignmentAndTabsPlaceTheText)
{
    view.SetText("ab\tc");
    EXPECT_EQ(view.PointAt(3).x, 4 + 28);
    view.SetTabWidth(100);
    EXPECT_EQ(view.PointAt(3).x, 4 + 100);
    view.SetText("ab");
    view.SetAlignment(B_ALIGN_RIGHT);
    EXPECT_EQ(view.PointAt(2).x, 195);
    view.SetAlignment(B_ALIGN_CENTER);
    EXPECT_EQ(view.PointAt(0).x, 4 + std::floor((191 - Width("ab")) / 2));
}

TEST_F(TextViewTest, StylesBelongToTheTextIfItIsStylable)
{
    view.SetText("abcdef");
    view.SetFontAndColor(2, 4, nullptr, 0, &kRed);
    EXPECT_EQ(RedAt(0), 255) << "a plain text has one";
    const rgb_color black = {0, 0, 0, 255};
    view.SetFontAndColor(0, 6, nullptr, 0, &black);
    view.SetStylable(true);
    view.SetFontAndColor(2, 4, nullptr, 0, &kRed);
    EXPECT_EQ(RedAt(1), 0);
    EXPECT_EQ(RedAt(2), 255);
    EXPECT_EQ(RedAt(4), 0);
    BFont large(be_bold_font);
    large.SetSize(30);
    const float height = view.LineHeight();
    view.SetFontAndColor(3, 4, &large, B_FONT_SIZE);
    EXPECT_GT(view.LineHeight(), height);
    BFont font;
    view.GetFontAndColor(3, &font);
    EXPECT_EQ(font.Size(), 30);
    EXPECT_EQ(font.FamilyAndStyle(), be_plain_font->FamilyAndStyle());
    view.Select(2, 4);
    uint32 mode;
    bool same;
    rgb_color color;
    view.GetFontAndColor(&font, &mode, &color, &same);
    EXPECT_EQ(mode, B_FONT_ALL & ~uint32(B_FONT_SIZE));
    EXPECT_TRUE(same);
    view.SetStylable(false);
    EXPECT_EQ(RedAt(3), 0);
    EXPECT_EQ(view.LineHeight(), height);
}

TEST_F(TextViewTest, CaretKeepsAStyleForWhatIsInsertedNext)
{
    view.SetStylable(true);
    view.SetText("ab");
    view.Select(1, 1);
    view.SetFontAndColor(nullptr, 0, &kRed);
    view.Insert("x");
    EXPECT_EQ(RedAt(1), 255);
    EXPECT_EQ(RedAt(2), 0);
    view.Select(0, 0);
    view.SetFontAndColor(nullptr, 0, &kBlue);
    view.Select(1, 1);
    view.Insert("y");
    EXPECT_EQ(Text(), "ayxb");
    EXPECT_EQ(RedAt(1), 0);
}

TEST_F(TextViewTest, RunsComeBackFlattenedAndNot)
{
    view.SetStylable(true);
    text_run_array* runs = BTextView::AllocRunArray(2);
    runs->runs[0] = {0, *be_plain_font, kRed};
    runs->runs[1] = {3, *be_fixed_font, kBlue};
    view.SetText("abcdef", runs);
    BTextView::FreeRunArray(runs);
    int32 size = 0;
    runs = view.RunArray(1, 5, &size);
    ASSERT_EQ(runs->count, 2);
    EXPECT_EQ(size, int32(sizeof(text_run_array) + sizeof(text_run)));
    EXPECT_EQ(runs->runs[1].offset, 2);
    void* flat = BTextView::FlattenRunArray(runs, &size);
    EXPECT_EQ(size, 12 + 2 * 148);
    text_run_array* back = BTextView::UnflattenRunArray(flat, &size);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->runs[1].offset, 2);
    EXPECT_EQ(back->runs[1].font.FamilyAndStyle(), be_fixed_font->FamilyAndStyle());
    EXPECT_EQ(back->runs[1].color.blue, 255);
    text_run_array* more = BTextView::CopyRunArray(back, 3);
    EXPECT_EQ(more->count, 5);
    EXPECT_EQ(BTextView::CopyRunArray(back, -2), nullptr);
    for (text_run_array* each : {runs, back, more})
        BTextView::FreeRunArray(each);
    for (int32 cut = 1; cut < 12 + 2 * 148; cut++) {
        int32 given = cut;
        EXPECT_EQ(BTextView::UnflattenRunArray(flat, &given), nullptr);
    }
    free(flat);
    EXPECT_EQ(BTextView::AllocRunArray(0), nullptr);
    EXPECT_EQ(BTextView::AllocRunArray(INT_MAX), nullptr);
    EXPECT_EQ(BTextView::FlattenRunArray(nullptr), nullptr);
    EXPECT_EQ(BTextView::UnflattenRunArray(nullptr), nullptr);
}

TEST_F(TextViewTest, WordsAreFoundAtAnyOffset)
{
    view.SetText("one, two_3 (x)\n\u6F22\u5B57 f\u00FCr");
    const auto word = [&](int32 offset) {
        int32 from, to;
        view.FindWord(offset, &from, &to);
        return Text().substr(size_t(from), size_t(to - from));
    };
    EXPECT_EQ(word(1), "one");
    EXPECT_EQ(word(3), ",");
    EXPECT_EQ(word(4), " ");
    EXPECT_EQ(word(8), "two_3");
    EXPECT_EQ(word(14), "");
    EXPECT_EQ(word(15), "\u6F22\u5B57");
    EXPECT_EQ(word(24), "f\u00FCr");
    EXPECT_EQ(word(INT_MAX), "");
    EXPECT_EQ(word(-1), "one");
}

TEST_F(TextViewTest, RegionCoversTheLinesOfAPart)
{
    view.SetText("one\ntwo\nthree");
    const float height = view.LineHeight();
    BRegion region;
    view.GetTextRegion(1, 9, &region);
    EXPECT_TRUE(region.Contains(BPoint(4 + Width("o") + 1, 4)));
    EXPECT_FALSE(region.Contains(BPoint(4, 4)));
    EXPECT_TRUE(region.Contains(BPoint(100, 4)));
    EXPECT_TRUE(region.Contains(BPoint(5, 4 + height)));
    EXPECT_TRUE(region.Contains(BPoint(4, 4 + 2 * height)));
    EXPECT_FALSE(region.Contains(BPoint(4 + Width("t") + 1, 4 + 2 * height)));
    view.GetTextRegion(5, 2, &region);
    EXPECT_EQ(region.CountRects(), 0);
}

// Latin letters, Hebrew ones, digits and Latin letters; the digits stand left of the Hebrew word.
TEST_F(TextViewTest, PartsOfATextOfTwoDirectionsAreWhereTheirLettersStand)
{
    const char* const kText = "abc \u05e9\u05dc\u05d5\u05dd 123 def";
    view.SetText(kText);
    const auto part = [&](int32 from, int32 to) {
        BRegion region;
        view.GetTextRegion(from, to, &region);
        return region;
    };
    const int32 hebrew = 4, digits = 13, latin = 17, length = 20;
    BRegion most = part(1, digits + 2);
    EXPECT_EQ(most.CountRects(), 2) << "the last digit is not in it";
    const BRect left_over = part(digits + 2, digits + 3).Frame();
    EXPECT_LT(most.RectAt(0).right, left_over.right);
    EXPECT_GT(most.RectAt(1).left, left_over.left);

    // Each character has its place, and they fill the line.
    float sum = 0;
    std::vector<int32> places;
    for (int32 at = 0; at < length; at += at >= hebrew && at < hebrew + 8 ? 2 : 1)
        places.push_back(at);
    places.push_back(length);
    for (size_t i = 0; i + 1 < places.size(); i++) {
        BRegion one;
        one.Set(part(places[i], places[i + 1]).Frame());
        EXPECT_EQ(part(places[i], places[i + 1]).CountRects(), 1) << places[i];
        sum += one.Frame().Width() + 1;
    }
    EXPECT_NEAR(sum, view.LineWidth(0), float(places.size()));
    EXPECT_LT(part(digits, latin).Frame().left, part(hebrew, hebrew + 8).Frame().left);
    EXPECT_GT(part(hebrew, hebrew + 2).Frame().left, part(hebrew + 2, hebrew + 4).Frame().left);

    // What goes on in the next line ends at the right of this one.
    view.SetText((std::string(kText) + "\nnext").c_str());
    BRegion down = part(hebrew + 2, length + 3);
    EXPECT_EQ(down.Frame().right, view.TextRect().right);
    EXPECT_FALSE(down.Contains(BPoint(part(0, 1).Frame().left + 1, view.PointAt(0).y + 1)));
    EXPECT_TRUE(down.Contains(BPoint(part(0, 1).Frame().left + 1, view.PointAt(21).y + 1)));
}

TEST_F(TextViewTest, SelectionsKeepClustersWhole)
{
    view.SetText("ae\u0301\U0001F1E9\U0001F1EAb");
    view.Select(2, 6);
    EXPECT_EQ(Selection(), "1-12");
    view.Select(8, 8);
    EXPECT_EQ(Selection(), "4-4");
}

TEST_F(TextViewTest, HiddenTypingShowsADotForEachCharacter)
{
    view.SetText("e\u0301\u20AC\t");
    view.HideTyping(true);
    EXPECT_EQ(view.LineWidth(0), 3 * Width("\u2022"));
    EXPECT_EQ(view.PointAt(6).x, 4 + 2 * Width("\u2022"));
    EXPECT_EQ(view.OffsetAt(BPoint(4 + 1.9f * Width("\u2022"), 5)), 6);
}

TEST_F(TextViewTest, ShapedTextIsAsWideAsItIsDrawn)
{
    const char* const kTexts[] = {"\u0633\u0644\u0627\u0645", "e\u0301a", "ab \u05D0\u05D1"};
    for (const char* text : kTexts) {
        view.SetText(text);
        EXPECT_EQ(view.LineWidth(0), Width(text)) << text;
    }
    view.SetText("e\u0301a");
    EXPECT_EQ(view.PointAt(view.TextLength()).x, 4 + Width("e\u0301a"));
    BFont kerned(be_plain_font);
    kerned.SetSpacing(B_CHAR_SPACING);
    view.SetText("AVAVAV");
    view.SetFontAndColor(&kerned);
    EXPECT_EQ(view.LineWidth(0), kerned.StringWidth("AVAVAV"));
}

TEST_F(TextViewTest, PlacesAndOffsetsAreEachOthersInverse)
{
    view.SetText("The quick brown fox\njumps over\tthe lazy dog, na\u00EFvely \u6F22\u5B57.\n");
    for (int32 offset = 0; offset <= view.TextLength(); offset++) {
        if ((view.ByteAt(offset) & 0xC0) == 0x80)
            continue;
        float height;
        const BPoint point = view.PointAt(offset, &height);
        EXPECT_EQ(view.OffsetAt(BPoint(point.x, point.y + height / 2)), offset);
    }
}

// Two offsets may share a place where the direction changes.
TEST_F(TextViewTest, ClicksOnCaretsOfBothDirectionsFindTheirPlacesAgain)
{
    const char* const kTexts[] = {
        "ab \u05D0\u05D1\u05D2 12-34 (\u05D3) cd",   "\u05D0\u05D1 (c 1.5) \u05D2",
        "\u0661\u0662 \u0663 \u0633\u0646!",         "\u05D0\u05D1\u05D2 \u05D3",
        "a\u0301 \u05D0\u05B8\u05D1 \u0644\u0627\n",
    };
    for (const char* text : kTexts) {
        view.SetText(text);
        for (int32 offset = 0; offset <= view.TextLength(); offset++) {
            if (offset < view.TextLength() && (view.ByteAt(offset) & 0xC0) == 0x80)
                continue;
            float height;
            const BPoint point = view.PointAt(offset, &height);
            const int32 found = view.OffsetAt(BPoint(point.x, point.y + height / 2));
            EXPECT_EQ(view.PointAt(found), point) << text << offset;
        }
    }
}

// As typed letters appear behind it.
TEST_F(TextViewTest, TheCaretStandsBehindTheLetterBeforeIt)
{
    const float left = view.TextRect().left, letter = Width("\u05D0");
    view.SetText("\u05D0\u05D0\u05D0\n\u05D0\u05D0 12");
    EXPECT_EQ(view.PointAt(0).x, left + 3 * letter);
    EXPECT_EQ(view.PointAt(2).x, left + 2 * letter);
    EXPECT_EQ(view.PointAt(4).x, left + letter);
    EXPECT_EQ(view.PointAt(6).x, left);
    EXPECT_EQ(view.PointAt(7).x, left + Width("12 ") + 2 * letter);
    EXPECT_EQ(view.PointAt(14).x, left + Width("12"));  // numbers are read from the left
    // Either half of a letter is the place at that side of it.
    const float y = view.PointAt(0).y + 2;
    EXPECT_EQ(view.OffsetAt(BPoint(left + letter * 1.25f, y)), 4);
    EXPECT_EQ(view.OffsetAt(BPoint(left + letter * 1.75f, y)), 2);
    EXPECT_EQ(view.OffsetAt(BPoint(left - 5, y)), 6);
    EXPECT_EQ(view.OffsetAt(BPoint(left + letter * 9, y)), 0);
}

TEST_F(TextViewTest, WordsReadFromTheRightFillTheirLines)
{
    std::string text;
    for (int i = 0; i < 40; i++)
        text += "\u05E9\u05DC\u05D5\u05DD ";
    view.SetText(text.c_str());
    const float word = Width("\u05E9\u05DC\u05D5\u05DD ");
    const float blank = Width(" ");  // which may hang over
    const int32 words = int32((view.TextRect().Width() + blank) / word);
    EXPECT_EQ(view.CountLines(), (40 + words - 1) / words);
    EXPECT_EQ(view.OffsetAt(int32(1)), words * 9);
}

TEST_F(TextViewTest, UndoIsOfWholeStepsAndSaysWhatItIs)
{
    bool redo = true;
    EXPECT_EQ(view.UndoState(&redo), B_UNDO_UNAVAILABLE);
    EXPECT_FALSE(redo);
    for (const char* key : {"o", "n", "e", " ", "t", "w", "o"})
        view.KeyDown(key, 1);
    EXPECT_EQ(view.UndoState(&redo), B_UNDO_TYPING);
    view.Undo(nullptr);
    EXPECT_EQ(Text(), "one ");
    view.Undo(nullptr);
    EXPECT_EQ(Text(), "");
    EXPECT_EQ(view.UndoState(&redo), B_UNDO_TYPING);
    EXPECT_TRUE(redo);
    view.Undo(nullptr);  // there is none left: the last one comes back
    EXPECT_EQ(Text(), "one ");
    view.KeyDown("!", 1);
    BMessage again(B_REDO);
    view.MessageReceived(&again);
    EXPECT_EQ(Text(), "one !") << "what came after is gone";
    view.SetDoesUndo(false);
    view.Undo(nullptr);
    EXPECT_EQ(Text(), "one !");
}

TEST_F(TextViewTest, StylesAreUndoneInAStylableTextOnly)
{
    view.SetText("abc");
    view.SetFontAndColor(0, 3, nullptr, 0, &kBlue);
    EXPECT_EQ(view.UndoState(nullptr), B_UNDO_UNAVAILABLE);
    view.SetStylable(true);
    view.SetFontAndColor(1, 2, nullptr, 0, &kRed);
    EXPECT_EQ(RedAt(1), 255);
    view.Undo(nullptr);
    EXPECT_EQ(RedAt(1), 0);
    view.Undo(nullptr);
    EXPECT_EQ(RedAt(1), 255);
    view.AdoptSystemColors();
    view.Undo(nullptr);
    EXPECT_EQ(RedAt(1), 0);
}

TEST_F(TextViewTest, KeyOfUndoGoesBackOnly)
{
    view.KeyDown("a", 1);
    BMessage undo(B_UNDO), redo(B_REDO);
    view.MessageReceived(&undo);
    EXPECT_EQ(Text(), "");
    view.MessageReceived(&undo);
    EXPECT_EQ(Text(), "");
    view.MessageReceived(&redo);
    EXPECT_EQ(Text(), "a");
}

TEST_F(TextViewTest, DeletionsBecomeOneStepAWord)
{
    view.SetText("one two");
    view.Select(7, 7);
    for (int i = 0; i < 4; i++)
        view.KeyDown("\b", 1);
    EXPECT_EQ(Text(), "one");
    view.Undo(nullptr);
    EXPECT_EQ(Text(), "one ");
    view.Undo(nullptr);
    EXPECT_EQ(Text(), "one two");
    EXPECT_EQ(Selection(), "7-7");
}

TEST_F(TextViewTest, PagesOfAViewOfAnyHeightEndWithTheText)
{
    const char kDown = B_PAGE_DOWN, kUp = B_PAGE_UP;
    view.SetText("a\nb\nc\nd");
    for (float height : {0.0f, 3e9f, 1e30f}) {
        view.ResizeTo(199, height);
        for (int i = 0; i < 5; i++)
            view.KeyDown(&kDown, 1);
        EXPECT_EQ(Selection(), "7-7") << height;
        for (int i = 0; i < 5; i++)
            view.KeyDown(&kUp, 1);
        EXPECT_EQ(Selection(), "0-0") << height;
    }
}

TEST_F(TextViewTest, ArchiveBringsAllOfItBack)
{
    view.SetStylable(true);
    view.SetText("one two");
    view.SetFontAndColor(0, 3, nullptr, 0, &kRed);
    view.SetAlignment(B_ALIGN_CENTER);
    view.SetTabWidth(50);
    view.SetWordWrap(false);
    view.MakeEditable(false);
    view.SetMaxBytes(100);
    view.DisallowChar('x');
    view.Select(2, 5);
    BMessage archive;
    ASSERT_EQ(view.Archive(&archive), B_OK);
    std::unique_ptr<BArchivable> object(BTextView::Instantiate(&archive));
    auto* copy = dynamic_cast<BTextView*>(object.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->Text(), "one two");
    rgb_color color;
    copy->GetFontAndColor(1, nullptr, &color);
    EXPECT_EQ(color.red, 255);
    copy->GetFontAndColor(4, nullptr, &color);
    EXPECT_EQ(color.red, 0);
    EXPECT_EQ(copy->Alignment(), B_ALIGN_CENTER);
    EXPECT_EQ(copy->TabWidth(), 50);
    EXPECT_FALSE(copy->DoesWordWrap());
    EXPECT_FALSE(copy->IsEditable());
    EXPECT_EQ(copy->MaxBytes(), 100);
    EXPECT_EQ(copy->TextRect(), view.TextRect());
    int32 start, end;
    copy->GetSelection(&start, &end);
    EXPECT_EQ(start, 2);
    EXPECT_EQ(end, 5);
    EXPECT_EQ(BTextView::Instantiate(nullptr), nullptr);
}

TEST_F(TextViewTest, FilesAreReadInParts)
{
    char name[] = "/tmp/text_view_XXXXXX";
    close(mkstemp(name));
    BFile file(name, B_READ_WRITE);
    file.Write("one two three", 13);
    view.SetText(&file, 4, 3);
    EXPECT_EQ(Text(), "two");
    view.SetText(&file, 8, INT_MAX);
    EXPECT_EQ(Text(), "three");
    view.SetText(&file, 99, 5);
    EXPECT_EQ(Text(), "");
    view.SetText(&file, -1, 5);
    EXPECT_EQ(Text(), "");
    view.SetText(static_cast<BFile*>(nullptr), 0, 5);
    EXPECT_EQ(Text(), "");
    remove(name);
}
