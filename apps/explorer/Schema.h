#pragma once

// What the explorer learns of a table from the database's catalogue, to offer lists where
// the schema makes them sensible.

#include "platform/sql/SQLConnection.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace explorer {

// A column that refers to a row of another table by that table's key.
struct ForeignKey
{
    QString column;
    QString table;
    QString key; // empty: the referenced table's primary key
};

// The foreign keys of one column each (keys of several columns are left out).
QList<ForeignKey> ForeignKeys(qdb::TSQLConnection &connection, const QString &table);

// The columns declared as text of no set length (TEXT, CLOB): what is written at length.
QStringList LongTextColumns(qdb::TSQLConnection &connection, const QString &table);

// The values a text column holds, sorted, when the first rows of the table show only a few
// of them (at most `most`) and each is used again and again; empty otherwise. Only a sample
// is read, so that this costs little on any size of table.
QStringList FewValues(qdb::TSQLConnection &connection, const QString &table, const QString &column, int most);

} // namespace explorer
