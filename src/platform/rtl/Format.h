#pragma once

#include "FormatSettings.h"
#include "Variant.h"

#include <QList>
#include <QString>

namespace qdb {

// Formats with printf-like specifiers: "%" [index ":"] ["-"] [width] ["." prec] type,
// where type is d, u, x, e, f, g, n, m or s, "%%" is a percent sign, and width or
// precision may be "*" (taken from the arguments). An index sets the argument the
// specifier reads; the next specifier without an index reads the one after it.
// A specifier without a fitting argument raises EConvertError.
QString Format(const QString &format, const QList<Variant> &args);
QString Format(const QString &format, const QList<Variant> &args, const TFormatSettings &fs);
inline QString Format(const char *format, const QList<Variant> &args)
{
    return Format(QString::fromUtf8(format), args);
}

} // namespace qdb
