#ifndef _TEXTVIEW_H
#define _TEXTVIEW_H

#include <Font.h>
#include <View.h>

#include <memory>

class BBitmap;
class BClipboard;
class BFile;

namespace BPrivate {
struct TextData;
}

// From `offset` on, as far as the next one or the end.
struct text_run {
    int32 offset;
    BFont font;
    rgb_color color;
};

// `count` of them, by rising offsets from 0; made by BTextView::AllocRunArray().
struct text_run_array {
    int32 count;
    text_run runs[1];
};

enum undo_state {
    B_UNDO_UNAVAILABLE = 0,
    B_UNDO_TYPING = 1,
    B_UNDO_CUT = 2,
    B_UNDO_PASTE = 3,
    B_UNDO_CLEAR = 4,
    B_UNDO_DROP = 5
};

/* Text that the user reads, selects and edits. Offsets are bytes from 0, and lines are counted from
   0 as they are broken; what lies outside of the text is taken as its nearest place. Text is
   UTF-8. The caret goes by what a reader calls a character; a byte that is no UTF-8 is a character
   of its own, and stays as it is. Styles belong to the text if SetStylable(), else all of it has
   one. Lines are broken at words to the width of the text rectangle unless wrapping is off. Text
   is measured when it changes, and its drawing, scrolling and editing take no longer in a book
   than in a note.

   With the window locked, where there is one. */
class BTextView : public BView {
public:
    /* `textRect` is in the view's coordinates; its right edge is where lines are broken, and its
       bottom follows the text. */
    BTextView(BRect frame, const char* name, BRect textRect, uint32 resizeMask,
              uint32 flags = B_WILL_DRAW | B_PULSE_NEEDED);
    BTextView(BRect frame, const char* name, BRect textRect, const BFont* initialFont,
              const rgb_color* initialColor, uint32 resizeMask, uint32 flags);
    BTextView(const char* name, uint32 flags = B_WILL_DRAW | B_PULSE_NEEDED);
    BTextView(const char* name, const BFont* initialFont, const rgb_color* initialColor,
              uint32 flags);
    BTextView(BMessage* archive);
    virtual ~BTextView();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void Draw(BRect updateRect);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);
    virtual void WindowActivated(bool active);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void Pulse();
    virtual void FrameResized(float newWidth, float newHeight);
    virtual void MakeFocus(bool focus = true);
    /* B_CUT, B_COPY, B_PASTE, B_SELECT_ALL, B_UNDO and B_REDO act on the system's clipboard and the
       selection; drops of text are inserted. */
    virtual void MessageReceived(BMessage* message);
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code code, void* data);

    /* Puts all text in place of what there was. The caret goes to the start, and nothing is left
       to undo. Null is an empty text; bytes behind the maximum are left out. Runs count only if the
       text is stylable; what lies before the first has the first's style. */
    void SetText(const char* text, const text_run_array* runs = NULL);
    void SetText(const char* text, int32 length, const text_run_array* runs = NULL);
    void SetText(BFile* file, int32 offset, int32 length, const text_run_array* runs = NULL);

    /* Inserts before the selection, or at an offset; what would exceed the maximum is not inserted
       at all. A caret stands behind what was inserted at its place. Without runs the text takes
       the style of what stands before it. */
    void Insert(const char* text, const text_run_array* runs = NULL);
    void Insert(const char* text, int32 length, const text_run_array* runs = NULL);
    void Insert(int32 offset, const char* text, int32 length, const text_run_array* runs = NULL);

    // The selection, or the bytes up to `endOffset`.
    void Delete();
    void Delete(int32 startOffset, int32 endOffset);

    // All bytes with a zero behind them, until the text changes.
    const char* Text() const;
    int32 TextLength() const;
    // Copies up to `length` bytes and puts a zero behind them.
    void GetText(int32 offset, int32 length, char* buffer) const;
    uint8 ByteAt(int32 offset) const;  // 0 outside of the text

    // An empty text has one line, and a line feed at the end begins another.
    int32 CountLines() const;
    int32 CurrentLine() const;  // where the selection starts
    void GoToLine(int32 lineNumber);

    // What is cut and copied is "text/plain", with its styles if the text is stylable.
    virtual void Cut(BClipboard* clipboard);
    virtual void Copy(BClipboard* clipboard);
    virtual void Paste(BClipboard* clipboard);
    void Clear();

    // Hooks: whether there is text to be inserted here.
    virtual bool AcceptsPaste(BClipboard* clipboard);
    virtual bool AcceptsDrop(const BMessage* message);

    /* Hook: selects the bytes from `startOffset` up to `endOffset`, moved out of the middle of
       characters; nothing if the first is greater. All changes of the selection come here. */
    virtual void Select(int32 startOffset, int32 endOffset);
    void SelectAll();
    void GetSelection(int32* _start, int32* _end) const;

    // Document background and text colours; a program that sets the view's colour leaves them.
    void AdoptSystemColors();
    bool HasSystemColors() const;

    /* Styles of the selection, or of a part. A text that is not stylable changes whole. A null
       font or colour leaves what there is, and `mode` tells what of the font counts. A caret keeps
       the style for what is typed next. */
    void SetFontAndColor(const BFont* font, uint32 mode = B_FONT_ALL,
                         const rgb_color* color = NULL);
    void SetFontAndColor(int32 startOffset, int32 endOffset, const BFont* font,
                         uint32 mode = B_FONT_ALL, const rgb_color* color = NULL);
    void GetFontAndColor(int32 offset, BFont* _font, rgb_color* _color = NULL) const;
    // Of the selection's start; the mode tells what of the font is the same in all of it.
    void GetFontAndColor(BFont* _font, uint32* _mode, rgb_color* _color = NULL,
                         bool* _sameColor = NULL) const;

    // Offsets of the runs count from `startOffset`. Free what RunArray() gives by FreeRunArray().
    void SetRunArray(int32 startOffset, int32 endOffset, const text_run_array* runs);
    text_run_array* RunArray(int32 startOffset, int32 endOffset, int32* _size = NULL) const;

    int32 LineAt(int32 offset) const;
    int32 LineAt(BPoint point) const;
    // The left top of a character in the view, and the height of its line.
    BPoint PointAt(int32 offset, float* _height = NULL) const;
    // The place between characters that is nearest to a point.
    int32 OffsetAt(BPoint point) const;
    int32 OffsetAt(int32 line) const;

    /* Hook: the word at an offset, or what stands there between words. */
    virtual void FindWord(int32 offset, int32* _fromOffset, int32* _toOffset);
    /* Hook: whether a line may be broken behind the character at an offset. */
    virtual bool CanEndLine(int32 offset);

    // Pixels. Lines from `startLine` to `endLine`, both included.
    float LineWidth(int32 lineNumber = 0) const;
    float LineHeight(int32 lineNumber = 0) const;
    float TextHeight(int32 startLine, int32 endLine) const;
    void GetTextRegion(int32 startOffset, int32 endOffset, BRegion* outRegion) const;

    /* Hook: scrolls so that an offset can be seen. */
    virtual void ScrollToOffset(int32 offset);
    void ScrollToSelection();
    // Inverts a part of the text as it shows, until it is drawn anew.
    void Highlight(int32 startOffset, int32 endOffset);

    void SetTextRect(BRect rect);
    BRect TextRect() const;
    /* From the view's edges to the text rectangle, which follows the view's size from then on. */
    void SetInsets(float left, float top, float right, float bottom);
    void GetInsets(float* _left, float* _top, float* _right, float* _bottom) const;

    // A text that is no longer stylable takes the style of its start.
    void SetStylable(bool stylable);
    bool IsStylable() const;
    void SetTabWidth(float width);  // pixels; 28 at first
    float TabWidth() const;
    void MakeSelectable(bool selectable = true);
    bool IsSelectable() const;
    void MakeEditable(bool editable = true);
    bool IsEditable() const;
    void SetWordWrap(bool wrap);
    bool DoesWordWrap() const;
    // Cuts a text that is longer, between characters.
    void SetMaxBytes(int32 max);
    int32 MaxBytes() const;
    // What cannot be typed. Text that comes otherwise is not looked at.
    void DisallowChar(uint32 character);
    void AllowChar(uint32 character);
    void SetAlignment(alignment align);
    alignment Alignment() const;
    // A new line begins with the blanks and tabs of the one before.
    void SetAutoindent(bool state);
    bool DoesAutoindent() const;
    // Kept: what is drawn shows when it is complete, whatever the colour space.
    void SetColorSpace(color_space colors);
    color_space ColorSpace() const;
    // A view that is as wide as its text; `resizeView` around it grows and shrinks along.
    void MakeResizable(bool resize, BView* resizeView = NULL);
    bool IsResizable() const;
    void SetDoesUndo(bool undo);
    bool DoesUndo() const;
    // Shows a dot for each character, and gives nothing to the clipboard and to drags.
    void HideTyping(bool enabled);
    bool IsTypingHidden() const;

    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void AllAttached();
    virtual void AllDetached();

    /* Blocks of runs. Sizes are bytes. A flattened array is a malloc() block that names its fonts,
       for files and for other programs. Null without memory, and for what is no flattened array. */
    static text_run_array* AllocRunArray(int32 entryCount, int32* outSize = NULL);
    static text_run_array* CopyRunArray(const text_run_array* orig, int32 countDelta = 0);
    static void FreeRunArray(text_run_array* array);
    static void* FlattenRunArray(const text_run_array* runArray, int32* _size = NULL);
    static text_run_array* UnflattenRunArray(const void* data, int32* _size = NULL);

