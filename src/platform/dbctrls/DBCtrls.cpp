#include "DBCtrls.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QRadioButton>

namespace qdb {

namespace {

// Binds a control's link: it shows the field again whenever the record or the field changes,
// and writes the control's value into the field when the record is updated.
void Bind(TFieldDataLink &link, QObject *control, const std::function<void()> &refresh,
          const std::function<void()> &update = nullptr)
{
    link.SetControl(control);
    link.OnDataChange = [refresh](TObject *) { refresh(); };
    link.OnActiveChange = [refresh](TObject *) { refresh(); };
    if (update)
        link.OnUpdateData = [update](TObject *) { update(); };
}

void Unbind(TFieldDataLink &link)
{
    link.OnDataChange = nullptr;
    link.OnActiveChange = nullptr;
    link.OnUpdateData = nullptr;
    link.SetDataSource(nullptr);
}

// Keys every editing data control shares: Backspace and Space start the edit, Esc takes back
// what the control changed.
bool DataControlKey(TFieldDataLink &link, QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Backspace:
    case Qt::Key_Space:
        link.Edit();
        return false; // Space goes on to the button
    case Qt::Key_Escape:
        if (!link.IsModified())
            return false; // nothing to take back: the dialog may close
        link.Reset();
        return true;
    default:
        return false;
    }
}

// A control's change reaches the field when the focus leaves it; a value the field refuses
// keeps the focus there with what the user chose.
void DataControlExit(TFieldDataLink &link, QWidget *control)
{
    if (!link.IsModified())
        return;
    try {
        link.UpdateRecord();
    } catch (const Exception &e) {
        control->setFocus();
        MessageDlg(e.Message(), mtError, {mbOK});
    }
}

} // namespace

// ---- the label ----

TDBText::TDBText(QWidget *parent) : QLabel(parent)
{
    Bind(link_, this, [this] { DataChange(); });
}

TDBText::~TDBText()
{
    Unbind(link_);
}

void TDBText::SetDataSource(TDataSource *source)
{
    link_.SetDataSource(source);
    DataChange();
}

void TDBText::SetDataField(const QString &name)
{
    link_.SetFieldName(name);
    DataChange();
}

void TDBText::DataChange()
{
    setText(Field() ? Field()->DisplayText() : QString());
}

// ---- the check box ----

TDBCheckBox::TDBCheckBox(QWidget *parent) : QCheckBox(parent)
{
    setTristate(true);
    Bind(link_, this, [this] { DataChange(); }, [this] { UpdateData(); });
    SetValueChecked(QStringLiteral("True"));
    SetValueUnchecked(QStringLiteral("False"));
}

TDBCheckBox::~TDBCheckBox()
{
    Unbind(link_);
}

void TDBCheckBox::SetDataSource(TDataSource *source)
{
    link_.SetDataSource(source);
    DataChange();
}

void TDBCheckBox::SetDataField(const QString &name)
{
    link_.SetFieldName(name);
    DataChange();
}

void TDBCheckBox::SetValueChecked(const QString &values)
{
    valueChecked_ = values;
    DataChange();
}

void TDBCheckBox::SetValueUnchecked(const QString &values)
{
    valueUnchecked_ = values;
    DataChange();
}

Qt::CheckState TDBCheckBox::FieldState() const
{
    const TField *f = Field();
    if (!f || f->IsNull())
        return Qt::PartiallyChecked;
    if (f->DataType() == ftBoolean)
        return f->AsBoolean() ? Qt::Checked : Qt::Unchecked;
    const QString text = f->Text();
    const auto holds = [&text](const QString &values) {
        for (const QString &value : values.split(QLatin1Char(';')))
            if (value.compare(text, Qt::CaseInsensitive) == 0)
                return true;
        return false;
    };
    if (holds(valueChecked_))
        return Qt::Checked;
    if (holds(valueUnchecked_))
        return Qt::Unchecked;
    return Qt::PartiallyChecked; // a value of neither list is shown as such and left alone
}

void TDBCheckBox::DataChange()
{
    setCheckState(FieldState());
}

void TDBCheckBox::nextCheckState()
{
    if (!link_.Edit())
        return; // nothing may change: the box keeps showing the field
    Qt::CheckState next = checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked;
    if (allowGrayed_ && checkState() == Qt::Unchecked)
        next = Qt::PartiallyChecked;
    setCheckState(next);
    link_.Modified();
}

