// Keyboard and mouse handling of the plain grid.

#include "Grids.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>

namespace qdb {

namespace {
// How close to a column's right edge the pointer must be to resize it.
constexpr int sizingZone = 3;
} // namespace

bool TCustomGrid::SelectCell(int, int)
{
    return true;
}

void TCustomGrid::KeyDown(QKeyEvent *event)
{
    const bool ctrl = event->modifiers().testFlag(Qt::ControlModifier);
    const int page = qMax(1, VisibleRowCount());
    switch (event->key()) {
    case Qt::Key_Up: FocusCell(col_, row_ - 1); break;
    case Qt::Key_Down: FocusCell(col_, row_ + 1); break;
    case Qt::Key_Left: FocusCell(col_ - 1, row_); break;
    case Qt::Key_Right: FocusCell(col_ + 1, row_); break;
    case Qt::Key_PageUp:
        SetTopRow(TopRow() - page);
        FocusCell(col_, row_ - page);
        break;
    case Qt::Key_PageDown:
        SetTopRow(TopRow() + page);
        FocusCell(col_, row_ + page);
        break;
    case Qt::Key_Home:
        if (ctrl)
            FocusCell(FixedCols(), FixedRows());
        else
            FocusCell(FixedCols(), row_);
        break;
    case Qt::Key_End:
        if (ctrl)
            FocusCell(ColCount() - 1, RowCount() - 1);
        else
            FocusCell(ColCount() - 1, row_);
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: {
        const bool back = event->key() == Qt::Key_Backtab || event->modifiers().testFlag(Qt::ShiftModifier);
        if (back) {
            if (col_ > FixedCols())
                FocusCell(col_ - 1, row_);
            else if (row_ > FixedRows())
                FocusCell(ColCount() - 1, row_ - 1);
        } else {
            if (col_ < ColCount() - 1)
                FocusCell(col_ + 1, row_);
            else if (row_ < RowCount() - 1)
                FocusCell(FixedCols(), row_ + 1);
        }
        break;
    }
    case Qt::Key_F2: ShowEditor(); break;
    default: event->ignore(); return;
    }
    event->accept();
}

void TCustomGrid::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) && !options_.Contains(goTabs)) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    event->accept();
    KeyDown(event);
    if (!event->isAccepted())
        QAbstractScrollArea::keyPressEvent(event);
}

bool TCustomGrid::focusNextPrevChild(bool next)
{
    // With Tab moving between cells, keep the focus in the grid.
    if (options_.Contains(goTabs))
        return false;
    return QAbstractScrollArea::focusNextPrevChild(next);
}

bool TCustomGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == editor_ && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        switch (key->key()) {
        case Qt::Key_Escape:
            if (auto *edit = qobject_cast<QLineEdit *>(editor_.data())) { // back to the cell's value
                edit->setText(GetEditText(col_, row_));
                SetEditText(col_, row_, edit->text());
            }
            HideEditor();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (AcceptEditText())
                HideEditor();
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            keyPressEvent(key);
            return true;
        default:
            break;
        }
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

int TCustomGrid::sizingColumnAt(int x, int y) const
{
    if (!options_.Contains(goColSizing) || y < 0 || y >= rows_.FixedExtent())
        return -1;
    for (int c = 0; c < ColCount(); ++c) {
        const int pos = cols_.Position(c);
        if (pos < 0 || cols_.Size(c) < 0)
            continue;
        const int edge = pos + cols_.Size(c);
        if (qAbs(x - edge) <= sizingZone)
            return c;
        if (pos > x + sizingZone)
            break;
    }
    return -1;
}

void TCustomGrid::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mousePressEvent(event);
        return;
    }
    setFocus();
    const QPoint p = event->position().toPoint();
    const int sizing = sizingColumnAt(p.x(), p.y());
    if (sizing >= 0) {
        drag_ = Drag::Sizing;
        dragCol_ = sizing;
        sizingOrigin_ = cols_.Position(sizing);
        return;
    }
    const QPoint cell = MouseCoord(p.x(), p.y());
    if (cell.x() < 0)
        return;
    if (cell.x() < FixedCols() || cell.y() < FixedRows())
        pressedFixed_ = cell;
    if (cell.y() < FixedRows() && cell.x() >= FixedCols() && options_.Contains(goColMoving)) {
        drag_ = Drag::MaybeMoving;
        dragCol_ = cell.x();
        dragStart_ = p;
        return;
    }
    if (cell.x() >= FixedCols() && cell.y() >= FixedRows()) {
        const bool same = cell.x() == col_ && cell.y() == row_;
        FocusCell(cell.x(), cell.y());
        if (same && options_.Contains(goEditing) && !EditorMode())
            ShowEditor(); // a second click on the current cell edits it
    }
}

