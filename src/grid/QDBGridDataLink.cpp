#include "QDBGrid.h"

#include "platform/db/DBConsts.h"
#include "platform/rtl/Exceptions.h"

#include <QScopeGuard>

namespace qdb {

void TQGridDataLink::ActiveChanged()
{
    if (Active() && DataSet() && DataSet()->IsUnidirectional())
        DatabaseError(DBConsts::SDataSetUnidirectional(), DataSet());
    grid_->LinkActive(Active());
    modified_ = false;
}

void TQGridDataLink::DataSetChanged()
{
    grid_->DataChanged();
    modified_ = false;
}

void TQGridDataLink::DataSetScrolled(int distance)
{
    grid_->Scroll(distance);
}

void TQGridDataLink::LayoutChanged()
{
    grid_->LayoutChanged();
    TDataLink::LayoutChanged();
}

void TQGridDataLink::FocusControl(TField *&field)
{
    if (!field)
        return;
    for (int i = 0; i < grid_->GetColumns()->Count(); ++i)
        if (grid_->GetColumns()->Items(i)->GetField() == field) {
            grid_->setFocus();
            grid_->SetCol(grid_->DataToRawColumn(i));
            field = nullptr;
            return;
        }
}

void TQGridDataLink::EditingChanged()
{
    grid_->EditingChanged();
}

void TQGridDataLink::RecordChanged(TField *field)
{
    // Another field of the record changed under the editor: what was typed goes in first.
    if (modified_ && field && field->FieldKind() == fkData && field != grid_->SelectedField() && !inUpdateData_) {
        const TQColumn *column = grid_->GetColumns()->FindColumn(field->FullName());
        if (column && grid_->DataToRawColumn(column->Index()) >= grid_->FixedCols())
            UpdateData();
    }
    modified_ = false; // before the grid looks: its editor shows the field again
    grid_->RecordChanged(field);
}

void TQGridDataLink::UpdateData()
{
    inUpdateData_ = true;
    try {
        if (modified_)
            grid_->UpdateData();
    } catch (...) {
        inUpdateData_ = false; // still modified: the next post tries the text again
        throw;
    }
    inUpdateData_ = false;
    modified_ = false;
}

void TQGridDataLink::Cancel()
{
    if (!DataSet())
        return;
    grid_->BeginCancel();
    const auto done = qScopeGuard([this] { grid_->EndCancel(); });
    DataSet()->Cancel();
}

void TQGridDataLink::Reset()
{
    if (modified_)
        RecordChanged(nullptr);
    else
        Cancel();
}

void TQGridDataLink::CheckMappingRoom(qsizetype count)
{
    if (count >= MaxMappings)
        throw EInvalidGridOperation(DBConsts::STooManyColumns());
}

void TQGridDataLink::AddMapping(const QString &fieldName)
{
    CheckMappingRoom(map_.size());
    TDataSet *ds = DataSet();
    TField *field = nullptr;
    if (ds)
        field = sparseMap_ ? ds->FindField(fieldName) : ds->FieldByName(fieldName);
    map_.append(field ? int(ds->FieldList().IndexOf(field)) : -1);
}

void TQGridDataLink::ClearMapping()
{
    map_.clear();
}

TField *TQGridDataLink::GetFields(int i) const
{
    const int index = GetMappedIndex(i);
    TDataSet *ds = DataSet();
    return index >= 0 && ds && index < ds->FieldList().Count() ? ds->FieldList()[index] : nullptr;
}

bool TQGridDataLink::DefaultFields() const
{
    TDataSet *ds = DataSet();
    if (!ds)
        return true;
    if (!ds->DefaultFields())
        return false;
    return !(sparseMap_ && map_.contains(-1));
}

} // namespace qdb
