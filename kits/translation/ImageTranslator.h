#ifndef TRANSLATION_IMAGE_TRANSLATOR_H
#define TRANSLATION_IMAGE_TRANSLATOR_H

#include <Translator.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

struct ImageFormat;

// Turns bitmaps into one image format, and its images into bitmaps.
class ImageTranslator : public BTranslator {
public:
    explicit ImageTranslator(const ImageFormat& format);

    // Whether this host has a reader for the format.
    static bool IsThere(const ImageFormat& format);

    const char* TranslatorName() const override;
    const char* TranslatorInfo() const override;
    int32 TranslatorVersion() const override;
    const translation_format* InputFormats(int32* _count) const override;
    const translation_format* OutputFormats(int32* _count) const override;
    status_t Identify(BPositionIO* source, const translation_format* format, BMessage* extension,
                      translator_info* info, uint32 outType) override;
    status_t Translate(BPositionIO* source, const translator_info* info, BMessage* extension,
                       uint32 outType, BPositionIO* destination) override;

private:
    ~ImageTranslator() override = default;
    bool _Turns(uint32 from, uint32 to) const;
    uint32 _TypeOf(BPositionIO* source) const;
    status_t _Read(BPositionIO* source, BMessage* extension, BPositionIO* destination) const;
    status_t _Write(BPositionIO* source, BPositionIO* destination) const;

    const ImageFormat& fFormat;
    translation_format fFormats[2];  // the bitmap's and the image's
    bool fWrites;
};

}  // namespace BPrivate

#endif  // TRANSLATION_IMAGE_TRANSLATOR_H
