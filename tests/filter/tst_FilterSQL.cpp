// The auto filter over SQLite and PostgreSQL tables: the ticked values the database looks
// for must select the very rows the grid's record handler accepts record by record, for
// numbers, floats that print alike, decimals, text in any case and with blanks, dates,
// times, truth values and NULLs; and nothing typed runs as SQL.

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "filter/QDBFilter.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/sql/SQLDataSet.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

// Counts the records its handler is asked about.
class CountingGrid : public TQDBGrid
{
public:
    using TQDBGrid::TQDBGrid;
    void FilterRecord(TDataSet *dataSet, bool &accept) override
    {
        ++asked;
        TQDBGrid::FilterRecord(dataSet, accept);
    }
    int asked = 0;
};

const char *const Names[] = {"apple", "APPLE", "Apple ", " apple", "", "\xc3\x84pfel", "\xc3\xa4pfel", "pear", "50%"};
constexpr double Prices[] = {0.1 + 0.2, 0.3, 1.5, -2.25, 1e-7, 100.0, 0.30000000000000004, 2.675};

class FilterSQL : public testing::TestWithParam<Backend>
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        if (!db.Open(GetParam(), connection, QStringLiteral("filter")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        pg = GetParam() == Backend::PostgreSQL;
        connection.ExecSQL(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY, qty INTEGER, price %1, "
                                          "amount NUMERIC(12,2), name VARCHAR(20), day DATE, stamp %2, flag BOOLEAN)")
                               .arg(pg ? QStringLiteral("DOUBLE PRECISION") : QStringLiteral("REAL"),
                                    pg ? QStringLiteral("TIMESTAMP") : QStringLiteral("DATETIME")));
        connection.StartTransaction();
        for (int id = 1; id <= 48; ++id) {
            auto orNull = [id](int every, Variant v) {
                if (id % every == 0)
                    v = Variant::Null();
                return v;
            };
            const QDateTime stamp(QDate(2024, 3, 1 + id % 3), QTime(id % 2 * 10, id % 4, 0, id % 5 == 0 ? 500 : 0));
            connection.ExecSQL(
                QStringLiteral("INSERT INTO t VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                {id, orNull(7, id % 6 - 2), orNull(11, Prices[id % 8]),
                 orNull(5, QStringLiteral("%1.%2").arg(id % 4).arg(id % 3 * 25, 2, 10, QLatin1Char('0'))),
                 orNull(13, QString::fromUtf8(Names[id % 9])),
                 orNull(8, QDate(2024, 1, 1).addDays(id % 4).toString(Qt::ISODate)),
                 orNull(9, stamp.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"))),
                 orNull(3, pg ? Variant(id % 2 == 0) : Variant(id % 2))});
        }
        connection.Commit();
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("t"));
        table.SetIndexFieldNames(QStringLiteral("id"));
        table.Open();
        source.SetDataSet(&table);
        grid.SetKeyFields(QStringLiteral("id"));
        grid.SetDataSource(&source);
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        table.Close();
        connection.Close();
        db.Drop();
    }
    TQColumn *column(const QString &field) { return grid.GetColumns()->FindColumn(field); }
    QList<int> ids()
    {
        QList<int> result;
        for (table.First(); !table.Eof(); table.Next())
            result << table.FieldByName(QStringLiteral("id"))->AsInteger();
        return result;
    }
    void tick(const QString &field, const QStringList &values)
    {
        TStrings *list = column(field)->GetFilterList();
        list->BeginUpdate();
        list->Clear();
        list->AddStrings(values);
        list->EndUpdate();
    }
    // The rows through the database, then through the handler asked for each record.
    void expectBothPathsAgree(const QString &what)
    {
        SCOPED_TRACE(what.toStdString());
        grid.asked = 0;
        grid.GetFilterGrid()->FilterChanged();
        const QList<int> fromDatabase = ids();
        const int count = table.RecordCount();
        EXPECT_EQ(grid.asked, 0) << "the records were walked";
        grid.SetFilterRecord(TFilterRecordEvent([](TDataSet *, bool &) {}, this));
        grid.SetFiltered(true);
        const QList<int> walked = ids();
        EXPECT_GT(grid.asked, 0);
        EXPECT_EQ(fromDatabase, walked);
        EXPECT_EQ(count, walked.size());
        grid.SetFiltered(false);
        grid.SetFilterRecord(nullptr);
    }

    TestDatabase db;
    TSQLConnection connection;
    TSQLTable table;
    TDataSource source;
    CountingGrid grid;
    bool pg = false;
};

