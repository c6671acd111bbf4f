// The grid's cell editor: the column decides its button and list; typing finds list items.

#include "QDBEditor.h"

#include "QDBDropDown.h"
#include "QDBMemoPopup.h"

#include "grid/QDBGrid.h"
#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/TickCount.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>

#include <memory>

namespace qdb {

namespace {
// Typing resumes a prefix only within this many milliseconds of the previous key.
constexpr qint64 PrefixPause = 2000;
} // namespace

TQDBGridEditor::TQDBGridEditor(TQCustomDBGrid *grid, QWidget *parent) : TQDBInplaceEditor(parent), grid_(grid)
{
    setObjectName(QStringLiteral("InplaceEditor"));
    setFrame(false);
}

TQDBGridEditor::~TQDBGridEditor()
{
    delete popup_.data();
    delete memo_.data();
}

TQColumn *TQDBGridEditor::GetColumn() const
{
    return column_;
}

TQDBGridDropDownList *TQDBGridEditor::PopupList() const
{
    return popup_;
}

TQDBMemoPopup *TQDBGridEditor::MemoPopup() const
{
    return memo_;
}

void TQDBGridEditor::EditMemo()
{
    if (ListVisible() || popup_ || memo_ || !column_ || !column_->GetField())
        return;
    memo_ = new TQDBMemoPopup(this);
    memo_->OnCloseUp = [this](TQDBMemoPopup *memo, bool accept) { ListCloseUp(memo, accept); };
    ListDropDown(memo_);
    const QRect bounds = DropDownRect();
    const QWidget *origin = parentWidget() ? parentWidget() : this;
    memo_->ShowUnder(QRect(origin->mapToGlobal(bounds.topLeft()), bounds.size()), column_->GetField()->AsString(),
                     isReadOnly());
}

void TQDBGridEditor::SetColumn(TQColumn *column)
{
    if (column_ != column)
        CloseUp(false);
    column_ = column;
    UpdateContents();
}

void TQDBGridEditor::UpdateContents()
{
    const TEditorStyle style = GetEditorStyle();
    SetEditorStyle(style);
    const TQListOptions options = column_ ? column_->GetListOptions() : TQListOptions{};
    autoComplete_ = style == edsDropDownList && options.Contains(loAutoComplete);
    autoDropDown_ = style != edsSimple && options.Contains(loAutoDropDown) && !ListVisible();
    autoClose_ = style == edsDropDownList && options.Contains(loAutoCloseEditor)
        && !(grid_ && grid_->GetOptions().Contains(dgAlwaysShowEditor));
    TField *field = column_ ? column_->GetField() : nullptr;
    // A list's text is not the stored value: only typed values are bound by the field's size.
    const bool typedValue = field && column_->GetLookupColumn() == lcNotDefined && !column_->PickTextActive();
    setMaxLength(typedValue && field->DataType() == ftString && field->Size() > 0 ? field->Size() : 32767);
    setInputMask(field ? InputMaskOf(field->EditMask()) : QString());
    SetDropDownOnly(style == edsDropDownList && column_ && column_->GetPickOptions().Contains(poDropDownList));
    UpdateEditorColor();
}

TEditorStyle TQDBGridEditor::GetEditorStyle() const
{
    if (grid_ && column_)
        return grid_->GetEditorStyle(column_);
    return TQDBInplaceEditor::GetEditorStyle();
}

const QMetaObject *TQDBGridEditor::GetEditorListClass() const
{
    return grid_ && column_ ? grid_->GetEditorListClass(column_) : nullptr;
}

QMenu *TQDBGridEditor::GetDropDownMenu() const
{
    if (column_ && column_->GetDropDownMenu())
        return column_->GetDropDownMenu();
    return TQDBInplaceEditor::GetDropDownMenu();
}

void TQDBGridEditor::DropDown()
{
    if (ListVisible() || popup_)
        return;
    const QMetaObject *listClass = GetEditorListClass();
    if (!listClass || !listClass->inherits(&TQDBGridDropDownList::staticMetaObject))
        return;
    QObject *made = listClass->newInstance(Q_ARG(qdb::TQDBGridEditor *, this), Q_ARG(qdb::TQColumn *, column_.data()));
    popup_ = qobject_cast<TQDBGridDropDownList *>(made);
    if (!popup_) {
        delete made;
        return;
    }
    popup_->SetBounds(DropDownRect());
    popup_->OnCloseUp = [this](QObject *list, bool &accept) { ListCloseUp(list, accept); };
    popup_->OnDropDown = [this](QObject *, QObject *list) { ListDropDown(list); };
    popup_->FreeOnClose = true;
    try {
        popup_->DropDown();
        selectAll(); // typing starts a new search in the list
    } catch (const Exception &e) {
        // The list's data could not be read: say so, and the cell stays editable by typing.
        dropDownFailed();
        MessageDlg(e.Message(), mtError, {mbOK});
    }
}

void TQDBGridEditor::dropDownFailed()
{
    delete popup_.data();
    popup_ = nullptr;
    bool accept = false;
    TQDBInplaceEditor::ListCloseUp(nullptr, accept);
}

void TQDBGridEditor::CloseUp(bool accept)
{
    if (popup_ && popup_->Showing())
        popup_->CloseUp(accept);
    if (memo_ && memo_->Showing())
        memo_->CloseUp(accept);
}

void TQDBGridEditor::ListCloseUp(QObject *list, bool &accept)
{
    TQDBInplaceEditor::ListCloseUp(list, accept);
    if (memo_ && list == memo_) {
        Variant text = memo_->Text();
        ApplyListValue(list, text, accept);
        memo_->deleteLater();
        memo_ = nullptr;
        if (isVisible())
            setFocus(Qt::PopupFocusReason);
        return;
    }
    if (!popup_ || list != popup_)
        return;
    Variant value = popup_->Value;
    ApplyListValue(list, value, accept);
    if (popup_ && popup_->FreeOnClose) {
        popup_->deleteLater();
        popup_ = nullptr;
    }
    // The keys come back from the popup.
    if (isVisible())
        setFocus(Qt::PopupFocusReason);
    // A value taken with the mouse commits the cell as Return would.
    if (accept && autoClose_ && !closingByReturn_)
        QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier));
}

