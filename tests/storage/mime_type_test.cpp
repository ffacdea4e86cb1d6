// BMimeType and the desktop's type database: what each sees of the other.

#include <MimeType.h>

#include <gtest/gtest.h>

#include <Bitmap.h>
#include <Entry.h>
#include <Message.h>
#include <Path.h>
#include <String.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

#include <glib.h>

#include "app/Mailbox.h"
#include "support/command.h"
#include "support/desktop_folder.h"

static std::string preferred(const char* type)
{
    char signature[B_MIME_TYPE_LENGTH] = "";
    return BMimeType(type).GetPreferredApp(signature) == B_OK ? signature : "";
}

static std::string extensions_of(const char* type)
{
    BMessage message;
    std::string list;
    const char* extension = nullptr;
    if (BMimeType(type).GetFileExtensions(&message) != B_OK)
        return "none";
    for (int32 i = 0; message.FindString("extensions", i, &extension) == B_OK; i++)
        list += std::string(extension) + " ";
    return list;
}

static std::string guessed(const std::string& bytes)
{
    BMimeType type;
    BMimeType::GuessMimeType(bytes.data(), static_cast<int32>(bytes.size()), &type);
    return type.Type() != nullptr ? type.Type() : "";
}

static std::string text_of(const std::string& path)
{
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(MimeType, ValidStringsFollowThePlatformsRule)
{
    const std::string longest = "a/" + std::string(237, 'b');
    for (const char* good : {"text", "text/plain", "a/b", "application/x-vnd.Be-STEE", "x/100%",
                             "a'b/c`~!#$^&*{}|+-_.", "caf\xc3\xa9/x", longest.c_str()})
        EXPECT_TRUE(BMimeType::IsValid(good)) << good;
    const std::string too_long = longest + "b";
    for (const char* bad :
         {"",      "/",   "a/",   "/b",   "a//b", "a/b/c", "a b/c", "a/b ",
          "a/b\n", "a,b", "a/<b", "a/b>", "a@b",  "a;b",   "a:b",   "\"a\"",
          "a(b",   "a)b", "a[b",  "a]b",  "a?b",  "a=b",   "a\\b",  too_long.c_str()})
        EXPECT_FALSE(BMimeType::IsValid(bad)) << bad;
    EXPECT_FALSE(BMimeType::IsValid(nullptr));
}

TEST(MimeType, NamesAreSetComparedAndTakenApartWithoutCase)
{
    BMimeType type;
    EXPECT_EQ(type.InitCheck(), B_NO_INIT);
    EXPECT_EQ(type.SetTo("no type"), B_BAD_VALUE);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(type.InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(type.Type(), nullptr);
    EXPECT_EQ(type.SetTo("Text/Plain"), B_OK);
    EXPECT_STREQ(type.Type(), "Text/Plain");
    EXPECT_TRUE(type == "text/plain");
    EXPECT_EQ(type.SetTo(type.Type()), B_OK);
    BMimeType super;
    EXPECT_EQ(type.GetSupertype(&super), B_OK);
    EXPECT_STREQ(super.Type(), "Text");
    EXPECT_TRUE(super.IsSupertypeOnly());
    EXPECT_TRUE(super.Contains(&type));
    EXPECT_TRUE(super.Contains(&super));
    EXPECT_FALSE(type.Contains(&super));
    EXPECT_EQ(super.GetSupertype(&type), B_BAD_VALUE);
    EXPECT_EQ(type.SetTo(nullptr), B_BAD_VALUE);
    EXPECT_TRUE(BMimeType() == type);
    EXPECT_FALSE(type == static_cast<const char*>(nullptr));
    // A set object that names nothing is refused everywhere.
    char text[B_MIME_TYPE_LENGTH];
    BMessage message;
    EXPECT_EQ(BMimeType().Install(), B_NO_INIT);
    EXPECT_EQ(BMimeType().Delete(), B_NO_INIT);
    EXPECT_FALSE(BMimeType().IsInstalled());
    EXPECT_EQ(BMimeType().GetPreferredApp(text), B_NO_INIT);
    EXPECT_EQ(BMimeType().SetFileExtensions(&message), B_NO_INIT);
    EXPECT_EQ(BMimeType("text").GetShortDescription(nullptr), B_BAD_VALUE);
}

TEST(MimeType, SystemsTypesAreThereAndStay)
{
    DesktopFolder folder;
    for (const char* type : {"text/plain", "TEXT/Plain", "image/png", "text", "image",
                             "application/acrobat" /* an alias */}) {
        EXPECT_TRUE(BMimeType(type).IsInstalled()) << type;
        EXPECT_EQ(BMimeType(type).Install(), B_FILE_EXISTS) << type;
        EXPECT_EQ(BMimeType(type).Delete(), B_NOT_ALLOWED) << type;
        EXPECT_EQ(errno, EPERM);
    }
    EXPECT_FALSE(BMimeType("text/x-no-such").IsInstalled());
    EXPECT_FALSE(BMimeType("nosuch").IsInstalled());
    EXPECT_EQ(BMimeType("text/x-no-such").Delete(), B_ENTRY_NOT_FOUND);
    char text[B_MIME_TYPE_LENGTH];
    EXPECT_EQ(BMimeType("text/x-no-such").GetShortDescription(text), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(BMimeType("image/png").GetShortDescription(text), B_OK);
    EXPECT_STREQ(text, "PNG image");
    EXPECT_EQ(extensions_of("image/png"), "png ");
    EXPECT_NE(extensions_of("application/acrobat").find("pdf"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder.At("/home/data/mime")));
}

TEST(MimeType, InstalledTypeReachesTheDesktopAndGoesWithDelete)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/one.mine", "content");
    const std::string query =
        "gio info -a standard::content-type " + file + " | grep -io x-test/mine";
    BMimeType type("x-test/Mine");
    EXPECT_EQ(type.Install(), B_OK);
    EXPECT_EQ(type.Install(), B_FILE_EXISTS);
    EXPECT_TRUE(BMimeType("X-Test/mine").IsInstalled());
    EXPECT_TRUE(BMimeType("x-test").IsInstalled());
    BMessage extensions;
    extensions.AddString("extensions", "mine");
    extensions.AddString("extensions", ".MIN2");
    BMimeType lower("x-test/mine");
    EXPECT_EQ(lower.SetFileExtensions(&extensions), B_OK);
    EXPECT_EQ(lower.SetShortDescription("My <own> & only"), B_OK);
    EXPECT_EQ(lower.SetLongDescription("Long\xc3\xa9"), B_OK);
    EXPECT_EQ(extensions_of("x-test/MINE"), "mine MIN2 ");
    EXPECT_EQ(output_of("gio info -a standard::content-type " + file + " | tail -1"),
              "  standard::content-type: x-test/Mine");
    EXPECT_EQ(output_of("gio info -a standard::display-name,standard::content-type " + file +
                        " >/dev/null; gio mime x-test/Mine | head -1"),
              "No default applications for \xe2\x80\x9cx-test/Mine\xe2\x80\x9d");
    BMimeType guess;
    EXPECT_EQ(BMimeType::GuessMimeType("a.MIN2", &guess), B_OK);
    EXPECT_TRUE(guess == "x-test/mine");
    char text[B_MIME_TYPE_LENGTH];
    EXPECT_EQ(type.GetShortDescription(text), B_OK);
    EXPECT_STREQ(text, "My <own> & only");
    EXPECT_EQ(type.GetLongDescription(text), B_OK);
    EXPECT_STREQ(text, "Long\xc3\xa9");
    BMessage types;
    EXPECT_EQ(BMimeType::GetInstalledTypes("x-test", &types), B_OK);
    const char* name = nullptr;
    EXPECT_EQ(types.FindString("types", 0, &name), B_OK);
    EXPECT_STREQ(name, "x-test/Mine");
    EXPECT_NE(types.FindString("types", 1, &name), B_OK);

    EXPECT_EQ(type.Delete(), B_OK);
    EXPECT_FALSE(type.IsInstalled());
    EXPECT_FALSE(BMimeType("x-test").IsInstalled());
    EXPECT_EQ(type.Delete(), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(output_of(query), "");
    EXPECT_EQ(type.GetLongDescription(text), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(type.Install(), B_OK);
    EXPECT_EQ(type.GetLongDescription(text), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(extensions_of("x-test/mine"), "");
}

TEST(MimeType, OtherProgramsTypesAreSeenAtOnceAndCanBeDeleted)
{
    DesktopFolder folder;
    const std::string package =
        folder.Put("/other-pack.xml",
                   "<?xml version=\"1.0\"?><mime-info xmlns=\"http://www.freedesktop.org/standards/"
                   "shared-mime-info\"><mime-type type=\"x-other/kind\"><comment>Other</comment>"
                   "<glob pattern=\"*.okind\"/></mime-type></mime-info>");
    EXPECT_FALSE(BMimeType("x-other/kind").IsInstalled());
    EXPECT_EQ(output_of("XDG_UTILS_INSTALL_MODE=user xdg-mime install --mode user " + package), "");
    EXPECT_TRUE(BMimeType("x-other/kind").IsInstalled());
    EXPECT_EQ(extensions_of("x-other/kind"), "okind ");
    char text[B_MIME_TYPE_LENGTH];
    EXPECT_EQ(BMimeType("x-other/kind").GetShortDescription(text), B_OK);
    EXPECT_STREQ(text, "Other");
    BMimeType guess;
    BMimeType::GuessMimeType("x.okind", &guess);
    EXPECT_TRUE(guess == "x-other/kind");
    EXPECT_EQ(BMimeType("x-other/kind").Delete(), B_OK);
    EXPECT_FALSE(BMimeType("x-other/kind").IsInstalled());
    EXPECT_FALSE(std::filesystem::exists(folder.At("/home/data/mime/packages/other-pack.xml")));
}

TEST(MimeType, SystemsTypeTakesOwnExtensionsAndGetsItsOldOnesBack)
{
    DesktopFolder folder;
    BMimeType png("image/png");
    BMessage extensions;
    extensions.AddString("extensions", "pngx");
    EXPECT_EQ(png.SetFileExtensions(&extensions), B_OK);
    EXPECT_EQ(extensions_of("image/png"), "pngx ");
    BMimeType guess;
    BMimeType::GuessMimeType("a.pngx", &guess);
    EXPECT_TRUE(guess == "image/png");
    EXPECT_EQ(png.Delete(), B_NOT_ALLOWED);
    EXPECT_EQ(png.SetFileExtensions(nullptr), B_OK);
    EXPECT_EQ(extensions_of("image/png"), "png ");
    EXPECT_TRUE(std::filesystem::is_empty(folder.At("/home/data/mime/packages")));
    for (const char* bad : {"", "a/b", "*", "a b", "a;b", "..", "\xff"}) {
        BMessage message;
        message.AddString("extensions", bad);
        EXPECT_EQ(png.SetFileExtensions(&message), bad[0] == '.' ? B_OK : B_BAD_VALUE) << bad;
    }
}

TEST(MimeType, NamesOfTheDatabasesOwnFilesAreNotInstalled)
{
    DesktopFolder folder;
    ASSERT_EQ(BMimeType("x-test/before").Install(), B_OK);
    for (const char* own :
         {"aliases", "generic-icons", "globs", "globs2", "icons", "magic", "mime.cache", "packages",
          "subclasses", "treemagic", "types", "XMLnamespaces", "version"}) {
        for (const char* ending : {"", ".new", ".new.new"}) {
            const std::string type = std::string(own) + ending + "/x";
            EXPECT_EQ(BMimeType(type.c_str()).Install(), B_BAD_VALUE) << type;
            EXPECT_FALSE(BMimeType(type.c_str()).IsInstalled()) << type;
        }
    }
    EXPECT_EQ(BMimeType("x-test/magic.new").Install(), B_OK);
    EXPECT_EQ(BMimeType("magic.newer/x").Install(), B_OK);
    EXPECT_TRUE(BMimeType("x-test/before").IsInstalled());
    EXPECT_EQ(output_of("update-mime-database " + folder.At("/home/data/mime") + " 2>&1"), "");
}

// Files and folders below the database's, without what the desktop's program makes anew each time.
static std::set<std::string> parts_of_database(const DesktopFolder& folder)
{
    std::set<std::string> parts;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(folder.At("/home/data/mime")))
        parts.insert(entry.path().string());
    return parts;
}

TEST(MimeType, FailedUpdateLeavesTheDatabaseAsItWas)
{
    DesktopFolder folder;
    BMimeType before("x-test/before");
    ASSERT_EQ(before.Install(), B_OK);
    ASSERT_EQ(before.SetShortDescription("As it was"), B_OK);
    const auto parts = parts_of_database(folder);
    // Something stands where the desktop's program has to write.
    std::filesystem::create_directories(folder.At("/home/data/mime/magic.new/x"));
    EXPECT_NE(BMimeType("x-test/fails").Install(), B_OK);
    EXPECT_NE(before.SetShortDescription("Changed"), B_OK);
    EXPECT_FALSE(BMimeType("x-test/fails").IsInstalled());
    std::filesystem::remove_all(folder.At("/home/data/mime/magic.new"));
    char text[B_MIME_TYPE_LENGTH];
    EXPECT_EQ(before.GetShortDescription(text), B_OK);
    EXPECT_STREQ(text, "As it was");
    EXPECT_EQ(output_of("update-mime-database " + folder.At("/home/data/mime") + " 2>&1"), "");
    EXPECT_EQ(parts_of_database(folder), parts);
    EXPECT_EQ(BMimeType("x-test/fails").Install(), B_OK);
}

TEST(MimeType, NamesThatNoFileCanHaveAreNotInstalled)
{
    DesktopFolder folder;
    for (const char* type :
         {"../evil", ".hidden/x", "x/..", "packages/mine", "packages", "x/\x01", "x/\xff"}) {
        ASSERT_TRUE(BMimeType::IsValid(type)) << type;
        EXPECT_EQ(BMimeType(type).Install(), B_BAD_VALUE) << type;
        EXPECT_FALSE(BMimeType(type).IsInstalled()) << type;
    }
    EXPECT_EQ(BMimeType("only-super").Install(), B_OK);
    EXPECT_TRUE(BMimeType("Only-Super").IsInstalled());
    EXPECT_EQ(BMimeType("only-super").SetShortDescription("super"), B_OK);
    EXPECT_EQ(BMimeType("only-super").Delete(), B_OK);
    EXPECT_FALSE(BMimeType("only-super").IsInstalled());
}

TEST(MimeType, FailuresOfTheHostLeaveEverythingAsItWas)
{
    DesktopFolder folder;
    setenv("PATH", "/nowhere", 1);
    EXPECT_NE(BMimeType("x-test/unmade").Install(), B_OK);
    EXPECT_FALSE(BMimeType("x-test/unmade").IsInstalled());
    EXPECT_TRUE(std::filesystem::is_empty(folder.At("/home/data/mime/packages")));
    std::filesystem::remove_all(folder.At("/home/data/mime"));
    folder.Put("/home/data/mime", "a file in the way");
    EXPECT_NE(BMimeType("x-test/unmade").Install(), B_OK);
    EXPECT_NE(errno, 0);
    folder.PutEntry(folder.SystemEntry("one.desktop"), "one");
    std::filesystem::create_directory(folder.At("/home/config/mimeapps.list"));
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("application/x-vnd.desktop.one"),
              B_IS_A_DIRECTORY);
    EXPECT_EQ(errno, EISDIR);
    for (const auto& entry : std::filesystem::directory_iterator(folder.At("/home/config")))
        EXPECT_TRUE(entry.path().filename() == "mimeapps.list" && entry.is_directory()) << entry;
}

TEST(MimeType, SnifferRuleTellsTheTypeByContent)
{
    DesktopFolder folder;
    const struct {
        const char* rule;
        const char* matching;
        const char* other;
    } rows[] = {
        {"0.95 ('QqMagicOne')", "QqMagicOne.", "-QqMagicOne"},
        {"0.95 [2:6] (\"ZzA\" | \"ZzB\")", "....ZzB", ".......ZzB"},
        {"0.95 (-i 'wxyzwxyz')", "WXyzWxYZ", "WXyz.xYZ"},
        {"0.95 ([0] 'Kk7k7k7' | [4] 'Kk8k8k8')", "....Kk8k8k8", "Kk8k8k8...."},
        {"0.95 ('Vv1v1') [8] ('Uu2u2')", "Vv1v1...Uu2u2", "Vv1v1...Uu3u3"},
        {"0.95 (0x4A6A5a6A & 0xFFF0FFFF \"\")", nullptr, nullptr},
        {"0.95 (0x516a5170 & 0xFFFFFFF0)", "Qj\x51\x7f", "Qj\x51\x6f"},
        {"0.95 ('\\121\\x67\\tRr5')", "Qg\tRr5", "Qg Rr5"},
    };
    int number = 0;
    for (const auto& row : rows) {
        const std::string name = "x-sniff/t" + std::to_string(number++);
        BMimeType type(name.c_str());
        if (row.matching == nullptr) {
            EXPECT_EQ(type.SetSnifferRule(row.rule), B_BAD_MIME_SNIFFER_RULE) << row.rule;
            continue;
        }
        EXPECT_EQ(type.SetSnifferRule(row.rule), B_OK) << row.rule;
        EXPECT_TRUE(type == guessed(row.matching).c_str()) << row.rule;
        EXPECT_FALSE(type == guessed(row.other).c_str()) << row.rule;
        BString kept;
        EXPECT_EQ(type.GetSnifferRule(&kept), B_OK);
        EXPECT_STREQ(kept.String(), row.rule);
    }
    const std::string file = folder.Put("/sniffed", "Vv1v1...Uu2u2");
    EXPECT_EQ(output_of("gio info -a standard::content-type " + file + " | tail -1"),
              "  standard::content-type: x-sniff/t4");
}

static std::string guess_of(const std::string& bytes)
{
    BMimeType guess;
    EXPECT_EQ(BMimeType::GuessMimeType(bytes.data(), static_cast<int32>(bytes.size()), &guess),
              B_OK);
    return guess.Type();
}

TEST(MimeType, ReplacedSnifferRuleMatchesNoMore)
{
    DesktopFolder folder;
    BMimeType type("x-sniff/changing");
    ASSERT_EQ(type.SetSnifferRule("0.9 ('Qq1q')"), B_OK);
    EXPECT_EQ(guess_of("Qq1q..."), "x-sniff/changing");
    ASSERT_EQ(type.SetSnifferRule("0.9 ('Qq2q')"), B_OK);
    EXPECT_EQ(guess_of("Qq1q..."), "text/plain");
    EXPECT_EQ(guess_of(std::string("Qq1q\0", 5)), "application/octet-stream");
    EXPECT_EQ(guess_of("Qq2q..."), "x-sniff/changing");
    BMimeType other("x-sniff/other");
    ASSERT_EQ(other.SetSnifferRule("0.2 [0:2] ('q1q' | 'Q1Q')"), B_OK);
    EXPECT_EQ(guess_of("Qq1q..."), "x-sniff/other");
    ASSERT_EQ(type.SetSnifferRule(nullptr), B_OK);
    EXPECT_EQ(guess_of("Qq2q..."), "text/plain");
    const std::string file = folder.Put("/sniffed", "Qq2q...");
    entry_ref ref;
    ASSERT_EQ(get_ref_for_path(file.c_str(), &ref), B_OK);
    BMimeType guess;
    EXPECT_EQ(BMimeType::GuessMimeType(&ref, &guess), B_OK);
    EXPECT_STREQ(guess.Type(), "text/plain");
}

TEST(MimeType, ChangedAndDeletedTypesAreGuessedAsTheyAreNow)
{
    DesktopFolder folder;
    BMimeType type("x-sniff/deleted");
    ASSERT_EQ(type.SetSnifferRule("0.9 ('Qq3q')"), B_OK);
    BMessage extensions;
    extensions.AddString("extensions", "qq3");
    ASSERT_EQ(type.SetFileExtensions(&extensions), B_OK);
    BMimeType guess;
    EXPECT_EQ(BMimeType::GuessMimeType("a.qq3", &guess), B_OK);
    EXPECT_STREQ(guess.Type(), "x-sniff/deleted");
    EXPECT_EQ(guess_of("Qq3q..."), "x-sniff/deleted");
    BMessage others;
    others.AddString("extensions", "qq4");
    ASSERT_EQ(type.SetFileExtensions(&others), B_OK);
    EXPECT_EQ(BMimeType::GuessMimeType("a.qq3", &guess), B_OK);
    EXPECT_STREQ(guess.Type(), "application/octet-stream");
    EXPECT_EQ(BMimeType::GuessMimeType("a.QQ4", &guess), B_OK);
    EXPECT_STREQ(guess.Type(), "x-sniff/deleted");
    BMimeType heir("x-sniff/heir");
    ASSERT_EQ(heir.SetFileExtensions(&extensions), B_OK);
    EXPECT_EQ(BMimeType::GuessMimeType("a.qq3", &guess), B_OK);
    EXPECT_STREQ(guess.Type(), "x-sniff/heir");
    ASSERT_EQ(type.Delete(), B_OK);
    EXPECT_EQ(guess_of("Qq3q..."), "text/plain");
    EXPECT_EQ(guess_of(std::string("Qq3q\0", 5)), "application/octet-stream");
    EXPECT_EQ(BMimeType::GuessMimeType("a.qq4", &guess), B_OK);
    EXPECT_STREQ(guess.Type(), "application/octet-stream");
}

TEST(MimeType, PrioritiesAndRangesAreNumbersOfEveryForm)
{
    DesktopFolder folder;
    const struct {
        const char *rule, *bytes;
        bool is_match;
    } kRows[] = {
        {"+1 ('Nn1n')", "Nn1n", true},
        {"+.003e2 ('Nn2n')", "Nn2n", true},
        {"3E-1 ('Nn3n')", "Nn3n", true},
        {"1. ('Nn4n')", "Nn4n", true},
        {"+0.9 [+1:+2] ('n5n')", "Nn5n", true},
        {"0.9 [-3:1] ('n6n')", "Nn6n", true},
        {"0.9 [-3:0] ('n7n')", "Nn7n", false},
        {"0.9 [-3:-1] ('Nn8n')", "Nn8n", false},
        {"0.9 ([-1] 'Nn9n' | [1] 'n9n')", "Nn9n", true},
    };
    int number = 0;
    for (const auto& row : kRows) {
        const std::string name = "x-sniff/n" + std::to_string(number++);
        EXPECT_EQ(BMimeType::CheckSnifferRule(row.rule, nullptr), B_OK) << row.rule;
        EXPECT_EQ(BMimeType(name.c_str()).SetSnifferRule(row.rule), B_OK) << row.rule;
        EXPECT_EQ(guess_of(row.bytes) == name, row.is_match) << row.rule;
    }
    EXPECT_EQ(BMimeType::CheckSnifferRule("-0.0 ('a')", nullptr), B_OK);
    for (const char* rule :
         {"-1 ('a')", "-.1 ('a')", "+ ('a')", "1e ('a')", "e1 ('a')", "1e1 ('a')", "0x1 ('a')",
          "inf ('a')", "0.5 [1:-1] ('a')", "0.5 [-] ('a')", "0.5 [--1] ('a')", "1e999 ('a')"})
        EXPECT_EQ(BMimeType::CheckSnifferRule(rule, nullptr), B_BAD_MIME_SNIFFER_RULE) << rule;
}

TEST(MimeType, FaultySnifferRulesSayWhereAndWhy)
{
    for (const char* rule : {"",
                             "(",
                             "0.5",
                             "1.5 ('a')",
                             ". ('a')",
                             "0.5 'a'",
                             "0.5 ()",
                             "0.5 ('')",
                             "0.5 ('a'",
                             "0.5 ('a)",
                             "0.5 ('a' |)",
                             "0.5 [3:1] ('a')",
                             "0.5 [a] ('a')",
                             "0.5 [99999999999] ('a')",
                             "0.5 [1 ('a')",
                             "0.5 (0x)",
                             "0.5 (0xabc)",
                             "0.5 ('ab' & 'a')",
                             "0.5 (-x 'a')",
                             "0.5 ('\\777')",
                             "0.5 ('a\\",
                             "x",
                             "0.5x ('a')"}) {
        BString error;
        EXPECT_EQ(BMimeType::CheckSnifferRule(rule, &error), B_BAD_MIME_SNIFFER_RULE) << rule;
        EXPECT_GT(error.Length(), 0) << rule;
        EXPECT_EQ(BMimeType::CheckSnifferRule(rule, nullptr), B_BAD_MIME_SNIFFER_RULE);
    }
    EXPECT_EQ(BMimeType::CheckSnifferRule(nullptr, nullptr), B_BAD_VALUE);
    EXPECT_EQ(BMimeType::CheckSnifferRule("  1 [0:5]( -i GIF | 0xFFD8 )", nullptr), B_OK);
}

TEST(MimeType, PreferredAppIsTheDesktopsChoiceBothWays)
{
    DesktopFolder folder;
    folder.PutEntry(folder.SystemEntry("one.desktop"), "one", "MimeType=text/plain;\n");
    folder.PutEntry(folder.SystemEntry("two.desktop"), "two",
                    "X-BeOS-Signature=application/x-vnd.Two\n");
    EXPECT_EQ(preferred("text/plain"), "application/x-vnd.desktop.one");
    EXPECT_EQ(preferred("image/png"), "");
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("Application/X-vnd.two"), B_OK);
    EXPECT_EQ(preferred("text/plain"), "application/x-vnd.Two");
    EXPECT_EQ(output_of("xdg-mime query default text/plain"), "two.desktop");
    EXPECT_NE(output_of("gio mime text/plain").find("two.desktop"), std::string::npos);
    EXPECT_EQ(output_of("xdg-mime default one.desktop text/plain image/png"), "");
    EXPECT_EQ(preferred("text/plain"), "application/x-vnd.desktop.one");
    EXPECT_EQ(preferred("image/png"), "application/x-vnd.desktop.one");
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("application/x-vnd.two"), B_OK);
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp(nullptr), B_OK);
    EXPECT_EQ(output_of("gio mime text/plain | head -1 | grep -o 'one.desktop\\|two.desktop'"),
              "two.desktop");  // still the association that was last added
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("no signature"), B_BAD_VALUE);
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp(std::string(300, 'x').c_str()), B_BAD_VALUE);
}

