#pragma once

#include "QDBColumnTotals.h"
#include "QDBGridImages.h"
#include "QDBGridTypes.h"

#include "platform/db/DataSet.h"
#include "platform/rtl/Collection.h"
#include "platform/rtl/Strings.h"

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QIODevice>
#include <QMenu>
#include <QPointer>

namespace qdb {

class TQCustomDBGrid;
class TQColumn;

// A column's title: caption, alignment and font fall back to defaults until assigned; the
// header is the extra text above the caption that builds multi-level titles.
class TQColumnTitle : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ GetCaption WRITE SetCaption)
    Q_PROPERTY(qdb::DB::TAlignment Alignment READ GetAlignment WRITE SetAlignment)
    Q_PROPERTY(QFont Font READ GetFont WRITE SetFont)
    Q_PROPERTY(QString Header READ Header WRITE SetHeader)
    Q_PROPERTY(QColor Color READ GetColor WRITE SetColor)
    Q_PROPERTY(QMenu *DropDownMenu READ GetDropDownMenu WRITE SetDropDownMenu)
    Q_PROPERTY(QMenu *PopupMenu READ GetPopupMenu WRITE SetPopupMenu)
    Q_PROPERTY(bool AutoFilter READ GetAutoFilter WRITE SetAutoFilter)
    Q_PROPERTY(qdb::TFilterStyles AutoFilters READ GetAutoFilters WRITE SetAutoFilters)
    Q_PROPERTY(bool AutoToggle READ GetAutoToggle WRITE SetAutoToggle)
    Q_PROPERTY(bool Button READ GetButton WRITE SetButton)
    Q_PROPERTY(bool Ellipsis READ GetEllipsis WRITE SetEllipsis)
    Q_PROPERTY(QString HeaderHint READ GetHeaderHint WRITE SetHeaderHint)
    Q_PROPERTY(QString Hint READ GetHint WRITE SetHint)
    Q_PROPERTY(int ImageIndex READ GetImageIndex WRITE SetImageIndex)
    Q_PROPERTY(qdb::QDBGridTypes::TMarker Marker READ GetMarker WRITE SetMarker)
    Q_PROPERTY(int MarkerIndex READ GetMarkerIndex WRITE SetMarkerIndex)
    Q_PROPERTY(qdb::QDBGridTypes::TVAlignment VAlignment READ GetVAlignment WRITE SetVAlignment)
    Q_PROPERTY(bool WordWrap READ GetWordWrap WRITE SetWordWrap)
    Q_CLASSINFO("default:AutoFilter", "true")
    Q_CLASSINFO("default:AutoFilters", "[fsFilterList,fsFilterForm]")
    Q_CLASSINFO("default:AutoToggle", "true")
    Q_CLASSINFO("default:Button", "true")
    Q_CLASSINFO("default:Ellipsis", "true")
    Q_CLASSINFO("default:HeaderHint", "")
    Q_CLASSINFO("default:Hint", "")
    Q_CLASSINFO("default:ImageIndex", "-1")
    Q_CLASSINFO("default:Marker", "tmNone")
    Q_CLASSINFO("default:MarkerIndex", "-1")
    Q_CLASSINFO("default:VAlignment", "tvCenter")
    Q_CLASSINFO("default:WordWrap", "true")

public:
    explicit TQColumnTitle(TQColumn *column);
    TQColumn *Column() const { return column_; }

    QString GetCaption() const;
    void SetCaption(const QString &caption);
    TAlignment GetAlignment() const;
    void SetAlignment(TAlignment alignment);
    QFont GetFont() const;
    void SetFont(const QFont &font);
    QString Header() const { return header_; }
    void SetHeader(const QString &header);
    QColor GetColor() const;
    void SetColor(const QColor &color);
    QColor DefaultColor() const;
    Q_INVOKABLE bool IsColorStored() const;
    QMenu *GetDropDownMenu() const { return dropDownMenu_; }
    void SetDropDownMenu(QMenu *menu) { dropDownMenu_ = menu; }
    QMenu *GetPopupMenu() const { return popupMenu_; }
    void SetPopupMenu(QMenu *menu) { popupMenu_ = menu; }
    bool GetAutoFilter() const { return autoFilter_; }
    void SetAutoFilter(bool value) { assign(autoFilter_, value); }
    TFilterStyles GetAutoFilters() const { return autoFilters_; }
    void SetAutoFilters(TFilterStyles value) { assign(autoFilters_, value); }
    bool GetAutoToggle() const { return autoToggle_; }
    void SetAutoToggle(bool value) { assign(autoToggle_, value); }
    bool GetButton() const { return button_; }
    void SetButton(bool value) { assign(button_, value); }
    bool GetEllipsis() const { return ellipsis_; }
    void SetEllipsis(bool value) { assign(ellipsis_, value); }
    QString GetHeaderHint() const { return headerHint_; }
    void SetHeaderHint(const QString &value) { assign(headerHint_, value); }
    QString GetHint() const { return hint_; }
    void SetHint(const QString &value) { assign(hint_, value); }
    int GetImageIndex() const { return imageIndex_; }
    void SetImageIndex(int value) { assign(imageIndex_, value); }
    // The sort marker: the direction, and an index that encodes the level too
    // (2 x level + 2, plus 1 when descending; 0 and 1 carry the direction alone).
    TMarker GetMarker() const { return marker_; }
    void SetMarker(TMarker value);
    int GetMarkerIndex() const { return markerIndex_; }
    void SetMarkerIndex(int value);
    // The column's place in the grid's sort order, -1 when it is not sorted.
    int OrderIndex() const;
    // A click on a sortable title: ascending, then descending, then off; Reset starts a new
    // order with this column alone.
    void ToggleMarker(bool reset);
    TVAlignment GetVAlignment() const { return vAlignment_; }
    void SetVAlignment(TVAlignment value) { assign(vAlignment_, value); }
    bool GetWordWrap() const { return wordWrap_; }
    void SetWordWrap(bool value) { assign(wordWrap_, value); }

    QString DefaultCaption() const;
    TAlignment DefaultAlignment() const { return taLeftJustify; }
    QFont DefaultFont() const;
    Q_INVOKABLE bool IsCaptionStored() const;
    Q_INVOKABLE bool IsAlignmentStored() const;
    Q_INVOKABLE bool IsFontStored() const;
    Q_INVOKABLE bool IsHeaderStored() const { return !header_.isEmpty(); }

    // The header path: the parents' paths and captions, then the own header, "|" between.
    QString GetHeader() const;
    int GetHeaderRowCount() const;
    QString GetHeaderRows(int row) const { return GetHeaderText(GetHeader(), row); }
    // The lines of the title's own header; those of its parents show above it.
    int OwnHeaderRowCount() const { return header_.isEmpty() ? 0 : 1 + int(header_.count(QLatin1Char('|'))); }
    // The first and last showing neighbours that share this column's header cell on a row.
    TQColumn *HeaderLeft(int row) const;
    TQColumn *HeaderRight(int row) const;
    static QString GetHeaderText(const QString &path, int row);

