// Lockers, streams, archives and text conversion.

#include <Archivable.h>
#include <Autolock.h>
#include <BufferIO.h>
#include <BufferedDataIO.h>
#include <ByteOrder.h>
#include <DataIO.h>
#include <Locker.h>
#include <Message.h>
#include <TypeConstants.h>
#include <UTF8.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

TEST(Locker, IsRecursiveAndKeepsOthersOut)
{
    BLocker locker("test");
    ASSERT_TRUE(locker.Lock());
    ASSERT_TRUE(locker.Lock());
    EXPECT_EQ(2, locker.CountLocks());
    EXPECT_EQ(find_thread(nullptr), locker.LockingThread());
    std::thread([&] {
        EXPECT_FALSE(locker.IsLocked());
        EXPECT_EQ(B_TIMED_OUT, locker.LockWithTimeout(1000));
        EXPECT_EQ(B_TIMED_OUT, locker.LockWithTimeout(0));
    }).join();
    EXPECT_EQ(1, locker.CountLockRequests()) << "who gave up wants it no more";
    locker.Unlock();
    EXPECT_TRUE(locker.IsLocked());
    locker.Unlock();
    EXPECT_FALSE(locker.IsLocked());
    locker.Unlock();
    EXPECT_EQ(B_OK, locker.LockWithTimeout(0));
    locker.Unlock();
}

TEST(Locker, AnyThreadGivesItBack)
{
    for (const bool quick : {true, false}) {
        BLocker locker("given back", quick);
        ASSERT_TRUE(locker.Lock());
        sem_info info;
        ASSERT_EQ(B_OK, get_sem_info(locker.Sem(), &info));
        EXPECT_STREQ("given back", info.name);
        std::thread([&] { locker.Unlock(); }).join();
        EXPECT_FALSE(locker.IsLocked());
        EXPECT_EQ(B_ERROR, locker.LockingThread());
        std::thread([&] { EXPECT_EQ(B_OK, locker.LockWithTimeout(0)); }).join();
        EXPECT_EQ(B_TIMED_OUT, locker.LockWithTimeout(1000));
    }
}

TEST(Locker, DeletingItWakesWhoWaits)
{
    for (const bool quick : {true, false}) {
        auto* locker = new BLocker("going", quick);
        ASSERT_TRUE(locker->Lock());
        status_t timed = B_OK;
        bool locked = true;
        std::thread one([&] { timed = locker->LockWithTimeout(60'000'000); });
        std::thread other([&] { locked = locker->Lock(); });
        sem_info info;
        while (get_sem_info(locker->Sem(), &info) == B_OK && info.count > -2)
            snooze(500);
        delete locker;
        one.join();
        other.join();
        EXPECT_EQ(B_BAD_SEM_ID, timed);
        EXPECT_FALSE(locked);
    }
}

