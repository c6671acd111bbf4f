#include "FormatDateTime.h"

#include "Exceptions.h"

#include <QCoreApplication>
#include <QList>
#include <QRegularExpression>

namespace qdb {

namespace {

class DateFormatter
{
public:
    DateFormatter(TDateTime dt, const TFormatSettings &fs) : dt_(dt), fs_(fs)
    {
        DecodeDateTime(dt, year_, month_, day_, hour_, minute_, second_, msec_);
    }

    void append(const QString &format, int depth = 0)
    {
        const bool clock12 = usesAmPm(format);
        bool afterHour = false;
        qsizetype i = 0;
        while (i < format.size()) {
            const QChar c = format[i];
            const char lc = char(c.toLower().unicode() < 128 ? c.toLower().unicode() : 0);
            qsizetype run = 1;
            while (i + run < format.size() && format[i + run].toLower() == c.toLower())
                ++run;
            switch (lc) {
            case '\'':
            case '"': {
                const qsizetype end = format.indexOf(c, i + 1);
                const qsizetype stop = end < 0 ? format.size() : end;
                out_ += QStringView(format).mid(i + 1, stop - i - 1);
                i = stop + 1;
                continue;
            }
            case 'd':
                run = qMin<qsizetype>(run, 6);
                if (run <= 2)
                    out_ += number(day_, int(run));
                else if (run == 3)
                    out_ += fs_.ShortDayNames[DayOfWeek(dt_) - 1];
                else if (run == 4)
                    out_ += fs_.LongDayNames[DayOfWeek(dt_) - 1];
                else if (depth < 2)
                    append(run == 5 ? fs_.ShortDateFormat : fs_.LongDateFormat, depth + 1);
                afterHour = false;
                break;
            case 'm':
                if (afterHour) {
                    run = qMin<qsizetype>(run, 2);
                    out_ += number(minute_, int(run));
                } else {
                    run = qMin<qsizetype>(run, 4);
                    if (run <= 2)
                        out_ += number(month_, int(run));
                    else
                        out_ += (run == 3 ? fs_.ShortMonthNames : fs_.LongMonthNames)[month_ - 1];
                }
                afterHour = false;
                break;
            case 'y':
                out_ += run <= 2 ? number(year_ % 100, 2) : number(year_, 4);
                afterHour = false;
                break;
            case 'h': {
                run = qMin<qsizetype>(run, 2);
                int h = hour_;
                if (clock12) {
                    h %= 12;
                    if (h == 0)
                        h = 12;
                }
                out_ += number(h, int(run));
                afterHour = true;
                break;
            }
            case 'n':
                run = qMin<qsizetype>(run, 2);
                out_ += number(minute_, int(run));
                afterHour = false;
                break;
            case 's':
                run = qMin<qsizetype>(run, 2);
                out_ += number(second_, int(run));
                afterHour = false;
                break;
            case 'z':
                run = qMin<qsizetype>(run, 3);
                out_ += number(msec_, run >= 3 ? 3 : 1);
                afterHour = false;
                break;
            case 't':
                run = qMin<qsizetype>(run, 2);
                if (depth < 2)
                    append(run == 1 ? fs_.ShortTimeFormat : fs_.LongTimeFormat, depth + 1);
                afterHour = false;
                break;
            case 'c':
                run = 1;
                if (depth < 2) {
                    append(fs_.ShortDateFormat, depth + 1);
                    if (TimeOf(dt_) != 0) {
                        out_ += QLatin1Char(' ');
                        append(fs_.LongTimeFormat, depth + 1);
                    }
                }
                afterHour = false;
                break;
            case 'a':
                run = ampm(format, i);
                break;
            case '/':
                run = 1;
                out_ += fs_.DateSeparator;
                break;
            case ':':
                run = 1;
                out_ += fs_.TimeSeparator;
                break;
            default:
                run = 1;
                out_ += c;
                break;
            }
            i += run;
        }
    }

    QString result() const { return out_; }

private:
    static QString number(int v, int width) { return QString::number(v).rightJustified(width, QLatin1Char('0')); }

    static bool startsAt(const QString &format, qsizetype i, QLatin1String what)
    {
        return QStringView(format).mid(i).startsWith(what, Qt::CaseInsensitive);
    }

    static bool usesAmPm(const QString &format)
    {
        for (qsizetype i = 0; i < format.size(); ++i)
            if (startsAt(format, i, QLatin1String("am/pm")) || startsAt(format, i, QLatin1String("a/p"))
                || startsAt(format, i, QLatin1String("ampm")))
                return true;
        return false;
    }

