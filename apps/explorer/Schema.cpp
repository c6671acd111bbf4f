#include "Schema.h"

#include "platform/sql/SQLDataSet.h"

namespace explorer {

using namespace qdb;

namespace {

// The rows of a query, each as the texts of its columns; `table` is bound to :t.
QList<QStringList> rowsOf(TSQLConnection &connection, const QString &sql, const QString &table = {})
{
    TSQLQuery query;
    query.SetConnection(&connection);
    query.SQL()->SetText(sql);
    if (!table.isEmpty())
        query.Params().SetValue(QStringLiteral("t"), table);
    query.Open();
    QList<QStringList> rows;
    for (; !query.Eof(); query.Next()) {
        QStringList row;
        for (TField *f : query.Fields())
            row << f->AsString();
        rows << row;
    }
    return rows;
}

// Rows sampled for a column's values: enough to see a small domain, little on any table.
constexpr int SampleRows = 10000;

} // namespace

QList<ForeignKey> ForeignKeys(TSQLConnection &connection, const QString &table)
{
    QString sql;
    switch (connection.Dialect()) {
    case TSQLDialect::SQLite:
        sql = QStringLiteral("SELECT \"from\", \"table\", \"to\" FROM pragma_foreign_key_list(:t)"
                             " GROUP BY \"id\" HAVING COUNT(*) = 1");
        break;
    case TSQLDialect::PostgreSQL:
        sql = QStringLiteral("SELECT a.attname, r.relname, f.attname FROM pg_constraint c"
                             " JOIN pg_class t ON t.oid = c.conrelid JOIN pg_class r ON r.oid = c.confrelid"
                             " JOIN pg_attribute a ON a.attrelid = c.conrelid AND a.attnum = c.conkey[1]"
                             " JOIN pg_attribute f ON f.attrelid = c.confrelid AND f.attnum = c.confkey[1]"
                             " WHERE c.contype = 'f' AND cardinality(c.conkey) = 1 AND t.relname = :t"
                             " AND pg_table_is_visible(t.oid)");
        break;
    default:
        return {};
    }
    QList<ForeignKey> keys;
    for (const QStringList &row : rowsOf(connection, sql, table))
        keys << ForeignKey{row[0], row[1], row[2]};
    return keys;
}

QStringList LongTextColumns(TSQLConnection &connection, const QString &table)
{
    QString sql;
    switch (connection.Dialect()) {
    case TSQLDialect::SQLite:
        sql = QStringLiteral("SELECT name FROM pragma_table_info(:t) WHERE upper(type) LIKE '%TEXT' OR upper(type) LIKE '%CLOB'");
        break;
    case TSQLDialect::PostgreSQL:
        sql = QStringLiteral("SELECT column_name FROM information_schema.columns WHERE table_name = :t"
                             " AND table_schema = current_schema() AND data_type = 'text'");
        break;
    default:
        return {};
    }
    QStringList names;
    for (const QStringList &row : rowsOf(connection, sql, table))
        names << row[0];
    return names;
}

QStringList FewValues(TSQLConnection &connection, const QString &table, const QString &column, int most)
{
    const QString sql = QStringLiteral("SELECT qdb_v, COUNT(*) FROM (SELECT %1 AS qdb_v FROM %2 LIMIT %3) qdb_s"
                                       " WHERE qdb_v IS NOT NULL GROUP BY qdb_v ORDER BY qdb_v LIMIT %4")
                            .arg(connection.QuoteName(column), connection.QuoteName(table))
                            .arg(SampleRows)
                            .arg(most + 1);
    const QList<QStringList> rows = rowsOf(connection, sql);
    if (rows.isEmpty() || rows.size() > most)
        return {};
    QStringList values;
    qint64 uses = 0;
    for (const QStringList &row : rows) {
        values << row[0];
        uses += row[1].toLongLong();
    }
    // Names and notes that happen to repeat a little are no domain.
    return uses >= 3 * values.size() ? values : QStringList();
}

} // namespace explorer