void TCustomGrid::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint p = event->position().toPoint();
    switch (drag_) {
    case Drag::Sizing:
        SetColWidths(dragCol_, qMax(0, p.x() - sizingOrigin_));
        return;
    case Drag::MaybeMoving:
        if ((p - dragStart_).manhattanLength() >= QApplication::startDragDistance()) {
            drag_ = Drag::Moving;
            viewport()->setCursor(Qt::ClosedHandCursor);
        }
        return;
    case Drag::Moving:
        return;
    case Drag::None:
        viewport()->setCursor(sizingColumnAt(p.x(), p.y()) >= 0 ? Qt::SplitHCursor : Qt::ArrowCursor);
        return;
    }
}

void TCustomGrid::mouseReleaseEvent(QMouseEvent *event)
{
    const QPoint p = event->position().toPoint();
    if (drag_ == Drag::Moving) {
        int target = cols_.CellAt(qBound(0, p.x(), viewport()->width() - 1));
        if (target < 0)
            target = p.x() < cols_.FixedExtent() ? FixedCols() : ColCount() - 1;
        target = qMax(FixedCols(), target);
        if (target != dragCol_)
            moveColumn(dragCol_, target);
    }
    if (drag_ != Drag::None)
        viewport()->setCursor(Qt::ArrowCursor);
    const bool clicked = drag_ != Drag::Moving && drag_ != Drag::Sizing && pressedFixed_.x() >= 0
        && MouseCoord(p.x(), p.y()) == pressedFixed_;
    const QPoint fixed = pressedFixed_;
    drag_ = Drag::None;
    dragCol_ = -1;
    pressedFixed_ = {-1, -1};
    if (clicked && event->button() == Qt::LeftButton)
        FixedCellClick(fixed.x(), fixed.y(), event->modifiers());
}

void TCustomGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QPoint p = event->position().toPoint();
    // A double click on a title's border fits the column to what it shows.
    if (const int sizing = sizingColumnAt(p.x(), p.y()); sizing >= 0 && event->button() == Qt::LeftButton) {
        drag_ = Drag::None;
        FitColumn(sizing);
        return;
    }
    const QPoint cell = MouseCoord(p.x(), p.y());
    // On a title or a fixed cell the second click of a quick pair is a click of its own.
    if (cell.x() >= 0 && (cell.x() < FixedCols() || cell.y() < FixedRows())) {
        mousePressEvent(event);
        return;
    }
    if (cell.x() >= FixedCols() && cell.y() >= FixedRows() && options_.Contains(goEditing))
        ShowEditor();
}

void TCustomGrid::moveColumn(int from, int to)
{
    const int width = cols_.Size(from);
    // Shift the widths between the two places along with the column.
    if (from < to)
        for (int c = from; c < to; ++c)
            cols_.SetSize(c, cols_.Size(c + 1));
    else
        for (int c = from; c > to; --c)
            cols_.SetSize(c, cols_.Size(c - 1));
    cols_.SetSize(to, width);
    if (col_ == from)
        col_ = to;
    else if (from < to && col_ > from && col_ <= to)
        --col_;
    else if (from > to && col_ >= to && col_ < from)
        ++col_;
    ColumnMoved(from, to);
    layoutChanged();
}

void TCustomGrid::ColumnMoved(int, int) {}

void TCustomGrid::MouseWheel(int rows)
{
    SetTopRow(TopRow() + rows);
}

void TCustomGrid::wheelEvent(QWheelEvent *event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0) {
        event->ignore();
        return;
    }
    MouseWheel(-steps * QApplication::wheelScrollLines());
    event->accept();
}

} // namespace qdb
