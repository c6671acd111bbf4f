#pragma once

#include <QChar>
#include <QString>

namespace qdb {

// Number-to-text routines shared by Format and FloatToStr.

// General format: up to `precision` significant digits, trailing zeros dropped, fixed
// notation while the decimal exponent lies in -4 .. precision - 1, else "1.5E-7".
QString FormatGeneral(double value, int precision, QChar decimalSeparator);
// Fixed notation with `decimals` digits after the separator; a non-null thousand
// separator groups the integer digits.
QString FormatFixed(double value, int decimals, QChar decimalSeparator, QChar thousandSeparator = QChar());
// Scientific notation with `precision` significant digits and a three-digit exponent:
// "1.50000000000000E+000".
QString FormatScientific(double value, int precision, QChar decimalSeparator);

} // namespace qdb
