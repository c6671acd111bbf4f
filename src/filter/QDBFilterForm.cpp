#include "QDBFilterForm.h"

#include "QDBFilterConsts.h"
#include "QDBFilterList.h"
#include "QDBGridFilter.h"

#include "editors/QDBCalculator.h"
#include "editors/QDBCalendar.h"
#include "grid/QDBColumns.h"
#include "grid/QDBGrid.h"
#include "platform/db/Fields.h"
#include "platform/rtl/DateUtils.h"
#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/rtl/Strings.h"

#include <QCheckBox>
#include <QAbstractItemView>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QToolButton>

namespace qdb {

namespace {

// The column's saved state lives on the column while the program runs.
constexpr const char *StateProperty = "qdbFilterFormState";

QString valueOf(const QStringList &state, const QString &name)
{
    for (const QString &line : state)
        if (line.section(QLatin1Char('='), 0, 0) == name)
            return line.section(QLatin1Char('='), 1);
    return {};
}

bool isDateType(TFieldType t)
{
    return t == ftDate || t == ftTime || t == ftDateTime || t == ftTimeStamp;
}

bool isNumberType(TFieldType t)
{
    return t == ftSmallint || t == ftInteger || t == ftWord || t == ftLargeint || t == ftAutoInc || t == ftFloat
        || t == ftCurrency || t == ftBCD || t == ftFMTBcd;
}
} // namespace

TQDBGridFilterForm::TQDBGridFilterForm(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QCoreApplication::translate("qdb", "Select filter"));
    setWindowFlags(Qt::Dialog | Qt::WindowSystemMenuHint | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    QFont small = font();
    small.setPixelSize(11);
    setFont(small);
}

TQDBGridFilterForm::~TQDBGridFilterForm() = default;

bool TQDBGridFilterForm::isDateField() const
{
    TField *f = column_ ? TQDBColumnFilter(column_).GetFilterField() : nullptr;
    return f && isDateType(f->DataType());
}

bool TQDBGridFilterForm::isNumberField() const
{
    TField *f = column_ ? TQDBColumnFilter(column_).GetFilterField() : nullptr;
    return f && isNumberType(f->DataType());
}

void TQDBGridFilterForm::CreateControls(TQColumn *column)
{
    column_ = column;
    resize(368, 200);
    Heading = new QLabel(this);
    Heading->setGeometry(16, 16, 337, 16);
    Heading->setText(QCoreApplication::translate("qdb", "Show the rows in which the field %s").replace(QLatin1String("%s"), column->GetTitle()->GetCaption()));
    for (int top : {32, 144}) {
        auto *line = new QFrame(this);
        line->setFrameShape(QFrame::HLine);
        line->setFrameShadow(QFrame::Sunken);
        line->setGeometry(16, top, 337, 2);
    }
    auto makeClauses = [&](const char *name, int top) {
        auto *list = new QComboBox(this);
        list->setObjectName(QString::fromLatin1(name));
        list->setGeometry(16, top, 161, 21);
        return list;
    };
    auto makeValues = [&](const char *name, int top) {
        auto *list = new QComboBox(this);
        list->setObjectName(QString::fromLatin1(name));
        list->setEditable(true);
        list->setInsertPolicy(QComboBox::NoInsert);
        list->setGeometry(192, top, 133, 21);
        return list;
    };
    auto makeButton = [&](int which, int top) {
        auto *button = new QToolButton(this);
        button->setGeometry(330, top, 23, 22);
        button->setText(QStringLiteral("..."));
        connect(button, &QToolButton::clicked, this, [this, which] { ListButtonClick(which); });
        return button;
    };
    ClauseList1 = makeClauses("ClauseList1", 48);
    ValuesList1 = makeValues("ValuesList1", 48);
    ListButton1 = makeButton(1, 47);
    RadioButton1 = new QRadioButton(QCoreApplication::translate("qdb", "AND"), this);
    RadioButton1->setObjectName(QStringLiteral("RadioButton1"));
    RadioButton1->setGeometry(16, 80, 77, 17);
    RadioButton1->setChecked(true);
    RadioButton2 = new QRadioButton(QCoreApplication::translate("qdb", "OR"), this);
    RadioButton2->setObjectName(QStringLiteral("RadioButton2"));
    RadioButton2->setGeometry(100, 80, 77, 17);
    NOTCheckBox = new QCheckBox(QCoreApplication::translate("qdb", "Reverse filter conditions"), this);
    NOTCheckBox->setObjectName(QStringLiteral("NOTCheckBox"));
    NOTCheckBox->setGeometry(192, 80, 161, 17);
    ClauseList2 = makeClauses("ClauseList2", 108);
    ValuesList2 = makeValues("ValuesList2", 108);
    ListButton2 = makeButton(2, 107);

    // Dates and times pick a period; other fields are told the wildcards.
    SymbolLabel1 = new QLabel(QCoreApplication::translate("qdb", "Symbol %s replaces any character").replace(QLatin1String("%s"), QString(QLatin1Char(FilterConsts::AnyCharSymbol))), this);
    SymbolLabel1->setGeometry(16, 156, 161, 14);
    SymbolLabel2 = new QLabel(QCoreApplication::translate("qdb", "Symbol %s replaces any text string").replace(QLatin1String("%s"), QString(QLatin1Char(FilterConsts::AnyTextSymbol))), this);
    SymbolLabel2->setGeometry(16, 172, 161, 14);
    PeriodList = new QComboBox(this);
    PeriodList->setObjectName(QStringLiteral("PeriodList"));
    PeriodList->setGeometry(16, 162, 161, 21);
    PeriodList->setToolTip(FilterConsts::SSelectPeriod());
    const bool dates = isDateField();
    PeriodList->setVisible(dates);
    SymbolLabel1->setVisible(!dates);
    SymbolLabel2->setVisible(!dates);

    auto *ok = new QPushButton(QCoreApplication::translate("qdb", "OK"), this);
    ok->setGeometry(196, 160, 75, 25);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto *cancel = new QPushButton(QCoreApplication::translate("qdb", "Cancel"), this);
    cancel->setGeometry(278, 160, 75, 25);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    SetFilterClauses(TQDBColumnFilter(column).GetFilterClauses());
    if (const TQCustomDBGrid *grid = column->GetGrid()) {
        SetDropDownRows(grid->GetFilterGrid()->GetDropDownRows());
        SetDropDownWidth(grid->GetFilterGrid()->GetDropDownWidth());
    }
    SetListButtonStyle(listButtonStyle_);
    LoadPeriodData();
    LoadFilterData();
    LoadFilterForm();
    for (QComboBox *list : {ClauseList1, ClauseList2, ValuesList1, ValuesList2, PeriodList}) {
        connect(list, &QComboBox::currentIndexChanged, this, [this, list] { ListChanged(list); });
        if (list->isEditable())
            connect(list, &QComboBox::editTextChanged, this, [this, list] { ListChanged(list); });
    }
    connect(NOTCheckBox, &QCheckBox::toggled, this, [this] { ListChanged(NOTCheckBox); });
    connect(RadioButton1, &QRadioButton::toggled, this, [this] { ListChanged(RadioButton1); });
    if (ValuesList1->isEnabled())
        ValuesList1->setFocus();
}

TQDBGridFilterClause TQDBGridFilterForm::clauseOf(const QComboBox *list)
{
    return TQDBGridFilterClause(list->currentData().toInt());
}

void TQDBGridFilterForm::setClause(QComboBox *list, int ordinal)
{
    const int at = list->findData(ordinal);
    list->setCurrentIndex(at >= 0 ? at : 0);
}

QStringList TQDBGridFilterForm::SavedState(const TQColumn *column)
{
    return column ? column->property(StateProperty).toStringList() : QStringList();
}

void TQDBGridFilterForm::LoadFilterForm()
{
    const QStringList state = SavedState(column_);
    inListChange_ = true;
    setClause(ClauseList1, valueOf(state, QStringLiteral("ClauseList1Text")).toInt());
    setClause(ClauseList2, valueOf(state, QStringLiteral("ClauseList2Text")).toInt());
    ValuesList1->setEditText(valueOf(state, QStringLiteral("ValuesList1Text")));
    ValuesList2->setEditText(valueOf(state, QStringLiteral("ValuesList2Text")));
    PeriodList->setCurrentIndex(qBound(0, valueOf(state, QStringLiteral("PeriodListText")).toInt(), PeriodList->count() - 1));
    const auto checked = [&](const char *name) { return valueOf(state, QString::fromLatin1(name)).toInt() != 0; };
    if (!state.isEmpty()) {
        RadioButton1->setChecked(checked("RadioButton1Checked"));
        RadioButton2->setChecked(checked("RadioButton2Checked"));
    }
    NOTCheckBox->setChecked(checked("NOTCheckBoxChecked"));
    clauseChanged(ClauseList1, ValuesList1, ListButton1);
    clauseChanged(ClauseList2, ValuesList2, ListButton2);
    inListChange_ = false;
}

void TQDBGridFilterForm::LoadFilterData()
{
    TQCustomDBGrid *grid = column_ ? column_->GetGrid() : nullptr;
    if (!grid)
        return;
    // The column's values, as its value list gathers them (the database's first page).
    TQDBGridFilterList values(grid, column_);
    values.LoadFilterData();
    QStringList keys;
    for (int i = 0; i < values.FilterData()->Count(); ++i)
        keys << values.FilterData()->KeyValue(i);
    for (QComboBox *list : {ValuesList1, ValuesList2}) {
        const QString typed = list->currentText();
        list->clear();
        list->addItems(keys);
        list->setEditText(typed);
    }
}

void TQDBGridFilterForm::LoadPeriodData()
{
    auto *model = new QStandardItemModel(PeriodList);
    auto *none = new QStandardItem(FilterConsts::SSelectPeriod());
    model->appendRow(none);
    periods_.clear();
    const TDateTime now = Now();
    const TQDBGridFilterPeriods offered = column_ && column_->GetGrid() ? column_->GetGrid()->GetFilterGrid()->GetPeriods()
                                                                        : DefaultFilterPeriods();
    for (int g = fpMinute; g <= fpOthers; ++g) {
        const auto group = TQDBGridFilterPeriod(g);
        if (!offered.Contains(group) || FilterPeriodCaption(group).isEmpty())
            continue;
        // A group is a heading; its items, indented, are what can be chosen.
        auto *heading = new QStandardItem(FilterPeriodCaption(group));
        heading->setFlags(Qt::ItemIsEnabled);
        QFont bold = font();
        bold.setBold(true);
        heading->setFont(bold);
        model->appendRow(heading);
        periods_ << TQFilterPeriodItem{};
        for (const TQFilterPeriodItem &item : FilterPeriodItems(group, now)) {
            model->appendRow(new QStandardItem(QStringLiteral("    ") + item.Caption));
            periods_ << item;
        }
    }
    PeriodList->setModel(model);
}

void TQDBGridFilterForm::clauseChanged(QComboBox *clauses, QComboBox *values, QToolButton *button)
{
    // Emptiness needs no value.
    const TQDBGridFilterClause clause = clauseOf(clauses);
    const bool needsValue = clause != fcNoFilter && clause != fcIsEmpty && clause != fcIsNotEmpty;
    values->setEnabled(needsValue);
    button->setEnabled(needsValue);
}

void TQDBGridFilterForm::ListChanged(QObject *list)
{
    if (list == ClauseList1)
        clauseChanged(ClauseList1, ValuesList1, ListButton1);
    else if (list == ClauseList2)
        clauseChanged(ClauseList2, ValuesList2, ListButton2);
    if (inListChange_)
        return;
    inListChange_ = true;
    if (list == PeriodList) {
        const int index = PeriodList->currentIndex() - 1;
        if (index >= 0 && index < periods_.size() && !periods_[index].Caption.isEmpty()) {
            TQFilterCondition first, second;
            TField *f = TQDBColumnFilter(column_).GetFilterField();
            FilterPeriodConditions(periods_[index], f ? f->DataType() : ftDateTime, first, second);
            setClause(ClauseList1, first.Clause);
            ValuesList1->setEditText(first.Value);
            setClause(ClauseList2, second.Clause);
            ValuesList2->setEditText(second.Value);
            RadioButton1->setChecked(true);
            clauseChanged(ClauseList1, ValuesList1, ListButton1);
            clauseChanged(ClauseList2, ValuesList2, ListButton2);
        }
    } else {
        PeriodList->setCurrentIndex(0); // a condition by hand is no period
    }
    inListChange_ = false;
}

void TQDBGridFilterForm::ListButtonClick(int which)
{
    QComboBox *values = which == 1 ? ValuesList1 : ValuesList2;
    QToolButton *button = which == 1 ? ListButton1 : ListButton2;
    TQDBPopupList *popup = nullptr;
    if (calendarButtons()) {
        auto *calendar = new TQDBPopupCalendar(values);
        TDateTime date = 0;
        calendar->SetDate(TryStrToDateTime(values->currentText(), date) ? date : Date());
        calendar->OnCloseUp = [calendar, values](bool accept) {
            if (accept)
                values->setEditText(DateToStr(calendar->GetDate()));
            calendar->deleteLater();
        };
        popup = calendar;
    } else {
        auto *calculator = new TQDBPopupCalculator(values);
        calculator->SetText(values->currentText());
        calculator->OnCloseUp = [calculator, values](bool accept) {
            if (accept)
                values->setEditText(calculator->Text());
            calculator->deleteLater();
        };
        popup = calculator;
    }
    popup->PlaceUnder(QRect(values->mapToGlobal(QPoint(0, 0)), QSize(values->width() + button->width() + 5, values->height())));
}

bool TQDBGridFilterForm::calendarButtons() const
{
    return listButtonStyle_ == cbsCalendar || (listButtonStyle_ != cbsCalculator && isDateField());
}

bool TQDBGridFilterForm::listButtons() const
{
    return listButtonStyle_ == cbsCalendar || listButtonStyle_ == cbsCalculator
        || ((listButtonStyle_ == cbsAuto || listButtonStyle_ == cbsDropDown) && (isDateField() || isNumberField()));
}

void TQDBGridFilterForm::SetFilterClauses(TQDBGridFilterClauses clauses)
{
    for (QComboBox *list : {ClauseList1, ClauseList2}) {
        if (!list)
            continue;
        const QSignalBlocker quiet(list);
        const int chosen = list->currentData().toInt();
        list->clear();
        list->addItem(QString(), int(fcNoFilter));
        for (int c = fcContains; c <= fcIsNotEmpty; ++c)
            if (clauses.Contains(TQDBGridFilterClause(c)))
                list->addItem(FilterConsts::ClauseCaption(TQDBGridFilterClause(c)), c);
        setClause(list, chosen);
    }
}

void TQDBGridFilterForm::SetDropDownRows(int rows)
{
    for (QComboBox *list : {ClauseList1, ClauseList2, ValuesList1, ValuesList2, PeriodList})
        if (list)
            list->setMaxVisibleItems(rows > 0 ? rows : 10); // Qt's own number
}

void TQDBGridFilterForm::SetDropDownWidth(int width)
{
    for (QComboBox *list : {ValuesList1, ValuesList2})
        if (list)
            list->view()->setMinimumWidth(qMax(0, width));
}

void TQDBGridFilterForm::SetListButtonStyle(TQColumnButtonStyle style)
{
    listButtonStyle_ = style;
    for (QToolButton *button : {ListButton1, ListButton2}) {
        if (!button)
            continue;
        button->setToolTip(calendarButtons() ? QCoreApplication::translate("qdb", "Show calendar") : QCoreApplication::translate("qdb", "Show calculator"));
        button->setVisible(listButtons());
    }
}

void TQDBGridFilterForm::SetFlatButtons(bool on)
{
    for (QToolButton *button : {ListButton1, ListButton2})
        if (button)
            button->setAutoRaise(on);
}

void TQDBGridFilterForm::ClearConditions()
{
    inListChange_ = true;
    for (QComboBox *list : {ClauseList1, ClauseList2})
        setClause(list, fcNoFilter);
    for (QComboBox *list : {ValuesList1, ValuesList2})
        list->setEditText(QString());
    PeriodList->setCurrentIndex(0);
    RadioButton1->setChecked(true);
    NOTCheckBox->setChecked(false);
    clauseChanged(ClauseList1, ValuesList1, ListButton1);
    clauseChanged(ClauseList2, ValuesList2, ListButton2);
    inListChange_ = false;
}

void TQDBGridFilterForm::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    menu.addAction(QCoreApplication::translate("qdb", "Clear conditions"), this, &TQDBGridFilterForm::ClearConditions);
    menu.exec(event->globalPos());
}

