// Every operation of gadgets with what it was not made for: idents of other things, gadgets of
// other kinds and in no window, any number, no text and long ones.

#include "gadget_window.h"

#include <Font.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace {

const int32_t kNumbers[] = {0, 1, -1, 2, 255, 32768, INT32_MAX, INT32_MIN};
const char* const kFew[] = {"one", "", "three", nullptr};

using Kinds = std::vector<int32_t>;

// The kinds that each is for; empty for all kinds. It leaves the others as they are.
const struct Operation {
    const char* name;
    Kinds kinds;
    void (*call)(int32_t ident, int32_t number, const char* text);
} kOperations[] = {
    {"SetBorder", {24}, [](int32_t i, int32_t n, const char*) { SetBorder(i, n); }},
    {"SetLabelBBox", {24}, [](int32_t i, int32_t, const char* t) { SetLabelBBox(i, t); }},
    {"SetChecked", {2}, [](int32_t i, int32_t n, const char*) { SetChecked(i, n); }},
    {"SetCellSize", {30}, [](int32_t i, int32_t n, const char*) { SetCellSize(i, n); }},
    {"SetLayout", {30}, [](int32_t i, int32_t n, const char*) { SetLayout(i, n); }},
    {"SetColorRgb", {30}, [](int32_t i, int32_t n, const char*) { SetColorRgb(i, n); }},
    {"SetColorInt", {30}, [](int32_t i, int32_t n, const char*) { SetColorInt(i, n); }},
    {"MxSelected", {19}, [](int32_t i, int32_t n, const char*) { MxSelected(i, n); }},
    {"ChangeMxData", {19}, [](int32_t i, int32_t, const char*) { ChangeMxData(i, kFew); }},
    {"RadSelected", {18}, [](int32_t i, int32_t n, const char*) { RadSelected(i, n); }},
    {"SetProportion", {13, 14}, [](int32_t i, int32_t n, const char*) { SetProportion(i, n); }},
    {"SetRange", {13, 14}, [](int32_t i, int32_t n, const char*) { SetRange(i, n, -(n / 2)); }},
    {"SetSteps", {13, 14}, [](int32_t i, int32_t n, const char*) { SetSteps(i, n, n); }},
    {"SetSliderPosition",
     {15, 16},
     [](int32_t i, int32_t n, const char*) { SetSliderPosition(i, n); }},
    {"SetSliderProportion",
     {15, 16},
     [](int32_t i, int32_t n, const char*) { SetSliderProportion(i, n); }},
    {"SetStyle", {15, 16}, [](int32_t i, int32_t n, const char*) { SetStyle(i, n); }},
    {"SetBarColor", {15, 16}, [](int32_t i, int32_t n, const char*) { SetBarColor(i, n); }},
    {"SetFillColor", {15, 16}, [](int32_t i, int32_t n, const char*) { SetFillColor(i, n); }},
    {"SetHashCount", {15, 16}, [](int32_t i, int32_t n, const char*) { SetHashCount(i, n); }},
    {"SetHashType", {15, 16}, [](int32_t i, int32_t n, const char*) { SetHashType(i, n); }},
    {"SetLimitsLabel",
     {15, 16},
     [](int32_t i, int32_t, const char* t) { SetLimitsLabel(i, t, t); }},
    {"SetStatusLabel", {17}, [](int32_t i, int32_t, const char* t) { SetStatusLabel(i, t); }},
    {"SetStatusTrail", {17}, [](int32_t i, int32_t, const char* t) { SetStatusTrail(i, t); }},
    {"SetStatusMaxValue", {17}, [](int32_t i, int32_t n, const char*) { SetStatusMaxValue(i, n); }},
    {"SetStatusValue", {17}, [](int32_t i, int32_t n, const char*) { SetStatusValue(i, n); }},
    {"SetStatusBarColor", {17}, [](int32_t i, int32_t n, const char*) { SetStatusBarColor(i, n); }},
    {"SetStatusBarHeight",
     {17},
     [](int32_t i, int32_t n, const char*) { SetStatusBarHeight(i, n); }},
    {"SetLabel",
     {1, 2, 3, 4, 5, 6, 15, 16, 30, 33},
     [](int32_t i, int32_t, const char* t) { SetLabel(i, t); }},
    {"SetValue",
     {13, 14, 15, 16, 17, 19},
     [](int32_t i, int32_t n, const char*) { SetValue(i, n); }},
    {"SetEnabled",
     {},
     [](int32_t i, int32_t n, const char*) { SetEnabled(i, static_cast<int8_t>(n)); }},
    {"SetTipsWindow", {}, [](int32_t i, int32_t, const char* t) { SetTipsWindow(i, t); }},
    {"ActivateGadget", {}, [](int32_t i, int32_t, const char*) { ActivateGadget(i); }},
    {"FocusOnClick",
     {},
     [](int32_t i, int32_t n, const char*) { FocusOnClick(i, static_cast<int8_t>(n)); }},
    {"AttachPopUpToGadget",
     {},
     [](int32_t i, int32_t n, const char*) { AttachPopUpToGadget(i, n); }},
    {"SetFontGadget", {}, [](int32_t i, int32_t n, const char*) { SetFontGadget(i, n); }},
    {"SetAntiliasingGadget",
     {},
     [](int32_t i, int32_t n, const char*) { SetAntiliasingGadget(i, static_cast<int8_t>(n)); }},
    {"SetForeColorGadget",
     {},
     [](int32_t i, int32_t n, const char*) { SetForeColorGadget(i, n, n); }},
    {"SetBackColorGadget", {}, [](int32_t i, int32_t n, const char*) { SetBackColorGadget(i, n); }},
    {"SetHandlerForGadget",
     {},
     [](int32_t i, int32_t n, const char*) { SetHandlerForGadget(i, n, nullptr); }},
    {"HideGadget", {}, [](int32_t i, int32_t n, const char*) { HideGadget(n, i); }},
    {"SetGadget", {}, [](int32_t i, int32_t n, const char*) { SetGadget(n, i); }},
    {"ShowGadget", {}, [](int32_t i, int32_t n, const char*) { ShowGadget(n, i); }},
    {"ResizeGadget", {}, [](int32_t i, int32_t n, const char*) { ResizeGadget(i, n, n / 3); }},
    {"BBoxAddGadget", {}, [](int32_t i, int32_t n, const char*) { BBoxAddGadget(n, i); }},
    {"BBoxAddGadgetTitle", {}, [](int32_t i, int32_t n, const char*) { BBoxAddGadgetTitle(n, i); }},
    {"AttachGadgetToWindow",
     {},
     [](int32_t i, int32_t n, const char*) { AttachGadgetToWindow(n, i); }},
};

