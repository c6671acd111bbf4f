// The explorer on the sample database, driven as a user drives it.

#include "ExplorerWindow.h"

#include <QApplication>
#include <QLabel>
#include <QStatusBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

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
