#pragma once

#include "QDBFilterTypes.h"

#include "platform/db/FieldTypes.h"

#include <QString>

namespace qdb {

class TDataSet;
class TField;
class TQColumn;
class TQDBGridFilter;

// One condition of a column's filter: a clause and the value as the user typed it.
struct TQFilterCondition
{
    TQDBGridFilterClause Clause = fcNoFilter;
    QString Value;
};

// Whether the data set's own class name (not an ancestor's) is in a dot-terminated list.
bool DataSetInList(const TDataSet *dataSet, const char *list);

// Writes one column's condition in the filter dialect of its grid's data set: the clauses
// the dialect evaluates, the field's name as the dialect reads it, list delimiters, decimal
// separators and quotes. The filter form asks it for each of its two conditions.
class TQDBColumnFilter
{
public:
    explicit TQDBColumnFilter(TQColumn *column);

    TQDBGridFilterClauses GetFilterClauses() const;
    // The field the filter is written against: a lookup column's key field, else its own.
    TField *GetFilterField() const;
    // The name as the expression reads it: bracketed when it holds a blank, else as it is.
    QString GetFilterFieldName() const;
    // What separates the items of an "is on the list" value.
    QChar GetDelimiterChar() const;
    // The decimal separator the data set reads numbers with.
    QChar GetDecimalSeparator() const;
    // Prepares a typed value for a clause's template: list delimiters, quotes, separators.
    void CheckFilterText(TQDBGridFilterClause clause, QString &text) const;
    // The column's expression from two conditions joined by AND (else OR), reversed by NOT;
    // empty when no condition is left.
    QString BuildFilter(TQFilterCondition first, TQFilterCondition second, bool andOn, bool notOn) const;
    // Builds the expression and stores it as the column's FilterText; a non-empty one
    // clears the column's ticked values. What the data set refuses raises "Invalid filter
    // expression" with the column's previous condition back in force.
    void StoreFilter(const TQFilterCondition &first, const TQFilterCondition &second, bool andOn, bool notOn);

private:
    TDataSet *dataSet() const;
    TFieldType fieldType() const;
    TQDBGridFilter *gridFilter() const;

    TQColumn *column_;
};

} // namespace qdb
