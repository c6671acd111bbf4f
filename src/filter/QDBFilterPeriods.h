#pragma once

#include "QDBColumnFilter.h"
#include "QDBFilterTypes.h"

#include "platform/db/FieldTypes.h"
#include "platform/rtl/DateTime.h"

#include <QList>
#include <QString>

namespace qdb {

// One entry of the filter form's period list: a half-open range, start included.
struct TQFilterPeriodItem
{
    QString Caption;
    TDateTime Start = 0;
    TDateTime End = 0;
};

// The caption of a period group ("Hour", "Days", ...); empty for fpNoPeriod and the others.
QString FilterPeriodCaption(TQDBGridFilterPeriod group);
// The items of a group around `now` (taken to the start of its minute).
QList<TQFilterPeriodItem> FilterPeriodItems(TQDBGridFilterPeriod group, TDateTime now);
// The item as the form's two conditions on a field of the type: from the start, AND, before
// the end; a time range ending at midnight has no upper bound.
void FilterPeriodConditions(const TQFilterPeriodItem &item, TFieldType type, TQFilterCondition &first,
                            TQFilterCondition &second);

} // namespace qdb
