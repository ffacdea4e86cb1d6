#ifndef _GRADIENT_H
#define _GRADIENT_H

#include <Archivable.h>
#include <GraphicsDefs.h>
#include <SupportDefs.h>

class BDataIO;
class BMessage;

// Colours along a way that a derived class describes. Stops lie at offsets from 0 to 255.
class BGradient : public BArchivable {
public:
    enum Type {
        TYPE_LINEAR = 0,
        TYPE_RADIAL = 1,
        TYPE_RADIAL_FOCUS = 2,
        TYPE_DIAMOND = 3,
        TYPE_CONIC = 4,
        TYPE_NONE = 5
    };
    struct ColorStop {
        ColorStop(const rgb_color c, float o) : color(c), offset(o) {}
        ColorStop(uint8 r, uint8 g, uint8 b, uint8 a, float o) : color{r, g, b, a}, offset(o) {}
        ColorStop(const BGradient::ColorStop& other) = default;
        ColorStop() : color{0, 0, 0, 255}, offset(0) {}
        ColorStop& operator=(const ColorStop& other) = default;
        bool operator!=(const BGradient::ColorStop& other) const
        {
            return color != other.color || offset != other.offset;
        }
        rgb_color color;
        float offset;
    };

    BGradient();
    BGradient(const BGradient& other);
    BGradient(BMessage* archive);
    virtual ~BGradient();
    virtual status_t Archive(BMessage* into, bool deep = true) const;

    BGradient& operator=(const BGradient& other);
    bool operator==(const BGradient& other) const;
    bool operator!=(const BGradient& other) const;
    bool ColorStopsAreEqual(const BGradient& other) const;
    void SetColorStops(const BGradient& other);

    // Inserts by offset and returns the index, or -1 when memory runs out.
    int32 AddColor(const rgb_color& color, float offset);
    // False for an index out of range.
    bool AddColorStop(const BGradient::ColorStop& colorStop, int32 index);
    bool RemoveColor(int32 index);
    bool SetColorStop(int32 index, const BGradient::ColorStop& colorStop);
    bool SetColor(int32 index, const rgb_color& color);
    bool SetOffset(int32 index, float offset);

    int32 CountColorStops() const { return fCount; }
    BGradient::ColorStop* ColorStopAt(int32 index) const;  // null out of range
    BGradient::ColorStop* ColorStopAtFast(int32 index) const { return fStops + index; }
    BGradient::ColorStop* ColorStops() const { return fStops; }
    void SortColorStopsByOffset();
    BGradient::Type GetType() const { return fType; }
    void MakeEmpty();

    status_t Flatten(BDataIO* stream) const;
    // Makes a gradient of the right class; B_BAD_VALUE for bytes that are none.
    static status_t Unflatten(BGradient*& output, BDataIO* stream);

protected:
    BGradient(Type type);

    // What the derived classes add, in one place so that copies and streams carry it along.
    static const int32 kPlaces = 5;
    float fPlaces[kPlaces] = {};

private:
    ColorStop* fStops = nullptr;  // malloc'ed
    int32 fCount = 0;
    Type fType;
};

#endif  // _GRADIENT_H
