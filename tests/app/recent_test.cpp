// Recent documents, folders and applications, shared with the desktop's other programs.

#include <gtest/gtest.h>

#include <Entry.h>
#include <Message.h>
#include <Path.h>
#include <Roster.h>

#include <errno.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <set>

#include <gio/gio.h>

#include "support/desktop_folder.h"
#include "support/probe.h"

using Texts = std::vector<std::string>;

static const char* const kWriter = "application/x-vnd.Test-Writer";
static const char* const kReader = "application/x-vnd.Test-Reader";

static Texts paths_in(const BMessage& list)
{
    Texts paths;
    entry_ref ref;
    for (int32 i = 0; list.FindRef("refs", i, &ref) == B_OK; ++i)
        paths.push_back(BPath(&ref).Path());
    return paths;
}

static Texts documents(const char* type = nullptr, const char* signature = nullptr,
                       int32 count = 64)
{
    BMessage list('old ');
    list.AddInt32("old", 1);
    be_roster->GetRecentDocuments(&list, count, type, signature);
    EXPECT_FALSE(list.HasInt32("old"));
    return paths_in(list);
}

static Texts folders(const char* signature = nullptr)
{
    BMessage list;
    be_roster->GetRecentFolders(&list, 64, signature);
    return paths_in(list);
}

static void add(const std::string& path, const char* signature = kWriter)
{
    entry_ref ref;
    ASSERT_EQ(B_OK, get_ref_for_path(path.c_str(), &ref));
    be_roster->AddToRecentDocuments(&ref, signature);
}

// The list as another program reads and writes it.
class List {
public:
    explicit List(const TempFolder& folder)
        : fPath(folder.At("/home/data/recently-used.xbel")), fFile(g_bookmark_file_new())
    {
        fValid = g_bookmark_file_load_from_file(fFile, fPath.c_str(), nullptr);
    }
    ~List() { g_bookmark_file_free(fFile); }
    bool IsValid() const { return fValid; }
    bool Has(const std::string& path) const
    {
        return g_bookmark_file_has_item(fFile, Uri(path).c_str());
    }
    std::string Type(const std::string& path) const
    {
        char* type = g_bookmark_file_get_mime_type(fFile, Uri(path).c_str(), nullptr);
        const std::string text = type != nullptr ? type : "";
        g_free(type);
        return text;
    }
    bool WasAddedBy(const std::string& path, const char* name) const
    {
        return g_bookmark_file_has_application(fFile, Uri(path).c_str(), name, nullptr);
    }
    void Add(const std::string& path, const char* name, bool is_private = false)
    {
        g_bookmark_file_set_mime_type(fFile, Uri(path).c_str(), "text/plain");
        g_bookmark_file_add_application(fFile, Uri(path).c_str(), name, "other %u");
        g_bookmark_file_set_is_private(fFile, Uri(path).c_str(), is_private);
    }
    bool Write() const { return g_bookmark_file_to_file(fFile, fPath.c_str(), nullptr); }
    GBookmarkFile* Get() const { return fFile; }

    static std::string Uri(const std::string& path)
    {
        char* uri = g_filename_to_uri(path.c_str(), nullptr, nullptr);
        const std::string text = uri;
        g_free(uri);
        return text;
    }

private:
    std::string fPath;
    GBookmarkFile* fFile;
    bool fValid;
};

TEST(RecentFiles, NewestFirstEachOnceWithFiltersAndLimit)
{
    DesktopFolder folder;
    const std::string text = folder.Put("/a.txt", "text");
    const std::string page = folder.Put("/b.html", "<html></html>");
    const std::string odd = folder.Put("/c %20\xFF ü.txt", "text");
    EXPECT_EQ(Texts(), documents()) << "there is no list yet";
    for (const std::string& path : {text, page, odd})
        add(path);
    EXPECT_EQ((Texts{odd, page, text}), documents());
    struct stat info = {};
    stat(folder.At("/home/data/recently-used.xbel").c_str(), &info);
    EXPECT_EQ(0600u, info.st_mode & 0777) << "what the user does is told to nobody else";
    add(text, kReader);
    EXPECT_EQ((Texts{text, odd, page}), documents());
    EXPECT_EQ((Texts{text, odd}), documents("text/plain"));
    EXPECT_EQ((Texts{text, odd, page}), documents("text"));
    EXPECT_EQ(Texts{page}, documents("TEXT/html"));
    EXPECT_EQ(Texts(), documents("tex"));
    EXPECT_EQ(Texts{text}, documents(nullptr, "application/x-vnd.test-reader"));
    EXPECT_EQ((Texts{text, odd, page}), documents(nullptr, kWriter)) << "both have added it";
    EXPECT_EQ((Texts{text, odd}), documents(nullptr, nullptr, 2));
    EXPECT_EQ(Texts(), documents(nullptr, nullptr, 0));
    EXPECT_EQ(Texts(), documents(nullptr, nullptr, -1));
    const char* types[] = {"image", nullptr, "text/html"};
    BMessage list;
    be_roster->GetRecentDocuments(&list, 64, types, 3);
    EXPECT_EQ(Texts{page}, paths_in(list));
    std::filesystem::remove(odd);
    EXPECT_EQ((Texts{text, page}), documents()) << "what is gone is left out";
    be_roster->GetRecentDocuments(nullptr, 64);
    be_roster->AddToRecentDocuments(nullptr);
}

