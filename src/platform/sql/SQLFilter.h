#pragma once

#include "SQLConnection.h"

#include "platform/db/FieldTypes.h"
#include "platform/db/FilterExpression.h"

#include <QString>
#include <QVariant>

#include <functional>

namespace qdb {

// A WHERE condition with one bound value per "?".
struct SQLCondition
{
    QString text;
    QList<QVariant> params;
};

// Turns a bound filter expression into SQL of the dialect. Names go through quoteName,
// every literal becomes a parameter in the form the column keeps; no text of the filter
// is pasted into the statement.
SQLCondition FilterToSQL(const FilterExpression &filter, TFilterOptions options, TSQLDialect dialect,
                         const std::function<QString(const QString &)> &quoteName);

} // namespace qdb
