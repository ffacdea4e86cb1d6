#ifndef TRANSLATION_BITMAP_DATA_H
#define TRANSLATION_BITMAP_DATA_H

// Bitmaps in streams: a TranslatorBitmap and the rows.

#include <BitmapStream.h>

#include <memory>

class BBitmap;
class BMessage;

namespace [[gnu::visibility("hidden")]] BPrivate {

// What only the translators do with a stream of a bitmap.
struct BitmapStreamAccess {
    // The bitmap that the stream holds, null if it holds none.
    static const BBitmap* Bitmap(const BBitmapStream& stream);
    // Makes the bitmap the stream's, which then stands at its end.
    static void SetTo(BBitmapStream& stream, std::unique_ptr<BBitmap> bitmap);
};

// The colour space that a header names. In a header from elsewhere, or of the other byte order, it
// may be a number that the type has not.
uint32 raw_space(const TranslatorBitmap& header);

void swap_header(const TranslatorBitmap& source, TranslatorBitmap* destination);
TranslatorBitmap header_of(const BBitmap& bitmap);
// The bytes of a bitmap that a header in the host's order describes. B_BAD_DATA for one that can
// not be; B_NO_MEMORY for one that is too large.
status_t make_bitmap(const TranslatorBitmap& header, std::unique_ptr<BBitmap>* bitmap);

// The bitmap at the start of a stream, from there or as it lies in a BBitmapStream.
class BitmapSource {
public:
    status_t ReadFrom(BPositionIO* source);
    const BBitmap& Bitmap() const { return *fBitmap; }

private:
    std::unique_ptr<BBitmap> fOwned;
    const BBitmap* fBitmap = nullptr;
};

// Writes a bitmap in the colours, and of header and data the parts, that the extension (may be
// null) asks for.
status_t write_bitmap(std::unique_ptr<BBitmap> bitmap, const BMessage* extension,
                      BPositionIO* destination);

}  // namespace BPrivate

#endif  // TRANSLATION_BITMAP_DATA_H