// What can be read of a gadget.
std::tuple<int32_t, int32_t, int32_t, bool, std::string> seen(int32_t ident)
{
    return {GetValue(ident), GetEnabled(ident), GetColor(ident), GetChecked(ident),
            GetLabel(ident)};
}

class BadInputTest : public GadgetTest {
protected:
    // A gadget of each kind that there is, by kind.
    std::map<int32_t, int32_t> OneOfEach(int32_t parent, int32_t icon)
    {
        std::map<int32_t, int32_t> idents;
        for (int32_t kind = 1; kind <= 34; kind++) {
            const bool has_several = kind == 18 || kind == 19;
            const void* text = has_several ? static_cast<const void*>(kFew) : "label";
            const int32_t value = kind >= 31 && kind <= 33 ? icon : 100;
            const int32_t ident =
                CreateGadget(kind, parent, kind % 6 * 50, kind / 6 * 50, 45, 45, text, value);
            if (ident != 0)
                idents[kind] = ident;
        }
        return idents;
    }

    const std::string fLong = std::string(100000, 'x');
    const int32_t fIcon = CreateImage(16, 16);
};

}  // namespace

TEST_F(BadInputTest, IdentsOfOtherThingsAreNoGadgets)
{
    const int32_t font = OpenFont(nullptr, nullptr, 12);
    const char* const lines[] = {"i*00000001First", "q", nullptr};
    const int32_t menu = CreatePopUpMenu(lines);
    const int32_t gone = Make(1, 0, 0, 10, 10);
    KillGadget(0, gone);
    for (const int32_t ident :
         {0, -1, -2, INT32_MIN, INT32_MAX, window.Ident(), font, menu, fIcon, gone}) {
        for (const Operation& operation : kOperations) {
            for (const int32_t number : kNumbers)
                operation.call(ident, number, "text");
        }
        EXPECT_EQ(seen(ident), std::make_tuple(0, 0, 0, false, std::string()));
        EXPECT_FALSE(is_gadget_ident(ident));
        KillGadget(0, ident);
    }
    EXPECT_TRUE(is_window_ident(window));
    EXPECT_EQ(CountViews(), 0);
    CloseFont(font);
    KillMenu(menu);
}

