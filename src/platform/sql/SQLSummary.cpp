// Figures over a whole result asked of the database (counts, sums, the smallest and largest
// value, the first and last value in the result's order), and records read by key: what
// the data set hands out instead of walking its records.

#include "SQLDataSet.h"
#include "SQLRowSource.h"
#include "SQLTypes.h"

#include "platform/rtl/Exceptions.h"

#include <QDataStream>
#include <QHash>
#include <QIODevice>

namespace qdb {

QString SQLRowSource::SummaryExpression(const QString &column, int index, SQLValueKind kind, bool compared) const
{
    Q_UNUSED(column);
    Q_UNUSED(index);
    Q_UNUSED(kind);
    Q_UNUSED(compared);
    return {};
}

bool SQLRowSource::summarize(const QList<SQLSummaryColumn> &columns, qint64 &rows, QList<SQLColumnSummary> &summaries)
{
    // Where each figure stands in the one row of the aggregate query.
    struct Place
    {
        int values = -1, sum = -1, min = -1, max = -1;
        QString value;
    };
    QStringList items{QStringLiteral("COUNT(*)")};
    QList<Place> places;
    for (const SQLSummaryColumn &c : columns) {
        const QString name = QStringLiteral("qdb_q.") + Quote(record_.fieldName(c.column));
        Place place;
        place.value = SummaryExpression(name, c.column, c.kind, false);
        if (place.value.isEmpty() || (c.valueEnds && !orderKnown_))
            return false;
        place.values = int(items.size());
        items << QStringLiteral("COUNT(%1)").arg(place.value);
        const bool numeric = c.kind == SQLValueKind::Integer || c.kind == SQLValueKind::Currency
            || c.kind == SQLValueKind::ExactCurrency;
        if (c.sum && numeric) {
            place.sum = int(items.size());
            items << WholeSum(place.value);
        }
        if (c.minMax) {
            const QString compared = SummaryExpression(name, c.column, c.kind, true);
            if (compared.isEmpty())
                return false;
            place.min = int(items.size());
            items << QStringLiteral("MIN(%1)").arg(compared) << QStringLiteral("MAX(%1)").arg(compared);
            place.max = place.min + 1;
        }
        places << place;
    }

    SQLRows figures;
    Query(QStringLiteral("SELECT %1 FROM (%2) qdb_q").arg(items.join(QStringLiteral(", ")), shape_.body), shape_.params,
          figures, 1);
    auto figure = [&figures](int at) {
        const Variant &v = figures.values[size_t(at)];
        return v.IsClear() ? Variant() : v;
    };
    rows = figure(0).ToInt64();
    count_ = rows;
    summaries.clear();
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const Place &place = places[i];
        SQLColumnSummary s;
        s.values = figure(place.values).ToInt64();
        if (place.sum >= 0)
            s.sum = figure(place.sum);
        if (place.min >= 0) {
            s.min = figure(place.min);
            s.max = figure(place.max);
        }
        if (columns[i].valueEnds && s.values > 0) {
            for (const bool last : {false, true}) {
                SQLRows end;
                Query(QStringLiteral("SELECT %1 FROM (%2) qdb_q WHERE %1 IS NOT NULL ORDER BY %3 LIMIT 1")
                          .arg(place.value, shape_.body, OrderClause(QStringLiteral("qdb_q"), last)),
                      shape_.params, end, 1);
                (last ? s.lastValue : s.firstValue) = end.Count() ? end.values[0] : Variant();
            }
        }
        summaries << s;
    }
    return true;
}

void SQLRowSource::rowsByKeys(const QList<QList<QVariant>> &keys, SQLRows &rows)
{
    const int width = int(keyColumns_.size());
    if (width == 0)
        return;
    QStringList names;
    for (int key : keyColumns_)
        names << QStringLiteral("qdb_q.") + Quote(record_.fieldName(key));
    const QString placeholders = QStringList(width, QStringLiteral("?")).join(QStringLiteral(", "));
    // A few hundred values a statement: well within every database's limit on bound values.
    const qsizetype chunk = qMax(1, 900 / width);
    for (qsizetype from = 0; from < keys.size(); from += chunk) {
        const qsizetype n = qMin(chunk, keys.size() - from);
        QList<QVariant> params = shape_.params;
        QStringList tuples;
        for (qsizetype k = from; k < from + n; ++k) {
            params << keys[k];
            tuples << (width == 1 ? placeholders : QStringLiteral("(%1)").arg(placeholders));
        }
        const QString match = width == 1
            ? QStringLiteral("%1 IN (%2)").arg(names[0], tuples.join(QStringLiteral(", ")))
            : QStringLiteral("(%1) IN (VALUES %2)").arg(names.join(QStringLiteral(", ")), tuples.join(QStringLiteral(", ")));
        Query(QStringLiteral("SELECT * FROM (%1) qdb_q WHERE %2").arg(shape_.body, match), params, rows);
    }
}

