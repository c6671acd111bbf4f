#pragma once

// A grid over a small in-memory table with a field of each common kind, made anew for each
// input, so that an input that fails fails alone too.

#include "FuzzSupport.h"

#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/DateTime.h"

namespace qdb::fuzz {

struct SampleGrid
{
    // First, so that the application is there before the first widget.
    struct Prepared
    {
        Prepared()
        {
            EnsureApplication();
            static const bool registered = (RegisterDBTypes(), true);
            Q_UNUSED(registered);
        }
    } prepared;
    TMemTable table;
    TDataSource source;
    TQDBGrid grid;

    SampleGrid()
    {
        table.FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
        table.FieldDefs().Add(QStringLiteral("Unit Price"), ftFloat);
        table.FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("Day"), ftDate);
        table.CreateDataSet();
        for (int i = 0; i < 6; ++i)
            table.AppendRecord({QStringLiteral("item %1").arg(i), i * 1.5, i - 2, EncodeDate(2024, 1, 1 + i)});
        table.First();
        source.SetDataSet(&table);
        grid.SetDataSource(&source);
        grid.resize(320, 160);
    }
    ~SampleGrid() { grid.SetDataSource(nullptr); }

};

} // namespace qdb::fuzz
