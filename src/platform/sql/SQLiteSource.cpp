// Rows of SQLite results, read through the connection's own handle: values come straight
// from SQLite without going through QVariant and UTF-16.

#include "SQLSources.h"
#include "SQLTypes.h"

#include "platform/rtl/Conversions.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatSettings.h"
#include "platform/rtl/TextSearch.h"

#include <sqlite3.h>

#include <QCoreApplication>
#include <QSqlDriver>
#include <QSqlField>
#include <QVarLengthArray>

#include <algorithm>

namespace qdb {

namespace {

[[noreturn]] void sqliteError(sqlite3 *db, const QString &what)
{
    // The file is named: a damaged one is otherwise hard to tell from a wrong statement.
    throw EDatabaseError(QStringLiteral("%1: %2 (%3)").arg(what, QString::fromUtf8(sqlite3_errmsg(db)),
                                                         QString::fromUtf8(sqlite3_db_filename(db, "main"))));
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
        try {
            step(); // the first row tells the types of the columns
        } catch (...) {
            sqlite3_finalize(stmt_); // no destructor runs for a constructor that throws
            throw;
        }
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
    // Appends up to n rows; answers how many. The text of the columns `dates` is read as dates.
    int Read(int n, SQLRows &rows, const QList<int> &dates = {})
    {
        const int columns = Columns();
        rows.columns = columns;
        QVarLengthArray<bool, 32> date(columns, false);
        for (int c : dates)
            if (c >= 0 && c < columns)
                date[c] = true;
        int got = 0;
        while (got < n && hasRow_) {
            for (int c = 0; c < columns; ++c) {
                // One call of the connection's API a value: reading the value itself takes no
                // lock, and nothing else uses the connection while this statement reads.
                sqlite3_value *value = sqlite3_column_value(stmt_, c);
                switch (sqlite3_value_type(value)) {
                case SQLITE_INTEGER: rows.values.emplace_back(qint64(sqlite3_value_int64(value))); break;
                case SQLITE_FLOAT: rows.values.emplace_back(sqlite3_value_double(value)); break;
                case SQLITE_TEXT: {
                    const char *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
                    const int bytes = sqlite3_value_bytes(value);
                    Variant stamp;
                    if (date[c] && DateFromText(text, bytes, stamp))
                        rows.values.push_back(std::move(stamp));
                    else
                        rows.values.emplace_back(QString::fromUtf8(text, bytes));
                    break;
                }
                case SQLITE_BLOB: {
                    const char *blob = static_cast<const char *>(sqlite3_value_blob(value));
                    rows.values.emplace_back(QByteArray(blob, sqlite3_value_bytes(value)));
                    break;
                }
                default: rows.values.push_back(Variant::Null()); break;
                }
            }
            ++got;
            step();
        }
        return got;
    }
    bool HasRow() const { return hasRow_; }
    void Next() { step(); }
    // Whether SQLite had to sort the rows itself (no index gives the order).
    bool Sorted() const { return sqlite3_stmt_status(stmt_, SQLITE_STMTSTATUS_SORT, 0) > 0; }

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

// The values the data set would read from a stored value, as SQL functions: a sum the
// database makes of them is then the data set's own to the last digit. qdb_int: a whole
// number; qdb_real: a floating-point number as currency; qdb_decimal: a decimal as currency.
// Each gives the currency's raw count of ten-thousandths, or NULL where the data set reads none.
template<typename Read>
void readValue(sqlite3_context *context, sqlite3_value *value, Read read)
{
    try {
        const int type = sqlite3_value_type(value);
        qint64 result = 0;
        bool ok = false;
        if (type == SQLITE_INTEGER || type == SQLITE_FLOAT || type == SQLITE_TEXT) {
            const Variant v = type == SQLITE_INTEGER ? Variant(qint64(sqlite3_value_int64(value)))
                : type == SQLITE_FLOAT              ? Variant(sqlite3_value_double(value))
                                                    : Variant(QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(value)),
                                                                                sqlite3_value_bytes(value)));
            ok = read(v, result);
        }
        if (ok)
            sqlite3_result_int64(context, result);
        else
            sqlite3_result_null(context);
    } catch (const Exception &e) {
        sqlite3_result_error(context, e.Message().toUtf8().constData(), -1);
    }
}

void wholeNumber(sqlite3_context *context, int, sqlite3_value **args)
{
    readValue(context, args[0], [](const Variant &v, qint64 &out) {
        if (const QString *text = v.StringPtr()) {
            bool ok = false;
            out = text->toLongLong(&ok);
            return ok;
        }
        out = v.ToInt64();
        return true;
    });
}

void realAsCurrency(sqlite3_context *context, int, sqlite3_value **args)
{
    readValue(context, args[0], [](const Variant &v, qint64 &out) {
        double d = 0;
        if (const QString *text = v.StringPtr()) {
            bool ok = false;
            d = text->toDouble(&ok);
            if (!ok)
                return false;
        } else {
            d = v.ToDouble();
        }
        out = Currency::FromDouble(d).Raw();
        return true;
    });
}

void decimalAsCurrency(sqlite3_context *context, int, sqlite3_value **args)
{
    readValue(context, args[0], [](const Variant &v, qint64 &out) {
        Currency c;
        if (const QString *text = v.StringPtr()) {
            if (!TryStrToCurr(*text, c, TFormatSettings::Invariant()))
                return false;
        } else {
            c = Currency::FromDouble(v.ToDouble());
        }
        out = c.Raw();
        return true;
    });
}

// Text as compared without regard to case, Qt's way.
void foldCase(sqlite3_context *context, int, sqlite3_value **args)
{
    if (sqlite3_value_type(args[0]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(args[0])),
                                           sqlite3_value_bytes(args[0]));
    const QByteArray folded = text.toCaseFolded().toUtf8();
    sqlite3_result_text(context, folded.constData(), int(folded.size()), SQLITE_TRANSIENT);
}

// qdb_search(text, what, flags): whether the text holds `what` by the grid's search rule
// (flags: 1 case counts, 2 whole words). The prepared text is kept with the statement.
void searchText(sqlite3_context *context, int, sqlite3_value **args)
{
    if (sqlite3_value_type(args[0]) == SQLITE_NULL) {
        sqlite3_result_int(context, 0);
        return;
    }
    auto *searcher = static_cast<TTextSearcher *>(sqlite3_get_auxdata(context, 1));
    if (!searcher) {
        const QString what = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(args[1])),
                                               sqlite3_value_bytes(args[1]));
        const int flags = sqlite3_value_int(args[2]);
        searcher = new TTextSearcher(what, flags & 1, flags & 2);
        sqlite3_set_auxdata(context, 1, searcher, [](void *p) { delete static_cast<TTextSearcher *>(p); });
        // SQLite may drop it at once; it is then asked for again with the next row.
        searcher = static_cast<TTextSearcher *>(sqlite3_get_auxdata(context, 1));
        if (!searcher) {
            const TTextSearcher once(what, flags & 1, flags & 2);
            const char *text = reinterpret_cast<const char *>(sqlite3_value_text(args[0]));
            sqlite3_result_int(context, once.Matches(text, sqlite3_value_bytes(args[0])) ? 1 : 0);
            return;
        }
    }
    const char *text = reinterpret_cast<const char *>(sqlite3_value_text(args[0]));
    sqlite3_result_int(context, searcher->Matches(text, sqlite3_value_bytes(args[0])) ? 1 : 0);
}

