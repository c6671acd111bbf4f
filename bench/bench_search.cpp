// The grid's search on the generated SQLite table: finding the next match 900,000 rows
// ahead, and hiding the rows without a text that 1% of them show, until the grid has
// repainted; against the bare LIKE query through the SQLite C API doing the same (for the
// hidden rows: their count for the scroll bar and the first screen), and against a client
// scan of the rows through the data set.
//
// The table has 1,000,000 rows; set QDB_BENCH_ROWS for another size (the match is then
// sought at nine tenths of it).

#include "grid/QDBGrid.h"
#include "platform/rtl/TextSearch.h"

#include "BenchDatabase.h"
#include "BenchGrid.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>

using namespace qdb;

namespace {

using bench::databasePath;
using bench::peakResidentMiB;

const char *const Searched[] = {"Name", "Code", "City"};

// The name of the row nine tenths down the table: with ten random letters, found there alone.
QString farName()
{
    static const QString name = [] {
        sqlite3 *db = nullptr;
        sqlite3_open_v2(databasePath().toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, "SELECT Name FROM big WHERE ID = ?", -1, &stmt, nullptr);
        sqlite3_bind_int64(stmt, 1, bench::rows() * 9 / 10 + 1);
        QString found;
        if (sqlite3_step(stmt) == SQLITE_ROW)
            found = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, 0)));
        sqlite3_finalize(stmt);
        sqlite3_close(db);
        return found;
    }();
    return name;
}

// Texts that about 1% of the names hold, taken in turn so that every round filters anew.
const char *const Common[] = {"qz", "xj"};

// Whether one of the fields shows the text, read in the application.
bool anyShows(const QList<TField *> &fields, const QString &text)
{
    for (TField *f : fields)
        if (TextSearchPos(text, f->DisplayText(), false, false) > 0)
            return true;
    return false;
}

// A grid showing the searched columns only, so that the bare query looks at the same ones.
struct SearchGrid : bench::BigTableGrid
{
    SearchGrid()
    {
        grid.GetColumns()->Clear();
        for (const char *name : Searched)
            grid.GetColumns()->Add()->SetFieldName(QString::fromLatin1(name));
        grid.show();
        QApplication::processEvents();
    }
};

void BM_FindNext_Grid(benchmark::State &state)
{
    SearchGrid shown;
    const QString text = farName();
    for (auto _ : state) {
        state.PauseTiming();
        shown.table.First();
        state.ResumeTiming();
        if (!shown.grid.SearchCell(smNext, text, {}))
            state.SkipWithError("not found");
        shown.grid.viewport()->repaint();
    }
    state.counters["ID"] = shown.table.FieldByName(QStringLiteral("ID"))->AsInteger();
    state.counters["peak MiB"] = peakResidentMiB();
}
BENCHMARK(BM_FindNext_Grid)->Unit(benchmark::kMillisecond);

void BM_FindNext_SQLiteAPI(benchmark::State &state)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(databasePath().toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    const QByteArray like = "%" + farName().toUtf8() + "%";
    qint64 id = 0;
    for (auto _ : state) {
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, "SELECT * FROM big WHERE ID > ? AND (Name LIKE ?2 OR Code LIKE ?2 OR City LIKE ?2) ORDER BY ID LIMIT 1",
                           -1, &stmt, nullptr);
        sqlite3_bind_int64(stmt, 1, 1);
        sqlite3_bind_text(stmt, 2, like.constData(), int(like.size()), SQLITE_STATIC);
        if (sqlite3_step(stmt) == SQLITE_ROW)
            id = sqlite3_column_int64(stmt, 0);
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    state.counters["ID"] = double(id);
}
BENCHMARK(BM_FindNext_SQLiteAPI)->Unit(benchmark::kMillisecond);

// Every row read into the application and its texts compared there.
void BM_FindNext_ClientScan(benchmark::State &state)
{
    bench::BigTableGrid data;
    const QString text = farName();
    QList<TField *> fields;
    for (const char *name : Searched)
        fields << data.table.FieldByName(QString::fromLatin1(name));
    data.table.DisableControls();
    for (auto _ : state) {
        data.table.First();
        bool found = false;
        for (data.table.Next(); !found && !data.table.Eof(); data.table.Next())
            found = anyShows(fields, text);
    }
    data.table.EnableControls();
    state.counters["peak MiB"] = peakResidentMiB();
}
BENCHMARK(BM_FindNext_ClientScan)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_HideRows_Grid(benchmark::State &state)
{
    SearchGrid shown;
    TQDBGridSearch *search = shown.grid.GetSearch();
    search->SetOptions({soFilterRows});
    int n = 0;
    for (auto _ : state) {
        search->SetText(QString::fromLatin1(Common[n++ % 2]));
        benchmark::DoNotOptimize(shown.table.RecordCount());
        shown.grid.viewport()->repaint();
    }
    search->SetText(QString::fromLatin1(Common[0]));
    state.counters["rows"] = shown.table.RecordCount();
    state.counters["peak MiB"] = peakResidentMiB();
}
BENCHMARK(BM_HideRows_Grid)->Unit(benchmark::kMillisecond);

void BM_HideRows_SQLiteAPI(benchmark::State &state)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(databasePath().toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    const QByteArray where = " FROM big WHERE Name LIKE ?1 OR Code LIKE ?1 OR City LIKE ?1";
    const auto like = [](const char *text) { return QByteArray("%") + text + "%"; };
    const auto count = [&](const QByteArray &pattern) {
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, ("SELECT COUNT(*)" + where).constData(), -1, &stmt, nullptr);
        sqlite3_bind_text(stmt, 1, pattern.constData(), int(pattern.size()), SQLITE_STATIC);
        const qint64 rows = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int64(stmt, 0) : 0;
        sqlite3_finalize(stmt);
        return rows;
    };
    int n = 0;
    for (auto _ : state) {
        const QByteArray pattern = like(Common[n++ % 2]);
        benchmark::DoNotOptimize(count(pattern));
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, ("SELECT *" + where + " ORDER BY ID LIMIT 40").constData(), -1, &stmt, nullptr);
        sqlite3_bind_text(stmt, 1, pattern.constData(), int(pattern.size()), SQLITE_STATIC);
        double sum = 0;
        while (sqlite3_step(stmt) == SQLITE_ROW)
            for (int c = 0; c < sqlite3_column_count(stmt); ++c)
                sum += sqlite3_column_bytes(stmt, c);
        benchmark::DoNotOptimize(sum);
        sqlite3_finalize(stmt);
    }
    state.counters["rows"] = double(count(like(Common[0])));
    sqlite3_close(db);
}
BENCHMARK(BM_HideRows_SQLiteAPI)->Unit(benchmark::kMillisecond);

void BM_HideRows_ClientScan(benchmark::State &state)
{
    bench::BigTableGrid data;
    QList<TField *> fields;
    for (const char *name : Searched)
        fields << data.table.FieldByName(QString::fromLatin1(name));
    data.table.DisableControls();
    qint64 rows = 0;
    for (auto _ : state) {
        rows = 0;
        const QString text = QString::fromLatin1(Common[0]);
        for (data.table.First(); !data.table.Eof(); data.table.Next())
            rows += anyShows(fields, text);
    }
    data.table.EnableControls();
    state.counters["rows"] = double(rows);
    state.counters["peak MiB"] = peakResidentMiB();
}
BENCHMARK(BM_HideRows_ClientScan)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    return bench::runOverBigTable(argc, argv);
}