TEST(MimeType, PreferredAppThatTheDesktopDoesNotKnowIsKeptUntilItsUserChooses)
{
    DesktopFolder folder;
    folder.PutEntry(folder.SystemEntry("one.desktop"), "one", "MimeType=text/plain;\n");
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("application/x-vnd.Nowhere"), B_OK);
    EXPECT_EQ(preferred("text/plain"), "application/x-vnd.Nowhere");
    EXPECT_EQ(BMimeType("text").SetPreferredApp("application/x-vnd.desktop.one"), B_OK);
    EXPECT_EQ(preferred("text"), "application/x-vnd.desktop.one");
    output_of("xdg-mime default one.desktop text/plain");
    EXPECT_EQ(preferred("text/plain"), "application/x-vnd.desktop.one");
    EXPECT_EQ(BMimeType("text/x-new").SetPreferredApp("application/x-vnd.Nowhere"), B_OK);
    EXPECT_TRUE(BMimeType("text/x-new").IsInstalled());
    EXPECT_EQ(BMimeType("text/x-new").Delete(), B_OK);
    EXPECT_EQ(BMimeType("text/x-new").Install(), B_OK);
    EXPECT_EQ(preferred("text/x-new"), "application/x-vnd.desktop.one");  // a kind of text
    // Nor can the desktop's list hold this one, which would be a comment there.
    EXPECT_EQ(BMimeType("#odd/type").SetPreferredApp("application/x-vnd.desktop.one"), B_OK);
    EXPECT_EQ(preferred("#odd/type"), "application/x-vnd.desktop.one");
    EXPECT_EQ(text_of(folder.At("/home/config/mimeapps.list")).find('#'), std::string::npos);
}