bool TQDBGridEditor::CanEditModify()
{
    return grid_ ? grid_->CanEditModify() : !isReadOnly();
}

void TQDBGridEditor::ApplyListValue(QObject *list, Variant &value, bool &accept)
{
    if (grid_)
        grid_->ListCloseUp(list, value, accept);
}

void TQDBGridEditor::contextMenuEvent(QContextMenuEvent *event)
{
    // The edit's usual menu, made here so that what changes the text starts the edit first.
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool writable = !isReadOnly();
    const bool selected = hasSelectedText() && echoMode() == QLineEdit::Normal;
    const auto add = [&](const char *name, const char *caption, QKeySequence::StandardKey keys, bool enabled,
                         const std::function<void()> &act, bool changes) {
        QString text = QCoreApplication::translate("QLineEdit", caption);
        const QString shortcut = QKeySequence(keys).toString(QKeySequence::NativeText);
        if (!shortcut.isEmpty())
            text += QLatin1Char('\t') + shortcut;
        QAction *action = menu->addAction(text);
        action->setObjectName(QLatin1String(name));
        action->setEnabled(enabled);
        connect(action, &QAction::triggered, this, [this, act, changes] {
            if (!changes || CanEditModify())
                act();
        });
    };
    add("edit-undo", "&Undo", QKeySequence::Undo, writable && isUndoAvailable(), [this] { undo(); }, true);
    add("edit-redo", "&Redo", QKeySequence::Redo, writable && isRedoAvailable(), [this] { redo(); }, true);
    menu->addSeparator();
    add("edit-cut", "Cu&t", QKeySequence::Cut, writable && selected, [this] { cut(); }, true);
    add("edit-copy", "&Copy", QKeySequence::Copy, selected, [this] { copy(); }, false);
    add("edit-paste", "&Paste", QKeySequence::Paste,
        writable && !QGuiApplication::clipboard()->text().isEmpty(), [this] { paste(); }, true);
    add("edit-delete", "Delete", QKeySequence::UnknownKey, writable && hasSelectedText(), [this] { del(); }, true);
    menu->addSeparator();
    add("select-all", "Select All", QKeySequence::SelectAll, !text().isEmpty() && selectedText() != text(),
        [this] { selectAll(); }, false);
    menu->popup(event->globalPos());
    event->accept();
}

void TQDBGridEditor::EditButtonClick()
{
    if (grid_ && column_) {
        if (GetEditorStyle() == edsDropDownMenu && ShowDropDownMenu())
            return;
        grid_->EditButtonClick();
        return;
    }
    TQDBInplaceEditor::EditButtonClick();
}

