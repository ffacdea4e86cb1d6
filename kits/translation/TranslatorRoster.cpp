// Translators, and the search for the one that knows a stream. Any thread.

#include <TranslatorRoster.h>

#include <AppDefs.h>
#include <DataIO.h>
#include <Directory.h>
#include <Entry.h>
#include <FindDirectory.h>
#include <Message.h>
#include <Path.h>
#include <Translator.h>

#include <stdio.h>
#include <stdlib.h>
#include <strings.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "translation/AddOnTranslator.h"
#include "translation/ImageFormats.h"
#include "translation/ImageTranslator.h"

using namespace BPrivate;

// In an archive: the files of the add-ons, and whether the built-in translators are there.
static const char* const kPathField = "be:translator_path";
static const char* const kBuiltInField = "built_in";

static const directory_which kFolders[] = {
    B_USER_NONPACKAGED_TRANSLATORS_DIRECTORY, B_USER_TRANSLATORS_DIRECTORY,
    B_SYSTEM_NONPACKAGED_TRANSLATORS_DIRECTORY, B_SYSTEM_TRANSLATORS_DIRECTORY};

namespace {

struct Entry {
    BTranslator* translator;  // a reference
    std::string path;         // of the add-on; "" without one
};

struct AddOn {
    std::string path;
    image_id image;
};

}  // namespace

struct BTranslatorRoster::Private {
    std::mutex lock;             // of what follows; not held while a translator works
    std::vector<Entry> entries;  // by id, less one
    std::vector<AddOn> add_ons;
    std::vector<BMessenger> watchers;
    bool has_built_in = false;

    ~Private()
    {
        bool all_gone = true;
        for (const Entry& entry : entries)
            all_gone = entry.translator->Release() == nullptr && all_gone;
        // Code stays while somebody may run it.
        for (const AddOn& add_on : add_ons) {
            if (all_gone)
                unload_add_on(add_on.image);
        }
    }

    // Lock held.
    void Add(BTranslator* translator, const std::string& path, std::vector<int32>* ids)
    {
        entries.push_back({translator, path});
        ids->push_back(int32(entries.size()));
    }
    void AddBuiltIn(std::vector<int32>* ids)
    {
        if (std::exchange(has_built_in, true))
            return;
        for (int32 i = 0; i < kImageFormatCount; i++) {
            if (!ImageTranslator::IsThere(kImageFormats[i]))
                continue;
            if (auto* translator = new (std::nothrow) ImageTranslator(kImageFormats[i]))
                Add(translator, "", ids);
        }
    }
    status_t AddFile(const std::string& path, std::vector<int32>* ids)
    {
        for (const AddOn& add_on : add_ons) {
            if (add_on.path == path)
                return B_OK;
        }
        const image_id image = load_add_on(path.c_str());
        if (image < 0)
            return image;
        const std::vector<BTranslator*> made = MakeTranslators(image);
        if (made.empty()) {
            unload_add_on(image);
            return B_BAD_VALUE;
        }
        add_ons.push_back({path, image});
        for (BTranslator* translator : made)
            Add(translator, path, ids);
        return B_OK;
    }
    // A folder's files; those that are no add-ons are skipped.
    status_t AddPath(const std::string& path, std::vector<int32>* ids)
    {
        BEntry entry(path.c_str(), true);
        if (!entry.Exists())
            return B_ENTRY_NOT_FOUND;
        if (!entry.IsDirectory())
            return AddFile(path, ids);
        BDirectory folder(&entry);
        BEntry file;
        while (folder.GetNextEntry(&file, true) == B_OK) {
            BPath name;
            if (file.IsFile() && file.GetPath(&name) == B_OK)
                AddFile(name.Path(), ids);
        }
        return B_OK;
    }
    status_t AddPaths(const std::string& paths, std::vector<int32>* ids)
    {
        status_t status = B_OK;
        for (size_t start = 0; start <= paths.size();) {
            const size_t end = std::min(paths.find(':', start), paths.size());
            if (end > start) {
                const status_t added = AddPath(paths.substr(start, end - start), ids);
                status = status == B_OK ? added : status;
            }
            start = end + 1;
        }
        return status;
    }
    void AddDefault(std::vector<int32>* ids)
    {
        AddBuiltIn(ids);
        if (const char* paths = getenv("TRANSLATORS"))
            AddPaths(paths, ids);
        for (directory_which which : kFolders) {
            BPath path;
            if (find_directory(which, &path) == B_OK)
                AddPath(path.Path(), ids);
        }
    }
    void Tell(const std::vector<int32>& ids)
    {
        if (ids.empty() || watchers.empty())
            return;
        BMessage message(B_TRANSLATOR_ADDED);
        for (int32 id : ids)
            message.AddInt32("translator_id", id);
        for (const BMessenger& watcher : watchers)
            watcher.SendMessage(&message, static_cast<BHandler*>(nullptr), 0);
    }

