// Nodes, files, directories and links of the storage kit.

#include <Directory.h>
#include <Entry.h>
#include <File.h>
#include <FindDirectory.h>
#include <Path.h>
#include <String.h>
#include <SymLink.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <set>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/temp_folder.h"

namespace {

class Files : public testing::Test {
protected:
    std::string At(const std::string& leaf) const { return fFolder.At(leaf); }

    TempFolder fFolder;
};

int open_descriptors()
{
    int count = 0;
    DIR* list = opendir("/proc/self/fd");
    while (readdir(list) != nullptr)
        count++;
    closedir(list);
    return count;
}

}  // namespace

TEST_F(Files, OpenModesGoByName)
{
    BFile file(At("/new").c_str(), B_READ_ONLY);
    EXPECT_EQ(file.InitCheck(), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(file.SetTo(At("/new").c_str(), B_READ_WRITE | B_CREATE_FILE), B_OK);
    EXPECT_TRUE(file.IsReadable() && file.IsWritable());
    EXPECT_EQ(file.Write("hello", 5), 5);
    EXPECT_EQ(file.SetTo(At("/new").c_str(), B_WRITE_ONLY | B_CREATE_FILE | B_FAIL_IF_EXISTS),
              B_FILE_EXISTS);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(file.SetTo(At("/new").c_str(), B_WRITE_ONLY | B_OPEN_AT_END), B_OK);
    EXPECT_EQ(file.Write(" you", 4), 4);
    EXPECT_LT(file.Read(nullptr, 1), 0);
    off_t size = 0;
    EXPECT_EQ(file.GetSize(&size), B_OK);
    EXPECT_EQ(size, 9);
    EXPECT_EQ(file.SetTo(At("/new").c_str(), B_READ_ONLY), B_OK);
    EXPECT_FALSE(file.IsWritable());
    EXPECT_LT(file.Write("x", 1), 0);
    EXPECT_LT(file.SetSize(0), B_OK);
    EXPECT_EQ(file.SetTo(At("/new").c_str(), B_WRITE_ONLY | B_ERASE_FILE), B_OK);
    EXPECT_EQ(file.GetSize(&size), B_OK);
    EXPECT_EQ(size, 0);
    for (uint32 mode : {3u, 0xFFFFFFFFu})
        EXPECT_EQ(file.SetTo(At("/new").c_str(), mode), B_BAD_VALUE);
    EXPECT_FALSE(file.IsReadable());
}

TEST_F(Files, ReadWriteSeekAndResize)
{
    BFile file(At("/it").c_str(), B_READ_WRITE | B_CREATE_FILE);
    EXPECT_EQ(file.WriteAt(3, "abc", 3), 3);
    EXPECT_EQ(file.Position(), 0);
    char buffer[8] = {};
    EXPECT_EQ(file.Read(buffer, sizeof(buffer)), 6);
    EXPECT_EQ(memcmp(buffer, "\0\0\0abc", 6), 0);
    EXPECT_EQ(file.Read(buffer, sizeof(buffer)), 0);
    EXPECT_EQ(file.Seek(-2, SEEK_END), 4);
    EXPECT_EQ(file.Read(buffer, 1), 1);
    EXPECT_EQ(buffer[0], 'b');
    EXPECT_EQ(file.Seek(-1, SEEK_SET), B_BAD_VALUE);
    EXPECT_EQ(file.Seek(0, 3), B_BAD_VALUE);
    EXPECT_EQ(file.Position(), 5);
    EXPECT_EQ(file.ReadAt(-1, buffer, 1), B_BAD_VALUE);
    EXPECT_EQ(file.ReadAt(off_t(1) << 40, buffer, 1), 0);
    EXPECT_EQ(file.Read(nullptr, 1), B_BAD_ADDRESS);
    EXPECT_EQ(file.SetSize(-1), B_BAD_VALUE);
    EXPECT_EQ(file.SetSize(off_t(5) << 30), B_OK);
    off_t size = 0;
    EXPECT_EQ(file.GetSize(&size), B_OK);
    EXPECT_EQ(size, off_t(5) << 30);
    EXPECT_LT(file.SetSize(INT64_MAX), B_OK);
    EXPECT_EQ(file.SetSize(2), B_OK);
    EXPECT_EQ(file.Sync(), B_OK);
    BFile copy(file);
    EXPECT_TRUE(copy == file);
    EXPECT_EQ(copy.Position(), 0);
    EXPECT_EQ(copy.Write("zz", 2), 2);
    EXPECT_EQ(file.Position(), 5);
    BFile unset;
    EXPECT_LT(unset.Read(buffer, 1), 0);
    EXPECT_LT(unset.Position(), 0);
    EXPECT_LT(unset.SetSize(1), B_OK);
}

TEST_F(Files, OpeningNeverWaits)
{
    ASSERT_EQ(mkfifo(At("/pipe").c_str(), 0644), 0);
    BFile pipe(At("/pipe").c_str(), B_READ_ONLY);
    EXPECT_EQ(pipe.InitCheck(), B_OK);
    EXPECT_EQ(BFile(At("/pipe").c_str(), B_READ_WRITE).InitCheck(), B_OK);
    pipe.Unset();
    EXPECT_EQ(BFile(At("/pipe").c_str(), B_WRITE_ONLY).InitCheck(), B_DEVICE_NOT_FOUND);
    EXPECT_EQ(BFile(At("").c_str(), B_WRITE_ONLY).InitCheck(), B_IS_A_DIRECTORY);
    EXPECT_EQ(BFile(At("").c_str(), B_READ_ONLY).InitCheck(), B_OK);
}

TEST_F(Files, BadPathsFailAlikeForEveryClass)
{
    fFolder.Put("/file");
    ASSERT_EQ(symlink("loop", At("/loop").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", At("/dangling").c_str()), 0);
    const struct {
        std::string path;
        status_t status;
        int number;
    } kRows[] = {
        {"", B_ENTRY_NOT_FOUND, ENOENT},
        {At("/none/below"), B_ENTRY_NOT_FOUND, ENOENT},
        {At("/file/below"), B_NOT_A_DIRECTORY, ENOTDIR},
        {At("/loop"), B_LINK_LIMIT, ELOOP},
        {At("/loop/below"), B_LINK_LIMIT, ELOOP},
        {At("/dangling"), B_ENTRY_NOT_FOUND, ENOENT},
        {At("/" + std::string(256, 'n')), B_NAME_TOO_LONG, ENAMETOOLONG},
        {std::string(5000, '/') + "x", B_NAME_TOO_LONG, ENAMETOOLONG},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.path);
        errno = 0;
        EXPECT_EQ(BFile(row.path.c_str(), B_READ_ONLY).InitCheck(), row.status);
        EXPECT_EQ(errno, row.number);
        errno = 0;
        EXPECT_EQ(BDirectory(row.path.c_str()).InitCheck(), row.status);
        EXPECT_EQ(errno, row.number);
    }
    EXPECT_EQ(BFile(static_cast<const char*>(nullptr), B_READ_ONLY).InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BFile(static_cast<const BEntry*>(nullptr), 0).InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BFile(static_cast<const entry_ref*>(nullptr), 0).InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BDirectory(static_cast<const node_ref*>(nullptr)).InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BNode(static_cast<const char*>(nullptr)).InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BNode(At("/loop").c_str()).InitCheck(), B_OK);
    EXPECT_TRUE(BNode(At("/dangling").c_str()).IsSymLink());
    BDirectory folder(At("").c_str());
    EXPECT_EQ(BFile(&folder, "/file", B_READ_ONLY).InitCheck(), B_BAD_VALUE);
    BDirectory unset;
    EXPECT_NE(BFile(&unset, "no-such-file", B_READ_ONLY).InitCheck(), B_OK);
}

TEST_F(Files, AnEarlierFailureIsToldAgainWithItsNumber)
{
    const BEntry entry(At("/none/below").c_str());
    const BEntry unset;
    const BPath path(At("/none/../below").c_str());
    BPath other;
    const struct {
        status_t told;
        int number;
        std::function<status_t()> call;
    } kRows[] = {
        {B_ENTRY_NOT_FOUND, ENOENT, [&] { return BFile(&entry, B_READ_ONLY).InitCheck(); }},
        {B_ENTRY_NOT_FOUND, ENOENT, [&] { return BNode(&entry).InitCheck(); }},
        {B_ENTRY_NOT_FOUND, ENOENT, [&] { return BDirectory(&entry).InitCheck(); }},
        {B_ENTRY_NOT_FOUND, ENOENT, [&] { return BPath(&entry).InitCheck(); }},
        {B_ENTRY_NOT_FOUND, ENOENT, [&] { return path.GetParent(&other); }},
        {B_NO_INIT, EBADF, [&] { return BNode(&unset).InitCheck(); }},
        {B_NO_INIT, EBADF, [&] { return BPath(&unset).InitCheck(); }},
        {B_NO_INIT, EBADF, [&] { return BPath().GetParent(&other); }},
    };
    for (const auto& row : kRows) {
        errno = 0;
        EXPECT_EQ(row.call(), row.told);
        EXPECT_EQ(errno, row.number);
    }
}

TEST_F(Files, NodesAreSetByEveryNameAndChangeTheirFields)
{
    const std::string path = fFolder.Put("/file", "four");
    BEntry entry(path.c_str());
    entry_ref ref;
    ASSERT_EQ(entry.GetRef(&ref), B_OK);
    BDirectory folder(At("").c_str());
    for (const BNode& node :
         {BNode(path.c_str()), BNode(&entry), BNode(&ref), BNode(&folder, "file")}) {
        EXPECT_EQ(node.InitCheck(), B_OK);
        EXPECT_TRUE(node == BNode(path.c_str()));
    }
    BNode node(&ref);
    mode_t mode = 0;
    time_t when = 0;
    EXPECT_EQ(node.SetPermissions(0), B_OK);  // which does not keep it from being set again
    EXPECT_EQ(node.SetPermissions(0640), B_OK);
    EXPECT_EQ(entry.GetPermissions(&mode), B_OK);
    EXPECT_EQ(mode, 0640u);
    EXPECT_EQ(node.SetModificationTime(1000000), B_OK);
    EXPECT_EQ(node.SetAccessTime(2000000), B_OK);
    EXPECT_EQ(entry.GetModificationTime(&when), B_OK);
    EXPECT_EQ(when, 1000000);
    EXPECT_EQ(entry.GetAccessTime(&when), B_OK);
    EXPECT_EQ(when, 2000000);
    uid_t owner = 1;
    EXPECT_EQ(node.GetOwner(&owner), B_OK);
    EXPECT_EQ(node.SetOwner(owner), B_OK);
    const int fd = node.Dup();
    EXPECT_GE(fd, 0);
    EXPECT_NE(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
    close(fd);

    BNode other(path.c_str());
    EXPECT_EQ(node.Lock(), B_OK);
    EXPECT_EQ(node.Lock(), B_BUSY);
    EXPECT_EQ(other.Lock(), B_BUSY);
    node.Unset();
    EXPECT_EQ(other.Lock(), B_OK);
    EXPECT_EQ(other.Unlock(), B_OK);
    EXPECT_EQ(other.Unlock(), B_BAD_VALUE);
    EXPECT_EQ(node.Lock(), B_FILE_ERROR);
}

TEST_F(Files, LockedNodesOpenForNobodyElse)
{
    const std::string path = fFolder.Put("/file", "kept");
    BDirectory folder(At("").c_str());
    BFile file(path.c_str(), B_READ_WRITE);
    ASSERT_EQ(file.Lock(), B_OK);
    EXPECT_EQ(BNode(path.c_str()).InitCheck(), B_BUSY);
    EXPECT_EQ(BNode(&folder, "file").InitCheck(), B_BUSY);
    EXPECT_EQ(BFile(path.c_str(), B_READ_ONLY).InitCheck(), B_BUSY);
    EXPECT_EQ(BFile(path.c_str(), B_WRITE_ONLY | B_ERASE_FILE).InitCheck(), B_BUSY);
    EXPECT_EQ(errno, EBUSY);
    off_t size = 0;
    EXPECT_EQ(file.GetSize(&size), B_OK);
    EXPECT_EQ(size, 4) << "nor does it lose what it has";
    EXPECT_EQ(BFile(file).InitCheck(), B_OK) << "who has it may copy it";
    EXPECT_EQ(BNode(file).InitCheck(), B_OK);

    BNode locked_folder(At("").c_str());
    EXPECT_EQ(locked_folder.Lock(), B_OK);
    EXPECT_EQ(BDirectory(At("").c_str()).InitCheck(), B_BUSY);
    EXPECT_EQ(locked_folder.Unlock(), B_OK);
    EXPECT_EQ(BDirectory(At("").c_str()).InitCheck(), B_OK);
    file.Unset();
    EXPECT_EQ(BNode(path.c_str()).InitCheck(), B_OK);
    EXPECT_EQ(BFile(path.c_str(), B_READ_ONLY).InitCheck(), B_OK);
}

TEST_F(Files, ErasingNeedsNoOpeningForWriting)
{
    const std::string path = fFolder.Put("/file", "gone");
    BFile file(path.c_str(), B_READ_ONLY | B_ERASE_FILE);
    off_t size = 1;
    EXPECT_EQ(file.GetSize(&size), B_OK);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(BFile("/dev/null", B_WRITE_ONLY | B_ERASE_FILE).InitCheck(), B_OK);
}

TEST_F(Files, FailedCreationLeavesNoFormerObject)
{
    BDirectory folder(At("").c_str());
    BDirectory below(&folder, ".");
    BFile file(fFolder.Put("/file").c_str(), B_READ_ONLY);
    ASSERT_EQ(symlink("file", At("/link").c_str()), 0);
    BSymLink link(At("/link").c_str());
    EXPECT_EQ(folder.CreateDirectory("file", &below), B_FILE_EXISTS);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(below.InitCheck(), B_NO_INIT);
    EXPECT_EQ(folder.CreateFile("file", &file, true), B_FILE_EXISTS);
    EXPECT_EQ(file.InitCheck(), B_NO_INIT);
    EXPECT_EQ(folder.CreateSymLink("link", "file", &link), B_FILE_EXISTS);
    EXPECT_EQ(link.InitCheck(), B_NO_INIT);
    link.SetTo(At("/link").c_str());
    EXPECT_EQ(folder.CreateSymLink("new", nullptr, &link), B_BAD_VALUE);
    EXPECT_EQ(link.InitCheck(), B_NO_INIT);
}

TEST_F(Files, PathsInADirectoryMayBeAbsoluteButNotEmpty)
{
    const std::string path = fFolder.Put("/file", "four");
    BDirectory folder("/");
    struct stat info = {};
    EXPECT_EQ(folder.GetStatFor(path.c_str(), &info), B_OK);
    EXPECT_EQ(info.st_size, 4);
    EXPECT_EQ(folder.GetStatFor("", &info), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(BNode(&folder, "").InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BNode(&folder, "/").InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(BDirectory(&folder, "").InitCheck(), B_OK) << "the directory itself";
}

TEST_F(Files, WhatIsNotSetSaysSoAsThePlatformDoes)
{
    BDirectory folder;
    BNode node;
    BEntry entry;
    entry_ref ref;
    BString text;
    char buffer[B_ATTR_NAME_LENGTH];
    attr_info info;
    EXPECT_EQ(node.Unlock(), B_FILE_ERROR);
    EXPECT_EQ(node.Sync(), B_FILE_ERROR);
    EXPECT_EQ(node.ReadAttr("x", 0, 0, buffer, 1), B_FILE_ERROR);
    EXPECT_EQ(node.RemoveAttr("x"), B_FILE_ERROR);
    EXPECT_EQ(node.RenameAttr("x", "y"), B_FILE_ERROR);
    EXPECT_EQ(node.GetAttrInfo("x", &info), B_FILE_ERROR);
    EXPECT_EQ(node.RewindAttrs(), B_FILE_ERROR);
    EXPECT_EQ(node.ReadAttrString("x", &text), B_FILE_ERROR);
    EXPECT_EQ(node.SetPermissions(0600), B_FILE_ERROR);
    EXPECT_EQ(errno, EBADF);
    struct stat stat;
    EXPECT_EQ(node.GetStat(&stat), B_NO_INIT);
    EXPECT_EQ(folder.GetNextEntry(&entry), B_FILE_ERROR);
    EXPECT_EQ(folder.GetNextRef(&ref), B_FILE_ERROR);
    EXPECT_EQ(folder.Rewind(), B_FILE_ERROR);
    EXPECT_EQ(folder.GetEntry(&entry), B_NO_INIT);
    EXPECT_EQ(folder.FindEntry("x", &entry), B_BAD_VALUE);
    EXPECT_EQ(BEntry(&folder, "x").InitCheck(), B_BAD_VALUE);
    EXPECT_EQ(folder.CreateFile("x", nullptr), B_FILE_ERROR);
    EXPECT_EQ(folder.CreateDirectory("x", nullptr), B_FILE_ERROR);
}

TEST_F(Files, LinksThatLeadInACircleSaySoWhoeverFollowsThem)
{
    ASSERT_EQ(symlink("loop", At("/loop").c_str()), 0);
    BDirectory folder(At("").c_str());
    BEntry entry;
    EXPECT_EQ(folder.FindEntry("loop", &entry, true), B_LINK_LIMIT);
    EXPECT_EQ(entry.InitCheck(), B_LINK_LIMIT);
    EXPECT_EQ(BFile(&entry, B_READ_ONLY).InitCheck(), B_LINK_LIMIT);
    EXPECT_EQ(folder.GetNextEntry(&entry, true), B_LINK_LIMIT);
    EXPECT_EQ(entry.InitCheck(), B_LINK_LIMIT);
}

TEST_F(Files, DirectoriesFindAndCreate)
{
    BDirectory folder(At("").c_str());
    BFile file;
    EXPECT_EQ(folder.CreateFile("file", &file), B_OK);
    EXPECT_EQ(file.Write("x", 1), 1);
    EXPECT_EQ(folder.CreateFile("file", nullptr, true), B_FILE_EXISTS);
    EXPECT_EQ(folder.CreateFile("file", nullptr), B_OK);
    off_t size = 1;
    EXPECT_EQ(file.GetSize(&size), B_OK);
    EXPECT_EQ(size, 0);
    BSymLink link;
    EXPECT_EQ(folder.CreateSymLink(At("/link").c_str(), "file", &link), B_OK);
    EXPECT_TRUE(link.IsSymLink());
    EXPECT_EQ(folder.CreateSymLink("link", "file", nullptr), B_FILE_EXISTS);
    EXPECT_EQ(folder.CreateSymLink("other", nullptr, nullptr), B_BAD_VALUE);
    BDirectory below;
    EXPECT_EQ(folder.CreateDirectory("below", &below), B_OK);
    EXPECT_EQ(below.CreateDirectory(nullptr, nullptr), B_BAD_VALUE);

    BEntry entry;
    EXPECT_EQ(folder.FindEntry("link", &entry, true), B_OK);
    EXPECT_STREQ(entry.Name(), "file");
    EXPECT_EQ(folder.FindEntry("missing", &entry), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(entry.InitCheck(), B_NO_INIT);
    EXPECT_EQ(folder.FindEntry("file", nullptr), B_BAD_VALUE);
    EXPECT_EQ(folder.FindEntry("link", &entry), B_OK);
    EXPECT_EQ(folder.FindEntry(nullptr, &entry), B_BAD_VALUE);
    EXPECT_EQ(entry.InitCheck(), B_NO_INIT);
    EXPECT_TRUE(folder.Contains("link", B_SYMLINK_NODE));
    EXPECT_FALSE(folder.Contains("link", B_FILE_NODE));
    EXPECT_FALSE(below.Contains(At("/file").c_str()));
    struct stat info;
    EXPECT_EQ(folder.GetStatFor("link", &info), B_OK);
    EXPECT_TRUE(S_ISLNK(info.st_mode));

    node_ref ref;
    EXPECT_EQ(below.GetNodeRef(&ref), B_OK);
    EXPECT_TRUE(BDirectory(&ref) == below);
    // The directory is the same one under its new name, and so are its entries.
    ASSERT_EQ(rename(At("/below").c_str(), At("/moved").c_str()), 0);
    fFolder.Put("/moved/inside");
    EXPECT_EQ(below.GetNextEntry(&entry), B_OK);
    EXPECT_STREQ(BPath(&entry).Path(), At("/moved/inside").c_str());
    EXPECT_EQ(BPath(&below, "inside").Path(), At("/moved/inside"));
}

TEST_F(Files, DirentsComeWithDotsAndFitTheBuffer)
{
    for (char name = 'a'; name <= 'e'; name++)
        fFolder.Put(std::string("/") + name);
    BDirectory folder(At("").c_str());
    std::multiset<std::string> names;
    alignas(struct dirent) char buffer[64];
    struct dirent* record = reinterpret_cast<struct dirent*>(buffer);
    EXPECT_EQ(folder.GetNextDirents(record, 8), B_BUFFER_OVERFLOW);
    for (int32 count; (count = folder.GetNextDirents(record, sizeof(buffer), 3)) != 0;) {
        ASSERT_GT(count, 0);
        for (size_t at = 0; count-- > 0;) {
            auto* next = reinterpret_cast<struct dirent*>(buffer + at);
            names.insert(next->d_name);
            at += next->d_reclen;
        }
    }
    EXPECT_EQ(names, (std::multiset<std::string>{".", "..", "a", "b", "c", "d", "e"}));
    EXPECT_EQ(folder.CountEntries(), 5);
    EXPECT_EQ(folder.GetNextDirents(nullptr, 100), B_BAD_VALUE);
}

TEST_F(Files, NamesOfEveryByteAndLengthAreScanned)
{
    std::set<std::string> made;
    for (int byte = 1; byte < 256; byte++) {
        if (byte != '/')
            made.insert(std::string("n") + static_cast<char>(byte));
    }
    made.insert(std::string(255, 'x'));
    BDirectory folder(At("").c_str());
    for (const std::string& name : made)
        ASSERT_EQ(folder.CreateFile(name.c_str(), nullptr, true), B_OK);
    std::set<std::string> met;
    BEntry entry;
    entry_ref ref;
    while (folder.GetNextEntry(&entry) == B_OK) {
        char name[B_FILE_NAME_LENGTH];
        ASSERT_EQ(entry.GetName(name), B_OK);
        EXPECT_TRUE(entry.Exists());
        EXPECT_EQ(entry.GetRef(&ref), B_OK);
        EXPECT_TRUE(BEntry(&ref) == entry);
        met.insert(name);
    }
    EXPECT_EQ(met, made);
    EXPECT_EQ(folder.Rewind(), B_OK);
    for (met.clear(); folder.GetNextRef(&ref) == B_OK;)
        met.insert(ref.name);
    EXPECT_EQ(met, made);
}

TEST_F(Files, ScansOutliveWhatVanishes)
{
    for (int i = 0; i < 3000; i++)
        fFolder.Put("/file" + std::to_string(i));
    BDirectory folder(At("").c_str());
    BEntry entry;
    int seen = 0;
    while (folder.GetNextEntry(&entry) == B_OK) {
        entry.Remove();
        seen++;
    }
    EXPECT_EQ(seen, 3000);
    BDirectory gone;
    ASSERT_EQ(folder.CreateDirectory("gone", &gone), B_OK);
    ASSERT_EQ(rmdir(At("/gone").c_str()), 0);
    EXPECT_EQ(gone.GetNextEntry(&entry), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(gone.CountEntries() <= 0, true);
    EXPECT_EQ(gone.CreateFile("x", nullptr), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(gone.GetEntry(&entry), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(BPath(&gone, "x").InitCheck(), B_ENTRY_NOT_FOUND);
    BDirectory marked;  // a name like what the host says of those
    ASSERT_EQ(folder.CreateDirectory("here (deleted)", &marked), B_OK);
    ASSERT_EQ(marked.GetEntry(&entry), B_OK);
    EXPECT_STREQ(entry.Name(), "here (deleted)");
    EXPECT_EQ(entry.Remove(), B_OK);
    // Following links ends at none of them.
    ASSERT_EQ(symlink("nowhere", At("/dangling").c_str()), 0);
    ASSERT_EQ(symlink("loop", At("/loop").c_str()), 0);
    folder.Rewind();
    EXPECT_NE(folder.GetNextEntry(&entry, true), folder.GetNextEntry(&entry, true));
    EXPECT_EQ(folder.GetNextEntry(&entry, true), B_ENTRY_NOT_FOUND);
}

TEST_F(Files, DirectoriesDeeperThanAnyPathAreCounted)
{
    ASSERT_EQ(chdir(At("").c_str()), 0);
    const std::string name(200, 'n');
    for (int depth = 0; depth < 25; depth++)
        ASSERT_TRUE(mkdir(name.c_str(), 0755) == 0 && chdir(name.c_str()) == 0);
    BDirectory folder(".");
    EXPECT_EQ(folder.CountEntries(), 0);
    EXPECT_EQ(folder.CreateFile("file", nullptr), B_OK);
    EXPECT_EQ(folder.CountEntries(), 1);
    BEntry entry;
    EXPECT_EQ(folder.GetNextEntry(&entry), B_NAME_TOO_LONG);
    EXPECT_EQ(errno, ENAMETOOLONG);
    EXPECT_EQ(folder.GetNextEntry(&entry), B_ENTRY_NOT_FOUND);
}

TEST_F(Files, LinksTellWhereTheyLead)
{
    ASSERT_EQ(symlink("dir/../file", At("/relative").c_str()), 0);
    ASSERT_EQ(symlink("/usr", At("/absolute").c_str()), 0);
    ASSERT_EQ(mkdir(At("/dir").c_str(), 0755), 0);
    BSymLink link(At("/relative").c_str());
    char text[6];
    EXPECT_EQ(link.ReadLink(text, sizeof(text)), 11);
    EXPECT_STREQ(text, "dir/.");
    EXPECT_EQ(link.ReadLink(nullptr, 6), B_BAD_VALUE);
    EXPECT_FALSE(link.IsAbsolute());
    BPath path;
    EXPECT_EQ(link.MakeLinkedPath(At("").c_str(), &path), ssize_t(At("/file").size()));
    EXPECT_STREQ(path.Path(), At("/file").c_str());
    EXPECT_LT(link.MakeLinkedPath("/none", &path), 0);
    BSymLink absolute(At("/absolute").c_str());
    EXPECT_TRUE(absolute.IsAbsolute());
    EXPECT_EQ(absolute.MakeLinkedPath(At("").c_str(), &path), 4);
    BSymLink no_link(At("/dir").c_str());
    EXPECT_EQ(no_link.ReadLink(text, sizeof(text)), B_BAD_VALUE);
    EXPECT_EQ(BSymLink().ReadLink(text, sizeof(text)), B_FILE_ERROR);
}

TEST_F(Files, CreateDirectoryMakesParentsToo)
{
    EXPECT_EQ(create_directory(At("/a//b/c/").c_str(), 0755), B_OK);
    EXPECT_TRUE(BEntry(At("/a/b/c").c_str()).IsDirectory());
    EXPECT_EQ(create_directory(At("/a/b/c").c_str(), 0755), B_OK);
    EXPECT_EQ(create_directory("/", 0755), B_OK);
    fFolder.Put("/a/file");
    EXPECT_EQ(create_directory(At("/a/file").c_str(), 0755), B_NOT_A_DIRECTORY);
    EXPECT_EQ(create_directory(At("/a/file/d").c_str(), 0755), B_NOT_A_DIRECTORY);
    EXPECT_EQ(create_directory("", 0755), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(create_directory(nullptr, 0755), B_BAD_VALUE);
    EXPECT_EQ(create_directory(std::string(9000, 'x').c_str(), 0755), B_NAME_TOO_LONG);
}

TEST_F(Files, FoundDirectoriesAreTheDesktopsOwn)
{
    BPath path;
    EXPECT_EQ(find_directory(B_USER_SETTINGS_DIRECTORY, &path), B_OK);
    EXPECT_STREQ(path.Path(), At("/home/config").c_str());
    EXPECT_FALSE(BEntry(path.Path()).Exists());
    EXPECT_EQ(find_directory(B_USER_CACHE_DIRECTORY, &path, true), B_OK);
    EXPECT_TRUE(BEntry(path.Path()).IsDirectory());
    EXPECT_EQ(find_directory(B_DESKTOP_DIRECTORY, &path), B_OK);
    EXPECT_STREQ(path.Path(), At("/home/Desktop").c_str());
    ASSERT_EQ(create_directory(At("/home/config").c_str(), 0755), B_OK);
    fFolder.Put("/home/config/user-dirs.dirs", "# own\nXDG_DESKTOP_DIR=\"$HOME/Table\"\n");
    EXPECT_EQ(find_directory(B_DESKTOP_DIRECTORY, &path), B_OK);
    EXPECT_STREQ(path.Path(), At("/home/Table").c_str());

    char text[64];
    EXPECT_EQ(find_directory(B_SYSTEM_TEMP_DIRECTORY, 0, false, text, 5), B_OK);
    EXPECT_STREQ(text, "/tmp");
    EXPECT_EQ(find_directory(B_SYSTEM_TEMP_DIRECTORY, 0, false, text, 4), B_BUFFER_OVERFLOW);
    EXPECT_EQ(find_directory(B_SYSTEM_TEMP_DIRECTORY, 0, false, nullptr, 4), B_BAD_VALUE);
    EXPECT_EQ(find_directory(static_cast<directory_which>(77), &path), B_BAD_VALUE);
    // Each of the places that older programs call common is somewhere.
    for (int common = B_COMMON_DIRECTORY; common <= B_COMMON_VAR_DIRECTORY; ++common)
        EXPECT_EQ(find_directory(static_cast<directory_which>(common), &path), B_OK) << common;
    EXPECT_EQ(find_directory(B_COMMON_SETTINGS_DIRECTORY, &path), B_OK);
    EXPECT_STREQ(path.Path(), "/etc");
}

TEST_F(Files, NothingStaysOpen)
{
    fFolder.Put("/file");
    ASSERT_EQ(symlink("file", At("/link").c_str()), 0);
    const int before = open_descriptors();
    {
        BDirectory folder(At("").c_str()), copy(folder);
        BEntry entry;
        while (folder.GetNextEntry(&entry) == B_OK) {
            BFile file(&entry, B_READ_ONLY), again(file);
            BNode node(&entry);
            node.Lock();
            node = BNode(At("/none").c_str());
            file.SetTo(At("/none").c_str(), B_READ_ONLY);
            copy = folder;
        }
    }
    EXPECT_EQ(open_descriptors(), before);
}
