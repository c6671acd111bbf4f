// The popup calculator: its arithmetic driven by keys and by its buttons, and the calculator
// dropped down from numeric cells and edit boxes, handing its result to the field.

#include "editors/QDBCalculator.h"
#include "editors/QDBDataEditor.h"
#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/MemTable.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class Calculator : public ::testing::Test
{
protected:
    void SetUp() override { calc.SetResult(QString()); }

    // Types keys into the calculator: letters and signs as text, the named keys as keys.
    void type(const char *keys) { QTest::keyClicks(&calc, QString::fromLatin1(keys)); }
    void key(Qt::Key k) { QTest::keyClick(&calc, k); }
    void click(const char *caption)
    {
        for (QPushButton *button : calc.Buttons())
            if (button->text() == QLatin1String(caption)) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        ADD_FAILURE() << "no button " << caption;
    }

    QLineEdit box;
    TQDBPopupCalculator calc{&box};
};

} // namespace

TEST_F(Calculator, OperationsChainRepeatAndReplaceEachOther)
{
    type("12+3*2=");
    EXPECT_EQ(calc.Text(), "30"); // each operator completes the one before
    type("=");
    EXPECT_EQ(calc.Text(), "60"); // a repeated "=" repeats "* 2"
    type("=");
    EXPECT_EQ(calc.Text(), "120");

    type("5+-3=");
    EXPECT_EQ(calc.Text(), "2"); // a number typed after a result starts anew; "-" replaced "+"
    type("200+10%");
    EXPECT_EQ(calc.Text(), "20"); // percent of the left operand
    type("=");
    EXPECT_EQ(calc.Text(), "220");

    type("5+3");
    key(Qt::Key_Delete); // clear entry: the 3 goes, the 5 + stays
    type("4=");
    EXPECT_EQ(calc.Text(), "9");

    type("9");
    click("sqrt");
    EXPECT_EQ(calc.Text(), "3");
    type("4r");
    EXPECT_EQ(calc.Text(), "0.25");
}

TEST_F(Calculator, EntryEditingAndMemory)
{
    type("0.5.2"); // a second separator is not taken
    EXPECT_EQ(calc.Text(), "0.52");
    key(Qt::Key_F9);
    EXPECT_EQ(calc.Text(), "-0.52");
    type("_");
    EXPECT_EQ(calc.Text(), "0.52");
    key(Qt::Key_Backspace);
    key(Qt::Key_Backspace);
    EXPECT_EQ(calc.Text(), "0.");
    key(Qt::Key_Backspace);
    key(Qt::Key_Backspace);
    EXPECT_EQ(calc.Text(), "0");
    type("7_");
    key(Qt::Key_Backspace); // "-7" loses its only digit
    EXPECT_EQ(calc.Text(), "0");
    type("6=");
    key(Qt::Key_Backspace); // a result is not typed: nothing to take back
    EXPECT_EQ(calc.Text(), "6");

    type("7");
    click("MS");
    click("C");
    EXPECT_EQ(calc.Text(), "0");
    type("3");
    click("M+");
    click("MR");
    EXPECT_EQ(calc.Text(), "10");
    click("+");
    click("MR");
    click("=");
    EXPECT_EQ(calc.Text(), "20");
    click("MC");
    click("MR");
    EXPECT_EQ(calc.Text(), "0");

    // The buttons are the keys: digits, the decimal button, operators, OK.
    for (const char *caption : {"1", ",", "5", "*", "4", "="})
        click(caption);
    EXPECT_EQ(calc.Text(), "6");
}

TEST_F(Calculator, WhatIsNoNumber)
{
    calc.SetResult(QStringLiteral("abc"));
    EXPECT_EQ(calc.Text(), "0"); // a cell text that is no number starts from zero
    type("1/0=");
    EXPECT_EQ(calc.Text(), "INF");
    type("4_");
    click("sqrt");
    EXPECT_EQ(calc.Text(), "NAN");

    // With a comma as the separator, both keys enter it.
    const ScopedFormatSettings german(GermanStyleSettings());
    calc.SetResult(QStringLiteral("2,5"));
    type("*2=");
    EXPECT_EQ(calc.Text(), "5");
    type("1.5+1,5=");
    EXPECT_EQ(calc.Text(), "3");
}

TEST_F(Calculator, ItsPanelIsLaidOutFromTheButtonTable)
{
    EXPECT_EQ(calc.CalcSize(), QSize(207, 153) * box.logicalDpiY() / 96);
    ASSERT_EQ(calc.Buttons().size(), 28);
    const QPushButton *ok = calc.Buttons().front();
    EXPECT_EQ(ok->text(), "OK");
    EXPECT_EQ(ok->geometry(), QRect(5, 25, 30, 22));
    EXPECT_EQ(calc.Buttons().back()->text(), "=");
    EXPECT_EQ(calc.Buttons().back()->geometry(), QRect(169, 123, 30, 22));
    calc.resize(calc.CalcSize());
    calc.show();
    calc.SetResult(QStringLiteral("12345"));
    const QImage shot = calc.grab().toImage();
    // At any screen scaling (the test also runs at 150%) the panel is drawn at full density.
    EXPECT_EQ(shot.size(), calc.size() * calc.devicePixelRatioF());
    // The display shows the number and no button covers it.
    EXPECT_GT(DistinctColors(shot.copy(0, 0, shot.width(), 20 * shot.height() / calc.height())), 2);
    EXPECT_FALSE(calc.Buttons().front()->hasFocus());
}

