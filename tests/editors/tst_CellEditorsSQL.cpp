// Cell editors over SQLite and PostgreSQL tables: a lookup list picks an order's customer and
// the key reaches the database; typing finds customers in the database exactly where a walk
// over the same rows finds them; a value the database refuses stays in the record; the
// calculator's result and the calendar's date are stored.

#include "editors/QDBDataEditor.h"
#include "editors/QDBDataList.h"
#include "editors/QDBEditor.h"
#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"
#include "SQLTestSupport.h"

#include "platform/db/MemTable.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

// Names that fold, that hold the pattern characters of LIKE, and that share starts.
const char *const Companies[] = {"Acme",         "acme two", "ACME three", "Globex",  "Globo Gym", "\xc3\x84pfel AG",
                                 "\xc3\xa4hnlich", "50% Off",  "5_Star",     "Initech", "Umbrella",  "umbra"};

class CellEditorsSQL : public SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("editors")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        connection.ExecSQL(QStringLiteral("CREATE TABLE customers (custno INTEGER PRIMARY KEY, company VARCHAR(40))"));
        connection.ExecSQL(QStringLiteral("CREATE TABLE orders (orderno INTEGER PRIMARY KEY, custno INTEGER, "
                                          "status VARCHAR(1) CHECK (status IN ('A', 'B', 'C')), amount NUMERIC(10,2), due DATE)"));
        connection.StartTransaction();
        int id = 0;
        for (const char *name : Companies)
            connection.ExecSQL(QStringLiteral("INSERT INTO customers VALUES (?, ?)"), {++id, QString::fromUtf8(name)});
        for (int i = 0; i < 200; ++i) // more than a page of the list
            connection.ExecSQL(QStringLiteral("INSERT INTO customers VALUES (?, ?)"),
                               {++id, QStringLiteral("Company %1").arg(i, 3, 10, QLatin1Char('0'))});
        connection.ExecSQL(QStringLiteral("INSERT INTO orders VALUES (1, 1, 'A', 12.5, '2024-02-28'), (2, 4, 'B', NULL, NULL)"));
        connection.Commit();

        customers.SetConnection(&connection);
        customers.SetTableName(QStringLiteral("customers"));
        customers.SetIndexFieldNames(QStringLiteral("custno"));
        orders.SetConnection(&connection);
        orders.SetTableName(QStringLiteral("orders"));
        orders.SetIndexFieldNames(QStringLiteral("orderno"));
        AddField(orders, QStringLiteral("orderno"), ftInteger);
        AddField(orders, QStringLiteral("custno"), ftInteger);
        AddField(orders, QStringLiteral("status"), ftString, 1);
        AddField(orders, QStringLiteral("amount"), ftFloat);
        AddField(orders, QStringLiteral("due"), ftDate);
        AddLookupField(orders, QStringLiteral("Company"), &customers, QStringLiteral("custno"),
                       QStringLiteral("custno"), QStringLiteral("company"));
        customers.Open();
        orders.Open();
        source.SetDataSet(&orders);
        grid.resize(600, 200);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        orders.Close();
        customers.Close();
        SQLTableTest::TearDown();
    }
    void select(const char *name)
    {
        grid.SetCol(grid.DataToRawColumn(grid.GetColumns()->FindColumn(QString::fromLatin1(name))->Index()));
    }
    TQDBGridEditor *editor() { return qobject_cast<TQDBGridEditor *>(grid.InplaceEditor()); }
    QString stored(const QString &sql) { return connection.ExecScalar(sql).ToString(); }

    TSQLTable customers;
    TSQLTable orders;
    TDataSource source;
    TQDBGrid grid;
    MessageLog messages;
};

} // namespace

TEST_P(CellEditorsSQL, ALookupListWritesTheCustomerKeyToTheDatabase)
{
    select("Company");
    EXPECT_EQ(orders.FieldByName(QStringLiteral("Company"))->AsString(), "Acme");
    QTest::keyClick(&grid, Qt::Key_F4);
    TQDBGridDropDownList *list = editor()->PopupList();
    ASSERT_TRUE(list && list->Showing());
    EXPECT_EQ(customers.FieldByName(QStringLiteral("custno"))->AsInteger(), 1);
    QTest::keyClicks(editor(), QStringLiteral("GLOBO"));
    EXPECT_EQ(editor()->text(), "Globo Gym");
    QTest::keyClick(editor(), Qt::Key_Return); // takes the customer
    QTest::keyClick(editor(), Qt::Key_Return); // and the cell
    EXPECT_FALSE(grid.EditorMode());
    orders.Post();
    EXPECT_EQ(stored(QStringLiteral("SELECT custno FROM orders WHERE orderno = 1")), "5");
    EXPECT_EQ(orders.FieldByName(QStringLiteral("Company"))->AsString(), "Globo Gym");
}

