// The grid's cell editor driven by keys and the mouse: pick lists, lookup lists, typing that
// completes from a list, the button styles, and what happens to input a list or mask refuses.

#include "editors/QDBDataList.h"
#include "editors/QDBEditor.h"
#include "editors/QDBMemoPopup.h"
#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/MemTable.h"
#include "platform/rtl/TickCount.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class CellEditors : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        test::FillCustomers(customers, {"Acme", "Globex", "Initech", "Globo Gym"});

        test::AddField(orders, QStringLiteral("CustNo"), ftInteger);
        test::AddField(orders, QStringLiteral("Status"), ftString, 1);
        test::AddField(orders, QStringLiteral("Name"), ftString, 20);
        test::AddField(orders, QStringLiteral("Code"), ftString, 10)->SetEditMask(QStringLiteral("00-00;1;_"));
        test::AddLookupField(orders, QStringLiteral("Company"), &customers, QStringLiteral("CustNo"),
                             QStringLiteral("ID"), QStringLiteral("Company"));
        test::AddField(orders, QStringLiteral("Tags"), ftString, 40);
        orders.CreateDataSet();
        orders.AppendRecord({1, QStringLiteral("A"), QStringLiteral("first"), QStringLiteral("12-34")});
        orders.AppendRecord({3, QStringLiteral("C"), QStringLiteral("second"), QStringLiteral("56-78")});
        orders.First();
        source.SetDataSet(&orders);
        grid.resize(700, 240);
        grid.SetDataSource(&source);
        TQColumn *status = column("Status");
        status->GetPickList()->SetText(QStringLiteral("A\nB\nC"));
        status->GetPickText()->SetText(QStringLiteral("Active\nBlocked\nClosed"));
        grid.show();
        QApplication::processEvents();
    }
    void TearDown() override { SetTickCountSource({}); }

    TQColumn *column(const char *name) { return grid.GetColumns()->FindColumn(QString::fromLatin1(name)); }
    void select(const char *name) { grid.SetCol(grid.DataToRawColumn(column(name)->Index())); }
    TQDBGridEditor *editor() { return qobject_cast<TQDBGridEditor *>(grid.InplaceEditor()); }
    TQDBPopupList *popup()
    {
        TQDBGridDropDownList *list = editor() ? editor()->PopupList() : nullptr;
        return list && list->Showing() ? list->Popup() : nullptr;
    }
    QString field(const char *name) { return orders.FieldByName(QString::fromLatin1(name))->AsString(); }
    // Lets a posted Return (a list closed by the mouse) reach the editor.
    void settle() { QApplication::processEvents(); }

    TMemTable customers;
    TMemTable orders;
    TDataSource source;
    TQDBGrid grid;
    MessageLog messages;
};

} // namespace

