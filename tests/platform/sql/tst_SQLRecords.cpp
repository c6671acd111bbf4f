// Records of SQL data sets on results large enough to be read through a computed order:
// bookmarks that stay with their records, positions that agree with a walk, and what an
// open data set leaves on the server.

#include "platform/rtl/Exceptions.h"
#include "platform/sql/SQLDataSet.h"

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace qdb;
using qdb::test::Backend;

namespace {

constexpr int Rows = 20000;

// "items": id 1..Rows; grp = id % 97 with NULL at every 13th id (many ties, many NULLs);
// name "n<id>".
class SQLRecordsTest : public test::SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("records")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        connection.ExecSQL(QStringLiteral("DROP TABLE IF EXISTS items"));
        connection.ExecSQL(QStringLiteral("CREATE TABLE items (id INTEGER PRIMARY KEY, grp INTEGER, name VARCHAR(20))"));
        connection.ExecSQL(pg() ? QStringLiteral("INSERT INTO items SELECT i, CASE WHEN i % 13 = 0 THEN NULL ELSE i % 97 END,"
                                                 " 'n' || i FROM generate_series(1, %1) i")
                                          .arg(Rows)
                                : QStringLiteral("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < %1)"
                                                 " INSERT INTO items SELECT i, CASE WHEN i % 13 = 0 THEN NULL ELSE i % 97 END,"
                                                 " 'n' || i FROM s")
                                          .arg(Rows));
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("items"));
    }

    int id() { return table.FieldByName(QStringLiteral("id"))->AsInteger(); }

    // The ids in the order of "grp" (NULL first ascending, last descending, on every
    // database), ties by id in the same direction: worked out here, not read from the data
    // set.
    QList<int> expectedOrder(bool descending, const QList<int> &ids, const QHash<int, int> &changed = {}) const
    {
        auto grp = [&](int i) { return changed.value(i, i % 13 == 0 ? -1 : i % 97); };
        QList<int> order = ids;
        std::sort(order.begin(), order.end(), [&](int a, int b) {
            const int ga = grp(a), gb = grp(b);
            if (ga != gb) {
                if (ga < 0 || gb < 0) // exactly one is NULL
                    return (ga < 0) != descending;
                return descending ? ga > gb : ga < gb;
            }
            return descending ? a > b : a < b;
        });
        return order;
    }

    QList<int> walkForwards()
    {
        QList<int> ids;
        for (table.First(); !table.Eof(); table.Next())
            ids << id();
        return ids;
    }

    QList<int> walkBackwards()
    {
        QList<int> ids;
        for (table.Last(); !table.Bof(); table.Prior())
            ids.prepend(id());
        return ids;
    }

    static QList<int> allIds()
    {
        QList<int> ids;
        for (int i = 1; i <= Rows; ++i)
            ids << i;
        return ids;
    }

};

} // namespace

TEST_P(SQLRecordsTest, BookmarksStayWithTheirRecords)
{
    table.SetIndexFieldNames(QStringLiteral("id"));
    table.Open();
    QList<TBookmark> marks;
    for (int key : {100, 200, 300}) {
        ASSERT_TRUE(table.Locate(QStringLiteral("id"), key, {}));
        marks << table.GetBookmark();
    }
    auto expectAt = [&](const TBookmark &mark, int key) {
        ASSERT_TRUE(table.BookmarkValid(mark)) << key;
        table.GotoBookmark(mark);
        EXPECT_EQ(id(), key);
    };

    // A record that sorts first moves every position on by one.
    table.Append();
    table.FieldByName(QStringLiteral("id"))->SetAsInteger(0);
    table.Post();
    expectAt(marks[0], 100);
    expectAt(marks[1], 200);
    expectAt(marks[2], 300);
    EXPECT_EQ(table.RecNo(), 301);
    EXPECT_LT(table.CompareBookmarks(marks[0], marks[1]), 0);
    EXPECT_GT(table.CompareBookmarks(marks[2], marks[1]), 0);
    EXPECT_EQ(table.CompareBookmarks(marks[1], marks[1]), 0);

    // Deleted elsewhere, then read again: gone; the others still right.
    TSQLConnection other;
    other.SetConnectionString(connection.ConnectionString());
    other.ExecSQL(QStringLiteral("DELETE FROM items WHERE id IN (50, 200)"));
    table.Refresh();
    EXPECT_FALSE(table.BookmarkValid(marks[1]));
    EXPECT_THROW(table.GotoBookmark(marks[1]), EDatabaseError);
    expectAt(marks[2], 300);
    EXPECT_EQ(table.RecNo(), 299);
    other.Close();

    // A new order: compared in it.
    table.SetIndexFieldNames(QStringLiteral("id DESC"));
    expectAt(marks[0], 100);
    EXPECT_GT(table.CompareBookmarks(marks[0], marks[2]), 0);
    EXPECT_LT(table.CompareBookmarks(marks[1], marks[2]), 0); // records no longer there sort first

    // A filter: what it hides is not there.
    table.SetFilter(QStringLiteral("id > 150"));
    table.SetFiltered(true);
    EXPECT_FALSE(table.BookmarkValid(marks[0]));
    expectAt(marks[2], 300);
}

