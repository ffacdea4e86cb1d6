// The finished pixels of a window, for a screen that looks at them itself.

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <vector>

#include "server/screen/FrontBuffer.h"

using namespace server;

namespace {

const int32 kWidth = 6, kHeight = 4;

// The pixels as another process sees them.
class Onlooker {
public:
    explicit Onlooker(SharedPixels& shared)
        : fSize(size_t(shared.width) * size_t(shared.height) * sizeof(uint32)), fWidth(shared.width)
    {
        fPages = mmap(nullptr, fSize, PROT_READ, MAP_SHARED, shared.descriptor, 0);
        close(shared.descriptor);
    }
    ~Onlooker()
    {
        if (IsThere())
            munmap(fPages, fSize);
    }
    bool IsThere() const { return fPages != MAP_FAILED; }
    uint32 At(int32 x, int32 y) const
    {
        return static_cast<const uint32*>(fPages)[y * fWidth + x] & 0xffffff;
    }

private:
    void* fPages;
    size_t fSize;
    int32 fWidth;
};

void copy_in(FrontBuffer& buffer, uint32 color, clipping_rect rect)
{
    std::vector<uint32> pixels(size_t(kWidth) * kHeight, color);
    Surface surface;
    surface.bits = reinterpret_cast<uint8*>(pixels.data());
    surface.width = kWidth;
    surface.height = kHeight;
    surface.bytesPerRow = kWidth * 4;
    buffer.Copy(surface, &rect, 1);
}

TEST(FrontBuffer, OnlookerSeesWhatIsCopiedIn)
{
    FrontBuffer buffer;
    buffer.Share();
    ASSERT_TRUE(buffer.Resize(kWidth, kHeight));
    SharedPixels shared;
    ASSERT_TRUE(buffer.TakeShared(&shared));
    const Onlooker onlooker(shared);
    ASSERT_TRUE(onlooker.IsThere());
    EXPECT_EQ(shared.width, kWidth);
    EXPECT_EQ(shared.height, kHeight);
    EXPECT_EQ(onlooker.At(0, 0), 0xd8d8d8u) << "the panel's grey where nobody has painted";
    copy_in(buffer, 0xff112233, {1, 1, 3, 2});
    EXPECT_EQ(onlooker.At(1, 1), 0x112233u);
    EXPECT_EQ(onlooker.At(3, 2), 0x112233u);
    EXPECT_EQ(onlooker.At(0, 0), 0xd8d8d8u);
    EXPECT_EQ(onlooker.At(4, 2), 0xd8d8d8u);
}

TEST(FrontBuffer, WhatIsTakenWaitsNoMore)
{
    FrontBuffer buffer;
    buffer.Share();
    ASSERT_TRUE(buffer.Resize(kWidth, kHeight));
    SharedPixels shared;
    ASSERT_TRUE(buffer.TakeShared(&shared));
    close(shared.descriptor);
    ASSERT_EQ(shared.dirty.size(), 1u);
    ASSERT_TRUE(buffer.TakeShared(&shared));
    EXPECT_EQ(shared.descriptor, -1) << "the same memory";
    EXPECT_TRUE(shared.dirty.empty());
    copy_in(buffer, 0xff112233, {1, 1, 90, 2});
    ASSERT_TRUE(buffer.TakeShared(&shared));
    ASSERT_EQ(shared.dirty.size(), 1u);
    EXPECT_EQ(shared.dirty[0].left, 1);
    EXPECT_EQ(shared.dirty[0].right, kWidth - 1) << "no more than there is";
}

TEST(FrontBuffer, AnotherSizeIsOtherMemoryWithTheSamePicture)
{
    FrontBuffer buffer;
    buffer.Share();
    ASSERT_TRUE(buffer.Resize(kWidth, kHeight));
    copy_in(buffer, 0xff112233, {0, 0, 1, 1});
    SharedPixels before, after;
    ASSERT_TRUE(buffer.TakeShared(&before));
    const Onlooker former(before);
    ASSERT_TRUE(buffer.Resize(kWidth + 3, kHeight + 1));
    ASSERT_TRUE(buffer.TakeShared(&after));
    ASSERT_GE(after.descriptor, 0);
    const Onlooker onlooker(after);
    EXPECT_EQ(after.width, kWidth + 3);
    EXPECT_EQ(onlooker.At(1, 1), 0x112233u);
    EXPECT_EQ(onlooker.At(kWidth, 0), 0xd8d8d8u);
    EXPECT_EQ(former.At(1, 1), 0x112233u) << "who still looks there may";
}

// How many descriptors the process has.
size_t count_descriptors()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return size_t(std::distance(begin(all), end(all)));
}

TEST(FrontBuffer, NobodyLooksNoDescriptorIsOpen)
{
    const size_t before = count_descriptors();
    std::vector<std::unique_ptr<FrontBuffer>> buffers;
    for (int i = 0; i < 20; i++) {
        buffers.push_back(std::make_unique<FrontBuffer>());
        buffers.back()->Share();
        ASSERT_TRUE(buffers.back()->Resize(kWidth + i, kHeight));
    }
    EXPECT_EQ(count_descriptors(), before);
    SharedPixels shared;
    ASSERT_TRUE(buffers[3]->TakeShared(&shared));
    close(shared.descriptor);
    ASSERT_TRUE(buffers[3]->Resize(kWidth, kHeight));
    EXPECT_EQ(count_descriptors(), before);
}

TEST(FrontBuffer, OwnMemoryIsNobodyElses)
{
    FrontBuffer buffer;
    ASSERT_TRUE(buffer.Resize(kWidth, kHeight));
    SharedPixels shared;
    EXPECT_FALSE(buffer.TakeShared(&shared));
    float scale;
    EXPECT_EQ(buffer.TakeDirty(&scale).size(), 1u) << "it still waits";
}

}  // namespace
