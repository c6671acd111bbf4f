// The grid's side of multi-selection: modes, the select brackets, whole-set operations,
// ranges from the anchor, and walking the selected cells.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include <QTimer>

namespace qdb {

TMultiSelection TQCustomDBGrid::GetMultiSelect() const { return d_->multiSelect; }
TMultiSelections TQCustomDBGrid::GetMultiSelectOptions() const { return d_->multiSelectOptions; }
void TQCustomDBGrid::SetMultiSelectOptions(TMultiSelections options) { d_->multiSelectOptions = options; }
TQBookmarkList &TQCustomDBGrid::SelectedRows() const { return *d_->selectedRows; }
TQColumnList &TQCustomDBGrid::SelectedCols() const { return *d_->selectedCols; }
TBookmark TQCustomDBGrid::SelectionAnchor() const { return d_->selectionAnchor; }
void TQCustomDBGrid::SetSelectionAnchor(const TBookmark &bookmark) { d_->selectionAnchor = bookmark; }

void TQCustomDBGrid::SetMultiSelect(TMultiSelection mode)
{
    if (mode == d_->multiSelect)
        return;
    ClearSelection();
    d_->multiSelect = mode;
}

bool TQCustomDBGrid::GetRowsSelection() const
{
    return d_->options.Contains(dgMultiSelect) && (d_->multiSelect == msRows || d_->multiSelect == msCells);
}

bool TQCustomDBGrid::GetColsSelection() const
{
    return d_->options.Contains(dgMultiSelect) && (d_->multiSelect == msCols || d_->multiSelect == msCells);
}

void TQCustomDBGrid::BeginSelect()
{
    ++d_->selectLock;
}

void TQCustomDBGrid::EndSelect()
{
    if (d_->selectLock == 0 || --d_->selectLock > 0)
        return;
    if (d_->selectChanged) {
        d_->selectChanged = false;
        InvalidateGrid();
        if (OnRowSelect)
            OnRowSelect(this, d_->lastSelectAction);
        d_->totals->SelectionChanged();
    }
}

void TQCustomDBGrid::CancelSelect()
{
    if (d_->selectLock > 0 && --d_->selectLock == 0)
        d_->selectChanged = false;
}

void TQCustomDBGrid::DelayEndSelect()
{
    QTimer::singleShot(0, this, [this] { EndSelect(); });
}

void TQCustomDBGrid::NotifyRowSelect(TSelectAction action)
{
    d_->lastSelectAction = action;
    d_->selectChanged = true;
    if (d_->selectLock == 0) {
        BeginSelect();
        EndSelect();
    }
}

void TQCustomDBGrid::InvalidateCurrentRow()
{
    if (DataLink()->Active())
        InvalidateRow(TitleOffset() + DataLink()->ActiveRecord());
}

void TQCustomDBGrid::ClearSelection()
{
    const bool any = SelectedRows().Count() > 0 || SelectedCols().Count() > 0;
    SelectedRows().Clear();
    SelectedCols().Clear();
    if (any)
        NotifyRowSelect(saClear);
}

void TQCustomDBGrid::SelectAll()
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds || (!GetRowsSelection() && !GetColsSelection()))
        return;
    ds->CheckBrowseMode();
    BeginSelect();
    if (GetRowsSelection()) {
        DisablePosition();
        const TBookmark anchor = ds->GetBookmark();
        TQBookmarkList &rows = SelectedRows();
        rows.Clear();
        NotifyRowSelect(saClear);
        for (ds->First(); !ds->Eof(); ds->Next())
            rows.AppendItem(ds->GetBookmark());
        // Walks follow the data set's order; the list's searches need the bookmarks' own.
        rows.Resort();
        NotifyRowSelect(saSelect);
        EnablePosition(true);
        d_->selectionAnchor = anchor;
    }
    if (GetColsSelection())
        for (int i = GetFixedCols(); i < d_->columns->Count(); ++i)
            if (d_->columns->Items(i)->Showing())
                SelectedCols().Add(d_->columns->Items(i));
    EndSelect();
}

