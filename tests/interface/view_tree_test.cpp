// Children, parents, and the way to and from a window, with the hooks that tell of it.

#include "Drawing.h"

#include <Message.h>
#include <Window.h>

#include <functional>
#include <limits>
#include <memory>

namespace {

class Told : public BView {
public:
    Told(const char* name, std::string* log)
        : BView(BRect(0, 0, 5, 5), name, B_FOLLOW_NONE, 0), fLog(log)
    {
    }
    ~Told() override { *fLog += std::string("~") + Name() + " "; }

    void AttachedToWindow() override
    {
        Note("+");
        if (onAttach)
            onAttach();
    }
    void AllAttached() override { Note("*"); }
    void DetachedFromWindow() override
    {
        Note("-");
        if (onDetach)
            onDetach();
    }
    void AllDetached() override { Note("/"); }

    std::function<void()> onAttach, onDetach;

private:
    void Note(const char* sign)
    {
        *fLog += std::string(sign) + Name() + (Window() != nullptr ? " " : "! ");
    }

    std::string* fLog;
};

struct Family {
    std::string log;
    Told* a = new Told("a", &log);
    Told* b = new Told("b", &log);
    Told* c = new Told("c", &log);
    Told* d = new Told("d", &log);

    Family()  // a (b (c) d)
    {
        a->AddChild(b);
        b->AddChild(c);
        a->AddChild(d);
    }
};

}  // namespace

TEST(ViewTree, ChildrenKeepTheOrderTheyWereAddedIn)
{
    auto parent = std::make_unique<BView>(BRect(), "parent", 0, 0);
    BView* one = new_view(BRect(), 0, 0, "one");
    BView* two = new_view(BRect(), 0, 0, "two");
    BView* three = new_view(BRect(), 0, 0, "three");
    parent->AddChild(two);
    parent->AddChild(one, two);
    parent->AddChild(three, parent.get());  // no child of it: to the end
    EXPECT_EQ(parent->ChildAt(0), one);
    EXPECT_EQ(parent->ChildAt(2), three);
    EXPECT_EQ(parent->ChildAt(3), nullptr);
    EXPECT_EQ(parent->ChildAt(-1), nullptr);
    EXPECT_EQ(two->NextSibling(), three);
    EXPECT_EQ(two->PreviousSibling(), one);
    EXPECT_EQ(parent->FindView("two"), two);
    EXPECT_EQ(parent->FindView("four"), nullptr);
    EXPECT_TRUE(parent->RemoveChild(two));
    EXPECT_FALSE(parent->RemoveChild(two));
    EXPECT_EQ(one->NextSibling(), three);
    EXPECT_EQ(two->Parent(), nullptr);
    delete two;
}

TEST(ViewTree, AViewHangsInOnePlaceOnlyAndNeverInItself)
{
    auto parent = std::make_unique<BView>(BRect(), "parent", 0, 0);
    auto other = std::make_unique<BView>(BRect(), "other", 0, 0);
    BView* child = new_view(BRect());
    BView* grandchild = new_view(BRect());
    parent->AddChild(child);
    child->AddChild(grandchild);
    other->AddChild(child);
    EXPECT_EQ(child->Parent(), parent.get());
    EXPECT_EQ(other->CountChildren(), 0);
    grandchild->AddChild(parent.get());
    child->AddChild(child);
    parent->AddChild(static_cast<BView*>(nullptr));
    EXPECT_EQ(grandchild->CountChildren(), 0);
    EXPECT_EQ(child->CountChildren(), 1);
}

TEST(ViewTree, DeletingLeavesTheParentAndTakesTheChildren)
{
    Family family;
    delete family.b;
    EXPECT_EQ(family.log, "~b ~c ");
    EXPECT_EQ(family.a->ChildAt(0), family.d);
    EXPECT_TRUE(family.d->RemoveSelf());  // stays alive when the parent goes
    EXPECT_FALSE(family.d->RemoveSelf());
    delete family.a;
    EXPECT_EQ(family.log, "~b ~c ~a ");
    delete family.d;
}

