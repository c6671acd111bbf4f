// The grid's geometry: title rows per nesting depth, header lines, the bottom band of
// blank and totals rows, fixed column groups and stretching.

#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include <QApplication>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class DBGridLayout : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(100);
        source.SetDataSet(table.get());
        grid.resize(500, 400);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    // Columns of our own in place of the grid's.
    void ownColumns(std::initializer_list<const char *> names)
    {
        TQDBGridColumns *columns = grid.GetColumns();
        grid.BeginLayout();
        columns->Clear();
        for (const char *name : names)
            columns->Add()->SetFieldName(QString::fromLatin1(name));
        grid.EndLayout();
    }
    // Name as a parent of Qty and Unit Price, then OrderDate.
    void nestColumns()
    {
        ownColumns({"Name", "Qty", "Unit Price", "OrderDate"});
        grid.GetColumns()->Items(0)->SetExpandCols(2);
    }
    // A grid whose viewport is exactly `width` pixels wide, without lines or indicator.
    void plainWidth(int width)
    {
        grid.setFrameShape(QFrame::NoFrame);
        grid.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        grid.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        grid.SetGridLineWidth(0);
        grid.SetOptions(grid.GetOptions() - dgIndicator);
        grid.resize(width, 300);
        QApplication::processEvents();
    }
    QList<int> widths() const
    {
        QList<int> out;
        for (TQColumn *c : *grid.GetColumns())
            out << c->GetWidth();
        return out;
    }

    std::unique_ptr<TMemTable> table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(DBGridLayout, TitleRowsFollowTheNestingOnlyWithTitles)
{
    EXPECT_EQ(grid.TitleOffset(), 1);
    nestColumns();
    EXPECT_EQ(grid.TitleOffset(), 2); // Name's caption over Qty and Unit Price
    EXPECT_EQ(grid.ShowingColumns().size(), 3);
    EXPECT_GT(grid.RowHeights(0), 0);
    EXPECT_GT(grid.RowHeights(1), 0);

    grid.GetColumns()->Items(0)->SetExpanded(false);
    EXPECT_EQ(grid.TitleOffset(), 1); // a collapsed parent takes its children's place

    grid.GetColumns()->Items(0)->SetExpanded(true);
    grid.SetOptions(grid.GetOptions() - dgTitles);
    EXPECT_EQ(grid.TitleOffset(), 0);
    EXPECT_EQ(grid.FixedRows(), 0);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(1), 0), QStringLiteral("1")); // the first record's Qty
}

TEST_F(DBGridLayout, HeaderLinesSitOnTopOfTheCaption)
{
    grid.SetOptions(grid.GetOptions() + dgTitleHeaders);
    TQColumn *qty = grid.GetColumns()->Items(2);
    qty->GetTitle()->SetHeader(QStringLiteral("Amounts|Counted"));
    const int line = grid.HeaderLineHeight();
    ASSERT_GT(line, 0);
    // The title row grew to hold two header lines and the caption.
    EXPECT_GE(grid.RowHeights(0), 2 * line + QFontMetrics(qty->GetTitle()->GetFont()).height());
    const int top = grid.CellRect(grid.DataToRawColumn(2), 0).top();
    EXPECT_EQ(grid.HeaderRow(top, qty), 0);
    EXPECT_EQ(grid.HeaderRow(top + line, qty), 1);
    EXPECT_EQ(grid.HeaderRow(top + 2 * line, qty), -1); // the caption
    EXPECT_EQ(grid.HeaderRow(top, grid.GetColumns()->Items(1)), -1); // no header of its own
    grid.SetOptions(grid.GetOptions() - dgTitleHeaders);
    EXPECT_EQ(grid.HeaderRow(top, qty), -1);
}

TEST_F(DBGridLayout, LinesCountSetsTheRowHeight)
{
    const int one = grid.GetRowHeight();
    const int records = grid.DataLink()->RecordCount();
    grid.SetLinesCount(2);
    EXPECT_EQ(grid.GetRowHeight() - one, QFontMetrics(grid.font()).height());
    EXPECT_LT(grid.DataLink()->RecordCount(), records); // fewer rows fit
}

