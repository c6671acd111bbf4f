#include "QDBFilterConsts.h"

namespace qdb::FilterConsts {

QString ClauseCaption(TQDBGridFilterClause clause)
{
    switch (clause) {
    case fcNoFilter: return QString();
    case fcContains: return QCoreApplication::translate("qdb", "contains");
    case fcDoesNotContain: return QCoreApplication::translate("qdb", "does not contain");
    case fcStartsFrom: return QCoreApplication::translate("qdb", "starts from");
    case fcDoesNotStartFrom: return QCoreApplication::translate("qdb", "does not start from");
    case fcEndsWith: return QCoreApplication::translate("qdb", "ends with");
    case fcDoesNotEndWith: return QCoreApplication::translate("qdb", "does not end with");
    case fcIsEqual: return QCoreApplication::translate("qdb", "is equal");
    case fcIsNotEqual: return QCoreApplication::translate("qdb", "is not equal");
    case fcIsGreaterThen: return QCoreApplication::translate("qdb", "is greater then");
    case fcIsGreaterThenOrEqual: return QCoreApplication::translate("qdb", "is greater then or equal");
    case fcIsLessThen: return QCoreApplication::translate("qdb", "is less then");
    case fcIsLessThenOrEqual: return QCoreApplication::translate("qdb", "is less then or equal");
    case fcIsOnTheList: return QCoreApplication::translate("qdb", "is on the list");
    case fcIsNotOnTheList: return QCoreApplication::translate("qdb", "is not on the list");
    case fcIsEmpty: return QCoreApplication::translate("qdb", "is empty");
    case fcIsNotEmpty: return QCoreApplication::translate("qdb", "is not empty");
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
    return QString::fromLatin1(templates[index]); // written for the data set: never translated
}

} // namespace qdb::FilterConsts
