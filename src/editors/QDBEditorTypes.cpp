#include "QDBEditorTypes.h"

#include <algorithm>
#include <iterator>

#include "grid/QDBColumns.h"
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

bool KeyFieldsModifiable(const TQColumn *column)
{
    const TField *field = column->GetField();
    const QStringList keys = column->GetKeyField().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    bool writable = !keys.isEmpty() && field && field->DataSet();
    for (const QString &name : keys) {
        const TField *key = writable ? field->DataSet()->FindField(name.trimmed()) : nullptr;
        writable = key && key->CanModify();
    }
    return writable;
}

TEditorStyle ColumnEditorStyle(const TQColumn *column, bool dataWritable)
{
    if (!column)
        return edsSimple;
    const TEditorButtonStyle button = ToEditorButtonStyle(column->GetButtonStyle());
    if (button != ebsAuto)
        return EditorStyleOf(button);
    const TField *field = column->GetField();
    if (!field)
        return edsSimple;
    if (column->GetLookupColumn() != lcNotDefined) {
        // A list only where the key it writes can be written.
        const bool readOnlyColumn = column->AssignedValues().Contains(cvReadOnly) && column->GetReadOnly();
        return KeyFieldsModifiable(column) && !readOnlyColumn && dataWritable ? edsDropDownList : edsSimple;
    }
    if (column->GetPickList()->Count() > 0 && !column->GetReadOnly())
        return edsDropDownList;
    if (CalendarActive(field) && !column->GetReadOnly())
        return edsDropDownList;
    if (field->DataType() == ftReference || field->DataType() == ftDataSet)
        return edsEllipsis;
    return edsSimple;
}

TEditorListKind EditorListKindOf(const TQColumn *column)
{
    if (!column)
        return TEditorListKind::None;
    switch (column->GetButtonStyle()) {
    case cbsCalendar: return TEditorListKind::Calendar;
    case cbsCalculator: return TEditorListKind::Calculator;
    case cbsAuto: break;
    default: return TEditorListKind::None;
    }
    if (column->GetLookupColumn() != lcNotDefined)
        return TEditorListKind::Lookup;
    if (column->GetPickList()->Count() > 0)
        return TEditorListKind::Pick;
    if (CalendarActive(column->GetField()))
        return TEditorListKind::Calendar;
    return TEditorListKind::None;
}

bool EditsInMemo(const TQColumn *column)
{
    static constexpr TFieldType texts[] = {ftString, ftWideString, ftFixedChar, ftMemo, ftFmtMemo, ftWideMemo};
    const TField *field = column ? column->GetField() : nullptr;
    return field && column->GetEditMemo()
        && std::find(std::begin(texts), std::end(texts), field->DataType()) != std::end(texts);
}

bool CalendarActive(const TField *field)
{
    if (!field)
        return false;
    const TFieldType type = field->DataType();
    return type == ftDate || type == ftDateTime || type == ftTimeStamp;
}

} // namespace qdb

namespace qdb {

QString InputMaskOf(const QString &editMask)
{
    if (editMask.isEmpty())
        return {};
    // "mask;keep literals;blank": the middle part decides what is stored, not what is typed.
    const QStringList parts = editMask.split(QLatin1Char(';'));
    const QString &mask = parts.front();
    QString out;
    for (qsizetype i = 0; i < mask.size(); ++i) {
        const QChar c = mask.at(i);
        switch (c.unicode()) {
        case '0': out += QLatin1Char('9'); break;
        case '9': out += QLatin1Char('0'); break;
        case 'L': out += QLatin1Char('A'); break;
        case 'l': out += QLatin1Char('a'); break;
        case 'A': out += QLatin1Char('N'); break;
        case 'a': out += QLatin1Char('n'); break;
        case 'C': out += QLatin1Char('X'); break;
        case 'c': out += QLatin1Char('x'); break;
        case '!': break; // where blanks are trimmed: the edit keeps them all
        case '>':
        case '<':
            if (c == QLatin1Char('<') && i + 1 < mask.size() && mask.at(i + 1) == QLatin1Char('>')) {
                out += QLatin1Char('!'); // case as typed again
                ++i;
            } else {
                out += c;
            }
            break;
        case '\\':
            if (i + 1 < mask.size())
                out += QLatin1Char('\\') + mask.at(++i);
            break;
        default:
            // Every other character stands for itself; the edit's own mask letters are escaped.
            if (QStringLiteral("AaNnXx90Dd#HhBb><!{}[]\\").contains(c))
                out += QLatin1Char('\\');
            out += c;
        }
    }
    if (parts.size() >= 3 && !parts[2].isEmpty())
        out += QLatin1Char(';') + parts[2].at(0);
    return out;
}

} // namespace qdb
