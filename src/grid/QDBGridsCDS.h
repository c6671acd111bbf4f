#pragma once

// The client-data-set adapter: order handlers that drive an in-memory table's index
// interface directly, with a named index for descending fields. Initialising the unit adds
// them to the registry of order handlers, finalising removes them; the calls nest.

#include <QString>

namespace qdb {

class TQDBGrid;

void InitializeQDBGridsCDS();
void FinalizeQDBGridsCDS();

// The order through the table's index: a plain field list, or the grid's own index when
// some fields run descending.
void ChangeCDSIndexFields(TQDBGrid *grid, const QString &order);
QString CurrentCDSIndexFields(TQDBGrid *grid);

} // namespace qdb