    // The translator with a reference more, null for an unknown id.
    BTranslator* Acquire(translator_id id)
    {
        const std::lock_guard<std::mutex> held(lock);
        return id >= 1 && id <= entries.size() ? entries[id - 1].translator->Acquire() : nullptr;
    }
};

BTranslatorReleaseDelegate::BTranslatorReleaseDelegate(BTranslator* translator)
    : fTranslator(translator)
{
}

void BTranslatorReleaseDelegate::Release()
{
    fTranslator->Release();
    delete this;
}

BTranslatorRoster::BTranslatorRoster() : fPrivate(new Private) {}

BTranslatorRoster::BTranslatorRoster(BMessage* model) : BArchivable(model), fPrivate(new Private)
{
    if (model == nullptr)
        return;
    std::vector<int32> ids;
    bool built_in;
    if (model->FindBool(kBuiltInField, &built_in) == B_OK && built_in)
        fPrivate->AddBuiltIn(&ids);
    const char* path;
    for (int32 i = 0; model->FindString(kPathField, i, &path) == B_OK; i++)
        fPrivate->AddPath(path, &ids);
}

BTranslatorRoster::~BTranslatorRoster() { delete fPrivate; }

BTranslatorRoster* BTranslatorRoster::Default()
{
    static BTranslatorRoster* const roster = [] {
        auto* all = new BTranslatorRoster;
        all->AddTranslators();
        return all;
    }();
    return roster;
}

status_t BTranslatorRoster::Archive(BMessage* into, bool deep) const
{
    status_t status = BArchivable::Archive(into, deep);
    const std::lock_guard<std::mutex> held(fPrivate->lock);
    if (status == B_OK)
        status = into->AddBool(kBuiltInField, fPrivate->has_built_in);
    for (const AddOn& add_on : fPrivate->add_ons) {
        if (status == B_OK)
            status = into->AddString(kPathField, add_on.path.c_str());
    }
    return status;
}

BArchivable* BTranslatorRoster::Instantiate(BMessage* from)
{
    if (!validate_instantiation(from, "BTranslatorRoster"))
        return nullptr;
    return new (std::nothrow) BTranslatorRoster(from);
}

status_t BTranslatorRoster::AddTranslators(const char* loadPath)
{
    const std::lock_guard<std::mutex> held(fPrivate->lock);
    std::vector<int32> ids;
    status_t status = B_OK;
    if (loadPath == nullptr)
        fPrivate->AddDefault(&ids);
    else
        status = fPrivate->AddPaths(loadPath, &ids);
    fPrivate->Tell(ids);
    return status;
}

status_t BTranslatorRoster::AddTranslator(BTranslator* translator)
{
    if (translator == nullptr)
        return B_BAD_VALUE;
    const std::lock_guard<std::mutex> held(fPrivate->lock);
    std::vector<int32> ids;
    fPrivate->Add(translator->Acquire(), "", &ids);
    fPrivate->Tell(ids);
    return B_OK;
}

// --- what a stream holds

static bool has_format(const translation_format* formats, int32 count, uint32 type)
{
    return std::any_of(formats, formats + count,
                       [=](const translation_format& format) { return format.type == type; });
}

// The input format that the hints name, null if there is none.
static const translation_format* hinted_format(BTranslator* translator, uint32 type,
                                               const char* MIME)
{
    int32 count = 0;
    const translation_format* formats = translator->InputFormats(&count);
    for (int32 i = 0; i < count && formats != nullptr; i++) {
        if ((type != 0 && formats[i].type == type) ||
            (MIME != nullptr && *MIME != '\0' && strcasecmp(formats[i].MIME, MIME) == 0))
            return &formats[i];
    }
    return nullptr;
}

namespace {

struct Candidate {
    translator_info info;
    bool is_hinted;

    float Worth() const { return info.quality * info.capability; }
};

}  // namespace