private:
    friend class TQDBGridColumns;
    template <typename T>
    void assign(T &member, const T &value);
    void renumber(int index) { markerIndex_ = index; }
    void toggle(bool reset);

    TQColumn *column_;
    QString caption_;
    TAlignment alignment_ = taLeftJustify;
    QFont font_;
    QString header_;
    QColor color_;
    QPointer<QMenu> dropDownMenu_;
    QPointer<QMenu> popupMenu_;
    bool autoFilter_ = true;
    TFilterStyles autoFilters_{fsFilterList, fsFilterForm};
    bool autoToggle_ = true;
    bool button_ = true;
    bool ellipsis_ = true;
    QString headerHint_;
    QString hint_;
    int imageIndex_ = -1;
    TMarker marker_ = tmNone;
    int markerIndex_ = -1;
    TVAlignment vAlignment_ = tvCenter;
    bool wordWrap_ = true;
};

// How a column appears in the grid's printed report.
class TQColumnReport : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool AutoHeight MEMBER AutoHeight)
    Q_PROPERTY(qdb::TDialogOptions DialogOptions MEMBER DialogOptions)
    Q_PROPERTY(QString TotalMask MEMBER TotalMask)
    Q_PROPERTY(QString TotalText MEMBER TotalText)
    Q_PROPERTY(qdb::QDBGridTypes::TTotalType TotalType MEMBER TotalType)
    Q_PROPERTY(bool Visible MEMBER Visible)

public:
    explicit TQColumnReport(QObject *parent = nullptr);
    bool IsPrinted() const { return Visible; }
    void RestoreDefaults();
    // Only values that differ from the defaults are written.
    Q_INVOKABLE bool IsAutoHeightStored() const { return AutoHeight; }
    Q_INVOKABLE bool IsDialogOptionsStored() const { return DialogOptions != TDialogOptions{doShowColumn, doItemEnabled}; }
    Q_INVOKABLE bool IsTotalMaskStored() const { return !TotalMask.isEmpty(); }
    Q_INVOKABLE bool IsTotalTextStored() const { return !TotalText.isEmpty(); }
    Q_INVOKABLE bool IsTotalTypeStored() const { return TotalType != ttNone; }
    Q_INVOKABLE bool IsVisibleStored() const { return !Visible; }

    bool AutoHeight = false;
    TDialogOptions DialogOptions{doShowColumn, doItemEnabled};
    QString TotalMask;
    QString TotalText;
    TTotalType TotalType = ttNone;
    bool Visible = true;
};

