// What the grid paints, looked at through grab(): colours, lines, images and merged titles.

#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "GridPixels.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

constexpr TColor green = 0x00FF00;

class DBGridPaint : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(100);
        source.SetDataSet(table.get());
        grid.resize(600, 300);
        grid.SetDataSource(&source);
        grid.SetColor(clWhite);
        grid.show();
        QApplication::processEvents();
    }
    // A background pixel of a data cell: its right end, away from left-aligned text.
    QColor background(const QImage &shot, int column, int row) const
    {
        const QRect r = grid.CellRect(grid.DataToRawColumn(column), row);
        return shot.pixelColor(r.right() - 1, r.top() + 1);
    }
    int firstRow() const { return grid.TitleOffset(); }

    std::unique_ptr<TMemTable> table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(DBGridPaint, StripesFollowRecordPositionsWhenTheViewScrolls)
{
    grid.SetDrawingOptions(grid.GetDrawingOptions() + gdoStripedRows - gdoSelectedRow);
    grid.SetStripeColor(green);
    QImage shot = Shot(grid);
    const int name = 1;
    EXPECT_EQ(background(shot, name, firstRow()), QColor(Qt::white));     // record 1
    EXPECT_EQ(background(shot, name, firstRow() + 1), QColor(Qt::green)); // record 2
    EXPECT_EQ(background(shot, name, firstRow() + 2), QColor(Qt::white)); // record 3

    // One record past the window: the view moves one row, and each stripe moves with its record.
    table->MoveBy(grid.DataLink()->RecordCount());
    shot = Shot(grid);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), firstRow()), QStringLiteral("2"));
    EXPECT_EQ(background(shot, name, firstRow()), QColor(Qt::green));
    EXPECT_EQ(background(shot, name, firstRow() + 1), QColor(Qt::white));

    grid.SetStripeColor(clDefault); // the computed default is the palette's light shade
    shot = Shot(grid);
    EXPECT_TRUE(SameColor(background(shot, name, firstRow()), grid.palette().color(QPalette::Midlight)));
}

TEST_F(DBGridPaint, DataLinesAreSilverButGreyOnASilverGrid)
{
    const QRect cell = grid.CellRect(grid.DataToRawColumn(1), firstRow() + 1);
    const QPoint vertical(cell.right() + 1, cell.center().y());
    const QPoint horizontal(cell.center().x(), cell.bottom() + 1);
    QImage shot = Shot(grid);
    EXPECT_EQ(shot.pixelColor(vertical), QColor(0xC0, 0xC0, 0xC0));
    EXPECT_EQ(shot.pixelColor(horizontal), QColor(0xC0, 0xC0, 0xC0));

    grid.SetColor(clSilver);
    shot = Shot(grid);
    EXPECT_EQ(shot.pixelColor(vertical), QColor(0x80, 0x80, 0x80));
    EXPECT_EQ(shot.pixelColor(horizontal), QColor(0x80, 0x80, 0x80));

    grid.SetDataColLineColor(green); // a chosen colour wins over the computed one
    EXPECT_EQ(Shot(grid).pixelColor(vertical), QColor(Qt::green));
}

TEST_F(DBGridPaint, TheCurrentRecordShowsInTheSelectionColours)
{
    grid.SetOptions(grid.GetOptions() + dgAlwaysShowSelection);
    grid.SetSelectCellColor(green);
    grid.SetSelectRowColor(0xFF0000); // blue
    const QImage shot = Shot(grid);
    const int current = grid.RawToDataColumn(grid.Col());
    EXPECT_EQ(background(shot, current, firstRow()), QColor(Qt::green));
    EXPECT_EQ(background(shot, current + 1, firstRow()), QColor(Qt::blue));
    EXPECT_EQ(background(shot, current + 1, firstRow() + 1), QColor(Qt::white));
}

