#include "SQLRowSource.h"

#include "SQLSources.h"

#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>
#include <QSqlDriver>
#include <QScopedValueRollback>
#include <QSqlField>

#include <algorithm>
#include <atomic>

namespace qdb {

Q_LOGGING_CATEGORY(lcSql, "qdb.sql", QtWarningMsg)

namespace {

// Rows this close to the start are read straight from the ordered result: the first
// screen after opening or sorting needs no key table.
constexpr qint64 DirectRows = 1024;
// The last rows read at once, in the order turned round.
constexpr qint64 TailRows = 4096;
// Results this small are always read directly.
constexpr qint64 SmallResult = 8192;
// Far reads an index-given order (or the record found last) serves before the order is
// computed, and how far from that record.
constexpr int CheapFarReads = 4;
constexpr qint64 AnchorReach = 1024;
// Pages read at once by a walk through the key table.
constexpr int ReadAhead = 8;
// Writes of the application's own that a computed order takes in before it is computed again.
constexpr size_t MaxEdits = 1000;

QString keyTableName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("qdb_pos_%1").arg(++counter);
}

} // namespace

SQLRowSource::SQLRowSource(TSQLConnection *connection, const SQLResultShape &shape)
    : connection_(connection), shape_(shape)
{
}

SQLRowSource::~SQLRowSource() = default;

QString SQLRowSource::Quote(const QString &name) const
{
    return connection_->QuoteName(name);
}

void SQLRowSource::describe()
{
    keyColumns_.clear();
    order_.clear();
    record_ = Columns(QStringLiteral("SELECT * FROM (%1) qdb_q").arg(shape_.body), shape_.params);
    for (const QString &key : shape_.keys) {
        const int column = record_.indexOf(key);
        if (column < 0) {
            keyColumns_.clear();
            break;
        }
        keyColumns_ << column;
    }

    const TSQLDialect dialect = connection_->Dialect();
    // One rule on every database, as on the in-memory table: NULL first ascending, last
    // descending. That is SQLite's own placing; PostgreSQL's is the other way round and is
    // told NULLS FIRST or LAST, except for key columns, which hold no NULL and whose index a
    // NULLS clause would keep the planner from using.
    auto databaseNullsFirst = [dialect](bool descending) {
        return dialect == TSQLDialect::PostgreSQL ? descending : !descending;
    };
    QList<SQLOrderItem> items;
    orderKnown_ = ParseOrderItems(shape_.order, items);
    for (const SQLOrderItem &item : items) {
        int column = -1;
        if (item.number > 0)
            column = item.number <= record_.count() ? item.number - 1 : -1;
        else
            for (int c = 0; c < record_.count() && column < 0; ++c)
                if (item.quoted ? record_.fieldName(c) == item.name
                                : record_.fieldName(c).compare(item.name, Qt::CaseInsensitive) == 0)
                    column = c;
        if (column < 0) {
            orderKnown_ = false;
            break;
        }
        const bool key = keyColumns_.contains(column);
        const bool nullsFirst = item.nullsFirst >= 0 ? item.nullsFirst == 1
                                : key               ? databaseNullsFirst(item.descending)
                                                    : !item.descending;
        order_ << OrderItem{column, item.descending, nullsFirst,
                            item.nullsFirst >= 0 || nullsFirst != databaseNullsFirst(item.descending)};
    }
    if (orderKnown_) {
        // The key settles ties, so that a position names one record for good; it goes the
        // way the last column goes, so that an index read backwards still gives the order.
        const bool descending = !order_.isEmpty() && order_.last().descending;
        for (int key : keyColumns_) {
            bool present = false;
            for (const OrderItem &o : order_)
                present = present || o.column == key;
            if (!present)
                order_ << OrderItem{key, descending, databaseNullsFirst(descending), false};
        }
        ordered_ = QStringLiteral("SELECT * FROM (%1) qdb_q").arg(shape_.body);
        if (!order_.isEmpty())
            ordered_ += QStringLiteral(" ORDER BY ") + OrderClause(QStringLiteral("qdb_q"));
    } else {
        order_.clear();
        ordered_ = shape_.body + QStringLiteral(" ORDER BY ") + shape_.order;
    }
}

