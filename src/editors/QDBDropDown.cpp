// The popup list window and the host an editor makes for each drop-down.

#include "QDBDropDown.h"

#include "QDBEditor.h"

#include "grid/QDBGridPrivate.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionButton>

namespace qdb {

namespace {
// Rows a list shows when nothing sets its height.
constexpr int DefaultDropDownRows = 8;
} // namespace

TQDBPopupList::TQDBPopupList(QWidget *editBox) : TQCustomDBGrid(editBox), editBox_(editBox)
{
    setObjectName(QStringLiteral("PopupList"));
    setWindowFlags(Qt::Popup | Qt::FramelessWindowHint);
    setFrameShape(QFrame::Box);
    SetOptions((GetOptions() - TQDBGridOptions{dgEditing, dgIndicator, dgTitles, dgTitleClick, dgTitleHotTrack,
                                                dgConfirmDelete, dgMultiSelect})
               + TQDBGridOptions{dgRowSelect, dgAlwaysShowSelection});
    SetReadOnly(true);
    SetDataSource(&source_);
}

TQDBPopupList::~TQDBPopupList()
{
    // The grid lets go of the source before the source goes.
    SetDataSource(nullptr);
}

void TQDBPopupList::SetCheckList(bool on)
{
    checkList_ = on;
    const TQDBGridOptions ticks{dgMultiSelect, dgIndicator};
    SetOptions(on ? GetOptions() + ticks : GetOptions() - ticks);
    if (on)
        SetMultiSelect(msRows);
}

void TQDBPopupList::ToggleCheck()
{
    TDataSet *ds = DataSet();
    if (!checkList_ || !ds || !ds->Active() || ds->IsEmpty())
        return;
    SelectedRows().SetCurrentRowSelected(!SelectedRows().CurrentRowSelected());
    InvalidateGrid();
}

bool TQDBPopupList::moveChecked(int key, bool ctrl)
{
    // Moving through a list of ticks keeps them: only a click or Space turns one.
    TDataSet *ds = DataSet();
    if (!ds || !ds->Active())
        return false;
    const int page = qMax(1, VisibleRowCount());
    switch (key) {
    case Qt::Key_Up: MoveBy(-1); return true;
    case Qt::Key_Down: MoveBy(1); return true;
    case Qt::Key_PageUp: MoveBy(-page); return true;
    case Qt::Key_PageDown: MoveBy(page); return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        if (!ctrl)
            return false;
        if (key == Qt::Key_Home)
            ds->First();
        else
            ds->Last();
        return true;
    default: return false;
    }
}

void TQDBPopupList::DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state)
{
    const int record = row - TitleOffset();
    TQGridDataLink *link = DataLink();
    if (!checkList_ || col >= IndicatorOffset() || record < 0 || !link->Active() || record >= link->RecordCount()
        || DataSet()->IsEmpty()) {
        TQCustomDBGrid::DrawCell(painter, col, row, rect, state);
        return;
    }
    painter.fillRect(rect, CellColor());
    bool ticked = false;
    {
        const ActiveRecordScope scope(*link, record);
        ticked = SelectedRows().CurrentRowSelected();
    }
    QStyleOptionButton box;
    box.initFrom(this);
    const int w = style()->pixelMetric(QStyle::PM_IndicatorWidth, &box, this);
    const int h = style()->pixelMetric(QStyle::PM_IndicatorHeight, &box, this);
    box.rect = QRect(rect.x() + (rect.width() - w) / 2, rect.y() + (rect.height() - h) / 2, w, h);
    box.state = (box.state & ~QStyle::State_HasFocus) | (ticked ? QStyle::State_On : QStyle::State_Off);
    style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, this);
}

