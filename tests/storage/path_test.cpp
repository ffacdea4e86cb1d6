// Entries, refs and paths of the storage kit.

#include <Directory.h>
#include <Entry.h>
#include <Node.h>
#include <Path.h>
#include <TypeConstants.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class Storage : public testing::Test {
protected:
    Storage()
    {
        char name[] = "/tmp/plinth-storage-XXXXXX";
        char real[PATH_MAX];
        fFolder = realpath(mkdtemp(name), real);
        mkdir((fFolder + "/dir").c_str(), 0755);
        fclose(fopen((fFolder + "/dir/file").c_str(), "w"));
        EXPECT_EQ(symlink("dir/file", (fFolder + "/link").c_str()), 0);
        EXPECT_EQ(symlink("loop", (fFolder + "/loop").c_str()), 0);
    }
    ~Storage() override
    {
        std::string command = "rm -rf '" + fFolder + "'";
        EXPECT_EQ(system(command.c_str()), 0);
    }
    std::string At(const char* path) const { return fFolder + path; }

    std::string fFolder;
};

}  // namespace

TEST_F(Storage, PathsAreTidiedOnlyWhereNeeded)
{
    BPath path("/no/such/place");
    EXPECT_EQ(path.InitCheck(), B_OK);
    EXPECT_STREQ(path.Leaf(), "place");
    EXPECT_EQ(BPath("/no/such//place").InitCheck(), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_STREQ(BPath(At("/dir/../dir/./new/").c_str()).Path(), At("/dir/new").c_str());
    EXPECT_STREQ(BPath(fFolder.c_str(), "dir/file").Path(), At("/dir/file").c_str());
    EXPECT_EQ(BPath(fFolder.c_str(), "/dir").InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BPath(static_cast<const char*>(nullptr)).InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BPath("").InitCheck(), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(BPath().InitCheck(), B_NO_INIT);
    EXPECT_STREQ(BPath("/").Leaf(), "");

    char here[PATH_MAX];
    ASSERT_NE(getcwd(here, sizeof(here)), nullptr);
    EXPECT_EQ(BPath("leaf").Path(), std::string(here) + "/leaf");
}

TEST_F(Storage, PathsGrowShrinkAndCompare)
{
    BPath path(fFolder.c_str());
    EXPECT_EQ(path.Append("dir"), B_OK);
    EXPECT_EQ(path.Append("file"), B_OK);
    EXPECT_TRUE(path == At("/dir/file").c_str());
    EXPECT_EQ(path.GetParent(&path), B_OK);
    EXPECT_TRUE(path == BPath(At("/dir").c_str()));
    EXPECT_EQ(path.Append("/absolute"), B_BAD_VALUE);
    EXPECT_EQ(path.Path(), nullptr);
    EXPECT_TRUE(path == BPath());
    BPath root("/");
    EXPECT_EQ(root.GetParent(&path), B_ENTRY_NOT_FOUND);
    EXPECT_TRUE(root.IsAbsolute());
}

TEST_F(Storage, PathsSurviveFlattening)
{
    for (const char* text : {"/dir/file", "/dir/missing"}) {
        BPath path(At(text).c_str());
        std::vector<char> flat(path.FlattenedSize());
        EXPECT_EQ(path.Flatten(flat.data(), flat.size() - 1), B_BAD_VALUE);
        ASSERT_EQ(path.Flatten(flat.data(), flat.size()), B_OK);
        BPath copy;
        EXPECT_EQ(copy.Unflatten(B_REF_TYPE, flat.data(), flat.size()), B_OK);
        EXPECT_TRUE(copy == path);
        EXPECT_EQ(copy.Unflatten(B_REF_TYPE, flat.data(), flat.size() - 1), B_BAD_VALUE);
        EXPECT_EQ(copy.Unflatten(B_STRING_TYPE, flat.data(), flat.size()), B_BAD_VALUE);
    }
}

TEST_F(Storage, RefsLeadBackToTheirPath)
{
    entry_ref ref;
    ASSERT_EQ(get_ref_for_path(At("/dir/file").c_str(), &ref), B_OK);
    struct stat info;
    ASSERT_EQ(stat(At("/dir").c_str(), &info), 0);
    EXPECT_EQ(ref.device, info.st_dev);
    EXPECT_EQ(ref.directory, info.st_ino);
    EXPECT_STREQ(ref.name, "file");

    entry_ref sibling(ref.device, ref.directory, "other");
    BPath path;
    EXPECT_EQ(BEntry(&sibling).GetPath(&path), B_OK);
    EXPECT_STREQ(path.Path(), At("/dir/other").c_str());
    EXPECT_STREQ(BPath(&ref).Path(), At("/dir/file").c_str());
    EXPECT_TRUE(ref < sibling && !(sibling < ref) && ref != sibling);

    entry_ref strange(ref.device, 1, "file");
    EXPECT_EQ(BEntry(&strange).InitCheck(), B_ENTRY_NOT_FOUND);
    ASSERT_EQ(BEntry(At("/dir").c_str()).Rename("renamed"), B_OK);
    EXPECT_STREQ(BPath(&ref).Path(), At("/renamed/file").c_str());
    rename(At("/renamed").c_str(), At("/moved").c_str());  // by others, and unseen
    EXPECT_EQ(BEntry(&ref).InitCheck(), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(get_ref_for_path("/", &ref), B_OK);
    EXPECT_STREQ(BPath(&ref).Path(), "/");
    EXPECT_EQ(get_ref_for_path(nullptr, &ref), B_BAD_VALUE);
}

TEST_F(Storage, EntriesNameWhatNeedNotExist)
{
    BEntry missing(At("/dir/missing").c_str());
    EXPECT_EQ(missing.InitCheck(), B_OK);
    EXPECT_FALSE(missing.Exists());
    EXPECT_EQ(BEntry(At("/none/missing").c_str()).InitCheck(), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(BEntry(At("/dir/file/below").c_str()).InitCheck(), B_NOT_A_DIRECTORY);
    EXPECT_EQ(BEntry(At(("/" + std::string(300, 'x')).c_str()).c_str()).InitCheck(),
              B_NAME_TOO_LONG);
    EXPECT_EQ(BEntry(static_cast<const char*>(nullptr)).InitCheck(), B_BAD_VALUE);

    BEntry link(At("/link").c_str());
    EXPECT_TRUE(link.IsSymLink());
    EXPECT_EQ(link.SetTo(At("/link").c_str(), true), B_OK);
    EXPECT_TRUE(link.IsFile());
    EXPECT_TRUE(link == BEntry(At("/dir/file").c_str()));
    EXPECT_EQ(link.SetTo(At("/loop").c_str(), true), B_LINK_LIMIT);

    BEntry parent;
    EXPECT_EQ(missing.GetParent(&parent), B_OK);
    EXPECT_TRUE(parent.IsDirectory());
    EXPECT_STREQ(parent.Name(), "dir");
    EXPECT_EQ(BEntry("/").GetParent(&parent), B_ENTRY_NOT_FOUND);
}

TEST_F(Storage, EntriesMoveAndGo)
{
    BEntry file(At("/dir/file").c_str());
    EXPECT_EQ(file.SetPermissions(0640), B_OK);
    mode_t mode = 0;
    EXPECT_EQ(file.GetPermissions(&mode), B_OK);
    EXPECT_EQ(mode, 0640u);
    EXPECT_EQ(file.SetModificationTime(1000), B_OK);
    time_t time = 0;
    EXPECT_EQ(file.GetModificationTime(&time), B_OK);
    EXPECT_EQ(time, 1000);
    node_ref before, after;
    EXPECT_EQ(file.GetNodeRef(&before), B_OK);
    EXPECT_EQ(file.Rename(At("/link").c_str()), B_FILE_EXISTS);
    EXPECT_EQ(file.Rename("renamed"), B_OK);
    EXPECT_STREQ(file.Name(), "renamed");
    EXPECT_EQ(file.GetNodeRef(&after), B_OK);
    EXPECT_TRUE(before == after);
    EXPECT_EQ(BEntry(At("/dir").c_str()).Remove(), B_DIRECTORY_NOT_EMPTY);
    EXPECT_EQ(file.Rename(At("/link").c_str(), true), B_OK);
    EXPECT_EQ(file.Remove(), B_OK);
    EXPECT_FALSE(file.Exists());
    EXPECT_EQ(file.Remove(), B_ENTRY_NOT_FOUND);
}

TEST_F(Storage, DirectoriesListTheirEntries)
{
    BDirectory folder(fFolder.c_str());
    ASSERT_EQ(folder.InitCheck(), B_OK);
    EXPECT_EQ(folder.CountEntries(), 3);
    std::set<std::string> names;
    BEntry entry;
    while (folder.GetNextEntry(&entry) == B_OK)
        names.insert(entry.Name());
    EXPECT_EQ(names, (std::set<std::string>{"dir", "link", "loop"}));
    EXPECT_EQ(folder.GetNextEntry(&entry), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(folder.Rewind(), B_OK);
    entry_ref ref;
    EXPECT_EQ(folder.GetNextRef(&ref), B_OK);
    EXPECT_EQ(names.count(ref.name), 1u);

    EXPECT_EQ(BDirectory(At("/dir/file").c_str()).InitCheck(), B_NOT_A_DIRECTORY);
    EXPECT_EQ(BDirectory(At("/none").c_str()).InitCheck(), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(BDirectory().CountEntries(), B_FILE_ERROR);
    EXPECT_TRUE(BDirectory("/").IsRootDirectory());
}

TEST_F(Storage, PathsAndEntriesStartAtADirectory)
{
    BDirectory folder(fFolder.c_str());
    EXPECT_STREQ(BPath(&folder).Path(), fFolder.c_str());
    EXPECT_STREQ(BPath(&folder, "dir/../new").Path(), At("/new").c_str());
    EXPECT_EQ(BPath(&folder, "/new").InitCheck(), B_BAD_VALUE);
    EXPECT_TRUE(folder.Contains("dir/file", B_FILE_NODE));
    EXPECT_FALSE(folder.Contains("dir/file", B_DIRECTORY_NODE));
    EXPECT_FALSE(folder.Contains("missing"));
    BDirectory made;
    EXPECT_EQ(folder.CreateDirectory("made", &made), B_OK);
    EXPECT_EQ(folder.CreateDirectory("made", nullptr), B_FILE_EXISTS);
    BEntry file(&folder, "dir/file");
    EXPECT_EQ(file.MoveTo(&made), B_OK);
    EXPECT_STREQ(BPath(&file).Path(), At("/made/file").c_str());
    BDirectory parent;
    EXPECT_EQ(file.GetParent(&parent), B_OK);
    EXPECT_TRUE(parent == made);
    BNode node(&file), link(&folder, "link");
    EXPECT_TRUE(node.IsFile());
    EXPECT_TRUE(link.IsSymLink());
    EXPECT_EQ(node.Lock(), B_OK);
    EXPECT_EQ(BNode(&file).InitCheck(), B_BUSY);
    EXPECT_EQ(node.Unlock(), B_OK);
}