    // Writes an am/pm marker at i and returns its length (1 for a plain 'a').
    qsizetype ampm(const QString &format, qsizetype i)
    {
        const bool pm = hour_ >= 12;
        if (startsAt(format, i, QLatin1String("am/pm"))) {
            const QStringView marker = QStringView(format).mid(pm ? i + 3 : i, 2);
            out_ += marker;
            return 5;
        }
        if (startsAt(format, i, QLatin1String("a/p"))) {
            out_ += format[pm ? i + 2 : i];
            return 3;
        }
        if (startsAt(format, i, QLatin1String("ampm"))) {
            out_ += pm ? fs_.TimePMString : fs_.TimeAMString;
            return 4;
        }
        out_ += format[i];
        return 1;
    }

    TDateTime dt_;
    const TFormatSettings &fs_;
    int year_, month_, day_, hour_, minute_, second_, msec_;
    QString out_;
};

// The order of day, month and year in a short date format, as "DMY", "MDY" or "YMD".
QString dateOrder(const QString &shortFormat)
{
    QString order;
    for (QChar c : shortFormat) {
        const QChar u = c.toUpper();
        if ((u == QLatin1Char('D') || u == QLatin1Char('M') || u == QLatin1Char('Y')) && !order.contains(u))
            order += u;
    }
    return order.size() == 3 ? order : QStringLiteral("MDY");
}

bool allDigits(const QString &s)
{
    if (s.isEmpty())
        return false;
    for (QChar c : s)
        if (!c.isDigit())
            return false;
    return true;
}

int expandYear(int year, int digits, const TFormatSettings &fs)
{
    if (digits > 2)
        return year;
    // The two-digit year lands in the hundred years that end `window` years after now.
    const int thisYear = QDate::currentDate().year();
    const int windowStart = thisYear - 100 + fs.TwoDigitYearCenturyWindow;
    int full = (windowStart / 100) * 100 + year;
    if (full <= windowStart)
        full += 100;
    return full;
}

} // namespace

QString FormatDateTime(const QString &format, TDateTime dt, const TFormatSettings &fs)
{
    DateFormatter f(dt, fs);
    f.append(format.isEmpty() ? QStringLiteral("c") : format);
    return f.result();
}

QString FormatDateTime(const QString &format, TDateTime dt)
{
    return FormatDateTime(format, dt, FormatSettings());
}

QString DateToStr(TDateTime dt, const TFormatSettings &fs)
{
    return FormatDateTime(fs.ShortDateFormat, dt, fs);
}

QString TimeToStr(TDateTime dt, const TFormatSettings &fs)
{
    return FormatDateTime(fs.LongTimeFormat, dt, fs);
}

QString DateTimeToStr(TDateTime dt, const TFormatSettings &fs)
{
    return FormatDateTime(QStringLiteral("c"), dt, fs);
}

QString DateToStr(TDateTime dt) { return DateToStr(dt, FormatSettings()); }
QString TimeToStr(TDateTime dt) { return TimeToStr(dt, FormatSettings()); }
QString DateTimeToStr(TDateTime dt) { return DateTimeToStr(dt, FormatSettings()); }

bool TryStrToDate(const QString &s, TDateTime &value, const TFormatSettings &fs)
{
    const QString t = s.trimmed();
    QStringList parts = t.split(fs.DateSeparator);
    QString order = dateOrder(fs.ShortDateFormat);
    if (parts.size() == 1 && fs.ShortDateFormat.contains(QLatin1Char(' ')))
        parts = t.split(QLatin1Char(' '), Qt::SkipEmptyParts); // "d mmm yyyy"
    if (parts.size() == 1 && fs.DateSeparator != QLatin1Char('-')) {
        parts = t.split(QLatin1Char('-'));
        if (parts.size() == 3 && parts[0].size() == 4)
            order = QStringLiteral("YMD"); // ISO dates are read whatever the locale
        else
            return false;
    }
    if (parts.size() < 2 || parts.size() > 3)
        return false;
    // A month written as a name, as locales with "d mmm yyyy" dates show it.
    const int monthAt = int(order.indexOf(QLatin1Char('M'))) - (parts.size() == 2 && order.indexOf(QLatin1Char('Y')) < order.indexOf(QLatin1Char('M')) ? 1 : 0);
    if (monthAt >= 0 && monthAt < parts.size() && !allDigits(parts[monthAt])) {
        for (int m = 0; m < 12; ++m)
            if (parts[monthAt].compare(fs.ShortMonthNames[m], Qt::CaseInsensitive) == 0
                || parts[monthAt].compare(fs.LongMonthNames[m], Qt::CaseInsensitive) == 0)
                parts[monthAt] = QString::number(m + 1);
    }
    for (const QString &p : parts)
        if (!allDigits(p) || p.size() > 4)
            return false;
    int y = QDate::currentDate().year(), m = 0, d = 0;
    if (parts.size() == 2) { // no year: day and month in their order
        order.remove(QLatin1Char('Y'));
        m = parts[order.indexOf(QLatin1Char('M'))].toInt();
        d = parts[order.indexOf(QLatin1Char('D'))].toInt();
    } else {
        const QString &yp = parts[order.indexOf(QLatin1Char('Y'))];
        y = expandYear(yp.toInt(), int(yp.size()), fs);
        m = parts[order.indexOf(QLatin1Char('M'))].toInt();
        d = parts[order.indexOf(QLatin1Char('D'))].toInt();
    }
    return TryEncodeDate(y, m, d, value);
}

bool TryStrToTime(const QString &s, TDateTime &value, const TFormatSettings &fs)
{
    QString t = s.trimmed();
    int pmShift = -1; // -1: 24-hour text; 0: AM; 12: PM
    auto stripMarker = [&](const QString &marker, int shift) {
        if (!marker.isEmpty() && t.endsWith(marker, Qt::CaseInsensitive)) {
            t.chop(marker.size());
            t = t.trimmed();
            pmShift = shift;
        }
    };
    stripMarker(fs.TimeAMString, 0);
    if (pmShift < 0)
        stripMarker(fs.TimePMString, 12);
    if (pmShift < 0)
        stripMarker(QStringLiteral("AM"), 0);
    if (pmShift < 0)
        stripMarker(QStringLiteral("PM"), 12);
    QStringList parts = t.split(fs.TimeSeparator);
    if (parts.size() < 2 || parts.size() > 3)
        return false;
    int msec = 0;
    if (parts.size() == 3) {
        QStringList secParts = parts[2].split(QRegularExpression(QStringLiteral("[.,]")));
        if (secParts.size() > 2)
            return false;
        if (secParts.size() == 2) {
            if (!allDigits(secParts[1]) || secParts[1].size() > 3)
                return false;
            msec = secParts[1].leftJustified(3, QLatin1Char('0')).toInt();
        }
        parts[2] = secParts[0];
    }
    for (const QString &p : parts)
        if (!allDigits(p) || p.size() > 2)
            return false;
    int h = parts[0].toInt();
    if (pmShift >= 0) {
        if (h < 1 || h > 12)
            return false;
        h = h % 12 + pmShift;
    }
    return TryEncodeTime(h, parts[1].toInt(), parts.size() == 3 ? parts[2].toInt() : 0, msec, value);
}

bool TryStrToDateTime(const QString &s, TDateTime &value, const TFormatSettings &fs)
{
    const QString t = s.trimmed();
    TDateTime date, time;
    if (TryStrToDate(t, date, fs)) {
        value = date;
        return true;
    }
    // The date may hold blanks itself ("2 Mar 2024"), the time too ("10:01 AM").
    for (qsizetype blank = t.lastIndexOf(QLatin1Char(' ')); blank > 0; blank = t.lastIndexOf(QLatin1Char(' '), blank - 1))
        if (TryStrToDate(t.left(blank), date, fs) && TryStrToTime(t.mid(blank + 1), time, fs)) {
            value = ComposeDateTime(date, time);
            return true;
        }
    if (TryStrToTime(t, time, fs)) {
        value = time;
        return true;
    }
    return false;
}

bool TryStrToDate(const QString &s, TDateTime &value) { return TryStrToDate(s, value, FormatSettings()); }
bool TryStrToTime(const QString &s, TDateTime &value) { return TryStrToTime(s, value, FormatSettings()); }
bool TryStrToDateTime(const QString &s, TDateTime &value) { return TryStrToDateTime(s, value, FormatSettings()); }

TDateTime StrToDate(const QString &s)
{
    TDateTime v;
    if (!TryStrToDate(s, v))
        throw EConvertError(QCoreApplication::translate("qdb", "'%1' is not a valid date").arg(s));
    return v;
}

TDateTime StrToTime(const QString &s)
{
    TDateTime v;
    if (!TryStrToTime(s, v))
        throw EConvertError(QCoreApplication::translate("qdb", "'%1' is not a valid time").arg(s));
    return v;
}

TDateTime StrToDateTime(const QString &s)
{
    TDateTime v;
    if (!TryStrToDateTime(s, v))
        throw EConvertError(QCoreApplication::translate("qdb", "'%1' is not a valid date and time").arg(s));
    return v;
}

} // namespace qdb
