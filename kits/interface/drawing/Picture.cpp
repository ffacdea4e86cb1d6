// Recorded drawing: pictures, and the calls of BView that make and draw them.

#include <Picture.h>

#include <Bitmap.h>
#include <DataIO.h>
#include <Message.h>
#include <TypeConstants.h>
#include <View.h>

#include <interface/drawing/BitmapSurface.h>
#include <interface/drawing/PictureOps.h>
#include <interface/view/ViewPrivate.h>

#include <algorithm>
#include <cstdio>
#include <new>

namespace BPrivate {

static const uint32 kMagic = 'pPic';
static const uint32 kVersion = 1;

// Flat pictures: a head, the calls, the bitmaps, the pictures inside.

static bool write(BDataIO* stream, const void* data, size_t size)
{
    return stream->Write(data, size) == ssize_t(size);
}

static bool read(BDataIO* stream, void* data, size_t size)
{
    return stream->Read(data, size) == ssize_t(size);
}

struct FlatHead {
    uint32 magic = kMagic;
    uint32 version = kVersion;
    uint32 length = 0;
    uint32 bitmaps = 0;
    uint32 pictures = 0;
};

struct FlatBitmap {
    BRect bounds;
    int32 space = 0;
    int32 bytesPerRow = 0;
    int32 length = 0;
};

static bool flatten(const PictureData& data, BDataIO* stream)
{
    FlatHead head;
    head.length = uint32(data.bytes.size());
    head.bitmaps = uint32(data.bitmaps.size());
    head.pictures = uint32(data.pictures.size());
    if (!write(stream, &head, sizeof(head)) || !write(stream, data.bytes.data(), data.bytes.size()))
        return false;
    for (const auto& bitmap : data.bitmaps) {
        FlatBitmap flat;
        flat.bounds = bitmap->Bounds();
        flat.space = bitmap->ColorSpace();
        flat.bytesPerRow = bitmap->BytesPerRow();
        flat.length = bitmap->BitsLength();
        if (!write(stream, &flat, sizeof(flat)) ||
            !write(stream, bitmap->Bits(), size_t(flat.length)))
            return false;
    }
    for (const auto& picture : data.pictures) {
        if (!flatten(*picture, stream))
            return false;
    }
    return true;
}

static std::shared_ptr<PictureData> unflatten(BDataIO* stream, int depth)
{
    FlatHead head;
    if (depth > kMaxPictureDepth || !read(stream, &head, sizeof(head)) || head.magic != kMagic ||
        head.version != kVersion)
        return nullptr;
    auto data = std::make_shared<PictureData>();
    // By pieces: a damaged length must not ask for memory that no stream fills.
    for (size_t left = head.length; left > 0;) {
        const size_t part = std::min<size_t>(left, 65536), start = data->bytes.size();
        data->bytes.resize(start + part);
        if (!read(stream, data->bytes.data() + start, part))
            return nullptr;
        left -= part;
    }
    for (uint32 i = 0; i < head.bitmaps; i++) {
        FlatBitmap flat;
        if (!read(stream, &flat, sizeof(flat)))
            return nullptr;
        auto bitmap =
            std::make_shared<BBitmap>(flat.bounds, 0, space_of(flat.space), flat.bytesPerRow);
        if (bitmap->BitsLength() != flat.length ||
            !read(stream, bitmap->Bits(), size_t(flat.length)))
            return nullptr;
        data->bitmaps.push_back(std::move(bitmap));
    }
    for (uint32 i = 0; i < head.pictures; i++) {
        auto picture = unflatten(stream, depth + 1);
        if (picture == nullptr)
            return nullptr;
        data->pictures.push_back(std::move(picture));
    }
    return data;
}

}  // namespace BPrivate

using BPrivate::PictureData;
using BPrivate::PictureOp;

BPicture::BPicture() : fData(std::make_shared<PictureData>()) {}

BPicture::BPicture(const BPicture& other) : BArchivable(), fData(other.fData) {}

BPicture::BPicture(BMessage* data) : BArchivable(data), fData(std::make_shared<PictureData>())
{
    const void* bytes;
    ssize_t size;
    if (data == nullptr || data->FindData("_data", B_RAW_TYPE, &bytes, &size) != B_OK)
        return;
    BMemoryIO stream(bytes, size_t(size));
    Unflatten(&stream);
}

BPicture::~BPicture() = default;

BArchivable* BPicture::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BPicture") ? new (std::nothrow) BPicture(data) : nullptr;
}