protected:
    /* Hooks: every change of the text. Offsets are right and the text fits. */
    virtual void InsertText(const char* text, int32 length, int32 offset,
                            const text_run_array* runs);
    virtual void DeleteText(int32 fromOffset, int32 toOffset);

public:
    /* Takes the last step back: a word typed, a deletion, a paste ... If there is none left but
       some were taken back, brings back the last, as UndoState() tells by `isRedo`. B_REDO brings
       back one after another. */
    virtual void Undo(BClipboard* clipboard);
    undo_state UndoState(bool* isRedo) const;

protected:
    /* Hook: fills the message that the selection is dragged as. A bitmap passes to the drag, with
       the pointer's place in it. */
    virtual void GetDragParameters(BMessage* drag, BBitmap** _bitmap, BPoint* point,
                                   BHandler** _handler);
    virtual void LayoutInvalidated(bool descendants = false);
    virtual void DoLayout();

public:
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual bool HasHeightForWidth();
    virtual void GetHeightForWidth(float width, float* min, float* max, float* preferred);

private:
    friend class BTextControl;
    friend struct BPrivate::TextData;
    // Not editable meanwhile, whatever MakeEditable() says.
    void _SetDisabled(bool disabled);

    BTextView(const BTextView&) = delete;
    BTextView& operator=(const BTextView&) = delete;

    std::unique_ptr<BPrivate::TextData> fText;
};

#endif  // _TEXTVIEW_H