// A column of the data grid, bound to a field by name. Look properties hold a default
// (from the field or the grid) until assigned; only assigned ones are stored.
class TQColumn : public TCollectionItem
{
    Q_OBJECT
    Q_PROPERTY(QString FieldName READ GetFieldName WRITE SetFieldName)
    Q_PROPERTY(int Width READ GetWidth WRITE SetWidth)
    Q_PROPERTY(int WidthMin READ GetWidthMin WRITE SetWidthMin)
    Q_PROPERTY(int WidthMax READ GetWidthMax WRITE SetWidthMax)
    Q_PROPERTY(qdb::DB::TAlignment Alignment READ GetAlignment WRITE SetAlignment)
    Q_PROPERTY(bool ReadOnly READ GetReadOnly WRITE SetReadOnly)
    Q_PROPERTY(QFont Font READ GetFont WRITE SetFont)
    Q_PROPERTY(bool Visible READ GetVisible WRITE SetVisible)
    Q_PROPERTY(int ExpandCols READ GetExpandCols WRITE SetExpandCols)
    Q_PROPERTY(bool Expanded READ GetExpanded WRITE SetExpanded)
    Q_PROPERTY(qdb::TQColumnTitle *Title READ GetTitle)
    Q_PROPERTY(qdb::TQColumnReport *Report READ GetReport)
    Q_PROPERTY(qdb::TQColumnTotalHeader *TotalHeader READ GetTotalHeader)
    Q_PROPERTY(qdb::TQColumnTotalValues *TotalValues READ GetTotalValues)
    Q_PROPERTY(qdb::TQColumnTotalFields *TotalFields READ GetTotalFields)
    Q_PROPERTY(qdb::TQColumnTotalFooter *TotalFooter READ GetTotalFooter)
    Q_PROPERTY(QColor Color READ GetColor WRITE SetColor)
    Q_PROPERTY(qdb::TStrings *FilterList READ GetFilterList)
    Q_PROPERTY(qdb::QDBGridTypes::TImeMode ImeMode READ GetImeMode WRITE SetImeMode)
    Q_PROPERTY(QString ImeName READ GetImeName WRITE SetImeName)
    Q_PROPERTY(QMenu *DropDownMenu READ GetDropDownMenu WRITE SetDropDownMenu)
    Q_PROPERTY(QMenu *PopupMenu READ GetPopupMenu WRITE SetPopupMenu)
    Q_PROPERTY(qdb::TDataSet *LookupDataSet READ GetLookupDataSet WRITE SetLookupDataSet)
    Q_PROPERTY(QString KeyField READ GetKeyField WRITE SetKeyField)
    Q_PROPERTY(QString LookupKeyField READ GetLookupKeyField WRITE SetLookupKeyField)
    Q_PROPERTY(QString LookupResultField READ GetLookupResultField WRITE SetLookupResultField)
    Q_PROPERTY(qdb::TStrings *LookupListFields READ GetLookupListFields)
    Q_PROPERTY(qdb::TStrings *PickList READ GetPickList)
    Q_PROPERTY(qdb::TStrings *PickText READ GetPickText)
    Q_PROPERTY(bool AutoNumber READ GetAutoNumber WRITE SetAutoNumber)
    Q_PROPERTY(qdb::QDBGridTypes::TQColumnButtonStyle ButtonStyle READ GetButtonStyle WRITE SetButtonStyle)
    Q_PROPERTY(qdb::QDBGridTypes::TCalendarDepth CalendarDepth READ GetCalendarDepth WRITE SetCalendarDepth)
    Q_PROPERTY(qdb::QDBGridTypes::TEditCharCase CharCase READ GetCharCase WRITE SetCharCase)
    Q_PROPERTY(bool CheckBox READ GetCheckBox WRITE SetCheckBox)
    Q_PROPERTY(qdb::QDBGridTypes::TCheckBoxKind CheckBoxKind READ GetCheckBoxKind WRITE SetCheckBoxKind)
    Q_PROPERTY(qdb::QDBGridTypes::TCheckBoxStyle CheckBoxStyle READ GetCheckBoxStyle WRITE SetCheckBoxStyle)
    Q_PROPERTY(bool CheckBoxThemed READ GetCheckBoxThemed WRITE SetCheckBoxThemed)
    Q_PROPERTY(qdb::QDBGridTypes::TCheckBoxToggle CheckBoxToggle READ GetCheckBoxToggle WRITE SetCheckBoxToggle)
    Q_PROPERTY(QString CheckBoxValues READ GetCheckBoxValues WRITE SetCheckBoxValues)
    Q_PROPERTY(QString DelimiterChar READ GetDelimiterChar WRITE SetDelimiterChar)
    Q_PROPERTY(bool DelimiterLine READ GetDelimiterLine WRITE SetDelimiterLine)
    Q_PROPERTY(QString DelimiterText READ GetDelimiterText WRITE SetDelimiterText)
    Q_PROPERTY(qdb::TDialogOptions DialogOptions READ GetDialogOptions WRITE SetDialogOptions)
    Q_PROPERTY(int DropDownRows READ GetDropDownRows WRITE SetDropDownRows)
    Q_PROPERTY(int DropDownWidth READ GetDropDownWidth WRITE SetDropDownWidth)
    Q_PROPERTY(bool EditMemo READ GetEditMemo WRITE SetEditMemo)
    Q_PROPERTY(QString EditorHint READ GetEditorHint WRITE SetEditorHint)
    Q_PROPERTY(bool Ellipsis READ GetEllipsis WRITE SetEllipsis)
    Q_PROPERTY(bool ExpandBox READ GetExpandBox WRITE SetExpandBox)
    Q_PROPERTY(qdb::QDBGridTypes::TExpandBoxSize ExpandBoxSize READ GetExpandBoxSize WRITE SetExpandBoxSize)
    Q_PROPERTY(bool ExpandBoxThemed READ GetExpandBoxThemed WRITE SetExpandBoxThemed)
    Q_PROPERTY(qdb::QDBGridTypes::TExpandBoxToggle ExpandBoxToggle READ GetExpandBoxToggle WRITE SetExpandBoxToggle)
    Q_PROPERTY(bool ExpandBoxTree READ GetExpandBoxTree WRITE SetExpandBoxTree)
    Q_PROPERTY(qdb::QDBGridTypes::TQColumnExpandStyle ExpandStyle READ GetExpandStyle WRITE SetExpandStyle)
    Q_PROPERTY(QString FilterText READ GetFilterText WRITE SetFilterText)
    Q_PROPERTY(QString Hint READ GetHint WRITE SetHint)
    Q_PROPERTY(qdb::QDBGridTypes::TImageDraw ImageDraw READ GetImageDraw WRITE SetImageDraw)
    Q_PROPERTY(int ImageMargin READ GetImageMargin WRITE SetImageMargin)
    Q_PROPERTY(qdb::TImageList *Images READ GetImages WRITE SetImages)
    Q_PROPERTY(int ImageOffsetX READ GetImageOffsetX WRITE SetImageOffsetX)
    Q_PROPERTY(int ImageOffsetY READ GetImageOffsetY WRITE SetImageOffsetY)
    Q_PROPERTY(qdb::TQListOptions ListOptions READ GetListOptions WRITE SetListOptions)
    Q_PROPERTY(qdb::QDBGridTypes::TQLookupColumn LookupColumn READ GetLookupColumn STORED false)
    Q_PROPERTY(bool MultiSelectList READ GetMultiSelectList STORED false)
    Q_PROPERTY(QString LookupParentField READ GetLookupParentField WRITE SetLookupParentField)
    Q_PROPERTY(QString LookupTreeViewField READ GetLookupTreeViewField WRITE SetLookupTreeViewField)
    Q_PROPERTY(QString LookupListTitles READ GetLookupListTitles WRITE SetLookupListTitles)
    Q_PROPERTY(QString LookupListWidths READ GetLookupListWidths WRITE SetLookupListWidths)
    Q_PROPERTY(qdb::QDBGridTypes::TMultiSelectText MultiSelectText READ GetMultiSelectText WRITE SetMultiSelectText)
    Q_PROPERTY(qdb::TQPickOptions PickOptions READ GetPickOptions WRITE SetPickOptions)
    Q_PROPERTY(QString PickTextFormat READ GetPickTextFormat WRITE SetPickTextFormat)
    Q_PROPERTY(bool QuickDraw READ GetQuickDraw WRITE SetQuickDraw)
    Q_PROPERTY(bool ShowBlob READ GetShowBlob WRITE SetShowBlob)
    Q_PROPERTY(bool ShowEdit READ GetShowEdit WRITE SetShowEdit)
    Q_PROPERTY(bool SuppressRTL READ GetSuppressRTL WRITE SetSuppressRTL)
    Q_PROPERTY(bool ToolTips READ GetToolTips WRITE SetToolTips)
    Q_PROPERTY(qdb::QDBGridTypes::TToolTipsWidth ToolTipsWidth READ GetToolTipsWidth WRITE SetToolTipsWidth)
    Q_PROPERTY(bool Transparent READ GetTransparent WRITE SetTransparent)
    Q_PROPERTY(QColor TransparentColor READ GetTransparentColor WRITE SetTransparentColor)
    Q_PROPERTY(qdb::QDBGridTypes::TVAlignment VAlignment READ GetVAlignment WRITE SetVAlignment)
    Q_PROPERTY(bool Wallpaper READ GetWallpaper WRITE SetWallpaper)
    Q_PROPERTY(bool WordWrap READ GetWordWrap WRITE SetWordWrap)
    Q_CLASSINFO("default:AutoNumber", "false")
    Q_CLASSINFO("default:ButtonStyle", "cbsAuto")
    Q_CLASSINFO("default:CalendarDepth", "cdDecade")
    Q_CLASSINFO("default:CharCase", "ecNormal")
    Q_CLASSINFO("default:CheckBox", "false")
    Q_CLASSINFO("default:CheckBoxKind", "ckCheck")
    Q_CLASSINFO("default:CheckBoxStyle", "cbAuto")
    Q_CLASSINFO("default:CheckBoxThemed", "false")
    Q_CLASSINFO("default:CheckBoxToggle", "ctOnCellClick")
    Q_CLASSINFO("default:CheckBoxValues", "")
    Q_CLASSINFO("default:DelimiterChar", ",")
    Q_CLASSINFO("default:DelimiterLine", "false")
    Q_CLASSINFO("default:DelimiterText", "")
    Q_CLASSINFO("default:DialogOptions", "[doShowColumn,doItemEnabled]")
    Q_CLASSINFO("default:DropDownRows", "0")
    Q_CLASSINFO("default:DropDownWidth", "0")
    Q_CLASSINFO("default:EditMemo", "true")
    Q_CLASSINFO("default:EditorHint", "")
    Q_CLASSINFO("default:Ellipsis", "true")
    Q_CLASSINFO("default:ExpandBox", "false")
    Q_CLASSINFO("default:ExpandBoxSize", "ebLarge")
    Q_CLASSINFO("default:ExpandBoxThemed", "false")
    Q_CLASSINFO("default:ExpandBoxToggle", "etOnCellClick")
    Q_CLASSINFO("default:ExpandBoxTree", "false")
    Q_CLASSINFO("default:ExpandStyle", "cesAuto")
    Q_CLASSINFO("default:FilterText", "")
    Q_CLASSINFO("default:Hint", "")
    Q_CLASSINFO("default:ImageDraw", "idCenter")
    Q_CLASSINFO("default:ImageMargin", "0")
    Q_CLASSINFO("default:ImageOffsetX", "0")
    Q_CLASSINFO("default:ImageOffsetY", "0")
    Q_CLASSINFO("default:ListOptions", "[loAutoComplete,loAutoCloseEditor,loSelectNextValue,loAllowClearValue,loShowToday,loAllowChangeOrder,loAllowColumnResize]")
    Q_CLASSINFO("default:LookupParentField", "")
    Q_CLASSINFO("default:LookupTreeViewField", "")
    Q_CLASSINFO("default:LookupListTitles", "")
    Q_CLASSINFO("default:LookupListWidths", "")
    Q_CLASSINFO("default:MultiSelectText", "mstEllipsis")
    Q_CLASSINFO("default:PickOptions", "[poSelectPickText,poAcceptPickList]")
    Q_CLASSINFO("default:PickTextFormat", "")
    Q_CLASSINFO("default:QuickDraw", "true")
    Q_CLASSINFO("default:ShowBlob", "true")
    Q_CLASSINFO("default:ShowEdit", "true")
    Q_CLASSINFO("default:SuppressRTL", "false")
    Q_CLASSINFO("default:ToolTips", "true")
    Q_CLASSINFO("default:ToolTipsWidth", "ttAutoWidth")
    Q_CLASSINFO("default:Transparent", "false")
    Q_CLASSINFO("default:VAlignment", "tvCenter")
    Q_CLASSINFO("default:Wallpaper", "false")
    Q_CLASSINFO("default:WordWrap", "true")

public:
    explicit TQColumn(TCollection *collection = nullptr);