TEST_F(CellEditors, APickListShowsItsTextsAndStoresItsValues)
{
    select("Status");
    EXPECT_EQ(column("Status")->GetDisplayText(), "Active");

    QTest::keyClick(&grid, Qt::Key_F4); // the editor opens with its list
    ASSERT_TRUE(grid.EditorMode());
    ASSERT_NE(popup(), nullptr);
    EXPECT_EQ(popup()->objectName(), "PopupList");
    EXPECT_EQ(popup()->DataSet()->RecNo(), 1); // on the cell's value
    EXPECT_EQ(popup()->DataSet()->RecordCount(), 3);
    QTest::keyClick(popup(), Qt::Key_Down);
    QTest::keyClick(popup(), Qt::Key_Return); // accepts, the editor stays
    EXPECT_EQ(popup(), nullptr);
    EXPECT_EQ(editor()->text(), "Blocked");
    EXPECT_EQ(field("Status"), "B");
    EXPECT_TRUE(grid.EditorMode());

    // Alt+Down opens, Esc closes and keeps what the cell held.
    QTest::keyClick(editor(), Qt::Key_Down, Qt::AltModifier);
    ASSERT_NE(popup(), nullptr);
    EXPECT_EQ(popup()->DataSet()->RecNo(), 2);
    QTest::keyClick(popup(), Qt::Key_Down);
    QTest::keyClick(popup(), Qt::Key_Escape);
    EXPECT_EQ(popup(), nullptr);
    EXPECT_TRUE(grid.EditorMode()); // Esc on the list does not leave the cell
    EXPECT_EQ(field("Status"), "B");

    // F4 opens, a second F4 accepts; Tab closes without taking the value and moves on.
    QTest::keyClick(editor(), Qt::Key_F4);
    QTest::keyClick(popup(), Qt::Key_Up);
    QTest::keyClick(editor(), Qt::Key_F4);
    EXPECT_EQ(field("Status"), "A");
    QTest::keyClick(editor(), Qt::Key_F4);
    QTest::keyClick(popup(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(popup(), Qt::Key_Tab);
    EXPECT_EQ(popup(), nullptr);
    EXPECT_EQ(field("Status"), "A");
    EXPECT_EQ(grid.SelectedField()->FieldName(), "Name");
}

TEST_F(CellEditors, TypingCompletesFromTheListAndRefusesWhatItDoesNotHold)
{
    select("Status");
    QTest::keyClick(&grid, Qt::Key_C); // a letter on the cell starts the editor with it
    ASSERT_TRUE(grid.EditorMode());
    EXPECT_EQ(editor()->text(), "Closed");
    EXPECT_EQ(editor()->selectedText(), "losed");
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_FALSE(grid.EditorMode());
    EXPECT_EQ(field("Status"), "C");

    // A list that holds only its items refuses other text, and the text stays to be mended.
    column("Status")->SetPickOptions(column("Status")->GetPickOptions() + poListItemsOnly);
    QTest::keyClick(&grid, Qt::Key_X);
    EXPECT_EQ(editor()->text(), "x");
    QTest::keyClick(editor(), Qt::Key_Return);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts[0].contains("\"x\" is not in the list")) << messages.texts[0].toStdString();
    EXPECT_TRUE(grid.EditorMode());
    EXPECT_EQ(editor()->text(), "x");
    EXPECT_EQ(field("Status"), "C");
}

TEST_F(CellEditors, AfterAPauseTheTypedPrefixStartsAgain)
{
    qint64 now = 10000;
    SetTickCountSource([&now] { return now; });
    select("Company");
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(popup(), nullptr);
    QTest::keyClicks(editor(), QStringLiteral("glo"));
    EXPECT_EQ(editor()->text(), "Globex");
    EXPECT_EQ(popup()->DataSet()->FieldByName(QStringLiteral("ID"))->AsInteger(), 2);
    now += 500;
    QTest::keyClicks(editor(), QStringLiteral("bo"));
    EXPECT_EQ(editor()->text(), "Globo Gym");
    now += 2500; // long after: "i" is a new prefix
    QTest::keyClick(editor(), Qt::Key_I);
    EXPECT_EQ(editor()->text(), "Initech");
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_EQ(field("CustNo"), "3");
}

TEST_F(CellEditors, ALookupListWritesTheKeyOfTheRecordChosen)
{
    select("Company");
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(popup(), nullptr);
    TQDBPopupList *list = popup();
    EXPECT_EQ(list->DataSet(), &customers);
    EXPECT_EQ(customers.FieldByName(QStringLiteral("ID"))->AsInteger(), 1); // on the cell's customer
    // A click on a record takes it and commits the cell.
    const QRect third = list->CellRect(0, list->FixedRows() + 2);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, third.center());
    settle();
    EXPECT_EQ(popup(), nullptr);
    EXPECT_FALSE(grid.EditorMode());
    EXPECT_EQ(field("CustNo"), "3");
    EXPECT_EQ(field("Company"), "Initech");

    // Typed text names a customer; one that is none is refused and kept.
    QTest::keyClick(&grid, Qt::Key_F2);
    editor()->clear();
    QTest::keyClicks(editor(), QStringLiteral("Umbrella"));
    QTest::keyClick(editor(), Qt::Key_Return);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts[0].contains("\"Umbrella\" is not in the list of Company")) << messages.texts[0].toStdString();
    EXPECT_TRUE(grid.EditorMode());
    EXPECT_EQ(editor()->text(), "Umbrella");
    EXPECT_EQ(field("CustNo"), "3");
    QTest::keyClick(editor(), Qt::Key_Escape);
    EXPECT_EQ(field("Company"), "Initech");
}