TEST(Locker, NobodyIsLeftBehindWhereSomeGiveUp)
{
    BLocker locker;
    std::atomic<int> inside{0}, turns{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int turn = 0; turn < 2000; ++turn) {
                if (locker.LockWithTimeout(i % 2 == 0 ? B_INFINITE_TIMEOUT : 20) != B_OK)
                    continue;
                EXPECT_EQ(1, ++inside);
                turns++;
                inside--;
                locker.Unlock();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GE(turns, 4000);
    EXPECT_EQ(0, locker.CountLockRequests());
    EXPECT_EQ(B_OK, locker.LockWithTimeout(0));
}

TEST(Locker, CountsRightUnderContention)
{
    BLocker locker;
    int64 count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 20000; ++turn) {
                BAutolock lock(locker);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(80000, count);
}

TEST(Streams, MemoryGrowsOrStopsAtItsEnd)
{
    BMallocIO grown;
    EXPECT_EQ(3, grown.WriteAt(5, "abc", 3));
    EXPECT_EQ(8u, grown.BufferLength());
    EXPECT_EQ(0, memcmp("\0\0\0\0\0abc", grown.Buffer(), 8));
    EXPECT_EQ(B_BAD_VALUE, grown.WriteAt(-1, "x", 1));
    EXPECT_EQ(B_NO_MEMORY, grown.WriteAt(INT64_MAX - 1, "xyz", 3));
    EXPECT_EQ(6, grown.Seek(-2, SEEK_END));
    char byte;
    EXPECT_EQ(1, grown.Read(&byte, 1));
    EXPECT_EQ('b', byte);
    EXPECT_EQ(B_BAD_VALUE, grown.Seek(-8, SEEK_CUR));
    EXPECT_EQ(7, grown.Position());

    char memory[4] = {'a', 'b', 'c', 'd'};
    BMemoryIO fixed(memory, sizeof(memory));
    EXPECT_EQ(2, fixed.WriteAt(2, "xyz", 3));
    EXPECT_EQ(B_PARTIAL_WRITE, fixed.WriteAtExactly(3, "12", 2));
    EXPECT_EQ(B_ERROR, fixed.SetSize(5));
    EXPECT_EQ(B_OK, fixed.SetSize(1));
    EXPECT_EQ(0, fixed.ReadAt(1, &byte, 1));
    BMemoryIO constant(static_cast<const void*>("abc"), 3);
    EXPECT_EQ(B_NOT_ALLOWED, constant.Write("x", 1));
    char both[3];
    size_t read = 9;
    EXPECT_EQ(B_PARTIAL_READ, constant.ReadAtExactly(1, both, 3, &read));
    EXPECT_EQ(2u, read);
}

TEST(Streams, BufferedOnesHoldTheSameBytesInTheEnd)
{
    BMallocIO target;
    std::string expected;
    {
        BBufferIO buffered(&target, 512, false);
        uint32 seed = 7;
        for (int i = 0; i < 500; ++i) {
            seed = seed * 1664525 + 1013904223;
            const size_t place = (seed >> 8) % (expected.size() + 1);
            const std::string text((seed >> 4) % 700, static_cast<char>('a' + i % 26));
            if (place + text.size() > expected.size())
                expected.resize(place + text.size());
            expected.replace(place, text.size(), text);
            ASSERT_EQ(ssize_t(text.size()), buffered.WriteAt(place, text.data(), text.size()));
            std::string back(std::min<size_t>(100, expected.size()), ' ');
            ASSERT_EQ(ssize_t(back.size()), buffered.ReadAt(0, back.data(), back.size()));
            ASSERT_EQ(expected.substr(0, back.size()), back);
        }
    }
    EXPECT_EQ(expected,
              std::string(static_cast<const char*>(target.Buffer()), target.BufferLength()));
    target.Seek(0, SEEK_SET);
    BBufferedDataIO reader(target, 512, false);
    std::string back(expected.size(), ' ');
    EXPECT_EQ(B_OK, reader.ReadExactly(back.data(), back.size()));
    EXPECT_EQ(expected, back);
    EXPECT_EQ(0, reader.Read(back.data(), 1));
}

// Two objects that know each other: a parent owns its child, which points back.
class __attribute__((visibility("default"))) Node : public BArchivable {
public:
    Node() {}
    Node(BMessage* archive) : BArchivable(BUnarchiver::PrepareArchive(archive))
    {
        BUnarchiver unarchiver(archive);
        fName = archive->GetInt32("name", 0);
        unarchiver.FindObject("child", fChild);
        unarchiver.FindObject("peer", BUnarchiver::B_DONT_ASSUME_OWNERSHIP, fPeer);
        unarchiver.Finish();
    }
    ~Node() { delete fChild; }

    static BArchivable* Instantiate(BMessage* archive);
    status_t Archive(BMessage* into, bool deep) const override
    {
        BArchiver archiver(into);
        status_t status = BArchivable::Archive(into, deep);
        if (status == B_OK)
            status = into->AddInt32("name", fName);
        if (status == B_OK)
            status = archiver.AddArchivable("child", fChild, deep);
        if (status == B_OK)
            status = archiver.AddArchivable("peer", fPeer, deep);
        return archiver.Finish(status);
    }

    int32 fName = 0;
    Node* fChild = nullptr;
    Node* fPeer = nullptr;
};

BArchivable* Node::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "Node") ? new Node(archive) : nullptr;
}

