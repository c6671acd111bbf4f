// Moving through a large SQL result in the key's order (argument 0) and in the order of a
// column without an index (argument 1): opening and the first screen, Last, 40 pages up
// from the end, half the table back from opening, the scroll thumb to places not read yet, a walk backwards
// against a walk forwards, a title click on the column until the grid has repainted, and an
// insert in the middle; beside the SQLite C API stepping the bare ORDER BY query to the same
// place and Qt's QSqlQueryModel over the same query; the same on PostgreSQL when QDB_PG_URL
// names a server, against its bare query read through Qt's driver forward-only, with the
// server sessions and open transactions the data set held. The peak memory the process has
// held is reported as it goes; QSqlQueryModel, which keeps every row it has read, runs last.
//
// The table has 1,000,000 rows; QDB_BENCH_ROWS=10000000 measures ten million. It is made
// on first use next to the benchmark and kept there, never committed.

#include "platform/sql/SQLDataSet.h"

#include "BenchDatabase.h"
#include "BenchGrid.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QUrl>

#include <memory>

using namespace qdb;

namespace {

using bench::rows;
using bench::databasePath;
using bench::makeServerTable;
using bench::peakResidentMiB;
using bench::serverUrl;

const char *orderOf(const benchmark::State &state)
{
    return state.range(0) == 0 ? "ID" : "Amount";
}

// The second argument: 0 the SQLite file, 1 the PostgreSQL database QDB_PG_URL names.
bool onServer(const benchmark::State &state)
{
    return state.range(1) == 1;
}

// Every benchmark runs in both orders, on SQLite, and on PostgreSQL when there is a server.
void orders(benchmark::internal::Benchmark *b)
{
    for (int order : {0, 1}) {
        b->Args({order, 0});
        if (!serverUrl().isEmpty())
            b->Args({order, 1});
    }
}

struct Opened
{
    TSQLConnection connection;
    TSQLTable table;
    explicit Opened(const benchmark::State &state)
    {
        connection.SetConnectionString(onServer(state) ? serverUrl() : databasePath());
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
    // What the open data set holds on the server between reads.
    void report(benchmark::State &state)
    {
        if (!onServer(state))
            return;
        const QString others = QStringLiteral("SELECT COUNT(*) FROM pg_stat_activity WHERE datname = current_database()"
                                              " AND pid <> pg_backend_pid()");
        state.counters["sessions"] = double(connection.ExecScalar(others).ToInt64());
        state.counters["in_transaction"] =
            double(connection.ExecScalar(others + QStringLiteral(" AND state LIKE 'idle in transaction%'")).ToInt64());
    }
};

// The bare query stepped `skip` rows, then `read` rows read: through the SQLite C API, or
// through Qt's PostgreSQL driver forward-only.
qint64 bareQuery(const benchmark::State &state, qint64 skip, int read)
{
    const QByteArray sql = QByteArray("SELECT * FROM big ORDER BY \"") + orderOf(state) + "\", \"ID\"";
    qint64 sum = 0;
    if (onServer(state)) {
        bench::withBareServer([&](QSqlDatabase &db) {
            QSqlQuery q(db);
            q.setForwardOnly(true);
            q.exec(QString::fromLatin1(sql));
            for (qint64 i = 0; i < skip + read && q.next(); ++i)
                if (i >= skip)
                    sum += q.value(1).toString().size();
        });
        return sum;
    }
    sqlite3 *db = nullptr;
    sqlite3_open_v2(databasePath().toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr);
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

// After Last, which computed the order (not measured): 40 pages up.
void BM_PagesUpFromTheEnd_SQLTable(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto o = std::make_unique<Opened>(state);
        o->table.Last();
        state.ResumeTiming();
        for (int page = 0; page < 40; ++page)
            o->table.MoveBy(-40);
        state.PauseTiming();
        o->report(state);
        o.reset();
        state.ResumeTiming();
    }
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
    o.table.SetRecNo(int(rows() / 2)); // the order computed before anything is measured
    qint64 k = 0;
    for (auto _ : state)
        o.table.SetRecNo(int((++k * 104729 * 257) % rows()) + 1);
    o.report(state);
    state.counters["peak_MiB"] = peakResidentMiB();
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
    state.counters["peak_MiB"] = peakResidentMiB();
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
    state.counters["peak_MiB"] = peakResidentMiB();
}
void BM_Walk_SQLiteAPI(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(bareQuery(state, 0, int(rows())));
}

// A title click on the column of the order, from the other order with the record in its
// middle, until the grid has repainted (the record kept, its screen shown). The bare query's
// counterpart is BM_HalfBack_SQLiteAPI: the record lands anywhere, the middle on average.
void BM_TitleClick_SQLTable(benchmark::State &state)
{
    bench::BigTableGrid shown(onServer(state) ? serverUrl() : databasePath());
    TQDBGrid &grid = shown.grid;
    grid.SetOptionsEx(grid.GetOptionsEx() + dgAutoUpdateOrder);
    grid.show();
    QApplication::processEvents();
    const auto title = [&](const char *field) {
        return grid.GetColumns()->FindColumn(QString::fromLatin1(field))->GetTitle();
    };
    TQColumnTitle *clicked = title(orderOf(state)), *other = title(state.range(0) == 0 ? "Amount" : "ID");
    for (auto _ : state) {
        state.PauseTiming();
        other->ToggleMarker(true); // the other order alone: the click then sorts ascending
        shown.table.SetRecNo(int(rows() / 2));
        grid.viewport()->repaint();
        state.ResumeTiming();
        clicked->ToggleMarker(true);
        grid.viewport()->repaint();
    }
    state.counters["peak_MiB"] = peakResidentMiB();
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
    o.connection.ExecSQL(QStringLiteral("DELETE FROM big WHERE \"ID\" > ?"), {Variant(rows())});
}

// ---- Qt's QSqlQueryModel over the same ordered query: it reaches a row by reading every row
// before it, and keeps them all ----

template<typename F>
void withModel(const benchmark::State &state, const QString &order, F use)
{
    const QString sql = QStringLiteral("SELECT * FROM big ORDER BY \"%1\", \"ID\"").arg(order);
    const auto run = [&](QSqlDatabase &db) {
        QSqlQueryModel model;
        model.setQuery(sql, db);
        use(model);
    };
    if (onServer(state)) {
        bench::withBareServer(run);
        return;
    }
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("model"));
        db.setDatabaseName(databasePath());
        db.open();
        run(db);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("model"));
}

