// The free-standing data-aware editor: its data link, the texts going to and from the field,
// and the keys that confirm or drop what was typed.

#include "QDBDataEditor.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QScopedValueRollback>

namespace qdb {

TQDBDataEditor::TQDBDataEditor(QWidget *parent) : TQDBGridEditor(nullptr, parent)
{
    setObjectName(QString());
    setFrame(true);
    link_.SetControl(this);
    link_.OnDataChange = [this](TObject *) { DataRefresh(); };
    link_.OnActiveChange = [this](TObject *) { UpdateEditor(); };
    link_.OnUpdateData = [this](TObject *) { StoreText(text()); };
    connect(this, &QLineEdit::textEdited, this, [this] { link_.Modified(); });
    UpdateEditor();
}

TQDBDataEditor::~TQDBDataEditor()
{
    link_.OnDataChange = nullptr;
    link_.OnActiveChange = nullptr;
    link_.OnUpdateData = nullptr;
    link_.SetDataSource(nullptr);
}

void TQDBDataEditor::SetDataSource(TDataSource *source)
{
    link_.SetDataSource(source);
    UpdateEditor();
}

void TQDBDataEditor::SetDataField(const QString &name)
{
    link_.SetFieldName(name);
    UpdateEditor();
}

void TQDBDataEditor::SetReadOnly(bool on)
{
    readOnly_ = on;
    UpdateEditor();
}

QString TQDBDataEditor::GetText() const
{
    QString text = GetStoredDisplayText();
    const_cast<TQDBDataEditor *>(this)->DoGetText(text, true);
    return text;
}

QString TQDBDataEditor::GetEditText() const
{
    QString text = GetStoredText();
    const_cast<TQDBDataEditor *>(this)->DoGetText(text, false);
    return text;
}

void TQDBDataEditor::SetEditText(const QString &text)
{
    if (!CanEditModify())
        return;
    StoreText(text);
    DataRefresh();
}

bool TQDBDataEditor::UpdateRecord()
{
    try {
        link_.UpdateRecord();
        return true;
    } catch (const Exception &e) {
        // The text stays to be put right; the field keeps its value.
        link_.Modified();
        MessageDlg(e.Message(), mtError, {mbOK});
        return false;
    }
}

void TQDBDataEditor::DataRefresh()
{
    if (startingEdit_)
        return;
    CloseUp(false);
    showValue();
}

void TQDBDataEditor::showValue()
{
    if (startingEdit_)
        return;
    const QString shown = Field() ? (focused_ ? GetEditText() : GetText()) : QString();
    if (text() != shown)
        setText(shown);
}

TAlignment TQDBDataEditor::DefaultAlignment() const
{
    return Field() ? Field()->Alignment() : taLeftJustify;
}

void TQDBDataEditor::DoGetText(QString &text, bool displayText)
{
    if (OnGetText)
        OnGetText(this, text, displayText);
}

void TQDBDataEditor::DoSetText(QString &text)
{
    if (OnSetText)
        OnSetText(this, text);
}

void TQDBDataEditor::FocusChanged(bool focused)
{
    focused_ = focused;
    // A refused text stays where it can be put right, until it is or Esc drops it.
    if (link_.IsModified() && (focused || !UpdateRecord()))
        return;
    showValue();
}

QString TQDBDataEditor::GetStoredText() const
{
    return Field() ? Field()->Text() : QString();
}

QString TQDBDataEditor::GetStoredDisplayText() const
{
    return Field() ? Field()->DisplayText() : QString();
}

bool TQDBDataEditor::GetUnlimited() const
{
    const TField *f = Field();
    return !f || f->DataType() != ftString || f->Size() <= 0;
}

void TQDBDataEditor::RecordChanged(TField *field)
{
    if (!field || field == Field())
        DataRefresh();
}

void TQDBDataEditor::UpdateEditor()
{
    TField *f = Field();
    const Qt::Alignment horizontal = DefaultAlignment() == taRightJustify ? Qt::AlignRight
                                     : DefaultAlignment() == taCenter    ? Qt::AlignHCenter
                                                                         : Qt::AlignLeft;
    setAlignment(horizontal | Qt::AlignVCenter);
    UpdateContents();
    // Typed values are bound by the field; list texts are not values (UpdateContents knows).
    if (GetUnlimited())
        setMaxLength(32767);
    const bool writable = f && !readOnly_ && !link_.ReadOnly() && f->CanModify();
    setReadOnly(!writable || DropDownOnly());
    showValue();
}

bool TQDBDataEditor::CanEditModify()
{
    TField *f = Field();
    if (readOnly_ || !f || !link_.Active() || link_.ReadOnly())
        return false;
    // A lookup's list writes the key fields, which can change where the lookup cannot.
    const TQColumn *column = GetColumn();
    const TQLookupColumn kind = column ? column->GetLookupColumn() : lcNotDefined;
    // Starting the edit re-reads the record: what is being typed and an open list stay.
    const QScopedValueRollback<bool> starting(startingEdit_, true);
    if (kind == lcLookupField || kind == lcLookupResultField)
        return KeyFieldsModifiable(column) && link_.TDataLink::Edit();
    return link_.Edit();
}

void TQDBDataEditor::StoreText(const QString &typed)
{
    QString text = typed;
    DoSetText(text);
    if (TField *f = Field())
        f->SetText(text);
}

void TQDBDataEditor::ApplyListValue(QObject *list, Variant &value, bool &accept)
{
    if (OnListCloseUp)
        OnListCloseUp(this, list, value, accept);
    if (!accept || !CanEditModify())
        return;
    try {
        if (TQColumn *column = GetColumn())
            column->SetListValue(value);
        else if (TField *f = Field())
            f->SetValue(value);
    } catch (const Exception &e) {
        MessageDlg(e.Message(), mtError, {mbOK});
        return;
    }
    // The list's value replaces anything typed; a lookup's key changed, not the field shown.
    showValue();
    selectAll();
}

void TQDBDataEditor::EditButtonClick()
{
    if (OnEditButtonClick || (GetEditorStyle() == edsDropDownMenu && GetDropDownMenu())
        || !EditsInMemo(GetColumn())) {
        TQDBGridEditor::EditButtonClick();
        return;
    }
    EditMemo();
}

void TQDBDataEditor::ListDropDown(QObject *list)
{
    TQDBGridEditor::ListDropDown(list);
    if (OnListDropDown)
        OnListDropDown(this, list);
}

bool TQDBDataEditor::changesText(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cut) || event->matches(QKeySequence::Paste) || event->matches(QKeySequence::Undo)
        || event->matches(QKeySequence::Redo) || event->matches(QKeySequence::Delete)
        || event->key() == Qt::Key_Backspace)
        return true;
    const QString typed = event->text();
    return !typed.isEmpty() && typed.at(0).isPrint() && !event->modifiers().testFlag(Qt::ControlModifier);
}

