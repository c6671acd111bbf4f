#include "Conversions.h"

#include "Exceptions.h"
#include "FloatDigits.h"

#include <QCoreApplication>
#include <QtNumeric>

#include <cmath>
#include <limits>

namespace qdb {

namespace {

[[noreturn]] void invalidInteger(const QString &s)
{
    throw EConvertError(QCoreApplication::translate("qdb", "'%1' is not a valid integer value").arg(s));
}

[[noreturn]] void invalidFloat(const QString &s)
{
    throw EConvertError(QCoreApplication::translate("qdb", "'%1' is not a valid floating point value").arg(s));
}

// Checks the shape [sign] digits [sep digits] [E [sign] digits] with at least one mantissa
// digit and returns it rewritten with '.' as the separator, or an empty string.
QString normalisedNumber(const QString &s, QChar sep)
{
    const QString t = s.trimmed();
    QString out;
    out.reserve(t.size());
    qsizetype i = 0;
    auto digits = [&]() {
        qsizetype n = 0;
        while (i < t.size() && t[i] >= QLatin1Char('0') && t[i] <= QLatin1Char('9')) {
            out += t[i++];
            ++n;
        }
        return n;
    };
    if (i < t.size() && (t[i] == QLatin1Char('+') || t[i] == QLatin1Char('-')))
        out += t[i++];
    qsizetype mantissa = digits();
    if (i < t.size() && t[i] == sep) {
        out += QLatin1Char('.');
        ++i;
        mantissa += digits();
    }
    if (mantissa == 0)
        return QString();
    if (i < t.size() && (t[i] == QLatin1Char('e') || t[i] == QLatin1Char('E'))) {
        out += QLatin1Char('e');
        ++i;
        if (i < t.size() && (t[i] == QLatin1Char('+') || t[i] == QLatin1Char('-')))
            out += t[i++];
        if (digits() == 0)
            return QString();
    }
    return i == t.size() ? out : QString();
}

} // namespace

QString IntToStr(qint64 value)
{
    return QString::number(value);
}

QString IntToHex(qint64 value, int digits)
{
    return QString::number(quint64(value), 16).toUpper().rightJustified(digits, QLatin1Char('0'));
}

QString FloatToStr(double value)
{
    return FloatToStr(value, FormatSettings());
}

QString FloatToStr(double value, const TFormatSettings &fs)
{
    return FormatGeneral(value, 15, fs.DecimalSeparator);
}

QString CurrToStr(Currency value)
{
    return CurrToStr(value, FormatSettings());
}

QString CurrToStr(Currency value, const TFormatSettings &fs)
{
    QString text = value.ToString();
    text.replace(QLatin1Char('.'), fs.DecimalSeparator);
    return text;
}

QString BoolToStr(bool value, bool useBoolStrs)
{
    if (useBoolStrs)
        return value ? QStringLiteral("True") : QStringLiteral("False");
    return value ? QStringLiteral("-1") : QStringLiteral("0");
}

bool TryStrToInt64(const QString &s, qint64 &value)
{
    QString t = s.trimmed();
    bool negative = false;
    if (t.startsWith(QLatin1Char('-')) || t.startsWith(QLatin1Char('+'))) {
        negative = t.startsWith(QLatin1Char('-'));
        t.remove(0, 1);
    }
    int base = 10;
    if (t.startsWith(QLatin1Char('$'))) {
        base = 16;
        t.remove(0, 1);
    } else if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        base = 16;
        t.remove(0, 2);
    }
    if (t.isEmpty() || !t[0].isLetterOrNumber())
        return false;
    bool ok = false;
    const qulonglong mag = t.toULongLong(&ok, base);
    if (!ok)
        return false;
    const qulonglong limit = qulonglong(std::numeric_limits<qint64>::max()) + (negative ? 1 : 0);
    if (mag > limit)
        return false;
    value = negative ? qint64(0 - mag) : qint64(mag);
    return true;
}