TEST_P(SQLRecordsTest, EveryPositionAgreesWithAWalk)
{
    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending ? "grp DESC" : "grp");
        table.Close();
        table.SetIndexFieldNames(descending ? QStringLiteral("grp DESC") : QStringLiteral("grp"));
        table.Open();
        const QList<int> expected = expectedOrder(descending, allIds());
        // A walk backwards from the end needs no computed order on SQLite: it goes on in the
        // order turned round.
        EXPECT_EQ(walkBackwards(), expected);
        EXPECT_EQ(table.OrderComputations(), pg() ? 1 : 0);
        table.Close();
        table.Open();
        ASSERT_EQ(table.RecordCount(), Rows);
        // A record found far down, and the rows around it, need no sort of the whole result.
        ASSERT_TRUE(table.Locate(QStringLiteral("id"), expected[12345], {}));
        EXPECT_EQ(table.RecNo(), 12346);
        table.MoveBy(-300);
        EXPECT_EQ(id(), expected[12045]);
        table.MoveBy(500);
        EXPECT_EQ(id(), expected[12545]);
        // So do the last rows: the first ones of the order turned round.
        table.Last();
        EXPECT_EQ(id(), expected.last());
        table.MoveBy(-300);
        EXPECT_EQ(id(), expected[Rows - 301]);
        EXPECT_EQ(table.OrderComputations(), 0);
        EXPECT_EQ(walkForwards(), expected);
        EXPECT_EQ(walkBackwards(), expected);
        EXPECT_EQ(table.OrderComputations(), 1); // computed once, then every page read through it

        // Jumps of any size land where the walk says.
        table.Last();
        table.MoveBy(-Rows / 2);
        EXPECT_EQ(id(), expected[Rows - 1 - Rows / 2]);
        table.SetRecNo(Rows / 3);
        EXPECT_EQ(id(), expected[Rows / 3 - 1]);
        EXPECT_EQ(table.MoveBy(-(Rows / 3 - 1)), -(Rows / 3 - 1));
        EXPECT_EQ(id(), expected[0]);
        EXPECT_FALSE(table.Bof()); // landed on the first record, did not try to pass it
        table.SetRecNo(10);
        EXPECT_EQ(table.MoveBy(-Rows), -9);
        EXPECT_TRUE(table.Bof());
        EXPECT_EQ(table.MoveBy(Rows), Rows - 1);
        EXPECT_TRUE(table.Eof());
        EXPECT_EQ(id(), expected.last());

        // The database finds a record's place by key or by another column.
        for (int i = 7; i < Rows; i += 1009) {
            ASSERT_TRUE(table.Locate(QStringLiteral("id"), expected[i], {}));
            EXPECT_EQ(table.RecNo(), i + 1);
            ASSERT_TRUE(table.Locate(QStringLiteral("name"), QStringLiteral("n%1").arg(expected[i]), {}));
            EXPECT_EQ(table.RecNo(), i + 1);
        }
        ASSERT_TRUE(table.Locate(QStringLiteral("grp"), Variant::Null(), {}));
        EXPECT_EQ(id(), *std::find_if(expected.begin(), expected.end(), [](int i) { return i % 13 == 0; })); // the first NULL
        EXPECT_LE(table.OrderComputations(), 1);
    }
}

