// What a text view draws.

#include <Font.h>

#include <algorithm>
#include <cmath>

#include "tests/text/text_harness.h"

using namespace text_test;

TEST_F(TextTest, WordsGiveThePixelsOfTheWholeLine)
{
    static const char kLine[] = " The quick  brown fox, AVA fi na\xC3\xAFve.";
    for (const char* line : {kLine, "plain words, AVA fi only  here "}) {
        MakeText(line, 300, 100);
        text->ResizeTo(300, 40);
        text->MakeFocus(false);
        auto* whole = Add(BRect(0, 50, 300, 90), "whole");
        whole->SetViewColor(text->ViewColor());
        whole->onDraw = [=] {
            font_height height;
            be_plain_font->GetHeight(&height);
            whole->SetFont(be_plain_font);
            whole->SetDrawingMode(B_OP_OVER);
            whole->DrawString(line, BPoint(4, 3 + std::ceil(height.ascent)));
        };
        Start();
        Settle();
        Do([&](BTextView&) { window->Sync(); });
        std::vector<uint32> words, all;
        int32 width, rows;
        ASSERT_EQ(server::ReadScreen(BRect(100, 103, 399, 122), &words, &width, &rows), B_OK);
        ASSERT_EQ(server::ReadScreen(BRect(100, 153, 399, 172), &all, &width, &rows), B_OK);
        EXPECT_TRUE(words == all) << line;
        EXPECT_NE(std::count(all.begin(), all.end(), all[0]), std::ptrdiff_t(all.size()));
        Close(window);
    }
}
