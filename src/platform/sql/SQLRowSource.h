#pragma once

#include "SQLConnection.h"
#include "SQLFilter.h"
#include "SQLText.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <memory>
#include <vector>

namespace qdb {

Q_DECLARE_LOGGING_CATEGORY(lcSql)

// Each statement a source runs, with its time, under the logging category "qdb.sql"
// (QT_LOGGING_RULES="qdb.sql.debug=true"): what a slow screen waited for.
class SQLTrace
{
public:
    explicit SQLTrace(const QString &sql) : sql_(sql)
    {
        if (lcSql().isDebugEnabled())
            timer_.start();
    }
    ~SQLTrace()
    {
        if (timer_.isValid())
            qCDebug(lcSql).noquote() << QString::number(double(timer_.nsecsElapsed()) / 1e6, 'f', 2) << "ms" << sql_;
    }
    SQLTrace(const SQLTrace &) = delete;
    SQLTrace &operator=(const SQLTrace &) = delete;

private:
    const QString &sql_;
    QElapsedTimer timer_;
};

// Rows as one run of values, `columns` to a row.
struct SQLRows
{
    int columns = 0;
    std::vector<Variant> values; // as the database hands them over, before typing
    size_t Count() const { return columns ? values.size() / size_t(columns) : 0; }
    // Appends the rows of `read`, last first: rows read in the order turned round.
    void AppendReversed(const SQLRows &read)
    {
        for (qsizetype r = qsizetype(read.Count()) - 1; r >= 0; --r)
            values.insert(values.end(), read.values.begin() + r * read.columns, read.values.begin() + (r + 1) * read.columns);
    }
};

// The result a data set shows: its statement split into parts the source can rewrite.
struct SQLResultShape
{
    QString body;           // the SELECT without its ORDER BY, filter conditions included
    QString order;          // the ORDER BY items as written, without the keywords
    QList<QVariant> params; // one for each "?" of the body
    QStringList keys;       // columns of the result that identify a row; empty: none
};

// How a column's values are read, compared and added when the database sums them up: as
// the data set would read each of them.
enum class SQLValueKind {
    Integer,
    Currency,      // a floating-point number, taken as currency rounded to four decimals
    ExactCurrency, // a decimal of at most four places
    Text,
    Boolean,
    DateTime,
    Bytes,
};

// What to sum up of one column of the result.
struct SQLSummaryColumn
{
    int column = -1;
    SQLValueKind kind = SQLValueKind::Text;
    bool sum = false;
    bool minMax = false;
    bool valueEnds = false; // its first and last value that is not NULL, in the result's order
};

// Unassigned where there is nothing; currency as its raw count of ten-thousandths, every
// other value as the database hands it over.
struct SQLColumnSummary
{
    qint64 values = 0;
    Variant sum, min, max, firstValue, lastValue;
};

// How a row source's Find compares text: a value may be the start of the column's text, and
// case may not count (folded as the application folds it).
struct SQLFindText
{
    bool prefix = false;
    bool caseBlind = false;
};

// Positional access to the rows of a result without holding them. The order is made total
// by the key, so that a position means the same record every time it is read. Positions
// near the start are read from the database directly; any other position makes the source
// compute the order once into a temporary table of the session (the keys in result order,
// or the rows themselves where looking a row up by key costs more than copying it), and
// read every later page through it by position. No statement, lock or
// transaction is held between reads, except a SQLite statement that streams a walk until
// Pause.
class SQLRowSource
{
public:
    virtual ~SQLRowSource();

    // The source suited to the connection's database.
    static std::unique_ptr<SQLRowSource> Create(TSQLConnection *connection, const SQLResultShape &shape);

