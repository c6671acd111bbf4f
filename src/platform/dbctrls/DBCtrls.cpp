#include "DBCtrls.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QRadioButton>

namespace qdb {

namespace {

// Binds a control's link: it shows the field again whenever the record or the field changes.
void Bind(TFieldDataLink &link, QObject *control, const std::function<void()> &refresh)
{
    link.SetControl(control);
    link.OnDataChange = [refresh](TObject *) { refresh(); };
    link.OnActiveChange = [refresh](TObject *) { refresh(); };
}

void Unbind(TFieldDataLink &link)
{
    link.OnDataChange = nullptr;
    link.OnActiveChange = nullptr;
    link.SetDataSource(nullptr);
}

// Writes a value the user chose; what the field refuses is shown and nothing changes.
bool Write(const std::function<void()> &write)
{
    try {
        write();
        return true;
    } catch (const Exception &e) {
        MessageDlg(e.Message(), mtError, {mbOK});
        return false;
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
    Bind(link_, this, [this] { DataChange(); });
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
    TField *f = Field();
    if (readOnly_ || !f || !link_.Edit())
        return; // nothing may change: the box keeps showing the field
    Qt::CheckState next = checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked;
    if (allowGrayed_ && checkState() == Qt::Unchecked)
        next = Qt::PartiallyChecked;
    Write([&] {
        if (next == Qt::PartiallyChecked)
            f->Clear();
        else if (f->DataType() == ftBoolean)
            f->SetAsBoolean(next == Qt::Checked);
        else
            f->SetAsString((next == Qt::Checked ? valueChecked_ : valueUnchecked_).section(QLatin1Char(';'), 0, 0));
    });
    DataChange();
}

// ---- the radio group ----

TDBRadioGroup::TDBRadioGroup(QWidget *parent)
    : QGroupBox(parent), items_(new TStringList(this)), values_(new TStringList(this))
{
    buttons_.setExclusive(true);
    new QGridLayout(this);
    Bind(link_, this, [this] { DataChange(); });
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
    TField *f = Field();
    // Refused, the field's own value is checked again.
    if (readOnly_ || !f || !link_.Edit()) {
        showField();
        return;
    }
    const QString value = GetButtonValue(index);
    if (!Write([&] { f->SetText(value); }))
        showField();
}

} // namespace qdb
