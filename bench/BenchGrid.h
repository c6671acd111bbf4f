#pragma once

// A 1280x800 grid shown over the generated table "big", keyed by ID: what the benchmarks
// that measure a change until the grid has repainted start from.

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
    BigTableGrid()
    {
        connection.SetConnectionString(databasePath());
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
