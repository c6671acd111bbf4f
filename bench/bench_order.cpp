// A title click on the generated SQLite table of 1,000,000 rows, until the grid has
// repainted: on an indexed column (Name) and on a column without an index (Amount). Beside
// it, in the same run, Qt's own paths for the job: QSortFilterProxyModel over
// QSqlTableModel (every row must be fetched before it can sort) and QSqlTableModel::sort
// (a new SELECT with ORDER BY), each shown in a QTableView. Each reports the peak resident
// memory after it; the grid's runs come first, as the peak only grows.

#include "grid/QDBGrid.h"
#include "platform/sql/SQLConnection.h"
#include "platform/sql/SQLDataSet.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QSortFilterProxyModel>
#include <QSqlDatabase>
#include <QSqlTableModel>
#include <QTableView>

using namespace qdb;

namespace {

const QSize Size(1280, 800);

QString databasePath()
{
    static const QString path = [] {
        const QString dir = QCoreApplication::applicationDirPath();
        const QString file = dir + QStringLiteral("/big-1000000.db");
        if (!QFile::exists(file)) {
            const QString generator = dir + QStringLiteral("/../tools/makesampledb/makesampledb");
            if (QProcess::execute(generator, {file, QStringLiteral("--big"), QStringLiteral("1000000")}) != 0)
                qFatal("cannot make the benchmark database");
        }
        return file;
    }();
    return path;
}

double peakResidentMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return -1;
}

void clicks(benchmark::State &state, const char *field)
{
    TSQLConnection connection;
    connection.SetConnectionString(databasePath());
    TSQLTable table;
    table.SetConnection(&connection);
    table.SetTableName(QStringLiteral("big"));
    table.Open();
    TDataSource source;
    source.SetDataSet(&table);
    TQDBGrid grid;
    grid.resize(Size);
    grid.SetDataSource(&source);
    grid.SetKeyFields(QStringLiteral("ID"));
    grid.SetOptionsEx(grid.GetOptionsEx() + dgAutoUpdateOrder);
    grid.show();
    table.SetRecNo(1000);
    QApplication::processEvents();
    TQColumnTitle *title = grid.GetColumns()->FindColumn(QString::fromLatin1(field))->GetTitle();
    for (auto _ : state) {
        title->ToggleMarker(true); // ascending, descending, ascending, ...
        grid.viewport()->repaint();
    }
    state.counters["peak MiB"] = peakResidentMiB();
    grid.SetDataSource(nullptr);
}

void BM_TitleClick_Grid_Indexed(benchmark::State &state) { clicks(state, "Name"); }
BENCHMARK(BM_TitleClick_Grid_Indexed)->Unit(benchmark::kMillisecond)->Iterations(10);
void BM_TitleClick_Grid_NotIndexed(benchmark::State &state) { clicks(state, "Amount"); }
BENCHMARK(BM_TitleClick_Grid_NotIndexed)->Unit(benchmark::kMillisecond)->Iterations(4);

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
    databasePath();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
    return 0;
}
