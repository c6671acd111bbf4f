// The same random rows in memory and in a SQLite or PostgreSQL table, and thousands of random
// filter expressions: the in-memory walk and the database's WHERE must accept exactly the
// same records; so must the grid's search when it hides the rows that do not match.
// QDB_DIFF_SEED repeats a run, QDB_DIFF_COUNT makes it longer.

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "filter/QDBSearch.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/db/Fields.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/DateTime.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/sql/SQLDataSet.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <set>

using namespace qdb;
using namespace qdb::test;

namespace {

enum class Kind { Integer, Float, Text, Date, Boolean };

struct Column
{
    const char *name; // as the filter writes it
    const char *sql;  // as the table declares it
    Kind kind;
    TFieldType type;
};

const Column Columns[] = {
    {"qty", "qty INTEGER", Kind::Integer, ftInteger},
    {"[Unit Price]", "\"Unit Price\" %1", Kind::Float, ftFloat},
    {"name", "name VARCHAR(20)", Kind::Text, ftString},
    {"[Ship Day]", "\"Ship Day\" DATE", Kind::Date, ftDate},
    {"paid", "paid BOOLEAN", Kind::Boolean, ftBoolean},
};

// Texts that differ by case, blanks, accents and the characters LIKE and quotes treat specially.
const char *const Texts[] = {"apple", "APPLE",  "Apple ", "pear",         "Pear",          "50%", "a_b",
                             "O'Brien", "",     "x*y",    "\xc3\x84pfel", "\xc3\xa4pfel", "b",   "B", " "};
constexpr double Floats[] = {0.1 + 0.2, 0.3, 1.5, -2.25, 0, 100, 2.675, 1e-7};

int64_t envNumber(const char *name, int64_t fallback)
{
    bool ok = false;
    const qint64 v = qEnvironmentVariable(name).toLongLong(&ok);
    return ok ? v : fallback;
}

// Random filter texts over Columns; values come from the pools the rows use, so that
// comparisons often meet equal values.
class ExpressionMaker
{
public:
    explicit ExpressionMaker(quint64 seed) : rnd_(seed) {}

    QString Make(int depth = 3)
    {
        if (depth == 0 || pick(10) < 4)
            return atom();
        switch (pick(5)) {
        case 0: return QStringLiteral("(%1 AND %2)").arg(Make(depth - 1), Make(depth - 1));
        case 1: return QStringLiteral("(%1 OR %2)").arg(Make(depth - 1), Make(depth - 1));
        case 2: return QStringLiteral("NOT (%1)").arg(Make(depth - 1));
        case 3: return QStringLiteral("%1 AND %2 OR %3").arg(atom(), atom(), atom()); // precedence
        default: return QStringLiteral("NOT %1").arg(atom());
        }
    }

    int pick(int n) { return int(rnd_.bounded(n)); }

private:
    QString atom()
    {
        const Column &c = Columns[pick(std::size(Columns))];
        const QString name = QString::fromLatin1(c.name);
        switch (pick(9)) {
        case 0: return QStringLiteral("%1 IS %2NULL").arg(name, pick(2) ? QStringLiteral("NOT ") : QString());
        case 1: return QStringLiteral("%1 %2 NULL").arg(name, pick(2) ? QStringLiteral("=") : QStringLiteral("<>"));
        case 2: {
            QStringList items;
            for (int i = 0, n = 1 + pick(4); i < n; ++i)
                items << literal(c.kind);
            return QStringLiteral("%1 %2IN (%3)").arg(name, pick(3) ? QString() : QStringLiteral("NOT "), items.join(QStringLiteral(", ")));
        }
        case 3:
        case 4: return QStringLiteral("name %1LIKE %2").arg(pick(3) ? QString() : QStringLiteral("NOT "), quoted(pattern()));
        case 5:
            if (c.kind == Kind::Text && pick(2)) // a prefix, unless partial compares are off
                return QStringLiteral("name = %1").arg(quoted(QString::fromUtf8(Texts[pick(std::size(Texts))]).left(pick(3)) + QLatin1Char('*')));
            [[fallthrough]];
        default: {
            static const char *const ops[] = {"=", "<>", "<", "<=", ">", ">="};
            const QString op = QString::fromLatin1(ops[pick(6)]);
            return pick(5) ? QStringLiteral("%1 %2 %3").arg(name, op, literal(c.kind))
                           : QStringLiteral("%1 %2 %3").arg(literal(c.kind), op, name);
        }
        }
    }

    static QString quoted(QString s) { return QLatin1Char('\'') + s.replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\''); }

