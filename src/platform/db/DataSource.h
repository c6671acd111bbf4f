#pragma once

#include "DataSet.h"

#include <QObject>
#include <QPointer>

namespace qdb {

class TDataLink;

using TDataChangeEvent = std::function<void(TObject *sender, TField *field)>;

// Connects a data set to data links: every data event of the data set reaches each link,
// the single-record links first, then those with a window of several records.
class TDataSource : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSet *DataSet READ DataSet WRITE SetDataSet)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(bool AutoEdit READ AutoEdit WRITE SetAutoEdit)

public:
    explicit TDataSource(QObject *parent = nullptr);
    ~TDataSource() override;

    TDataSet *DataSet() const { return dataSet_; }
    void SetDataSet(TDataSet *dataSet);
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool on);
    bool AutoEdit() const { return autoEdit_; }
    void SetAutoEdit(bool on) { autoEdit_ = on; }
    TDataSetState State() const { return state_; }
    // Puts the data set in edit mode when AutoEdit allows it.
    void Edit();
    bool IsLinkedTo(const TDataSet *dataSet) const;
    const QList<TDataLink *> &DataLinks() const { return links_; }

    TDataChangeEvent OnDataChange;
    TNotifyEvent OnStateChange;
    TNotifyEvent OnUpdateData;

private:
    friend class TDataSet;
    friend class TDataLink;
    void dataEvent(TDataEvent event, qintptr info);
    void notifyDataLinks(TDataEvent event, qintptr info);
    void updateState();
    void addDataLink(TDataLink *link);
    void removeDataLink(TDataLink *link);

    QPointer<TDataSet> dataSet_;
    QList<TDataLink *> links_;
    TDataSetState state_ = dsInactive;
    bool enabled_ = true;
    bool autoEdit_ = true;
};

// A view of a data source: it follows the data set's state and sees a window of
// BufferCount records of the data set's buffers. Descendants override the notifications.
class TDataLink
{
public:
    TDataLink();
    virtual ~TDataLink();
    TDataLink(const TDataLink &) = delete;
    TDataLink &operator=(const TDataLink &) = delete;

    TDataSource *DataSource() const { return dataSource_; }
    void SetDataSource(TDataSource *source);
    TDataSet *DataSet() const;
    bool Active() const { return active_; }
    bool Editing() const { return editing_; }
    bool ReadOnly() const { return readOnly_; }
    void SetReadOnly(bool on);
    // The link's current record within its window (0-based).
    int ActiveRecord() const;
    void SetActiveRecord(int index);
    int BufferCount() const { return bufferCount_; }
    void SetBufferCount(int count);
    // Records in the window, at most BufferCount.
    int RecordCount() const;
    bool Bof() const;
    bool Eof() const;
    // Puts the data set in edit mode (unless read-only) and answers Editing.
    bool Edit();
    int MoveBy(int distance);
    // Asks the link to write its pending change into the record (UpdateData).
    void UpdateRecord();

protected:
    virtual void ActiveChanged() {}
    virtual void CheckBrowseMode() {}
    virtual void DataSetChanged() { RecordChanged(nullptr); }
    virtual void DataSetScrolled(int distance);
    virtual void FocusControl(TField *&field) { Q_UNUSED(field); }
    virtual void EditingChanged() {}
    virtual void LayoutChanged() { DataSetChanged(); }
    virtual void RecordChanged(TField *field) { Q_UNUSED(field); }
    virtual void UpdateData() {}
    int FirstRecord() const { return firstRecord_; }

private:
    friend class TDataSource;
    friend class TDataSet;
    void dataEvent(TDataEvent event, qintptr info);
    void updateState();
    void setActive(bool on);
    void setEditing(bool on);
    void updateRange();

    TDataSource *dataSource_ = nullptr;
    QPointer<TDataSource> sourceGuard_;
    int firstRecord_ = 0;
    int bufferCount_ = 1;
    bool active_ = false;
    bool editing_ = false;
    bool readOnly_ = false;
    bool updating_ = false;
};

// A link that serves one field of the current record: an edit box or a label.
class TFieldDataLink : public TDataLink
{
public:
    QString FieldName() const { return fieldName_; }
    void SetFieldName(const QString &name);
    TField *Field() const { return field_; }
    QObject *Control() const { return control_; }
    void SetControl(QObject *control) { control_ = control; }
    // The field can be written: link, field and data set allow it.
    bool CanModify() const;
    bool Edit();
    // The control changed the value; UpdateRecord will ask for it.
    void Modified() { modified_ = true; }
    bool IsModified() const { return modified_; }
    // Drops the control's change and shows the field's value again.
    void Reset();

    std::function<void(TObject *)> OnDataChange;
    std::function<void(TObject *)> OnEditingChange;
    std::function<void(TObject *)> OnUpdateData;
    std::function<void(TObject *)> OnActiveChange;

protected:
    void ActiveChanged() override;
    void EditingChanged() override;
    void FocusControl(TField *&field) override;
    void LayoutChanged() override;
    void RecordChanged(TField *field) override;
    void UpdateData() override;

private:
    void updateField();
    QString fieldName_;
    QPointer<TField> field_;
    QObject *control_ = nullptr;
    bool modified_ = false;
};

} // namespace qdb