TEST(MimeType, ListOfChoicesKeepsAllThatOthersWrote)
{
    DesktopFolder folder;
    folder.PutEntry(folder.SystemEntry("one.desktop"), "one", "MimeType=text/plain;\n");
    folder.PutEntry(folder.SystemEntry("two.desktop"), "two");
    const std::string list = folder.At("/home/config/mimeapps.list");
    std::filesystem::create_directories(folder.At("/dotfiles"));
    folder.Put(
        "/dotfiles/list",
        "# by hand\n\n[Default Applications]\n# pictures\n"
        "image/png=one.desktop\nText/Plain = a.desktop;b.desktop;\n\n[Removed Associations]\n"
        "text/plain=two.desktop;x.desktop;\nimage/gif=two.desktop\n\n"
        "[Foreign]\nkey[de]=\xc3\xa4;\n");
    std::filesystem::create_symlink(folder.At("/dotfiles/list"), list);
    std::filesystem::permissions(folder.At("/dotfiles/list"), std::filesystem::perms(0640));
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("application/x-vnd.desktop.two"), B_OK);
    EXPECT_EQ(text_of(list),
              "# by hand\n\n[Default Applications]\n# pictures\n"
              "image/png=one.desktop\nText/Plain=two.desktop\n\n[Removed Associations]\n"
              "text/plain=x.desktop;\nimage/gif=two.desktop\n\n[Foreign]\nkey[de]=\xc3\xa4;\n\n"
              "[Added Associations]\ntext/plain=two.desktop;\n");
    EXPECT_TRUE(std::filesystem::is_symlink(list));
    EXPECT_EQ(std::filesystem::status(list).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(BMimeType("image/gif").SetPreferredApp("application/x-vnd.desktop.two"), B_OK);
    EXPECT_EQ(text_of(list).find("image/gif=two.desktop\n\n[Foreign]"), std::string::npos);
    EXPECT_EQ(output_of("xdg-mime query default image/gif"), "two.desktop");
}

