// Desktop entries as applications: signatures, programs, commands, and what opens which type.

#include "storage/desktop/DesktopEntries.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "storage/mime/MimeNames.h"
#include "support/desktop_folder.h"

using namespace storage;
using Words = std::vector<std::string>;

static std::string id_of(const ApplicationRef& application)
{
    return application != nullptr ? application->id : "";
}

static std::string ids_of(const std::vector<ApplicationRef>& applications)
{
    std::string ids;
    for (const ApplicationRef& application : applications)
        ids += application->id + " ";
    return ids;
}

TEST(DesktopEntries, IdsAndSignaturesNameEachOther)
{
    for (const char* id : {"vim", "org.example.Editor", "wine-Programs-a b (x86)", "100%", "%41",
                           "caf\xc3\xa9", "x;y,z=\"q\"[?]"}) {
        const std::string whole = std::string(id) + ".desktop";
        const std::string signature = signature_of_id(whole);
        EXPECT_TRUE(is_mime_name(signature.c_str())) << signature;
        EXPECT_EQ(id_of_signature(signature), whole);
    }
    EXPECT_EQ(signature_of_id("vim.desktop"), "application/x-vnd.desktop.vim");
    EXPECT_EQ(signature_of_id(std::string(230, 'x')), "");
    EXPECT_EQ(id_of_signature("application/x-vnd.Be-STEE"), "");
    EXPECT_EQ(id_of_signature("application/x-vnd.desktop."), "");
}

TEST(DesktopEntries, SignatureFindsTheEntryWithItsKeyElseTheOneWithItsId)
{
    DesktopFolder folder;
    const std::string stee = folder.PutEntry(
        folder.SystemEntry("stee.desktop"), "stee",
        "X-BeOS-Signature=application/x-vnd.Be-STEE\nIcon=text-editor\nName[de]=St\n");
    folder.PutEntry(folder.SystemEntry("plain.desktop"), "plain");
    folder.PutEntry(folder.SystemEntry("bad.desktop"), "bad", "X-BeOS-Signature=no signature\n");
    const ApplicationRef found = find_application("Application/X-vnd.be-stee");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->id, "stee.desktop");
    EXPECT_EQ(found->path, folder.At("/system/applications/stee.desktop"));
    EXPECT_EQ(found->signature, "application/x-vnd.Be-STEE");
    EXPECT_EQ(found->executable, stee);
    EXPECT_EQ(found->name, "stee");
    EXPECT_EQ(found->icon, "text-editor");
    EXPECT_EQ(id_of(find_application("application/x-vnd.desktop.stee")), "stee.desktop");
    EXPECT_EQ(id_of(find_application("application/x-vnd.desktop.plain")), "plain.desktop");
    EXPECT_EQ(find_application("application/x-vnd.desktop.bad")->signature,
              "application/x-vnd.desktop.bad");
    EXPECT_EQ(find_application("application/x-vnd.desktop.none"), nullptr);
    EXPECT_EQ(find_application(""), nullptr);
}

TEST(DesktopEntries, ChangesAreSeenWithTheNextCall)
{
    DesktopFolder folder;
    EXPECT_TRUE(all_applications().empty());
    // The user has no folder of entries before this one, nor the folder in it.
    folder.PutEntry(folder.UserEntry("deep/er/one.desktop"), "one");
    EXPECT_EQ(ids_of(all_applications()), "deep-er-one.desktop ");
    folder.PutEntry(folder.UserEntry("deep/er/two.desktop"), "two");
    EXPECT_EQ(ids_of(all_applications()), "deep-er-one.desktop deep-er-two.desktop ");
    std::filesystem::remove_all(folder.At("/home/data/applications/deep"));
    EXPECT_TRUE(all_applications().empty());
    for (int i = 0; i < 50; i++) {
        const std::string name = std::to_string(i);
        folder.PutEntry(folder.SystemEntry("new.desktop"), name);
        ASSERT_EQ(find_application_by_id("new.desktop")->name, name);
    }
}

TEST(DesktopEntries, UsersEntryReplacesOrHidesTheSystems)
{
    DesktopFolder folder;
    folder.PutEntry(folder.SystemEntry("a.desktop"), "system-a");
    folder.PutEntry(folder.SystemEntry("b.desktop"), "system-b");
    folder.PutEntry(folder.UserEntry("a.desktop"), "own-a");
    folder.PutEntry(folder.UserEntry("b.desktop"), "own-b", "Hidden=true\n");
    folder.PutEntry(folder.SystemEntry("gone.desktop"), "gone", "", "/no/such/program %f");
    folder.PutEntry(folder.SystemEntry("tried.desktop"), "tried", "TryExec=/no/such/program\n");
    folder.Put("/system/applications/broken.desktop", "Name=1\n[Desktop");
    folder.Put("/system/applications/link.desktop", "[Desktop Entry]\nType=Link\nURL=x:y\n");
    EXPECT_EQ(ids_of(all_applications()), "a.desktop ");
    EXPECT_EQ(find_application("application/x-vnd.desktop.a")->name, "own-a");
    EXPECT_EQ(find_application("application/x-vnd.desktop.b"), nullptr);
}

