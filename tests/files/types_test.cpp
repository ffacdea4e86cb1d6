// File types as a program sees and sets them, and as other programs do.

#include <gtest/gtest.h>

#include <Bitmap.h>
#include <List.h>

#include <plinth.h>

#include <cstring>
#include <filesystem>
#include <string>

#include <sys/xattr.h>
#include <unistd.h>

#include "graphics/icons.h"
#include "support/command.h"
#include "support/desktop_folder.h"
#include "support/program.h"

static BList* icon_list() { return static_cast<BList*>(gRegistry[1]); }

TEST(FileTypes, TypeIsReadSetAndRemoved)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/page.html", "text");
    symlink("page.html", folder.At("/link").c_str());
    EXPECT_STREQ(GetFileMime(file.c_str()), "text/html");
    SetFileMime(folder.At("/link").c_str(), "text/x-mine");
    EXPECT_STREQ(GetFileMime(file.c_str()), "text/x-mine");
    EXPECT_STREQ(GetFileMime(folder.At("/link").c_str()), "text/x-mine");
    EXPECT_EQ(output_of("getfattr --absolute-names --only-values -n user.mime_type " + file),
              "text/x-mine");
    SetFileMime(file.c_str(), "no type");
    SetFileMime(file.c_str(), nullptr);
    EXPECT_STREQ(GetFileMime(file.c_str()), "text/x-mine");
    SetFileMime(file.c_str(), "");
    EXPECT_STREQ(GetFileMime(file.c_str()), "text/html");
    EXPECT_STREQ(GetFileMime(folder.Path().c_str()), "inode/directory");
}

TEST(FileTypes, WhatCanNotBeAskedHasEmptyTextsAndLeavesDosErr)
{
    DesktopFolder folder;
    symlink("nowhere", folder.At("/dangling").c_str());
    symlink("loop", folder.At("/loop").c_str());
    GetDosErr(77);
    const std::string long_path(5000, 'x');
    const std::string dangling = folder.At("/dangling"), loop = folder.At("/loop");
    for (const char* path : {static_cast<const char*>(nullptr), "", "/no/such/file",
                             dangling.c_str(), loop.c_str(), long_path.c_str(), "\xff\x01"}) {
        EXPECT_STREQ(GetFileMime(path), "");
        EXPECT_STREQ(GetFilePreferredApp(path), "");
        SetFileMime(path, "text/plain");
        SetFilePreferredApp(path, "application/x-a");
        SetFileAppHint(path, "/bin/sh");
    }
    for (const char* type :
         {static_cast<const char*>(nullptr), "", "no type", "a/b/c", long_path.c_str()}) {
        EXPECT_FALSE(ExistsMime(type));
        EXPECT_FALSE(InstallMime(type));
        EXPECT_FALSE(DeleteMime(type));
        EXPECT_FALSE(IsValidMime(type));
        EXPECT_STREQ(GetPreferredApp(type), "");
        EXPECT_STREQ(GetAppHintMime(type), "");
        EXPECT_EQ(LoadMimeIcon(type), 0);
    }
    EXPECT_EQ(GetDosErr(0), 77);
}

TEST(FileTypes, UnreadableFileIsKnownByItsName)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/secret.pdf", "x");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    EXPECT_STREQ(GetFileMime(file.c_str()), "application/pdf");
}

TEST(FileTypes, KeptAppHintIsThePreferredApp)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/file.txt");
    const std::string app = folder.Put("/app");
    const std::string hint = "getfattr --absolute-names --only-values -n user.BEOS:PPATH " + file;
    SetFileAppHint(file.c_str(), app.c_str());
    EXPECT_STREQ(GetFileAppHint(file.c_str()), "");
    EXPECT_EQ(output_of(hint), app);
    SetFilePreferredApp(file.c_str(), "application/x-vnd.Be-STEE");
    EXPECT_STREQ(GetFileAppHint(file.c_str()), "application/x-vnd.Be-STEE");
    EXPECT_STREQ(GetFilePreferredApp(file.c_str()), GetFileAppHint(file.c_str()));
    EXPECT_EQ(output_of(hint), app);
    SetFilePreferredApp(file.c_str(), "");
    EXPECT_STREQ(GetFilePreferredApp(file.c_str()), "");
}