    // Column names and types, and SQLite's declared types (empty elsewhere).
    QSqlRecord Record() const { return record_; }
    virtual QStringList DeclaredTypes() const { return {}; }
    // The exact number of rows, counted once.
    qint64 Count();
    // The number of rows if it was counted (-1 if not), and the number a source over the same
    // rows in another order takes over instead of counting again.
    qint64 KnownCount() const { return count_; }
    void AssumeCount(qint64 rows) { count_ = rows; }
    // Up to n rows from position first (0-based); fewer only at the end of the result.
    void Fetch(qint64 first, int n, SQLRows &rows);
    // The columns whose values the caller reads as dates: a source that keeps dates as text
    // may hand them over as dates at once, as FromDatabase would read them.
    void ReadAsDates(const QList<int> &columns) { dateColumns_ = columns; }
    // Lets go of any statement still open, so that the connection can write and other
    // programs are not held up.
    virtual void Pause() {}
    // Starts over on fresh data after the database changed.
    void Reset();
    // After the application's own write: the row at oldPosition left its place (-1 when a
    // row was inserted), and the row with the key values `added` (none when one was
    // deleted) now stands where it sorts. A computed order is corrected, not computed
    // again. Answers the written row's position, -1 when the result does not hold it.
    qint64 Written(qint64 oldPosition, const QList<QVariant> &added);
    // Whether a read of this source is in progress (waiting, while the application lets
    // events through): Pause must wait for its end.
    bool Busy() const { return busy_ > 0; }
    // Whether rows have keys (and so positions can be found by key).
    bool HasKeys() const { return !keyColumns_.isEmpty(); }
    const QList<int> &KeyColumns() const { return keyColumns_; }
    // The position of the row with these key values in the current result, -1 when the
    // result has no such row.
    qint64 PositionOf(const QList<QVariant> &keyValues);
    // The position of the first row whose columns hold the values (null matching null), -1
    // when there is none, -2 when this source cannot search by itself.
    qint64 Find(const QList<int> &columns, const QList<QVariant> &values, SQLFindText text = {});
    // Up to `limit` rows that meet `condition` (on rows qdb_q), in the order going forwards
    // or backwards from the row with the key values `from`, that row left out (from the first
    // or the last row when `from` is empty): how many, -1 when this source cannot tell.
    int MatchesFrom(const QList<QVariant> &from, bool forward, const SQLCondition &condition, int limit, SQLRows &rows);
    // Reads into `row` the first row, in the order, whose columns hold the values (as Find
    // compares them exactly): 1, or 0 when there is none; -1 when this source cannot search
    // by itself.
    int FirstMatch(const QList<int> &columns, const QList<QVariant> &values, SQLRows &row);
    // The longest value of a column as text (by characters), Null when it holds none: one
    // pass of the database over the result, no row brought over but that one.
    Variant LongestText(int column);
    // Up to `limit` (0: all) distinct values of a column, each followed by its number of
    // rows, NULL first; after `after` when given (a null `after` leaves out only NULL), those
    // whose text begins with `prefix` without regard to case when it is not empty, and that
    // meet `also` when it has a text.
    void DistinctValues(int column, const QVariant *after, const QString &prefix, const SQLCondition &also, int limit,
                        SQLRows &rows);
    // The number of rows and what each column asked for holds, in one aggregate query (and
    // one more for each first and last value); false when the database cannot compare or add
    // a kind of value as the data set reads it, or the order is not the source's own. Raises
    // what the database raises.
    bool Summarize(const QList<SQLSummaryColumn> &columns, qint64 &rows, QList<SQLColumnSummary> &summaries);
    // Appends the rows whose key values are among `keys`, in no particular order.
    void RowsByKeys(const QList<QList<QVariant>> &keys, SQLRows &rows);
    // How many times the order of the result was computed into a table (for tests).
    int IndexBuilds() const { return indexBuilds_; }

protected:
    SQLRowSource(TSQLConnection *connection, const SQLResultShape &shape);
    // Reads the columns of the result and works out the order; constructors call it.
    void Describe();
    // Drops what the source keeps on the server; destructors call it, while the
    // database's own operations still work.
    void Release() noexcept;
    // After a failed statement: opens a session the server ended again (true), false when
    // the failure was the statement's. What the source kept in the old session is gone.
    virtual bool RestoreSession() { return false; }
    // Which session the source reads through now (changes when one was opened again).
    virtual int Session() const { return 0; }

