#pragma once

// The vocabulary of the auto filter: clauses, list options and periods.

#include "platform/rtl/Set.h"

#include <QObject>

namespace qdb {

namespace QDBFilterTypes {
Q_NAMESPACE

// "Then" for "than" is part of the published names.
enum TQDBGridFilterClause {
    fcNoFilter, fcContains, fcDoesNotContain, fcStartsFrom, fcDoesNotStartFrom, fcEndsWith, fcDoesNotEndWith,
    fcIsEqual, fcIsNotEqual, fcIsGreaterThen, fcIsGreaterThenOrEqual, fcIsLessThen, fcIsLessThenOrEqual,
    fcIsOnTheList, fcIsNotOnTheList, fcIsEmpty, fcIsNotEmpty
};
Q_ENUM_NS(TQDBGridFilterClause)
enum TQDBGridFilterOption {
    foAutoApplyList, foListAnimation, foListAlignment, foOverlayedList, foLoadAllItems, foCheckedFirst,
    foAddSelected, foIncrementalList
};
Q_ENUM_NS(TQDBGridFilterOption)
enum TQDBGridFilterPeriod {
    fpNoPeriod, fpMinute, fpHour, fpDay, fpWeek, fpMonth, fpQuarter, fpSemester, fpYear, fpDecade, fpOther,
    fp10Mins, fp15Mins, fp20Mins, fp30Mins, fpHours, fpDays, fpWeeks, fpMonths, fpQuarters, fpSemesters, fpYears,
    fpDecades, fpOthers
};
Q_ENUM_NS(TQDBGridFilterPeriod)
} // namespace QDBFilterTypes
using namespace QDBFilterTypes;

using TQDBGridFilterClauses = Set<TQDBGridFilterClause>;
using TQDBGridFilterOptions = Set<TQDBGridFilterOption>;
using TQDBGridFilterPeriods = Set<TQDBGridFilterPeriod>;

// Every clause; every period but fpOthers.
TQDBGridFilterClauses AllFilterClauses();
TQDBGridFilterPeriods DefaultFilterPeriods();

} // namespace qdb
