#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "filter/QDBFilterForm.h"
#include "filter/QDBFilterList.h"
#include "filter/QDBGridFilter.h"
#include "platform/rtl/Strings.h"

#include <optional>

namespace qdb {

TQDBGridFilter *TQCustomDBGrid::GetFilterGrid() const
{
    if (!d_->filter)
        d_->filter = new TQDBGridFilter(const_cast<TQCustomDBGrid *>(this));
    return d_->filter;
}

TFilterRecordEvent TQCustomDBGrid::FilterRecordMethod()
{
    return TFilterRecordEvent([this](TDataSet *ds, bool &accept) { FilterRecord(ds, accept); }, d_.get());
}

bool TQCustomDBGrid::HasFilterButton(const TQColumn *column) const
{
    const TQDBGridFilter *f = GetFilterGrid();
    return f->GetAutoFilter() && !f->GetAutoFilters().IsEmpty() && column && column->GetTitle()->GetAutoFilter()
        && !column->GetTitle()->GetAutoFilters().IsEmpty() && column->GetField();
}

TQColumn *TQCustomDBGrid::FilterButtonAt(const QPoint &point) const
{
    for (auto it = d_->filterButtons.crbegin(); it != d_->filterButtons.crend(); ++it)
        if (it->first && it->second.contains(point) && HasFilterButton(it->first))
            return it->first;
    return nullptr;
}

void TQCustomDBGrid::ShowAutoFilter(TQColumn *column)
{
    if (!HasFilterButton(column))
        return;
    delete d_->filterList.data();
    const TFilterStyles styles = GetFilterGrid()->GetAutoFilters() * column->GetTitle()->GetAutoFilters();
    if (!styles.Contains(fsFilterList)) {
        ShowFilterForm(column);
        return;
    }
    auto *list = new TQDBGridFilterList(this, column);
    d_->filterList = list;
    list->OnShowFilterForm = [this](TQColumn *c) { ShowFilterForm(c); };
    // The list hangs under the column's title, as wide as the column at least.
    QRect cell;
    for (const auto &[shown, button] : d_->filterButtons)
        if (shown == column)
            cell = CellRect(MouseCoord(button.center().x(), button.center().y()).x(), 0);
    list->SetBounds(QRect(cell.left(), 0, cell.width(), RowAxis().FixedExtent()));
    list->OnCloseUp = [list](QObject *, bool) { list->deleteLater(); };
    showingErrors([&] { list->DropDown(); });
}

void TQCustomDBGrid::ShowFilterForm(TQColumn *column)
{
    if (OnShowFilterForm) {
        OnShowFilterForm(column);
        return;
    }
    // Modal to the grid's window, without holding up the caller.
    auto *form = new TQDBGridFilterForm(window());
    form->setAttribute(Qt::WA_DeleteOnClose);
    form->setWindowModality(Qt::WindowModal);
    showingErrors([&] { form->CreateControls(column); });
    form->open();
}

void TQCustomDBGrid::InvalidateTitles()
{
    if (TitleOffset() > 0)
        viewport()->update(QRect(0, 0, viewport()->width(), RowAxis().FixedExtent()));
}

void TQCustomDBGrid::FilterChanged()
{
    UpdateFilter();
    InvalidateTitles();
}

void TQCustomDBGrid::FilterUpdated()
{
    Fire(OnFilterUpdated, this);
}

// ---- the application's filter ----

QString TQCustomDBGrid::GetFilter() const
{
    TDataSet *ds = DataSet();
    return GetFilterGrid()->Installed() || IsLoading() || !ds ? d_->savedFilter : ds->Filter();
}

bool TQCustomDBGrid::GetFiltered() const
{
    TDataSet *ds = DataSet();
    return GetFilterGrid()->Installed() || IsLoading() || !ds ? d_->savedFiltered : ds->Filtered();
}

TFilterRecordEvent TQCustomDBGrid::GetFilterRecord() const
{
    TDataSet *ds = DataSet();
    return GetFilterGrid()->Installed() || IsLoading() || !ds ? d_->savedFilterRecord : ds->OnFilterRecord();
}

void TQCustomDBGrid::SetFilter(const QString &filter)
{
    if (!GetFilterGrid()->Installed() && !IsLoading() && DataSet()) {
        ChangeDataSetFilter(GetFiltered(), filter, GetFilterRecord(), QString());
        return;
    }
    d_->savedFilter = filter;
    UpdateFilter();
}

void TQCustomDBGrid::SetFiltered(bool on)
{
    if (!GetFilterGrid()->Installed() && !IsLoading() && DataSet()) {
        ChangeDataSetFilter(on, GetFilter(), GetFilterRecord(), QString());
        return;
    }
    d_->savedFiltered = on;
    UpdateFilter();
}

void TQCustomDBGrid::SetFilterRecord(const TFilterRecordEvent &handler)
{
    if (!GetFilterGrid()->Installed() && !IsLoading() && DataSet()) {
        ChangeDataSetFilter(GetFiltered(), GetFilter(), handler, QString());
        return;
    }
    d_->savedFilterRecord = handler;
    UpdateFilter();
}

// ---- installing ----

void TQCustomDBGrid::UpdateFilter()
{
    if (IsLoading() || d_->destroying)
        return;
    TQDBGridFilter *filter = GetFilterGrid();
    TDataSet *ds = DataSet();
    // The search panel's row filter works through the record handler too.
    const bool rowFilters = GetSearch()->GetFilterActive();
    if (!rowFilters && (!filter->GetAutoUpdate() || !d_->link->Active() || filter->FilterColumns().isEmpty())) {
        if (!filter->Installed())
            return;
        filter->SetInstalled(false);
        const QString savedFilter = std::exchange(d_->savedFilter, QString());
        const bool savedFiltered = std::exchange(d_->savedFiltered, false);
        const TFilterRecordEvent savedHandler = std::exchange(d_->savedFilterRecord, TFilterRecordEvent());
        if (ds)
            ds->SetFilterRecordMatch({});
        ChangeDataSetFilter(savedFiltered, savedFilter, savedHandler, QString());
        FilterUpdated();
        return;
    }
    const TFilterRecordEvent handler = FilterRecordMethod();
    if (!filter->Installed()) {
        filter->SetInstalled(true);
        if (!d_->savedFiltered && d_->savedFilter.isEmpty() && !d_->savedFilterRecord && ds
            && !(ds->OnFilterRecord() == handler)) {
            d_->savedFilter = ds->Filter();
            d_->savedFilterRecord = ds->OnFilterRecord();
            d_->savedFiltered = ds->Filtered() && (!d_->savedFilter.isEmpty() || bool(d_->savedFilterRecord));
        }
    }
    if (ds) {
        // The ticked values and the searched text, for a data set that can look for them
        // itself; not when the application's handler must see each record.
        TFilterRecordMatch match;
        if (!(d_->savedFiltered && d_->savedFilterRecord)) {
            match.Handler = handler;
            for (TQColumn *column : filter->FilterColumns()) {
                TField *f = column ? column->FilterField() : nullptr;
                if (f && column->GetFilterList()->Count() > 0)
                    match.Items << TFieldTextMatch{f->FieldName(), column->GetFilterList()->ToStringList()};
            }
            if (rowFilters && !describeSearch(GetSearch()->GetText(), GetSearch()->GetOptions(), match.Search))
                match = TFilterRecordMatch();
        }
        ds->SetFilterRecordMatch(match);
    }
    ChangeDataSetFilter(true, filter->GetFullFilter(), handler, QString());
    FilterUpdated();
}

void TQCustomDBGrid::ChangeDataSetFilter(bool filtered, const QString &filter, const TFilterRecordEvent &onFilterRecord,
                                         const QString &keyFieldName)
{
    TDataSet *ds = DataSet();
    if (!ds)
        return;
    if (!ds->Active() || IsLoading()) {
        const TBookmark bookmark = ds->Active() ? ds->GetBookmark() : TBookmark();
        ds->SetOnFilterRecord(onFilterRecord);
        ds->SetFilter(filter);
        ds->SetFiltered(filtered);
        if (!bookmark.isEmpty() && ds->BookmarkValid(bookmark))
            ds->GotoBookmark(bookmark);
        return;
    }
    if (!ds->Filtered() && !filtered && filter == ds->Filter() && onFilterRecord == ds->OnFilterRecord())
        return;
    holdingPosition([&] {
        std::optional<KeptPlace> place;
        auto comeBack = [&] {
            if (place)
                place->Restore();
        };
        place.emplace(this, keyFieldName.isEmpty() ? GetKeyFields() : keyFieldName, GetRowsSelection());
        ClearSelection();
        try {
            ds->SetFilterState(filtered, filter, onFilterRecord);
        } catch (...) {
            try {
                comeBack();
            } catch (...) {
            }
            throw;
        }
        comeBack();
    });
    DataChanged();
}

void TQCustomDBGrid::FilterRecord(TDataSet *dataSet, bool &accept)
{
    Q_UNUSED(dataSet);
    accept = false;
    for (TQColumn *column : GetFilterGrid()->FilterColumns()) {
        if (!column)
            continue;
        auto *ticked = static_cast<TStringList *>(column->GetFilterList());
        if (ticked->Count() == 0)
            continue;
        TField *f = column->FilterField();
        if (!f)
            continue;
        int index;
        if (!ticked->Find(f->Text(), index))
            return;
    }
    if (GetSearch()->GetFilterActive() && !GetSearch()->MatchesRecord())
        return;
    accept = true;
    if (GetFilterGrid()->Installed() && d_->savedFiltered && d_->savedFilterRecord)
        d_->savedFilterRecord(dataSet, accept);
}

} // namespace qdb
