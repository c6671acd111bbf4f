#pragma once

#include "DateTime.h"
#include "FormatSettings.h"

#include <QString>

namespace qdb {

// Formats with the pattern letters (case does not matter): d dd ddd dddd ddddd dddddd,
// m mm mmm mmmm (minutes right after an hour), yy yyyy, h hh, n nn, s ss, z zzz, t tt, c,
// am/pm a/p ampm, "/" and ":" for the separators, and quoted literal text.
QString FormatDateTime(const QString &format, TDateTime dt);
QString FormatDateTime(const QString &format, TDateTime dt, const TFormatSettings &fs);
inline QString FormatDateTime(const char *format, TDateTime dt)
{
    return FormatDateTime(QString::fromUtf8(format), dt);
}

QString DateToStr(TDateTime dt);
QString TimeToStr(TDateTime dt);
// The date, and the time when it is not midnight.
QString DateTimeToStr(TDateTime dt);
QString DateToStr(TDateTime dt, const TFormatSettings &fs);
QString TimeToStr(TDateTime dt, const TFormatSettings &fs);
QString DateTimeToStr(TDateTime dt, const TFormatSettings &fs);

// Parse dates in the order of ShortDateFormat with DateSeparator (a missing year is this
// year; two-digit years follow the century window) and also "yyyy-mm-dd"; times as
// h:n[:s[.z]] with an optional AM/PM marker.
bool TryStrToDate(const QString &s, TDateTime &value);
bool TryStrToTime(const QString &s, TDateTime &value);
bool TryStrToDateTime(const QString &s, TDateTime &value);
bool TryStrToDate(const QString &s, TDateTime &value, const TFormatSettings &fs);
bool TryStrToTime(const QString &s, TDateTime &value, const TFormatSettings &fs);
bool TryStrToDateTime(const QString &s, TDateTime &value, const TFormatSettings &fs);
// Raise EConvertError.
TDateTime StrToDate(const QString &s);
TDateTime StrToTime(const QString &s);
TDateTime StrToDateTime(const QString &s);

} // namespace qdb
