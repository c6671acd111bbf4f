#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>

namespace qdb {

// Messages of the data-access layer, translatable in the "qdb" context.
namespace DBConsts {
inline QString tr(const char *text) { return QCoreApplication::translate("qdb", text); }
inline QString SFieldNotFound() { return tr("Field '%1' not found"); }
inline QString SFieldReadOnly() { return tr("Field '%1' cannot be modified"); }
inline QString SFieldRequired() { return tr("Field '%1' must have a value"); }
inline QString SNotEditing() { return tr("Dataset not in edit or insert mode"); }
inline QString SDataSetClosed() { return tr("Cannot perform this operation on a closed dataset"); }
inline QString SDataSetOpen() { return tr("Cannot perform this operation on an open dataset"); }
inline QString SDataSetEmpty() { return tr("Cannot perform this operation on an empty dataset"); }
inline QString SDataSetReadOnly() { return tr("Cannot modify a read-only dataset"); }
inline QString SDataSetUnidirectional() { return tr("Operation not allowed on a unidirectional dataset"); }
inline QString SRecordNotFound() { return tr("Record not found"); }
inline QString STooManyColumns() { return tr("Grid requested to display more than 256 columns"); }
inline QString SInvalidBookmark() { return tr("Invalid bookmark"); }
inline QString SInvalidIntegerValue() { return tr("'%1' is not a valid integer value for field '%2'"); }
inline QString SInvalidFloatValue() { return tr("'%1' is not a valid floating point value for field '%2'"); }
inline QString SInvalidBoolValue() { return tr("'%1' is not a valid boolean value for field '%2'"); }
inline QString SInvalidDateValue() { return tr("'%1' is not a valid date and time for field '%2'"); }
inline QString SFieldRangeError() { return tr("%1 is not a valid value for field '%2'. The allowed range is %3 to %4"); }
inline QString SFieldAccessError() { return tr("Cannot access field '%1' as type %2"); }
inline QString SFieldValueError() { return tr("Invalid value for field '%1'"); }
inline QString SDuplicateFieldName() { return tr("Duplicate field name '%1'"); }
inline QString SCircularDataLink() { return tr("Circular datalinks are not allowed"); }
inline QString SFieldIndexError() { return tr("Field index out of range"); }
inline QString SIndexNotFound() { return tr("Index '%1' not found"); }
inline QString SDuplicateIndexName() { return tr("Duplicate index name '%1'"); }
inline QString SNoFields() { return tr("No fields defined for the dataset"); }
inline QString SUnsupportedFieldType() { return tr("Unsupported field type (%1) in field %2"); }
inline QString SFieldTypeMismatch() { return tr("Type mismatch for field '%1', expecting: %2 actual: %3"); }
inline QString SLookupInfoError() { return tr("Lookup information for field '%1' is incomplete"); }
inline QString SInvalidFilter() { return tr("Filter expression: %1 at position %2 in \"%3\""); }
} // namespace DBConsts

// Raises EDatabaseError, naming the component first when it has a name.
[[noreturn]] void DatabaseError(const QString &message, const QObject *component);

} // namespace qdb
