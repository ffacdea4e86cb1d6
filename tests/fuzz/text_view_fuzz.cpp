// Any calls with any offsets on a text view of the kits: edits, styles, places, archives and undo,
// and flattened runs of any bytes.

#include <Application.h>
#include <Message.h>
#include <Region.h>
#include <TextView.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

std::vector<Bytes> FuzzSeeds()
{
    std::vector<Bytes> seeds;
    for (const char* text :
         {"\1one two\2\3\4\5three\6\7\10four\n\11\12", "\1\xC3\xA9\xFF\xE6\xBC\xA2\n\r\n",
          "\20\21\22\23\24\25\26\27abcdef\1\2\3\4\5\6\7"})
        seeds.emplace_back(text, text + strlen(text));
    return seeds;
}

namespace {

// What is left of the input, taken from the front.
class Input {
public:
    Input(const uint8_t* data, size_t size) : fData(data), fSize(size) {}
    bool IsEmpty() const { return fSize == 0; }
    uint8_t Byte()
    {
        if (fSize == 0)
            return 0;
        fSize--;
        return *fData++;
    }
    // Near the text mostly, else anywhere.
    int32 Offset(const BTextView& view)
    {
        const uint8_t byte = Byte();
        if (byte > 250)
            return byte == 251 ? INT32_MIN : byte == 252 ? INT32_MAX : -int32(Byte());
        return int32(byte) * (view.TextLength() + 2) / 250;
    }
    std::string Text()
    {
        std::string text;
        for (uint8_t length = Byte() % 24; length > 0; length--)
            text += char(Byte());
        return text;
    }

private:
    const uint8_t* fData;
    size_t fSize;
};

void edit(BTextView& view, Input& input)
{
    const int32 from = input.Offset(view), to = input.Offset(view);
    const std::string text = input.Text();
    switch (input.Byte() % 6) {
        case 0:
            view.Insert(from, text.data(), int32(text.size()));
            break;
        case 1:
            view.Delete(from, to);
            break;
        case 2:
            view.Select(from, to);
            break;
        case 3:
            view.KeyDown(text.c_str(), int32(text.size()));
            break;
        case 4:
            view.Undo(nullptr);
            break;
        default: {
            BMessage redo(B_REDO);
            view.MessageReceived(&redo);
        }
    }
}

void change(BTextView& view, Input& input)
{
    const int32 from = input.Offset(view), to = input.Offset(view);
    const uint8_t value = input.Byte();
    BFont font(be_plain_font);
    font.SetSize(float(value % 40));
    const rgb_color color = {value, 0, 0, 255};
    switch (input.Byte() % 8) {
        case 0:
            view.SetFontAndColor(from, to, &font, B_FONT_ALL, &color);
            break;
        case 1:
            view.SetWordWrap(value & 1);
            break;
        case 2:
            view.SetTextRect(BRect(0, 0, float(value), 10));
            break;
        case 3:
            view.SetMaxBytes(value > 200 ? INT32_MAX : value * 2);
            break;
        case 4:
            view.HideTyping(value & 1);
            break;
        case 5:
            view.SetAlignment(static_cast<alignment>(value % 4));
            break;
        case 6:
            view.SetTabWidth(float(value) - 10);
            break;
        default:
            view.SetStylable(value & 1);
    }
}

void look(BTextView& view, Input& input)
{
    const int32 from = input.Offset(view), to = input.Offset(view);
    view.FindWord(from, nullptr, nullptr);
    const BPoint point = view.PointAt(from);
    const int32 back = view.OffsetAt(point);
    BRegion region;
    view.GetTextRegion(from, to, &region);
    view.LineWidth(view.LineAt(from));
    if (back < 0 || back > view.TextLength() || view.LineAt(back) >= view.CountLines())
        abort();
    BTextView::FreeRunArray(view.RunArray(from, to));
    view.TextHeight(from, to);
    view.CanEndLine(from);
}

void archive(BTextView& view)
{
    BMessage message;
    if (view.Archive(&message) != B_OK)
        return;
    BTextView copy(&message);
    if (copy.TextLength() != view.TextLength() || strcmp(copy.Text(), view.Text()) != 0)
        abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static BApplication application("application/x-vnd.plinth-text-fuzz");
    int32 flat = int32(size);
    if (size > 0)  // none stands for a size that nobody knows
        BTextView::FreeRunArray(BTextView::UnflattenRunArray(data, &flat));
    BTextView view(BRect(0, 0, 100, 100), "text", BRect(0, 0, 100, 100), B_FOLLOW_NONE);
    view.SetStylable(true);
    Input input(data, size);
    while (!input.IsEmpty()) {
        const uint8_t kind = input.Byte() % 16;
        if (kind < 8)
            edit(view, input);
        else if (kind < 12)
            change(view, input);
        else if (kind < 15)
            look(view, input);
        else
            archive(view);
    }
    return 0;
}
