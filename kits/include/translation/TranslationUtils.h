#ifndef _TRANSLATION_UTILS_H
#define _TRANSLATION_UTILS_H

#include <GraphicsDefs.h>
#include <SupportDefs.h>
#include <TranslationDefs.h>

class BBitmap;
class BFile;
class BMenu;
class BMessage;
class BPositionIO;
class BTextView;
class BTranslatorRoster;
struct entry_ref;

/* Images and styled text in one call. A null roster is the default one. */
class BTranslationUtils {
    BTranslationUtils();

public:
    /* Read an image; the bitmap is the caller's, null if that fails. GetBitmap() of a name looks
       for a file; programs have no resources on this host, and the forms with a resource's type
       return null. */
    static BBitmap* GetBitmap(const char* name, BTranslatorRoster* roster = nullptr);
    static BBitmap* GetBitmap(uint32 type, int32 id, BTranslatorRoster* roster = nullptr);
    static BBitmap* GetBitmap(uint32 type, const char* name, BTranslatorRoster* roster = nullptr);
    static BBitmap* GetBitmapFile(const char* name, BTranslatorRoster* roster = nullptr);
    static BBitmap* GetBitmap(const entry_ref* ref, BTranslatorRoster* roster = nullptr);
    static BBitmap* GetBitmap(BPositionIO* stream, BTranslatorRoster* roster = nullptr);

    /* The colours that such a bitmap gets; with B_RGB32, as at first, an image with transparent
       parts comes in B_RGBA32. */
    static void SetBitmapColorSpace(color_space space);
    static color_space BitmapColorSpace();

    /* Put a stream's text into a view, with its styles if the view is stylable: styled text
       (B_STYLED_TEXT_FORMAT), what a translator makes that of, or plain text in an encoding that
       iconv() knows (UTF-8 if null). A file's attribute "styles" counts too. B_NO_TRANSLATOR, and
       the view unchanged, for what is no text. */
    static status_t GetStyledText(BPositionIO* fromStream, BTextView* intoView,
                                  BTranslatorRoster* roster = nullptr);
    static status_t GetStyledText(BPositionIO* fromStream, BTextView* intoView,
                                  const char* encoding, BTranslatorRoster* roster = nullptr);
    // Writes a view's text with its styles, as B_STYLED_TEXT_FORMAT.
    static status_t PutStyledText(BTextView* fromView, BPositionIO* intoStream,
                                  BTranslatorRoster* roster = nullptr);
    /* Writes the text alone, in an encoding, and its styles, alignment and wrapping as the file's
       attributes. The file is emptied first, but not for a text that the encoding cannot hold:
       B_BAD_DATA. */
    static status_t WriteStyledEditFile(BTextView* fromView, BFile* intoFile);
    static status_t WriteStyledEditFile(BTextView* fromView, BFile* intoFile, const char* encoding);

    /* A message of the translator's settings, the caller's; null without any. */
    static BMessage* GetDefaultSettings(translator_id translator,
                                        BTranslatorRoster* roster = nullptr);
    static BMessage* GetDefaultSettings(const char* name, int32 version);

    /* Adds an item for every format that `fromType` can be turned into. Its message is a copy of
       `model`, or has the code B_TRANSLATION_MENU, with the translator's id in the field `idName`
       ("be:translator") and the format's type in `typeName` ("be:type"). */
    enum {
        B_TRANSLATION_MENU = 0x42544D4E  // 'BTMN'
    };
    static status_t AddTranslationItems(BMenu* intoMenu, uint32 fromType,
                                        const BMessage* model = nullptr,
                                        const char* idName = nullptr,
                                        const char* typeName = nullptr,
                                        BTranslatorRoster* roster = nullptr);
};

#endif  // _TRANSLATION_UTILS_H