TEST(Archives, ObjectsThatPointAtOneAnotherComeBackThatWay)
{
    Node parent;
    parent.fName = 1;
    parent.fChild = new Node;
    parent.fChild->fName = 2;
    parent.fChild->fPeer = &parent;
    BMessage archive;
    ASSERT_EQ(B_OK, parent.Archive(&archive, true));
    EXPECT_TRUE(BUnarchiver::IsArchiveManaged(&archive));
    EXPECT_TRUE(validate_instantiation(&archive, "Node"));
    EXPECT_FALSE(validate_instantiation(&archive, "Other"));

    BArchivable* made = instantiate_object(&archive);
    Node* node = dynamic_cast<Node*>(made);
    ASSERT_NE(nullptr, node);
    ASSERT_NE(nullptr, node->fChild);
    EXPECT_EQ(2, node->fChild->fName);
    EXPECT_EQ(node, node->fChild->fPeer);
    delete node;
}

TEST(Archives, ClassNamesThatAreNoneFindNothing)
{
    for (const char* name : {"", "::", "A::", "::A", "A:B", "NoSuchClass", "A::B::C"})
        EXPECT_EQ(nullptr, find_instantiation_func(name)) << name;
    EXPECT_EQ(nullptr, instantiate_object(nullptr));
    EXPECT_NE(nullptr, find_instantiation_func("BHandler"));
}

static std::string converted(bool to_utf8, uint32 set, const std::string& text, int32 room,
                             int32* used)
{
    char dest[64];
    int32 source_length = static_cast<int32>(text.size());
    int32 length = room;
    int32 state = 0;
    const auto convert = to_utf8 ? convert_to_utf8 : convert_from_utf8;
    if (convert(set, text.data(), &source_length, dest, &length, &state, '?') != B_OK)
        return "failed";
    *used = source_length;
    return std::string(dest, length);
}

TEST(TextConversion, KeepsWholeCharactersAndReplacesStrayOnes)
{
    int32 used;
    EXPECT_EQ("ä€", converted(true, B_MS_WINDOWS_CONVERSION, "\xE4\x80", 64, &used));
    EXPECT_EQ("\xE4", converted(false, B_ISO1_CONVERSION, "ä", 64, &used));
    EXPECT_EQ("a?b", converted(false, B_ISO1_CONVERSION, "a€b", 64, &used));
    EXPECT_EQ("a?b", converted(false, B_ISO1_CONVERSION,
                               "a\xFF"
                               "b",
                               64, &used));
    EXPECT_EQ("ä", converted(true, B_ISO1_CONVERSION, "\xE4\xF6", 3, &used));
    EXPECT_EQ(1, used);
    EXPECT_EQ("a", converted(false, B_ISO1_CONVERSION, "a\xC3", 64, &used)) << "cut off";
    EXPECT_EQ(1, used);
    EXPECT_EQ("failed", converted(true, 999, "a", 64, &used));
}

TEST(ByteOrder, SwapsByTheTypesUnits)
{
    uint8 bytes[] = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(B_OK, swap_data(B_INT32_TYPE, bytes, 8, B_SWAP_ALWAYS));
    EXPECT_EQ(4, bytes[0]);
    EXPECT_EQ(8, bytes[4]);
    EXPECT_EQ(B_BAD_VALUE, swap_data(B_INT32_TYPE, bytes, 6, B_SWAP_ALWAYS));
    EXPECT_EQ(B_BAD_VALUE, swap_data(B_STRING_TYPE, bytes, 8, B_SWAP_ALWAYS));
    EXPECT_EQ(B_OK, swap_data(B_INT16_TYPE, bytes, 8, B_SWAP_HOST_TO_LENDIAN));
    EXPECT_EQ(4, bytes[0]);
}

TEST(Archives, NullIsNoClass)
{
    BMessage archive;
    archive.AddString("class", "Node");
    errno = 0;
    EXPECT_FALSE(validate_instantiation(&archive, nullptr));
    EXPECT_EQ(B_MISMATCHED_VALUES, errno);
    EXPECT_FALSE(validate_instantiation(nullptr, "Node"));
    EXPECT_EQ(B_BAD_VALUE, errno);
}

TEST(ByteOrder, SystemTypesAreHeldInTheHostsOrder)
{
    for (const type_code type : {B_INT32_TYPE, B_STRING_TYPE, B_BOOL_TYPE, B_RGB_COLOR_TYPE})
        EXPECT_TRUE(is_type_swapped(type)) << type;
    for (const type_code type : {uint32(B_RAW_TYPE), uint32(B_ANY_TYPE), uint32('mine'), 0u})
        EXPECT_FALSE(is_type_swapped(type)) << type;
}
