#ifndef _ALIGNMENT_H
#define _ALIGNMENT_H

#include <InterfaceDefs.h>

class BAlignment {
public:
    alignment horizontal;
    vertical_alignment vertical;
    BAlignment();
    BAlignment(const BAlignment& other);
    BAlignment(alignment horizontal, vertical_alignment vertical);
    alignment Horizontal() const;
    vertical_alignment Vertical() const;
    float RelativeHorizontal() const;
    float RelativeVertical() const;
    void SetHorizontal(alignment horizontal);
    void SetVertical(vertical_alignment vertical);
    bool IsHorizontalSet() const;
    bool IsVerticalSet() const;
    bool operator==(const BAlignment& other) const;
    bool operator!=(const BAlignment& other) const;
    BAlignment& operator=(const BAlignment& other);

private:
};

#endif  // _ALIGNMENT_H
