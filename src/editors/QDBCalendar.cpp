// The popup calendar: the cells of its four views, its title and "Today" bar, the keys and
// clicks that move through dates, and the hosts that drop it down.

#include "QDBCalendar.h"

#include "QDBDataEditor.h"
#include "QDBEditor.h"

#include "platform/rtl/DateUtils.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/rtl/FormatSettings.h"

#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>

namespace qdb {

namespace {
// 1000-01-01 and 8999-12-31 as day serials.
constexpr TDateTime FirstDay = -328716;
constexpr TDateTime LastDay = 2593223;

} // namespace

// ---- the cells ----

TQDBMonthData::TQDBMonthData(QObject *parent) : TQDBCustomData(parent)
{
    SetReadOnly(true);
    SetDepth(cdMonth);
}

void TQDBMonthData::SetDepth(TCalendarDepth depth)
{
    Close();
    depth_ = depth;
    FieldDefs().Clear();
    if (depth == cdMonth) {
        for (int i = 1; i <= 7; ++i)
            FieldDefs().Add(QStringLiteral("D%1").arg(i), ftString, 2);
        FieldDefs().Add(QStringLiteral("Week"), ftInteger);
    } else {
        for (int i = 1; i <= 4; ++i)
            FieldDefs().Add(QStringLiteral("C%1").arg(i), ftString, 12);
    }
}

void TQDBMonthData::SetMonthDate(TDateTime date)
{
    int y = 0, m = 0, d = 0;
    DecodeDate(date, y, m, d);
    switch (depth_) {
    case cdMonth:
        start_ = EncodeDate(y, m, 1);
        // Weeks start on Monday, and the first row never starts on the month's first day.
        first_ = start_ - ((DayOfWeek(start_) + 4) % 7 + 1);
        break;
    case cdYear: first_ = start_ = EncodeDate(y, 1, 1); break;
    case cdDecade:
        start_ = EncodeDate(y / 10 * 10, 1, 1);
        first_ = IncYear(start_, -1);
        break;
    case cdCentury:
        start_ = EncodeDate(y / 100 * 100, 1, 1);
        first_ = IncYear(start_, -10);
        break;
    }
    if (Active())
        Refresh();
}

TDateTime TQDBMonthData::CellDate(int row, int cell) const
{
    const int k = row * 4 + cell;
    switch (depth_) {
    case cdMonth: return first_ + row * 7 + cell;
    case cdYear: return EncodeDate(YearOf(start_), k + 1, 1);
    case cdDecade: return EncodeDate(YearOf(first_) + k, 1, 1);
    case cdCentury: return EncodeDate(YearOf(first_) + k * 10, 1, 1);
    }
    return first_;
}

void TQDBMonthData::DoOnGetFieldData(int index, TField *field, Variant &value)
{
    const int cell = field->Index();
    if (depth_ == cdMonth) {
        if (cell < 7)
            value = QString::number(DayOf(first_ + index * 7 + cell));
        else
            value = WeekOf(first_ + index * 7);
        return;
    }
    const TDateTime date = CellDate(index, cell);
    switch (depth_) {
    case cdYear: value = FormatSettings().ShortMonthNames[MonthOf(date) - 1]; break;
    case cdDecade: value = QString::number(YearOf(date)); break;
    default: value = QStringLiteral("%1\r%2").arg(YearOf(date)).arg(YearOf(date) + 9); break;
    }
}

// ---- the picker ----

TQDBPopupCalendar::TQDBPopupCalendar(QWidget *editBox) : TQDBPopupList(editBox)
{
    setObjectName(QStringLiteral("PopupCalendar"));
    SetOptions(GetOptions() - TQDBGridOptions{dgColLines, dgRowLines, dgColumnResize, dgRowResize, dgRowSelect,
                                               dgAlwaysShowSelection, dgTitleClick});
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const auto makeButton = [this](int part) {
        auto *button = new QToolButton(this);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QToolButton::clicked, this, [this, part] { TitleClick(part); });
        return button;
    };
    previous_ = makeButton(-1);
    previous_->setArrowType(Qt::LeftArrow);
    caption_ = makeButton(0);
    QFont bold = caption_->font();
    bold.setBold(true);
    caption_->setFont(bold);
    next_ = makeButton(1);
    next_->setArrowType(Qt::RightArrow);
    today_ = new QToolButton(this);
    today_->setAutoRaise(true);
    today_->setFocusPolicy(Qt::NoFocus);
    today_->setText(tr("Today: %1").arg(DateToStr(Date())));
    today_->hide();
    connect(today_, &QToolButton::clicked, this, [this] { TodayClick(); });
    ListSource()->SetDataSet(&data_);
    data_.Open();
    layOut();
    SetDate(Date());
}

