#ifndef SERVER_LINE_ORDER_H
#define SERVER_LINE_ORDER_H

// In which order the characters of a line stand where some are read from the right: the Unicode
// bidirectional algorithm, by FriBidi. The line itself begins at the left, as every view's does.

#include <SupportDefs.h>

#include <vector>

namespace server {

struct LineOrder {
    std::vector<uint8> levels;  // one a character, in text order; an odd one is read from the right
    std::vector<int32> order;   // which character stands where, from the left
};

// False if a line of such characters alone stands in the order of its text.
bool TurnsOrder(uint32 code);

// The order of a whole line; that of the text if there is no memory for another.
LineOrder OrderOf(const uint32* codes, int32 count);

// What is drawn in place of a bracket that is read from the right; other characters stay.
uint32 Mirrored(uint32 code);

}  // namespace server

#endif  // SERVER_LINE_ORDER_H
