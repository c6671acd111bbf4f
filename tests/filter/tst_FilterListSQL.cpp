// The value lists of columns over SQLite and PostgreSQL tables come from the database: they
// must offer the values and counts the walk of the records finds, under the other columns'
// filters too, and a long list comes a page at a time.

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "filter/QDBFilter.h"
#include "filter/QDBFilterList.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

using namespace qdb;
using namespace qdb::test;

namespace {

const char *const Names[] = {"apple", "APPLE", "Apple ", " apple", "", "\xc3\x84pfel", "\xc3\xa4pfel", "pear", "50%"};
constexpr double Prices[] = {0.1 + 0.2, 0.3, 1.5, -2.25, 1e-7, 100.0, 0.30000000000000004, 2.675};

class FilterListSQL : public testing::TestWithParam<Backend>
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        if (!db.Open(GetParam(), connection, QStringLiteral("valuelists")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        const bool pg = GetParam() == Backend::PostgreSQL;
        connection.ExecSQL(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY, qty INTEGER, price %1, "
                                          "amount NUMERIC(12,2), name VARCHAR(20), day DATE, flag BOOLEAN)")
                               .arg(pg ? QStringLiteral("DOUBLE PRECISION") : QStringLiteral("REAL")));
        connection.StartTransaction();
        for (int id = 1; id <= 60; ++id) {
            auto orNull = [id](int every, Variant v) {
                if (id % every == 0)
                    v = Variant::Null();
                return v;
            };
            connection.ExecSQL(QStringLiteral("INSERT INTO t VALUES (?, ?, ?, ?, ?, ?, ?)"),
                               {id, orNull(7, id % 6 - 2), orNull(11, Prices[id % 8]),
                                orNull(5, QStringLiteral("%1.%2").arg(id % 4).arg(id % 3 * 25, 2, 10, QLatin1Char('0'))),
                                orNull(13, QString::fromUtf8(Names[id % 9])),
                                orNull(8, QDate(2024, 1, 1).addDays(id % 4 * 40).toString(Qt::ISODate)),
                                orNull(3, pg ? Variant(id % 2 == 0) : Variant(id % 2))});
        }
        connection.Commit();
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("t"));
        table.SetIndexFieldNames(QStringLiteral("id"));
        table.Open();
        source.SetDataSet(&table);
        grid.SetDataSource(&source);
        grid.GetFilterGrid()->SetAutoFilter(true);
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        table.Close();
        connection.Close();
        db.Drop();
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }

    struct Entry
    {
        QString list;
        int count = 0;
    };
    // The list's values by key, those equal but for case as one (as the filter matches them),
    // and the keys in list order.
    static std::map<QString, Entry> entries(TQDBFilterData &data, QStringList *order = nullptr)
    {
        std::map<QString, Entry> result;
        for (int i = 0; i < data.Count(); ++i) {
            Entry &e = result[data.KeyValue(i).toCaseFolded()];
            if (e.list.isEmpty())
                e.list = data.ListValue(i);
            e.count += data.RecordsOf(i);
            if (order && !order->contains(data.KeyValue(i), Qt::CaseInsensitive))
                *order << data.KeyValue(i);
        }
        return result;
    }
    // The column's list from the database and from the walk (an application's record
    // handler makes the records the only ones who can tell).
    void expectBothPathsAgree(const char *field, bool sameOrder)
    {
        SCOPED_TRACE(field);
        TQDBGridFilterList fromDatabase(&grid, column(field));
        fromDatabase.LoadFilterData();
        EXPECT_TRUE(fromDatabase.FromDatabase());
        grid.SetFilterRecord(TFilterRecordEvent([](TDataSet *, bool &) {}, this));
        grid.SetFiltered(true);
        TQDBGridFilterList walked(&grid, column(field));
        walked.LoadFilterData();
        EXPECT_FALSE(walked.FromDatabase());
        grid.SetFiltered(false);
        grid.SetFilterRecord(nullptr);
        QStringList databaseOrder, walkOrder;
        const auto a = entries(*fromDatabase.FilterData(), &databaseOrder);
        const auto b = entries(*walked.FilterData(), &walkOrder);
        ASSERT_EQ(a.size(), b.size());
        for (auto i = a.begin(), j = b.begin(); i != a.end(); ++i, ++j) {
            EXPECT_EQ(i->first, j->first);
            EXPECT_EQ(i->second.list, j->second.list) << i->first.toStdString();
            EXPECT_EQ(i->second.count, j->second.count) << i->first.toStdString();
        }
        if (sameOrder) {
            EXPECT_EQ(databaseOrder, walkOrder);
        }
    }

    TestDatabase db;
    TSQLConnection connection;
    TSQLTable table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_P(FilterListSQL, TheDatabaseListsWhatTheWalkFinds)
{
    // Numbers, dates and truth values list in the same order: NULL first, then by value.
    for (const char *field : {"qty", "price", "amount", "day", "flag"})
        expectBothPathsAgree(field, true);
    expectBothPathsAgree("name", false); // texts: in the database's collation
    // Under the filters of the columns and of the application.
    column("qty")->SetFilterText(QStringLiteral("qty >= 0"));
    column("flag")->GetFilterList()->SetText(QStringLiteral("True"));
    for (const char *field : {"name", "price", "day"})
        expectBothPathsAgree(field, std::string(field) != "name");
}

