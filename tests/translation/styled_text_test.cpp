// Styled text as a stream and as a file, and what of it comes back.

#include <DataIO.h>
#include <File.h>
#include <TextView.h>
#include <TranslationUtils.h>
#include <TranslatorFormats.h>
#include <TypeConstants.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

std::unique_ptr<BTextView> make_view(const char* text = "")
{
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    auto view = std::make_unique<BTextView>(BRect(0, 0, 99, 99), "text", BRect(0, 0, 99, 99),
                                            B_FOLLOW_NONE);
    view->SetStylable(true);
    view->SetText(text);
    return view;
}

std::unique_ptr<BTextView> make_styled()
{
    auto view = make_view("plain and large");
    const rgb_color red = {200, 10, 20, 255};
    BFont font(be_bold_font);
    font.SetSize(20);
    view->SetFontAndColor(10, 15, &font, B_FONT_ALL, &red);
    return view;
}

void expect_styled(const BTextView& view)
{
    EXPECT_STREQ(view.Text(), "plain and large");
    BFont font;
    rgb_color color;
    view.GetFontAndColor(10, &font, &color);
    EXPECT_EQ(font.Size(), 20);
    EXPECT_EQ(font.FamilyAndStyle(), be_bold_font->FamilyAndStyle());
    EXPECT_EQ(color.red, 200);
    view.GetFontAndColor(9, &font, &color);
    EXPECT_EQ(font.Size(), be_plain_font->Size());
    EXPECT_EQ(color.red, 0);
}

std::string temporary_file()
{
    char name[] = "/tmp/styled_text_XXXXXX";
    close(mkstemp(name));
    return name;
}

}  // namespace

TEST(StyledText, ComesBackFromAStreamAsItWas)
{
    BMallocIO stream;
    ASSERT_EQ(BTranslationUtils::PutStyledText(make_styled().get(), &stream), B_OK);
    EXPECT_EQ(memcmp(stream.Buffer(), "STXT\0\0\0\20", 8), 0);
    auto view = make_view("old");
    ASSERT_EQ(BTranslationUtils::GetStyledText(&stream, view.get()), B_OK);
    expect_styled(*view);
}

TEST(StyledText, CutStreamsGiveWhatIsWholeOrNothing)
{
    BMallocIO stream;
    ASSERT_EQ(BTranslationUtils::PutStyledText(make_styled().get(), &stream), B_OK);
    const std::string whole(static_cast<const char*>(stream.Buffer()), stream.BufferLength());
    for (size_t length = 0; length < whole.size(); length++) {
        BMemoryIO cut(whole.data(), length);
        auto view = make_view("old");
        const status_t status = BTranslationUtils::GetStyledText(&cut, view.get());
        if (status == B_OK)
            EXPECT_TRUE(strcmp(view->Text(), "plain and large") == 0 || length < 5) << length;
        else
            EXPECT_STREQ(view->Text(), "old") << length;
    }
}

TEST(StyledText, PlainTextIsReadInItsEncoding)
{
    auto view = make_view();
    BMemoryIO latin("caf\xE9", 4);
    ASSERT_EQ(BTranslationUtils::GetStyledText(&latin, view.get(), "ISO-8859-1"), B_OK);
    EXPECT_STREQ(view->Text(), "caf\xC3\xA9");
    ASSERT_EQ(BTranslationUtils::GetStyledText(&latin, view.get()), B_OK);
    EXPECT_STREQ(view->Text(), "caf\xE9");
    EXPECT_EQ(BTranslationUtils::GetStyledText(&latin, view.get(), "no such"), B_BAD_VALUE);
    BMemoryIO binary(
        "\x7F"
        "ELF\0\0\0",
        7);
    EXPECT_EQ(BTranslationUtils::GetStyledText(&binary, view.get()), B_NO_TRANSLATOR);
    EXPECT_STREQ(view->Text(), "caf\xE9");
    EXPECT_EQ(BTranslationUtils::GetStyledText(nullptr, view.get()), B_BAD_VALUE);
    EXPECT_EQ(BTranslationUtils::PutStyledText(nullptr, &latin), B_BAD_VALUE);
}

TEST(StyledText, FileHoldsTheTextAndItsStylesAsAttributes)
{
    const std::string path = temporary_file();
    {
        BFile file(path.c_str(), B_READ_WRITE);
        ASSERT_EQ(BTranslationUtils::WriteStyledEditFile(make_styled().get(), &file), B_OK);
        off_t size = 0;
        file.GetSize(&size);
        EXPECT_EQ(size, 15);
    }
    BFile file(path.c_str(), B_READ_ONLY);
    auto view = make_view();
    ASSERT_EQ(BTranslationUtils::GetStyledText(&file, view.get()), B_OK);
    expect_styled(*view);
    remove(path.c_str());
}

TEST(StyledText, FileKeepsWhatItHasIfTheEncodingCannotHoldTheText)
{
    const std::string path = temporary_file();
    BFile file(path.c_str(), B_READ_WRITE);
    file.Write("old", 3);
    auto view = make_view("日本");
    EXPECT_EQ(BTranslationUtils::WriteStyledEditFile(view.get(), &file, "ISO-8859-1"), B_BAD_DATA);
    off_t size = 0;
    file.GetSize(&size);
    EXPECT_EQ(size, 3);
    ASSERT_EQ(BTranslationUtils::WriteStyledEditFile(view.get(), &file, "EUC-JP"), B_OK);
    file.GetSize(&size);
    EXPECT_EQ(size, 4);
    remove(path.c_str());
}