void TQDBDataEditor::keyPressEvent(QKeyEvent *event)
{
    const bool returnKey = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!ListVisible() && event->modifiers() == Qt::NoModifier) {
        if (event->key() == Qt::Key_Escape && link_.IsModified()) {
            link_.Reset(); // what was typed goes; the field's value shows again
            selectAll();
            event->accept();
            return;
        }
        if (returnKey && link_.IsModified()) {
            if (UpdateRecord())
                selectAll();
            event->accept();
            return;
        }
    }
    // Typing, cutting and pasting start the edit of the record first; read-only data takes none.
    if (changesText(event) && !isReadOnly() && !CanEditModify()) {
        event->accept();
        return;
    }
    TQDBGridEditor::keyPressEvent(event);
}

void TQDBDataEditor::focusInEvent(QFocusEvent *event)
{
    TQDBGridEditor::focusInEvent(event);
    if (event->reason() == Qt::PopupFocusReason)
        return; // back from an own popup
    if (!focused_)
        FocusChanged(true);
    if (AutoSelect())
        selectAll();
}

void TQDBDataEditor::focusOutEvent(QFocusEvent *event)
{
    TQDBGridEditor::focusOutEvent(event);
    // An own popup taking the keys is no leaving.
    if (event->reason() != Qt::PopupFocusReason && focused_)
        FocusChanged(false);
}

