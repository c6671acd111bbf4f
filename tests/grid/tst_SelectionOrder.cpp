// The grid through changes of its data set's order, on the in-memory table, SQLite and
// PostgreSQL: exactly the selected records stay selected, each once; what the user sees stays
// put while the selection is saved, restored or made whole; NULLs sort the same everywhere.

#include "grid/QDBGrid.h"

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QFontMetrics>
#include <QSet>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

using namespace qdb;
using namespace qdb::test;

namespace {

enum class Kind { Memory, SQLite, PostgreSQL };

std::string KindName(const testing::TestParamInfo<Kind> &info)
{
    switch (info.param) {
    case Kind::Memory: return "MemTable";
    case Kind::SQLite: return "SQLite";
    case Kind::PostgreSQL: return "PostgreSQL";
    }
    return {};
}

constexpr int Rows = 60;
// Every quantity once, in no relation to the id.
int qtyOf(int id) { return (id * 37) % 61; }

class SelectionOrder : public testing::TestWithParam<Kind>
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        if (GetParam() == Kind::Memory) {
            auto t = std::make_unique<TMemTable>();
            t->FieldDefs().Add(QStringLiteral("id"), ftInteger);
            t->FieldDefs().Add(QStringLiteral("qty"), ftInteger);
            t->FieldDefs().Add(QStringLiteral("name"), ftString, 500);
            t->CreateDataSet();
            for (int id = 1; id <= Rows; ++id)
                t->AppendRecord({id, qtyOf(id), QStringLiteral("n%1").arg(id)});
            t->SetIndexFieldNames(QStringLiteral("id"));
            t->First();
            memory = t.get();
            ds = std::move(t);
        } else {
            if (!db.Open(GetParam() == Kind::SQLite ? Backend::SQLite : Backend::PostgreSQL, connection,
                         QStringLiteral("selorder")))
                GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
            connection.ExecSQL(QStringLiteral("CREATE TABLE items (id INTEGER PRIMARY KEY, qty INTEGER, name VARCHAR(500))"));
            connection.StartTransaction();
            for (int id = 1; id <= Rows; ++id)
                connection.ExecSQL(QStringLiteral("INSERT INTO items VALUES (?, ?, ?)"),
                                   {id, qtyOf(id), QStringLiteral("n%1").arg(id)});
            connection.Commit();
            auto t = std::make_unique<TSQLTable>();
            t->SetConnection(&connection);
            t->SetTableName(QStringLiteral("items"));
            t->SetIndexFieldNames(QStringLiteral("id"));
            t->Open();
            sql = t.get();
            ds = std::move(t);
        }
        source.SetDataSet(ds.get());
        grid.resize(500, 260);
        grid.SetDataSource(&source);
        grid.SetOptions(grid.GetOptions() + dgMultiSelect);
        grid.SetKeyFields(QStringLiteral("id"));
        grid.SetOptionsEx(grid.GetOptionsEx() + dgLoadCurrentOrder + dgAutoUpdateOrder + dgAutoKeepSelection);
        grid.show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        ds.reset();
        if (GetParam() != Kind::Memory) {
            connection.Close();
            db.Drop();
        }
    }

    int id() const { return ds->FieldByName(QStringLiteral("id"))->AsInteger(); }
    void go(int key) { ASSERT_TRUE(ds->Locate(QStringLiteral("id"), key, {})) << key; }
    void select(std::initializer_list<int> keys)
    {
        for (int key : keys) {
            go(key);
            grid.SelectRow();
            expected.insert(key);
        }
    }
    void setIndex(const QString &names)
    {
        if (memory)
            memory->SetIndexFieldNames(names);
        else
            sql->SetIndexFieldNames(names);
    }
    void clickTitle(const char *field)
    {
        const int raw = grid.DataToRawColumn(grid.GetColumns()->FindColumn(QString::fromLatin1(field))->Index());
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(raw, 0).center());
    }
    void edit(int key, int qty)
    {
        go(key);
        ds->Edit();
        ds->FieldByName(QStringLiteral("qty"))->SetAsInteger(qty);
        ds->Post();
    }

    // Walks the whole data set asking the list about each record, as painting does, and
    // checks the list's own order: sorted in the data set's order, no record twice.
    void expectSelection(const char *after)
    {
        SCOPED_TRACE(after);
        TQBookmarkList &rows = grid.SelectedRows();
        EXPECT_EQ(rows.Count(), expected.size());
        for (int i = 1; i < rows.Count(); ++i)
            EXPECT_LT(rows.Compare(rows.Items(i - 1), rows.Items(i)), 0) << "at " << i;
        QSet<int> walked;
        const TBookmark here = ds->GetBookmark();
        ds->DisableControls();
        for (ds->First(); !ds->Eof(); ds->Next())
            if (rows.CurrentRowSelected())
                walked.insert(id());
        ds->GotoBookmark(here);
        ds->EnableControls();
        EXPECT_EQ(walked, expected);
        // Selecting a selected record again holds it once.
        for (int key : std::as_const(expected)) {
            go(key);
            grid.SelectRow();
        }
        EXPECT_EQ(rows.Count(), expected.size());
    }

    TestDatabase db;
    TSQLConnection connection;
    std::unique_ptr<TDataSet> ds;
    TMemTable *memory = nullptr;
    TSQLTable *sql = nullptr;
    TDataSource source;
    TQDBGrid grid;
    QSet<int> expected;
};

} // namespace

