// Two levels: a small table of each thread's own, found without a lock, and behind it the tables
// that all threads share.

#include <server/text/TextRuns.h>

#include <atomic>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>

#include <server/text/TextLayout.h>

#include "support/Boxes.h"
#include "support/Mutex.h"
#include "support/ThreadOwned.h"

namespace server {

namespace {

constexpr int32 kMaxMaskArea = 32 << 10;  // pixels of a merged mask
constexpr size_t kShards = 8, kSets = 64, kWays = 4;
constexpr size_t kShardBytes = 512 << 10;
constexpr size_t kOwnRuns = 128;

std::atomic<uint32> sGeneration;

// Everything that decides a run but its text, as bits.
struct RunKey {
    uint64 words[6];

    RunKey(const FontSpec& font, const escapement_delta* delta, GlyphPhase phase, RunScale scale)
    {
        auto pair = [](float low, float high) {
            return static_cast<uint64>(std::bit_cast<uint32>(high)) << 32 |
                   std::bit_cast<uint32>(low);
        };
        words[0] = static_cast<uint64>(font.family) | static_cast<uint64>(font.style) << 16 |
                   static_cast<uint64>(font.face) << 32 | static_cast<uint64>(font.spacing) << 48 |
                   static_cast<uint64>(font.encoding) << 56;
        words[1] = pair(font.size, font.shear);
        words[2] = pair(font.rotation, font.falseBoldWidth);
        words[3] = static_cast<uint64>(font.flags) << 32 |
                   static_cast<uint64>(sGeneration.load(std::memory_order_relaxed) & 0xFFFFFF)
                       << 8 |
                   static_cast<uint64>(phase.x) << 4 | phase.y;
        words[4] = delta != nullptr ? pair(delta->nonspace, delta->space) : 0;
        words[5] = std::bit_cast<uint32>(scale.times);
    }
};

uint64 mix(uint64 a, uint64 b)
{
    unsigned __int128 product = static_cast<unsigned __int128>(a) * b;
    return static_cast<uint64>(product) ^ static_cast<uint64>(product >> 64);
}

uint64 hash_of(const RunKey& key, const char* text, size_t length)
{
    constexpr uint64 kA = 0x9E3779B97F4A7C15, kB = 0xD1B54A32D192ED03, kC = 0x8CB92BA72F3D8DD7;
    uint64 hash = mix(key.words[0] ^ kA, key.words[1] ^ kB) ^
                  mix(key.words[2] ^ kC, key.words[3] ^ kA) ^
                  (key.words[4] + length + (key.words[5] << 32)) * kB;
    for (; length > 8; text += 8, length -= 8) {
        uint64 word;
        memcpy(&word, text, 8);
        hash = mix(hash ^ word, kA);
    }
    uint64 word = 0;
    memcpy(&word, text, length);
    return mix(hash ^ word, kB);
}

struct KeptRun : TextRun {
    KeptRun(const RunKey& key, uint64 hash, const char* text, int32 length)
        : key(key), hash(hash), text(text, static_cast<size_t>(length))
    {
    }

    bool Is(const RunKey& other, uint64 otherHash, const char* otherText, size_t length) const
    {
        return hash == otherHash && text.size() == length &&
               memcmp(&key, &other, sizeof(key)) == 0 &&
               memcmp(text.data(), otherText, length) == 0;
    }

    RunKey key;
    uint64 hash;
    std::string text;
};
using RunPointer = std::shared_ptr<const KeptRun>;

class Shard {
public:
    RunPointer Find(const RunKey& key, uint64 hash, const char* text, size_t length)
    {
        BPrivate::MutexLock lock(fLock);
        for (RunPointer& run : fRuns[_Set(hash)]) {
            if (run != nullptr && run->Is(key, hash, text, length))
                return run;
        }
        return nullptr;
    }

    void Insert(const RunPointer& run)
    {
        BPrivate::MutexLock lock(fLock);
        RunPointer* place = nullptr;
        for (RunPointer& other : fRuns[_Set(run->hash)]) {
            if (other == nullptr ||
                other->Is(run->key, run->hash, run->text.data(), run->text.size())) {
                place = &other;
                break;
            }
        }
        if (place == nullptr)
            place = &fRuns[_Set(run->hash)][fNextWay++ % kWays];
        _Clear(*place);
        for (; fBytes + run->Bytes() > kShardBytes && fBytes > 0; fHand++)
            _Clear(fRuns[fHand / kWays % kSets][fHand % kWays]);
        fBytes += run->Bytes();
        *place = run;
    }

private:
    static size_t _Set(uint64 hash) { return hash >> 8 & (kSets - 1); }

    void _Clear(RunPointer& run) REQUIRES(fLock)
    {
        if (run != nullptr)
            fBytes -= run->Bytes();
        run = nullptr;
    }

