#pragma once

#include "platform/rtl/Set.h"

#include <QObject>

namespace qdb {

namespace DB {
Q_NAMESPACE

// In the order of the original enumeration, so that ordinals and names match.
enum TFieldType {
    ftUnknown, ftString, ftSmallint, ftInteger, ftWord, ftBoolean, ftFloat, ftCurrency, ftBCD, ftDate, ftTime,
    ftDateTime, ftBytes, ftVarBytes, ftAutoInc, ftBlob, ftMemo, ftGraphic, ftFmtMemo, ftParadoxOle, ftDBaseOle,
    ftTypedBinary, ftCursor, ftFixedChar, ftWideString, ftLargeint, ftADT, ftArray, ftReference, ftDataSet,
    ftOraBlob, ftOraClob, ftVariant, ftInterface, ftIDispatch, ftGuid, ftTimeStamp, ftFMTBcd, ftFixedWideChar,
    ftWideMemo, ftOraTimeStamp, ftOraInterval, ftLongWord, ftShortint, ftByte, ftExtended, ftConnection, ftParams,
    ftStream, ftTimeStampOffset, ftObject, ftSingle
};
Q_ENUM_NS(TFieldType)

enum TFieldKind { fkData, fkCalculated, fkLookup, fkInternalCalc, fkAggregate };
Q_ENUM_NS(TFieldKind)

enum TAlignment { taLeftJustify, taRightJustify, taCenter };
Q_ENUM_NS(TAlignment)

enum TDataSetState {
    dsInactive, dsBrowse, dsEdit, dsInsert, dsSetKey, dsCalcFields, dsFilter, dsNewValue, dsOldValue, dsCurValue,
    dsBlockRead, dsInternalCalc, dsOpening
};
Q_ENUM_NS(TDataSetState)

enum TDataEvent {
    deFieldChange, deRecordChange, deDataSetChange, deDataSetScroll, deLayoutChange, deUpdateRecord, deUpdateState,
    deCheckBrowseMode, dePropertyChange, deFieldListChange, deFocusControl, deParentScroll, deConnectChange,
    deReconcileError, deDisabledStateChange
};
Q_ENUM_NS(TDataEvent)

enum TGetMode { gmCurrent, gmNext, gmPrior };
enum TGetResult { grOK, grBOF, grEOF, grError };
enum TBookmarkFlag { bfCurrent, bfBOF, bfEOF, bfInserted };
enum TResyncModeItem { rmExact, rmCenter };
enum TLocateOption { loCaseInsensitive, loPartialKey };
Q_ENUM_NS(TLocateOption)
enum TFilterOption { foCaseInsensitive, foNoPartialCompare };
Q_ENUM_NS(TFilterOption)
enum TUpdateStatus { usUnmodified, usModified, usInserted, usDeleted };
enum TIndexOption { ixPrimary, ixUnique, ixDescending, ixCaseInsensitive, ixExpression, ixNonMaintained };
Q_ENUM_NS(TIndexOption)
} // namespace DB

using namespace DB;
using TResyncMode = Set<TResyncModeItem>;
using TLocateOptions = Set<TLocateOption>;
using TFilterOptions = Set<TFilterOption>;
using TIndexOptions = Set<TIndexOption>;

// States in which field values may be written, and the editing ones.
inline bool IsEditMode(TDataSetState s) { return s == dsEdit || s == dsInsert || s == dsSetKey; }
inline bool IsWriteMode(TDataSetState s)
{
    return IsEditMode(s) || s == dsCalcFields || s == dsFilter || s == dsNewValue || s == dsInternalCalc;
}

// The name of a field type as messages show it ("String", "Integer").
QString FieldTypeName(TFieldType type);
// Registers the set types of this header for property access by name.
void RegisterDBTypes();

} // namespace qdb
