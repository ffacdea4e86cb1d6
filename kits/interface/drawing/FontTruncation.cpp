// Cutting strings to a width. Cuts fall between characters, never before a mark that stands on the
// character before it.

#include <Font.h>

#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include <interface/drawing/FontAccess.h>

namespace {

// A string with the places where it may be cut.
struct Measured {
    std::string text;
    std::vector<size_t> offsets;  // bytes; the last one is the end
    std::vector<float> before;    // width of what lies before each place

    float Total() const { return before.back(); }
};

Measured measure(const server::FontSpec& font, const char* string)
{
    Measured result;
    result.text = string;
    int32 length = static_cast<int32>(std::min<size_t>(result.text.size(), INT32_MAX));
    std::vector<server::CharacterMetrics> metrics(static_cast<size_t>(length));
    int32 count = server::MeasureCharacters(font, string, length, nullptr, server::Boxes::None,
                                            metrics.data());
    float width = 0.0f;
    int32 at = 0;
    for (int32 i = 0; i < count; i++) {
        if (metrics[i].advance > 0.0f || i == 0) {
            result.offsets.push_back(static_cast<size_t>(at));
            result.before.push_back(width);
        }
        width += metrics[i].advance;
        uint32 code;
        at += server::NextCharacter(font, string + at, length - at, &code);
    }
    result.offsets.push_back(result.text.size());
    result.before.push_back(width);
    return result;
}

// How many places from the front fit into `room`; the last one that does.
size_t head_that_fits(const Measured& string, float room)
{
    auto end = std::upper_bound(string.before.begin(), string.before.end(), room);
    return end == string.before.begin() ? 0 : static_cast<size_t>(end - string.before.begin() - 1);
}

// The first place from which on the rest fits into `room`.
size_t tail_that_fits(const Measured& string, float room)
{
    float total = string.Total();
    auto start = std::partition_point(string.before.begin(), string.before.end() - 1,
                                      [=](float before) { return total - before > room; });
    return static_cast<size_t>(start - string.before.begin());
}

// What all strings of a set begin and end with, bytes.
struct Alike {
    size_t head = 0, tail = 0;
};

struct Cutter {
    server::FontSpec font;
    float width;
    std::string ellipsis;
    float ellipsisWidth;

    Cutter(const BFont& font, float width) : font(FontAccess::Spec(font)), width(width)
    {
        ellipsis = this->font.encoding == B_UNICODE_UTF8 ? "\xE2\x80\xA6" : "...";
        ellipsisWidth = WidthOf(ellipsis);
    }

    float WidthOf(const std::string& text) const
    {
        return server::StringWidth(font, text.data(), static_cast<int32>(text.size()), nullptr);
    }

    std::string Keep(const Measured& string, size_t head, size_t tail) const
    {
        return string.text.substr(0, string.offsets[head]) + ellipsis +
               string.text.substr(string.offsets[std::max(head, tail)]);
    }

    std::string Middle(const Measured& string, float room) const
    {
        size_t head = head_that_fits(string, room / 2.0f);
        size_t tail = std::max(head, tail_that_fits(string, room - string.before[head]));
        head =
            std::max(head, head_that_fits(string, room - (string.Total() - string.before[tail])));
        return Keep(string, std::min(head, tail), tail);
    }

    // Cuts inside what the set has in common, so that the strings stay different.
    std::string Smart(const Measured& string, float room, Alike alike) const
    {
        size_t bytes = string.text.size();
        alike.tail = std::min(alike.tail, bytes - std::min(alike.head, bytes));
        auto place = [&](size_t offset) {
            auto found = std::upper_bound(string.offsets.begin(), string.offsets.end(), offset);
            return static_cast<size_t>(found - string.offsets.begin() - 1);
        };
        size_t own = place(alike.head), ownEnd = place(bytes - alike.tail);
        float ownWidth = string.Total() - string.before[own];
        if (alike.head > 0 && ownWidth <= room)
            return Keep(string, std::min(own, head_that_fits(string, room - ownWidth)), own);
        if (alike.tail > 0 && string.before[ownEnd] <= room) {
            size_t tail = tail_that_fits(string, room - string.before[ownEnd]);
            return Keep(string, ownEnd, std::max(ownEnd, tail));
        }
        if (alike.head == 0 || room < ellipsisWidth)
            return Middle(string, room);
        size_t end = head_that_fits(string, string.before[own] + room - ellipsisWidth);
        end = std::max(end, own);
        std::string result =
            ellipsis +
            string.text.substr(string.offsets[own], string.offsets[end] - string.offsets[own]) +
            ellipsis;
        // Callers' buffers have room for one ellipsis more than the string.
        return result.size() <= bytes + 3 ? result : Middle(string, room);
    }

