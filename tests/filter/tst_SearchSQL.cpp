// The grid's search over SQLite and PostgreSQL tables: the records the database finds must be
// exactly those the walk of an in-memory copy finds, cell by cell in both directions and as
// the rows the row filter keeps, for text in any case, accents and letters whose upper case
// is longer, whole words, numbers, dates, truth values and NULLs; nothing typed runs as SQL.

#include "CountingGrid.h"
#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "filter/QDBSearchPanel.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/TextSearch.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

using namespace qdb;
using namespace qdb::test;

namespace {

const char *const Names[] = {
    "Paris",          "paris cafe",      "Martin",    "art",      "art-deco",  "Stuttgart", "art1 b",     "\xc3\x84pfel",
    "\xc3\xa4pfel",   "Stra\xc3\x9f" "e", "STRASSE",   "50% off",  "a_b",       "axb",       "it's",       "back\\slash",
    "say \"hi\"",     "   ",             "",          "\xc4\xb1stanbul" /* dotless i */, "\xc5\xbf" "afe" /* long s */,
    "\xef\xac\x81le" /* fi ligature */,  "x' OR 1=1 --", "Ren\xc3\xa9", "RENE",
};
constexpr int NameCount = int(std::size(Names));

class SearchSQL : public SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("search")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        FillTable(QStringLiteral("name VARCHAR(40), note TEXT, qty INTEGER, price %1, day DATE, flag BOOLEAN").arg(FloatType()),
                  60, [this](int id) {
                      return QList<Variant>{NullEvery(id, 17, QString::fromUtf8(Names[id % NameCount])),
                                            NullEvery(id, 7, QString::fromUtf8(Names[(id * 7) % NameCount]) + QStringLiteral(" %1").arg(id)),
                                            NullEvery(id, 5, id % 9 - 3), NullEvery(id, 6, id * 1.25),
                                            NullEvery(id, 8, QDate(2024, 1, 1).addDays(id).toString(Qt::ISODate)),
                                            NullEvery(id, 4, Flag(id % 3 == 0))};
                  });
        copyRows();
        sqlSource.SetDataSet(&table);
        sqlGrid.SetDataSource(&sqlSource);
        memGrid.SetDataSource(&memSource);
    }
    void TearDown() override
    {
        sqlGrid.SetDataSource(nullptr);
        SQLTableTest::TearDown();
    }

    // The same records in memory, in the table's order, walked by the grid's own test.
    void copyRows()
    {
        copy = std::make_unique<TMemTable>();
        for (TField *f : table.Fields())
            copy->FieldDefs().Add(f->FieldName(), f->DataType(), f->Size());
        copy->CreateDataSet();
        for (table.First(); !table.Eof(); table.Next()) {
            QList<Variant> values;
            for (TField *f : table.Fields())
                values << f->Value();
            copy->AppendRecord(values);
        }
        table.First();
        copy->First();
        memSource.SetDataSet(copy.get());
    }

    // Every cell the search stops at, from one end to the other.
    static QStringList cells(TQDBGrid &grid, const QString &text, TQSearchOptions options, bool forward)
    {
        QStringList found;
        TDataSet *ds = grid.DataSet();
        bool more = grid.SearchCell(forward ? smFirst : smLast, text, options);
        for (int guard = 0; more && guard < 400; ++guard) {
            found << QStringLiteral("%1:%2").arg(ds->FieldByName(QStringLiteral("id"))->AsInteger()).arg(grid.Col());
            more = grid.SearchCell(forward ? smNext : smPrev, text, options);
        }
        return found;
    }
    static QList<int> ids(TDataSet &ds)
    {
        QList<int> result;
        for (ds.First(); !ds.Eof(); ds.Next())
            result << ds.FieldByName(QStringLiteral("id"))->AsInteger();
        return result;
    }
    // Whether the database can find the records for this search on its own.
    int databaseFinds(const QString &text, TQSearchOptions options)
    {
        TTextSearch search;
        search.Text = text;
        search.CaseSensitive = options.Contains(soCaseSensitive);
        search.WholeWords = options.Contains(soWholeWords);
        for (TField *f : table.Fields())
            search.FieldNames << f->FieldName();
        return table.FindText(search, TSearchFrom::First, [&] {
            for (TField *f : table.Fields())
                if (TextSearchPos(text, f->DisplayText(), search.CaseSensitive, search.WholeWords) > 0)
                    return true;
            return false;
        });
    }
    void expectBothPathsAgree(const QString &text, TQSearchOptions options)
    {
        SCOPED_TRACE(QStringLiteral("'%1' %2").arg(text.left(40)).arg(options.Bits()).toStdString());
        EXPECT_EQ(cells(sqlGrid, text, options, true), cells(memGrid, text, options, true));
        EXPECT_EQ(cells(sqlGrid, text, options, false), cells(memGrid, text, options, false));

        const bool described = databaseFinds(text, options) >= 0;
        sqlGrid.asked = 0;
        for (TQDBGrid *grid : {static_cast<TQDBGrid *>(&sqlGrid), static_cast<TQDBGrid *>(&memGrid)}) {
            grid->GetSearch()->SetOptions(options + soFilterRows);
            grid->GetSearch()->SetText(text);
        }
        const QList<int> kept = ids(*copy);
        EXPECT_EQ(ids(table), kept);
        if (!pg() && described) { // SQLite tests the rule itself: no record needs the grid's word
            EXPECT_EQ(table.RecordCount(), kept.size());
            EXPECT_EQ(sqlGrid.asked, 0);
        }
        for (TQDBGrid *grid : {static_cast<TQDBGrid *>(&sqlGrid), static_cast<TQDBGrid *>(&memGrid)}) {
            grid->GetSearch()->SetText(QString());
            grid->GetSearch()->SetOptions({});
        }
    }

    std::unique_ptr<TMemTable> copy;
    TDataSource sqlSource, memSource;
    CountingGrid sqlGrid;
    TQDBGrid memGrid;
};

} // namespace

