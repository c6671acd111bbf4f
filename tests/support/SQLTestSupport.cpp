#include "SQLTestSupport.h"

#include <QCoreApplication>

namespace qdb::test {

std::string BackendName(const testing::TestParamInfo<Backend> &info)
{
    return info.param == Backend::SQLite ? "SQLite" : "PostgreSQL";
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

} // namespace qdb::test