    std::string Cut(const char* text, uint32 mode, Alike alike) const
    {
        Measured string = measure(font, text);
        if (mode == B_NO_TRUNCATION || !(string.Total() > width))
            return string.text;
        std::string result;
        for (float room = width - ellipsisWidth; room >= 0.0f;) {
            switch (mode) {
                case B_TRUNCATE_BEGINNING:
                    result = Keep(string, 0, tail_that_fits(string, room));
                    break;
                case B_TRUNCATE_MIDDLE:
                    result = Middle(string, room);
                    break;
                case B_TRUNCATE_SMART:
                    result = Smart(string, room, alike);
                    break;
                default:
                    result = Keep(string, head_that_fits(string, room), string.before.size() - 1);
            }
            // Kerning with the ellipsis may make it a little wider than its parts.
            float over = WidthOf(result) - width;
            if (over <= 0.0f)
                return result;
            room -= std::max(over, 0.25f);
        }
        return ellipsisWidth <= width ? ellipsis : std::string();
    }
};

Alike common_parts(const char* strings[], int32 count)
{
    Alike alike;
    const char* first = nullptr;
    size_t firstLength = 0;
    for (int32 i = 0; i < count; i++) {
        if (strings[i] == nullptr)
            continue;
        size_t length = strlen(strings[i]);
        if (first == nullptr) {
            first = strings[i];
            firstLength = alike.head = alike.tail = length;
            continue;
        }
        size_t head = 0, tail = 0;
        while (head < std::min(alike.head, length) && strings[i][head] == first[head])
            head++;
        while (tail < std::min(alike.tail, length) &&
               strings[i][length - 1 - tail] == first[firstLength - 1 - tail]) {
            tail++;
        }
        alike = {head, tail};
    }
    // One string, or the same one over and over, has nothing of its own to keep.
    return alike.head == firstLength ? Alike() : alike;
}

template <class Store>
void cut_all(const BFont& font, const char* strings[], int32 count, uint32 mode, float width,
             Store store)
{
    if (strings == nullptr || count <= 0)
        return;
    Cutter cutter(font, width);
    Alike alike;
    if (mode == B_TRUNCATE_SMART)
        alike = common_parts(strings, count);
    for (int32 i = 0; i < count; i++) {
        if (strings[i] != nullptr)
            store(i, cutter.Cut(strings[i], mode, alike));
    }
}

}  // namespace

void BFont::TruncateString(BString* inOut, uint32 mode, float width) const
{
    if (inOut != nullptr)
        inOut->SetTo(Cutter(*this, width).Cut(inOut->String(), mode, {}).c_str());
}

void BFont::GetTruncatedStrings(const char* stringArray[], int32 numStrings, uint32 mode,
                                float width, BString resultArray[]) const
{
    if (resultArray == nullptr)
        return;
    cut_all(*this, stringArray, numStrings, mode, width,
            [=](int32 i, const std::string& text) { resultArray[i].SetTo(text.c_str()); });
}

void BFont::GetTruncatedStrings(const char* stringArray[], int32 numStrings, uint32 mode,
                                float width, char* resultArray[]) const
{
    if (resultArray == nullptr)
        return;
    cut_all(*this, stringArray, numStrings, mode, width, [=](int32 i, const std::string& text) {
        // The buffer has room for three bytes more than the string.
        if (resultArray[i] != nullptr && text.size() <= strlen(stringArray[i]) + 3)
            memcpy(resultArray[i], text.c_str(), text.size() + 1);
    });
}
