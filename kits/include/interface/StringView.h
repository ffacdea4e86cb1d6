#ifndef _STRING_VIEW_H
#define _STRING_VIEW_H

#include <String.h>
#include <View.h>

/* Shows a text that the user cannot change. Its lines end with line feeds; the last one stands at
   the view's lower edge. It takes the colour of its parent as its own. */
class BStringView : public BView {
public:
    BStringView(BRect frame, const char* name, const char* text,
                uint32 resizingMode = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW);
    /* Without a frame: as large as it wants to be. */
    BStringView(const char* name, const char* text, uint32 flags = B_WILL_DRAW);
    BStringView(BMessage* archive);
    virtual ~BStringView();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    void SetText(const char* text);
    // Null if none was set.
    const char* Text() const;
    void SetAlignment(alignment flag);
    alignment Alignment() const;
    // Where lines are cut that do not fit: a mode of BView::TruncateString(), B_NO_TRUNCATION.
    void SetTruncation(uint32 truncationMode);
    uint32 Truncation() const;

    virtual void AttachedToWindow();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void Draw(BRect bounds);
    virtual void MessageReceived(BMessage* message);
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual void SetFont(const BFont* font, uint32 mask = B_FONT_ALL);

private:
    BString fText;
    bool fHasText = false;
    alignment fAlign = B_ALIGN_LEFT;
    uint32 fTruncation;
};

#endif  // _STRING_VIEW_H
