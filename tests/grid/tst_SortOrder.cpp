// Sorting by the titles: markers and levels, the order text, and the order given to real
// data sets (an in-memory table's index, an SQL query's ORDER BY on SQLite and PostgreSQL),
// keeping the current record and the selection.

#include "grid/QDBGrid.h"
#include "grid/QDBGridsOrderRegistry.h"

#include "DbTestSupport.h"
#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Streaming.h"
#include "platform/sql/SQLDataSet.h"

#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class SortOrder : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(40);
        source.SetDataSet(table.get());
        grid.resize(700, 300);
        grid.SetDataSource(&source);
        grid.SetKeyFields(QStringLiteral("ID"));
        grid.SetOptionsEx(grid.GetOptionsEx() + dgAutoUpdateOrder);
        grid.OnOrderUpdated = [this](TObject *) { ++updates; };
        grid.show();
        QApplication::processEvents();
    }
    TQColumnTitle *title(const char *field) const { return grid.GetColumns()->FindColumn(QString::fromLatin1(field))->GetTitle(); }
    void clickTitle(const char *field, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        const int raw = grid.DataToRawColumn(grid.GetColumns()->FindColumn(QString::fromLatin1(field))->Index());
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, mods, grid.CellRect(raw, 0).center());
    }
    int id() const { return table->FieldByName(QStringLiteral("ID"))->AsInteger(); }

    std::unique_ptr<TMemTable> table;
    TDataSource source;
    TQDBGrid grid;
    int updates = 0;
};

} // namespace

TEST_F(SortOrder, TheOrderTextMarksTheTitles)
{
    grid.SetOptionsEx(grid.GetOptionsEx() - dgAutoUpdateOrder);
    grid.SetOrderFields(QStringLiteral("Name;Qty desc"));
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Name,Qty DESC"));
    EXPECT_EQ(title("Name")->GetMarker(), tmAscend);
    EXPECT_EQ(title("Name")->GetMarkerIndex(), 2);
    EXPECT_EQ(title("Qty")->GetMarkerIndex(), 5); // level 1, descending
    EXPECT_EQ(title("Qty")->OrderIndex(), 1);

    // Unknown names are passed over; the data set was not touched without dgAutoUpdateOrder.
    grid.SetOrderFields(QStringLiteral("Nothing, Paid ASC"));
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Paid"));
    EXPECT_TRUE(table->IndexFieldNames().isEmpty());

    // Removing a level renumbers the others.
    grid.SetOrderFields(QStringLiteral("Name,Qty,Paid DESC"));
    title("Qty")->SetMarker(tmNone);
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Name,Paid DESC"));
    EXPECT_EQ(title("Paid")->GetMarkerIndex(), 5);

    // Only nine levels.
    TMemTable wide;
    for (int i = 0; i < 10; ++i)
        wide.FieldDefs().Add(QStringLiteral("F%1").arg(i), ftInteger);
    wide.CreateDataSet();
    source.SetDataSet(&wide);
    grid.SetOrderFields(QStringLiteral("F0,F1,F2,F3,F4,F5,F6,F7,F8,F9"));
    EXPECT_EQ(grid.GetColumns()->MarkerList().size(), 9);
    EXPECT_EQ(grid.GetColumns()->FindColumn(QStringLiteral("F9"))->GetTitle()->GetMarker(), tmNone);
    source.SetDataSet(table.get());
}

