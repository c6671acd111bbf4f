// The auto filter over SQLite and PostgreSQL tables: the ticked values the database looks
// for must select the very rows the grid's record handler accepts record by record, for
// numbers, floats that print alike, decimals, text in any case and with blanks, dates,
// times, truth values and NULLs; the value lists the database gives must offer what the walk
// of the records finds, a long one a page at a time; and nothing typed runs as SQL.

#include "CountingGrid.h"
#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "filter/QDBFilter.h"
#include "filter/QDBFilterList.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

using namespace qdb;
using namespace qdb::test;

namespace {

const char *const Names[] = {"apple", "APPLE", "Apple ", " apple", "", "\xc3\x84pfel", "\xc3\xa4pfel", "pear", "50%"};
constexpr double Prices[] = {0.1 + 0.2, 0.3, 1.5, -2.25, 1e-7, 100.0, 0.30000000000000004, 2.675};

class FilterSQL : public SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("filter")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        FillTable(QStringLiteral("qty INTEGER, price %1, amount NUMERIC(12,2), name VARCHAR(20), day DATE, stamp %2, flag BOOLEAN")
                      .arg(FloatType(), pg() ? QStringLiteral("TIMESTAMP") : QStringLiteral("DATETIME")),
                  48, [this](int id) {
                      const QDateTime stamp(QDate(2024, 3, 1 + id % 3), QTime(id % 2 * 10, id % 4, 0, id % 5 == 0 ? 500 : 0));
                      return QList<Variant>{
                          NullEvery(id, 7, id % 6 - 2), NullEvery(id, 11, Prices[id % 8]),
                          NullEvery(id, 5, QStringLiteral("%1.%2").arg(id % 4).arg(id % 3 * 25, 2, 10, QLatin1Char('0'))),
                          NullEvery(id, 13, QString::fromUtf8(Names[id % 9])),
                          NullEvery(id, 8, QDate(2024, 1, 1).addDays(id % 4).toString(Qt::ISODate)),
                          NullEvery(id, 9, stamp.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"))),
                          NullEvery(id, 3, Flag(id % 2 == 0))};
                  });
        source.SetDataSet(&table);
        grid.SetKeyFields(QStringLiteral("id"));
        grid.SetDataSource(&source);
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        SQLTableTest::TearDown();
    }
    TQColumn *column(const QString &field) { return grid.GetColumns()->FindColumn(field); }
    QList<int> ids()
    {
        QList<int> result;
        for (table.First(); !table.Eof(); table.Next())
            result << table.FieldByName(QStringLiteral("id"))->AsInteger();
        return result;
    }
    void tick(const QString &field, const QStringList &values)
    {
        TStrings *list = column(field)->GetFilterList();
        list->BeginUpdate();
        list->Clear();
        list->AddStrings(values);
        list->EndUpdate();
    }
    // The rows through the database, then through the handler asked for each record.
    void expectBothPathsAgree(const QString &what)
    {
        SCOPED_TRACE(what.toStdString());
        grid.asked = 0;
        grid.GetFilterGrid()->FilterChanged();
        const QList<int> fromDatabase = ids();
        const int count = table.RecordCount();
        EXPECT_EQ(grid.asked, 0) << "the records were walked";
        grid.SetFilterRecord(TFilterRecordEvent([](TDataSet *, bool &) {}, this));
        grid.SetFiltered(true);
        const QList<int> walked = ids();
        EXPECT_GT(grid.asked, 0);
        EXPECT_EQ(fromDatabase, walked);
        EXPECT_EQ(count, walked.size());
        grid.SetFiltered(false);
        grid.SetFilterRecord(nullptr);
    }

