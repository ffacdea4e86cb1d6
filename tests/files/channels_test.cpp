// File channels as a compiled program uses them.

#include <plinth.h>

#include <List.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Channels : public testing::Test {
protected:
    Channels()
    {
        char name[] = "/tmp/plinth-channels-XXXXXX";
        fFolder = mkdtemp(name);
        fPath = fFolder + "/file";
        fTable = Open_Sys(1);
    }
    ~Channels() override
    {
        Close_Sys(fTable);
        std::string command = "rm -rf '" + fFolder + "'";
        EXPECT_EQ(system(command.c_str()), 0);
    }

    std::string Bytes() const
    {
        std::string bytes;
        FILE* file = fopen(fPath.c_str(), "rb");
        for (int c; file != nullptr && (c = getc(file)) != EOF;)
            bytes += static_cast<char>(c);
        if (file != nullptr)
            fclose(file);
        return bytes;
    }
    void Put(const std::string& bytes) const
    {
        FILE* file = fopen(fPath.c_str(), "wb");
        fwrite(bytes.data(), 1, bytes.size(), file);
        fclose(file);
    }

    std::string fFolder, fPath;
    void** fTable;
};

const int32_t kUnknown[] = {0, -1, 1, INT32_MIN, INT32_MAX};

}  // namespace

TEST_F(Channels, OpenOnlyInTheTwoModes)
{
    GetDosErr(77);
    for (int32_t mode : {2, -1, INT32_MIN, INT32_MAX})
        EXPECT_EQ(OpenFile(fPath.c_str(), mode), 0);
    EXPECT_EQ(GetDosErr(0), 77);
    EXPECT_EQ(OpenFile(fPath.c_str(), 0), 0);
    EXPECT_EQ(GetDosErr(0), ENOENT);
    GetDosErr(77);
    EXPECT_EQ(OpenFile(nullptr, 0), 0);
    EXPECT_EQ(GetDosErr(0), ENOENT);
    EXPECT_EQ(OpenFile(fFolder.c_str(), 0), 0);
    EXPECT_EQ(GetDosErr(0), EISDIR);
    EXPECT_EQ(OpenFile((fPath + "/below").c_str(), 1), 0);

    int32_t first = OpenFile(fPath.c_str(), 1);
    int32_t second = OpenFile(fPath.c_str(), 0);
    EXPECT_GT(first, 0);
    EXPECT_GT(second, first);
    EXPECT_TRUE(CloseFile(first));
    EXPECT_FALSE(CloseFile(first));
    EXPECT_GT(OpenFile(fPath.c_str(), 0), second);
}

TEST_F(Channels, OpenOnlyWhatThePermissionsAllow)
{
    Put("x");
    ASSERT_EQ(chmod(fPath.c_str(), 0400), 0);
    const bool is_root = geteuid() == 0;
    ASSERT_TRUE(!is_root || seteuid(65534) == 0);
    EXPECT_EQ(OpenFile(fPath.c_str(), 0), 0);
    EXPECT_EQ(GetDosErr(0), EACCES);
    ASSERT_TRUE(!is_root || seteuid(0) == 0);
}

TEST_F(Channels, ErrorNumberStaysUntilTheNext)
{
    GetDosErr(9);
    EXPECT_EQ(GetDosErr(0), 9);
    EXPECT_EQ(GetDosErr(5), 9);
    EXPECT_EQ(GetDosErr(0), 5);
    int32_t ch = OpenFile(fPath.c_str(), 1);
    EXPECT_TRUE(WriteFile(ch, "abc"));
    EXPECT_TRUE(CloseFile(ch));
    EXPECT_EQ(GetDosErr(0), 5);
    EXPECT_EQ(dos_err, 5);
}