TEST_F(CellEditors, NoListOutlivesItsCell)
{
    select("Company");
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(popup(), nullptr);
    // An outside click closes it unaccepted.
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(1, grid.Row()).center());
    EXPECT_EQ(popup(), nullptr);
    EXPECT_EQ(field("CustNo"), "1");
    select("Company");

    // Another record: the editor goes, and its list with it.
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(popup(), nullptr);
    QPointer<QWidget> shown = popup();
    orders.Next();
    settle();
    EXPECT_FALSE(shown && shown->isVisible());

    // The grid goes while a list is open: nothing is left behind.
    auto *other = new TQDBGrid;
    other->SetDataSource(&source);
    other->show();
    other->SetCol(other->DataToRawColumn(other->GetColumns()->FindColumn(QStringLiteral("Company"))->Index()));
    QTest::keyClick(other, Qt::Key_F4);
    auto *otherEditor = qobject_cast<TQDBGridEditor *>(other->InplaceEditor());
    ASSERT_TRUE(otherEditor && otherEditor->PopupList());
    QPointer<QWidget> otherList = otherEditor->PopupList()->Popup();
    delete other;
    EXPECT_TRUE(otherList.isNull());
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(CellEditors, AListThatCannotBeReadIsReportedAndTheCellStaysEditable)
{
    TSQLQuery broken; // no connection: it cannot open
    broken.SQL()->SetText(QStringLiteral("SELECT 1 AS ID"));
    TQColumn *name = column("Name");
    name->SetLookupDataSet(&broken);
    name->SetKeyField(QStringLiteral("Name"));
    name->SetLookupKeyField(QStringLiteral("ID"));
    name->SetLookupResultField(QStringLiteral("ID"));
    select("Name");
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(grid.EditorMode());
    EXPECT_EQ(popup(), nullptr);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_FALSE(editor()->ListVisible());
}

