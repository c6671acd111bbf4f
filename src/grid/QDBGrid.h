#pragma once

#include "QDBColumns.h"
#include "QDBGridImages.h"
#include "QDBGridSelection.h"
#include "QDBGridFlags.h"
#include "QDBGridSettings.h"
#include "QDBGridTypes.h"

#include "editors/QDBEditorTypes.h"
#include "filter/QDBSearch.h"

#include "platform/db/DataSource.h"
#include "platform/rtl/Colors.h"
#include "platform/rtl/Streaming.h"
#include "platform/grids/Grids.h"

#include <QEvent>

class QMimeData;

#include <memory>

namespace qdb {

class TQCustomDBGrid;
class TQDBGridFilter;
class TQDBGridSearchPanel;
class TQDBGridTotals;
class TQDBToolMenu;

// The spacings of the grid's rows and title columns.
class TQGridStyle : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int DataRowSpace MEMBER DataRowSpace)
    Q_PROPERTY(int HeaderRowSpace MEMBER HeaderRowSpace)
    Q_PROPERTY(int TitleColMargin MEMBER TitleColMargin)
    Q_PROPERTY(int TitleRowSpace MEMBER TitleRowSpace)
    Q_PROPERTY(int TotalColMargin MEMBER TotalColMargin)
    Q_PROPERTY(int TotalRowSpace MEMBER TotalRowSpace)
    Q_PROPERTY(qdb::QDBGridTypes::TVisualStyle VisualStyle READ GetVisualStyle WRITE SetVisualStyle)
    Q_CLASSINFO("default:VisualStyle", "vsDefault")

public:
    using QObject::QObject;
    TVisualStyle GetVisualStyle() const { return visualStyle_; }
    // Repaints the grid that owns the style.
    void SetVisualStyle(TVisualStyle style);
    int DataRowSpace = 4;
    int HeaderRowSpace = 4;
    int TitleColMargin = 2;
    int TitleRowSpace = 4;
    int TotalColMargin = 2;
    int TotalRowSpace = 4;

private:
    TVisualStyle visualStyle_ = vsDefault;
};

// The grid's link to its data set: every data event becomes a grid operation.
class TQGridDataLink : public TDataLink
{
public:
    explicit TQGridDataLink(TQCustomDBGrid *grid) : grid_(grid) {}

    // The map's limit, checked on its own: no test can hold that many entries.
    static constexpr qsizetype MaxMappings = 0x0FFFFFFF;
    static void CheckMappingRoom(qsizetype count);
    void AddMapping(const QString &fieldName);
    void ClearMapping();
    int GetMappedIndex(int i) const { return i >= 0 && i < map_.size() ? map_[i] : -1; }
    TField *GetFields(int i) const;
    int MappingCount() const { return int(map_.size()); }
    void SetSparseMap(bool on) { sparseMap_ = on; }
    bool DefaultFields() const;
    bool IsAggRow(int) const { return false; }
    void BuildAggMap() {}
    void Modified() { modified_ = true; }
    bool IsModified() const { return modified_; }
    void Cancel();
    void Reset();

protected:
    void ActiveChanged() override;
    void DataSetChanged() override;
    void DataSetScrolled(int distance) override;
    void LayoutChanged() override;
    void FocusControl(TField *&field) override;
    void EditingChanged() override;
    void RecordChanged(TField *field) override;
    void UpdateData() override;

private:
    TQCustomDBGrid *grid_;
    QList<int> map_;
    bool sparseMap_ = false;
    bool modified_ = false;
    bool inUpdateData_ = false;
};

