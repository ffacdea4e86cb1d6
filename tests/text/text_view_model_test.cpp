// A text view against a plain string with a style for each byte, whose lines are broken from the
// start each time, and whose undo keeps all it ever was.

#include <Application.h>
#include <Clipboard.h>
#include <Message.h>
#include <TextView.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/ValidUTF8.h"

namespace {

struct State {
    std::string text;
    std::string styles;  // a number for each byte
    char empty = 0;      // the style of a text without bytes
    int32 start = 0, end = 0;
};

struct Step {
    undo_state kind;
    State before, after;
};

struct Line {
    size_t from, to;
    float width, height;
};

const rgb_color kBlack = {0, 0, 0, 255};

class Model {
public:
    Model()
    {
        for (int i = 0; i < 4; i++) {
            BFont font(be_plain_font);
            font.SetSize(float(10 + 4 * i));
            fonts.push_back(font);
            font_height height;
            font.GetHeight(&height);
            ascents.push_back(std::ceil(height.ascent));
            heights.push_back(std::ceil(height.ascent + height.descent + height.leading));
        }
        state.empty = 0;
    }

    void Insert(size_t at, const std::string& bytes, const std::string& styles)
    {
        const char style = state.text.empty() ? state.empty
                           : at == 0          ? state.styles[0]
                                              : state.styles[at - 1];
        state.text.insert(at, bytes);
        state.styles.insert(at, styles.empty() ? std::string(bytes.size(), style) : styles);
        const bool caret = state.start == state.end;
        const auto count = int32(bytes.size()), offset = int32(at);
        state.start += state.start >= offset ? count : 0;
        state.end += state.end > offset || (caret && state.end == offset) ? count : 0;
    }
    void Remove(size_t from, size_t to)
    {
        if (from == 0 && to == state.text.size())
            state.empty = state.styles[0];
        state.text.erase(from, to - from);
        state.styles.erase(from, to - from);
        const auto moved = [=](int32 place) {
            return place >= int32(to) ? place - int32(to - from) : std::min(place, int32(from));
        };
        state.start = moved(state.start);
        state.end = moved(state.end);
    }
    void Did(undo_state kind, const State& before)
    {
        done.push_back({kind, before, state});
        undone.clear();
    }
    // Takes the text back, and the selection to where it was before.
    void Undo(const BTextView& view)
    {
        if (done.empty()) {
            Redo(view);
            return;
        }
        undone.push_back(done.back());
        done.pop_back();
        Become(undone.back().before, view);
    }
    void Redo(const BTextView& view)
    {
        if (undone.empty())
            return;
        done.push_back(undone.back());
        undone.pop_back();
        Become(done.back().after, view);
    }
    // A text that is empty looks as what was there.
    void Become(const State& other, const BTextView& view)
    {
        const char first = state.text.empty() ? state.empty : state.styles[0];
        state = other;
        state.empty = first;
        Adopt(view);
    }
    // Where characters end is for the view to tell.
    void Adopt(const BTextView& view) { view.GetSelection(&state.start, &state.end); }

    // Bytes of the character at one.
    static size_t Size(const std::string& text, size_t at)
    {
        const size_t size = BPrivate::valid_utf8_length(std::string_view(text).substr(at));
        return size == 0 ? 1 : size;
    }
    float Width(const std::string& character, char style)
    {
        const auto key = std::make_pair(character, style);
        const auto found = widths.find(key);
        if (found != widths.end())
            return found->second;
        const bool nothing = character == "\n" || character[0] == '\0';
        const float width =
            nothing ? 0
                    : fonts[size_t(style)].StringWidth(character.c_str(), int32(character.size()));
        return widths[key] = width;
    }
    std::vector<Line> Lines(BTextView& view, float limit)
    {
        std::vector<Line> lines;
        const std::string& text = state.text;
        size_t from = 0;
        while (from < text.size()) {
            lines.push_back(Break(view, from, limit));
            from = lines.back().to;
        }
        if (text.empty() || text.back() == '\n')
            lines.push_back({from, from, 0, 0});
        for (Line& line : lines) {
            const char last = text.empty() ? state.empty : state.styles[from - 1];
            std::string styles = state.styles.substr(line.from, line.to - line.from);
            if (styles.empty())
                styles = std::string(1, last);
            float ascent = 0, below = 0;
            for (char style : styles) {
                ascent = std::max(ascent, ascents[size_t(style)]);
                below = std::max(below, heights[size_t(style)] - ascents[size_t(style)]);
            }
            line.height = ascent + below;
        }
        return lines;
    }
    Line Break(BTextView& view, size_t from, float limit)
    {
        const std::string& text = state.text;
        std::vector<size_t> starts;
        std::vector<float> places;
        float x = 0;
        for (size_t at = from; at < text.size();) {
            const size_t size = Size(text, at);
            const std::string character = text.substr(at, size);
            const float width = character == "\t" ? (std::floor(x / 28) + 1) * 28 - x
                                                  : Width(character, state.styles[at]);
            const bool blank = uint8(character[0]) <= ' ';
            if (limit > 0 && x + width > limit && at > from && !blank)
                return Back(view, from, at, starts, places);
            starts.push_back(at);
            places.push_back(x);
            x += width;
            at += size;
            if (character == "\n")
                return {from, at, x, 0};
        }
        return {from, text.size(), x, 0};
    }
    // Behind the last character that may end a line; else as many as there is room for.
    Line Back(BTextView& view, size_t from, size_t over, const std::vector<size_t>& starts,
              const std::vector<float>& places)
    {
        size_t end = over;
        for (size_t i = starts.size(); i-- > 0;) {
            if (view.CanEndLine(int32(starts[i]))) {
                end = i + 1 < starts.size() ? starts[i + 1] : over;
                break;
            }
        }
        size_t shown = end;
        while (shown > from && state.text[shown - 1] == ' ')
            shown--;
        float width = 0;
        for (size_t i = 0; i < starts.size() && starts[i] < shown; i++) {
            const size_t size = Size(state.text, starts[i]);
            const std::string character = state.text.substr(starts[i], size);
            width = places[i];
            width += character == "\t" ? (std::floor(width / 28) + 1) * 28 - width
                                       : Width(character, state.styles[starts[i]]);
        }
        return {from, end, width, 0};
    }