TEST_F(SortOrder, TheOrderTravelsInTheGridsStreamAfterItsColumns)
{
    grid.SetOrderFields(QStringLiteral("Name,Qty DESC"));
    const QJsonObject json = WriteComponent(&grid);
    EXPECT_EQ(json.value(QStringLiteral("OrderFields")).toString(), QStringLiteral("Name,Qty DESC"));
    grid.SetOrderFields(QString());
    EXPECT_FALSE(WriteComponent(&grid).contains(QStringLiteral("OrderFields"))); // nothing to keep
    EXPECT_TRUE(grid.CurrentDataSetOrder().isEmpty());

    // Read into another grid on the same table: the columns come first, the order marks them,
    // and the data set gets the order once the whole grid is read.
    TQDBGrid copy;
    copy.SetDataSource(&source);
    copy.SetOptionsEx(copy.GetOptionsEx() + dgAutoUpdateOrder);
    ReadComponent(&copy, json);
    EXPECT_EQ(copy.GetOrderFields(), QStringLiteral("Name,Qty DESC"));
    EXPECT_EQ(copy.GetColumns()->FindColumn(QStringLiteral("Qty"))->GetTitle()->GetMarker(), tmDescend);
    EXPECT_EQ(copy.CurrentDataSetOrder(), QStringLiteral("Name,Qty DESC"));
    EXPECT_FALSE(copy.IsLoading());

    QJsonObject bad = json;
    bad[QStringLiteral("OrderFields")] = 5;
    EXPECT_THROW(ReadComponent(&copy, bad), EReadError);
    copy.SetDataSource(nullptr);
}

TEST_F(SortOrder, TitleClicksSortTheTableKeepingTheRecord)
{
    table->SetRecNo(7); // ID 7, Qty 7
    clickTitle("Qty");
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty"));
    EXPECT_EQ(id(), 7);
    clickTitle("Qty"); // again: descending
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty:D"));
    EXPECT_EQ(title("Qty")->GetMarker(), tmDescend);
    EXPECT_EQ(id(), 7);
    EXPECT_EQ(table->RecNo(), 34); // forty records, seventh from the end
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), grid.Row()), QStringLiteral("7")); // on screen too

    // Ctrl adds a level; a plain click starts over.
    clickTitle("Name", Qt::ControlModifier);
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Qty DESC,Name"));
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty:D;Name"));
    clickTitle("Name", Qt::ControlModifier);
    clickTitle("Name", Qt::ControlModifier); // descending, then off
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Qty DESC"));
    clickTitle("Paid");
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Paid"));
    EXPECT_EQ(id(), 7);

    // The same order in other letters and blanks is no change.
    const int before = updates;
    grid.ChangeDataSetOrder(QStringLiteral(" paid "));
    EXPECT_EQ(updates, before);
}

TEST_F(SortOrder, EveryClickOfAQuickPairCounts)
{
    const int raw = grid.DataToRawColumn(grid.GetColumns()->FindColumn(QStringLiteral("Qty"))->Index());
    const QPoint at = grid.CellRect(raw, 0).center();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, at);
    // The second press of a quick pair arrives as a double click.
    QMouseEvent twice(QEvent::MouseButtonDblClick, at, grid.viewport()->mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(grid.viewport(), &twice);
    QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty:D"));
    EXPECT_EQ(title("Qty")->GetMarker(), tmDescend);
}

TEST_F(SortOrder, ColumnsTheDataSetCannotSortByTakeNoMarker)
{
    // A calculated field beside the table's own.
    auto table2 = std::make_unique<TMemTable>();
    for (const char *name : {"ID", "Qty"}) {
        auto *f = new TIntegerField(table2.get());
        f->SetFieldName(QString::fromLatin1(name));
        f->SetDataSet(table2.get());
    }
    auto *doubled = new TIntegerField(table2.get());
    doubled->SetFieldName(QStringLiteral("Doubled"));
    doubled->SetFieldKind(fkCalculated);
    doubled->SetDataSet(table2.get());
    table2->OnCalcFields = [](TDataSet *ds) {
        ds->FieldByName(QStringLiteral("Doubled"))->SetAsInteger(ds->FieldByName(QStringLiteral("Qty"))->AsInteger() * 2);
    };
    table2->CreateDataSet();
    for (int i = 1; i <= 10; ++i)
        table2->AppendRecord({i, 11 - i});
    table2->First();
    source.SetDataSet(table2.get());
    QApplication::processEvents();

    clickTitle("Qty");
    ASSERT_EQ(grid.GetOrderFields(), QStringLiteral("Qty"));
    clickTitle("Doubled"); // nothing happens: not the order, not the markers
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Qty"));
    EXPECT_EQ(title("Doubled")->GetMarker(), tmNone);
    EXPECT_EQ(table2->IndexFieldNames(), QStringLiteral("Qty"));
    grid.SetOrderFields(QStringLiteral("Doubled DESC,ID"));
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("ID"));
    EXPECT_EQ(title("Doubled")->GetMarker(), tmNone);
    source.SetDataSet(table.get());
}