TEST_F(DBGridLayout, LinesCountStaysWithinItsBounds)
{
    grid.SetLinesCountMax(3);
    grid.SetLinesCount(5);
    EXPECT_EQ(grid.GetLinesCount(), 3);
    grid.SetLinesCountMin(2);
    grid.SetLinesCount(1);
    EXPECT_EQ(grid.GetLinesCount(), 2);
    grid.SetLinesCountMin(4); // above the maximum: the maximum follows, the count too
    EXPECT_EQ(grid.GetLinesCountMax(), 4);
    EXPECT_EQ(grid.GetLinesCount(), 4);
    grid.SetLinesCountMax(0); // no upper bound
    grid.SetLinesCount(9);
    EXPECT_EQ(grid.GetLinesCount(), 9);
}

TEST_F(DBGridLayout, ScalingKeepsDefaultsAndScalesWhatTheColumnsKeep)
{
    ownColumns({"Name", "Qty", "Unit Price"});
    TQDBGridColumns *columns = grid.GetColumns();
    columns->Items(0)->SetWidth(100);
    columns->Items(1)->SetWidthBase(40);
    columns->Items(1)->SetWidthMin(30);
    columns->Items(1)->SetWidthMax(60);
    const int byDefault = columns->Items(2)->GetWidth();
    grid.ScaleColumnsBy(3, 2); // a layout made at 96 pixels per inch, shown at 144
    EXPECT_EQ(columns->Items(0)->GetWidth(), 150);
    EXPECT_EQ(columns->Items(1)->GetWidth(), 60);
    EXPECT_EQ(columns->Items(1)->GetWidthBase(), 60);
    EXPECT_EQ(columns->Items(1)->GetWidthMin(), 45);
    EXPECT_EQ(columns->Items(1)->GetWidthMax(), 90);
    EXPECT_EQ(columns->Items(2)->GetWidth(), byDefault); // follows the font, not the layout
    EXPECT_FALSE(columns->Items(2)->IsWidthStored());
    grid.ScaleColumnsBy(2, 3);
    EXPECT_EQ(columns->Items(0)->GetWidth(), 100);
}

TEST_F(DBGridLayout, TheBottomBandHoldsTheBlankAndTotalsRows)
{
    grid.SetOptionsEx({dgBlankRow});
    EXPECT_EQ(grid.BottomRowCount(), 1);
    EXPECT_EQ(grid.GetTotalRowCount(), 0);

    TQColumn *qty = grid.GetColumns()->Items(2);
    qty->GetTotalValues()->Add()->SetCaption(QStringLiteral("first"));
    qty->GetTotalValues()->Add()->SetCaption(QStringLiteral("second"));
    grid.SetOptionsEx({dgBlankRow, dgTotalHeader, dgTotalValues, dgTotalFooter});
    EXPECT_EQ(grid.GetTotalRowCount(), 4);
    EXPECT_EQ(grid.BottomRowCount(), 5);
    // The bottom rows show their sections in order: header, values, footer.
    const int last = grid.RowCount() - 1;
    EXPECT_EQ(grid.TotalAt(qty, last - 3), qty->GetTotalHeader());
    EXPECT_EQ(grid.TotalAt(qty, last - 2)->GetCaption(), QStringLiteral("first"));
    EXPECT_EQ(grid.TotalAt(qty, last - 1)->GetCaption(), QStringLiteral("second"));
    EXPECT_EQ(grid.TotalAt(qty, last), qty->GetTotalFooter());
    EXPECT_EQ(grid.TotalAt(grid.GetColumns()->Items(0), last - 1), nullptr); // Name has one value less
    qty->GetTotalValues()->Delete(1);
    EXPECT_EQ(grid.GetTotalRowCount(), 3); // the rows follow the sections

    // Without the blank row the totals keep a filler row above them.
    grid.SetOptionsEx({dgTotalFooter});
    EXPECT_EQ(grid.GetTotalRowCount(), 1);
    EXPECT_EQ(grid.BottomRowCount(), 2);
}

