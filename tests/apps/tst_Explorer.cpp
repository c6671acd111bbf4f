// The explorer on the sample database, driven as a user drives it.

#include "ExplorerWindow.h"

#include "platform/dbctrls/DBNavigator.h"
#include "platform/rtl/Dialogs.h"
#include "editors/QDBCalendar.h"
#include "editors/QDBDropDown.h"
#include "editors/QDBDataEditor.h"
#include "editors/QDBEditor.h"
#include "editors/QDBMemoPopup.h"
#include "filter/QDBFilterForm.h"
#include "filter/QDBFilterList.h"
#include "filter/QDBSearchPanel.h"
#include "grid/QDBGridTotals.h"
#include "platform/rtl/DateUtils.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/sql/SQLConnection.h"

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include <QAction>
#include <QMenuBar>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace qdb;

namespace {
// A copy of the sample database that a test may change; it goes with the test.
struct SampleCopy
{
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("copy.db"));
    bool made = QFile::copy(QStringLiteral(QDB_SAMPLE_DB), path);
};
} // namespace

TEST(Explorer, ATitleClickSortsTheTableAndKeepsTheRecord)
{
    explorer::ExplorerWindow window;
    window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB));
    EXPECT_TRUE(window.Tables().contains(QStringLiteral("customers")));
    ASSERT_TRUE(window.ShowTable(QStringLiteral("customers")));
    window.show();
    QApplication::processEvents();
    TQDBGrid *grid = window.Grid();
    TDataSet *table = grid->DataSet();
    table->SetRecNo(10);
    const int custNo = table->FieldByName(QStringLiteral("CustNo"))->AsInteger();

    TQColumn *company = grid->GetColumns()->FindColumn(QStringLiteral("Company"));
    const QPoint title = grid->CellRect(grid->DataToRawColumn(company->Index()), 0).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, title);
    EXPECT_EQ(company->GetTitle()->GetMarker(), tmAscend);
    EXPECT_EQ(grid->GetOrderFields(), QStringLiteral("Company"));
    EXPECT_EQ(table->FieldByName(QStringLiteral("CustNo"))->AsInteger(), custNo);
    // The rows are in the new order.
    QString previous;
    for (table->First(); !table->Eof() && table->RecNo() < 50; table->Next()) {
        const QString name = table->FieldByName(QStringLiteral("Company"))->AsString();
        EXPECT_LE(previous.compare(name), 0);
        previous = name;
    }
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, title);
    EXPECT_EQ(company->GetTitle()->GetMarker(), tmDescend);

    // Another table starts unsorted, with its own columns.
    ASSERT_TRUE(window.ShowTable(QStringLiteral("products")));
    EXPECT_TRUE(grid->GetOrderFields().isEmpty());
    EXPECT_NE(grid->GetColumns()->FindColumn(QStringLiteral("ProductNo")), nullptr);
}

TEST(Explorer, AMissingTableIsReportedNotFatal)
{
    explorer::ExplorerWindow window;
    window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB));
    EXPECT_FALSE(window.ShowTable(QStringLiteral("no_such_table")));
    EXPECT_TRUE(window.ShowTable(QStringLiteral("orders")));
}

TEST(Explorer, EscCancelsALongRead)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("slow.db"));
    {
        TSQLConnection maker;
        maker.SetDatabaseName(path);
        maker.SetCreateDatabase(true);
        maker.ExecSQL(QStringLiteral("CREATE TABLE a (id INTEGER PRIMARY KEY)"));
        // Counting its rows takes minutes.
        maker.ExecSQL(QStringLiteral("CREATE VIEW slow AS WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s"
                                     " WHERE i < 1000000000) SELECT i FROM s"));
    }
    explorer::ExplorerWindow window;
    window.OpenDatabase(path);
    window.show();
    QApplication::processEvents();
    // The first rows show at once; counting them follows, and that is what Esc stops.
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(window.ShowTable(QStringLiteral("slow")));
    EXPECT_LT(clock.elapsed(), 20000);
    EXPECT_EQ(window.Grid()->DataSet()->FieldByName(QStringLiteral("i"))->AsInteger(), 1);
    // Counting them and adding them up follow, each a wait the user stops with Esc.
    QTimer user;
    int waits = 0;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (QApplication::overrideCursor()) {
            ++waits;
            QCoreApplication::postEvent(window.Grid(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
        }
    });
    user.start(100);
    while (window.statusBar()->currentMessage() != QStringLiteral("Cancelled") && clock.elapsed() < 20000)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    QTest::qWait(1000);
    EXPECT_GT(waits, 0);
    EXPECT_EQ(window.statusBar()->currentMessage(), QStringLiteral("Cancelled"));
    EXPECT_FALSE(QApplication::overrideCursor());
    // Moving on does not start the count the user stopped again.
    const int stopped = waits;
    window.Grid()->DataSet()->Next();
    QTest::qWait(1000);
    EXPECT_EQ(waits, stopped);
    EXPECT_EQ(window.Grid()->DataSet()->FieldByName(QStringLiteral("i"))->AsInteger(), 2);
    EXPECT_LT(clock.elapsed(), 20000);
    EXPECT_TRUE(window.ShowTable(QStringLiteral("a"))); // and the explorer goes on
}