    TQCustomDBGrid *GetGrid() const;
    // The bound field, looked up by name in the grid's data set (nullptr when missing).
    TField *GetField() const;
    TQColumnValues AssignedValues() const { return assigned_; }
    void MarkAssigned(TQColumnValue value) { assigned_ += value; }
    // Puts back which values count as assigned (an undo sets the values themselves first).
    void RestoreAssigned(TQColumnValues values);
    // True for columns made by the user, false for those the grid made from the fields.
    bool IsStored() const { return stored_; }
    void SetStored(bool on) { stored_ = on; }

    QString GetFieldName() const { return fieldName_; }
    void SetFieldName(const QString &name);
    int GetWidth() const;
    void SetWidth(int width);
    int GetWidthMin() const { return widthMin_; }
    void SetWidthMin(int w) { widthMin_ = w; }
    int GetWidthMax() const { return widthMax_; }
    void SetWidthMax(int w) { widthMax_ = w; }
    TAlignment GetAlignment() const;
    void SetAlignment(TAlignment alignment);
    bool GetReadOnly() const;
    void SetReadOnly(bool on);
    QFont GetFont() const;
    void SetFont(const QFont &font);
    bool GetVisible() const { return visible_; }
    void SetVisible(bool on);
    int GetExpandCols() const { return expandCols_; }
    void SetExpandCols(int n);
    // True only for an expandable column whose expanded flag is set.
    bool GetExpanded() const;
    void SetExpanded(bool on);
    // The cell editor's input method; the grid's until assigned.
    TImeMode DefaultImeMode() const;
    TImeMode GetImeMode() const;
    void SetImeMode(TImeMode mode);
    Q_INVOKABLE bool IsImeModeStored() const { return assigned_.Contains(cvImeMode); }
    QString DefaultImeName() const;
    QString GetImeName() const;
    void SetImeName(const QString &name);
    Q_INVOKABLE bool IsImeNameStored() const { return assigned_.Contains(cvImeName); }
    TQColumnTitle *GetTitle() const { return title_; }
    TQColumnReport *GetReport() const { return report_; }
    TQColumnTotalHeader *GetTotalHeader() const { return totalHeader_; }
    TQColumnTotalValues *GetTotalValues() const { return totalValues_; }
    TQColumnTotalFields *GetTotalFields() const { return totalFields_; }
    TQColumnTotalFooter *GetTotalFooter() const { return totalFooter_; }
    // A change that moves rows or merges title cells (headers, totals sections): the
    // grid's whole layout is made again.
    void LayoutChanged() { Changed(true); }
    QColor GetColor() const;
    void SetColor(const QColor &color);
    QColor DefaultColor() const;
    Q_INVOKABLE bool IsColorStored() const { return assigned_.Contains(cvColor); }
    TStrings *GetFilterList() const { return filterList_; }
    // Menus the application owns: one for the cell's drop-down button, one for its context.
    QMenu *GetDropDownMenu() const { return dropDownMenu_; }
    void SetDropDownMenu(QMenu *menu) { dropDownMenu_ = menu; }
    QMenu *GetPopupMenu() const { return popupMenu_; }
    void SetPopupMenu(QMenu *menu) { popupMenu_ = menu; }
    TStrings *GetPickList() const { return pickList_; }
    TStrings *GetPickText() const { return pickText_; }
    Q_INVOKABLE bool IsFilterListStored() const { return filterList_->Count() > 0; }
    Q_INVOKABLE bool IsPickListStored() const { return pickList_->Count() > 0; }
    Q_INVOKABLE bool IsPickTextStored() const { return pickText_->Count() > 0; }
    Q_INVOKABLE bool IsTransparentColorStored() const { return transparentColor_.isValid(); }

