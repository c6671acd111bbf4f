#include "SQLConnection.h"

#include "SQLWorker.h"

#include "platform/db/DBConsts.h"
#include "platform/db/DataSet.h"
#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

#include <libpq-fe.h>
#include <sqlite3.h>

#include <atomic>

namespace qdb {

namespace {

std::atomic<int> connectionCounter{0};

} // namespace

void SQLError(const QString &what, const QSqlError &error)
{
    QString server = error.databaseText().trimmed();
    if (server.isEmpty())
        server = error.driverText().trimmed();
    throw EDatabaseError(server.isEmpty() ? what : what + QStringLiteral(": ") + server);
}

TSQLConnection::TSQLConnection(QObject *parent)
    : QObject(parent), connectionName_(QStringLiteral("qdb-%1").arg(++connectionCounter))
{
}

TSQLConnection::~TSQLConnection()
{
    closeDataSets();
    closeReader();
    {
        QSqlDatabase db = QSqlDatabase::database(connectionName_, false);
        restoreJournal(db);
        if (db.isOpen())
            db.close();
    }
    if (QSqlDatabase::contains(connectionName_))
        QSqlDatabase::removeDatabase(connectionName_);
}

void TSQLConnection::checkDisconnected() const
{
    if (Connected())
        throw EDatabaseError(tr("Cannot change the connection while it is open"));
}

void TSQLConnection::SetDriverName(const QString &name) { checkDisconnected(); driverName_ = name; }
void TSQLConnection::SetDatabaseName(const QString &name) { checkDisconnected(); databaseName_ = name; }
void TSQLConnection::SetHostName(const QString &name) { checkDisconnected(); hostName_ = name; }
void TSQLConnection::SetPort(int port) { checkDisconnected(); port_ = port; }
void TSQLConnection::SetUserName(const QString &name) { checkDisconnected(); userName_ = name; }
void TSQLConnection::SetPassword(const QString &password) { checkDisconnected(); password_ = password; }

QString TSQLConnection::ConnectionString() const
{
    if (driverName_ == QLatin1String("QPSQL")) {
        QUrl url;
        url.setScheme(QStringLiteral("postgresql"));
        url.setHost(hostName_.isEmpty() ? QStringLiteral("localhost") : hostName_);
        if (port_ > 0)
            url.setPort(port_);
        url.setUserName(userName_);
        url.setPath(QLatin1Char('/') + databaseName_);
        return url.toString();
    }
    return QStringLiteral("sqlite:") + databaseName_;
}

void TSQLConnection::SetConnectionString(const QString &text)
{
    checkDisconnected();
    const QString t = text.trimmed();
    if (t.startsWith(QLatin1String("postgresql://")) || t.startsWith(QLatin1String("postgres://"))) {
        const QUrl url(t);
        if (!url.isValid() || url.path().size() < 2)
            throw EDatabaseError(tr("'%1' is not a valid PostgreSQL address (postgresql://user@host:port/database)").arg(t));
        driverName_ = QStringLiteral("QPSQL");
        hostName_ = url.host();
        port_ = url.port(5432);
        userName_ = url.userName();
        password_ = url.password();
        databaseName_ = url.path().mid(1);
        return;
    }
    QString path = t;
    if (path.startsWith(QLatin1String("sqlite://")))
        path = path.mid(9);
    else if (path.startsWith(QLatin1String("sqlite:")))
        path = path.mid(7);
    if (path.isEmpty())
        throw EDatabaseError(tr("The connection string names no database"));
    driverName_ = QStringLiteral("QSQLITE");
    databaseName_ = path;
    hostName_.clear();
    port_ = -1;
}

TSQLDialect TSQLConnection::Dialect() const
{
    if (driverName_ == QLatin1String("QSQLITE"))
        return TSQLDialect::SQLite;
    if (driverName_ == QLatin1String("QPSQL"))
        return TSQLDialect::PostgreSQL;
    return TSQLDialect::Other;
}

bool TSQLConnection::Connected() const
{
    // Open until the application closes it: a session the server ended is opened again on
    // the next statement that fails, not by a second connection.
    return QSqlDatabase::contains(connectionName_);
}

void TSQLConnection::SetConnected(bool on)
{
    if (on == Connected())
        return;
    if (!on) {
        closeDataSets();
        closeReader();
        {
            QSqlDatabase db = QSqlDatabase::database(connectionName_, false);
            restoreJournal(db);
            db.close();
        }
        QSqlDatabase::removeDatabase(connectionName_);
        inTransaction_ = false;
        Fire(AfterDisconnect, this);
        return;
    }
    if (!QSqlDatabase::isDriverAvailable(driverName_))
        throw EDatabaseError(tr("The database driver %1 is not installed").arg(driverName_));
    if (Dialect() == TSQLDialect::SQLite && !createDatabase_ && databaseName_ != QLatin1String(":memory:")
        && !QFileInfo::exists(databaseName_))
        throw EDatabaseError(tr("The database file %1 does not exist").arg(databaseName_));
    bool opened = false;
    QSqlError error;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(driverName_, connectionName_);
        db.setDatabaseName(databaseName_);
        db.setHostName(hostName_);
        if (port_ > 0)
            db.setPort(port_);
        db.setUserName(userName_);
        db.setPassword(password_);
        if (Dialect() == TSQLDialect::PostgreSQL)
            db.setConnectOptions(QStringLiteral("connect_timeout=10"));
        opened = db.open();
        error = db.lastError();
        if (opened && Dialect() == TSQLDialect::SQLite) {
            // SQLite reads the file only when asked: a damaged one shows here, not as an
            // empty database.
            QSqlQuery probe(db);
            if (!probe.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"))) {
                error = probe.lastError();
                probe = QSqlQuery();
                db.close();
                opened = false;
            }
        }
        if (opened)
            prepareSession(db);
        if (opened && Dialect() == TSQLDialect::SQLite) {
            QSqlQuery(db).exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        }
    }
    if (!opened) {
        QSqlDatabase::removeDatabase(connectionName_);
        SQLError(tr("Cannot connect to %1").arg(databaseName_), error);
    }
    Fire(AfterConnect, this);
}