    struct Entry
    {
        QString list;
        int count = 0;
    };
    // The list's values by key, those equal but for case as one (as the filter matches them),
    // and the keys in list order.
    static std::map<QString, Entry> entries(TQDBFilterData &data, QStringList *order = nullptr)
    {
        std::map<QString, Entry> result;
        for (int i = 0; i < data.Count(); ++i) {
            Entry &e = result[data.KeyValue(i).toCaseFolded()];
            if (e.list.isEmpty())
                e.list = data.ListValue(i);
            e.count += data.RecordsOf(i);
            if (order && !order->contains(data.KeyValue(i), Qt::CaseInsensitive))
                *order << data.KeyValue(i);
        }
        return result;
    }
    // The column's list from the database and from the walk (an application's record
    // handler makes the records the only ones who can tell).
    void expectBothPathsAgree(const char *field, bool sameOrder)
    {
        SCOPED_TRACE(field);
        TQDBGridFilterList fromDatabase(&grid, column(field));
        fromDatabase.LoadFilterData();
        EXPECT_TRUE(fromDatabase.FromDatabase());
        grid.SetFilterRecord(TFilterRecordEvent([](TDataSet *, bool &) {}, this));
        grid.SetFiltered(true);
        TQDBGridFilterList walked(&grid, column(field));
        walked.LoadFilterData();
        EXPECT_FALSE(walked.FromDatabase());
        grid.SetFiltered(false);
        grid.SetFilterRecord(nullptr);
        QStringList databaseOrder, walkOrder;
        const auto a = entries(*fromDatabase.FilterData(), &databaseOrder);
        const auto b = entries(*walked.FilterData(), &walkOrder);
        ASSERT_EQ(a.size(), b.size());
        for (auto i = a.begin(), j = b.begin(); i != a.end(); ++i, ++j) {
            EXPECT_EQ(i->first, j->first);
            EXPECT_EQ(i->second.list, j->second.list) << i->first.toStdString();
            EXPECT_EQ(i->second.count, j->second.count) << i->first.toStdString();
        }
        if (sameOrder) {
            EXPECT_EQ(databaseOrder, walkOrder);
        }
    }
    TQColumn *column(const char *field) { return column(QString::fromLatin1(field)); }

    TDataSource source;
    CountingGrid grid;
};

// The texts the field shows for these values, as a user would tick them.
QStringList texts(TField *f, const QList<double> &values)
{
    QStringList result;
    TDataSet *ds = f->DataSet();
    for (double v : values) {
        bool found = false;
        for (ds->First(); !ds->Eof() && !found; ds->Next())
            if (!f->IsNull() && f->AsFloat() == v) {
                result << f->Text();
                found = true;
            }
    }
    return result;
}

} // namespace

TEST_P(FilterSQL, TickedValuesSelectWhatTheRecordHandlerAccepts)
{
    const auto field = [this](const char *name) { return table.FieldByName(QString::fromLatin1(name)); };
    const QString date = DateToStr(EncodeDate(2024, 1, 2));
    const QList<std::pair<const char *, QStringList>> cases = {
        {"qty", {QStringLiteral("2"), QStringLiteral("-1")}},
        {"qty", {QStringLiteral("02"), QStringLiteral("x"), QStringLiteral("+3")}},
        {"qty", {QString(), QStringLiteral("0")}},
        {"price", {QStringLiteral("0.3")}},
        {"price", texts(field("price"), {1e-7, 2.675, -2.25})},
        {"price", {QStringLiteral("1.50"), QString()}},
        {"amount", {QStringLiteral("1.25"), QStringLiteral("3.5"), QStringLiteral("0")}},
        {"name", {QStringLiteral("apple")}},
        {"name", {QStringLiteral("apple "), QStringLiteral("\xc3\xa4PFEL")}},
        {"name", {QString(), QStringLiteral("50%")}},
        {"name", {QStringLiteral("5_%"), QStringLiteral("app%")}},
        {"day", {date, QString()}},
        {"day", {QStringLiteral("2024-01-02"), QStringLiteral("1/32/2024")}},
        {"stamp", texts(field("stamp"), {EncodeDate(2024, 3, 2) + 10.0 / 24 + 1.0 / 1440})},
        {"stamp", {QString()}},
        {"flag", {QStringLiteral("TRUE")}},
        {"flag", {QStringLiteral("false"), QString()}},
    };
    for (const auto &[name, values] : cases) {
        tick(QString::fromLatin1(name), values);
        expectBothPathsAgree(QStringLiteral("%1 in %2").arg(QString::fromLatin1(name), values.join(QLatin1Char('|'))));
        tick(QString::fromLatin1(name), {});
    }
    // Several columns, and a condition of the filter form beside them.
    tick(QStringLiteral("name"), {QStringLiteral("APPLE"), QStringLiteral("pear")});
    tick(QStringLiteral("flag"), {QStringLiteral("True")});
    expectBothPathsAgree(QStringLiteral("two columns"));
    column(QStringLiteral("qty"))->SetFilterText(QStringLiteral("qty >= 0"));
    expectBothPathsAgree(QStringLiteral("two columns and a condition"));

    // More ticked values than a statement may bind: the records are tested as read.
    const QList<int> few = ids();
    QStringList many;
    for (int i = 0; i < 70000; ++i)
        many << QStringLiteral("not a name %1").arg(i);
    tick(QStringLiteral("name"), many + QStringList({QStringLiteral("APPLE"), QStringLiteral("pear")}));
    EXPECT_EQ(ids(), few);
}