TEST_P(SelectionOrder, EveryWayOfReorderingKeepsExactlyTheSelectedRecords)
{
    select({17, 3, 42, 29, 8, 55, 31});
    expectSelection("selecting in random order");

    setIndex(QStringLiteral("qty:D"));
    expectSelection("the application's descending index");

    setIndex(QStringLiteral("name"));
    expectSelection("an index on text");

    clickTitle("qty");
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("qty"));
    expectSelection("a title click");
    clickTitle("qty");
    expectSelection("a second title click");

    ds->Refresh();
    expectSelection("a refresh");

    ds->Append();
    ds->FieldByName(QStringLiteral("id"))->SetAsInteger(1000);
    ds->FieldByName(QStringLiteral("qty"))->SetAsInteger(500); // first in the descending order
    ds->Post();
    expectSelection("an insert that sorts first");

    ds->SetFilter(QStringLiteral("qty > 20"));
    ds->SetFiltered(true);
    for (int key : QSet<int>(expected))
        if (qtyOf(key) <= 20)
            expected.remove(key); // hidden records leave the selection
    ASSERT_LT(expected.size(), 7);
    ASSERT_GT(expected.size(), 2);
    expectSelection("a filter");
    ds->SetFiltered(false);
    expectSelection("the filter taken off");
}

TEST_P(SelectionOrder, AnEditThatMovesASelectedRecordKeepsItSelected)
{
    setIndex(QStringLiteral("qty"));
    select({10, 20, 30});
    edit(20, 999); // to the end of the order
    expectSelection("an edit to the end");
    edit(30, -1); // to the start
    expectSelection("an edit to the start");
    edit(5, 998); // an unselected record moving past the selected ones
    expectSelection("another record moving");
    go(20);
    EXPECT_TRUE(grid.SelectedRows().CurrentRowSelected());
    go(5);
    EXPECT_FALSE(grid.SelectedRows().CurrentRowSelected());
}

TEST_P(SelectionOrder, SavingRestoringAndSelectingAllLeaveTheViewWhereItWas)
{
    select({2, 40, 44});
    ds->SetRecNo(40);
    ds->MoveBy(3); // off the window's middle, where a return to a record would put it
    QApplication::processEvents();
    const int idCol = grid.DataToRawColumn(0);
    const QString top = grid.CellText(idCol, grid.TitleOffset());
    const int row = grid.Row();
    const int current = id();
    ASSERT_NE(top, QStringLiteral("1")); // scrolled down
    auto expectView = [&](const char *after) {
        SCOPED_TRACE(after);
        QApplication::processEvents();
        EXPECT_EQ(grid.CellText(idCol, grid.TitleOffset()), top);
        EXPECT_EQ(grid.Row(), row);
        EXPECT_EQ(id(), current);
    };
    grid.SelectedRows().Save();
    expectView("Save");
    grid.SelectedRows().Restore();
    expectView("Restore");
    EXPECT_EQ(grid.SelectedRows().Count(), 3);
    grid.SelectAll();
    expectView("SelectAll");
    EXPECT_EQ(grid.SelectedRows().Count(), Rows);
}

TEST_P(SelectionOrder, AClosedOrEmptiedDataSetPutsTheRowBackAndInputChangesNothing)
{
    select({4, 9});
    const auto everyInput = [&] {
        for (Qt::Key k : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Insert, Qt::Key_Delete,
                          Qt::Key_F2, Qt::Key_Space, Qt::Key_Escape})
            QTest::keyClick(&grid, k);
        QTest::keyClick(&grid, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(grid.DataToRawColumn(1), 3).center());
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ControlModifier, grid.CellRect(0, 2).center());
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(grid.DataToRawColumn(1), 0).center());
    };
    ds->First();
    ds->MoveBy(5);
    ASSERT_EQ(grid.Row(), grid.FixedRows() + 5);
    ds->Close();
    EXPECT_EQ(grid.Row(), grid.FixedRows());
    EXPECT_NO_THROW(everyInput());
    EXPECT_FALSE(ds->Active());
    EXPECT_EQ(grid.SelectedRows().Count(), 0);

    ds->Open();
    ds->MoveBy(5);
    ds->SetFilter(QStringLiteral("qty > 1000")); // nothing passes
    ds->SetFiltered(true);
    EXPECT_TRUE(ds->IsEmpty());
    EXPECT_EQ(grid.Row(), grid.FixedRows());
    EXPECT_NO_THROW(everyInput());
    EXPECT_EQ(ds->State(), dsBrowse);
    EXPECT_EQ(ds->RecordCount(), 0);
    EXPECT_EQ(grid.Row(), grid.FixedRows());
    EXPECT_EQ(grid.SelectedRows().Count(), 0);
}

