// A lookup list over a generated table of 100,000 rows (QDB_BENCH_ROWS for another size):
// F4 on a cell until the list is painted, opening on the first record and on one in the
// middle, and paging the open list down a hundred times. The baseline reads the rows the list
// shows, with the columns it shows, through the SQLite C API.

#include "BenchDatabase.h"

#include "editors/QDBDataList.h"
#include "editors/QDBEditor.h"
#include "grid/QDBGrid.h"
#include "platform/db/MemTable.h"
#include "platform/sql/SQLDataSet.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QKeyEvent>

using namespace qdb;

namespace {

// A key pressed and released on `target`, as a user's key arrives there.
void press(QWidget *target, int key)
{
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(target, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(target, &up);
}

constexpr int ShownRows = 8; // what the list shows when its column asks for no other count

// One order whose customer is a row of the big table, in a grid with the lookup column selected.
struct LookupFixture
{
    TSQLConnection connection;
    TSQLTable big;
    TMemTable orders;
    TDataSource source;
    TQDBGrid grid;

    explicit LookupFixture(int bigId)
    {
        connection.SetConnectionString(bench::databasePath());
        big.SetConnection(&connection);
        big.SetTableName(QStringLiteral("big"));
        big.SetIndexFieldNames(QStringLiteral("ID"));
        TField *key = CreateFieldOfType(ftInteger, &orders);
        key->SetFieldName(QStringLiteral("BigID"));
        key->SetDataSet(&orders);
        TField *customer = CreateFieldOfType(ftString, &orders);
        customer->SetFieldName(QStringLiteral("Customer"));
        customer->SetFieldKind(fkLookup);
        customer->SetLookupDataSet(&big);
        customer->SetKeyFields(QStringLiteral("BigID"));
        customer->SetLookupKeyFields(QStringLiteral("ID"));
        customer->SetLookupResultField(QStringLiteral("Name"));
        customer->SetDataSet(&orders);
        orders.CreateDataSet();
        orders.AppendRecord({bigId});
        orders.First();
        source.SetDataSet(&orders);
        grid.resize(600, 300);
        grid.SetDataSource(&source);
        TQColumn *column = grid.GetColumns()->FindColumn(QStringLiteral("Customer"));
        column->GetLookupListFields()->SetText(QStringLiteral("Name\nCode\nID"));
        grid.show();
        grid.SetCol(grid.DataToRawColumn(column->Index()));
        QApplication::processEvents();
    }
    ~LookupFixture() { grid.SetDataSource(nullptr); }

    TQDBGridEditor *editor() { return qobject_cast<TQDBGridEditor *>(grid.InplaceEditor()); }
    TQDBPopupList *open()
    {
        press(&grid, Qt::Key_F4);
        TQDBGridDropDownList *list = editor() ? editor()->PopupList() : nullptr;
        if (!list || !list->Showing())
            qFatal("the lookup list did not open");
        list->Popup()->repaint();
        return list->Popup();
    }
    void close()
    {
        press(editor(), Qt::Key_Escape);
        press(editor(), Qt::Key_Escape);
        big.Close(); // each open starts from a closed lookup table
        QApplication::processEvents(); // lets the closed list go
    }
};

void openList(benchmark::State &state, int key)
{
    LookupFixture f(key);
    for (auto _ : state) {
        f.open();
        state.PauseTiming();
        f.close();
        state.ResumeTiming();
    }
    state.counters["peak MiB"] = bench::peakResidentMiB();
}

void BM_OpenList_First(benchmark::State &state) { openList(state, 1); }
void BM_OpenList_Middle(benchmark::State &state) { openList(state, int(bench::rows() / 2)); }
BENCHMARK(BM_OpenList_First)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenList_Middle)->Unit(benchmark::kMillisecond);

// The rows a list shows from `key` on, through the C API; the connection is opened each time,
// as the list opens its table each time.
void readWithSQLite(benchmark::State &state, int key, int count)
{
    const QByteArray path = bench::databasePath().toUtf8();
    for (auto _ : state) {
        sqlite3 *db = nullptr;
        sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_READONLY, nullptr);
        sqlite3_stmt *stmt = nullptr;
        sqlite3_prepare_v2(db, "SELECT Name, Code, ID FROM big WHERE ID >= ? ORDER BY ID LIMIT ?", -1, &stmt, nullptr);
        sqlite3_bind_int(stmt, 1, key);
        sqlite3_bind_int(stmt, 2, count);
        qint64 sum = 0;
        while (sqlite3_step(stmt) == SQLITE_ROW)
            for (int c = 0; c < 3; ++c)
                sum += sqlite3_column_bytes(stmt, c) + QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, c))).size();
        sqlite3_finalize(stmt);
        sqlite3_close(db);
        benchmark::DoNotOptimize(sum);
    }
}

void BM_OpenList_First_SQLiteAPI(benchmark::State &state) { readWithSQLite(state, 1, ShownRows); }
void BM_OpenList_Middle_SQLiteAPI(benchmark::State &state) { readWithSQLite(state, int(bench::rows() / 2), ShownRows); }
BENCHMARK(BM_OpenList_First_SQLiteAPI)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenList_Middle_SQLiteAPI)->Unit(benchmark::kMillisecond);

// A hundred pages down the open list, each painted; the memory held shows whether the table
// was read whole.
void BM_PageDownList(benchmark::State &state)
{
    LookupFixture f(1);
    const int pages = 100;
    for (auto _ : state) {
        TQDBPopupList *popup = f.open();
        for (int i = 0; i < pages; ++i) {
            press(popup, Qt::Key_PageDown); // an open popup takes the keyboard
            popup->repaint();
        }
        state.PauseTiming();
        state.counters["row reached"] = f.big.FieldByName(QStringLiteral("ID"))->AsInteger();
        f.close();
        state.ResumeTiming();
    }
    state.counters["peak MiB"] = bench::peakResidentMiB();
}
BENCHMARK(BM_PageDownList)->Unit(benchmark::kMillisecond);

void BM_PageDownList_SQLiteAPI(benchmark::State &state) { readWithSQLite(state, 1, ShownRows * 101); }
BENCHMARK(BM_PageDownList_SQLiteAPI)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QDB_BENCH_ROWS"))
        qputenv("QDB_BENCH_ROWS", "100000");
    QApplication app(argc, argv);
    return bench::runOverBigTable(argc, argv);
}
