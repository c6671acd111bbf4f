// Editing a cell: whether it may be edited, how its editor looks, and the text going to
// and from the field.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "platform/rtl/Exceptions.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <iterator>

namespace qdb {

bool TQCustomDBGrid::CanEditShow() const
{
    return TCustomGrid::CanEditShow() && GetOptions().Contains(dgEditing) && cellModifiable();
}

bool TQCustomDBGrid::cellModifiable() const
{
    if (GetReadOnly() || !DataLink()->Active() || DataLink()->ReadOnly())
        return false;
    TQColumn *column = ColumnAt(Col());
    TField *field = column ? column->GetField() : nullptr;
    if (!field || column->GetReadOnly() || !field->CanModify())
        return false;
    // Binary and long-text values have no text to type unless the application gives one;
    // a memo is typed into when the column says so.
    static constexpr TFieldType noText[] = {ftBytes, ftVarBytes, ftBlob, ftMemo, ftGraphic, ftFmtMemo,
                                            ftParadoxOle, ftDBaseOle, ftTypedBinary, ftCursor, ftADT, ftArray,
                                            ftReference, ftDataSet, ftWideMemo};
    const TFieldType type = field->DataType();
    if (std::find(std::begin(noText), std::end(noText), type) != std::end(noText) && !field->OnSetText)
        return column->GetEditMemo() && (type == ftMemo || type == ftFmtMemo || type == ftWideMemo);
    return true;
}

bool TQCustomDBGrid::CanEditModify()
{
    if (!cellModifiable())
        return false;
    DataLink()->Edit();
    if (!DataLink()->Editing())
        return false;
    DataLink()->Modified();
    return true;
}

void TQCustomDBGrid::SetReadOnly(bool on)
{
    if (d_->readOnly == on)
        return;
    d_->readOnly = on;
    if (on)
        HideEditor();
    InvalidateGrid();
}

bool TQCustomDBGrid::GetReadOnly() const { return d_->readOnly; }

TEditorStyle TQCustomDBGrid::GetEditorStyle(TQColumn *column) const
{
    if (!column)
        column = ColumnAt(Col());
    if (!column)
        return edsSimple;
    const TEditorButtonStyle button = ToEditorButtonStyle(column->GetButtonStyle());
    if (button != ebsAuto)
        return EditorStyleOf(button);
    TField *field = column->GetField();
    if (!field)
        return edsSimple;
    if (column->GetLookupColumn() != lcNotDefined) {
        // A list only where the key it writes can be written.
        const QStringList keys = column->GetKeyField().split(QLatin1Char(';'), Qt::SkipEmptyParts);
        bool writable = !keys.isEmpty() && field->DataSet();
        for (const QString &name : keys) {
            TField *key = writable ? field->DataSet()->FindField(name.trimmed()) : nullptr;
            writable = key && key->CanModify();
        }
        const bool readOnlyColumn = column->AssignedValues().Contains(cvReadOnly) && column->GetReadOnly();
        writable = writable && !readOnlyColumn && !GetReadOnly() && DataLink()->Active() && !DataLink()->ReadOnly();
        return writable ? edsDropDownList : edsSimple;
    }
    if (column->GetPickList()->Count() > 0 && !column->GetReadOnly())
        return edsDropDownList;
    if (CalendarActive(field) && !column->GetReadOnly())
        return edsDropDownList;
    if (field->DataType() == ftReference || field->DataType() == ftDataSet)
        return edsEllipsis;
    return edsSimple;
}


QString TQCustomDBGrid::GetEditText(int col, int) const
{
    TQColumn *column = ColumnAt(col);
    return column ? column->GetEditText() : QString();
}

void TQCustomDBGrid::SetEditText(int col, int, const QString &text)
{
    TQColumn *column = ColumnAt(col);
    if (!column || !column->GetField())
        return;
    // Typing puts the data set in edit mode; the field takes the text when it is confirmed.
    showingErrors([&] {
        // Starting the edit re-reads the record; the editor keeps what is being typed.
        bool editing = DataLink()->Editing();
        if (!editing) {
            const QScopedValueRollback<int> typing(d_->typing, d_->typing + 1);
            editing = DataLink()->Edit();
        }
        if (!editing)
            return;
        d_->editText = text;
        d_->editColumn = col;
        DataLink()->Modified();
    });
}

bool TQCustomDBGrid::AcceptEditText()
{
    if (d_->editColumn < 0 || !DataLink()->IsModified())
        return true;
    bool accepted = false;
    showingErrors([&] {
        DataLink()->UpdateRecord();
        accepted = true;
    });
    return accepted;
}

} // namespace qdb