QString SQLRowSource::OrderClause(const QString &alias, bool reversed, bool firstNulls) const
{
    // Turning every direction round reverses the databases' own NULL placing too.
    QStringList items;
    for (const OrderItem &o : order_) {
        QString item = alias + QLatin1Char('.') + Quote(record_.fieldName(o.column));
        if (o.descending != reversed)
            item += QStringLiteral(" DESC");
        if (o.explicitNulls && (firstNulls || !items.isEmpty()))
            item += o.nullsFirst != reversed ? QStringLiteral(" NULLS FIRST") : QStringLiteral(" NULLS LAST");
        items << item;
    }
    return items.join(QStringLiteral(", "));
}

QString SQLRowSource::Reversed() const
{
    return QStringLiteral("SELECT * FROM (%1) qdb_q ORDER BY %2").arg(shape_.body, OrderClause(QStringLiteral("qdb_q"), true));
}

qint64 SQLRowSource::count()
{
    if (count_ < 0) {
        SQLRows rows;
        Query(QStringLiteral("SELECT COUNT(*) FROM (%1) qdb_q").arg(shape_.body), shape_.params, rows, 1);
        count_ = rows.Count() ? rows.values[0].ToInt64() : 0;
    }
    return count_;
}

void SQLRowSource::ReadDirect(qint64 first, int n, SQLRows &rows, bool sequential)
{
    Q_UNUSED(sequential);
    QList<QVariant> params = shape_.params;
    params << n << first;
    Query(ordered_ + QStringLiteral(" LIMIT ? OFFSET ?"), params, rows, n);
}

void SQLRowSource::fetch(qint64 first, int n, SQLRows &rows)
{
    if (busy_ > 1) {
        // Asked while a read of this source waits (from the events the application lets
        // through meanwhile): a statement of its own, leaving alone what the waiting read uses.
        if (!index_.isEmpty() && !edited())
            readIndexed(first, n, rows);
        else
            SQLRowSource::ReadDirect(first, n, rows, false);
        return;
    }
    // A walk backwards from the end goes on in the order turned round, as fast as forwards,
    // once it has left the last rows, which are held already. A new statement starts only
    // near the end and where no computed order serves.
    if (orderKnown_ && count_ >= 0 && first < count_ - TailRows && first + n == backStart_
        && ReadBackwards(first, n, index_.isEmpty() ? TailRows * 2 : 0, rows)) {
        backStart_ = first;
        return;
    }
    // Far from the start the order is computed once; where an index gives the order, the
    // first few far reads (the screen around a record kept through a sort) go without, and
    // otherwise so do reads close to the record found last.
    if (!Streaming(first) && index_.isEmpty() && first >= DirectRows && count() > SmallResult) {
        if (orderKnown_ && first >= count() - TailRows) {
            readFromEnd(first, n, rows);
            return;
        }
        if (CheapOffsets() && ++farReads_ <= CheapFarReads) {
            // read directly below
        } else if (HasKeys() && orderKnown_ && nearAnchor(first, n) && ++anchorReads_ <= CheapFarReads) {
            readNearAnchor(first, n, rows);
            return;
        } else {
            buildIndex();
        }
    }
    if (!index_.isEmpty() && !Streaming(first)) {
        if (edited())
            fetchEdited(first, n, rows);
        else
            readAhead(first, n, rows);
        return;
    }
    const size_t before = rows.Count();
    ReadDirect(first, n, rows, first == directEnd_);
    directEnd_ = first + qint64(rows.Count() - before);
}

void SQLRowSource::readAhead(qint64 first, int n, SQLRows &rows)
{
    const qint64 aheadRows = qint64(ahead_.Count());
    const bool held = first >= aheadFirst_ && (first + n <= aheadFirst_ + aheadRows || aheadFirst_ + aheadRows == indexRows_);
    if (!held) {
        // A walk in either direction reads several pages a statement: one round trip to the
        // server, one join, per ReadAhead pages.
        qint64 from = first, to = first + n;
        if (first == lastEnd_)
            to = first + qint64(n) * ReadAhead;
        else if (first + n == lastStart_)
            from = qMax<qint64>(0, first + n - qint64(n) * ReadAhead);
        ahead_ = SQLRows();
        aheadFirst_ = from;
        readIndexed(from, int(to - from), ahead_);
    }
    const qint64 skip = first - aheadFirst_;
    const qint64 take = qBound(qint64(0), qint64(ahead_.Count()) - skip, qint64(n));
    rows.columns = record_.count();
    rows.values.insert(rows.values.end(), ahead_.values.begin() + qsizetype(skip * rows.columns),
                       ahead_.values.begin() + qsizetype((skip + take) * rows.columns));
    lastStart_ = first;
    lastEnd_ = first + take;
}