TEST_P(SearchSQL, TheDatabaseFindsWhatTheWalkFinds)
{
    const QStringList texts = {
        QStringLiteral("art"),       QStringLiteral("ART"),       QStringLiteral("paris"),    QString::fromUtf8("\xc3\xa4pfel"),
        QString::fromUtf8("\xc3\x84PFEL"), QStringLiteral("strasse"), QString::fromUtf8("\xc3\x9f"), QStringLiteral("SS"),
        QStringLiteral("i"),         QStringLiteral("S"),         QStringLiteral("fi"),       QString::fromUtf8("REN\xc3\x89"),
        QStringLiteral("e"),         QStringLiteral("1"),         QStringLiteral("-1"),       QStringLiteral("12"),
        QStringLiteral("True"),      QStringLiteral("rue"),       QStringLiteral("Memo"),
    };
    for (const QString &text : texts)
        for (const TQSearchOptions options : {TQSearchOptions{}, TQSearchOptions{soCaseSensitive}, TQSearchOptions{soWholeWords},
                                              TQSearchOptions{soCaseSensitive, soWholeWords}})
            expectBothPathsAgree(text, options);
    // Only the column the user is in.
    sqlGrid.SetCol(2);
    memGrid.SetCol(2);
    expectBothPathsAgree(QStringLiteral("art"), {soCurrentCol});

    // Text, whole numbers and truth values are the database's to find; a digit may be in a
    // date or a price, whose texts only the records know.
    EXPECT_GE(databaseFinds(QStringLiteral("art"), {}), 0);
    EXPECT_GE(databaseFinds(QStringLiteral("true"), {soWholeWords}), 0);
    EXPECT_EQ(databaseFinds(QStringLiteral("12"), {}), -1);
    expectBothPathsAgree(QStringLiteral("2024"), {});
}

TEST_P(SearchSQL, InTheDataSetsOrderWithItsNulls)
{
    for (const char *order : {"name;id", "note DESC;id", "flag;name DESC;id"}) {
        SCOPED_TRACE(order);
        table.SetIndexFieldNames(QString::fromLatin1(order));
        copyRows();
        for (const char *text : {"art", "e", "paris"})
            expectBothPathsAgree(QString::fromLatin1(text), {});
        // From a record in the middle, both ways.
        table.MoveBy(30);
        copy->MoveBy(30);
        EXPECT_EQ(sqlGrid.SearchCell(smNext, QStringLiteral("a"), {}), memGrid.SearchCell(smNext, QStringLiteral("a"), {}));
        EXPECT_EQ(table.FieldByName(QStringLiteral("id"))->AsInteger(), copy->FieldByName(QStringLiteral("id"))->AsInteger());
        EXPECT_EQ(sqlGrid.SearchCell(smPrev, QStringLiteral("s"), {soCurrentCol}),
                  memGrid.SearchCell(smPrev, QStringLiteral("s"), {soCurrentCol}));
        EXPECT_EQ(table.FieldByName(QStringLiteral("id"))->AsInteger(), copy->FieldByName(QStringLiteral("id"))->AsInteger());
    }
}