TEST_F(SortOrder, ARefusedOrderPutsTheMarkersBack)
{
    clickTitle("Qty");
    ASSERT_EQ(grid.GetOrderFields(), QStringLiteral("Qty"));
    // A handler of the application's that refuses every order.
    RegisterCustomChangeOrder(QStringLiteral("TMemTable"), [](TQDBGrid *, const QString &order) {
        throw EDatabaseError(QStringLiteral("cannot sort by ") + order);
    }, {}, false, {});
    QStringList told;
    ScopedMessageDlgHook hook([&](const QString &message, TMsgDlgType, TMsgDlgButtons) {
        told << message;
        return mrOk;
    });
    clickTitle("Name"); // the error is told, not thrown out of the click
    UnRegisterChangeOrder(QStringLiteral("TMemTable"), coCustomChangeOrder);
    EXPECT_EQ(told, QStringList{QStringLiteral("cannot sort by Name")});
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Qty"));
    EXPECT_EQ(title("Name")->GetMarker(), tmNone);
    EXPECT_EQ(title("Qty")->GetMarker(), tmAscend);
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty"));
    clickTitle("Qty"); // the next click toggles the order in force
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Qty DESC"));
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty:D"));
}

TEST_F(SortOrder, AscendOnlyNeverDescends)
{
    grid.SetOptions(grid.GetOptions() + dgMarkerAscendOnly);
    grid.SetOptionsEx(grid.GetOptionsEx() - dgAutoAscendOrder); // keep it, whatever the handler says
    clickTitle("Qty");
    clickTitle("Qty");
    clickTitle("Qty");
    EXPECT_EQ(title("Qty")->GetMarker(), tmAscend);
    title("Qty")->SetMarker(tmDescend);
    EXPECT_EQ(title("Qty")->GetMarker(), tmAscend);

    // With dgAutoAscendOrder the handler decides: the in-memory table sorts both ways.
    grid.SetOptionsEx(grid.GetOptionsEx() + dgAutoAscendOrder);
    clickTitle("Name");
    EXPECT_FALSE(grid.GetOptions().Contains(dgMarkerAscendOnly));
}

TEST_F(SortOrder, TheSelectionSurvivesAReorderByKey)
{
    grid.SetOptions(grid.GetOptions() + dgMultiSelect);
    grid.SetOptionsEx(grid.GetOptionsEx() + dgAutoKeepSelection);
    for (int recNo : {3, 10, 22}) {
        table->SetRecNo(recNo);
        grid.SelectRow();
    }
    clickTitle("Qty");
    clickTitle("Qty");
    QList<int> ids;
    for (const TBookmark &b : grid.SelectedRows()) {
        Q_UNUSED(b);
        ids << id();
    }
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, (QList<int>{3, 10, 22}));
}

TEST_F(SortOrder, TheDataSetsOrderCanBecomeTheMarkers)
{
    grid.SetDataSource(nullptr);
    table->SetIndexFieldNames(QStringLiteral("Paid;Qty:D"));
    grid.SetOptionsEx({dgBlankRow, dgLoadCurrentOrder});
    grid.SetDataSource(&source);
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Paid,Qty DESC"));
    EXPECT_EQ(grid.CurrentDataSetOrder(), QStringLiteral("Paid,Qty DESC"));

    // Setting up markers leaves the data set alone.
    grid.SetupOrderFields(QStringLiteral("Name"));
    EXPECT_EQ(title("Name")->GetMarker(), tmAscend);
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Paid;Qty:D"));

    // An order given before there are columns marks them when the data set opens.
    TQDBGrid later;
    later.SetOrderFields(QStringLiteral("Qty DESC"));
    later.SetOptionsEx(later.GetOptionsEx() + dgAutoUpdateOrder);
    later.SetDataSource(&source);
    EXPECT_EQ(later.GetColumns()->FindColumn(QStringLiteral("Qty"))->GetTitle()->GetMarker(), tmDescend);
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty:D"));
    later.SetDataSource(nullptr);
}