void TSQLConnection::AttachDataSet(TDataSet *dataSet)
{
    if (!dataSets_.contains(dataSet))
        dataSets_.append(dataSet);
}

void TSQLConnection::DetachDataSet(TDataSet *dataSet)
{
    dataSets_.removeAll(dataSet);
}

void TSQLConnection::closeDataSets()
{
    const QList<QPointer<TDataSet>> sets = dataSets_;
    for (const QPointer<TDataSet> &ds : sets)
        if (ds && ds->Active()) {
            try {
                ds->Close();
            } catch (...) {
            }
        }
}

QSqlDatabase TSQLConnection::Database()
{
    Open();
    return QSqlDatabase::database(connectionName_, false);
}

namespace {

PGconn *serverSession(QSqlDatabase db)
{
    const QVariant handle = db.isOpen() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || (qstrcmp(handle.typeName(), "PGconn*") != 0 && qstrcmp(handle.typeName(), "pg_conn*") != 0))
        return nullptr;
    return *static_cast<PGconn *const *>(handle.constData());
}

sqlite3 *sqliteSession(QSqlDatabase db)
{
    const QVariant handle = db.isOpen() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

} // namespace

void TSQLConnection::Read(const std::function<void(QSqlDatabase *reader)> &job)
{
    Open();
    if (Dialect() != TSQLDialect::PostgreSQL && Dialect() != TSQLDialect::SQLite) {
        job(nullptr);
        return;
    }
    if (!worker_)
        worker_ = std::make_unique<SQLWorker>();
    const bool outermost = readDepth_++ == 0;
    if (outermost)
        cancelled_ = false;
    auto tick = [this](int elapsed) {
        if (elapsed < waitDelay_)
            return;
        waited_ = true;
        if (OnWait)
            OnWait(this, elapsed);
    };
    auto done = qScopeGuard([this] {
        if (--readDepth_ == 0 && waited_) { // once, when the reads asked for meanwhile are over too
            waited_ = false;
            Fire(AfterWait, this);
        }
    });
    if (Dialect() == TSQLDialect::SQLite) {
        worker_->Run([&] { job(nullptr); }, tick);
        return;
    }
    worker_->Run(
        [&] {
            // The reading session lives in the worker thread, as Qt's connections must.
            if (readerName_.isEmpty()) {
                const QString name = connectionName_ + QStringLiteral("-reader");
                QSqlDatabase reader = QSqlDatabase::cloneDatabase(connectionName_, name);
                if (!reader.open()) {
                    const QSqlError error = reader.lastError();
                    reader = QSqlDatabase();
                    QSqlDatabase::removeDatabase(name);
                    SQLError(tr("Cannot connect to %1").arg(databaseName_), error);
                }
                prepareSession(reader);
                readerName_ = name;
                keepCancel(reader);
            }
            QSqlDatabase reader = QSqlDatabase::database(readerName_, false);
            job(&reader);
        },
        tick);
}