    QString pattern()
    {
        const QString text = QString::fromUtf8(Texts[pick(std::size(Texts))]);
        QString p;
        for (const QChar ch : text) {
            const int r = pick(10);
            p += r == 0 ? QStringLiteral("%") : r == 1 ? QStringLiteral("_") : QString(ch);
        }
        if (pick(2))
            p.prepend(QLatin1Char('%'));
        if (pick(2))
            p.append(QLatin1Char('%'));
        return p;
    }

    QString literal(Kind kind)
    {
        switch (kind) {
        case Kind::Integer: return QString::number(pick(9) - 4);
        case Kind::Float: return QString::number(Floats[pick(std::size(Floats))], 'g', 17);
        case Kind::Text: return quoted(QString::fromUtf8(Texts[pick(std::size(Texts))]));
        case Kind::Date: {
            const QDate d = QDate(2024, 2, 27).addDays(pick(5));
            return quoted(pick(2) ? d.toString(Qt::ISODate) : DateToStr(EncodeDate(d.year(), d.month(), d.day())));
        }
        case Kind::Boolean: return pick(2) ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
        }
        return {};
    }

    QRandomGenerator64 rnd_;
};

class FilterDifferential : public SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("differential")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        QStringList declared{QStringLiteral("id INTEGER PRIMARY KEY")};
        memory.FieldDefs().Add(QStringLiteral("id"), ftInteger);
        for (const Column &c : Columns) {
            QString sql = QString::fromLatin1(c.sql);
            if (c.kind == Kind::Float)
                sql = sql.arg(FloatType());
            if (c.kind == Kind::Text && pg() && linguisticCollation())
                sql += QStringLiteral(" COLLATE \"en-x-icu\""); // ordered as most servers order text
            declared << sql;
            QString field = QString::fromLatin1(c.name);
            field.remove(QLatin1Char('[')).remove(QLatin1Char(']'));
            memory.FieldDefs().Add(field, c.type, c.kind == Kind::Text ? 20 : 0);
        }
        memory.CreateDataSet();
        connection.ExecSQL(QStringLiteral("CREATE TABLE t (%1)").arg(declared.join(QStringLiteral(", "))));

        // The rows come from a seed of their own, the same in every run.
        QRandomGenerator64 rows(20261124);
        const auto r = [&rows](size_t n) { return int(rows.bounded(int(n))); };
        const auto orNull = [&r](const Variant &v) { return r(6) == 0 ? Variant::Null() : v; };
        connection.StartTransaction();
        for (int id = 1; id <= 80; ++id) {
            const QDate day = QDate(2024, 2, 27).addDays(r(5));
            const QList<Variant> values{id,
                                        orNull(r(9) - 4),
                                        orNull(Floats[r(std::size(Floats))]),
                                        orNull(QString::fromUtf8(Texts[r(std::size(Texts))])),
                                        orNull(EncodeDate(day.year(), day.month(), day.day())),
                                        orNull(r(2) == 1)};
            memory.AppendRecord(values);
            QList<Variant> stored = values;
            if (!stored[4].IsNull())
                stored[4] = day.toString(Qt::ISODate);
            if (!stored[5].IsNull())
                stored[5] = Flag(stored[5].ToBool());
            connection.ExecSQL(QStringLiteral("INSERT INTO t VALUES (?, ?, ?, ?, ?, ?)"), stored);
        }
        connection.Commit();
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("t"));
        table.SetIndexFieldNames(QStringLiteral("id"));
        table.Open();
    }
    bool linguisticCollation()
    {
        return connection.ExecScalar(QStringLiteral("SELECT count(*) FROM pg_collation WHERE collname = 'en-x-icu'")).ToInt64() > 0;
    }
    // The ids of the records the data set accepts under the filter; the error's text when
    // it refuses the filter.
    static std::set<int> accepted(TDataSet &ds, const QString &filter, TFilterOptions options, QString &error)
    {
        std::set<int> ids;
        try {
            ds.SetFilterOptions(options);
            ds.SetFilter(filter);
            ds.SetFiltered(true);
            for (ds.First(); !ds.Eof(); ds.Next())
                ids.insert(ds.FieldByName(QStringLiteral("id"))->AsInteger());
        } catch (const EDatabaseError &e) {
            error = e.Message();
        }
        ds.SetFiltered(false);
        return ids;
    }

    TMemTable memory;
};

QString idList(const std::set<int> &ids)
{
    QStringList s;
    for (int id : ids)
        s << QString::number(id);
    return s.join(QLatin1Char(' '));
}

} // namespace

