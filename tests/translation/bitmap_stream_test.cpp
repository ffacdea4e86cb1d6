// A bitmap as a stream: header and bits, in any pieces.

#include "Pictures.h"

#include <ByteOrder.h>

#include <gtest/gtest.h>

static Bytes all_of(BBitmapStream& stream, size_t piece)
{
    Bytes bytes(size_t(stream.Size()) + 8);
    size_t size = 0;
    stream.Seek(0, SEEK_SET);
    for (;;) {
        const ssize_t got = stream.Read(&bytes[size], std::min(piece, bytes.size() - size));
        if (got <= 0)
            break;
        size += size_t(got);
    }
    bytes.resize(size);
    return bytes;
}

TEST(BitmapStream, HeaderIsBigEndianAndTheBitsFollow)
{
    BBitmap* bitmap = make_fields(3, 2, B_RGB32);
    BBitmapStream stream(bitmap);
    const Bytes bytes = all_of(stream, 1000);
    ASSERT_EQ(bytes.size(), 32u + size_t(bitmap->BitsLength()));
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "bits");
    EXPECT_EQ(bytes[12], 0x40);  // 2.0f
    EXPECT_EQ(bytes[23], bitmap->BytesPerRow());
    EXPECT_EQ(bytes[27], B_RGB32);
    EXPECT_EQ(bytes[31], bitmap->BitsLength());
    EXPECT_EQ(memcmp(&bytes[32], bitmap->Bits(), size_t(bitmap->BitsLength())), 0);
}

TEST(BitmapStream, CopyingPieceByPieceMakesTheSameBitmap)
{
    BBitmapStream from(make_fields(31, 7, B_RGBA32));
    const Bytes whole = all_of(from, 1000000);
    for (const size_t piece : {1u, 3u, 31u, 32u, 33u, 100u, 100000u}) {
        SCOPED_TRACE(piece);
        BBitmapStream to;
        for (size_t at = 0; at < whole.size(); at += piece) {
            const size_t size = std::min(piece, whole.size() - at);
            ASSERT_EQ(to.Write(&whole[at], size), ssize_t(size));
        }
        EXPECT_EQ(to.Position(), off_t(whole.size()));
        EXPECT_EQ(all_of(to, 17), whole);
        BBitmap* bitmap;
        ASSERT_EQ(to.DetachBitmap(&bitmap), B_OK);
        const std::unique_ptr<BBitmap> owned(bitmap);
        EXPECT_EQ(to.DetachBitmap(&bitmap), B_ERROR);
    }
}

TEST(BitmapStream, DetachedBitmapIsTheCallers)
{
    BBitmap* bitmap = nullptr;
    {
        BBitmapStream stream(make_fields(4, 4, B_RGB32));
        ASSERT_EQ(stream.DetachBitmap(&bitmap), B_OK);
    }
    const std::unique_ptr<BBitmap> owned(bitmap);
    EXPECT_EQ(pixel_at(*owned, 0, 0), 0xFFFF0000);
    BBitmapStream empty;
    EXPECT_EQ(empty.DetachBitmap(nullptr), B_BAD_VALUE);
    EXPECT_EQ(empty.DetachBitmap(&bitmap), B_ERROR);
    EXPECT_EQ(bitmap, nullptr);
}

TEST(BitmapStream, PlacesOutsideAreRefused)
{
    BBitmapStream empty, full(make_fields(4, 4, B_RGB32));
    char bytes[64] = {};
    EXPECT_EQ(empty.Size(), 0);
    EXPECT_EQ(empty.ReadAt(0, bytes, 1), B_NO_INIT);
    EXPECT_EQ(empty.WriteAt(33, bytes, 1), B_BAD_VALUE);
    EXPECT_EQ(empty.WriteAt(0, bytes, 64), B_BAD_DATA);
    EXPECT_EQ(full.ReadAt(-1, bytes, 1), B_BAD_VALUE);
    EXPECT_EQ(full.ReadAt(INT64_MAX, bytes, 1), 0);
    EXPECT_EQ(full.ReadAt(0, nullptr, 1), B_BAD_VALUE);
    EXPECT_EQ(full.WriteAt(full.Size(), bytes, 1), 0);
    EXPECT_EQ(full.Seek(-1, SEEK_SET), B_BAD_VALUE);
    EXPECT_EQ(full.Seek(0, 9), B_BAD_VALUE);
    EXPECT_EQ(full.Seek(-4, SEEK_END), full.Size() - 4);
    EXPECT_EQ(full.SetSize(full.Size() + 1), B_NOT_ALLOWED);
    off_t size = 0;
    EXPECT_EQ(full.GetSize(&size), B_OK);
    EXPECT_EQ(size, full.Size());
}

TEST(BitmapStream, ImpossibleHeadersMakeNoBitmap)
{
    struct Row {
        float right, bottom;
        uint32_t row_bytes, space, data_size;
    };
    const Row rows[] = {
        {3, 3, 16, B_RGB32, 63},
        {-1, 3, 16, B_RGB32, 64},
        {3, 3, 8, B_RGB32, 32},
        {3, 3, 16, 0x7777, 64},
        {NAN, 3, 16, B_RGB32, 64},
        {60000, 60000, 240004, B_RGB32, 0x5B8E7D81},
        {3, 3, 0xFFFFFFFF, B_RGB32, 4},
        {1e30f, 0, 4, B_RGB32, 4},
        {0, 0, 0x30000000, B_GRAY8, 0x30000000},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        BBitmapStream stream;
        uint32_t header[8] = {B_TRANSLATOR_BITMAP, 0, 0, 0, 0, row.row_bytes, row.space,
                              row.data_size};
        memcpy(&header[3], &row.right, 4);
        memcpy(&header[4], &row.bottom, 4);
        for (uint32_t& word : header)
            word = uint32_t(B_HOST_TO_BENDIAN_INT32(word));
        EXPECT_LT(stream.WriteAt(0, header, sizeof(header)), 0);
        BBitmap* bitmap;
        EXPECT_EQ(stream.DetachBitmap(&bitmap), B_ERROR);
        std::unique_ptr<BBitmap> read;
        const auto* bytes = reinterpret_cast<const uint8_t*>(header);
        EXPECT_NE(decode(Bytes(bytes, bytes + sizeof(header)), &read), B_OK);
    }
}