TEST_F(DBGridPaint, CheckBoxesAndMarkersSitWhereTheColumnSays)
{
    TQColumn *paid = grid.GetColumns()->Items(5);
    paid->SetCheckBox(true);
    paid->SetAlignment(taCenter);
    TQColumn *qty = grid.GetColumns()->Items(2);
    qty->GetTitle()->SetMarker(tmAscend);
    QImage shot = Shot(grid);

    const int size = grid.CheckBoxes().Size();
    auto boxAt = [&](int row) {
        const QRect r = grid.CellRect(grid.DataToRawColumn(5), row).adjusted(2, 0, -2, 0);
        return QPoint(r.left() + (r.width() - size) / 2, r.top() + (r.height() - size) / 2);
    };
    // Record 1 is unpaid, record 2 paid.
    EXPECT_TRUE(DrawnAt(shot, grid.CheckBoxes().Image(0), boxAt(firstRow() + 0)));
    EXPECT_TRUE(DrawnAt(shot, grid.CheckBoxes().Image(1), boxAt(firstRow() + 1)));
    EXPECT_FALSE(DrawnAt(shot, grid.CheckBoxes().Image(1), boxAt(firstRow() + 0)));

    paid->SetCheckBoxKind(ckCross);
    paid->SetAlignment(taRightJustify);
    shot = Shot(grid);
    const QRect r = grid.CellRect(grid.DataToRawColumn(5), firstRow() + 1);
    EXPECT_TRUE(DrawnAt(shot, grid.CheckBoxes().Image(3 + 1), QPoint(r.right() - 2 - size + 1, r.top() + (r.height() - size) / 2)));

    const QRect title = grid.CellRect(grid.DataToRawColumn(2), 0);
    const int msize = grid.Markers().Size();
    const QPoint marker(title.right() - msize - 1, title.top() + (title.height() - msize) / 2);
    EXPECT_TRUE(DrawnAt(shot, grid.Markers().Image(0), marker));
    qty->GetTitle()->SetMarker(tmDescend);
    EXPECT_TRUE(DrawnAt(Shot(grid), grid.Markers().Image(1), marker));
}

TEST_F(DBGridPaint, HeaderCellsMergeAcrossColumnsThatShareASegment)
{
    grid.SetOptions(grid.GetOptions() + dgTitleHeaders);
    for (int i : {2, 3})
        grid.GetColumns()->Items(i)->GetTitle()->SetHeader(QStringLiteral("Amounts"));
    grid.GetColumns()->Items(4)->GetTitle()->SetHeader(QStringLiteral("Dates"));
    const QImage shot = Shot(grid);
    const QColor face = grid.GetColumns()->Items(2)->GetTitle()->GetColor();
    const QColor line = grid.palette().color(QPalette::Mid);
    const int headerY = grid.HeaderLineHeight() / 2;
    const int captionY = grid.RowHeights(0) - 3;
    auto boundary = [&](int column) { return grid.CellRect(grid.DataToRawColumn(column), 0).right() + 1; };
    // Qty and Unit Price share "Amounts": no line between them on the header line, one below.
    EXPECT_TRUE(SameColor(shot.pixelColor(boundary(2), headerY), face));
    EXPECT_TRUE(SameColor(shot.pixelColor(boundary(2), captionY), line));
    // Unit Price and OrderDate differ: the line runs through.
    EXPECT_TRUE(SameColor(shot.pixelColor(boundary(3), headerY), line));
}

TEST_F(DBGridPaint, ParentCaptionsSpanTheirChildren)
{
    TQDBGridColumns *columns = grid.GetColumns();
    grid.BeginLayout();
    columns->Clear();
    for (const char *name : {"Name", "Qty", "Unit Price", "OrderDate"})
        columns->Add()->SetFieldName(QString::fromLatin1(name));
    grid.EndLayout();
    columns->Items(0)->SetExpandCols(2);
    ASSERT_EQ(grid.TitleOffset(), 2);
    const QImage shot = Shot(grid);
    const QColor line = grid.palette().color(QPalette::Mid);
    const int between = grid.CellRect(grid.DataToRawColumn(1), 1).right() + 1; // Qty | Unit Price
    EXPECT_TRUE(SameColor(shot.pixelColor(between, grid.RowHeights(0) / 2), columns->Items(0)->GetTitle()->GetColor()));
    EXPECT_TRUE(SameColor(shot.pixelColor(between, grid.RowHeights(0) + grid.GridLineWidth() + 2), line));
    // OrderDate has no parent: its own cell reaches through both title rows, no line between.
    const int dateEnd = grid.CellRect(grid.DataToRawColumn(3), 1).right() - 2;
    EXPECT_TRUE(SameColor(shot.pixelColor(dateEnd, grid.RowHeights(0)), columns->Items(3)->GetTitle()->GetColor()));
}