    // The lookup definition: a lookup field's own, else the column's, which then lets the
    // column show or pick values of another data set.
    TDataSet *GetLookupDataSet() const;
    void SetLookupDataSet(TDataSet *dataSet);
    QString GetKeyField() const;
    void SetKeyField(const QString &name) { assign(keyField_, name); }
    QString GetLookupKeyField() const;
    void SetLookupKeyField(const QString &name) { assign(lookupKeyField_, name); }
    QString GetLookupResultField() const;
    void SetLookupResultField(const QString &name) { assign(lookupResultField_, name); }
    TStrings *GetLookupListFields() const { return lookupListFields_; }
    Q_INVOKABLE bool IsLookupDataSetStored() const { return !fieldSuppliesLookup() && lookupDataSet_; }
    Q_INVOKABLE bool IsKeyFieldStored() const { return !fieldSuppliesLookup() && !keyField_.isEmpty(); }
    Q_INVOKABLE bool IsLookupKeyFieldStored() const { return !fieldSuppliesLookup() && !lookupKeyField_.isEmpty(); }
    Q_INVOKABLE bool IsLookupResultFieldStored() const
    {
        return !fieldSuppliesLookup() && !lookupResultField_.isEmpty();
    }
    Q_INVOKABLE bool IsLookupListFieldsStored() const { return lookupListFields_->Count() > 0; }

