// The in-memory table against plain vectors doing the same work on the same values:
// a full walk reading three fields, a sort by a text field, a filtered walk and a locate
// on a field without an index. One million records.

#include "platform/db/MemTable.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <algorithm>
#include <random>
#include <vector>

using namespace qdb;

namespace {

constexpr int Rows = 1000000;

struct Row
{
    qint64 id;
    QString name;
    double amount;
};

const std::vector<Row> &rows()
{
    static const std::vector<Row> data = [] {
        std::vector<Row> out;
        out.reserve(Rows);
        std::mt19937 rng(42);
        std::uniform_int_distribution<int> letters(0, 25);
        std::uniform_real_distribution<double> amounts(0, 1000);
        for (int i = 0; i < Rows; ++i) {
            QString name(8, Qt::Uninitialized);
            for (QChar &c : name)
                c = QLatin1Char(char('a' + letters(rng)));
            out.push_back({i + 1, name, std::round(amounts(rng) * 100) / 100});
        }
        return out;
    }();
    return data;
}

TMemTable &table()
{
    static TMemTable *t = [] {
        auto *m = new TMemTable;
        m->FieldDefs().Add(QStringLiteral("ID"), ftLargeint);
        m->FieldDefs().Add(QStringLiteral("Name"), ftString, 8);
        m->FieldDefs().Add(QStringLiteral("Amount"), ftFloat);
        m->CreateDataSet();
        m->DisableControls();
        for (const Row &r : rows())
            m->AppendRecord({r.id, r.name, r.amount});
        m->EnableControls();
        return m;
    }();
    return *t;
}

void resetTable()
{
    TMemTable &t = table();
    t.SetFiltered(false);
    t.SetIndexFieldNames(QString());
    t.First();
}

// ---- a full walk ----

void BM_Walk_MemTable(benchmark::State &state)
{
    TMemTable &t = table();
    resetTable();
    TField *id = t.FieldByName(QStringLiteral("ID"));
    TField *name = t.FieldByName(QStringLiteral("Name"));
    TField *amount = t.FieldByName(QStringLiteral("Amount"));
    for (auto _ : state) {
        qint64 ids = 0, chars = 0;
        double total = 0;
        ControlsDisabler quiet(&t);
        for (t.First(); !t.Eof(); t.Next()) {
            ids += id->AsLargeInt();
            chars += name->AsString().size();
            total += amount->AsFloat();
        }
        benchmark::DoNotOptimize(ids + chars + total);
    }
    state.SetItemsProcessed(state.iterations() * Rows);
}
BENCHMARK(BM_Walk_MemTable)->Unit(benchmark::kMillisecond);

void BM_Walk_Baseline(benchmark::State &state)
{
    const std::vector<Row> &data = rows();
    for (auto _ : state) {
        qint64 ids = 0, chars = 0;
        double total = 0;
        for (const Row &r : data) {
            ids += r.id;
            QString name = r.name; // a field hands out a copy too
            chars += name.size();
            total += r.amount;
        }
        benchmark::DoNotOptimize(ids + chars + total);
    }
    state.SetItemsProcessed(state.iterations() * Rows);
}
BENCHMARK(BM_Walk_Baseline)->Unit(benchmark::kMillisecond);

// ---- a sort by a text field ----

void BM_Sort_MemTable(benchmark::State &state)
{
    TMemTable &t = table();
    resetTable();
    for (auto _ : state) {
        t.SetIndexFieldNames(QStringLiteral("Name"));
        state.PauseTiming();
        t.SetIndexFieldNames(QString());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * Rows);
}
BENCHMARK(BM_Sort_MemTable)->Unit(benchmark::kMillisecond);

void BM_Sort_Baseline(benchmark::State &state)
{
    std::vector<QString> names;
    for (const Row &r : rows())
        names.push_back(r.name);
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<QString> keys = names;
        state.ResumeTiming();
        std::stable_sort(keys.begin(), keys.end(), [](const QString &a, const QString &b) {
            return QString::compare(a, b, Qt::CaseSensitive) < 0;
        });
        benchmark::DoNotOptimize(keys.data());
    }
    state.SetItemsProcessed(state.iterations() * Rows);
}
BENCHMARK(BM_Sort_Baseline)->Unit(benchmark::kMillisecond);

// ---- a filtered walk ----

void BM_FilteredWalk_MemTable(benchmark::State &state)
{
    TMemTable &t = table();
    resetTable();
    TField *amount = t.FieldByName(QStringLiteral("Amount"));
    t.SetFilter(QStringLiteral("Amount > 900"));
    for (auto _ : state) {
        double total = 0;
        ControlsDisabler quiet(&t);
        t.SetFiltered(true);
        for (t.First(); !t.Eof(); t.Next())
            total += amount->AsFloat();
        t.SetFiltered(false);
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * Rows);
}
BENCHMARK(BM_FilteredWalk_MemTable)->Unit(benchmark::kMillisecond);

void BM_FilteredWalk_Baseline(benchmark::State &state)
{
    const std::vector<Row> &data = rows();
    for (auto _ : state) {
        double total = 0;
        for (const Row &r : data)
            if (r.amount > 900)
                total += r.amount;
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * Rows);
}
BENCHMARK(BM_FilteredWalk_Baseline)->Unit(benchmark::kMillisecond);

// ---- a locate on a field without an index ----

void BM_Locate_MemTable(benchmark::State &state)
{
    TMemTable &t = table();
    resetTable();
    const QString wanted = rows()[Rows - 10].name;
    for (auto _ : state) {
        const bool found = t.Locate(QStringLiteral("Name"), wanted, {});
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_Locate_MemTable)->Unit(benchmark::kMillisecond);

void BM_Locate_Baseline(benchmark::State &state)
{
    const std::vector<Row> &data = rows();
    const QString wanted = data[Rows - 10].name;
    for (auto _ : state) {
        auto it = std::find_if(data.begin(), data.end(), [&](const Row &r) { return r.name == wanted; });
        benchmark::DoNotOptimize(it);
    }
}
BENCHMARK(BM_Locate_Baseline)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    table(); // built once, outside every measurement
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
