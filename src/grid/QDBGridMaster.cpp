// Grids that follow a master grid: the same widths for the same fields, the same horizontal
// position (a summary grid under a main one, or a detail grid aligned with it).

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

namespace qdb {

TQCustomDBGrid *TQCustomDBGrid::GetMasterGrid() const { return d_->master; }

QList<TQCustomDBGrid *> TQCustomDBGrid::SlaveGrids() const
{
    QList<TQCustomDBGrid *> out;
    for (const QPointer<TQCustomDBGrid> &g : d_->slaves)
        if (g)
            out.append(g);
    return out;
}

void TQCustomDBGrid::SetMasterGrid(TQCustomDBGrid *master)
{
    if (master == d_->master)
        return;
    for (TQCustomDBGrid *g = master; g; g = g->GetMasterGrid())
        if (g == this)
            return; // a circle of grids following each other
    if (d_->master)
        d_->master->d_->slaves.removeAll(this);
    d_->master = master;
    if (master) {
        master->d_->slaves.append(this);
        SynchronizeWithMaster();
    }
}

void TQCustomDBGrid::SynchronizeWithMaster()
{
    TQCustomDBGrid *master = d_->master;
    if (!master)
        return;
    BeginLayout();
    for (TQColumn *own : *d_->columns) {
        const TQColumn *theirs = own->GetFieldName().isEmpty() ? nullptr : master->GetColumns()->FindColumn(own->GetFieldName());
        if (theirs && theirs->GetWidth() != own->GetWidth())
            own->SetWidth(theirs->GetWidth());
    }
    EndLayout();
    if (master->LeftCol() < ColCount())
        SetLeftCol(qMax(FixedCols(), master->LeftCol()));
}

void TQCustomDBGrid::TopLeftChanged()
{
    TCustomGrid::TopLeftChanged();
    for (TQCustomDBGrid *slave : SlaveGrids())
        if (LeftCol() < slave->ColCount() && slave->LeftCol() != LeftCol())
            slave->SetLeftCol(qMax(slave->FixedCols(), LeftCol()));
}

} // namespace qdb