    // Settings of the editors, lists, check and expand boxes and images; their behaviour
    // belongs to the features that use them.
    bool GetAutoNumber() const { return autoNumber_; }
    void SetAutoNumber(bool value) { assign(autoNumber_, value); }
    TQColumnButtonStyle GetButtonStyle() const { return buttonStyle_; }
    void SetButtonStyle(TQColumnButtonStyle value) { assign(buttonStyle_, value); }
    TCalendarDepth GetCalendarDepth() const { return calendarDepth_; }
    void SetCalendarDepth(TCalendarDepth value) { assign(calendarDepth_, value); }
    TEditCharCase GetCharCase() const { return charCase_; }
    void SetCharCase(TEditCharCase value) { assign(charCase_, value); }
    bool GetCheckBox() const { return checkBox_; }
    void SetCheckBox(bool value) { assign(checkBox_, value); }
    TCheckBoxKind GetCheckBoxKind() const { return checkBoxKind_; }
    void SetCheckBoxKind(TCheckBoxKind value) { assign(checkBoxKind_, value); }
    TCheckBoxStyle GetCheckBoxStyle() const { return checkBoxStyle_; }
    void SetCheckBoxStyle(TCheckBoxStyle value) { assign(checkBoxStyle_, value); }
    bool GetCheckBoxThemed() const { return checkBoxThemed_; }
    void SetCheckBoxThemed(bool value) { assign(checkBoxThemed_, value); }
    TCheckBoxToggle GetCheckBoxToggle() const { return checkBoxToggle_; }
    void SetCheckBoxToggle(TCheckBoxToggle value) { assign(checkBoxToggle_, value); }
    QString GetCheckBoxValues() const { return checkBoxValues_; }
    void SetCheckBoxValues(const QString &value) { assign(checkBoxValues_, value); }
    QString GetDelimiterChar() const { return delimiterChar_; }
    void SetDelimiterChar(const QString &value) { assign(delimiterChar_, value); }
    bool GetDelimiterLine() const { return delimiterLine_; }
    void SetDelimiterLine(bool value) { assign(delimiterLine_, value); }
    QString GetDelimiterText() const { return delimiterText_; }
    void SetDelimiterText(const QString &value) { assign(delimiterText_, value); }
    TDialogOptions GetDialogOptions() const { return dialogOptions_; }
    void SetDialogOptions(TDialogOptions value) { assign(dialogOptions_, value); }
    int GetDropDownRows() const { return dropDownRows_; }
    void SetDropDownRows(int value) { assign(dropDownRows_, value); }
    int GetDropDownWidth() const { return dropDownWidth_; }
    void SetDropDownWidth(int value) { assign(dropDownWidth_, value); }
    bool GetEditMemo() const { return editMemo_; }
    void SetEditMemo(bool value) { assign(editMemo_, value); }
    QString GetEditorHint() const { return editorHint_; }
    void SetEditorHint(const QString &value) { assign(editorHint_, value); }
    bool GetEllipsis() const { return ellipsis_; }
    void SetEllipsis(bool value) { assign(ellipsis_, value); }
    bool GetExpandBox() const { return expandBox_; }
    void SetExpandBox(bool value) { assign(expandBox_, value); }
    TExpandBoxSize GetExpandBoxSize() const { return expandBoxSize_; }
    void SetExpandBoxSize(TExpandBoxSize value) { assign(expandBoxSize_, value); }
    bool GetExpandBoxThemed() const { return expandBoxThemed_; }
    void SetExpandBoxThemed(bool value) { assign(expandBoxThemed_, value); }
    TExpandBoxToggle GetExpandBoxToggle() const { return expandBoxToggle_; }
    void SetExpandBoxToggle(TExpandBoxToggle value) { assign(expandBoxToggle_, value); }
    bool GetExpandBoxTree() const { return expandBoxTree_; }
    void SetExpandBoxTree(bool value) { assign(expandBoxTree_, value); }
    TQColumnExpandStyle GetExpandStyle() const { return expandStyle_; }
    void SetExpandStyle(TQColumnExpandStyle value) { assign(expandStyle_, value); }
    QString GetFilterText() const { return filterText_; }
    // A new condition re-applies the grid's filter; see ChangeFilter.
    void SetFilterText(const QString &value) { ChangeFilter(value, false); }
    // Sets the condition, and with clearList empties the ticked values, in one change of
    // the grid's filter. A condition the data set refuses puts the previous ones back in
    // force and raises "Invalid filter expression".
    void ChangeFilter(const QString &text, bool clearList);
    // Ticked values or a condition.
    bool Filtered() const { return !filterText_.isEmpty() || filterList_->Count() > 0; }
    // The field the column's filter is written against: a lookup field's key field, else
    // the column's own.
    TField *FilterField() const;
    QString GetHint() const { return hint_; }
    void SetHint(const QString &value) { assign(hint_, value); }
    TImageDraw GetImageDraw() const { return imageDraw_; }
    void SetImageDraw(TImageDraw value) { assign(imageDraw_, value); }
    // The images the column's cells show; the list belongs to the application.
    TImageList *GetImages() const { return images_; }
    void SetImages(TImageList *images)
    {
        images_ = images;
        changed();
    }
    // The image of the current record: the field's value as a number unless the
    // application says otherwise in OnCalcImageIndex; -1 shows none.
    int ImageIndex() const;
    std::function<void(TQColumn *sender, int &index)> OnCalcImageIndex;
    int GetImageMargin() const { return imageMargin_; }
    void SetImageMargin(int value) { assign(imageMargin_, value); }
    int GetImageOffsetX() const { return imageOffsetX_; }
    void SetImageOffsetX(int value) { assign(imageOffsetX_, value); }
    int GetImageOffsetY() const { return imageOffsetY_; }
    void SetImageOffsetY(int value) { assign(imageOffsetY_, value); }
    TQListOptions GetListOptions() const { return listOptions_; }
    void SetListOptions(TQListOptions value) { assign(listOptions_, value); }
    QString GetLookupParentField() const { return lookupParentField_; }
    void SetLookupParentField(const QString &value) { assign(lookupParentField_, value); }
    QString GetLookupTreeViewField() const { return lookupTreeViewField_; }
    void SetLookupTreeViewField(const QString &value) { assign(lookupTreeViewField_, value); }
    QString GetLookupListTitles() const { return lookupListTitles_; }
    void SetLookupListTitles(const QString &value) { assign(lookupListTitles_, value); }
    QString GetLookupListWidths() const { return lookupListWidths_; }
    void SetLookupListWidths(const QString &value) { assign(lookupListWidths_, value); }
    TMultiSelectText GetMultiSelectText() const { return multiSelectText_; }
    void SetMultiSelectText(TMultiSelectText value) { assign(multiSelectText_, value); }
    TQPickOptions GetPickOptions() const { return pickOptions_; }
    void SetPickOptions(TQPickOptions value) { assign(pickOptions_, value); }
    QString GetPickTextFormat() const { return pickTextFormat_; }
    void SetPickTextFormat(const QString &value) { assign(pickTextFormat_, value); }
    bool GetQuickDraw() const { return quickDraw_; }
    void SetQuickDraw(bool value) { assign(quickDraw_, value); }
    bool GetShowBlob() const { return showBlob_; }
    void SetShowBlob(bool value) { assign(showBlob_, value); }
    bool GetShowEdit() const { return showEdit_; }
    void SetShowEdit(bool value) { assign(showEdit_, value); }
    bool GetSuppressRTL() const { return suppressRTL_; }
    void SetSuppressRTL(bool value) { assign(suppressRTL_, value); }
    bool GetToolTips() const { return toolTips_; }
    void SetToolTips(bool value) { assign(toolTips_, value); }
    TToolTipsWidth GetToolTipsWidth() const { return toolTipsWidth_; }
    void SetToolTipsWidth(TToolTipsWidth value) { assign(toolTipsWidth_, value); }
    bool GetTransparent() const { return transparent_; }
    void SetTransparent(bool value) { assign(transparent_, value); }
    QColor GetTransparentColor() const { return transparentColor_; }
    void SetTransparentColor(const QColor &value) { assign(transparentColor_, value); }
    TVAlignment GetVAlignment() const { return vAlignment_; }
    void SetVAlignment(TVAlignment value) { assign(vAlignment_, value); }
    bool GetWallpaper() const { return wallpaper_; }
    void SetWallpaper(bool value) { assign(wallpaper_, value); }
    bool GetWordWrap() const { return wordWrap_; }
    void SetWordWrap(bool value) { assign(wordWrap_, value); }
    // The column's weight when the grid stretches its columns; while it does not, the width
    // follows it.
    // Gives the column's width to the columns of the same field in the grids that follow
    // this column's grid.
    void Synchronize();
    int GetWidthBase() const;
    void SetWidthBase(int width);
    // The kept width and base width times multiplier / divisor (another pixel density).
    void ScaleWidth(int multiplier, int divisor);
    // The width a stretch pass gives; shown instead of the own width while stretching is on.
    int StretchWidth() const { return stretchWidth_; }
    void SetStretchWidth(int width) { stretchWidth_ = width; }

