#pragma once

// Small data set classes named like the ones the order registry knows by name.

#include "data/QDBCustData.h"
#include "grid/QDBGridsOrderText.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/Strings.h"

namespace qdb::test {

Q_NAMESPACE
enum TCursorLocation { clUseServer, clUseClient };
Q_ENUM_NS(TCursorLocation)
enum TCommandType { cmdUnknown, cmdText, cmdTable };
Q_ENUM_NS(TCommandType)

class TClientDataSet : public TQDBCustomData
{
    Q_OBJECT
    Q_PROPERTY(QString IndexFieldNames MEMBER indexFieldNames)
    Q_PROPERTY(QString CommandText MEMBER commandText)
    Q_PROPERTY(QString FileName MEMBER fileName)

public:
    using TQDBCustomData::TQDBCustomData;
    QString indexFieldNames, commandText, fileName;
};

// Derived under another name: only "*" rows serve it.
class TMyClientDataSet : public TClientDataSet
{
    Q_OBJECT
public:
    using TClientDataSet::TClientDataSet;
};

class TADODataSet : public TQDBCustomData
{
    Q_OBJECT
    Q_PROPERTY(QString IndexFieldNames MEMBER indexFieldNames)
    Q_PROPERTY(QString CommandText MEMBER commandText)
    Q_PROPERTY(qdb::test::TCursorLocation CursorLocation MEMBER cursorLocation)
    Q_PROPERTY(qdb::test::TCommandType CommandType MEMBER commandType)

public:
    using TQDBCustomData::TQDBCustomData;
    QString indexFieldNames, commandText;
    TCursorLocation cursorLocation = clUseClient;
    TCommandType commandType = cmdText;
};

class TFDQuery : public TQDBCustomData
{
    Q_OBJECT
    Q_PROPERTY(QString IndexFieldNames MEMBER indexFieldNames)

public:
    using TQDBCustomData::TQDBCustomData;
    QString indexFieldNames;
};

// An in-memory table under the name of a query that sorts on the client through "Sort".
class TADOQuery : public TMemTable
{
    Q_OBJECT
    Q_PROPERTY(QString Sort READ Sort WRITE SetSort)
    Q_PROPERTY(qdb::test::TCursorLocation CursorLocation MEMBER cursorLocation)
    Q_PROPERTY(qdb::TStrings *SQL READ SQL)

public:
    QString Sort() const { return sort_; }
    void SetSort(const QString &sort)
    {
        sort_ = sort;
        SetIndexFieldNames(OrderFieldsToIndexFields(sort, QStringLiteral(":A;:D;:N")));
    }
    TStrings *SQL() { return &sql_; }
    TCursorLocation cursorLocation = clUseClient;

private:
    QString sort_;
    TStringList sql_;
};

} // namespace qdb::test