// Whatever is made is found, and goes again.
TEST_F(BadInputTest, GadgetsAreMadeOfAnyNumbersAndTexts)
{
    const char* const longs[] = {fLong.c_str(), "b", nullptr};
    const char* const empty[] = {"", nullptr};
    const void* const texts[] = {nullptr, "", fLong.c_str()};
    const void* const arrays[] = {nullptr, empty, longs};
    for (int32_t kind = -1; kind <= 47; kind++) {
        for (const int32_t parent : {window.Ident(), -1, 0, -2, fIcon, INT32_MAX}) {
            for (size_t i = 0; i < std::size(kNumbers); i++) {
                const int32_t number = kNumbers[i];
                const void* text = kind == 18 || kind == 19 ? arrays[i % 3] : texts[i % 3];
                const int32_t ident =
                    CreateGadget(kind, parent, number, -number / 2, number, number, text, number);
                EXPECT_EQ(is_gadget_ident(ident), ident != 0);
                EXPECT_TRUE(ident == 0 || parent == window.Ident() || parent == -1);
                EXPECT_TRUE(ident == 0 || (kind >= 1 && kind <= 34)) << kind;
                KillGadget(number, ident);
                EXPECT_FALSE(is_gadget_ident(ident));
            }
        }
    }
    EXPECT_EQ(CountViews(), 0);
}

TEST_F(BadInputTest, WindowsThatAreNoneAreLeftAlone)
{
    const int32_t button = Make(1, 0, 0, 10, 10);
    const int32_t loose = CreateGadget(1, -1, 0, 0, 10, 10, "loose", 0);
    for (const int32_t ident : {0, -1, -2, INT32_MIN, INT32_MAX, button, fIcon}) {
        RemoveAll(ident);
        ToolTipsWindow(ident, 1);
        ToolTipsWindow(ident, 0);
        AttachGadgetToWindow(ident, loose);
    }
    EXPECT_EQ(CountViews(), 1);
    KillGadget(0, loose);
}

TEST_F(BadInputTest, OperationsLeaveOtherKindsAsTheyAre)
{
    for (const int32_t parent : {window.Ident(), -1}) {
        const auto idents = OneOfEach(parent, fIcon);
        EXPECT_GE(idents.size(), 26u);
        for (const Operation& operation : kOperations) {
            if (operation.kinds.empty())
                continue;
            for (const auto& [kind, ident] : idents) {
                if (std::count(operation.kinds.begin(), operation.kinds.end(), kind) != 0)
                    continue;
                const auto before = seen(ident);
                for (const int32_t number : kNumbers)
                    operation.call(ident, number, "other");
                EXPECT_EQ(seen(ident), before) << operation.name << " of kind " << kind;
            }
        }
        for (const auto& [kind, ident] : idents)
            KillGadget(0, ident);
    }
    EXPECT_EQ(CountViews(), 0);
}

TEST_F(BadInputTest, AnyNumberAndTextIsTakenByAnyKind)
{
    for (const int32_t parent : {window.Ident(), -1}) {
        const auto idents = OneOfEach(parent, fIcon);
        for (const Operation& operation : kOperations) {
            for (const auto& [kind, ident] : idents) {
                for (const int32_t number : kNumbers)
                    operation.call(ident, number, nullptr);
                operation.call(ident, 1, fLong.c_str());
                operation.call(ident, 0, "");
            }
            Settle();  // it is drawn
        }
        for (const auto& [kind, ident] : idents) {
            EXPECT_TRUE(is_gadget_ident(ident)) << kind;
            KillGadget(0, ident);
            EXPECT_FALSE(is_gadget_ident(ident)) << kind;
        }
    }
    EXPECT_EQ(CountViews(), 0);
    Settle();
}

TEST_F(BadInputTest, GadgetsInNoWindowKeepWhatIsSetUntilTheyAreInOne)
{
    const auto idents = OneOfEach(-1, fIcon);
    SetChecked(idents.at(2), 1);
    SetValue(idents.at(13), 7);
    SetValue(idents.at(15), 40);
    SetValue(idents.at(17), 25);
    RadSelected(idents.at(18), 0);
    SetEnabled(idents.at(1), 0);
    HideGadget(0, idents.at(12));
    for (const auto& [kind, ident] : idents)
        AttachGadgetToWindow(window, ident);
    Settle();
    EXPECT_TRUE(GetChecked(idents.at(2)));
    EXPECT_EQ(GetValue(idents.at(13)), 7);
    EXPECT_EQ(GetValue(idents.at(15)), 40);
    EXPECT_EQ(GetValue(idents.at(17)), 25) << "a setter of any window, or none";
    EXPECT_EQ(GetEnabled(idents.at(1)), 0);
    EXPECT_EQ(CountViews(), static_cast<int32>(idents.size()));
    for (const auto& [kind, ident] : idents)
        KillGadget(0, ident);
}
