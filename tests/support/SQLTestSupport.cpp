#include "SQLTestSupport.h"

#include "platform/db/FieldTypes.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>

namespace qdb::test {

std::string BackendName(const testing::TestParamInfo<Backend> &info)
{
    return info.param == Backend::SQLite ? "SQLite" : "PostgreSQL";
}

bool WriteDamagedDatabase(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly)
        && f.write(QByteArray("SQLite format 3") + QByteArray(1, '\0') + QByteArray(4096, '\x5a')) == 4112;
}

bool TestDatabase::Open(Backend backend, TSQLConnection &connection, const QString &name)
{
    if (backend == Backend::PostgreSQL) {
        const QByteArray url = qgetenv("QDB_PG_URL");
        if (url.isEmpty())
            return false;
        // A database of its own, as test programs run side by side.
        admin_.SetConnectionString(QString::fromUtf8(url));
        database_ = QStringLiteral("qdb_%1_%2").arg(name).arg(QCoreApplication::applicationPid());
        admin_.ExecSQL(QStringLiteral("DROP DATABASE IF EXISTS %1").arg(database_));
        admin_.ExecSQL(QStringLiteral("CREATE DATABASE %1").arg(database_));
        connection.SetConnectionString(QString::fromUtf8(url));
        connection.SetDatabaseName(database_);
    } else {
        connection.SetConnectionString(QStringLiteral("sqlite:") + dir_.filePath(name + QStringLiteral(".db")));
        connection.SetCreateDatabase(true);
    }
    connection.Open();
    return true;
}

void TestDatabase::Drop()
{
    if (database_.isEmpty())
        return;
    admin_.ExecSQL(QStringLiteral("DROP DATABASE IF EXISTS %1").arg(database_));
    admin_.Close();
    database_.clear();
}

TestDatabase::~TestDatabase()
{
    try {
        Drop();
    } catch (...) {
    }
}

bool SQLTableTest::OpenDatabase(const QString &name)
{
    RegisterDBTypes();
    return db.Open(GetParam(), connection, name);
}

void SQLTableTest::FillTable(const QString &columns, int count, const std::function<QList<Variant>(int id)> &row)
{
    connection.ExecSQL(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY, %1)").arg(columns));
    connection.StartTransaction();
    for (int id = 1; id <= count; ++id) {
        const QList<Variant> values = QList<Variant>{id} + row(id);
        QStringList marks(values.size(), QStringLiteral("?"));
        connection.ExecSQL(QStringLiteral("INSERT INTO t VALUES (%1)").arg(marks.join(QStringLiteral(", "))), values);
    }
    connection.Commit();
    table.SetConnection(&connection);
    table.SetTableName(QStringLiteral("t"));
    table.SetIndexFieldNames(QStringLiteral("id"));
    table.Open();
}

void SQLTableTest::TearDown()
{
    table.Close();
    connection.Close();
    db.Drop();
}

QString SQLTableTest::FloatType() const
{
    return pg() ? QStringLiteral("DOUBLE PRECISION") : QStringLiteral("REAL");
}

Variant SQLTableTest::Flag(bool value) const
{
    return pg() ? Variant(value) : Variant(value ? 1 : 0);
}

Variant SQLTableTest::NullEvery(int id, int every, const Variant &value)
{
    return id % every == 0 ? Variant::Null() : value;
}

bool PrivateServer::script(const QStringList &arguments, QString *out)
{
    QProcess process;
    process.start(QStringLiteral(QDB_SOURCE_DIR "/scripts/pg-server.sh"), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return false;
    if (out)
        *out = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    return true;
}

bool PrivateServer::Start()
{
    if (qEnvironmentVariableIsEmpty("QDB_PG_URL") || !QFile::exists(QStringLiteral("/usr/lib/postgresql/15/bin/initdb")))
        return false;
    QFile::setPermissions(dir_.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
                                           | QFileDevice::ReadOther | QFileDevice::ExeOther);
    for (int attempt = 0; attempt < 3 && url_.isEmpty(); ++attempt) {
        port_ = 40000 + int(QRandomGenerator::global()->bounded(20000));
        if (!script({QStringLiteral("start"), dir_.filePath(QStringLiteral("pg%1").arg(attempt)), QString::number(port_)}, &url_))
            url_.clear();
        else
            dataDir_ = dir_.filePath(QStringLiteral("pg%1").arg(attempt));
    }
    return !url_.isEmpty();
}

void PrivateServer::Halt()
{
    script({QStringLiteral("halt"), dataDir_});
}

void PrivateServer::Resume()
{
    script({QStringLiteral("resume"), dataDir_, QString::number(port_)});
}

PrivateServer::~PrivateServer()
{
    if (!dataDir_.isEmpty())
        script({QStringLiteral("stop"), dataDir_});
}

} // namespace qdb::test
