#ifndef _TRANSLATOR_ROSTER_H
#define _TRANSLATOR_ROSTER_H

#include <Archivable.h>
#include <Messenger.h>
#include <TranslationDefs.h>

class BMessage;
class BPositionIO;
class BRect;
class BTranslator;
class BView;
struct entry_ref;

/* Gives back the reference that AcquireTranslator() took, and itself. */
class BTranslatorReleaseDelegate {
public:
    explicit BTranslatorReleaseDelegate(BTranslator* translator);
    void Release();

private:
    BTranslator* fTranslator;
};

/* Translators, and the search for the one that knows a stream. Those of the images that the host
   reads and writes are built in. Ids count from 1, in the order of adding. Any thread. */
class BTranslatorRoster : public BArchivable {
public:
    BTranslatorRoster();  // empty
    BTranslatorRoster(BMessage* model);
    virtual ~BTranslatorRoster();

    /* The program's own, with all translators there are; it is never deleted. */
    static BTranslatorRoster* Default();

    virtual status_t Archive(BMessage* into, bool deep = true) const;
    static BArchivable* Instantiate(BMessage* from);

    /* Adds the add-ons named by `loadPath`, files and folders with colons between; null stands for
       the built-in ones and the folders of translators. An add-on that is there is not added twice;
       B_ENTRY_NOT_FOUND if a path leads nowhere. */
    status_t AddTranslators(const char* loadPath = nullptr);
    /* Takes a reference. */
    status_t AddTranslator(BTranslator* translator);

    /* Describe what the stream holds from its start, by the translator that does it best, and by
       all, the best first; delete[] the list. The stream's position stays. What fits the hints is
       preferred, what is not turned into `wantType` left out (0: any). B_NO_TRANSLATOR;
       B_BAD_VALUE. */
    virtual status_t Identify(BPositionIO* source, BMessage* ioExtension, translator_info* _info,
                              uint32 hintType = 0, const char* hintMIME = nullptr,
                              uint32 wantType = 0);
    virtual status_t GetTranslators(BPositionIO* source, BMessage* ioExtension,
                                    translator_info** _info, int32* _numInfo, uint32 hintType = 0,
                                    const char* hintMIME = nullptr, uint32 wantType = 0);
    /* delete[] the list. */
    virtual status_t GetAllTranslators(translator_id** _list, int32* _count);

    /* Of one translator; what is returned stays its own. Results that are not asked for may be
       null. B_NO_TRANSLATOR for an unknown id. */
    virtual status_t GetTranslatorInfo(translator_id translatorID, const char** _name,
                                       const char** _info, int32* _version);
    virtual status_t GetInputFormats(translator_id translatorID,
                                     const translation_format** _formats, int32* _numFormats);
    virtual status_t GetOutputFormats(translator_id translatorID,
                                      const translation_format** _formats, int32* _numFormats);

    /* Translate from the stream's start; `info` null stands for the best translator, type 0 for its
       choice: an image's own format for a bitmap, a bitmap for an image. B_NO_TRANSLATOR if nobody
       knows the stream, else what went wrong: B_NO_MEMORY for too large an image, B_BAD_DATA for
       what is cut off or damaged, or what the streams said. */
    virtual status_t Translate(BPositionIO* source, const translator_info* info,
                               BMessage* ioExtension, BPositionIO* destination, uint32 wantOutType,
                               uint32 hintType = 0, const char* hintMIME = nullptr);
    virtual status_t Translate(translator_id translatorID, BPositionIO* source,
                               BMessage* ioExtension, BPositionIO* destination, uint32 wantOutType);

    virtual status_t MakeConfigurationView(translator_id translatorID, BMessage* ioExtension,
                                           BView** _view, BRect* _extent);
    virtual status_t GetConfigurationMessage(translator_id translatorID, BMessage* ioExtension);

    /* Takes a reference to a translator, null for an unknown id; see Release() there. */
    BTranslatorReleaseDelegate* AcquireTranslator(int32 translatorID);
    /* The file of an add-on; B_ERROR for a translator without one. */
    status_t GetRefFor(translator_id translatorID, entry_ref* ref);
    /* True for an add-on's file with translators in it. */
    bool IsTranslator(entry_ref* ref);

    /* Sends B_TRANSLATOR_ADDED with the ids in "translator_id" when translators are added. */
    status_t StartWatching(BMessenger target);
    status_t StopWatching(BMessenger target);

private:
    struct Private;

    template <class Action>
    status_t _With(translator_id id, Action act);
    Private* fPrivate;
};

#endif  // _TRANSLATOR_ROSTER_H