bool TQDBGridEditor::DropDownKeys(int key, Qt::KeyboardModifiers shift)
{
    const bool returnKey = key == Qt::Key_Return || key == Qt::Key_Enter;
    closingByReturn_ = returnKey && ListVisible();
    const bool used = TQDBInplaceEditor::DropDownKeys(key, shift);
    closingByReturn_ = false;
    if (used)
        return true;
    if (grid_ && column_ && column_->GetDelimiterLine()
        && (key == Qt::Key_PageUp || key == Qt::Key_PageDown || key == Qt::Key_Up || key == Qt::Key_Down)) {
        // The lines of a delimited value are the application's to move through.
        if (grid_->OnKeyDown) {
            QKeyEvent event(QEvent::KeyPress, key, shift);
            grid_->OnKeyDown(grid_, &event);
        }
        return true;
    }
    return false;
}

void TQDBGridEditor::keyPressEvent(QKeyEvent *event)
{
    if (EditorKeys(event) || (autoComplete_ && ProcessAutoComplete(event))) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
    if (grid_ && !grid_->DropDownInProgress())
        grid_->AutoDropDownState(-1);
}

bool TQDBGridEditor::ProcessAutoComplete(QKeyEvent *event)
{
    const qint64 now = GetTickCount();
    if (ListVisible()) {
        // After a pause the next letter starts a new prefix.
        if (cursorPosition() > 0 && now - lastKeyTime_ > PrefixPause)
            setSelection(text().size(), -int(text().size()));
        lastKeyTime_ = now;
    }
    if (!CanEditModify())
        return false;
    const bool typable = !isReadOnly();
    if (event->key() == Qt::Key_Backspace) {
        if (typable)
            return false;
        // A read-only list text: Backspace shortens the prefix that is matched.
        const int caret = hasSelectedText() ? selectionStart() : cursorPosition();
        if (caret > 0) {
            int back = caret - 1;
            if (back > 0 && text().at(back).isLowSurrogate())
                --back;
            setSelection(int(text().size()), back - int(text().size()));
        }
        return true;
    }
    const QString typed = event->text();
    if (typed.isEmpty() || !typed.at(0).isPrint())
        return false;
    if (typable && !hasSelectedText() && cursorPosition() < text().size())
        return false;
    const int caret = hasSelectedText() ? selectionStart() : cursorPosition();
    return SelectListItem(text().left(caret) + typed);
}

bool TQDBGridEditor::SelectListItem(const QString &typed)
{
    QString item;
    bool found = false;
    try {
        if (popup_) {
            found = popup_->SelectListItem(typed, item);
        } else if (const QMetaObject *listClass = GetEditorListClass();
                   listClass && listClass->inherits(&TQDBGridDropDownList::staticMetaObject)) {
            // No list is open: a list that is never shown finds the item.
            std::unique_ptr<QObject> made(listClass->newInstance(Q_ARG(qdb::TQDBGridEditor *, this),
                                                                 Q_ARG(qdb::TQColumn *, column_.data())));
            if (auto *list = qobject_cast<TQDBGridDropDownList *>(made.get()))
                found = list->SelectListItem(typed, item);
        }
    } catch (const Exception &e) {
        MessageDlg(e.Message(), mtError, {mbOK});
        return false;
    }
    if (!found)
        return false;
    setText(item);
    Q_EMIT textEdited(item);
    setSelection(int(item.size()), int(typed.size()) - int(item.size()));
    return true;
}

bool TQDBGridEditor::SelectNextItem(bool forward, bool cycle)
{
    if (!popup_)
        return false;
    QString item;
    if (!popup_->SelectNextItem(forward, cycle, item))
        return false;
    SetupListValue(item, true);
    return true;
}

void TQDBGridEditor::SetupListValue(const QString &value, bool select)
{
    setText(value);
    Q_EMIT textEdited(value);
    if (select)
        selectAll();
}

void TQDBGridEditor::ClearListValue()
{
    SetupListValue(QString(), false);
}

QRect TQDBGridEditor::DropDownRect() const
{
    QRect r = geometry();
    if (grid_) {
        r.adjust(-1, 1, 1, -1);
        r.setBottom(r.bottom() + grid_->GridLineWidth());
    }
    return r;
}

void TQDBGridEditor::DataChanged()
{
    CloseUp(false);
}

void TQDBGridEditor::UpdateEditorColor()
{
    update();
}

} // namespace qdb