void TSQLConnection::keepCancel(QSqlDatabase reader)
{
    const std::lock_guard<std::mutex> lock(cancelMutex_);
    if (serverCancel_)
        PQfreeCancel(static_cast<PGcancel *>(serverCancel_));
    PGconn *session = serverSession(reader);
    serverCancel_ = session ? PQgetCancel(session) : nullptr;
}

void TSQLConnection::Cancel()
{
    if (readDepth_ == 0)
        return;
    cancelled_ = true;
    if (Dialect() == TSQLDialect::SQLite) {
        if (sqlite3 *db = sqliteSession(Database()))
            sqlite3_interrupt(db);
        return;
    }
    const std::lock_guard<std::mutex> lock(cancelMutex_);
    if (serverCancel_) {
        char error[256];
        PQcancel(static_cast<PGcancel *>(serverCancel_), error, int(sizeof error));
    }
}

void TSQLConnection::prepareSession(QSqlDatabase db)
{
    QSqlQuery q(db);
    if (Dialect() == TSQLDialect::SQLite) {
        q.exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(busyTimeout_));
    } else if (Dialect() == TSQLDialect::PostgreSQL) {
        q.exec(QStringLiteral("SET client_min_messages TO WARNING")); // notices are not for the user's console
        q.exec(QStringLiteral("SET statement_timeout = %1").arg(statementTimeout_));
    }
}

void TSQLConnection::SetBusyTimeout(int ms)
{
    busyTimeout_ = qMax(0, ms);
    if (Connected() && Dialect() == TSQLDialect::SQLite)
        QSqlQuery(Database()).exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(busyTimeout_));
}

bool TSQLConnection::restore(QSqlDatabase db)
{
    if (Dialect() != TSQLDialect::PostgreSQL || !db.isValid())
        return false;
    if (PGconn *session = serverSession(db); session && PQstatus(session) == CONNECTION_OK)
        return false;
    db.close();
    if (!db.open())
        SQLError(tr("The connection to the server was lost and cannot be made again"), db.lastError());
    prepareSession(db);
    return true;
}

bool TSQLConnection::RestoreDatabase()
{
    if (!QSqlDatabase::contains(connectionName_) || !restore(QSqlDatabase::database(connectionName_, false)))
        return false;
    if (inTransaction_) {
        inTransaction_ = false;
        throw EDatabaseError(tr("The connection to the server was lost; the open transaction was rolled back"));
    }
    return true;
}

bool TSQLConnection::RestoreReader()
{
    if (Dialect() != TSQLDialect::PostgreSQL || readerName_.isEmpty() || !worker_)
        return false;
    bool restored = false;
    worker_->Run(
        [&] {
            QSqlDatabase reader = QSqlDatabase::database(readerName_, false);
            restored = restore(reader);
            if (restored)
                keepCancel(reader);
        },
        {});
    if (restored)
        ++readerSessions_;
    return restored;
}