void registerValueFunctions(sqlite3 *db)
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function_v2(db, "qdb_int", 1, flags, nullptr, wholeNumber, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "qdb_real", 1, flags, nullptr, realAsCurrency, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "qdb_decimal", 1, flags, nullptr, decimalAsCurrency, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "qdb_fold", 1, flags, nullptr, foldCase, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "qdb_search", 3, flags, nullptr, searchText, nullptr, nullptr, nullptr);
}

sqlite3 *sqliteHandle(QSqlDatabase db)
{
    const QVariant handle = db.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        throw EDatabaseError(QCoreApplication::translate("qdb", "The SQLite driver gives no access to its database"));
    return *static_cast<sqlite3 *const *>(handle.constData());
}

// A walk forwards goes on in one statement; every other read is a statement of its own.
class SQLiteSource : public SQLRowSource
{
public:
    SQLiteSource(TSQLConnection *connection, const SQLResultShape &shape)
        : SQLRowSource(connection, shape), db_(sqliteHandle(connection->Database()))
    {
        registerValueFunctions(db_);
        Describe();
    }

    ~SQLiteSource() override { Release(); }

    QStringList DeclaredTypes() const override { return declared_; }
    void Pause() override
    {
        stream_.reset();
        streamPos_ = -1;
        back_.reset();
        backPos_ = -1;
    }

protected:
    void Query(const QString &sql, const QList<QVariant> &params, SQLRows &rows, qint64 max) override
    {
        const SQLTrace trace(sql);
        connection_->Read([&](QSqlDatabase *) {
            SQLiteStatement statement(db_, sql, params);
            statement.Read(max < 0 ? std::numeric_limits<int>::max() : int(qMin<qint64>(max, std::numeric_limits<int>::max())),
                           rows);
        });
    }