void SQLRowSource::buildIndex()
{
    const QString table = keyTableName();
    QList<Statement> statements;
    if (!IndexStatements(table, statements))
        return;
    Pause();
    try {
        for (const Statement &statement : statements)
            Exec(statement.sql, statement.params);
    } catch (...) {
        index_ = table;
        dropIndex();
        throw;
    }
    index_ = table;
    ahead_ = SQLRows();
    forgetEdits();
    ++indexBuilds_;
    SQLRows rows;
    Query(QStringLiteral("SELECT MAX(%1) FROM %2 qdb_i").arg(IndexPosition(), index_), {}, rows, 1);
    indexRows_ = rows.Count() && !rows.values[0].IsClear() ? rows.values[0].ToInt64() : 0;
    count_ = indexRows_; // the rows as they were when the order was computed
}

void SQLRowSource::dropIndex() noexcept
{
    if (index_.isEmpty())
        return;
    const QString table = index_;
    index_.clear();
    indexRows_ = 0;
    ahead_ = SQLRows();
    forgetEdits();
    try {
        Exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(table));
    } catch (...) {
        // A lost session took the table with it.
    }
}

void SQLRowSource::readIndexed(qint64 first, int n, SQLRows &rows)
{
    const qint64 last = qMin(first + n, indexRows_); // exclusive
    if (first >= last)
        return;
    const Statement page = IndexPage(index_, first + 1, last);
    SQLRows got;
    Query(page.sql, page.params, got, last - first);
    // Each row comes with its position first. A row deleted by someone else since the order
    // was computed keeps its place, empty.
    const int width = record_.count();
    rows.columns = width;
    rows.values.reserve(rows.values.size() + size_t(last - first) * size_t(width));
    size_t next = 0;
    for (qint64 position = first; position < last; ++position) {
        auto row = got.values.begin() + qsizetype(next * size_t(got.columns));
        if (next < got.Count() && row->ToInt64() - 1 == position) {
            rows.values.insert(rows.values.end(), std::make_move_iterator(row + 1), std::make_move_iterator(row + got.columns));
            ++next;
        } else {
            rows.values.insert(rows.values.end(), size_t(width), Variant::Null());
        }
    }
}

QString SQLRowSource::KeyMatch(const QString &row, const QString &index) const
{
    QStringList parts;
    for (int key : keyColumns_)
        parts << QStringLiteral("%1.%2 = %3.%4").arg(row, Quote(record_.fieldName(key)), index, IndexColumn(key));
    return parts.join(QStringLiteral(" AND "));
}

template<typename F>
auto SQLRowSource::reading(F read)
{
    const QScopedValueRollback<int> busy(busy_, busy_ + 1);
    if (busy_ == 1)
        forgetLostIndex();
    try {
        return read();
    } catch (const EDatabaseError &) {
        if (connection_->Cancelled())
            throw EReadCancelled(QCoreApplication::translate("qdb", "The read was cancelled"));
        if (!RestoreSession())
            throw;
    }
    forgetLostIndex();
    return read();
}

void SQLRowSource::forgetLostIndex()
{
    if (session_ == Session())
        return;
    if (session_ >= 0) { // the key table went with the session that held it
        index_.clear();
        indexRows_ = 0;
        ahead_ = SQLRows();
        forgetEdits();
        directEnd_ = -1;
    }
    session_ = Session();
}

void SQLRowSource::Describe()
{
    reading([this] { describe(); });
}

Variant SQLRowSource::LongestText(int column)
{
    return reading([&] {
        const QString text = QStringLiteral("CAST(qdb_q.%1 AS TEXT)").arg(Quote(record_.fieldName(column)));
        SQLRows rows;
        Query(QStringLiteral("SELECT %1 FROM (%2) qdb_q WHERE %1 IS NOT NULL ORDER BY length(%1) DESC LIMIT 1")
                  .arg(text, shape_.body),
              shape_.params, rows, 1);
        return rows.Count() ? rows.values[0] : Variant::Null();
    });
}

