#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>

namespace qdb {

// Messages of the data-access layer, translatable in the "qdb" context.
namespace DBConsts {
inline QString SFieldNotFound() { return QCoreApplication::translate("qdb", "Field '%1' not found"); }
inline QString SFieldReadOnly() { return QCoreApplication::translate("qdb", "Field '%1' cannot be modified"); }
inline QString SFieldRequired() { return QCoreApplication::translate("qdb", "Field '%1' must have a value"); }
inline QString SNotEditing() { return QCoreApplication::translate("qdb", "Dataset not in edit or insert mode"); }
inline QString SDataSetClosed() { return QCoreApplication::translate("qdb", "Cannot perform this operation on a closed dataset"); }
inline QString SDataSetOpen() { return QCoreApplication::translate("qdb", "Cannot perform this operation on an open dataset"); }
inline QString SDataSetEmpty() { return QCoreApplication::translate("qdb", "Cannot perform this operation on an empty dataset"); }
inline QString SDataSetReadOnly() { return QCoreApplication::translate("qdb", "Cannot modify a read-only dataset"); }
inline QString SDataSetUnidirectional() { return QCoreApplication::translate("qdb", "Operation not allowed on a unidirectional dataset"); }
inline QString SRecordNotFound() { return QCoreApplication::translate("qdb", "Record not found"); }
inline QString STooManyColumns() { return QCoreApplication::translate("qdb", "Grid requested to display more than 256 columns"); }
inline QString SInvalidBookmark() { return QCoreApplication::translate("qdb", "Invalid bookmark"); }
inline QString SInvalidIntegerValue() { return QCoreApplication::translate("qdb", "'%1' is not a valid integer value for field '%2'"); }
inline QString SInvalidFloatValue() { return QCoreApplication::translate("qdb", "'%1' is not a valid floating point value for field '%2'"); }
inline QString SInvalidBoolValue() { return QCoreApplication::translate("qdb", "'%1' is not a valid boolean value for field '%2'"); }
inline QString SInvalidDateValue() { return QCoreApplication::translate("qdb", "'%1' is not a valid date and time for field '%2'"); }
inline QString SFieldRangeError() { return QCoreApplication::translate("qdb", "%1 is not a valid value for field '%2'. The allowed range is %3 to %4"); }
inline QString SFieldAccessError() { return QCoreApplication::translate("qdb", "Cannot access field '%1' as type %2"); }
inline QString SFieldValueError() { return QCoreApplication::translate("qdb", "Invalid value for field '%1'"); }
inline QString SDuplicateFieldName() { return QCoreApplication::translate("qdb", "Duplicate field name '%1'"); }
inline QString SCircularDataLink() { return QCoreApplication::translate("qdb", "Circular datalinks are not allowed"); }
inline QString SFieldIndexError() { return QCoreApplication::translate("qdb", "Field index out of range"); }
inline QString SIndexNotFound() { return QCoreApplication::translate("qdb", "Index '%1' not found"); }
inline QString SDuplicateIndexName() { return QCoreApplication::translate("qdb", "Duplicate index name '%1'"); }
inline QString SNoFields() { return QCoreApplication::translate("qdb", "No fields defined for the dataset"); }
inline QString SUnsupportedFieldType() { return QCoreApplication::translate("qdb", "Unsupported field type (%1) in field %2"); }
inline QString SFieldTypeMismatch() { return QCoreApplication::translate("qdb", "Type mismatch for field '%1', expecting: %2 actual: %3"); }
inline QString SLookupInfoError() { return QCoreApplication::translate("qdb", "Lookup information for field '%1' is incomplete"); }
inline QString SInvalidFilter() { return QCoreApplication::translate("qdb", "Filter expression: %1 at position %2 in \"%3\""); }
} // namespace DBConsts

// Raises EDatabaseError, naming the component first when it has a name.
[[noreturn]] void DatabaseError(const QString &message, const QObject *component);

} // namespace qdb
