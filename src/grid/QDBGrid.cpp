#include "QDBGrid.h"

#include "QDBGridAccessible.h"
#include "QDBGridPrivate.h"
#include "QDBGridSettings.h"

#include <QEvent>
#include <QFontMetrics>
#include <QScrollBar>

#include <utility>

namespace qdb {

TQCustomDBGrid::TQCustomDBGrid(QWidget *parent) : TCustomGrid(parent), d_(std::make_unique<Private>())
{
    d_->columns = new TQDBGridColumns(this);
    d_->style = new TQGridStyle(this);
    d_->settings = new TQDBGridSettings(this);
    d_->titleFont = font();
    d_->link.reset(CreateDataLink());
    d_->totals = new TQDBGridTotals(this);
    d_->selectedRows = std::make_unique<TQBookmarkList>(this);
    d_->selectedCols = std::make_unique<TQColumnList>(this);
    RegisterSetType<TMultiSelection>();
    InstallGridAccessibility();
    loadImages();
    SetDefaultColWidth(64);
    SetDefaultRowHeight(QFontMetrics(font()).height() + d_->style->DataRowSpace);
    InternalLayout();
}

TQCustomDBGrid::~TQCustomDBGrid()
{
    d_->destroying = true;
    if (std::exchange(d_->layoutLoaded, false) && d_->link->Active())
        autoSaveLayout();
    SetMasterGrid(nullptr);
    for (TQCustomDBGrid *slave : SlaveGrids())
        slave->d_->master = nullptr;
    d_->totals->DataLink()->SetDataSource(nullptr);
    d_->link->SetDataSource(nullptr);
}

TQGridDataLink *TQCustomDBGrid::CreateDataLink()
{
    return new TQGridDataLink(this);
}

TQColumn *TQCustomDBGrid::CreateColumns(TQDBGridColumns *columns)
{
    return new TQColumn(columns);
}

TDataSource *TQCustomDBGrid::GetDataSource() const { return d_->link->DataSource(); }
TQGridDataLink *TQCustomDBGrid::DataLink() const { return d_->link.get(); }
TDataSet *TQCustomDBGrid::DataSet() const { return d_->link->DataSet(); }
TQDBGridColumns *TQCustomDBGrid::GetColumns() const { return d_->columns; }
TQDBGridOptions TQCustomDBGrid::GetOptions() const { return d_->options; }
TQDBGridOptionsEx TQCustomDBGrid::GetOptionsEx() const { return d_->optionsEx; }
TQDBGridOptionsExt TQCustomDBGrid::GetOptionsExt() const { return d_->optionsExt; }
QFont TQCustomDBGrid::GetTitleFont() const { return d_->titleFont; }
bool TQCustomDBGrid::GetColumnNesting() const { return d_->columnNesting; }
int TQCustomDBGrid::GetDefaultWidthMin() const { return d_->defaultWidthMin; }
int TQCustomDBGrid::GetDefaultWidthMax() const { return d_->defaultWidthMax; }
int TQCustomDBGrid::GetFitWidthMax() const { return d_->fitWidthMax; }
void TQCustomDBGrid::SetFitWidthMax(int w) { d_->fitWidthMax = qMax(0, w); }
QString TQCustomDBGrid::GetKeyFields() const { return d_->keyFields; }
bool TQCustomDBGrid::IsSavingColumns() const { return d_->savingColumns > 0; }
bool TQCustomDBGrid::IsLoadingColumns() const { return d_->loadingColumns > 0; }
void TQCustomDBGrid::SetSavingColumns(bool on) { d_->savingColumns += on ? 1 : -1; }
void TQCustomDBGrid::SetLoadingColumns(bool on) { d_->loadingColumns += on ? 1 : -1; }
bool TQCustomDBGrid::GetStretchMode() const { return d_->stretchMode; }
void TQCustomDBGrid::SetStretchMode(bool on)
{
    if (d_->stretchMode == on)
        return;
    d_->stretchMode = on;
    if (on)
        StretchGrid();
    else
        LayoutChanged(); // the columns' own widths come back
}
TQDBGridSettings *TQCustomDBGrid::GetSettings() const { return d_->settings; }
TQSettingsOptions TQCustomDBGrid::GetSettingsOptions() const { return d_->settings->GetOptions(); }
void TQCustomDBGrid::SetSettingsOptions(TQSettingsOptions options) { d_->settings->SetOptions(options); }
TQGridStyle *TQCustomDBGrid::GetGridStyle() const { return d_->style; }

void TQCustomDBGrid::SetDataSource(TDataSource *source)
{
    if (source == GetDataSource())
        return;
    d_->link->SetDataSource(source);
    d_->totals->DataLink()->SetDataSource(source);
    LinkActive(d_->link->Active());
}

void TQCustomDBGrid::SetOptions(TQDBGridOptions options)
{
    if (options == d_->options)
        return;
    d_->options = options;
    LayoutChanged();
}

void TQCustomDBGrid::SetOptionsEx(TQDBGridOptionsEx options)
{
    const bool orderChanged = (options * TQDBGridOptionsEx{dgLoadCurrentOrder, dgAutoUpdateOrder})
        != (d_->optionsEx * TQDBGridOptionsEx{dgLoadCurrentOrder, dgAutoUpdateOrder});
    d_->optionsEx = options;
    LayoutChanged();
    if (orderChanged && DataLink()->Active())
        UpdateOrder(true);
}

void TQCustomDBGrid::SetOptionsExt(TQDBGridOptionsExt options)
{
    const TQDBGridOptionsExt autoColumns{dgAutoNumberColumn, dgAutoSelectColumn, dgAutoExpandColumn};
    const bool rebuild = (options * autoColumns) != (d_->optionsExt * autoColumns);
    d_->optionsExt = options;
    // Default columns are the grid's own: they follow a change of the automatic ones.
    if (rebuild && d_->columns->State() == csDefault && DataLink()->Active())
        d_->columns->RebuildColumns();
    else
        LayoutChanged();
}

void TQCustomDBGrid::SetTitleFont(const QFont &font)
{
    d_->titleFont = font;
    d_->titleFontAssigned = true;
    LayoutChanged();
}

void TQCustomDBGrid::RefreshDefaultFont()
{
    if (!d_->titleFontAssigned)
        d_->titleFont = font();
    LayoutChanged(); // row heights and default widths are measured again

}

void TQCustomDBGrid::changeEvent(QEvent *event)
{
    TCustomGrid::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        RefreshDefaultFont();
}

void TQCustomDBGrid::SetColumnNesting(bool on)
{
    d_->columnNesting = on;
    LayoutChanged();
}

void TQCustomDBGrid::SetDefaultWidthMin(int w)
{
    d_->defaultWidthMin = w;
    LayoutChanged();
}

void TQCustomDBGrid::SetDefaultWidthMax(int w)
{
    d_->defaultWidthMax = w;
    LayoutChanged();
}

void TQCustomDBGrid::SetKeyFields(const QString &fields)
{
    d_->keyFields = fields;
}

int TQCustomDBGrid::IndicatorOffset() const
{
    return d_->options.Contains(dgIndicator) ? 1 : 0;
}

int TQCustomDBGrid::TitleOffset() const
{
    return d_->options.Contains(dgTitles) ? d_->titleRows : 0;
}

int TQCustomDBGrid::rowLineWidth() const
{
    return d_->options.Contains(dgRowLines) ? GridLineWidth() : 0;
}

int TQCustomDBGrid::colLineWidth() const
{
    return d_->options.Contains(dgColLines) ? GridLineWidth() : 0;
}

TField *TQCustomDBGrid::SelectedField() const
{
    TQColumn *column = ColumnAt(Col());
    return column ? column->GetField() : nullptr;
}

TQColumn *TQCustomDBGrid::ColumnAt(int rawCol) const
{
    const int c = RawToDataColumn(rawCol);
    return c >= 0 && c < d_->columns->Count() ? d_->columns->Items(c) : nullptr;
}

// ---- layout ----

void TQCustomDBGrid::BeginLayout()
{
    BeginUpdate();
    if (d_->layoutLock++ == 0)
        d_->columns->BeginUpdate();
}

void TQCustomDBGrid::EndLayout()
{
    if (d_->layoutLock == 0)
        return;
    if (--d_->layoutLock == 0) {
        d_->columns->EndUpdate(); // announces the change: the layout is made again
        LayoutChanged();
    }
    EndUpdate();
}

void TQCustomDBGrid::BeginUpdate()
{
    ++d_->updateLock;
}

void TQCustomDBGrid::EndUpdate()
{
    if (d_->updateLock > 0)
        --d_->updateLock;
}

void TQCustomDBGrid::DisableGrid()
{
    BeginUpdate();
}

void TQCustomDBGrid::EnableGrid()
{
    EndUpdate();
    if (!UpdateLocked())
        DataChanged(); // what changed meanwhile is shown at once
}

bool TQCustomDBGrid::UpdateLocked() const
{
    return d_->updateLock > 0;
}

void TQCustomDBGrid::LayoutChanged()
{
    if (d_->layoutLock > 0)
        return;
    InternalLayout();
}

void TQCustomDBGrid::DefineFieldMap()
{
    TQGridDataLink *link = d_->link.get();
    if (d_->columns->State() == csDefault) {
        link->SetSparseMap(false);
        for (TField *f : DataSet()->FieldList())
            if (f->Visible() && !f->ParentField())
                link->AddMapping(f->FullName());
    } else {
        link->SetSparseMap(true);
        for (int i = 0; i < d_->columns->Count(); ++i)
            link->AddMapping(d_->columns->Items(i)->GetFieldName());
    }
}

void TQCustomDBGrid::ColWidthsChanged()
{
    // A width dragged by the user becomes the column's own.
    if (d_->layoutLock > 0)
        return;
    ++d_->layoutLock;
    bool snapped = false;
    for (int i = 0; i < d_->columns->Count(); ++i) {
        TQColumn *c = d_->columns->Items(i);
        const int raw = DataToRawColumn(i);
        if (c->Showing() && ColWidths(raw) != c->GetWidth()) {
            c->SetWidth(ColWidths(raw));
            snapped = snapped || ColWidths(raw) != c->GetWidth();
        }
    }
    --d_->layoutLock;
    // A width kept in a field in characters, or held within its limits, shows as it was kept.
    if (snapped)
        LayoutChanged();
}

void TQCustomDBGrid::resizeEvent(QResizeEvent *event)
{
    TCustomGrid::resizeEvent(event);
    placeSearchPanel();
    UpdateRowCount();
    StretchGrid();
}

} // namespace qdb