TEST(Explorer, ASlowTitleClickShowsTheWaitAndEscTakesItBack)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("slowsort.db"));
    {
        TSQLConnection maker;
        maker.SetDatabaseName(path);
        maker.SetCreateDatabase(true);
        maker.ExecSQL(QStringLiteral("CREATE TABLE a (id INTEGER PRIMARY KEY)"));
        maker.ExecSQL(QStringLiteral("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 50000)"
                                     " INSERT INTO a SELECT i FROM s"));
        // Each row's "work" takes a moment: a screen of them is quick, sorting by it is not.
        maker.ExecSQL(QStringLiteral("CREATE VIEW slowsort AS SELECT id, (WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL"
                                     " SELECT i + 1 FROM s WHERE i < 5000) SELECT COUNT(*) FROM s WHERE i <> a.id) AS work"
                                     " FROM a"));
    }
    QStringList boxes;
    const ScopedMessageDlgHook hook([&](const QString &text, TMsgDlgType, TMsgDlgButtons) {
        boxes << text;
        return mrOk;
    });
    explorer::ExplorerWindow window;
    window.OpenDatabase(path, QStringLiteral("slowsort"));
    window.show();
    QApplication::processEvents();
    TQDBGrid *grid = window.Grid();
    TDataSet *view = grid->DataSet();
    view->SetRecNo(5);
    bool waitCursorShown = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        waitCursorShown = waitCursorShown || (QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor);
    });
    look.start(20);
    QCoreApplication::postEvent(grid, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    TQColumn *work = grid->GetColumns()->FindColumn(QStringLiteral("work"));
    QElapsedTimer clock;
    clock.start();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->CellRect(grid->DataToRawColumn(work->Index()), 0).center());
    EXPECT_LT(clock.elapsed(), 20000);
    look.stop();
    EXPECT_TRUE(waitCursorShown);
    EXPECT_FALSE(QApplication::overrideCursor());
    EXPECT_EQ(window.statusBar()->currentMessage(), QStringLiteral("Cancelled"));
    EXPECT_TRUE(boxes.isEmpty()) << boxes.join(QLatin1Char('\n')).toStdString(); // the user knows already
    // The rows and the title are as they were, and the grid goes on.
    EXPECT_EQ(work->GetTitle()->GetMarker(), tmNone);
    EXPECT_TRUE(grid->GetOrderFields().isEmpty());
    ASSERT_TRUE(view->Active());
    view->First();
    EXPECT_EQ(view->FieldByName(QStringLiteral("id"))->AsInteger(), 1);
    QTest::keyClick(grid, Qt::Key_Down);
    EXPECT_EQ(view->FieldByName(QStringLiteral("id"))->AsInteger(), 2);
}

TEST(Explorer, OpensOnlyTheTableAskedForWithTheKeysInTheGrid)
{
    explorer::ExplorerWindow window;
    QStringList opened;
    window.Grid()->DataSet()->BeforeOpen = [&](TDataSet *ds) { opened << ds->property("TableName").toString(); };
    window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("orders"));
    EXPECT_EQ(opened, QStringList{QStringLiteral("orders")});
    window.show();
    QApplication::processEvents();
    EXPECT_EQ(window.focusWidget(), window.Grid());
    TDataSet *table = window.Grid()->DataSet();
    QTest::keyClick(window.Grid(), Qt::Key_Down);
    EXPECT_EQ(table->RecNo(), 2);
    window.Grid()->DataSet()->BeforeOpen = nullptr;
}

