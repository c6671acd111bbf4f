// Rows of results read through Qt's SQL drivers: PostgreSQL, and any other database.

#include "SQLSources.h"

#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlField>

namespace qdb {

namespace {

// Every read is a short statement of its own: no cursor, no transaction left open.
class QtSource : public SQLRowSource
{
public:
    using SQLRowSource::SQLRowSource;

protected:
    // Runs job on the session the source reads through.
    virtual void withSession(const std::function<void(QSqlDatabase &)> &job) = 0;

    static QSqlQuery run(QSqlDatabase &db, const QString &sql, const QList<QVariant> &params)
    {
        QSqlQuery q(db);
        q.setForwardOnly(true);
        bool ok;
        if (params.isEmpty()) {
            ok = q.exec(sql);
        } else {
            ok = q.prepare(sql);
            for (const QVariant &p : params)
                q.addBindValue(p);
            ok = ok && q.exec();
        }
        if (!ok)
            SQLError(QCoreApplication::translate("qdb", "The query failed"), q.lastError());
        return q;
    }

    void Query(const QString &sql, const QList<QVariant> &params, SQLRows &rows, qint64 max) override
    {
        const SQLTrace trace(sql);
        withSession([&](QSqlDatabase &db) {
            QSqlQuery q = run(db, sql, params);
            const int columns = q.record().count();
            if (rows.columns == 0)
                rows.columns = columns;
            for (qint64 i = 0; (max < 0 || i < max) && q.next(); ++i)
                for (int c = 0; c < columns; ++c)
                    rows.values.push_back(Variant::FromQVariant(q.value(c)));
        });
    }

    void Exec(const QString &sql, const QList<QVariant> &params) override
    {
        const SQLTrace trace(sql);
        withSession([&](QSqlDatabase &db) {
            // Statements such as CREATE TABLE ... AS cannot take bound values everywhere.
            run(db, params.isEmpty() ? sql : InlineParameters(sql, params, db.driver()), {});
        });
    }

    QSqlRecord Columns(const QString &sql, const QList<QVariant> &params) override
    {
        QSqlRecord record;
        withSession([&](QSqlDatabase &db) { record = run(db, sql + QStringLiteral(" LIMIT 0"), params).record(); });
        return record;
    }
};

// PostgreSQL: reads go through the connection's shared reading session; a result's order,
// once computed, is a copy of its rows in that order in a temporary table of the session
// (a row looked up by key costs the server more than a copied row).
class PostgreSQLSource : public QtSource
{
public:
    PostgreSQLSource(TSQLConnection *connection, const SQLResultShape &shape) : QtSource(connection, shape)
    {
        Describe();
    }
    ~PostgreSQLSource() override { Release(); }

protected:
    void withSession(const std::function<void(QSqlDatabase &)> &job) override
    {
        connection_->Read([&](QSqlDatabase *reader) { job(*reader); });
    }

    bool RestoreSession() override { return connection_->RestoreReader(); }
    int Session() const override { return connection_->ReaderSessions(); }

    bool IndexStatements(const QString &table, QList<Statement> &statements) override
    {
        // Columns named by number: a result may name two alike.
        QStringList names{QStringLiteral("qdb_pos")};
        for (int c = 0; c < record_.count(); ++c)
            names << IndexColumn(c);
        const QString select = OrderKnown()
            ? QStringLiteral("SELECT row_number() OVER (ORDER BY %1), qdb_q.* FROM (%2) qdb_q")
                  .arg(OrderClause(QStringLiteral("qdb_q")), shape_.body)
            : QStringLiteral("SELECT row_number() OVER (), qdb_q.* FROM (%1) qdb_q").arg(Ordered());
        statements << Statement{QStringLiteral("CREATE TEMP TABLE %1 (%2) AS %3").arg(table, names.join(QStringLiteral(", ")), select),
                                shape_.params}
                   << Statement{QStringLiteral("CREATE UNIQUE INDEX ON %1 (qdb_pos)").arg(table), {}}
                   << Statement{QStringLiteral("ANALYZE %1").arg(table), {}}; // temporary tables get no statistics otherwise
        return true;
    }

    Statement IndexPage(const QString &table, qint64 first, qint64 last) const override
    {
        return {QStringLiteral("SELECT * FROM %1 WHERE qdb_pos BETWEEN ? AND ? ORDER BY qdb_pos").arg(table), {first, last}};
    }
    // Values as the driver hands them to the data set: a real as its shortest text, which is
    // what the data set reads; text compared by code point, as the application compares it.
    QString SummaryExpression(const QString &column, int index, SQLValueKind kind, bool compared) const override
    {
        enum Oid { Bool = 16, Bytea = 17, Name = 19, Text = 25, Float4 = 700, Float8 = 701, Bpchar = 1042, Varchar = 1043, Numeric = 1700 };
        const int type = record_.field(index).typeID();
        switch (kind) {
        case SQLValueKind::Integer: return column;
        case SQLValueKind::Currency: {
            QString real;
            if (type == Float4)
                real = QStringLiteral("CAST(CAST(%1 AS text) AS float8)").arg(column);
            else if (type == Float8)
                real = column;
            else if (type == Numeric)
                real = QStringLiteral("CAST(%1 AS float8)").arg(column);
            else
                return {};
            return QStringLiteral("CAST(CASE WHEN %1 < 0 THEN -trunc(-(%1) * 10000::float8 + 0.5::float8) "
                                  "ELSE trunc(%1 * 10000::float8 + 0.5::float8) END AS bigint)")
                .arg(real);
        }
        case SQLValueKind::ExactCurrency:
            return type == Numeric ? QStringLiteral("CAST(round(%1 * 10000) AS bigint)").arg(column) : QString();
        case SQLValueKind::Text:
            if (!compared)
                return column;
            return type == Text || type == Varchar || type == Bpchar || type == Name ? column + QStringLiteral(" COLLATE \"C\"")
                                                                                     : QString();
        case SQLValueKind::Boolean:
            return compared && type == Bool ? QStringLiteral("CAST(%1 AS int)").arg(column) : column;
        case SQLValueKind::Bytes: return compared || type != Bytea ? QString() : column;
        case SQLValueKind::DateTime: return column;
        }
        return {};
    }
    QString WholeSum(const QString &value) const override { return QStringLiteral("CAST(SUM(%1) AS bigint)").arg(value); }

    QString IndexPosition() const override { return QStringLiteral("qdb_i.qdb_pos"); }
    QString IndexColumn(int column) const override { return QStringLiteral("qdb_c%1").arg(column); }
};

class PortableSource : public QtSource
{
public:
    PortableSource(TSQLConnection *connection, const SQLResultShape &shape) : QtSource(connection, shape)
    {
        Describe();
    }
    ~PortableSource() override { Release(); }

protected:
    void withSession(const std::function<void(QSqlDatabase &)> &job) override
    {
        QSqlDatabase db = connection_->Database();
        job(db);
    }

    bool IndexStatements(const QString &, QList<Statement> &) override { return false; }
    Statement IndexPage(const QString &, qint64, qint64) const override { return {}; }
    QString IndexPosition() const override { return QString(); }
    QString IndexColumn(int) const override { return QString(); }
};

} // namespace

std::unique_ptr<SQLRowSource> NewPostgreSQLSource(TSQLConnection *connection, const SQLResultShape &shape)
{
    return std::make_unique<PostgreSQLSource>(connection, shape);
}

std::unique_ptr<SQLRowSource> NewPortableSource(TSQLConnection *connection, const SQLResultShape &shape)
{
    return std::make_unique<PortableSource>(connection, shape);
}

} // namespace qdb
