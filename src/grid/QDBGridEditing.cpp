// Editing a cell: whether it may be edited, how its editor looks, and the text going to
// and from the field.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "editors/QDBCalculator.h"
#include "editors/QDBCalendar.h"
#include "editors/QDBDataList.h"
#include "editors/QDBEditor.h"
#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QApplication>
#include <QKeyEvent>

#include <QScopedValueRollback>

#include <algorithm>
#include <iterator>

namespace qdb {

bool TQCustomDBGrid::CanEditShow() const
{
    return TCustomGrid::CanEditShow() && GetOptions().Contains(dgEditing) && cellModifiable();
}

namespace {

// A lookup cell writes its key fields, not the field it shows.
bool writesKeys(const TQColumn *column)
{
    const TQLookupColumn kind = column->GetLookupColumn();
    return kind == lcLookupField || kind == lcLookupResultField;
}

} // namespace

bool TQCustomDBGrid::cellModifiable() const
{
    if (GetReadOnly() || !DataLink()->Active() || DataLink()->ReadOnly())
        return false;
    TQColumn *column = ColumnAt(Col());
    TField *field = column ? column->GetField() : nullptr;
    if (!field || column->GetReadOnly() || !(writesKeys(column) ? KeyFieldsModifiable(column) : field->CanModify()))
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
    {
        // The record is read again as the edit starts; the editor keeps what it holds.
        const QScopedValueRollback<int> typing(d_->typing, d_->typing + 1);
        DataLink()->Edit();
    }
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
    return ColumnEditorStyle(column, !GetReadOnly() && DataLink()->Active() && !DataLink()->ReadOnly());
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
    if (auto *edit = qobject_cast<QLineEdit *>(InplaceEditor());
        edit && EditorMode() && d_->editColumn == Col() && !edit->hasAcceptableInput()) {
        MessageDlg(QApplication::translate("qdb", "The text does not fit the field's edit mask. Press Esc to "
                                                  "abandon the change."),
                   mtError, {mbOK});
        return false;
    }
    bool accepted = false;
    showingErrors([&] {
        DataLink()->UpdateRecord();
        accepted = true;
    });
    return accepted;
}

QWidget *TQCustomDBGrid::CreateEditor()
{
    auto *editor = new TQDBGridEditor(this, viewport());
    connect(editor, &QLineEdit::textEdited, this, [this](const QString &text) { SetEditText(Col(), Row(), text); });
    return editor;
}

bool TQCustomDBGrid::eventFilter(QObject *watched, QEvent *event)
{
    // The keys of an open list, and those that open one, are the editor's before the grid's.
    if (watched == InplaceEditor() && event->type() == QEvent::KeyPress)
        if (auto *editor = qobject_cast<TQDBInplaceEditor *>(watched)) {
            bool used = false;
            showingErrors([&] { used = editor->EditorKeys(static_cast<QKeyEvent *>(event)); });
            if (used)
                return true;
        }
    return TCustomGrid::eventFilter(watched, event);
}

const QMetaObject *TQCustomDBGrid::GetEditorListClass(TQColumn *column) const
{
    if (!column)
        column = ColumnAt(Col());
    switch (EditorListKindOf(column)) {
    case TEditorListKind::Lookup: return &TQDBGridDataList::staticMetaObject;
    case TEditorListKind::Pick: return &TQDBGridPickList::staticMetaObject;
    case TEditorListKind::Calculator: return &TQDBGridCalculator::staticMetaObject;
    case TEditorListKind::Calendar: return &TQDBGridCalendar::staticMetaObject;
    default: return nullptr;
    }
}

void TQCustomDBGrid::ListCloseUp(QObject *list, Variant &value, bool &accept)
{
    TQColumn *column = ColumnAt(Col());
    if (OnListCloseUp)
        OnListCloseUp(this, column, list, value, accept);
    if (!accept || !column)
        return;
    showingErrors([&] {
        if (!CanEditModify())
            return;
        column->SetListValue(value);
        // What the list wrote replaces anything typed before.
        d_->editColumn = -1;
        if (auto *edit = qobject_cast<QLineEdit *>(InplaceEditor()); edit && EditorMode()) {
            edit->setText(GetEditText(Col(), Row()));
            edit->selectAll();
        }
    });
}

void TQCustomDBGrid::EditButtonClick()
{
    if (OnEditButtonClick) {
        OnEditButtonClick(this);
        return;
    }
    // Without a handler, the button of a text column opens the whole text in several lines.
    if (!EditsInMemo(ColumnAt(Col())))
        return;
    if (auto *editor = qobject_cast<TQDBGridEditor *>(InplaceEditor()); editor && EditorMode())
        editor->EditMemo();
}

void TQCustomDBGrid::AutoDropDownState(int)
{
    auto *editor = qobject_cast<TQDBGridEditor *>(InplaceEditor());
    if (editor && EditorMode() && editor->AutoDropDown() && !editor->ListVisible())
        editor->DropDown();
}

bool TQCustomDBGrid::DropDownInProgress() const { return d_->dropDownInProgress; }

} // namespace qdb
