#pragma once

// The calendar that drops down under a date cell or edit box: days of a month, months of a
// year, years of a decade or decades of a century, in a small grid whose cells come from a
// virtual data set.

#include "QDBDropDown.h"

#include "data/QDBCustData.h"
#include "platform/rtl/DateTime.h"

class QToolButton;

namespace qdb {

// The cells of one view of the calendar: 6 weeks of 7 days and the week number, or 3 rows
// of 4 months, years or decades.
class TQDBMonthData : public TQDBCustomData
{
    Q_OBJECT

public:
    explicit TQDBMonthData(QObject *parent = nullptr);

    TCalendarDepth Depth() const { return depth_; }
    // Changes the view; the data set is closed and its fields made anew.
    void SetDepth(TCalendarDepth depth);
    // Sets the period shown to the one holding date; the cells follow.
    void SetMonthDate(TDateTime date);
    // The first day of the period and the date of the top-left cell.
    TDateTime StartDate() const { return start_; }
    TDateTime FirstDate() const { return first_; }
    // The date a cell stands for: its day, or the first day of its month, year or decade.
    TDateTime CellDate(int row, int cell) const;
    int Rows() const { return depth_ == cdMonth ? 6 : 3; }
    int Cells() const { return depth_ == cdMonth ? 7 : 4; }

protected:
    void DoOnCountRecords(int &count) override { count = Rows(); }
    void DoOnGetFieldData(int index, TField *field, Variant &value) override;

private:
    TCalendarDepth depth_ = cdMonth;
    TDateTime start_ = 0;
    TDateTime first_ = 0;
};

// The date picker. Arrows in its title step one period, the caption zooms out to a coarser
// view (no further than CalendarDepth), a cell zooms in or, among the days, takes the date.
class TQDBPopupCalendar : public TQDBPopupList
{
    Q_OBJECT

public:
    explicit TQDBPopupCalendar(QWidget *editBox);

    // The date shown and selected, kept between the years 1000 and 8999.
    void SetDate(TDateTime date);
    TDateTime GetDate() const { return date_; }
    // The same with a time of day, which the calendar keeps as it is.
    void SetDateTime(TDateTime dateTime);
    TDateTime GetDateTime() const { return date_ + time_; }
    // A text as typed: a date opens on it, anything else on today.
    void SetResult(const QString &text);
    QString GetResult() const;
    TCalendarDepth GetCalendar() const { return data_.Depth(); }
    // Changes the view; a view coarser than CalendarDepth is not offered.
    void SetCalendar(TCalendarDepth depth);
    TCalendarDepth CalendarDepth() const { return calendarDepth_; }
    void SetCalendarDepth(TCalendarDepth depth) { calendarDepth_ = depth; }
    void SetBoldSundays(bool on);
    void SetShowToday(bool on);
    void SetShowTodayCircle(bool on);
    void SetShowWeekNumbers(bool on);
    // Whether clicking "Today" also takes the date.
    void SetAutoTodayClose(bool on) { autoTodayClose_ = on; }
    QString Title() const { return title_; }
    // The cell of the selected date: row and position in the row.
    QPoint SelectedCell() const { return selected_; }
    bool IsBold(TDateTime day) const;

    // The title: -1 the previous period, 0 the caption, 1 the next period.
    virtual void TitleClick(int part);
    virtual void CellClick(int row, int cell);
    // "Today" was clicked.
    virtual void TodayClick();
    QSize CalcSize() override;
    QToolButton *TodayButton() const { return today_; }
    QToolButton *TitleButton(int part) const;

    TCalcBoldDaysEvent OnCalcBoldDays;

protected:
    void KeyDown(QKeyEvent *event) override;
    void DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool ClickAccepts() const override { return false; }

private:
    void layOut();
    void computeBoldDays();
    // Steps by the keys of the current view; false for a key that is not a step.
    bool stepKey(int key, bool ctrl);
    // A date moved by a number of cells of the current view.
    TDateTime byCells(int cells) const;
    int cellSize() const;

    TQDBMonthData data_;
    TDateTime date_ = 0;
    TDateTime time_ = 0;
    TDateTime boldFirst_ = 0;
    quint64 boldDays_ = 0;
    bool boldComputed_ = false;
    QPoint selected_;
    QString title_;
    TCalendarDepth calendarDepth_ = cdDecade;
    bool boldSundays_ = false;
    bool showToday_ = false;
    bool showTodayCircle_ = false;
    bool showWeekNumbers_ = false;
    bool autoTodayClose_ = false;
    QToolButton *previous_;
    QToolButton *caption_;
    QToolButton *next_;
    QToolButton *today_;
};

// The calendar under a grid cell: opened on the cell's date, handing back the date chosen.
class TQDBGridCalendar : public TQDBGridDropDownList
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBGridCalendar(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);
    TQDBPopupCalendar *Calendar() const;

protected:
    TQDBPopupList *CreatePopup() override;
    void DoDropDown() override;
    void DoCloseUp(bool accept) override;
};

// The same for a free-standing editor, whose OnCalcBoldDays it asks.
class TQDBEditorCalendar : public TQDBGridCalendar
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBEditorCalendar(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);

protected:
    void DoDropDown() override;
};

} // namespace qdb
