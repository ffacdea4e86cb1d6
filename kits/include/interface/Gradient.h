#ifndef _GRADIENT_H
#define _GRADIENT_H

#include <GraphicsDefs.h>
#include <Archivable.h>
#include <List.h>
#include <SupportDefs.h>

class BDataIO;
class BMessage;

class BGradient : public BArchivable {
public:
    enum Type { TYPE_LINEAR = 0, TYPE_RADIAL = 1, TYPE_RADIAL_FOCUS = 2, TYPE_DIAMOND = 3, TYPE_CONIC = 4, TYPE_NONE = 5 };
    struct ColorStop {
        ColorStop(const rgb_color c, float o);
        ColorStop(uint8 r, uint8 g, uint8 b, uint8 a, float o);
        ColorStop(const BGradient::ColorStop& other);
        ColorStop();
        bool operator!=(const BGradient::ColorStop& other) const;
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
    int32 AddColor(const rgb_color& color, float offset);
    bool AddColorStop(const BGradient::ColorStop& colorStop, int32 index);
    bool RemoveColor(int32 index);
    bool SetColorStop(int32 index, const BGradient::ColorStop& colorStop);
    bool SetColor(int32 index, const rgb_color& color);
    bool SetOffset(int32 index, float offset);
    int32 CountColorStops() const;
    BGradient::ColorStop* ColorStopAt(int32 index) const;
    BGradient::ColorStop* ColorStopAtFast(int32 index) const;
    BGradient::ColorStop* ColorStops() const;
    void SortColorStopsByOffset();
    BGradient::Type GetType() const;
    void MakeEmpty();
    status_t Flatten(BDataIO* stream) const;
    static status_t Unflatten(BGradient*& output, BDataIO* stream);

private:
};

#endif  // _GRADIENT_H