TEST_F(CellEditors, TheButtonStylesAndTheMask)
{
    int clicks = 0;
    grid.OnEditButtonClick = [&clicks](TObject *) { ++clicks; };
    column("Name")->SetButtonStyle(cbsEllipsis);
    select("Name");
    QTest::keyClick(&grid, Qt::Key_F2);
    ASSERT_TRUE(grid.EditorMode());
    QTest::keyClick(editor(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(grid.EditorMode()); // Ctrl+Return is the button's, not the cell's
    EXPECT_EQ(editor()->text(), "first");
    QTest::keyClick(editor(), Qt::Key_F4);
    EXPECT_EQ(clicks, 2);
    const QRect button = editor()->ButtonRect();
    ASSERT_FALSE(button.isEmpty());
    // The button is drawn (not a blank of the text's colour), and the ellipsis differs from
    // the list button's arrow.
    const auto buttonLook = [this](const QRect &r) { return editor()->grab().toImage().copy(r); };
    const QImage ellipsis = buttonLook(button);
    EXPECT_GT(DistinctColors(ellipsis), 2);
    column("Name")->SetButtonStyle(cbsDropDown);
    editor()->UpdateContents();
    EXPECT_NE(buttonLook(editor()->ButtonRect()), ellipsis);
    column("Name")->SetButtonStyle(cbsEllipsis);
    editor()->UpdateContents();
    QTest::mouseClick(editor(), Qt::LeftButton, {}, button.center());
    EXPECT_EQ(clicks, 3);
    EXPECT_EQ(popup(), nullptr);

    // A text the mask is not satisfied with keeps the editor and the text.
    QTest::keyClick(editor(), Qt::Key_Escape);
    select("Code");
    QTest::keyClick(&grid, Qt::Key_F2);
    ASSERT_TRUE(grid.EditorMode());
    EXPECT_EQ(editor()->inputMask(), "99-99;_");
    editor()->setCursorPosition(0);
    QTest::keyClick(editor(), Qt::Key_Delete);
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(grid.EditorMode());
    EXPECT_EQ(field("Code"), "12-34");
}

TEST_F(CellEditors, ALongTextEditsInSeveralLinesUnderItsCell)
{
    TMemTable notes;
    test::AddField(notes, QStringLiteral("ID"), ftInteger);
    test::AddField(notes, QStringLiteral("Note"), ftMemo);
    test::AddField(notes, QStringLiteral("Title"), ftString, 20);
    notes.CreateDataSet();
    notes.AppendRecord({1, QStringLiteral("first line\nsecond line"), QStringLiteral("one")});
    notes.AppendRecord({2, QStringLiteral("other"), QStringLiteral("two")});
    notes.First();
    source.SetDataSet(&notes);
    TQColumn *note = column("Note");
    note->SetButtonStyle(cbsEllipsis);
    select("Note");
    const auto memo = [this] { return editor() ? editor()->MemoPopup() : nullptr; };

    // F4 on the cell opens the whole text; Return makes a new line, Ctrl+Return takes it.
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_TRUE(memo() && memo()->isVisible());
    EXPECT_EQ(memo()->Text(), "first line\nsecond line");
    EXPECT_GE(memo()->geometry().top(), editor()->mapToGlobal(QPoint(0, editor()->height())).y() - 2);
    QPlainTextEdit *lines = memo()->Edit();
    lines->moveCursor(QTextCursor::End);
    QTest::keyClick(lines, Qt::Key_Return);
    QTest::keyClicks(lines, QStringLiteral("third"));
    QTest::keyClick(lines, Qt::Key_Return, Qt::ControlModifier);
    settle();
    EXPECT_EQ(memo(), nullptr);
    EXPECT_EQ(notes.FieldByName(QStringLiteral("Note"))->AsString(), "first line\nsecond line\nthird");
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_FALSE(grid.EditorMode());
    notes.Post();
    EXPECT_EQ(notes.FieldByName(QStringLiteral("Note"))->AsString(), "first line\nsecond line\nthird");

    // Esc leaves the text as it was; a click elsewhere keeps what was typed.
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(memo(), nullptr);
    memo()->Edit()->setPlainText(QStringLiteral("thrown away"));
    QTest::keyClick(memo()->Edit(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(notes.FieldByName(QStringLiteral("Note"))->AsString(), "first line\nsecond line\nthird");
    EXPECT_TRUE(grid.EditorMode());
    editor()->EditButtonClick();
    ASSERT_NE(memo(), nullptr);
    memo()->Edit()->setPlainText(QStringLiteral("kept"));
    memo()->hide();
    settle();
    EXPECT_EQ(notes.FieldByName(QStringLiteral("Note"))->AsString(), "kept");
    notes.Cancel();

    // Without EditMemo a memo is not typed into; with a handler the button is the handler's.
    QTest::keyClick(editor(), Qt::Key_Escape);
    note->SetEditMemo(false);
    QTest::keyClick(&grid, Qt::Key_F4);
    EXPECT_FALSE(grid.EditorMode());
    note->SetEditMemo(true);
    int clicks = 0;
    grid.OnEditButtonClick = [&clicks](TObject *) { ++clicks; };
    QTest::keyClick(&grid, Qt::Key_F4);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(memo(), nullptr);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    source.SetDataSet(&orders);
}

TEST_F(CellEditors, SeveralValuesAreTickedInTheirListAndStoredWithTheDelimiter)
{
    TQColumn *tags = column("Tags");
    tags->GetPickList()->SetText(QStringLiteral("r\ng\nb"));
    tags->GetPickText()->SetText(QStringLiteral("Red\nGreen\nBlue"));
    tags->SetListOptions(tags->GetListOptions() + loMultiSelectList);
    tags->SetDelimiterText(QStringLiteral(", "));
    orders.Edit();
    orders.FieldByName(QStringLiteral("Tags"))->SetAsString(QStringLiteral("b, r"));
    orders.Post();
    EXPECT_EQ(tags->GetDisplayText(), "Blue, Red");
    select("Tags");

    // The list ticks what the cell holds; Space and clicks turn ticks, Return takes them all.
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(popup(), nullptr);
    EXPECT_TRUE(popup()->CheckList());
    EXPECT_EQ(popup()->SelectedRows().Count(), 2);
    EXPECT_EQ(popup()->DataSet()->RecNo(), 1);
    const QImage shot = popup()->viewport()->grab().toImage();
    const auto box = [&](int row) { return shot.copy(popup()->CellRect(0, row)); };
    EXPECT_EQ(box(0), box(2)); // Red and Blue are ticked,
    EXPECT_NE(box(0), box(1)); // Green is not
    QTest::keyClick(popup(), Qt::Key_Space);
    QTest::keyClick(popup(), Qt::Key_Down);
    QTest::keyClick(popup(), Qt::Key_Space);
    EXPECT_NE(popup(), nullptr);
    QTest::keyClick(popup(), Qt::Key_Return);
    settle();
    EXPECT_EQ(field("Tags"), "g,b");
    EXPECT_EQ(editor()->text(), "Green, Blue");

    QTest::keyClick(editor(), Qt::Key_F4);
    ASSERT_NE(popup(), nullptr);
    QTest::mouseClick(popup()->viewport(), Qt::LeftButton, {}, popup()->CellRect(1, 0).center());
    ASSERT_NE(popup(), nullptr); // a click ticks and the list stays
    QTest::keyClick(popup(), Qt::Key_Return);
    settle();
    EXPECT_EQ(field("Tags"), "r,g,b");

    // Typed items go to their values in the order typed; with the list's items only, others
    // are refused and the text stays.
    editor()->selectAll();
    QTest::keyClicks(editor(), QStringLiteral("Blue, Green"));
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_FALSE(grid.EditorMode());
    EXPECT_EQ(field("Tags"), "b,g");
    tags->SetPickOptions(tags->GetPickOptions() + poListItemsOnly);
    QTest::keyClick(&grid, Qt::Key_F2);
    editor()->selectAll();
    QTest::keyClicks(editor(), QStringLiteral("Blue, Pink"));
    QTest::keyClick(editor(), Qt::Key_Return);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts[0].contains("\"Pink\" is not in the list")) << messages.texts[0].toStdString();
    EXPECT_EQ(editor()->text(), "Blue, Pink");
    QTest::keyClick(editor(), Qt::Key_Escape);

    // A cell too narrow for every item shows the whole items that fit.
    const QFontMetrics metrics(grid.font());
    const QString fits = QStringLiteral("Blue, Green, ") + QChar(0x2026);
    EXPECT_EQ(tags->FitItems(QStringLiteral("Blue, Green, Red"), metrics, metrics.horizontalAdvance(fits)), fits);
    EXPECT_EQ(tags->FitItems(QStringLiteral("Blue, Green"), metrics, metrics.horizontalAdvance(fits)), "Blue, Green");

    // One item a line, as a cell of several lines shows them.
    tags->SetDelimiterLine(true);
    EXPECT_EQ(tags->GetDisplayText(), "Blue\nGreen");
}

TEST_F(CellEditors, TypingNarrowsAnIncrementalList)
{
    TQColumn *status = column("Status");
    status->GetPickList()->SetText(QStringLiteral("A\nB\nC\nR"));
    status->GetPickText()->SetText(QStringLiteral("Active\nBlocked\nClosed\nArchived"));
    status->SetListOptions(status->GetListOptions() + loIncrementalList);
    select("Status");
    QTest::keyClick(&grid, Qt::Key_F4);
    ASSERT_NE(popup(), nullptr);
    EXPECT_EQ(popup()->DataSet()->RecordCount(), 4);
    QTest::keyClick(popup(), Qt::Key_A);
    EXPECT_EQ(popup()->DataSet()->RecordCount(), 2);
    EXPECT_EQ(editor()->text(), "Active");
    QTest::keyClick(popup(), Qt::Key_R);
    EXPECT_EQ(popup()->DataSet()->RecordCount(), 1);
    EXPECT_EQ(editor()->text(), "Archived");
    QTest::keyClick(popup(), Qt::Key_Return);
    settle();
    EXPECT_EQ(field("Status"), "R");
}

TEST(EditMasks, TheFieldsMaskLettersBecomeTheEditsOwn)
{
    EXPECT_EQ(InputMaskOf(QString()), "");
    EXPECT_EQ(InputMaskOf(QStringLiteral("!99/99/0000;1;_")), "00/00/9999;_");
    EXPECT_EQ(InputMaskOf(QStringLiteral(">LLL<ll;0; ")), ">AAA<aa; ");
    EXPECT_EQ(InputMaskOf(QStringLiteral("AaCc")), "NnXx");
    // Letters the edit reads as codes stand for themselves here.
    EXPECT_EQ(InputMaskOf(QStringLiteral("\\0N-H#;1")), "\\0\\N-\\H\\#");
    EXPECT_EQ(InputMaskOf(QStringLiteral("<>c")), "!x");
}
