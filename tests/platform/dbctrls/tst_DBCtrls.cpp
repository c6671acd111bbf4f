// The label, check box and radio group bound to fields: they follow the record, edit it by
// keys and clicks, and leave alone what they cannot show or may not change.

#include "platform/dbctrls/DBCtrls.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/MemTable.h"

#include <QApplication>
#include <QLineEdit>
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
    auto *other = new QLineEdit(&form);
    flag->SetValueChecked(QStringLiteral("Y;Yes"));
    flag->SetValueUnchecked(QStringLiteral("N;No"));
    form.show();
    QApplication::setActiveWindow(&form);
    EXPECT_EQ(paid->checkState(), Qt::Checked);
    EXPECT_EQ(flag->checkState(), Qt::Checked);

    // Space toggles and starts the edit; the field takes the state when the focus leaves.
    paid->setFocus();
    QTest::keyClick(paid, Qt::Key_Space);
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(paid->checkState(), Qt::Unchecked);
    EXPECT_EQ(field("Paid"), "True");
    other->setFocus();
    EXPECT_EQ(field("Paid"), "False");
    // Esc takes back a toggle not yet written.
    QTest::mouseClick(flag, Qt::LeftButton);
    EXPECT_EQ(flag->checkState(), Qt::Unchecked);
    QTest::keyClick(flag, Qt::Key_Escape);
    EXPECT_EQ(flag->checkState(), Qt::Checked);
    QTest::mouseClick(flag, Qt::LeftButton);
    table.Post(); // posting writes what the box shows
    EXPECT_EQ(field("Flag"), "N"); // the first of the unchecked values

    // NULL and a value of neither list show the third state, and nothing is written until
    // the user toggles.
    table.Next();
    EXPECT_EQ(paid->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(flag->checkState(), Qt::PartiallyChecked);
    flag->setFocus();
    other->setFocus();
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(field("Flag"), "maybe");
    QTest::keyClick(flag, Qt::Key_Backspace); // starts the edit, changes nothing
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(flag->checkState(), Qt::PartiallyChecked);
    QTest::mouseClick(flag, Qt::LeftButton);
    table.Post();
    EXPECT_EQ(field("Flag"), "Y");

    // A read-only box, or read-only data, changes nothing.
    flag->SetReadOnly(true);
    QTest::mouseClick(flag, Qt::LeftButton);
    EXPECT_EQ(flag->checkState(), Qt::Checked);
    EXPECT_EQ(table.State(), dsBrowse);
    table.SetReadOnly(true);
    QTest::mouseClick(paid, Qt::LeftButton);
    EXPECT_EQ(paid->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(table.State(), dsBrowse);
}

TEST_F(DataControls, ARadioGroupChecksTheButtonOfTheValue)
{
    auto *size = add<TDBRadioGroup>("Size");
    auto *other = new QLineEdit(&form);
    other->move(0, 200);
    int changes = 0;
    size->OnChange = [&changes](TObject *) { ++changes; };
    size->Items()->SetText(QStringLiteral("Small\nMedium\nL"));
    size->Values()->SetText(QStringLiteral("S\nM")); // the third button's value is its item
    form.show();
    QApplication::setActiveWindow(&form);
    size->resize(size->sizeHint());
    QApplication::processEvents();
    EXPECT_EQ(size->ItemIndex(), 1);
    EXPECT_EQ(size->GetButtonValue(2), "L");
    EXPECT_GT(changes, 0);

    // A click on a button's round mark starts the edit; the value is written on leaving.
    const auto choose = [size](int i) {
        QTest::mouseClick(size->Button(i), Qt::LeftButton, {}, QPoint(6, size->Button(i)->height() / 2));
    };
    choose(2);
    EXPECT_EQ(size->Value(), "L");
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(field("Size"), "M");
    QTest::keyClick(size->Button(2), Qt::Key_Escape);
    EXPECT_EQ(size->ItemIndex(), 1);
    choose(0);
    choose(2);
    size->Button(2)->setFocus();
    other->setFocus();
    EXPECT_EQ(field("Size"), "L");
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
