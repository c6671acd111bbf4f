#pragma once

// The row sources of each database, made by SQLRowSource::Create.

#include "SQLRowSource.h"

namespace qdb {

std::unique_ptr<SQLRowSource> NewSQLiteSource(TSQLConnection *connection, const SQLResultShape &shape);
std::unique_ptr<SQLRowSource> NewPostgreSQLSource(TSQLConnection *connection, const SQLResultShape &shape);
// Any other database: rows by LIMIT and OFFSET, no key table.
std::unique_ptr<SQLRowSource> NewPortableSource(TSQLConnection *connection, const SQLResultShape &shape);

} // namespace qdb
