// The filter form over an in-memory table: its controls where users expect them, the
// conditions it writes, periods that fill both conditions, the state it keeps per column, and
// a condition the data set refuses.

#include "TestSupport.h"

#include "filter/QDBFilter.h"
#include "filter/QDBFilterForm.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/DateUtils.h"
#include "platform/rtl/FormatDateTime.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class FilterForm : public testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        table.FieldDefs().Add(QStringLiteral("id"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("city"), ftString, 20);
        table.FieldDefs().Add(QStringLiteral("day"), ftDate);
        table.CreateDataSet();
        const char *const cities[] = {"Paris", "Oslo", "Rome", "Bern", "Paris", "Lima"};
        for (int id = 1; id <= 6; ++id)
            table.AppendRecord({id, QString::fromLatin1(cities[id - 1]), Date() + id - 3});
        table.First();
        source.SetDataSet(&table);
        grid.SetDataSource(&source);
        grid.GetFilterGrid()->SetAutoFilter(true);
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    static void choose(QComboBox *list, TQDBGridFilterClause clause) { list->setCurrentIndex(list->findData(int(clause))); }

    TMemTable table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(FilterForm, TwoConditionsBecomeTheColumnsFilterAndAreKept)
{
    {
        TQDBGridFilterForm form;
        form.CreateControls(column("city"));
        EXPECT_EQ(form.windowTitle(), "Select filter");
        EXPECT_EQ(form.Heading->text(), "Show the rows in which the field city");
        EXPECT_EQ(form.ClauseList1->geometry(), QRect(16, 48, 161, 21));
        EXPECT_EQ(form.ValuesList2->geometry(), QRect(192, 108, 133, 21));
        EXPECT_TRUE(form.RadioButton1->isChecked());
        EXPECT_FALSE(form.ListButton1->isVisibleTo(&form)); // text: no calendar, no calculator
        EXPECT_TRUE(form.SymbolLabel1->isVisibleTo(&form));
        EXPECT_EQ(form.SymbolLabel2->text(), "Symbol % replaces any text string");
        EXPECT_EQ(form.ValuesList1->count(), 5); // the distinct cities
        choose(form.ClauseList1, fcStartsFrom);
        form.ValuesList1->setEditText(QStringLiteral("P"));
        choose(form.ClauseList2, fcIsEqual);
        form.ValuesList2->setEditText(QStringLiteral("Rome"));
        form.RadioButton2->setChecked(true);
        form.accept();
        EXPECT_EQ(form.result(), QDialog::Accepted);
    }
    EXPECT_EQ(table.RecordCount(), 3);
    EXPECT_FALSE(column("city")->GetFilterText().isEmpty());

    // Opened again, the form shows what was saved; emptiness needs no value.
    TQDBGridFilterForm again;
    again.CreateControls(column("city"));
    EXPECT_EQ(again.ClauseList1->currentData().toInt(), int(fcStartsFrom));
    EXPECT_EQ(again.ValuesList2->currentText(), "Rome");
    EXPECT_TRUE(again.RadioButton2->isChecked());
    choose(again.ClauseList1, fcIsNotEmpty);
    EXPECT_FALSE(again.ValuesList1->isEnabled());
    choose(again.ClauseList2, fcNoFilter);
    again.NOTCheckBox->setChecked(true);
    again.accept();
    EXPECT_EQ(table.RecordCount(), 0); // not "not empty"
}

