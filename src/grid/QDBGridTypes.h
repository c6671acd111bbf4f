#pragma once

// The enumerations and option sets of the data grid and its columns.

#include "platform/rtl/Set.h"

#include <QObject>

namespace qdb {

namespace QDBGridTypes {
Q_NAMESPACE

// The grid's options. The names, and the first and last of each list, are those of the
// published interface; the order in between groups the names by concern.
enum TQDBGridOption {
    dgEditing, dgAlwaysShowEditor, dgTitles, dgIndicator, dgColumnResize, dgColLines, dgRowLines, dgTabs,
    dgRowSelect, dgAlwaysShowSelection, dgConfirmDelete, dgCancelOnExit, dgMultiSelect, dgTitleClick,
    dgTitleHotTrack, dgRowResize, dgTitleButtons, dgTitleHeaders, dgTitleWidthOff, dgMarkerAscendOnly,
    dgMarkerAutoSwitch, dgMarkerAutoToggle, dgRightMoving
};
Q_ENUM_NS(TQDBGridOption)
enum TQDBGridOptionEx {
    dgBlankRow, dgTotalHeader, dgTotalValues, dgTotalFields, dgTotalFooter, dgTotalHeaderSelected,
    dgTotalValuesSelected, dgTotalFooterSelected, dgAutoUpdateTotals, dgDelayUpdateTotals, dgCalcInvisibleRows,
    dgCalcSelectedRows, dgCalcWholeDataSet, dgLoadCurrentOrder, dgAutoUpdateOrder, dgAutoAscendOrder,
    dgAutoKeepSelection, dgShowEditorByCharOff
};
Q_ENUM_NS(TQDBGridOptionEx)
enum TQDBGridOptionExt {
    dgAutoNumberColumn, dgAutoSelectColumn, dgAutoExpandColumn, dgMarkerClearAllowed, dgForceCustomized,
    dgScrollGridMode, dgScrollPageMode, dgScrollRowsMode, dgIncrementalList
};
Q_ENUM_NS(TQDBGridOptionExt)

enum TQColumnValue {
    cvColor, cvWidth, cvFont, cvAlignment, cvReadOnly, cvTitleColor, cvTitleCaption, cvTitleAlignment, cvTitleFont,
    cvImeMode, cvImeName, cvTotalColor, cvTotalCaption, cvTotalAlignment, cvTotalFont
};
Q_ENUM_NS(TQColumnValue)
enum TQLookupColumn { lcNotDefined, lcLookupField, lcLookupKeyField, lcLookupResultField, lcLookupValueField };
Q_ENUM_NS(TQLookupColumn)
enum TDBGridColumnsState { csDefault, csCustomized };
Q_ENUM_NS(TDBGridColumnsState)
enum TDialogOption { doShowColumn, doItemEnabled };
Q_ENUM_NS(TDialogOption)
enum TTotalType { ttNone, ttSum, ttCount, ttMax, ttMin, ttAverage, ttText, ttExpression, ttGrowExpression };
Q_ENUM_NS(TTotalType)
enum TQSettingsOption {
    soLoadLayout, soSaveLayout, soUserSettings, soStretchMode, soOrderFields, soLinesCount, soMultiSelect,
    soSelectedRow, soStripedRows, soAutoFilter, soFiltered, soFilters
};
Q_ENUM_NS(TQSettingsOption)
} // namespace QDBGridTypes
using namespace QDBGridTypes;

using TQDBGridOptions = Set<TQDBGridOption>;
using TQDBGridOptionsEx = Set<TQDBGridOptionEx>;
using TQDBGridOptionsExt = Set<TQDBGridOptionExt>;
using TQColumnValues = Set<TQColumnValue>;
using TDialogOptions = Set<TDialogOption>;
using TQSettingsOptions = Set<TQSettingsOption>;

} // namespace qdb
