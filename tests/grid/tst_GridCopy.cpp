// Copying from the grid: what each kind of selection puts on the clipboard, as text and as
// an HTML table, and a long copy the user stops.

#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class GridCopy : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(30);
        source.SetDataSet(table.get());
        grid.resize(700, 300);
        grid.SetDataSource(&source);
        grid.SetOptions(grid.GetOptions() + dgMultiSelect);
        grid.SetKeyFields(QStringLiteral("ID"));
        grid.show();
        QApplication::processEvents();
        QApplication::clipboard()->setText(QStringLiteral("before"));
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    void selectRecords(std::initializer_list<int> recNos)
    {
        for (int recNo : recNos) {
            table->SetRecNo(recNo);
            grid.SelectRow();
        }
    }
    QStringList copiedLines() const { return QApplication::clipboard()->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
    bool copiedHtml() const { return QApplication::clipboard()->mimeData()->hasHtml(); }
    QString html() const { return QApplication::clipboard()->mimeData()->html(); }

    std::unique_ptr<TMemTable> table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(GridCopy, TheCurrentCellAloneOrTheSelectedRowsUnderTheirTitles)
{
    table->SetRecNo(2);
    grid.SetCol(grid.DataToRawColumn(column("Name")->Index()));
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "r2");
    EXPECT_FALSE(copiedHtml());

    // Texts that would break a row apart or read as markup.
    table->SetRecNo(3);
    table->Edit();
    table->FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("a<b>\t\"c\""));
    table->Post();
    grid.GetColumns()->SetState(csCustomized);
    column("Paid")->SetVisible(false);
    column("Qty")->SetIndex(0);
    selectRecords({3, 1});
    QTest::keyClick(&grid, Qt::Key_Insert, Qt::ControlModifier);
    const QStringList lines = copiedLines();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], "Qty\tID\tName\tUnit Price\tOrderDate");
    EXPECT_TRUE(lines[1].startsWith("1\t1\tr1\t0.25\t")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].startsWith("3\t3\t\"a<b>\t\"\"c\"\"\"\t0.75\t")) << lines[2].toStdString();
    ASSERT_TRUE(copiedHtml());
    EXPECT_TRUE(html().contains("<th>Name</th>"));
    EXPECT_TRUE(html().contains("<td align=\"right\">3</td>"));
    EXPECT_TRUE(html().contains("<td>a&lt;b&gt;\t&quot;c&quot;</td>"));
    EXPECT_EQ(html().count("<tr>"), 3);

    // With whole rows selected by the grid's mode, the current row.
    grid.ClearSelection();
    grid.SetOptions(grid.GetOptions() - dgMultiSelect + dgRowSelect);
    table->SetRecNo(2);
    EXPECT_TRUE(grid.CopyToClipboard());
    EXPECT_EQ(copiedLines().size(), 2);
    EXPECT_TRUE(copiedLines()[1].startsWith("2\t2\tr2\t")) << copiedLines()[1].toStdString();
}

TEST_F(GridCopy, ColumnsCopyEveryRecordAndCellsTheirCrossing)
{
    grid.SetMultiSelect(msCols);
    grid.SelectedCols().Add(column("Qty"));
    grid.SelectedCols().Add(column("ID"));
    table->SetRecNo(10);
    ASSERT_TRUE(grid.CopyToClipboard());
    QStringList lines = copiedLines();
    ASSERT_EQ(lines.size(), 31);
    EXPECT_EQ(lines[0], "ID\tQty");
    EXPECT_EQ(lines[30], "30\t30");
    EXPECT_EQ(table->RecNo(), 10); // the walk comes back

    grid.SetMultiSelect(msCells);
    grid.SelectedCols().Add(column("Qty"));
    grid.SelectedCols().Add(column("Name"));
    selectRecords({5, 6});
    ASSERT_TRUE(grid.CopyToClipboard());
    lines = copiedLines();
    EXPECT_EQ(lines, (QStringList{"Name\tQty", "\t5", "r6\t6"}));

    // Nothing to copy leaves the clipboard alone.
    table->Close();
    QApplication::clipboard()->setText(QStringLiteral("kept"));
    EXPECT_FALSE(grid.CopyToClipboard());
    EXPECT_EQ(QApplication::clipboard()->text(), "kept");
}

TEST_F(GridCopy, ALongCopyShowsItsProgressAndStopsAtEscWithoutCopying)
{
    for (int i = 0; i < 20000; ++i)
        table->AppendRecord({Variant(), QStringLiteral("x"), i, 1.0, Variant::FromDateTime(EncodeDate(2024, 1, 1)), true});
    table->FieldByName(QStringLiteral("Name"))->OnGetText = [](TField *f, QString &text, bool) {
        QThread::usleep(200);
        text = f->AsString();
    };
    grid.SetMultiSelect(msCols);
    grid.SelectedCols().Add(column("Name"));
    ProgressEscaper escaper;
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(escaper.Seen());
    EXPECT_EQ(QApplication::clipboard()->text(), "before");
}
