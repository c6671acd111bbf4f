#pragma once

#include "grid/QDBGrid.h"

namespace qdb::test {

// A grid that counts the records its record handler is asked about: none when the database
// stands in for it.
class CountingGrid : public TQDBGrid
{
public:
    using TQDBGrid::TQDBGrid;
    void FilterRecord(TDataSet *dataSet, bool &accept) override
    {
        ++asked;
        TQDBGrid::FilterRecord(dataSet, accept);
    }
    int asked = 0;
};

} // namespace qdb::test
