// The system list.

#include <gtest/gtest.h>

#include <Font.h>
#include <StorageDefs.h>
#include <Volume.h>
#include <VolumeRoster.h>
#include <plinth.h>

#include <errno.h>

#include "support/desktop_folder.h"
#include "support/probe.h"

using Texts = std::vector<std::string>;

static Texts names()
{
    Texts list;
    for (int32_t i = 0; i < CountList(); ++i)
        list.push_back(GetInfoList(i));
    return list;
}

TEST(SystemList, UnknownKindEmptiesItAndNothingIsOutsideIt)
{
    EXPECT_EQ(0, CountList());
    GetList(PLINTH_LIST_FONTS);
    ASSERT_GT(CountList(), 0);
    for (const int32_t outside : {-1, CountList(), INT32_MIN, INT32_MAX})
        EXPECT_STREQ("", GetInfoList(outside));
    GetList(8);
    EXPECT_EQ(0, CountList());
    EXPECT_STREQ("", GetInfoList(0));
    GetList(PLINTH_LIST_FONTS);
    GetList(UINT32_MAX);
    EXPECT_EQ(0, CountList());
    GetList(PLINTH_LIST_FONTS);
    FreeList();
    FreeList();
    EXPECT_EQ(0, CountList());
}

TEST(SystemList, FontsAndVolumesAreThoseOfTheSystem)
{
    GetList(PLINTH_LIST_FONTS);
    Texts families;
    font_family family;
    for (int32 i = 0; i < count_font_families(); ++i) {
        if (get_font_family(i, &family) == B_OK)
            families.push_back(family);
    }
    EXPECT_EQ(families, names());
    GetList(PLINTH_LIST_FONTS);
    EXPECT_EQ(families, names()) << "emptied before";

    GetList(PLINTH_LIST_VOLUMES);
    Texts volumes;
    BVolumeRoster roster;
    char name[B_FILE_NAME_LENGTH];
    for (BVolume volume; roster.GetNextVolume(&volume) == B_OK;) {
        if (volume.IsPersistent() && volume.GetName(name) == B_OK && name[0] != '\0')
            volumes.push_back(name);
    }
    EXPECT_EQ(volumes, names());
}

TEST(SystemList, DeviceListsHoldNamesOnly)
{
    for (const uint32_t kind :
         {PLINTH_LIST_JOYSTICKS, PLINTH_LIST_SERIAL_PORTS, PLINTH_LIST_MIDI_PORTS}) {
        GetList(kind);
        for (const std::string& name : names()) {
            EXPECT_FALSE(name.empty());
            EXPECT_LT(name.size(), 32u);
        }
    }
}

TEST(SystemList, RecentItemsAreTheDesktopsNewestFirst)
{
    DesktopFolder folder;
    const std::string first = folder.Put("/first.txt", "text");
    const std::string second = folder.Put("/second.txt", "text");
    for (const std::string& path : {first, second})
        AddRecentDocument(path.c_str());
    AddRecentFolder(folder.Path().c_str());
    GetList(PLINTH_LIST_RECENT_DOCUMENTS);
    EXPECT_EQ((Texts{second, first}), names());
    GetList(PLINTH_LIST_RECENT_FOLDERS);
    EXPECT_EQ(Texts{folder.Path()}, names());
    GetList(PLINTH_LIST_RECENT_APPS);
    EXPECT_EQ(0, CountList());

    dos_err = 0;
    AddRecentDocument(folder.At("/no/such").c_str());
    EXPECT_EQ(ENOENT, dos_err);
    AddRecentFolder(nullptr);
    EXPECT_EQ(EINVAL, dos_err);
    std::filesystem::create_symlink(first, folder.At("/link"));
    AddRecentDocument(folder.At("/link").c_str());
    GetList(PLINTH_LIST_RECENT_DOCUMENTS);
    EXPECT_EQ((Texts{first, second, first}), names()) << "links are followed";
}

TEST(SystemList, RecentItemsAccumulateKept)
{
    DesktopFolder folder;
    AddRecentFolder(folder.Path().c_str());
    GetList(8);
    GetRecentFolder();
    GetRecentFolder();
    GetRecentDocument();
    EXPECT_EQ((Texts{folder.Path(), folder.Path()}), names());
}

TEST(SystemList, AtMostSixtyFourRecentItems)
{
    DesktopFolder folder;
    for (int i = 0; i < 70; ++i) {
        const std::string name = std::string("/").append(std::to_string(i)).append(".txt");
        AddRecentDocument(folder.Put(name).c_str());
    }
    GetRecentDocument();
    EXPECT_EQ(64, CountList());
    EXPECT_EQ(folder.At("/69.txt"), GetInfoList(0));
    EXPECT_EQ(folder.At("/6.txt"), GetInfoList(63));
}
