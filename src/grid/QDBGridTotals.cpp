// The totals calculation: three passes (reset, each record, final) over every column's
// sections, asked for after changes and delayed so that a burst of them costs one.

#include "QDBGridTotals.h"
#include "QDBGridPrivate.h"

#include <QScopeGuard>

namespace qdb {

void TQTotalDataLink::ActiveChanged()
{
    changed();
    grid_->UpdateTotalFieldRows();
    grid_->UpdateTotals(true);
}

void TQTotalDataLink::DataSetChanged()
{
    // A jump of the cursor sends the same event as new data: only the latter is worth a
    // calculation. The order counts too: first and last values follow it.
    if (changed())
        grid_->UpdateTotals(true);
    grid_->UpdateTotalFieldRows(); // emptied or filled
    if (grid_->Totals()->ShowsRecordValues())
        grid_->InvalidateGrid();
}

bool TQTotalDataLink::changed()
{
    TDataSet *ds = DataSet();
    const quint64 data = ds ? ds->DataVersion() : 0, order = ds ? ds->OrderVersion() : 0;
    const bool moved = data != dataVersion_ || order != orderVersion_;
    dataVersion_ = data;
    orderVersion_ = order;
    return moved;
}

void TQTotalDataLink::DataSetScrolled(int)
{
    if (grid_->Totals()->ShowsRecordValues())
        grid_->InvalidateGrid();
}

void TQTotalDataLink::RecordChanged(TField *)
{
    if (grid_->Totals()->ShowsRecordValues())
        grid_->InvalidateGrid();
}

TQDBGridTotals::TQDBGridTotals(TQCustomDBGrid *grid)
    : QObject(grid), grid_(grid), link_(std::make_unique<TQTotalDataLink>(grid))
{
}

TQDBGridTotals::~TQDBGridTotals()
{
    link_->SetDataSource(nullptr);
}

void TQDBGridTotals::ForEach(const SectionProc &proc) const
{
    TQDBGridColumns *columns = grid_->GetColumns();
    for (int c = 0; c < columns->Count(); ++c) {
        TQColumn *column = columns->Items(c);
        proc(column->GetTotalHeader(), Header, -1);
        TQColumnTotalValues *values = column->GetTotalValues();
        for (int i = 0; i < values->Count(); ++i)
            proc(values->Items(i), Values, i);
        proc(column->GetTotalFooter(), Footer, values->Count());
    }
}

bool TQDBGridTotals::HasCalcValues() const
{
    bool any = false;
    ForEach([&any](TQColumnTotalValue *total, Section, int) { any = any || total->GetTotalResult() == trCalcValue; });
    return any;
}

bool TQDBGridTotals::ShowsRecordValues() const
{
    if (!RowsShown())
        return false;
    if (grid_->TotalFieldRowCount() > 0) // the record's own fields
        return true;
    bool any = false;
    ForEach([&any](TQColumnTotalValue *total, Section, int) {
        any = any || total->GetTotalResult() == trDataField || total->GetTotalResult() == trTotalField;
    });
    return any;
}

bool TQDBGridTotals::RowsShown() const
{
    const TQDBGridOptionsEx ex = grid_->GetOptionsEx();
    return ex.Contains(dgTotalHeader) || ex.Contains(dgTotalValues) || ex.Contains(dgTotalFields)
        || ex.Contains(dgTotalFooter);
}

bool TQDBGridTotals::TakesPart(Section section, bool selected) const
{
    static constexpr TQDBGridOptionEx shown[] = {dgTotalHeader, dgTotalValues, dgTotalFooter};
    const TQDBGridOptionsEx ex = grid_->GetOptionsEx();
    if (!ex.Contains(shown[section]) && !ex.Contains(dgCalcInvisibleRows))
        return false;
    return !selected || OverSelectedRows(section);
}

bool TQDBGridTotals::OverSelectedRows(Section section) const
{
    static constexpr TQDBGridOptionEx options[] = {dgTotalHeaderSelected, dgTotalValuesSelected, dgTotalFooterSelected};
    return grid_->GetOptionsEx().Contains(options[section]);
}

TQColumnTotalValue *TQDBGridTotals::SectionAt(TQColumn *column, int index)
{
    if (!column)
        return nullptr;
    const int values = column->GetTotalValues()->Count();
    if (index == -1)
        return column->GetTotalHeader();
    if (index >= 0 && index < values)
        return column->GetTotalValues()->Items(index);
    return index == values ? column->GetTotalFooter() : nullptr;
}

int TQDBGridTotals::IndexOf(TQColumnTotalValue *total)
{
    TQColumn *column = total ? total->Column() : nullptr;
    if (!column || total == column->GetTotalHeader())
        return -1;
    if (total == column->GetTotalFooter())
        return column->GetTotalValues()->Count();
    return total->Index();
}

void TQDBGridTotals::TotalsChanged()
{
    grid_->UpdateTotals(true);
}

void TQDBGridTotals::SelectionChanged()
{
    const TQDBGridOptionsEx ex = grid_->GetOptionsEx();
    if (ex.Contains(dgCalcSelectedRows) || ex.Contains(dgTotalHeaderSelected) || ex.Contains(dgTotalValuesSelected)
        || ex.Contains(dgTotalFooterSelected))
        grid_->UpdateTotals(true);
}

void TQDBGridTotals::Delay(int milliseconds)
{
    // A new timer each time: the burst ends when none has come for the whole delay.
    StopWaiting();
    timer_ = new QTimer(this);
    timer_->setSingleShot(true);
    connect(timer_, &QTimer::timeout, this, [this] { grid_->DelayUpdateTotals(timer_); });
    timer_->start(milliseconds);
}

void TQDBGridTotals::StopWaiting()
{
    if (timer_) {
        timer_->stop();
        timer_->deleteLater();
        timer_ = nullptr;
    }
}

// ---- the grid's side ----

TQDBGridTotals *TQCustomDBGrid::Totals() const
{
    return d_->totals;
}

bool TQCustomDBGrid::CalculatingSelectedRows() const
{
    return d_->totals->selectedRecords_;
}

bool TQCustomDBGrid::DoCalcValues(TCalcPass pass, bool selected)
{
    if (pass == cpCalcRec && OnTotalCalcQuery) {
        bool accept = true;
        OnTotalCalcQuery(this, DataSet(), accept);
        if (!accept)
            return false;
    }
    // The sections taking part are found at the reset; each record only goes through them.
    TQDBGridTotals *totals = d_->totals;
    if (pass == cpReset || totals->parts_.empty() || totals->partsSelected_ != selected) {
        totals->parts_.clear();
        totals->partsSelected_ = selected;
        totals->ForEach([&](TQColumnTotalValue *total, TQDBGridTotals::Section section, int) {
            if (totals->TakesPart(section, selected))
                totals->parts_.push_back({total, !selected && totals->OverSelectedRows(section)});
        });
    }
    int rowSelected = -1; // looked up once, for the first section that asks
    bool any = false;
    for (const TQDBGridTotals::Part &part : totals->parts_) {
        // In a calculation of every record, a section over the selected rows takes those only.
        if (pass == cpCalcRec && part.overSelected && !CalculatingSelectedRows()) {
            if (rowSelected < 0)
                rowSelected = SelectedRows().CurrentRowSelected() ? 1 : 0;
            if (rowSelected == 0)
                continue;
        }
        any = part.total->DoCalcValue(pass) || any;
    }
    return any;
}

void TQCustomDBGrid::UpdateCalcValues(bool selected)
{
    TQDBGridTotals *totals = d_->totals;
    if (totals->calculating_ > 0)
        return;
    TDataSet *ds = DataSet();
    if (ds && ds->Active() && ds->State() != dsBrowse)
        return; // an edit in progress: the figures wait for it to end
    if (!totals->HasCalcValues())
        return;
    ++totals->calculating_;
    ++totals->calculations_;
    const auto done = qScopeGuard([totals] {
        --totals->calculating_;
        totals->selectedRecords_ = false;
    });
    totals->selectedRecords_ = false;
    if (DoCalcValues(cpReset, selected) && ds && DataLink()->Active() && !ds->IsEmpty()) {
        ds->CheckBrowseMode();
        SelectedRows().Refresh();
        const TQDBGridOptionsEx ex = d_->optionsEx;
        const bool overSelected = selected
            || (ex.Contains(dgCalcSelectedRows) && (!ex.Contains(dgCalcWholeDataSet) || SelectedRows().Count() > 0));
        const bool overAll = !overSelected && ex.Contains(dgCalcWholeDataSet);
        totals->selectedRecords_ = overSelected;
        if ((overSelected || overAll) && !totals->calcFromDataSet(selected, overSelected)) {
            DisablePosition();
            try {
                if (overSelected) {
                    for (auto it = SelectedRows().begin(); it != SelectedRows().end(); ++it)
                        DoCalcValues(cpCalcRec, selected);
                } else {
                    for (ds->First(); !ds->Eof(); ds->Next())
                        DoCalcValues(cpCalcRec, selected);
                }
            } catch (...) {
                EnablePosition(true);
                throw;
            }
            EnablePosition(true);
        }
    }
    DoCalcValues(cpFinal, selected);
    if (selected)
        SetOptionsEx(GetOptionsEx()); // the totals rows laid out again for what they show now
    InvalidateGrid();
    TotalsUpdated();
}

void TQCustomDBGrid::UpdateTotals(bool autoUpdate)
{
    if (IsLoading() || UpdateLocked() || d_->destroying)
        return;
    if (autoUpdate && !d_->optionsEx.Contains(dgAutoUpdateTotals))
        return;
    TQDBGridTotals *totals = d_->totals;
    if (!totals->HasCalcValues() || (!totals->RowsShown() && !d_->optionsEx.Contains(dgCalcInvisibleRows)))
        return;
    if (d_->optionsEx.Contains(dgDelayUpdateTotals) && !IsDesigning()) {
        totals->Delay(DelayInterval());
        return;
    }
    UpdateCalcValues(false);
}

void TQCustomDBGrid::DelayUpdateTotals(TObject *sender)
{
    Q_UNUSED(sender);
    d_->totals->StopWaiting();
    if (TDataSet *ds = DataSet(); ds && ds->Reading()) { // not from within another read's wait
        d_->totals->Delay(DelayInterval());
        return;
    }
    showingErrors([this] { UpdateCalcValues(false); }); // a timer has nobody to raise to
}

void TQCustomDBGrid::TotalsUpdated()
{
    if (OnTotalsUpdated)
        OnTotalsUpdated(this);
}

} // namespace qdb