void TQDBPopupList::mousePressEvent(QMouseEvent *event)
{
    if (!checkList_ || event->button() != Qt::LeftButton) {
        TQCustomDBGrid::mousePressEvent(event);
        return;
    }
    // A click ticks the row it lands on and leaves the others as they are.
    const QPoint at = event->position().toPoint();
    const QPoint cell = MouseCoord(at.x(), at.y());
    TQGridDataLink *link = DataLink();
    const int record = cell.y() - TitleOffset();
    if (!rect().contains(at) || record < 0 || !link->Active() || record >= link->RecordCount()) {
        TQCustomDBGrid::mousePressEvent(event);
        return;
    }
    DataSet()->MoveBy(record - link->ActiveRecord());
    ToggleCheck();
    event->accept();
}

void TQDBPopupList::CloseUp(bool accept)
{
    if (!open_)
        return;
    open_ = false;
    HideList();
    if (OnCloseUp)
        OnCloseUp(accept);
}

void TQDBPopupList::DropDown(const QPoint &point)
{
    ShowList(point);
}

void TQDBPopupList::HideList()
{
    hide();
}

void TQDBPopupList::ShowList(const QPoint &point)
{
    resize(CalcSize());
    move(point);
    open_ = true;
    show();
    setFocus(Qt::PopupFocusReason);
}

QSize TQDBPopupList::CalcSize()
{
    int rows = DropDownRows > 0 ? DropDownRows : DefaultDropDownRows;
    TDataSet *ds = DataSet();
    // A short list is as high as its rows; a long one is not counted just to be sized.
    if (DropDownRows <= 0 && ds && ds->Active() && ds->RecordCountKnown())
        rows = qBound(1, ds->RecordCount(), DefaultDropDownRows);
    const int line = GridLineWidth();
    const int rowHeight = (RowCount() > FixedRows() ? RowHeights(FixedRows()) : DefaultRowHeight()) + line;
    int titles = 0;
    for (int r = 0; r < FixedRows(); ++r)
        titles += RowHeights(r) + line;
    int columns = 0; // the ticks' column too
    for (int c = 0; c < ColCount(); ++c)
        columns += qMax(0, ColWidths(c)) + line;
    const int frame = 2 * frameWidth();
    const int scrollBar = verticalScrollBar()->sizeHint().width();
    int width = qMax(MinWidth, columns + frame + scrollBar);
    // Wide lists scroll sideways rather than run off the screen.
    if (const QScreen *on = editBox_ ? editBox_->screen() : screen())
        width = qMin(width, on->availableGeometry().width());
    return {width, titles + rows * rowHeight + frame};
}

void TQDBPopupList::PlaceUnder(const QRect &anchor)
{
    const QSize size = CalcSize();
    QScreen *screen = QGuiApplication::screenAt(anchor.center());
    if (!screen && editBox_)
        screen = editBox_->screen();
    const QRect avail = screen ? screen->availableGeometry() : QRect(anchor.topLeft(), size);
    int x = layoutDirection() == Qt::RightToLeft ? anchor.right() + 1 - size.width() : anchor.left();
    int y = anchor.bottom() + 1;
    if (y + size.height() > avail.bottom() + 1 && anchor.top() - size.height() >= avail.top())
        y = anchor.top() - size.height();
    x = qMax(avail.left(), qMin(x, avail.right() + 1 - size.width()));
    ShowList(QPoint(x, y));
}

void TQDBPopupList::KeyDown(QKeyEvent *event)
{
    const int key = event->key();
    const Qt::KeyboardModifiers shift = event->modifiers();
    const bool alt = shift.testFlag(Qt::AltModifier);
    const bool ctrl = shift.testFlag(Qt::ControlModifier);
    if (checkList_ && !alt && moveChecked(key, ctrl))
        return;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        CloseUp(true);
        return;
    case Qt::Key_Escape:
        CloseUp(false);
        return;
    case Qt::Key_F4:
        if (!alt && !ctrl) {
            CloseUp(true);
            return;
        }
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (alt) {
            CloseUp(true);
            return;
        }
        TQCustomDBGrid::KeyDown(event);
        return;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Left:
    case Qt::Key_Right:
        TQCustomDBGrid::KeyDown(event);
        return;
    case Qt::Key_Home:
    case Qt::Key_End:
        if (ctrl) {
            TQCustomDBGrid::KeyDown(event);
            return;
        }
        break;
    case Qt::Key_Space:
        if (checkList_ && shift == Qt::NoModifier) {
            ToggleCheck();
            return;
        }
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        CloseUp(false);
        break;
    default:
        break;
    }
    // Typing goes on in the edit box, which finds what is typed in this list.
    if (editBox_)
        QCoreApplication::sendEvent(editBox_, event);
}

