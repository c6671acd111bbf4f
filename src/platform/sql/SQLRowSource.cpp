#include "SQLRowSource.h"

#include "SQLTypes.h"

#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>

namespace qdb {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("qdb", text);
}

// Calls f for each character position outside quoted text and comments.
template<typename F>
void scanCode(const QString &sql, F f)
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

QSqlQuery execute(QSqlDatabase db, const QString &sql, const QList<QVariant> &params)
{
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql))
        SQLError(tr("The query cannot be prepared"), q.lastError());
    for (const QVariant &p : params)
        q.addBindValue(p);
    if (!q.exec())
        SQLError(tr("The query failed"), q.lastError());
    return q;
}

void readRows(QSqlQuery &q, int n, std::vector<SQLRow> &rows)
{
    const int columns = q.record().count();
    for (int i = 0; i < n && q.next(); ++i) {
        SQLRow row(static_cast<size_t>(columns));
        for (int c = 0; c < columns; ++c)
            row[size_t(c)] = q.value(c);
        rows.push_back(std::move(row));
    }
}

// SQLite: one forward-only statement streams the rows; a jump starts a new one at an offset.
class SQLiteSource : public SQLRowSource
{
public:
    SQLiteSource(TSQLConnection *connection, const QString &sql, const QList<QVariant> &params)
        : db_(connection->Database()), sql_(sql), params_(params)
    {
        stream_ = execute(db_, sql_, params_);
        record_ = stream_.record();
        declared_ = SQLiteDeclaredTypes(stream_);
        streamPos_ = 0;
    }

    QSqlRecord Record() const override { return record_; }
    QStringList DeclaredTypes() const override { return declared_; }

    qint64 Count() override
    {
        if (count_ < 0) {
            QSqlQuery q = execute(db_, QStringLiteral("SELECT COUNT(*) FROM (%1)").arg(sql_), params_);
            count_ = q.next() ? q.value(0).toLongLong() : 0;
        }
        return count_;
    }

    void Fetch(qint64 first, int n, std::vector<SQLRow> &rows) override
    {
        if (!stream_.isActive() || streamPos_ != first) {
            stream_.finish();
            QList<QVariant> params = params_;
            params << first;
            stream_ = execute(db_, QStringLiteral("SELECT * FROM (%1) LIMIT -1 OFFSET ?").arg(sql_), params);
            streamPos_ = first;
        }
        const size_t before = rows.size();
        readRows(stream_, n, rows);
        streamPos_ += qint64(rows.size() - before);
    }

    void Pause() override
    {
        stream_.finish();
        streamPos_ = -1;
    }

    void Reset() override
    {
        Pause();
        count_ = -1;
    }

private:
    QSqlDatabase db_;
    QString sql_;
    QList<QVariant> params_;
    QSqlQuery stream_;
    qint64 streamPos_ = -1;
    QSqlRecord record_;
    QStringList declared_;
    qint64 count_ = -1;
};

// PostgreSQL: a scrollable server-side cursor on a connection of its own, so that rows
// travel only when asked for (Qt's scrollable PostgreSQL query would load them all).
class PostgreSQLSource : public SQLRowSource
{
public:
    PostgreSQLSource(TSQLConnection *connection, const QString &sql, const QList<QVariant> &params)
        : connection_(connection)
    {
        reader_ = connection->NewReader();
        try {
            declaration_ = QStringLiteral("DECLARE qdb_rows SCROLL CURSOR FOR ")
                + InlineParameters(sql, params, reader_.driver());
            declare();
            QSqlQuery probe = run(QStringLiteral("FETCH FORWARD 0 FROM qdb_rows"));
            record_ = probe.record();
        } catch (...) {
            TSQLConnection::ReleaseReader(reader_);
            throw;
        }
    }

    ~PostgreSQLSource() override
    {
        QSqlQuery(reader_).exec(QStringLiteral("ROLLBACK"));
        TSQLConnection::ReleaseReader(reader_);
    }

    QSqlRecord Record() const override { return record_; }