// True where the host can make readers of a file wait.
static bool has_leases(const std::string& path)
{
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    const bool granted = fcntl(file, F_SETLEASE, F_WRLCK) == 0;
    close(file);
    return granted;
}

TEST(MimeType, ListOfChoicesLosesNothingToProgramsThatWriteAtTheSameTime)
{
    DesktopFolder folder;
    if (!has_leases(folder.At("/lease")))
        GTEST_SKIP() << "without leases a program that writes all the time can read a former text";
    folder.PutEntry(folder.SystemEntry("one.desktop"), "one");
    const std::string list = folder.At("/home/config/mimeapps.list");
    folder.Put("/home/config/mimeapps.list", "[Default Applications]\n");
    // The other adds its lines as most programs do: it reads, and renames a new file over the old.
    static const int kLines = 800;
    std::atomic<bool> done = false;
    std::set<std::string> written;
    std::thread other([&] {
        for (int i = 0; i < kLines || !done; i++) {
            if (i >= kLines) {
                usleep(100);
                continue;
            }
            const std::string line = "x-theirs/t" + std::to_string(i) + "=one.desktop\n";
            const std::string text = text_of(list) + line;
            std::ofstream(list + ".theirs") << text;
            rename((list + ".theirs").c_str(), list.c_str());
            written.insert(line);
        }
    });
    for (int i = 0; i < 100; i++) {
        const char* const types[] = {"text/plain", "image/png", "audio/mpeg"};
        const char* app = i % 2 == 0 ? "application/x-vnd.desktop.one" : nullptr;
        EXPECT_EQ(BMimeType(types[i % 3]).SetPreferredApp(app), B_OK);
    }
    done = true;
    other.join();
    const std::string text = text_of(list);
    size_t lost = 0;
    for (const std::string& line : written)
        lost += text.find(line) == std::string::npos ? 1 : 0;
    EXPECT_EQ(lost, 0u);
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("application/x-vnd.desktop.one"), B_OK);
    EXPECT_EQ(output_of("xdg-mime query default text/plain"), "one.desktop");
    EXPECT_NE(output_of("gio mime text/plain").find("one.desktop"), std::string::npos);
    for (const auto& entry : std::filesystem::directory_iterator(folder.At("/home/config")))
        EXPECT_EQ(entry.path().filename(), "mimeapps.list");
}

