#ifndef INTERFACE_PICTURE_READER_H
#define INTERFACE_PICTURE_READER_H

#include <interface/drawing/PictureOps.h>

#include <cstring>
#include <type_traits>
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
        if constexpr (std::is_enum_v<Value>) {
            return _GetEnum<Value>();
        } else {
            Value value{};
            Take(&value, sizeof(Value));
            return value;
        }
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
    static constexpr int32 _Last(drawing_mode) { return B_OP_ALPHA; }
    static constexpr int32 _Last(source_alpha) { return B_CONSTANT_ALPHA; }
    static constexpr int32 _Last(alpha_function) { return B_ALPHA_COMPOSITE_DESTINATION_OUT; }
    static constexpr int32 _Last(cap_mode) { return B_SQUARE_CAP; }
    static constexpr int32 _Last(join_mode) { return B_SQUARE_JOIN; }
    // A number that is none of the enumeration's ends the walk.
    template <class Value>
    Value _GetEnum()
    {
        const auto value = Get<int32>();
        fGood = fGood && value >= 0 && value <= _Last(Value{});
        return fGood ? Value(value) : Value{};
    }

    const uint8* fAt;
    size_t fLeft;
    bool fGood = true;
};

}  // namespace BPrivate

#endif  // INTERFACE_PICTURE_READER_H
