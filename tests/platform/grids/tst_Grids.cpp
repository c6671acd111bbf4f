#include "platform/grids/Grids.h"

#include "TestSupport.h"

#include <QApplication>
#include <QLineEdit>
#include <QMap>
#include <QPainter>
#include <QScrollBar>
#include <QSet>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

// A grid of 5 columns and 100 rows, one fixed of each, whose cells hold text.
class TestGrid : public TCustomGrid
{
public:
    TestGrid()
    {
        SetColCount(5);
        SetRowCount(100);
        SetDefaultRowHeight(20);
        SetDefaultColWidth(60);
        resize(400, 20 * 10 + 2 * frameWidth() + horizontalScrollBar()->sizeHint().height() + 10);
    }
    QSet<QPair<int, int>> drawn;
    QMap<QPair<int, int>, QString> texts;
    QList<QPair<int, int>> moved;
    bool refuseRow50 = false;

protected:
    void DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state) override
    {
        drawn.insert({col, row});
        TCustomGrid::DrawCell(painter, col, row, rect, state);
    }
    bool SelectCell(int, int row) override { return !(refuseRow50 && row == 50); }
    QString GetEditText(int col, int row) const override { return texts.value({col, row}); }
    void SetEditText(int col, int row, const QString &text) override { texts[{col, row}] = text; }
    void ColumnMoved(int from, int to) override { moved.append({from, to}); }
};

void flush(QWidget &w)
{
    QApplication::processEvents();
    Q_UNUSED(w);
}

QPoint centre(const TestGrid &g, int col, int row)
{
    return g.CellRect(col, row).center();
}

} // namespace

TEST(Grid, GeometryAndHitTesting)
{
    TestGrid g;
    g.SetColWidths(2, 100);
    g.SetColWidths(3, -1); // hidden, line included
    EXPECT_EQ(g.CellRect(0, 0), QRect(0, 0, 60, 20));
    EXPECT_EQ(g.CellRect(2, 1), QRect(122, 21, 100, 20));
    EXPECT_TRUE(g.CellRect(3, 1).isEmpty() || g.CellRect(3, 1).width() == 0);
    EXPECT_EQ(g.CellRect(4, 1).left(), 223);
    EXPECT_EQ(g.MouseCoord(130, 30), QPoint(2, 1));
    EXPECT_EQ(g.MouseCoord(224, 30), QPoint(4, 1));
    EXPECT_EQ(g.MouseCoord(121, 30), QPoint(1, 1)); // a line belongs to the cell before it
    EXPECT_EQ(g.MouseCoord(5000, 30), QPoint(-1, -1));

    g.SetTopRow(11);
    EXPECT_EQ(g.TopRow(), 11);
    EXPECT_EQ(g.CellRect(0, 11).top(), 21); // the first scrolled row sits under the fixed one
    EXPECT_TRUE(g.CellRect(0, 10).isEmpty());
    EXPECT_EQ(g.MouseCoord(10, 25), QPoint(0, 11));
    EXPECT_EQ(g.MouseCoord(10, 5), QPoint(0, 0)); // fixed rows stay
    EXPECT_EQ(g.VisibleRowCount(), (g.viewport()->height() - 21) / 21);
    g.SetTopRow(1000);
    EXPECT_EQ(g.TopRow() + g.VisibleRowCount(), 100); // no scrolling past the last row
}

TEST(Grid, KeysMoveTheCurrentCell)
{
    TestGrid g;
    g.show();
    QTest::keyClick(&g, Qt::Key_Down);
    QTest::keyClick(&g, Qt::Key_Right);
    EXPECT_EQ(QPoint(g.Col(), g.Row()), QPoint(2, 2));
    QTest::keyClick(&g, Qt::Key_PageDown);
    EXPECT_EQ(g.Row(), 2 + g.VisibleRowCount());
    EXPECT_GE(g.Row(), g.TopRow());
    EXPECT_LT(g.Row(), g.TopRow() + g.VisibleRowCount());
    QTest::keyClick(&g, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(QPoint(g.Col(), g.Row()), QPoint(4, 99));
    EXPECT_EQ(g.TopRow() + g.VisibleRowCount() - 1, 99);
    QTest::keyClick(&g, Qt::Key_Home);
    EXPECT_EQ(g.Col(), 1);
    QTest::keyClick(&g, Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(QPoint(g.Col(), g.Row()), QPoint(1, 1));
    EXPECT_EQ(g.TopRow(), 1);
    QTest::keyClick(&g, Qt::Key_Up); // nothing above the first row
    EXPECT_EQ(g.Row(), 1);

    g.SetOptions(g.Options() + goTabs);
    QTest::keyClick(&g, Qt::Key_End);
    QTest::keyClick(&g, Qt::Key_Tab); // wraps to the next row
    EXPECT_EQ(QPoint(g.Col(), g.Row()), QPoint(1, 2));
    QTest::keyClick(&g, Qt::Key_Backtab);
    EXPECT_EQ(QPoint(g.Col(), g.Row()), QPoint(4, 1));

    g.refuseRow50 = true;
    g.SetRow(50);
    EXPECT_EQ(g.Row(), 1);
}

TEST(Grid, AOneRowScrollRepaintsOnlyTheNewRow)
{
    TestGrid g;
    g.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&g));
    g.grab();
    flush(g);
    g.drawn.clear();
    g.ResetDrawCellCount();
    g.SetTopRow(2);
    flush(g); // paints what the scroll left to paint
    QSet<int> rows;
    for (const auto &p : std::as_const(g.drawn))
        rows.insert(p.second);
    const int lastVisible = g.TopRow() + g.VisibleRowCount() - 1;
    // The new bottom row (and any partly shown row below it), not the rows that moved.
    for (int r : rows)
        EXPECT_GE(r, lastVisible) << "row " << r << " was repainted";
    EXPECT_TRUE(rows.contains(lastVisible));
}