void TQCustomDBGrid::InvertAll()
{
    TDataSet *ds = DataSet();
    // In cell mode both would flip, which makes no sense to the user: nothing happens.
    if (!DataLink()->Active() || !ds || GetRowsSelection() == GetColsSelection())
        return;
    ds->CheckBrowseMode();
    BeginSelect();
    if (GetRowsSelection()) {
        // One walk collecting the rows that were not selected: inverting row by row would
        // shift the list at every insert.
        TQBookmarkList &rows = SelectedRows();
        QList<TBookmark> inverted;
        DisablePosition();
        for (ds->First(); !ds->Eof(); ds->Next()) {
            const TBookmark bookmark = ds->GetBookmark();
            if (rows.IndexOf(bookmark) < 0)
                inverted.append(bookmark);
        }
        EnablePosition(true);
        rows.Clear();
        for (const TBookmark &bookmark : std::as_const(inverted))
            rows.AppendItem(bookmark);
        rows.Resort();
        NotifyRowSelect(saSelect);
    } else {
        for (int i = GetFixedCols(); i < d_->columns->Count(); ++i) {
            TQColumn *c = d_->columns->Items(i);
            if (!c->Showing())
                continue;
            if (SelectedCols().Contains(c))
                SelectedCols().Remove(c);
            else
                SelectedCols().Add(c);
        }
        NotifyRowSelect(saSelect);
    }
    EndSelect();
}

void TQCustomDBGrid::SelectRow()
{
    if (GetRowsSelection())
        SelectedRows().SetCurrentRowSelected(true);
}

void TQCustomDBGrid::UnselectRow()
{
    SelectedRows().SetCurrentRowSelected(false);
}

void TQCustomDBGrid::InvertRow()
{
    if (GetRowsSelection())
        SelectedRows().SetCurrentRowSelected(!SelectedRows().CurrentRowSelected());
}

void TQCustomDBGrid::selectRange(int how)
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds || !GetRowsSelection())
        return;
    if (d_->selectionAnchor.isEmpty() || !ds->BookmarkValid(d_->selectionAnchor)) {
        d_->selectionAnchor = ds->GetBookmark();
    }
    // Walk from the current row towards the anchor, whichever way it lies.
    const int step = CompareRows() > 0 ? -1 : 1;
    BeginSelect();
    DisablePosition();
    try {
        for (;;) {
            TQBookmarkList &rows = SelectedRows();
            const bool selected = rows.CurrentRowSelected();
            const bool wanted = how > 0 ? true : how < 0 ? false : !selected;
            if (selected != wanted)
                rows.SetCurrentRowSelected(wanted);
            if (ds->CompareBookmarks(ds->GetBookmark(), d_->selectionAnchor) == 0)
                break;
            if (DataLink()->MoveBy(step) == 0)
                break;
        }
    } catch (...) {
        EnablePosition(true);
        EndSelect();
        throw;
    }
    EnablePosition(true);
    EndSelect();
}

void TQCustomDBGrid::SelectRows() { selectRange(1); }
void TQCustomDBGrid::UnselectRows() { selectRange(-1); }
void TQCustomDBGrid::InvertRows() { selectRange(0); }

int TQCustomDBGrid::CompareRows() const
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds || d_->selectionAnchor.isEmpty())
        return 0;
    // The order on screen: positions when the data set numbers its records, else bookmarks.
    const int here = ds->RecNo();
    if (here > 0 && ds->BookmarkValid(d_->selectionAnchor)) {
        auto *self = const_cast<TQCustomDBGrid *>(this);
        self->DisablePosition();
        ds->GotoBookmark(d_->selectionAnchor);
        const int there = ds->RecNo();
        self->EnablePosition(true);
        return here < there ? -1 : here > there ? 1 : 0;
    }
    return ds->CompareBookmarks(ds->GetBookmark(), d_->selectionAnchor);
}

void TQCustomDBGrid::SaveSelection(const QString &name)
{
    TQBookmarkList &rows = SelectedRows();
    const QList<Variant> before = rows.SavedValues();
    rows.Save();
    d_->savedSelections.insert(name, rows.SavedValues());
    rows.SetSavedValues(before);
}

void TQCustomDBGrid::RestoreSelection(const QString &name)
{
    TQBookmarkList &rows = SelectedRows();
    const QList<Variant> before = rows.SavedValues();
    rows.SetSavedValues(d_->savedSelections.value(name));
    rows.Restore();
    rows.SetSavedValues(before);
}

namespace {

const QString KeptSelection = QStringLiteral("__kept");

} // namespace