TEST(Explorer, BrowsingLeavesTheFileAsItWas)
{
    const SampleCopy copy;
    ASSERT_TRUE(copy.made);
    const QString &path = copy.path;
    auto journal = [&] {
        TSQLConnection look;
        look.SetConnectionString(QStringLiteral("sqlite:") + path);
        look.Open();
        return look.ExecScalar(QStringLiteral("PRAGMA journal_mode")).ToString().toLower();
    };
    {
        TSQLConnection plain; // the journal most files have
        plain.SetConnectionString(QStringLiteral("sqlite:") + path);
        plain.Open();
        plain.ExecSQL(QStringLiteral("PRAGMA journal_mode = DELETE"));
    }
    const QString before = journal();
    ASSERT_EQ(before, QStringLiteral("delete"));
    const QByteArray bytes = [&] {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();
    {
        explorer::ExplorerWindow window;
        window.OpenDatabase(path, QStringLiteral("customers"));
        window.show();
        QApplication::processEvents();
        TQDBGrid *grid = window.Grid();
        TQColumn *company = grid->GetColumns()->FindColumn(QStringLiteral("Company"));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->CellRect(grid->DataToRawColumn(company->Index()), 0).center());
        grid->DataSet()->Last();
        window.ShowTable(QStringLiteral("products"));
    }
    EXPECT_EQ(journal(), before);
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), bytes); // not a byte changed
    EXPECT_FALSE(QFile::exists(path + QStringLiteral("-wal")));

    // An edit writes through the write-ahead log, and the file gets its journal back.
    {
        explorer::ExplorerWindow window;
        window.OpenDatabase(path, QStringLiteral("customers"));
        TDataSet *table = window.Grid()->DataSet();
        table->Edit();
        table->FieldByName(QStringLiteral("Company"))->SetAsString(QStringLiteral("Renamed Ltd"));
        table->Post();
        EXPECT_EQ(journal(), QStringLiteral("wal"));
    }
    EXPECT_EQ(journal(), before);
}

TEST(Explorer, TheFooterAddsUpTheTableOrTheSelectedRows)
{
    explorer::ExplorerWindow window;
    window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("orders"));
    window.show();
    TQDBGrid *grid = window.Grid();
    TDataSet *orders = grid->DataSet();
    TQColumnTotalValue *total = grid->GetColumns()->FindColumn(QStringLiteral("Total"))->GetTotalFooter();
    TQColumnTotalValue *remarks = grid->GetColumns()->FindColumn(QStringLiteral("Remarks"))->GetTotalFooter();
    auto settle = [grid] {
        for (int i = 0; i < 100 && grid->Totals()->Waiting(); ++i)
            QTest::qWait(20);
    };
    settle();
    TSQLConnection check;
    check.SetConnectionString(QStringLiteral("sqlite:" QDB_SAMPLE_DB));
    check.Open();
    const Variant sum = check.ExecScalar(QStringLiteral("SELECT SUM(Total) FROM orders"));
    EXPECT_EQ(total->Value().ToCurrency(), sum.ToCurrency());
    EXPECT_EQ(remarks->Value(), check.ExecScalar(QStringLiteral("SELECT COUNT(Remarks) FROM orders")));
    EXPECT_FALSE(grid->TotalText(total).isEmpty());

    // Two orders selected with the mouse: the footer adds up those two.
    Currency two;
    for (int row : {1, 3}) {
        const QPoint cell = grid->CellRect(grid->DataToRawColumn(0), grid->TitleOffset() + row - 1).center();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::ControlModifier, cell);
        two = two + orders->FieldByName(QStringLiteral("Total"))->Value().ToCurrency();
    }
    ASSERT_EQ(grid->SelectedRows().Count(), 2);
    settle();
    EXPECT_EQ(total->Value().ToCurrency(), two);

    window.TotalsAction()->trigger();
    EXPECT_FALSE(grid->GetOptionsEx().Contains(dgTotalFooter));
    EXPECT_EQ(grid->BottomRowCount(), 1); // the blank row only
}

