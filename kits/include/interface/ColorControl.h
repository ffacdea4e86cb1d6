#ifndef _COLOR_CONTROL_H
#define _COLOR_CONTROL_H

#include <Control.h>

// Columns and rows of cells, of which the number is the columns.
enum color_control_layout : int32 {
    B_CELLS_4x64 = 4,
    B_CELLS_8x32 = 8,
    B_CELLS_16x16 = 16,
    B_CELLS_32x8 = 32,
    B_CELLS_64x4 = 64
};

class BTextControl;

/* A colour for the user to choose: ramps of grey, red, green and blue, of which Up and Down choose
   one and Left and Right change its value; where pixels are B_CMAP8, the colours of the palette,
   among which the arrows move. Beside them are fields for the three numbers, taken by Enter or when
   the keyboard goes elsewhere. Its value has red, green and blue in the upper three bytes. A colour
   dropped on it is taken. Every change by the user sends its message. */
class BColorControl : public BControl {
public:
    // The size is that of the cells, and room for the numbers.
    BColorControl(BPoint start, color_control_layout layout, float cellSize, const char* name,
                  BMessage* message = nullptr, bool useOffscreen = false);
    BColorControl(BMessage* data);
    virtual ~BColorControl();

    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    virtual void SetValue(int32 color_value);
    void SetValue(rgb_color color);
    rgb_color ValueAsColor();

    virtual void SetEnabled(bool state);
    virtual void SetFont(const BFont* font, uint32 mask = B_FONT_ALL);
    virtual void SetViewColor(rgb_color color);
    using BView::SetViewColor;

    virtual void AttachedToWindow();
    virtual void MessageReceived(BMessage* message);
    virtual void Draw(BRect updateRect);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint point);
    virtual void MouseMoved(BPoint point, uint32 code, const BMessage* dragMessage);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void MakeFocus(bool focused = true);
    virtual void GetPreferredSize(float* _width, float* _height);

    // Pixels of a cell at 12 points; never less than 6.
    virtual void SetCellSize(float size);
    float CellSize() const;
    using BView::SetLayout;
    virtual void SetLayout(color_control_layout layout);
    color_control_layout Layout() const;

private:
    enum Ramp { kGrey, kRed, kGreen, kBlue, kRamps };
    class Number;

    void _Init();
    void _PlaceNumbers();
    void _ShowNumbers();
    void _TakeNumbers();
    void _Choose(rgb_color color);
    bool _ShowsPalette() const;
    BRect _Palette() const;
    BRect _RampFrame(int32 ramp) const;
    float _Place(int32 ramp) const;
    uint8 _Part(int32 ramp) const;
    void _SetPart(int32 ramp, int32 value);
    int32 _RampAt(BPoint where) const;
    int32 _CellAt(BPoint where) const;
    BRect _CellFrame(int32 cell) const;
    int32 _Cell() const;
    void _DrawRamps() const;
    void _DrawCells() const;

    color_control_layout fLayout;
    float fCellSize;
    int32 fRamp = kRed;             // that keys set
    int32 fDragged = -1;            // the ramp that the pointer holds
    Number* fNumbers[kRamps] = {};  // children; none of grey
};

#endif  // _COLOR_CONTROL_H