TEST(MimeType, SupportingAppsTellHowManyAreForTheTypeItself)
{
    DesktopFolder folder;
    folder.PutEntry(folder.SystemEntry("a.desktop"), "a", "MimeType=text/x-python;text/plain;\n");
    folder.PutEntry(folder.SystemEntry("b.desktop"), "b", "MimeType=text/plain;\n");
    folder.PutEntry(folder.SystemEntry("w.desktop"), "w", "MimeType=application/octet-stream;\n");
    BMessage apps;
    EXPECT_EQ(BMimeType("text/x-python").GetSupportingApps(&apps), B_OK);
    EXPECT_EQ(apps.FindInt32("be:sub"), 1);
    EXPECT_EQ(apps.FindInt32("be:super"), 1);
    EXPECT_STREQ(apps.FindString("applications", 0), "application/x-vnd.desktop.a");
    EXPECT_STREQ(apps.FindString("applications", 1), "application/x-vnd.desktop.b");
    BMessage wildcard;
    EXPECT_EQ(BMimeType::GetWildcardApps(&wildcard), B_OK);
    EXPECT_STREQ(wildcard.FindString("applications", 0), "application/x-vnd.desktop.w");
}

TEST(MimeType, AppHintOfASignatureIsWhereItsProgramIs)
{
    DesktopFolder folder;
    const std::string program = folder.PutEntry(folder.SystemEntry("one.desktop"), "one");
    entry_ref ref;
    EXPECT_EQ(BMimeType("application/x-vnd.desktop.one").GetAppHint(&ref), B_OK);
    EXPECT_EQ(BPath(&ref).Path(), program);
    EXPECT_EQ(BMimeType("text/plain").GetAppHint(&ref), B_ENTRY_NOT_FOUND);
    const std::string odd = folder.Put("/odd \xff;name=[1]");
    EXPECT_EQ(get_ref_for_path(odd.c_str(), &ref), B_OK);
    EXPECT_EQ(BMimeType("text/plain").SetAppHint(&ref), B_OK);
    entry_ref back;
    EXPECT_EQ(BMimeType("text/plain").GetAppHint(&back), B_OK);
    EXPECT_EQ(BPath(&back).Path(), odd);
    EXPECT_EQ(BMimeType("text/plain").SetAppHint(nullptr), B_OK);
    EXPECT_EQ(BMimeType("text/plain").GetAppHint(&ref), B_ENTRY_NOT_FOUND);
}