void SQLRowSource::DistinctValues(int column, const QVariant *after, const QString &prefix, const SQLCondition &also,
                                  int limit, SQLRows &rows)
{
    const bool pg = connection_->Dialect() == TSQLDialect::PostgreSQL;
    const QString c = QStringLiteral("qdb_q.") + Quote(record_.fieldName(column));
    QStringList where;
    QList<QVariant> params = shape_.params;
    if (after) {
        if (after->isNull()) {
            where << c + QStringLiteral(" IS NOT NULL");
        } else {
            where << c + QStringLiteral(" > ?");
            params << *after;
        }
    }
    if (!prefix.isEmpty()) {
        QString pattern = prefix;
        pattern.replace(QLatin1Char('\\'), QStringLiteral("\\\\"))
            .replace(QLatin1Char('%'), QStringLiteral("\\%"))
            .replace(QLatin1Char('_'), QStringLiteral("\\_"));
        where << QStringLiteral("CAST(%1 AS TEXT) %2 ? ESCAPE '\\'").arg(c, pg ? QStringLiteral("ILIKE") : QStringLiteral("LIKE"));
        params << pattern + QLatin1Char('%');
    }
    if (!also.text.isEmpty()) {
        where << QLatin1Char('(') + also.text + QLatin1Char(')');
        params += also.params;
    }
    const QString sql = QStringLiteral("SELECT %1, COUNT(*) FROM (%2) qdb_q%3 GROUP BY %1 ORDER BY %1%4%5")
                            .arg(c, shape_.body, where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where.join(QStringLiteral(" AND ")),
                                 pg ? QStringLiteral(" NULLS FIRST") : QString(),
                                 limit > 0 ? QStringLiteral(" LIMIT %1").arg(limit) : QString());
    const size_t before = rows.values.size();
    reading([&] {
        rows.values.resize(before);
        Query(sql, params, rows);
    });
}

bool SQLRowSource::Summarize(const QList<SQLSummaryColumn> &columns, qint64 &rows, QList<SQLColumnSummary> &summaries)
{
    return reading([&] { return summarize(columns, rows, summaries); });
}

void SQLRowSource::RowsByKeys(const QList<QList<QVariant>> &keys, SQLRows &rows)
{
    const size_t before = rows.values.size();
    reading([&] {
        rows.values.resize(before);
        rowsByKeys(keys, rows);
    });
}

qint64 SQLRowSource::Count()
{
    return reading([this] { return count(); });
}

void SQLRowSource::Fetch(qint64 first, int n, SQLRows &rows)
{
    const size_t before = rows.values.size();
    reading([&] {
        rows.values.resize(before); // nothing half read
        fetch(first, n, rows);
    });
}

qint64 SQLRowSource::PositionOf(const QList<QVariant> &keyValues)
{
    return reading([&] { return positionOf(keyValues); });
}

int SQLRowSource::MatchesFrom(const QList<QVariant> &from, bool forward, const SQLCondition &condition, int limit,
                              SQLRows &rows)
{
    if (!HasKeys() || !orderKnown_ || (!from.isEmpty() && from.size() != keyColumns_.size()))
        return -1;
    return reading([&] { return matchesFrom(from, forward, condition, limit, rows); });
}

qint64 SQLRowSource::Find(const QList<int> &columns, const QList<QVariant> &values, SQLFindText text)
{
    return reading([&] { return find(columns, values, text); });
}

void SQLRowSource::Release() noexcept
{
    try {
        Pause();
    } catch (...) {
    }
    dropIndex();
}

void SQLRowSource::Reset()
{
    Pause();
    dropIndex();
    count_ = -1;
    directEnd_ = -1;
    backStart_ = -1;
    farReads_ = 0;
    tail_ = SQLRows();
    anchorReads_ = 0;
    anchorPosition_ = -1;
    anchorKeys_.clear();
    anchorSides_[0] = anchorSides_[1] = Side();
    nullCount_ = -1;
}

void SQLRowSource::forgetEdits()
{
    removed_.clear();
    added_.clear();
}

qint64 SQLRowSource::Written(qint64 oldPosition, const QList<QVariant> &added)
{
    Pause();
    forgetLostIndex();
    nullCount_ = -1;
    if (index_.isEmpty() || !orderKnown_ || !HasKeys() || removed_.size() + added_.size() >= MaxEdits) {
        Reset(); // read directly, or computed again when needed
        return added.isEmpty() ? -1 : PositionOf(added);
    }
    if (oldPosition >= 0 && oldPosition < count_) {
        const auto at = std::lower_bound(added_.begin(), added_.end(), oldPosition,
                                         [](const Added &a, qint64 p) { return a.position < p; });
        if (at != added_.end() && at->position == oldPosition) {
            added_.erase(at);
        } else {
            const qint64 row = tableRow(oldPosition);
            removed_.insert(std::upper_bound(removed_.begin(), removed_.end(), row), row);
        }
        for (Added &a : added_)
            if (a.position > oldPosition)
                --a.position;
        --count_;
    }
    if (added.isEmpty())
        return -1;
    // Where it sorts now, counted by the database, which holds it already.
    ++count_;
    const qint64 position = PositionOf(added);
    if (position < 0) {
        --count_;
        return -1;
    }
    for (Added &a : added_)
        if (a.position >= position)
            ++a.position;
    added_.insert(std::lower_bound(added_.begin(), added_.end(), position,
                                   [](const Added &a, qint64 p) { return a.position < p; }),
                  Added{position, added});
    return position;
}