TEST_F(Channels, UnknownChannelsDoNothing)
{
    int32_t closed = OpenFile(fPath.c_str(), 1);
    CloseFile(closed);
    GetDosErr(77);
    std::vector<int32_t> idents(std::begin(kUnknown), std::end(kUnknown));
    idents.push_back(closed);
    for (int32_t ch : idents) {
        char text[256] = "old";
        double x = 1;
        float f = 1;
        int32_t n = 1;
        int16_t s = 1;
        EXPECT_FALSE(ReadFile(ch, text));
        EXPECT_STREQ(text, "");
        EXPECT_FALSE(ReadFile(ch, nullptr));
        EXPECT_FALSE(WriteFile(ch, "a") || PrintFile(ch, "a") || WriteDouble(ch, 1) ||
                     WriteSingle(ch, 1) || WriteInteger(ch, 1) || WriteShort(ch, 1));
        EXPECT_FALSE(ReadDouble(ch, &x) || ReadSingle(ch, &f) || ReadInteger(ch, &n) ||
                     ReadShort(ch, &s));
        EXPECT_FALSE(SeekFile(ch, 0, 0) || GetEOF(ch) || CloseFile(ch));
        EXPECT_EQ(GetLof(ch), 0);
        EXPECT_EQ(GetLoc(ch), 0);
    }
    EXPECT_EQ(GetDosErr(0), 77);
}

TEST_F(Channels, LongLineGoesOnWithNextRead)
{
    const std::string line(300, 'x');
    Put("abc\r\n\n" + line + "\n" + std::string(254, 'y') + "\n" + std::string(255, 'z') +
        "\nlast");
    int32_t ch = OpenFile(fPath.c_str(), 0);
    char text[256];
    for (const std::string& expected :
         {std::string("abc\r"), std::string(), line.substr(0, 255), line.substr(255),
          std::string(254, 'y'), std::string(255, 'z'), std::string(), std::string("last")}) {
        EXPECT_FALSE(GetEOF(ch) && expected != "last");
        EXPECT_TRUE(ReadFile(ch, text));
        EXPECT_EQ(text, expected);
    }
    errno = 0;
    GetDosErr(77);
    EXPECT_FALSE(ReadFile(ch, text));
    EXPECT_STREQ(text, "");
    EXPECT_TRUE(GetEOF(ch));
    EXPECT_EQ(GetDosErr(0), 77);
}

TEST_F(Channels, NumbersAreRawBytes)
{
    int32_t ch = OpenFile(fPath.c_str(), 1);
    EXPECT_TRUE(WriteShort(ch, 0x1234));
    EXPECT_TRUE(WriteInteger(ch, -2));
    EXPECT_TRUE(WriteSingle(ch, 1));
    EXPECT_TRUE(WriteDouble(ch, 1));
    EXPECT_TRUE(WriteFile(ch, "text"));
    EXPECT_FALSE(WriteFile(ch, ""));
    EXPECT_FALSE(WriteFile(ch, nullptr));
    EXPECT_EQ(GetLoc(ch), 22);
    EXPECT_TRUE(CloseFile(ch));
    const char bytes[] = "\x34\x12\xfe\xff\xff\xff\0\0\x80\x3f\0\0\0\0\0\0\xf0\x3ftext";
    EXPECT_EQ(Bytes(), std::string(bytes, 22));

    ch = OpenFile(fPath.c_str(), 0);
    int16_t s = 0;
    int32_t n = 0;
    float f = 0;
    double x = 0;
    EXPECT_TRUE(ReadShort(ch, &s) && ReadInteger(ch, &n) && ReadSingle(ch, &f) &&
                ReadDouble(ch, &x));
    EXPECT_EQ(s, 0x1234);
    EXPECT_EQ(n, -2);
    EXPECT_EQ(f, 1);
    EXPECT_EQ(x, 1);
    EXPECT_FALSE(ReadDouble(ch, &x));  // four bytes are left
    EXPECT_EQ(x, 1);
    EXPECT_TRUE(GetEOF(ch));
    EXPECT_FALSE(ReadDouble(ch, nullptr));
}

TEST_F(Channels, PrintFileKeptAsItIs)
{
    int32_t ch = OpenFile(fPath.c_str(), 1);
    EXPECT_TRUE(PrintFile(ch, "ab"));
    EXPECT_FALSE(PrintFile(ch, ""));
    EXPECT_FALSE(PrintFile(ch, nullptr));
    CloseFile(ch);
    EXPECT_EQ(Bytes(), std::string("ab\0\0\0", 5));
}