// The rows a search keeps, through the grid over the data set.
static std::set<int> kept(TQDBGrid &grid, const QString &text, TQSearchOptions options)
{
    grid.GetSearch()->SetOptions(options + soFilterRows);
    grid.GetSearch()->SetText(text);
    std::set<int> ids;
    TDataSet *ds = grid.DataSet();
    for (ds->First(); !ds->Eof(); ds->Next())
        ids.insert(ds->FieldByName(QStringLiteral("id"))->AsInteger());
    grid.GetSearch()->SetText(QString());
    return ids;
}

TEST_P(FilterDifferential, MemoryAndDatabaseAcceptTheSameRecords)
{
    const quint64 seed = quint64(envNumber("QDB_DIFF_SEED", 1));
    const int64_t count = envNumber("QDB_DIFF_COUNT", 2000);
    ExpressionMaker maker(seed);
    int failures = 0, refused = 0;
    for (int64_t i = 0; i < count && failures < 5; ++i) {
        TFilterOptions options;
        options.Switch(foCaseInsensitive, maker.pick(2));
        options.Switch(foNoPartialCompare, maker.pick(2));
        const QString filter = maker.Make();
        QString memoryError, databaseError;
        const std::set<int> inMemory = accepted(memory, filter, options, memoryError);
        const std::set<int> inDatabase = accepted(table, filter, options, databaseError);
        refused += !memoryError.isEmpty();
        if (inMemory != inDatabase || memoryError.isEmpty() != databaseError.isEmpty()) {
            ++failures;
            ADD_FAILURE() << "seed " << seed << ", expression " << i << ", case-insensitive "
                          << options.Contains(foCaseInsensitive) << ", partial " << !options.Contains(foNoPartialCompare)
                          << ": " << filter.toStdString() << "\n  memory:   " << idList(inMemory).toStdString() << " "
                          << memoryError.toStdString() << "\n  database: " << idList(inDatabase).toStdString() << " "
                          << databaseError.toStdString();
        }
    }
    // Most expressions must be ones both sides take, or the comparison says little.
    EXPECT_LT(refused, count / 10) << "expressions refused";
}


TEST_P(FilterDifferential, SearchKeepsTheSameRowsInMemoryAndInTheDatabase)
{
    const quint64 seed = quint64(envNumber("QDB_DIFF_SEED", 1));
    const int64_t count = envNumber("QDB_DIFF_COUNT", 2000) / 10;
    QRandomGenerator64 rnd(seed);
    const auto pick = [&rnd](size_t n) { return int(rnd.bounded(int(n))); };
    TDataSource sqlSource, memSource;
    sqlSource.SetDataSet(&table);
    memSource.SetDataSet(&memory);
    TQDBGrid sqlGrid, memGrid;
    sqlGrid.SetDataSource(&sqlSource);
    memGrid.SetDataSource(&memSource);
    int failures = 0, telling = 0;
    for (int64_t i = 0; i < count && failures < 5; ++i) {
        // A piece of a stored text, a number, a date or a truth value as the grid shows them.
        const QString pool[] = {QString::fromUtf8(Texts[pick(std::size(Texts))]), QString::number(pick(9) - 4),
                                QStringLiteral("2.5"), QStringLiteral("0.3"), QStringLiteral("2024"),
                                QStringLiteral("29"), QStringLiteral("True"), QStringLiteral("fal"), QStringLiteral("%"),
                                QStringLiteral("_")};
        QString text = pool[pick(std::size(pool))];
        text = text.mid(pick(2), text.size() - pick(2));
        if (text.trimmed().isEmpty())
            continue;
        TQSearchOptions options;
        options.Switch(soCaseSensitive, pick(2));
        options.Switch(soWholeWords, pick(4) == 0);
        const std::set<int> inMemory = kept(memGrid, text, options);
        const std::set<int> inDatabase = kept(sqlGrid, text, options);
        telling += !inMemory.empty() && inMemory.size() < 80;
        if (inMemory != inDatabase) {
            ++failures;
            ADD_FAILURE() << "seed " << seed << ", search " << i << " '" << text.toStdString() << "' options "
                          << options.Bits() << "\n  memory:   " << idList(inMemory).toStdString()
                          << "\n  database: " << idList(inDatabase).toStdString();
        }
    }
    // Searches that keep some rows and hide others are the ones that can disagree.
    EXPECT_GT(telling, count / 3);
    sqlGrid.SetDataSource(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Databases, FilterDifferential, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);