    void Exec(const QString &sql, const QList<QVariant> &params) override
    {
        const SQLTrace trace(sql);
        connection_->Read([&](QSqlDatabase *) { SQLiteStatement(db_, sql, params); });
    }

    QSqlRecord Columns(const QString &sql, const QList<QVariant> &params) override
    {
        QSqlRecord record;
        connection_->Read([&](QSqlDatabase *) {
            // The first row tells the types of columns that declare none.
            SQLiteStatement statement(db_, sql + QStringLiteral(" LIMIT 1"), params);
            declared_ = statement.DeclaredTypes();
            record = statement.Record();
        });
        return record;
    }

    // SQLite keeps any value in any column: numbers are read by functions that do what the
    // data set does with each value.
    QString SummaryExpression(const QString &column, int index, SQLValueKind kind, bool compared) const override
    {
        Q_UNUSED(index);
        switch (kind) {
        case SQLValueKind::Integer: return QStringLiteral("qdb_int(%1)").arg(column);
        case SQLValueKind::Currency: return QStringLiteral("qdb_real(%1)").arg(column);
        case SQLValueKind::ExactCurrency: return QStringLiteral("qdb_decimal(%1)").arg(column);
        case SQLValueKind::Text: return compared ? column + QStringLiteral(" COLLATE BINARY") : column;
        default: return column;
        }
    }

    bool Streaming(qint64 first) const override { return stream_ && streamPos_ == first; }
    // An index gives the order: OFFSET steps through it without sorting.
    bool CheapOffsets() const override { return !sortsItself_; }

    void ReadDirect(qint64 first, int n, SQLRows &rows, bool sequential) override
    {
        if (!Streaming(first)) {
            if (!sequential || first == 0) {
                // One screen: SQLite keeps only the rows it returns while sorting.
                QList<QVariant> params = shape_.params;
                params << n << first;
                const QString sql = Ordered() + QStringLiteral(" LIMIT ? OFFSET ?");
                const SQLTrace trace(sql);
                connection_->Read([&](QSqlDatabase *) {
                    SQLiteStatement statement(db_, sql, params);
                    sortsItself_ = statement.Sorted();
                    statement.Read(n, rows, dateColumns_);
                });
                return;
            }
            // Stepped to `first` rather than an OFFSET, which makes SQLite sort several times
            // slower; a walk starts near the beginning anyway.
            Pause();
            connection_->Read([&](QSqlDatabase *) {
                stream_ = std::make_unique<SQLiteStatement>(db_, Ordered(), shape_.params);
                streamPos_ = 0;
                while (streamPos_ < first && stream_->HasRow()) {
                    stream_->Next();
                    ++streamPos_;
                }
            });
            if (streamPos_ < first)
                return;
        }
        // The statement has done its sorting by now: going on costs no wait worth a thread.
        rows.values.reserve(rows.values.size() + size_t(n) * size_t(stream_->Columns()));
        streamPos_ += stream_->Read(n, rows, dateColumns_);
    }

