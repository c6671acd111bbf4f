#include "grid/QDBGrid.h"

#include "DbTestSupport.h"

#include "platform/db/MemTable.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

// Orders with a field of each kind a cell editor treats apart, and a lookup of the customer.
class GridEditing : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        test::FillCustomers(customers, {"Acme"});

        const struct { const char *name; TFieldType type; } fields[] = {
            {"CustNo", ftInteger}, {"Name", ftString}, {"Notes", ftMemo}, {"Day", ftDate},
            {"At", ftDateTime}, {"Stamp", ftTimeStamp}, {"Clock", ftTime}};
        for (const auto &f : fields)
            test::AddField(orders, QString::fromLatin1(f.name), f.type, f.type == ftString ? 20 : 0);
        test::AddLookupField(orders, QStringLiteral("Company"), &customers, QStringLiteral("CustNo"),
                             QStringLiteral("ID"), QStringLiteral("Company"));
        orders.CreateDataSet();
        orders.AppendRecord({1, QStringLiteral("first"), QStringLiteral("a note")});
        orders.First();
        source.SetDataSet(&orders);
        grid.resize(700, 200);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    TQColumn *column(const char *name) { return grid.GetColumns()->FindColumn(QString::fromLatin1(name)); }
    TEditorStyle style(const char *name) { return grid.GetEditorStyle(column(name)); }
    void select(const char *name) { grid.SetCol(grid.DataToRawColumn(column(name)->Index())); }

    TMemTable customers;
    TMemTable orders;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(GridEditing, TheEditorFollowsTheFieldAndTheColumnsLists)
{
    EXPECT_EQ(style("Clock"), edsSimple); // a time of day is typed
    EXPECT_EQ(style("Day"), edsDropDownList);
    EXPECT_EQ(style("At"), edsDropDownList);
    EXPECT_EQ(style("Stamp"), edsDropDownList);
    EXPECT_EQ(style("Name"), edsSimple);
    column("Name")->GetPickList()->Add(QStringLiteral("first"));
    EXPECT_EQ(style("Name"), edsDropDownList);
    column("Name")->SetReadOnly(true);
    EXPECT_EQ(style("Name"), edsSimple);
    column("Day")->SetReadOnly(true);
    EXPECT_EQ(style("Day"), edsSimple);

    // A button style of its own decides by itself.
    column("Clock")->SetButtonStyle(cbsEllipsis);
    EXPECT_EQ(style("Clock"), edsEllipsis);
    column("Name")->SetButtonStyle(cbsCalculator);
    EXPECT_EQ(style("Name"), edsDropDownList);
    column("At")->SetButtonStyle(cbsNone);
    EXPECT_EQ(style("At"), edsSimple);
    column("CustNo")->SetButtonStyle(cbsDropDownMenu);
    EXPECT_EQ(style("CustNo"), edsDropDownMenu);
    // Without a column, the selected one.
    select("CustNo");
    EXPECT_EQ(grid.GetEditorStyle(), edsDropDownMenu);
}

TEST_F(GridEditing, ALookupListOnlyWhereItsKeyCanBeWritten)
{
    EXPECT_EQ(style("Company"), edsDropDownList);
    grid.SetReadOnly(true);
    EXPECT_EQ(style("Company"), edsSimple);
    grid.SetReadOnly(false);
    column("Company")->SetReadOnly(true);
    EXPECT_EQ(style("Company"), edsSimple);
    column("Company")->SetReadOnly(false);
    orders.FieldByName(QStringLiteral("CustNo"))->SetReadOnly(true);
    EXPECT_EQ(style("Company"), edsSimple);
    orders.FieldByName(QStringLiteral("CustNo"))->SetReadOnly(false);
    orders.FieldByName(QStringLiteral("Company"))->SetKeyFields(QStringLiteral("Missing"));
    EXPECT_EQ(style("Company"), edsSimple); // no key, no list, no error
}

TEST_F(GridEditing, WhatMayBeTypedInto)
{
    select("Notes");
    EXPECT_TRUE(grid.CanEditModify()); // a memo column edits in its cell by default
    EXPECT_EQ(orders.State(), dsEdit);
    orders.Cancel();
    column("Notes")->SetEditMemo(false);
    EXPECT_FALSE(grid.CanEditModify());
    EXPECT_EQ(orders.State(), dsBrowse);
    QTest::keyClick(&grid, Qt::Key_F2);
    EXPECT_FALSE(grid.EditorMode());

    select("Name");
    grid.SetReadOnly(true);
    EXPECT_FALSE(grid.CanEditModify());
    QTest::keyClick(&grid, Qt::Key_F2);
    EXPECT_FALSE(grid.EditorMode());
    EXPECT_EQ(orders.State(), dsBrowse);
    grid.SetReadOnly(false);
    QTest::keyClick(&grid, Qt::Key_F2);
    ASSERT_TRUE(grid.EditorMode());
    EXPECT_EQ(static_cast<QLineEdit *>(grid.InplaceEditor())->text(), "first");
}
