// Streams beside a plain block of bytes, caches, thread-local words and stop watches.

#include <BlockCache.h>
#include <BufferIO.h>
#include <BufferedDataIO.h>
#include <DataIO.h>
#include <OS.h>
#include <StopWatch.h>
#include <TLS.h>
#include <UTF8.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

// What one random call does to a file of bytes and to its model.
static void use(std::mt19937& random, BPositionIO& stream, std::string& model)
{
    const off_t at = off_t(random() % 200);
    const size_t size = random() % 50;
    char buffer[64] = {};
    switch (random() % 4) {
        case 0: {
            std::string bytes(size, char('a' + random() % 26));
            ASSERT_EQ(stream.WriteAt(at, bytes.data(), size), ssize_t(size));
            if (size > 0) {
                model.resize(std::max(model.size(), size_t(at) + size));
                model.replace(size_t(at), size, bytes);
            }
            break;
        }
        case 1: {
            const ssize_t got = stream.ReadAt(at, buffer, size);
            const std::string wanted =
                size_t(at) < model.size() ? model.substr(size_t(at), size) : "";
            ASSERT_EQ(got, ssize_t(wanted.size()));
            ASSERT_EQ(std::string(buffer, size_t(got)), wanted);
            break;
        }
        case 2:
            if (random() % 8 == 0) {
                ASSERT_EQ(stream.SetSize(at), B_OK);
                model.resize(size_t(at));
            }
            break;
        case 3: {
            const off_t place = off_t(random() % (model.size() + 1));
            ASSERT_EQ(stream.Seek(place, SEEK_SET), place);
            ASSERT_EQ(stream.Position(), place);
            const ssize_t got = stream.Read(buffer, size);
            ASSERT_EQ(std::string(buffer, size_t(got)), model.substr(size_t(place), size));
            ASSERT_EQ(stream.Position(), place + got);
            ASSERT_EQ(stream.Seek(0, SEEK_END), off_t(model.size()));
            break;
        }
    }
}

TEST(StreamModel, GrowingMemoryIsAFile)
{
    for (unsigned seed = 0; seed < 20; seed++) {
        std::mt19937 random(seed);
        BMallocIO stream;
        stream.SetBlockSize(seed % 3 == 0 ? 1 : 64);
        std::string model;
        for (int i = 0; i < 500 && !HasFatalFailure(); i++)
            use(random, stream, model);
        ASSERT_EQ(stream.BufferLength(), model.size());
        EXPECT_EQ(memcmp(stream.Buffer(), model.data(), model.size()), 0);
    }
}

TEST(StreamModel, ABufferBeforeAFileChangesNothing)
{
    for (unsigned seed = 0; seed < 20; seed++) {
        std::mt19937 random(seed);
        BMallocIO file;
        std::string model;
        {
            BBufferIO stream(&file, 1 + seed * 7, false);
            for (int i = 0; i < 500 && !HasFatalFailure(); i++)
                use(random, stream, model);
        }
        ASSERT_EQ(file.BufferLength(), model.size());
        EXPECT_EQ(memcmp(file.Buffer(), model.data(), model.size()), 0) << seed;
    }
}

// Gives and takes as many bytes as it likes, as sockets do.
class Trickle : public BDataIO {
public:
    explicit Trickle(unsigned seed) : fRandom(seed) {}
    ssize_t Read(void* buffer, size_t size) override
    {
        const size_t count = std::min({size, size_t(1 + fRandom() % 5), bytes.size() - fRead});
        memcpy(buffer, bytes.data() + fRead, count);
        fRead += count;
        return ssize_t(count);
    }
    ssize_t Write(const void* buffer, size_t size) override
    {
        if (fails)
            return B_IO_ERROR;
        const size_t count = std::min(size, size_t(1 + fRandom() % 5));
        bytes.append(static_cast<const char*>(buffer), count);
        return ssize_t(count);
    }

    std::string bytes;
    bool fails = false;

private:
    std::mt19937 fRandom;
    size_t fRead = 0;
};

TEST(BufferedStreams, PiecesOfAnySizeArriveWholeAndInOrder)
{
    for (unsigned seed = 0; seed < 10; seed++) {
        std::mt19937 random(seed);
        Trickle trickle(seed);
        std::string all;
        {
            BBufferedDataIO stream(trickle, 16, false);
            ASSERT_EQ(stream.InitCheck(), B_OK);
            for (int i = 0; i < 200; i++) {
                const std::string piece(random() % 40, char('a' + i % 26));
                ASSERT_EQ(stream.Write(piece.data(), piece.size()), ssize_t(piece.size()));
                all += piece;
            }
        }
        EXPECT_EQ(trickle.bytes, all);
        BBufferedDataIO stream(trickle, 16, false);
        std::string back;
        for (;;) {
            char buffer[40];
            const size_t wanted = 1 + random() % 40;
            const ssize_t got = stream.Read(buffer, wanted);
            ASSERT_GE(got, 0);
            if (got == 0)
                break;
            back.append(buffer, size_t(got));
        }
        EXPECT_EQ(back, all);
    }
}