TEST_P(SearchSQL, TypedTextIsLookedForAsItStands)
{
    // Pattern characters, quotes, backslashes and blanks find the cells holding them.
    for (const char *text : {"%", "_", "a_b", "50%", "'", "it's", "\\", "\"", "   ", "x' OR 1=1 --"}) {
        expectBothPathsAgree(QString::fromUtf8(text), {});
        EXPECT_FALSE(cells(sqlGrid, QString::fromUtf8(text), {}, true).isEmpty()) << text;
    }
    // A megabyte finds nothing and fails nothing; nothing is looked for without a text.
    const QString huge(1 << 20, QLatin1Char('z'));
    EXPECT_TRUE(cells(sqlGrid, huge, {}, true).isEmpty());
    EXPECT_EQ(databaseFinds(huge, {}), 0);
    EXPECT_FALSE(sqlGrid.SearchCell(smFirst, QString(), {}));
    EXPECT_EQ(ids(table).size(), 60);
}

TEST_P(SearchSQL, ThePanelsKeysOnTheDatabase)
{
    MessageLog messages;
    sqlGrid.resize(700, 300);
    sqlGrid.show();
    QApplication::setActiveWindow(&sqlGrid);
    sqlGrid.setFocus();
    table.First();
    QTest::keyClick(&sqlGrid, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(sqlGrid.SearchPanel());
    QLineEdit *edit = sqlGrid.SearchPanel()->SearchBox()->lineEdit();
    QTest::keyClicks(edit, QStringLiteral("MARTIN"));
    QTest::keyClick(edit, Qt::Key_Return);
    const auto id = [this] { return table.FieldByName(QStringLiteral("id"))->AsInteger(); };
    // "Martin" is the name of ids 2, 27 and 52, and in the notes of some others.
    const QStringList expected = cells(memGrid, QStringLiteral("MARTIN"), {}, true);
    ASSERT_GE(expected.size(), 3);
    QStringList seen{QStringLiteral("%1:%2").arg(id()).arg(sqlGrid.Col())};
    for (int i = 1; i < expected.size(); ++i) {
        QTest::keyClick(edit, Qt::Key_F3);
        seen << QStringLiteral("%1:%2").arg(id()).arg(sqlGrid.Col());
    }
    EXPECT_EQ(seen, expected);
    QTest::keyClick(edit, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(QStringLiteral("%1:%2").arg(id()).arg(sqlGrid.Col()), expected[expected.size() - 2]);
    QTest::keyClick(edit, Qt::Key_F3, Qt::ControlModifier);
    EXPECT_EQ(QStringLiteral("%1:%2").arg(id()).arg(sqlGrid.Col()), expected.first());
    EXPECT_TRUE(messages.texts.isEmpty());
    // Hiding the rows without it: the database counts what is left.
    sqlGrid.GetSearch()->SwitchOptions({soFilterRows}, true);
    QList<int> kept;
    for (const QString &cell : expected)
        if (!kept.contains(cell.section(QLatin1Char(':'), 0, 0).toInt()))
            kept << cell.section(QLatin1Char(':'), 0, 0).toInt();
    EXPECT_EQ(ids(table), kept);
    QTest::keyClick(edit, Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_EQ(table.RecordCount(), 60);
}

TEST_P(SearchSQL, AnEditIsPostedBeforeTheSearchMoves)
{
    sqlGrid.show();
    table.First();
    table.Next();
    table.Edit();
    table.FieldByName(QStringLiteral("name"))->SetAsString(QStringLiteral("zebra"));
    // The database must find the posted text.
    EXPECT_TRUE(sqlGrid.SearchCell(smFirst, QStringLiteral("ZEBRA"), {}));
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(table.FieldByName(QStringLiteral("id"))->AsInteger(), 2);
}

INSTANTIATE_TEST_SUITE_P(Databases, SearchSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);