    int DefaultWidth() const;
    TAlignment DefaultAlignment() const;
    bool DefaultReadOnly() const;
    QFont DefaultFont() const;
    Q_INVOKABLE bool IsWidthStored() const { return assigned_.Contains(cvWidth); }
    Q_INVOKABLE bool IsAlignmentStored() const { return assigned_.Contains(cvAlignment); }
    Q_INVOKABLE bool IsReadOnlyStored() const { return assigned_.Contains(cvReadOnly); }
    Q_INVOKABLE bool IsFontStored() const { return assigned_.Contains(cvFont); }
    Q_INVOKABLE bool IsWidthMinStored() const { return widthMin_ != -1; }
    Q_INVOKABLE bool IsWidthMaxStored() const { return widthMax_ != -1; }
    Q_INVOKABLE bool IsVisibleStored() const { return !visible_; }
    Q_INVOKABLE bool IsExpandColsStored() const { return expandCols_ != 0; }
    Q_INVOKABLE bool IsExpandedStored() const { return !expanded_; }
    // Drops every assigned value, so that each getter gives its default again.
    void RestoreDefaults();

    bool Expandable() const;
    bool HasExpandableButton() const { return Expandable() && expandStyle_ == cesAuto; }
    void ToggleExpandBox();
    // Flips the check box of the current record: a boolean field, or a field whose text is
    // one of the two CheckBoxValues ("checked;unchecked").
    void ToggleCheckBoxValue();
    // Moves the column, its child columns with it.
    void MoveTo(int index);
    // A width that fits the caption and the texts of the records on screen.
    int OptimalWidth() const;

    // Whether the data set can be ordered by the column's field: not by a calculated or
    // lookup field. True while no field is bound, as that cannot be told yet.
    bool Sortable() const;
    // The texts of the current record as the grid shows and edits them: a pick text in
    // place of its value, a row number for the automatic number column.
    QString GetDisplayText() const;
    QString GetEditText() const;
    // Typed text goes to the field: a pick text as its value, the text of a lookup record as
    // that record's key. Text that names no item is refused where only the list counts.
    void SetEditText(const QString &text);
    // A value a list handed back: a lookup key goes to the key fields, a pick value (or its
    // position) to the field.
    void SetListValue(const Variant &value);
    // Whether the cells show PickText for the PickList values.
    bool PickTextActive() const;
    // A value as the column's lists show it: through PickTextFormat ("%s" stands for the
    // value) when one is set.
    QString FormatText(const QString &text) const;
    // Visible, not itself expanded, and every ancestor expanded.
    bool Showing() const;
    int Depth() const;
    TQColumn *GetParentColumn() const;
    TQLookupColumn GetLookupColumn() const;
    // Whether the column's value is a list of several picked values (its editor ticks them).
    bool GetMultiSelectList() const { return listOptions_.Contains(loMultiSelectList); }
    // The items of a value of several: split at DelimiterChar, DelimiterText or line ends,
    // without the blanks around them.
    QStringList SplitItems(const QString &text) const;
    // Items joined as stored (by DelimiterChar), as typed (by DelimiterText when set) or as
    // shown (one per line with DelimiterLine).
    enum class ItemsFor { Storing, Editing, Display };
    QString JoinItems(const QStringList &items, ItemsFor use) const;
    QString GetDelimiter(ItemsFor use) const;
    // Shown items cut after the last whole item that fits, with an ellipsis for the rest.
    QString FitItems(const QString &shown, const QFontMetrics &metrics, int width) const;
    // The PickList item a stored value names (its position with poStoreItemIndex, else its
    // text), -1 for none; and the value stored for an item, NULL for none.
    int PickItemOf(const QString &value) const;
    Variant PickValueOf(int item) const;
    // One stored value as the cell shows it (display) or as it is typed: its pick text, and
    // through PickTextFormat where the options format the cell too.
    QString ItemText(const QString &value, bool display) const;
    // A typed item as the value stored: the value of its pick text, or with the options
    // accepting them a PickList value or an item number. Text that names no item is refused
    // with poListItemsOnly.
    QString ItemValue(const QString &text) const;
    // The field a default width and caption are measured on.
    TField *MeasuredField() const;
    // The field of a column that belongs to no grid: a free-standing editor keeps its list
    // settings in such a column.
    void AttachField(TField *field) { attached_ = field; }

private:
    friend class TQColumnTitle;
    void changed();
    QString pickTextOf(const TField *f, bool display) const;
    // The value of several items as shown or typed.
    QString itemsTextOf(const TField *f, bool display) const;
    // The key of the lookup record whose result is the text; refused when there is none.
    Variant lookupKeyOf(const QString &text) const;
    // What a column that holds a key shows for it: the lookup record's result, or the key
    // itself when no record holds it.
    QString lookupTextOf(const TField *f) const;
    [[noreturn]] void notInList(const QString &text) const;
    // The ticked values or the condition changed: the grid filters again.
    void filterChanged();
    // The width of the column's widest value off the screen, as far as it can be told cheaply.
    int widestElsewhere(const QFontMetrics &metrics) const;

    QString fieldName_;
    TQColumnValues assigned_;
    bool stored_ = true;
    int width_ = 0;
    int widthMin_ = -1;
    int widthMax_ = -1;
    TAlignment alignment_ = taLeftJustify;
    bool readOnly_ = false;
    QFont font_;
    bool visible_ = true;
    int expandCols_ = 0;
    bool expanded_ = true;
    int widthBase_ = -1; // -1: the width
    int stretchWidth_ = -1; // the width the grid's stretching gave, -1: none
    mutable TCollection *gridCollection_ = nullptr;
    mutable TQCustomDBGrid *grid_ = nullptr;
    mutable QPointer<TField> field_;
    TQColumnTitle *title_;
    TQColumnReport *report_;
    TQColumnTotalHeader *totalHeader_;
    TQColumnTotalValues *totalValues_;
    TQColumnTotalFields *totalFields_;
    TQColumnTotalFooter *totalFooter_;
    bool fieldSuppliesLookup() const;