void TDBCheckBox::UpdateData()
{
    TField *f = Field();
    const Qt::CheckState state = checkState();
    if (state == Qt::PartiallyChecked)
        f->Clear();
    else if (f->DataType() == ftBoolean)
        f->SetAsBoolean(state == Qt::Checked);
    else
        f->SetAsString((state == Qt::Checked ? valueChecked_ : valueUnchecked_).section(QLatin1Char(';'), 0, 0));
}

void TDBCheckBox::keyPressEvent(QKeyEvent *event)
{
    if (!DataControlKey(link_, event))
        QCheckBox::keyPressEvent(event);
}

void TDBCheckBox::focusOutEvent(QFocusEvent *event)
{
    QCheckBox::focusOutEvent(event);
    DataControlExit(link_, this);
}

// ---- the radio group ----

TDBRadioGroup::TDBRadioGroup(QWidget *parent)
    : QGroupBox(parent), items_(new TStringList(this)), values_(new TStringList(this))
{
    buttons_.setExclusive(true);
    new QGridLayout(this);
    Bind(link_, this, [this] { DataChange(); }, [this] { UpdateData(); });
    items_->OnChange = [this](TObject *) { buildButtons(); };
    // The buttons' values changed: the field's value is looked for again.
    values_->OnChange = [this](TObject *) { showField(); };
    connect(&buttons_, &QButtonGroup::idClicked, this, [this](int id) {
        if (!inUpdate_)
            Click(id);
    });
}

TDBRadioGroup::~TDBRadioGroup()
{
    Unbind(link_);
}

void TDBRadioGroup::SetDataSource(TDataSource *source)
{
    link_.SetDataSource(source);
    DataChange();
}

void TDBRadioGroup::SetDataField(const QString &name)
{
    link_.SetFieldName(name);
    DataChange();
}

void TDBRadioGroup::SetColumns(int columns)
{
    columns_ = qMax(1, columns);
    buildButtons();
}

void TDBRadioGroup::buildButtons()
{
    for (QAbstractButton *button : buttons_.buttons()) {
        buttons_.removeButton(button);
        delete button;
    }
    auto *grid = static_cast<QGridLayout *>(layout());
    const int count = items_->Count();
    const int rows = (count + columns_ - 1) / columns_;
    for (int i = 0; i < count; ++i) {
        auto *button = new QRadioButton(items_->Get(i), this);
        button->installEventFilter(this);
        buttons_.addButton(button, i);
        grid->addWidget(button, rows > 0 ? i % rows : 0, rows > 0 ? i / rows : 0);
    }
    showField();
}

QString TDBRadioGroup::GetButtonValue(int index) const
{
    if (index >= 0 && index < values_->Count() && !values_->Get(index).isEmpty())
        return values_->Get(index);
    return index >= 0 && index < items_->Count() ? items_->Get(index) : QString();
}

void TDBRadioGroup::SetValue(const QString &value)
{
    if (value != value_)
        select(value);
}

void TDBRadioGroup::showField()
{
    select(Field() ? Field()->Text() : QString());
}

void TDBRadioGroup::select(const QString &value)
{
    inUpdate_ = true;
    QAbstractButton *old = buttons_.checkedButton();
    const bool hadFocus = old && old->hasFocus();
    int chosen = -1;
    for (int i = 0; i < items_->Count() && chosen < 0; ++i)
        if (GetButtonValue(i) == value)
            chosen = i;
    // An exclusive group keeps one button checked; no value checks none.
    buttons_.setExclusive(false);
    for (QAbstractButton *button : buttons_.buttons())
        button->setChecked(buttons_.id(button) == chosen);
    buttons_.setExclusive(true);
    if (hadFocus && chosen >= 0)
        buttons_.button(chosen)->setFocus();
    inUpdate_ = false;
    value_ = value;
    Change();
}

void TDBRadioGroup::DataChange()
{
    SetValue(Field() ? Field()->Text() : QString());
}

void TDBRadioGroup::Change()
{
    if (OnChange)
        OnChange(this);
}

void TDBRadioGroup::Click(int index)
{
    // Refused, the field's own value is checked again.
    if (!link_.Edit()) {
        showField();
        return;
    }
    SetValue(GetButtonValue(index));
    link_.Modified();
}

void TDBRadioGroup::UpdateData()
{
    Field()->SetText(value_);
}

bool TDBRadioGroup::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && DataControlKey(link_, static_cast<QKeyEvent *>(event)))
        return true;
    // Moving between the buttons stays in the group.
    if (event->type() == QEvent::FocusOut && !isAncestorOf(QApplication::focusWidget()))
        DataControlExit(link_, static_cast<QWidget *>(watched));
    return QGroupBox::eventFilter(watched, event);
}

} // namespace qdb