TEST(ViewTree, HooksRunFromTheTopDownThenFromTheLeavesUp)
{
    Family family;
    {
        Board board;
        board.bitmap.AddChild(family.a);
        EXPECT_EQ(family.log, "+a +b +c +d *c *b *d *a ");
        EXPECT_EQ(family.c->NextHandler(), family.b);
        EXPECT_EQ(family.a->NextHandler(), family.a->Window());
        EXPECT_EQ(family.c->Looper(), family.a->Window());
        EXPECT_EQ(family.a->Parent(), nullptr);
        family.log.clear();
        EXPECT_TRUE(family.c->RemoveSelf());
        EXPECT_EQ(family.log, "-c /c ");
        EXPECT_EQ(family.c->Window(), nullptr);
        EXPECT_EQ(family.c->Looper(), nullptr);
        family.b->AddChild(family.c);
        family.log.clear();
        EXPECT_TRUE(board.bitmap.RemoveChild(family.a));
        EXPECT_EQ(family.log, "-a -b -c -d /c /b /d /a ");
    }
    delete family.a;
}

TEST(ViewTree, AWindowThatGoesDetachesItsViewsFirst)
{
    Family family;
    {
        Board board;
        board.bitmap.AddChild(family.a);
        family.log.clear();
    }
    EXPECT_EQ(family.log.substr(0, 16), "-a -b -c -d /c /");
    EXPECT_EQ(family.log.find("~a"), family.log.find('~'));
}

TEST(ViewTree, HooksMayChangeTheTree)
{
    Family family;
    Board board;
    Told* late = new Told("late", &family.log);
    family.b->onAttach = [&] {
        family.a->AddChild(late);  // comes attached
        family.d->RemoveSelf();    // never attached
        delete family.c;           // nor this one
    };
    board.bitmap.AddChild(family.a);
    EXPECT_EQ(family.log, "+a +b +late *late ~c *b *a ");
    EXPECT_EQ(family.d->Window(), nullptr);
    delete family.d;

    family.log.clear();
    family.a->onDetach = [&] { delete family.b; };
    EXPECT_TRUE(family.a->RemoveSelf());
    EXPECT_EQ(family.log, "-a ~b -late /late /a ");
    delete family.a;
}

TEST(ViewTree, ArchiveBringsBackTheBranch)
{
    BView original(BRect(3, 4, 33, 44), "original", B_FOLLOW_ALL, B_WILL_DRAW | B_NAVIGABLE);
    original.SetHighColor(1, 2, 3, 4);
    original.SetLowColor(5, 6, 7);
    original.SetViewColor(B_TRANSPARENT_COLOR);
    original.SetPenSize(3.5f);
    original.MovePenTo(8, 9);
    original.SetOrigin(10, 11);
    original.SetDrawingMode(B_OP_BLEND);
    original.SetLineMode(B_ROUND_CAP, B_BEVEL_JOIN, 4);
    original.SetFontSize(17);
    original.ScrollTo(2, 1);
    original.Hide();
    original.AddChild(new_view(BRect(1, 2, 3, 4), B_FOLLOW_BOTTOM, 0, "child"));

    BMessage archive;
    ASSERT_EQ(original.Archive(&archive), B_OK);
    std::unique_ptr<BArchivable> object(instantiate_object(&archive));
    BView* copy = dynamic_cast<BView*>(object.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->Name(), "original");
    EXPECT_EQ(copy->Frame(), original.Frame());
    EXPECT_EQ(copy->Bounds(), original.Bounds());
    EXPECT_EQ(copy->ResizingMode(), original.ResizingMode());
    EXPECT_EQ(copy->Flags(), original.Flags());
    EXPECT_TRUE(copy->HighColor() == original.HighColor());
    EXPECT_TRUE(copy->LowColor() == original.LowColor());
    EXPECT_TRUE(copy->ViewColor() == original.ViewColor());
    EXPECT_EQ(copy->PenSize(), 3.5f);
    EXPECT_EQ(copy->PenLocation(), BPoint(8, 9));
    EXPECT_EQ(copy->Origin(), BPoint(10, 11));
    EXPECT_EQ(copy->DrawingMode(), B_OP_BLEND);
    EXPECT_EQ(copy->LineCapMode(), B_ROUND_CAP);
    EXPECT_EQ(copy->LineJoinMode(), B_BEVEL_JOIN);
    EXPECT_EQ(copy->LineMiterLimit(), 4);
    BFont font;
    copy->GetFont(&font);
    EXPECT_EQ(font.Size(), 17);
    EXPECT_TRUE(copy->IsHidden());
    ASSERT_NE(copy->FindView("child"), nullptr);
    EXPECT_EQ(copy->FindView("child")->Frame(), BRect(1, 2, 3, 4));

    BMessage shallow;
    ASSERT_EQ(original.Archive(&shallow, false), B_OK);
    std::unique_ptr<BArchivable> alone(BView::Instantiate(&shallow));
    ASSERT_NE(alone, nullptr);
    EXPECT_EQ(static_cast<BView*>(alone.get())->CountChildren(), 0);
}
