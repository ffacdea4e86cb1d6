// A literal model of the string ring beside the library's: every search walks position by position
// and copies byte by byte. A million random calls must leave both with the same bytes, results and
// next slot.

#include <plinth.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

const size_t kSlotSize = 257;
const size_t kRingSize = 17 * kSlotSize;
const size_t kWorkText = 263;

// Where an argument is: in the model's ring (and at the same place in the library's), or a text of
// the test's own, which both read.
struct Place {
    bool in_ring = false;
    size_t at = 0;
    const char* own = nullptr;
};

class Model {
public:
    unsigned char ring[kRingSize] = {};
    unsigned index = 0;

    size_t Take()
    {
        unsigned old = index;
        index = old + 1;
        if (old == 15)
            index = 0;
        return index * kSlotSize;
    }

    // The byte of a text; a text in the ring ends with the ring at the latest.
    unsigned char Byte(Place text, size_t i) const
    {
        if (!text.in_ring)
            return text.own[i];
        return text.at + i < kRingSize ? ring[text.at + i] : 0;
    }
    std::string Text(Place text) const
    {
        if (!text.in_ring)
            return text.own;
        std::string copy;
        for (size_t i = 0; Byte(text, i) != 0; i++)
            copy += static_cast<char>(Byte(text, i));
        return copy;
    }
    std::string TextAt(size_t at) const { return Text({true, at, nullptr}); }

    void Put(int64_t at, char c)
    {
        if (at >= 0 && at < static_cast<int64_t>(kRingSize))
            ring[at] = c;
    }
    // The bounded copy of the C library into a slot.
    void Copy(size_t at, const std::string& text, size_t limit)
    {
        for (size_t i = 0; i < limit; i++)
            Put(at + i, i < text.size() ? text[i] : '\0');
    }
    // A whole text with its terminator.
    void CopyAll(size_t at, const std::string& text)
    {
        for (size_t i = 0; i < text.size(); i++)
            Put(at + i, text[i]);
        Put(at + text.size(), '\0');
    }
    void CopyCut(size_t at, const std::string& text) { CopyAll(at, text.substr(0, 256)); }

    static size_t Limit(int32_t n) { return n < 0 || n > 257 ? 257 : n; }

    size_t Length(Place text) const
    {
        if (!text.in_ring)
            return strlen(text.own);
        size_t length = 0;
        while (Byte(text, length) != 0)
            length++;
        return length;
    }
    bool AreEqual(Place a, Place b) const
    {
        for (size_t i = 0;; i++) {
            if (Byte(a, i) != Byte(b, i))
                return false;
            if (Byte(a, i) == 0)
                return true;
        }
    }

    size_t Mid(Place s, int32_t start, int32_t count)
    {
        size_t result = Take();
        Take();
        int64_t length = Length(s);
        if (count == -1)
            count = static_cast<int32_t>(length);
        if (start < 0 || start > length) {
            Put(result, '\0');
        } else {
            size_t skipped = start > 0 ? start - 1 : 0;
            unsigned char piece[kSlotSize] = {};
            size_t limit = Limit(count);
            for (size_t i = 0; i < limit && skipped + i < static_cast<size_t>(length); i++)
                piece[i] = Byte(s, skipped + i);
            for (size_t i = 0; i < limit; i++)
                Put(result + i, piece[i]);
        }
        Put(static_cast<int64_t>(result) + count, '\0');
        return result;
    }

    // 1-based position of `find`, from text `s` on; 0 if none. The lengths are those of the start.
    int64_t Search(Place s, int64_t positions, Place find)
    {
        int64_t find_length = Length(find);
        if (find_length > positions)
            return 0;
        for (int64_t i = 1; i <= positions; i++) {
            size_t piece = Mid(s, i, find_length);
            if (AreEqual({true, piece, nullptr}, find))
                return i;
        }
        return 0;
    }

