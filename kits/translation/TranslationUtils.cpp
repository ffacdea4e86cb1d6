// Images in one call.

#include <TranslationUtils.h>

#include <Bitmap.h>
#include <BitmapStream.h>
#include <Entry.h>
#include <File.h>
#include <Menu.h>
#include <MenuItem.h>
#include <Message.h>
#include <TranslatorRoster.h>

#include <string.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>
#include <string>

#include <interface/drawing/SharpPicture.h>

#include "translation/ImageFormats.h"

static std::atomic<color_space> sColorSpace = B_RGB32;  // any thread

static BTranslatorRoster& roster_or_default(BTranslatorRoster* roster)
{
    return roster != nullptr ? *roster : *BTranslatorRoster::Default();
}

// A drawing is drawn anew where the screen has more pixels than the bitmap.
static void keep_drawing(const BBitmap& bitmap, BPositionIO& stream)
{
    const off_t kMostBytes = 1 << 20;
    off_t size = 0;
    if (!BPrivate::has_fine_screen() || bitmap.ColorSpace() != B_RGBA32 ||
        stream.GetSize(&size) != B_OK || size < 1 || size > kMostBytes)
        return;
    auto bytes = std::make_shared<std::string>(size_t(size), '\0');
    if (stream.ReadAtExactly(0, bytes->data(), bytes->size()) != B_OK ||
        !BPrivate::MatchesSvg(reinterpret_cast<const uint8*>(bytes->data()),
                              std::min(bytes->size(), BPrivate::kHeadSize)))
        return;
    BPrivate::keep_maker(bitmap, [bytes](int32 width, int32 height, auto* pixels) {
        return BPrivate::DrawSvg(*bytes, width, height, pixels);
    });
}

BBitmap* BTranslationUtils::GetBitmap(const char* name, BTranslatorRoster* roster)
{
    return GetBitmapFile(name, roster);
}

BBitmap* BTranslationUtils::GetBitmap(uint32, int32, BTranslatorRoster*) { return nullptr; }

BBitmap* BTranslationUtils::GetBitmap(uint32, const char*, BTranslatorRoster*) { return nullptr; }

BBitmap* BTranslationUtils::GetBitmapFile(const char* name, BTranslatorRoster* roster)
{
    BFile file(name, B_READ_ONLY);
    return file.InitCheck() == B_OK ? GetBitmap(&file, roster) : nullptr;
}

BBitmap* BTranslationUtils::GetBitmap(const entry_ref* ref, BTranslatorRoster* roster)
{
    BFile file(ref, B_READ_ONLY);
    return file.InitCheck() == B_OK ? GetBitmap(&file, roster) : nullptr;
}

BBitmap* BTranslationUtils::GetBitmap(BPositionIO* stream, BTranslatorRoster* roster)
{
    if (stream == nullptr)
        return nullptr;
    BBitmapStream bitmaps;
    BMessage extension;
    extension.AddInt32(B_TRANSLATOR_EXT_BITMAP_COLOR_SPACE, BitmapColorSpace());
    BBitmap* bitmap = nullptr;
    if (roster_or_default(roster).Translate(stream, nullptr, &extension, &bitmaps,
                                            B_TRANSLATOR_BITMAP) == B_OK)
        bitmaps.DetachBitmap(&bitmap);
    if (bitmap != nullptr)
        keep_drawing(*bitmap, *stream);
    return bitmap;
}

void BTranslationUtils::SetBitmapColorSpace(color_space space) { sColorSpace = space; }

color_space BTranslationUtils::BitmapColorSpace() { return sColorSpace; }

BMessage* BTranslationUtils::GetDefaultSettings(translator_id translator, BTranslatorRoster* roster)
{
    auto message = std::make_unique<BMessage>();
    const status_t status =
        roster_or_default(roster).GetConfigurationMessage(translator, message.get());
    return status == B_OK ? message.release() : nullptr;
}

BMessage* BTranslationUtils::GetDefaultSettings(const char* name, int32 version)
{
    BTranslatorRoster& roster = *BTranslatorRoster::Default();
    translator_id* list;
    int32 count;
    if (name == nullptr || roster.GetAllTranslators(&list, &count) != B_OK)
        return nullptr;
    const std::unique_ptr<translator_id[]> ids(list);
    for (int32 i = 0; i < count; i++) {
        const char* other;
        int32 other_version;
        if (roster.GetTranslatorInfo(ids[i], &other, nullptr, &other_version) == B_OK &&
            strcmp(name, other) == 0 && version == other_version)
            return GetDefaultSettings(ids[i], &roster);
    }
    return nullptr;
}

// Adds the formats but the group's own that a translator makes of `fromType`.
static status_t add_items(BMenu* menu, BTranslatorRoster& roster, translator_id id, uint32 fromType,
                          const BMessage& model, const char* idName, const char* typeName)
{
    const translation_format *inputs, *outputs;
    int32 input_count, output_count;
    if (roster.GetInputFormats(id, &inputs, &input_count) != B_OK ||
        roster.GetOutputFormats(id, &outputs, &output_count) != B_OK)
        return B_OK;
    bool takes = false;
    for (int32 i = 0; i < input_count; i++)
        takes = takes || inputs[i].type == fromType;
    for (int32 i = 0; i < output_count && takes; i++) {
        if (outputs[i].type == fromType || outputs[i].type == outputs[i].group)
            continue;
        auto message = std::make_unique<BMessage>(model);
        message->AddInt32(idName, int32(id));
        message->AddInt32(typeName, int32(outputs[i].type));
        auto item = std::make_unique<BMenuItem>(outputs[i].name, message.release());
        if (!menu->AddItem(item.get()))
            return B_NO_MEMORY;
        item.release();
    }
    return B_OK;
}

status_t BTranslationUtils::AddTranslationItems(BMenu* intoMenu, uint32 fromType,
                                                const BMessage* model, const char* idName,
                                                const char* typeName, BTranslatorRoster* given)
{
    if (intoMenu == nullptr)
        return B_BAD_VALUE;
    BTranslatorRoster& roster = roster_or_default(given);
    translator_id* list;
    int32 count;
    status_t status = roster.GetAllTranslators(&list, &count);
    if (status != B_OK)
        return status;
    const std::unique_ptr<translator_id[]> ids(list);
    const BMessage plain(B_TRANSLATION_MENU);
    for (int32 i = 0; i < count && status == B_OK; i++)
        status = add_items(intoMenu, roster, ids[i], fromType, model != nullptr ? *model : plain,
                           idName != nullptr ? idName : "be:translator",
                           typeName != nullptr ? typeName : "be:type");
    return status;
}