static std::vector<Candidate> candidates_of(const std::vector<BTranslator*>& translators,
                                            BPositionIO* source, BMessage* extension,
                                            uint32 hintType, const char* hintMIME, uint32 wantType)
{
    std::vector<Candidate> found;
    for (size_t i = 0; i < translators.size(); i++) {
        BTranslator* translator = translators[i];
        int32 count = 0;
        const translation_format* outputs = translator->OutputFormats(&count);
        if (wantType != 0 && (outputs == nullptr || !has_format(outputs, count, wantType)))
            continue;
        const translation_format* hint = hinted_format(translator, hintType, hintMIME);
        Candidate candidate = {};
        source->Seek(0, SEEK_SET);
        if (translator->Identify(source, hint, extension, &candidate.info, wantType) != B_OK)
            continue;
        candidate.info.translator = i + 1;
        candidate.is_hinted = hint != nullptr;
        found.push_back(candidate);
    }
    std::stable_sort(found.begin(), found.end(), [](const Candidate& a, const Candidate& b) {
        return a.is_hinted != b.is_hinted ? a.is_hinted : a.Worth() > b.Worth();
    });
    return found;
}

status_t BTranslatorRoster::GetTranslators(BPositionIO* source, BMessage* ioExtension,
                                           translator_info** _info, int32* _numInfo,
                                           uint32 hintType, const char* hintMIME, uint32 wantType)
{
    if (source == nullptr || _info == nullptr || _numInfo == nullptr)
        return B_BAD_VALUE;
    *_info = nullptr;
    *_numInfo = 0;
    std::vector<BTranslator*> translators;
    {
        const std::lock_guard<std::mutex> held(fPrivate->lock);
        for (const Entry& entry : fPrivate->entries)
            translators.push_back(entry.translator->Acquire());
    }
    const off_t position = source->Position();
    const std::vector<Candidate> found =
        candidates_of(translators, source, ioExtension, hintType, hintMIME, wantType);
    source->Seek(position, SEEK_SET);
    for (BTranslator* translator : translators)
        translator->Release();
    if (found.empty())
        return B_NO_TRANSLATOR;
    *_info = new (std::nothrow) translator_info[found.size()];
    if (*_info == nullptr)
        return B_NO_MEMORY;
    for (size_t i = 0; i < found.size(); i++)
        (*_info)[i] = found[i].info;
    *_numInfo = int32(found.size());
    return B_OK;
}

status_t BTranslatorRoster::Identify(BPositionIO* source, BMessage* ioExtension,
                                     translator_info* _info, uint32 hintType, const char* hintMIME,
                                     uint32 wantType)
{
    if (_info == nullptr)
        return B_BAD_VALUE;
    translator_info* list;
    int32 count;
    const status_t status =
        GetTranslators(source, ioExtension, &list, &count, hintType, hintMIME, wantType);
    if (status != B_OK)
        return status;
    *_info = list[0];
    delete[] list;
    return B_OK;
}

status_t BTranslatorRoster::GetAllTranslators(translator_id** _list, int32* _count)
{
    if (_list == nullptr || _count == nullptr)
        return B_BAD_VALUE;
    const std::lock_guard<std::mutex> held(fPrivate->lock);
    const size_t count = fPrivate->entries.size();
    *_count = 0;
    *_list = new (std::nothrow) translator_id[count];
    if (*_list == nullptr)
        return B_NO_MEMORY;
    for (size_t i = 0; i < count; i++)
        (*_list)[i] = i + 1;
    *_count = int32(count);
    return B_OK;
}

// --- calls of one translator

template <class Action>
status_t BTranslatorRoster::_With(translator_id id, Action act)
{
    BTranslator* translator = fPrivate->Acquire(id);
    if (translator == nullptr)
        return B_NO_TRANSLATOR;
    const status_t status = act(*translator);
    translator->Release();
    return status;
}

status_t BTranslatorRoster::GetTranslatorInfo(translator_id translatorID, const char** _name,
                                              const char** _info, int32* _version)
{
    return _With(translatorID, [&](BTranslator& translator) {
        if (_name != nullptr)
            *_name = translator.TranslatorName();
        if (_info != nullptr)
            *_info = translator.TranslatorInfo();
        if (_version != nullptr)
            *_version = translator.TranslatorVersion();
        return B_OK;
    });
}

status_t BTranslatorRoster::GetInputFormats(translator_id translatorID,
                                            const translation_format** _formats, int32* _numFormats)
{
    if (_formats == nullptr || _numFormats == nullptr)
        return B_BAD_VALUE;
    return _With(translatorID, [=](BTranslator& translator) {
        *_formats = translator.InputFormats(_numFormats);
        return B_OK;
    });
}

