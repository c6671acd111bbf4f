// Selecting rows, columns and cells: the bookmark list, the whole-set operations, saving by
// key values, walking the selection, and the clicks and keys that select.

#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "GridPixels.h"
#include "TestSupport.h"

#include "platform/rtl/Exceptions.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class MultiSelect : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(30);
        source.SetDataSet(table.get());
        grid.resize(600, 300);
        grid.SetDataSource(&source);
        grid.SetOptions(grid.GetOptions() + dgMultiSelect);
        grid.SetKeyFields(QStringLiteral("ID"));
        grid.show();
        QApplication::processEvents();
    }
    void selectRecords(std::initializer_list<int> recNos)
    {
        for (int recNo : recNos) {
            table->SetRecNo(recNo);
            grid.SelectRow();
        }
    }
    // The IDs of the selected records, in the list's order.
    QList<int> selectedIds()
    {
        QList<int> ids;
        for (const TBookmark &b : grid.SelectedRows()) {
            Q_UNUSED(b);
            ids << table->FieldByName(QStringLiteral("ID"))->AsInteger();
        }
        return ids;
    }
    QPoint cellCenter(int col, int row) const { return grid.CellRect(col, row).center(); }
    void click(int col, int row, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, mods, cellCenter(col, row));
    }

    std::unique_ptr<TMemTable> table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(MultiSelect, TheListStaysSortedAndFindGivesTheInsertionPoint)
{
    selectRecords({7, 2, 12, 5});
    EXPECT_EQ(selectedIds(), (QList<int>{2, 5, 7, 12}));
    TQBookmarkList &rows = grid.SelectedRows();
    table->SetRecNo(6);
    int index = -1;
    EXPECT_FALSE(rows.Find(table->GetBookmark(), index));
    EXPECT_EQ(index, 2); // between 5 and 7
    table->SetRecNo(12);
    EXPECT_TRUE(rows.Find(table->GetBookmark(), index));
    EXPECT_EQ(index, 3);
    EXPECT_TRUE(rows.CurrentRowSelected());
    grid.UnselectRow();
    EXPECT_EQ(rows.Count(), 3);
    EXPECT_FALSE(rows.CurrentRowSelected()); // the remembered search does not linger
}

TEST_F(MultiSelect, SelectAllAndInvertAllFollowTheMode)
{
    std::vector<TSelectAction> actions;
    grid.OnRowSelect = [&](TQCustomDBGrid *, TSelectAction action) { actions.push_back(action); };
    selectRecords({3, 4});
    EXPECT_EQ(actions.size(), 2u);
    grid.InvertAll();
    EXPECT_EQ(grid.SelectedRows().Count(), 28);
    EXPECT_FALSE(grid.SelectedRows().CurrentRowSelected()); // record 4 was selected
    EXPECT_EQ(actions.back(), saSelect);

    grid.SetMultiSelect(msCells);
    grid.SelectAll();
    EXPECT_EQ(grid.SelectedRows().Count(), 30);
    EXPECT_EQ(grid.SelectedCols().Count(), grid.ShowingColumns().size());
    grid.InvertAll(); // both kinds at once would make no sense: nothing changes
    EXPECT_EQ(grid.SelectedRows().Count(), 30);
    EXPECT_EQ(grid.SelectedCols().Count(), grid.ShowingColumns().size());

    // Walking an index's order is not the bookmarks' order; the list is still searchable.
    grid.SetMultiSelect(msRows);
    table->SetIndexFieldNames(QStringLiteral("Qty:D"));
    grid.SelectAll();
    for (table->First(); !table->Eof(); table->Next())
        ASSERT_TRUE(grid.SelectedRows().CurrentRowSelected()) << table->RecNo();
}

