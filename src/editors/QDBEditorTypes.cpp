#include "QDBEditorTypes.h"

#include "platform/db/DataSet.h"

namespace qdb {

TEditorStyle EditorStyleOf(TEditorButtonStyle style)
{
    switch (style) {
    case ebsEllipsis: return edsEllipsis;
    case ebsDropDown: return edsDropDown;
    case ebsDropDownMenu: return edsDropDownMenu;
    case ebsCalendar:
    case ebsCalculator: return edsDropDownList;
    case ebsAuto:
    case ebsNone: break;
    }
    return edsSimple;
}

bool CalendarActive(const TField *field)
{
    if (!field)
        return false;
    const TFieldType type = field->DataType();
    return type == ftDate || type == ftDateTime || type == ftTimeStamp;
}

} // namespace qdb
