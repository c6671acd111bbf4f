#include "DataSource.h"

#include "DBConsts.h"

#include <QWidget>

namespace qdb {

// ---- TDataSource ----

TDataSource::TDataSource(QObject *parent) : QObject(parent) {}

TDataSource::~TDataSource()
{
    SetDataSet(nullptr);
    const QList<TDataLink *> links = links_;
    for (TDataLink *link : links)
        link->SetDataSource(nullptr);
}

void TDataSource::SetDataSet(TDataSet *dataSet)
{
    if (dataSet_ == dataSet)
        return;
    // The links let go of the old data set before they meet the new one, as when it closes
    // and another opens.
    if (dataSet_) {
        dataSet_->removeDataSource(this);
        dataSet_ = nullptr;
        updateState();
    }
    dataSet_ = dataSet;
    if (dataSet_)
        dataSet_->addDataSource(this);
    updateState();
}

void TDataSource::SetEnabled(bool on)
{
    if (enabled_ == on)
        return;
    enabled_ = on;
    updateState();
}

void TDataSource::Edit()
{
    if (autoEdit_ && state_ == dsBrowse && dataSet_)
        dataSet_->Edit();
}

bool TDataSource::IsLinkedTo(const TDataSet *dataSet) const
{
    return dataSet && dataSet_ == dataSet;
}

void TDataSource::updateState()
{
    const TDataSetState next = enabled_ && dataSet_ ? dataSet_->State() : dsInactive;
    if (next == state_)
        return;
    state_ = next;
    notifyDataLinks(deUpdateState, 0);
    Fire(OnStateChange, this);
}

void TDataSource::dataEvent(TDataEvent event, qintptr info)
{
    if (event == deUpdateState) {
        updateState();
        return;
    }
    if (state_ == dsInactive)
        return;
    notifyDataLinks(event, info);
    switch (event) {
    case deFieldChange:
        Fire(OnDataChange, this, reinterpret_cast<TField *>(info));
        break;
    case deRecordChange:
    case deDataSetChange:
    case deDataSetScroll:
    case deLayoutChange:
        Fire(OnDataChange, this, nullptr);
        break;
    case deUpdateRecord:
        Fire(OnUpdateData, this);
        break;
    default:
        break;
    }
}

void TDataSource::notifyDataLinks(TDataEvent event, qintptr info)
{
    // Single-record links (edit boxes) first, then the ones with a window (grids).
    const QList<TDataLink *> links = links_;
    for (int pass = 0; pass < 2; ++pass)
        for (qsizetype i = links.size() - 1; i >= 0; --i)
            if (links_.contains(links[i]) && (links[i]->bufferCount_ > 1) == (pass == 1))
                links[i]->dataEvent(event, info);
}

void TDataSource::addDataLink(TDataLink *link)
{
    links_.append(link);
    if (dataSet_)
        dataSet_->updateBufferCount();
}

void TDataSource::removeDataLink(TDataLink *link)
{
    links_.removeOne(link);
    if (dataSet_)
        dataSet_->updateBufferCount();
}

// ---- TDataLink ----

TDataLink::TDataLink() = default;

TDataLink::~TDataLink()
{
    if (dataSource_ && sourceGuard_)
        dataSource_->removeDataLink(this);
}

void TDataLink::SetDataSource(TDataSource *source)
{
    if (dataSource_ == source)
        return;
    if (dataSource_ && sourceGuard_)
        dataSource_->removeDataLink(this);
    dataSource_ = source;
    sourceGuard_ = source;
    if (dataSource_)
        dataSource_->addDataLink(this);
    updateState();
}

TDataSet *TDataLink::DataSet() const
{
    return dataSource_ && sourceGuard_ ? dataSource_->DataSet() : nullptr;
}

void TDataLink::SetReadOnly(bool on)
{
    if (readOnly_ == on)
        return;
    readOnly_ = on;
    updateState();
}

int TDataLink::ActiveRecord() const
{
    TDataSet *ds = DataSet();
    if (!ds || !active_ || ds->State() == dsSetKey)
        return 0;
    return ds->activeRecord_ - firstRecord_;
}

void TDataLink::SetActiveRecord(int index)
{
    TDataSet *ds = DataSet();
    if (ds && active_ && ds->State() != dsSetKey)
        ds->activeRecord_ = qBound(0, index + firstRecord_, qMax(0, ds->recordCount_ - 1));
}

void TDataLink::SetBufferCount(int count)
{
    count = qMax(1, count);
    if (bufferCount_ == count)
        return;
    bufferCount_ = count;
    if (active_) {
        DataSet()->updateBufferCount();
        updateRange();
    }
}

int TDataLink::RecordCount() const
{
    TDataSet *ds = DataSet();
    if (!ds || !active_)
        return 0;
    if (ds->State() == dsSetKey)
        return 1;
    return qMin(ds->recordCount_ - firstRecord_, bufferCount_);
}

bool TDataLink::Bof() const
{
    return DataSet() ? DataSet()->Bof() : true;
}

bool TDataLink::Eof() const
{
    return DataSet() ? DataSet()->Eof() : true;
}

bool TDataLink::Edit()
{
    if (!readOnly_ && dataSource_ && sourceGuard_)
        dataSource_->Edit();
    return editing_;
}

int TDataLink::MoveBy(int distance)
{
    return DataSet() ? DataSet()->MoveBy(distance) : 0;
}

void TDataLink::UpdateRecord()
{
    updating_ = true;
    try {
        UpdateData();
    } catch (...) {
        updating_ = false;
        throw;
    }
    updating_ = false;
}

void TDataLink::DataSetScrolled(int distance)
{
    Q_UNUSED(distance);
    DataSetChanged();
}

void TDataLink::updateRange()
{
    TDataSet *ds = DataSet();
    if (!ds)
        return;
    const int lowest = qMax(0, ds->activeRecord_ - bufferCount_ + 1);
    const int highest = qMin(ds->activeRecord_, qMax(0, ds->bufferCount_ - bufferCount_));
    firstRecord_ = qBound(lowest, firstRecord_, qMax(lowest, highest));
}

void TDataLink::setActive(bool on)
{
    if (active_ == on)
        return;
    active_ = on;
    if (on)
        updateRange();
    else
        firstRecord_ = 0;
    ActiveChanged();
}

void TDataLink::setEditing(bool on)
{
    if (editing_ == on)
        return;
    editing_ = on;
    EditingChanged();
}

void TDataLink::updateState()
{
    const bool on = dataSource_ && sourceGuard_ && dataSource_->Enabled() && dataSource_->DataSet()
        && dataSource_->State() != dsInactive;
    setActive(on);
    setEditing(on && !readOnly_ && IsEditMode(dataSource_->State()));
}

void TDataLink::dataEvent(TDataEvent event, qintptr info)
{
    if (event == deUpdateState) {
        updateState();
        return;
    }
    if (!active_)
        return;
    switch (event) {
    case deFieldChange:
    case deRecordChange:
        if (!updating_)
            RecordChanged(reinterpret_cast<TField *>(info));
        break;
    case deDataSetChange:
    case deDataSetScroll:
    case deLayoutChange: {
        int count = 0;
        TDataSet *ds = DataSet();
        if (ds->State() != dsSetKey) {
            const int active = ds->activeRecord_;
            const int first = firstRecord_ + int(info);
            const int last = first + bufferCount_ - 1;
            if (active > last)
                count = active - last;
            else if (active < first)
                count = active - first;
            firstRecord_ = qMax(0, first + count);
        }
        if (event == deDataSetChange)
            DataSetChanged();
        else if (event == deDataSetScroll)
            DataSetScrolled(count);
        else
            LayoutChanged();
        break;
    }
    case deUpdateRecord:
        UpdateRecord();
        break;
    case deCheckBrowseMode:
        CheckBrowseMode();
        break;
    case deFocusControl: {
        TField *field = reinterpret_cast<TField *>(info);
        FocusControl(field);
        break;
    }
    default:
        break;
    }
}

// ---- TFieldDataLink ----

void TFieldDataLink::SetFieldName(const QString &name)
{
    if (fieldName_ == name)
        return;
    fieldName_ = name;
    updateField();
}

bool TFieldDataLink::CanModify() const
{
    return !ReadOnly() && field_ && field_->CanModify();
}

bool TFieldDataLink::Edit()
{
    if (CanModify())
        TDataLink::Edit();
    return Editing();
}

void TFieldDataLink::Reset()
{
    RecordChanged(nullptr);
}

void TFieldDataLink::updateField()
{
    TField *f = nullptr;
    if (Active() && !fieldName_.isEmpty())
        f = DataSet()->FieldByName(fieldName_);
    if (f != field_) {
        field_ = f;
        modified_ = false;
        Fire(OnDataChange, static_cast<TObject *>(nullptr));
    }
}

void TFieldDataLink::ActiveChanged()
{
    updateField();
    Fire(OnActiveChange, static_cast<TObject *>(nullptr));
}

void TFieldDataLink::EditingChanged()
{
    Fire(OnEditingChange, static_cast<TObject *>(nullptr));
}

void TFieldDataLink::FocusControl(TField *&field)
{
    if (field && field == field_ && control_) {
        if (auto *widget = qobject_cast<QWidget *>(control_))
            widget->setFocus();
        field = nullptr;
    }
}

void TFieldDataLink::LayoutChanged()
{
    updateField();
}

void TFieldDataLink::RecordChanged(TField *field)
{
    if (!field || field == field_) {
        Fire(OnDataChange, static_cast<TObject *>(nullptr));
        modified_ = false;
    }
}

void TFieldDataLink::UpdateData()
{
    if (modified_) {
        if (field_)
            Fire(OnUpdateData, static_cast<TObject *>(nullptr));
        modified_ = false;
    }
}

} // namespace qdb