TEST_F(MultiSelect, RefreshDropsRecordsDeletedElsewhereOnce)
{
    selectRecords({2, 3, 4});
    grid.DisableGrid(); // the grid does not look while the records go
    table->SetRecNo(3);
    table->Delete();
    EXPECT_TRUE(grid.SelectedRows().Refresh());
    EXPECT_FALSE(grid.SelectedRows().Refresh());
    EXPECT_EQ(grid.SelectedRows().Count(), 2);
    grid.EnableGrid();

    // A grid that looks drops them by itself.
    table->SetRecNo(2);
    table->Delete();
    EXPECT_EQ(grid.SelectedRows().Count(), 1);
}

TEST_F(MultiSelect, SavedKeysSelectTheSameRecordsAfterAReorder)
{
    selectRecords({2, 9, 17});
    grid.SelectedRows().Save();
    table->SetIndexFieldNames(QStringLiteral("Qty:D"));
    grid.SelectedRows().Restore();
    QList<int> ids = selectedIds();
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, (QList<int>{2, 9, 17}));

    // Named selections live beside it.
    grid.SaveSelection(QStringLiteral("three"));
    grid.ClearSelection();
    grid.RestoreSelection(QStringLiteral("three"));
    EXPECT_EQ(grid.SelectedRows().Count(), 3);

    grid.SetKeyFields(QString());
    try {
        grid.SelectedRows().Save();
        FAIL() << "saved without key fields";
    } catch (const EDatabaseError &e) {
        EXPECT_EQ(e.Message(), QStringLiteral("KeyFields property cannot be blank"));
    }
    table->Close();
    EXPECT_THROW(grid.SelectedRows().Save(QStringLiteral("ID")), EDatabaseError);
}

TEST_F(MultiSelect, RangesWalkTheSelectionOrTheirFallback)
{
    int all = 0;
    for (const TBookmark &b : TQBookmarkListOrAllRows(&grid)) {
        Q_UNUSED(b);
        ++all;
    }
    EXPECT_EQ(all, 30);
    table->SetRecNo(8);
    QList<int> current;
    for (const TBookmark &b : TQBookmarkListOrCurrent(&grid)) {
        Q_UNUSED(b);
        current << table->RecNo();
    }
    EXPECT_EQ(current, QList<int>{8});

    selectRecords({4, 6});
    QList<int> seen;
    for (const TBookmark &b : TQBookmarkListOrAllRows(&grid)) {
        Q_UNUSED(b);
        seen << table->RecNo();
    }
    EXPECT_EQ(seen, (QList<int>{4, 6}));

    grid.SetMultiSelect(msCells);
    selectRecords({4, 6});
    grid.SelectedCols().Add(grid.GetColumns()->Items(2));
    grid.SelectedCols().Add(grid.GetColumns()->Items(1));
    QStringList cells;
    grid.ForEachDataCell(fsSelectedOnly, [&](TQColumn *column, TForEachCellFlags flags) {
        QString cell = column->GetDisplayText();
        if (flags.Contains(feFirstCol))
            cell.prepend(QLatin1Char('['));
        if (flags.Contains(feLastCol))
            cell.append(QLatin1Char(']'));
        if (flags.Contains(feLastRow))
            cell.append(QLatin1Char('.'));
        cells << cell;
    });
    // Columns in collection order, rows in the list's order, the position kept.
    EXPECT_EQ(cells, (QStringList{"[r4", "4]", "[r6.", "6]."}));
    EXPECT_EQ(table->RecNo(), 6);

    int rows = 0;
    bool lastSeen = false;
    grid.ForEachDataRow(reAllRows, [&](TQColumn *, TForEachCellFlags flags) {
        ++rows;
        lastSeen = lastSeen || flags.Contains(feLastRow);
        EXPECT_EQ(flags.Contains(feLastRow), table->RecNo() == 30);
    });
    EXPECT_EQ(rows, 30);
    EXPECT_TRUE(lastSeen);
}