    bool ReadBackwards(qint64 first, int n, qint64 reach, SQLRows &rows) override
    {
        const qint64 end = first + n;
        const qint64 count = KnownCount();
        if (!back_ || backPos_ != end) {
            if (count - end > reach)
                return false;
            back_.reset();
            connection_->Read([&](QSqlDatabase *) {
                auto statement = std::make_unique<SQLiteStatement>(db_, Reversed(), shape_.params);
                for (qint64 position = count; position > end && statement->HasRow(); --position)
                    statement->Next();
                back_ = std::move(statement);
            });
            backPos_ = end;
        }
        const size_t columns = size_t(back_->Columns()), base = rows.values.size();
        rows.values.reserve(base + size_t(n) * columns);
        const int got = back_->Read(n, rows, dateColumns_);
        backPos_ -= got;
        const auto row = [&](int r) { return rows.values.begin() + qsizetype(base + size_t(r) * columns); };
        for (int r = 0; r < got / 2; ++r) // into the order, where they were read
            std::swap_ranges(row(r), row(r + 1), row(got - 1 - r));
        if (got < n) // fewer rows than counted: the first ones stay empty rather than shifted
            rows.values.insert(row(0), size_t(n - got) * columns, Variant::Null());
        return true;
    }

    // The keys in result order: a row is found by its key at once. Rows go in in the order
    // selected, so the table's rowid is the position.
    bool IndexStatements(const QString &table, QList<Statement> &statements) override
    {
        QString select = Ordered();
        if (HasKeys()) {
            QStringList keys;
            for (int key : KeyColumns())
                keys << QStringLiteral("qdb_q.") + Quote(record_.fieldName(key));
            select = OrderKnown() ? QStringLiteral("SELECT %1 FROM (%2) qdb_q ORDER BY %3")
                                        .arg(keys.join(QStringLiteral(", ")), shape_.body, OrderClause(QStringLiteral("qdb_q")))
                                  : QStringLiteral("SELECT %1 FROM (%2) qdb_q").arg(keys.join(QStringLiteral(", ")), Ordered());
        }
        statements << Statement{QStringLiteral("CREATE TEMP TABLE %1 AS %2").arg(table, select), shape_.params};
        return true;
    }

    Statement IndexPage(const QString &table, qint64 first, qint64 last) const override
    {
        if (!HasKeys()) // the rows themselves
            return {QStringLiteral("SELECT qdb_i.rowid, qdb_i.* FROM %1 qdb_i WHERE qdb_i.rowid BETWEEN ? AND ? ORDER BY 1").arg(table),
                    {first, last}};
        return {QStringLiteral("SELECT qdb_i.rowid, qdb_q.* FROM %1 qdb_i CROSS JOIN (%2) qdb_q WHERE %3"
                               " AND qdb_i.rowid BETWEEN ? AND ? ORDER BY 1")
                    .arg(table, shape_.body, KeyMatch(QStringLiteral("qdb_q"), QStringLiteral("qdb_i"))),
                shape_.params + QList<QVariant>{first, last}};
    }

    QString IndexPosition() const override { return QStringLiteral("qdb_i.rowid"); }
    QString IndexColumn(int column) const override { return Quote(record_.fieldName(column)); }

private:
    sqlite3 *db_;
    QStringList declared_;
    std::unique_ptr<SQLiteStatement> stream_;
    qint64 streamPos_ = -1;
    std::unique_ptr<SQLiteStatement> back_; // a walk backwards, in the order turned round
    qint64 backPos_ = -1;                   // the position after the next row it reads
    bool sortsItself_ = true;
};

} // namespace

std::unique_ptr<SQLRowSource> NewSQLiteSource(TSQLConnection *connection, const SQLResultShape &shape)
{
    return std::make_unique<SQLiteSource>(connection, shape);
}

} // namespace qdb