    TStrings *filterList_;
    QPointer<QMenu> dropDownMenu_;
    QPointer<QMenu> popupMenu_;
    QPointer<TDataSet> lookupDataSet_;
    QPointer<TField> attached_;
    QString keyField_;
    QString lookupKeyField_;
    QString lookupResultField_;
    TStrings *lookupListFields_;
    TStrings *pickList_;
    TStrings *pickText_;
    QColor color_;
    bool autoNumber_ = false;
    TQColumnButtonStyle buttonStyle_ = cbsAuto;
    TCalendarDepth calendarDepth_ = cdDecade;
    TEditCharCase charCase_ = ecNormal;
    bool checkBox_ = false;
    TCheckBoxKind checkBoxKind_ = ckCheck;
    TCheckBoxStyle checkBoxStyle_ = cbAuto;
    bool checkBoxThemed_ = false;
    TCheckBoxToggle checkBoxToggle_ = ctOnCellClick;
    QString checkBoxValues_;
    QString delimiterChar_ = QStringLiteral(",");
    bool delimiterLine_ = false;
    QString delimiterText_;
    TDialogOptions dialogOptions_{doShowColumn, doItemEnabled};
    int dropDownRows_ = 0;
    int dropDownWidth_ = 0;
    bool editMemo_ = true;
    QString editorHint_;
    bool ellipsis_ = true;
    bool expandBox_ = false;
    TExpandBoxSize expandBoxSize_ = ebLarge;
    bool expandBoxThemed_ = false;
    TExpandBoxToggle expandBoxToggle_ = etOnCellClick;
    bool expandBoxTree_ = false;
    TQColumnExpandStyle expandStyle_ = cesAuto;
    QString filterText_;
    QString hint_;
    QPointer<TImageList> images_;
    TImeMode imeMode_ = imDontCare;
    QString imeName_;
    TImageDraw imageDraw_ = idCenter;
    int imageMargin_ = 0;
    int imageOffsetX_ = 0;
    int imageOffsetY_ = 0;
    TQListOptions listOptions_{loAutoComplete, loAutoCloseEditor, loSelectNextValue, loAllowClearValue, loShowToday, loAllowChangeOrder, loAllowColumnResize};
    QString lookupParentField_;
    QString lookupTreeViewField_;
    QString lookupListTitles_;
    QString lookupListWidths_;
    TMultiSelectText multiSelectText_ = mstEllipsis;
    TQPickOptions pickOptions_{poSelectPickText, poAcceptPickList};
    QString pickTextFormat_;
    bool quickDraw_ = true;
    bool showBlob_ = true;
    bool showEdit_ = true;
    bool suppressRTL_ = false;
    bool toolTips_ = true;
    TToolTipsWidth toolTipsWidth_ = ttAutoWidth;
    bool transparent_ = false;
    QColor transparentColor_;
    TVAlignment vAlignment_ = tvCenter;
    bool wallpaper_ = false;
    bool wordWrap_ = true;

    template <typename T>
    void assign(T &member, const T &value)
    {
        if (member == value)
            return;
        member = value;
        changed();
    }
};

// The grid's columns.
class TQDBGridColumns : public TCollectionOf<TQColumn>
{
    Q_OBJECT

public:
    explicit TQDBGridColumns(TQCustomDBGrid *grid);
    TQCustomDBGrid *Grid() const { return grid_; }
    // Whether the columns show the data set's fields as the grid's own columns would.
    bool FitFields() const;

    // Customised when the last column is one the user made.
    TDBGridColumnsState State() const;
    void SetState(TDBGridColumnsState state);
    // One column per field of the data set (object and array children right after their
    // parent), made by the grid.
    void RebuildColumns();
    // Puts every column's look back to its defaults.
    void RestoreDefaults();
    // The automatic columns, each inserted at position 0: the row number, the selection
    // check box and the expand box.
    TQColumn *AddAutoNumber();
    TQColumn *AddAutoSelect();
    TQColumn *AddAutoExpand();
    // The column bound to a field name, searched from a position on; nullptr when none.
    TQColumn *FindColumn(const QString &fieldName, int from = 0) const;

    // The sorted columns in their order (at most nine levels).
    const QList<TQColumn *> &MarkerList() const { return markers_; }
    void AddMarker(TQColumn *column);
    void RemoveMarker(TQColumn *column);
    // Clears every marker.
    void RemoveMarkers();
    // Numbers the levels again after a column left the order.
    void UpdateMarkers();
    static constexpr int MaxMarkers = 9;

    // Column files: the columns and the grid's sort order as one component stream. A stream
    // that cannot be read raises EReadError and leaves the columns as they were.
    void SaveToStream(QIODevice &stream);
    void LoadFromStream(QIODevice &stream);
    void SaveToFile(const QString &fileName);
    void LoadFromFile(const QString &fileName);

    // The layout block of the columns as name=value lines, and its reading back: order,
    // base widths scaled between screen densities, and the visible, expanded and printed flags.
    void GetSettings(TStrings &layout) const;
    void ApplySettings(const TStrings &layout);
    void SetSettings(const TStrings &layout) { ApplySettings(layout); }

protected:
    void Update(TCollectionItem *item) override;
    void Notify(TCollectionItem *item, TCollectionNotification action) override;

private:
    TQCustomDBGrid *grid_;
    QList<TQColumn *> markers_;
};

template <typename T>
void TQColumnTitle::assign(T &member, const T &value)
{
    if (member == value)
        return;
    member = value;
    column_->changed();
}

// Walks the columns of a collection: MoveNext before each GetCurrent.
class TQDBGridColumnsEnumerator
{
public:
    explicit TQDBGridColumnsEnumerator(const TQDBGridColumns *columns) : columns_(columns) {}
    TQColumn *GetCurrent() const { return columns_->Items(index_); }
    bool MoveNext() { return ++index_ < columns_->Count(); }
    void Restart() { index_ = -1; }

private:
    const TQDBGridColumns *columns_;
    int index_ = -1;
};

// Program-wide settings of the automatic columns, read when they are made.
QString &AutoNumberCaption();
QString &AutoSelectCaption();
QString &AutoExpandCaption();
int &AutoColumnWidth();

// Separates the values of a column's line in a layout.
QString &ColumnSettingsSeparator();

} // namespace qdb