status_t BPicture::Archive(BMessage* data, bool deep) const
{
    status_t status = BArchivable::Archive(data, deep);
    if (status != B_OK)
        return status;
    BMallocIO stream;
    if (!BPrivate::flatten(*fData, &stream))
        return B_NO_MEMORY;
    return data->AddData("_data", B_RAW_TYPE, stream.Buffer(), ssize_t(stream.BufferLength()));
}

status_t BPicture::Perform(perform_code code, void* arg) { return BArchivable::Perform(code, arg); }

status_t BPicture::Flatten(BDataIO* stream)
{
    if (stream == nullptr)
        return B_BAD_VALUE;
    return BPrivate::flatten(*fData, stream) ? B_OK : B_IO_ERROR;
}

status_t BPicture::Unflatten(BDataIO* stream)
{
    if (stream == nullptr)
        return B_BAD_VALUE;
    std::shared_ptr<PictureData> data = BPrivate::unflatten(stream, 0);
    if (data == nullptr)
        return B_BAD_DATA;
    fData = std::move(data);
    return B_OK;
}

status_t BPicture::Play(void** callBackTable, int32 tableEntries, void* userData)
{
    if (callBackTable == nullptr || tableEntries < 0)
        return B_BAD_VALUE;
    fData->PlayTable(callBackTable, tableEntries, userData);
    return B_OK;
}

// The views' part. A recording begun in another one goes on when the inner one ends.

static void begin_recording(BPrivate::ViewData& data, BPicture* picture,
                            std::unique_ptr<PictureData> start)
{
    data.NeedExtras().pictures.emplace_back(picture, start.get());
    data.recording = start.release();
    data.Outdate();
}

// The state that drawing begins with is that of the recording, wherever the picture is played;
// places stay those of the view that plays it.
void BView::BeginPicture(BPicture* a_picture)
{
    if (a_picture == nullptr)
        return;
    begin_recording(*fData, a_picture, std::make_unique<PictureData>());
    PictureData& recording = *fData->recording;
    recording.Add(PictureOp::HighColor, HighColor());
    recording.Add(PictureOp::LowColor, LowColor());
    recording.Add(PictureOp::DrawingMode, DrawingMode());
    source_alpha source;
    alpha_function function;
    GetBlendingMode(&source, &function);
    recording.Add(PictureOp::BlendingMode, source, function);
    recording.Add(PictureOp::PenSize, PenSize());
    recording.Add(PictureOp::LineMode, LineCapMode(), LineJoinMode(), LineMiterLimit());
    recording.Add(PictureOp::FillRule, FillRule());
    recording.Add(PictureOp::MovePenTo, PenLocation());
    BFont font;
    GetFont(&font);
    recording.AddFont(font);
}

void BView::AppendToPicture(BPicture* a_picture)
{
    if (a_picture != nullptr)
        begin_recording(*fData, a_picture, std::make_unique<PictureData>(*a_picture->fData));
}

BPicture* BView::EndPicture()
{
    if (fData->Extras().pictures.empty())
        return nullptr;
    auto& pictures = fData->extras->pictures;
    auto [picture, data] = pictures.back();
    pictures.pop_back();
    fData->recording = pictures.empty() ? nullptr : pictures.back().second;
    fData->Outdate();
    picture->fData.reset(data);
    return picture;
}

void BView::DrawPicture(const BPicture* a_picture) { DrawPicture(a_picture, fData->state.pen); }

void BView::DrawPicture(const BPicture* a_picture, BPoint where)
{
    if (a_picture == nullptr)
        return;
    // The picture may be drawn while it is recorded anew.
    const std::shared_ptr<const PictureData> data = a_picture->fData;
    if (fData->recording != nullptr)
        fData->recording->AddPicture(data, where);
    else
        PictureData::PlayAt(*data, this, where, 0);
}

void BView::DrawPicture(const char* filename, long offset, BPoint where)
{
    if (filename == nullptr)
        return;
    std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(filename, "rb"), fclose);
    if (file == nullptr || fseek(file.get(), offset, SEEK_SET) != 0)
        return;
    BMallocIO stream;
    char part[4096];
    while (size_t count = fread(part, 1, sizeof(part), file.get()))
        stream.Write(part, count);
    stream.Seek(0, SEEK_SET);
    BPicture picture;
    if (picture.Unflatten(&stream) == B_OK)
        DrawPicture(&picture, where);
}

void BView::DrawPictureAsync(const BPicture* a_picture) { DrawPicture(a_picture); }

void BView::DrawPictureAsync(const BPicture* a_picture, BPoint where)
{
    DrawPicture(a_picture, where);
}

void BView::DrawPictureAsync(const char* filename, long offset, BPoint where)
{
    DrawPicture(filename, offset, where);
}

// Views do not draw into files.
void BView::SetDiskMode(char*, long) {}
