// What the user does to select: Ctrl+click toggles a row, Shift+click and Shift+arrows
// extend a range from the anchor, Ctrl+A selects everything, the indicator selects rows and
// the titles select columns in the modes that allow it, else sort.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include <QMouseEvent>

namespace qdb {

void TQCustomDBGrid::selectByMouse(int, int, Qt::KeyboardModifiers modifiers)
{
    TDataSet *ds = DataSet();
    if (!GetRowsSelection() || !ds || ds->IsEmpty())
        return;
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        // A range from the anchor; with Ctrl it is added to what was selected.
        BeginSelect();
        if (!modifiers.testFlag(Qt::ControlModifier))
            SelectedRows().Clear();
        SelectRows();
        NotifyRowSelect(saSelect);
        EndSelect();
    } else if (modifiers.testFlag(Qt::ControlModifier)) {
        InvertRow();
        SetSelectionAnchor(ds->GetBookmark());
    } else {
        if (SelectedRows().Count() > 0)
            ClearSelection();
        SetSelectionAnchor(ds->GetBookmark());
    }
}

void TQCustomDBGrid::mousePressEvent(QMouseEvent *event)
{
    const QPoint p = event->position().toPoint();
    if (event->button() == Qt::LeftButton) {
        if (TQColumn *column = FilterButtonAt(p)) {
            ShowAutoFilter(column);
            event->accept();
            return;
        }
    }
    const QPoint cell = MouseCoord(p.x(), p.y());
    const Qt::KeyboardModifiers mods = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);
    const int record = cell.y() - TitleOffset();
    const bool dataRow = DataLink()->Active() && cell.x() >= 0 && record >= 0 && record < DataLink()->RecordCount();
    if (event->button() != Qt::LeftButton || !dataRow || !GetRowsSelection()) {
        TCustomGrid::mousePressEvent(event);
        return;
    }
    // A click that selects moves to the record without starting the editor.
    setFocus();
    if (cell.x() >= FixedCols() && mods == Qt::NoModifier) {
        TCustomGrid::mousePressEvent(event);
    } else {
        MoveBy(record - DataLink()->ActiveRecord());
        if (cell.x() >= FixedCols())
            SetCol(cell.x());
    }
    // The indicator selects the row alone unless a key says otherwise.
    if (cell.x() < IndicatorOffset() && mods == Qt::NoModifier) {
        BeginSelect();
        SelectedRows().Clear();
        SelectRow();
        SetSelectionAnchor(DataSet()->GetBookmark());
        NotifyRowSelect(saSelect);
        EndSelect();
        return;
    }
    selectByMouse(cell.x(), cell.y(), mods);
}

void TQCustomDBGrid::FixedCellClick(int col, int row, Qt::KeyboardModifiers modifiers)
{
    TQColumn *column = ColumnAt(col);
    if (row >= TitleOffset() || !column)
        return;
    if (!GetColsSelection()) {
        // A click on a sortable title sorts by it; with Ctrl it adds or cycles a level.
        if (d_->options.Contains(dgTitleClick) && column->GetTitle()->GetAutoToggle() && column->GetField()
            && column->Sortable())
            showingErrors([&] { column->GetTitle()->ToggleMarker(!modifiers.testFlag(Qt::ControlModifier)); });
        return;
    }
    // Titles select columns: alone, added with Ctrl, as a range with Shift.
    TQColumnList &cols = SelectedCols();
    BeginSelect();
    if (modifiers.testFlag(Qt::ShiftModifier) && cols.Count() > 0) {
        const int from = qMin(cols.Items(cols.Count() - 1)->Index(), column->Index());
        const int to = qMax(cols.Items(0)->Index(), column->Index());
        for (int i = from; i <= to; ++i)
            if (d_->columns->Items(i)->Showing())
                cols.Add(d_->columns->Items(i));
    } else if (modifiers.testFlag(Qt::ControlModifier)) {
        if (cols.Contains(column))
            cols.Remove(column);
        else
            cols.Add(column);
    } else {
        cols.Clear();
        cols.Add(column);
    }
    NotifyRowSelect(saSelect);
    EndSelect();
}

bool TQCustomDBGrid::selectionKey(QKeyEvent *event)
{
    TDataSet *ds = DataSet();
    const Qt::KeyboardModifiers mods = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);
    if (!GetRowsSelection() && !GetColsSelection())
        return false;
    if (event->key() == Qt::Key_A && mods == Qt::ControlModifier) {
        SelectAll();
        return true;
    }
    if (!GetRowsSelection() || ds->IsEmpty())
        return false;
    if (event->key() == Qt::Key_Space && mods == Qt::ControlModifier) {
        InvertRow();
        SetSelectionAnchor(ds->GetBookmark());
        return true;
    }
    const bool vertical = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down || event->key() == Qt::Key_PageUp
        || event->key() == Qt::Key_PageDown || ((event->key() == Qt::Key_Home || event->key() == Qt::Key_End) && mods.testFlag(Qt::ControlModifier));
    if (!vertical)
        return false;
    if (mods.testFlag(Qt::ShiftModifier)) {
        if (SelectionAnchor().isEmpty() || !ds->BookmarkValid(SelectionAnchor()))
            SetSelectionAnchor(ds->GetBookmark());
        return false; // the move comes first; extendSelection follows it
    }
    if (SelectedRows().Count() > 0)
        ClearSelection();
    return false;
}

void TQCustomDBGrid::extendSelection()
{
    BeginSelect();
    SelectedRows().Clear();
    SelectRows();
    NotifyRowSelect(saSelect);
    EndSelect();
}

} // namespace qdb
