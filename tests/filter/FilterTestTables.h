#pragma once

// In-memory tables under the class names of other data access libraries: the filter writes
// its expressions for the dialect such a name stands for.

#include "platform/db/MemTable.h"

namespace qdb::test {

class TADOTable : public TMemTable
{
    Q_OBJECT
public:
    using TMemTable::TMemTable;
};

// Of the ADO family, but under a name of its own: not taken for one of the list.
class TMyADOQuery : public TADOTable
{
    Q_OBJECT
public:
    using TADOTable::TADOTable;
};

class TQuery : public TMemTable
{
    Q_OBJECT
public:
    using TMemTable::TMemTable;
};

class TClientDataSet : public TMemTable
{
    Q_OBJECT
public:
    using TMemTable::TMemTable;
};

} // namespace qdb::test
