#pragma once

#include "SQLConnection.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <memory>
#include <vector>

namespace qdb {

// Rows as one run of values, `columns` to a row.
struct SQLRows
{
    int columns = 0;
    std::vector<Variant> values; // as the database hands them over, before typing
    size_t Count() const { return columns ? values.size() / size_t(columns) : 0; }
};

// Positional access to the rows of a query without holding them: a data set asks for a run
// of rows by position and keeps what it got in its own bounded cache.
class SQLRowSource
{
public:
    virtual ~SQLRowSource() = default;
    // Column names and types, and SQLite's declared types (empty elsewhere).
    virtual QSqlRecord Record() const = 0;
    virtual QStringList DeclaredTypes() const { return {}; }
    // The exact number of rows, counted once.
    virtual qint64 Count() = 0;
    // Up to n rows from position first (0-based).
    virtual void Fetch(qint64 first, int n, SQLRows &rows) = 0;
    // Lets go of the current statement, so that the connection can write.
    virtual void Pause() {}
    // Starts over on fresh data after the database changed.
    virtual void Reset() = 0;
    // The position of the first row whose columns hold the values (null matching null), -1
    // when there is none, -2 when this source cannot search by itself.
    virtual qint64 Find(const QList<int> &, const QList<QVariant> &) { return -2; }

    // The source suited to the connection's database.
    static std::unique_ptr<SQLRowSource> Create(TSQLConnection *connection, const QString &sql,
                                                const QList<QVariant> &params);
};

// Replaces each "?" placeholder outside quotes and comments with the driver's literal for
// its value; for statements that cannot take bound values (a cursor declaration).
QString InlineParameters(const QString &sql, const QList<QVariant> &params, const class QSqlDriver *driver);

} // namespace qdb