const QList<QVariant> *SQLRowSource::addedAt(qint64 position) const
{
    const auto at = std::lower_bound(added_.begin(), added_.end(), position,
                                     [](const Added &a, qint64 p) { return a.position < p; });
    return at != added_.end() && at->position == position ? &at->keys : nullptr;
}

qint64 SQLRowSource::tableRow(qint64 position) const
{
    const auto before = std::lower_bound(added_.begin(), added_.end(), position,
                                         [](const Added &a, qint64 p) { return a.position < p; });
    qint64 row = position - (before - added_.begin());
    for (qint64 gone : removed_) { // each row gone at or before it moves it one on
        if (gone > row)
            break;
        ++row;
    }
    return row;
}

void SQLRowSource::fetchEdited(qint64 first, int n, SQLRows &rows)
{
    const qint64 end = qMin(first + n, count_);
    rows.columns = record_.count();
    QStringList match;
    for (int key : keyColumns_)
        match << QStringLiteral("qdb_q.%1 = ?").arg(Quote(record_.fieldName(key)));
    const QString byKey = QStringLiteral("SELECT * FROM (%1) qdb_q WHERE %2").arg(shape_.body, match.join(QStringLiteral(" AND ")));
    for (qint64 position = first; position < end;) {
        if (const QList<QVariant> *keys = addedAt(position)) { // written since: read as it is now
            const size_t before = rows.values.size();
            Query(byKey, shape_.params + *keys, rows, 1);
            if (rows.values.size() == before)
                rows.values.insert(rows.values.end(), size_t(rows.columns), Variant::Null());
            ++position;
            continue;
        }
        const qint64 row = tableRow(position);
        qint64 run = 1;
        while (position + run < end && !addedAt(position + run) && tableRow(position + run) == row + run)
            ++run;
        readAhead(row, int(run), rows);
        position += run;
    }
}

// Rows near the end, read as the first ones of the order turned round: the database picks
// the few it needs from one pass (or an index read backwards) instead of sorting them all.
void SQLRowSource::readFromEnd(qint64 first, int n, SQLRows &rows)
{
    // The whole last stretch at once, kept: Last and the pages above it cost one pass.
    const qint64 stretch = qMin(count_, TailRows);
    if (tail_.columns == 0) {
        SQLRows back;
        Query(Reversed() + QStringLiteral(" LIMIT ?"), shape_.params + QList<QVariant>{stretch}, back, stretch);
        tail_.columns = record_.count();
        tail_.AppendReversed(back);
    }
    const qint64 tailFirst = count_ - qint64(tail_.Count());
    const qint64 from = qMax(first, tailFirst), to = qMin(first + n, count_);
    backStart_ = from;
    rows.columns = record_.count();
    if (from < to)
        rows.values.insert(rows.values.end(), tail_.values.begin() + (from - tailFirst) * tail_.columns,
                           tail_.values.begin() + (to - tailFirst) * tail_.columns);
}

bool SQLRowSource::nearAnchor(qint64 first, int n) const
{
    return anchorPosition_ >= 0 && first + n > anchorPosition_ - AnchorReach && first < anchorPosition_ + AnchorReach;
}

qint64 SQLRowSource::indexPositionOf(const QList<QVariant> &keyValues)
{
    if (index_.isEmpty())
        buildIndex();
    if (index_.isEmpty())
        return -1;
    QStringList match;
    for (int key : keyColumns_)
        match << QStringLiteral("qdb_i.%1 = ?").arg(IndexColumn(key));
    SQLRows rows;
    Query(QStringLiteral("SELECT %1 FROM %2 qdb_i WHERE %3").arg(IndexPosition(), index_, match.join(QStringLiteral(" AND "))),
          keyValues, rows, 1);
    return rows.Count() ? rows.values[0].ToInt64() - 1 : -1;
}

