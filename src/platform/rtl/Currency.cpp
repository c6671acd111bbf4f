#include "Currency.h"

#include "Exceptions.h"

#include <QCoreApplication>

#include <cmath>

namespace qdb {

namespace {

#if defined(__SIZEOF_INT128__)
__extension__ typedef __int128 Wide;
#else
typedef long double Wide; // compilers without a 128-bit integer round very large products
#endif

// Divides rounding half away from zero.
qint64 roundedDiv(Wide n, Wide d)
{
    const bool negative = (n < 0) != (d < 0);
    const Wide an = n < 0 ? -n : n;
    const Wide ad = d < 0 ? -d : d;
#if defined(__SIZEOF_INT128__)
    const Wide q = (an + ad / 2) / ad;
#else
    const Wide q = std::floor(an / ad + 0.5L);
#endif
    return static_cast<qint64>(negative ? -q : q);
}

} // namespace

Currency Currency::FromDouble(double v)
{
    // Half away from zero, added and truncated: the same steps a database's SQL can take, so
    // that a sum it computes of rounded values matches one made here to the last digit.
    const double product = v * double(Scale);
    const double scaled = product < 0 ? -std::trunc(-product + 0.5) : std::trunc(product + 0.5);
    if (!std::isfinite(scaled) || std::fabs(scaled) >= 9.2e18)
        throw EConvertError(QCoreApplication::translate("qdb", "%1 is not within the valid range of currency values")
                                .arg(v));
    return FromRaw(static_cast<qint64>(scaled));
}

QString Currency::ToString() const
{
    const quint64 mag = raw_ < 0 ? quint64(0) - quint64(raw_) : quint64(raw_);
    QString text = QString::number(mag / Scale);
    quint64 frac = mag % Scale;
    if (frac != 0) {
        QString digits = QString::number(frac).rightJustified(4, QLatin1Char('0'));
        while (digits.endsWith(QLatin1Char('0')))
            digits.chop(1);
        text += QLatin1Char('.') + digits;
    }
    return raw_ < 0 ? QLatin1Char('-') + text : text;
}

Currency operator*(Currency a, Currency b)
{
    return Currency::FromRaw(roundedDiv(Wide(a.raw_) * b.raw_, Currency::Scale));
}

Currency operator/(Currency a, Currency b)
{
    if (b.raw_ == 0)
        throw EVariantError(QCoreApplication::translate("qdb", "Division by zero"));
    return Currency::FromRaw(roundedDiv(Wide(a.raw_) * Currency::Scale, b.raw_));
}

} // namespace qdb
