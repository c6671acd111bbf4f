#pragma once

// A database of its own for one test, on either backend: a SQLite file in a temporary folder,
// or a fresh database on the PostgreSQL server that QDB_PG_URL names.

#include "platform/sql/SQLConnection.h"
#include "platform/sql/SQLDataSet.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace qdb::test {

enum class Backend { SQLite, PostgreSQL };

std::string BackendName(const testing::TestParamInfo<Backend> &info);

class TestDatabase
{
public:
    TestDatabase() = default;
    ~TestDatabase();
    TestDatabase(const TestDatabase &) = delete;
    TestDatabase &operator=(const TestDatabase &) = delete;

    // Points the connection at the database and opens it; false when the backend is not
    // available in this run (no PostgreSQL server), for the test to skip.
    bool Open(Backend backend, TSQLConnection &connection, const QString &name);
    // Drops the test's PostgreSQL database; the connection must be closed first.
    void Drop();

private:
    QTemporaryDir dir_;
    TSQLConnection admin_;
    QString database_;
};

// A test run once a backend, over a database of its own; most fill a table "t" keyed by "id".
class SQLTableTest : public testing::TestWithParam<Backend>
{
protected:
    // False when the backend is not available in this run: the test's SetUp skips.
    bool OpenDatabase(const QString &name);
    // Creates "t" with "id" and the columns, inserts rows 1..count and opens `table` on it in
    // id order.
    void FillTable(const QString &columns, int count, const std::function<QList<Variant>(int id)> &row);
    void TearDown() override;

    bool pg() const { return GetParam() == Backend::PostgreSQL; }
    QString FloatType() const;
    // A truth value as the backend stores it.
    Variant Flag(bool value) const;
    // NULL at every `every`-th id.
    static Variant NullEvery(int id, int every, const Variant &value);

    TestDatabase db;
    TSQLConnection connection;
    TSQLTable table;
};

// A PostgreSQL server of the test's own, which it may stop and start again; the shared
// server of the run serves other tests meanwhile.
class PrivateServer
{
public:
    PrivateServer() = default;
    ~PrivateServer();
    PrivateServer(const PrivateServer &) = delete;
    PrivateServer &operator=(const PrivateServer &) = delete;

    // False where no PostgreSQL server can be run (the test skips).
    bool Start();
    QString Url() const { return url_; }
    void Halt();
    void Resume();

private:
    bool script(const QStringList &arguments, QString *out = nullptr);
    QTemporaryDir dir_;
    QString url_;
    QString dataDir_;
    int port_ = 0;
};

// A file that begins as a SQLite database does and goes on with bytes that are none: what
// SQLite calls "not a database". False when it cannot be written.
bool WriteDamagedDatabase(const QString &path);

} // namespace qdb::test