// The data grid: a window of the records of a data set as rows, its fields as columns.
class TQCustomDBGrid : public TCustomGrid, public TCustomProperties
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSource *DataSource READ GetDataSource WRITE SetDataSource)
    Q_PROPERTY(qdb::TQDBGridColumns *Columns READ GetColumns)
    Q_PROPERTY(QFont TitleFont READ GetTitleFont WRITE SetTitleFont)
    Q_PROPERTY(bool ColumnNesting READ GetColumnNesting WRITE SetColumnNesting)
    Q_PROPERTY(int DefaultWidthMin READ GetDefaultWidthMin WRITE SetDefaultWidthMin)
    Q_PROPERTY(int DefaultWidthMax READ GetDefaultWidthMax WRITE SetDefaultWidthMax)
    Q_PROPERTY(int FitWidthMax READ GetFitWidthMax WRITE SetFitWidthMax)
    Q_CLASSINFO("default:FitWidthMax", "0")
    Q_PROPERTY(QString KeyFields READ GetKeyFields WRITE SetKeyFields)
    Q_PROPERTY(qdb::TQGridStyle *GridStyle READ GetGridStyle)
    Q_PROPERTY(int WheelScrollRows READ GetWheelScrollRows WRITE SetWheelScrollRows)
    Q_PROPERTY(QFont HeaderFont READ GetHeaderFont WRITE SetHeaderFont)
    Q_PROPERTY(int LinesCount READ GetLinesCount WRITE SetLinesCount)
    Q_PROPERTY(int LinesCountMin READ GetLinesCountMin WRITE SetLinesCountMin)
    Q_PROPERTY(int LinesCountMax READ GetLinesCountMax WRITE SetLinesCountMax)
    Q_PROPERTY(int TitleLinesCount READ GetTitleLinesCount WRITE SetTitleLinesCount)
    Q_PROPERTY(int HeaderLinesCount READ GetHeaderLinesCount WRITE SetHeaderLinesCount)
    Q_PROPERTY(int IndicatorWidth READ GetIndicatorWidth WRITE SetIndicatorWidth)
    Q_PROPERTY(int StretchWidthMin READ GetStretchWidthMin WRITE SetStretchWidthMin)
    Q_PROPERTY(int StretchWidthMax READ GetStretchWidthMax WRITE SetStretchWidthMax)
    Q_PROPERTY(qint32 Color READ GetColor WRITE SetColor DESIGNABLE false)
    Q_PROPERTY(qint32 FixedColor READ GetFixedColor WRITE SetFixedColor DESIGNABLE false)
    Q_PROPERTY(qint32 DataColLineColor READ GetDataColLineColor WRITE SetDataColLineColor DESIGNABLE false)
    Q_PROPERTY(qint32 DataRowLineColor READ GetDataRowLineColor WRITE SetDataRowLineColor DESIGNABLE false)
    Q_PROPERTY(qint32 EditorColor READ GetEditorColor WRITE SetEditorColor DESIGNABLE false)
    Q_PROPERTY(qint32 HighlightText READ GetHighlightText WRITE SetHighlightText DESIGNABLE false)
    Q_PROPERTY(qint32 StripeColor READ GetStripeColor WRITE SetStripeColor DESIGNABLE false)
    Q_PROPERTY(qint32 SelectionColor READ GetSelectionColor WRITE SetSelectionColor DESIGNABLE false)
    Q_PROPERTY(qint32 SelectCellColor READ GetSelectCellColor WRITE SetSelectCellColor DESIGNABLE false)
    Q_PROPERTY(qint32 SelectRowColor READ GetSelectRowColor WRITE SetSelectRowColor DESIGNABLE false)
    Q_PROPERTY(qdb::TGridDrawingOptions DrawingOptions READ GetDrawingOptions WRITE SetDrawingOptions DESIGNABLE false)
    Q_PROPERTY(qdb::QDBGridTypes::TFixedStyle FixedStyle READ GetFixedStyle WRITE SetFixedStyle)
    Q_PROPERTY(qdb::QDBGridTypes::TFocusRect FocusRect READ GetFocusRect WRITE SetFocusRect)
    Q_PROPERTY(qdb::QDBGridTypes::TMarkerStyle MarkerStyle READ GetMarkerStyle WRITE SetMarkerStyle)
    Q_PROPERTY(qdb::QDBGridTypes::TMarkerTransparent MarkerTransparent READ GetMarkerTransparent WRITE SetMarkerTransparent)
    Q_PROPERTY(qdb::QDBGridTypes::TImeMode ImeMode READ GetImeMode WRITE SetImeMode)
    Q_PROPERTY(QString ImeName READ GetImeName WRITE SetImeName)
    Q_PROPERTY(qdb::TQCustomDBGrid *MasterGrid READ GetMasterGrid WRITE SetMasterGrid)
    Q_PROPERTY(qdb::TMultiSelections MultiSelectOptions READ GetMultiSelectOptions WRITE SetMultiSelectOptions DESIGNABLE false)
    Q_PROPERTY(QString DetailFields READ GetDetailFields WRITE SetDetailFields)
    Q_PROPERTY(qdb::TQDBGridFilter *FilterGrid READ GetFilterGrid)
    Q_PROPERTY(qdb::TQDBGridSearch *Search READ GetSearch)
    Q_PROPERTY(qdb::TQDBGridSettings *Settings READ GetSettings)
    Q_PROPERTY(bool ReadOnly READ GetReadOnly WRITE SetReadOnly)

