#pragma once

#include "SQLFilter.h"

#include "platform/db/DataSet.h"

namespace qdb {

// The rows a record handler's text match accepts, as a WHERE condition with bound values:
// each text is read back into the values whose field shows it (a range where several
// values show the same text), NULL where a field shows nothing. False when a field's text
// is not the database's value written by a rule known here (calculated fields, OnGetText,
// formats): the handler must then see each record.
bool TextMatchToSQL(const TFilterRecordMatch &match, TDataSet *dataSet, TSQLDialect dialect,
                    const std::function<QString(const QString &)> &quoteName, SQLCondition &condition);

} // namespace qdb
