#include "grid/QDBGrid.h"

#include "TestSupport.h"

#include "platform/rtl/Dialogs.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

// A grid over a table in a SQLite file: what users of a desktop database do all day.
class DBGridOnSQLite : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        connection.SetConnectionString(QStringLiteral("sqlite:") + dir.filePath(QStringLiteral("grid.db")));
        connection.SetCreateDatabase(true);
        connection.Open();
        connection.ExecSQL(QStringLiteral(
            "CREATE TABLE items (id INTEGER PRIMARY KEY, name VARCHAR(30), qty INTEGER NOT NULL)"));
        connection.StartTransaction();
        for (int i = 1; i <= 2000; ++i)
            connection.ExecSQL(QStringLiteral("INSERT INTO items (name, qty) VALUES (?, ?)"),
                               {QStringLiteral("item %1").arg(i), i});
        connection.Commit();
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("items"));
        table.SetIndexFieldNames(QStringLiteral("id"));
        table.Open();
        source.SetDataSet(&table);
        grid.resize(500, 300);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        table.Close();
        connection.Close();
    }
    QLineEdit *editText(const QString &text)
    {
        QTest::keyClick(&grid, Qt::Key_F2);
        auto *editor = grid.findChild<QLineEdit *>();
        if (editor) {
            QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
            if (text.isEmpty())
                QTest::keyClick(editor, Qt::Key_Delete);
            else
                QTest::keyClicks(editor, text);
        }
        return editor;
    }

    QTemporaryDir dir;
    TSQLConnection connection;
    TSQLTable table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(DBGridOnSQLite, BrowsesAndEditsTheTable)
{
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(1), 1), "item 1");
    QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), grid.Row()), "2000");
    EXPECT_EQ(grid.verticalScrollBar()->value(), grid.verticalScrollBar()->maximum());
    grid.verticalScrollBar()->setValue(999);
    EXPECT_EQ(table.FieldByName(QStringLiteral("qty"))->AsInteger(), 1000);

    grid.SetCol(grid.DataToRawColumn(1));
    ASSERT_NE(editText(QStringLiteral("renamed")), nullptr);
    QTest::keyClick(grid.findChild<QLineEdit *>(), Qt::Key_Return);
    QTest::keyClick(&grid, Qt::Key_Down); // leaving the record posts it
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(connection.ExecScalar(QStringLiteral("SELECT name FROM items WHERE qty = 1000")).ToString(), "renamed");
}

TEST_F(DBGridOnSQLite, TheRowsShowBeforeTheyAreCountedAndTheBarFollows)
{
    table.SetFilter(QStringLiteral("qty > 1500"));
    table.SetFiltered(true);
    // The first screen is read; counting the filtered rows waits for the event loop.
    EXPECT_FALSE(table.RecordCountKnown());
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), 1), "1501");
    EXPECT_LT(grid.verticalScrollBar()->maximum(), 499);
    QApplication::processEvents();
    EXPECT_EQ(grid.verticalScrollBar()->maximum(), 499);
    grid.verticalScrollBar()->setValue(499);
    EXPECT_EQ(table.FieldByName(QStringLiteral("qty"))->AsInteger(), 2000);
    // A result that fits in what was read is counted by reading it.
    table.SetFilter(QStringLiteral("qty > 1990"));
    EXPECT_TRUE(table.RecordCountKnown());
    EXPECT_EQ(grid.verticalScrollBar()->maximum(), 9);
}

TEST_F(DBGridOnSQLite, ARefusedPostKeepsWhatWasTyped)
{
    QStringList messages;
    ScopedMessageDlgHook hook([&](const QString &message, TMsgDlgType, TMsgDlgButtons) {
        messages << message;
        return mrOk;
    });
    grid.SetCol(grid.DataToRawColumn(2));
    ASSERT_NE(editText(QString()), nullptr); // qty may not be NULL
    QTest::keyClick(grid.findChild<QLineEdit *>(), Qt::Key_Return);
    QTest::keyClick(&grid, Qt::Key_Down);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].contains(QStringLiteral("NOT NULL"), Qt::CaseInsensitive)) << messages[0].toStdString();
    EXPECT_EQ(table.State(), dsEdit); // still on the record, with the change
    EXPECT_TRUE(table.FieldByName(QStringLiteral("qty"))->IsNull());
    EXPECT_EQ(table.RecNo(), 1);
    QTest::keyClick(&grid, Qt::Key_Escape);
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), 1), "1");
}
