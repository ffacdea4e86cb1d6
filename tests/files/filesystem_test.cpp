// The file system as a compiled program uses it, on real folders of the test's own.

#include <plinth.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "support/program.h"
#include "support/temp_folder.h"

namespace {

const int kUntouched = 77;  // dos_err of a call that has nothing to say

class FileSystem : public testing::Test {
protected:
    FileSystem() { dos_err = kUntouched; }
    ~FileSystem() override { dos_err = 0; }

    std::string At(const std::string& leaf) const { return fFolder.At(leaf); }
    mode_t Mode(const std::string& leaf) const
    {
        struct stat info = {};
        lstat(At(leaf).c_str(), &info);
        return info.st_mode & 07777;
    }
    bool Exists(const std::string& leaf) const
    {
        struct stat info;
        return lstat(At(leaf).c_str(), &info) == 0;
    }
    // Why the last call failed; dos_err starts afresh.
    static int Reason()
    {
        const int reason = dos_err;
        dos_err = kUntouched;
        return reason;
    }
    static std::set<std::string> Scan(const std::string& path)
    {
        std::set<std::string> names;
        for (const char* name = FindFirstEntry(path.c_str()); *name != '\0'; name = FindNextEntry())
            EXPECT_TRUE(names.insert(name).second) << name;
        return names;
    }

    TempFolder fFolder;
};

// Every call that takes one path, by what it answers.
bool deletes(const char* path) { return DeleteFile(path); }
bool renames(const char* path) { return RenameFile(path, "renamed"); }
bool moves(const char* path) { return FileMoveTo(path, "/tmp"); }
bool changes_to(const char* path) { return ChangeDir(path); }
bool measures(const char* path) { return GetLengthFile(path) != -1; }
bool tells_type(const char* path) { return GetFileType(path) != -1; }
bool is_empty(const char* path) { return IsEmptyDirectory(path); }
bool tells_attribut(const char* path) { return *GetAttribut(path) != '\0'; }
bool sets_attribut(const char* path) { return SetAttribut(path, "rwxrwxrwx"); }
bool finds(const char* path) { return *FindFirstEntry(path) != '\0'; }
bool watches(const char* path) { return WatchDir(path, 1); }
bool makes_size(const char* path) { return CreateFileSize(path, 1); }
bool makes_dir(const char* path) { return MakeDir(path); }

const struct {
    const char* name;
    bool (*call)(const char*);
    bool creates;
} kCalls[] = {
    {"DeleteFile", deletes, false},        {"RenameFile", renames, false},
    {"FileMoveTo", moves, false},          {"ChangeDir", changes_to, false},
    {"GetLengthFile", measures, false},    {"GetFileType", tells_type, false},
    {"IsEmptyDirectory", is_empty, false}, {"GetAttribut", tells_attribut, false},
    {"SetAttribut", sets_attribut, false}, {"FindFirstEntry", finds, false},
    {"WatchDir", watches, false},          {"CreateFileSize", makes_size, true},
    {"MakeDir", makes_dir, true},
};

}  // namespace

TEST_F(FileSystem, BadPathsFailAndTellWhy)
{
    fFolder.Put("/file");
    const std::string bad_name = At("/" + std::string(300, 'n'));
    const std::string bad_path = At(std::string(PATH_MAX, '/') + "x");
    const std::string bad_parent = At("/file/below");
    for (const auto& row : kCalls) {
        SCOPED_TRACE(row.name);
        EXPECT_FALSE(row.call(""));
        EXPECT_EQ(Reason(), ENOENT);
        EXPECT_FALSE(row.call(bad_name.c_str()));
        EXPECT_EQ(Reason(), ENAMETOOLONG);
        EXPECT_FALSE(row.call(bad_path.c_str()));
        EXPECT_EQ(Reason(), ENAMETOOLONG);
        EXPECT_FALSE(row.call(bad_parent.c_str()));
        EXPECT_EQ(Reason(), ENOTDIR);
        EXPECT_FALSE(row.call(nullptr));
        EXPECT_NE(Reason(), 0);
        if (!row.creates) {
            EXPECT_FALSE(row.call(At("/missing").c_str()));
            EXPECT_EQ(Reason(), ENOENT);
        }
    }
    EXPECT_EQ(Scan(At("")), std::set<std::string>{"file"});
}

