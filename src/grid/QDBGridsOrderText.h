#pragma once

#include "platform/rtl/Strings.h"

#include <QString>

namespace qdb {

// The text of a sort order: field names separated by "," (";" accepted on input), each
// optionally followed by " DESC" or " ASC". Index field lists separate by ";" and may mark
// items with suffixes given as "ascending;descending;case-insensitive", such as ":A;:D;:N".

QString CommaToSemicolon(const QString &s);
QString SemicolonToComma(const QString &s);
// The text before the first separator; s loses it and the separator (all of s when absent).
QString ScanStr(QString &s, QChar separator);
QString ScanStr(QString &s, const QString &separator);

// The ORDER BY list of the last line of a query that has one ("" when none).
QString ExtractOrderFields(const TStrings *lines);
// Rewrites, drops or appends the ORDER BY clause of a query held as lines.
void ModifyOrderFields(TStrings *lines, const QString &order);
// An order text as SQL writes it: a name that is not a plain word ("Unit Price") in double
// quotes; and back.
QString QuoteOrderFields(const QString &order);
QString UnquoteOrderFields(const QString &order);

// Between order texts and index field lists.
QString OrderFieldsToIndexFields(const QString &order, const QString &indexFormat);
QString IndexFieldsToOrderFields(const QString &indexFields, const QString &indexFormat);

// True when two order texts name the same items in the same order (case and blanks aside).
bool CompareOrderFields(const QString &a, const QString &b);

// All field names (";" list) and the descending ones.
void SplitOrderFields(const QString &order, QString &fields, QString &descFields);
// The inverse; with descending and no DescFields every field is descending.
QString UnifyOrderFields(const QString &fields, const QString &descFields, bool descending);

} // namespace qdb
