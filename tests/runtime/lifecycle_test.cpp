// Allocation, idents and concatenation, which need no application.

#include <gtest/gtest.h>

#include <plinth.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

TEST(Lifecycle, BlocksAreFilledWithZero)
{
    auto* block = static_cast<unsigned char*>(MyAlloc(300));
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 300; i++)
        EXPECT_EQ(block[i], 0);
    MyFree(block);
    MyFree(nullptr);
    EXPECT_EQ(MyAlloc(-1), nullptr);
    EXPECT_EQ(MyAlloc(INT32_MIN), nullptr);
    void* empty = MyAlloc(0);
    MyFree(empty);
}

TEST(Lifecycle, IdentsAreConsecutive)
{
    const uint32_t first = GetUniqueID();
    EXPECT_GE(first, 0x14041968u);
    EXPECT_EQ(GetUniqueID(), first + 1);
}

TEST(Lifecycle, StringTablesEndWithNull)
{
    char* table[4] = {nullptr, nullptr, nullptr, reinterpret_cast<char*>(1)};
    EXPECT_EQ(init_tab_string(table, 3), 3);
    for (int i = 0; i < 3; i++) {
        ASSERT_NE(table[i], nullptr);
        for (int j = 0; j < 257; j++)
            EXPECT_EQ(table[i][j], 0);
    }
    EXPECT_EQ(table[3], nullptr);
    EXPECT_EQ(init_tab_string(table, 0), 0);
    EXPECT_EQ(table[0], nullptr);
    EXPECT_EQ(init_tab_string(nullptr, 2), 2);
    EXPECT_EQ(init_tab_string(table, -5), -5);
    EXPECT_EQ(alloc_string(-1), nullptr);
    char* text = alloc_string(0);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(*text, '\0');
}

TEST(Lifecycle, ConcatenationStopsAtNullAndAtItsRoom)
{
    EXPECT_STREQ(__MultiStr(7, "ab", "cd", nullptr), "abcd");
    EXPECT_EQ(__MultiStr(-1, nullptr), __kcb);
    EXPECT_STREQ(__kcb, "");
    const std::string most(1000, 'x');
    const std::string more(200, 'y');
    __MultiStr(0, most.c_str(), more.c_str(), more.c_str(), nullptr);
    EXPECT_EQ(std::string(__kcb), most + std::string(24, 'y'));
    __MultiStr(0, "kept", nullptr);
    EXPECT_STREQ(__MultiStr(0, __kcb, "new", nullptr), "new");
}

TEST(Lifecycle, TracingLeavesTheErrorNumber)
{
    setenv("PLINTH_TRACE", "1", 1);
    const int kept = dup(STDERR_FILENO);
    close(STDERR_FILENO);
    errno = 0;
    show_dbg(1, 0, "a call");
    const int number = errno;
    dup2(kept, STDERR_FILENO);
    close(kept);
    EXPECT_EQ(number, 0);
}

TEST(Lifecycle, TracesNameTheSystemsStatus)
{
    setenv("PLINTH_TRACE", "1", 1);
    testing::internal::CaptureStderr();
    KillTask(0x7FFFFFFF);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("B_BAD_THREAD_ID"), std::string::npos);
    testing::internal::CaptureStderr();
    EXPECT_EQ(RunProg("/no/program", nullptr), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("B_ENTRY_NOT_FOUND"), std::string::npos);
}

TEST(Lifecycle, TheDiagnosticCallsDoNothing)
{
    Redim();
    OpenDebug();
    CloseDebug();
    SetDebug();
    SetMessage();
    show_dbg(INT32_MIN, 0, nullptr);
    FreeList();
    FreeList();
}
