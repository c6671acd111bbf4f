#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace qdb {

// Helpers that read the text of SQL statements: they skip quoted text and comments.

// Calls f(i) for each position of the statement outside quoted text and comments.
template<typename F>
void ScanCode(const QString &sql, F f)
{
    const qsizetype n = sql.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = sql[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            const qsizetype end = sql.indexOf(c, i + 1);
            i = end < 0 ? n : end;
        } else if (c == QLatin1Char('-') && i + 1 < n && sql[i + 1] == QLatin1Char('-')) {
            const qsizetype end = sql.indexOf(QLatin1Char('\n'), i);
            i = end < 0 ? n : end;
        } else if (c == QLatin1Char('/') && i + 1 < n && sql[i + 1] == QLatin1Char('*')) {
            const qsizetype end = sql.indexOf(QLatin1String("*/"), i + 2);
            i = end < 0 ? n : end + 1;
        } else {
            f(i);
        }
    }
}

// The statement without trailing blanks and semicolons.
QString StripSemicolon(const QString &sql);
// Positions of a keyword at the top level: outside quotes, comments and parentheses.
QList<qsizetype> TopLevelKeyword(const QString &sql, QLatin1String word);
// Splits a trailing ORDER BY clause off: {body, order} (order without the keywords, empty
// when there is none, or when a LIMIT or OFFSET follows it and so belongs to the body).
QPair<QString, QString> SplitOrderBy(const QString &sql);

// One item of an ORDER BY clause that names a column: "name", "t.name" or a 1-based column
// number, with its direction and an explicit NULLS FIRST/LAST.
struct SQLOrderItem
{
    QString name;     // unquoted, qualifier dropped
    bool quoted = false;
    int number = 0;   // ORDER BY 2: the column's number, else 0
    bool descending = false;
    int nullsFirst = -1; // 1 NULLS FIRST, 0 NULLS LAST, -1 as the database does by default
};
// The items of an ORDER BY clause (without the keywords); false when an item is an
// expression rather than a column.
bool ParseOrderItems(const QString &order, QList<SQLOrderItem> &items);

} // namespace qdb