TEST_F(Channels, TextsOfAnyLengthAreWritten)
{
    int64_t size = 0;
    int32_t ch = OpenFile(fPath.c_str(), 1);
    for (int length : {1, 255, 256, 257, 1023, 1024, 1025, 1000000}) {
        const std::string text(length, 'x');
        EXPECT_TRUE(WriteFile(ch, text.c_str()));
        EXPECT_TRUE(PrintFile(ch, text.c_str()));
        size += 2 * length + 3;
        EXPECT_EQ(OpenFile((fPath + text).c_str(), 0), 0);
    }
    EXPECT_EQ(GetLof(ch), size);
}

TEST_F(Channels, SeekFileKeptFalse)
{
    Put("0123456789");
    int32_t ch = OpenFile(fPath.c_str(), 0);
    struct {
        uint32_t whence;
        int32_t offset, position;
    } cases[] = {
        {0, 4, 4},
        {1, 3, 7},
        {1, -5, 2},
        {2, -1, 9},
        {0, 0, 0},
        {2, 5, 15},
        {0, 6, 6},
        {3, 0, 6},
        {UINT32_MAX, 0, 6},
        {0, -1, 6},
        {1, -7, 6},
        {1, INT32_MIN, 6},
        {0, INT32_MAX, INT32_MAX},
    };
    for (auto& c : cases) {
        EXPECT_FALSE(SeekFile(ch, c.whence, c.offset));
        EXPECT_EQ(GetLoc(ch), c.position) << c.whence << ' ' << c.offset;
    }
    errno = 0;
    GetDosErr(77);
    SeekFile(ch, 3, 0);
    SeekFile(ch, 0, 0);
    EXPECT_EQ(GetDosErr(0), 77);
    SeekFile(ch, 0, -1);
    EXPECT_EQ(GetDosErr(0), EINVAL);
    errno = 42;  // a seek that succeeds keeps what errno held before
    SeekFile(ch, 0, 0);
    EXPECT_EQ(GetDosErr(0), 42);
    EXPECT_EQ(GetLof(ch), 10);
    EXPECT_EQ(GetLoc(ch), 0);
}

TEST_F(Channels, ReadsSeeWritesAcrossAPositioningCall)
{
    int32_t ch = OpenFile(fPath.c_str(), 1);
    char text[256];
    EXPECT_TRUE(WriteFile(ch, "first\nsecond\n"));
    SeekFile(ch, 0, 0);
    EXPECT_TRUE(ReadFile(ch, text));
    EXPECT_STREQ(text, "first");
    SeekFile(ch, 1, 0);
    EXPECT_TRUE(WriteFile(ch, "SEC"));
    EXPECT_EQ(GetLof(ch), 13);
    EXPECT_TRUE(ReadFile(ch, text) && ReadFile(ch, text));
    EXPECT_STREQ(text, "SECond");
}

TEST_F(Channels, PositionsBeyondTwoGigabytesGiveTheirLowBits)
{
    Put("x");
    ASSERT_EQ(truncate(fPath.c_str(), 0x100000010ll), 0);  // sparse
    int32_t ch = OpenFile(fPath.c_str(), 0);
    EXPECT_EQ(GetLof(ch), 0x10);
    SeekFile(ch, 2, -8);
    EXPECT_EQ(GetLoc(ch), 8);
    EXPECT_TRUE(WriteDouble(ch, 2.5));
    SeekFile(ch, 1, -8);
    double x = 0;
    EXPECT_TRUE(ReadDouble(ch, &x));
    EXPECT_EQ(x, 2.5);
    SeekFile(ch, 0, INT32_MAX);
    SeekFile(ch, 1, INT32_MAX);
    EXPECT_EQ(GetLoc(ch), -2);
    CloseFile(ch);
    struct stat info;
    ASSERT_EQ(stat(fPath.c_str(), &info), 0);
    EXPECT_EQ(info.st_size, 0x100000010ll);
}