    qint64 Count() override
    {
        if (count_ < 0) {
            run(QStringLiteral("MOVE ABSOLUTE 0 IN qdb_rows"));
            count_ = run(QStringLiteral("MOVE FORWARD ALL IN qdb_rows")).numRowsAffected();
            position_ = count_ + 1; // after the last row
        }
        return count_;
    }

    void Fetch(qint64 first, int n, std::vector<SQLRow> &rows) override
    {
        if (position_ != first)
            run(QStringLiteral("MOVE ABSOLUTE %1 IN qdb_rows").arg(first)); // stands on row `first`, 1-based
        QSqlQuery q = run(QStringLiteral("FETCH FORWARD %1 FROM qdb_rows").arg(n));
        const size_t before = rows.size();
        readRows(q, n, rows);
        position_ = first + qint64(rows.size() - before);
    }

    void Reset() override
    {
        run(QStringLiteral("COMMIT"));
        declare();
        count_ = -1;
    }

private:
    void declare()
    {
        run(QStringLiteral("BEGIN"));
        run(declaration_);
        position_ = 0;
    }

    QSqlQuery run(const QString &sql)
    {
        QSqlQuery q(reader_);
        q.setForwardOnly(true);
        if (!q.exec(sql))
            SQLError(tr("The query failed"), q.lastError());
        return q;
    }

    TSQLConnection *connection_;
    QSqlDatabase reader_;
    QString declaration_;
    QSqlRecord record_;
    qint64 count_ = -1;
    qint64 position_ = 0; // rows before the cursor
};

// Other databases: one query at a time, by offset.
class OffsetSource : public SQLRowSource
{
public:
    OffsetSource(TSQLConnection *connection, const QString &sql, const QList<QVariant> &params)
        : db_(connection->Database()), sql_(sql), params_(params)
    {
        QSqlQuery q = execute(db_, sql_, params_);
        record_ = q.record();
    }
    QSqlRecord Record() const override { return record_; }
    qint64 Count() override
    {
        if (count_ < 0) {
            QSqlQuery q = execute(db_, QStringLiteral("SELECT COUNT(*) FROM (%1) qdb_count").arg(sql_), params_);
            count_ = q.next() ? q.value(0).toLongLong() : 0;
        }
        return count_;
    }
    void Fetch(qint64 first, int n, std::vector<SQLRow> &rows) override
    {
        QList<QVariant> params = params_;
        params << n << first;
        QSqlQuery q = execute(db_, QStringLiteral("SELECT * FROM (%1) qdb_page LIMIT ? OFFSET ?").arg(sql_), params);
        readRows(q, n, rows);
    }
    void Reset() override { count_ = -1; }

private:
    QSqlDatabase db_;
    QString sql_;
    QList<QVariant> params_;
    QSqlRecord record_;
    qint64 count_ = -1;
};

} // namespace

QString InlineParameters(const QString &sql, const QList<QVariant> &params, const QSqlDriver *driver)
{
    QList<qsizetype> marks;
    scanCode(sql, [&](qsizetype i) {
        if (sql[i] == QLatin1Char('?'))
            marks << i;
    });
    if (marks.size() != params.size())
        throw EDatabaseError(tr("The query has %1 parameters but %2 values").arg(marks.size()).arg(params.size()));
    QString out = sql;
    for (qsizetype k = marks.size() - 1; k >= 0; --k) {
        const QVariant &value = params[k];
        QSqlField field(QString(), value.isValid() ? value.metaType() : QMetaType::fromType<QString>());
        field.setValue(value);
        out.replace(marks[k], 1, driver->formatValue(field));
    }
    return out;
}

std::unique_ptr<SQLRowSource> SQLRowSource::Create(TSQLConnection *connection, const QString &sql,
                                                   const QList<QVariant> &params)
{
    switch (connection->Dialect()) {
    case TSQLDialect::SQLite: return std::make_unique<SQLiteSource>(connection, sql, params);
    case TSQLDialect::PostgreSQL: return std::make_unique<PostgreSQLSource>(connection, sql, params);
    default: return std::make_unique<OffsetSource>(connection, sql, params);
    }
}

} // namespace qdb