TEST(RecentFiles, NoneWaitsForATypeThatIsBeingInstalled)
{
    DesktopFolder folder;
    const std::string own = folder.At("/home/data/beos");
    std::filesystem::create_directories(own);
    const int installing = open((own + "/types.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(0, flock(installing, LOCK_EX));
    const std::string text = folder.Put("/a.txt", "text");
    add(text);  // would wait for ever
    EXPECT_EQ(Texts{text}, documents());
    close(installing);
}

TEST(RecentFiles, FoldersAndApplicationsHaveListsOfTheirOwn)
{
    DesktopFolder folder;
    const std::string text = folder.Put("/a.txt", "text");
    add(text);
    entry_ref ref;
    get_ref_for_path(folder.Path().c_str(), &ref);
    be_roster->AddToRecentFolders(&ref, kReader);
    EXPECT_EQ(Texts{folder.Path()}, folders());
    EXPECT_EQ(Texts{folder.Path()}, folders(kReader));
    EXPECT_EQ(Texts(), folders(kWriter));
    EXPECT_EQ("inode/directory", List(folder).Type(folder.Path()));

    get_ref_for_path(probe_path().c_str(), &ref);
    team_id team = -1;
    ASSERT_EQ(B_OK, be_roster->Launch(&ref, 0, nullptr, &team));
    wait_for_thread(team, nullptr);
    BMessage apps;
    be_roster->GetRecentApps(&apps, 64);
    EXPECT_EQ(Texts{probe_path()}, paths_in(apps));
    EXPECT_EQ(Texts{text}, documents());
    EXPECT_TRUE(g_bookmark_file_get_is_private(List(folder).Get(), List::Uri(probe_path()).c_str(),
                                               nullptr));
}

TEST(RecentFiles, OtherProgramsReadOursAndWeTheirs)
{
    DesktopFolder folder;
    const std::string ours = folder.Put("/ours.txt", "text");
    const std::string theirs = folder.Put("/theirs.txt", "text");
    const std::string hidden = folder.Put("/hidden.txt", "text");
    {
        List list(folder);
        list.Add(theirs, "Editor");
        list.Add(hidden, "Editor", true);
        g_bookmark_file_add_application(list.Get(), "https://example.org/", "Browser", "browse %u");
        ASSERT_TRUE(list.Write());
    }
    folder.PutEntry(folder.UserEntry("editor.desktop"), "Editor",
                    "X-BeOS-Signature=application/x-vnd.Test-Editor\n");
    add(ours);
    EXPECT_EQ((Texts{ours, theirs}), documents());
    EXPECT_EQ((Texts{hidden, theirs}), documents(nullptr, "application/x-vnd.Test-Editor"));
    List list(folder);
    ASSERT_TRUE(list.IsValid());
    EXPECT_EQ("text/plain", list.Type(ours));
    EXPECT_TRUE(list.WasAddedBy(ours, kWriter));
    EXPECT_TRUE(list.WasAddedBy(theirs, "Editor"));
    EXPECT_TRUE(g_bookmark_file_has_item(list.Get(), "https://example.org/"));
    char* command = nullptr;
    EXPECT_TRUE(g_bookmark_file_get_application_info(list.Get(), List::Uri(ours).c_str(), kWriter,
                                                     &command, nullptr, nullptr, nullptr));
    EXPECT_NE(nullptr, strstr(command, List::Uri(ours).c_str())) << "the file stands for %u";
    EXPECT_EQ(0, strncmp(command, "'/", 2)) << "from any folder: " << command;
    g_free(command);
}

// GLib itself drops bookmarks that no application has registered, folders of them, comments, and
// what others note.
TEST(RecentFiles, WhatOthersWroteStaysByteForByte)
{
    DesktopFolder folder;
    const std::string text = folder.Put("/a&'b.txt", "text");
    const std::string head =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xbel version=\"1.0\" "
        "xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\" "
        "xmlns:mime=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
        "<!-- <bookmark href=\"file://" +
        folder.Path() + "/a&amp;'b.txt\"></bookmark> -->\n";
    const std::string foreign =
        "<bookmark href=\"https://example.org/?a=1&amp;b='2>\" "
        "added=\"2020-01-01T00:00:00Z\" modified=\"2020-01-01T00:00:00Z\" "
        "visited=\"2020-01-01T00:00:00Z\"><info><metadata owner=\"http://other.example\">"
        "</metadata></info></bookmark>\n";
    folder.Put("/home/data/recently-used.xbel", head + foreign + "</xbel>\n");
    const auto bytes = [&] {
        std::ifstream file(folder.At("/home/data/recently-used.xbel"), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    for (const char* signature : {kWriter, kReader, kWriter}) {
        add(text, signature);
        EXPECT_EQ(Texts{text}, documents());
        EXPECT_TRUE(bytes().starts_with(head + foreign)) << bytes();
        EXPECT_TRUE(List(folder).WasAddedBy(text, signature));
    }
    EXPECT_TRUE(List(folder).WasAddedBy(text, kReader)) << "each keeps its note";
    const std::string second = folder.Put("/second.txt", "text");
    add(second);
    add(text);
    EXPECT_EQ((Texts{text, second}), documents());
    EXPECT_TRUE(List(folder).IsValid());
}

TEST(RecentFiles, AListThatIsNotUnderstoodStaysAsItIs)
{
    DesktopFolder folder;
    const std::string text = folder.Put("/a.txt", "text");
    for (const std::string& broken : {std::string("<xbel version=\"1.0\"><bookmark href="),
                                      std::string("no list"), std::string("\xFF\xFE\0\0", 4)}) {
        const std::string path = folder.Put("/home/data/recently-used.xbel", broken);
        add(text);
        EXPECT_EQ(Texts(), documents());
        std::ifstream file(path, std::ios::binary);
        EXPECT_EQ(broken, std::string(std::istreambuf_iterator<char>(file), {}));
    }
}

TEST(RecentFiles, NoNameOrTypeDamagesTheList)
{
    DesktopFolder folder;
    const std::string text = folder.Put("/a.txt", "text");
    const std::string odd = folder.Put("/odd", "text");
    const std::string type = "x-odd/\xFF\x01";
    const bool typed = setxattr(odd.c_str(), "user.mime_type", type.data(), type.size(), 0) == 0;
    add(text);
    add(odd);
    for (const char* signature : {"application/x-\xFF", "application/x-\x01", "\xC3"})
        add(text, signature);
    EXPECT_EQ((Texts{text, odd}), documents());
    EXPECT_TRUE(List(folder).IsValid());
    EXPECT_EQ(typed ? "x-odd/\uFFFD?" : "text/plain", List(folder).Type(odd));
    // A file that is noted among the folders stays a file.
    entry_ref ref;
    ASSERT_EQ(B_OK, get_ref_for_path(text.c_str(), &ref));
    be_roster->AddToRecentFolders(&ref, kWriter);
    EXPECT_EQ("text/plain", List(folder).Type(text));
}

// Processes that add these files, every second one each.
class Writers {
public:
    explicit Writers(const Texts& paths)
    {
        for (size_t half = 0; half < 2; ++half) {
            fProcesses.push_back(fork());
            if (fProcesses.back() != 0)
                continue;
            for (size_t i = half; i < paths.size(); i += 2)
                add(paths[i]);
            _exit(testing::Test::HasFailure());
        }
    }
    ~Writers()
    {
        for (const pid_t process : fProcesses) {
            int status = -1;
            waitpid(process, &status, 0);
            EXPECT_EQ(0, status);
        }
    }

private:
    std::vector<pid_t> fProcesses;
};

// The other program reads, changes and replaces the list as GLib does. What of ours comes between
// its reading and its writing it overwrites; what it wrote itself is to stay.
TEST(RecentFiles, ConcurrentWritersLoseNothing)
{
    DesktopFolder folder;
    Texts ours, more, theirs;
    for (const auto& [list, name] :
         {std::pair(&ours, "/ours"), std::pair(&more, "/more"), std::pair(&theirs, "/theirs")}) {
        for (int i = 0; i < 30; ++i)
            list->push_back(folder.Put(name + std::to_string(i) + ".txt", "text"));
    }
    {
        const Writers writers(ours);
    }
    const Texts found = documents();
    EXPECT_EQ(std::set(ours.begin(), ours.end()), std::set(found.begin(), found.end()));
    {
        const Writers writers(more);
        for (const std::string& path : theirs) {
            List list(folder);
            EXPECT_TRUE(list.IsValid());
            list.Add(path, "Editor");
            EXPECT_TRUE(list.Write());
            snooze(500);
        }
    }
    const List list(folder);
    ASSERT_TRUE(list.IsValid());
    for (const std::string& path : theirs)
        EXPECT_TRUE(list.Has(path)) << path;
}

TEST(RecentFiles, WhatAKilledProgramLeftBesideTheListIsRemoved)
{
    DesktopFolder folder;
    const std::string text = folder.Put("/a.txt", "text");
    add(text);
    const pid_t team = fork();
    if (team == 0)
        _exit(0);
    waitpid(team, nullptr, 0);
    const std::string list = "/home/data/recently-used.xbel";
    const std::string gone = folder.Put(list + ".beos-" + std::to_string(team) + ".Ab12cD");
    const std::string lives = folder.Put(list + ".beos-" + std::to_string(getppid()) + ".Ab12cD");
    const std::string backup = folder.Put(list + ".backup");
    add(text);
    EXPECT_FALSE(std::filesystem::exists(gone));
    EXPECT_TRUE(std::filesystem::exists(lives));
    EXPECT_TRUE(std::filesystem::exists(backup)) << "somebody's own";
    EXPECT_EQ(Texts{text}, documents());
}