public:
    explicit TQCustomDBGrid(QWidget *parent = nullptr);
    ~TQCustomDBGrid() override;

    TDataSource *GetDataSource() const;
    void SetDataSource(TDataSource *source);
    TQGridDataLink *DataLink() const;
    TDataSet *DataSet() const;
    TQDBGridColumns *GetColumns() const;
    TQDBGridOptions GetOptions() const;
    void SetOptions(TQDBGridOptions options);
    TQDBGridOptionsEx GetOptionsEx() const;
    void SetOptionsEx(TQDBGridOptionsEx options);
    TQDBGridOptionsExt GetOptionsExt() const;
    void SetOptionsExt(TQDBGridOptionsExt options);
    QFont GetTitleFont() const;
    void SetTitleFont(const QFont &font);
    // Columns and titles without a font of their own follow the grid's fonts.
    void RefreshDefaultFont();
    // Whether child columns hang their titles under their parent's caption.
    bool GetColumnNesting() const;
    void SetColumnNesting(bool on);
    int GetDefaultWidthMin() const;
    void SetDefaultWidthMin(int w);
    int GetDefaultWidthMax() const;
    void SetDefaultWidthMax(int w);
    // The widest a column fitted to its content gets (AdjustColumnsWidth, a double click on
    // a title's border); 0: half the grid's width.
    int GetFitWidthMax() const;
    void SetFitWidthMax(int w);
    QString GetKeyFields() const;
    void SetKeyFields(const QString &fields);
    // Nothing is typed into the cells; the grid still moves and selects.
    bool GetReadOnly() const;
    void SetReadOnly(bool on);

    // ---- cell editors ----
    // The editor a column's cells get (the selected column's without one): its button
    // style, else what the field and the column's lists call for.
    virtual TEditorStyle GetEditorStyle(TQColumn *column = nullptr) const;
    // Asked before the selected cell takes typing: puts the record in edit mode and marks
    // it modified; false, silently, where the cell may not change.
    bool CanEditModify();
    // The list class a column's cells drop down (a TQDBGridDropDownList descendant);
    // nullptr where the cell has no list.
    virtual const QMetaObject *GetEditorListClass(TQColumn *column = nullptr) const;
    // A list dropped from the selected cell closed: OnListCloseUp may change the value or
    // refuse it; an accepted value is written to the record.
    virtual void ListCloseUp(QObject *list, Variant &value, bool &accept);
    // The button of an ellipsis, drop-down or menu cell was pressed.
    virtual void EditButtonClick();
    // Called as the cell editor takes a key: opens the list of a column that drops down
    // by itself.
    virtual void AutoDropDownState(int key);
    // True while the grid itself opens a cell's list (F4 or Alt+Down on the cell).
    bool DropDownInProgress() const;
    using TListCloseUpEvent =
        std::function<void(TQCustomDBGrid *sender, TQColumn *column, QObject *list, Variant &value, bool &accept)>;
    TListCloseUpEvent OnListCloseUp;
    TNotifyEvent OnEditButtonClick;
    // Keys the cell editor hands on (the lines of a delimited value).
    std::function<void(TObject *sender, QKeyEvent *event)> OnKeyDown;
    TQGridStyle *GetGridStyle() const;
    // Rows a wheel step moves: 1 or more as given, the window's size when negative, the
    // system's setting when 0.
    int GetWheelScrollRows() const;
    void SetWheelScrollRows(int rows);
    // Ctrl: one row, Shift: a window, else the setting above.
    int MouseWheelScrollRows(Qt::KeyboardModifiers modifiers) const;

    // A grid that follows another: its columns take the widths of the master's columns of
    // the same fields, and it scrolls sideways with it. A master that would end up
    // following itself is refused.
    TQCustomDBGrid *GetMasterGrid() const;
    void SetMasterGrid(TQCustomDBGrid *master);
    // Takes the master's widths and horizontal position.
    void SynchronizeWithMaster();
    // The grids that follow this one.
    QList<TQCustomDBGrid *> SlaveGrids() const;

    // ---- multi-selection ----
    // What the user may select with dgMultiSelect on: rows, columns or cells (both).
    TMultiSelection GetMultiSelect() const;
    void SetMultiSelect(TMultiSelection mode);
    TMultiSelections GetMultiSelectOptions() const;
    void SetMultiSelectOptions(TMultiSelections options);
    bool GetRowsSelection() const;
    bool GetColsSelection() const;
    TQBookmarkList &SelectedRows() const;
    TQColumnList &SelectedCols() const;
    // Selection changes nest; the outermost end tells OnRowSelect and repaints.
    void BeginSelect();
    void EndSelect();
    void CancelSelect();
    // Ends the bracket once the events pending now are through (a drag that selects as it
    // goes tells once, at its end).
    void DelayEndSelect();
    void NotifyRowSelect(TSelectAction action);
    std::function<void(TQCustomDBGrid *sender, TSelectAction action)> OnRowSelect;

    // The wheel: the application's handler runs first and may say it handled the turn;
    // otherwise the grid moves by MouseWheelScrollRows. Answer whether the turn was handled.
    using TMouseWheelUpDownEvent =
        std::function<void(TObject *sender, Qt::KeyboardModifiers shift, const QPoint &mousePos, bool &handled)>;
    TMouseWheelUpDownEvent OnMouseWheelDown;
    TMouseWheelUpDownEvent OnMouseWheelUp;
    // Whether a column's text is mirrored: a right-to-left grid, unless the column says not.
    bool UseRightToLeftAlignmentForColumn(const TQColumn *column) const;
    virtual bool DoMouseWheelDown(Qt::KeyboardModifiers shift, const QPoint &mousePos);
    virtual bool DoMouseWheelUp(Qt::KeyboardModifiers shift, const QPoint &mousePos);
    void SelectAll();
    void InvertAll();
    void ClearSelection();
    // The current row.
    void SelectRow();
    void UnselectRow();
    void InvertRow();
    // The rows from the selection anchor to the current row, both included.
    void SelectRows();
    void UnselectRows();
    void InvertRows();
    void SetSelectionAnchor(const TBookmark &bookmark);
    TBookmark SelectionAnchor() const;
    // The current row against the anchor: negative above it, positive below.
    int CompareRows() const;
    // Keeps the selection under a name, by key values, and selects those records again.
    void SaveSelection(const QString &name);
    void RestoreSelection(const QString &name);
    bool IsColMultiSelected(const TQColumn *column) const;
    // Whether the cell of a column in the current record is part of the selection.
    bool IsCellMultiSelected(const TQColumn *column) const;
    // Calls `proc` for each cell in scope, record by record (the cursor moves to each);
    // the position is restored afterwards.
    void ForEachDataCell(TForEachCellScope scope, const TForEachCellProc &proc);
    void ForEachDataRow(TDataRowEnum rows, const TForEachCellProc &proc);
    void ForEachDataCol(TDataColEnum cols, const TForEachCellProc &proc);
    void InvalidateCurrentRow();

    // ---- copy ----
    // The selected cells, rows or columns, else the current cell (with dgRowSelect its row),
    // as the cells show them: tab-separated text under a line of titles and an HTML table;
    // a single value alone as text. A long copy shows its progress and stops at Esc.
    // Null (the caller owns what is returned) when there is nothing to copy or it stopped.
    QMimeData *CopyData();
    // Ctrl+C and Ctrl+Insert; false when nothing was copied.
    bool CopyToClipboard();

    // ---- the user's tools ----
    // The tool menu of the titles and the indicator; OnToolMenu may change it before it
    // shows. The menu goes when it closes.
    virtual TQDBToolMenu *CreateToolMenu(TQColumn *column);
    TQDBToolMenu *ShowToolMenu(const QPoint &globalPos, TQColumn *column = nullptr);
    std::function<void(TQCustomDBGrid *sender, TQDBToolMenu *menu)> OnToolMenu;
    // The columns dialog; true when the user kept the changes.
    bool ShowColumnsDialog();
    // The columns as they were when the grid first had its data, before a saved layout
    // changed them.
    void RestoreDefaultColumns();
    bool DefaultColumnsChanged() const;

    // ---- look ----
    QFont GetHeaderFont() const;
    void SetHeaderFont(const QFont &font);
    // Text lines of a data row, of a title caption and of a header line.
    int GetLinesCount() const;
    // Kept between LinesCountMin and LinesCountMax (0: no upper bound), however it is set
    // (by code, a layout read back, the settings).
    void SetLinesCount(int lines);
    int GetLinesCountMin() const;
    void SetLinesCountMin(int lines);
    int GetLinesCountMax() const;
    void SetLinesCountMax(int lines);
    int GetTitleLinesCount() const;
    void SetTitleLinesCount(int lines);
    int GetHeaderLinesCount() const;
    void SetHeaderLinesCount(int lines);
    // The indicator column's width; 0 fits its images.
    int GetIndicatorWidth() const;
    void SetIndicatorWidth(int width);
    int GetStretchWidthMin() const;
    void SetStretchWidthMin(int width);
    int GetStretchWidthMax() const;
    void SetStretchWidthMax(int width);
    // Colours hold clDefault until chosen; painting uses the computed default then.
    TColor GetColor() const;
    void SetColor(TColor color);
    TColor GetFixedColor() const;
    void SetFixedColor(TColor color);
    TColor GetDataColLineColor() const;
    void SetDataColLineColor(TColor color);
    TColor GetDataRowLineColor() const;
    void SetDataRowLineColor(TColor color);
    TColor GetEditorColor() const;
    void SetEditorColor(TColor color);
    TColor GetHighlightText() const;
    void SetHighlightText(TColor color);
    TColor GetStripeColor() const;
    void SetStripeColor(TColor color);
    TColor GetSelectionColor() const;
    void SetSelectionColor(TColor color);
    TColor GetSelectCellColor() const;
    void SetSelectCellColor(TColor color);
    TColor GetSelectRowColor() const;
    void SetSelectRowColor(TColor color);
    TGridDrawingOptions GetDrawingOptions() const;
    void SetDrawingOptions(TGridDrawingOptions options);
    TFixedStyle GetFixedStyle() const;
    void SetFixedStyle(TFixedStyle style);
    TFocusRect GetFocusRect() const;
    void SetFocusRect(TFocusRect style);
    TMarkerStyle GetMarkerStyle() const;
    void SetMarkerStyle(TMarkerStyle style);
    TMarkerTransparent GetMarkerTransparent() const;
    void SetMarkerTransparent(TMarkerTransparent value);
    // The input method of the cell editor, for columns without their own.
    TImeMode GetImeMode() const;
    void SetImeMode(TImeMode mode);
    QString GetImeName() const;
    void SetImeName(const QString &name);
    QColor DefaultDataLineColor() const;
    QColor DefaultEditorColor() const;
    QColor DefaultHighlightText() const;
    QColor DefaultStripeColor() const;
    QColor DefaultSelectionColor() const;
    QColor DefaultSelectCellColor() const;
    QColor DefaultSelectRowColor() const;
    // The colour painted for a colour property: its own, or the computed default.
    QColor PaintColor(TColor color, const QColor &computed) const;
    // The painted Color and FixedColor: the cells' background and the titles' face.
    QColor CellColor() const;
    QColor FixedFaceColor() const;
    // The image strips at the grid's density.
    const TGridImageList &Indicators() const;
    const TGridImageList &Markers() const;
    const TGridImageList &CheckBoxes() const;
    const TGridImageList &ExpandBoxes() const;

    // ---- geometry ----
    int GetTitleRowCount() const { return TitleOffset(); }
    // Bottom rows below the data: the blank filler row and the totals rows.
    int BottomRowCount() const;
    int GetTotalRowCount() const;
    // The rows of the totals data link's records (dgTotalFields): as many as it holds.
    int TotalFieldRowCount() const;
    // Lays the bottom rows out again when that number is no longer the one laid out.
    void UpdateTotalFieldRows();
    int GetRowHeight() const;
    int GetTitleHeight() const;
    int GetTotalHeight() const;
    int GetBlankHeight() const;
    int HeaderLineHeight() const;
    // The header line of a column's title cell under a viewport height, -1 outside them.
    int HeaderRow(int y, TQColumn *column) const;
    // The columns shown, in order; rebuilt with the layout.
    const QList<TQColumn *> &ShowingColumns() const;
    // Fits the columns' widths to the client width by their base widths.
    void StretchGrid();
    // Fits every showing column to its title and the records in view.
    void AdjustColumnsWidth();
    // Scales the widths the columns keep (and their base widths) by multiplier / divisor:
    // a layout made at another pixel density. Default widths follow the fonts by themselves.
    void ScaleColumnsBy(int multiplier, int divisor);
    bool StretchActive() const;
    // The free base widths and the width left for them at the last stretch pass.
    int StretchBaseSum() const;
    int StretchWidthLeft() const;
    bool Stretching() const;
    // How many data columns stay in place when the grid scrolls sideways.
    int GetFixedCols() const;
    void SetFixedCols(int count);

    // Raw grid column = data column + the indicator offset.
    int IndicatorOffset() const;
    int TitleOffset() const;
    int RawToDataColumn(int c) const { return c - IndicatorOffset(); }
    int DataToRawColumn(int c) const { return c + IndicatorOffset(); }
    // The record position shown by the scroll bar, and the record count.
    int RecNumber() const;
    int RecCount() const;
    bool KeepPosition() const { return !GetKeyFields().isEmpty(); }
    // The grid numbers the records itself (a forced sequence) when the data set cannot, or
    // the application asks: `count` records, the current one numbered from the data set's
    // position; a negative count hands the numbering back to the data set.
    void SetupRecNumber(int count);
    bool ForcedSequence() const;
    // The scroll modes in force: grid mode moves the window and keeps the current row in
    // place, page mode turns wheel steps into pages, rows mode moves directly.
    bool GridMode() const;
    bool PageMode() const;
    bool RowsMode() const;
    // Whether the data rows are striped: such rows are repainted rather than moved.
    bool StripesOn() const;

    // ---- the record window ----
    void LinkActive(bool value);
    void DataChanged();
    void RecordChanged(TField *field);
    void Scroll(int distance);
    int MoveBy(int distance, bool direct = false);
    void UpdateRowCount();
    void UpdateScrollBar();
    void UpdateActive();
    void DefineFieldMap();
    void LayoutChanged();
    void EditingChanged();
    void UpdateData();
    void BeginLayout();
    void EndLayout();
    void BeginUpdate();
    void EndUpdate();
    bool UpdateLocked() const;
    // Keeps the grid from following its data set (a batch of changes) until enabled again.
    void DisableGrid();
    void EnableGrid();
    void DisablePosition();
    void EnablePosition(bool restore);
    // Held while the link cancels an edit: the data change that follows is not a new state.
    void BeginCancel();
    void EndCancel();
    // Reading the grid from a stream: the order read is not given to the data set before
    // the whole grid is read.
    bool IsLoading() const;
    Q_INVOKABLE void BeginLoading();
    Q_INVOKABLE void Loaded();
    // OrderFields in the grid's stream: written only when there is an order, read after the
    // columns it marks.
    QStringList CustomPropertyNames() const override;
    QJsonValue WriteCustomProperty(const QString &name) const override;
    void ReadCustomProperty(const QString &name, const QJsonValue &value) override;
    QJsonValue WriteOrderFields() const;
    void ReadOrderFields(const QJsonValue &value);
    bool IsDesigning() const { return false; }
    bool IsSavingColumns() const;
    bool IsLoadingColumns() const;
    void SetSavingColumns(bool on);
    void SetLoadingColumns(bool on);

    // Whether the columns stretch to the grid's width; the stretching itself comes with
    // the grid geometry.
    bool GetStretchMode() const;
    void SetStretchMode(bool on);
    // The saved layout: what it holds, where it is kept, its automatic load and save.
    TQDBGridSettings *GetSettings() const;
    TQSettingsOptions GetSettingsOptions() const;
    void SetSettingsOptions(TQSettingsOptions options);
    // A layout was built (apply false: the handler may add lines of its own) or applied
    // (apply true: it may read them).
    using TQDBGridLayoutEvent = std::function<void(TObject *sender, TStrings *layout, bool apply)>;
    TQDBGridLayoutEvent OnLayout;
    // The pixels per inch of the grid's coordinates, for layouts saved at another density.
    int CurrentPPI() const { return logicalDpiY(); }

    // ---- sort order ----
    // The sort order as text ("Name,City DESC"), read from and written to the title markers.
    QString GetOrderFields() const;
    void SetOrderFields(const QString &order);
    // Marker changes inside the bracket are looked at once, at the outermost end: a changed
    // order is applied (dgAutoUpdateOrder) or announced (OnOrderChanged).
    void BeginOrderUpdate();
    void EndOrderUpdate();
    // The master-link fields of a detail data set, kept in front of its index field list.
    QString GetDetailFields() const;
    void SetDetailFields(const QString &fields);
    // Gives the order (empty: OrderFields) to the data set through the handler registered
    // for its class; false when there is none.
    virtual bool ChangeDataSetOrder(const QString &order = QString());
    // The data set's present order as order text; empty when no handler knows it.
    virtual QString CurrentDataSetOrder();
    void ChangeIndexFields(const QString &order, const QString &propName = QString(), const QString &indexFormat = QString());
    void ChangeOrderFields(const QString &order, const QString &propName = QString());
    void ChangeSQLOrderFields(const QString &order, const QString &propName = QString());
    QString CurrentIndexFields(const QString &propName = QString(), const QString &indexFormat = QString());
    QString CurrentOrderFields(const QString &propName = QString());
    QString CurrentSQLOrderFields(const QString &propName = QString());
    // Sets the markers without touching the data set.
    void SetupOrderFields(const QString &order);
    void SetupCurrentOrder();
    void UpdateOrder(bool load);
    virtual void OrderChanged();
    virtual void OrderUpdated();
    bool KeepSelection() const;
    // Writes a new order into the data set keeping the current record (by KeyFields) and,
    // with dgAutoKeepSelection, the selection; closes and reopens it when asked. What the
    // data set raises reaches the caller with the grid unlocked.
    // `undo` puts the old order back when the data set refuses the new one.
    void ReorderDataSet(bool reopen, const std::function<void()> &write, const std::function<void()> &undo = {});
    TNotifyEvent OnOrderChanged;
    TNotifyEvent OnOrderUpdated;

    // ---- totals ----
    // Every column's header, values and footer sections, the timer of delayed updates and
    // the link that asks for them.
    TQDBGridTotals *Totals() const;
    // One pass over the sections that take part; true when any calculated value does.
    virtual bool DoCalcValues(TCalcPass pass, bool selected);
    // A whole calculation: reset, the records, final. A selected-rows calculation
    // (`selected`) fills only the sections calculated over the selected rows.
    virtual void UpdateCalcValues(bool selected);
    // Asks for a calculation; `autoUpdate` marks a request of the grid's own after a
    // change, which dgAutoUpdateTotals allows. With dgDelayUpdateTotals a burst of requests
    // costs one calculation, DelayInterval milliseconds after the last.
    virtual void UpdateTotals(bool autoUpdate);
    void DelayUpdateTotals(TObject *sender);
    void TotalsUpdated();
    // Whether the calculation running goes through the selected rows (else every record).
    bool CalculatingSelectedRows() const;
    using TTotalCalcQueryEvent = std::function<void(TObject *sender, TDataSet *dataSet, bool &accept)>;
    using TTotalCalcValueEvent = std::function<void(TQColumnTotalValue *total, TCalcPass pass, Variant &value)>;
    using TTotalGetTextEvent = std::function<void(TQColumn *column, int index, QString &text, TTotalTextKind kind)>;
    // Asked for each record of a calculation: a refusal leaves it out of every total.
    TTotalCalcQueryEvent OnTotalCalcQuery;
    // Called for every calculated value in every pass; the whole calculation of cvCustom.
    TTotalCalcValueEvent OnTotalCalcValue;
    // Index: -1 the header, then the values from 0, then the footer.
    TTotalGetTextEvent OnTotalGetText;
    TNotifyEvent OnTotalsUpdated;

    // ---- search ----
    TQDBGridSearch *GetSearch() const;
    // Looks for Search.Text with Search.Options; from the other end again, with
    // soWrapAround or when the user agrees; says when nothing is found (not with
    // soSkipMessage). Whether a match was found.
    bool SearchGrid(TQSearchMode mode);
    // Goes to the first cell showing the text in that direction: its record becomes the
    // current one and its column the selected one. Where nothing is found the grid stays.
    bool SearchCell(TQSearchMode mode, const QString &text, TQSearchOptions options);
    // The strip with the search box, above or below the rows.
    void ShowSearchPanel();
    void CloseSearchPanel();
    void UpdateSearchPanel();
    TQDBGridSearchPanel *SearchPanel() const;
    // Search's text or options changed: the matches are painted anew.
    virtual void SearchChanged();

    // ---- the auto filter ----
    TQDBGridFilter *GetFilterGrid() const;
    // Installs the columns' filters in the data set, refreshes them, or takes them out and
    // gives the data set back the application's own filter.
    virtual void UpdateFilter();
    // The filter object's change: the filter is applied again and the titles repainted.
    virtual void FilterChanged();
    // Gives the data set a filter keeping the current record (by keyFieldName, else
    // KeyFields) and the selected rows; the grid is positioned and usable again whatever
    // the data set raises.
    virtual void ChangeDataSetFilter(bool filtered, const QString &filter, const TFilterRecordEvent &onFilterRecord,
                                     const QString &keyFieldName);
    // The record handler the grid installs: the ticked values of every filtered column,
    // then the application's own handler.
    virtual void FilterRecord(TDataSet *dataSet, bool &accept);
    virtual void FilterUpdated();
    // The application's own filter: kept aside while the grid's is installed and joined to
    // it, else the data set's.
    QString GetFilter() const;
    void SetFilter(const QString &filter);
    bool GetFiltered() const;
    void SetFiltered(bool on);
    TFilterRecordEvent GetFilterRecord() const;
    void SetFilterRecord(const TFilterRecordEvent &handler);
    // The handler FilterRecord is installed as; the same one each time.
    TFilterRecordEvent FilterRecordMethod();
    // Whether a column's title shows the filter button.
    bool HasFilterButton(const TQColumn *column) const;
    // The column whose title's filter button is at a point of the viewport, if any.
    TQColumn *FilterButtonAt(const QPoint &point) const;
    // Drops the column's value list under its title (fsFilterList), else opens its filter
    // form.
    void ShowAutoFilter(TQColumn *column);
    // Opens the column's filter form; OnShowFilterForm, when set, opens one of its own.
    void ShowFilterForm(TQColumn *column);
    std::function<void(TQColumn *column)> OnShowFilterForm;
    void InvalidateTitles();
    TNotifyEvent OnFilterUpdated;

    // Filled in by later features; the record window calls them at their moments.
    virtual void UpdateListItems(bool) {}
    virtual void UpdateSequence(bool) {}
    virtual void UpdateTreeView(bool) {}
    // The editor shows the field again when nothing typed is pending.
    virtual void InvalidateEditor();
    virtual void AlwaysShowEditor() {}

    // The column shown in a raw grid column, nullptr for the indicator.
    TQColumn *ColumnAt(int rawCol) const;
    // The field of the current column, nullptr when it has none.
    TField *SelectedField() const;
    // The text a data cell shows: its record's field as displayed.
    QString CellText(int rawCol, int row) const;
    // A check box column's image for the current record: 0 unchecked, 1 checked, 2 neither
    // (null or another value), -1 no check box.
    int CheckBoxState(TQColumn *column) const;
    // The totals section a bottom row shows for a column, and its text.
    TQColumnTotalValue *TotalAt(TQColumn *column, int row) const;
    QString TotalText(TQColumnTotalValue *total) const;

