// Names of the translation kit.

#include <TranslationDefs.h>

const char* B_TRANSLATOR_MIME_TYPE = "application/x-vnd.Be.TranslatorAddOn";

char B_TRANSLATOR_EXT_HEADER_ONLY[] = "/headerOnly";
char B_TRANSLATOR_EXT_DATA_ONLY[] = "/dataOnly";
char B_TRANSLATOR_EXT_COMMENT[] = "/comment";
char B_TRANSLATOR_EXT_TIME[] = "/time";
char B_TRANSLATOR_EXT_FRAME[] = "/frame";
char B_TRANSLATOR_EXT_BITMAP_RECT[] = "bits/Rect";
char B_TRANSLATOR_EXT_BITMAP_COLOR_SPACE[] = "bits/space";
char B_TRANSLATOR_EXT_BITMAP_PALETTE[] = "bits/palette";
char B_TRANSLATOR_EXT_SOUND_CHANNEL[] = "nois/channel";
char B_TRANSLATOR_EXT_SOUND_MONO[] = "nois/mono";
char B_TRANSLATOR_EXT_SOUND_MARKER[] = "nois/marker";
char B_TRANSLATOR_EXT_SOUND_LOOP[] = "nois/loop";