TEST_F(FileSystem, LoopingAndDanglingLinks)
{
    ASSERT_EQ(symlink("loop", At("/loop").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", At("/dangling").c_str()), 0);
    for (const auto& row : kCalls) {
        SCOPED_TRACE(row.name);
        EXPECT_FALSE(row.call(At("/loop/below").c_str()));
        EXPECT_EQ(Reason(), ELOOP);
    }
    for (auto follows : {measures, tells_type, tells_attribut, finds, changes_to}) {
        EXPECT_FALSE(follows(At("/loop").c_str()));
        EXPECT_EQ(Reason(), ELOOP);
        EXPECT_FALSE(follows(At("/dangling").c_str()));
        EXPECT_EQ(Reason(), ENOENT);
    }
    EXPECT_FALSE(WatchDir(At("/loop").c_str(), 1));
    EXPECT_EQ(Reason(), ELOOP);
    EXPECT_FALSE(WatchDir(At("/dangling").c_str(), 1));
    EXPECT_TRUE(RenameFile(At("/loop").c_str(), "other"));
    EXPECT_TRUE(DeleteFile(At("/other").c_str()));
    EXPECT_TRUE(DeleteFile(At("/dangling").c_str()));
}

TEST_F(FileSystem, DeleteRenameAndMoveNeverReplace)
{
    fFolder.Put("/a", "first");
    fFolder.Put("/b", "second");
    ASSERT_TRUE(MakeDir(At("/dir").c_str()));
    fFolder.Put("/dir/a");
    EXPECT_FALSE(RenameFile(At("/a").c_str(), "b"));
    EXPECT_EQ(Reason(), EEXIST);
    EXPECT_EQ(GetLengthFile(At("/b").c_str()), 6);
    EXPECT_FALSE(FileMoveTo(At("/a").c_str(), At("/dir").c_str()));
    EXPECT_EQ(Reason(), EEXIST);
    EXPECT_TRUE(RenameFile(At("/a").c_str(), "c"));
    EXPECT_TRUE(FileMoveTo(At("/c").c_str(), At("/dir").c_str()));
    EXPECT_TRUE(Exists("/dir/c"));
    EXPECT_FALSE(FileMoveTo(At("/b").c_str(), At("/none").c_str()));
    EXPECT_EQ(Reason(), ENOENT);
    EXPECT_FALSE(RenameFile(At("/b").c_str(), nullptr));
    EXPECT_FALSE(RenameFile(At("/b").c_str(), ""));
    EXPECT_EQ(Reason(), ENOENT);
    EXPECT_TRUE(Exists("/b"));
    EXPECT_FALSE(DeleteFile(At("/dir").c_str()));
    EXPECT_EQ(Reason(), ENOTEMPTY);
    EXPECT_TRUE(DeleteFile(At("/dir/a").c_str()));
    EXPECT_TRUE(DeleteFile(At("/dir/c").c_str()));
    EXPECT_TRUE(IsEmptyDirectory(At("/dir").c_str()));
    EXPECT_TRUE(DeleteFile(At("/dir").c_str()));
    EXPECT_EQ(dos_err, kUntouched);
}

TEST_F(FileSystem, NamesOfEveryByteMakeTheirWayThrough)
{
    std::set<std::string> made;
    for (int byte = 1; byte < 256; byte++) {
        if (byte == '/')
            continue;
        const std::string name = std::string("n") + static_cast<char>(byte);
        ASSERT_TRUE(CreateFileSize(At("/" + name).c_str(), byte)) << byte;
        EXPECT_EQ(GetLengthFile(At("/" + name).c_str()), byte);
        made.insert(name);
    }
    EXPECT_EQ(Scan(At("")), made);
    for (const std::string& name : made)
        EXPECT_TRUE(DeleteFile(At("/" + name).c_str()));
    EXPECT_TRUE(IsEmptyDirectory(At("").c_str()));
    EXPECT_EQ(dos_err, kUntouched);
}

TEST_F(FileSystem, LinksSayTheTargetAsItWasGiven)
{
    fFolder.Put("/file", "four");
    ASSERT_TRUE(ChangeDir(At("").c_str()));
    EXPECT_TRUE(CreateLink("file", "near"));
    EXPECT_TRUE(CreateLink(At("/file").c_str(), "far"));
    char text[PATH_MAX] = {};
    EXPECT_EQ(readlink("near", text, sizeof(text)), 4);
    EXPECT_STREQ(text, "file");
    EXPECT_GT(readlink("far", text, sizeof(text)), 4);
    EXPECT_EQ(text, At("/file"));
    EXPECT_EQ(GetLengthFile("near"), 4);
    EXPECT_FALSE(CreateLink("file", "near"));
    EXPECT_EQ(Reason(), EEXIST);
    EXPECT_FALSE(CreateLink("none/file", "x"));
    EXPECT_EQ(Reason(), ENOENT);
    EXPECT_FALSE(CreateLink("file", nullptr));
    EXPECT_FALSE(CreateLink(nullptr, "x"));
    EXPECT_FALSE(Exists("/x"));
}

TEST_F(FileSystem, DirectoriesAreMadeWithTheirParents)
{
    EXPECT_TRUE(MakeDir(At("/a/b/c").c_str()));
    EXPECT_TRUE(MakeDir(At("/a/b/c").c_str()));
    EXPECT_EQ(GetFileType(At("/a/b/c").c_str()), 1);
    fFolder.Put("/file");
    EXPECT_FALSE(MakeDir(At("/file").c_str()));
    EXPECT_EQ(Reason(), ENOTDIR);
    EXPECT_FALSE(IsEmptyDirectory(At("/a").c_str()));
    EXPECT_FALSE(IsEmptyDirectory(At("/file").c_str()));
    EXPECT_EQ(Reason(), ENOTDIR);
}

TEST_F(FileSystem, SizesAreSetCutAndTold)
{
    const std::string path = fFolder.Put("/file", "0123456789");
    EXPECT_TRUE(CreateFileSize(path.c_str(), 3));
    EXPECT_EQ(GetLengthFile(path.c_str()), 3);
    EXPECT_TRUE(CreateFileSize(path.c_str(), INT32_MAX));
    EXPECT_EQ(GetLengthFile(path.c_str()), INT32_MAX);
    for (int32_t size : {-1, INT32_MIN}) {
        EXPECT_FALSE(CreateFileSize(path.c_str(), size));
        EXPECT_EQ(Reason(), EINVAL);
    }
    ASSERT_EQ(truncate(path.c_str(), (int64_t(1) << 32) + 5), 0);
    EXPECT_EQ(GetLengthFile(path.c_str()), 5);
    EXPECT_FALSE(CreateFileSize(At("").c_str(), 1));
    EXPECT_EQ(Reason(), EISDIR);
}

TEST_F(FileSystem, TypesFollowLinks)
{
    fFolder.Put("/file");
    ASSERT_EQ(symlink("file", At("/link").c_str()), 0);
    ASSERT_EQ(mkfifo(At("/pipe").c_str(), 0644), 0);  // which nobody writes into
    EXPECT_EQ(GetFileType(At("/file").c_str()), 0);
    EXPECT_EQ(GetFileType(At("").c_str()), 1);
    EXPECT_EQ(GetFileType(At("/link").c_str()), 0);
    EXPECT_EQ(GetFileType(At("/pipe").c_str()), -1);
    EXPECT_EQ(GetFileType("/dev/null"), -1);
    EXPECT_EQ(dos_err, kUntouched);
}

TEST_F(FileSystem, PermissionsAreNineLetters)
{
    const std::string path = fFolder.Put("/file");
    const struct {
        const char* text;
        mode_t mode;
        const char* told;
    } kRows[] = {
        {"rw-r--r--", 0644, "rw-r--r--"},
        {"RWXr-x---", 0750, "rwxr-x---"},
        {"rwxrwxrwx", 0777, "rwxrwxrwx"},
        {"rxw??????", 0400, "r--------"},
    };
    for (const auto& row : kRows) {
        ASSERT_EQ(chmod(path.c_str(), 0644), 0);
        EXPECT_TRUE(SetAttribut(path.c_str(), row.text)) << row.text;
        EXPECT_EQ(Mode("/file"), row.mode) << row.text;
        EXPECT_STREQ(GetAttribut(path.c_str()), row.told);
    }
    ASSERT_EQ(chmod(path.c_str(), 0644), 0);
    for (const char* text : {"", "rwx", "rwxrwxrw", "rwxrwxrwxr"}) {
        EXPECT_FALSE(SetAttribut(path.c_str(), text));
        EXPECT_EQ(Reason(), EINVAL);
    }
    EXPECT_FALSE(SetAttribut(path.c_str(), nullptr));
    EXPECT_FALSE(SetAttribut(nullptr, "rwxrwxrwx"));
    EXPECT_EQ(Mode("/file"), 0644u);
    EXPECT_STREQ(GetAttribut(At("/missing").c_str()), "");
}

TEST_F(FileSystem, ScansGoOnToTheEndAndAreReplaced)
{
    for (const char* name : {"/a", "/b", "/.hidden"})
        fFolder.Put(name);
    ASSERT_TRUE(MakeDir(At("/dir/below").c_str()));
    EXPECT_EQ(Scan(At("")), (std::set<std::string>{"a", "b", ".hidden", "dir"}));
    EXPECT_STREQ(FindNextEntry(), "");
    EXPECT_EQ(dos_err, kUntouched);  // an end is no failure
    EXPECT_STRNE(FindFirstEntry(At("").c_str()), "");
    EXPECT_STREQ(FindFirstEntry(At("/dir").c_str()), "below");
    EXPECT_STREQ(FindNextEntry(), "");
    EXPECT_STRNE(FindFirstEntry(At("").c_str()), "");
    EXPECT_STREQ(FindFirstEntry(At("/missing").c_str()), "");
    EXPECT_EQ(Reason(), ENOENT);
    EXPECT_STREQ(FindNextEntry(), "");
    EXPECT_STREQ(FindFirstEntry(At("/dir/below").c_str()), "");
    EXPECT_STREQ(FindNextEntry(), "");
    EXPECT_STREQ(FindFirstEntry(At("/a").c_str()), "");
    EXPECT_EQ(Reason(), ENOTDIR);
}

TEST_F(FileSystem, ScansSurviveWhatVanishesAndEndWithTheProgram)
{
    for (int i = 0; i < 2000; i++)
        fFolder.Put("/f" + std::to_string(i));
    int count = 0;
    for (const char* name = FindFirstEntry(At("").c_str()); *name != '\0'; name = FindNextEntry()) {
        EXPECT_TRUE(DeleteFile(At(std::string("/") + name).c_str()));
        count++;
    }
    EXPECT_EQ(count, 2000);
    ASSERT_TRUE(MakeDir(At("/gone/x").c_str()));
    EXPECT_STREQ(FindFirstEntry(At("/gone").c_str()), "x");
    ASSERT_TRUE(DeleteFile(At("/gone/x").c_str()));
    ASSERT_TRUE(DeleteFile(At("/gone").c_str()));
    EXPECT_STREQ(FindNextEntry(), "");
    fFolder.Put("/a");
    fFolder.Put("/b");
    EXPECT_STRNE(FindFirstEntry(At("").c_str()), "");
    End();
    End();
    EXPECT_STREQ(FindNextEntry(), "");
}

// The superuser may read everything, and acts as somebody else meanwhile.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const std::string& folder)
    {
        if (geteuid() == 0 && chown(folder.c_str(), kNobody, kNobody) == 0)
            fChanged = seteuid(kNobody) == 0;
    }
    ~OrdinaryUser() { EXPECT_TRUE(!fChanged || seteuid(0) == 0); }

private:
    static const uid_t kNobody = 65534;
    bool fChanged = false;
};

TEST_F(FileSystem, DirectoriesWithoutPermission)
{
    OrdinaryUser user(At(""));
    const std::string closed = At("/closed");
    ASSERT_TRUE(MakeDir((closed + "/inside").c_str()));
    ASSERT_EQ(chmod(closed.c_str(), 0), 0);
    EXPECT_STREQ(FindFirstEntry(closed.c_str()), "");
    EXPECT_EQ(Reason(), EACCES);
    EXPECT_FALSE(IsEmptyDirectory(closed.c_str()));
    EXPECT_EQ(Reason(), EACCES);
    EXPECT_FALSE(WatchDir(closed.c_str(), 1));
    EXPECT_EQ(Reason(), EACCES);
    EXPECT_STREQ(GetAttribut(closed.c_str()), "");
    EXPECT_EQ(Reason(), EACCES);
    for (const auto& row : kCalls) {
        SCOPED_TRACE(row.name);
        EXPECT_FALSE(row.call((closed + "/inside").c_str()));
        EXPECT_EQ(Reason(), EACCES);
    }
    EXPECT_EQ(chmod(closed.c_str(), 0700), 0);
}

TEST_F(FileSystem, WithoutAFreeDescriptorTheReasonIsTold)
{
    const std::string path = fFolder.Put("/file");
    rlimit limit;
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit few = {128, limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    std::vector<int> taken;
    const std::function<bool()> calls[] = {
        [&] { return GetLengthFile(path.c_str()) != -1; },
        [&] { return *GetAttribut(path.c_str()) != '\0'; },
        [&] { return *FindFirstEntry(At("").c_str()) != '\0'; },
        [&] { return IsEmptyDirectory(At("").c_str()); },
        [&] { return *GetBootVolumeName() != '\0'; },
        [&] { return Relabel(path.c_str(), "x"); },
    };
    for (const auto& call : calls) {
        for (int fd; (fd = open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;)
            taken.push_back(fd);
        EXPECT_FALSE(call());
        EXPECT_EQ(Reason(), EMFILE) << &call - calls;
    }
    for (const int fd : taken)
        close(fd);
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_STRNE(GetBootVolumeName(), "");
}

TEST_F(FileSystem, PathsEndInASlash)
{
    ASSERT_TRUE(ChangeDir(At("").c_str()));
    EXPECT_EQ(GetPath(0), At("/"));
    ASSERT_TRUE(ChangeDir("/"));
    EXPECT_STREQ(GetPath(0), "/");
    char program[PATH_MAX] = {};
    ASSERT_GT(readlink("/proc/self/exe", program, sizeof(program) - 1), 0);
    *(strrchr(program, '/') + 1) = '\0';
    for (int8_t which : {1, -1, 127})
        EXPECT_STREQ(GetPath(which), program);
    ASSERT_TRUE(MakeDir(At("/gone").c_str()));
    ASSERT_TRUE(ChangeDir(At("/gone").c_str()));
    ASSERT_TRUE(DeleteFile(At("/gone").c_str()));
    EXPECT_STREQ(GetPath(0), "");
    EXPECT_EQ(Reason(), ENOENT);
    // The longest that fits with its slash, and one more.
    ASSERT_TRUE(ChangeDir(At("").c_str()));
    std::string path = At("");
    for (size_t left; (left = 1022 - path.size()) > 0;) {
        const std::string name(std::min<size_t>(left > 202 ? 200 : left - 1, 200), 'd');
        ASSERT_TRUE(MakeDir(name.c_str()) && ChangeDir(name.c_str()));
        path.append("/").append(name);
    }
    EXPECT_EQ(GetPath(0), path + "/");
    ASSERT_TRUE(MakeDir("d") && ChangeDir("d"));
    EXPECT_STREQ(GetPath(0), "");
    EXPECT_EQ(Reason(), ENAMETOOLONG);
    ASSERT_TRUE(ChangeDir("/"));
}

TEST_F(FileSystem, VolumesHaveNamesAndKeepThem)
{
    EXPECT_STRNE(GetBootVolumeName(), "");
    EXPECT_FALSE(Relabel(At("/none").c_str(), "x"));
    EXPECT_EQ(Reason(), ENOENT);
    EXPECT_FALSE(Relabel("/proc", "x"));  // a file system that has no label
    EXPECT_NE(Reason(), kUntouched);
    EXPECT_FALSE(Relabel(At("").c_str(), nullptr));
    EXPECT_EQ(Reason(), EINVAL);
}

TEST_F(FileSystem, CopyFileCopiesNothingKept)
{
    fFolder.Put("/a", "first");
    EXPECT_TRUE(CopyFile(At("/a").c_str(), At("/b").c_str()));
    EXPECT_TRUE(CopyFile(nullptr, nullptr));
    EXPECT_FALSE(Exists("/b"));
    EXPECT_EQ(dos_err, kUntouched);
}

TEST_F(FileSystem, SuccessLeavesTheFailureInDosErrKept)
{
    EXPECT_EQ(GetLengthFile(At("/missing").c_str()), -1);
    EXPECT_TRUE(MakeDir(At("/dir").c_str()));
    EXPECT_TRUE(IsEmptyDirectory(At("/dir").c_str()));
    EXPECT_EQ(GetDosErr(0), ENOENT);
}

namespace {

// What the watch's handler was told, "opcode path [second path]".
struct Told {
    std::mutex lock;
    std::vector<std::string> changes;
    thread_id thread = -1;

    bool Has(const std::string& change)
    {
        std::lock_guard guard(lock);
        return std::find(changes.begin(), changes.end(), change) != changes.end();
    }
    size_t Count()
    {
        std::lock_guard guard(lock);
        return changes.size();
    }
    thread_id Thread()
    {
        std::lock_guard guard(lock);
        return thread;
    }
} sTold;

void told(int32_t opcode, const char* path, const char* second_path)
{
    std::lock_guard guard(sTold.lock);
    sTold.thread = find_thread(nullptr);
    sTold.changes.push_back(std::to_string(opcode) + " " + path +
                            (second_path != nullptr ? std::string(" ") + second_path : ""));
}

class Watching : public FileSystem {
protected:
    Watching()
    {
        sTold.changes.clear();
        SetHandlerForWatch(reinterpret_cast<void*>(told));
    }
    ~Watching() override
    {
        EXPECT_EQ(WatchDevices(0), 0);
        SetHandlerForWatch(nullptr);
    }
    // `told_path` stands behind the folder's path.
    bool Hears(const std::string& opcode, const std::string& path)
    {
        return eventually([&] { return sTold.Has(opcode + " " + At(path)); });
    }
};

}  // namespace

TEST_F(Watching, ChangesReachTheHandlerWithTheirPaths)
{
    ASSERT_TRUE(MakeDir(At("/dir").c_str()));
    ASSERT_TRUE(WatchDir(At("/dir").c_str(), 1));
    fFolder.Put("/dir/a");
    EXPECT_TRUE(Hears("1", "/dir/a"));
    EXPECT_NE(sTold.Thread(), find_thread(nullptr));
    ASSERT_TRUE(RenameFile(At("/dir/a").c_str(), "b"));
    EXPECT_TRUE(Hears("3", "/dir/a " + At("/dir/b")));
    ASSERT_TRUE(WatchDir(At("/dir/b").c_str(), 1));
    ASSERT_TRUE(SetAttribut(At("/dir/b").c_str(), "rwx------"));
    EXPECT_TRUE(Hears("4", "/dir/b"));
    ASSERT_EQ(setxattr(At("/dir/b").c_str(), "user.note", "x", 1, 0), 0);
    EXPECT_TRUE(Hears("5", "/dir/b"));
    ASSERT_TRUE(RenameFile(At("/dir/b").c_str(), "c"));
    EXPECT_TRUE(Hears("3", "/dir/b " + At("/dir/c")));
    ASSERT_TRUE(SetAttribut(At("/dir/c").c_str(), "rw-------"));
    EXPECT_TRUE(Hears("4", "/dir/c"));
    ASSERT_TRUE(DeleteFile(At("/dir/c").c_str()));
    EXPECT_TRUE(Hears("2", "/dir/c"));
    ASSERT_TRUE(DeleteFile(At("/dir").c_str()));
    EXPECT_TRUE(Hears("2", "/dir"));
    EXPECT_FALSE(WatchDir(At("/dir").c_str(), 1));
}

TEST_F(Watching, PathsFollowTheDirectoriesAboveThem)
{
    ASSERT_TRUE(MakeDir(At("/dir/a/b").c_str()));
    ASSERT_TRUE(MakeDir(At("/dir/ab").c_str()));
    ASSERT_TRUE(MakeDir(At("/away").c_str()));
    for (const char* leaf : {"/dir", "/dir/a", "/dir/a/b", "/dir/ab"})
        ASSERT_TRUE(WatchDir(At(leaf).c_str(), 1));
    ASSERT_TRUE(RenameFile(At("/dir/a").c_str(), "c"));
    EXPECT_TRUE(Hears("3", "/dir/a " + At("/dir/c")));
    fFolder.Put("/dir/c/b/x");
    EXPECT_TRUE(Hears("1", "/dir/c/b/x"));
    ASSERT_TRUE(RenameFile(At("/dir").c_str(), "top"));
    EXPECT_TRUE(Hears("3", "/dir " + At("/top")));
    fFolder.Put("/top/c/b/y");
    EXPECT_TRUE(Hears("1", "/top/c/b/y"));
    fFolder.Put("/top/ab/z");
    EXPECT_TRUE(Hears("1", "/top/ab/z"));
    // Out of sight: the host tells of the removal alone, and nothing is said to be where it was.
    ASSERT_EQ(rename(At("/top/c/b").c_str(), At("/away/b").c_str()), 0);
    EXPECT_TRUE(Hears("2", "/top/c/b"));
    fFolder.Put("/away/b/unknown");
    EXPECT_TRUE(eventually([] { return sTold.Has("1 "); }));
    EXPECT_FALSE(sTold.Has("1 " + At("/top/c/b/unknown")));
}

TEST_F(Watching, WatchesEndOneByOneOrAllAtOnce)
{
    ASSERT_TRUE(MakeDir(At("/a").c_str()));
    ASSERT_TRUE(MakeDir(At("/b").c_str()));
    ASSERT_TRUE(WatchDir(At("/a").c_str(), 1));
    ASSERT_TRUE(WatchDir(At("/b").c_str(), 1));
    EXPECT_TRUE(WatchDir(At("/a").c_str(), 0));
    EXPECT_FALSE(WatchDir(At("/a").c_str(), 0));
    fFolder.Put("/a/unseen");
    fFolder.Put("/b/seen");
    EXPECT_TRUE(Hears("1", "/b/seen"));
    EXPECT_EQ(WatchDevices(1), 0);
    EXPECT_EQ(WatchDevices(0), 0);
    fFolder.Put("/b/unseen");
    ASSERT_TRUE(WatchDir(At("/a").c_str(), 1));
    fFolder.Put("/a/seen");
    EXPECT_TRUE(Hears("1", "/a/seen"));
    EXPECT_FALSE(sTold.Has("1 " + At("/a/unseen")));
    EXPECT_FALSE(sTold.Has("1 " + At("/b/unseen")));
}

TEST_F(Watching, TenThousandChangesAreToldOrCalledLost)
{
    ASSERT_TRUE(WatchDir(At("").c_str(), 1));
    const size_t kChanges = 10000;
    std::vector<std::string> expected;
    for (size_t i = 0; i < kChanges; i++) {
        expected.push_back(std::string("1 ").append(fFolder.Put("/f" + std::to_string(i))));
    }
    ASSERT_TRUE(
        eventually([&] { return sTold.Has("100 ") || sTold.Has(expected.back()); }, 60'000'000));
    std::lock_guard guard(sTold.lock);
    std::vector<std::string> created;
    for (const std::string& change : sTold.changes) {
        if (change.starts_with("100"))
            return;
        if (change.starts_with("1 "))
            created.push_back(change);
    }
    EXPECT_EQ(created, expected);
}