TEST_P(SelectionOrder, NullsComeFirstAscendingAndLastDescendingOnEveryDataSet)
{
    for (int key : {5, 10, 15}) {
        go(key);
        ds->Edit();
        ds->FieldByName(QStringLiteral("qty"))->Clear();
        ds->Post();
    }
    auto quantities = [&] {
        QStringList out;
        ds->DisableControls();
        for (ds->First(); !ds->Eof(); ds->Next())
            out << (ds->FieldByName(QStringLiteral("qty"))->IsNull() ? QStringLiteral("null")
                                                                     : ds->FieldByName(QStringLiteral("qty"))->AsString());
        ds->EnableControls();
        return out;
    };
    QList<int> values;
    for (int id = 1; id <= Rows; ++id)
        if (id % 5 != 0 || id > 15)
            values << qtyOf(id);
    std::sort(values.begin(), values.end());
    QStringList ascending{QStringLiteral("null"), QStringLiteral("null"), QStringLiteral("null")};
    for (int v : values)
        ascending << QString::number(v);
    QStringList descending(ascending.crbegin(), ascending.crend());

    clickTitle("qty");
    EXPECT_EQ(quantities(), ascending);
    clickTitle("qty");
    EXPECT_EQ(quantities(), descending);
    setIndex(QStringLiteral("qty"));
    EXPECT_EQ(quantities(), ascending);
    // Far from the start too, where SQL results are read through their computed order.
    ds->Last();
    EXPECT_TRUE(ds->FieldByName(QStringLiteral("qty"))->AsInteger() == values.last());
    ds->SetRecNo(2);
    EXPECT_TRUE(ds->FieldByName(QStringLiteral("qty"))->IsNull());
}

TEST_P(SelectionOrder, FitTakesTheWidestValueOffTheScreenWithinABound)
{
    auto setName = [&](int key, const QString &name) {
        go(key);
        ds->Edit();
        ds->FieldByName(QStringLiteral("name"))->SetAsString(name);
        ds->Post();
    };
    const QString medium(12, QLatin1Char('W'));
    setName(50, medium); // far below the rows on screen
    ds->First();
    TQColumn *name = grid.GetColumns()->FindColumn(QStringLiteral("name"));
    const QFontMetrics metrics(name->GetFont());
    const int digit = metrics.horizontalAdvance(QLatin1Char('0')); // such widths are kept in characters
    auto expectWidth = [&](int fitted) {
        EXPECT_EQ(name->OptimalWidth(), fitted);
        EXPECT_GE(name->GetWidth(), fitted);
        EXPECT_LE(name->GetWidth(), fitted + 2 * digit);
    };
    grid.AdjustColumnsWidth();
    expectWidth(metrics.horizontalAdvance(medium) + 4);
    // A SQL data set answers from the database what a walk over its records finds.
    QString longest, walked;
    const bool told = ds->LongestText(ds->FieldByName(QStringLiteral("name")), longest);
    EXPECT_EQ(told, GetParam() != Kind::Memory);
    ds->DisableControls();
    for (ds->First(); !ds->Eof(); ds->Next())
        if (ds->FieldByName(QStringLiteral("name"))->AsString().size() > walked.size())
            walked = ds->FieldByName(QStringLiteral("name"))->AsString();
    ds->EnableControls();
    if (told) {
        EXPECT_EQ(longest, walked);
    }

    setName(50, QString(20, QLatin1Char('W')) + QString(400, QLatin1Char('x'))); // one very long value
    ds->First();
    grid.AdjustColumnsWidth();
    expectWidth(grid.viewport()->width() / 2); // the bound: not less, not more
    grid.SetFitWidthMax(150);
    grid.AdjustColumnsWidth();
    expectWidth(150);
    EXPECT_LT(grid.GetColumns()->FindColumn(QStringLiteral("id"))->GetWidth(), 150); // short ones stay short
}

INSTANTIATE_TEST_SUITE_P(DataSets, SelectionOrder, testing::Values(Kind::Memory, Kind::SQLite, Kind::PostgreSQL),
                         KindName);