    int32_t Instr(int32_t offset, Place s, Place find)
    {
        int64_t length = Length(s);
        int64_t skipped = offset < 0 || offset > length ? length : offset;
        Place rest = s;
        if (s.in_ring)
            rest.at += skipped;
        else
            rest.own += skipped;
        return Search(rest, length, find);
    }

    size_t Left(Place s, int32_t n)
    {
        std::string text = Text(s);
        size_t slot = Take();
        Copy(slot, text, Limit(n));
        return slot;
    }
    size_t Right(Place s, int32_t n)
    {
        std::string text = Text(s);
        int64_t length = text.size();
        int64_t start = std::max<int64_t>(0, std::min(length, length - n));
        size_t slot = Take();
        Copy(slot, text.substr(start), Limit(n));
        return slot;
    }
    size_t Space(int32_t n)
    {
        size_t slot = Take();
        Copy(slot, std::string(n > 0 ? std::min(n, 1023) : 0, ' '), 257);
        return slot;
    }
    size_t String(int32_t n, Place s)
    {
        std::string text = Text(s), work;
        for (int32_t i = 0; i < n && !text.empty() && work.size() < 1023; i++)
            work += text;
        size_t slot = Take();
        Copy(slot, work, 257);
        return slot;
    }
    size_t Chr(uint8_t c)
    {
        size_t slot = Take();
        Put(slot, c);
        Put(slot + 1, 0);
        return slot;
    }
    size_t Case(Place s, int (*map)(int))
    {
        std::string text = Text(s).substr(0, 257);
        for (char& c : text)
            c = static_cast<char>(map(static_cast<unsigned char>(c)));
        size_t slot = Take();
        CopyAll(slot, text);
        return slot;
    }
    size_t TitleCase(Place s)
    {
        std::string text = Text(s).substr(0, 257);
        for (char& c : text)
            c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
        if (!text.empty())
            text[0] = static_cast<char>(toupper(static_cast<unsigned char>(text[0])));
        size_t slot = Take();
        Copy(slot, text, 257);
        return slot;
    }
    size_t Ltrim(Place s)
    {
        size_t slot = Take();
        int32_t i = 1;
        while (TextAt(Mid(s, i, 1)) == " ")
            i++;
        std::string rest = TextAt(Mid(s, i, 257));
        CopyAll(slot, rest);
        return slot;
    }
    size_t Rtrim(Place s)
    {
        std::string text = Text(s);
        size_t slot = Take();
        Copy(slot, text, 257);
        size_t p = slot;
        while (p < kRingSize && ring[p] == ' ')
            p++;
        for (;;) {
            size_t blank = TextAt(p).rfind(' ');
            if (blank == std::string::npos)
                return slot;
            ring[p + blank] = 0;
        }
    }
    size_t Trim(Place s)
    {
        std::string text = Text(s);
        size_t slot = Take();
        Copy(slot, text, 257);
        size_t p = slot;
        while (p < kRingSize && ring[p] == ' ')
            p++;
        size_t blank = TextAt(p).rfind(' ');
        if (blank != std::string::npos)
            ring[p + blank] = 0;
        return p;
    }
    size_t Extract(Place s, Place sep)
    {
        size_t slot = Take();
        int64_t k = Search(s, Length(s), sep);
        CopyCut(slot, k == 0 ? Text(s) : TextAt(Mid(s, 1, static_cast<int32_t>(k - 1))));
        return slot;
    }
    size_t Replace(Place s, Place find, Place repl)
    {
        size_t slot = Take();
        std::string work = Text(s).substr(0, 257);
        int32_t count = static_cast<int32_t>(work.size());
        const bool has_ring = find.in_ring || repl.in_ring;
        std::string earlier;
        for (int steps = 1; steps <= 100000; steps++) {
            Place text = {false, 0, work.c_str()};
            int64_t k = Search(text, work.size(), find);
            if (k == 0)
                break;
            size_t left = Mid(text, 1, static_cast<int32_t>(k - 1));
            int32_t find_length = static_cast<int32_t>(Length(find));
            size_t rest = Mid(text, static_cast<int32_t>(k + find_length), count);
            std::string joined = TextAt(left) + Text(repl) + TextAt(rest);
            bool is_full = joined.size() > kWorkText;
            joined.resize(std::min(joined.size(), kWorkText));
            work = joined;
            const std::string state = has_ring ? work + '\0' + State() : work;
            if (is_full || (steps > 64 && state == earlier))
                break;
            if (steps >= 64 && (steps & (steps - 1)) == 0)
                earlier = state;
        }
        CopyCut(slot, work);
        return slot;
    }
    // All of the ring that later calls depend on.
    std::string State() const
    {
        return std::string(ring, ring + kRingSize) + static_cast<char>(index);
    }
    size_t Formatted(const char* format, double x)
    {
        char text[1024];
        snprintf(text, sizeof(text), format, x);
        size_t slot = Take();
        CopyCut(slot, text);
        return slot;
    }
};

