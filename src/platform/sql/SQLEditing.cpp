// Writing the records of an SQL data set back to its table, by key.

#include "SQLDataSet.h"

#include "SQLRowSource.h"
#include "SQLTypes.h"

#include "platform/db/DBConsts.h"
#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>

namespace qdb {

namespace {

// Runs the statements of one post inside a transaction of its own when none is open, so
// that a refused or ambiguous write leaves nothing behind.
class WriteTransaction
{
public:
    explicit WriteTransaction(TSQLConnection *c) : c_(c), own_(!c->InTransaction())
    {
        if (own_)
            c_->StartTransaction();
    }
    ~WriteTransaction()
    {
        if (own_ && c_->InTransaction()) {
            try {
                c_->Rollback();
            } catch (...) {
            }
        }
    }
    void Commit()
    {
        if (own_)
            c_->Commit();
    }
    WriteTransaction(const WriteTransaction &) = delete;
    WriteTransaction &operator=(const WriteTransaction &) = delete;

private:
    TSQLConnection *c_;
    bool own_;
};

// Runs a write; when the server had ended the session (and with it no transaction of the
// application's), opens it again and runs the write once more.
template<typename F>
void writing(TSQLConnection *connection, F write)
{
    try {
        write();
    } catch (const EDatabaseError &) {
        if (!connection->RestoreDatabase())
            throw;
        write();
    }
}

} // namespace

QList<TField *> TCustomSQLDataSet::keyFieldList()
{
    if (!keyFields_.trimmed().isEmpty())
        return GetFieldList(keyFields_);
    const QString table = UpdateTableName();
    QList<TField *> keys;
    for (const QString &name : primaryKeyNames(table)) {
        TField *f = FindField(name);
        if (!f)
            DatabaseError(tr("The key field %1 of table %2 is not in the query").arg(name, table), this);
        keys << f;
    }
    if (TField *implicit = keys.isEmpty() && !ImplicitKey().isEmpty() ? FindField(ImplicitKey()) : nullptr)
        keys << implicit;
    if (keys.isEmpty())
        DatabaseError(tr("Table %1 has no primary key; set KeyFields to say which fields identify a record").arg(table),
                      this);
    return keys;
}

void TCustomSQLDataSet::InternalPost()
{
    TDataSet::InternalPost(); // required fields
    writeRecord(State() == dsInsert);
}

void TCustomSQLDataSet::writeRecord(bool inserting)
{
    const QString table = UpdateTableName();
    const QList<TField *> keys = keyFieldList();
    const TSQLDialect dialect = connection_->Dialect();
    TRecordBuffer &buffer = ActiveBuffer();

    QList<TField *> changed;
    for (TField *f : FieldList())
        if (f->FieldNo() > 0 && f->FieldKind() == fkData && !buffer.values[FieldSlot(f)].IsUnassigned())
            changed << f;
    if (!inserting && changed.isEmpty())
        return;

    // The keys as stored, and as they will be.
    QList<Variant> oldKeys, newKeys;
    const Variant *stored = inserting ? nullptr : row(buffer.row);
    for (TField *k : keys) {
        const Variant old = stored ? stored[k->FieldNo() - 1] : Variant::Null();
        const Variant &typed = buffer.values[FieldSlot(k)];
        oldKeys << old;
        newKeys << (typed.IsUnassigned() ? old : typed);
    }
    auto where = [&](QList<QVariant> &params) {
        QStringList parts;
        for (int i = 0; i < keys.size(); ++i) {
            if (oldKeys[i].IsClear()) {
                parts << Quote(keys[i]->FieldName()) + QStringLiteral(" IS NULL");
            } else {
                parts << Quote(keys[i]->FieldName()) + QStringLiteral(" = ?");
                params << ToDatabase(oldKeys[i], keys[i], dialect);
            }
        }
        return parts.join(QStringLiteral(" AND "));
    };

    QString sql;
    QList<QVariant> params;
    if (inserting) {
        QStringList columns, marks;
        for (TField *f : changed) {
            columns << Quote(f->FieldName());
            marks << QStringLiteral("?");
            params << ToDatabase(buffer.values[FieldSlot(f)], f, dialect);
        }
        QStringList returning;
        for (TField *k : keys)
            returning << Quote(k->FieldName());
        sql = columns.isEmpty()
            ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(Quote(table))
            : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(Quote(table), columns.join(QStringLiteral(", ")),
                                                                 marks.join(QStringLiteral(", ")));
        if (dialect == TSQLDialect::SQLite || dialect == TSQLDialect::PostgreSQL)
            sql += QStringLiteral(" RETURNING ") + returning.join(QStringLiteral(", "));
    } else {
        QStringList sets;
        for (TField *f : changed) {
            sets << Quote(f->FieldName()) + QStringLiteral(" = ?");
            params << ToDatabase(buffer.values[FieldSlot(f)], f, dialect);
        }
        sql = QStringLiteral("UPDATE %1 SET %2 WHERE ").arg(Quote(table), sets.join(QStringLiteral(", ")));
        sql += where(params);
    }

    source_->Pause();
    writing(connection_, [&] {
        QSqlQuery q(connection_->Database()); // outlives the transaction: freed after a rollback
        WriteTransaction transaction(connection_);
        q.setForwardOnly(true);
        if (!q.prepare(sql))
            SQLError(tr("The record cannot be saved"), q.lastError());
        for (const QVariant &p : params)
            q.addBindValue(p);
        if (!q.exec())
            SQLError(tr("The record cannot be saved"), q.lastError());
        if (inserting) {
            if (q.next()) {
                for (int i = 0; i < keys.size(); ++i)
                    newKeys[i] = FromDatabase(q.value(i), keys[i], dialect);
            } else if (keys.size() == 1 && q.lastInsertId().isValid()) {
                newKeys[0] = FromDatabase(q.lastInsertId(), keys[0], dialect);
            }
        } else if (q.numRowsAffected() != 1) {
            DatabaseError(q.numRowsAffected() == 0
                              ? tr("The record was changed or deleted by someone else; refresh and try again")
                              : tr("The key fields match more than one record; nothing was saved"),
                          this);
        }
        q.finish();
        transaction.Commit();
    });

    // The record is read again where it now sorts: defaults and triggers show.
    QList<QVariant> written;
    for (TField *f : keyOfRow_) {
        const qsizetype at = keys.indexOf(f);
        if (at < 0) {
            written.clear();
            break;
        }
        written << ToDatabase(newKeys[at], f, dialect);
    }
    if (written.isEmpty()) {
        reread({});
        return;
    }
    rowsWritten(inserting ? -1 : buffer.row, written);
}

void TCustomSQLDataSet::InternalDelete()
{
    const QString table = UpdateTableName();
    const QList<TField *> keys = keyFieldList();
    const TSQLDialect dialect = connection_->Dialect();
    const Variant *stored = row(ActiveBuffer().row);
    if (!stored)
        DatabaseError(DBConsts::SRecordNotFound(), this);
    QStringList parts;
    QList<QVariant> params;
    for (TField *k : keys) {
        const Variant &v = stored[k->FieldNo() - 1];
        if (v.IsClear()) {
            parts << Quote(k->FieldName()) + QStringLiteral(" IS NULL");
        } else {
            parts << Quote(k->FieldName()) + QStringLiteral(" = ?");
            params << ToDatabase(v, k, dialect);
        }
    }
    source_->Pause();
    writing(connection_, [&] {
        QSqlQuery q(connection_->Database());
        WriteTransaction transaction(connection_);
        if (!q.prepare(QStringLiteral("DELETE FROM %1 WHERE %2").arg(Quote(table), parts.join(QStringLiteral(" AND ")))))
            SQLError(tr("The record cannot be deleted"), q.lastError());
        for (const QVariant &p : params)
            q.addBindValue(p);
        if (!q.exec())
            SQLError(tr("The record cannot be deleted"), q.lastError());
        if (q.numRowsAffected() != 1)
            DatabaseError(q.numRowsAffected() == 0 ? tr("The record was already deleted by someone else")
                                                  : tr("The key fields match more than one record; nothing was deleted"),
                          this);
        transaction.Commit();
    });
    rowsWritten(ActiveBuffer().row, {});
}

// ---- TSQLQuery ----

TSQLQuery::TSQLQuery(QObject *parent) : TCustomSQLDataSet(parent), sql_(new TStringList(this))
{
    sql_->OnChange = [this](TObject *) {
        if (Active())
            Close(); // a new text is a new query
    };
}

QPair<QString, QStringList> TSQLQuery::positional() const
{
    const QString text = sql_->Text();
    QString out;
    QStringList names;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            const qsizetype end = text.indexOf(c, i + 1);
            const qsizetype stop = end < 0 ? n : end + 1;
            out += QStringView(text).mid(i, stop - i);
            i = stop - 1;
        } else if (c == QLatin1Char(':') && i + 1 < n && (text[i + 1].isLetter() || text[i + 1] == QLatin1Char('_'))
                   && (i == 0 || text[i - 1] != QLatin1Char(':'))) {
            qsizetype j = i + 1;
            while (j < n && (text[j].isLetterOrNumber() || text[j] == QLatin1Char('_')))
                ++j;
            names << text.mid(i + 1, j - i - 1);
            out += QLatin1Char('?');
            i = j - 1;
        } else {
            out += c;
        }
    }
    return {out, names};
}

