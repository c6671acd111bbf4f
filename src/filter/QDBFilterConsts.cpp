#include "QDBFilterConsts.h"

namespace qdb::FilterConsts {

QString ClauseCaption(TQDBGridFilterClause clause)
{
    switch (clause) {
    case fcNoFilter: return QString();
    case fcContains: return tr("contains");
    case fcDoesNotContain: return tr("does not contain");
    case fcStartsFrom: return tr("starts from");
    case fcDoesNotStartFrom: return tr("does not start from");
    case fcEndsWith: return tr("ends with");
    case fcDoesNotEndWith: return tr("does not end with");
    case fcIsEqual: return tr("is equal");
    case fcIsNotEqual: return tr("is not equal");
    case fcIsGreaterThen: return tr("is greater then");
    case fcIsGreaterThenOrEqual: return tr("is greater then or equal");
    case fcIsLessThen: return tr("is less then");
    case fcIsLessThenOrEqual: return tr("is less then or equal");
    case fcIsOnTheList: return tr("is on the list");
    case fcIsNotOnTheList: return tr("is not on the list");
    case fcIsEmpty: return tr("is empty");
    case fcIsNotEmpty: return tr("is not empty");
    }
    return QString();
}

QString ClauseTemplate(int index)
{
    static const char *const templates[] = {
        "",
        "%0:s LIKE '%2:s%1:s%2:s'",
        "NOT %0:s LIKE '%2:s%1:s%2:s'",
        "%0:s LIKE '%1:s%2:s'",
        "NOT %0:s LIKE '%1:s%2:s'",
        "%0:s LIKE '%2:s%1:s'",
        "NOT %0:s LIKE '%2:s%1:s'",
        "%0:s = %1:s",
        "%0:s <> %1:s",
        "%0:s > %1:s",
        "%0:s >= %1:s",
        "%0:s < %1:s",
        "%0:s <= %1:s",
        "%0:s IN (%1:s)",
        "NOT %0:s IN (%1:s)",
        "%0:s IS NULL",
        "%0:s IS NOT NULL",
        "%0:s = NULL",
        "%0:s <> NULL",
    };
    if (index < 0 || index >= int(std::size(templates)))
        return QString();
    return index == 0 ? QString() : tr(templates[index]);
}

} // namespace qdb::FilterConsts
