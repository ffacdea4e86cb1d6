// The bytes of a text, with a gap where it was edited last.

#include "interface/text/TextBuffer.h"

#include <string.h>

#include <algorithm>
#include <new>

namespace BPrivate {

static const int64 kLeastGap = 256;
static const int32 kMostBytes = INT32_MAX - 1;

uint8 TextBuffer::At(int32 offset) const
{
    if (offset < 0 || offset >= fLength)
        return 0;
    return uint8(fBytes[size_t(offset < fGap ? offset : offset + fCapacity - fLength)]);
}

int32 TextBuffer::Copy(int32 offset, int32 length, char* to) const
{
    offset = std::clamp(offset, int32(0), fLength);
    length = std::clamp(length, int32(0), fLength - offset);
    const int32 before = std::clamp(fGap - offset, int32(0), length);
    if (before > 0)
        memcpy(to, fBytes.get() + offset, size_t(before));
    if (length > before)
        memcpy(to + before, fBytes.get() + offset + before + (fCapacity - fLength),
               size_t(length - before));
    return length;
}

const char* TextBuffer::Bytes(int32 offset, int32 length, std::string* copy) const
{
    if (offset + length <= fGap)
        return fBytes.get() + offset;
    if (offset >= fGap)
        return fBytes.get() + offset + (fCapacity - fLength);
    copy->resize(size_t(length));
    Copy(offset, length, copy->data());
    return copy->data();
}

const char* TextBuffer::Text()
{
    if (fBytes == nullptr && !_Reserve(0))
        return nullptr;
    _MoveGap(fLength);
    fBytes[size_t(fLength)] = '\0';
    return fBytes.get();
}

int32 TextBuffer::LineEnd(int32 offset) const
{
    offset = std::clamp(offset, int32(0), fLength);
    if (offset < fGap) {
        const void* found = memchr(fBytes.get() + offset, '\n', size_t(fGap - offset));
        if (found != nullptr)
            return int32(static_cast<const char*>(found) - fBytes.get()) + 1;
        offset = fGap;
    }
    if (offset == fLength)
        return fLength;
    const char* behind = fBytes.get() + (fCapacity - fLength);
    const void* found = memchr(behind + offset, '\n', size_t(fLength - offset));
    return found != nullptr ? int32(static_cast<const char*>(found) - behind) + 1 : fLength;
}

int32 TextBuffer::LineStart(int32 offset) const
{
    offset = std::clamp(offset, int32(0), fLength);
    if (offset > fGap) {
        const char* behind = fBytes.get() + (fCapacity - fLength);
        const void* found = memrchr(behind + fGap, '\n', size_t(offset - fGap));
        if (found != nullptr)
            return int32(static_cast<const char*>(found) - behind) + 1;
        offset = fGap;
    }
    if (offset == 0)
        return 0;
    const void* found = memrchr(fBytes.get(), '\n', size_t(offset));
    return found != nullptr ? int32(static_cast<const char*>(found) - fBytes.get()) + 1 : 0;
}

bool TextBuffer::Insert(int32 offset, const char* bytes, int32 length)
{
    if (bytes == nullptr || length <= 0)
        return length == 0;
    if (!_Reserve(length))
        return false;
    offset = std::clamp(offset, int32(0), fLength);
    _Changes(offset, offset);
    _MoveGap(offset);
    memcpy(fBytes.get() + fGap, bytes, size_t(length));
    fGap += length;
    fLength += length;
    fRevision++;
    return true;
}

void TextBuffer::Remove(int32 from, int32 to)
{
    from = std::clamp(from, int32(0), fLength);
    to = std::clamp(to, from, fLength);
    if (from == to)
        return;
    _Changes(from, to);
    // What lies before the gap joins it from there, what lies behind it from its other side.
    if (fGap < from || fGap > to)
        _MoveGap(from);
    fGap = from;
    fLength -= to - from;
    fRevision++;
}

// Bytes of the text as it is are going to be others, or none.
void TextBuffer::_Changes(int32 from, int32 to)
{
    fChange.before = std::min(fChange.before, from);
    fChange.behind = std::min(fChange.behind, fLength - to);
}

TextChange TextBuffer::TakeChange()
{
    const TextChange change = fChange;
    fChange = {fRevision};
    return change;
}

// Makes the gap hold `more` bytes. It grows with the text, so that typing moves it seldom.
bool TextBuffer::_Reserve(int32 more)
{
    if (more > kMostBytes - fLength)
        return false;
    if (fBytes != nullptr && fLength + more <= fCapacity)
        return true;
    const int64 wanted = int64(fLength) + more + std::max(kLeastGap, (int64(fLength) + more) / 8);
    const auto capacity = int32(std::min<int64>(wanted, kMostBytes));
    std::unique_ptr<char[]> bytes(new (std::nothrow) char[size_t(capacity) + 1]);
    if (bytes == nullptr)
        return false;
    const int32 behind = fLength - fGap;
    if (fGap > 0)
        memcpy(bytes.get(), fBytes.get(), size_t(fGap));
    if (behind > 0)
        memcpy(bytes.get() + capacity - behind, fBytes.get() + fCapacity - behind, size_t(behind));
    fBytes = std::move(bytes);
    fCapacity = capacity;
    return true;
}

void TextBuffer::_MoveGap(int32 offset)
{
    const int32 size = fCapacity - fLength;
    char* bytes = fBytes.get();
    if (offset < fGap)
        memmove(bytes + offset + size, bytes + offset, size_t(fGap - offset));
    else if (offset > fGap)
        memmove(bytes + fGap, bytes + fGap + size, size_t(offset - fGap));
    fGap = offset;
}

}  // namespace BPrivate
