// The auto filter's value list on the generated SQLite table, from the click on a title's
// button until the popup has painted: a text column of 1,000 towns, and the Name column whose
// 1,000,000 values are all distinct (its first screen). Against the bare grouping query read
// whole through the SQLite C API, and against Qt's path: a QSqlTableModel fetched whole and
// its distinct values collected.
//
// The table has 1,000,000 rows; set QDB_BENCH_ROWS for another size.

#include "filter/QDBFilter.h"
#include "filter/QDBFilterList.h"
#include "grid/QDBGrid.h"

#include "BenchDatabase.h"
#include "BenchGrid.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QSqlTableModel>

using namespace qdb;

namespace {

using bench::databasePath;
using bench::peakResidentMiB;

void openList(benchmark::State &state, const char *field)
{
    bench::BigTableGrid shown;
    TQDBGrid &grid = shown.grid;
    grid.GetFilterGrid()->SetAutoFilter(true);
    grid.show();
    QApplication::processEvents();
    grid.viewport()->repaint(); // the titles' buttons
    TQColumn *column = grid.GetColumns()->FindColumn(QString::fromLatin1(field));
    int values = 0;
    for (auto _ : state) {
        grid.ShowAutoFilter(column);
        auto *popup = grid.findChild<TQDBPopupFilterList *>();
        popup->repaint();
        values = popup->DataSet()->RecordCount();
        popup->CloseUp(false);
        state.PauseTiming();
        QApplication::processEvents(); // the closed list goes
        state.ResumeTiming();
    }
    state.counters["values listed"] = values;
    state.counters["peak MiB"] = peakResidentMiB();
}

void BM_ValueList_Towns_Grid(benchmark::State &state)
{
    openList(state, "City");
}
BENCHMARK(BM_ValueList_Towns_Grid)->Unit(benchmark::kMillisecond);

void BM_ValueList_Names_Grid(benchmark::State &state)
{
    openList(state, "Name");
}
BENCHMARK(BM_ValueList_Names_Grid)->Unit(benchmark::kMillisecond);

void bareQuery(benchmark::State &state, const char *sql)
{
    const QByteArray path = databasePath().toUtf8();
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    qint64 values = 0;
    for (auto _ : state) {
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
        values = 0;
        qint64 sum = 0;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            sum += sqlite3_column_bytes(stmt, 0) + sqlite3_column_int64(stmt, 1);
            ++values;
        }
        benchmark::DoNotOptimize(sum);
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    state.counters["values listed"] = double(values);
}

void BM_ValueList_Towns_SQLiteAPI(benchmark::State &state)
{
    bareQuery(state, "SELECT City, COUNT(*) FROM big GROUP BY City ORDER BY City");
}
BENCHMARK(BM_ValueList_Towns_SQLiteAPI)->Unit(benchmark::kMillisecond);

void BM_ValueList_Names_SQLiteAPI(benchmark::State &state)
{
    bareQuery(state, "SELECT Name, COUNT(*) FROM big GROUP BY Name ORDER BY Name");
}
BENCHMARK(BM_ValueList_Names_SQLiteAPI)->Unit(benchmark::kMillisecond);

void qtDistinct(benchmark::State &state, const char *field)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        db.setDatabaseName(databasePath());
        db.open();
        qsizetype values = 0;
        for (auto _ : state) {
            QSqlTableModel model(nullptr, db);
            model.setTable(QStringLiteral("big"));
            model.select();
            while (model.canFetchMore())
                model.fetchMore();
            const int column = model.record().indexOf(QString::fromLatin1(field));
            QSet<QString> distinct;
            for (int row = 0; row < model.rowCount(); ++row)
                distinct.insert(model.index(row, column).data().toString());
            QStringList sorted(distinct.begin(), distinct.end());
            sorted.sort();
            values = sorted.size();
        }
        state.counters["values listed"] = double(values);
        state.counters["peak MiB"] = peakResidentMiB();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
}

void BM_ValueList_Towns_QtModel(benchmark::State &state)
{
    qtDistinct(state, "City");
}
BENCHMARK(BM_ValueList_Towns_QtModel)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    return bench::runOverBigTable(argc, argv);
}
