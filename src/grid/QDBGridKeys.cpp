// Keys, clicks and the wheel over the data: they move through records, not rows.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "editors/QDBEditor.h"
#include "filter/QDBGridFilter.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QWheelEvent>

namespace qdb {

bool TQCustomDBGrid::SelectCell(int col, int row)
{
    if (d_->settingActive)
        return true;
    if (row == Row()) // another cell of the record: the text typed into this one goes in first
        return col == Col() || AcceptEditText();
    TQGridDataLink *link = DataLink();
    const int record = row - TitleOffset();
    if (!link->Active() || record < 0 || record >= link->RecordCount())
        return false; // the blank row and the totals hold no record
    MoveBy(record - link->ActiveRecord());
    // The data set moved and UpdateActive has put the row where the record is; the column
    // follows the click.
    if (col != Col())
        SetCol(col);
    return false;
}

void TQCustomDBGrid::keyPressEvent(QKeyEvent *event)
{
    showingErrors([&] { TCustomGrid::keyPressEvent(event); });
}

void TQCustomDBGrid::KeyDown(QKeyEvent *event)
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds) {
        TCustomGrid::KeyDown(event);
        return;
    }
    const bool ctrl = event->modifiers().testFlag(Qt::ControlModifier);
    const int page = qMax(1, VisibleRowCount());
    if (selectionKey(event)) {
        event->accept();
        return;
    }
    // Shift with a move extends the selection from its anchor once the move is made.
    const int key = event->key();
    const bool move = key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown
        || (ctrl && (key == Qt::Key_Home || key == Qt::Key_End));
    const bool extending = move && GetRowsSelection() && event->modifiers().testFlag(Qt::ShiftModifier);
    if (ctrl && (key == Qt::Key_C || key == Qt::Key_Insert) && !event->modifiers().testFlag(Qt::AltModifier)) {
        showingErrors([this] { CopyToClipboard(); });
        event->accept();
        return;
    }
    if (key == Qt::Key_F && ctrl && !event->modifiers().testFlag(Qt::ShiftModifier)) {
        ShowSearchPanel();
        event->accept();
        return;
    }
    if (key == Qt::Key_F3) {
        // Without a text yet, the panel to type one.
        if (GetSearch()->GetText().isEmpty())
            ShowSearchPanel();
        else
            showingErrors([&] { SearchGrid(ShiftStateToSearchMode(event->modifiers())); });
        event->accept();
        return;
    }
    if (key == Qt::Key_L && ctrl && event->modifiers().testFlag(Qt::ShiftModifier)) {
        // Every column shows all its values again.
        showingErrors([this] { GetFilterGrid()->ClearAutoFilter(); });
        event->accept();
        return;
    }
    const bool alt = event->modifiers().testFlag(Qt::AltModifier);
    if ((key == Qt::Key_F4 && !alt && !ctrl) || (alt && (key == Qt::Key_Up || key == Qt::Key_Down))) {
        // Alt+Down on a cell without a list of its own drops the column's value list.
        TQColumn *column = ColumnAt(Col());
        const bool cellList = GetOptions().Contains(dgEditing) && GetEditorStyle() == edsDropDownList;
        if (alt && key == Qt::Key_Down && !cellList && HasFilterButton(column))
            ShowAutoFilter(column);
        else
            dropDownCell(key == Qt::Key_F4);
        event->accept();
        return;
    }
    switch (key) {
    case Qt::Key_Up: MoveBy(-1); break;
    case Qt::Key_Down: MoveBy(1); break;
    case Qt::Key_PageUp: MoveBy(-page); break;
    case Qt::Key_PageDown: MoveBy(page); break;
    case Qt::Key_Home:
        if (!ctrl)
            return TCustomGrid::KeyDown(event);
        ds->First();
        break;
    case Qt::Key_End:
        if (!ctrl)
            return TCustomGrid::KeyDown(event);
        ds->Last();
        break;
    case Qt::Key_Insert:
        if (GetOptions().Contains(dgEditing) && ds->CanModify())
            ds->Insert();
        break;
    case Qt::Key_Delete:
        if (!ctrl || !GetOptions().Contains(dgEditing) || !ds->CanModify() || ds->IsEmpty())
            return TCustomGrid::KeyDown(event);
        if (!GetOptions().Contains(dgConfirmDelete)
            || MessageDlg(QApplication::translate("qdb", "Delete record?"), mtConfirmation, {mbOK, mbCancel}) == mrOk)
            ds->Delete();
        break;
    case Qt::Key_Escape:
        if (ds->State() == dsEdit || ds->State() == dsInsert)
            ds->Cancel();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        ShowEditor();
        break;
    default:
        if (typeIntoCell(event))
            break;
        TCustomGrid::KeyDown(event);
        return;
    }
    if (extending)
        extendSelection();
    event->accept();
}

