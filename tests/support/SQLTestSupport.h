#pragma once

// A database of its own for one test, on either backend: a SQLite file in a temporary folder,
// or a fresh database on the PostgreSQL server that QDB_PG_URL names.

#include "platform/sql/SQLConnection.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

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

} // namespace qdb::test