QToolButton *TQDBPopupCalendar::TitleButton(int part) const
{
    return part < 0 ? previous_ : part > 0 ? next_ : caption_;
}

int TQDBPopupCalendar::cellSize() const
{
    return fontMetrics().horizontalAdvance(QStringLiteral("000")) + fontMetrics().height() / 2;
}

void TQDBPopupCalendar::layOut()
{
    const bool days = GetCalendar() == cdMonth;
    const TQDBGridOptions titles{dgTitles};
    SetOptions(days ? GetOptions() + titles : GetOptions() - titles);
    // The century's decades take two lines; the other coarse views keep the same height.
    SetLinesCount(days ? 1 : 2);
    const int cell = cellSize();
    const TFormatSettings &fs = FormatSettings();
    {
        const CollectionUpdateGuard update(*GetColumns());
        GetColumns()->Clear();
        if (days) {
            TQColumn *week = GetColumns()->Add();
            week->SetFieldName(QStringLiteral("Week"));
            week->GetTitle()->SetCaption(tr("Wk"));
            week->SetVisible(showWeekNumbers_);
            week->SetWidth(cell);
        }
        for (int i = 0; i < data_.Cells(); ++i) {
            TQColumn *column = GetColumns()->Add();
            column->SetFieldName(days ? QStringLiteral("D%1").arg(i + 1) : QStringLiteral("C%1").arg(i + 1));
            column->SetAlignment(taCenter);
            column->SetWidth(days ? cell : cell * 7 / 4);
            if (days) // Monday first
                column->GetTitle()->SetCaption(fs.ShortDayNames[(i + 1) % 7]);
            column->GetTitle()->SetAlignment(taCenter);
        }
    }
    const int bar = fontMetrics().height() + 8;
    setViewportMargins(0, bar, 0, showToday_ ? bar : 0);
    today_->setVisible(showToday_);
    if (isVisible())
        resize(CalcSize());
}

void TQDBPopupCalendar::resizeEvent(QResizeEvent *event)
{
    TQDBPopupList::resizeEvent(event);
    const QRect inner = contentsRect();
    const int bar = fontMetrics().height() + 8;
    previous_->setGeometry(inner.left(), inner.top(), bar, bar);
    next_->setGeometry(inner.right() + 1 - bar, inner.top(), bar, bar);
    caption_->setGeometry(inner.left() + bar, inner.top(), inner.width() - 2 * bar, bar);
    today_->setGeometry(inner.left(), inner.bottom() + 1 - bar, inner.width(), bar);
}

QSize TQDBPopupCalendar::CalcSize()
{
    const int line = GridLineWidth();
    int width = 0;
    for (int c = 0; c < ColCount(); ++c)
        width += qMax(0, ColWidths(c)) + line;
    // As high as the view's rows, whatever the grid holds now.
    int height = data_.Rows() * (DefaultRowHeight() + line);
    for (int r = 0; r < TitleOffset(); ++r)
        height += RowHeights(r) + line;
    const QMargins margins = viewportMargins();
    const int frame = 2 * frameWidth();
    return {width + frame, height + margins.top() + margins.bottom() + frame};
}

