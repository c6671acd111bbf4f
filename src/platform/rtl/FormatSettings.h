#pragma once

#include <QChar>
#include <QLocale>
#include <QString>

#include <array>

namespace qdb {

// The locale conventions that formatting and parsing follow. Date and time formats use
// the pattern letters of FormatDateTime (m = month, n = minute).
struct TFormatSettings
{
    QChar DecimalSeparator = QLatin1Char('.');
    QChar ThousandSeparator = QLatin1Char(',');
    QChar DateSeparator = QLatin1Char('/');
    QChar TimeSeparator = QLatin1Char(':');
    QChar ListSeparator = QLatin1Char(',');
    QString CurrencyString = QStringLiteral("$");
    int CurrencyDecimals = 2;
    QString ShortDateFormat = QStringLiteral("m/d/yyyy");
    QString LongDateFormat = QStringLiteral("dddd, mmmm d, yyyy");
    QString ShortTimeFormat = QStringLiteral("h:nn AMPM");
    QString LongTimeFormat = QStringLiteral("h:nn:ss AMPM");
    QString TimeAMString = QStringLiteral("AM");
    QString TimePMString = QStringLiteral("PM");
    std::array<QString, 12> ShortMonthNames;
    std::array<QString, 12> LongMonthNames;
    std::array<QString, 7> ShortDayNames; // Sunday first
    std::array<QString, 7> LongDayNames;  // Sunday first
    // Two-digit years fall in the century window that ends this many years from now.
    int TwoDigitYearCenturyWindow = 50;

    // English names and the formats above: what tests pin.
    static TFormatSettings Invariant();
    static TFormatSettings FromLocale(const QLocale &locale);
};

// The settings in force; first read from the system locale. Tests and applications
// may assign to it.
TFormatSettings &FormatSettings();

// Turns a Qt date/time pattern ("dd.MM.yyyy HH:mm") into this library's letters.
QString QtPatternToFormat(const QString &qtPattern);

} // namespace qdb