// The rows around a record are read from its own values; NULLs of the first column form a
// block of their own, which the screen around a record at its border crosses.
TEST_P(SQLRecordsTest, TheRowsAroundARecordCrossTheBlockOfNulls)
{
    for (const QString &order : {QStringLiteral("grp"), QStringLiteral("grp;name"), QStringLiteral("grp DESC")}) {
        SCOPED_TRACE(order.toStdString());
        table.Close();
        table.SetIndexFieldNames(order);
        table.Open();
        QList<int> expected = expectedOrder(order.endsWith(QStringLiteral("DESC")), allIds());
        if (order.contains(QLatin1Char(';'))) // ties by name, as text
            std::stable_sort(expected.begin(), expected.end(), [](int a, int b) {
                const int ga = a % 13 == 0 ? -1 : a % 97, gb = b % 13 == 0 ? -1 : b % 97;
                return ga != gb ? ga < gb : QStringLiteral("n%1").arg(a) < QStringLiteral("n%1").arg(b);
            });
        const qsizetype nulls = std::count_if(expected.begin(), expected.end(), [](int i) { return i % 13 == 0; });
        const qsizetype border = order.endsWith(QStringLiteral("DESC")) ? Rows - nulls : nulls; // the first after the block
        for (const qsizetype at : {border - 40, border - 1, border, border + 3, qsizetype(Rows / 2)}) {
            SCOPED_TRACE(at);
            table.Refresh(); // nothing read yet
            ASSERT_TRUE(table.Locate(QStringLiteral("id"), expected[at], {}));
            EXPECT_EQ(table.RecNo(), at + 1);
            table.MoveBy(-30);
            QList<int> seen;
            for (int i = 0; i < 60 && !table.Eof(); ++i, table.Next())
                seen << id();
            EXPECT_EQ(seen, expected.mid(at - 30, 60));
            // Rows well inside the block, from a record beside it.
            table.Refresh();
            ASSERT_TRUE(table.Locate(QStringLiteral("id"), expected[at], {}));
            table.MoveBy(-100);
            EXPECT_EQ(id(), expected[at - 100]);
            table.MoveBy(180);
            EXPECT_EQ(id(), expected[at + 80]);
        }
        EXPECT_EQ(table.OrderComputations(), 0);
    }
}

TEST_P(SQLRecordsTest, APostedRecordIsFoundWhereItNowSorts)
{
    table.SetIndexFieldNames(QStringLiteral("grp"));
    table.Open();
    QList<int> ids = allIds();
    table.SetRecNo(Rows / 2);

    table.Append();
    table.FieldByName(QStringLiteral("id"))->SetAsInteger(Rows + 1);
    table.FieldByName(QStringLiteral("grp"))->SetAsInteger(50);
    table.Post();
    ids << Rows + 1;
    QHash<int, int> changed{{Rows + 1, 50}};
    EXPECT_EQ(id(), Rows + 1);
    EXPECT_EQ(table.RecNo(), int(expectedOrder(false, ids, changed).indexOf(Rows + 1)) + 1);

    // An edit that moves a record takes the cursor along.
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 500, {}));
    table.Edit();
    table.FieldByName(QStringLiteral("grp"))->SetAsInteger(96);
    table.Post();
    changed[500] = 96;
    QList<int> expected = expectedOrder(false, ids, changed);
    EXPECT_EQ(id(), 500);
    EXPECT_EQ(table.RecNo(), int(expected.indexOf(500)) + 1);
    EXPECT_EQ(walkBackwards(), expected);

    // A delete, an edit that keeps its place and one more insert beside the first: the order
    // computed once takes them all in.
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 777, {}));
    table.Delete();
    ids.removeOne(777);
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 15000, {}));
    table.Edit();
    table.FieldByName(QStringLiteral("name"))->SetAsString(QStringLiteral("renamed"));
    table.Post();
    EXPECT_EQ(table.FieldByName(QStringLiteral("name"))->AsString(), QStringLiteral("renamed"));
    table.Append();
    table.FieldByName(QStringLiteral("id"))->SetAsInteger(Rows + 2);
    table.FieldByName(QStringLiteral("grp"))->SetAsInteger(50);
    table.Post();
    ids << Rows + 2;
    changed[Rows + 2] = 50;
    expected = expectedOrder(false, ids, changed);
    EXPECT_EQ(table.RecNo(), int(expected.indexOf(Rows + 2)) + 1);
    EXPECT_EQ(table.RecordCount(), Rows + 1);
    EXPECT_EQ(walkForwards(), expected);
    EXPECT_EQ(walkBackwards(), expected);
    EXPECT_EQ(table.OrderComputations(), 1);
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 15000, {}));
    EXPECT_EQ(table.FieldByName(QStringLiteral("name"))->AsString(), QStringLiteral("renamed"));
}

