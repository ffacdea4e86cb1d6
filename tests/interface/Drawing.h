#ifndef TESTS_INTERFACE_DRAWING_H
#define TESTS_INTERFACE_DRAWING_H

#include <Bitmap.h>
#include <View.h>

#include <gtest/gtest.h>

#include <string>

// A bitmap with a view that fills it, locked as long as this lives.
class Board {
public:
    explicit Board(float right = 19, float bottom = 9)
        : bitmap(BRect(0, 0, right, bottom), B_BITMAP_ACCEPTS_VIEWS, B_RGBA32),
          view(new BView(bitmap.Bounds(), "board", B_FOLLOW_ALL, B_WILL_DRAW))
    {
        EXPECT_TRUE(bitmap.Lock());
        bitmap.AddChild(view);
    }
    ~Board() { bitmap.Unlock(); }

    uint32 At(int32 x, int32 y) const
    {
        const uint8* row = static_cast<const uint8*>(bitmap.Bits()) + y * bitmap.BytesPerRow();
        return reinterpret_cast<const uint32*>(row)[x] & 0xFFFFFF;
    }
    // One character a pixel: '.' white, '#' black, 'r' 'g' 'b' pure colours, '?' any other.
    std::string Row(int32 y) const
    {
        std::string row;
        for (int32 x = 0; x <= int32(bitmap.Bounds().right); x++) {
            switch (At(x, y)) {
                case 0xFFFFFF:
                    row += '.';
                    break;
                case 0x000000:
                    row += '#';
                    break;
                case 0xFF0000:
                    row += 'r';
                    break;
                case 0x00FF00:
                    row += 'g';
                    break;
                case 0x0000FF:
                    row += 'b';
                    break;
                default:
                    row += '?';
            }
        }
        return row;
    }
    std::string Picture() const
    {
        std::string rows;
        for (int32 y = 0; y <= int32(bitmap.Bounds().bottom); y++)
            rows += Row(y) + "\n";
        return rows;
    }
    void Clear()
    {
        view->PushState();
        view->SetHighColor(255, 255, 255);
        view->FillRect(view->Bounds());
        view->PopState();
    }

    BBitmap bitmap;
    BView* view;
};

inline BView* new_view(BRect frame, uint32 mode = B_FOLLOW_LEFT_TOP, uint32 flags = 0,
                       const char* name = "view")
{
    return new BView(frame, name, mode, flags);
}

inline std::ostream& operator<<(std::ostream& out, const BRect& r)
{
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

#endif  // TESTS_INTERFACE_DRAWING_H
