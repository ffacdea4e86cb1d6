// Replicants: handles that copies of views are dragged by, and shelves that take them.

#include <AppDefs.h>
#include <DataIO.h>
#include <Dragger.h>
#include <Shelf.h>
#include <StringView.h>

#include <memory>

#include "window_harness.h"

using namespace window_test;

namespace {

// A text with a handle in its right bottom corner: the corner is at (49, 19).
BStringView* text_with_handle(BPoint place, const char* text)
{
    auto* view = new BStringView(BRect(0, 0, 49, 19).OffsetByCopy(place), "text", text);
    view->AddChild(new BDragger(BRect(42, 12, 49, 19), view));
    return view;
}

std::unique_ptr<BMessage> archive_of(const char* text)
{
    const std::unique_ptr<BView> view(text_with_handle(B_ORIGIN, text));
    auto archive = std::make_unique<BMessage>();
    view->Archive(archive.get());
    return archive;
}

class ShelfTest : public WindowTest {
protected:
    // The shelf is in a view from (50, 0) of the window, whose place on the screen is (100, 100).
    void SetUp() override
    {
        Make(300, 200);
        room = Add(BRect(50, 0, 299, 199), "room");
        window->AddChild(text_with_handle(BPoint(0, 20), "source"));
        window->Lock();
        shelf = std::make_unique<BShelf>(room);
        window->Unlock();
        Start();
    }
    void TearDown() override
    {
        if (window != nullptr && window->Lock()) {
            shelf.reset();
            window->Unlock();
        }
        WindowTest::TearDown();
    }
    // From a handle to a place, both on the screen.
    void Drag(BPoint from, BPoint to)
    {
        inject_pointer(from.x, from.y);
        inject_button(1, true);
        Settle();
        inject_pointer(from.x + 5, from.y);
        Settle();
        inject_pointer(to.x, to.y);
        Settle();
        inject_button(1, false);
        Settle();
    }
    status_t Add(const char* text, BPoint place)
    {
        window->Lock();
        const status_t status = shelf->AddReplicant(archive_of(text).release(), place);
        window->Unlock();
        return status;
    }
    // Text and place of a replicant.
    std::string At(int32 index)
    {
        window->Lock();
        BView* view = nullptr;
        shelf->ReplicantAt(index, &view);
        auto* text = dynamic_cast<BStringView*>(view);
        std::string result = "none";
        if (text != nullptr)
            result = std::string(text->Text()) + " " + std::to_string(int(text->Frame().left)) +
                     "," + std::to_string(int(text->Frame().top));
        window->Unlock();
        return result;
    }
    using WindowTest::Add;

    TestView* room = nullptr;
    std::unique_ptr<BShelf> shelf;
};

}  // namespace

TEST_F(ShelfTest, DropMakesACopy)
{
    Drag(BPoint(146, 136), BPoint(246, 186));
    ASSERT_EQ(shelf->CountReplicants(), 1);
    EXPECT_EQ(At(0), "source 50,70");
    EXPECT_TRUE(shelf->IsDirty());
    window->Lock();
    EXPECT_NE(window->FindView("text"), nullptr);
    BView* copy = nullptr;
    shelf->ReplicantAt(0, &copy);
    auto* handle = dynamic_cast<BDragger*>(copy->ChildAt(0));
    ASSERT_NE(handle, nullptr);
    EXPECT_TRUE(handle->InShelf());
    EXPECT_EQ(handle->Target(), copy);
    window->Unlock();
}

TEST_F(ShelfTest, DropFromTheShelfItselfMoves)
{
    ASSERT_EQ(Add("own", BPoint(20, 30)), B_OK);
    Settle();
    // The handle's middle is 45, 15 from the corner.
    Drag(BPoint(215, 145), BPoint(255, 205));
    EXPECT_EQ(shelf->CountReplicants(), 1);
    EXPECT_EQ(At(0), "own 60,90");
    window->Lock();
    shelf->SetAllowsDragging(false);
    window->Unlock();
    Drag(BPoint(255, 205), BPoint(215, 145));
    EXPECT_EQ(shelf->CountReplicants(), 1);
    EXPECT_EQ(At(0), "own 60,90");
}

TEST_F(ShelfTest, HiddenHandlesDragNothing)
{
    BDragger::HideAllDraggers();
    EXPECT_FALSE(BDragger::AreDraggersDrawn());
    Drag(BPoint(146, 136), BPoint(246, 186));
    EXPECT_EQ(shelf->CountReplicants(), 0);
    BDragger::ShowAllDraggers();
    EXPECT_TRUE(BDragger::AreDraggersDrawn());
    Drag(BPoint(146, 136), BPoint(246, 186));
    EXPECT_EQ(shelf->CountReplicants(), 1);
}

