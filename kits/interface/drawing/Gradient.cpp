#include <Gradient.h>

#include <DataIO.h>
#include <GradientConic.h>
#include <GradientDiamond.h>
#include <GradientLinear.h>
#include <GradientRadial.h>
#include <GradientRadialFocus.h>
#include <Message.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

const int32 kMostStops = 1 << 16;  // that a stream may bring

BGradient* make_gradient(int32 type)
{
    switch (type) {
        case BGradient::TYPE_LINEAR:
            return new (std::nothrow) BGradientLinear;
        case BGradient::TYPE_RADIAL:
            return new (std::nothrow) BGradientRadial;
        case BGradient::TYPE_RADIAL_FOCUS:
            return new (std::nothrow) BGradientRadialFocus;
        case BGradient::TYPE_DIAMOND:
            return new (std::nothrow) BGradientDiamond;
        case BGradient::TYPE_CONIC:
            return new (std::nothrow) BGradientConic;
        case BGradient::TYPE_NONE:
            return new (std::nothrow) BGradient;
        default:
            return nullptr;
    }
}

}  // namespace

BGradient::BGradient() : fType(TYPE_NONE) {}

BGradient::BGradient(Type type) : fType(type) {}

BGradient::BGradient(const BGradient& other) : BArchivable(), fType(other.fType) { *this = other; }

BGradient::BGradient(BMessage* archive) : BArchivable(archive), fType(TYPE_NONE)
{
    if (archive == nullptr)
        return;
    int32 type;
    if (archive->FindInt32("type", &type) == B_OK && type >= TYPE_LINEAR && type <= TYPE_NONE)
        fType = Type(type);
    for (int32 i = 0; i < kPlaces; i++)
        archive->FindFloat("place", i, &fPlaces[i]);
    float offset;
    rgb_color color;
    for (int32 i = 0; archive->FindFloat("offset", i, &offset) == B_OK &&
                      archive->FindColor("color", i, &color) == B_OK;
         i++)
        AddColorStop(ColorStop(color, offset), i);
}

BGradient::~BGradient() { free(fStops); }

status_t BGradient::Archive(BMessage* into, bool deep) const
{
    status_t status = BArchivable::Archive(into, deep);
    if (status == B_OK)
        status = into->AddInt32("type", fType);
    for (int32 i = 0; i < kPlaces && status == B_OK; i++)
        status = into->AddFloat("place", fPlaces[i]);
    for (int32 i = 0; i < fCount && status == B_OK; i++) {
        status = into->AddFloat("offset", fStops[i].offset);
        if (status == B_OK)
            status = into->AddColor("color", fStops[i].color);
    }
    return status;
}

BGradient& BGradient::operator=(const BGradient& other)
{
    if (this == &other)
        return *this;
    SetColorStops(other);
    fType = other.fType;
    std::copy_n(other.fPlaces, kPlaces, fPlaces);
    return *this;
}

bool BGradient::operator==(const BGradient& other) const
{
    return fType == other.fType && std::equal(fPlaces, fPlaces + kPlaces, other.fPlaces) &&
           ColorStopsAreEqual(other);
}

bool BGradient::operator!=(const BGradient& other) const { return !(*this == other); }

bool BGradient::ColorStopsAreEqual(const BGradient& other) const
{
    return std::equal(fStops, fStops + fCount, other.fStops, other.fStops + other.fCount,
                      [](const ColorStop& a, const ColorStop& b) { return !(a != b); });
}

void BGradient::SetColorStops(const BGradient& other)
{
    if (this == &other)
        return;
    MakeEmpty();
    for (int32 i = 0; i < other.fCount; i++)
        AddColorStop(other.fStops[i], i);
}

int32 BGradient::AddColor(const rgb_color& color, float offset)
{
    int32 index = 0;
    while (index < fCount && fStops[index].offset <= offset)
        index++;
    return AddColorStop(ColorStop(color, offset), index) ? index : -1;
}

bool BGradient::AddColorStop(const BGradient::ColorStop& colorStop, int32 index)
{
    if (index < 0 || index > fCount)
        return false;
    const ColorStop added = colorStop;  // it may be one of ours
    void* grown = realloc(static_cast<void*>(fStops), (size_t(fCount) + 1) * sizeof(ColorStop));
    if (grown == nullptr)
        return false;
    fStops = static_cast<ColorStop*>(grown);
    std::copy_backward(fStops + index, fStops + fCount, fStops + fCount + 1);
    fStops[index] = added;
    fCount++;
    return true;
}

bool BGradient::RemoveColor(int32 index)
{
    if (index < 0 || index >= fCount)
        return false;
    std::copy(fStops + index + 1, fStops + fCount, fStops + index);
    fCount--;
    return true;
}

bool BGradient::SetColorStop(int32 index, const BGradient::ColorStop& colorStop)
{
    return SetColor(index, colorStop.color) && SetOffset(index, colorStop.offset);
}

bool BGradient::SetColor(int32 index, const rgb_color& color)
{
    ColorStop* stop = ColorStopAt(index);
    if (stop == nullptr)
        return false;
    stop->color = color;
    return true;
}

bool BGradient::SetOffset(int32 index, float offset)
{
    ColorStop* stop = ColorStopAt(index);
    if (stop == nullptr)
        return false;
    stop->offset = offset;
    return true;
}

BGradient::ColorStop* BGradient::ColorStopAt(int32 index) const
{
    return index >= 0 && index < fCount ? fStops + index : nullptr;
}

void BGradient::SortColorStopsByOffset()
{
    std::stable_sort(fStops, fStops + fCount,
                     [](const ColorStop& a, const ColorStop& b) { return a.offset < b.offset; });
}

void BGradient::MakeEmpty() { fCount = 0; }

status_t BGradient::Flatten(BDataIO* stream) const
{
    if (stream == nullptr)
        return B_BAD_VALUE;
    const int32 header[] = {fType, fCount};
    status_t status = stream->WriteExactly(header, sizeof(header));
    if (status == B_OK)
        status = stream->WriteExactly(fPlaces, sizeof(fPlaces));
    for (int32 i = 0; i < fCount && status == B_OK; i++) {
        const rgb_color& color = fStops[i].color;
        uint8 bytes[8] = {color.red, color.green, color.blue, color.alpha};
        memcpy(bytes + 4, &fStops[i].offset, 4);
        status = stream->WriteExactly(bytes, sizeof(bytes));
    }
    return status;
}

status_t BGradient::Unflatten(BGradient*& output, BDataIO* stream)
{
    output = nullptr;
    if (stream == nullptr)
        return B_BAD_VALUE;
    int32 header[2];
    status_t status = stream->ReadExactly(header, sizeof(header));
    if (status != B_OK)
        return status;
    if (header[0] < TYPE_LINEAR || header[0] > TYPE_NONE || header[1] < 0 || header[1] > kMostStops)
        return B_BAD_VALUE;
    BGradient* gradient = make_gradient(header[0]);
    if (gradient == nullptr)
        return B_NO_MEMORY;
    status = stream->ReadExactly(gradient->fPlaces, sizeof(gradient->fPlaces));
    for (int32 i = 0; i < header[1] && status == B_OK; i++) {
        uint8 bytes[8];
        status = stream->ReadExactly(bytes, sizeof(bytes));
        float offset;
        memcpy(&offset, bytes + 4, 4);
        if (status == B_OK &&
            !gradient->AddColorStop(ColorStop(bytes[0], bytes[1], bytes[2], bytes[3], offset), i))
            status = B_NO_MEMORY;
    }
    if (status != B_OK)
        delete gradient;
    else
        output = gradient;
    return status;
}