    // ---- what each database does its own way ----
    // Runs a query and appends up to max rows (all when max < 0) to rows.
    virtual void Query(const QString &sql, const QList<QVariant> &params, SQLRows &rows, qint64 max = -1) = 0;
    // Runs a statement that returns nothing.
    virtual void Exec(const QString &sql, const QList<QVariant> &params = {}) = 0;
    // The columns of a query, without reading its rows.
    virtual QSqlRecord Columns(const QString &sql, const QList<QVariant> &params) = 0;
    // Reads rows of the ordered result from a position directly (no key table);
    // `sequential` when the last direct read ended there.
    virtual void ReadDirect(qint64 first, int n, SQLRows &rows, bool sequential);
    // Whether a sequential read that is already at `first` can go on; SQLite streams.
    virtual bool Streaming(qint64 first) const { Q_UNUSED(first); return false; }
    // A walk backwards that goes on in one statement of the order turned round, as a walk
    // forwards does: reads rows first..first+n-1 when the statement stands at first+n, or
    // when a new one needs to step over no more than `reach` rows from the end to get there;
    // false otherwise (nothing read). The count is known.
    virtual bool ReadBackwards(qint64 first, int n, qint64 reach, SQLRows &rows)
    {
        Q_UNUSED(first); Q_UNUSED(n); Q_UNUSED(reach); Q_UNUSED(rows);
        return false;
    }
    // Whether a direct read far from the start costs little (an index gives the order), so
    // that a few such reads need no computed order.
    virtual bool CheapOffsets() const { return false; }
    struct Statement
    {
        QString sql;
        QList<QVariant> params;
    };
    // The statements that fill the table `table` with the result's keys or rows in result
    // order; false when the database cannot keep one.
    virtual bool IndexStatements(const QString &table, QList<Statement> &statements) = 0;
    // The query of rows first..last (1-based) of the table: each row its position first.
    virtual Statement IndexPage(const QString &table, qint64 first, qint64 last) const = 0;
    // The table's position column (1-based), and the name of a result column in it.
    virtual QString IndexPosition() const = 0;
    virtual QString IndexColumn(int column) const = 0;
    // The SQL of a column's value (`column`, written qdb_q."name") as the data set reads a
    // value of that kind, NULL where it would read none; with `compared`, in the form that
    // MIN and MAX compare as the application does. Empty when the database cannot.
    virtual QString SummaryExpression(const QString &column, int index, SQLValueKind kind, bool compared) const;
    // The SUM of whole numbers, exact and whole, or an error.
    virtual QString WholeSum(const QString &value) const { return QStringLiteral("SUM(%1)").arg(value); }
    // The key columns of a result row equal to those of the table's row.
    QString KeyMatch(const QString &row, const QString &index) const;

    QString Quote(const QString &name) const;
    // The ordered result, a statement the source may add LIMIT and OFFSET to.
    QString Ordered() const { return ordered_; }
    // Whether every ORDER BY item is a column, so that the source could make the order its own.
    bool OrderKnown() const { return orderKnown_; }
    // The ordered result turned round: its first row is the last of Ordered().
    QString Reversed() const;
    // The ORDER BY items that make the order total (columns of qdb_q); without `firstNulls`
    // the first column's NULLs go where the database puts them.
    QString OrderClause(const QString &alias, bool reversed = false, bool firstNulls = true) const;

