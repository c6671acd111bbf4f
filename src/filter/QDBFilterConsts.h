#pragma once

// The auto filter's texts: clause captions, expression templates, dialect lists, messages
// and period captions, translatable in the "qdb" context. Misspellings are part of them.

#include "QDBFilterTypes.h"

#include <QCoreApplication>
#include <QString>

namespace qdb {

namespace FilterConsts {

// One per clause from fcContains on; fcNoFilter has none.
QString ClauseCaption(TQDBGridFilterClause clause);
// One per clause ordinal, then the two NULL forms of the ADO dialect (clause ordinal + 2 for
// fcIsEmpty and fcIsNotEmpty). Arguments: field name, value text, any-text wildcard.
QString ClauseTemplate(int index);

inline QString SInvalidFilterExpression() { return QCoreApplication::translate("qdb", "Invalid filter expression: %s"); }
inline QString SAnyCharSymbol() { return QCoreApplication::translate("qdb", "Symbol %s replaces any character"); }
inline QString SAnyTextSymbol() { return QCoreApplication::translate("qdb", "Symbol %s replaces any text string"); }
inline QString SSelectPeriod() { return QCoreApplication::translate("qdb", "Select period"); }

// The wildcards of LIKE: fixed, not settings.
inline constexpr char AnyCharSymbol = '_';
inline constexpr char AnyTextSymbol = '%';

// Data set classes by exact class name, each list ending in a dot.
inline const char *ADODataSets() { return "TADOTable.TADOQuery.TADODataSet."; }
inline const char *BDEDataSets() { return "TTable.TQuery."; }
inline const char *ClientDataSets()
{
    return "TClientDataSet.TSimpleDataSet.TBDEClientDataSet.TIBClientDataSet.TSQLClientDataSet.TpFIBClientDataSet.";
}
inline const char *FireDACDataSets() { return "TFDTable.TFDQuery.TFDMemTable.TADTable.TADQuery.TADMemTable."; }
// The data-access layer's own data sets: one parser reads their filters, numbers with ".".
inline const char *NativeDataSets() { return "TMemTable.TSQLQuery.TSQLTable.TQDBCustomData."; }
} // namespace FilterConsts

} // namespace qdb