// The texts the field shows for these values, as a user would tick them.
QStringList texts(TField *f, const QList<double> &values)
{
    QStringList result;
    TDataSet *ds = f->DataSet();
    for (double v : values) {
        bool found = false;
        for (ds->First(); !ds->Eof() && !found; ds->Next())
            if (!f->IsNull() && f->AsFloat() == v) {
                result << f->Text();
                found = true;
            }
    }
    return result;
}

} // namespace

TEST_P(FilterSQL, TickedValuesSelectWhatTheRecordHandlerAccepts)
{
    const auto field = [this](const char *name) { return table.FieldByName(QString::fromLatin1(name)); };
    const QString date = DateToStr(EncodeDate(2024, 1, 2));
    const QList<std::pair<const char *, QStringList>> cases = {
        {"qty", {QStringLiteral("2"), QStringLiteral("-1")}},
        {"qty", {QStringLiteral("02"), QStringLiteral("x"), QStringLiteral("+3")}},
        {"qty", {QString(), QStringLiteral("0")}},
        {"price", {QStringLiteral("0.3")}},
        {"price", texts(field("price"), {1e-7, 2.675, -2.25})},
        {"price", {QStringLiteral("1.50"), QString()}},
        {"amount", {QStringLiteral("1.25"), QStringLiteral("3.5"), QStringLiteral("0")}},
        {"name", {QStringLiteral("apple")}},
        {"name", {QStringLiteral("apple "), QStringLiteral("\xc3\xa4PFEL")}},
        {"name", {QString(), QStringLiteral("50%")}},
        {"name", {QStringLiteral("5_%"), QStringLiteral("app%")}},
        {"day", {date, QString()}},
        {"day", {QStringLiteral("2024-01-02"), QStringLiteral("1/32/2024")}},
        {"stamp", texts(field("stamp"), {EncodeDate(2024, 3, 2) + 10.0 / 24 + 1.0 / 1440})},
        {"stamp", {QString()}},
        {"flag", {QStringLiteral("TRUE")}},
        {"flag", {QStringLiteral("false"), QString()}},
    };
    for (const auto &[name, values] : cases) {
        tick(QString::fromLatin1(name), values);
        expectBothPathsAgree(QStringLiteral("%1 in %2").arg(QString::fromLatin1(name), values.join(QLatin1Char('|'))));
        tick(QString::fromLatin1(name), {});
    }
    // Several columns, and a condition of the filter form beside them.
    tick(QStringLiteral("name"), {QStringLiteral("APPLE"), QStringLiteral("pear")});
    tick(QStringLiteral("flag"), {QStringLiteral("True")});
    expectBothPathsAgree(QStringLiteral("two columns"));
    column(QStringLiteral("qty"))->SetFilterText(QStringLiteral("qty >= 0"));
    expectBothPathsAgree(QStringLiteral("two columns and a condition"));
}

TEST_P(FilterSQL, NothingTypedRunsAsSQL)
{
    tick(QStringLiteral("name"), {QStringLiteral("x'); DROP TABLE t; --"), QStringLiteral("apple")});
    EXPECT_EQ(ids().size(), 11);
    for (const QString &bad : {QStringLiteral("name = 'x'; DROP TABLE t; --'"), QStringLiteral("name = 'x' /* y */"),
                               QStringLiteral("qty = 1; DELETE FROM t")})
        EXPECT_THROW(column(QStringLiteral("name"))->SetFilterText(bad), EDatabaseError);
    column(QStringLiteral("name"))->SetFilterText(QStringLiteral("name LIKE '%''; DROP TABLE t; --%'"));
    EXPECT_EQ(ids(), QList<int>{});
    grid.GetFilterGrid()->ClearAutoFilter();
    EXPECT_EQ(connection.ExecScalar(QStringLiteral("SELECT COUNT(*) FROM t")).ToInt64(), 48);
    EXPECT_EQ(ids().size(), 48);
}

INSTANTIATE_TEST_SUITE_P(Databases, FilterSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);