protected:
    // The link a grid uses; descendants may make their own.
    virtual TQGridDataLink *CreateDataLink();
    // Makes a column of the grid's column class for its collection: a descendant grid
    // returns its own TQColumn descendant here, and every column the grid builds, loads or
    // adds is of that class.
    virtual TQColumn *CreateColumns(TQDBGridColumns *columns);
    virtual void InternalLayout();

    void DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state) override;
    void DrawLines(QPainter &painter, const QRect &exposed) override;
    // Paints a data cell as the column shows it: colours, image, check box, expand box, text.
    virtual void DefaultDrawColumnCell(QPainter &painter, const QRect &rect, int dataCol, TQColumn *column,
                                       TGridDrawState state);
    bool SelectCell(int col, int row) override;
    void KeyDown(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool mouseWheel(int direction, const TMouseWheelUpDownEvent &handler, Qt::KeyboardModifiers shift,
                    const QPoint &mousePos);
    bool CanEditShow() const override;
    QString GetEditText(int col, int row) const override;
    void SetEditText(int col, int row, const QString &text) override;
    bool AcceptEditText() override;
    QWidget *CreateEditor() override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void FixedCellClick(int col, int row, Qt::KeyboardModifiers modifiers) override;
    void FitColumn(int col) override;
    void PrepareEditor(QWidget *editor) override;
    void UpdateScrollBars() override;
    void TopLeftChanged() override;
    void CurrentChanged() override;
    void ColWidthsChanged() override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void customEvent(QEvent *event) override;
    // The grid's private deferred update, posted to itself on activation.
    static constexpr QEvent::Type DeferredUpdateEvent = QEvent::Type(QEvent::User + 0xB030);

    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void keyPressEvent(QKeyEvent *event) override;
    void drawIndicatorCell(QPainter &painter, int row, const QRect &rect);
    void drawDataCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state);
    void drawTotalCell(QPainter &painter, int col, int row, const QRect &rect);
    // Draws the column's image in the cell's area; true when the text goes beside it, in
    // what is left of the area.
    bool drawColumnImage(QPainter &painter, QRect &area, TQColumn *column, const QPixmap &image, bool rtl);
    void drawTitles(QPainter &painter, const QRect &exposed);
    void drawFilterButton(QPainter &painter, const QRect &rect, bool filtered);
    // Marks where the searched text shows in a cell's one line of text.
    // Draws the text with the match marked; false, with nothing drawn, where none shows.
    bool drawSearchMatch(QPainter &painter, const QRect &area, const QString &text, Qt::Alignment alignment,
                         TQColumn *column, bool selected, const QColor &fill, const QColor &textColor);
    void placeSearchPanel();
    // What the data set is asked to find for the search: the fields of the columns searched;
    // false when a column shows a text its record's fields do not make.
    bool describeSearch(const QString &text, TQSearchOptions options, TTextSearch &search) const;
    // The search record by record, for data sets that cannot find the records themselves.
    bool walkSearch(TQSearchMode mode, const std::function<int(int)> &matchingCol, int rowStart);
    // How long a walk goes before it shows its progress, in milliseconds.
    static constexpr int SearchProgressDelay = 500;
    void layoutBottomRows();
    void layoutTitleRows();
    void clampFixedCols();
    int textHeight(const QFont &font) const;
    void loadImages();
    // The face of a title or indicator title cell, in the style's VisualStyle.
    void drawFixedFace(QPainter &painter, const QRect &rect, const QColor &face);
    void moveSequence(int by);
    bool cellModifiable() const;
    // F4 or Alt+Down on a list cell: the editor opens with its list; F4 also presses another button.
    void dropDownCell(bool pressButton);
    // A character typed on a cell: the editor opens on it with that character; false when
    // the cell takes no typing.
    bool typeIntoCell(QKeyEvent *event);
    // Runs a change of the data set's rows with the grid's position held; when the change
    // fails, the grid shows what the data set holds now and the error goes on.
    void holdingPosition(const std::function<void()> &change);
    // Sizes the scroll bar once the event loop comes round, counting the data set then.
    void CountLater(int delay);
    // Keeps the fields' widths and visibility as the link goes, gives them back to the same
    // fields as it comes again.
    void keepFieldLayout(bool active);
    // The settings' automatic load and save; what goes wrong is told, not raised, since
    // they run as the data set opens or closes and as the grid goes.
    void autoLoadLayout();
    void autoSaveLayout();
    void keepDefaultColumns(bool gridMade);
    friend class TQDBGridSettings;
    void settingsActivated();
    // Scrolls the data set's window so that the current record stands at that row of it.
    void placeActiveRecord(int row);
    bool detailPrefixApplies() const;
    void forEachCell(TDataRowEnum rows, TDataColEnum cols, const TForEachCellProc &proc);
    void selectRange(int how);
    void selectByMouse(int col, int row, Qt::KeyboardModifiers modifiers);
    // Keys that select; true when the key was used up. A Shift move ends in extendSelection.
    bool selectionKey(QKeyEvent *event);
    void extendSelection();
    int rowLineWidth() const;
    int colLineWidth() const;

    struct Private;
    std::unique_ptr<Private> d_;
    friend struct Private;
    friend class TQDBGridColumns; // makes its columns through CreateColumns
};

