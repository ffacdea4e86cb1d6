// The roster: what it knows, hints, translators of the program's own, add-ons' paths, archives.

#include "Pictures.h"

#include <Entry.h>
#include <Menu.h>
#include <MenuItem.h>
#include <Message.h>
#include <TranslationUtils.h>
#include <Translator.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

// Knows streams that start with "plain", as text, and turns them into upper case.
class Shouter : public BTranslator {
public:
    explicit Shouter(float quality, std::atomic<int>* gone) : fGone(gone)
    {
        fFormats[0].quality = quality;
    }

    const char* TranslatorName() const override { return "Shouter"; }
    const char* TranslatorInfo() const override { return "for tests"; }
    int32 TranslatorVersion() const override { return 0x123; }
    const translation_format* InputFormats(int32* _count) const override
    {
        *_count = 1;
        return fFormats;
    }
    const translation_format* OutputFormats(int32* _count) const override
    {
        return InputFormats(_count);
    }
    status_t Identify(BPositionIO* source, const translation_format*, BMessage*,
                      translator_info* info, uint32) override
    {
        char text[5];
        if (source->Read(text, 5) != 5 || memcmp(text, "plain", 5) != 0)
            return B_NO_TRANSLATOR;
        info->type = fFormats[0].type;
        info->quality = fFormats[0].quality;
        info->capability = 1;
        return B_OK;
    }
    status_t Translate(BPositionIO* source, const translator_info*, BMessage*, uint32,
                       BPositionIO* destination) override
    {
        char text[64];
        const ssize_t size = source->Read(text, sizeof(text));
        std::transform(text, text + size, text, toupper);
        return destination->Write(text, size_t(size)) == size ? B_OK : B_ERROR;
    }

    translation_format fFormats[2] = {
        {'PLAI', B_TRANSLATOR_TEXT, 0.5f, 1, "text/x-plain", "Plain"}};

private:
    ~Shouter() override { ++*fGone; }
    std::atomic<int>* fGone;
};

TEST(TranslatorRoster, EmptyOneKnowsNothing)
{
    BTranslatorRoster roster;
    BMemoryIO source("plain", 5);
    BMallocIO to;
    translator_info info;
    EXPECT_EQ(roster.Identify(&source, nullptr, &info), B_NO_TRANSLATOR);
    EXPECT_EQ(roster.Translate(&source, nullptr, nullptr, &to, 0), B_NO_TRANSLATOR);
    EXPECT_EQ(roster.Translate(1, &source, nullptr, &to, 0), B_NO_TRANSLATOR);
    EXPECT_EQ(roster.GetTranslatorInfo(0, nullptr, nullptr, nullptr), B_NO_TRANSLATOR);
    EXPECT_EQ(roster.AcquireTranslator(1), nullptr);
    EXPECT_EQ(roster.Identify(nullptr, nullptr, &info), B_BAD_VALUE);
    EXPECT_EQ(roster.Identify(&source, nullptr, nullptr), B_BAD_VALUE);
    EXPECT_EQ(roster.AddTranslator(nullptr), B_BAD_VALUE);
}

TEST(TranslatorRoster, DefaultOneReadsAndWritesWhatItNames)
{
    BTranslatorRoster* roster = BTranslatorRoster::Default();
    EXPECT_EQ(roster, BTranslatorRoster::Default());
    translator_id* ids;
    int32 count;
    ASSERT_EQ(roster->GetAllTranslators(&ids, &count), B_OK);
    int32 writers = 0;
    for (int32 i = 0; i < count; i++) {
        const char *name = nullptr, *info = nullptr;
        int32 version = 0, formats = 0;
        const translation_format* outputs;
        EXPECT_EQ(roster->GetTranslatorInfo(ids[i], &name, &info, &version), B_OK);
        EXPECT_EQ(roster->GetOutputFormats(ids[i], &outputs, &formats), B_OK);
        EXPECT_NE(name, nullptr);
        writers += formats == 2;
    }
    delete[] ids;
    EXPECT_GE(count, 9);
    EXPECT_GE(writers, 7);
}

