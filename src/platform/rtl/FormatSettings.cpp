#include "FormatSettings.h"

namespace qdb {

namespace {

void fillNames(TFormatSettings &fs, const QLocale &locale)
{
    for (int m = 1; m <= 12; ++m) {
        fs.ShortMonthNames[m - 1] = locale.monthName(m, QLocale::ShortFormat);
        fs.LongMonthNames[m - 1] = locale.monthName(m, QLocale::LongFormat);
    }
    for (int d = 0; d < 7; ++d) {
        const int qtDay = d == 0 ? 7 : d; // Qt counts Monday = 1 .. Sunday = 7
        fs.ShortDayNames[d] = locale.dayName(qtDay, QLocale::ShortFormat);
        fs.LongDayNames[d] = locale.dayName(qtDay, QLocale::LongFormat);
    }
}

QChar firstNonLetter(const QString &pattern, QChar fallback)
{
    bool quoted = false;
    for (QChar c : pattern) {
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        else if (!quoted && !c.isLetter() && !c.isSpace())
            return c;
    }
    return fallback;
}

} // namespace

QString QtPatternToFormat(const QString &qtPattern)
{
    QString out;
    for (qsizetype i = 0; i < qtPattern.size(); ++i) {
        const QChar c = qtPattern[i];
        if (c == QLatin1Char('\'')) { // quoted text passes through with its quotes
            const qsizetype end = qtPattern.indexOf(QLatin1Char('\''), i + 1);
            const qsizetype stop = end < 0 ? qtPattern.size() : end + 1;
            out += qtPattern.mid(i, stop - i);
            i = stop - 1;
        } else if (c == QLatin1Char('M')) {
            out += QLatin1Char('m');
        } else if (c == QLatin1Char('m')) {
            out += QLatin1Char('n');
        } else if (c == QLatin1Char('H')) {
            out += QLatin1Char('h');
        } else if ((c == QLatin1Char('A') || c == QLatin1Char('a'))
                   && i + 1 < qtPattern.size()
                   && (qtPattern[i + 1] == QLatin1Char('P') || qtPattern[i + 1] == QLatin1Char('p'))) {
            out += QStringLiteral("AMPM");
            ++i;
        } else if (c == QLatin1Char('t')) {
            // time zone names are not part of these formats
        } else {
            out += c;
        }
    }
    return out.trimmed();
}

TFormatSettings TFormatSettings::Invariant()
{
    TFormatSettings fs;
    fillNames(fs, QLocale::c());
    return fs;
}

TFormatSettings TFormatSettings::FromLocale(const QLocale &locale)
{
    TFormatSettings fs;
    fs.DecimalSeparator = locale.decimalPoint().at(0);
    const QString group = locale.groupSeparator();
    fs.ThousandSeparator = group.isEmpty() ? QChar() : group.at(0);
    fs.ListSeparator = fs.DecimalSeparator == QLatin1Char(',') ? QLatin1Char(';') : QLatin1Char(',');
    fs.CurrencyString = locale.currencySymbol();
    fs.ShortDateFormat = QtPatternToFormat(locale.dateFormat(QLocale::ShortFormat));
    fs.LongDateFormat = QtPatternToFormat(locale.dateFormat(QLocale::LongFormat));
    fs.ShortTimeFormat = QtPatternToFormat(locale.timeFormat(QLocale::ShortFormat));
    fs.LongTimeFormat = QtPatternToFormat(locale.timeFormat(QLocale::LongFormat));
    fs.DateSeparator = firstNonLetter(fs.ShortDateFormat, QLatin1Char('/'));
    fs.TimeSeparator = firstNonLetter(fs.ShortTimeFormat, QLatin1Char(':'));
    fs.TimeAMString = locale.amText();
    fs.TimePMString = locale.pmText();
    fillNames(fs, locale);
    return fs;
}

TFormatSettings &FormatSettings()
{
    static TFormatSettings settings = TFormatSettings::FromLocale(QLocale::system());
    return settings;
}

} // namespace qdb
