// A title click on the generated table of 1,000,000 rows (QDB_BENCH_ROWS says how many),
// until the grid has repainted: on an indexed column (Name) and on a column without an
// index (Amount).
//
// Clicks back and forth on SQLite, beside Qt's own paths for the job in the same run:
// QSortFilterProxyModel over QSqlTableModel (every row must be fetched before it can sort)
// and QSqlTableModel::sort (a new SELECT with ORDER BY), each shown in a QTableView. Each
// reports the peak resident memory after it; the grid's runs come first, as the peak only
// grows.
//
// One click from the first, the middle and the last record of the key's order, on SQLite
// and on the PostgreSQL server QDB_PG_URL names, beside the database's own sorted read of
// one screen (ORDER BY the column and the key, LIMIT 40).

#include "grid/QDBGrid.h"
#include "platform/sql/SQLConnection.h"
#include "platform/sql/SQLDataSet.h"

#include "BenchDatabase.h"
#include "BenchGrid.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QFile>
#include <QSqlQuery>
#include <QUrl>
#include <QSortFilterProxyModel>
#include <QSqlDatabase>
#include <QSqlTableModel>
#include <QTableView>

using namespace qdb;

namespace {

using bench::databasePath;
using bench::peakResidentMiB;
using bench::rows;
using bench::serverUrl;

const QSize Size = bench::GridSize;

void clicks(benchmark::State &state, const char *field)
{
    bench::BigTableGrid shown;
    TQDBGrid &grid = shown.grid;
    grid.SetOptionsEx(grid.GetOptionsEx() + dgAutoUpdateOrder);
    grid.show();
    shown.table.SetRecNo(1000);
    QApplication::processEvents();
    TQColumnTitle *title = grid.GetColumns()->FindColumn(QString::fromLatin1(field))->GetTitle();
    for (auto _ : state) {
        title->ToggleMarker(true); // ascending, descending, ascending, ...
        grid.viewport()->repaint();
    }
    state.counters["peak MiB"] = peakResidentMiB();
}

void BM_TitleClick_Grid_Indexed(benchmark::State &state) { clicks(state, "Name"); }
BENCHMARK(BM_TitleClick_Grid_Indexed)->Unit(benchmark::kMillisecond)->Iterations(10);
void BM_TitleClick_Grid_NotIndexed(benchmark::State &state) { clicks(state, "Amount"); }
BENCHMARK(BM_TitleClick_Grid_NotIndexed)->Unit(benchmark::kMillisecond)->Iterations(4);

// A grid over the table in the key's order, on SQLite or on the server.
struct Shown
{
    TSQLConnection connection;
    TSQLTable table;
    TDataSource source;
    TQDBGrid grid;
    explicit Shown(bool server)
    {
        connection.SetConnectionString(server ? serverUrl() : databasePath());
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("big"));
        table.Open();
        source.SetDataSet(&table);
        grid.resize(Size);
        grid.SetDataSource(&source);
        grid.SetOptionsEx(grid.GetOptionsEx() + dgAutoUpdateOrder);
        grid.show();
        QApplication::processEvents();
    }
    ~Shown() { grid.SetDataSource(nullptr); }
    TQColumnTitle *title(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field))->GetTitle(); }
};

const char *clickedField(const benchmark::State &state)
{
    return state.range(0) == 0 ? "Name" : "Amount";
}

// Arguments: the column (0 Name, indexed; 1 Amount), the record the user is on (0 first,
// 1 middle, 2 last of the key's order), the database (0 SQLite, 1 the server).
void BM_TitleClick_From(benchmark::State &state)
{
    Shown shown(state.range(2) == 1);
    TQColumnTitle *key = shown.title("ID"), *title = shown.title(clickedField(state));
    const qint64 place = state.range(1) == 0 ? 1 : state.range(1) == 1 ? rows() / 2 : rows();
    for (auto _ : state) {
        state.PauseTiming();
        key->ToggleMarker(true); // the key's order again, ascending
        shown.table.SetRecNo(int(place));
        shown.grid.viewport()->repaint();
        state.ResumeTiming();
        title->ToggleMarker(true);
        shown.grid.viewport()->repaint();
    }
    state.counters["record"] = double(shown.table.RecNo());
}

