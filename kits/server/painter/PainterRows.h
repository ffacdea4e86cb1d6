#ifndef SERVER_PAINTER_ROWS_H
#define SERVER_PAINTER_ROWS_H

// Whole rows of B, G, R, A pixels, several at a time: mixed, multiplied and laid over one another,
// in the widest vectors that the processor has.

#include <SupportDefs.h>

namespace server {

// Pixels that lie between two of a row, which stand side by side: the first one's index, and how
// much of 256 the second one counts, in both halves of a word.
struct Columns {
    const int32* indexes;
    const uint32* weights;
};

// The rows of one call do not overlap, except where they are the same.
struct RowCode {
    // Copies, and makes every pixel opaque.
    void (*copyOpaque)(const uint32* from, uint32* to, int32 count);
    // Multiplies colours by their alpha.
    void (*multiply)(const uint32* from, uint32* to, int32 count);
    // Mixes two rows, of which `below` counts `weight` of 256, and sets the bits of `set`.
    void (*mixRows)(const uint32* above, const uint32* below, int32 weight, uint32 set, uint32* to,
                    int32 count);
    // Picks and mixes pixels of one row, and sets the bits of `set`.
    void (*mixColumns)(const uint32* from, Columns columns, uint32 set, uint32* to, int32 count);
    // Lays pixels over those of `to`, which count as opaque.
    void (*layOver)(const uint32* from, uint32* to, int32 count);
    // The same with pixels that were multiplied by their alpha.
    void (*layMultiplied)(const uint32* from, uint32* to, int32 count);
    // Mixes a colour into pixels, of which it covers 255 at most; all four bytes.
    void (*cover)(uint32 color, const uint8* coverage, uint32* to, int32 count);
};

// The quickest code for this machine. Any thread.
const RowCode& row_code();

// The same results by code that needs nothing of the processor.
const RowCode& plain_row_code();

}  // namespace server

#endif  // SERVER_PAINTER_ROWS_H