KeptPlace::KeptPlace(TQCustomDBGrid *grid, const QString &keyFields, bool keepSelection)
    : grid_(grid), keyFields_(keyFields)
{
    TDataSet *ds = grid->DataSet();
    keys_ = ds && ds->Active() && !keyFields.isEmpty();
    for (const QString &name : keyFields.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        keys_ = keys_ && ds->FindField(name.trimmed());
    selection_ = keys_ && keepSelection;
    if (keys_ && !ds->IsEmpty())
        key_ = ds->FieldValues(keyFields);
    if (selection_)
        grid->SaveSelection(KeptSelection);
}

void KeptPlace::Restore()
{
    TDataSet *ds = grid_->DataSet();
    if (selection_)
        grid_->RestoreSelection(KeptSelection);
    if (keys_ && !key_.IsClear() && ds && ds->Active() && !ds->IsEmpty())
        ds->Locate(keyFields_, key_, {});
}

bool TQCustomDBGrid::IsColMultiSelected(const TQColumn *column) const
{
    return GetColsSelection() && SelectedCols().Contains(column);
}

bool TQCustomDBGrid::IsCellMultiSelected(const TQColumn *column) const
{
    const bool rowSelected = GetRowsSelection() && SelectedRows().Count() > 0 && SelectedRows().CurrentRowSelected();
    switch (d_->multiSelect) {
    case msRows: return rowSelected;
    case msCols: return IsColMultiSelected(column);
    case msCells: return rowSelected && IsColMultiSelected(column);
    default: return false;
    }
}

void TQCustomDBGrid::forEachCell(TDataRowEnum rows, TDataColEnum cols, const TForEachCellProc &proc)
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds || !proc)
        return;
    ds->CheckBrowseMode();
    const TQColRange columns(this, cols);
    if (columns.Count() == 0)
        return;
    DisablePosition();
    try {
        const TQRowRange range(this, rows);
        int visited = 0;
        for (auto it = range.begin(); it != range.end();) {
            // Whether this row is the last: known from the list, else by looking one ahead.
            TForEachCellFlags rowFlags;
            if (visited == 0)
                rowFlags += feFirstRow;
            bool last = range.CurrentOnly() || (range.FromSelection() && visited + 1 == SelectedRows().Count());
            if (!range.CurrentOnly() && !range.FromSelection()) {
                if (ds->RecNo() > 0) {
                    last = ds->RecNo() >= ds->RecordCount();
                } else {
                    ds->Next(); // at the last record this only sets EOF
                    last = ds->Eof();
                    if (!last)
                        ds->Prior();
                }
            }
            if (last)
                rowFlags += feLastRow;
            int c = 0;
            for (TQColumn *column : columns) {
                TForEachCellFlags flags = rowFlags;
                if (c == 0)
                    flags += feFirstCol;
                if (c == columns.Count() - 1)
                    flags += feLastCol;
                proc(column, flags);
                ++c;
            }
            ++visited;
            ++it;
        }
    } catch (...) {
        EnablePosition(true);
        throw;
    }
    EnablePosition(true);
}

void TQCustomDBGrid::ForEachDataCell(TForEachCellScope scope, const TForEachCellProc &proc)
{
    switch (scope) {
    case fsWholeDataSet: forEachCell(reAllRows, ceAllCols, proc); break;
    case fsSelectedOnly:
        // A kind of selection that is off does not narrow its side.
        forEachCell(GetRowsSelection() ? reSelectedRows : reAllRows, GetColsSelection() ? ceSelectedCols : ceAllCols, proc);
        break;
    case fsAutoSelect:
        forEachCell(GetRowsSelection() ? reSelectedRowsOrAllRows : reAllRows,
                    GetColsSelection() ? ceSelectedColsOrAllCols : ceAllCols, proc);
        break;
    }
}

void TQCustomDBGrid::ForEachDataRow(TDataRowEnum rows, const TForEachCellProc &proc)
{
    forEachCell(rows, ceCurrentCol, proc);
}

void TQCustomDBGrid::ForEachDataCol(TDataColEnum cols, const TForEachCellProc &proc)
{
    forEachCell(reCurrentRow, cols, proc);
}

void TQCustomDBGrid::holdingPosition(const std::function<void()> &change)
{
    DisablePosition();
    try {
        change();
    } catch (...) {
        EnablePosition(false);
        if (DataSet() && DataSet()->Active())
            DataChanged();
        throw;
    }
    EnablePosition(false);
}

} // namespace qdb