TEST_F(DBGridPaint, TotalsRowsShowTheirCaptions)
{
    TQColumn *qty = grid.GetColumns()->Items(2);
    qty->GetTotalFooter()->SetCaption(QStringLiteral("Total"));
    qty->GetTotalFooter()->SetColor(QColor(Qt::green));
    grid.SetOptionsEx({dgBlankRow, dgTotalFooter});
    const QImage shot = Shot(grid);
    const QRect footer = grid.CellRect(grid.DataToRawColumn(2), grid.RowCount() - 1);
    ASSERT_FALSE(footer.isEmpty());
    EXPECT_EQ(shot.pixelColor(footer.right() - 1, footer.top() + 1), QColor(Qt::green));
    // The caption's text is drawn: some pixels of the cell are not its face.
    int ink = 0;
    for (int x = footer.left(); x <= footer.right(); ++x)
        ink += shot.pixelColor(x, footer.center().y()) != QColor(Qt::green);
    EXPECT_GT(ink, 0);
    EXPECT_EQ(grid.TotalText(qty->GetTotalFooter()), QStringLiteral("Total"));
    qty->GetTotalFooter()->SetTotalResult(trCalcValue);
    NullValueString() = QStringLiteral("n/a");
    EXPECT_EQ(grid.TotalText(qty->GetTotalFooter()), QStringLiteral("n/a")); // nothing calculated yet
    NullValueString().clear();
}

TEST_F(DBGridPaint, ColumnImagesComeFromTheFieldOrTheApplication)
{
    TImageList images;
    for (Qt::GlobalColor color : {Qt::red, Qt::blue}) {
        QPixmap image(10, 10);
        image.fill(color);
        images.Add(image);
    }
    TQColumn *qty = grid.GetColumns()->Items(2); // 1, 2, 3, ...
    qty->SetImages(&images);
    auto cell = [&](int record) { return grid.CellRect(grid.DataToRawColumn(2), firstRow() + record); };
    QImage shot = Shot(grid);
    EXPECT_EQ(shot.pixelColor(cell(0).center()), QColor(Qt::blue)); // Qty 1: the second image
    EXPECT_EQ(shot.pixelColor(cell(1).center()), QColor(Qt::white)); // Qty 2: no such image
    EXPECT_TRUE(SameColor(shot.pixelColor(cell(2).center()), QColor(Qt::white)));

    qty->OnCalcImageIndex = [](TQColumn *, int &index) { index %= 2; };
    qty->SetImageDraw(idAlignment); // beside the text, on the side it keeps to
    shot = Shot(grid);
    const QRect second = cell(1).adjusted(2, 0, -2, 0);
    EXPECT_EQ(shot.pixelColor(second.right() - 4, second.center().y()), QColor(Qt::red));
    EXPECT_EQ(shot.pixelColor(second.left() + 4, second.center().y()), QColor(Qt::white));
    qty->SetImageDraw(idOpposite);
    shot = Shot(grid);
    EXPECT_EQ(shot.pixelColor(second.left() + 4, second.center().y()), QColor(Qt::red));
    qty->OnCalcImageIndex = nullptr;
}