TEST(Explorer, ForeignKeysEditByTheRowsTheyReferToAndFewValuesArePicked)
{
    const SampleCopy copy;
    ASSERT_TRUE(copy.made);
    const QString &path = copy.path;
    MessageLog messages;
    explorer::ExplorerWindow window;
    window.OpenDatabase(path, QStringLiteral("orders"));
    window.show();
    QApplication::processEvents();
    TQDBGrid *grid = window.Grid();
    TDataSet *orders = grid->DataSet();
    TQColumn *customer = grid->GetColumns()->FindColumn(QStringLiteral("CustNo"));
    ASSERT_EQ(customer->GetLookupColumn(), lcLookupValueField);
    TSQLConnection look;
    look.SetConnectionString(path);
    look.Open();
    const auto companyOf = [&](const Variant &custNo) {
        return look.ExecScalar(QStringLiteral("SELECT Company FROM customers WHERE CustNo = ?"), {custNo}).ToString();
    };
    // The cell shows the company the order refers to.
    EXPECT_EQ(customer->GetDisplayText(), companyOf(orders->FieldByName(QStringLiteral("CustNo"))->Value()));

    grid->SetCol(grid->DataToRawColumn(customer->Index()));
    QTest::keyClick(grid, Qt::Key_F4);
    auto *editor = qobject_cast<TQDBGridEditor *>(grid->InplaceEditor());
    ASSERT_TRUE(editor && editor->PopupList() && editor->PopupList()->Showing());
    TQDBPopupList *list = editor->PopupList()->Popup();
    ASSERT_EQ(list->GetColumns()->Count(), 3);
    EXPECT_EQ(list->GetColumns()->Items(0)->GetFieldName(), QStringLiteral("Company"));
    EXPECT_LE(list->width(), list->screen()->availableGeometry().width());
    QTest::keyClicks(editor, QStringLiteral("wonka f"));
    const QString chosen = editor->text();
    EXPECT_TRUE(chosen.startsWith(QStringLiteral("Wonka Foods"))) << chosen.toStdString();
    QTest::keyClick(editor, Qt::Key_Return); // takes the customer
    QTest::keyClick(editor, Qt::Key_Return); // and the cell
    const int orderNo = orders->FieldByName(QStringLiteral("OrderNo"))->AsInteger();
    orders->Post();
    const Variant stored = look.ExecScalar(QStringLiteral("SELECT CustNo FROM orders WHERE OrderNo = ?"), {orderNo});
    EXPECT_EQ(companyOf(stored), chosen);

    // A company that is not there is refused, and the text stays to be put right.
    QTest::keyClick(grid, Qt::Key_F2);
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Nobody Ltd"));
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts.front().contains(QStringLiteral("is not in the list"))) << messages.texts.front().toStdString();
    EXPECT_TRUE(grid->EditorMode());
    EXPECT_EQ(editor->text(), QStringLiteral("Nobody Ltd"));
    QTest::keyClick(editor, Qt::Key_Escape);
    orders->Cancel();

    // Lines refer to orders, which have no name: they are chosen by number.
    ASSERT_TRUE(window.ShowTable(QStringLiteral("order_lines")));
    EXPECT_EQ(grid->GetColumns()->FindColumn(QStringLiteral("OrderNo"))->GetLookupColumn(), lcLookupKeyField);
    EXPECT_EQ(grid->GetColumns()->FindColumn(QStringLiteral("ProductNo"))->GetLookupColumn(), lcLookupValueField);

    // Countries repeat among the customers: their cells offer them; names do not.
    ASSERT_TRUE(window.ShowTable(QStringLiteral("customers")));
    const QStringList countries = grid->GetColumns()->FindColumn(QStringLiteral("Country"))->GetPickList()->ToStringList();
    EXPECT_TRUE(countries.contains(QStringLiteral("Norway"))) << countries.join(QLatin1Char(',')).toStdString();
    EXPECT_EQ(grid->GetColumns()->FindColumn(QStringLiteral("Company"))->GetPickList()->Count(), 0);
    // Notes are long: their button opens them in several lines.
    TQColumn *notes = grid->GetColumns()->FindColumn(QStringLiteral("Notes"));
    EXPECT_EQ(grid->GetEditorStyle(notes), edsEllipsis);
    EXPECT_EQ(grid->GetEditorStyle(grid->GetColumns()->FindColumn(QStringLiteral("City"))), edsDropDownList);
    grid->SetCol(grid->DataToRawColumn(notes->Index()));
    QTest::keyClick(grid, Qt::Key_F4);
    editor = qobject_cast<TQDBGridEditor *>(grid->InplaceEditor());
    ASSERT_TRUE(editor && editor->MemoPopup());
    EXPECT_EQ(editor->MemoPopup()->Text(), grid->DataSet()->FieldByName(QStringLiteral("Notes"))->AsString());
    QTest::keyClick(editor->MemoPopup()->Edit(), Qt::Key_Escape);
    EXPECT_EQ(grid->GetEditorStyle(grid->GetColumns()->FindColumn(QStringLiteral("Country"))), edsDropDownList);
    QTest::keyClick(editor, Qt::Key_Escape);

    // Dates are picked in the calendar.
    TQColumn *since = grid->GetColumns()->FindColumn(QStringLiteral("Since"));
    TField *sinceField = since->GetField();
    const TDateTime tomorrowOf = IncDay(sinceField->IsNull() ? Date() : sinceField->AsDateTime(), 1);
    grid->SetCol(grid->DataToRawColumn(since->Index()));
    QTest::keyClick(grid, Qt::Key_F4);
    editor = qobject_cast<TQDBGridEditor *>(grid->InplaceEditor());
    ASSERT_TRUE(editor && qobject_cast<TQDBGridCalendar *>(editor->PopupList()) && editor->PopupList()->Showing());
    QTest::keyClick(editor->PopupList()->Popup(), Qt::Key_Right);
    QTest::keyClick(editor->PopupList()->Popup(), Qt::Key_Return);
    QApplication::processEvents();
    grid->DataSet()->Post();
    EXPECT_EQ(look.ExecScalar(QStringLiteral("SELECT Since FROM customers WHERE CustNo = ?"),
                              {grid->DataSet()->FieldByName(QStringLiteral("CustNo"))->Value()})
                  .ToString(),
              FormatDateTime("yyyy-mm-dd", tomorrowOf));

    // Amounts are worked out in the calculator, and the result reaches the file.
    TQColumn *limit = grid->GetColumns()->FindColumn(QStringLiteral("Credit Limit"));
    ASSERT_EQ(limit->GetButtonStyle(), cbsCalculator);
    TDataSet *customers = grid->DataSet();
    const double before = customers->FieldByName(QStringLiteral("Credit Limit"))->AsFloat();
    const Variant custNo = customers->FieldByName(QStringLiteral("CustNo"))->Value();
    grid->SetCol(grid->DataToRawColumn(limit->Index()));
    QTest::keyClick(grid, Qt::Key_F4);
    editor = qobject_cast<TQDBGridEditor *>(grid->InplaceEditor());
    ASSERT_TRUE(editor && editor->PopupList() && editor->PopupList()->Showing());
    QTest::keyClicks(editor->PopupList()->Popup(), QStringLiteral("+100.5"));
    QTest::keyClick(editor->PopupList()->Popup(), Qt::Key_Return);
    QApplication::processEvents(); // the result commits the cell
    customers->Post();
    EXPECT_DOUBLE_EQ(look.ExecScalar(QStringLiteral("SELECT \"Credit Limit\" FROM customers WHERE CustNo = ?"), {custNo})
                         .ToDouble(),
                     before + 100.5);
    EXPECT_TRUE(messages.texts.size() == 1) << messages.texts.join(QLatin1Char('\n')).toStdString();
}