TEST(Grid, MouseSelectsResizesAndMovesColumns)
{
    TestGrid g;
    g.SetOptions(g.Options() + goColSizing + goColMoving);
    g.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&g));
    QTest::mouseClick(g.viewport(), Qt::LeftButton, {}, centre(g, 3, 4));
    EXPECT_EQ(QPoint(g.Col(), g.Row()), QPoint(3, 4));

    // Drag the right border of column 2's title 30 pixels to the right.
    const QRect title = g.CellRect(2, 0);
    const QPoint border(title.right() + 1, title.center().y());
    QTest::mousePress(g.viewport(), Qt::LeftButton, {}, border);
    QTest::mouseMove(g.viewport(), border + QPoint(30, 0));
    QTest::mouseRelease(g.viewport(), Qt::LeftButton, {}, border + QPoint(30, 0));
    EXPECT_EQ(g.ColWidths(2), 90);

    // Drag the title of column 1 onto column 3.
    g.SetColWidths(1, 40);
    QTest::mousePress(g.viewport(), Qt::LeftButton, {}, g.CellRect(1, 0).center());
    QTest::mouseMove(g.viewport(), g.CellRect(1, 0).center() + QPoint(20, 0));
    QTest::mouseMove(g.viewport(), g.CellRect(3, 0).center());
    QTest::mouseRelease(g.viewport(), Qt::LeftButton, {}, g.CellRect(3, 0).center());
    ASSERT_EQ(g.moved.size(), 1);
    EXPECT_EQ(g.moved.first(), qMakePair(1, 3));
    EXPECT_EQ(g.ColWidths(3), 40); // the width travels with the column
    EXPECT_EQ(g.ColWidths(1), 90);
    EXPECT_EQ(g.Col(), 2); // the current column keeps its content
}

TEST(Grid, WheelScrollsTheView)
{
    TestGrid g;
    g.show();
    QWheelEvent down(QPointF(50, 50), g.viewport()->mapToGlobal(QPointF(50, 50)), QPoint(), QPoint(0, -120), Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(g.viewport(), &down);
    EXPECT_EQ(g.TopRow(), 1 + QApplication::wheelScrollLines());
    EXPECT_EQ(g.verticalScrollBar()->value(), g.TopRow());
    g.verticalScrollBar()->setValue(40);
    EXPECT_EQ(g.TopRow(), 40);
}

TEST(Grid, InplaceEditorEditsAndCancels)
{
    TestGrid g;
    g.SetOptions(g.Options() + goEditing);
    g.texts[qMakePair(1, 1)] = QStringLiteral("old");
    g.show();
    QTest::keyClick(&g, Qt::Key_F2);
    ASSERT_TRUE(g.EditorMode());
    auto *edit = g.findChild<QLineEdit *>(QStringLiteral("InplaceEditor"));
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->text(), QStringLiteral("old"));
    EXPECT_EQ(edit->geometry(), g.CellRect(1, 1));
    QTest::keyClicks(edit, QStringLiteral("new"));
    EXPECT_EQ(g.texts[qMakePair(1, 1)], QStringLiteral("new"));
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_FALSE(g.EditorMode());

    QTest::keyClick(&g, Qt::Key_F2);
    QTest::keyClicks(edit, QStringLiteral("x"));
    QTest::keyClick(edit, Qt::Key_Down); // moving on keeps the editor on the next row
    EXPECT_EQ(g.Row(), 2);
    EXPECT_TRUE(g.EditorMode());
    QTest::keyClick(edit, Qt::Key_Escape);
    EXPECT_FALSE(g.EditorMode());
}

TEST(Grid, PaintsLinesInTheLineColour)
{
    TestGrid g;
    g.show();
    const QImage image = g.viewport()->grab().toImage();
    const QRect cell = g.CellRect(2, 3);
    EXPECT_EQ(image.pixel(cell.right() + 1, cell.center().y()), g.palette().color(QPalette::Mid).rgb());
    EXPECT_EQ(image.pixel(cell.center().x(), cell.bottom() + 1), g.palette().color(QPalette::Mid).rgb());
    EXPECT_EQ(image.pixel(cell.center()), g.palette().color(QPalette::Base).rgb());
    EXPECT_EQ(image.pixel(g.CellRect(1, 1).center()), g.palette().color(QPalette::Highlight).rgb());
    EXPECT_EQ(image.pixel(g.CellRect(2, 0).center()), g.palette().color(QPalette::Button).rgb());
}

TEST(Grid, ResizingAndRowSelection)
{
    TestGrid g;
    g.show();
    const int before = g.VisibleRowCount();
    g.resize(g.width(), g.height() + 4 * 21);
    EXPECT_EQ(g.VisibleRowCount(), before + 4);
    EXPECT_EQ(g.verticalScrollBar()->pageStep(), g.VisibleRowCount());
    g.SetTopRow(99);
    g.resize(g.width(), g.height() + 10 * 21); // growing at the end pulls rows back into view
    EXPECT_EQ(g.TopRow() + g.VisibleRowCount(), 100);

    g.SetOptions(g.Options() + goRowSelect + goEditing);
    QTest::keyClick(&g, Qt::Key_F2);
    EXPECT_FALSE(g.EditorMode()); // a row-select grid does not edit cells
    g.SetFixedCols(3);
    EXPECT_GE(g.Col(), 3);
    g.SetFixedCols(99);
    EXPECT_EQ(g.FixedCols(), g.ColCount());
}
