// Any bytes as a drawing in SVG: an error or a bitmap, whatever they ask for.

#include <Bitmap.h>
#include <DataIO.h>
#include <TranslationUtils.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

static void check(bool holds)
{
    if (!holds)
        abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    BMemoryIO source(static_cast<const void*>(data), size);
    const std::unique_ptr<BBitmap> bitmap(BTranslationUtils::GetBitmap(&source));
    if (bitmap == nullptr)
        return 0;
    check(bitmap->IsValid() && bitmap->BitsLength() <= 1 << 28);
    const auto* bits = static_cast<const uint8_t*>(bitmap->Bits());
    uint8_t sum = 0;
    for (int32 at = 0; at < bitmap->BitsLength(); at += 64)
        sum = uint8_t(sum + bits[at]);
    volatile uint8_t kept = sum;
    (void)kept;
    return 0;
}

std::vector<std::vector<uint8_t>> FuzzSeeds()
{
    static const char* const kBodies[] = {
        "<g id='a'><path d='M1 1C2 3 4 5 6 7z'/><text>x</text></g><use xlink:href='#a' x='3'/>",
        "<filter id='f'><feGaussianBlur stdDeviation='3'/><feTurbulence numOctaves='2' "
        "baseFrequency='.1'/><feMorphology radius='2'/><feConvolveMatrix order='3' "
        "kernelMatrix='1 2 3 4 5 6 7 8 9'/></filter><rect width='9' height='9' filter='url(#f)'/>",
        "<defs><pattern id='p' width='3' height='4' patternUnits='userSpaceOnUse'><rect width='2' "
        "height='2'/></pattern><linearGradient id='l'><stop offset='0'/><stop offset='1' "
        "stop-color='red'/></linearGradient></defs><rect width='20' height='20' fill='url(#p)'/>"
        "<circle r='9' stroke='url(#l)' stroke-dasharray='1 2' transform='rotate(9) scale(2)'/>",
        "<image width='9' height='9' xlink:href='data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEA"
        "AAABCAAAAAA6fptVAAAACklEQVQI12NoAAAAggCB3UNq9AAAAABJRU5ErkJggg=='/>",
        "<style>rect,*:not(g){fill:red;opacity:.5;font-size:9px}</style><mask id='m'><rect "
        "width='5' height='5' fill='white'/></mask><g mask='url(#m)'><rect width='9' height='9'/>"
        "</g><marker id='k'><path d='M0 0L9 9'/></marker><path marker-mid='url(#k)' d='M1 1 2 2 3 "
        "3A4 5 6 0 1 7 8'/>",
    };
    std::vector<std::vector<uint8_t>> seeds;
    for (const std::string body : kBodies) {
        const std::string text =
            "<?xml version='1.0'?><!DOCTYPE svg [<!ENTITY e 'M1 2'>]><svg "
            "xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
            "width='30' height='20' viewBox='0 0 30 20'>" +
            body + "<path d='&e;'/></svg>";
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}