// Runs f inside the grid's order-update bracket: the order is looked at once, at its end,
// where applying it to the data set may raise.
template <typename F>
void WithOrderUpdate(TQCustomDBGrid *grid, F &&f)
{
    if (!grid) {
        f();
        return;
    }
    grid->BeginOrderUpdate();
    try {
        f();
    } catch (...) {
        try {
            grid->EndOrderUpdate();
        } catch (...) {
        }
        throw;
    }
    grid->EndOrderUpdate();
}

// The published grid.
// The published grid. Beside its own properties it has a Qt-typed face for Qt Designer and uic:
// the option sets as flags and the colours as QColor, under Qt-style names. Component streams
// keep to the grid's own properties.
class TQDBGrid : public TQCustomDBGrid
{
    Q_OBJECT
    Q_CLASSINFO("QtTypedFace", "options optionsEx optionsExt drawingOptions multiSelectOptions color fixedColor "
                               "dataColLineColor dataRowLineColor editorColor highlightTextColor stripeColor "
                               "selectionColor selectCellColor selectRowColor columns")
    Q_PROPERTY(qdb::QDBGridFlags::TQDBGridOptions options READ optionFlags WRITE setOptionFlags)
    Q_PROPERTY(qdb::QDBGridFlags::TQDBGridOptionsEx optionsEx READ optionExFlags WRITE setOptionExFlags)
    Q_PROPERTY(qdb::QDBGridFlags::TQDBGridOptionsExt optionsExt READ optionExtFlags WRITE setOptionExtFlags)
    Q_PROPERTY(qdb::QDBGridFlags::TGridDrawingOptions drawingOptions READ drawingFlags WRITE setDrawingFlags)
    Q_PROPERTY(qdb::QDBGridFlags::TMultiSelections multiSelectOptions READ multiSelectFlags WRITE setMultiSelectFlags)
    Q_PROPERTY(QColor color READ qtColor WRITE setQtColor)
    Q_PROPERTY(QColor fixedColor READ qtFixedColor WRITE setQtFixedColor)
    Q_PROPERTY(QColor dataColLineColor READ qtDataColLineColor WRITE setQtDataColLineColor)
    Q_PROPERTY(QColor dataRowLineColor READ qtDataRowLineColor WRITE setQtDataRowLineColor)
    Q_PROPERTY(QColor editorColor READ qtEditorColor WRITE setQtEditorColor)
    Q_PROPERTY(QColor highlightTextColor READ qtHighlightText WRITE setQtHighlightText)
    Q_PROPERTY(QColor stripeColor READ qtStripeColor WRITE setQtStripeColor)
    Q_PROPERTY(QColor selectionColor READ qtSelectionColor WRITE setQtSelectionColor)
    Q_PROPERTY(QColor selectCellColor READ qtSelectCellColor WRITE setQtSelectCellColor)
    Q_PROPERTY(QColor selectRowColor READ qtSelectRowColor WRITE setQtSelectRowColor)
    // The columns as a column file holds them; empty while they are the grid's own.
    Q_PROPERTY(QString columns READ columnsText WRITE setColumnsText)

public:
    using TQCustomDBGrid::TQCustomDBGrid;

private:
    QDBGridFlags::TQDBGridOptions optionFlags() const;
    void setOptionFlags(QDBGridFlags::TQDBGridOptions flags);
    QDBGridFlags::TQDBGridOptionsEx optionExFlags() const;
    void setOptionExFlags(QDBGridFlags::TQDBGridOptionsEx flags);
    QDBGridFlags::TQDBGridOptionsExt optionExtFlags() const;
    void setOptionExtFlags(QDBGridFlags::TQDBGridOptionsExt flags);
    QDBGridFlags::TGridDrawingOptions drawingFlags() const;
    void setDrawingFlags(QDBGridFlags::TGridDrawingOptions flags);
    QDBGridFlags::TMultiSelections multiSelectFlags() const;
    void setMultiSelectFlags(QDBGridFlags::TMultiSelections flags);

