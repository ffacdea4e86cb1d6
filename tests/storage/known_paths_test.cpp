// The tree of known paths, against a plain map.

#include <gtest/gtest.h>

#include <Directory.h>
#include <Entry.h>
#include <Path.h>

#include <cstdlib>
#include <new>
#include <random>

#include <sys/stat.h>

#include "storage/KnownPaths.h"
#include "support/temp_folder.h"

using storage::KnownPaths;

static thread_local size_t tAllocations = 0;

void* operator new(size_t size)
{
    tAllocations++;
    void* block = malloc(size);
    if (block == nullptr)
        abort();
    return block;
}
void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    tAllocations++;
    return malloc(size);
}
void operator delete(void* block, const std::nothrow_t&) noexcept { free(block); }
void operator delete(void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept { free(block); }

static std::string find(KnownPaths& paths, uint64 inode)
{
    std::string path;
    return paths.Find({1, inode}, &path) ? path : "";
}

TEST(KnownPaths, TheLongestUnusedAreForgotten)
{
    KnownPaths paths(3);
    for (uint64 i = 1; i <= 3; i++)
        paths.Remember({1, i}, "/a/" + std::to_string(i));
    EXPECT_EQ(find(paths, 1), "/a/1");  // which is a use
    paths.Remember({1, 4}, "/b");
    EXPECT_EQ(paths.Count(), 3u);
    EXPECT_EQ(find(paths, 2), "");
    paths.Remember({1, 3}, "/a/3");
    paths.Remember({1, 5}, "/");
    EXPECT_EQ(find(paths, 1), "");
    EXPECT_EQ(find(paths, 5), "/");
    EXPECT_EQ(find(paths, 3), "/a/3");
}

TEST(KnownPaths, PathBelongsToWhoHadItLast)
{
    KnownPaths paths(10);
    paths.Remember({1, 1}, "/a");
    paths.Remember({1, 2}, "/a");
    EXPECT_EQ(find(paths, 1), "");
    paths.Remember({1, 2}, "/a/b");
    EXPECT_EQ(find(paths, 2), "/a/b");
    EXPECT_EQ(paths.Count(), 1u);
}

TEST(KnownPaths, NothingMovesIntoItselfAndNobodyMovesTheRoot)
{
    KnownPaths paths(10);
    paths.Remember({1, 1}, "/a/b");
    for (const auto& [from, to] : {std::pair("/", "/c"), std::pair("/a", "/a/b"),
                                   std::pair("/a", "/a"), std::pair("/none", "/a")})
        paths.Move(from, to);
    EXPECT_EQ(find(paths, 1), "/a/b");
    paths.Move("/a", "/ab");
    paths.Move("/a", "/gone");
    EXPECT_EQ(find(paths, 1), "/ab/b");
}

// How many blocks of memory a move takes where so many nodes are known below what moves, and as
// many beside it; also where the new place has been met before the move was heard of.
static size_t work_of_move(uint64 nodes, bool is_met)
{
    KnownPaths paths(3 * nodes);
    for (uint64 i = 1; i <= nodes; i++) {
        const std::string name = "/a name too long for a string itself " + std::to_string(i);
        paths.Remember({1, i}, "/from" + name);
        paths.Remember({2, i}, "/beside" + name);
    }
    if (is_met)
        paths.Remember({3, 1}, "/new/to");
    const size_t before = tAllocations;
    paths.Move("/from", "/new/to");
    const size_t work = tAllocations - before;
    EXPECT_EQ(find(paths, nodes),
              "/new/to/a name too long for a string itself " + std::to_string(nodes));
    return work;
}

TEST(KnownPaths, AMoveIsTheSameWorkWhateverIsKnown)
{
    for (bool is_met : {false, true})
        EXPECT_EQ(work_of_move(20000, is_met), work_of_move(20, is_met)) << is_met;
}

// What a list of paths without any structure would say.
TEST(KnownPaths, MovesAgreeWithRewritingEveryPath)
{
    std::mt19937 random(5);
    KnownPaths paths(1000);
    std::map<uint64, std::string> model;
    const auto any_path = [&] {
        std::string path;
        for (int i = random() % 4 + 1; i > 0; i--)
            path.append("/").append(1, "abcd"[random() % 4]);
        return path;
    };
    const auto below = [](const std::string& path, const std::string& folder) {
        return path.starts_with(folder) &&
               (path.size() == folder.size() || path[folder.size()] == '/');
    };
    const auto taken = [&](const std::string& path) {
        return std::any_of(model.begin(), model.end(),
                           [&](const auto& row) { return row.second == path; });
    };
    for (int i = 0; i < 20000; i++) {
        if (random() % 3 != 0) {
            const uint64 inode = random() % 50;
            const std::string path = any_path();
            paths.Remember({1, inode}, path);
            std::erase_if(model, [&](const auto& row) { return row.second == path; });
            model[inode] = path;
        } else {
            const std::string from = any_path(), to = any_path();
            paths.Move(from, to);
            std::map<uint64, std::string> moved;
            for (const auto& [inode, path] : model) {
                if (below(to, from) || !below(path, from))
                    moved[inode] = path;
                else if (const std::string next = to + path.substr(from.size());
                         !taken(next) || below(next, from))
                    moved[inode] = next;
            }
            model = moved;
        }
        ASSERT_EQ(paths.Count(), model.size());
        for (const auto& [inode, path] : model)
            ASSERT_EQ(find(paths, inode), path);
    }
}

TEST(KnownPaths, RefsFollowTheFoldersAboveThem)
{
    TempFolder folder;
    const std::string deep = folder.At("/a/b/c");
    ASSERT_EQ(create_directory(deep.c_str(), 0755), B_OK);
    folder.Put("/a/b/c/file");
    entry_ref ref;
    ASSERT_EQ(get_ref_for_path((deep + "/file").c_str(), &ref), B_OK);
    EXPECT_EQ(BEntry(folder.At("/a").c_str()).Rename("z"), B_OK);
    EXPECT_STREQ(BPath(&ref).Path(), folder.At("/z/b/c/file").c_str());
    EXPECT_EQ(BEntry(folder.At("/z/b").c_str()).Rename(folder.At("/y").c_str()), B_OK);
    EXPECT_STREQ(BPath(&ref).Path(), folder.At("/y/c/file").c_str());
}

TEST(KnownPaths, FoldersThatAreMetDoNotAddUpForEver)
{
    TempFolder folder;
    entry_ref ref, first;
    for (int i = 0; i < 32768 + 10; i++) {
        const std::string path = folder.At("/" + std::to_string(i));
        ASSERT_EQ(mkdir(path.c_str(), 0755), 0);
        ASSERT_EQ(get_ref_for_path((path + "/x").c_str(), i == 0 ? &first : &ref), B_OK);
    }
    EXPECT_EQ(BEntry(&ref).InitCheck(), B_OK);
    EXPECT_EQ(BEntry(&first).InitCheck(), B_ENTRY_NOT_FOUND);
}