TEST_P(SQLRecordsTest, BookmarksOfEarlierReadingsFollowTheDataSetsOwnWrites)
{
    table.SetIndexFieldNames(QStringLiteral("grp"));
    table.Open();
    table.SetRecNo(Rows / 2); // far from the start: the order is computed
    QList<int> ids = allIds();
    QHash<int, int> changed;
    QHash<int, TBookmark> marks;
    for (int key : {3, 97, 194, 500, 777, 1300, 5000, 9999, 13000, 19999}) {
        ASSERT_TRUE(table.Locate(QStringLiteral("id"), key, {}));
        marks.insert(key, table.GetBookmark());
    }
    auto expectMarks = [&](const char *after) {
        SCOPED_TRACE(after);
        const QList<int> order = expectedOrder(false, ids, changed);
        for (auto a = marks.cbegin(); a != marks.cend(); ++a) {
            const bool there = ids.contains(a.key());
            ASSERT_EQ(table.BookmarkValid(a.value()), there) << a.key();
            for (auto b = marks.cbegin(); there && b != marks.cend(); ++b)
                if (ids.contains(b.key())) {
                    const auto pa = order.indexOf(a.key()), pb = order.indexOf(b.key());
                    EXPECT_EQ(table.CompareBookmarks(a.value(), b.value()), pa < pb ? -1 : pa > pb ? 1 : 0)
                        << a.key() << " against " << b.key();
                }
            if (there) {
                table.GotoBookmark(a.value());
                EXPECT_EQ(id(), a.key());
                EXPECT_EQ(table.RecNo(), order.indexOf(a.key()) + 1);
            }
        }
    };
    auto setGrp = [&](int key, int grp) {
        ASSERT_TRUE(table.Locate(QStringLiteral("id"), key, {}));
        table.Edit();
        table.FieldByName(QStringLiteral("grp"))->SetAsInteger(grp);
        table.Post();
        changed[key] = grp;
    };
    setGrp(500, 0); // a marked record to the front
    setGrp(13000, 96); // and one to the back
    setGrp(42, 50); // an unmarked one across several marked ones
    expectMarks("edits");
    table.Append();
    table.FieldByName(QStringLiteral("id"))->SetAsInteger(Rows + 1);
    table.FieldByName(QStringLiteral("grp"))->SetAsInteger(1);
    table.Post();
    ids << Rows + 1;
    changed[Rows + 1] = 1;
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 777, {}));
    table.Delete();
    ids.removeOne(777);
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 778, {}));
    table.Delete();
    ids.removeOne(778);
    expectMarks("an insert and deletes");
    table.Refresh(); // read anew: found by key
    expectMarks("a refresh");
}

TEST_P(SQLRecordsTest, OpenDataSetsHoldNothingOnTheServer)
{
    if (!pg())
        GTEST_SKIP() << "server sessions are PostgreSQL's";
    std::vector<std::unique_ptr<TSQLTable>> tables;
    for (int i = 0; i < 20; ++i) {
        auto t = std::make_unique<TSQLTable>();
        t->SetConnection(&connection);
        t->SetTableName(QStringLiteral("items"));
        t->SetIndexFieldNames(i % 2 ? QStringLiteral("grp") : QStringLiteral("id"));
        t->Open();
        t->Last();
        t->MoveBy(-Rows / 3);
        tables.push_back(std::move(t));
    }
    const QString others = QStringLiteral("SELECT COUNT(*) FROM pg_stat_activity WHERE datname = current_database()"
                                          " AND pid <> pg_backend_pid()");
    EXPECT_EQ(connection.ExecScalar(others).ToInt64(), 1); // one reading session for all twenty
    EXPECT_EQ(connection.ExecScalar(others + QStringLiteral(" AND state LIKE 'idle in transaction%'")).ToInt64(), 0);

    // Another program changes the table while the grids stay open; nothing waits.
    TSQLConnection other;
    other.SetConnectionString(connection.ConnectionString());
    other.ExecSQL(QStringLiteral("SET lock_timeout = '2s'"));
    EXPECT_NO_THROW(other.ExecSQL(QStringLiteral("ALTER TABLE items ADD COLUMN extra INTEGER")));
    tables.front()->First();
    EXPECT_EQ(tables.front()->FieldByName(QStringLiteral("id"))->AsInteger(), 1);

    // A new order or a closed data set leaves no table of positions behind.
    const QString keyTables = QStringLiteral("SELECT COUNT(*) FROM pg_class WHERE relname LIKE 'qdb_pos_%'");
    EXPECT_GT(connection.ExecScalar(keyTables).ToInt64(), 0);
    tables[1]->SetIndexFieldNames(QStringLiteral("name DESC"));
    tables[1]->Last();
    tables.clear();
    EXPECT_EQ(connection.ExecScalar(keyTables).ToInt64(), 0);
}

