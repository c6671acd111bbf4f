// The label, check box and radio group bound to fields: they follow the record, edit it by
// keys and clicks, and leave alone what they cannot show or may not change.

#include "platform/dbctrls/DBCtrls.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/MemTable.h"

#include <QApplication>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class DataControls : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        test::AddField(table, QStringLiteral("Name"), ftString, 20);
        test::AddField(table, QStringLiteral("Paid"), ftBoolean);
        test::AddField(table, QStringLiteral("Flag"), ftString, 5);
        test::AddField(table, QStringLiteral("Size"), ftString, 1);
        table.CreateDataSet();
        table.AppendRecord({QStringLiteral("first"), true, QStringLiteral("Y"), QStringLiteral("M")});
        table.AppendRecord({QStringLiteral("second"), Variant::Null(), QStringLiteral("maybe"), QStringLiteral("Q")});
        table.First();
        source.SetDataSet(&table);
    }
    template<typename Control>
    Control *add(const char *field)
    {
        auto *control = new Control(&form);
        control->SetDataSource(&source);
        control->SetDataField(QString::fromLatin1(field));
        return control;
    }
    QString field(const char *name) { return table.FieldByName(QString::fromLatin1(name))->AsString(); }

    TMemTable table;
    TDataSource source;
    QWidget form;
};

} // namespace

TEST_F(DataControls, ALabelFollowsTheRecord)
{
    auto *name = add<TDBText>("Name");
    EXPECT_EQ(name->text(), "first");
    table.Next();
    EXPECT_EQ(name->text(), "second");
    table.Edit();
    table.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("typed"));
    EXPECT_EQ(name->text(), "typed");
    table.Close();
    EXPECT_EQ(name->text(), "");
}

TEST_F(DataControls, ACheckBoxShowsAndWritesItsValues)
{
    auto *paid = add<TDBCheckBox>("Paid");
    auto *flag = add<TDBCheckBox>("Flag");
    flag->SetValueChecked(QStringLiteral("Y;Yes"));
    flag->SetValueUnchecked(QStringLiteral("N;No"));
    form.show();
    EXPECT_EQ(paid->checkState(), Qt::Checked);
    EXPECT_EQ(flag->checkState(), Qt::Checked);

    paid->setFocus();
    QTest::keyClick(paid, Qt::Key_Space);
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(field("Paid"), "False");
    EXPECT_EQ(paid->checkState(), Qt::Unchecked);
    QTest::mouseClick(flag, Qt::LeftButton);
    EXPECT_EQ(field("Flag"), "N"); // the first of the unchecked values
    table.Post();

    // NULL and a value of neither list show the third state, and nothing is written until
    // the user toggles.
    table.Next();
    EXPECT_EQ(paid->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(flag->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(field("Flag"), "maybe");
    QTest::mouseClick(flag, Qt::LeftButton);
    EXPECT_EQ(field("Flag"), "Y");
    table.Cancel();

    // A read-only box, or read-only data, changes nothing.
    flag->SetReadOnly(true);
    QTest::mouseClick(flag, Qt::LeftButton);
    EXPECT_EQ(flag->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(table.State(), dsBrowse);
    table.SetReadOnly(true);
    QTest::mouseClick(paid, Qt::LeftButton);
    EXPECT_EQ(paid->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(table.State(), dsBrowse);
}

TEST_F(DataControls, ARadioGroupChecksTheButtonOfTheValue)
{
    auto *size = add<TDBRadioGroup>("Size");
    int changes = 0;
    size->OnChange = [&changes](TObject *) { ++changes; };
    size->Items()->SetText(QStringLiteral("Small\nMedium\nL"));
    size->Values()->SetText(QStringLiteral("S\nM")); // the third button's value is its item
    form.show();
    size->resize(size->sizeHint());
    QApplication::processEvents();
    EXPECT_EQ(size->ItemIndex(), 1);
    EXPECT_EQ(size->GetButtonValue(2), "L");
    EXPECT_GT(changes, 0);

    // A click on a button's round mark.
    const auto choose = [size](int i) {
        QTest::mouseClick(size->Button(i), Qt::LeftButton, {}, QPoint(6, size->Button(i)->height() / 2));
    };
    choose(2);
    EXPECT_EQ(field("Size"), "L");
    EXPECT_EQ(table.State(), dsEdit);
    table.Post();

    table.Next(); // "Q" is no button's value
    EXPECT_EQ(size->ItemIndex(), -1);
    table.Prior();
    EXPECT_EQ(size->ItemIndex(), 2);

    size->SetReadOnly(true);
    choose(0);
    EXPECT_EQ(size->ItemIndex(), 2);
    EXPECT_EQ(field("Size"), "L");
    EXPECT_EQ(table.State(), dsBrowse);
}
