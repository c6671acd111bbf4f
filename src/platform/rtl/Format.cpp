#include "Format.h"

#include "Exceptions.h"
#include "FloatDigits.h"

#include <QCoreApplication>

#include <cmath>
#include <cstdint>

namespace qdb {

namespace {

class Formatter
{
public:
    Formatter(const QString &format, const QList<Variant> &args, const TFormatSettings &fs)
        : format_(format), args_(args), fs_(fs)
    {
    }

    QString run()
    {
        QString out;
        out.reserve(format_.size() + 16);
        qsizetype i = 0;
        while (i < format_.size()) {
            const qsizetype pct = format_.indexOf(QLatin1Char('%'), i);
            if (pct < 0) {
                out += QStringView(format_).mid(i);
                break;
            }
            out += QStringView(format_).mid(i, pct - i);
            i = pct + 1;
            if (i < format_.size() && format_[i] == QLatin1Char('%')) {
                out += QLatin1Char('%');
                ++i;
                continue;
            }
            out += specifier(i);
        }
        return out;
    }

private:
    [[noreturn]] void invalid() const
    {
        throw EConvertError(QCoreApplication::translate("qdb", "Format '%1' invalid or incompatible with argument")
                                .arg(format_));
    }

    QChar at(qsizetype i) const { return i < format_.size() ? format_[i] : QChar(); }

    // Widths, precisions and indexes past this are taken for a broken pattern rather than
    // for text of gigabytes.
    static constexpr int MaxNumber = 0xFFFF;

    // Digits from i on; -1 when there are none.
    int digits(qsizetype &i) const
    {
        int n = -1;
        while (at(i).isDigit()) {
            n = (n < 0 ? 0 : n * 10) + at(i).digitValue();
            if (n > MaxNumber)
                invalid();
            ++i;
        }
        return n;
    }

    // An integer argument in place of a "*".
    int starArg()
    {
        const Variant &v = nextArg();
        if (!isInteger(v))
            invalid();
        const qint64 n = v.ToInt64();
        if (n > MaxNumber || n < -MaxNumber)
            invalid();
        return int(n);
    }

    // A number or "*"; -1 when neither is there.
    int number(qsizetype &i)
    {
        if (at(i) == QLatin1Char('*')) {
            ++i;
            return starArg();
        }
        return digits(i);
    }

    const Variant &nextArg()
    {
        if (argIndex_ < 0 || argIndex_ >= args_.size())
            invalid();
        return args_[argIndex_++];
    }

    QString specifier(qsizetype &i)
    {
        // Optional "index:" prefix; the digits may also be a width, which we learn at the ':'.
        qsizetype j = i;
        const int n = digits(j);
        if (n >= 0 && at(j) == QLatin1Char(':')) {
            argIndex_ = n;
            i = j + 1;
        } else if (at(i) == QLatin1Char('*') && at(i + 1) == QLatin1Char(':')) {
            argIndex_ = starArg();
            i += 2;
        }
        const bool left = at(i) == QLatin1Char('-');
        if (left)
            ++i;
        const int width = number(i);
        int prec = -1;
        if (at(i) == QLatin1Char('.')) {
            ++i;
            prec = number(i);
            if (prec < 0)
                prec = 0;
        }
        const QChar type = at(i).toLower();
        if (type.isNull())
            invalid();
        ++i;
        QString text = convert(type, prec);
        if (width > text.size())
            text = left ? text.leftJustified(width) : text.rightJustified(width);
        return text;
    }

    static bool isInteger(const Variant &v) { return v.Type() == VarType::Integer || v.Type() == VarType::Boolean; }

    QString convert(QChar type, int prec)
    {
        const Variant &v = nextArg();
        switch (type.unicode()) {
        case 'd':
        case 'u': {
            if (!isInteger(v))
                invalid();
            qint64 value = v.ToInt64();
            QString digits;
            bool negative = false;
            if (type == QLatin1Char('u'))
                digits = QString::number(value < 0 && value >= INT32_MIN ? quint64(quint32(value)) : quint64(value));
            else {
                negative = value < 0;
                digits = QString::number(negative ? 0 - quint64(value) : quint64(value));
            }
            if (prec > digits.size())
                digits = digits.rightJustified(prec, QLatin1Char('0'));
            return negative ? QLatin1Char('-') + digits : digits;
        }
        case 'x': {
            if (!isInteger(v))
                invalid();
            // A negative value that fits 32 bits is shown as a 32-bit word.
            const qint64 value = v.ToInt64();
            const quint64 bits = value < 0 && value >= INT32_MIN ? quint64(quint32(value)) : quint64(value);
            QString digits = QString::number(bits, 16).toUpper();
            if (prec > digits.size())
                digits = digits.rightJustified(prec, QLatin1Char('0'));
            return digits;
        }
        case 'f':
        case 'n':
        case 'm':
        case 'e':
        case 'g': {
            if (!v.IsNumeric() && v.Type() != VarType::DateTime)
                invalid();
            const double d = v.ToDouble();
            if (type == QLatin1Char('f'))
                return FormatFixed(d, prec < 0 ? 2 : prec, fs_.DecimalSeparator);
            if (type == QLatin1Char('n'))
                return FormatFixed(d, prec < 0 ? 2 : prec, fs_.DecimalSeparator, fs_.ThousandSeparator);
            if (type == QLatin1Char('e'))
                return FormatScientific(d, prec < 0 ? 15 : prec, fs_.DecimalSeparator);
            if (type == QLatin1Char('g'))
                return FormatGeneral(d, prec < 0 ? 15 : prec, fs_.DecimalSeparator);
            const QString amount = FormatFixed(std::abs(d), prec < 0 ? fs_.CurrencyDecimals : prec,
                                               fs_.DecimalSeparator, fs_.ThousandSeparator);
            return (d < 0 ? QStringLiteral("-") : QString()) + fs_.CurrencyString + amount;
        }
        case 's': {
            if (v.IsArray())
                invalid();
            QString s = v.ToString();
            if (prec >= 0 && prec < s.size())
                s.truncate(prec);
            return s;
        }
        default:
            invalid();
        }
    }

    const QString &format_;
    const QList<Variant> &args_;
    const TFormatSettings &fs_;
    qsizetype argIndex_ = 0;
};

} // namespace

QString Format(const QString &format, const QList<Variant> &args)
{
    return Formatter(format, args, FormatSettings()).run();
}

QString Format(const QString &format, const QList<Variant> &args, const TFormatSettings &fs)
{
    return Formatter(format, args, fs).run();
}

} // namespace qdb