TEST_F(ShelfTest, ReplicantsAreFoundAndDeleted)
{
    for (const char* text : {"a", "b", "c"})
        Add(text, B_ORIGIN);
    window->Lock();
    BView* view = nullptr;
    uint32 id = 0;
    status_t error = B_ERROR;
    BMessage* archive = shelf->ReplicantAt(1, &view, &id, &error);
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(error, B_OK);
    EXPECT_EQ(shelf->IndexOf(view), 1);
    EXPECT_EQ(shelf->IndexOf(archive), 1);
    EXPECT_EQ(shelf->IndexOf(id), 1);
    EXPECT_EQ(shelf->DeleteReplicant(view), B_OK);
    EXPECT_EQ(shelf->IndexOf(id), -1);
    EXPECT_EQ(shelf->DeleteReplicant(shelf->ReplicantAt(1)), B_OK);
    EXPECT_EQ(shelf->CountReplicants(), 1);
    for (int32 none : {-1, 1, INT32_MAX}) {
        EXPECT_EQ(shelf->DeleteReplicant(none), B_BAD_VALUE);
        EXPECT_EQ(shelf->ReplicantAt(none, &view, &id, &error), nullptr);
        EXPECT_EQ(error, B_BAD_INDEX);
    }
    EXPECT_EQ(shelf->DeleteReplicant(static_cast<BView*>(nullptr)), B_BAD_VALUE);
    EXPECT_EQ(shelf->DeleteReplicant(int32{0}), B_OK);
    EXPECT_EQ(room->CountChildren(), 0);
    window->Unlock();
}

TEST_F(ShelfTest, WhatIsSavedComesBack)
{
    Add("one", BPoint(10, 20));
    Add("two", BPoint(30, 40));
    BMallocIO stream;
    window->Lock();
    EXPECT_EQ(shelf->Save(), B_ERROR);
    EXPECT_EQ(shelf->SetSaveLocation(&stream), B_OK);
    EXPECT_EQ(shelf->SaveLocation(nullptr), &stream);
    EXPECT_EQ(shelf->Save(), B_OK);
    EXPECT_FALSE(shelf->IsDirty());
    while (shelf->CountReplicants() > 0)
        shelf->DeleteReplicant(int32{0});
    stream.Seek(0, SEEK_SET);
    shelf = std::make_unique<BShelf>(&stream, room);
    window->Unlock();
    ASSERT_EQ(shelf->CountReplicants(), 2);
    EXPECT_EQ(At(0), "one 10,20");
    EXPECT_EQ(At(1), "two 30,40");
}

TEST_F(ShelfTest, OnlyItsTypeWhereThatIsAsked)
{
    window->Lock();
    shelf = std::make_unique<BShelf>(room, true, "mine");
    shelf->SetTypeEnforced(true);
    const auto add = [this](const char* type) {
        auto archive = archive_of("text");
        if (type != nullptr)
            archive->AddString("shelf_type", type);
        return shelf->AddReplicant(archive.release(), B_ORIGIN);
    };
    EXPECT_EQ(add(nullptr), B_ERROR);
    EXPECT_EQ(add("other"), B_ERROR);
    EXPECT_EQ(add("mine"), B_OK);
    shelf->SetTypeEnforced(false);
    EXPECT_EQ(add("other"), B_OK);
    EXPECT_EQ(shelf->AddReplicant(nullptr, B_ORIGIN), B_BAD_VALUE);
    window->Unlock();
}

TEST_F(ShelfTest, ArchiveOfNothingKnownIsAZombieOrNothing)
{
    const auto add = [this] {
        auto* archive = new BMessage;
        archive->AddString("class", "NoSuchClass");
        archive->AddRect("_frame", BRect(0, 0, 9, 9));
        return shelf->AddReplicant(archive, BPoint(5, 5));
    };
    window->Lock();
    EXPECT_EQ(add(), B_ERROR);
    shelf->SetAllowsZombies(true);
    EXPECT_EQ(add(), B_OK);
    BView* view = nullptr;
    status_t error = B_OK;
    EXPECT_NE(shelf->ReplicantAt(0, &view, nullptr, &error), nullptr);
    EXPECT_EQ(view, nullptr);
    EXPECT_NE(error, B_OK);
    shelf->SetDisplaysZombies(true);
    EXPECT_EQ(add(), B_OK);
    shelf->ReplicantAt(1, &view);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->Frame(), BRect(5, 5, 14, 14));
    window->Unlock();
}
