// The popup calendar: its views and their cells, the keys and clicks that move through
// dates and zoom, and the calendar dropped down from date cells and edit boxes.

#include "editors/QDBCalendar.h"
#include "editors/QDBDataEditor.h"
#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/MemTable.h"
#include "platform/rtl/DateUtils.h"
#include "platform/rtl/FormatDateTime.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class Calendar : public ::testing::Test
{
protected:
    void SetUp() override
    {
        calendar.SetCalendarDepth(cdCentury);
        calendar.DropDown(QPoint(0, 0));
    }

    void on(int y, int m, int d) { calendar.SetDate(EncodeDate(y, m, d)); }
    QString date() { return FormatDateTime("yyyy-mm-dd", calendar.GetDate()); }
    void key(Qt::Key k, Qt::KeyboardModifiers mods = {}) { QTest::keyClick(&calendar, k, mods); }
    // The text of a cell of the grid: row and position among the cells.
    QString cell(int row, int position)
    {
        const int col = calendar.DataToRawColumn(position + (calendar.GetCalendar() == cdMonth ? 1 : 0));
        return calendar.CellText(col, row + calendar.TitleOffset());
    }

    const ScopedFormatSettings invariant{TFormatSettings::Invariant()};
    QLineEdit box;
    TQDBPopupCalendar calendar{&box};
};

} // namespace

TEST_F(Calendar, DaysOfAMonthStartOnMondayBeforeTheFirst)
{
    on(2021, 3, 10); // March 2021 begins on a Monday: a whole week of February comes first
    EXPECT_EQ(calendar.Title(), "March 2021");
    EXPECT_EQ(cell(0, 0), "22");
    EXPECT_EQ(cell(1, 0), "1");
    EXPECT_EQ(calendar.SelectedCell(), QPoint(2, 2));
    on(2021, 8, 1); // August 2021 begins on a Sunday
    EXPECT_EQ(cell(0, 0), "26");
    EXPECT_EQ(cell(0, 6), "1");
    EXPECT_EQ(calendar.SelectedCell(), QPoint(6, 0));

    // Week numbers are ISO: the first days of 2021 belong to week 53 of 2020.
    calendar.SetShowWeekNumbers(true);
    on(2021, 1, 15);
    EXPECT_EQ(calendar.CellText(calendar.DataToRawColumn(0), calendar.TitleOffset()), "53");
    EXPECT_EQ(calendar.CellText(calendar.DataToRawColumn(0), calendar.TitleOffset() + 1), "1");

    // Sundays in bold, and what the handler says besides.
    calendar.OnCalcBoldDays = [](QObject *, TDateTime day, bool &bold) { bold = bold || DayOf(day) == 13; };
    calendar.SetBoldSundays(true);
    EXPECT_TRUE(calendar.IsBold(EncodeDate(2021, 1, 17)));
    EXPECT_TRUE(calendar.IsBold(EncodeDate(2021, 1, 13)));
    EXPECT_FALSE(calendar.IsBold(EncodeDate(2021, 1, 14)));
}