TEST_F(DBGridLayout, TotalsRowsStayVisibleWhenTheWindowShrinks)
{
    grid.GetColumns()->Items(2)->GetTotalValues()->Add()->SetCaption(QStringLiteral("sum"));
    grid.SetOptionsEx({dgBlankRow, dgTotalHeader, dgTotalValues, dgTotalFooter});
    for (int height : {400, 250, 160, 400}) {
        grid.resize(500, height);
        QApplication::processEvents();
        const int vh = grid.viewport()->height();
        const int last = grid.RowCount() - 1;
        for (int r = last - 2; r <= last; ++r) {
            const QRect cell = grid.CellRect(1, r);
            EXPECT_FALSE(cell.isEmpty()) << height << " row " << r;
            EXPECT_LE(cell.bottom(), vh) << height << " row " << r;
        }
        // The totals sit at the very bottom, the data rows fill what is left above them.
        EXPECT_NEAR(grid.CellRect(1, last).bottom() + grid.GridLineWidth(), vh, 1) << height;
        EXPECT_GE(grid.GetBlankHeight(), 0) << height;
        EXPECT_LT(grid.GetBlankHeight(), grid.GetRowHeight()) << height;
    }
}

TEST_F(DBGridLayout, FixedColumnsKeepFamiliesTogether)
{
    ownColumns({"Qty"});
    grid.SetFixedCols(3);
    EXPECT_EQ(grid.GetFixedCols(), 0); // one column: it must scroll

    nestColumns();
    grid.SetFixedCols(2); // would split Name's family after Qty
    EXPECT_EQ(grid.GetFixedCols(), 3);
    EXPECT_EQ(grid.FixedCols(), grid.IndicatorOffset() + 3);
    grid.SetFixedCols(1);
    EXPECT_EQ(grid.GetFixedCols(), 3);

    // When the family is everything, the last group scrolls.
    grid.GetColumns()->Items(0)->SetExpandCols(3);
    grid.SetFixedCols(1);
    EXPECT_EQ(grid.GetFixedCols(), 0);
}

TEST_F(DBGridLayout, StretchingSharesTheWidthByBase)
{
    ownColumns({"Name", "Qty", "Unit Price"});
    for (TQColumn *c : *grid.GetColumns())
        c->SetWidthBase(1);
    plainWidth(100);
    grid.SetStretchMode(true);
    EXPECT_EQ(widths(), (QList<int>{33, 33, 34})); // the remainder goes to the last
    EXPECT_EQ(grid.ColWidths(2), 34);

    grid.resize(161, 300);
    QApplication::processEvents();
    EXPECT_EQ(widths(), (QList<int>{53, 54, 54}));

    // Saving keeps the weights, not the stretched widths.
    grid.SetSavingColumns(true);
    EXPECT_EQ(widths(), (QList<int>{1, 1, 1}));
    grid.SetSavingColumns(false);

    grid.SetStretchMode(false);
    EXPECT_EQ(widths(), (QList<int>{1, 1, 1}));
}

TEST_F(DBGridLayout, StretchingPinsAtLimitsAndReleasesMinimums)
{
    ownColumns({"Name", "Qty", "Unit Price"});
    TQColumn *small = grid.GetColumns()->Items(0);
    small->SetWidthBase(1);
    small->SetWidthMin(10);
    for (int i : {1, 2}) {
        grid.GetColumns()->Items(i)->SetWidthBase(100);
        grid.GetColumns()->Items(i)->SetWidthMax(20);
    }
    plainWidth(100);
    grid.SetStretchMode(true);
    // The others stop at their maximum; the column held at its minimum takes the rest.
    EXPECT_EQ(widths(), (QList<int>{60, 20, 20}));

    // The grid's own limits apply to columns without theirs.
    for (int i : {1, 2})
        grid.GetColumns()->Items(i)->SetWidthMax(-1);
    grid.SetStretchWidthMax(30);
    EXPECT_EQ(widths(), (QList<int>{30, 30, 30})); // the first has no maximum of its own either
}