void TQDBPopupCalendar::SetDate(TDateTime date)
{
    const TDateTime d = qBound(FirstDay, DateOf(date), LastDay);
    data_.SetMonthDate(d);
    date_ = d;
    int y = 0, m = 0, day = 0;
    DecodeDate(d, y, m, day);
    const int startYear = YearOf(data_.StartDate());
    int k = 0;
    switch (GetCalendar()) {
    case cdMonth: {
        if (!boldComputed_ || boldFirst_ != data_.FirstDate())
            computeBoldDays();
        title_ = FormatDateTime("mmmm yyyy", d);
        const int diff = int(d - data_.FirstDate());
        selected_ = QPoint(diff % 7, diff / 7);
        break;
    }
    case cdYear:
        title_ = FormatDateTime("yyyy", d);
        selected_ = QPoint((m - 1) % 4, (m - 1) / 4);
        break;
    case cdDecade:
        title_ = QStringLiteral("%1-%2").arg(startYear).arg(startYear + 9);
        k = y % 10 + 1;
        selected_ = QPoint(k % 4, k / 4);
        break;
    case cdCentury:
        title_ = QStringLiteral("%1-%2").arg(startYear).arg(startYear + 99);
        k = (y / 10) % 10 + 1;
        selected_ = QPoint(k % 4, k / 4);
        break;
    }
    caption_->setText(title_);
    viewport()->update();
}

void TQDBPopupCalendar::SetDateTime(TDateTime dateTime)
{
    time_ = TimeOf(dateTime);
    SetDate(dateTime);
}

void TQDBPopupCalendar::SetResult(const QString &text)
{
    TDateTime value = 0;
    // A text that is no date opens the calendar on today; the text stays until a date is taken.
    SetDateTime(TryStrToDateTime(text.trimmed(), value) ? value : Date());
}

QString TQDBPopupCalendar::GetResult() const
{
    return time_ == 0 ? DateToStr(GetDate()) : DateTimeToStr(GetDateTime());
}

void TQDBPopupCalendar::SetCalendar(TCalendarDepth depth)
{
    if (depth == GetCalendar() || depth > calendarDepth_)
        return;
    const TDateTime kept = date_;
    data_.SetDepth(depth);
    data_.Open();
    layOut();
    SetDate(kept);
}

void TQDBPopupCalendar::SetBoldSundays(bool on)
{
    boldSundays_ = on;
    boldComputed_ = false;
    SetDate(date_);
}

void TQDBPopupCalendar::SetShowToday(bool on)
{
    showToday_ = on;
    layOut();
}

void TQDBPopupCalendar::SetShowTodayCircle(bool on)
{
    showTodayCircle_ = on;
    viewport()->update();
}

void TQDBPopupCalendar::SetShowWeekNumbers(bool on)
{
    showWeekNumbers_ = on;
    layOut();
}

void TQDBPopupCalendar::computeBoldDays()
{
    boldDays_ = 0;
    boldFirst_ = data_.FirstDate();
    boldComputed_ = true;
    if (!boldSundays_ && !OnCalcBoldDays)
        return;
    for (int i = 0; i < 42; ++i) {
        const TDateTime day = boldFirst_ + i;
        bool bold = boldSundays_ && DayOfWeek(day) == 1;
        if (OnCalcBoldDays)
            OnCalcBoldDays(this, day, bold);
        if (bold)
            boldDays_ |= quint64(1) << i;
    }
}

bool TQDBPopupCalendar::IsBold(TDateTime day) const
{
    const int i = int(DateOf(day) - boldFirst_);
    return boldComputed_ && i >= 0 && i < 42 && (boldDays_ >> i & 1) != 0;
}

void TQDBPopupCalendar::TitleClick(int part)
{
    if (part == 0) {
        if (GetCalendar() != cdCentury)
            SetCalendar(TCalendarDepth(GetCalendar() + 1));
        return;
    }
    static constexpr int years[] = {0, 1, 10, 100};
    SetDate(GetCalendar() == cdMonth ? IncMonth(date_, part) : IncYear(date_, part * years[GetCalendar()]));
}

void TQDBPopupCalendar::CellClick(int row, int cell)
{
    const TDateTime date = data_.CellDate(row, cell);
    int y = 0, m = 0, d = 0;
    DecodeDate(date_, y, m, d);
    switch (GetCalendar()) {
    case cdMonth:
        SetDate(date);
        CloseUp(true);
        break;
    case cdYear:
        SetDate(IncMonth(date_, MonthOf(date) - m));
        SetCalendar(cdMonth);
        break;
    case cdDecade:
        SetDate(IncYear(date_, YearOf(date) - y));
        SetCalendar(cdYear);
        break;
    case cdCentury:
        // The year keeps its place in the decade chosen.
        SetDate(IncYear(date_, YearOf(date) + y % 10 - y));
        SetCalendar(cdDecade);
        break;
    }
}