TEST_P(SQLRecordsTest, TimeoutsAreTheApplicationsToSet)
{
    table.SetIndexFieldNames(QStringLiteral("id"));
    if (pg()) {
        // A statement that runs too long is ended by the server, with a message that says so.
        connection.Close();
        connection.SetStatementTimeout(200);
        TSQLQuery slow;
        slow.SetConnection(&connection);
        slow.SQL()->SetText(QStringLiteral("SELECT id FROM items WHERE pg_sleep(0.001) IS NOT NULL"));
        try {
            slow.Open();
            slow.Last();
            FAIL() << "the statement ran past its timeout";
        } catch (const EDatabaseError &e) {
            EXPECT_TRUE(e.Message().contains(QStringLiteral("statement timeout"))) << e.what();
        }
        slow.Close();
        connection.SetStatementTimeout(0);
        table.Open();
        EXPECT_EQ(table.RecordCount(), Rows);
        return;
    }
    // SQLite: a write waits for another program's write as long as the application says,
    // then fails without losing what was typed.
    connection.SetBusyTimeout(100);
    table.Open();
    TSQLConnection other;
    other.SetConnectionString(connection.ConnectionString());
    other.StartTransaction();
    other.ExecSQL(QStringLiteral("UPDATE items SET name = 'other' WHERE id = 2"));
    table.Edit();
    table.FieldByName(QStringLiteral("name"))->SetAsString(QStringLiteral("typed"));
    EXPECT_THROW(table.Post(), EDatabaseError);
    EXPECT_EQ(table.State(), dsEdit);
    other.Commit();
    table.Post();
    EXPECT_EQ(connection.ExecScalar(QStringLiteral("SELECT name FROM items WHERE id = 1")).ToString(), QStringLiteral("typed"));
}

TEST_P(SQLRecordsTest, ALongReadCanBeCancelled)
{
    TSQLQuery slow;
    slow.SetConnection(&connection);
    slow.SQL()->SetText(pg() ? QStringLiteral("SELECT id FROM items WHERE pg_sleep(0.001) IS NOT NULL")
                             : QStringLiteral("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 1000000000)"
                                              " SELECT i FROM s"));
    int waits = 0, afterWaits = 0;
    connection.SetWaitDelay(100);
    connection.OnWait = [&](TSQLConnection *sender, int elapsed) {
        EXPECT_GE(elapsed, 100);
        if (++waits == 2)
            sender->Cancel();
    };
    connection.AfterWait = [&](TObject *) { ++afterWaits; };
    try {
        slow.Open();
        EXPECT_GT(slow.RecordCount(), 0);
        slow.Last();
        FAIL() << "the read was not cancelled";
    } catch (const EDatabaseError &e) {
        EXPECT_EQ(e.Message(), QStringLiteral("The read was cancelled"));
    }
    EXPECT_TRUE(connection.Cancelled());
    EXPECT_EQ(waits, 2);
    EXPECT_EQ(afterWaits, 1);
    // The connection reads on as before.
    slow.Close();
    table.SetIndexFieldNames(QStringLiteral("grp"));
    table.Open();
    table.Last();
    EXPECT_EQ(table.RecNo(), Rows);
    EXPECT_FALSE(connection.Cancelled());
}

INSTANTIATE_TEST_SUITE_P(Databases, SQLRecordsTest, testing::Values(Backend::SQLite, Backend::PostgreSQL),
                         test::BackendName);