TEST_P(FilterSQL, NothingTypedRunsAsSQL)
{
    tick(QStringLiteral("name"), {QStringLiteral("x'); DROP TABLE t; --"), QStringLiteral("apple")});
    EXPECT_EQ(ids().size(), 11);
    for (const QString &bad : {QStringLiteral("name = 'x'; DROP TABLE t; --'"), QStringLiteral("name = 'x' /* y */"),
                               QStringLiteral("qty = 1; DELETE FROM t")})
        EXPECT_THROW(column(QStringLiteral("name"))->SetFilterText(bad), EDatabaseError);
    column(QStringLiteral("name"))->SetFilterText(QStringLiteral("name LIKE '%''; DROP TABLE t; --%'"));
    EXPECT_EQ(ids(), QList<int>{});
    grid.GetFilterGrid()->ClearAutoFilter();
    EXPECT_EQ(connection.ExecScalar(QStringLiteral("SELECT COUNT(*) FROM t")).ToInt64(), 48);
    EXPECT_EQ(ids().size(), 48);
}

TEST_P(FilterSQL, ValueListsFromTheDatabaseHoldWhatTheWalkFinds)
{
    grid.GetFilterGrid()->SetAutoFilter(true);
    // Numbers, dates and truth values list in the same order: NULL first, then by value.
    for (const char *field : {"qty", "price", "amount", "day", "flag"})
        expectBothPathsAgree(field, true);
    expectBothPathsAgree("name", false); // texts: in the database's collation
    // Under the filters of the columns and of the application.
    column("qty")->SetFilterText(QStringLiteral("qty >= 0"));
    column("flag")->GetFilterList()->SetText(QStringLiteral("True"));
    for (const char *field : {"name", "price", "day"})
        expectBothPathsAgree(field, std::string(field) != "name");

    // Ticked values first, over every record: asked of the database apart from the rest.
    column("qty")->SetFilterText(QString());
    grid.GetFilterGrid()->SwitchOptions({foCheckedFirst, foLoadAllItems}, true);
    column("qty")->GetFilterList()->SetText(QStringLiteral("2\n-1"));
    expectBothPathsAgree("qty", true);
    column("name")->GetFilterList()->SetText(QStringLiteral("pear\nAPPLE"));
    expectBothPathsAgree("name", false);
    TQDBGridFilterList ticked(&grid, column("name"));
    ticked.LoadFilterData();
    QStringList first;
    for (int i = 0; i < 3; ++i)
        first << ticked.FilterData()->KeyValue(i).toCaseFolded();
    first.sort();
    EXPECT_EQ(first, QStringList({"apple", "apple", "pear"})); // "apple" and "APPLE" apart
}

TEST_P(FilterSQL, ALongValueListComesAPageAtATime)
{
    grid.GetFilterGrid()->SetAutoFilter(true);
    const int rows = TQDBGridFilterList::PageValues * 2 + 100;
    connection.StartTransaction();
    for (int id = 1000; id < 1000 + rows; ++id)
        connection.ExecSQL(QStringLiteral("INSERT INTO t (id, qty, name) VALUES (?, ?, ?)"),
                           {id, id % 3, QStringLiteral("v%1").arg(id, 5, 10, QLatin1Char('0'))});
    connection.Commit();
    table.Refresh();
    TQDBGridFilterList list(&grid, column("id"));
    list.LoadFilterData();
    TQDBFilterData *data = list.FilterData();
    EXPECT_EQ(data->Count(), TQDBGridFilterList::PageValues);
    EXPECT_TRUE(list.HasMore());
    list.ReadMore();
    list.ReadMore();
    EXPECT_FALSE(list.HasMore());
    ASSERT_EQ(data->Count(), rows + 48);
    for (int i = 0; i < data->Count(); ++i)
        ASSERT_EQ(data->KeyValue(i), QString::number(i < 48 ? i + 1 : 1000 + i - 48)) << i;

    // The list reads on as the user goes to its end.
    grid.grab();
    grid.ShowAutoFilter(column("id"));
    auto *popup = grid.findChild<TQDBPopupFilterList *>();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->DataSet()->RecordCount(), TQDBGridFilterList::PageValues);
    QTest::keyClick(popup, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(popup->DataSet()->RecordCount(), 2 * TQDBGridFilterList::PageValues);
    QTest::keyClick(popup, Qt::Key_Escape);
    QApplication::processEvents();

    // Typing narrows the list in the database.
    grid.GetFilterGrid()->SwitchOptions({foIncrementalList}, true);
    grid.ShowAutoFilter(column("name"));
    popup = grid.findChild<TQDBPopupFilterList *>();
    ASSERT_TRUE(popup);
    QTest::keyClicks(popup, QStringLiteral("V010"));
    auto *shown = qobject_cast<TQDBFilterData *>(popup->DataSet());
    ASSERT_EQ(shown->Count(), 100); // v01000 .. v01099
    EXPECT_EQ(shown->ListValue(0), "v01000");
    popup->ToggleCheck(); // a Space this soon would go on with the text
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(column("name")->GetFilterList()->ToStringList(), QStringList({"v01000"}));
}