void TQDBGridFilterForm::SaveFilterForm()
{
    const TQFilterCondition first{clauseOf(ClauseList1), ValuesList1->currentText()};
    const TQFilterCondition second{clauseOf(ClauseList2), ValuesList2->currentText()};
    TQDBColumnFilter(column_).StoreFilter(first, second, RadioButton1->isChecked(), NOTCheckBox->isChecked());
    const auto mark = [](bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); };
    column_->setProperty(StateProperty,
                         QStringList{QStringLiteral("ClauseList1Text=%1").arg(int(first.Clause)),
                                     QStringLiteral("ClauseList2Text=%1").arg(int(second.Clause)),
                                     QStringLiteral("ValuesList1Text=") + first.Value,
                                     QStringLiteral("ValuesList2Text=") + second.Value,
                                     QStringLiteral("PeriodListText=%1").arg(PeriodList->currentIndex()),
                                     QStringLiteral("RadioButton1Checked=") + mark(RadioButton1->isChecked()),
                                     QStringLiteral("RadioButton2Checked=") + mark(RadioButton2->isChecked()),
                                     QStringLiteral("NOTCheckBoxChecked=") + mark(NOTCheckBox->isChecked())});
}

void TQDBGridFilterForm::accept()
{
    if (!column_) {
        QDialog::reject();
        return;
    }
    try {
        SaveFilterForm();
    } catch (const Exception &e) {
        // The column keeps its previous condition; the form stays open with what was typed.
        MessageDlg(e.Message(), mtError, {mbOK});
        return;
    }
    QDialog::accept();
}

} // namespace qdb
