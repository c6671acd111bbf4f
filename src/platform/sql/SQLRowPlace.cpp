// Where a record stands in the result's order, and the rows on either side of it, found by
// the database from the record's own values: no sort of the whole result, no row read
// before it.

#include "SQLRowSource.h"

namespace qdb {

namespace {

// A condition with the values of its placeholders, in the order they appear.
struct Cond
{
    enum Kind { Sql, True, False };
    Kind kind = True;
    QString sql;
    QList<QVariant> params;

    static Cond text(const QString &sql, const QList<QVariant> &params = {}) { return {Sql, sql, params}; }
    static Cond never() { return {False, {}, {}}; }
};

Cond both(const Cond &a, const Cond &b)
{
    if (a.kind == Cond::False || b.kind == Cond::False)
        return Cond::never();
    if (a.kind == Cond::True)
        return b;
    if (b.kind == Cond::True)
        return a;
    return Cond::text(QStringLiteral("%1 AND %2").arg(a.sql, b.sql), a.params + b.params);
}

Cond either(const Cond &a, const Cond &b)
{
    if (a.kind == Cond::True || b.kind == Cond::True)
        return {};
    if (a.kind == Cond::False)
        return b;
    if (b.kind == Cond::False)
        return a;
    return Cond::text(QStringLiteral("(%1 OR %2)").arg(a.sql, b.sql), a.params + b.params);
}

} // namespace

// The rows on one side of the record, as conditions on rows qdb_q. Rows whose first order
// column is NULL just when the record's is come nearest; for them `near` is a range on that
// column followed by tests of the others, which one pass answers where no index helps and
// an index on the column narrows where one does. The other kind (NULL or not) lies wholly
// on one side, further away: `far` when it is on this one. `own` holds the record's values
// in the order's columns, which tell NULL from not; the values compared with are read by key
// (`where`, on rows qdb_v) inside the statement, so they compare exactly as stored.
SQLRowSource::Side SQLRowSource::side(const QList<QVariant> &keyValues, const QString &where, const SQLRows &own, bool after) const
{
    auto name = [this](int item) { return QStringLiteral("qdb_q.") + Quote(record_.fieldName(order_[item].column)); };
    auto value = [&](int item) {
        return QStringLiteral("(SELECT qdb_v.%1 FROM (%2) qdb_v WHERE %3)").arg(Quote(record_.fieldName(order_[item].column)), shape_.body, where);
    };
    const QList<QVariant> valueParams = shape_.params + keyValues;
    // Rows strictly on the side in this column, or there or equal; `withNulls` false leaves
    // NULL out where it would lie on the side.
    auto beyond = [&](int item, bool orEqual, bool withNulls) {
        const OrderItem &o = order_[item];
        const bool nullsHere = after ? !o.nullsFirst : o.nullsFirst;
        if (own.values[size_t(item)].IsNull()) {
            if (nullsHere)
                return orEqual ? Cond::text(name(item) + QStringLiteral(" IS NULL")) : Cond::never();
            return orEqual ? Cond() : Cond::text(name(item) + QStringLiteral(" IS NOT NULL"));
        }
        QString op = after != o.descending ? QStringLiteral(">") : QStringLiteral("<");
        if (orEqual)
            op += QLatin1Char('=');
        const Cond range = Cond::text(QStringLiteral("%1 %2 %3").arg(name(item), op, value(item)), valueParams);
        return nullsHere && withNulls ? either(Cond::text(name(item) + QStringLiteral(" IS NULL")), range) : range;
    };
    // From the last column (the key, which no two rows share) to the second: on the side in
    // this column, or equal in it and on the side in the ones after. Key columns hold no NULL.
    auto nullable = [this](int item) { return !keyColumns_.contains(order_[item].column); };
    const int last = int(order_.size()) - 1;
    Cond rest = last > 0 ? beyond(last, after, nullable(last)) : Cond();
    for (int item = last - 1; item >= 1; --item)
        rest = both(beyond(item, true, nullable(item)), either(beyond(item, false, nullable(item)), rest));

    const bool firstNull = own.values[0].IsNull();
    const bool nullsHere = after ? !order_[0].nullsFirst : order_[0].nullsFirst;
    Cond near;
    if (firstNull)
        near = both(Cond::text(name(0) + QStringLiteral(" IS NULL")), last > 0 ? rest : after ? Cond() : Cond::never());
    else
        near = last > 0 ? both(beyond(0, true, false), either(beyond(0, false, false), rest)) : beyond(0, after, false);
    Side result;
    result.near = near.kind == Cond::Sql ? near.sql : near.kind == Cond::True ? QStringLiteral("1 = 1") : QStringLiteral("1 = 0");
    result.nearParams = near.params;
    if (firstNull != nullsHere) {
        result.far = name(0) + (firstNull ? QStringLiteral(" IS NOT NULL") : QStringLiteral(" IS NULL"));
        result.farIsNull = !firstNull;
    }
    return result;
}

qint64 SQLRowSource::nullCount()
{
    if (nullCount_ < 0) {
        SQLRows rows;
        Query(QStringLiteral("SELECT COUNT(*) FROM (%1) qdb_q WHERE qdb_q.%2 IS NULL").arg(shape_.body, Quote(record_.fieldName(order_[0].column))),
              shape_.params, rows, 1);
        nullCount_ = rows.Count() ? rows.values[0].ToInt64() : 0;
    }
    return nullCount_;
}

qint64 SQLRowSource::farCount(const Side &side)
{
    if (side.far.isEmpty())
        return 0;
    return side.farIsNull ? nullCount() : count() - nullCount();
}

bool SQLRowSource::ownValues(const QList<QVariant> &keyValues, QString &where, SQLRows &own)
{
    // The record's values in the order's columns, NULL or not: what each side is made of.
    QStringList match, columns;
    for (int key : keyColumns_)
        match << QStringLiteral("qdb_v.%1 = ?").arg(Quote(record_.fieldName(key)));
    for (const OrderItem &o : order_)
        columns << QStringLiteral("qdb_v.") + Quote(record_.fieldName(o.column));
    where = match.join(QStringLiteral(" AND "));
    Query(QStringLiteral("SELECT %1 FROM (%2) qdb_v WHERE %3").arg(columns.join(QStringLiteral(", ")), shape_.body, where),
          shape_.params + keyValues, own, 1);
    return own.Count() > 0;
}

qint64 SQLRowSource::positionOf(const QList<QVariant> &keyValues)
{
    if (!HasKeys() || keyValues.size() != keyColumns_.size())
        return -1;
    if (!orderKnown_)
        return indexPositionOf(keyValues);
    QString where;
    SQLRows own;
    if (!ownValues(keyValues, where, own))
        return -1;
    // Counting the rows on one side of the record needs no sort and no rows read. Of the
    // two sides, one holds the block of NULLs and the other does not: that other one is
    // counted, with the rows that are not on it making the place.
    const Side before = side(keyValues, where, own, false), after = side(keyValues, where, own, true);
    const bool fromEnd = !before.far.isEmpty();
    const Side &counted = fromEnd ? after : before;
    SQLRows rows;
    Query(QStringLiteral("SELECT COUNT(*) FROM (%1) qdb_q WHERE %2").arg(shape_.body, counted.near), shape_.params + counted.nearParams,
          rows, 1);
    const qint64 n = rows.Count() ? rows.values[0].ToInt64() : 0;
    const qint64 position = fromEnd ? count() - n : n;
    if (index_.isEmpty()) { // the rows around it can be read from it
        anchorKeys_ = keyValues;
        anchorPosition_ = position;
        anchorSides_[0] = before;
        anchorSides_[1] = after;
    }
    return position;
}

int SQLRowSource::matchesFrom(const QList<QVariant> &from, bool forward, const SQLCondition &condition, int limit,
                              SQLRows &rows)
{
    rows = SQLRows();
    rows.columns = record_.count();
    const QString sql = QStringLiteral("SELECT * FROM (%1) qdb_q WHERE %2 AND (%3) ORDER BY %4 LIMIT ?");
    if (from.isEmpty()) {
        Query(sql.arg(shape_.body, QStringLiteral("1 = 1"), condition.text, OrderClause(QStringLiteral("qdb_q"), !forward)),
              shape_.params + condition.params + QList<QVariant>{limit}, rows, limit);
        return int(rows.Count());
    }
    QString where;
    SQLRows own;
    if (!ownValues(from, where, own))
        return -1; // the record is no longer in the result: only a walk knows what follows it
    // The side after a record holds the record itself.
    QStringList itself;
    for (int key : keyColumns_)
        itself << QStringLiteral("qdb_q.%1 = ?").arg(Quote(record_.fieldName(key)));
    const Side s = side(from, where, own, forward);
    const QString order = OrderClause(QStringLiteral("qdb_q"), !forward, false);
    Query(sql.arg(shape_.body, QStringLiteral("%1 AND NOT (%2)").arg(s.near, itself.join(QStringLiteral(" AND "))),
                  condition.text, order),
          shape_.params + s.nearParams + from + condition.params + QList<QVariant>{limit}, rows, limit);
    const int got = int(rows.Count());
    if (got < limit && !s.far.isEmpty())
        Query(sql.arg(shape_.body, s.far, condition.text, order),
              shape_.params + condition.params + QList<QVariant>{limit - got}, rows, limit - got);
    return int(rows.Count());
}

// Rows on either side of the record found last, read by their place in the order from it:
// the database picks the few it needs from one pass, or from an index, instead of sorting
// them all.
void SQLRowSource::readNearAnchor(qint64 first, int n, SQLRows &rows)
{
    // `take` rows of one side, `skip` rows away from the record: the near ones first, then
    // the far block.
    auto read = [&](bool after, qint64 skip, qint64 take, SQLRows &out) {
        const Side &s = anchorSides_[after ? 1 : 0];
        // Each part holds NULL in its first column everywhere or nowhere: where NULL goes in
        // it does not matter, and saying nothing leaves an index on it usable.
        const QString order = OrderClause(QStringLiteral("qdb_q"), !after, false);
        const QString sql = QStringLiteral("SELECT * FROM (%1) qdb_q WHERE %2 ORDER BY %3 LIMIT ? OFFSET ?");
        const size_t had = out.Count();
        Query(sql.arg(shape_.body, s.near, order), shape_.params + s.nearParams + QList<QVariant>{take, skip}, out, take);
        const qint64 got = qint64(out.Count() - had);
        if (got == take || s.far.isEmpty())
            return;
        // The near ones are all read: their number is known from what came, or from the
        // record's place.
        const qint64 nearRows = got > 0 ? skip + got : after ? count() - anchorPosition_ - farCount(s) : anchorPosition_ - farCount(s);
        const qint64 from = qMax<qint64>(0, skip - nearRows);
        Query(sql.arg(shape_.body, s.far, order), shape_.params + QList<QVariant>{take - got, from}, out, take - got);
    };
    const qint64 end = first + n;
    rows.columns = record_.count();
    if (first < anchorPosition_) { // before it, read backwards
        const qint64 take = qMin(end, anchorPosition_) - first;
        SQLRows back;
        read(false, anchorPosition_ - first - take, take, back);
        rows.AppendReversed(back);
    }
    if (end > anchorPosition_) { // the record itself and after it
        const qint64 from = qMax(first, anchorPosition_);
        read(true, from - anchorPosition_, end - from, rows);
    }
}

} // namespace qdb
