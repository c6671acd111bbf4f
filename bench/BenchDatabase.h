#pragma once

// The generated SQLite table "big" the SQL benchmarks share: 1,000,000 rows, or as many as
// QDB_BENCH_ROWS says. It is made on first use next to the benchmark and kept there, never
// committed.

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
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
        const QString file = dir + QStringLiteral("/big-%1.db").arg(rows());
        if (!QFile::exists(file)) {
            const QString generator = dir + QStringLiteral("/../tools/makesampledb/makesampledb");
            if (QProcess::execute(generator, {file, QStringLiteral("--big"), QString::number(rows())}) != 0)
                qFatal("cannot make the benchmark database");
        }
        return file;
    }();
    return path;
}

} // namespace qdb::bench
