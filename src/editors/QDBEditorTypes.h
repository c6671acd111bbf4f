#pragma once

// The vocabulary the cell editors, the free-standing editors and their popups share.

#include "grid/QDBGridTypes.h"
#include "platform/rtl/DateTime.h"
#include "platform/rtl/Variant.h"

#include <QObject>

#include <functional>

namespace qdb {

namespace QDBEditorTypes {
Q_NAMESPACE

enum TEditorStyle { edsSimple, edsEllipsis, edsDropDown, edsDropDownMenu, edsDropDownList };
Q_ENUM_NS(TEditorStyle)
// The free-standing editor's button; value for value the column's TQColumnButtonStyle.
enum TEditorButtonStyle { ebsAuto, ebsEllipsis, ebsNone, ebsDropDown, ebsDropDownMenu, ebsCalendar, ebsCalculator };
Q_ENUM_NS(TEditorButtonStyle)
// Where an editor's caption label stands.
enum TLabelPosition { lpAbove, lpBelow, lpLeft, lpRight };
Q_ENUM_NS(TLabelPosition)

} // namespace QDBEditorTypes
using namespace QDBEditorTypes;

static_assert(int(ebsCalculator) == int(cbsCalculator) && int(ebsDropDownMenu) == int(cbsDropDownMenu));

inline TEditorButtonStyle ToEditorButtonStyle(TQColumnButtonStyle style) { return TEditorButtonStyle(style); }

// The style a button style sets by itself; ebsAuto is decided by the field and the lists.
TEditorStyle EditorStyleOf(TEditorButtonStyle style);

class TField;
class TQColumn;

// The editor a column's cells get, by the column's button style, field and lists. Lookup
// lists need `dataWritable`: the data edited can be written at all (the control and its
// data are not read-only).
TEditorStyle ColumnEditorStyle(const TQColumn *column, bool dataWritable);

// Which popup a column's button opens.
enum class TEditorListKind { None, Lookup, Pick, Calendar, Calculator };
TEditorListKind EditorListKindOf(const TQColumn *column);

// Whether the key fields a lookup column writes can all be modified.
bool KeyFieldsModifiable(const TQColumn *column);

// Whether the column's text opens in the multi-line popup from its button: a text or memo
// field of a column that edits memos.
bool EditsInMemo(const TQColumn *column);

// Whether a field's values are picked from the popup calendar: dates and date-times; a time
// of day alone is typed.
bool CalendarActive(const TField *field);

// The edit's input mask for a field's EditMask ("mask;keep literals;blank"): the digit and
// letter codes differ, the blank character is kept.
QString InputMaskOf(const QString &editMask);

using TEditorGetTextEvent = std::function<void(QObject *sender, QString &text, bool displayText)>;
using TEditorSetTextEvent = std::function<void(QObject *sender, QString &text)>;
using TEditorListDropDownEvent = std::function<void(QObject *sender, QObject *list)>;
using TEditorListCloseUpEvent = std::function<void(QObject *sender, QObject *list, Variant &value, bool &accept)>;
// Whether the calendar shows a day in bold.
using TCalcBoldDaysEvent = std::function<void(QObject *sender, TDateTime date, bool &boldDay)>;

} // namespace qdb
