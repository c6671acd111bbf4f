#include "SQLText.h"

#include <QRegularExpression>

namespace qdb {

namespace {

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

} // namespace

QString StripSemicolon(const QString &statement)
{
    QString sql = statement.trimmed();
    while (sql.endsWith(QLatin1Char(';')))
        sql.chop(1);
    return sql.trimmed();
}

QList<qsizetype> TopLevelKeyword(const QString &sql, QLatin1String word)
{
    QList<qsizetype> found;
    int depth = 0;
    const qsizetype n = sql.size();
    ScanCode(sql, [&](qsizetype i) {
        const QChar c = sql[i];
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')'))
            --depth;
        else if (depth == 0 && QStringView(sql).mid(i).startsWith(word, Qt::CaseInsensitive)
                 && (i == 0 || !isWordChar(sql[i - 1])) && (i + word.size() >= n || !isWordChar(sql[i + word.size()])))
            found << i;
    });
    return found;
}

QPair<QString, QString> SplitOrderBy(const QString &statement)
{
    const QString sql = StripSemicolon(statement);
    const QList<qsizetype> orders = TopLevelKeyword(sql, QLatin1String("ORDER"));
    if (orders.isEmpty())
        return {sql, QString()};
    const qsizetype at = orders.last();
    QString rest = sql.mid(at + 5).trimmed();
    if (!rest.startsWith(QLatin1String("BY"), Qt::CaseInsensitive))
        return {sql, QString()};
    rest = rest.mid(2).trimmed();
    if (!TopLevelKeyword(rest, QLatin1String("LIMIT")).isEmpty() || !TopLevelKeyword(rest, QLatin1String("OFFSET")).isEmpty())
        return {sql, QString()};
    return {sql.left(at).trimmed(), rest};
}

bool ParseOrderItems(const QString &order, QList<SQLOrderItem> &items)
{
    items.clear();
    QStringList parts;
    int depth = 0;
    qsizetype start = 0;
    ScanCode(order, [&](qsizetype i) {
        const QChar c = order[i];
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')'))
            --depth;
        else if (c == QLatin1Char(',') && depth == 0) {
            parts << order.mid(start, i - start);
            start = i + 1;
        }
    });
    parts << order.mid(start);
    static const QRegularExpression item(
        QStringLiteral("^\\s*(?:(?:\"(?:[^\"]|\"\")+\"|\\w+)\\s*\\.\\s*)*(\"(?:[^\"]|\"\")+\"|\\w+)"
                       "(?:\\s+(ASC|DESC))?(?:\\s+NULLS\\s+(FIRST|LAST))?\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    for (const QString &part : parts) {
        if (part.trimmed().isEmpty())
            continue;
        const QRegularExpressionMatch m = item.match(part);
        if (!m.hasMatch())
            return false;
        SQLOrderItem it;
        QString name = m.captured(1);
        if (name.startsWith(QLatin1Char('"'))) {
            it.quoted = true;
            name = name.mid(1, name.size() - 2).replace(QLatin1String("\"\""), QLatin1String("\""));
        } else {
            bool number = false;
            it.number = name.toInt(&number);
            if (!number)
                it.number = 0;
        }
        it.name = name;
        it.descending = m.captured(2).compare(QLatin1String("DESC"), Qt::CaseInsensitive) == 0;
        if (m.capturedLength(3) > 0)
            it.nullsFirst = m.captured(3).compare(QLatin1String("FIRST"), Qt::CaseInsensitive) == 0 ? 1 : 0;
        items << it;
    }
    return true;
}

} // namespace qdb
