#ifndef INTERFACE_LONG_LINE_H
#define INTERFACE_LONG_LINE_H

// How wide the parts of one very long line are, so that an edit measures what is around it, and a
// place on the line is found without a walk over its letters. One thread.

#include <SupportDefs.h>

#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

class LongLine {
public:
    // A part: where it begins and ends in the text, and where it begins on the line.
    struct Place {
        int32 offset;
        int32 end;
        float x;
    };
    struct Part {
        int32 length = 0;
        float width = 0;
        double x = 0;       // that it was measured at
        bool known = true;  // its width
        bool tabs = false;  // which make the width depend on x
    };

    void Forget() { fStart = -1; }
    // Another line, of which nothing is known yet.
    void Begin(int32 start, int32 end);
    bool Holds(int32 start, int32 end) const { return fStart == start && fLength == end - start; }
    // The bytes from `from` up to `to` of the text have become `length` others.
    void Replace(int32 from, int32 to, int32 length);

    // Calls `measure` with the start, the end and the x of what is not known, and a vector that it
    // adds the parts to.
    template <class Measured>
    void Measure(Measured measure)
    {
        double x = 0;
        int32 at = fStart;
        for (size_t i = 0; i < fParts.size();) {
            const Part part = fParts[i];
            size_t count = 1;
            if (!part.known || (part.tabs && part.x != x)) {
                std::vector<Part> parts;
                measure(at, at + part.length, x, &parts);
                count = parts.size();
                fParts.reserve(fParts.size() - 1 + count);
                const auto spot = fParts.erase(fParts.begin() + ptrdiff_t(i));
                fParts.insert(spot, parts.begin(), parts.end());
            }
            for (const size_t next = i + count; i < next; i++) {
                at += fParts[i].length;
                x += double(fParts[i].width);
            }
        }
        fWidth = x;
    }

    float Width() const { return float(fWidth); }
    // The part that a byte, or a place on the line, is in; the first or the last for what is
    // outside.
    Place AtOffset(int32 offset) const;
    Place AtX(float x) const;

private:
    template <class Before>
    Place _Find(Before before) const;

    int32 fStart = -1;  // of the line in the text, negative for none
    int32 fLength = 0;
    double fWidth = 0;
    std::vector<Part> fParts;  // without gaps, one at least
};

}  // namespace BPrivate

#endif  // INTERFACE_LONG_LINE_H