TEST(Explorer, TheNavigatorAndTheRecordFormEditTheRecord)
{
    const SampleCopy copy;
    ASSERT_TRUE(copy.made);
    const QString &path = copy.path;
    MessageLog messages;
    explorer::ExplorerWindow window;
    window.OpenDatabase(path, QStringLiteral("customers"));
    window.show();
    QApplication::processEvents();
    TQDBNavigator *navigator = window.Navigator();
    TDataSet *customers = window.Grid()->DataSet();
    EXPECT_FALSE(navigator->Button(nbPrior)->isEnabled());
    QTest::mouseClick(navigator->Button(nbLast), Qt::LeftButton);
    EXPECT_EQ(customers->RecNo(), customers->RecordCount());
    EXPECT_EQ(window.Grid()->Row(), window.Grid()->DataLink()->ActiveRecord() + window.Grid()->TitleOffset());
    EXPECT_FALSE(navigator->Button(nbNext)->isEnabled());
    QTest::mouseClick(navigator->Button(nbEdit), Qt::LeftButton);
    EXPECT_EQ(customers->State(), dsEdit);
    EXPECT_TRUE(navigator->Button(nbPost)->isEnabled());
    QTest::mouseClick(navigator->Button(nbCancel), Qt::LeftButton);
    EXPECT_EQ(customers->State(), dsBrowse);
    QTest::mouseClick(navigator->Button(nbFirst), Qt::LeftButton);
    EXPECT_EQ(customers->RecNo(), 1);

    // The record form edits the same record: a text typed, a box ticked, the post clicked.
    explorer::RecordForm *form = window.Record();
    auto *company = qobject_cast<TQDBColumn *>(form->Control(QStringLiteral("Company")));
    auto *active = qobject_cast<TQDBCheckBox *>(form->Control(QStringLiteral("Active")));
    ASSERT_TRUE(company && active);
    EXPECT_TRUE(qobject_cast<TQDBColumn *>(form->Control(QStringLiteral("Since"))));
    EXPECT_EQ(company->text(), customers->FieldByName(QStringLiteral("Company"))->AsString());
    const bool wasActive = customers->FieldByName(QStringLiteral("Active"))->AsBoolean();
    const Variant custNo = customers->FieldByName(QStringLiteral("CustNo"))->Value();
    company->setFocus();
    QApplication::processEvents();
    company->selectAll();
    QTest::keyClicks(company, QStringLiteral("Renamed Trading"));
    QTest::keyClick(company, Qt::Key_Return);
    EXPECT_EQ(customers->State(), dsEdit);
    EXPECT_EQ(window.Grid()->GetColumns()->FindColumn(QStringLiteral("Company"))->GetDisplayText(), "Renamed Trading");
    QTest::mouseClick(active, Qt::LeftButton, {}, QPoint(6, active->height() / 2));
    QTest::mouseClick(navigator->Button(nbPost), Qt::LeftButton);
    EXPECT_EQ(customers->State(), dsBrowse);
    TSQLConnection look;
    look.SetConnectionString(path);
    look.Open();
    EXPECT_EQ(look.ExecScalar(QStringLiteral("SELECT Company FROM customers WHERE CustNo = ?"), {custNo}).ToString(),
              "Renamed Trading");
    EXPECT_EQ(look.ExecScalar(QStringLiteral("SELECT Active FROM customers WHERE CustNo = ?"), {custNo}).ToInt64(),
              wasActive ? 0 : 1);
    EXPECT_TRUE(messages.texts.isEmpty()) << messages.texts.join(QLatin1Char('\n')).toStdString();
}

