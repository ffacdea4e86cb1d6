#ifndef _SIZE_H
#define _SIZE_H

#include <SupportDefs.h>

const float B_SIZE_UNSET = -2;
const float B_SIZE_UNLIMITED = 1.07374e+09;

class BSize {
public:
    float width;
    float height;
    BSize();
    BSize(const BSize& other);
    BSize(float width, float height);
    float Width() const;
    float Height() const;
    void Set(float width, float height);
    void SetWidth(float width);
    void SetHeight(float height);
    int32 IntegerWidth() const;
    int32 IntegerHeight() const;
    bool IsWidthSet() const;
    bool IsHeightSet() const;
    bool operator==(const BSize& other) const;
    bool operator!=(const BSize& other) const;
    BSize& operator=(const BSize& other);

private:
};

#endif  // _SIZE_H