TEST_F(FilterForm, APeriodFillsBothConditionsAndTypingClearsIt)
{
    TQDBGridFilterForm form;
    form.CreateControls(column("day"));
    EXPECT_TRUE(form.PeriodList->isVisibleTo(&form));
    EXPECT_FALSE(form.SymbolLabel1->isVisibleTo(&form));
    EXPECT_EQ(form.ListButton1->toolTip(), "Show calendar");
    int today = -1;
    for (int i = 0; i < form.PeriodList->count() && today < 0; ++i)
        if (form.PeriodList->itemText(i).trimmed() == "Today")
            today = i;
    ASSERT_GE(today, 0);
    form.PeriodList->setCurrentIndex(today);
    EXPECT_EQ(form.ClauseList1->currentData().toInt(), int(fcIsGreaterThenOrEqual));
    EXPECT_EQ(form.ValuesList1->currentText(), DateToStr(Date()));
    EXPECT_EQ(form.ClauseList2->currentData().toInt(), int(fcIsLessThen));
    EXPECT_EQ(form.ValuesList2->currentText(), DateToStr(Date() + 1));
    EXPECT_TRUE(form.RadioButton1->isChecked());
    form.accept();
    EXPECT_EQ(table.RecordCount(), 1);

    form.ValuesList2->setEditText(DateToStr(Date() + 2));
    EXPECT_EQ(form.PeriodList->currentIndex(), 0);
}

TEST_F(FilterForm, ARefusedConditionKeepsTheFormAndTheOldFilter)
{
    column("city")->SetFilterText(QStringLiteral("city = 'Oslo'"));
    MessageLog messages;
    TQDBGridFilterForm form;
    form.CreateControls(column("day"));
    choose(form.ClauseList1, fcIsGreaterThen);
    form.ValuesList1->setEditText(QStringLiteral("not a date"));
    form.accept();
    EXPECT_NE(form.result(), QDialog::Accepted);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts[0].startsWith(QStringLiteral("Invalid filter expression"))) << messages.texts[0].toStdString();
    EXPECT_EQ(form.ValuesList1->currentText(), "not a date");
    EXPECT_TRUE(TQDBGridFilterForm::SavedState(column("day")).isEmpty());
    EXPECT_EQ(table.RecordCount(), 1);
}

TEST_F(FilterForm, TheListsSelectFilterOpensTheForm)
{
    grid.resize(400, 200);
    grid.show();
    grid.grab();
    grid.ShowAutoFilter(column("city"));
    auto *popup = grid.findChild<QWidget *>(QStringLiteral("PopupFilterList"));
    ASSERT_TRUE(popup);
    auto *select = popup->findChildren<QToolButton *>().value(1);
    ASSERT_TRUE(select && select->isVisible());
    select->click();
    auto *form = grid.window()->findChild<TQDBGridFilterForm *>();
    ASSERT_TRUE(form);
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->Column(), column("city"));
    form->reject();
}

TEST_F(FilterForm, TheGridsSettingsReachTheControls)
{
    grid.GetFilterGrid()->SetDropDownRows(12);
    grid.GetFilterGrid()->SetClauses({fcIsEqual, fcIsEmpty});
    TQDBGridFilterForm form;
    form.CreateControls(column("city"));
    EXPECT_EQ(form.ValuesList1->maxVisibleItems(), 12);
    EXPECT_EQ(form.ClauseList2->count(), 3); // the empty choice and the two offered
    // A calendar for a text field, when the grid asks for one.
    form.SetListButtonStyle(cbsCalendar);
    ASSERT_TRUE(form.ListButton1->isVisibleTo(&form));
    EXPECT_EQ(form.ListButton1->toolTip(), "Show calendar");
    form.SetListButtonStyle(cbsNone);
    EXPECT_FALSE(form.ListButton1->isVisibleTo(&form));

    // Clearing the conditions leaves the chosen clauses offered.
    choose(form.ClauseList1, fcIsEqual);
    form.ValuesList1->setEditText(QStringLiteral("Oslo"));
    form.RadioButton2->setChecked(true);
    form.SetFilterClauses({fcIsEqual});
    EXPECT_EQ(form.ClauseList1->currentData().toInt(), int(fcIsEqual));
    form.ClearConditions();
    EXPECT_EQ(form.ClauseList1->currentData().toInt(), int(fcNoFilter));
    EXPECT_EQ(form.ValuesList1->currentText(), "");
    EXPECT_TRUE(form.RadioButton1->isChecked());
    form.accept();
    EXPECT_TRUE(column("city")->GetFilterText().isEmpty());
    EXPECT_EQ(table.RecordCount(), 6);
}
