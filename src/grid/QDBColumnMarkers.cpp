// Sort markers: the titles' direction and level, and the collection's list of sorted
// columns whose order is the sort order.

#include "QDBColumns.h"
#include "QDBGrid.h"

namespace qdb {

namespace {

TMarker markerOf(int index)
{
    return index < 0 ? tmNone : (index & 1) ? tmDescend : tmAscend;
}

} // namespace

int TQColumnTitle::OrderIndex() const
{
    auto *columns = qobject_cast<TQDBGridColumns *>(column_->Collection());
    return columns ? int(columns->MarkerList().indexOf(column_)) : -1;
}

void TQColumnTitle::SetMarkerIndex(int value)
{
    if (value == markerIndex_)
        return;
    auto *columns = qobject_cast<TQDBGridColumns *>(column_->Collection());
    TQCustomDBGrid *grid = column_->GetGrid();
    if (!columns || !grid) {
        markerIndex_ = value;
        marker_ = markerOf(value);
        return;
    }
    WithOrderUpdate(grid, [&] {
        const TQDBGridOptions options = grid->GetOptions();
        if (options.Contains(dgMarkerAscendOnly) && value >= 0)
            value &= ~1;
        if (value >= 0) {
            if (OrderIndex() < 0) {
                if (columns->MarkerList().size() >= TQDBGridColumns::MaxMarkers)
                    return; // a tenth level is not taken
                columns->AddMarker(column_);
            }
            const int descending = value & 1;
            if (options.Contains(dgMarkerAutoSwitch))
                value = descending;
            else if (options.Contains(dgMarkerAutoToggle))
                value = 2 * OrderIndex() + 2 + descending;
        } else if (OrderIndex() >= 0) {
            columns->RemoveMarker(column_);
            if (!options.Contains(dgMarkerAutoSwitch))
                columns->UpdateMarkers();
        }
        markerIndex_ = value;
        marker_ = markerOf(value);
        column_->changed();
    });
}

void TQColumnTitle::SetMarker(TMarker value)
{
    if (value == tmNone) {
        SetMarkerIndex(-1);
        return;
    }
    auto *columns = qobject_cast<TQDBGridColumns *>(column_->Collection());
    int level = OrderIndex();
    if (level < 0)
        level = columns ? int(columns->MarkerList().size()) : 0;
    SetMarkerIndex(2 * level + 2 + (value == tmDescend ? 1 : 0));
}

void TQColumnTitle::ToggleMarker(bool reset)
{
    auto *columns = qobject_cast<TQDBGridColumns *>(column_->Collection());
    TQCustomDBGrid *grid = column_->GetGrid();
    if (!columns || !grid)
        return;
    WithOrderUpdate(grid, [&] { toggle(reset); });
}

void TQColumnTitle::toggle(bool reset)
{
    auto *columns = qobject_cast<TQDBGridColumns *>(column_->Collection());
    TQCustomDBGrid *grid = column_->GetGrid();
    const TQDBGridOptions options = grid->GetOptions();
    const bool ascendOnly = options.Contains(dgMarkerAscendOnly);
    bool descending = false;
    if (reset || options.Contains(dgMarkerAutoSwitch)) {
        descending = marker_ == tmAscend && !ascendOnly;
        const int position = OrderIndex();
        columns->RemoveMarkers();
        if (grid->GetOptionsExt().Contains(dgMarkerClearAllowed) && options.Contains(dgMarkerAutoSwitch) && !descending
            && position == 0)
            return; // the only sort column clicked off
    }
    if (!column_->GetField() || !column_->Sortable())
        return;
    const int position = OrderIndex();
    const int count = int(columns->MarkerList().size());
    if (position < 0) {
        if (count < TQDBGridColumns::MaxMarkers)
            SetMarkerIndex(2 * count + 2 + (descending ? 1 : 0));
    } else if (marker_ == tmAscend && !ascendOnly) {
        SetMarker(tmDescend);
    } else if (position == count - 1 && (count > 1 || grid->GetOptionsExt().Contains(dgMarkerClearAllowed))) {
        SetMarker(tmNone);
    } else {
        SetMarker(tmAscend);
    }
}

void TQDBGridColumns::AddMarker(TQColumn *column)
{
    if (!markers_.contains(column) && markers_.size() < MaxMarkers)
        markers_.append(column);
}

void TQDBGridColumns::RemoveMarker(TQColumn *column)
{
    markers_.removeAll(column);
}

void TQDBGridColumns::RemoveMarkers()
{
    const QList<TQColumn *> sorted = markers_;
    markers_.clear();
    for (TQColumn *c : sorted)
        c->GetTitle()->SetMarkerIndex(-1);
}

void TQDBGridColumns::UpdateMarkers()
{
    for (int i = 0; i < markers_.size(); ++i) {
        TQColumnTitle *title = markers_[i]->GetTitle();
        if (title->GetMarkerIndex() >= 2)
            title->renumber(2 * i + 2 + (title->GetMarkerIndex() & 1));
    }
}

void TQDBGridColumns::Notify(TCollectionItem *item, TCollectionNotification action)
{
    // A column on its way out may be half destroyed: compared as an item, never cast.
    if (action != TCollectionNotification::cnAdded)
        markers_.removeIf([item](TQColumn *c) { return static_cast<TCollectionItem *>(c) == item; });
    TCollectionOf<TQColumn>::Notify(item, action);
}

} // namespace qdb