TEST_P(FilterListSQL, ALongListComesAPageAtATime)
{
    const int rows = TQDBGridFilterList::PageValues * 2 + 100;
    connection.StartTransaction();
    for (int id = 1000; id < 1000 + rows; ++id)
        connection.ExecSQL(QStringLiteral("INSERT INTO t (id, qty, name) VALUES (?, ?, ?)"),
                           {id, id % 3, QStringLiteral("v%1").arg(id, 5, 10, QLatin1Char('0'))});
    connection.Commit();
    table.Refresh();
    TQDBGridFilterList list(&grid, column("id"));
    list.LoadFilterData();
    TQDBFilterData *data = list.FilterData();
    EXPECT_EQ(data->Count(), TQDBGridFilterList::PageValues);
    EXPECT_TRUE(list.HasMore());
    list.ReadMore();
    list.ReadMore();
    EXPECT_FALSE(list.HasMore());
    ASSERT_EQ(data->Count(), rows + 60);
    for (int i = 0; i < data->Count(); ++i)
        ASSERT_EQ(data->KeyValue(i), QString::number(i < 60 ? i + 1 : 1000 + i - 60)) << i;

    // The list reads on as the user goes to its end.
    grid.grab();
    grid.ShowAutoFilter(column("id"));
    auto *popup = grid.findChild<TQDBPopupFilterList *>();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->DataSet()->RecordCount(), TQDBGridFilterList::PageValues);
    QTest::keyClick(popup, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(popup->DataSet()->RecordCount(), 2 * TQDBGridFilterList::PageValues);
    QTest::keyClick(popup, Qt::Key_Escape);
    QApplication::processEvents();

    // Typing narrows the list in the database.
    grid.GetFilterGrid()->SwitchOptions({foIncrementalList}, true);
    grid.ShowAutoFilter(column("name"));
    popup = grid.findChild<TQDBPopupFilterList *>();
    ASSERT_TRUE(popup);
    QTest::keyClicks(popup, QStringLiteral("V010"));
    auto *shown = qobject_cast<TQDBFilterData *>(popup->DataSet());
    ASSERT_EQ(shown->Count(), 100); // v01000 .. v01099
    EXPECT_EQ(shown->ListValue(0), "v01000");
    popup->ToggleCheck(); // a Space this soon would go on with the text
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(column("name")->GetFilterList()->ToStringList(), QStringList({"v01000"}));
}

INSTANTIATE_TEST_SUITE_P(Databases, FilterListSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);