TEST(TranslatorRoster, PrefersTheBetterAndTheHintedOne)
{
    std::atomic<int> gone = 0;
    {
        BTranslatorRoster roster;
        auto* poor = new Shouter(0.1f, &gone);
        auto* good = new Shouter(0.9f, &gone);
        poor->fFormats[0].type = 'POOR';
        roster.AddTranslator(poor);
        roster.AddTranslator(good);
        EXPECT_EQ(poor->ReferenceCount(), 2);
        poor->Release();
        good->Release();
        BMemoryIO source("plain text", 10);
        translator_info* list;
        int32 count;
        ASSERT_EQ(roster.GetTranslators(&source, nullptr, &list, &count), B_OK);
        ASSERT_EQ(count, 2);
        EXPECT_EQ(list[0].translator, 2u);
        EXPECT_EQ(list[1].translator, 1u);
        delete[] list;
        translator_info info;
        ASSERT_EQ(roster.Identify(&source, nullptr, &info, 'POOR'), B_OK);
        EXPECT_EQ(info.type, uint32_t('POOR'));
        ASSERT_EQ(roster.Identify(&source, nullptr, &info, 'NONE', "text/X-PLAIN"), B_OK);
        EXPECT_EQ(info.translator, 2u);
        ASSERT_EQ(roster.Identify(&source, nullptr, &info, 0, nullptr, 'POOR'), B_OK);
        EXPECT_EQ(info.translator, 1u);
        EXPECT_EQ(roster.Identify(&source, nullptr, &info, 0, nullptr, 'ELSE'), B_NO_TRANSLATOR);
    }
    EXPECT_EQ(gone, 2);
}

TEST(TranslatorRoster, TranslatesFromTheStreamsStart)
{
    std::atomic<int> gone = 0;
    BTranslatorRoster roster;
    auto* shouter = new Shouter(0.5f, &gone);
    roster.AddTranslator(shouter);
    shouter->Release();
    BMemoryIO source("plain text", 10);
    source.Seek(7, SEEK_SET);
    BMallocIO to;
    ASSERT_EQ(roster.Translate(&source, nullptr, nullptr, &to, 0), B_OK);
    EXPECT_EQ(std::string(static_cast<const char*>(to.Buffer()), 10), "PLAIN TEXT");
    ASSERT_EQ(roster.Translate(1, &source, nullptr, &to, 0), B_OK);
    EXPECT_EQ(to.BufferLength(), 20u);
    BTranslatorReleaseDelegate* held = roster.AcquireTranslator(1);
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(shouter->ReferenceCount(), 2);
    held->Release();
    EXPECT_EQ(shouter->ReferenceCount(), 1);
    entry_ref ref;
    EXPECT_EQ(roster.GetRefFor(1, &ref), B_ERROR);
    EXPECT_EQ(roster.GetRefFor(2, &ref), B_NO_TRANSLATOR);
}

TEST(TranslatorRoster, PathsThatLeadNowhereAddNothing)
{
    BTranslatorRoster roster;
    EXPECT_EQ(roster.AddTranslators("/nowhere/at/all"), B_ENTRY_NOT_FOUND);
    EXPECT_NE(roster.AddTranslators("/dev/null:/etc/hostname"), B_OK);
    entry_ref ref;
    get_ref_for_path("/etc/hostname", &ref);
    EXPECT_FALSE(roster.IsTranslator(&ref));
    EXPECT_FALSE(roster.IsTranslator(nullptr));
    translator_id* ids;
    int32 count;
    ASSERT_EQ(roster.GetAllTranslators(&ids, &count), B_OK);
    EXPECT_EQ(count, 0);
    delete[] ids;
}

TEST(TranslatorRoster, ArchiveBringsTheBuiltInOnesBack)
{
    BMessage archive;
    ASSERT_EQ(BTranslatorRoster::Default()->Archive(&archive), B_OK);
    std::unique_ptr<BArchivable> object(BTranslatorRoster::Instantiate(&archive));
    auto* roster = dynamic_cast<BTranslatorRoster*>(object.get());
    ASSERT_NE(roster, nullptr);
    const Bytes file = encode(make_fields(8, 8, B_RGB32), B_PNG_FORMAT);
    BMemoryIO stream(static_cast<const void*>(file.data()), file.size());
    translator_info info;
    EXPECT_EQ(roster->Identify(&stream, nullptr, &info), B_OK);
}

