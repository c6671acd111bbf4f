#include "SQLRowSource.h"

#include "SQLText.h"
#include "SQLTypes.h"

#include "platform/rtl/Exceptions.h"

#include <sqlite3.h>

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

void readRows(QSqlQuery &q, int n, SQLRows &rows)
{
    if (rows.columns == 0)
        rows.columns = q.record().count();
    rows.values.reserve(rows.values.size() + size_t(n) * size_t(rows.columns));
    for (int i = 0; i < n && q.next(); ++i)
        for (int c = 0; c < rows.columns; ++c)
            rows.values.push_back(Variant::FromQVariant(q.value(c)));
}

[[noreturn]] void sqliteError(sqlite3 *db, const QString &what)
{
    throw EDatabaseError(what + QStringLiteral(": ") + QString::fromUtf8(sqlite3_errmsg(db)));
}

// A statement of our own on the connection's SQLite handle: values come straight from
// SQLite without going through QVariant and UTF-16.
class SQLiteStatement
{
public:
    SQLiteStatement(sqlite3 *db, const QString &sql, const QList<QVariant> &params) : db_(db)
    {
        const QByteArray text = sql.toUtf8();
        if (sqlite3_prepare_v2(db_, text.constData(), int(text.size()), &stmt_, nullptr) != SQLITE_OK)
            sqliteError(db_, QCoreApplication::translate("qdb", "The query failed"));
        for (int i = 0; i < params.size(); ++i) {
            const QVariant &p = params[i];
            const int at = i + 1;
            if (!p.isValid() || p.isNull()) {
                sqlite3_bind_null(stmt_, at);
                continue;
            }
            switch (p.metaType().id()) {
            case QMetaType::Bool:
            case QMetaType::Int:
            case QMetaType::UInt:
            case QMetaType::LongLong:
            case QMetaType::ULongLong: sqlite3_bind_int64(stmt_, at, p.toLongLong()); break;
            case QMetaType::Double: sqlite3_bind_double(stmt_, at, p.toDouble()); break;
            case QMetaType::QByteArray: {
                const QByteArray b = p.toByteArray();
                sqlite3_bind_blob64(stmt_, at, b.constData(), sqlite3_uint64(b.size()), SQLITE_TRANSIENT);
                break;
            }
            default: {
                const QByteArray s = p.toString().toUtf8();
                sqlite3_bind_text64(stmt_, at, s.constData(), sqlite3_uint64(s.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
                break;
            }
            }
        }
        step(); // the first row tells the types of the columns
    }
    ~SQLiteStatement() { sqlite3_finalize(stmt_); }
    SQLiteStatement(const SQLiteStatement &) = delete;
    SQLiteStatement &operator=(const SQLiteStatement &) = delete;

    int Columns() const { return sqlite3_column_count(stmt_); }
    QSqlRecord Record() const
    {
        QSqlRecord record;
        for (int c = 0; c < Columns(); ++c) {
            QMetaType type = QMetaType::fromType<QString>();
            if (hasRow_) {
                switch (sqlite3_column_type(stmt_, c)) {
                case SQLITE_INTEGER: type = QMetaType::fromType<qlonglong>(); break;
                case SQLITE_FLOAT: type = QMetaType::fromType<double>(); break;
                case SQLITE_BLOB: type = QMetaType::fromType<QByteArray>(); break;
                default: break;
                }
            }
            record.append(QSqlField(QString::fromUtf8(sqlite3_column_name(stmt_, c)), type));
        }
        return record;
    }
    QStringList DeclaredTypes() const
    {
        QStringList types;
        for (int c = 0; c < Columns(); ++c) {
            const char *declared = sqlite3_column_decltype(stmt_, c);
            types << (declared ? QString::fromUtf8(declared) : QString());
        }
        return types;
    }
    // Appends up to n rows; answers how many.
    int Read(int n, SQLRows &rows)
    {
        const int columns = Columns();
        rows.columns = columns;
        int got = 0;
        while (got < n && hasRow_) {
            for (int c = 0; c < columns; ++c) {
                switch (sqlite3_column_type(stmt_, c)) {
                case SQLITE_INTEGER: rows.values.emplace_back(qint64(sqlite3_column_int64(stmt_, c))); break;
                case SQLITE_FLOAT: rows.values.emplace_back(sqlite3_column_double(stmt_, c)); break;
                case SQLITE_TEXT:
                    rows.values.emplace_back(QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt_, c)),
                                                               sqlite3_column_bytes(stmt_, c)));
                    break;
                case SQLITE_BLOB:
                    rows.values.emplace_back(QByteArray(static_cast<const char *>(sqlite3_column_blob(stmt_, c)),
                                                        sqlite3_column_bytes(stmt_, c)));
                    break;
                default: rows.values.push_back(Variant::Null()); break;
                }
            }
            ++got;
            step();
        }
        return got;
    }
    qint64 Scalar() const { return hasRow_ ? sqlite3_column_int64(stmt_, 0) : 0; }
    bool HasRow() const { return hasRow_; }
    void Next() { step(); }
    // Whether SQLite had to sort the rows itself (no index gives the order).
    bool Sorted() const { return sqlite3_stmt_status(stmt_, SQLITE_STMTSTATUS_SORT, 0) > 0; }
    // Steps over up to n rows without reading them; answers how many.
    qint64 Skip(qint64 n)
    {
        qint64 skipped = 0;
        while (skipped < n && hasRow_) {
            step();
            ++skipped;
        }
        return skipped;
    }