void TSQLConnection::closeReader()
{
    if (!worker_)
        return;
    worker_->Run(
        [&] {
            keepCancel(QSqlDatabase());
            if (readerName_.isEmpty())
                return;
            QSqlDatabase::database(readerName_, false).close();
            QSqlDatabase::removeDatabase(readerName_);
            readerName_.clear();
        },
        {});
    worker_.reset();
}

QString TSQLConnection::QuoteName(const QString &name)
{
    QSqlDatabase db = Database();
    return db.driver()->escapeIdentifier(name, QSqlDriver::FieldName);
}

void TSQLConnection::prepareWrite(QSqlDatabase db)
{
    // A walk keeps its statement open until control is back in the event loop; in SQLite's
    // default journal mode that would lock out other programs' writes meanwhile. The file is
    // switched to the write-ahead log only once this connection writes, and back when it
    // closes: reading a file leaves it as it was.
    if (Dialect() != TSQLDialect::SQLite || journalChecked_ || inTransaction_ || databaseName_ == QLatin1String(":memory:"))
        return;
    journalChecked_ = true;
    QSqlQuery mode(db);
    if (!mode.exec(QStringLiteral("PRAGMA journal_mode")) || !mode.next())
        return;
    const QString before = mode.value(0).toString().toLower();
    if (before == QLatin1String("wal") || before == QLatin1String("memory") || before == QLatin1String("off"))
        return;
    mode.finish();
    if (mode.exec(QStringLiteral("PRAGMA journal_mode = WAL")) && mode.next()
        && mode.value(0).toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) == 0)
        journalBefore_ = before;
}

void TSQLConnection::restoreJournal(QSqlDatabase db)
{
    // The file goes back to the journal it had; another program still using it in the new
    // one keeps it so.
    if (!journalBefore_.isEmpty() && db.isOpen()) {
        if (inTransaction_)
            db.rollback();
        QSqlQuery(db).exec(QStringLiteral("PRAGMA journal_mode = %1").arg(journalBefore_));
    }
    journalBefore_.clear();
    journalChecked_ = false;
}

void TSQLConnection::StartTransaction()
{
    QSqlDatabase db = Database();
    if (inTransaction_)
        throw EDatabaseError(tr("A transaction is already active"));
    prepareWrite(db);
    if (!db.transaction())
        SQLError(tr("Cannot start a transaction"), db.lastError());
    inTransaction_ = true;
}

void TSQLConnection::Commit()
{
    QSqlDatabase db = Database();
    if (!inTransaction_)
        throw EDatabaseError(tr("No transaction is active"));
    if (!db.commit())
        SQLError(tr("Cannot commit the transaction"), db.lastError());
    inTransaction_ = false;
}

void TSQLConnection::Rollback()
{
    QSqlDatabase db = Database();
    if (!inTransaction_)
        return;
    inTransaction_ = false;
    if (!db.rollback())
        SQLError(tr("Cannot roll the transaction back"), db.lastError());
}

namespace {

QSqlQuery run(QSqlDatabase db, const QString &sql, const QList<Variant> &params)
{
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (params.isEmpty()) { // statements such as CREATE cannot be prepared everywhere
        if (!q.exec(sql))
            SQLError(QCoreApplication::translate("qdb", "The statement failed"), q.lastError());
        return q;
    }
    if (!q.prepare(sql))
        SQLError(QCoreApplication::translate("qdb", "The statement cannot be prepared"), q.lastError());
    for (const Variant &p : params)
        q.addBindValue(p.ToQVariant());
    if (!q.exec())
        SQLError(QCoreApplication::translate("qdb", "The statement failed"), q.lastError());
    return q;
}

} // namespace

int TSQLConnection::ExecSQL(const QString &sql, const QList<Variant> &params)
{
    QSqlDatabase db = Database();
    prepareWrite(db);
    return run(db, sql, params).numRowsAffected();
}

Variant TSQLConnection::ExecScalar(const QString &sql, const QList<Variant> &params)
{
    QSqlQuery q = run(Database(), sql, params);
    return q.next() ? Variant::FromQVariant(q.value(0)) : Variant::Null();
}

} // namespace qdb