void TQCustomDBGrid::dropDownCell(bool pressButton)
{
    const TEditorStyle style = GetEditorStyle();
    if (!GetOptions().Contains(dgEditing) || style == edsSimple || (style != edsDropDownList && !pressButton))
        return;
    const QScopedValueRollback<bool> dropping(d_->dropDownInProgress, true);
    ShowEditor();
    auto *editor = qobject_cast<TQDBGridEditor *>(InplaceEditor());
    if (!editor || !EditorMode())
        return;
    // As in the editor: F4 opens a list, or presses any other button; Alt+Down only opens.
    if (style == edsDropDownList)
        editor->DropDown();
    else
        editor->EditButtonClick();
}

bool TQCustomDBGrid::typeIntoCell(QKeyEvent *event)
{
    // A letter typed on a cell starts editing it with that letter.
    const QString text = event->text();
    if (text.isEmpty() || !text.at(0).isPrint() || event->modifiers().testFlag(Qt::ControlModifier)
        || event->modifiers().testFlag(Qt::AltModifier) || !GetOptions().Contains(dgEditing)
        || GetOptionsEx().Contains(dgShowEditorByCharOff) || EditorMode())
        return false;
    ShowEditor();
    if (!EditorMode())
        return false;
    if (auto *edit = qobject_cast<QLineEdit *>(InplaceEditor()))
        edit->clear();
    QCoreApplication::sendEvent(InplaceEditor(), event);
    return true;
}

int TQCustomDBGrid::GetWheelScrollRows() const { return d_->wheelScrollRows; }
void TQCustomDBGrid::SetWheelScrollRows(int rows) { d_->wheelScrollRows = rows; }

int TQCustomDBGrid::MouseWheelScrollRows(Qt::KeyboardModifiers modifiers) const
{
    if (modifiers.testFlag(Qt::ControlModifier))
        return 1;
    if (modifiers.testFlag(Qt::ShiftModifier) || PageMode())
        return qMax(1, VisibleRowCount());
    if (d_->wheelScrollRows >= 1)
        return d_->wheelScrollRows;
    if (d_->wheelScrollRows < 0)
        return DataLink()->Active() ? qMax(1, DataLink()->BufferCount()) : 1;
    return qMax(1, QApplication::wheelScrollLines());
}

void TQCustomDBGrid::wheelEvent(QWheelEvent *event)
{
    // Shift turns a vertical wheel into a horizontal one on some systems: either counts.
    const QPoint delta = event->angleDelta();
    const int steps = (delta.y() != 0 ? delta.y() : delta.x()) / 120;
    if (steps == 0) {
        TCustomGrid::wheelEvent(event);
        return;
    }
    event->accept();
    const QPoint at = event->position().toPoint();
    for (int i = 0; i < qAbs(steps); ++i)
        if (steps < 0 ? !DoMouseWheelDown(event->modifiers(), at) : !DoMouseWheelUp(event->modifiers(), at))
            break;
}

bool TQCustomDBGrid::DoMouseWheelDown(Qt::KeyboardModifiers shift, const QPoint &mousePos)
{
    return mouseWheel(1, OnMouseWheelDown, shift, mousePos);
}

bool TQCustomDBGrid::DoMouseWheelUp(Qt::KeyboardModifiers shift, const QPoint &mousePos)
{
    return mouseWheel(-1, OnMouseWheelUp, shift, mousePos);
}

bool TQCustomDBGrid::mouseWheel(int direction, const TMouseWheelUpDownEvent &handler, Qt::KeyboardModifiers shift,
                                const QPoint &mousePos)
{
    bool handled = false;
    if (handler)
        handler(this, shift, mousePos, handled);
    TDataSet *ds = DataSet();
    if (handled || !DataLink()->Active() || !ds)
        return true;
    showingErrors([&] {
        // A new record nobody has typed into is not scrolled away from: the wheel drops it.
        if (ds->State() == dsInsert && !ds->Modified() && !DataLink()->IsModified()) {
            if (direction < 0 || !DataLink()->Eof())
                ds->Cancel();
            return;
        }
        MoveBy(direction * MouseWheelScrollRows(shift), RowsMode());
    });
    return true;
}

} // namespace qdb