class RingModel : public testing::Test {
protected:
    RingModel()
    {
        // The slot at the lowest address is slot 0; the model starts where the library is.
        char* slots[16];
        for (char*& slot : slots)
            slot = Chr('x');
        fBase = *std::min_element(slots, slots + 16);
        fModel.index = static_cast<unsigned>((slots[15] - fBase) / kSlotSize);
        memcpy(fModel.ring, fBase, kRingSize);
        for (int i = 0; i < 24; i++)
            fTexts.push_back(RandomText());
    }

    unsigned Random(unsigned below) { return fRandom() % below; }

    std::string RandomText()
    {
        static const unsigned kLengths[] = {0,   1,   2,   3,   7,   8,   9,   16,  40,  200,
                                            255, 256, 257, 258, 259, 300, 514, 515, 600, 1025};
        static const char* const kAlphabets[] = {"ab", "a", " a", " ", "abc .", "aA\xe4\xff,1"};
        unsigned length = Random(9) == 0 ? kLengths[Random(std::size(kLengths))] : Random(24);
        const char* alphabet = kAlphabets[Random(std::size(kAlphabets))];
        std::string text;
        for (unsigned i = 0; i < length; i++)
            text += alphabet[Random(strlen(alphabet))];
        if (length > 0 && Random(4) == 0)
            text.insert(0, Random(20), ' ');
        return text;
    }

    int32_t RandomCount()
    {
        static const int32_t kCounts[] = {INT32_MIN, -258, -257, -100, -2,   -1,     0,        1,
                                          254,       255,  256,  257,  258,  512,    513,      514,
                                          770,       1023, 1025, 4000, 4369, 100000, INT32_MAX};
        return Random(3) == 0 ? kCounts[Random(std::size(kCounts))] : Random(30);
    }

    // A text of ours, a piece of one, or something that lies in the ring: a whole slot or the
    // middle of one.
    Place RandomPlace()
    {
        Place place;
        if (Random(5) < 2) {
            place.in_ring = true;
            place.at = Random(16) * kSlotSize + (Random(2) == 0 ? 0 : Random(kSlotSize));
        } else {
            const std::string& text = fTexts[Random(fTexts.size())];
            place.own = text.c_str() + (Random(3) == 0 ? Random(text.size() + 1) : 0);
        }
        return place;
    }
    // Often a piece of `text`, so that searches find something, also pieces longer than a slot and
    // pieces that the search writes over together with the text.
    Place RandomPattern(Place text)
    {
        if (Random(3) == 0)
            return RandomPlace();
        std::string whole = fModel.Text(text);
        if (whole.empty())
            return RandomPlace();
        size_t start = Random(whole.size());
        if (text.in_ring && Random(3) == 0)
            return {true, text.at + start, nullptr};
        size_t length = Random(8) == 0 ? Random(700) : Random(6);
        fPattern = whole.substr(start, length);
        Place place;
        place.own = fPattern.c_str();
        return place;
    }
    // Often what has nothing in common with the texts, so that no match touches a replacement.
    Place RandomReplacement()
    {
        static const char* const kApart[] = {"-",
                                             "",
                                             "--",
                                             "=+=+=",
                                             "0123456789012345",
                                             "01234567890123456",
                                             "(((((((((((((((((((((((((((("};
        if (Random(3) == 0)
            return RandomPlace();
        return {false, 0, kApart[Random(std::size(kApart))]};
    }
    const char* Library(Place place) const { return place.in_ring ? fBase + place.at : place.own; }

