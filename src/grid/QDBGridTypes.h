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
enum TQColumnButtonStyle { cbsAuto, cbsEllipsis, cbsNone, cbsDropDown, cbsDropDownMenu, cbsCalendar, cbsCalculator };
Q_ENUM_NS(TQColumnButtonStyle)
enum TQColumnExpandStyle { cesAuto, cesNone, cesDropDown, cesDropDownMenu, cesFilterList, cesFilterForm };
Q_ENUM_NS(TQColumnExpandStyle)
enum TQPickOption {
    poDropDownList, poListItemsOnly, poSelectPickText, poStoreItemIndex, poAcceptPickList, poAcceptItemIndex,
    poAutoLoadList, poAppendToList, poSortedByText, poFormatPickText, poFormatListOnly
};
Q_ENUM_NS(TQPickOption)
enum TQListOption {
    loAutoComplete, loAutoDropDown, loAutoCloseEditor, loSelectNextValue, loAllowClearValue, loShowToday,
    loShowTodayCircle, loShowWeekNumbers, loAutoTodayClose, loBoldSundays, loShowImages, loShowLookupListTitles,
    loAllowAdjustOrder, loAllowChangeOrder, loAllowColumnResize, loAllowColumnMoving, loExpandFirstColumn,
    loFirstColumnExpanded, loMultiSelectList, loAutoApplyList, loTreeViewCellExpand, loIncrementalList
};
Q_ENUM_NS(TQListOption)
enum TCheckBoxKind { ckCheck, ckCross, cbBox };
Q_ENUM_NS(TCheckBoxKind)
enum TCheckBoxStyle {
    cbAuto, cbAutoGray, cbAutoLowered, cbDefault, cbSoft, cbLoweredDark, cbLoweredGray, cbLoweredMild, cbFlat, cbGray,
    cbMild
};
Q_ENUM_NS(TCheckBoxStyle)
enum TCheckBoxToggle { ctCustomToggle, ctKeyPressOnly, ctOnCellClick, ctSelectClick };
Q_ENUM_NS(TCheckBoxToggle)
enum TExpandBoxToggle { etCustomToggle, etKeyPressOnly, etOnCellClick, etSelectClick };
Q_ENUM_NS(TExpandBoxToggle)
enum TExpandBoxSize { ebSmall, ebMedium, ebLarge };
Q_ENUM_NS(TExpandBoxSize)
enum TImageDraw { idAlignment, idOpposite, idCenter, idScaled, idStretch, idTileCell, idTileGrid, idTileCol, idTileRow };
Q_ENUM_NS(TImageDraw)
enum TVAlignment { tvTopJustify, tvBottomJustify, tvCenter };
Q_ENUM_NS(TVAlignment)
enum TToolTipsWidth { ttAutoWidth, ttFixedWidth };
Q_ENUM_NS(TToolTipsWidth)
enum TMultiSelectText { mstDefault, mstEllipsis };
Q_ENUM_NS(TMultiSelectText)
enum TFilterStyle { fsFilterList, fsFilterForm };
Q_ENUM_NS(TFilterStyle)
enum TCalendarDepth { cdMonth, cdYear, cdDecade, cdCentury };
Q_ENUM_NS(TCalendarDepth)
enum TMarker { tmNone, tmAscend, tmDescend };
Q_ENUM_NS(TMarker)
enum TEditCharCase { ecNormal, ecUpperCase, ecLowerCase };
Q_ENUM_NS(TEditCharCase)
enum TDialogOption { doShowColumn, doItemEnabled };
Q_ENUM_NS(TDialogOption)
enum TTotalType { ttNone, ttSum, ttCount, ttMax, ttMin, ttAverage, ttText, ttExpression, ttGrowExpression };
Q_ENUM_NS(TTotalType)
enum TTotalResult { trNone, trCaption, trDataField, trTotalField, trCalcValue };
Q_ENUM_NS(TTotalResult)
enum TCalcValue { cvSum, cvAvg, cvCount, cvMax, cvMin, cvFirst, cvLast, cvUnique, cvCustom };
Q_ENUM_NS(TCalcValue)
enum TCalcPass { cpReset, cpCalcRec, cpFinal };
Q_ENUM_NS(TCalcPass)
enum TCalcApply { caWholeDataSet, caSelectedRows, caBoth };
Q_ENUM_NS(TCalcApply)
enum TNullValue { nvExclude, nvInclude, nvAsZero };
Q_ENUM_NS(TNullValue)
enum TTotalBox { tbFalse, tbTrue, tbAuto };
Q_ENUM_NS(TTotalBox)
// What a total's text is asked for: the cell, or the tip over it.
enum TTotalTextKind { tkText, tkHint };
Q_ENUM_NS(TTotalTextKind)
enum TQSettingsOption {
    soLoadLayout, soSaveLayout, soUserSettings, soStretchMode, soOrderFields, soLinesCount, soMultiSelect,
    soSelectedRow, soStripedRows, soAutoFilter, soFiltered, soFilters
};
Q_ENUM_NS(TQSettingsOption)
enum TGridDrawingOption {
    gdoHighlightText, gdoDataColLines, gdoDataRowLines, gdoSelectedCell, gdoSelectedRow, gdoMultiSelected,
    gdoTotalSelected, gdoStripedRows, gdoEditorColor
};
Q_ENUM_NS(TGridDrawingOption)
// How title and indicator cells are drawn: the grid's own flat faces, the platform style's
// header sections, or raised three-dimensional edges.
enum TVisualStyle { vsDefault, vsThemed, vsClassic };
Q_ENUM_NS(TVisualStyle)
enum TFixedStyle { fsDefault, fsSoft, fsNice, fsFlat, fsGreat, fsGray, fsFine, fsMild };
Q_ENUM_NS(TFixedStyle)
enum TFocusRect { frAuto, frDefault, frGray, frMild, frNone };
Q_ENUM_NS(TFocusRect)
enum TMarkerStyle {
    msAuto, msAutoGray, msDefault, msSoft, msRaisedDark, msRaisedGray, msRaisedMild, msLoweredDark, msLoweredGray,
    msLoweredMild, msFlat, msGray, msMild
};
Q_ENUM_NS(TMarkerStyle)
enum TMarkerTransparent { mtAuto, mtFalse, mtTrue };
Q_ENUM_NS(TMarkerTransparent)
// How the input method behaves in an editor. Qt can switch it off; the other modes select
// input conventions of particular systems and are kept for the application to consult.
enum TImeMode {
    imDisable, imClose, imOpen, imDontCare, imSAlpha, imAlpha, imHira, imSKata, imKata, imChinese, imSHanguel, imHanguel
};
Q_ENUM_NS(TImeMode)
enum TMultiSelection { msNone, msRows, msCols, msCells, msFixed };
Q_ENUM_NS(TMultiSelection)
enum TSelectAction { saUnselect, saSelect, saClear, saDelete, saRefresh };
Q_ENUM_NS(TSelectAction)
enum TForEachCellScope { fsAutoSelect, fsWholeDataSet, fsSelectedOnly };
Q_ENUM_NS(TForEachCellScope)
enum TForEachCellFlag { feFirstCol, feLastCol, feFirstRow, feLastRow };
Q_ENUM_NS(TForEachCellFlag)
enum TDataColEnum { ceAllCols, ceSelectedCols, ceSelectedColsOrAllCols, ceSelectedColsOrCurrent, ceCurrentCol };
Q_ENUM_NS(TDataColEnum)
enum TDataRowEnum { reAllRows, reSelectedRows, reSelectedRowsOrAllRows, reSelectedRowsOrCurrent, reCurrentRow };
Q_ENUM_NS(TDataRowEnum)
} // namespace QDBGridTypes
using namespace QDBGridTypes;

using TQDBGridOptions = Set<TQDBGridOption>;
using TQDBGridOptionsEx = Set<TQDBGridOptionEx>;
using TQDBGridOptionsExt = Set<TQDBGridOptionExt>;
using TQColumnValues = Set<TQColumnValue>;
using TDialogOptions = Set<TDialogOption>;
using TQPickOptions = Set<TQPickOption>;
using TQListOptions = Set<TQListOption>;
using TFilterStyles = Set<TFilterStyle>;
using TQSettingsOptions = Set<TQSettingsOption>;
using TGridDrawingOptions = Set<TGridDrawingOption>;
using TMultiSelections = Set<TMultiSelection>;
using TForEachCellFlags = Set<TForEachCellFlag>;

} // namespace qdb