namespace {

class CalculatorInCells : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        test::AddField(orders, QStringLiteral("Amount"), ftFloat);
        test::AddField(orders, QStringLiteral("Qty"), ftInteger);
        orders.CreateDataSet();
        orders.AppendRecord({12.5, 3});
        orders.First();
        source.SetDataSet(&orders);
        grid.resize(500, 200);
        grid.SetDataSource(&source);
        grid.GetColumns()->FindColumn(QStringLiteral("Amount"))->SetButtonStyle(cbsCalculator);
        grid.GetColumns()->FindColumn(QStringLiteral("Qty"))->SetButtonStyle(cbsCalculator);
        grid.show();
        QApplication::processEvents();
    }
    TQDBPopupCalculator *calculator(TQDBGridEditor *editor)
    {
        auto *list = editor ? qobject_cast<TQDBGridCalculator *>(editor->PopupList()) : nullptr;
        return list && list->Showing() ? list->Calculator() : nullptr;
    }
    TQDBGridEditor *cellEditor() { return qobject_cast<TQDBGridEditor *>(grid.InplaceEditor()); }
    double amount() { return orders.FieldByName(QStringLiteral("Amount"))->AsFloat(); }

    TMemTable orders;
    TDataSource source;
    TQDBGrid grid;
    MessageLog messages;
};

} // namespace

TEST_F(CalculatorInCells, AResultGoesToTheFieldAndWhatItCannotHoldIsRefused)
{
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(calculator(cellEditor()), nullptr);
    EXPECT_EQ(calculator(cellEditor())->Text(), "12.5"); // from the cell
    QTest::keyClicks(calculator(cellEditor()), QStringLiteral("*2"));
    QTest::keyClick(calculator(cellEditor()), Qt::Key_Return); // completes the pending "* 2"
    QApplication::processEvents();
    EXPECT_EQ(calculator(cellEditor()), nullptr);
    EXPECT_DOUBLE_EQ(amount(), 25);

    // Esc leaves the cell as it was; a division by zero is never written.
    QTest::keyClick(cellEditor(), Qt::Key_F4);
    QTest::keyClicks(calculator(cellEditor()), QStringLiteral("+1"));
    QTest::keyClick(calculator(cellEditor()), Qt::Key_Escape);
    EXPECT_DOUBLE_EQ(amount(), 25);
    QTest::keyClick(cellEditor(), Qt::Key_F4);
    QTest::keyClicks(calculator(cellEditor()), QStringLiteral("/0="));
    QTest::keyClick(calculator(cellEditor()), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(messages.texts.size(), 1);
    EXPECT_DOUBLE_EQ(amount(), 25);
    QTest::keyClick(cellEditor(), Qt::Key_Escape);
    QTest::keyClick(cellEditor(), Qt::Key_Escape);
    orders.Cancel();

    // A whole-number field refuses a fraction with a message, and keeps its value.
    grid.SetCol(grid.DataToRawColumn(1));
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(calculator(cellEditor()), nullptr);
    QTest::keyClicks(calculator(cellEditor()), QStringLiteral("/2"));
    QTest::keyClick(calculator(cellEditor()), Qt::Key_Return, Qt::ControlModifier); // "OK"
    QApplication::processEvents();
    EXPECT_EQ(messages.texts.size(), 2);
    EXPECT_EQ(orders.FieldByName(QStringLiteral("Qty"))->AsInteger(), 3);
}

TEST_F(CalculatorInCells, AnEditBoxDropsItDown)
{
    QWidget form;
    auto *editor = new TQDBEditor(&form);
    editor->SetDataSource(&source);
    editor->SetDataField(QStringLiteral("Amount"));
    editor->SetButtonStyle(ebsCalculator);
    form.show();
    editor->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(editor->GetEditorStyle(), edsDropDownList);
    QTest::mouseClick(editor, Qt::LeftButton, {}, editor->ButtonRect().center());
    ASSERT_NE(calculator(editor), nullptr);
    EXPECT_TRUE(qobject_cast<TQDBEditorCalculator *>(editor->PopupList()));
    QTest::keyClicks(calculator(editor), QStringLiteral("+0.25"));
    QTest::keyClick(calculator(editor), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(editor->text(), "12.75");
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_DOUBLE_EQ(amount(), 12.75);
}
