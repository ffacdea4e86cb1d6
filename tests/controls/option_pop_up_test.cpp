// Choices in a menu.

#include <Menu.h>
#include <MenuField.h>
#include <MenuItem.h>
#include <OptionPopUp.h>

#include <string>

#include <gtest/gtest.h>

namespace {

std::string chosen(const BOptionPopUp& options)
{
    const char* name = "none";
    int32 value = -1;
    const int32 index = options.SelectedOption(&name, &value);
    return std::to_string(index) + " " + name + " " + std::to_string(value);
}

}  // namespace

TEST(OptionPopUp, FirstOneIsChosenAtFirst)
{
    BOptionPopUp options(BRect(0, 0, 150, 30), "name", "label", nullptr);
    EXPECT_EQ(chosen(options), "-1 none -1");
    EXPECT_EQ(options.AddOption("two", 2), B_OK);
    EXPECT_EQ(options.AddOption("three", 3), B_OK);
    EXPECT_EQ(options.AddOptionAt("one", 1, 0), B_OK);
    EXPECT_EQ(chosen(options), "1 two 2");
    EXPECT_EQ(options.Value(), 2);
    EXPECT_EQ(options.CountOptions(), 3);
    const char* name;
    int32 value;
    EXPECT_TRUE(options.GetOptionAt(0, &name, &value));
    EXPECT_EQ(std::string(name) + std::to_string(value), "one1");
    EXPECT_TRUE(options.GetOptionAt(0, nullptr, nullptr));
}

TEST(OptionPopUp, ValueAndNameChoose)
{
    BOptionPopUp options("name", "label", nullptr);
    for (const char* name : {"a", "b", "c"})
        options.AddOption(name, name[0]);
    EXPECT_EQ(options.SelectOptionFor("c"), B_OK);
    EXPECT_EQ(chosen(options), "2 c 99");
    EXPECT_EQ(options.SelectOptionFor('b'), B_OK);
    EXPECT_EQ(chosen(options), "1 b 98");
    EXPECT_STREQ(options.MenuField()->MenuItem()->Label(), "b");
    EXPECT_EQ(options.SelectOptionFor("d"), B_ERROR);
    EXPECT_EQ(options.SelectOptionFor(int32{7}), B_ERROR);
    EXPECT_EQ(chosen(options), "1 b 98");
    options.SetValue(7);  // no option's
    EXPECT_EQ(options.Value(), 7);
    EXPECT_EQ(chosen(options), "1 b 98");
}

TEST(OptionPopUp, WhatIsNoOptionChangesNothing)
{
    BOptionPopUp options(BRect(0, 0, 150, 30), nullptr, nullptr, nullptr, true);
    EXPECT_EQ(options.AddOptionAt("x", 1, 1), B_BAD_VALUE);
    EXPECT_EQ(options.AddOptionAt("x", 1, -1), B_BAD_VALUE);
    EXPECT_EQ(options.AddOptionAt(nullptr, 1, 0), B_BAD_VALUE);
    options.RemoveOptionAt(0);
    options.RemoveOptionAt(-1);
    EXPECT_EQ(options.CountOptions(), 0);
    EXPECT_FALSE(options.GetOptionAt(0, nullptr, nullptr));
    options.AddOption("x", 1);
    options.RemoveOptionAt(0);
    EXPECT_EQ(chosen(options), "-1 none -1");
}

TEST(OptionPopUp, LabelAndStateAreTheFields)
{
    BOptionPopUp options(BRect(0, 0, 150, 30), "name", "short", nullptr);
    const float divider = options.MenuField()->Divider();
    options.SetLabel("a label that is longer");
    EXPECT_STREQ(options.MenuField()->Label(), "a label that is longer");
    EXPECT_GT(options.MenuField()->Divider(), divider);
    options.SetEnabled(false);
    EXPECT_FALSE(options.MenuField()->IsEnabled());
    options.SetLabel(nullptr);
    EXPECT_EQ(options.MenuField()->Divider(), 0);
    options.ResizeToPreferred();
    float width, height;
    options.GetPreferredSize(&width, &height);
    EXPECT_EQ(options.Bounds().Width(), width);
    EXPECT_EQ(options.Bounds().Height(), height);
}
