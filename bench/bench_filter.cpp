// The auto filter on the generated SQLite table: a column condition and a ticked list of
// three values applied through the grid until it has repainted, against the bare filtered
// query stepping 40 rows through the SQLite C API, and against Qt's path: a
// QSortFilterProxyModel's regular expression over a QSqlTableModel, which must hold every
// row before it can filter.
//
// The table has 1,000,000 rows; set QDB_BENCH_ROWS (for instance 10000000) for another size.

#include "filter/QDBFilter.h"
#include "grid/QDBGrid.h"
#include "platform/sql/SQLDataSet.h"

#include "BenchDatabase.h"
#include "BenchGrid.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSortFilterProxyModel>
#include <QSqlDatabase>
#include <QSqlTableModel>
#include <QTableView>

using namespace qdb;

namespace {

using bench::databasePath;
using bench::peakResidentMiB;

const QSize Size = bench::GridSize;

// Two filters taken in turn, so that every round applies a new one.
struct Round
{
    const char *condition;
    QStringList ticked;
    int low;
};
const Round Rounds[] = {
    {"Amount > 500", {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}, 1},
    {"Amount > 400", {QStringLiteral("4"), QStringLiteral("5"), QStringLiteral("6")}, 4},
};

void BM_Filter_Grid(benchmark::State &state)
{
    bench::BigTableGrid shown;
    TQDBGrid &grid = shown.grid;
    grid.GetFilterGrid()->SetAutoFilter(true);
    grid.show();
    QApplication::processEvents();
    TQColumn *amount = grid.GetColumns()->FindColumn(QStringLiteral("Amount"));
    TQColumn *qty = grid.GetColumns()->FindColumn(QStringLiteral("Qty"));
    int n = 0;
    for (auto _ : state) {
        const Round &round = Rounds[n++ % 2];
        TQDBGridFilter *filter = grid.GetFilterGrid();
        filter->BeginFilterChange();
        amount->SetFilterText(QString::fromLatin1(round.condition));
        qty->GetFilterList()->BeginUpdate();
        qty->GetFilterList()->Clear();
        qty->GetFilterList()->AddStrings(round.ticked);
        qty->GetFilterList()->EndUpdate();
        filter->EndFilterChange();
        grid.viewport()->repaint();
    }
    state.counters["peak MiB"] = peakResidentMiB();
    state.counters["first ID"] = shown.table.FieldByName(QStringLiteral("ID"))->AsInteger();
}
BENCHMARK(BM_Filter_Grid)->Unit(benchmark::kMillisecond);

void BM_Filter_SQLiteAPI(benchmark::State &state)
{
    const QByteArray path = databasePath().toUtf8();
    sqlite3 *db = nullptr;
    sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    int n = 0;
    for (auto _ : state) {
        const Round &round = Rounds[n++ % 2];
        sqlite3_stmt *stmt = nullptr;
        const QByteArray sql = QByteArray("SELECT * FROM big WHERE ") + round.condition + " AND Qty IN (?, ?, ?)";
        sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr);
        for (int i = 0; i < 3; ++i)
            sqlite3_bind_int(stmt, i + 1, round.low + i);
        double sum = 0;
        for (int row = 0; row < 40 && sqlite3_step(stmt) == SQLITE_ROW; ++row)
            for (int c = 0; c < sqlite3_column_count(stmt); ++c)
                sum += sqlite3_column_bytes(stmt, c);
        benchmark::DoNotOptimize(sum);
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
}
BENCHMARK(BM_Filter_SQLiteAPI)->Unit(benchmark::kMillisecond);

void BM_Filter_QtProxy(benchmark::State &state)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        db.setDatabaseName(databasePath());
        db.open();
        QSqlTableModel model(nullptr, db);
        model.setTable(QStringLiteral("big"));
        QSortFilterProxyModel proxy;
        proxy.setSourceModel(&model);
        proxy.setFilterKeyColumn(model.fieldIndex(QStringLiteral("Qty")));
        QTableView view;
        view.setModel(&proxy);
        view.resize(Size);
        view.show();
        int n = 0;
        for (auto _ : state) {
            const Round &round = Rounds[n++ % 2];
            // The proxy filters what the model holds: the whole table has to be fetched.
            model.setFilter(QString::fromLatin1(round.condition));
            model.select();
            while (model.canFetchMore())
                model.fetchMore();
            proxy.setFilterRegularExpression(
                QRegularExpression(QStringLiteral("^(%1|%2|%3)$").arg(round.low).arg(round.low + 1).arg(round.low + 2)));
            view.viewport()->repaint();
        }
        state.counters["peak MiB"] = peakResidentMiB();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
}
BENCHMARK(BM_Filter_QtProxy)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    return bench::runOverBigTable(argc, argv);
}
