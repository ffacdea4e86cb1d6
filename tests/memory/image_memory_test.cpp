// Images, fonts, lists and the Deskbar's settings whose memory fails.

#include "memory/support/failing_memory.h"
#include "support/temp_folder.h"

#include <string>

namespace {

const char* const kPicture[] = {"png", "gif", "bmp", "tif", "jpg", "tga", "ppm"};

void with_each_own_failing(const std::function<void()>& call)
{
    with_each_failing(call, Whose::OwnCode);
}

}  // namespace

TEST_F(FailingMemory, ImagesAreWholeOrNone)
{
    TestWindow window;
    FRectangle(window, 0, 0, 30, 30);
    with_each_failing([&] {
        const int32_t image = CreateImage(20, 20);
        EXPECT_TRUE(image != 0 || has_failed());
        FRectangle(image, 0, 0, 5, 5);
        Text(image, "in it");
        GetPixel(image, 2, 2);
        DrawImage(window, image, 0, 0, 40, 40);
        DrawIcon(window, image, 0, 0, 1);
        CloseIcon(image);
    });
    with_each_failing([&] {
        const int32_t part = ImageFromWindow(window, 0, 0, 20, 20);
        EXPECT_TRUE(part != 0 || has_failed());
        CloseIcon(part);
    });
    with_each_own_failing([&] { CloseIcon(LoadIcon("/bin/sh")); });
}

TEST_F(FailingMemory, ImageFilesAreReadAndWrittenOrNot)
{
    const TempFolder folder;
    const int32_t image = CreateImage(20, 20);
    for (int32_t format = 0; format < 7; format++) {
        SCOPED_TRACE(format);
        const std::string path = folder.At(std::string("/picture.") + kPicture[format]);
        with_each_own_failing([&] { SaveImageFile(path.c_str(), image, format); });
        with_each_own_failing([&] {
            const int32_t loaded = LoadImage(path.c_str());
            EXPECT_TRUE(loaded != 0 || has_failed());
            CloseIcon(loaded);
        });
        with_each_own_failing([&] { LoadSecondImage(image, path.c_str()); });
        EXPECT_EQ(GetImageWidth(image), 20);
    }
    CloseIcon(image);
}

TEST_F(FailingMemory, FontsOfWindowsGoOn)
{
    TestWindow window;
    Text(window, "what a thread has once");
    with_each_own_failing([&] {
        SetFontSize(window, 15);
        SetShear(window, 100);
        SetRotation(window, 10);
        SetSpacing(window, 1);
        FontLeasing(window, 0);
        SetFontType(window, 2);
        SetFontAttribut(window, 0x20);
        SetFontName(window, "DejaVu Sans");
        OpenFontInListe(window, "DejaVu Sans", "Book", 12);
    });
    with_each_own_failing([&] {
        IsFontFixed(window);
        GetFontType(window);
        GetFontSize(window);
        GetFontAttribut(window);
        GetFontName(window);
        GetFontNameList(0);
    });
    SetFontSize(window, 19);
    EXPECT_EQ(GetFontSize(window), 19);
}

TEST_F(FailingMemory, ListsAreFilledAsFarAsThereIsMemory)
{
    const TempFolder folder;
    for (uint32_t kind = 0; kind <= PLINTH_LIST_RECENT_FOLDERS; kind++) {
        SCOPED_TRACE(kind);
        with_each_own_failing([&] {
            GetList(kind);
            GetInfoList(0);
            CountList();
        });
    }
    FreeList();
    EXPECT_EQ(CountList(), 0);
}

TEST_F(FailingMemory, DeskbarIsAskedOrNot)
{
    const TempFolder folder;
    with_each_own_failing([&] { GetPosDeskBar(); });
    with_each_own_failing([&] { IsExpandedDeskBar(); });
    const int32_t place = GetPosDeskBar();
    with_each_own_failing([&] { SetPosDeskBar(place); });
    with_each_own_failing([&] { SetExpandDeskBar(IsExpandedDeskBar()); });
    EXPECT_EQ(GetPosDeskBar(), place);
}

TEST_F(FailingMemory, StringsAreMadeOrNull)
{
    with_each_failing([&] {
        char* text = alloc_string(100);
        EXPECT_TRUE(text != nullptr || has_failed());
    });
    char* table[4] = {};  // what has no memory stays null
    with_each_failing([&] { EXPECT_EQ(init_tab_string(table, 3), 3); });
}
