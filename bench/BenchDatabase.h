#pragma once

// The generated table "big" the SQL benchmarks share: 1,000,000 rows, or as many as
// QDB_BENCH_ROWS says. The SQLite file is made on first use next to the benchmark and kept
// there, never committed; the same table is made on the PostgreSQL server QDB_PG_URL names.

#include "platform/db/FieldTypes.h"
#include "platform/sql/SQLConnection.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QUrl>
#include <QString>

namespace qdb::bench {

inline qint64 rows()
{
    static const qint64 n = qEnvironmentVariableIsSet("QDB_BENCH_ROWS") ? qEnvironmentVariable("QDB_BENCH_ROWS").toLongLong()
                                                                        : 1000000;
    return n;
}

inline QString databasePath()
{
    static const QString path = [] {
        const QString dir = QCoreApplication::applicationDirPath();
        // Named for its columns too: a file of an older shape is not taken.
        const QString file = dir + QStringLiteral("/big-city-%1.db").arg(rows());
        if (!QFile::exists(file)) {
            const QString generator = dir + QStringLiteral("/../tools/makesampledb/makesampledb");
            if (QProcess::execute(generator, {file, QStringLiteral("--big"), QString::number(rows())}) != 0)
                qFatal("cannot make the benchmark database");
        }
        return file;
    }();
    return path;
}

// The most memory the process has held, in MiB.
inline double peakResidentMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return -1;
}

inline QString serverUrl()
{
    return qEnvironmentVariable("QDB_PG_URL");
}

// Runs `use` on a connection of Qt's PostgreSQL driver to the server, the baseline's own.
template<typename F>
void withBareServer(F use)
{
    const QUrl url(serverUrl());
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("bare"));
        db.setHostName(url.host());
        db.setPort(url.port(5432));
        db.setUserName(url.userName());
        db.setDatabaseName(url.path().mid(1));
        db.open();
        use(db);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bare"));
}

// Made at the size asked for, and made again when another size runs.
inline void makeServerTable()
{
    TSQLConnection c;
    c.SetConnectionString(serverUrl());
    if (!c.ExecScalar(QStringLiteral("SELECT to_regclass('big') IS NOT NULL")).ToBool()
        || c.ExecScalar(QStringLiteral("SELECT COUNT(*) FROM information_schema.columns"
                                       " WHERE table_name = 'big' AND column_name = 'City'"))
                   .ToInt64()
               == 0
        || c.ExecScalar(QStringLiteral("SELECT COUNT(*) FROM big")).ToInt64() != rows()) {
        c.ExecSQL(QStringLiteral("DROP TABLE IF EXISTS big"));
        c.ExecSQL(QStringLiteral("CREATE TABLE big (\"ID\" INTEGER PRIMARY KEY, \"Name\" VARCHAR(20) NOT NULL,"
                                 " \"Amount\" DOUBLE PRECISION, \"Qty\" INTEGER, \"Day\" DATE, \"Code\" VARCHAR(8),"
                                 " \"City\" VARCHAR(12))"));
        c.ExecSQL(QStringLiteral("INSERT INTO big SELECT i, substr(md5(i::text), 1, 10), (i::bigint * 7919 % 100000) / 100.0,"
                                 " 1 + i % 100, date '2000-01-01' + i % 9000, 'C' || lpad((i::bigint * 31 % 1000000)::text, 6, '0'),"
                                 " 'Town ' || lpad((i::bigint * 7919 % 1000)::text, 3, '0')"
                                 " FROM generate_series(1, %1) i")
                      .arg(rows()));
    }
    // As in the SQLite file: Name has an index, Amount has none.
    c.ExecSQL(QStringLiteral("CREATE INDEX IF NOT EXISTS big_by_name ON big (\"Name\")"));
    c.ExecSQL(QStringLiteral("ANALYZE big"));
}

// Runs the benchmarks asked for on the command line; the generated table, and its copy on
// the server when one is given and `withServer` asks for it, are made before anything is
// measured.
inline int runOverBigTable(int argc, char **argv, bool withServer = false)
{
    RegisterDBTypes();
    benchmark::Initialize(&argc, argv);
    databasePath();
    if (withServer && !serverUrl().isEmpty())
        makeServerTable();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace qdb::bench
