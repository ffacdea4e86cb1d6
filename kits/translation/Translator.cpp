// The base of all translators.

#include <Translator.h>

BTranslator::BTranslator() {}

BTranslator::~BTranslator() {}

BTranslator* BTranslator::Acquire()
{
    fReferences.fetch_add(1, std::memory_order_relaxed);
    return this;
}

BTranslator* BTranslator::Release()
{
    if (fReferences.fetch_sub(1, std::memory_order_acq_rel) > 1)
        return this;
    delete this;
    return nullptr;
}

int32 BTranslator::ReferenceCount() { return fReferences.load(std::memory_order_relaxed); }

status_t BTranslator::MakeConfigurationView(BMessage*, BView**, BRect*) { return B_NOT_SUPPORTED; }

status_t BTranslator::GetConfigurationMessage(BMessage*) { return B_NOT_SUPPORTED; }