    State state;
    std::vector<Step> done, undone;
    std::vector<BFont> fonts;
    std::vector<float> ascents, heights;
    std::map<std::pair<std::string, char>, float> widths;
};

class TextModel : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
    }

    size_t Random(size_t count) { return random() % count; }
    // A place in the text: between characters if there are styles, which would part them.
    size_t Aligned(const std::string& bytes, size_t at) const
    {
        while (styled && at > 0 && at < bytes.size() && (bytes[at] & 0xC0) == 0x80)
            at--;
        return at;
    }
    size_t Place(const std::string& bytes) { return Aligned(bytes, Random(bytes.size() + 1)); }
    std::string Bytes()
    {
        static const std::vector<std::string> kParts = {
            "a",    "word", " ",   "\n", "two words ", "\t", "é",    "漢",
            "\xFF", "-",    "(x)", ".",  "long\n\n",   "\r", "\xE4", "\x80"};
        std::string bytes;
        for (size_t i = Random(3) + 1; i > 0; i--)
            bytes += kParts[Random(kParts.size() - (styled ? 2 : 0))];
        return bytes;
    }
    // A part of the text.
    std::pair<size_t, size_t> Part()
    {
        const std::string& text = model.state.text;
        const size_t one = Place(text);
        const size_t two =
            Random(8) == 0 ? Place(text) : Aligned(text, std::min(one + Random(12), text.size()));
        return {std::min(one, two), std::max(one, two)};
    }

    void Insert()
    {
        const State before = model.state;
        const std::string bytes = Bytes();
        const size_t at = Place(model.state.text);
        std::string styles;
        text_run_array* runs = nullptr;
        if (styled && Random(4) == 0) {
            const char one = char(Random(4)), two = char(Random(4));
            const size_t border = Place(bytes);
            styles = std::string(border, one) + std::string(bytes.size() - border, two);
            runs = BTextView::AllocRunArray(2);
            runs->runs[0] = {0, model.fonts[size_t(one)], kBlack};
            runs->runs[1] = {int32(border), model.fonts[size_t(two)], kBlack};
        }
        view.Insert(int32(at), bytes.data(), int32(bytes.size()), runs);
        BTextView::FreeRunArray(runs);
        model.Insert(at, bytes, styles);
        model.Did(B_UNDO_PASTE, before);
    }
    void Delete()
    {
        const State before = model.state;
        const auto [from, to] = Part();
        view.Delete(int32(from), int32(to));
        if (from == to)
            return;
        model.Remove(from, to);
        model.Did(B_UNDO_CLEAR, before);
    }
    void Style()
    {
        const State before = model.state;
        const auto [from, to] = Part();
        const char style = char(Random(4));
        if (from == to || !styled)
            return;
        view.SetFontAndColor(int32(from), int32(to), &model.fonts[size_t(style)], B_FONT_ALL,
                             nullptr);
        for (size_t at = from; at < to; at++)
            model.state.styles[at] = style;
        if (model.state.styles != before.styles)
            model.Did(B_UNDO_TYPING, before);
    }
    void Select()
    {
        const auto [from, to] = Part();
        view.Select(int32(from), int32(to));
        model.Adopt(view);
        EXPECT_LE(model.state.start, int32(from));
        EXPECT_GE(model.state.end, int32(from == to ? 0 : to));
    }
    void Cut()
    {
        const State before = model.state;
        view.Cut(&clipboard);
        if (before.start == before.end)
            return;
        clip = {before.text.substr(size_t(before.start), size_t(before.end - before.start)),
                before.styles.substr(size_t(before.start), size_t(before.end - before.start)), 0, 0,
                0};
        model.Remove(size_t(before.start), size_t(before.end));
        model.Did(B_UNDO_CUT, before);
        model.Adopt(view);
        if (!model.done.empty())
            model.done.back().after.start = model.done.back().after.end = model.state.start;
    }
    void Paste()
    {
        const State before = model.state;
        view.Paste(&clipboard);
        if (clip.text.empty())
            return;
        if (before.start < before.end)
            model.Remove(size_t(before.start), size_t(before.end));
        model.Insert(size_t(before.start), clip.text, clip.styles);
        model.Did(B_UNDO_PASTE, before);
        model.Adopt(view);
    }
    void Undo()
    {
        view.Undo(&clipboard);
        model.Undo(view);
    }
    void Redo()
    {
        BMessage redo(B_REDO);
        view.MessageReceived(&redo);
        model.Redo(view);
    }
    void Turn()
    {
        const size_t kind = Random(100);
        if (kind < 36)
            Insert();
        else if (kind < 68)
            Delete();
        else if (kind < 76)
            Style();
        else if (kind < 84)
            Select();
        else if (kind < 85)
            Cut();
        else if (kind < 86)
            Paste();
        else if (kind < 94)
            Undo();
        else
            Redo();
    }
    void ExpectSame()
    {
        const State& state = model.state;
        ASSERT_EQ(std::string(view.Text(), size_t(view.TextLength())), state.text);
        int32 start, end;
        view.GetSelection(&start, &end);
        ASSERT_EQ(start, state.start);
        ASSERT_EQ(end, state.end);
        bool redo;
        const undo_state kind = view.UndoState(&redo);
        ASSERT_EQ(redo, model.done.empty() && !model.undone.empty());
        ASSERT_EQ(kind, !model.done.empty()     ? model.done.back().kind
                        : !model.undone.empty() ? model.undone.back().kind
                                                : B_UNDO_UNAVAILABLE);
    }
    void ExpectSameStyles()
    {
        text_run_array* runs = view.RunArray(0, view.TextLength());
        std::string styles;
        for (int32 i = 0; i < runs->count; i++) {
            const int32 to = i + 1 < runs->count ? runs->runs[i + 1].offset : view.TextLength();
            const auto style = char((runs->runs[i].font.Size() - 10) / 4);
            styles.append(size_t(to - runs->runs[i].offset), style);
        }
        BTextView::FreeRunArray(runs);
        ASSERT_EQ(styles, model.state.styles);
    }
    void ExpectSameLines(float limit)
    {
        const std::vector<Line> lines = model.Lines(view, limit);
        SCOPED_TRACE(testing::PrintToString(model.state.text));
        ASSERT_EQ(size_t(view.CountLines()), lines.size());
        float top = 0;
        for (size_t i = 0; i < lines.size(); i++) {
            const auto index = int32(i);
            ASSERT_EQ(view.OffsetAt(index), int32(lines[i].from));
            ASSERT_EQ(view.LineWidth(index), lines[i].width) << i;
            ASSERT_EQ(view.LineHeight(index), lines[i].height) << i;
            ASSERT_EQ(view.PointAt(int32(lines[i].from)).y, top);
            ASSERT_EQ(view.LineAt(int32(lines[i].from)), index);
            top += lines[i].height;
        }
    }
    void Run(int turns, float limit, bool styles)
    {
        styled = styles;
        ASSERT_TRUE(clipboard.Lock());
        clipboard.Clear();
        clipboard.Commit();
        clipboard.Unlock();
        view.SetStylable(true);
        view.SetFontAndColor(&model.fonts[0], B_FONT_ALL, &kBlack);
        view.SetWordWrap(limit > 0);
        for (int turn = 0; turn < turns; turn++) {
            Turn();
            // Long texts become short again, and what was is forgotten.
            if (model.state.text.size() > 400 || model.done.size() > 300) {
                view.SetText("a text to start with\n");
                model.state.empty =
                    model.state.styles.empty() ? model.state.empty : model.state.styles[0];
                model.state.text = view.Text();
                model.state.styles = std::string(model.state.text.size(), model.state.empty);
                model.state.start = model.state.end = 0;
                model.done.clear();
                model.undone.clear();
            }
            if (turn % 16 == 0) {
                SCOPED_TRACE(turn);
                ExpectSame();
                ExpectSameStyles();
                if (turn % 64 == 0)
                    ExpectSameLines(limit);
            }
            if (HasFatalFailure())
                return;
        }
    }

    BApplication application{"application/x-vnd.plinth-text-model"};
    BClipboard clipboard{"text model"};
    BTextView view{BRect(0, 0, 119, 99), "text", BRect(0, 0, 100, 99), B_FOLLOW_NONE};
    Model model;
    State clip;
    std::mt19937 random{7};
    bool styled = false;
};

TEST_F(TextModel, RandomEditsOfAStyledTextAreThoseOfAString) { Run(300'000, 100, true); }

TEST_F(TextModel, RandomEditsOfStyledLinesAreThoseOfAString) { Run(200'000, 0, true); }

TEST_F(TextModel, RandomEditsOfAnyBytesAreThoseOfAString) { Run(300'000, 100, false); }

TEST_F(TextModel, RandomEditsOfLinesOfAnyBytesAreThoseOfAString) { Run(200'000, 0, false); }

}  // namespace
