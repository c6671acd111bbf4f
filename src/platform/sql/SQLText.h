#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace qdb {

// Helpers that read the text of SQL statements: they skip quoted text and comments.

// The statement without trailing blanks and semicolons.
QString StripSemicolon(const QString &sql);
// Positions of a keyword at the top level: outside quotes, comments and parentheses.
QList<qsizetype> TopLevelKeyword(const QString &sql, QLatin1String word);
// Splits a trailing ORDER BY clause off: {body, order} (order without the keywords, empty
// when there is none, or when a LIMIT or OFFSET follows it and so belongs to the body).
QPair<QString, QString> SplitOrderBy(const QString &sql);

} // namespace qdb
