#pragma once

// The grid's and the editors' option sets as Qt flags, for Qt Designer's property editor and uic: each flag is
// the bit its option has in the set, so a set's bits and the flags' value are one number.

#include "QDBGridTypes.h"

#include <QFlags>
#include <QObject>

namespace qdb::QDBGridFlags {
Q_NAMESPACE

namespace G = QDBGridTypes;

enum TQDBGridOption : unsigned {
    dgEditing = 1u << G::dgEditing, dgAlwaysShowEditor = 1u << G::dgAlwaysShowEditor, dgTitles = 1u << G::dgTitles,
    dgIndicator = 1u << G::dgIndicator, dgColumnResize = 1u << G::dgColumnResize, dgColLines = 1u << G::dgColLines,
    dgRowLines = 1u << G::dgRowLines, dgTabs = 1u << G::dgTabs, dgRowSelect = 1u << G::dgRowSelect,
    dgAlwaysShowSelection = 1u << G::dgAlwaysShowSelection, dgConfirmDelete = 1u << G::dgConfirmDelete,
    dgCancelOnExit = 1u << G::dgCancelOnExit, dgMultiSelect = 1u << G::dgMultiSelect, dgTitleClick = 1u << G::dgTitleClick,
    dgTitleHotTrack = 1u << G::dgTitleHotTrack, dgRowResize = 1u << G::dgRowResize, dgTitleButtons = 1u << G::dgTitleButtons,
    dgTitleHeaders = 1u << G::dgTitleHeaders, dgTitleWidthOff = 1u << G::dgTitleWidthOff,
    dgMarkerAscendOnly = 1u << G::dgMarkerAscendOnly, dgMarkerAutoSwitch = 1u << G::dgMarkerAutoSwitch,
    dgMarkerAutoToggle = 1u << G::dgMarkerAutoToggle, dgRightMoving = 1u << G::dgRightMoving
};
Q_DECLARE_FLAGS(TQDBGridOptions, TQDBGridOption)
Q_FLAG_NS(TQDBGridOptions)

enum TQDBGridOptionEx : unsigned {
    dgBlankRow = 1u << G::dgBlankRow, dgTotalHeader = 1u << G::dgTotalHeader, dgTotalValues = 1u << G::dgTotalValues,
    dgTotalFields = 1u << G::dgTotalFields, dgTotalFooter = 1u << G::dgTotalFooter,
    dgTotalHeaderSelected = 1u << G::dgTotalHeaderSelected, dgTotalValuesSelected = 1u << G::dgTotalValuesSelected,
    dgTotalFooterSelected = 1u << G::dgTotalFooterSelected, dgAutoUpdateTotals = 1u << G::dgAutoUpdateTotals,
    dgDelayUpdateTotals = 1u << G::dgDelayUpdateTotals, dgCalcInvisibleRows = 1u << G::dgCalcInvisibleRows,
    dgCalcSelectedRows = 1u << G::dgCalcSelectedRows, dgCalcWholeDataSet = 1u << G::dgCalcWholeDataSet,
    dgLoadCurrentOrder = 1u << G::dgLoadCurrentOrder, dgAutoUpdateOrder = 1u << G::dgAutoUpdateOrder,
    dgAutoAscendOrder = 1u << G::dgAutoAscendOrder, dgAutoKeepSelection = 1u << G::dgAutoKeepSelection,
    dgShowEditorByCharOff = 1u << G::dgShowEditorByCharOff
};
Q_DECLARE_FLAGS(TQDBGridOptionsEx, TQDBGridOptionEx)
Q_FLAG_NS(TQDBGridOptionsEx)

enum TQDBGridOptionExt : unsigned {
    dgAutoNumberColumn = 1u << G::dgAutoNumberColumn, dgAutoSelectColumn = 1u << G::dgAutoSelectColumn,
    dgAutoExpandColumn = 1u << G::dgAutoExpandColumn, dgMarkerClearAllowed = 1u << G::dgMarkerClearAllowed,
    dgForceCustomized = 1u << G::dgForceCustomized, dgScrollGridMode = 1u << G::dgScrollGridMode,
    dgScrollPageMode = 1u << G::dgScrollPageMode, dgScrollRowsMode = 1u << G::dgScrollRowsMode,
    dgIncrementalList = 1u << G::dgIncrementalList
};
Q_DECLARE_FLAGS(TQDBGridOptionsExt, TQDBGridOptionExt)
Q_FLAG_NS(TQDBGridOptionsExt)

enum TGridDrawingOption : unsigned {
    gdoHighlightText = 1u << G::gdoHighlightText, gdoDataColLines = 1u << G::gdoDataColLines,
    gdoDataRowLines = 1u << G::gdoDataRowLines, gdoSelectedCell = 1u << G::gdoSelectedCell,
    gdoSelectedRow = 1u << G::gdoSelectedRow, gdoMultiSelected = 1u << G::gdoMultiSelected,
    gdoTotalSelected = 1u << G::gdoTotalSelected, gdoStripedRows = 1u << G::gdoStripedRows,
    gdoEditorColor = 1u << G::gdoEditorColor
};
Q_DECLARE_FLAGS(TGridDrawingOptions, TGridDrawingOption)
Q_FLAG_NS(TGridDrawingOptions)

enum TMultiSelection : unsigned {
    msNone = 1u << G::msNone, msRows = 1u << G::msRows, msCols = 1u << G::msCols, msCells = 1u << G::msCells,
    msFixed = 1u << G::msFixed
};
Q_DECLARE_FLAGS(TMultiSelections, TMultiSelection)
Q_FLAG_NS(TMultiSelections)

enum TQPickOption : unsigned {
    poDropDownList = 1u << G::poDropDownList, poListItemsOnly = 1u << G::poListItemsOnly,
    poSelectPickText = 1u << G::poSelectPickText, poStoreItemIndex = 1u << G::poStoreItemIndex,
    poAcceptPickList = 1u << G::poAcceptPickList, poAcceptItemIndex = 1u << G::poAcceptItemIndex,
    poAutoLoadList = 1u << G::poAutoLoadList, poAppendToList = 1u << G::poAppendToList,
    poSortedByText = 1u << G::poSortedByText, poFormatPickText = 1u << G::poFormatPickText,
    poFormatListOnly = 1u << G::poFormatListOnly
};
Q_DECLARE_FLAGS(TQPickOptions, TQPickOption)
Q_FLAG_NS(TQPickOptions)

enum TQListOption : unsigned {
    loAutoComplete = 1u << G::loAutoComplete, loAutoDropDown = 1u << G::loAutoDropDown,
    loAutoCloseEditor = 1u << G::loAutoCloseEditor, loSelectNextValue = 1u << G::loSelectNextValue,
    loAllowClearValue = 1u << G::loAllowClearValue, loShowToday = 1u << G::loShowToday,
    loShowTodayCircle = 1u << G::loShowTodayCircle, loShowWeekNumbers = 1u << G::loShowWeekNumbers,
    loAutoTodayClose = 1u << G::loAutoTodayClose, loBoldSundays = 1u << G::loBoldSundays,
    loShowImages = 1u << G::loShowImages, loShowLookupListTitles = 1u << G::loShowLookupListTitles,
    loAllowAdjustOrder = 1u << G::loAllowAdjustOrder, loAllowChangeOrder = 1u << G::loAllowChangeOrder,
    loAllowColumnResize = 1u << G::loAllowColumnResize, loAllowColumnMoving = 1u << G::loAllowColumnMoving,
    loExpandFirstColumn = 1u << G::loExpandFirstColumn, loFirstColumnExpanded = 1u << G::loFirstColumnExpanded,
    loMultiSelectList = 1u << G::loMultiSelectList, loAutoApplyList = 1u << G::loAutoApplyList,
    loTreeViewCellExpand = 1u << G::loTreeViewCellExpand, loIncrementalList = 1u << G::loIncrementalList
};
Q_DECLARE_FLAGS(TQListOptions, TQListOption)
Q_FLAG_NS(TQListOptions)

// A set and its flags, both ways.
template<typename F, typename S>
F ToFlags(S set)
{
    return F::fromInt(typename F::Int(set.Bits()));
}
template<typename S, typename F>
S FromFlags(F flags)
{
    return S::FromBits(std::uint64_t(flags.toInt()));
}

} // namespace qdb::QDBGridFlags