    TSQLConnection *connection_;
    SQLResultShape shape_;
    QSqlRecord record_;
    QList<int> dateColumns_;

private:
    // Runs a read; a session the server ended is opened again and the read tried once more.
    template<typename F>
    auto reading(F read);
    void forgetLostIndex();
    qint64 count();
    void fetch(qint64 first, int n, SQLRows &rows);
    qint64 positionOf(const QList<QVariant> &keyValues);
    // The values in the order's columns of the row with the key values, and the condition
    // (on rows qdb_v, bound to the key values) that finds it; false when there is none.
    bool ownValues(const QList<QVariant> &keyValues, QString &where, SQLRows &own);
    int matchesFrom(const QList<QVariant> &from, bool forward, const SQLCondition &condition, int limit, SQLRows &rows);
    qint64 find(const QList<int> &columns, const QList<QVariant> &values, SQLFindText text);
    // The WHERE condition (on qdb_q) of rows whose columns hold the values; appends its
    // bound values to params.
    QString matchCondition(const QList<int> &columns, const QList<QVariant> &values, SQLFindText text,
                           QList<QVariant> &params) const;
    void describe();
    bool summarize(const QList<SQLSummaryColumn> &columns, qint64 &rows, QList<SQLColumnSummary> &summaries);
    void rowsByKeys(const QList<QList<QVariant>> &keys, SQLRows &rows);

    struct OrderItem
    {
        int column;
        bool descending;
        bool nullsFirst;
        bool explicitNulls;
    };
    void buildIndex();
    void dropIndex() noexcept;
    void readIndexed(qint64 first, int n, SQLRows &rows);
    void readAhead(qint64 first, int n, SQLRows &rows);
    // The rows written since the order was computed, over the table of the order.
    bool edited() const { return !removed_.empty() || !added_.empty(); }
    void forgetEdits();
    const QList<QVariant> *addedAt(qint64 position) const;
    qint64 tableRow(qint64 position) const;
    void fetchEdited(qint64 first, int n, SQLRows &rows);
    // The rows on one side of a record: see side().
    struct Side
    {
        QString near; // empty: no record kept
        QList<QVariant> nearParams;
        QString far;
        bool farIsNull = false;
    };
    Side side(const QList<QVariant> &keyValues, const QString &where, const SQLRows &own, bool after) const;
    qint64 nullCount();
    qint64 farCount(const Side &side);
    qint64 indexPositionOf(const QList<QVariant> &keyValues);
    bool nearAnchor(qint64 first, int n) const;
    void readNearAnchor(qint64 first, int n, SQLRows &rows);
    void readFromEnd(qint64 first, int n, SQLRows &rows);

    QList<int> keyColumns_;
    QList<OrderItem> order_;
    bool orderKnown_ = false; // every ORDER BY item is a column: the order is ours to extend
    QString ordered_;
    qint64 count_ = -1;
    QString index_;       // the key table; empty until built
    int session_ = -1; // the session the key table lives in
    int busy_ = 0;     // reads in progress, the ones asked for while another waits included
    qint64 indexRows_ = 0;
    int indexBuilds_ = 0;
    qint64 directEnd_ = -1; // where the last direct read ended
    qint64 backStart_ = -1; // where the last read from the end began
    int farReads_ = 0;      // direct reads far from the start
    int anchorReads_ = 0;   // reads from the record found last
    SQLRows tail_;          // the last rows, read in the order turned round
    QList<QVariant> anchorKeys_;
    qint64 anchorPosition_ = -1;
    Side anchorSides_[2];   // before it, from it on
    qint64 nullCount_ = -1; // rows whose first order column is NULL
    SQLRows ahead_;         // rows read through the key table beyond those asked for
    qint64 aheadFirst_ = 0;
    qint64 lastStart_ = -1, lastEnd_ = -1; // the rows the last read through it gave
    std::vector<qint64> removed_; // rows of the table (0-based) no longer in the result, sorted
    struct Added
    {
        qint64 position; // in the result
        QList<QVariant> keys;
    };
    std::vector<Added> added_; // rows written since, by position
};

// Replaces each "?" placeholder outside quotes and comments with the driver's literal for
// its value; for statements that cannot take bound values.
QString InlineParameters(const QString &sql, const QList<QVariant> &params, const class QSqlDriver *driver);

} // namespace qdb