bool TryStrToInt(const QString &s, int &value)
{
    qint64 v;
    if (!TryStrToInt64(s, v) || v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max())
        return false;
    value = int(v);
    return true;
}

int StrToInt(const QString &s)
{
    int v;
    if (!TryStrToInt(s, v))
        invalidInteger(s);
    return v;
}

qint64 StrToInt64(const QString &s)
{
    qint64 v;
    if (!TryStrToInt64(s, v))
        invalidInteger(s);
    return v;
}

int StrToIntDef(const QString &s, int defaultValue)
{
    int v;
    return TryStrToInt(s, v) ? v : defaultValue;
}

bool TryStrToFloat(const QString &s, double &value)
{
    return TryStrToFloat(s, value, FormatSettings());
}

bool TryStrToFloat(const QString &s, double &value, const TFormatSettings &fs)
{
    const QString n = normalisedNumber(s, fs.DecimalSeparator);
    if (n.isEmpty())
        return false;
    bool ok = false;
    const double v = QLocale::c().toDouble(n, &ok);
    if (!ok || !std::isfinite(v))
        return false;
    value = v;
    return true;
}

double StrToFloat(const QString &s)
{
    return StrToFloat(s, FormatSettings());
}

double StrToFloat(const QString &s, const TFormatSettings &fs)
{
    double v;
    if (!TryStrToFloat(s, v, fs))
        invalidFloat(s);
    return v;
}

double StrToFloatDef(const QString &s, double defaultValue)
{
    double v;
    return TryStrToFloat(s, v) ? v : defaultValue;
}

bool TryStrToCurr(const QString &s, Currency &value)
{
    return TryStrToCurr(s, value, FormatSettings());
}

bool TryStrToCurr(const QString &s, Currency &value, const TFormatSettings &fs)
{
    const QString n = normalisedNumber(s, fs.DecimalSeparator);
    if (n.isEmpty())
        return false;
    if (n.contains(QLatin1Char('e'))) {
        bool ok = false;
        const double d = QLocale::c().toDouble(n, &ok);
        if (!ok || !std::isfinite(d) || std::fabs(d) >= 9.2e14)
            return false;
        value = Currency::FromDouble(d);
        return true;
    }
    // Exact decimal parse: the text, not a double, decides the fourth decimal.
    const bool negative = n.startsWith(QLatin1Char('-'));
    const QString body = (negative || n.startsWith(QLatin1Char('+'))) ? n.mid(1) : n;
    const qsizetype dot = body.indexOf(QLatin1Char('.'));
    const QString whole = dot < 0 ? body : body.left(dot);
    QString frac = dot < 0 ? QString() : body.mid(dot + 1);
    bool roundUp = frac.size() > 4 && frac[4] >= QLatin1Char('5');
    frac = frac.left(4).leftJustified(4, QLatin1Char('0'));
    bool ok = true;
    const qint64 w = whole.isEmpty() ? 0 : whole.toLongLong(&ok);
    qint64 raw = 0;
    if (!ok || qMulOverflow(w, Currency::Scale, &raw)
        || qAddOverflow(raw, frac.toLongLong() + (roundUp ? 1 : 0), &raw))
        return false;
    value = Currency::FromRaw(negative ? -raw : raw);
    return true;
}

Currency StrToCurr(const QString &s)
{
    Currency c;
    if (!TryStrToCurr(s, c))
        invalidFloat(s);
    return c;
}

bool TryStrToBool(const QString &s, bool &value)
{
    const QString t = s.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
        value = true;
        return true;
    }
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
        value = false;
        return true;
    }
    double d;
    if (TryStrToFloat(t, d)) {
        value = d != 0;
        return true;
    }
    return false;
}

bool StrToBool(const QString &s)
{
    bool b;
    if (!TryStrToBool(s, b))
        throw EConvertError(QCoreApplication::translate("qdb", "'%1' is not a valid boolean value").arg(s));
    return b;
}

} // namespace qdb