void TQDBPopupList::mouseReleaseEvent(QMouseEvent *event)
{
    const QPoint at = event->position().toPoint();
    const QPoint cell = MouseCoord(at.x(), at.y());
    TQCustomDBGrid::mouseReleaseEvent(event);
    // Ticking rows takes several clicks; Return takes them.
    if (ClickAccepts() && event->button() == Qt::LeftButton && rect().contains(at) && cell.y() >= FixedRows())
        CloseUp(true);
}

void TQDBPopupList::hideEvent(QHideEvent *event)
{
    TQCustomDBGrid::hideEvent(event);
    // Hidden by an outside click or by its window going: nothing was chosen.
    CloseUp(false);
}

TQDBGridDropDownList::TQDBGridDropDownList(TQDBGridEditor *editor, TQColumn *column)
    : QObject(editor), editor_(editor), column_(column)
{
}

TQDBGridDropDownList::TQDBGridDropDownList(TQCustomDBGrid *grid, TQColumn *column)
    : QObject(grid), grid_(grid), column_(column)
{
}

TQDBGridDropDownList::~TQDBGridDropDownList()
{
    delete popup_.data();
}

TQCustomDBGrid *TQDBGridDropDownList::Grid() const
{
    return editor_ ? editor_->DBGrid() : grid_;
}

TQDBPopupList *TQDBGridDropDownList::CreatePopup()
{
    return new TQDBPopupList(editor_ ? static_cast<QWidget *>(editor_) : grid_);
}

TDataSet *TQDBGridDropDownList::ListDataSet() const
{
    return popup_ ? popup_->ListSource()->DataSet() : nullptr;
}

TQListOptions TQDBGridDropDownList::ListOptions() const
{
    return column_ ? column_->GetListOptions() : TQListOptions{};
}

void TQDBGridDropDownList::DropDown()
{
    if (Showing())
        return;
    if (!popup_) {
        popup_ = CreatePopup();
        popup_->OnCloseUp = [this](bool accept) { closed(accept); };
    }
    try {
        DoDropDown();
    } catch (...) {
        delete popup_.data();
        throw;
    }
    popup_->DropDownRows = column_ ? column_->GetDropDownRows() : 0;
    popup_->MinWidth = qMax(bounds_.width(), column_ ? column_->GetDropDownWidth() : 0);
    if (OnDropDown)
        OnDropDown(editor_, this);
    QWidget *origin = !editor_ ? grid_->viewport() : editor_->parentWidget() ? editor_->parentWidget() : editor_;
    popup_->PlaceUnder(QRect(origin->mapToGlobal(bounds_.topLeft()), bounds_.size()));
}

void TQDBGridDropDownList::CloseUp(bool accept)
{
    if (popup_)
        popup_->CloseUp(accept);
}

void TQDBGridDropDownList::closed(bool accept)
{
    DoCloseUp(accept);
    if (OnCloseUp)
        OnCloseUp(this, accept);
}

bool TQDBGridDropDownList::SelectListItem(const QString &, QString &)
{
    return false;
}

bool TQDBGridDropDownList::SelectNextItem(bool, bool, QString &)
{
    return false;
}

QString TQDBGridDropDownList::ListText() const
{
    return {};
}

} // namespace qdb
