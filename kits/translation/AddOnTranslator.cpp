// Translators in files of their own: those that make objects, and those of plain functions.

#include "translation/AddOnTranslator.h"

#include <new>

namespace BPrivate {

static const int32 kMostTranslators = 1024;  // of one file

using IdentifyCall = status_t (*)(BPositionIO*, const translation_format*, BMessage*,
                                  translator_info*, uint32);
using TranslateCall = status_t (*)(BPositionIO*, const translator_info*, BMessage*, uint32,
                                   BPositionIO*);
using MakeConfigCall = status_t (*)(BMessage*, BView**, BRect*);
using GetConfigCall = status_t (*)(BMessage*);
using MakeNthCall = BTranslator* (*)(int32, image_id, uint32, ...);

template <class Symbol>
static bool find(image_id image, const char* name, Symbol* symbol)
{
    void* address = nullptr;
    if (get_image_symbol(image, name, B_SYMBOL_TYPE_ANY, &address) != B_OK)
        return false;
    *symbol = reinterpret_cast<Symbol>(address);
    return true;
}

static int32 count_formats(const translation_format* formats)
{
    int32 count = 0;
    while (formats != nullptr && formats[count].type != 0)
        count++;
    return count;
}

namespace {

// What a file of plain functions and lists exports.
class FunctionTranslator final : public BTranslator {
public:
    // False if something is missing.
    bool SetTo(image_id image)
    {
        find(image, "MakeConfig", &fMakeConfig);
        find(image, "GetConfigMessage", &fGetConfig);
        find(image, "translatorInfo", &fInfo);
        find(image, "inputFormats", &fInputs);
        find(image, "outputFormats", &fOutputs);
        return find(image, "translatorName", &fName) &&
               find(image, "translatorVersion", &fVersion) && find(image, "Identify", &fIdentify) &&
               find(image, "Translate", &fTranslate);
    }

    const char* TranslatorName() const override { return fName; }
    const char* TranslatorInfo() const override { return fInfo; }
    int32 TranslatorVersion() const override { return *fVersion; }
    const translation_format* InputFormats(int32* _count) const override
    {
        *_count = count_formats(fInputs);
        return fInputs;
    }
    const translation_format* OutputFormats(int32* _count) const override
    {
        *_count = count_formats(fOutputs);
        return fOutputs;
    }
    status_t Identify(BPositionIO* source, const translation_format* format, BMessage* extension,
                      translator_info* info, uint32 outType) override
    {
        return fIdentify(source, format, extension, info, outType);
    }
    status_t Translate(BPositionIO* source, const translator_info* info, BMessage* extension,
                       uint32 outType, BPositionIO* destination) override
    {
        return fTranslate(source, info, extension, outType, destination);
    }
    status_t MakeConfigurationView(BMessage* extension, BView** _view, BRect* _extent) override
    {
        return fMakeConfig != nullptr ? fMakeConfig(extension, _view, _extent) : B_NOT_SUPPORTED;
    }
    status_t GetConfigurationMessage(BMessage* extension) override
    {
        return fGetConfig != nullptr ? fGetConfig(extension) : B_NOT_SUPPORTED;
    }

private:
    const char* fName = nullptr;
    const char* fInfo = "";
    const int32* fVersion = nullptr;
    const translation_format* fInputs = nullptr;
    const translation_format* fOutputs = nullptr;
    IdentifyCall fIdentify = nullptr;
    TranslateCall fTranslate = nullptr;
    MakeConfigCall fMakeConfig = nullptr;
    GetConfigCall fGetConfig = nullptr;
};

}  // namespace

bool HasTranslators(image_id image)
{
    void* symbol;
    return find(image, "make_nth_translator", &symbol) || find(image, "translatorName", &symbol);
}

std::vector<BTranslator*> MakeTranslators(image_id image)
{
    std::vector<BTranslator*> made;
    MakeNthCall make_nth = nullptr;
    if (find(image, "make_nth_translator", &make_nth)) {
        for (int32 n = 0; n < kMostTranslators; n++) {
            BTranslator* translator = make_nth(n, image, 0);
            if (translator == nullptr)
                break;
            made.push_back(translator);
        }
        return made;
    }
    auto* translator = new (std::nothrow) FunctionTranslator;
    if (translator != nullptr && translator->SetTo(image))
        made.push_back(translator);
    else if (translator != nullptr)
        translator->Release();
    return made;
}

}  // namespace BPrivate