TEST_P(FilterSQL, TicksFindsAndPastesReachBeyondTheLoadedPages)
{
    grid.GetFilterGrid()->SetAutoFilter(true);
    grid.GetFilterGrid()->SwitchOptions({foAutoApplyList}, false);
    grid.GetFilterGrid()->SwitchOptions({foLoadAllItems}, true); // not only the rows ticked before
    const int rows = TQDBGridFilterList::PageValues * 2 + 100;
    connection.StartTransaction();
    for (int id = 1000; id < 1000 + rows; ++id)
        connection.ExecSQL(QStringLiteral("INSERT INTO t (id, name) VALUES (?, ?)"),
                           {id, QStringLiteral("v%1").arg(id, 5, 10, QLatin1Char('0'))});
    connection.Commit();
    table.Refresh();
    grid.grab();
    const auto open = [this] {
        QApplication::processEvents(); // the list closed before goes
        grid.ShowAutoFilter(column("name"));
        auto *popup = grid.findChild<TQDBPopupFilterList *>();
        EXPECT_TRUE(popup && popup->DataSet()->RecordCount() <= TQDBGridFilterList::PageValues);
        return popup;
    };

    // A ticked value the first page lacks stays ticked when another is ticked.
    tick("name", {"v02050"});
    TQDBPopupFilterList *popup = open();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->CheckedCount(), 1);
    QTest::keyClick(popup, Qt::Key_Space);
    QTest::keyClick(popup, Qt::Key_Return);
    const QString first = column("name")->GetFilterList()->Strings(0);
    EXPECT_EQ(column("name")->GetFilterList()->ToStringList(), QStringList({first, "v02050"}));

    // Pasted values are looked for in the database.
    popup = open();
    ASSERT_TRUE(popup);
    QGuiApplication::clipboard()->setText(QStringLiteral("V02070\nv02080\t7\nv9\n%\n"));
    EXPECT_EQ(popup->PasteFromClipboard(), 2);
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(column("name")->GetFilterList()->ToStringList(), QStringList({first, "v02050", "v02070", "v02080"}));

    // Typing reads on to the value it finds; the ticks waiting for it show.
    popup = open();
    ASSERT_TRUE(popup);
    QTest::keyClicks(popup, QStringLiteral("v0207"));
    auto *data = qobject_cast<TQDBFilterData *>(popup->DataSet());
    EXPECT_EQ(data->ListValue(data->RecordIndex()), "v02070");
    int at = 0;
    EXPECT_TRUE(popup->SelectedRows().Find(TQDBCustomData::IndexBookmark(data->RecordIndex()), at));
    QTest::keyClick(popup, Qt::Key_Escape);
    QTest::keyClicks(popup, QStringLiteral("v9")); // nothing: the list stays as it is
    EXPECT_TRUE(popup->isVisible());

    // Ticking every value reads them all.
    popup->TitleClick(TQDBPopupFilterList::cmCheckAll); // clears
    popup->TitleClick(TQDBPopupFilterList::cmCheckAll);
    EXPECT_EQ(popup->CheckedCount(), data->Count());
    EXPECT_EQ(data->Count(), rows + 9); // and the names of the 48 rows, NULL with the empty one
    QTest::keyClick(popup, Qt::Key_Escape);
}

INSTANTIATE_TEST_SUITE_P(Databases, FilterSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);
