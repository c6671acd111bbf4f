// SQL data sets on a generated SQLite table, against the SQLite C API and Qt's
// QSqlQueryModel doing the same work: the first window of 40 rows, a full walk reading
// every column, Last, the memory a full walk leaves behind, and a column's longest value.
//
// The table has 1,000,000 rows; set QDB_BENCH_ROWS (for instance 10000000) for another
// size. It is made on first use next to the benchmark and kept there, never committed.

#include "platform/sql/SQLDataSet.h"

#include "BenchDatabase.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQueryModel>
#include <QSqlRecord>

using namespace qdb;

namespace {

using bench::rows;
using bench::databasePath;

long peakResidentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return -1;
}

struct Opened
{
    TSQLConnection connection;
    TSQLTable table;
    Opened()
    {
        connection.SetConnectionString(databasePath());
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("big"));
    }
};

// ---- the first window of 40 rows ----

void BM_FirstWindow_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o;
        o.table.Open();
        qint64 sum = 0;
        for (int i = 0; i < 40 && !o.table.Eof(); ++i, o.table.Next())
            for (TField *f : o.table.Fields())
                sum += f->AsString().size();
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_FirstWindow_SQLTable)->Unit(benchmark::kMillisecond);

// The baseline's scan: up to limit rows of the big table (all when negative) through the C
// API, adding what cell() makes of each cell.
template <typename Cell>
qint64 scanWithSQLite(const QByteArray &path, int limit, Cell cell)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, "SELECT * FROM big", -1, &stmt, nullptr);
    qint64 sum = 0;
    const int columns = sqlite3_column_count(stmt);
    for (int i = 0; (limit < 0 || i < limit) && sqlite3_step(stmt) == SQLITE_ROW; ++i)
        for (int c = 0; c < columns; ++c)
            sum += cell(stmt, c);
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return sum;
}

void BM_FirstWindow_SQLiteAPI(benchmark::State &state)
{
    const QByteArray path = databasePath().toUtf8();
    for (auto _ : state) {
        const qint64 sum =
            scanWithSQLite(path, 40, [](sqlite3_stmt *stmt, int c) { return sqlite3_column_bytes(stmt, c); });
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_FirstWindow_SQLiteAPI)->Unit(benchmark::kMillisecond);

void BM_FirstWindow_QSqlQueryModel(benchmark::State &state)
{
    for (auto _ : state) {
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("model"));
            db.setDatabaseName(databasePath());
            db.open();
            QSqlQueryModel model;
            model.setQuery(QStringLiteral("SELECT * FROM big"), db);
            qint64 sum = 0;
            for (int r = 0; r < 40; ++r)
                for (int c = 0; c < model.columnCount(); ++c)
                    sum += model.data(model.index(r, c)).toString().size();
            benchmark::DoNotOptimize(sum);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("model"));
    }
}
BENCHMARK(BM_FirstWindow_QSqlQueryModel)->Unit(benchmark::kMillisecond);

// ---- a full walk reading every column ----

void BM_Walk_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o;
        o.table.Open();
        ControlsDisabler quiet(&o.table);
        const QList<TField *> fields(o.table.Fields().begin(), o.table.Fields().end());
        qint64 sum = 0;
        for (o.table.First(); !o.table.Eof(); o.table.Next())
            for (TField *f : fields)
                sum += f->IsNull() ? 0 : 1;
        benchmark::DoNotOptimize(sum);
        state.counters["cached_rows"] = o.table.CachedRows();
    }
    state.counters["peak_MiB"] = double(peakResidentKiB()) / 1024;
    state.SetItemsProcessed(state.iterations() * rows());
}
BENCHMARK(BM_Walk_SQLTable)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Walk_SQLiteAPI(benchmark::State &state)
{
    const QByteArray path = databasePath().toUtf8();
    for (auto _ : state) {
        const qint64 sum = scanWithSQLite(
            path, -1, [](sqlite3_stmt *stmt, int c) { return sqlite3_column_type(stmt, c) == SQLITE_NULL ? 0 : 1; });
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * rows());
}
BENCHMARK(BM_Walk_SQLiteAPI)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Walk_QSqlQueryModel(benchmark::State &state)
{
    for (auto _ : state) {
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("model"));
            db.setDatabaseName(databasePath());
            db.open();
            QSqlQueryModel model;
            model.setQuery(QStringLiteral("SELECT * FROM big"), db);
            while (model.canFetchMore())
                model.fetchMore();
            qint64 sum = 0;
            for (int r = 0; r < model.rowCount(); ++r)
                for (int c = 0; c < model.columnCount(); ++c)
                    sum += model.data(model.index(r, c)).isNull() ? 0 : 1;
            benchmark::DoNotOptimize(sum);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("model"));
    }
    state.counters["peak_MiB"] = double(peakResidentKiB()) / 1024;
    state.SetItemsProcessed(state.iterations() * rows());
}
// Last: it keeps every row, so the peak memory it reports includes the others'.
BENCHMARK(BM_Walk_QSqlQueryModel)->Unit(benchmark::kMillisecond)->Iterations(1);

// ---- Last ----

void BM_Last_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o;
        o.table.Open();
        o.table.Last();
        benchmark::DoNotOptimize(o.table.FieldByName(QStringLiteral("ID"))->AsLargeInt());
    }
}
BENCHMARK(BM_Last_SQLTable)->Unit(benchmark::kMillisecond);

// ---- the longest value of a column, as fitting a column asks ----

void BM_Longest_SQLTable(benchmark::State &state)
{
    Opened o;
    o.table.Open();
    TField *name = o.table.FieldByName(QStringLiteral("Name"));
    for (auto _ : state) {
        QString text;
        o.table.LongestText(name, text);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(BM_Longest_SQLTable)->Unit(benchmark::kMillisecond);

// The bare aggregate through the C API: the length only, no row.
void BM_Longest_SQLiteAPI(benchmark::State &state)
{
    const QByteArray path = databasePath().toUtf8();
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    for (auto _ : state) {
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, "SELECT max(length(Name)) FROM big", -1, &stmt, nullptr);
        sqlite3_step(stmt);
        benchmark::DoNotOptimize(sqlite3_column_int(stmt, 0));
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
}
BENCHMARK(BM_Longest_SQLiteAPI)->Unit(benchmark::kMillisecond);

// The record walk the other data sets take (there over a sample, here over everything).
void BM_Longest_Walk(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o;
        o.table.Open();
        ControlsDisabler quiet(&o.table);
        TField *name = o.table.FieldByName(QStringLiteral("Name"));
        qsizetype longest = 0;
        for (o.table.First(); !o.table.Eof(); o.table.Next())
            longest = qMax(longest, name->AsString().size());
        benchmark::DoNotOptimize(longest);
    }
}
BENCHMARK(BM_Longest_Walk)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    return bench::runOverBigTable(argc, argv);
}