    BPrivate::Mutex fLock;
    RunPointer fRuns[kSets][kWays] GUARDED_BY(fLock);
    size_t fBytes GUARDED_BY(fLock) = 0;
    size_t fHand GUARDED_BY(fLock) = 0;
    size_t fNextWay GUARDED_BY(fLock) = 0;
};

Shard& shard_for(uint64 hash)
{
    static Shard* shards = new Shard[kShards];  // outlives every thread that draws at exit
    return shards[hash >> 4 & (kShards - 1)];
}

// The calling thread's own table; null once the thread is ending, and without memory.
struct OwnRuns {
    RunPointer runs[kOwnRuns];
    ~OwnRuns();
};
thread_local OwnRuns* sOwn;
thread_local bool sEnding;

OwnRuns::~OwnRuns() { sEnding = true; }

[[gnu::noinline]] OwnRuns* make_own_runs()
{
    return sEnding ? nullptr : BPrivate::thread_owned(&sOwn);
}

OwnRuns* own_runs()
{
    OwnRuns* own = sOwn;
    return own != nullptr ? own : make_own_runs();
}

uint8 joined(uint8 a, uint8 b) { return static_cast<uint8>(a + b - (a * b + 127) / 255); }

// Few pixels are touched by two glyphs.
void join(uint8* to, const uint8* from, int32 count)
{
    int32 i = 0;
    for (; i + 4 <= count; i += 4) {
        uint32 above, below;
        memcpy(&above, from + i, sizeof(above));
        memcpy(&below, to + i, sizeof(below));
        if (below == 0) {
            memcpy(to + i, &above, sizeof(above));
        } else if (above != 0) {
            for (int32 at = i; at < i + 4; at++)
                to[at] = joined(to[at], from[at]);
        }
    }
    for (; i < count; i++)
        to[i] = joined(to[i], from[i]);
}

void blend(const Glyph& glyph, int32 x, int32 y, TextRun& run)
{
    int32 width = run.ink.right - run.ink.left + 1;
    for (int32 row = 0; row < glyph.height; row++) {
        const uint8* from = glyph.bits.get() + static_cast<ptrdiff_t>(row) * glyph.width;
        uint8* to = run.mask.get() + static_cast<ptrdiff_t>(y - run.ink.top + row) * width +
                    (x - run.ink.left);
        join(to, from, glyph.width);
    }
}

// How far a glyph is moved to stand in the middle of its whole-pixel advance.
float middle_shift(ScaledFont& font, uint32 glyph)
{
    const float advance = font.Advance(glyph);
    return advance > 0.0f ? (std::max(1.0f, std::round(advance)) - advance) / 2.0f : 0.0f;
}

// Where a glyph falls on the pixel grid.
RunGlyph set_glyph(const FontSpec& spec, const Layout& layout, const PlacedGlyph& placed,
                   const Turn& turn, GlyphPhase pen, RunScale scale, ScaledFont& drawn)
{
    const bool whole = !turn.turned && spec.spacing != B_CHAR_SPACING;
    const bool centred = whole && spec.spacing == B_BITMAP_SPACING;
    BPoint at = turn.At(placed.x, placed.y);
    GlyphPhase phase;
    if (scale.times != 1.0f) {
        if (centred)
            at.x += middle_shift(*layout.fonts[placed.font], placed.glyph);
        at = BPoint(at.x * scale.times, at.y * scale.times);
    }
    int32 x, y;
    if (whole || (spec.flags & B_DISABLE_ANTIALIASING)) {
        x = static_cast<int32>(std::floor(at.x + pen.x / 4.0f + 0.5f));
        y = static_cast<int32>(std::floor(at.y + pen.y / 4.0f + 0.5f));
        phase.centred = centred && scale.times == 1.0f;
    } else {
        int32 quartersX = static_cast<int32>(std::floor(at.x * 4.0f + 0.5f)) + pen.x;
        int32 quartersY = static_cast<int32>(std::floor(at.y * 4.0f + 0.5f)) + pen.y;
        if (!turn.turned)
            quartersY = (quartersY + 2) & ~3;
        x = quartersX >> 2;
        y = quartersY >> 2;
        phase.x = quartersX & 3;
        phase.y = quartersY & 3;
    }
    auto glyph = drawn.Raster(placed.glyph, phase);
    x += glyph->left;
    y += glyph->top;
    return {std::move(glyph), x, y};
}

void draw_run(const FontSpec& spec, const Layout& layout, GlyphPhase pen, RunScale scale,
              TextRun& run) REQUIRES(FontLock())
{
    Turn turn(spec.rotation);
    run.drawn = true;
    std::vector<std::shared_ptr<ScaledFont>> drawn;
    for (const auto& font : layout.fonts)
        drawn.push_back(DrawnFont(spec, font, scale));
    for (const PlacedGlyph& placed : layout.glyphs) {
        RunGlyph set = set_glyph(spec, layout, placed, turn, pen, scale, *drawn[placed.font]);
        if (set.glyph->bits == nullptr)
            continue;
        run.ink = BPrivate::unite(
            run.ink, {set.x, set.y, set.x + set.glyph->width - 1, set.y + set.glyph->height - 1});
        run.glyphs.push_back(std::move(set));
    }
    int64 area = (static_cast<int64>(run.ink.right) - run.ink.left + 1) *
                 (static_cast<int64>(run.ink.bottom) - run.ink.top + 1);
    if (run.glyphs.empty() || area > kMaxMaskArea)
        return;
    run.mask.reset(new uint8[static_cast<size_t>(area)]());
    for (const RunGlyph& set : run.glyphs)
        blend(*set.glyph, set.x, set.y, run);
    run.glyphs.clear();
    run.glyphs.shrink_to_fit();
}

RunPointer make_run(const FontSpec& font, const RunKey& key, uint64 hash, const char* text,
                    int32 length, const escapement_delta* delta, GlyphPhase phase, RunScale scale,
                    RunUse use)
{
    auto run = std::make_shared<KeptRun>(key, hash, text, length);
    BPrivate::MutexLock lock(FontLock());
    Layout layout;
    LayOut(font, text, length, delta, &layout);
    run->width = layout.width;
    if (use == RunUse::Draw)
        draw_run(font, layout, phase, scale, *run);
    return run;
}

// The slot of the calling thread that holds the run, or null while the thread ends; `made` keeps
// the run for then.
const RunPointer* find(const FontSpec& font, const char* text, int32 length,
                       const escapement_delta* delta, GlyphPhase phase, RunScale scale, RunUse use,
                       RunPointer& made)
{
    RunKey key(font, delta, phase, scale);
    size_t bytes = static_cast<size_t>(length);
    uint64 hash = hash_of(key, text, bytes);
    bool draw = use == RunUse::Draw;
    OwnRuns* own = own_runs();
    RunPointer* slot = own != nullptr ? &own->runs[hash & (kOwnRuns - 1)] : &made;
    if (*slot != nullptr && (*slot)->Is(key, hash, text, bytes) && ((*slot)->drawn || !draw))
        return slot;
    Shard& shard = shard_for(hash);
    RunPointer run = shard.Find(key, hash, text, bytes);
    if (run == nullptr || (draw && !run->drawn)) {
        run = make_run(font, key, hash, text, length, delta, phase, scale, use);
        shard.Insert(run);
    }
    *slot = std::move(run);
    return slot;
}

}  // namespace

size_t TextRun::Bytes() const
{
    size_t area = mask == nullptr ? 0
                                  : static_cast<size_t>(ink.right - ink.left + 1) *
                                        static_cast<size_t>(ink.bottom - ink.top + 1);
    return sizeof(KeptRun) + kPieceBytes + area + glyphs.capacity() * sizeof(RunGlyph);
}

std::shared_ptr<const TextRun> FindRun(const FontSpec& font, const char* text, int32 length,
                                       const escapement_delta* delta, GlyphPhase phase,
                                       RunScale scale, RunUse use)
{
    RunPointer made;
    return *find(font, text, length, delta, phase, scale, use, made);
}

std::shared_ptr<ScaledFont> DrawnFont(const FontSpec& spec, const std::shared_ptr<ScaledFont>& font,
                                      RunScale scale)
{
    if (scale.times == 1.0f)
        return font;
    FontSpec larger = spec;
    larger.size *= scale.times;
    larger.falseBoldWidth *= scale.times;
    auto drawn = ScaledFont::Get(larger, &font->Style());
    return drawn != nullptr ? drawn : font;
}

float RunWidth(const FontSpec& font, const char* text, int32 length, const escapement_delta* delta)
{
    RunPointer made;
    return (*find(font, text, length, delta, {}, {}, RunUse::Measure, made))->width;
}

void ForgetRuns() { sGeneration++; }

uint32 RunGeneration() { return sGeneration.load(std::memory_order_relaxed); }

Turn::Turn(float rotation)
{
    if (rotation == 0.0f || !std::isfinite(rotation))
        return;
    double angle = std::remainder(static_cast<double>(rotation), 360.0) * M_PI / 180.0;
    if (angle == 0.0)
        return;
    cosine = std::cos(angle);
    sine = std::sin(angle);
    turned = true;
}

BPoint Turn::At(double along, double off) const
{
    return BPoint(static_cast<float>(along * cosine + off * sine),
                  static_cast<float>(off * cosine - along * sine));
}

}  // namespace server