namespace {

// The kind a field's values are summed up as; false for fields the database cannot sum up as
// the data set reads them.
bool valueKind(const TField *field, SQLValueKind &kind)
{
    switch (field->ValueType()) {
    case VarType::Integer: kind = SQLValueKind::Integer; return true;
    case VarType::Double: kind = SQLValueKind::Currency; return true;
    case VarType::Currency: kind = SQLValueKind::ExactCurrency; return true;
    case VarType::String: kind = SQLValueKind::Text; return true;
    case VarType::Boolean: kind = SQLValueKind::Boolean; return true;
    case VarType::DateTime: kind = SQLValueKind::DateTime; return true;
    case VarType::Bytes: kind = SQLValueKind::Bytes; return true;
    default: return false;
    }
}

QByteArray keyBytes(const QList<QVariant> &keys)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << keys;
    return bytes;
}

} // namespace

bool TCustomSQLDataSet::Summarize(const QList<TFieldSummaryRequest> &requests, TDataSetSummary &summary)
{
    if (!source_ || State() != dsBrowse || clientFiltering())
        return false;
    QList<SQLSummaryColumn> columns;
    for (const TFieldSummaryRequest &r : requests) {
        const int no = r.Field && r.Field->DataSet() == this && r.Field->FieldKind() == fkData ? r.Field->FieldNo() : 0;
        SQLSummaryColumn c;
        c.column = no > 0 ? columnOfField_.value(no - 1, -1) : -1;
        if (c.column < 0 || !valueKind(r.Field, c.kind))
            return false;
        c.sum = r.Parts.Contains(spSum);
        c.minMax = r.Parts.Contains(spMinMax);
        c.valueEnds = r.Parts.Contains(spValueEnds);
        columns << c;
    }
    qint64 rows = 0;
    QList<SQLColumnSummary> figures;
    try {
        if (!source_->Summarize(columns, rows, figures))
            return false;
    } catch (const EReadCancelled &) {
        throw;
    } catch (const EDatabaseError &) {
        return false; // a sum too large, a type the database cannot compare: the records are walked
    }
    const TSQLDialect dialect = connection_->Dialect();
    summary.Records = rows;
    summary.Fields.clear();
    for (qsizetype i = 0; i < requests.size(); ++i) {
        TField *field = requests[i].Field;
        const bool currency = columns[i].kind == SQLValueKind::Currency || columns[i].kind == SQLValueKind::ExactCurrency;
        auto value = [&](const Variant &v) -> Variant {
            if (v.IsClear())
                return v;
            return currency ? Variant(Currency::FromRaw(v.ToInt64())) : FromDatabase(v, field, dialect);
        };
        const SQLColumnSummary &f = figures[i];
        TFieldSummary s;
        s.Values = f.values;
        s.Sum = f.sum.IsClear() ? Variant() : (currency ? value(f.sum) : Variant(f.sum.ToInt64()));
        s.Min = value(f.min);
        s.Max = value(f.max);
        s.FirstValue = value(f.firstValue);
        s.LastValue = value(f.lastValue);
        if (requests[i].Parts.Contains(spEnds) && rows > 0) {
            // The records the walk starts and ends with, as it would read them.
            const int slot = field->FieldNo() - 1;
            s.First = SummaryValue(row(0)[slot]);
            s.Last = SummaryValue(row(rows - 1)[slot]);
        }
        summary.Fields << s;
    }
    return true;
}

bool TCustomSQLDataSet::ReadRecords(const QList<TBookmark> &bookmarks, const QList<TField *> &fields,
                                    const TRecordValuesProc &each)
{
    if (!source_ || !source_->HasKeys())
        return false;
    QList<int> columns;
    for (TField *f : fields) {
        const int no = f && f->DataSet() == this && f->FieldKind() == fkData ? f->FieldNo() : 0;
        const int column = no > 0 ? columnOfField_.value(no - 1, -1) : -1;
        if (column < 0)
            return false;
        columns << column;
    }
    QList<QList<QVariant>> keys;
    keys.reserve(bookmarks.size());
    for (const TBookmark &b : bookmarks) {
        QList<QVariant> k;
        if (!bookmarkKeys(b, k) || k.isEmpty())
            return false;
        keys << k;
    }
    SQLRows raw;
    source_->RowsByKeys(keys, raw);

    // The rows found, by their key values in the form bookmarks keep them.
    const TSQLDialect dialect = connection_->Dialect();
    QHash<QByteArray, size_t> found;
    for (size_t r = 0; r < raw.Count(); ++r) {
        const Variant *values = &raw.values[r * size_t(raw.columns)];
        QList<QVariant> k;
        for (TField *f : keyOfRow_)
            k << ToDatabase(FromDatabase(values[columnOfField_[f->FieldNo() - 1]], f, dialect), f, dialect);
        found.insert(keyBytes(k), r);
    }
    QList<Variant> values(fields.size());
    for (const QList<QVariant> &k : keys) {
        const auto at = found.constFind(keyBytes(k));
        if (at == found.cend())
            continue;
        const Variant *row = &raw.values[*at * size_t(raw.columns)];
        for (qsizetype i = 0; i < fields.size(); ++i)
            values[i] = FromDatabase(row[columns[i]], fields[i], dialect);
        each(values);
    }
    return true;
}

} // namespace qdb