TEST(MimeType, AttrInfoAndLongTextsAreKeptOrRefusedWhole)
{
    DesktopFolder folder;
    BMimeType type("text/plain");
    BMessage info('info');
    info.AddString("attr:name", "BEOS:AUTHOR");
    info.AddInt32("attr:width", 60);
    EXPECT_EQ(type.SetAttrInfo(&info), B_OK);
    BMessage back;
    EXPECT_EQ(type.GetAttrInfo(&back), B_OK);
    EXPECT_TRUE(back.HasSameData(info));
    EXPECT_EQ(type.SetAttrInfo(nullptr), B_OK);
    EXPECT_EQ(type.GetAttrInfo(&back), B_ENTRY_NOT_FOUND);
    // Somebody cut what is kept: no message is made of its remains.
    std::string whole(static_cast<size_t>(info.FlattenedSize()), '\0');
    EXPECT_EQ(info.Flatten(whole.data(), info.FlattenedSize()), B_OK);
    for (const size_t left : {size_t(0), size_t(4), whole.size() / 2, whole.size() - 1}) {
        char* text = g_base64_encode(reinterpret_cast<const guchar*>(whole.data()), left);
        folder.Put("/home/data/beos/types.ini", std::string("[text/plain]\nAttrInfo=") + text);
        g_free(text);
        EXPECT_EQ(type.GetAttrInfo(&back), B_BAD_VALUE) << left;
        EXPECT_EQ(errno, EINVAL);
    }
    std::filesystem::remove(folder.At("/home/data/beos/types.ini"));
    EXPECT_EQ(type.SetShortDescription(std::string(239, 'd').c_str()), B_OK);
    EXPECT_EQ(type.SetShortDescription(std::string(240, 'd').c_str()), B_BAD_VALUE);
    EXPECT_EQ(type.SetShortDescription("no \xff text"), B_BAD_VALUE);
    char text[B_MIME_TYPE_LENGTH];
    EXPECT_EQ(type.GetShortDescription(text), B_OK);
    EXPECT_EQ(strlen(text), 239u);
    EXPECT_EQ(type.SetShortDescription(nullptr), B_OK);
    EXPECT_EQ(type.GetShortDescription(text), B_OK);
    EXPECT_STREQ(text, "plain text document");
}

