#pragma once

#include "Currency.h"
#include "FormatSettings.h"

#include <QString>

namespace qdb {

QString IntToStr(qint64 value);
// Upper-case hexadecimal with at least `digits` digits.
QString IntToHex(qint64 value, int digits);

// The shortest text of the value with up to 15 significant digits: fixed notation for
// magnitudes from 0.0001 with at most 15 integer digits, else "1.5E20" style.
QString FloatToStr(double value);
QString FloatToStr(double value, const TFormatSettings &fs);
QString CurrToStr(Currency value);
QString CurrToStr(Currency value, const TFormatSettings &fs);
QString BoolToStr(bool value, bool useBoolStrs = false);

// Leading and trailing blanks are allowed; "$FF" and "0xFF" are hexadecimal.
bool TryStrToInt(const QString &s, int &value);
bool TryStrToInt64(const QString &s, qint64 &value);
int StrToInt(const QString &s);       // raises EConvertError
qint64 StrToInt64(const QString &s);  // raises EConvertError
int StrToIntDef(const QString &s, int defaultValue);

// Numbers are written with the decimal separator of the settings, with an optional
// exponent; no thousand separators.
bool TryStrToFloat(const QString &s, double &value);
bool TryStrToFloat(const QString &s, double &value, const TFormatSettings &fs);
double StrToFloat(const QString &s); // raises EConvertError
double StrToFloat(const QString &s, const TFormatSettings &fs);
double StrToFloatDef(const QString &s, double defaultValue);
bool TryStrToCurr(const QString &s, Currency &value);
bool TryStrToCurr(const QString &s, Currency &value, const TFormatSettings &fs);
Currency StrToCurr(const QString &s); // raises EConvertError
// "True"/"False" in any case, or a number (non-zero is true).
bool TryStrToBool(const QString &s, bool &value);
bool StrToBool(const QString &s); // raises EConvertError

// value × multiplier ÷ divisor, rounded to the nearest, without overflow on the way.
inline int MulDiv(int value, int multiplier, int divisor)
{
    return divisor == 0 ? -1 : int((qint64(value) * multiplier + (divisor / 2)) / divisor);
}

} // namespace qdb
