#include "QDBGridSelection.h"
#include "QDBGrid.h"

#include "platform/db/DBConsts.h"
#include "platform/rtl/Exceptions.h"

#include <algorithm>

namespace qdb {

namespace {

QString keyFieldsBlank()
{
    return QCoreApplication::translate("QDBGrids", "KeyFields property cannot be blank");
}

} // namespace

// ---- TQBookmarkList ----

TDataSet *TQBookmarkList::dataSet() const
{
    return grid_->DataLink()->Active() ? grid_->DataSet() : nullptr;
}

int TQBookmarkList::Compare(const TBookmark &a, const TBookmark &b) const
{
    TDataSet *ds = grid_->DataSet();
    return ds ? ds->CompareBookmarks(a, b) : (a < b ? -1 : b < a ? 1 : 0);
}

void TQBookmarkList::noteOrder() const
{
    const TDataSet *ds = grid_->DataSet();
    orderOf_ = ds;
    orderVersion_ = ds ? ds->OrderVersion() : 0;
}

void TQBookmarkList::syncOrder() const
{
    const TDataSet *ds = grid_->DataSet();
    if (items_.isEmpty() || !ds || (ds == orderOf_ && ds->OrderVersion() == orderVersion_))
        return;
    sortItems();
}

void TQBookmarkList::sortItems() const
{
    // The version is taken first: the comparisons may read rows, never reorder them.
    noteOrder();
    forget();
    auto less = [this](const TBookmark &a, const TBookmark &b) { return Compare(a, b) < 0; };
    // A merge sort stays within bounds even if a data set's comparison were inconsistent.
    if (!std::is_sorted(items_.cbegin(), items_.cend(), less))
        std::stable_sort(items_.begin(), items_.end(), less);
    // Two bookmarks of one record (taken before and after a new reading of a SQL result)
    // are one selected row.
    TDataSet *ds = grid_->DataSet();
    for (int i = int(items_.size()) - 1; i > 0; --i)
        if (Compare(items_[i - 1], items_[i]) == 0 && ds->BookmarkValid(items_[i]))
            items_.removeAt(i);
}

bool TQBookmarkList::Find(const TBookmark &bookmark, int &index) const
{
    syncOrder();
    if (cacheIndex_ >= 0 && cacheIndex_ <= Count() && bookmark == cacheBookmark_) {
        index = cacheIndex_;
        return cacheFound_;
    }
    int low = 0, high = Count() - 1;
    bool found = false;
    while (low <= high) {
        const int mid = int((unsigned(low) + unsigned(high)) / 2);
        const int c = Compare(items_[mid], bookmark);
        if (c < 0) {
            low = mid + 1;
        } else {
            high = mid - 1;
            if (c == 0) {
                found = true;
                low = mid;
            }
        }
    }
    index = low;
    cacheBookmark_ = bookmark;
    cacheIndex_ = low;
    cacheFound_ = found;
    return found;
}

int TQBookmarkList::IndexOf(const TBookmark &bookmark) const
{
    int index = -1;
    return Find(bookmark, index) ? index : -1;
}

TBookmark TQBookmarkList::CurrentRow() const
{
    TDataSet *ds = dataSet();
    return ds ? ds->GetBookmark() : TBookmark();
}

void TQBookmarkList::SetCurrentRow(const TBookmark &bookmark)
{
    if (TDataSet *ds = dataSet())
        ds->GotoBookmark(bookmark);
}

bool TQBookmarkList::CurrentRowSelected() const
{
    const TBookmark current = CurrentRow();
    int index = 0;
    return !current.isEmpty() && Find(current, index);
}

void TQBookmarkList::SetCurrentRowSelected(bool selected)
{
    const TBookmark current = CurrentRow();
    int index = 0;
    if (current.isEmpty() || Find(current, index) == selected)
        return;
    grid_->BeginSelect();
    if (selected)
        InsertItem(index, current);
    else
        DeleteItem(index);
    grid_->InvalidateCurrentRow();
    grid_->NotifyRowSelect(selected ? saSelect : saUnselect);
    grid_->EndSelect();
}

void TQBookmarkList::InsertItem(int index, const TBookmark &bookmark)
{
    if (items_.isEmpty())
        noteOrder();
    items_.insert(index, bookmark);
    forget();
}

void TQBookmarkList::DeleteItem(int index)
{
    items_.removeAt(index);
    forget();
}

void TQBookmarkList::AppendItem(const TBookmark &bookmark)
{
    if (items_.isEmpty())
        noteOrder();
    items_.append(bookmark);
    forget();
}

void TQBookmarkList::Resort()
{
    sortItems();
}

void TQBookmarkList::Clear()
{
    if (items_.isEmpty())
        return;
    items_.clear();
    forget();
    grid_->InvalidateGrid();
}

bool TQBookmarkList::Refresh()
{
    TDataSet *ds = dataSet();
    if (!ds)
        return false;
    grid_->BeginSelect();
    ds->CheckBrowseMode();
    bool dropped = false;
    for (int i = Count() - 1; i >= 0; --i)
        if (!ds->BookmarkValid(items_[i])) {
            items_.removeAt(i);
            dropped = true;
        }
    ds->UpdateCursorPos();
    if (dropped) {
        forget();
        grid_->InvalidateGrid();
        grid_->NotifyRowSelect(saRefresh);
        grid_->EndSelect();
    } else {
        grid_->CancelSelect();
    }
    return dropped;
}

void TQBookmarkList::Delete()
{
    TDataSet *ds = dataSet();
    if (!ds)
        return;
    grid_->BeginSelect();
    bool deleted = false;
    ds->DisableControls();
    try {
        for (int i = Count() - 1; i >= 0; --i) {
            ds->GotoBookmark(items_[i]);
            ds->Delete();
            items_.removeAt(i);
            deleted = true;
        }
    } catch (...) {
        forget();
        ds->EnableControls();
        grid_->EndSelect();
        throw;
    }
    forget();
    ds->EnableControls();
    if (deleted) {
        grid_->NotifyRowSelect(saDelete);
        grid_->EndSelect();
        grid_->UpdateTreeView(false);
        grid_->UpdateListItems(true);
        grid_->UpdateSequence(true);
    } else {
        grid_->CancelSelect();
    }
}

QString TQBookmarkList::keyFieldsFor(const QString &keyFields) const
{
    TDataSet *ds = grid_->DataSet();
    if (!ds || !ds->Active())
        throw EDatabaseError(DBConsts::SDataSetClosed());
    const QString keys = keyFields.isEmpty() ? grid_->GetKeyFields() : keyFields;
    if (keys.isEmpty())
        throw EDatabaseError(keyFieldsBlank());
    return keys;
}

void TQBookmarkList::Save(const QString &keyFields)
{
    const QString keys = keyFieldsFor(keyFields);
    TDataSet *ds = grid_->DataSet();
    ds->CheckBrowseMode();
    QList<Variant> values;
    values.reserve(Count());
    grid_->DisablePosition();
    try {
        for (const TBookmark &bookmark : std::as_const(items_)) {
            ds->GotoBookmark(bookmark);
            values.append(ds->FieldValues(keys));
        }
    } catch (...) {
        grid_->EnablePosition(true);
        throw;
    }
    grid_->EnablePosition(true);
    saved_ = values;
}

void TQBookmarkList::Restore(const QString &keyFields)
{
    const QString keys = keyFieldsFor(keyFields);
    TDataSet *ds = grid_->DataSet();
    ds->CheckBrowseMode();
    grid_->BeginSelect();
    items_.clear();
    forget();
    if (!saved_.isEmpty()) {
        grid_->DisablePosition();
        try {
            for (const Variant &value : std::as_const(saved_))
                if (ds->Locate(keys, value, {})) {
                    int index = 0;
                    if (!Find(ds->GetBookmark(), index))
                        InsertItem(index, ds->GetBookmark());
                }
        } catch (...) {
            grid_->EnablePosition(true);
            grid_->EndSelect();
            throw;
        }
        grid_->EnablePosition(true);
    }
    grid_->InvalidateGrid();
    grid_->NotifyRowSelect(saRefresh);
    grid_->EndSelect();
}

void TQBookmarkList::LinkActive(bool active)
{
    linkActive_ = active;
    if (!active) {
        items_.clear();
        forget();
    }
}

void TQBookmarkList::DataChanged()
{
    // Records deleted by other means leave their bookmarks behind.
    if (linkActive_ && !items_.isEmpty() && dataSet() && dataSet()->State() == dsBrowse)
        Refresh();
}

TQBookmarkList::Enumerator::Enumerator(const TQBookmarkList *list, int index) : list_(list), index_(index)
{
    if (index_ < list_->Count())
        go();
}

TQBookmarkList::Enumerator &TQBookmarkList::Enumerator::operator++()
{
    if (++index_ < list_->Count())
        go();
    return *this;
}

void TQBookmarkList::Enumerator::go() const
{
    if (TDataSet *ds = list_->dataSet())
        ds->GotoBookmark(list_->Items(index_));
}

// ---- TQColumnList ----

int TQColumnList::Count() const
{
    return int(columns_.size());
}

TQColumn *TQColumnList::Items(int index) const
{
    return columns_.at(index);
}

bool TQColumnList::Contains(const TQColumn *column) const
{
    for (const QPointer<TQColumn> &c : columns_)
        if (c == column)
            return true;
    return false;
}

void TQColumnList::Add(TQColumn *column)
{
    if (!column || Contains(column))
        return;
    auto at = std::find_if(columns_.begin(), columns_.end(),
                           [column](const QPointer<TQColumn> &c) { return c && c->Index() > column->Index(); });
    columns_.insert(at, column);
    grid_->InvalidateGrid();
}

void TQColumnList::Remove(TQColumn *column)
{
    if (columns_.removeAll(column) > 0)
        grid_->InvalidateGrid();
}

void TQColumnList::Clear()
{
    if (columns_.isEmpty())
        return;
    columns_.clear();
    grid_->InvalidateGrid();
}

bool TQColumnList::NeedRefresh() const
{
    for (int i = 0; i < columns_.size(); ++i)
        if (!columns_[i] || (i > 0 && columns_[i - 1] && columns_[i - 1]->Index() > columns_[i]->Index()))
            return true;
    return false;
}

void TQColumnList::RefreshList()
{
    columns_.removeAll(nullptr);
    std::sort(columns_.begin(), columns_.end(),
              [](const QPointer<TQColumn> &a, const QPointer<TQColumn> &b) { return a->Index() < b->Index(); });
}

TQColumnList::Enumerator TQColumnList::begin() const
{
    const_cast<TQColumnList *>(this)->AutoRefresh();
    return Enumerator(this, 0);
}

void TQColumnList::Save()
{
    AutoRefresh();
    saved_.clear();
    for (const QPointer<TQColumn> &c : std::as_const(columns_))
        saved_ << c->GetFieldName();
}

void TQColumnList::Restore()
{
    columns_.clear();
    for (const QString &name : std::as_const(saved_))
        if (TQColumn *c = grid_->GetColumns()->FindColumn(name))
            Add(c);
    grid_->InvalidateGrid();
}

// ---- ranges ----

TQRowRange::TQRowRange(TQCustomDBGrid *grid, TDataRowEnum rows) : grid_(grid)
{
    const bool any = grid->SelectedRows().Count() > 0;
    switch (rows) {
    case reSelectedRows: fromSelection_ = true; break;
    case reSelectedRowsOrAllRows: fromSelection_ = any; break;
    case reSelectedRowsOrCurrent:
        fromSelection_ = any;
        currentOnly_ = !any;
        break;
    case reCurrentRow: currentOnly_ = true; break;
    case reAllRows: break;
    }
}

TQRowRange::Enumerator::Enumerator(const TQRowRange *range, bool atEnd) : range_(range)
{
    TDataSet *ds = range->grid_->DataLink()->Active() ? range->grid_->DataSet() : nullptr;
    if (atEnd || !ds || ds->IsEmpty())
        return;
    const TQBookmarkList &list = range->grid_->SelectedRows();
    if (range->fromSelection_) {
        done_ = list.Count() == 0;
        if (!done_)
            ds->GotoBookmark(list.Items(0));
    } else if (range->currentOnly_) {
        done_ = false;
    } else {
        ds->First();
        done_ = ds->Eof();
    }
}

TBookmark TQRowRange::Enumerator::operator*() const
{
    return range_->grid_->DataSet()->GetBookmark();
}

TQRowRange::Enumerator &TQRowRange::Enumerator::operator++()
{
    TDataSet *ds = range_->grid_->DataSet();
    ++index_;
    if (range_->fromSelection_) {
        const TQBookmarkList &list = range_->grid_->SelectedRows();
        done_ = index_ >= list.Count();
        if (!done_)
            ds->GotoBookmark(list.Items(index_));
    } else if (range_->currentOnly_) {
        done_ = true;
    } else {
        ds->Next();
        done_ = ds->Eof();
    }
    return *this;
}

TQColRange::TQColRange(TQCustomDBGrid *grid, TDataColEnum cols)
{
    TQColumnList &list = grid->SelectedCols();
    list.AutoRefresh();
    TQColumn *current = grid->ColumnAt(grid->Col());
    const bool any = list.Count() > 0;
    auto all = [&] {
        for (TQColumn *c : grid->ShowingColumns())
            columns_.append(c);
    };
    auto selected = [&] {
        for (TQColumn *c : list)
            columns_.append(c);
    };
    switch (cols) {
    case ceAllCols: all(); break;
    case ceSelectedCols: selected(); break;
    case ceSelectedColsOrAllCols: any ? selected() : all(); break;
    case ceSelectedColsOrCurrent:
        if (any)
            selected();
        else if (current)
            columns_.append(current);
        break;
    case ceCurrentCol:
        if (current)
            columns_.append(current);
        break;
    }
}

} // namespace qdb