TEST_F(DBGridPaint, SortLevelsShowBesideTheirMarkers)
{
    const QRect title = grid.CellRect(grid.DataToRawColumn(2), 0);
    const int msize = grid.Markers().Size();
    const QRect levelArea(title.right() - msize - 12, title.top() + 2, 10, title.height() - 4);
    grid.SetOrderFields(QStringLiteral("Qty"));
    const QImage one = Shot(grid).copy(levelArea);
    grid.SetOrderFields(QStringLiteral("Qty,Name DESC"));
    const QImage two = Shot(grid).copy(levelArea);
    EXPECT_NE(one, two); // the level number appeared
    EXPECT_EQ(grid.GetColumns()->Items(1)->GetTitle()->GetMarker(), tmDescend);
}

namespace {

// The columns of a cell's pixels that hold something else than the background.
QList<int> inkColumns(const QImage &shot, const QRect &cell, const QColor &background)
{
    QList<int> xs;
    for (int x = cell.left(); x <= cell.right(); ++x)
        for (int y = cell.top(); y <= cell.bottom(); ++y)
            if (!SameColor(shot.pixelColor(x, y), background)) {
                xs << x;
                break;
            }
    return xs;
}

} // namespace

TEST_F(DBGridPaint, TextKeepsToItsSideAndLineAndMirrorsRightToLeft)
{
    const QRect cell = grid.CellRect(grid.DataToRawColumn(1), firstRow() + 1); // Name "r2", left-aligned
    QList<int> ink = inkColumns(Shot(grid), cell, Qt::white);
    ASSERT_FALSE(ink.isEmpty());
    EXPECT_LT(ink.first(), cell.left() + 6);
    EXPECT_LT(ink.last(), cell.center().x());

    grid.setLayoutDirection(Qt::RightToLeft);
    const QRect mirrored = grid.CellRect(grid.DataToRawColumn(1), firstRow() + 1);
    ink = inkColumns(Shot(grid), mirrored, Qt::white);
    ASSERT_FALSE(ink.isEmpty());
    EXPECT_GT(ink.last(), mirrored.right() - 6); // the text keeps to the right now
    grid.GetColumns()->Items(1)->SetSuppressRTL(true);
    ink = inkColumns(Shot(grid), mirrored, Qt::white);
    EXPECT_LT(ink.first(), mirrored.left() + 6); // unless the column keeps its side
    grid.setLayoutDirection(Qt::LeftToRight);

    // Two lines a row: a top-justified text sits in the upper half.
    grid.SetLinesCount(2);
    grid.GetColumns()->Items(1)->SetVAlignment(tvTopJustify);
    const QRect tall = grid.CellRect(grid.DataToRawColumn(1), firstRow() + 1);
    const QImage shot = Shot(grid);
    int lowest = -1;
    for (int y = tall.top(); y <= tall.bottom(); ++y)
        for (int x = tall.left(); x < tall.right(); ++x)
            if (!SameColor(shot.pixelColor(x, y), Qt::white))
                lowest = y;
    ASSERT_GE(lowest, 0);
    EXPECT_LT(lowest, tall.center().y());
}

TEST_F(DBGridPaint, TheVisualStyleDrawsTheTitleFaces)
{
    const QRect title = grid.CellRect(grid.DataToRawColumn(1), 0);
    const QPoint corner = title.topLeft() + QPoint(0, 0);
    const QPoint middle(title.center().x(), title.top() + 2);
    QImage shot = Shot(grid);
    const QColor face = shot.pixelColor(middle);
    EXPECT_EQ(shot.pixelColor(corner), face); // flat

    grid.GetGridStyle()->SetVisualStyle(vsClassic);
    shot = Shot(grid);
    EXPECT_EQ(shot.pixelColor(corner).rgb(), grid.palette().color(QPalette::Light).rgb()); // a raised edge
    EXPECT_EQ(shot.pixelColor(middle.x(), title.bottom()).rgb(), grid.palette().color(QPalette::Dark).rgb());

    grid.GetGridStyle()->SetVisualStyle(vsThemed);
    const QImage themed = Shot(grid).copy(title);
    grid.GetGridStyle()->SetVisualStyle(vsDefault);
    EXPECT_NE(themed, Shot(grid).copy(title)); // the platform style's own header section
    EXPECT_EQ(Shot(grid).pixelColor(corner), face);
}
