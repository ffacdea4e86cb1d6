#ifndef _STATUS_BAR_H
#define _STATUS_BAR_H

#include <String.h>
#include <View.h>

/* Shows how far something is done: a bar, with a label and a text above it at the left, and a
   trailing text and label at the right. B_UPDATE_STATUS_BAR ("delta", "text", "trailing_text") and
   B_RESET_STATUS_BAR ("label", "trailing_label") do as a message what the calls do. It takes the
   colour of its parent as its own. */
class BStatusBar : public BView {
public:
    BStatusBar(BRect frame, const char* name, const char* label = nullptr,
               const char* trailingLabel = nullptr);
    /* Without a frame: as large as it wants to be. */
    BStatusBar(const char* name, const char* label = nullptr, const char* trailingLabel = nullptr);
    BStatusBar(BMessage* archive);
    virtual ~BStatusBar();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    // Gives it its preferred height.
    virtual void AttachedToWindow();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void Draw(BRect updateRect);
    virtual void MessageReceived(BMessage* message);

    virtual void SetBarColor(rgb_color color);
    // Until then the bar is as high as its font; the view follows.
    virtual void SetBarHeight(float height);
    virtual void SetText(const char* string);
    virtual void SetTrailingText(const char* string);
    virtual void SetMaxValue(float max);

    // Goes on by `delta`, at most to the maximum; a text that is null stays.
    virtual void Update(float delta, const char* text = nullptr,
                        const char* trailingText = nullptr);
    virtual void SetTo(float value, const char* text = nullptr, const char* trailingText = nullptr);
    // Back to 0 of 100 with these labels and no texts.
    virtual void Reset(const char* label = nullptr, const char* trailingLabel = nullptr);

    float CurrentValue() const;
    float MaxValue() const;
    rgb_color BarColor() const;
    float BarHeight() const;
    const char* Text() const;
    const char* TrailingText() const;
    const char* Label() const;
    const char* TrailingLabel() const;

private:
    BRect _BarFrame() const;
    float _FillWidth() const;
    void _SetTexts(const char* text, const char* trailingText);
    void _InvalidateText();

    BString fLabel, fTrailingLabel, fText, fTrailingText;
    float fValue = 0;
    float fMax = 100;
    float fBarHeight = -1;  // negative: by the font
    rgb_color fBarColor;
    bool fOwnColor = false;
};

#endif  // _STATUS_BAR_H
