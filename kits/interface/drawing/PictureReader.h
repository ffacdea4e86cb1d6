#ifndef INTERFACE_PICTURE_READER_H
#define INTERFACE_PICTURE_READER_H

#include <interface/drawing/PictureOps.h>

#include <cstring>
#include <vector>

namespace BPrivate {

// Walks through the bytes; once something is missing everything reads as zero.
class Reader {
public:
    explicit Reader(const std::vector<uint8>& bytes) : fAt(bytes.data()), fLeft(bytes.size()) {}

    bool IsGood() const { return fGood; }
    bool AtEnd() const { return fLeft == 0 || !fGood; }
    // The next byte. Not at the end.
    uint8 Peek() const { return *fAt; }
    template <class Value>
    Value Get()
    {
        Value value{};
        Take(&value, sizeof(Value));
        return value;
    }
    template <class Value>
    std::vector<Value> GetSpan()
    {
        const int32 count = Get<int32>();
        std::vector<Value> values;
        if (!fGood || count < 0 || size_t(count) > fLeft / sizeof(Value)) {
            fGood = false;
            return values;
        }
        values.resize(size_t(count));
        Take(values.data(), sizeof(Value) * size_t(count));
        return values;
    }
    void Take(void* target, size_t size)
    {
        if (size > fLeft)
            fGood = false;
        if (!fGood || size == 0)
            return;
        memcpy(target, fAt, size);
        fAt += size;
        fLeft -= size;
    }

private:
    const uint8* fAt;
    size_t fLeft;
    bool fGood = true;
};

}  // namespace BPrivate

#endif  // INTERFACE_PICTURE_READER_H
