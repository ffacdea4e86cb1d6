#ifndef TRANSLATION_ADD_ON_TRANSLATOR_H
#define TRANSLATION_ADD_ON_TRANSLATOR_H

#include <Translator.h>

#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

// True if the loaded file has translators in it.
bool HasTranslators(image_id image);
// The translators of a loaded file, each with a reference for the caller.
std::vector<BTranslator*> MakeTranslators(image_id image);

}  // namespace BPrivate

#endif  // TRANSLATION_ADD_ON_TRANSLATOR_H