// ---- the label ----

TQDBEditorLabel::TQDBEditorLabel(QWidget *editor) : QLabel(editor ? editor->parentWidget() : nullptr)
{
    setBuddy(editor);
}

TQDBLabeledEditor::TQDBLabeledEditor(QWidget *parent) : TQDBDataEditor(parent)
{
    label_ = CreateEditorLabel();
    label_->hide();
}

TQDBLabeledEditor::~TQDBLabeledEditor()
{
    // The label lives in the editor's parent; it goes with the editor.
    delete label_;
}

TQDBEditorLabel *TQDBLabeledEditor::CreateEditorLabel()
{
    return new TQDBEditorLabel(this);
}

void TQDBLabeledEditor::SetLabelPosition(TLabelPosition position)
{
    labelPosition_ = position;
    PlaceLabel();
}

void TQDBLabeledEditor::SetLabelSpacing(int spacing)
{
    labelSpacing_ = spacing;
    PlaceLabel();
}

void TQDBLabeledEditor::SetLabelVisible(bool on)
{
    labelVisible_ = on;
    followEditor();
}

void TQDBLabeledEditor::PlaceLabel()
{
    if (!label_)
        return;
    label_->adjustSize();
    const QRect r = geometry();
    const QSize size = label_->size();
    QPoint at;
    switch (labelPosition_) {
    case lpAbove: at = QPoint(r.left(), r.top() - size.height() - labelSpacing_); break;
    case lpBelow: at = QPoint(r.left(), r.bottom() + 1 + labelSpacing_); break;
    case lpLeft: at = QPoint(r.left() - size.width() - labelSpacing_, r.top() + (r.height() - size.height()) / 2); break;
    case lpRight: at = QPoint(r.right() + 1 + labelSpacing_, r.top() + (r.height() - size.height()) / 2); break;
    }
    label_->move(at);
}

void TQDBLabeledEditor::followEditor()
{
    if (!label_)
        return;
    if (label_->parentWidget() != parentWidget()) {
        label_->setParent(parentWidget());
        label_->setBuddy(this);
    }
    label_->setObjectName(objectName().isEmpty() ? QString() : objectName() + QStringLiteral("Label"));
    label_->setEnabled(isEnabled());
    label_->setLayoutDirection(layoutDirection());
    PlaceLabel();
    label_->setVisible(labelVisible_ && isVisible() && parentWidget());
}

void TQDBLabeledEditor::moveEvent(QMoveEvent *event)
{
    TQDBDataEditor::moveEvent(event);
    PlaceLabel();
}

void TQDBLabeledEditor::resizeEvent(QResizeEvent *event)
{
    TQDBDataEditor::resizeEvent(event);
    PlaceLabel();
}

void TQDBLabeledEditor::showEvent(QShowEvent *event)
{
    TQDBDataEditor::showEvent(event);
    followEditor();
}

void TQDBLabeledEditor::hideEvent(QHideEvent *event)
{
    TQDBDataEditor::hideEvent(event);
    followEditor();
}

void TQDBLabeledEditor::changeEvent(QEvent *event)
{
    TQDBDataEditor::changeEvent(event);
    switch (event->type()) {
    case QEvent::ParentChange:
    case QEvent::EnabledChange:
    case QEvent::LayoutDirectionChange:
        followEditor();
        break;
    default:
        break;
    }
}

} // namespace qdb
