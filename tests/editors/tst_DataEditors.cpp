// The free-standing editors on a form: bound to a field, to a grid's column, with lists of
// their own; typed text confirmed, refused, dropped; the label that goes with them.

#include "editors/QDBDataEditor.h"
#include "editors/QDBDataList.h"
#include "editors/QDBMemoPopup.h"
#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/MemTable.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class DataEditors : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        test::FillCustomers(customers, {"Acme", "Globex", "Initech", "Globo Gym"});
        test::AddField(orders, QStringLiteral("CustNo"), ftInteger);
        test::AddField(orders, QStringLiteral("Status"), ftString, 1);
        test::AddField(orders, QStringLiteral("Name"), ftString, 20);
        test::AddField(orders, QStringLiteral("Amount"), ftFloat);
        test::AddLookupField(orders, QStringLiteral("Company"), &customers, QStringLiteral("CustNo"),
                             QStringLiteral("ID"), QStringLiteral("Company"));
        orders.CreateDataSet();
        orders.AppendRecord({1, QStringLiteral("A"), QStringLiteral("first"), 1.5});
        orders.AppendRecord({3, QStringLiteral("C"), QStringLiteral("second"), 2.5});
        orders.First();
        source.SetDataSet(&orders);
        form.resize(400, 300);
        layout = new QVBoxLayout(&form);
        layout->addWidget(&other);
        form.show();
        form.activateWindow();
        QApplication::processEvents();
    }
    void TearDown() override { delete layout; }

    // An editor of the form, bound to a field of the orders.
    template<typename Editor>
    Editor *add(const char *field)
    {
        auto *editor = new Editor;
        layout->addWidget(editor);
        editor->SetDataSource(&source);
        editor->SetDataField(QString::fromLatin1(field));
        QApplication::processEvents();
        return editor;
    }
    void focus(QWidget *widget)
    {
        widget->setFocus(Qt::OtherFocusReason);
        QApplication::processEvents();
    }
    QString field(const char *name) { return orders.FieldByName(QString::fromLatin1(name))->AsString(); }
    TQDBPopupList *popup(TQDBGridEditor *editor)
    {
        TQDBGridDropDownList *list = editor->PopupList();
        return list && list->Showing() ? list->Popup() : nullptr;
    }

    TMemTable customers;
    TMemTable orders;
    TDataSource source;
    QWidget form;
    QVBoxLayout *layout = nullptr;
    QLineEdit other;
    MessageLog messages;
};

} // namespace

TEST_F(DataEditors, TypedTextIsConfirmedDroppedOrRefused)
{
    auto *name = add<TQDBEditor>("Name");
    auto *amount = add<TQDBEditor>("Amount");
    EXPECT_EQ(name->text(), "first");
    EXPECT_EQ(amount->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);

    // Return writes what was typed; the record is being edited until it is posted.
    focus(name);
    ASSERT_TRUE(name->hasFocus());
    QTest::keyClicks(name, QStringLiteral("renamed"));
    EXPECT_EQ(orders.State(), dsEdit);
    EXPECT_EQ(field("Name"), "first");
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(field("Name"), "renamed");
    orders.Post();

    // Esc drops the typing and shows the value again.
    QTest::keyClicks(name, QStringLiteral("oops"));
    QTest::keyClick(name, Qt::Key_Escape);
    EXPECT_EQ(name->text(), "renamed");
    orders.Cancel();

    // A text the field refuses is reported and stays, also when focus leaves.
    focus(amount);
    amount->selectAll();
    QTest::keyClicks(amount, QStringLiteral("12x"));
    QTest::keyClick(amount, Qt::Key_Return);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_EQ(amount->text(), "12x");
    EXPECT_EQ(orders.FieldByName(QStringLiteral("Amount"))->AsFloat(), 1.5);
    focus(&other);
    EXPECT_EQ(messages.texts.size(), 2);
    EXPECT_EQ(amount->text(), "12x");
    focus(amount);
    EXPECT_EQ(amount->selectedText(), "12x"); // back in, all of it is selected
    QTest::keyClick(amount, Qt::Key_End);
    QTest::keyClick(amount, Qt::Key_Backspace);
    focus(&other); // leaving writes what is right now
    EXPECT_EQ(orders.FieldByName(QStringLiteral("Amount"))->AsFloat(), 12.0);
    orders.Cancel();

    // Another record shows its own value.
    orders.Next();
    EXPECT_EQ(name->text(), "second");
}