void TQDBPopupCalendar::TodayClick()
{
    SetDate(Date());
    if (autoTodayClose_)
        CloseUp(true);
}

TDateTime TQDBPopupCalendar::byCells(int cells) const
{
    switch (GetCalendar()) {
    case cdMonth: return IncDay(date_, cells);
    case cdYear: return IncMonth(date_, cells);
    case cdDecade: return IncYear(date_, cells);
    case cdCentury: return IncYear(date_, cells * 10);
    }
    return date_;
}

bool TQDBPopupCalendar::stepKey(int key, bool ctrl)
{
    const TCalendarDepth view = GetCalendar();
    const bool days = view == cdMonth;
    const int rowCells = days ? 7 : 4;
    // One period, and the bigger step of Ctrl+PgUp and Ctrl+PgDn, in years but for the days.
    static constexpr int periodYears[] = {0, 1, 10, 100};
    static constexpr int bigYears[] = {1, 10, 100, 1000};
    const auto period = [&](int n) { return days ? IncMonth(date_, n) : IncYear(date_, n * periodYears[view]); };
    const auto startOf = [](TCalendarDepth unit, TDateTime d) {
        switch (unit) {
        case cdMonth: return StartOfTheMonth(d);
        case cdYear: return StartOfTheYear(d);
        case cdDecade: return StartOfTheDecade(d);
        default: return StartOfTheCentury(d);
        }
    };
    const auto endOf = [](TCalendarDepth unit, TDateTime d) {
        switch (unit) {
        case cdMonth: return DateOf(EndOfTheMonth(d));
        case cdYear: return DateOf(EndOfTheYear(d));
        case cdDecade: return DateOf(EndOfTheDecade(d));
        default: return DateOf(EndOfTheCentury(d));
        }
    };
    // Ctrl+Home and Ctrl+End reach one unit further out, a century at most.
    const TCalendarDepth outer = TCalendarDepth(qMin(int(cdCentury), int(view) + 1));
    TDateTime to = date_;
    switch (key) {
    case Qt::Key_Left:
        to = !ctrl ? byCells(-1) : days ? StartOfTheWeek(date_) : byCells(-selected_.x());
        break;
    case Qt::Key_Right:
        to = !ctrl ? byCells(1) : days ? DateOf(EndOfTheWeek(date_)) : byCells(rowCells - 1 - selected_.x());
        break;
    case Qt::Key_Up: to = !ctrl ? byCells(-rowCells) : days ? IncDay(date_, -28) : period(-1); break;
    case Qt::Key_Down: to = !ctrl ? byCells(rowCells) : days ? IncDay(date_, 28) : period(1); break;
    case Qt::Key_PageUp:
        // The century view steps back 999 years and on 1000: both stay inside the years shown.
        to = !ctrl ? period(-1) : IncYear(date_, view == cdCentury ? -999 : -bigYears[view]);
        break;
    case Qt::Key_PageDown: to = !ctrl ? period(1) : IncYear(date_, bigYears[view]); break;
    case Qt::Key_Home: to = startOf(ctrl ? outer : view, date_); break;
    case Qt::Key_End: to = endOf(ctrl ? outer : view, date_); break;
    default: return false;
    }
    SetDate(to);
    return true;
}

void TQDBPopupCalendar::KeyDown(QKeyEvent *event)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    const bool alt = mods.testFlag(Qt::AltModifier);
    if (!alt && stepKey(event->key(), mods.testFlag(Qt::ControlModifier)))
        return;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Return takes a day; on months, years and decades it opens the one selected.
        if (GetCalendar() == cdMonth)
            CloseUp(true);
        else
            CellClick(selected_.y(), selected_.x());
        return;
    case Qt::Key_Escape:
    case Qt::Key_F4:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Up:
    case Qt::Key_Down:
        TQDBPopupList::KeyDown(event);
        return;
    default: return; // typing belongs to the cell once the calendar is closed
    }
}