TEST(FileTypes, ResultsOfDifferentCallsLiveSideBySide)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/file.txt");
    SetFilePreferredApp(file.c_str(), "application/x-vnd.Be-STEE");
    const char* type = GetFileMime(file.c_str());
    const char* app = GetFilePreferredApp(file.c_str());
    EXPECT_STREQ(type, "text/plain");
    EXPECT_STREQ(app, "application/x-vnd.Be-STEE");
}

TEST(FileTypes, TypesAreInstalledAndDeleted)
{
    DesktopFolder folder;
    EXPECT_TRUE(ExistsMime("text/plain"));
    EXPECT_TRUE(ExistsMime("text"));
    EXPECT_FALSE(InstallMime("text/plain"));
    EXPECT_FALSE(DeleteMime("text/plain"));
    EXPECT_FALSE(ExistsMime("x-mine/kind"));
    EXPECT_TRUE(InstallMime("x-mine/kind"));
    EXPECT_TRUE(ExistsMime("X-Mine/Kind"));
    EXPECT_FALSE(InstallMime("x-mine/kind"));
    EXPECT_EQ(output_of("gio mime x-mine/kind | head -1"),
              "No default applications for \xe2\x80\x9cx-mine/kind\xe2\x80\x9d");
    EXPECT_TRUE(std::filesystem::exists(folder.At("/home/data/mime/x-mine/kind.xml")));
    EXPECT_TRUE(DeleteMime("x-mine/kind"));
    EXPECT_FALSE(ExistsMime("x-mine/kind"));
    EXPECT_FALSE(std::filesystem::exists(folder.At("/home/data/mime/x-mine/kind.xml")));
    EXPECT_TRUE(IsValidMime("text"));
    EXPECT_TRUE(IsValidMime("text/plain"));
    EXPECT_FALSE(IsValidMime("text/"));
}

TEST(FileTypes, ApplicationsOfTypesAreTheDesktops)
{
    DesktopFolder folder;
    const std::string program =
        folder.PutEntry(folder.SystemEntry("one.desktop"), "one", "MimeType=text/html;\n");
    EXPECT_STREQ(GetPreferredApp("text/html"), "application/x-vnd.desktop.one");
    EXPECT_STREQ(GetPreferredApp("image/png"), "");
    output_of("xdg-mime default one.desktop image/png");
    EXPECT_STREQ(GetPreferredApp("image/png"), "application/x-vnd.desktop.one");
    EXPECT_STREQ(GetAppHintMime("application/x-vnd.desktop.one"), program.c_str());
    EXPECT_STREQ(GetAppHintMime("text/html"), "");
}

TEST(FileTypes, IconOfATypeBecomesAnIconOfTheRegistry)
{
    DesktopFolder folder;
    const int32 before = icon_list() != nullptr ? icon_list()->CountItems() : 0;
    const int32_t first = LoadMimeIcon("text/html");
    const int32_t second = LoadMimeIcon("text/html");
    ASSERT_NE(first, 0);
    EXPECT_GT(second, first);
    EXPECT_EQ(LoadMimeIcon("x-without/icon"), 0);
    InstallMime("x-without/icon");
    EXPECT_EQ(LoadMimeIcon("x-without/icon"), 0);
    ASSERT_EQ(icon_list()->CountItems(), before + 2);
    const auto* icon = static_cast<IconRecord*>(icon_list()->ItemAt(before));
    EXPECT_EQ(icon->ident, first);
    EXPECT_EQ(icon->image->Bounds(), BRect(0, 0, 15, 15));
    EXPECT_EQ(icon->selected_image->Bounds(), BRect(0, 0, 31, 31));
}
