#pragma once

#include "SQLFilter.h"

#include "platform/db/DataSet.h"

namespace qdb {

// The rows that may have a search's text, as a WHERE condition with bound values; the text
// never becomes SQL. `exact` comes back true when the condition holds for those rows alone;
// false when it holds for more, which the records' own test must then tell apart. False
// when a field's display text is made by a rule the database cannot follow (OnGetText, a
// format that may show the text) and only the records themselves can tell.
bool TextSearchToSQL(const TTextSearch &search, TDataSet *dataSet, TSQLDialect dialect,
                     const std::function<QString(const QString &)> &quoteName, SQLCondition &condition, bool &exact);

} // namespace qdb