TEST_F(MultiSelect, ClicksAndKeysSelect)
{
    const int qty = grid.DataToRawColumn(2);
    const int first = grid.TitleOffset();
    click(qty, first + 2, Qt::ControlModifier);
    click(qty, first + 4, Qt::ControlModifier);
    EXPECT_EQ(selectedIds(), (QList<int>{3, 5}));
    click(qty, first + 2, Qt::ControlModifier); // toggles back
    EXPECT_EQ(selectedIds(), (QList<int>{5}));

    // Shift extends from the anchor (the last Ctrl+click) and replaces the rest.
    click(qty, first + 6, Qt::ShiftModifier);
    EXPECT_EQ(selectedIds(), (QList<int>{3, 4, 5, 6, 7}));

    // A plain click clears; Shift+Down extends from there.
    click(qty, first + 1);
    EXPECT_EQ(grid.SelectedRows().Count(), 0);
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(selectedIds(), (QList<int>{2, 3, 4}));
    QTest::keyClick(&grid, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(selectedIds(), (QList<int>{2, 3}));

    QTest::keyClick(&grid, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(grid.SelectedRows().Count(), 30);

    // The indicator picks a row alone.
    click(0, first + 3);
    EXPECT_EQ(selectedIds(), QList<int>{4});
    EXPECT_EQ(table->RecNo(), 4);

    // Titles select columns where columns can be selected.
    click(qty, 0);
    EXPECT_EQ(grid.SelectedCols().Count(), 0);
    grid.SetMultiSelect(msCols);
    click(qty, 0);
    click(qty + 2, 0, Qt::ShiftModifier);
    EXPECT_EQ(grid.SelectedCols().Count(), 3);
    click(qty + 1, 0, Qt::ControlModifier);
    EXPECT_EQ(grid.SelectedCols().Count(), 2);
    EXPECT_FALSE(grid.IsColMultiSelected(grid.GetColumns()->Items(3)));
}

TEST_F(MultiSelect, SelectedRowsShowInTheSelectionColourAndTheIndicator)
{
    grid.SetSelectionColor(0x00FF00);
    grid.SetColor(clWhite);
    selectRecords({3});
    table->SetRecNo(1);
    const QImage shot = Shot(grid);
    const QRect selected = grid.CellRect(grid.DataToRawColumn(1), grid.TitleOffset() + 2);
    EXPECT_EQ(shot.pixelColor(selected.right() - 1, selected.top() + 1), QColor(Qt::green));
    const QRect plain = grid.CellRect(grid.DataToRawColumn(1), grid.TitleOffset() + 3);
    EXPECT_EQ(shot.pixelColor(plain.right() - 1, plain.top() + 1), QColor(Qt::white));
    const QRect indicator = grid.CellRect(0, grid.TitleOffset() + 2);
    const int size = grid.Indicators().Size();
    EXPECT_TRUE(DrawnAt(shot, grid.Indicators().Image(3),
                        QPoint(indicator.x() + (indicator.width() - size) / 2, indicator.y() + (indicator.height() - size) / 2)));
}

TEST_F(MultiSelect, DeletingTheSelectionDeletesThoseRecords)
{
    std::vector<TSelectAction> actions;
    grid.OnRowSelect = [&](TQCustomDBGrid *, TSelectAction action) { actions.push_back(action); };
    selectRecords({2, 4, 6});
    grid.SelectedRows().Delete();
    EXPECT_EQ(grid.SelectedRows().Count(), 0);
    EXPECT_EQ(table->RecordCount(), 27);
    EXPECT_FALSE(table->Locate(QStringLiteral("ID"), 4, {}));
    EXPECT_TRUE(table->Locate(QStringLiteral("ID"), 5, {}));
    EXPECT_EQ(actions.back(), saDelete);

    // A drag that selects as it goes tells once, when the events are through.
    actions.clear();
    grid.BeginSelect();
    selectRecords({1, 3});
    grid.DelayEndSelect();
    EXPECT_TRUE(actions.empty());
    QApplication::processEvents();
    EXPECT_EQ(actions.size(), 1u);
}