private:
    void step()
    {
        const int rc = sqlite3_step(stmt_);
        if (rc != SQLITE_ROW && rc != SQLITE_DONE)
            sqliteError(db_, QCoreApplication::translate("qdb", "The query failed"));
        hasRow_ = rc == SQLITE_ROW;
    }

    sqlite3 *db_;
    sqlite3_stmt *stmt_ = nullptr;
    bool hasRow_ = false;
};

sqlite3 *sqliteHandle(QSqlDatabase db)
{
    const QVariant handle = db.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        throw EDatabaseError(QCoreApplication::translate("qdb", "The SQLite driver gives no access to its database"));
    return *static_cast<sqlite3 *const *>(handle.constData());
}

// SQLite: one statement streams the rows; a jump starts a new one at an offset.
class SQLiteSource : public SQLRowSource
{
public:
    SQLiteSource(TSQLConnection *connection, const QString &sql, const QList<QVariant> &params)
        : db_(sqliteHandle(connection->Database())), sql_(sql), params_(params)
    {
        stream_ = std::make_unique<SQLiteStatement>(db_, sql_, params_);
        record_ = stream_->Record();
        declared_ = stream_->DeclaredTypes();
        sorted_ = stream_->Sorted();
        streamPos_ = 0;
    }

    QSqlRecord Record() const override { return record_; }
    QStringList DeclaredTypes() const override { return declared_; }

    qint64 Count() override
    {
        if (count_ < 0)
            count_ = SQLiteStatement(db_, QStringLiteral("SELECT COUNT(*) FROM (%1)").arg(SplitOrderBy(sql_).first), params_)
                         .Scalar(); // the order costs a sort and does not change the count
        return count_;
    }

    void Fetch(qint64 first, int n, SQLRows &rows) override
    {
        // A jump: OFFSET passes over rows without reading them, unless SQLite sorts them
        // itself, when OFFSET costs a second, slower sort; stepping costs only the one.
        if (sorted_) {
            if (!stream_ || streamPos_ < 0 || streamPos_ > first) {
                stream_.reset();
                stream_ = std::make_unique<SQLiteStatement>(db_, sql_, params_);
                streamPos_ = 0;
            }
            if (streamPos_ < first)
                streamPos_ += stream_->Skip(first - streamPos_);
        } else if (!stream_ || streamPos_ != first) {
            stream_.reset();
            QList<QVariant> params = params_;
            params << first;
            stream_ = std::make_unique<SQLiteStatement>(
                db_, QStringLiteral("SELECT * FROM (%1) LIMIT -1 OFFSET ?").arg(sql_), params);
            streamPos_ = first;
        }
        rows.values.reserve(rows.values.size() + size_t(n) * size_t(stream_->Columns()));
        streamPos_ += stream_->Read(n, rows);
    }

    void Pause() override
    {
        stream_.reset();
        streamPos_ = -1;
    }

    void Reset() override
    {
        Pause();
        count_ = -1;
    }

    // SQLite compares, the loop only counts: no row is read into values on the way. Rows
    // SQLite sorts itself are better read once by the data set, which keeps the pages
    // around the record it finds: searching here would cost a second sort for them.
    qint64 Find(const QList<int> &columns, const QList<QVariant> &values) override
    {
        if (sorted_)
            return -2;
        QStringList tests;
        for (int c : columns)
            tests << QStringLiteral("\"%1\" IS ?").arg(record_.fieldName(c).replace(QLatin1Char('"'), QLatin1String("\"\"")));
        Pause(); // one statement at a time on the connection's handle
        SQLiteStatement search(db_, QStringLiteral("SELECT %1 FROM (%2)").arg(tests.join(QLatin1String(" AND ")), sql_),
                               values + params_);
        for (qint64 position = 0; search.HasRow(); ++position, search.Next())
            if (search.Scalar() != 0)
                return position;
        return -1;
    }

private:
    sqlite3 *db_;
    QString sql_;
    QList<QVariant> params_;
    std::unique_ptr<SQLiteStatement> stream_;
    qint64 streamPos_ = -1;
    bool sorted_ = false;
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

    void Fetch(qint64 first, int n, SQLRows &rows) override
    {
        if (position_ != first)
            run(QStringLiteral("MOVE ABSOLUTE %1 IN qdb_rows").arg(first)); // stands on row `first`, 1-based
        QSqlQuery q = run(QStringLiteral("FETCH FORWARD %1 FROM qdb_rows").arg(n));
        const size_t before = rows.Count();
        readRows(q, n, rows);
        position_ = first + qint64(rows.Count() - before);
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
            QSqlQuery q = execute(db_, QStringLiteral("SELECT COUNT(*) FROM (%1) qdb_count").arg(SplitOrderBy(sql_).first), params_);
            count_ = q.next() ? q.value(0).toLongLong() : 0;
        }
        return count_;
    }
    void Fetch(qint64 first, int n, SQLRows &rows) override
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
    ScanCode(sql, [&](qsizetype i) {
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