TEST(TranslatorRoster, SeveralThreadsTranslateAtATime)
{
    const Bytes files[] = {encode(make_fields(200, 100, B_RGBA32), B_PNG_FORMAT),
                           encode(make_fields(200, 100, B_RGBA32), B_JPEG_FORMAT),
                           encode(make_fields(200, 100, B_RGBA32), B_GIF_FORMAT),
                           encode(make_fields(200, 100, B_RGBA32), B_TIFF_FORMAT)};
    std::atomic<int> failed = 0;
    std::vector<std::thread> threads;
    for (const Bytes& file : files) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; i++) {
                std::unique_ptr<BBitmap> bitmap;
                failed += decode(file, &bitmap) != B_OK;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failed, 0);
}

TEST(TranslationUtils, MenuHasTheFormatsABitmapCanBecome)
{
    BMenu menu("");
    BMessage model('MODL');
    ASSERT_EQ(BTranslationUtils::AddTranslationItems(&menu, B_TRANSLATOR_BITMAP, &model, "who"),
              B_OK);
    EXPECT_GE(menu.CountItems(), 7);
    bool has_png = false;
    for (int32 i = 0; i < menu.CountItems(); i++) {
        BMessage* message = menu.ItemAt(i)->Message();
        EXPECT_EQ(message->what, uint32_t('MODL'));
        EXPECT_GT(message->FindInt32("who"), 0);
        has_png = has_png || message->FindInt32("be:type") == int32_t(B_PNG_FORMAT);
    }
    EXPECT_TRUE(has_png);
    EXPECT_EQ(BTranslationUtils::AddTranslationItems(nullptr, 0), B_BAD_VALUE);
}

TEST(TranslationUtils, BitmapsComeInTheColoursThatWereSet)
{
    const Bytes file = encode(make_fields(8, 8, B_RGB32), B_PNG_FORMAT);
    BMemoryIO stream(static_cast<const void*>(file.data()), file.size());
    EXPECT_EQ(BTranslationUtils::BitmapColorSpace(), B_RGB32);
    const std::unique_ptr<BBitmap> plain(BTranslationUtils::GetBitmap(&stream));
    BTranslationUtils::SetBitmapColorSpace(B_CMAP8);
    const std::unique_ptr<BBitmap> mapped(BTranslationUtils::GetBitmap(&stream));
    BTranslationUtils::SetBitmapColorSpace(B_RGB32);
    ASSERT_NE(plain, nullptr);
    ASSERT_NE(mapped, nullptr);
    EXPECT_EQ(plain->ColorSpace(), B_RGB32);
    EXPECT_EQ(mapped->ColorSpace(), B_CMAP8);
}

TEST(TranslationUtils, WhatIsNoImageGivesNone)
{
    BMemoryIO stream("no image at all, but text", 25);
    const entry_ref nowhere;
    EXPECT_EQ(BTranslationUtils::GetBitmap(&stream), nullptr);
    EXPECT_EQ(BTranslationUtils::GetBitmap(static_cast<BPositionIO*>(nullptr)), nullptr);
    EXPECT_EQ(BTranslationUtils::GetBitmap(static_cast<const char*>(nullptr)), nullptr);
    EXPECT_EQ(BTranslationUtils::GetBitmap(&nowhere), nullptr);
    EXPECT_EQ(BTranslationUtils::GetBitmapFile("/nowhere"), nullptr);
    EXPECT_EQ(BTranslationUtils::GetBitmapFile("/tmp"), nullptr);
    EXPECT_EQ(BTranslationUtils::GetBitmap('PNG ', 1), nullptr);
    EXPECT_EQ(BTranslationUtils::GetDefaultSettings("no such", 1), nullptr);
}