    // One random call of both. Returns false when they differ.
    bool Step();

    bool SameRing() const { return memcmp(fModel.ring, fBase, kRingSize) == 0; }
    bool Same(char* result, size_t expected) const { return result == fBase + expected; }

    Model fModel;
    char* fBase;
    std::vector<std::string> fTexts;
    std::string fPattern;
    std::mt19937 fRandom{20011};
    unsigned fCall = 0;
};

bool RingModel::Step()
{
    if (Random(50) == 0)
        fTexts[Random(fTexts.size())] = RandomText();
    Place s = RandomPlace();
    const char* text = Library(s);
    int32_t n = RandomCount(), count = RandomCount();
    double x = (static_cast<int32_t>(fRandom()) >> Random(32)) / 1000.0;
    fCall = Random(23);
    switch (fCall) {
        case 0:
            return Same(Left(text, n), fModel.Left(s, n));
        case 1:
            return Same(Right(text, n), fModel.Right(s, n));
        case 2:
        case 3:
            return Same(Mid(text, n, count), fModel.Mid(s, n, count));
        case 4: {
            auto length = static_cast<int32_t>(fModel.Length(s));
            return Same(MidStr(text, n), fModel.Mid(s, n, length));
        }
        case 5:
        case 6:
        case 7: {
            Place find = RandomPattern(s);
            int32_t offset = Random(3) == 0 ? n : 0;
            return Instr(offset, text, Library(find)) == fModel.Instr(offset, s, find);
        }
        case 8:
            return Same(Space(n), fModel.Space(n));
        case 9:
            return Same(String(n, text), fModel.String(n, s));
        case 10:
            return Same(Chr(n), fModel.Chr(n));
        case 11:
            return Same(Lcase(text), fModel.Case(s, tolower));
        case 12:
            return Same(Ucase(text), fModel.Case(s, toupper));
        case 13:
            return Same(TitleCase(text), fModel.TitleCase(s));
        case 14:
            return Same(Ltrim(text), fModel.Ltrim(s));
        case 15:
            return Same(Rtrim(text), fModel.Rtrim(s));
        case 16:
            return Same(Trim(text), fModel.Trim(s));
        case 17: {
            Place sep = RandomPattern(s);
            return Same(Extract(text, Library(sep)), fModel.Extract(s, sep));
        }
        case 18:
        case 19: {
            Place find = RandomPattern(s);
            Place repl = RandomReplacement();
            return Same(Replace(text, Library(find), Library(repl)), fModel.Replace(s, find, repl));
        }
        case 20:
            return Same(Str(x), fModel.Formatted("%g", x));
        case 21:
            return Same(Format(x, "<%9.3f>"), fModel.Formatted("<%9.3f>", x));
        default:
            return Len(text) == static_cast<int32_t>(fModel.Length(s)) &&
                   Chr2(text) == static_cast<signed char>(fModel.Byte(s, 0));
    }
}

}  // namespace

#ifdef __SANITIZE_THREAD__
static const int kCalls = 100000;  // forty times as slow, and one thread is all there is
#else
static const int kCalls = 1000000;
#endif

TEST_F(RingModel, AgreesOverAMillionCalls)
{
    for (int i = 0; i < kCalls; i++) {
        if (!Step() || !SameRing())
            FAIL() << "call " << i << " of function " << fCall;
        // The next slot handed out tells the index; now and then slots stay for longer.
        if (i % 2 == 0 && !Same(Chr(i), fModel.Chr(i)))
            FAIL() << "index after call " << i << " of function " << fCall;
    }
}