void BM_SortedScreen_Database(benchmark::State &state)
{
    const QByteArray sql = QByteArray("SELECT * FROM big ORDER BY \"") + clickedField(state) + "\", \"ID\" LIMIT 40";
    qint64 sum = 0;
    if (state.range(1) == 1) {
        bench::withBareServer([&](QSqlDatabase &db) {
            for (auto _ : state) {
                QSqlQuery q(db);
                q.setForwardOnly(true);
                q.exec(QString::fromLatin1(sql));
                while (q.next())
                    sum += q.value(1).toString().size();
            }
        });
    } else {
        sqlite3 *db = nullptr;
        sqlite3_open_v2(databasePath().toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
        for (auto _ : state) {
            sqlite3_stmt *stmt = nullptr;
            sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr);
            while (sqlite3_step(stmt) == SQLITE_ROW)
                sum += sqlite3_column_bytes(stmt, 1);
            sqlite3_finalize(stmt);
        }
        sqlite3_close(db);
    }
    benchmark::DoNotOptimize(sum);
}

void clicksFrom(benchmark::internal::Benchmark *b)
{
    for (int server : {0, 1})
        if (server == 0 || !serverUrl().isEmpty())
            for (int column : {0, 1})
                for (int from : {0, 1, 2})
                    b->Args({column, from, server});
}
void screens(benchmark::internal::Benchmark *b)
{
    for (int server : {0, 1})
        if (server == 0 || !serverUrl().isEmpty())
            for (int column : {0, 1})
                b->Args({column, server});
}
BENCHMARK(BM_TitleClick_From)->Apply(clicksFrom)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SortedScreen_Database)->Apply(screens)->Unit(benchmark::kMillisecond)->Iterations(3);

QSqlDatabase qtDatabase()
{
    QSqlDatabase db = QSqlDatabase::database(QStringLiteral("bench"));
    if (!db.isValid()) {
        db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        db.setDatabaseName(databasePath());
        db.open();
    }
    return db;
}

void BM_TitleClick_TableModelSort(benchmark::State &state)
{
    QSqlTableModel model(nullptr, qtDatabase());
    model.setTable(QStringLiteral("big"));
    model.select();
    QTableView view;
    view.setModel(&model);
    view.resize(Size);
    view.show();
    QApplication::processEvents();
    const int column = model.fieldIndex(state.range(0) ? QStringLiteral("Name") : QStringLiteral("Amount"));
    Qt::SortOrder order = Qt::AscendingOrder;
    for (auto _ : state) {
        model.sort(column, order);
        view.viewport()->repaint();
        order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    }
    state.counters["peak MiB"] = peakResidentMiB();
}
BENCHMARK(BM_TitleClick_TableModelSort)->ArgName("indexed")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(4);

void BM_TitleClick_SortProxy(benchmark::State &state)
{
    QSqlTableModel model(nullptr, qtDatabase());
    model.setTable(QStringLiteral("big"));
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    QTableView view;
    view.setModel(&proxy);
    view.resize(Size);
    view.show();
    const int column = model.fieldIndex(QStringLiteral("Amount"));
    Qt::SortOrder order = Qt::AscendingOrder;
    for (auto _ : state) {
        // The proxy sorts what the model holds: the whole table has to be fetched first.
        model.select();
        while (model.canFetchMore())
            model.fetchMore();
        proxy.sort(column, order);
        view.viewport()->repaint();
        order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    }
    state.counters["peak MiB"] = peakResidentMiB();
}
BENCHMARK(BM_TitleClick_SortProxy)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    RegisterDBTypes();
    databasePath(); // made before anything is measured
    if (!serverUrl().isEmpty())
        bench::makeServerTable();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
    return 0;
}