TEST_F(Calendar, KeysStepByTheView)
{
    on(2021, 1, 31);
    key(Qt::Key_PageDown); // no 31 February: its last day
    EXPECT_EQ(date(), "2021-02-28");
    on(2020, 1, 31);
    key(Qt::Key_PageDown);
    EXPECT_EQ(date(), "2020-02-29");
    key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(date(), "2019-02-28");
    on(2021, 3, 10); // a Wednesday
    key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(date(), "2021-03-08");
    key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(date(), "2021-03-14");
    key(Qt::Key_End);
    EXPECT_EQ(date(), "2021-03-31");
    key(Qt::Key_Right);
    EXPECT_EQ(date(), "2021-04-01");
    EXPECT_EQ(calendar.Title(), "April 2021");
    key(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(date(), "2021-03-04");
    key(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(date(), "2021-01-01");

    // Months: four to a row.
    calendar.SetCalendar(cdYear);
    on(2021, 6, 30);
    EXPECT_EQ(calendar.Title(), "2021");
    EXPECT_EQ(cell(1, 1), "Jun");
    key(Qt::Key_Up);
    EXPECT_EQ(date(), "2021-02-28");
    key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(date(), "2021-04-28");

    // Decades show the year before and after; centuries the decades around.
    calendar.SetCalendar(cdDecade);
    on(2020, 5, 5);
    EXPECT_EQ(calendar.Title(), "2020-2029");
    EXPECT_EQ(cell(0, 0), "2019");
    EXPECT_EQ(calendar.SelectedCell(), QPoint(1, 0));
    key(Qt::Key_End);
    EXPECT_EQ(date(), "2029-12-31");
    calendar.SetCalendar(cdCentury);
    on(2020, 5, 5);
    EXPECT_EQ(calendar.Title(), "2000-2099");
    EXPECT_EQ(cell(0, 0), "1990\r1999");
    key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(date(), "1021-05-05");
    on(2020, 5, 5);
    key(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(date(), "3020-05-05");
    key(Qt::Key_PageUp, Qt::ControlModifier);
    key(Qt::Key_PageUp, Qt::ControlModifier);
    key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(date(), "1000-01-01"); // never before the year 1000
    calendar.SetDate(EncodeDate(9500, 1, 1));
    EXPECT_EQ(date(), "8999-12-31");
}

TEST_F(Calendar, TheCaptionZoomsOutAsFarAsAllowedAndCellsZoomIn)
{
    calendar.SetCalendarDepth(cdMonth);
    on(2021, 3, 10);
    QTest::mouseClick(calendar.TitleButton(0), Qt::LeftButton);
    EXPECT_EQ(calendar.GetCalendar(), cdMonth);
    calendar.SetCalendarDepth(cdYear);
    QTest::mouseClick(calendar.TitleButton(0), Qt::LeftButton);
    EXPECT_EQ(calendar.GetCalendar(), cdYear);
    QTest::mouseClick(calendar.TitleButton(0), Qt::LeftButton);
    EXPECT_EQ(calendar.GetCalendar(), cdYear);
    QTest::mouseClick(calendar.TitleButton(1), Qt::LeftButton);
    EXPECT_EQ(date(), "2022-03-10");

    // A month cell opens its days; Return on a year does the same as a click.
    const QRect october = calendar.CellRect(calendar.DataToRawColumn(1), calendar.TitleOffset() + 2);
    QTest::mouseClick(calendar.viewport(), Qt::LeftButton, {}, october.center());
    EXPECT_EQ(calendar.GetCalendar(), cdMonth);
    EXPECT_EQ(date(), "2022-10-10");
    calendar.SetCalendarDepth(cdCentury);
    calendar.SetCalendar(cdDecade);
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    EXPECT_EQ(calendar.GetCalendar(), cdYear);
    EXPECT_EQ(date(), "2023-10-10");
}

TEST_F(Calendar, TodayAndTheLookAtAnyScaling)
{
    bool closed = false, taken = false;
    calendar.OnCloseUp = [&](bool accept) {
        closed = true;
        taken = accept;
    };
    calendar.SetShowToday(true);
    calendar.SetShowTodayCircle(true);
    calendar.SetShowWeekNumbers(true);
    on(2001, 1, 1);
    ASSERT_TRUE(calendar.TodayButton()->isVisible());
    QTest::mouseClick(calendar.TodayButton(), Qt::LeftButton);
    EXPECT_EQ(calendar.GetDate(), Date());
    EXPECT_FALSE(closed); // today is shown; the calendar stays

    const QImage shot = calendar.grab().toImage();
    // The test also runs at 150%: the picture is drawn at the screen's density.
    EXPECT_EQ(shot.size(), calendar.size() * calendar.devicePixelRatioF());
    const QRect todayCell = calendar.CellRect(calendar.DataToRawColumn(calendar.SelectedCell().x() + 1),
                                              calendar.TitleOffset() + calendar.SelectedCell().y());
    EXPECT_GT(DistinctColors(calendar.viewport()->grab(todayCell).toImage()), 2);
    EXPECT_TRUE(calendar.viewport()->rect().contains(todayCell));

    calendar.SetAutoTodayClose(true);
    on(2001, 1, 1);
    QTest::mouseClick(calendar.TodayButton(), Qt::LeftButton);
    EXPECT_TRUE(closed && taken);
    EXPECT_EQ(calendar.GetDate(), Date());
}

namespace {

class CalendarInCells : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        test::AddField(orders, QStringLiteral("Due"), ftDate);
        test::AddField(orders, QStringLiteral("At"), ftTime);
        orders.CreateDataSet();
        orders.AppendRecord({Variant::FromDateTime(EncodeDate(2024, 2, 28)), Variant::Null()});
        orders.First();
        source.SetDataSet(&orders);
        grid.resize(500, 200);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    TQDBPopupCalendar *calendar(TQDBGridEditor *editor)
    {
        auto *list = editor ? qobject_cast<TQDBGridCalendar *>(editor->PopupList()) : nullptr;
        return list && list->Showing() ? list->Calendar() : nullptr;
    }
    TQDBGridEditor *cellEditor() { return qobject_cast<TQDBGridEditor *>(grid.InplaceEditor()); }
    QString due() { return FormatDateTime("yyyy-mm-dd", orders.FieldByName(QStringLiteral("Due"))->AsDateTime()); }

    const ScopedFormatSettings invariant{TFormatSettings::Invariant()};
    TMemTable orders;
    TDataSource source;
    TQDBGrid grid;
    MessageLog messages;
};

} // namespace

TEST_F(CalendarInCells, ADateCellPicksItsDay)
{
    // Dates get the calendar by themselves; a time of day does not.
    EXPECT_EQ(grid.GetEditorStyle(grid.GetColumns()->Items(0)), edsDropDownList);
    EXPECT_EQ(grid.GetEditorListClass(grid.GetColumns()->Items(1)), nullptr);
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(calendar(cellEditor()), nullptr);
    EXPECT_EQ(calendar(cellEditor())->GetDate(), EncodeDate(2024, 2, 28));
    QTest::keyClick(calendar(cellEditor()), Qt::Key_Right);
    QTest::keyClick(calendar(cellEditor()), Qt::Key_Right); // over the leap day
    QTest::keyClick(calendar(cellEditor()), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(due(), "2024-03-01") << messages.texts.join(QLatin1Char('\n')).toStdString();
    EXPECT_FALSE(grid.EditorMode()); // the date taken commits the cell
    orders.Post();

    // A text that is no date opens on today and stays until a date is taken.
    QTest::keyClick(&grid, Qt::Key_F2);
    cellEditor()->selectAll();
    QTest::keyClicks(cellEditor(), QStringLiteral("soon"));
    QTest::keyClick(cellEditor(), Qt::Key_F4);
    ASSERT_NE(calendar(cellEditor()), nullptr);
    EXPECT_EQ(calendar(cellEditor())->GetDate(), Date());
    QTest::keyClick(calendar(cellEditor()), Qt::Key_Escape);
    EXPECT_EQ(cellEditor()->text(), "soon");
    QTest::keyClick(cellEditor(), Qt::Key_Escape);
    orders.Cancel();
    EXPECT_EQ(due(), "2024-03-01");
}

TEST_F(CalendarInCells, AnEditBoxDropsItDownAndAsksForItsBoldDays)
{
    QWidget form;
    auto *editor = new TQDBEditor(&form);
    editor->SetDataSource(&source);
    editor->SetDataField(QStringLiteral("Due"));
    editor->OnCalcBoldDays = [](QObject *, TDateTime day, bool &bold) { bold = DayOf(day) == 1; };
    form.show();
    editor->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(editor->GetEditorStyle(), edsDropDownList);
    QTest::keyClick(editor, Qt::Key_Down, Qt::AltModifier);
    ASSERT_NE(calendar(editor), nullptr);
    EXPECT_TRUE(qobject_cast<TQDBEditorCalendar *>(editor->PopupList()));
    EXPECT_TRUE(calendar(editor)->IsBold(EncodeDate(2024, 2, 1)));
    // A click on a day takes it.
    TQDBPopupCalendar *popup = calendar(editor);
    const QRect first = popup->CellRect(popup->DataToRawColumn(4), popup->TitleOffset());
    QTest::mouseClick(popup->viewport(), Qt::LeftButton, {}, first.center()); // Thursday 1 February
    QApplication::processEvents();
    EXPECT_EQ(calendar(editor), nullptr);
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(due(), "2024-02-01");
}