TEST(BufferedStreams, AStreamThatFailsIsTold)
{
    Trickle trickle(1);
    trickle.fails = true;
    BBufferedDataIO stream(trickle, 16, false);
    EXPECT_EQ(stream.Write("short", 5), 5);
    EXPECT_EQ(stream.Flush(), B_IO_ERROR);
    trickle.fails = false;
    EXPECT_EQ(stream.Flush(), B_OK);
    EXPECT_EQ(trickle.bytes, "short") << "nothing was lost, nor written twice";
}

TEST(BlockCache, BlocksComeBackAndAreNeverGivenTwice)
{
    for (const uint32 kind : {B_OBJECT_CACHE, B_MALLOC_CACHE}) {
        BBlockCache cache(4, 40, kind);
        void* first = cache.Get(40);
        ASSERT_NE(first, nullptr);
        memset(first, 1, 40);
        cache.Save(first, 40);
        EXPECT_EQ(cache.Get(40), first);
        cache.Save(nullptr, 40);
        void* other = cache.Get(100);  // another size
        memset(other, 2, 100);
        cache.Save(other, 100);
        std::set<void*> all = {first};
        for (int i = 0; i < 20; i++) {
            void* block = cache.Get(40);
            memset(block, i, 40);
            EXPECT_TRUE(all.insert(block).second);
        }
        for (void* block : all)
            cache.Save(block, 40);
    }
}

TEST(BlockCache, ThreadsShareItWithoutSharingBlocks)
{
    BBlockCache cache(8, 16, B_OBJECT_CACHE);
    std::atomic<int> spoiled{0};
    std::vector<std::thread> threads;
    for (int id = 1; id <= 4; id++) {
        threads.emplace_back([&, id] {
            for (int i = 0; i < 20'000; i++) {
                auto* block = static_cast<char*>(cache.Get(16));
                memset(block, id, 16);
                for (int byte = 0; byte < 16; byte++)
                    spoiled += block[byte] != id;
                cache.Save(block, 16);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(spoiled, 0);
}

TEST(ThreadLocal, EachThreadHasItsOwnWords)
{
    const int32 index = tls_allocate();
    ASSERT_GE(index, 0);
    int mine, theirs;
    tls_set(index, &mine);
    std::thread([&] {
        EXPECT_EQ(tls_get(index), nullptr);
        tls_set(index, &theirs);
        EXPECT_EQ(*tls_address(index), &theirs);
    }).join();
    EXPECT_EQ(tls_get(index), &mine);
    for (const int32 none : {-1, TLS_MAX_KEYS, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(tls_get(none), nullptr);
        EXPECT_EQ(tls_address(none), nullptr);
        tls_set(none, &mine);
    }
    int32 last = 0;
    for (int i = 0; i < TLS_MAX_KEYS && last >= 0; i++)
        last = tls_allocate();
    EXPECT_EQ(last, B_NO_MEMORY);
}

TEST(StopWatch, StandsStillWhileSuspended)
{
    BStopWatch watch("test", true);
    EXPECT_STREQ(watch.Name(), "test");
    snooze(2'000);
    watch.Suspend();
    const bigtime_t stopped = watch.ElapsedTime();
    EXPECT_GE(stopped, 2'000);
    EXPECT_EQ(watch.Lap(), 0);
    snooze(2'000);
    watch.Suspend();  // once more changes nothing
    EXPECT_EQ(watch.ElapsedTime(), stopped);
    watch.Resume();
    watch.Resume();
    EXPECT_GE(watch.ElapsedTime(), stopped);
    for (int i = 0; i < 50; i++)  // more laps than it keeps
        EXPECT_GT(watch.Lap(), 0);
    const bigtime_t before = system_time();
    watch.Reset();
    const bigtime_t elapsed = watch.ElapsedTime();  // read before the clock goes on
    EXPECT_LE(elapsed, system_time() - before);
}

TEST(TextConversion, PiecesOfAnySizeMakeTheSameText)
{
    std::string latin;
    for (int byte = 1; byte < 256; byte++)
        latin += char(byte);
    int32 from = int32(latin.size()), size = 1'000, state = 0;
    std::string whole(1'000, ' ');
    ASSERT_EQ(convert_to_utf8(B_ISO1_CONVERSION, latin.data(), &from, whole.data(), &size, &state),
              B_OK);
    EXPECT_EQ(from, 255);
    whole.resize(size_t(size));
    EXPECT_EQ(whole.size(), 127u + 2 * 128);
    for (int32 piece = 2; piece < 40; piece++) {
        std::string back;
        int32 at = 0;
        state = 0;
        while (at < int32(whole.size())) {
            char buffer[7];
            int32 taken = std::min(piece, int32(whole.size()) - at), made = sizeof(buffer);
            ASSERT_EQ(convert_from_utf8(B_ISO1_CONVERSION, whole.data() + at, &taken, buffer, &made,
                                        &state),
                      B_OK);
            ASSERT_GT(taken, 0);
            at += taken;
            back.append(buffer, size_t(made));
        }
        ASSERT_EQ(back, latin) << piece;
    }
    int32 none = -1;
    char byte;
    EXPECT_EQ(convert_to_utf8(B_ISO1_CONVERSION, "x", &none, &byte, &size, &state), B_BAD_VALUE);
    EXPECT_EQ(convert_to_utf8(B_ISO1_CONVERSION, nullptr, &from, &byte, &size, &state),
              B_BAD_VALUE);
    from = size = 1;
    EXPECT_EQ(convert_to_utf8(9999, "x", &from, &byte, &size, &state), B_ERROR);
}