TEST_F(SortOrder, WithoutAHandlerTheApplicationIsTold)
{
    class Unknown : public TMemTable
    {
    };
    // A class of the registry's kind by name only: not derived from a registered one.
    Unknown unknown;
    unknown.FieldDefs().Add(QStringLiteral("A"), ftInteger);
    unknown.CreateDataSet();
    int told = 0;
    grid.OnOrderChanged = [&](TObject *) { ++told; };
    source.SetDataSet(&unknown);
    // Unknown derives from TMemTable, whose "*" row serves it: the grid sorts it itself.
    clickTitle("A");
    EXPECT_EQ(told, 0);
    EXPECT_EQ(unknown.IndexFieldNames(), QStringLiteral("A"));
    grid.SetOptionsEx(grid.GetOptionsEx() - dgAutoUpdateOrder);
    clickTitle("A");
    EXPECT_EQ(told, 1);
    source.SetDataSet(table.get());
}

// ---- SQL queries on SQLite and PostgreSQL ----

namespace {

class SortOrderSQL : public SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("sort")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        connection.ExecSQL(QStringLiteral("CREATE TABLE items (id INTEGER PRIMARY KEY, name VARCHAR(30), qty INTEGER)"));
        connection.StartTransaction();
        for (int i = 1; i <= 500; ++i)
            connection.ExecSQL(QStringLiteral("INSERT INTO items (id, name, qty) VALUES (?, ?, ?)"),
                               {i, QStringLiteral("item %1").arg(i, 3, 10, QLatin1Char('0')), (i * 37) % 101});
        connection.Commit();
        query.SetConnection(&connection);
        query.SQL()->SetText(QStringLiteral("SELECT id, name, qty\nFROM items\nORDER BY id;"));
        query.Open();
        source.SetDataSet(&query);
        grid.resize(600, 300);
        grid.SetDataSource(&source);
        grid.SetKeyFields(QStringLiteral("id"));
        grid.SetOptions(grid.GetOptions() + dgMultiSelect);
        // The query's own order becomes the markers, so that applying them changes nothing yet.
        grid.SetOptionsEx(grid.GetOptionsEx() + dgLoadCurrentOrder + dgAutoUpdateOrder + dgAutoKeepSelection);
        grid.show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        query.Close();
        SQLTableTest::TearDown();
    }
    int value(const char *field) { return query.FieldByName(QString::fromLatin1(field))->AsInteger(); }

    TSQLQuery query;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_P(SortOrderSQL, ATitleClickRewritesTheOrderByAndKeepsRecordAndSelection)
{
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("id"));
    EXPECT_EQ(query.SQL()->Text().trimmed(), QStringLiteral("SELECT id, name, qty\nFROM items\nORDER BY id;"));
    for (int recNo : {5, 50}) {
        query.SetRecNo(recNo);
        grid.SelectRow();
    }
    query.SetRecNo(120);
    ASSERT_EQ(value("id"), 120);
    const int raw = grid.DataToRawColumn(grid.GetColumns()->FindColumn(QStringLiteral("qty"))->Index());
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(raw, 0).center());
    EXPECT_EQ(query.SQL()->Text().trimmed(), QStringLiteral("SELECT id, name, qty\nFROM items\nORDER BY qty;"));
    EXPECT_TRUE(query.Active());
    EXPECT_EQ(value("id"), 120); // the same record, wherever it is now
    EXPECT_EQ(grid.SelectedRows().Count(), 2);
    // The rows come in the new order.
    query.First();
    int last = -1;
    for (int i = 0; i < 50 && !query.Eof(); ++i, query.Next()) {
        EXPECT_GE(value("qty"), last);
        last = value("qty");
    }

    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(raw, 0).center());
    EXPECT_TRUE(query.SQL()->Text().contains(QStringLiteral("ORDER BY qty DESC;")));
    query.First();
    EXPECT_EQ(value("qty"), 100);
}

