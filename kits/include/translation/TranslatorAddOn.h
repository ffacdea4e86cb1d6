#ifndef _TRANSLATOR_ADD_ON_H
#define _TRANSLATOR_ADD_ON_H

#include <TranslationDefs.h>
#include <image.h>

class BMessage;
class BPositionIO;
class BRect;
class BTranslator;
class BView;

/* What an add-on file of one translator exports. A newer one exports make_nth_translator() only and
   may hold several. Both lists end with a format of type 0. */
extern "C" {
extern char translatorName[];
extern char translatorInfo[];
extern int32 translatorVersion;
extern translation_format inputFormats[];
extern translation_format outputFormats[];

status_t Identify(BPositionIO* source, const translation_format* format, BMessage* extension,
                  translator_info* info, uint32 outType);
status_t Translate(BPositionIO* source, const translator_info* info, BMessage* extension,
                   uint32 outType, BPositionIO* destination);
/* These two may be missing. */
status_t MakeConfig(BMessage* extension, BView** _view, BRect* _frame);
status_t GetConfigMessage(BMessage* extension);
}

#endif  // _TRANSLATOR_ADD_ON_H