TEST(DesktopEntries, ExecutableFindsTheEntryThatStandsForIt)
{
    DesktopFolder folder;
    const std::string editor = folder.PutEntry(folder.SystemEntry("z.desktop"), "editor");
    folder.PutEntry(folder.SystemEntry("a.desktop"), "x", "", editor + " --new %F");
    folder.PutEntry(folder.SystemEntry("b.desktop"), "y", "", editor + " script.ed %F");
    const std::string env = folder.PutEntry(folder.SystemEntry("e.desktop"), "envied", "",
                                            "env A=b C=d " + folder.At("/bin/envied") + " -q %u");
    std::filesystem::create_symlink(editor, folder.At("/bin/alias"));
    EXPECT_EQ(id_of(find_application_of(editor)), "z.desktop");
    EXPECT_EQ(id_of(find_application_of(folder.At("/bin/alias"))), "z.desktop");
    EXPECT_EQ(id_of(find_application_of(env)), "e.desktop");
    folder.PutEntry(folder.SystemEntry("p.desktop"), "100%", "",
                    "\"" + folder.At("/bin/100%%") + "\" %F");
    EXPECT_EQ(id_of(find_application_of(folder.At("/bin/100%"))), "p.desktop");
    EXPECT_EQ(find_application_of(folder.At("/bin/y")), nullptr);
    EXPECT_EQ(find_application_of(""), nullptr);
}

TEST(DesktopEntries, CommandsReplaceTheFieldCodes)
{
    DesktopFolder folder;
    const Words files = {"/a b", "/c%"};
    const struct {
        const char* arguments;
        std::vector<Words> none;
        std::vector<Words> two;
    } rows[] = {
        {"", {{}}, {{"/a b", "/c%"}}},
        {"-x %F", {{"-x"}}, {{"-x", "/a b", "/c%"}}},
        {"%U", {{}}, {{"file:///a%20b", "file:///c%25"}}},
        {"--f=%f", {{"--f="}}, {{"--f=/a b"}, {"--f=/c%"}}},
        {"%u -z", {{"-z"}}, {{"file:///a%20b", "-z"}, {"file:///c%25", "-z"}}},
        {"%i %c %% \"q \\\\$ %%\" %d%m",
         {{"--icon", "pic", "app", "%", "q $ %"}},
         {{"--icon", "pic", "app", "%", "q $ %", "/a b", "/c%"}}},
    };
    for (const auto& row : rows) {
        const std::string program = folder.At("/bin/app");
        folder.PutEntry(folder.SystemEntry("app.desktop"), "app", "Icon=pic\n",
                        program + " " + row.arguments);
        const ApplicationRef application = find_application_by_id("app.desktop");
        ASSERT_NE(application, nullptr) << row.arguments;
        std::vector<Words> none = commands_for(*application, {});
        std::vector<Words> two = commands_for(*application, files);
        for (std::vector<Words>* lines : {&none, &two}) {
            for (Words& line : *lines) {
                EXPECT_EQ(line.front(), program);
                line.erase(line.begin());
            }
        }
        EXPECT_EQ(none, row.none) << row.arguments;
        EXPECT_EQ(two, row.two) << row.arguments;
    }
}

TEST(DesktopEntries, TypeOpensWithTheUsersChoiceElseTheSystemsElseWhoTellsIt)
{
    DesktopFolder folder;
    folder.PutEntry(folder.SystemEntry("teller.desktop"), "teller",
                    "MimeType=Text/X-Python;x/y;\n");
    folder.PutEntry(folder.SystemEntry("plain.desktop"), "plain", "MimeType=text/plain;\n");
    folder.PutEntry(folder.SystemEntry("other.desktop"), "other");
    EXPECT_EQ(id_of(default_application("text/x-python")), "teller.desktop");
    EXPECT_EQ(id_of(default_application("text/x-perl")), "plain.desktop");  // a kind of text
    EXPECT_EQ(ids_of(applications_for("text/x-perl")), "");
    EXPECT_EQ(ids_of(applications_for_parents("text/x-perl")), "plain.desktop ");
    EXPECT_EQ(id_of(default_application("image/png")), "");

    folder.Put("/system/applications/mimeapps.list",
               "[Default Applications]\ntext/x-python=gone.desktop;plain.desktop;\n");
    EXPECT_EQ(ids_of(applications_for("text/x-python")), "plain.desktop teller.desktop ");
    folder.Put("/home/config/mimeapps.list",
               "# mine\n[Default Applications]\n"
               "text/x-python = other.desktop\n[Removed Associations]\nx/y=teller.desktop;\n"
               "[Added Associations]\nimage/png=plain.desktop\n");
    EXPECT_EQ(id_of(default_application("TEXT/x-python")), "other.desktop");
    EXPECT_EQ(id_of(default_application("image/png")), "plain.desktop");
    EXPECT_EQ(id_of(default_application("x/y")), "");
    std::filesystem::remove(folder.At("/home/config/mimeapps.list"));
    EXPECT_EQ(id_of(default_application("text/x-python")), "plain.desktop");
}