TEST(Explorer, ATitlesValueListFiltersTheTable)
{
    explorer::ExplorerWindow window;
    window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("customers"));
    window.resize(1600, 700);
    window.show();
    QApplication::processEvents();
    TQDBGrid *grid = window.Grid();
    TQColumn *country = grid->GetColumns()->FindColumn(QStringLiteral("Country"));
    ASSERT_TRUE(country);
    grid->viewport()->grab();
    const QRect title = grid->CellRect(grid->DataToRawColumn(country->Index()), 0);
    QPoint button;
    for (int x = title.right(); x > title.left() && button.isNull(); --x)
        if (grid->FilterButtonAt(QPoint(x, title.center().y())) == country)
            button = QPoint(x, title.center().y());
    ASSERT_FALSE(button.isNull());
    const int all = grid->DataSet()->RecordCount();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, button);
    auto *popup = grid->findChild<TQDBPopupFilterList *>();
    ASSERT_TRUE(popup && popup->isVisible());
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Space); // applied at once
    ASSERT_EQ(country->GetFilterList()->Count(), 1);
    const QString ticked = country->GetFilterList()->Get(0);
    const int shown = grid->DataSet()->RecordCount();
    EXPECT_LT(shown, all);
    EXPECT_GT(shown, 0);
    for (grid->DataSet()->First(); !grid->DataSet()->Eof(); grid->DataSet()->Next())
        EXPECT_EQ(grid->DataSet()->FieldByName(QStringLiteral("Country"))->Text(), ticked);
}

TEST(Explorer, CtrlFFindsAndHidesTheRowsWithoutTheText)
{
    explorer::ExplorerWindow window;
    window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("customers"));
    window.resize(1200, 600);
    window.show();
    QApplication::processEvents();
    TQDBGrid *grid = window.Grid();
    TDataSet *ds = grid->DataSet();
    ds->Last();
    const QString country = ds->FieldByName(QStringLiteral("Country"))->Text();
    const int all = ds->RecordCount();
    ds->First();
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_F, Qt::ControlModifier);
    TQDBGridSearchPanel *panel = grid->SearchPanel();
    ASSERT_TRUE(panel && panel->isVisible());
    const ScopedMessageDlgHook quiet([](const QString &, TMsgDlgType, TMsgDlgButtons) { return mrNo; });
    QTest::keyClicks(panel->SearchBox()->lineEdit(), country);
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_Return);
    EXPECT_EQ(grid->SelectedField()->Text(), country);
    panel->OptionAction(soFilterRows)->trigger();
    // The records the data set still gives (a count may not know of the handler's refusals).
    const auto rows = [ds] {
        int n = 0;
        for (ds->First(); !ds->Eof(); ds->Next())
            ++n;
        return n;
    };
    const int shown = rows();
    EXPECT_GT(shown, 0);
    EXPECT_LT(shown, all);
    for (ds->First(); !ds->Eof(); ds->Next()) {
        bool found = false;
        for (TField *f : ds->Fields())
            found = found || f->DisplayText().contains(country, Qt::CaseInsensitive);
        EXPECT_TRUE(found);
    }
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_EQ(rows(), all);
}

class ExplorerSQL : public testing::TestWithParam<test::Backend>
{
};