QString TSQLQuery::SelectSQL() const
{
    return positional().first;
}

QList<Variant> TSQLQuery::SelectParams() const
{
    QList<Variant> values;
    for (const QString &name : positional().second)
        values << params_.Value(name);
    return values;
}

QString TSQLQuery::UpdateTableName() const
{
    if (!updateTable_.isEmpty())
        return updateTable_;
    static const QRegularExpression from(QStringLiteral("\\bFROM\\s+(\"[^\"]+\"|[\\w.]+)"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = from.match(sql_->Text());
    if (!m.hasMatch())
        return QString();
    QString table = m.captured(1);
    if (table.startsWith(QLatin1Char('"')))
        table = table.mid(1, table.size() - 2);
    return table;
}

int TSQLQuery::ExecSQL()
{
    if (!Connection())
        DatabaseError(tr("No connection is set"), this);
    return Connection()->ExecSQL(positional().first, SelectParams());
}

// ---- TSQLTable ----

TSQLTable::TSQLTable(QObject *parent) : TCustomSQLDataSet(parent) {}

void TSQLTable::SetTableName(const QString &name)
{
    CheckInactive();
    tableName_ = name;
}

void TSQLTable::SetIndexFieldNames(const QString &names)
{
    if (names == indexFieldNames_)
        return;
    const QString old = indexFieldNames_;
    indexFieldNames_ = names;
    if (!Active())
        return;
    try {
        Reorder();
    } catch (...) {
        indexFieldNames_ = old;
        Reorder();
        throw;
    }
}

QString TSQLTable::ImplicitKey() const
{
    TSQLConnection *connection = Connection();
    if (!connection || tableName_.isEmpty() || !KeyFields().trimmed().isEmpty() || connection->Dialect() != TSQLDialect::SQLite)
        return {};
    const QString of = QString::number(quintptr(connection)) + QLatin1Char('/') + connection->DatabaseName() + QLatin1Char('/') + tableName_;
    if (of == implicitFor_)
        return implicitKey_;
    implicitFor_ = of;
    implicitKey_.clear();
    // Only a table has a rowid (one WITHOUT ROWID has a primary key); a view has none.
    const QStringList tables = connection->Database().tables(QSql::Tables);
    if (!primaryKeyNames(tableName_).isEmpty() || !tables.contains(tableName_, Qt::CaseInsensitive))
        return implicitKey_;
    // A column may have taken one of its names.
    const QSqlRecord columns = connection->Database().record(tableName_);
    for (const char *name : {"rowid", "_rowid_", "oid"})
        if (columns.indexOf(QLatin1String(name)) < 0)
            return implicitKey_ = QLatin1String(name);
    return implicitKey_;
}

QString TSQLTable::SelectSQL() const
{
    if (tableName_.isEmpty())
        DatabaseError(tr("No table name is set"), this);
    const QString implicit = ImplicitKey();
    QString sql = (implicit.isEmpty() ? QStringLiteral("SELECT * FROM ")
                                      : QStringLiteral("SELECT *, %1 AS %2 FROM ").arg(implicit, Quote(implicit)))
        + Quote(tableName_);
    QStringList order;
    for (QString item : indexFieldNames_.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        item = item.trimmed();
        bool desc = false;
        if (item.endsWith(QLatin1String(" DESC"), Qt::CaseInsensitive) || item.endsWith(QLatin1String(":D"), Qt::CaseInsensitive)) {
            desc = true;
            item = item.left(item.lastIndexOf(item.endsWith(QLatin1String(":D"), Qt::CaseInsensitive) ? QLatin1Char(':') : QLatin1Char(' ')));
        } else if (item.endsWith(QLatin1String(" ASC"), Qt::CaseInsensitive) || item.endsWith(QLatin1String(":A"), Qt::CaseInsensitive)) {
            item = item.left(item.lastIndexOf(item.endsWith(QLatin1String(":A"), Qt::CaseInsensitive) ? QLatin1Char(':') : QLatin1Char(' ')));
        }
        order << Quote(item.trimmed()) + (desc ? QStringLiteral(" DESC") : QString());
    }
    if (!order.isEmpty())
        sql += QStringLiteral(" ORDER BY ") + order.join(QStringLiteral(", "));
    return sql;
}

} // namespace qdb
