#pragma once

// A 1280x800 grid shown over the generated table "big" (in the SQLite file, or on the
// server given), keyed by ID: what the benchmarks that measure a change until the grid has
// repainted start from.

#include "BenchDatabase.h"

#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/sql/SQLDataSet.h"

namespace qdb::bench {

inline const QSize GridSize(1280, 800);

struct BigTableGrid
{
    TSQLConnection connection;
    TSQLTable table;
    TDataSource source;
    TQDBGrid grid;
    explicit BigTableGrid(const QString &database = databasePath())
    {
        connection.SetConnectionString(database);
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("big"));
        table.Open();
        source.SetDataSet(&table);
        grid.resize(GridSize);
        grid.SetDataSource(&source);
        grid.SetKeyFields(QStringLiteral("ID"));
    }
    ~BigTableGrid() { grid.SetDataSource(nullptr); }
};

} // namespace qdb::bench
