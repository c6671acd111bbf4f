#include "SQLText.h"

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

} // namespace qdb