// Rows up to `row` read into the model, and 40 from there shown.
qint64 modelScreen(QSqlQueryModel &model, qint64 row)
{
    while (model.rowCount() < row + 40 && model.canFetchMore())
        model.fetchMore();
    qint64 sum = 0;
    for (qint64 r = qMax<qint64>(0, qMin<qint64>(row, model.rowCount() - 40)); r < qMin<qint64>(row + 40, model.rowCount()); ++r)
        sum += model.data(model.index(int(r), 1)).toString().size();
    return sum;
}

void BM_FirstScreen_QSqlQueryModel(benchmark::State &state)
{
    for (auto _ : state)
        withModel(state, QString::fromLatin1(orderOf(state)), [](QSqlQueryModel &m) { benchmark::DoNotOptimize(modelScreen(m, 0)); });
}
void BM_Last_QSqlQueryModel(benchmark::State &state)
{
    for (auto _ : state)
        withModel(state, QString::fromLatin1(orderOf(state)), [](QSqlQueryModel &m) { benchmark::DoNotOptimize(modelScreen(m, rows())); });
    state.counters["peak_MiB"] = peakResidentMiB();
}
// The click's counterpart: the new order read to the middle, where the record lands on average.
void BM_TitleClick_QSqlQueryModel(benchmark::State &state)
{
    for (auto _ : state)
        withModel(state, QString::fromLatin1(orderOf(state)), [](QSqlQueryModel &m) { benchmark::DoNotOptimize(modelScreen(m, rows() / 2)); });
    state.counters["peak_MiB"] = peakResidentMiB();
}

#define QDB_BOTH_ORDERS(name) BENCHMARK(name)->Apply(orders)->Unit(benchmark::kMillisecond)
QDB_BOTH_ORDERS(BM_FirstScreen_SQLTable);
QDB_BOTH_ORDERS(BM_FirstScreen_SQLiteAPI);
QDB_BOTH_ORDERS(BM_Last_SQLTable)->Iterations(2);
QDB_BOTH_ORDERS(BM_Last_SQLiteAPI)->Iterations(2);
QDB_BOTH_ORDERS(BM_PagesUpFromTheEnd_SQLTable)->Iterations(3);
QDB_BOTH_ORDERS(BM_HalfBack_SQLTable)->Iterations(2);
QDB_BOTH_ORDERS(BM_HalfBack_SQLiteAPI)->Iterations(2);
QDB_BOTH_ORDERS(BM_ThumbJump_SQLTable);
QDB_BOTH_ORDERS(BM_WalkForwards_SQLTable)->Iterations(1);
QDB_BOTH_ORDERS(BM_WalkBackwards_SQLTable)->Iterations(1);
QDB_BOTH_ORDERS(BM_Walk_SQLiteAPI)->Iterations(1);
QDB_BOTH_ORDERS(BM_TitleClick_SQLTable)->Iterations(3);
QDB_BOTH_ORDERS(BM_InsertInTheMiddle_SQLTable)->Iterations(5);
// Last: these keep every row they read, so the peak memory they report includes the others'.
QDB_BOTH_ORDERS(BM_FirstScreen_QSqlQueryModel)->Iterations(2);
QDB_BOTH_ORDERS(BM_TitleClick_QSqlQueryModel)->Iterations(1);
QDB_BOTH_ORDERS(BM_Last_QSqlQueryModel)->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    return bench::runOverBigTable(argc, argv, true);
}
