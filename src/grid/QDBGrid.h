#pragma once

#include "QDBColumns.h"
#include "QDBGridImages.h"
#include "QDBGridTypes.h"

#include "platform/db/DataSource.h"
#include "platform/grids/Grids.h"

#include <memory>

namespace qdb {

class TQCustomDBGrid;

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

public:
    using QObject::QObject;
    int DataRowSpace = 4;
    int HeaderRowSpace = 4;
    int TitleColMargin = 2;
    int TitleRowSpace = 4;
    int TotalColMargin = 2;
    int TotalRowSpace = 4;
};

// The grid's link to its data set: every data event becomes a grid operation.
class TQGridDataLink : public TDataLink
{
public:
    explicit TQGridDataLink(TQCustomDBGrid *grid) : grid_(grid) {}

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
class TQCustomDBGrid : public TCustomGrid
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSource *DataSource READ GetDataSource WRITE SetDataSource)
    Q_PROPERTY(qdb::TQDBGridColumns *Columns READ GetColumns)
    Q_PROPERTY(QFont TitleFont READ GetTitleFont WRITE SetTitleFont)
    Q_PROPERTY(bool ColumnNesting READ GetColumnNesting WRITE SetColumnNesting)
    Q_PROPERTY(int DefaultWidthMin READ GetDefaultWidthMin WRITE SetDefaultWidthMin)
    Q_PROPERTY(int DefaultWidthMax READ GetDefaultWidthMax WRITE SetDefaultWidthMax)
    Q_PROPERTY(QString KeyFields READ GetKeyFields WRITE SetKeyFields)
    Q_PROPERTY(qdb::TQGridStyle *GridStyle READ GetGridStyle)
    Q_PROPERTY(int WheelScrollRows READ GetWheelScrollRows WRITE SetWheelScrollRows)

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
    QString GetKeyFields() const;
    void SetKeyFields(const QString &fields);
    TQGridStyle *GetGridStyle() const;
    // Rows a wheel step moves: 1 or more as given, the window's size when negative, the
    // system's setting when 0.
    int GetWheelScrollRows() const;
    void SetWheelScrollRows(int rows);
    // Ctrl: one row, Shift: a window, else the setting above.
    int MouseWheelScrollRows(Qt::KeyboardModifiers modifiers) const;

    // Raw grid column = data column + the indicator offset.
    int IndicatorOffset() const;
    int TitleOffset() const;
    int RawToDataColumn(int c) const { return c - IndicatorOffset(); }
    int DataToRawColumn(int c) const { return c + IndicatorOffset(); }
    // The record position shown by the scroll bar, and the record count.
    int RecNumber() const;
    int RecCount() const;
    bool KeepPosition() const { return !GetKeyFields().isEmpty(); }

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
    bool IsLoading() const { return false; }
    bool IsDesigning() const { return false; }
    bool IsSavingColumns() const;
    bool IsLoadingColumns() const;
    void SetSavingColumns(bool on);
    void SetLoadingColumns(bool on);

    // Whether the columns stretch to the grid's width; the stretching itself comes with
    // the grid geometry.
    bool GetStretchMode() const;
    void SetStretchMode(bool on);
    // What the grid's saved layout holds; the settings object keeps them once it exists.
    TQSettingsOptions GetSettingsOptions() const;
    void SetSettingsOptions(TQSettingsOptions options);
    // The pixels per inch of the grid's coordinates, for layouts saved at another density.
    int CurrentPPI() const { return logicalDpiY(); }

    // The sort order as text; the title markers that show it come with sorting.
    QString GetOrderFields() const;
    void SetOrderFields(const QString &order);
    void BeginOrderUpdate();
    void EndOrderUpdate();

    // Filled in by later features; the record window calls them at their moments.
    virtual void UpdateFilter() {}
    virtual void UpdateListItems(bool) {}
    virtual void UpdateSequence(bool) {}
    virtual void UpdateTotals(bool) {}
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

protected:
    // The link a grid uses; descendants may make their own.
    virtual TQGridDataLink *CreateDataLink();
    virtual void InternalLayout();

    void DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state) override;
    bool SelectCell(int col, int row) override;
    void KeyDown(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool CanEditShow() const override;
    QString GetEditText(int col, int row) const override;
    void SetEditText(int col, int row, const QString &text) override;
    bool AcceptEditText() override;
    void UpdateScrollBars() override;
    void ColWidthsChanged() override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void keyPressEvent(QKeyEvent *event) override;
    void drawTitleCell(QPainter &painter, int col, const QRect &rect);
    void drawIndicatorCell(QPainter &painter, int row, const QRect &rect);
    void drawDataCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state);
    void layoutBlankRow();
    int rowLineWidth() const;
    int colLineWidth() const;

    struct Private;
    std::unique_ptr<Private> d_;
    friend struct Private;
};

// The published grid.
class TQDBGrid : public TQCustomDBGrid
{
    Q_OBJECT

public:
    using TQCustomDBGrid::TQCustomDBGrid;
};

} // namespace qdb