TEST_P(ExplorerSQL, ListsFollowTheSchemaOnEitherDatabase)
{
    RegisterDBTypes();
    test::TestDatabase db;
    TSQLConnection connection;
    if (!db.Open(GetParam(), connection, QStringLiteral("explorer")))
        GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
    connection.ExecSQL(QStringLiteral("CREATE TABLE firms (id INTEGER PRIMARY KEY, name VARCHAR(30) NOT NULL, town VARCHAR(20))"));
    connection.ExecSQL(QStringLiteral("CREATE TABLE deals (id INTEGER PRIMARY KEY, firm INTEGER REFERENCES firms (id),"
                                      " stage VARCHAR(10), memo TEXT)"));
    connection.ExecSQL(QStringLiteral("INSERT INTO firms VALUES (1, 'North', 'Oslo'), (2, 'South', 'Rome'), (3, 'Sou''west', NULL)"));
    for (int i = 1; i <= 12; ++i)
        connection.ExecSQL(QStringLiteral("INSERT INTO deals VALUES (?, ?, ?, ?)"),
                           {i, 1 + i % 2, i % 3 == 0 ? QStringLiteral("won") : QStringLiteral("open"), QStringLiteral("note %1").arg(i)});
    const QString address = connection.ConnectionString();
    {
        explorer::ExplorerWindow window;
        window.OpenDatabase(address, QStringLiteral("deals"));
        window.show();
        QApplication::processEvents();
        TQDBGrid *grid = window.Grid();
        TQColumn *firm = grid->GetColumns()->FindColumn(QStringLiteral("firm"));
        ASSERT_EQ(firm->GetLookupColumn(), lcLookupValueField);
        EXPECT_EQ(firm->GetLookupResultField(), QStringLiteral("name"));
        EXPECT_EQ(firm->GetDisplayText(), QStringLiteral("South"));
        EXPECT_EQ(grid->GetColumns()->FindColumn(QStringLiteral("stage"))->GetPickList()->ToStringList(),
                  (QStringList{QStringLiteral("open"), QStringLiteral("won")}));
        EXPECT_EQ(grid->GetColumns()->FindColumn(QStringLiteral("memo"))->GetPickList()->Count(), 0);
        EXPECT_EQ(grid->GetEditorStyle(grid->GetColumns()->FindColumn(QStringLiteral("memo"))), edsEllipsis);
        EXPECT_EQ(grid->GetEditorStyle(grid->GetColumns()->FindColumn(QStringLiteral("stage"))), edsDropDownList);

        // Typing a name stores its firm's key; a quote in it is text, not SQL.
        grid->SetCol(grid->DataToRawColumn(firm->Index()));
        QTest::keyClick(grid, Qt::Key_F2);
        auto *editor = qobject_cast<QLineEdit *>(grid->InplaceEditor());
        ASSERT_TRUE(editor);
        editor->selectAll();
        QTest::keyClicks(editor, QStringLiteral("Sou'west"));
        QTest::keyClick(editor, Qt::Key_Return);
        grid->DataSet()->Post();

        // The stage's value list comes from the database with its counts; a tick filters.
        TQColumn *stage = grid->GetColumns()->FindColumn(QStringLiteral("stage"));
        grid->viewport()->grab();
        grid->ShowAutoFilter(stage);
        auto *popup = grid->findChild<TQDBPopupFilterList *>();
        ASSERT_TRUE(popup && popup->isVisible());
        auto *values = qobject_cast<TQDBFilterData *>(popup->DataSet());
        ASSERT_EQ(values->Count(), 2);
        EXPECT_EQ(values->ListValue(1), "won");
        EXPECT_EQ(values->RecordsOf(1), 4);
        popup->TickKeys({QStringLiteral("WON")}, true);
        QTest::keyClick(popup, Qt::Key_Return);
        EXPECT_EQ(grid->DataSet()->RecordCount(), 4);
        QApplication::processEvents();

        // The form: a condition by hand in place of the ticks.
        grid->ShowFilterForm(stage);
        auto *form = window.findChild<TQDBGridFilterForm *>();
        ASSERT_TRUE(form);
        form->ClauseList1->setCurrentIndex(form->ClauseList1->findData(int(fcIsEqual)));
        form->ValuesList1->setEditText(QStringLiteral("open"));
        form->accept();
        EXPECT_EQ(grid->DataSet()->RecordCount(), 8);
        EXPECT_EQ(stage->GetFilterList()->Count(), 0);
    }
    EXPECT_EQ(connection.ExecScalar(QStringLiteral("SELECT firm FROM deals WHERE id = 1")).ToInt(), 3);
    connection.Close();
    db.Drop();
}

INSTANTIATE_TEST_SUITE_P(Databases, ExplorerSQL, testing::Values(test::Backend::SQLite, test::Backend::PostgreSQL),
                         test::BackendName);