TEST_P(CellEditorsSQL, TheDatabaseFindsATypedStartWhereAWalkDoes)
{
    TMemTable walked; // the same customers, searched by the walk
    walked.FieldDefs().Add(QStringLiteral("custno"), ftInteger);
    walked.FieldDefs().Add(QStringLiteral("company"), ftString, 40);
    walked.CreateDataSet();
    for (customers.First(); !customers.Eof(); customers.Next())
        walked.AppendRecord({customers.FieldByName(QStringLiteral("custno"))->Value(),
                             customers.FieldByName(QStringLiteral("company"))->Value()});
    const QStringList starts = {QStringLiteral("ac"), QStringLiteral("ACME T"), QStringLiteral("Acme"),
                                QString::fromUtf8("\xc3\xa4"), QString::fromUtf8("\xc3\x84PF"), QStringLiteral("50%"),
                                QStringLiteral("5_"), QStringLiteral("5%"), QStringLiteral("umb"),
                                QStringLiteral("Company 1"), QStringLiteral("zz"), QStringLiteral("")};
    for (const QString &start : starts) {
        for (const TLocateOptions options :
             {TLocateOptions{loPartialKey}, TLocateOptions{loPartialKey, loCaseInsensitive}, TLocateOptions{loCaseInsensitive}}) {
            SCOPED_TRACE(start.toStdString() + (options.Contains(loCaseInsensitive) ? " case-blind" : " exact case")
                         + (options.Contains(loPartialKey) ? " start" : " whole"));
            const bool inDatabase = customers.Locate(QStringLiteral("company"), Variant(start), options);
            const bool byWalk = walked.Locate(QStringLiteral("company"), Variant(start), options);
            ASSERT_EQ(inDatabase, byWalk);
            if (byWalk) {
                EXPECT_EQ(customers.FieldByName(QStringLiteral("custno"))->AsInteger(),
                          walked.FieldByName(QStringLiteral("custno"))->AsInteger());
            }
        }
    }
}

TEST_P(CellEditorsSQL, AValueTheDatabaseRefusesStaysInTheRecord)
{
    TQColumn *status = grid.GetColumns()->FindColumn(QStringLiteral("status"));
    status->GetPickList()->SetText(QStringLiteral("A\nB\nC\nD"));
    select("status");
    QTest::keyClick(&grid, Qt::Key_F4);
    TQDBPopupList *popup = editor()->PopupList()->Popup();
    QTest::keyClick(popup, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(editor()->text(), "D");
    QTest::keyClick(editor(), Qt::Key_Return);
    QTest::keyClick(&grid, Qt::Key_Down); // leaving the record posts it
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_EQ(orders.State(), dsEdit);
    EXPECT_EQ(orders.FieldByName(QStringLiteral("orderno"))->AsInteger(), 1);
    EXPECT_EQ(orders.FieldByName(QStringLiteral("status"))->AsString(), "D");
    EXPECT_EQ(stored(QStringLiteral("SELECT status FROM orders WHERE orderno = 1")), "A");
}

TEST_P(CellEditorsSQL, AnEditorOnAFormPicksTheCustomerAndTheStatus)
{
    TQDBEditor company;
    company.SetDataSource(&source);
    company.SetDataField(QStringLiteral("Company"));
    TQDBEditor status;
    status.SetDataSource(&source);
    status.SetDataField(QStringLiteral("status"));
    status.GetPickList()->SetText(QStringLiteral("A\nB\nC"));
    status.GetPickText()->SetText(QStringLiteral("Active\nBlocked\nClosed"));
    company.show();
    status.show();
    EXPECT_EQ(company.text(), "Acme");
    EXPECT_EQ(status.text(), "Active");

    company.setFocus();
    QTest::keyClick(&company, Qt::Key_F4);
    ASSERT_TRUE(company.PopupList() && company.PopupList()->Showing());
    QTest::keyClicks(&company, QStringLiteral("umbre"));
    EXPECT_EQ(company.text(), "Umbrella");
    QTest::keyClick(&company, Qt::Key_Return);
    status.selectAll();
    QTest::keyClicks(&status, QStringLiteral("clo"));
    QTest::keyClick(&status, Qt::Key_Return);
    orders.Post();
    EXPECT_EQ(stored(QStringLiteral("SELECT custno FROM orders WHERE orderno = 1")), "11");
    EXPECT_EQ(stored(QStringLiteral("SELECT status FROM orders WHERE orderno = 1")), "C");
    EXPECT_EQ(company.text(), "Umbrella");
    EXPECT_EQ(status.text(), "Closed");
}

TEST_P(CellEditorsSQL, TheCalculatorsResultReachesTheDatabase)
{
    grid.GetColumns()->FindColumn(QStringLiteral("amount"))->SetButtonStyle(cbsCalculator);
    select("amount");
    QTest::keyClick(&grid, Qt::Key_F4);
    TQDBGridDropDownList *list = editor()->PopupList();
    ASSERT_TRUE(list && list->Showing());
    QTest::keyClicks(list->Popup(), QStringLiteral("*3-0.25"));
    QTest::keyClick(list->Popup(), Qt::Key_Return);
    QApplication::processEvents(); // the result commits the cell
    EXPECT_FALSE(grid.EditorMode());
    orders.Post();
    EXPECT_DOUBLE_EQ(connection.ExecScalar(QStringLiteral("SELECT amount FROM orders WHERE orderno = 1")).ToDouble(), 37.25);
    EXPECT_TRUE(messages.texts.isEmpty()) << messages.texts.join(QLatin1Char('\n')).toStdString();
}

TEST_P(CellEditorsSQL, TheCalendarsDateReachesTheDatabase)
{
    select("due");
    QTest::keyClick(&grid, Qt::Key_F4);
    TQDBGridDropDownList *list = editor()->PopupList();
    ASSERT_TRUE(list && list->Showing());
    QTest::keyClick(list->Popup(), Qt::Key_Right);
    QTest::keyClick(list->Popup(), Qt::Key_Right); // over the leap day
    QTest::keyClick(list->Popup(), Qt::Key_Return);
    QApplication::processEvents();
    orders.Post();
    EXPECT_EQ(stored(QStringLiteral("SELECT CAST(due AS VARCHAR(10)) FROM orders WHERE orderno = 1")), "2024-03-01");
    EXPECT_TRUE(messages.texts.isEmpty()) << messages.texts.join(QLatin1Char('\n')).toStdString();
}

INSTANTIATE_TEST_SUITE_P(Databases, CellEditorsSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);
