#ifndef SERVER_TEXT_RUNS_H
#define SERVER_TEXT_RUNS_H

// Finished pieces of text: measured, and drawn once into a coverage mask. A run never changes once
// it is published, so that threads share it without a lock.

#include <memory>
#include <vector>

#include <server/text/FontGlyphs.h>
#include <server/text/Fonts.h>

namespace server {

struct RunGlyph {
    std::shared_ptr<const Glyph> glyph;
    int32 x, y;  // of the glyph's left top pixel, from the pen
};

struct TextRun {
    float width = 0.0f;
    bool drawn = false;                  // else only measured
    clipping_rect ink = {0, 0, -1, -1};  // from the pen
    std::unique_ptr<uint8[]> mask;       // covers `ink`; null for a run too large to merge
    std::vector<RunGlyph> glyphs;        // of a run without a mask
    size_t Bytes() const;
};

enum class RunUse { Measure, Draw };

// How large the pixels of a run are drawn: laid out as the font says, then `times` as large.
struct RunScale {
    float times = 1.0f;
};

// The run of one piece of text. `phase` is where the pen stands between pixels. The
// run's width is not scaled.
std::shared_ptr<const TextRun> FindRun(const FontSpec& font, const char* text, int32 length,
                                       const escapement_delta* delta, GlyphPhase phase,
                                       RunScale scale, RunUse use);
// The font of a layout as it is drawn.
std::shared_ptr<ScaledFont> DrawnFont(const FontSpec& spec, const std::shared_ptr<ScaledFont>& font,
                                      RunScale scale) REQUIRES(FontLock());
// Its width alone.
float RunWidth(const FontSpec& font, const char* text, int32 length, const escapement_delta* delta);
// Makes every kept run stale: fonts came or went.
void ForgetRuns();
// Changes with ForgetRuns().
uint32 RunGeneration();

// A turned baseline.
struct Turn {
    explicit Turn(float rotation);
    // Where a point along and off the baseline falls, from the pen, y down.
    BPoint At(double along, double off) const;

    double cosine = 1.0, sine = 0.0;
    bool turned = false;
};

}  // namespace server

#endif  // SERVER_TEXT_RUNS_H
