#include "FloatDigits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace qdb {

namespace {

QString nonFinite(double value)
{
    if (std::isnan(value))
        return QStringLiteral("NAN");
    return value < 0 ? QStringLiteral("-INF") : QStringLiteral("INF");
}

// The significant digits of |value| rounded to `precision` digits, without trailing zeros,
// and the decimal exponent of the first digit.
void decimalDigits(double value, int precision, QString &digits, int &exponent)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*e", precision - 1, std::fabs(value));
    const QString text = QString::fromLatin1(buf);
    const qsizetype e = text.indexOf(QLatin1Char('e'));
    digits = text.left(e);
    digits.remove(QLatin1Char('.'));
    while (digits.size() > 1 && digits.endsWith(QLatin1Char('0')))
        digits.chop(1);
    exponent = std::atoi(buf + e + 1);
}

QString groupThousands(const QString &digits, QChar separator)
{
    if (separator.isNull())
        return digits;
    QString out;
    const qsizetype n = digits.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0)
            out += separator;
        out += digits[i];
    }
    return out;
}

} // namespace

QString FormatGeneral(double value, int precision, QChar decimalSeparator)
{
    if (!std::isfinite(value))
        return nonFinite(value);
    if (value == 0)
        return QStringLiteral("0");
    precision = qBound(1, precision, 18);
    QString digits;
    int exponent;
    decimalDigits(value, precision, digits, exponent);
    QString out;
    if (exponent < -4 || exponent >= precision) {
        out = digits.left(1);
        if (digits.size() > 1)
            out += decimalSeparator + digits.mid(1);
        out += QLatin1Char('E') + QString::number(exponent);
    } else if (exponent < 0) {
        out = QLatin1Char('0') + QString(decimalSeparator) + QString(-exponent - 1, QLatin1Char('0')) + digits;
    } else {
        const QString whole = digits.left(exponent + 1).leftJustified(exponent + 1, QLatin1Char('0'));
        const QString frac = digits.mid(exponent + 1);
        out = frac.isEmpty() ? whole : whole + decimalSeparator + frac;
    }
    return value < 0 ? QLatin1Char('-') + out : out;
}

QString FormatFixed(double value, int decimals, QChar decimalSeparator, QChar thousandSeparator)
{
    if (!std::isfinite(value))
        return nonFinite(value);
    decimals = qBound(0, decimals, 18);
    char buf[400];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, std::fabs(value));
    QString text = QString::fromLatin1(buf);
    const qsizetype dot = text.indexOf(QLatin1Char('.'));
    QString whole = groupThousands(dot < 0 ? text : text.left(dot), thousandSeparator);
    QString out = dot < 0 ? whole : whole + decimalSeparator + text.mid(dot + 1);
    // "-0.00" is shown as "0.00"
    const bool negative = value < 0 && std::any_of(out.cbegin(), out.cend(), [](QChar c) {
        return c >= QLatin1Char('1') && c <= QLatin1Char('9');
    });
    return negative ? QLatin1Char('-') + out : out;
}

QString FormatScientific(double value, int precision, QChar decimalSeparator)
{
    if (!std::isfinite(value))
        return nonFinite(value);
    precision = qBound(1, precision, 18);
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*E", precision - 1, value);
    QString text = QString::fromLatin1(buf);
    const qsizetype e = text.indexOf(QLatin1Char('E'));
    QString mantissa = text.left(e);
    mantissa.replace(QLatin1Char('.'), decimalSeparator);
    const int exponent = std::atoi(buf + e + 1);
    const QString expDigits = QString::number(std::abs(exponent)).rightJustified(3, QLatin1Char('0'));
    return mantissa + QLatin1Char('E') + (exponent < 0 ? QLatin1Char('-') : QLatin1Char('+')) + expDigits;
}

} // namespace qdb
