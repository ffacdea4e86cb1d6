// Lists in archives, whose items are found by the names of their classes.

#include <gtest/gtest.h>

#include <Message.h>
#include <OutlineListView.h>
#include <StringItem.h>

#include <memory>

TEST(ListArchives, ComeBackFromTheirArchive)
{
    BOutlineListView list(BRect(0, 0, 9, 9), "list", B_MULTIPLE_SELECTION_LIST);
    BStringItem top("top"), below("below");
    list.AddItem(&top);
    list.AddUnder(&below, &top);
    list.Collapse(&top);
    list.SetSelectionMessage(new BMessage('Sele'));
    BMessage archive;
    ASSERT_EQ(list.Archive(&archive), B_OK);
    std::unique_ptr<BOutlineListView> copy(
        dynamic_cast<BOutlineListView*>(BOutlineListView::Instantiate(&archive)));
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->FullListCountItems(), 2);
    EXPECT_EQ(copy->ListType(), B_MULTIPLE_SELECTION_LIST);
    EXPECT_EQ(copy->SelectionCommand(), uint32('Sele'));
    EXPECT_EQ(copy->CountItems(), 1);
    EXPECT_STREQ(static_cast<BStringItem*>(copy->FullListItemAt(1))->Text(), "below");
    for (BListItem* item : {copy->FullListItemAt(1), copy->FullListItemAt(0)})
        delete item;
    list.MakeEmpty();
}