QString SQLRowSource::matchCondition(const QList<int> &columns, const QList<QVariant> &values, SQLFindText text,
                                     QList<QVariant> &params) const
{
    const bool exact = !text.prefix && !text.caseBlind;
    const bool sqlite = connection_->Dialect() == TSQLDialect::SQLite;
    QStringList match;
    for (int i = 0; i < columns.size(); ++i) {
        QString name = QStringLiteral("qdb_q.") + Quote(record_.fieldName(columns[i]));
        if (values[i].isNull()) {
            match << name + QStringLiteral(" IS NULL");
            continue;
        }
        QVariant value = values[i];
        QString mark = QStringLiteral("?");
        if (!exact && value.typeId() == QMetaType::QString) {
            QString wanted = value.toString();
            if (text.caseBlind) {
                // SQLite folds through the application's own function; PostgreSQL's
                // lower() folds the value the same way it folds the column.
                name = QStringLiteral("%1(%2)").arg(sqlite ? QStringLiteral("qdb_fold") : QStringLiteral("lower"), name);
                if (sqlite)
                    wanted = wanted.toCaseFolded();
                else
                    mark = QStringLiteral("lower(?)");
            }
            if (text.prefix) {
                // A start compared as a substring: no pattern characters to escape.
                name = QStringLiteral("substr(%1, 1, %2)").arg(name).arg(wanted.size());
            }
            value = wanted;
        }
        match << name + QStringLiteral(" = ") + mark;
        params << value;
    }
    return match.join(QStringLiteral(" AND "));
}

int SQLRowSource::FirstMatch(const QList<int> &columns, const QList<QVariant> &values, SQLRows &row)
{
    if (!orderKnown_)
        return -1;
    return reading([&] {
        QList<QVariant> params = shape_.params;
        const QString match = matchCondition(columns, values, {}, params);
        row = SQLRows();
        Query(QStringLiteral("SELECT * FROM (%1) qdb_q WHERE %2 ORDER BY %3 LIMIT 1")
                  .arg(shape_.body, match, OrderClause(QStringLiteral("qdb_q"))),
              params, row, 1);
        return row.Count() ? 1 : 0;
    });
}

qint64 SQLRowSource::find(const QList<int> &columns, const QList<QVariant> &values, SQLFindText text)
{
    if (!HasKeys() || !orderKnown_)
        return -2;
    const bool exact = !text.prefix && !text.caseBlind;
    QList<QVariant> keyValues;
    for (int key : keyColumns_) {
        const qsizetype at = columns.indexOf(key);
        if (!exact || at < 0 || columns.size() != keyColumns_.size())
            break;
        keyValues << values[at];
    }
    if (keyValues.size() != keyColumns_.size() || !exact) {
        // The first match in the order gives the key, whose place is then counted.
        QList<QVariant> params = shape_.params;
        const QString match = matchCondition(columns, values, text, params);
        QStringList keys;
        for (int key : keyColumns_)
            keys << QStringLiteral("qdb_q.") + Quote(record_.fieldName(key));
        SQLRows rows;
        Query(QStringLiteral("SELECT %1 FROM (%2) qdb_q WHERE %3 ORDER BY %4 LIMIT 1")
                  .arg(keys.join(QStringLiteral(", ")), shape_.body, match, OrderClause(QStringLiteral("qdb_q"))),
              params, rows, 1);
        if (!rows.Count())
            return -1;
        for (const Variant &v : rows.values)
            keyValues << v.ToQVariant();
    }
    return positionOf(keyValues);
}

QString InlineParameters(const QString &sql, const QList<QVariant> &params, const QSqlDriver *driver)
{
    QList<qsizetype> marks;
    ScanCode(sql, [&](qsizetype i) {
        if (sql[i] == QLatin1Char('?'))
            marks << i;
    });
    if (marks.size() != params.size())
        throw EDatabaseError(QCoreApplication::translate("qdb", "The query has %1 parameters but %2 values").arg(marks.size()).arg(params.size()));
    QString out = sql;
    for (qsizetype k = marks.size() - 1; k >= 0; --k) {
        const QVariant &value = params[k];
        QSqlField field(QString(), value.isValid() ? value.metaType() : QMetaType::fromType<QString>());
        field.setValue(value);
        out.replace(marks[k], 1, driver->formatValue(field));
    }
    return out;
}

std::unique_ptr<SQLRowSource> SQLRowSource::Create(TSQLConnection *connection, const SQLResultShape &shape)
{
    switch (connection->Dialect()) {
    case TSQLDialect::SQLite: return NewSQLiteSource(connection, shape);
    case TSQLDialect::PostgreSQL: return NewPostgreSQLSource(connection, shape);
    default: return NewPortableSource(connection, shape);
    }
}

} // namespace qdb