TEST_F(DBGridLayout, ADraggedWidthBecomesTheWeightThatYieldsIt)
{
    ownColumns({"Name", "Qty"});
    for (TQColumn *c : *grid.GetColumns())
        c->SetWidthBase(50);
    plainWidth(200);
    grid.SetStretchMode(true);
    EXPECT_EQ(widths(), (QList<int>{100, 100}));
    grid.GetColumns()->Items(0)->SetWidth(150);
    EXPECT_EQ(grid.GetColumns()->Items(0)->GetWidthBase(), 75); // 150 x 100 / 200
    const QList<int> after = widths();
    EXPECT_EQ(after[0] + after[1], 200); // still filling the client width
    EXPECT_GT(after[0], after[1]);
}

TEST_F(DBGridLayout, TheGridsOwnColumnsFollowAnotherDataSet)
{
    TMemTable other;
    other.FieldDefs().Add(QStringLiteral("Code"), ftString, 8);
    other.FieldDefs().Add(QStringLiteral("Weight"), ftFloat);
    other.CreateDataSet();
    other.AppendRecord({QStringLiteral("A1"), 2.5});
    grid.GetColumns()->Items(1)->SetCheckBox(true); // kept while the fields stay the same
    grid.SetOptions(grid.GetOptions() - dgRowLines);
    EXPECT_TRUE(grid.GetColumns()->Items(1)->GetCheckBox());

    source.SetDataSet(&other);
    ASSERT_EQ(grid.GetColumns()->Count(), 2);
    EXPECT_EQ(grid.GetColumns()->Items(0)->GetFieldName(), QStringLiteral("Code"));
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(1), grid.TitleOffset()), QStringLiteral("2.5"));

    // Columns of the user's own stay as they are.
    ownColumns({"Weight"});
    source.SetDataSet(table.get());
    ASSERT_EQ(grid.GetColumns()->Count(), 1);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(0), grid.TitleOffset()), QString()); // no such field here
}

TEST_F(DBGridLayout, AGridFollowsItsMastersWidthsAndPosition)
{
    TMemTable summary;
    summary.FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
    summary.FieldDefs().Add(QStringLiteral("Unit Price"), ftFloat);
    summary.CreateDataSet();
    summary.AppendRecord({5050, 1262.5});
    TDataSource summarySource;
    summarySource.SetDataSet(&summary);
    auto follower = std::make_unique<TQDBGrid>();
    follower->resize(500, 100);
    follower->SetDataSource(&summarySource);
    follower->GetColumns()->SetState(csCustomized);

    grid.GetColumns()->Items(2)->SetWidth(120);
    follower->SetMasterGrid(&grid);
    // The grid's own columns keep widths in whole characters: the follower takes what shows.
    EXPECT_EQ(follower->GetColumns()->FindColumn(QStringLiteral("Qty"))->GetWidth(), grid.GetColumns()->Items(2)->GetWidth());
    grid.GetColumns()->Items(3)->SetWidth(200); // Unit Price
    EXPECT_GE(grid.GetColumns()->Items(3)->GetWidth(), 190);
    EXPECT_EQ(follower->GetColumns()->FindColumn(QStringLiteral("Unit Price"))->GetWidth(), grid.GetColumns()->Items(3)->GetWidth());

    grid.SetMasterGrid(follower.get()); // a circle is refused
    EXPECT_EQ(grid.GetMasterGrid(), nullptr);
    follower.reset(); // the master forgets a follower that is gone
    EXPECT_TRUE(grid.SlaveGrids().isEmpty());
    grid.GetColumns()->Items(2)->SetWidth(90);
}
