#ifndef INTERFACE_LINE_TABLE_H
#define INTERFACE_LINE_TABLE_H

// The lines of a text as it is broken: how many bytes and how high each is, and which one is at a
// byte or at a height. Lines are kept in blocks with their sums, so that a change in a long text
// touches one block, and a search looks at few. A text has one line at least. Where memory fails,
// all is as it was. One thread.

#include <SupportDefs.h>

#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

struct TextLine {
    int32 length = 0;  // bytes, with a line feed at its end
    float height = 0;  // pixels
    float ascent = 0;  // of them
    float width = 0;
};

class LineTable {
public:
    // A line and where it begins.
    struct Place {
        int32 index;
        int32 offset;
        double top;
        TextLine line;
    };

    LineTable();

    int32 CountLines() const;
    int32 Length() const;   // bytes
    double Height() const;  // pixels
    float Width() const;    // of the widest line

    // Lines from one on, as long as `visit` is true of a Place.
    template <class Visit>
    void EachFrom(int32 index, Visit visit) const
    {
        Place place = At(index);
        size_t block = _BlockOf(place.index);
        size_t line = size_t(place.index - fSums.lines[block]);
        for (; visit(place); line++) {
            place.index++;
            place.offset += place.line.length;
            place.top += double(place.line.height);
            if (line + 1 == fBlocks[block].lines.size()) {
                if (++block == fBlocks.size())
                    return;
                line = size_t(-1);
            }
            place.line = fBlocks[block].lines[line + 1];
        }
    }

    // By number, by a byte that it holds, and by a height. What is outside is in the first or last
    // line; the text's end is in the last one.
    Place At(int32 index) const;
    Place AtOffset(int32 offset) const;
    Place AtHeight(double height) const;

    // Puts lines in the place of `count` lines from `first` on. Not all may go without others.
    void Replace(int32 first, int32 count, const std::vector<TextLine>& lines);
    // Makes one of the lines from `first` to `last`, with as many bytes more. Needs no memory.
    void Join(int32 first, int32 last, int32 bytes);

private:
    struct Block {
        std::vector<TextLine> lines;
        int32 bytes = 0;
        double height = 0;
        float width = 0;

        void Sum();
    };
    // What lies before each block, and before the end, each for itself, so that a search looks at
    // little memory. The width is the greatest.
    struct Sums {
        std::vector<int32> lines{0}, bytes{0};
        std::vector<double> heights{0};
        std::vector<float> widths{0};
    };

    const Sums& _Sums() const;
    size_t _BlockOf(int32 index) const;
    template <class Number, class Before>
    Place _Find(const std::vector<Number>& sums, Number limit, Before before) const;
    void _Remove(int32 first, int32 count);
    void _Insert(int32 first, const std::vector<TextLine>& lines);
    void _Split(size_t index, const std::vector<TextLine>& lines);
    void _ReserveSums(size_t blocks) const;

    std::vector<Block> fBlocks;
    mutable Sums fSums;
    mutable size_t fSummed = 0;  // blocks that they are right up to
};

}  // namespace BPrivate

#endif  // INTERFACE_LINE_TABLE_H
