#ifndef _RECT_H
#define _RECT_H

#include <Point.h>
#include <Size.h>
#include <SupportDefs.h>

class BRect {
public:
    float left;
    float top;
    float right;
    float bottom;
    BRect();
    BRect(const BRect& other);
    BRect(float left, float top, float right, float bottom);
    BRect(BPoint leftTop, BPoint rightBottom);
    BRect(BPoint leftTop, BSize size);
    BRect(float side);
    BRect(float width, float height);
    BRect& operator=(const BRect& other);
    void Set(float left, float top, float right, float bottom);
    void PrintToStream() const;
    BPoint LeftTop() const;
    BPoint RightBottom() const;
    BPoint LeftBottom() const;
    BPoint RightTop() const;
    void SetLeftTop(const BPoint point);
    void SetRightBottom(const BPoint point);
    void SetLeftBottom(const BPoint point);
    void SetRightTop(const BPoint point);
    void InsetBy(BPoint inset);
    void InsetBy(float dx, float dy);
    void OffsetBy(BPoint delta);
    void OffsetBy(float dx, float dy);
    void OffsetTo(BPoint offset);
    void OffsetTo(float x, float y);
    BRect& InsetBySelf(BPoint inset);
    BRect& InsetBySelf(float dx, float dy);
    BRect InsetByCopy(BPoint inset) const;
    BRect InsetByCopy(float dx, float dy) const;
    BRect& OffsetBySelf(BPoint offset);
    BRect& OffsetBySelf(float dx, float dy);
    BRect OffsetByCopy(BPoint offset) const;
    BRect OffsetByCopy(float dx, float dy) const;
    BRect& OffsetToSelf(BPoint offset);
    BRect& OffsetToSelf(float x, float y);
    BRect OffsetToCopy(BPoint offset) const;
    BRect OffsetToCopy(float x, float y) const;
    bool operator==(BRect other) const;
    bool operator!=(BRect other) const;
    BRect operator&(BRect other) const;
    BRect operator|(BRect other) const;
    bool IsValid() const;
    float Width() const;
    int32 IntegerWidth() const;
    float Height() const;
    int32 IntegerHeight() const;
    BSize Size() const;
    bool Intersects(BRect rect) const;
    bool Contains(BPoint point) const;
    bool Contains(BRect rect) const;

private:
};

#endif  // _RECT_H
