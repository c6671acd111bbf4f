// Scrolling the data grid through a million records: single-record and page moves, each
// painted before the next. The baseline does the same moves but repaints the whole grid
// every time, as a grid without pixel scrolling would. Besides the time per move, each run
// reports the cells painted per move.

#include "grid/QDBGrid.h"
#include "platform/db/MemTable.h"

#include <benchmark/benchmark.h>

#include <QApplication>

using namespace qdb;

namespace {

constexpr int Rows = 1000000;

TMemTable &table()
{
    static TMemTable *t = [] {
        auto *m = new TMemTable;
        m->FieldDefs().Add(QStringLiteral("ID"), ftInteger);
        m->FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
        m->FieldDefs().Add(QStringLiteral("Amount"), ftFloat);
        m->FieldDefs().Add(QStringLiteral("Day"), ftDate);
        m->CreateDataSet();
        for (int i = 1; i <= Rows; ++i)
            m->AppendRecord({i, QStringLiteral("name %1").arg(i % 9973), i / 8.0,
                             Variant::FromDateTime(EncodeDate(2020, 1, 1) + i % 2000)});
        return m;
    }();
    return *t;
}

struct Fixture
{
    TDataSource source;
    TQDBGrid grid;
    Fixture()
    {
        source.SetDataSet(&table());
        grid.resize(800, 600);
        grid.SetDataSource(&source);
        grid.show();
        table().First();
        QApplication::processEvents();
        grid.ResetDrawCellCount();
    }
};

void moves(benchmark::State &state, int distance, bool repaintAll)
{
    Fixture f;
    const int step = distance == 0 ? qMax(1, f.grid.VisibleRowCount()) : distance;
    // Start at the bottom of the window so that every move scrolls.
    f.grid.MoveBy(f.grid.DataLink()->RecordCount() - 1);
    QApplication::processEvents();
    f.grid.ResetDrawCellCount();
    for (auto _ : state) {
        f.grid.MoveBy(step);
        if (repaintAll)
            f.grid.InvalidateGrid();
        QApplication::processEvents();
    }
    state.counters["cells/move"] = double(f.grid.DrawCellCount()) / double(state.iterations());
}

void BM_RowMoves_Grid(benchmark::State &state) { moves(state, 1, false); }
BENCHMARK(BM_RowMoves_Grid)->Iterations(1000)->Unit(benchmark::kMicrosecond);
void BM_RowMoves_Baseline(benchmark::State &state) { moves(state, 1, true); }
BENCHMARK(BM_RowMoves_Baseline)->Iterations(1000)->Unit(benchmark::kMicrosecond);

void BM_PageMoves_Grid(benchmark::State &state) { moves(state, 0, false); }
BENCHMARK(BM_PageMoves_Grid)->Iterations(100)->Unit(benchmark::kMicrosecond);
void BM_PageMoves_Baseline(benchmark::State &state) { moves(state, 0, true); }
BENCHMARK(BM_PageMoves_Baseline)->Iterations(100)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    table(); // built once, outside every measurement
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
