#ifndef APP_TOKEN_TABLE_H
#define APP_TOKEN_TABLE_H

#include <SupportDefs.h>

#include <cstddef>
#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

// Entries by their `token`, which is above 0, one beside the other: a window of ten thousand views
// adds and removes as many. No thread but one at a time.
template <class Entry>
class TokenTable {
public:
    TokenTable() : fEntries(size_t(1) << kFirstBits) {}

    // Null if there is none. Holds until the next one is added or removed.
    Entry* Find(int32 token)
    {
        Entry& entry = fEntries[_PlaceOf(token)];
        return token > 0 && entry.token == token ? &entry : nullptr;
    }

    // False if there is one of that token.
    bool Add(const Entry& entry)
    {
        if (fCount + 1 > fEntries.size() / 2)
            _Grow();
        Entry& place = fEntries[_PlaceOf(entry.token)];
        if (place.token != 0)
            return false;
        place = entry;
        fCount++;
        return true;
    }

    void Remove(int32 token)
    {
        size_t place = _PlaceOf(token);
        if (token <= 0 || fEntries[place].token != token)
            return;
        // Those behind that would not be found any more across the gap move up.
        for (size_t next = _After(place); fEntries[next].token != 0; next = _After(next)) {
            const size_t first = _FirstPlaceOf(fEntries[next].token);
            if (((next - first) & _Mask()) >= ((next - place) & _Mask())) {
                fEntries[place] = fEntries[next];
                place = next;
            }
        }
        fEntries[place] = Entry();
        fCount--;
    }

private:
    static const int kFirstBits = 8;

    size_t _Mask() const { return fEntries.size() - 1; }
    size_t _After(size_t place) const { return (place + 1) & _Mask(); }
    // Spreads rising tokens evenly.
    size_t _FirstPlaceOf(int32 token) const
    {
        return static_cast<uint32>(token) * 0x9E3779B1u >> fShift;
    }
    // Where a token is, or would be added: a free place follows each run of those in use.
    size_t _PlaceOf(int32 token) const
    {
        size_t place = _FirstPlaceOf(token);
        while (fEntries[place].token != token && fEntries[place].token != 0)
            place = _After(place);
        return place;
    }

    void _Grow()
    {
        std::vector<Entry> entries(fEntries.size() * 2);
        entries.swap(fEntries);
        fShift--;
        for (const Entry& entry : entries) {
            if (entry.token != 0)
                fEntries[_PlaceOf(entry.token)] = entry;
        }
    }

    std::vector<Entry> fEntries;  // a power of two, twice as many as are in use at least
    int fShift = 32 - kFirstBits;
    size_t fCount = 0;
};

}  // namespace BPrivate

#endif  // APP_TOKEN_TABLE_H