TEST(Explorer, EachTableKeepsItsLayoutBetweenRunsAndGarbageSettingsAreIgnored)
{
    QTemporaryDir dir;
    const QString layouts = dir.filePath(QStringLiteral("config/layouts.ini"));
    auto column = [](explorer::ExplorerWindow &w, const char *field) {
        return w.Grid()->GetColumns()->FindColumn(QString::fromLatin1(field));
    };
    {
        explorer::ExplorerWindow window;
        window.SetLayoutFile(layouts);
        window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("customers"));
        column(window, "City")->SetVisible(false);
        column(window, "Company")->SetIndex(0);
        window.Grid()->SetOrderFields(QStringLiteral("Company DESC"));
        column(window, "Company")->GetFilterList()->Add(QStringLiteral("nowhere"));
        ASSERT_TRUE(window.ShowTable(QStringLiteral("products")));
        EXPECT_NE(column(window, "ProductNo"), nullptr);
        EXPECT_TRUE(window.Grid()->GetOrderFields().isEmpty()); // its own layout: none yet
        column(window, "ProductNo")->SetWidth(150);
    }
    {
        explorer::ExplorerWindow window;
        window.SetLayoutFile(layouts);
        window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("customers"));
        EXPECT_FALSE(column(window, "City")->GetVisible());
        EXPECT_EQ(column(window, "Company")->Index(), 0);
        EXPECT_EQ(window.Grid()->GetOrderFields(), "Company DESC");
        EXPECT_EQ(column(window, "Company")->GetFilterList()->ToStringList(), QStringList{QStringLiteral("nowhere")});
        EXPECT_TRUE(window.Grid()->DataSet()->IsEmpty());
        ASSERT_TRUE(window.ShowTable(QStringLiteral("products")));
        EXPECT_EQ(column(window, "ProductNo")->GetWidth(), 150);
    }

    // Random bytes where the layouts were: the explorer starts with the tables as they are.
    QFile garbage(layouts);
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QByteArray bytes(4096, Qt::Uninitialized);
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = char((i * 7919 + 13) % 256);
    garbage.write(bytes);
    garbage.close();
    explorer::ExplorerWindow window;
    window.SetLayoutFile(layouts);
    window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("customers"));
    EXPECT_TRUE(column(window, "City")->GetVisible());
    EXPECT_FALSE(window.Grid()->DataSet()->IsEmpty());
}

// A file that is no database, or one cut short, is told by name; another opens after it.
TEST(Explorer, ADamagedFileIsToldByNameAndAnotherOpens)
{
    QTemporaryDir dir;
    const QString garbage = dir.filePath(QStringLiteral("garbage.db"));
    ASSERT_TRUE(test::WriteDamagedDatabase(garbage));
    explorer::ExplorerWindow window;
    window.resize(900, 600);
    window.show();
    MessageLog log;
    ASSERT_TRUE(window.TryOpenDatabase(QStringLiteral(QDB_SAMPLE_DB)));
    EXPECT_FALSE(window.TryOpenDatabase(garbage));
    ASSERT_EQ(log.texts.size(), 1);
    EXPECT_TRUE(log.texts[0].contains(garbage)) << qPrintable(log.texts[0]);
    EXPECT_TRUE(log.texts[0].contains(QStringLiteral("not a database"))) << qPrintable(log.texts[0]);
    EXPECT_TRUE(window.Tables().isEmpty());
    EXPECT_FALSE(window.Grid()->DataSet()->Active());

    // Cut short: told as malformed, by name.
    SampleCopy copy;
    ASSERT_TRUE(copy.made);
    QFile file(copy.path);
    ASSERT_TRUE(file.resize(file.size() - file.size() / 4));
    log.texts.clear();
    EXPECT_FALSE(window.TryOpenDatabase(copy.path));
    ASSERT_EQ(log.texts.size(), 1);
    EXPECT_TRUE(log.texts[0].contains(QStringLiteral("malformed"))) << qPrintable(log.texts[0]);
    EXPECT_TRUE(log.texts[0].contains(copy.path)) << qPrintable(log.texts[0]);

    EXPECT_TRUE(window.TryOpenDatabase(QStringLiteral(QDB_SAMPLE_DB)));
    EXPECT_TRUE(window.Grid()->DataSet()->Active());
}

TEST(Explorer, SpeaksGermanWhereTheSystemDoes)
{
    explorer::ExplorerWindow::InstallTranslations(QLocale(QLocale::German, QLocale::Austria));
    {
        explorer::ExplorerWindow window;
        window.OpenDatabase(QStringLiteral(QDB_SAMPLE_DB), QStringLiteral("orders"));
        QStringList menus;
        for (QAction *menu : window.menuBar()->actions())
            menus << menu->text();
        EXPECT_EQ(menus, QStringList({"&Datei", "&Ansicht"}));
        // The grid's own texts come in German too.
        EXPECT_EQ(TDBNavigator::DefaultHint(nbLast), QStringLiteral("Letzter Datensatz"));
    }
    explorer::ExplorerWindow::InstallTranslations(QLocale::c());
    explorer::ExplorerWindow window;
    EXPECT_EQ(window.menuBar()->actions().value(0)->text(), QStringLiteral("&File"));
}