TEST_F(DataEditors, TextEventsRewriteWhatIsShownAndStored)
{
    auto *name = add<TQDBEditor>("Name");
    name->OnGetText = [](QObject *, QString &text, bool display) {
        if (display)
            text = text.toUpper();
    };
    name->OnSetText = [](QObject *, QString &text) { text = text.trimmed(); };
    name->DataRefresh();
    EXPECT_EQ(name->text(), "FIRST"); // shown
    focus(name);
    EXPECT_EQ(name->text(), "first"); // edited
    name->selectAll();
    QTest::keyClicks(name, QStringLiteral("  spaced  "));
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(field("Name"), "spaced");
    focus(&other);
    EXPECT_EQ(name->text(), "SPACED");
    orders.Cancel();

    // Read-only: typing changes nothing and leaves the record alone.
    name->SetReadOnly(true);
    focus(name);
    QTest::keyClicks(name, QStringLiteral("x"));
    EXPECT_EQ(orders.State(), dsBrowse);
    EXPECT_EQ(field("Name"), "first");
}

TEST_F(DataEditors, ListsOfTheirOwn)
{
    // A pick list with texts for its values.
    auto *status = add<TQDBEditor>("Status");
    status->GetPickList()->SetText(QStringLiteral("A\nB\nC"));
    status->GetPickText()->SetText(QStringLiteral("Active\nBlocked\nClosed"));
    EXPECT_EQ(status->GetEditorStyle(), edsDropDownList);
    EXPECT_EQ(status->text(), "Active");
    focus(status);
    QTest::keyClick(status, Qt::Key_F4);
    ASSERT_NE(popup(status), nullptr);
    EXPECT_TRUE(qobject_cast<TQDBEditorPickList *>(status->PopupList()));
    QTest::keyClick(popup(status), Qt::Key_Down);
    QTest::keyClick(popup(status), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(popup(status), nullptr);
    EXPECT_EQ(field("Status"), "B");
    EXPECT_EQ(status->text(), "Blocked");
    status->selectAll();
    QTest::keyClicks(status, QStringLiteral("clo"));
    EXPECT_EQ(status->text(), "Closed");
    QTest::keyClick(status, Qt::Key_Return);
    EXPECT_EQ(field("Status"), "C");
    status->selectAll();
    QTest::keyClicks(status, QStringLiteral("Zzz"));
    orders.Cancel();

    // A lookup field: the list of customers writes the key.
    auto *company = add<TQDBEditor>("Company");
    EXPECT_EQ(company->text(), "Acme");
    focus(company);
    QTest::keyClick(company, Qt::Key_Down, Qt::AltModifier);
    ASSERT_NE(popup(company), nullptr);
    EXPECT_TRUE(qobject_cast<TQDBEditorDataList *>(company->PopupList()));
    QTest::keyClicks(company, QStringLiteral("glob"));
    EXPECT_EQ(company->text(), "Globex");
    QTest::keyClick(company, Qt::Key_Return);
    EXPECT_EQ(field("CustNo"), "2");
    EXPECT_EQ(company->text(), "Globex");
    orders.Post();

    // Lookup settings of its own over the key: the name shows, the key is stored, a name
    // that is not there is refused.
    auto *customer = add<TQDBEditor>("CustNo");
    customer->SetLookupDataSet(&customers);
    customer->SetKeyField(QStringLiteral("CustNo"));
    customer->SetLookupKeyField(QStringLiteral("ID"));
    customer->SetLookupResultField(QStringLiteral("Company"));
    EXPECT_EQ(customer->GetEditorStyle(), edsDropDownList);
    EXPECT_EQ(customer->text(), "Globex");
    focus(customer);
    customer->selectAll();
    QTest::keyClicks(customer, QStringLiteral("Init"));
    QTest::keyClick(customer, Qt::Key_Return);
    EXPECT_EQ(field("CustNo"), "3");
    customer->setText(QStringLiteral("Nobody"));
    Q_EMIT customer->textEdited(customer->text());
    QTest::keyClick(customer, Qt::Key_Return);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts.front().contains(QStringLiteral("is not in the list")));
    EXPECT_EQ(customer->text(), "Nobody");
    EXPECT_EQ(field("CustNo"), "3");

    // A read-only editor offers no lookup list.
    orders.Cancel();
    customer->SetReadOnly(true);
    EXPECT_EQ(customer->GetEditorStyle(), edsSimple);
}

namespace {
// Shows the items of its values in capitals.
class CapitalItems : public TQDBEditor
{
public:
    void DoGetItem(QString &text, bool display) override
    {
        TQDBEditor::DoGetItem(text, display);
        if (display)
            text = text.toUpper();
    }
};
} // namespace