TEST_P(SortOrderSQL, ATitleClickKeepsTheWidthsTheUserGave)
{
    TQDBGridColumns *columns = grid.GetColumns();
    const int id = value("id"), qty = value("qty");
    query.FieldByName(QStringLiteral("qty"))->SetIndex(0); // the application moved it first
    EXPECT_EQ(value("id"), id); // each field still shows its own column
    EXPECT_EQ(value("qty"), qty);
    ASSERT_EQ(columns->Items(0)->GetFieldName(), QStringLiteral("qty"));
    TQColumn *name = columns->FindColumn(QStringLiteral("name"));
    name->SetWidth(180); // as a drag of the border does
    const int qtyWidth = columns->FindColumn(QStringLiteral("qty"))->GetWidth();
    const int raw = grid.DataToRawColumn(name->Index());
    auto expectWidths = [&](const char *after) {
        SCOPED_TRACE(after);
        EXPECT_EQ(columns->Items(0)->GetFieldName(), QStringLiteral("qty"));
        TQColumn *now = columns->FindColumn(QStringLiteral("name"));
        ASSERT_NE(now, nullptr);
        EXPECT_NEAR(now->GetWidth(), 180, 8); // kept in characters of the font
        EXPECT_EQ(grid.ColWidths(raw), now->GetWidth());
        EXPECT_EQ(columns->FindColumn(QStringLiteral("qty"))->GetWidth(), qtyWidth);
    };
    const int qtyRaw = grid.DataToRawColumn(columns->FindColumn(QStringLiteral("qty"))->Index());
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(qtyRaw, 0).center());
    ASSERT_TRUE(query.SQL()->Text().contains(QStringLiteral("ORDER BY qty")));
    expectWidths("a title click");
    query.Close();
    query.Open();
    expectWidths("the same query opened again");
    query.Close();
    query.SQL()->SetText(QStringLiteral("SELECT id, qty FROM items"));
    query.Open();
    EXPECT_EQ(columns->FindColumn(QStringLiteral("name")), nullptr); // other fields: other columns
}

TEST_P(SortOrderSQL, ARefusedOrderLeavesTheGridUsable)
{
    query.SetRecNo(42);
    try {
        grid.ChangeDataSetOrder(QStringLiteral("no_such_column DESC"));
        FAIL() << "the server accepted an unknown column";
    } catch (const EDatabaseError &) {
    }
    // The old query came back, at the same record, and the grid is not locked.
    EXPECT_TRUE(query.Active());
    EXPECT_TRUE(query.SQL()->Text().contains(QStringLiteral("ORDER BY id;")));
    EXPECT_EQ(value("id"), 42);
    EXPECT_FALSE(grid.UpdateLocked());
    QTest::keyClick(&grid, Qt::Key_Down);
    EXPECT_EQ(value("id"), 43);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(0), grid.Row()), QStringLiteral("43"));
}

TEST_P(SortOrderSQL, ANameWithABlankIsQuotedInTheQueryAndReadBack)
{
    connection.ExecSQL(QStringLiteral("CREATE TABLE priced (id INTEGER PRIMARY KEY, \"Unit Price\" INTEGER)"));
    for (int i = 1; i <= 30; ++i)
        connection.ExecSQL(QStringLiteral("INSERT INTO priced VALUES (?, ?)"), {i, (i * 7) % 31});
    TSQLQuery priced;
    priced.SetConnection(&connection);
    priced.SQL()->SetText(QStringLiteral("SELECT id, \"Unit Price\" FROM priced ORDER BY id"));
    priced.Open();
    source.SetDataSet(&priced);
    QApplication::processEvents();
    const int raw = grid.DataToRawColumn(grid.GetColumns()->FindColumn(QStringLiteral("Unit Price"))->Index());
    for (const char *expected : {"ORDER BY \"Unit Price\"", "ORDER BY \"Unit Price\" DESC"}) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(raw, 0).center());
        EXPECT_TRUE(priced.SQL()->Text().contains(QString::fromLatin1(expected))) << priced.SQL()->Text().toStdString();
    }
    priced.First();
    EXPECT_EQ(priced.FieldByName(QStringLiteral("Unit Price"))->AsInteger(), 30);
    // A query opened with such an order gives the grid its markers.
    source.SetDataSet(&query);
    priced.SQL()->SetText(QStringLiteral("SELECT id, \"Unit Price\" FROM priced ORDER BY \"Unit Price\""));
    priced.Open();
    source.SetDataSet(&priced);
    EXPECT_EQ(grid.GetOrderFields(), QStringLiteral("Unit Price"));
    EXPECT_EQ(grid.GetColumns()->FindColumn(QStringLiteral("Unit Price"))->GetTitle()->GetMarker(), tmAscend);
    source.SetDataSet(&query);
}