// "which action type extra large", or "none" if nothing arrives.
static std::string told(const BMessage& message)
{
    if (message.what != B_META_MIME_CHANGED)
        return "none";
    std::string text = std::to_string(message.FindInt32("be:which"));
    text += message.FindInt32("be:action") == B_META_MIME_DELETED ? " - " : " + ";
    text += message.FindString("be:type");
    if (message.HasString("be:extra_type"))
        text += std::string(" ") + message.FindString("be:extra_type");
    if (message.HasBool("be:large_icon"))
        text += message.FindBool("be:large_icon") ? " large" : " mini";
    return text;
}

TEST(MimeType, WatchersAreToldWhatWeAndOthersChange)
{
    DesktopFolder folder;
    folder.PutEntry(folder.SystemEntry("one.desktop"), "one");
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->Run();
    const BMessenger target(looper);
    EXPECT_EQ(BMimeType::StartWatching(BMessenger()), B_BAD_VALUE);
    EXPECT_EQ(BMimeType::StopWatching(target), B_BAD_VALUE);
    EXPECT_EQ(BMimeType::StartWatching(target), B_OK);
    BMimeType type("x-watched/kind");
    EXPECT_EQ(type.Install(), B_OK);
    EXPECT_EQ(told(mail.Take()), "256 + x-watched/kind");
    EXPECT_EQ(type.SetShortDescription("words"), B_OK);
    EXPECT_EQ(told(mail.Take()), "16 + x-watched/kind");
    BMessage extensions;
    extensions.AddString("extensions", "watched");
    EXPECT_EQ(type.SetFileExtensions(&extensions), B_OK);
    EXPECT_EQ(told(mail.Take()), "8 + x-watched/kind");
    EXPECT_EQ(type.SetShortDescription(nullptr), B_OK);
    EXPECT_EQ(told(mail.Take()), "16 - x-watched/kind");
    BBitmap icon(BRect(0, 0, 31, 31), B_RGBA32);
    EXPECT_EQ(type.SetIcon(&icon, B_LARGE_ICON), B_OK);
    EXPECT_EQ(told(mail.Take()), "1 + x-watched/kind large");
    EXPECT_EQ(type.SetIconForType("text/plain", &icon, B_LARGE_ICON), B_OK);
    EXPECT_EQ(told(mail.Take()), "64 + x-watched/kind text/plain large");
    output_of("xdg-mime default one.desktop x-watched/kind");
    EXPECT_EQ(told(mail.Take()), "2 + x-watched/kind");
    EXPECT_EQ(BMimeType("text/plain").SetPreferredApp("application/x-vnd.Unknown"), B_OK);
    EXPECT_EQ(told(mail.Take()), "2 + text/plain");
    EXPECT_EQ(type.Delete(), B_OK);
    std::string last;  // what the type had goes first
    while (last != "512 + x-watched/kind" && last != "none")
        last = told(mail.Take());
    EXPECT_EQ(last, "512 + x-watched/kind");
    EXPECT_EQ(BMimeType::StopWatching(target), B_OK);
    EXPECT_EQ(BMimeType::StopWatching(target), B_BAD_VALUE);
    if (looper->Lock())
        looper->Quit();
}
