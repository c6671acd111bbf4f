// The grid's totals on the generated SQLite table: the sum, average and count of three
// columns added up by the database, against the bare aggregate query through the SQLite C
// API; and the record walk an application handler makes the grid take, against a raw
// sqlite3_step scan of the same columns.
//
// The table has 1,000,000 rows; set QDB_BENCH_ROWS (for instance 10000000) for another size.

#include "grid/QDBGrid.h"
#include "grid/QDBGridTotals.h"
#include "platform/sql/SQLDataSet.h"

#include "BenchDatabase.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>

using namespace qdb;

namespace {

using bench::databasePath;
using bench::rows;

const char *const Summed[] = {"Amount", "Qty", "ID"};

// A grid over the table with a sum, an average and a count under three columns.
struct TotalsGrid
{
    TSQLConnection connection;
    TSQLTable table;
    TDataSource source;
    TQDBGrid grid;
    TotalsGrid()
    {
        connection.SetConnectionString(databasePath());
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("big"));
        table.Open();
        source.SetDataSet(&table);
        grid.SetOptionsEx({dgTotalValues, dgCalcWholeDataSet});
        grid.SetDataSource(&source);
        for (const char *name : Summed) {
            TQColumn *column = grid.GetColumns()->FindColumn(QString::fromLatin1(name));
            for (TCalcValue calc : {cvSum, cvAvg, cvCount}) {
                TQColumnTotalValue *total = column->GetTotalValues()->Add();
                total->SetFieldName(QString::fromLatin1(name));
                total->SetTotalResult(trCalcValue);
                total->SetCalcValue(calc);
            }
        }
    }
};

void BM_Totals_Grid(benchmark::State &state)
{
    TotalsGrid g;
    for (auto _ : state)
        g.grid.UpdateCalcValues(false);
    state.counters["sum_of_Amount"] = g.grid.GetColumns()->FindColumn(QStringLiteral("Amount"))->GetTotalValues()->Items(0)->Value().ToDouble();
}
BENCHMARK(BM_Totals_Grid)->Unit(benchmark::kMillisecond);

void BM_Totals_SQLiteAPI(benchmark::State &state)
{
    const QByteArray path = databasePath().toUtf8();
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    for (auto _ : state) {
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db,
                           "SELECT SUM(Amount), AVG(Amount), COUNT(Amount), SUM(Qty), AVG(Qty), COUNT(Qty),"
                           " SUM(ID), AVG(ID), COUNT(ID) FROM big",
                           -1, &stmt, nullptr);
        sqlite3_step(stmt);
        benchmark::DoNotOptimize(sqlite3_column_double(stmt, 0));
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
}
BENCHMARK(BM_Totals_SQLiteAPI)->Unit(benchmark::kMillisecond);

// A handler asked about each record: the grid walks them all.
void BM_Totals_GridWalk(benchmark::State &state)
{
    TotalsGrid g;
    g.grid.OnTotalCalcQuery = [](TObject *, TDataSet *, bool &) {};
    for (auto _ : state)
        g.grid.UpdateCalcValues(false);
}
BENCHMARK(BM_Totals_GridWalk)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Totals_SQLiteScan(benchmark::State &state)
{
    const QByteArray path = databasePath().toUtf8();
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    for (auto _ : state) {
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, "SELECT * FROM big", -1, &stmt, nullptr);
        double sum = 0;
        const int columns = sqlite3_column_count(stmt);
        while (sqlite3_step(stmt) == SQLITE_ROW)
            for (int c = 0; c < columns; ++c)
                if (sqlite3_column_type(stmt, c) != SQLITE_TEXT)
                    sum += sqlite3_column_double(stmt, c);
        benchmark::DoNotOptimize(sum);
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
}
BENCHMARK(BM_Totals_SQLiteScan)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    return bench::runOverBigTable(argc, argv);
}
