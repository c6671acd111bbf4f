#pragma once

// The ADO adapter: an order handler for data sets of the class "TADOQuery" that sorts on
// the client through their Sort property, read and written by name. Initialising the unit
// adds it to the registry of order handlers, finalising removes it; the calls nest.

#include <QString>

namespace qdb {

class TQDBGrid;

void InitializeQDBGridsADO();
void FinalizeQDBGridsADO();

void ChangeADOQuerySort(TQDBGrid *grid, const QString &order);
QString CurrentADOQuerySort(TQDBGrid *grid);

} // namespace qdb
