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
