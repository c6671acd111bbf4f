// The grid as assistive technology reads it through Qt's accessibility interfaces: a table of
// the records in view, its titles as column headers (a shared header once, over its columns),
// the totals as a footer, the current cell, the selected rows and the sort order.

#include "grid/QDBGrid.h"

#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"

#include <QAccessible>
#include <QApplication>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class GridAccessible : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        table.FieldDefs().Add(QStringLiteral("name"), ftString, 20);
        table.FieldDefs().Add(QStringLiteral("qty"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("price"), ftFloat);
        table.CreateDataSet();
        table.AppendRecord({QStringLiteral("bolt"), 10, 0.5});
        table.AppendRecord({QStringLiteral("nut"), 20, 0.25});
        table.AppendRecord({QStringLiteral("gear"), 5, 12.0});
        table.First();
        source.SetDataSet(&table);
        grid.resize(500, 300);
        grid.SetOptions(grid.GetOptions() + dgMultiSelect);
        grid.SetOptionsEx({dgTotalValues, dgAutoUpdateTotals, dgCalcWholeDataSet});
        grid.SetDataSource(&source);
        for (const char *field : {"qty", "price"})
            column(field)->GetTitle()->SetHeader(QStringLiteral("Sales"));
        TQColumnTotalValue *sum = column("qty")->GetTotalValues()->Add();
        sum->SetFieldName(QStringLiteral("qty"));
        sum->SetTotalResult(trCalcValue);
        sum->SetCalcValue(cvSum);
        grid.show();
        grid.setFocus();
        QApplication::processEvents();
        grid.UpdateCalcValues(false);
        access = QAccessible::queryAccessibleInterface(&grid);
        ASSERT_NE(access, nullptr);
        tableOf = access->tableInterface();
        ASSERT_NE(tableOf, nullptr);
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    static QString name(QAccessibleInterface *i) { return i ? i->text(QAccessible::Name) : QStringLiteral("(none)"); }
    QAccessibleInterface *childWithRole(QAccessibleInterface *parent, QAccessible::Role role)
    {
        for (int i = 0; i < parent->childCount(); ++i)
            if (parent->child(i)->role() == role)
                return parent->child(i);
        return nullptr;
    }

    TMemTable table;
    TDataSource source;
    TQDBGrid grid;
    QAccessibleInterface *access = nullptr;
    QAccessibleTableInterface *tableOf = nullptr;
};

} // namespace

TEST_F(GridAccessible, ATableOfTheRecordsInViewWithTheirTexts)
{
    EXPECT_EQ(access->role(), QAccessible::Table);
    ASSERT_EQ(tableOf->rowCount(), 3);
    ASSERT_EQ(tableOf->columnCount(), 3);
    EXPECT_EQ(name(tableOf->cellAt(0, 0)), QStringLiteral("bolt"));
    EXPECT_EQ(name(tableOf->cellAt(1, 1)), QStringLiteral("20"));
    EXPECT_EQ(name(tableOf->cellAt(2, 2)), grid.CellText(grid.DataToRawColumn(2), grid.TitleOffset() + 2));
    EXPECT_EQ(tableOf->cellAt(3, 0), nullptr);
    // The same cell each time it is asked for, and found again among the children.
    QAccessibleInterface *cell = tableOf->cellAt(1, 0);
    EXPECT_EQ(cell, tableOf->cellAt(1, 0));
    EXPECT_EQ(access->child(access->indexOfChild(cell)), cell);
    EXPECT_EQ(cell->role(), QAccessible::Cell);
    EXPECT_FALSE(cell->rect().isEmpty());
    EXPECT_TRUE(access->rect().contains(cell->rect().center()));

    // A change of record in the data set shows in the same cells.
    table.First();
    table.Edit();
    table.FieldByName(QStringLiteral("name"))->SetAsString(QStringLiteral("washer"));
    table.Post();
    EXPECT_EQ(name(tableOf->cellAt(0, 0)), QStringLiteral("washer"));
}

TEST_F(GridAccessible, TitlesAreColumnHeadersAndASharedHeaderSpansItsColumns)
{
    auto *qty = tableOf->cellAt(0, 1)->tableCellInterface();
    ASSERT_NE(qty, nullptr);
    QStringList headers;
    int sharedExtent = 0;
    for (QAccessibleInterface *h : qty->columnHeaderCells()) {
        EXPECT_EQ(h->role(), QAccessible::ColumnHeader);
        headers << name(h);
        if (name(h) == QLatin1String("Sales"))
            sharedExtent = h->tableCellInterface()->columnExtent();
    }
    EXPECT_EQ(headers, QStringList({"Sales", "qty"}));
    EXPECT_EQ(sharedExtent, 2);
    EXPECT_EQ(tableOf->cellAt(0, 0)->tableCellInterface()->columnHeaderCells().size(), 1); // its caption alone
    // The shared header is one cell, over both columns.
    EXPECT_EQ(qty->columnHeaderCells().first(), tableOf->cellAt(0, 2)->tableCellInterface()->columnHeaderCells().first());
    EXPECT_EQ(tableOf->columnDescription(2), QStringLiteral("Sales / price"));
}

TEST_F(GridAccessible, TotalsAreAFooterAndSortingIsSaid)
{
    QAccessibleInterface *footer = childWithRole(access, QAccessible::Footer);
    ASSERT_NE(footer, nullptr);
    ASSERT_EQ(footer->childCount(), 3);
    EXPECT_EQ(name(footer->child(1)), QStringLiteral("35"));
    EXPECT_EQ(footer->child(1)->parent(), footer);
    EXPECT_EQ(footer->indexOfChild(footer->child(2)), 2);

    QAccessibleInterface *caption = tableOf->cellAt(0, 1)->tableCellInterface()->columnHeaderCells().last();
    EXPECT_EQ(caption->text(QAccessible::Description), QString());
    column("qty")->GetTitle()->SetMarker(tmDescend);
    caption = tableOf->cellAt(0, 1)->tableCellInterface()->columnHeaderCells().last();
    EXPECT_EQ(caption->text(QAccessible::Description), QStringLiteral("Sorted descending"));
}

TEST_F(GridAccessible, TheCurrentCellHasFocusAndSelectedRowsAreSelected)
{
    grid.SetCol(grid.DataToRawColumn(1));
    table.Next();
    QApplication::processEvents();
    QAccessibleInterface *focus = access->focusChild();
    ASSERT_NE(focus, nullptr);
    EXPECT_EQ(focus->tableCellInterface()->rowIndex(), 1);
    EXPECT_EQ(focus->tableCellInterface()->columnIndex(), 1);
    EXPECT_TRUE(focus->state().focused);
    EXPECT_FALSE(tableOf->cellAt(0, 0)->state().focused);

    EXPECT_EQ(tableOf->selectedRowCount(), 0);
    grid.SelectedRows().SetCurrentRowSelected(true);
    table.Last();
    grid.SelectedRows().SetCurrentRowSelected(true);
    EXPECT_EQ(tableOf->selectedRows(), QList<int>({1, 2}));
    EXPECT_TRUE(tableOf->cellAt(2, 0)->state().selected);
    EXPECT_FALSE(tableOf->cellAt(0, 0)->tableCellInterface()->isSelected());
    EXPECT_EQ(tableOf->selectedCellCount(), 6);
}