TEST_F(DataEditors, SeveralValuesALongTextAndTheEditMenu)
{
    // Several values of a pick list, shown item by item through DoGetItem.
    orders.Edit();
    orders.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("x,z"));
    orders.Post();
    auto *names = add<CapitalItems>("Name");
    names->GetPickList()->SetText(QStringLiteral("x\ny\nz"));
    names->SetListOptions(names->GetListOptions() + loMultiSelectList);
    names->SetDelimiterText(QStringLiteral("; "));
    EXPECT_TRUE(names->GetMultiSelectList());
    EXPECT_EQ(names->text(), "X; Z");
    focus(names);
    EXPECT_EQ(names->text(), "x; z");
    QTest::keyClick(names, Qt::Key_F4);
    ASSERT_NE(popup(names), nullptr);
    EXPECT_EQ(popup(names)->SelectedRows().Count(), 2);
    QTest::keyClick(popup(names), Qt::Key_Down);
    QTest::keyClick(popup(names), Qt::Key_Space);
    QTest::keyClick(popup(names), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(field("Name"), "x,y,z");
    names->selectAll();
    QTest::keyClicks(names, QStringLiteral("z; x"));
    QTest::keyClick(names, Qt::Key_Return);
    EXPECT_EQ(field("Name"), "z,x");
    orders.Cancel();

    // The ellipsis button of a text opens it in several lines.
    auto *name = add<TQDBEditor>("Name");
    name->SetButtonStyle(ebsEllipsis);
    focus(name);
    name->EditButtonClick();
    ASSERT_NE(name->MemoPopup(), nullptr);
    EXPECT_EQ(name->MemoPopup()->Text(), "x,z");
    name->MemoPopup()->Edit()->setPlainText(QStringLiteral("two\nlines"));
    QTest::keyClick(name->MemoPopup()->Edit(), Qt::Key_Return, Qt::ControlModifier);
    QApplication::processEvents();
    EXPECT_EQ(field("Name"), "two\nlines");
    orders.Cancel();

    // Pasting from the edit's own menu starts the edit as Ctrl+V does; read-only data offers
    // no pasting.
    QApplication::clipboard()->setText(QStringLiteral("pasted"));
    const auto menuAction = [](QWidget *editor, const char *actionName) -> QAction * {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(2, 2), editor->mapToGlobal(QPoint(2, 2)));
        QApplication::sendEvent(editor, &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        for (QAction *action : menu ? menu->actions() : QList<QAction *>())
            if (action->objectName() == QLatin1String(actionName))
                return action;
        return nullptr;
    };
    focus(name);
    name->selectAll();
    QAction *paste = menuAction(name, "edit-paste");
    ASSERT_NE(paste, nullptr);
    ASSERT_TRUE(paste->isEnabled());
    paste->trigger();
    QApplication::activePopupWidget()->close();
    EXPECT_EQ(orders.State(), dsEdit);
    EXPECT_EQ(name->text(), "pasted");
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(field("Name"), "pasted");
    orders.Cancel();
    name->SetReadOnly(true);
    paste = menuAction(name, "edit-paste");
    ASSERT_NE(paste, nullptr);
    EXPECT_FALSE(paste->isEnabled());
    QApplication::activePopupWidget()->close();
}

TEST_F(DataEditors, AColumnEditorTakesTheGridColumnsLists)
{
    TQDBGrid grid;
    grid.SetDataSource(&source);
    TQColumn *status = grid.GetColumns()->FindColumn(QStringLiteral("Status"));
    status->GetPickList()->SetText(QStringLiteral("A\nB\nC"));
    status->GetPickText()->SetText(QStringLiteral("Active\nBlocked\nClosed"));
    auto *editor = new TQDBColumn;
    layout->addWidget(editor);
    editor->SetDBGrid(&grid);
    editor->SetDataColumn(QStringLiteral("Status"));
    QApplication::processEvents();
    EXPECT_EQ(editor->GetEditorStyle(), edsDropDownList);
    EXPECT_EQ(editor->text(), "Active");
    focus(editor);
    QTest::keyClick(editor, Qt::Key_F4);
    ASSERT_NE(popup(editor), nullptr);
    QTest::keyClick(popup(editor), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(popup(editor), Qt::Key_Return);
    EXPECT_EQ(field("Status"), "C");
    EXPECT_EQ(editor->text(), "Closed");
    orders.Cancel();
}

TEST_F(DataEditors, TheLabelFollowsItsEditor)
{
    auto *name = add<TQDBEditor>("Name");
    TQDBEditorLabel *label = name->EditorLabel();
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->buddy(), name);
    EXPECT_FALSE(label->isVisible());
    label->setText(QStringLiteral("&Name"));
    name->SetLabelVisible(true);
    EXPECT_TRUE(label->isVisible());
    EXPECT_EQ(label->parentWidget(), name->parentWidget());
    EXPECT_EQ(label->geometry().bottom() + 1 + 3, name->geometry().top());
    name->SetLabelPosition(lpLeft);
    name->SetLabelSpacing(6);
    EXPECT_EQ(label->geometry().right() + 1 + 6, name->geometry().left());
    name->setEnabled(false);
    EXPECT_FALSE(label->isEnabled());
    name->hide();
    EXPECT_FALSE(label->isVisible());
    QPointer<QLabel> gone = label;
    delete name;
    EXPECT_TRUE(gone.isNull());
}
