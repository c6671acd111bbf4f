#pragma once

#include "SQLConnection.h"

#include "platform/db/DataSet.h"

#include <QSqlField>
#include <QSqlQuery>
#include <QVariant>

namespace qdb {

// How a column of a result becomes a field: from SQLite's declared type, or from the
// driver's column type and sizes for other databases.
TFieldDef FieldDefFromDeclaredType(const QString &name, const QString &declaredType, QMetaType valueType);
TFieldDef FieldDefFromSqlField(const QSqlField &field, TSQLDialect dialect);

// Values in the form each database keeps them. SQLite has no date or boolean type: dates
// are text ("yyyy-MM-dd", "yyyy-MM-dd HH:mm:ss", "HH:mm:ss") and booleans 0 or 1.
// Takes the value by value: a value already of the field's kind is moved, not copied.
Variant FromDatabase(Variant value, const TField *field, TSQLDialect dialect);
inline Variant FromDatabase(const QVariant &value, const TField *field, TSQLDialect dialect)
{
    return FromDatabase(Variant::FromQVariant(value), field, dialect);
}
QVariant ToDatabase(const Variant &value, const TField *field, TSQLDialect dialect);
// A date read from SQLite's UTF-8 text as FromDatabase reads it (Null for text that is no
// date), without making a string of it; false for text it leaves to FromDatabase.
bool DateFromText(const char *utf8, int bytes, Variant &value);

} // namespace qdb