void TQDBPopupCalendar::DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state)
{
    const int record = row - TitleOffset();
    TQColumn *column = ColumnAt(col);
    TField *field = column ? column->GetField() : nullptr;
    if (record < 0 || !field || !DataLink()->Active()) {
        TQDBPopupList::DrawCell(painter, col, row, rect, state);
        return;
    }
    const QPalette &pal = palette();
    painter.fillRect(rect, CellColor());
    QString text = CellText(col, row);
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const int cell = field->Index();
    const TCalendarDepth view = GetCalendar();
    if (view == cdMonth && cell == 7) { // the week number
        painter.setPen(pal.color(QPalette::Disabled, QPalette::Text));
        painter.drawText(rect, Qt::AlignCenter, text);
        return;
    }
    const TDateTime date = data_.CellDate(record, cell);
    const bool selected = selected_ == QPoint(cell, record);
    // Days of the months around, and the years and decades around, are only for stepping.
    bool around = false;
    switch (view) {
    case cdMonth: around = MonthOf(date) != MonthOf(data_.StartDate()); break;
    case cdDecade:
    case cdCentury: around = (record == 0 && cell == 0) || (record == 2 && cell == 3); break;
    default: break;
    }
    QColor ink = pal.color(around ? QPalette::Disabled : QPalette::Active, QPalette::Text);
    if (selected) {
        painter.fillRect(rect.adjusted(1, 1, -1, -1), pal.color(QPalette::Highlight));
        ink = pal.color(QPalette::HighlightedText);
    }
    if (view == cdMonth && showTodayCircle_ && date == Date()) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(220, 0, 0), 1.5));
        painter.drawEllipse(QRectF(rect).adjusted(1.5, 1.5, -1.5, -1.5));
        painter.restore();
    }
    QFont font = painter.font();
    font.setBold(view == cdMonth && IsBold(date));
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(rect, Qt::AlignCenter, text);
}

void TQDBPopupCalendar::mousePressEvent(QMouseEvent *event)
{
    const QPoint at = event->position().toPoint();
    const QPoint cell = MouseCoord(at.x(), at.y());
    const int record = cell.y() - TitleOffset();
    TQColumn *column = cell.x() >= 0 ? ColumnAt(cell.x()) : nullptr;
    TField *field = column ? column->GetField() : nullptr;
    event->accept();
    if (event->button() != Qt::LeftButton || record < 0 || record >= data_.Rows() || !field
        || field->Index() >= data_.Cells())
        return;
    CellClick(record, field->Index());
}

void TQDBPopupCalendar::wheelEvent(QWheelEvent *event)
{
    const int delta = event->angleDelta().y();
    if (delta != 0)
        TitleClick(delta > 0 ? -1 : 1);
    event->accept();
}

// ---- the hosts ----

TQDBGridCalendar::TQDBGridCalendar(TQDBGridEditor *editor, TQColumn *column) : TQDBGridDropDownList(editor, column) {}

TQDBPopupCalendar *TQDBGridCalendar::Calendar() const
{
    return qobject_cast<TQDBPopupCalendar *>(Popup());
}

TQDBPopupList *TQDBGridCalendar::CreatePopup()
{
    return new TQDBPopupCalendar(Editor());
}

void TQDBGridCalendar::DoDropDown()
{
    TQDBPopupCalendar *calendar = Calendar();
    const TQListOptions options = ListOptions();
    calendar->SetCalendarDepth(Column() ? Column()->GetCalendarDepth() : cdDecade);
    calendar->SetShowToday(options.Contains(loShowToday));
    calendar->SetShowTodayCircle(options.Contains(loShowTodayCircle));
    calendar->SetShowWeekNumbers(options.Contains(loShowWeekNumbers));
    calendar->SetAutoTodayClose(options.Contains(loAutoTodayClose));
    calendar->SetBoldSundays(options.Contains(loBoldSundays));
    // What the cell shows now, typed or stored, is the date it opens on.
    calendar->SetResult(Editor()->text());
}

void TQDBGridCalendar::DoCloseUp(bool accept)
{
    if (accept)
        Value = Variant::FromDateTime(Calendar()->GetDateTime());
}

TQDBEditorCalendar::TQDBEditorCalendar(TQDBGridEditor *editor, TQColumn *column) : TQDBGridCalendar(editor, column) {}

void TQDBEditorCalendar::DoDropDown()
{
    if (auto *owner = qobject_cast<TQDBCustomEditor *>(Editor()))
        Calendar()->OnCalcBoldDays = owner->OnCalcBoldDays;
    TQDBGridCalendar::DoDropDown();
}

} // namespace qdb