TEST(SQLFiles, ADamagedFileIsReportedByName)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("damaged.db"));
    ASSERT_TRUE(test::WriteDamagedDatabase(path));
    TSQLConnection connection;
    connection.SetDatabaseName(path);
    try {
        connection.Open();
        FAIL() << "a damaged file opened";
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(path)) << e.what();
        EXPECT_TRUE(e.Message().contains(QStringLiteral("not a database")) || e.Message().contains(QStringLiteral("malformed")))
            << e.what();
    }
    EXPECT_FALSE(connection.Connected());

    // Cut short: the file opens, its table does not read.
    const QString cut = dir.filePath(QStringLiteral("cut.db"));
    {
        TSQLConnection maker;
        maker.SetDatabaseName(cut);
        maker.SetCreateDatabase(true);
        maker.ExecSQL(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY, note TEXT)"));
        maker.ExecSQL(QStringLiteral("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 5000)"
                                     " INSERT INTO t SELECT i, printf('%0100d', i) FROM s"));
        maker.ExecSQL(QStringLiteral("PRAGMA journal_mode = DELETE"));
    }
    QFile file(cut);
    ASSERT_TRUE(file.resize(file.size() / 2));
    connection.SetDatabaseName(cut);
    TSQLTable table;
    table.SetConnection(&connection);
    table.SetTableName(QStringLiteral("t"));
    try {
        connection.Open();
        table.Open();
        table.Last();
        FAIL() << "a file cut in half read to its end";
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(QStringLiteral("malformed"))) << e.what();
        EXPECT_TRUE(e.Message().contains(QStringLiteral("cut.db"))) << e.what();
    }
}

// A server of the test's own, stopped and started again while a data set is open.
TEST(SQLServer, AStoppedServerLosesNothing)
{
    test::PrivateServer server;
    if (!server.Start())
        GTEST_SKIP() << "no PostgreSQL server can be run here";
    RegisterDBTypes();
    TSQLConnection connection;
    connection.SetConnectionString(server.Url());
    connection.ExecSQL(QStringLiteral("CREATE TABLE items (id INTEGER PRIMARY KEY, grp INTEGER, name VARCHAR(20))"));
    connection.ExecSQL(QStringLiteral("INSERT INTO items SELECT i, i % 97, 'n' || i FROM generate_series(1, %1) i").arg(Rows));
    // Sessions that sit idle in a transaction are ended: a data set holds none.
    connection.ExecSQL(QStringLiteral("ALTER DATABASE qdbtest SET idle_in_transaction_session_timeout = '500ms'"));
    connection.Close();
    TSQLTable table;
    table.SetConnection(&connection);
    table.SetTableName(QStringLiteral("items"));
    table.SetIndexFieldNames(QStringLiteral("grp"));
    table.Open();
    table.SetRecNo(15000);
    QThread::msleep(800);
    const int id = table.FieldByName(QStringLiteral("id"))->AsInteger();
    table.Edit();
    table.FieldByName(QStringLiteral("name"))->SetAsString(QStringLiteral("typed"));

    server.Halt();
    try {
        table.Post();
        FAIL() << "posted to a stopped server";
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(QStringLiteral("connection to the server was lost"))) << e.what();
    }
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(table.FieldByName(QStringLiteral("name"))->AsString(), QStringLiteral("typed"));

    server.Resume();
    table.Post(); // the session is opened again
    EXPECT_EQ(table.FieldByName(QStringLiteral("id"))->AsInteger(), id);
    EXPECT_EQ(table.RecNo(), 15000);
    EXPECT_EQ(connection.ExecScalar(QStringLiteral("SELECT name FROM items WHERE id = %1").arg(id)).ToString(),
              QStringLiteral("typed"));

    // The reading session ended by someone else: the next read opens it again.
    connection.ExecSQL(QStringLiteral("SELECT pg_terminate_backend(pid) FROM pg_stat_activity"
                                      " WHERE datname = current_database() AND pid <> pg_backend_pid()"));
    table.MoveBy(-10000);
    EXPECT_EQ(table.RecNo(), 5000);
    const Variant expected = connection.ExecScalar(
        QStringLiteral("SELECT id FROM items ORDER BY grp, id LIMIT 1 OFFSET 4999"));
    EXPECT_EQ(table.FieldByName(QStringLiteral("id"))->AsInteger(), expected.ToInt());

    // Stopped during a walk: a clear error; once it is back, closing and opening again works.
    server.Halt();
    try {
        table.SetRecNo(9000);
        table.MoveBy(-3000);
        FAIL() << "read from a stopped server";
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(QStringLiteral("connection to the server was lost"))) << e.what();
    }
    server.Resume();
    table.Close();
    table.Open();
    EXPECT_EQ(table.RecordCount(), Rows);
}
