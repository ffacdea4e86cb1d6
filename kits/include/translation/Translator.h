#ifndef _TRANSLATOR_H
#define _TRANSLATOR_H

#include <Archivable.h>
#include <TranslationDefs.h>
#include <image.h>

#include <atomic>

class BMessage;
class BPositionIO;
class BRect;
class BTranslatorRoster;
class BView;

/* Turns streams of one format into another. Who holds one holds a reference, the maker the first;
   the last Release() deletes it. Several threads may translate at a time. */
class BTranslator : public BArchivable {
public:
    BTranslator();

    BTranslator* Acquire();
    BTranslator* Release();  // null when that was the last reference
    int32 ReferenceCount();

    virtual const char* TranslatorName() const = 0;
    virtual const char* TranslatorInfo() const = 0;
    virtual int32 TranslatorVersion() const = 0;
    virtual const translation_format* InputFormats(int32* _count) const = 0;
    virtual const translation_format* OutputFormats(int32* _count) const = 0;

    /* Fills `info` if the stream, read from its position, is something that the translator turns
       into `outType` (0: into anything); else B_NO_TRANSLATOR. `format` (may be null) is what it
       is said to be, `extension` (may be null) comes with it. */
    virtual status_t Identify(BPositionIO* source, const translation_format* format,
                              BMessage* extension, translator_info* info, uint32 outType) = 0;
    /* Writes what `source` holds to `destination`, as `outType`; 0 is the translator's choice. */
    virtual status_t Translate(BPositionIO* source, const translator_info* info,
                               BMessage* extension, uint32 outType, BPositionIO* destination) = 0;
    /* Here: B_NOT_SUPPORTED. */
    virtual status_t MakeConfigurationView(BMessage* extension, BView** _view, BRect* _extent);
    virtual status_t GetConfigurationMessage(BMessage* extension);

protected:
    virtual ~BTranslator();

private:
    friend class BTranslatorRoster;

    std::atomic<int32> fReferences{1};
};

/* An add-on's translators by index, null behind the last. */
extern "C" BTranslator* make_nth_translator(int32 n, image_id you, uint32 flags, ...);

#endif  // _TRANSLATOR_H