INSTANTIATE_TEST_SUITE_P(Databases, SortOrderSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);

// ---- the adapters ----

#include "OrderTestDataSets.h"
#include "grid/QDBGridsADO.h"
#include "grid/QDBGridsCDS.h"

TEST_F(SortOrder, TheClientDataSetAdapterKeepsDescendingFieldsInAnIndexOfItsOwn)
{
    InitializeQDBGridsCDS();
    InitializeQDBGridsCDS(); // nested: one finalisation leaves it in place
    FinalizeQDBGridsCDS();
    table->SetRecNo(12);
    grid.SetOrderFields(QStringLiteral("Paid DESC,Qty"));
    EXPECT_EQ(table->IndexName(), QStringLiteral("TQDBGridIndex"));
    const TIndexDef *def = table->IndexDefs().Find(QStringLiteral("TQDBGridIndex"));
    ASSERT_NE(def, nullptr);
    EXPECT_EQ(def->Fields, QStringLiteral("Paid;Qty"));
    EXPECT_EQ(def->DescFields, QStringLiteral("Paid"));
    EXPECT_EQ(grid.CurrentDataSetOrder(), QStringLiteral("Paid DESC,Qty"));
    EXPECT_EQ(id(), 12);
    table->First();
    EXPECT_TRUE(table->FieldByName(QStringLiteral("Paid"))->AsBoolean());

    // Ascending only: the plain field list, and the index is gone.
    grid.SetOrderFields(QStringLiteral("Qty"));
    EXPECT_TRUE(table->IndexName().isEmpty());
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty"));
    EXPECT_EQ(table->IndexDefs().IndexOf(QStringLiteral("TQDBGridIndex")), -1);
    FinalizeQDBGridsCDS();
    // Back to the built-in handler: suffixes in the field list.
    grid.SetOrderFields(QStringLiteral("Qty DESC"));
    EXPECT_EQ(table->IndexFieldNames(), QStringLiteral("Qty:D"));
}

TEST_F(SortOrder, TheADOAdapterSortsThroughSortOnAClientCursor)
{
    InitializeQDBGridsADO();
    test::TADOQuery query;
    query.FieldDefs().Add(QStringLiteral("ID"), ftInteger);
    query.FieldDefs().Add(QStringLiteral("Name"), ftString, 10);
    query.CreateDataSet();
    for (int i = 1; i <= 5; ++i)
        query.AppendRecord({i, QStringLiteral("n%1").arg(6 - i)});
    query.SQL()->SetText(QStringLiteral("SELECT * FROM t ORDER BY ID"));
    source.SetDataSet(&query);
    grid.SetOrderFields(QStringLiteral("Name"));
    EXPECT_EQ(query.Sort(), QStringLiteral("Name"));
    query.First();
    EXPECT_EQ(query.FieldByName(QStringLiteral("ID"))->AsInteger(), 5);
    EXPECT_EQ(grid.CurrentDataSetOrder(), QStringLiteral("Name"));

    // A server cursor cannot sort this way: another handler serves it (the in-memory
    // table's, the class deriving from it), and Sort is left alone.
    query.cursorLocation = test::clUseServer;
    grid.SetOrderFields(QStringLiteral("ID DESC"));
    EXPECT_EQ(query.Sort(), QStringLiteral("Name"));
    EXPECT_EQ(query.IndexFieldNames(), QStringLiteral("ID:D"));
    FinalizeQDBGridsADO();
    source.SetDataSet(table.get());
}
