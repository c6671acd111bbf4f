#include "DbTestSupport.h"

#include "platform/rtl/Exceptions.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class RecordWindow : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(20);
        source.SetDataSet(table.get());
        link = std::make_unique<WindowLink>(&source, 5);
    }
    std::unique_ptr<TMemTable> table;
    TDataSource source;
    std::unique_ptr<WindowLink> link;
};

} // namespace

TEST_F(RecordWindow, FillsAndScrollsTheWindow)
{
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"1", "2", "3", "4", "5"}));
    EXPECT_EQ(link->ActiveRecord(), 0);
    EXPECT_EQ(table->MoveBy(3), 3);
    EXPECT_EQ(link->ActiveRecord(), 3);
    EXPECT_EQ(link->lastScroll, 0); // moved inside the window
    EXPECT_EQ(table->MoveBy(4), 4);
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"4", "5", "6", "7", "8"}));
    EXPECT_EQ(link->ActiveRecord(), 4);
    EXPECT_EQ(link->lastScroll, 3);
    EXPECT_EQ(table->RecNo(), 8);

    table->Last();
    EXPECT_TRUE(table->Eof());
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"16", "17", "18", "19", "20"}));
    EXPECT_EQ(table->MoveBy(1), 0);
    EXPECT_EQ(table->MoveBy(-30), -19);
    EXPECT_TRUE(table->Bof());
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 1);
}

TEST_F(RecordWindow, InsertAndCancelNearTheTop)
{
    table->Insert();
    EXPECT_EQ(table->State(), dsInsert);
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"", "1", "2", "3", "4"}));
    EXPECT_EQ(link->ActiveRecord(), 0);
    table->FieldByName(QStringLiteral("Qty"))->SetAsInteger(100);
    table->Cancel();
    EXPECT_EQ(table->State(), dsBrowse);
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"1", "2", "3", "4", "5"}));
    EXPECT_EQ(table->RecordCount(), 20);
}

TEST_F(RecordWindow, InsertPostsBeforeTheCurrentRecord)
{
    table->MoveBy(2); // record 3
    table->Insert();
    table->FieldByName(QStringLiteral("Qty"))->SetAsInteger(100);
    table->Post();
    EXPECT_EQ(table->RecordCount(), 21);
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 100);
    EXPECT_EQ(table->FieldByName(QStringLiteral("ID"))->AsInteger(), 21); // auto-increment
    EXPECT_EQ(table->RecNo(), 3);
    table->Prior();
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 2);
    table->MoveBy(2);
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 3);
}

TEST_F(RecordWindow, AppendAndDeleteAtTheEnd)
{
    table->Append();
    EXPECT_TRUE(table->FieldByName(QStringLiteral("Qty"))->IsNull());
    table->FieldByName(QStringLiteral("Qty"))->SetAsInteger(21);
    table->Post();
    EXPECT_EQ(table->RecNo(), 21);
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"17", "18", "19", "20", "21"}));

    table->Delete();
    EXPECT_EQ(table->RecordCount(), 20);
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 20); // the one before takes its place
    EXPECT_EQ(link->Window(QStringLiteral("Qty")).last(), QStringLiteral("20"));
    table->First();
    table->Delete();
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 2);
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"2", "3", "4", "5", "6"}));
}

TEST_F(RecordWindow, GrowingTheWindowFetchesAroundTheActiveRecord)
{
    table->Last();
    link->SetBufferCount(8);
    EXPECT_EQ(link->RecordCount(), 8);
    EXPECT_EQ(link->Window(QStringLiteral("Qty")).last(), QStringLiteral("20"));
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 20);
    link->SetBufferCount(3);
    EXPECT_EQ(link->Window(QStringLiteral("Qty")), QStringList({"18", "19", "20"}));
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 20);
}

TEST_F(RecordWindow, DisabledControlsHearOneChangeAtTheEnd)
{
    link->changes = link->scrolls = 0;
    table->DisableControls();
    table->First();
    while (!table->Eof())
        table->Next();
    EXPECT_EQ(link->changes + link->scrolls, 0);
    table->EnableControls();
    EXPECT_EQ(link->changes, 1);
    EXPECT_EQ(link->scrolls, 0);
}

TEST_F(RecordWindow, LinksFollowTheState)
{
    EXPECT_TRUE(link->Active());
    table->Edit();
    EXPECT_TRUE(link->Editing());
    table->Cancel();
    EXPECT_FALSE(link->Editing());
    table->Close();
    EXPECT_FALSE(link->Active());
    EXPECT_EQ(link->activeChanges, 2);
    table->Open();
    EXPECT_TRUE(link->Active());
    EXPECT_EQ(table->RecordCount(), 20); // the records stay with the table
}

TEST_F(RecordWindow, EmptyTable)
{
    auto empty = MakeOrders(0);
    EXPECT_TRUE(empty->IsEmpty());
    EXPECT_TRUE(empty->Bof());
    EXPECT_TRUE(empty->Eof());
    EXPECT_EQ(empty->RecNo(), -1);
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_TRUE(empty->GetBookmark().isEmpty());
    EXPECT_THROW(empty->Delete(), EDatabaseError);
    empty->Edit(); // editing an empty table inserts
    EXPECT_EQ(empty->State(), dsInsert);
}

TEST_F(RecordWindow, LinkRecordsStayInsideTheWindow)
{
    table->MoveBy(10);
    EXPECT_EQ(link->RecordCount(), 5);
    link->SetActiveRecord(2);
    const int qty = table->FieldByName(QStringLiteral("Qty"))->AsInteger();
    link->SetActiveRecord(99); // beyond the window: the last record of the window
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), qty + 2);
    link->SetActiveRecord(-5);
    EXPECT_EQ(link->ActiveRecord(), 0);
    // A second link with a larger window widens the data set's window for both.
    WindowLink wide(&source, 8);
    EXPECT_EQ(table->BufferCount(), 8);
    EXPECT_EQ(link->RecordCount(), 5);
    EXPECT_EQ(wide.RecordCount(), 8);
}

TEST_F(RecordWindow, RefreshAndLookupOfSeveralFields)
{
    table->SetRecNo(12);
    table->Refresh();
    EXPECT_EQ(table->RecNo(), 12);
    const Variant both = table->Lookup(QStringLiteral("Qty"), 7, QStringLiteral("Name;Paid"));
    EXPECT_EQ(both, VarArrayOf({QStringLiteral("r7"), false}));
    EXPECT_EQ(table->RecNo(), 12); // a lookup does not move the window
    EXPECT_EQ(table->FieldValues(QStringLiteral("Qty;Name")), VarArrayOf({12, QStringLiteral("r12")}));
    table->Edit();
    table->SetFieldValues(QStringLiteral("Qty;Name"), VarArrayOf({99, QStringLiteral("x")}));
    table->ClearFields();
    EXPECT_TRUE(table->FieldByName(QStringLiteral("Name"))->IsNull());
    table->Cancel();
    EXPECT_EQ(table->FieldByName(QStringLiteral("Name"))->AsString(), QStringLiteral("r12"));
}
