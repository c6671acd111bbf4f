#pragma once

// What a data set can tell of its fields' values over all its records without walking them:
// a SQL data set asks its database. Floating-point values count as currency here, each
// rounded to four decimals, so that a sum is exact and does not depend on the order of adding.

#include "platform/rtl/Set.h"
#include "platform/rtl/Variant.h"

#include <QList>

namespace qdb {

class TField;

enum TSummaryPart {
    spSum,       // the sum of the numeric values
    spMinMax,    // the smallest and the largest value
    spEnds,      // the values of the first and the last record, in the data set's order
    spValueEnds, // the first and the last value that is not null, in that order
};
using TSummaryParts = Set<TSummaryPart>;

struct TFieldSummaryRequest
{
    TField *Field = nullptr;
    TSummaryParts Parts;
};

// Unassigned wherever there is nothing to tell (no record, no value).
struct TFieldSummary
{
    qint64 Values = 0; // records where the field holds a value
    Variant Sum;
    Variant Min, Max;
    Variant First, Last; // Null when that record holds no value
    Variant FirstValue, LastValue;
};

struct TDataSetSummary
{
    qint64 Records = 0;
    QList<TFieldSummary> Fields; // one for each request, in order
};

// A field's value as a summary counts it: floating-point values as currency.
Variant SummaryValue(const Variant &value);

} // namespace qdb
