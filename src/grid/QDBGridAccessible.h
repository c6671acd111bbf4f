#pragma once

namespace qdb {

// Lets assistive technology read the grid as a table: its records in view as rows, the
// title lines as column headers (a merged header spans its columns), the totals rows as a
// footer, the current cell, the selected rows and each column's sort order. Called by every
// grid; the first call registers the interface with Qt.
void InstallGridAccessibility();

class TQCustomDBGrid;
// Tells assistive technology which cell is current now, when the grid has the focus.
void NotifyCurrentCell(TQCustomDBGrid *grid);

} // namespace qdb
