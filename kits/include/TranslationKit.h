#ifndef _TRANSLATION_KIT_H
#define _TRANSLATION_KIT_H

// Everything of the Translation Kit.

#include <BitmapStream.h>
#include <TranslationDefs.h>
#include <TranslationUtils.h>
#include <Translator.h>
#include <TranslatorAddOn.h>
#include <TranslatorFormats.h>
#include <TranslatorRoster.h>

#endif  // _TRANSLATION_KIT_H