TEST_F(Channels, FullDiskIsToldInTheErrorNumber)
{
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no /dev/full";
    int32_t ch = OpenFile("/dev/full", 0);
    ASSERT_NE(ch, 0);
    GetDosErr(77);
    bool ok = true;
    for (int i = 0; i < 100000 && ok; i++)
        ok = WriteDouble(ch, i);
    EXPECT_FALSE(ok);
    EXPECT_EQ(GetDosErr(77), ENOSPC);
    WriteFile(ch, "more");
    EXPECT_TRUE(CloseFile(ch));
    EXPECT_EQ(GetDosErr(0), ENOSPC);
}

TEST_F(Channels, AThousandStayOpenAtOnce)
{
    rlimit before, few;
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    if (before.rlim_max < 1200)
        GTEST_SKIP() << "the system allows too few open files";
    few = before;
    few.rlim_cur = 100;  // the library asks for more
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const int kCount = 1000;
    std::vector<int32_t> idents;
    for (int i = 0; i < kCount; i++) {
        idents.push_back(OpenFile((fPath + std::to_string(i)).c_str(), 1));
        ASSERT_NE(idents.back(), 0) << i << ' ' << dos_err;
    }
    for (int round = 0; round < 3; round++) {
        for (int i = 0; i < kCount; i++)
            ASSERT_TRUE(WriteInteger(idents[(i * 7) % kCount], (i * 7) % kCount));
    }
    for (int i = 0; i < kCount; i += 2)
        ASSERT_TRUE(CloseFile(idents[i]));
    for (int i = 0; i < kCount; i++) {
        int32_t n = -1;
        SeekFile(idents[i], 0, 4);
        ASSERT_EQ(ReadInteger(idents[i], &n), i % 2 == 1);
        ASSERT_EQ(n, i % 2 == 1 ? i : -1);
    }
    setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(Channels, ShutdownWritesWhatIsBuffered)
{
    int32_t ch = OpenFile(fPath.c_str(), 1);
    WriteFile(ch, "kept");
    EXPECT_EQ(Bytes(), "");
    Close_Sys(fTable);
    fTable = nullptr;
    EXPECT_EQ(Bytes(), "kept");
}

TEST_F(Channels, ShutdownOfAnEarlierTableClosesItsOwnOnes)
{
    const std::string other = fPath + "earlier";
    const int32_t earlier = OpenFile(other.c_str(), 1);
    EXPECT_TRUE(WriteFile(earlier, "its own"));
    void** later = Open_Sys(1);
    EXPECT_FALSE(WriteFile(earlier, "of another table"));
    const int32_t ch = OpenFile(fPath.c_str(), 1);
    EXPECT_TRUE(WriteFile(ch, "kept"));
    Close_Sys(fTable);
    fTable = later;
    EXPECT_EQ(std::filesystem::file_size(other), 7u);
    EXPECT_EQ(Bytes(), "");
    EXPECT_TRUE(WriteFile(ch, " and more"));
    EXPECT_TRUE(CloseFile(ch));
    EXPECT_EQ(Bytes(), "kept and more");
    std::filesystem::remove(other);
}

TEST_F(Channels, LineEndsAtItsZeroByte)
{
    Put(std::string("a\0b\nc\n\0\nlast\0", 13));
    int32_t ch = OpenFile(fPath.c_str(), 0);
    char text[256];
    for (const char* expected : {"a", "c", "", "last"}) {
        EXPECT_TRUE(ReadFile(ch, text));
        EXPECT_STREQ(text, expected);
    }
    EXPECT_FALSE(ReadFile(ch, text));
}

TEST_F(Channels, PipesHaveNoPosition)
{
    ASSERT_EQ(mkfifo(fPath.c_str(), 0600), 0);
    int32_t ch = OpenFile(fPath.c_str(), 0);
    GetDosErr(77);
    EXPECT_EQ(GetLoc(ch), -1);
    EXPECT_EQ(GetDosErr(0), 77);
    EXPECT_EQ(GetLof(ch), -1);
    EXPECT_EQ(GetDosErr(0), ESPIPE);
}
