// Keys, clicks and the wheel over the data: they move through records, not rows.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QApplication>
#include <QKeyEvent>

namespace qdb {

bool TQCustomDBGrid::SelectCell(int col, int row)
{
    if (d_->settingActive || row == Row())
        return true;
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
    // An error of the data set (a refused post) is told to the user; the key does nothing.
    try {
        TCustomGrid::keyPressEvent(event);
    } catch (const EAbort &) {
    } catch (const Exception &e) {
        MessageDlg(e.Message(), mtError, {mbOK});
    }
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
    switch (event->key()) {
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
        TCustomGrid::KeyDown(event);
        return;
    }
    event->accept();
}

void TQCustomDBGrid::MouseWheel(int rows)
{
    if (DataLink()->Active())
        MoveBy(rows);
}

bool TQCustomDBGrid::CanEditShow() const
{
    if (!TCustomGrid::CanEditShow() || !GetOptions().Contains(dgEditing) || !DataLink()->Active())
        return false;
    TQColumn *column = ColumnAt(Col());
    TField *field = column ? column->GetField() : nullptr;
    return field && field->CanModify() && !column->GetReadOnly() && !DataLink()->ReadOnly();
}

QString TQCustomDBGrid::GetEditText(int col, int) const
{
    TQColumn *column = ColumnAt(col);
    return column ? column->GetEditText() : QString();
}

void TQCustomDBGrid::SetEditText(int col, int, const QString &text)
{
    TQColumn *column = ColumnAt(col);
    TField *field = column ? column->GetField() : nullptr;
    if (!field)
        return;
    // Typing puts the data set in edit mode; text the field cannot take is kept in the
    // editor and reported when the record is posted.
    try {
        if (!DataLink()->Editing() && !DataLink()->Edit())
            return;
        column->SetEditText(text);
    } catch (const Exception &) {
    }
}

} // namespace qdb
