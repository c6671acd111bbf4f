// A selection through a change of order: 100,000 of 1,000,000 in-memory records selected in
// a grid, the table sorted by another index, the selection asked about every record on the
// first screen and that screen painted. The baseline is the table's own sort, with no grid
// and nothing selected; the aim is within 2x of it, and the screen within 100 ms more.

#include "grid/QDBGrid.h"
#include "platform/db/MemTable.h"

#include <benchmark/benchmark.h>

#include <QApplication>

using namespace qdb;

namespace {

constexpr int Rows = 1000000;
constexpr int EverySelected = 10;

std::unique_ptr<TMemTable> makeTable()
{
    auto t = std::make_unique<TMemTable>();
    t->FieldDefs().Add(QStringLiteral("ID"), ftInteger);
    t->FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
    t->FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
    t->CreateDataSet();
    t->DisableControls();
    for (int i = 1; i <= Rows; ++i)
        t->AppendRecord({i, int((qint64(i) * 7919) % 100003), QStringLiteral("name %1").arg(i % 9973)});
    t->EnableControls();
    t->First();
    return t;
}

// The two orders the runs switch between, so that each iteration really sorts.
const QString &orderFor(int iteration)
{
    static const QString orders[] = {QStringLiteral("Qty"), QStringLiteral("Qty:D")};
    return orders[iteration % 2];
}

void BM_Resort_Table(benchmark::State &state)
{
    auto table = makeTable();
    int i = 0;
    for (auto _ : state)
        table->SetIndexFieldNames(orderFor(i++));
    state.SetItemsProcessed(state.iterations() * Rows);
}
BENCHMARK(BM_Resort_Table)->Unit(benchmark::kMillisecond)->Iterations(6);

struct SelectedGrid
{
    std::unique_ptr<TMemTable> table = makeTable();
    TDataSource source;
    TQDBGrid grid;
    SelectedGrid()
    {
        source.SetDataSet(table.get());
        grid.resize(800, 600);
        grid.SetDataSource(&source);
        grid.SetOptions(grid.GetOptions() + dgMultiSelect);
        grid.show();
        QApplication::processEvents();
        TQBookmarkList &rows = grid.SelectedRows();
        table->DisableControls();
        for (table->First(); !table->Eof(); table->MoveBy(EverySelected))
            rows.AppendItem(table->GetBookmark());
        table->First();
        table->EnableControls();
        rows.Resort();
    }
};

// The sort, and the selection sorted again as the first question about it asks.
void BM_Resort_WithSelection(benchmark::State &state)
{
    SelectedGrid f;
    int i = 0;
    for (auto _ : state) {
        f.table->SetIndexFieldNames(orderFor(i++));
        benchmark::DoNotOptimize(f.grid.SelectedRows().CurrentRowSelected());
    }
    state.counters["selected"] = f.grid.SelectedRows().Count();
}
BENCHMARK(BM_Resort_WithSelection)->Unit(benchmark::kMillisecond)->Iterations(6);

// The same, until the first screen is painted with its selected rows.
void BM_Resort_WithSelectionPainted(benchmark::State &state)
{
    SelectedGrid f;
    int i = 0;
    for (auto _ : state) {
        f.table->SetIndexFieldNames(orderFor(i++));
        f.grid.repaint();
    }
}
BENCHMARK(BM_Resort_WithSelectionPainted)->Unit(benchmark::kMillisecond)->Iterations(6);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