status_t BTranslatorRoster::GetOutputFormats(translator_id translatorID,
                                             const translation_format** _formats,
                                             int32* _numFormats)
{
    if (_formats == nullptr || _numFormats == nullptr)
        return B_BAD_VALUE;
    return _With(translatorID, [=](BTranslator& translator) {
        *_formats = translator.OutputFormats(_numFormats);
        return B_OK;
    });
}

status_t BTranslatorRoster::Translate(BPositionIO* source, const translator_info* info,
                                      BMessage* ioExtension, BPositionIO* destination,
                                      uint32 wantOutType, uint32 hintType, const char* hintMIME)
{
    if (source == nullptr || destination == nullptr)
        return B_BAD_VALUE;
    translator_info best;
    if (info == nullptr) {
        const status_t status =
            Identify(source, ioExtension, &best, hintType, hintMIME, wantOutType);
        if (status != B_OK)
            return status;
        info = &best;
    }
    return _With(info->translator, [&](BTranslator& translator) {
        source->Seek(0, SEEK_SET);
        return translator.Translate(source, info, ioExtension, wantOutType, destination);
    });
}

status_t BTranslatorRoster::Translate(translator_id translatorID, BPositionIO* source,
                                      BMessage* ioExtension, BPositionIO* destination,
                                      uint32 wantOutType)
{
    if (source == nullptr || destination == nullptr)
        return B_BAD_VALUE;
    return _With(translatorID, [&](BTranslator& translator) {
        translator_info info = {};
        source->Seek(0, SEEK_SET);
        const status_t status =
            translator.Identify(source, nullptr, ioExtension, &info, wantOutType);
        if (status != B_OK)
            return status;
        info.translator = translatorID;
        source->Seek(0, SEEK_SET);
        return translator.Translate(source, &info, ioExtension, wantOutType, destination);
    });
}

status_t BTranslatorRoster::MakeConfigurationView(translator_id translatorID, BMessage* ioExtension,
                                                  BView** _view, BRect* _extent)
{
    return _With(translatorID, [=](BTranslator& translator) {
        return translator.MakeConfigurationView(ioExtension, _view, _extent);
    });
}

status_t BTranslatorRoster::GetConfigurationMessage(translator_id translatorID,
                                                    BMessage* ioExtension)
{
    return _With(translatorID, [=](BTranslator& translator) {
        return translator.GetConfigurationMessage(ioExtension);
    });
}

BTranslatorReleaseDelegate* BTranslatorRoster::AcquireTranslator(int32 translatorID)
{
    BTranslator* translator =
        translatorID > 0 ? fPrivate->Acquire(translator_id(translatorID)) : nullptr;
    return translator != nullptr ? new (std::nothrow) BTranslatorReleaseDelegate(translator)
                                 : nullptr;
}

status_t BTranslatorRoster::GetRefFor(translator_id translatorID, entry_ref* ref)
{
    if (ref == nullptr)
        return B_BAD_VALUE;
    std::string path;
    {
        const std::lock_guard<std::mutex> held(fPrivate->lock);
        if (translatorID < 1 || translatorID > fPrivate->entries.size())
            return B_NO_TRANSLATOR;
        path = fPrivate->entries[translatorID - 1].path;
    }
    return path.empty() ? B_ERROR : get_ref_for_path(path.c_str(), ref);
}

bool BTranslatorRoster::IsTranslator(entry_ref* ref)
{
    if (ref == nullptr)
        return false;
    const BPath path(ref);
    const image_id image = path.InitCheck() == B_OK ? load_add_on(path.Path()) : B_ERROR;
    if (image < 0)
        return false;
    const bool found = HasTranslators(image);
    unload_add_on(image);
    return found;
}

status_t BTranslatorRoster::StartWatching(BMessenger target)
{
    if (!target.IsValid())
        return B_BAD_VALUE;
    const std::lock_guard<std::mutex> held(fPrivate->lock);
    fPrivate->watchers.push_back(target);
    return B_OK;
}

status_t BTranslatorRoster::StopWatching(BMessenger target)
{
    const std::lock_guard<std::mutex> held(fPrivate->lock);
    const auto gone = std::ranges::remove(fPrivate->watchers, target);
    const status_t status = gone.empty() ? B_BAD_VALUE : B_OK;
    fPrivate->watchers.erase(gone.begin(), gone.end());
    return status;
}
