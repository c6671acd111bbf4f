// Moving through a large SQL result in the key's order (argument 0) and in the order of a
// column without an index (argument 1): opening and the first screen, Last, 40 pages up
// from the end, half the table back from opening, the scroll thumb to places not read yet, a walk backwards
// against a walk forwards, and an insert in the middle; beside the SQLite C API stepping
// the bare ORDER BY query to the same place.
//
// The table has 1,000,000 rows; QDB_BENCH_ROWS=10000000 measures ten million. It is made
// on first use next to the benchmark and kept there, never committed.

#include "platform/sql/SQLDataSet.h"

#include "BenchDatabase.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

using namespace qdb;

namespace {

using bench::rows;
using bench::databasePath;

const char *orderOf(const benchmark::State &state)
{
    return state.range(0) == 0 ? "ID" : "Amount";
}

struct Opened
{
    TSQLConnection connection;
    TSQLTable table;
    explicit Opened(const benchmark::State &state)
    {
        connection.SetConnectionString(databasePath());
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("big"));
        table.SetIndexFieldNames(QString::fromLatin1(orderOf(state)));
        table.Open();
    }
    qint64 screen(int n = 40)
    {
        qint64 sum = 0;
        for (int i = 0; i < n && !table.Eof(); ++i, table.Next())
            sum += table.FieldByName(QStringLiteral("Name"))->AsString().size();
        return sum;
    }
};

// The bare query stepped `skip` rows, then `read` rows read.
qint64 bareQuery(const benchmark::State &state, qint64 skip, int read)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(databasePath().toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt *stmt = nullptr;
    const QByteArray sql = QByteArray("SELECT * FROM big ORDER BY ") + orderOf(state) + ", ID";
    sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr);
    qint64 sum = 0;
    for (qint64 i = 0; i < skip + read && sqlite3_step(stmt) == SQLITE_ROW; ++i)
        if (i >= skip)
            sum += sqlite3_column_bytes(stmt, 1);
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return sum;
}

void BM_FirstScreen_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o(state);
        benchmark::DoNotOptimize(o.screen());
    }
}
void BM_FirstScreen_SQLiteAPI(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(bareQuery(state, 0, 40));
}

void BM_Last_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o(state);
        o.table.Last();
        benchmark::DoNotOptimize(o.table.RecNo());
    }
}
void BM_Last_SQLiteAPI(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(bareQuery(state, rows() - 1, 1));
}

// After Last, which computed the order: each iteration one more jump.
void BM_PagesUpFromTheEnd_SQLTable(benchmark::State &state)
{
    Opened o(state);
    o.table.Last();
    for (auto _ : state)
        for (int page = 0; page < 40; ++page)
            o.table.MoveBy(-40);
}
// From opening: Last computes the order, then half the table back.
void BM_HalfBack_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o(state);
        o.table.Last();
        o.table.MoveBy(-int(rows() / 2));
        benchmark::DoNotOptimize(o.table.RecNo());
    }
}
void BM_HalfBack_SQLiteAPI(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(bareQuery(state, rows() / 2, 40));
}
// After the order was computed: each jump to a part of the table not read yet.
void BM_ThumbJump_SQLTable(benchmark::State &state)
{
    Opened o(state);
    o.table.Last();
    qint64 k = 0;
    for (auto _ : state)
        o.table.SetRecNo(int((++k * 104729 * 257) % rows()) + 1);
}

void BM_WalkForwards_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o(state);
        qint64 n = 0;
        for (; !o.table.Eof(); o.table.Next())
            ++n;
        benchmark::DoNotOptimize(n);
    }
}
void BM_WalkBackwards_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        Opened o(state);
        qint64 n = 0;
        for (o.table.Last(); !o.table.Bof(); o.table.Prior())
            ++n;
        benchmark::DoNotOptimize(n);
    }
}
void BM_Walk_SQLiteAPI(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(bareQuery(state, 0, int(rows())));
}

// An insert in the middle of the order, and the record found where it now sorts.
void BM_InsertInTheMiddle_SQLTable(benchmark::State &state)
{
    Opened o(state);
    o.table.SetRecNo(int(rows() / 2));
    const double amount = o.table.FieldByName(QStringLiteral("Amount"))->AsFloat();
    qint64 id = rows() + 1;
    for (auto _ : state) {
        o.table.Append();
        o.table.FieldByName(QStringLiteral("ID"))->SetAsLargeInt(id++);
        o.table.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("inserted"));
        o.table.FieldByName(QStringLiteral("Amount"))->SetAsFloat(amount);
        o.table.Post();
        benchmark::DoNotOptimize(o.table.RecNo());
    }
    o.connection.ExecSQL(QStringLiteral("DELETE FROM big WHERE ID > ?"), {Variant(rows())});
}

#define QDB_BOTH_ORDERS(name) BENCHMARK(name)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)
QDB_BOTH_ORDERS(BM_FirstScreen_SQLTable);
QDB_BOTH_ORDERS(BM_FirstScreen_SQLiteAPI);
QDB_BOTH_ORDERS(BM_Last_SQLTable)->Iterations(2);
QDB_BOTH_ORDERS(BM_Last_SQLiteAPI)->Iterations(2);
QDB_BOTH_ORDERS(BM_PagesUpFromTheEnd_SQLTable);
QDB_BOTH_ORDERS(BM_HalfBack_SQLTable)->Iterations(2);
QDB_BOTH_ORDERS(BM_HalfBack_SQLiteAPI)->Iterations(2);
QDB_BOTH_ORDERS(BM_ThumbJump_SQLTable);
QDB_BOTH_ORDERS(BM_WalkForwards_SQLTable)->Iterations(1);
QDB_BOTH_ORDERS(BM_WalkBackwards_SQLTable)->Iterations(1);
QDB_BOTH_ORDERS(BM_Walk_SQLiteAPI)->Iterations(1);
QDB_BOTH_ORDERS(BM_InsertInTheMiddle_SQLTable)->Iterations(5);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    RegisterDBTypes();
    benchmark::Initialize(&argc, argv);
    databasePath(); // made before anything is measured
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