    QString columnsText() const;
    // Text that is no column file leaves the columns as they were and says why.
    void setColumnsText(const QString &text);

    // An invalid colour stands for the grid's default.
    QColor qtColorOf(TColor color) const;
    static TColor colorOf(const QColor &color);
    QColor qtColor() const { return qtColorOf(GetColor()); }
    void setQtColor(const QColor &c) { SetColor(colorOf(c)); }
    QColor qtFixedColor() const { return qtColorOf(GetFixedColor()); }
    void setQtFixedColor(const QColor &c) { SetFixedColor(colorOf(c)); }
    QColor qtDataColLineColor() const { return qtColorOf(GetDataColLineColor()); }
    void setQtDataColLineColor(const QColor &c) { SetDataColLineColor(colorOf(c)); }
    QColor qtDataRowLineColor() const { return qtColorOf(GetDataRowLineColor()); }
    void setQtDataRowLineColor(const QColor &c) { SetDataRowLineColor(colorOf(c)); }
    QColor qtEditorColor() const { return qtColorOf(GetEditorColor()); }
    void setQtEditorColor(const QColor &c) { SetEditorColor(colorOf(c)); }
    QColor qtHighlightText() const { return qtColorOf(GetHighlightText()); }
    void setQtHighlightText(const QColor &c) { SetHighlightText(colorOf(c)); }
    QColor qtStripeColor() const { return qtColorOf(GetStripeColor()); }
    void setQtStripeColor(const QColor &c) { SetStripeColor(colorOf(c)); }
    QColor qtSelectionColor() const { return qtColorOf(GetSelectionColor()); }
    void setQtSelectionColor(const QColor &c) { SetSelectionColor(colorOf(c)); }
    QColor qtSelectCellColor() const { return qtColorOf(GetSelectCellColor()); }
    void setQtSelectCellColor(const QColor &c) { SetSelectCellColor(colorOf(c)); }
    QColor qtSelectRowColor() const { return qtColorOf(GetSelectRowColor()); }
    void setQtSelectRowColor(const QColor &c) { SetSelectRowColor(colorOf(c)); }
};

} // namespace qdb
