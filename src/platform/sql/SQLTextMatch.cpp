#include "SQLTextMatch.h"

#include "SQLTypes.h"

#include "platform/db/Fields.h"
#include "platform/rtl/Conversions.h"
#include "platform/rtl/DateUtils.h"
#include "platform/rtl/FloatDigits.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/rtl/FormatSettings.h"

#include <bit>
#include <cmath>

namespace qdb {

namespace {

bool sameText(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

// Doubles in the order of their values, as integers: neighbours differ by one.
qint64 orderOf(double d)
{
    const qint64 bits = std::bit_cast<qint64>(d);
    return bits < 0 ? std::numeric_limits<qint64>::min() - bits : bits;
}

double fromOrder(qint64 order)
{
    return std::bit_cast<double>(order < 0 ? std::numeric_limits<qint64>::min() - order : order);
}

// The first value from `inside` towards `outside` whose text is no longer `text`'s, less one
// step: the edge of the values that show the text.
double edgeOf(double inside, double outside, const std::function<QString(double)> &textOf, const QString &text)
{
    qint64 in = orderOf(inside), out = orderOf(outside);
    while (in + 1 < out || out + 1 < in) {
        const qint64 mid = in + (out - in) / 2;
        if (sameText(textOf(fromOrder(mid)), text))
            in = mid;
        else
            out = mid;
    }
    return fromOrder(in);
}

// SQLite as commonly built binds at most 32,766 parameters to a statement.
constexpr int MaxListedValues = 30000;

class Translator
{
public:
    Translator(TDataSet *ds, TSQLDialect dialect, const std::function<QString(const QString &)> &quote)
        : ds_(ds), dialect_(dialect), quote_(quote)
    {
    }

    bool item(const TFieldTextMatch &m, QString &sql)
    {
        TField *f = ds_->FindField(m.FieldName);
        if (!f || f->FieldKind() != fkData || f->OnGetText)
            return false;
        if (auto *n = qobject_cast<TNumericField *>(f); n && !n->EditFormat().isEmpty())
            return false;
        column_ = quote_(f->FieldName());
        QStringList parts;
        QList<QVariant> equal;
        bool null = false;
        for (const QString &text : m.Texts) {
            if (text.isEmpty())
                null = true;
            if (!values(f, text, equal, parts))
                return false;
        }
        // Past this the statement could not bind its values; the records are tested where
        // they are read instead.
        if (equal.size() > MaxListedValues)
            return false;
        if (!equal.isEmpty()) {
            QStringList marks;
            for (const QVariant &v : equal) {
                marks << QStringLiteral("?");
                params << v;
            }
            const QString left = f->ValueType() == VarType::String ? fold(column_) : column_;
            const QString right = f->ValueType() == VarType::String && dialect_ == TSQLDialect::PostgreSQL
                ? QStringLiteral("lower(?)")
                : QStringLiteral("?");
            if (right != QLatin1String("?"))
                marks.fill(right);
            parts.prepend(QStringLiteral("%1 IN (%2)").arg(left, marks.join(QStringLiteral(", "))));
            // The IN list's values come first in the text: move them before the ranges'.
            std::rotate(params.begin() + firstParam_, params.end() - equal.size(), params.end());
        }
        if (null)
            parts << QStringLiteral("%1 IS NULL").arg(column_);
        sql = parts.isEmpty() ? QStringLiteral("1 = 0") : QStringLiteral("(%1)").arg(parts.join(QStringLiteral(" OR ")));
        return true;
    }

    void startItem() { firstParam_ = params.size(); }

    QList<QVariant> params;

private:
    QString fold(const QString &column) const
    {
        return dialect_ == TSQLDialect::SQLite ? QStringLiteral("qdb_fold(%1)").arg(column)
                                               : QStringLiteral("lower(%1)").arg(column);
    }

    QVariant db(const Variant &v, const TField *f) const { return ToDatabase(v, f, dialect_); }

    void range(const TField *f, const Variant &from, bool fromIncluded, const Variant &to, bool toIncluded,
               QStringList &parts)
    {
        parts << QStringLiteral("(%1 %2 ? AND %1 %3 ?)")
                     .arg(column_, fromIncluded ? QStringLiteral(">=") : QStringLiteral(">"),
                          toIncluded ? QStringLiteral("<=") : QStringLiteral("<"));
        params << db(from, f) << db(to, f);
    }

    // The values of a field whose text is `text`: equal ones, or ranges.
    bool values(TField *f, const QString &text, QList<QVariant> &equal, QStringList &parts)
    {
        if (text.isEmpty()) {
            if (f->ValueType() == VarType::String)
                equal << QStringLiteral(""); // not a null string: that would bind NULL
            else if (auto *b = qobject_cast<TBooleanField *>(f))
                booleans(b, text, equal);
            return true;
        }
        switch (f->ValueType()) {
        case VarType::String:
            equal << (dialect_ == TSQLDialect::SQLite ? text.toCaseFolded() : text);
            return true;
        case VarType::Integer: {
            qint64 v = 0;
            if (TryStrToInt64(text, v) && sameText(IntToStr(v), text))
                equal << db(Variant(v), f);
            return true;
        }
        case VarType::Currency: {
            Currency c;
            if (TryStrToCurr(text, c) && sameText(CurrToStr(c), text))
                equal << db(Variant(c), f);
            return true;
        }
        case VarType::Boolean:
            if (auto *b = qobject_cast<TBooleanField *>(f)) {
                booleans(b, text, equal);
                return true;
            }
            return false;
        case VarType::Double: return floats(f, text, parts);
        case VarType::DateTime: return dates(f, text, parts);
        default: return false;
        }
    }

    void booleans(TBooleanField *b, const QString &text, QList<QVariant> &equal)
    {
        if (sameText(b->TrueText(), text))
            equal << db(Variant(true), b);
        if (sameText(b->FalseText(), text))
            equal << db(Variant(false), b);
    }

    bool floats(TField *f, const QString &text, QStringList &parts)
    {
        auto *ff = qobject_cast<TFloatField *>(f);
        if (!ff || f->DataType() == ftSingle)
            return false;
        const int precision = ff->Precision();
        const QChar separator = FormatSettings().DecimalSeparator;
        const auto textOf = [precision, separator](double d) { return FormatGeneral(d, precision, separator); };
        double v = 0;
        if (!TryStrToFloat(text, v) || !std::isfinite(v) || !sameText(textOf(v), text))
            return true;
        if (v == 0) {
            parts << QStringLiteral("%1 = ?").arg(column_);
            params << 0.0;
            return true;
        }
        // Every value that rounds to the same digits shows the same text.
        double below = v, above = v;
        for (double step = std::fabs(v) * 1e-15; sameText(textOf(below), text); step *= 2)
            below = v - step;
        for (double step = std::fabs(v) * 1e-15; sameText(textOf(above), text); step *= 2)
            above = v + step;
        range(f, edgeOf(v, below, textOf, text), true, edgeOf(v, above, textOf, text), true, parts);
        return true;
    }

    bool dates(TField *f, const QString &text, QStringList &parts)
    {
        const TFieldType type = f->DataType();
        TDateTime dt = 0;
        if (type == ftDate) {
            if (TryStrToDate(text, dt) && sameText(DateToStr(dt), text))
                range(f, Variant::FromDateTime(dt), true, Variant::FromDateTime(dt + 1), false, parts);
            return true;
        }
        // Times show whole seconds, minutes or hours, as the long time format says.
        const QString format = FormatSettings().LongTimeFormat;
        const double unit = format.contains(QLatin1Char('s'), Qt::CaseInsensitive) ? 1.0 / SecsPerDay
            : format.contains(QLatin1Char('n'), Qt::CaseInsensitive)               ? 1.0 / MinsPerDay
                                                                                   : 1.0 / HoursPerDay;
        if (type == ftTime) {
            if (TryStrToTime(text, dt) && sameText(TimeToStr(dt), text))
                range(f, Variant::FromDateTime(dt), true, Variant::FromDateTime(dt + unit), false, parts);
            return true;
        }
        if (!TryStrToDateTime(text, dt) || !sameText(DateTimeToStr(dt), text))
            return true;
        if (dt == std::floor(dt) && sameText(DateToStr(dt), text)) {
            // A date alone: midnight to the millisecond.
            range(f, Variant::FromDateTime(dt), true, Variant::FromDateTime(dt), true, parts);
            return true;
        }
        range(f, Variant::FromDateTime(dt), true, Variant::FromDateTime(dt + unit), false, parts);
        return true;
    }

    TDataSet *ds_;
    TSQLDialect dialect_;
    const std::function<QString(const QString &)> &quote_;
    QString column_;
    qsizetype firstParam_ = 0;
};

} // namespace

bool TextMatchToSQL(const TFilterRecordMatch &match, TDataSet *dataSet, TSQLDialect dialect,
                    const std::function<QString(const QString &)> &quoteName, SQLCondition &condition)
{
    Translator t(dataSet, dialect, quoteName);
    QStringList items;
    for (const TFieldTextMatch &m : match.Items) {
        QString sql;
        t.startItem();
        if (!t.item(m, sql))
            return false;
        items << sql;
    }
    condition.text = items.isEmpty() ? QStringLiteral("1 = 1") : items.join(QStringLiteral(" AND "));
    condition.params = t.params;
    return true;
}

} // namespace qdb
