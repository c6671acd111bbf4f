#pragma once

#include "FieldSummary.h"
#include "FieldTypes.h"
#include "Fields.h"

#include "platform/rtl/Events.h"
#include "platform/rtl/Variant.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace qdb {

class TDataSet;
class TDataSource;
class TDataLink;
class FilterExpression;

// Identifies a record for as long as the data set is open; empty means none.
using TBookmark = QByteArray;

// One record of the window a data set shares with its data links. Each field of the data
// set's FieldList has a slot: Unassigned until written (or cached), so that a record being
// edited keeps the typed values beside the stored ones.
struct TRecordBuffer
{
    QList<Variant> values;
    TBookmarkFlag flag = bfCurrent;
    TBookmark bookmark;
    qint64 row = -1; // the descendant's own reference to the record
    void ClearValues();
};

// The fields of a data set or of a parent field, in order. It does not own them.
class TFields
{
public:
    int Count() const { return int(list_.size()); }
    TField *operator[](int index) const { return list_.at(index); }
    TField *Fields(int index) const { return list_.at(index); }
    int IndexOf(const TField *field) const { return int(list_.indexOf(const_cast<TField *>(field))); }
    // By name or full name, case-insensitive; nullptr when missing.
    TField *FindField(const QString &name) const;
    auto begin() const { return list_.begin(); }
    auto end() const { return list_.end(); }

private:
    friend class TDataSet;
    friend class TField;
    QList<TField *> list_;
};

// The definition of a field a data set can create.
struct TFieldDef
{
    QString Name;
    TFieldType DataType = ftUnknown;
    int Size = 0;
    bool Required = false;
    int Precision = 0;
    QList<TFieldDef> ChildDefs; // for object and array fields
};

class TFieldDefs
{
public:
    TFieldDef &Add(const QString &name, TFieldType type, int size = 0, bool required = false);
    int Count() const { return int(defs_.size()); }
    const TFieldDef &operator[](int i) const { return defs_.at(i); }
    TFieldDef &operator[](int i) { return defs_[i]; }
    int IndexOf(const QString &name) const;
    void Clear() { defs_.clear(); }
    auto begin() const { return defs_.begin(); }
    auto end() const { return defs_.end(); }

private:
    QList<TFieldDef> defs_;
};

using TDataSetNotifyEvent = std::function<void(TDataSet *sender)>;
using TFilterRecordEvent = TMethod<void(TDataSet *dataSet, bool &accept)>;

// What a record handler accepts, stated for data sets that can have their database find
// those records instead of calling the handler for each: a record is accepted when, for
// every item, its field's Text equals one of the item's texts without regard to case.
struct TFieldTextMatch
{
    QString FieldName;
    QStringList Texts;
};
// A text looked for in the display texts of some fields by the rule of TextSearchPos: a
// record has it when one of the fields shows it. Only fields whose display text the record's
// own values make (no OnGetText) are named; an empty Text looks for nothing.
struct TTextSearch
{
    QStringList FieldNames;
    QString Text;
    bool CaseSensitive = false;
    bool WholeWords = false;
};
struct TFilterRecordMatch
{
    TFilterRecordEvent Handler; // the handler the items describe
    QList<TFieldTextMatch> Items;
    TTextSearch Search; // and, when it has a text, a record has it
};
// Where a search for a record starts: at the first or the last record, or after or before
// the current one.
enum class TSearchFrom { First, Last, Next, Prior };

// The data set: a cursor over records with a window of record buffers that its data links
// look at. A descendant implements the record-buffer protocol (the Internal... operations,
// GetRecord, FetchFieldData); the base turns it into navigation, editing and the data
// events that reach every data link through the data sources.
class TDataSet : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool Active READ Active WRITE SetActive STORED false)
    Q_PROPERTY(QString Filter READ Filter WRITE SetFilter)
    Q_PROPERTY(bool Filtered READ Filtered WRITE SetFiltered)
    Q_PROPERTY(bool AutoCalcFields READ AutoCalcFields WRITE SetAutoCalcFields)

public:
    explicit TDataSet(QObject *parent = nullptr);
    ~TDataSet() override;

    // ---- opening ----
    bool Active() const { return state_ != dsInactive && state_ != dsOpening; }
    void SetActive(bool on);
    void Open() { SetActive(true); }
    void Close() { SetActive(false); }
    TDataSetState State() const { return state_; }
    bool Modified() const { return modified_; }
    virtual bool IsUnidirectional() const { return false; }
    bool CanModify() const { return GetCanModify(); }

    // ---- fields ----
    TFieldDefs &FieldDefs() { return fieldDefs_; }
    const TFieldDefs &FieldDefs() const { return fieldDefs_; }
    // Top-level fields; FieldList also holds the children of object and array fields.
    const TFields &Fields() const { return fields_; }
    const TFields &FieldList() const { return fieldList_; }
    int FieldCount() const { return fields_.Count(); }
    TField *FindField(const QString &name) const;
    // Raises EDatabaseError "Field 'x' not found".
    TField *FieldByName(const QString &name) const;
    // The fields named in a ";" list, in that order; raises for a missing one.
    QList<TField *> GetFieldList(const QString &names) const;
    // True when the fields were made from FieldDefs on opening (none created by code).
    bool DefaultFields() const { return defaultFields_; }
    // Values of several fields (";" list): one value, or an array.
    Variant FieldValues(const QString &names) const;
    void SetFieldValues(const QString &names, const Variant &values);

    // ---- navigation ----
    void First();
    void Last();
    void Next() { MoveBy(1); }
    void Prior() { MoveBy(-1); }
    int MoveBy(int distance);
    bool Bof() const { return bof_; }
    bool Eof() const { return eof_; }
    bool IsEmpty() const { return recordCount_ == 0; }
    virtual int RecordCount() const { return -1; }
    // False while RecordCount would first have to count the whole data set in the database:
    // a caller that can wait shows what it has and asks later.
    virtual bool RecordCountKnown() const { return true; }
    // True while a read of this data set's database is under way and the events it lets
    // through (see TSQLConnection::OnWait) run meanwhile.
    virtual bool Reading() const { return false; }
    // 1-based position of the current record; -1 when unknown.
    virtual int RecNo() const { return -1; }
    virtual void SetRecNo(int) {}

    // ---- bookmarks ----
    TBookmark GetBookmark() const;
    void GotoBookmark(const TBookmark &bookmark);
    virtual bool BookmarkValid(const TBookmark &bookmark) const;
    // -1, 0 or 1; an empty bookmark sorts first.
    virtual int CompareBookmarks(const TBookmark &a, const TBookmark &b) const;
    bool BookmarkAvailable() const;
    // Grows whenever records may have changed their order relative to each other (a new
    // index or sort, a refresh, an edit that moves a record): whoever keeps bookmarks
    // sorted by CompareBookmarks sorts them again when it sees a new value.
    quint64 OrderVersion() const { return orderVersion_; }
    // Grows whenever the records or their values may have changed (opening, a post, a
    // delete, a refresh, a new filter, any change the data set announces), but not when the
    // cursor merely moves: whoever keeps figures over all records knows when to work again.
    quint64 DataVersion() const { return dataVersion_; }

    // The distinct values of a data field over the records the data set holds now (its
    // filter applied), with the number of records of each, in the field's ascending order
    // with NULL first: at most Limit of them (0: all), those after AfterValue when After is
    // set and up to UntilValue (included) when Until is, those whose text begins with Prefix (case aside) when it is not empty, and with
    // TextsRule those whose field shows one of Texts (1) or none of them (-1). False when
    // only a walk of the records can tell.
    struct TDistinctRequest
    {
        TField *Field = nullptr;
        int Limit = 0;
        bool After = false;
        Variant AfterValue;
        bool Until = false;
        Variant UntilValue;
        QString Prefix;
        int TextsRule = 0;
        QStringList Texts;
    };
    struct TDistinctValue
    {
        Variant Value;
        qint64 Count = 0;
    };
    virtual bool DistinctValues(const TDistinctRequest &request, QList<TDistinctValue> &values)
    {
        Q_UNUSED(request);
        Q_UNUSED(values);
        return false;
    }

    // The longest value of a data field as text, when the data set can tell without walking
    // its records (a query over a SQL result); false when it cannot.
    virtual bool LongestText(TField *field, QString &text) const
    {
        Q_UNUSED(field);
        Q_UNUSED(text);
        return false;
    }

    // Figures over all records (under the filter) the data set can tell without walking them,
    // one for each request; false when it cannot, and the caller walks the records.
    virtual bool Summarize(const QList<TFieldSummaryRequest> &requests, TDataSetSummary &summary)
    {
        Q_UNUSED(requests);
        Q_UNUSED(summary);
        return false;
    }
    // Hands the values of the fields in the records of the bookmarks to `each`, record by
    // record in the order of the list, without moving the cursor; records no longer there
    // are left out. False when the data set cannot, and the caller goes to each record.
    using TRecordValuesProc = std::function<void(const QList<Variant> &values)>;
    virtual bool ReadRecords(const QList<TBookmark> &bookmarks, const QList<TField *> &fields,
                             const TRecordValuesProc &each)
    {
        Q_UNUSED(bookmarks);
        Q_UNUSED(fields);
        Q_UNUSED(each);
        return false;
    }

    // ---- controls ----
    void DisableControls();
    void EnableControls();
    bool ControlsDisabled() const { return disableCount_ > 0; }

    // ---- editing ----
    void Edit();
    void Insert();
    void Append();
    void Post();
    void Cancel();
    void Delete();
    // Appends a record with the given values (one per field, Unassigned leaves a field empty).
    void AppendRecord(const QList<Variant> &values);
    void InsertRecord(const QList<Variant> &values);
    // Posts or cancels a pending edit; raises when the data set is closed.
    void CheckBrowseMode();
    void UpdateRecord();
    void UpdateCursorPos();
    void CursorPosChanged() { currentRecord_ = -1; }
    void Resync(TResyncMode mode);
    void Refresh();
    void ClearFields();

    // ---- searching ----
    // Key fields as a ";" list; several keys take an array of values.
    virtual bool Locate(const QString &keyFields, const Variant &keyValues, TLocateOptions options);
    virtual Variant Lookup(const QString &keyFields, const Variant &keyValues, const QString &resultFields);
    // Makes current the first record, going from `from` on, that has the search's text and
    // that `accept` takes (asked with the record's values in the fields, before it is made
    // current). 1 when found; 0 when none is (the cursor stays); -1 when the data set cannot
    // find the records by itself, and the caller walks them.
    int FindText(const TTextSearch &search, TSearchFrom from, const std::function<bool()> &accept);

    // ---- filtering ----
    QString Filter() const { return filterText_; }
    // Parses the text at once: a text that does not parse raises and changes nothing.
    void SetFilter(const QString &text);
    bool Filtered() const { return filtered_; }
    virtual void SetFiltered(bool on);
    TFilterOptions FilterOptions() const { return filterOptions_; }
    void SetFilterOptions(TFilterOptions options);
    const TFilterRecordEvent &OnFilterRecord() const { return onFilterRecord_; }
    void SetOnFilterRecord(const TFilterRecordEvent &handler);
    // Filter, OnFilterRecord and Filtered at once: the records are looked at once, and anew
    // even when none of the three changed (the handler may answer otherwise now).
    void SetFilterState(bool on, const QString &text, const TFilterRecordEvent &handler);
    // Holds while its handler is OnFilterRecord; read when the filter is applied next.
    void SetFilterRecordMatch(const TFilterRecordMatch &match) { filterRecordMatch_ = match; }
    const TFilterRecordMatch &FilterRecordMatch() const { return filterRecordMatch_; }

    bool AutoCalcFields() const { return autoCalcFields_; }
    void SetAutoCalcFields(bool on) { autoCalcFields_ = on; }

    // ---- events ----
    TDataSetNotifyEvent BeforeOpen, AfterOpen, BeforeClose, AfterClose;
    TDataSetNotifyEvent BeforeInsert, AfterInsert, BeforeEdit, AfterEdit, BeforePost, AfterPost;
    TDataSetNotifyEvent BeforeCancel, AfterCancel, BeforeDelete, AfterDelete;
    TDataSetNotifyEvent BeforeScroll, AfterScroll, BeforeRefresh, AfterRefresh;
    TDataSetNotifyEvent OnNewRecord, OnCalcFields;

    // Sends a data event to the data sources (and so to every data link).
    virtual void DataEvent(TDataEvent event, qintptr info);

    // Field access used by TField. FieldValueRef hands out the stored value without a copy
    // where the data set can, else fills and returns the scratch value.
    bool GetFieldData(TField *field, Variant &value);
    const Variant &FieldValueRef(TField *field, Variant &scratch);
    virtual void SetFieldData(TField *field, const Variant &value);

    // The window: how many buffers, which one is current.
    int BufferCount() const { return bufferCount_; }
    int ActiveRecord() const { return activeRecord_; }
    int BufferRecordCount() const { return recordCount_; }

protected:
    // ---- the record-buffer protocol ----
    virtual void InternalOpen() = 0;
    virtual void InternalClose() = 0;
    virtual bool IsCursorOpen() const = 0;
    // Fills FieldDefs from the source of the data.
    virtual void InternalInitFieldDefs() {}
    virtual TGetResult GetRecord(TRecordBuffer &buffer, TGetMode mode, bool doCheck) = 0;
    virtual void InternalFirst() = 0;
    virtual void InternalLast() = 0;
    virtual void InternalSetToRecord(TRecordBuffer &buffer) { InternalGotoBookmark(GetBookmarkData(buffer)); }
    // The bookmark of the record in a buffer; descendants that derive it from the record
    // reference need not store one in every buffer they fill.
    virtual TBookmark GetBookmarkData(const TRecordBuffer &buffer) const { return buffer.bookmark; }
    virtual void InternalGotoBookmark(const TBookmark &bookmark) = 0;
    virtual void InternalInitRecord(TRecordBuffer &buffer) { buffer.ClearValues(); }
    virtual void InternalEdit() {}
    virtual void InternalInsert() {}
    // The base checks required fields; descendants store the record and call it first.
    virtual void InternalPost();
    // Stores a record that InsertRecord or AppendRecord filled whole (append: after the last
    // record); by default as any posted new record.
    virtual void InternalAddRecord(TRecordBuffer &buffer, bool append)
    {
        Q_UNUSED(buffer); Q_UNUSED(append);
        InternalPost();
    }
    virtual void InternalCancel() {}
    virtual void InternalDelete() = 0;
    virtual void InternalRefresh() {}
    // Reads a data field of a record that has no value in its slot.
    virtual bool FetchFieldData(TField *field, TRecordBuffer &buffer, Variant &value) = 0;
    // The stored value of a data field of a record, when the descendant keeps one that
    // outlives the read; nullptr makes the base call FetchFieldData.
    virtual const Variant *PeekFieldData(TField *field, const TRecordBuffer &buffer) const
    {
        Q_UNUSED(field);
        Q_UNUSED(buffer);
        return nullptr;
    }
    // Keeps a written value; the base stores it in the buffer's slot.
    virtual void StoreFieldData(TField *field, TRecordBuffer &buffer, const Variant &value);
    virtual bool GetCanModify() const { return true; }
    // Called when Filter, FilterOptions or OnFilterRecord change while filtered.
    virtual void FilterChanged();
    // Moves the cursor straight to the record `distance` away (as far as there are records)
    // and answers how far it went; false when the descendant can only step.
    virtual bool InternalJump(int distance, int &moved)
    {
        Q_UNUSED(distance);
        Q_UNUSED(moved);
        return false;
    }
    // FindText's search, without the scroll events; -1 where the records must be walked.
    virtual int FindTextRecord(const TTextSearch &search, TSearchFrom from, const std::function<bool()> &accept)
    {
        Q_UNUSED(search);
        Q_UNUSED(from);
        Q_UNUSED(accept);
        return -1;
    }
    // The record matching of a locate; descendants may search faster.
    virtual bool LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                              bool syncCursor);

    // ---- helpers for descendants ----
    // Makes the fields from FieldDefs when there are none, and binds them to buffer slots;
    // InternalOpen may call it early, opening calls it otherwise.
    void InitFieldsAndBind();
    void CreateFields();
    void DestroyFields();
    void BindFields(bool binding);
    TRecordBuffer &ActiveBuffer() { return *buffers_[activeRecord_]; }
    // The spare buffer after the window.
    TRecordBuffer &TempBuffer() { return *buffers_[recordCount_]; }
    // The buffer fields read from in the current state (nullptr when none).
    TRecordBuffer *CurrentRecBuf();
    void SetState(TDataSetState state);
    // Reads fields from another buffer in a passing state (calculating, filtering) for a
    // scope, without announcing it.
    class TempState
    {
    public:
        TempState(TDataSet *ds, TDataSetState state, TRecordBuffer *buffer)
            : ds_(ds), state_(ds->state_), buffer_(ds->tempStateBuffer_)
        {
            ds->state_ = state;
            ds->tempStateBuffer_ = buffer;
        }
        ~TempState()
        {
            ds_->state_ = state_;
            ds_->tempStateBuffer_ = buffer_;
        }
        TempState(const TempState &) = delete;
        TempState &operator=(const TempState &) = delete;

    private:
        TDataSet *ds_;
        TDataSetState state_;
        TRecordBuffer *buffer_;
    };
    void SetModified(bool on) { modified_ = on; }
    // Descendants call it when the relative order of their records changed.
    void OrderChanged() { ++orderVersion_; }
    // Descendants hold it while they only move the cursor: the data events it sends meanwhile
    // do not change DataVersion.
    class NavigationScope
    {
    public:
        explicit NavigationScope(TDataSet *ds) : ds_(ds) { ++ds_->navigating_; }
        ~NavigationScope() { --ds_->navigating_; }
        NavigationScope(const NavigationScope &) = delete;
        NavigationScope &operator=(const NavigationScope &) = delete;

    private:
        TDataSet *ds_;
    };
    void DataContentChanged() { ++dataVersion_; }
    void CheckActive() const;
    void CheckInactive() const;
    void CheckCanModify() const;
    // Computes calculated and lookup fields of a fetched record.
    void GetCalcFields(TRecordBuffer &buffer);
    bool HasCalcFields() const { return calcFieldCount_ > 0; }
    // True when the filter and OnFilterRecord accept the record in the buffer; the
    // descendant calls it while fetching when IsFiltering().
    bool FilterAccepts(TRecordBuffer &buffer);
    bool IsFiltering() const;
    // The parsed Filter text, bound to the fields (nullptr without one or while closed).
    const FilterExpression *FilterExpr() const { return filterExpr_.get(); }
    bool MatchesKeys(TRecordBuffer &buffer, const QList<TField *> &fields, const Variant &keyValues,
                     TLocateOptions options);
    // The buffer slot of a field (its place in FieldList), -1 while unbound.
    static int FieldSlot(const TField *field) { return field->slot_; }
    static TBookmark BookmarkFromRow(qint64 row);
    static qint64 RowFromBookmark(const TBookmark &bookmark);
    QList<TDataSource *> DataSources() const { return dataSources_; }
    int CurrentRecord() const { return currentRecord_; }

    void DoBeforeScroll() { Fire(BeforeScroll, this); }
    void DoAfterScroll() { Fire(AfterScroll, this); }

private:
    friend class TField;
    friend class TObjectField;
    friend class TDataSource;
    friend class TDataLink;

    // Post, with `store` writing the record.
    void post(const std::function<void()> &store);
    void addRecord(const QList<Variant> &values, bool append);

    void openCursor();
    void closeCursor();
    void setBufferCount(int count);
    void updateBufferCount();
    void clearBuffers();
    void activateBuffers();
    void moveBuffer(int from, int to);
    void setCurrentRecord(int index);
    bool getNextRecord();
    bool getPriorRecord();
    int getNextRecords();
    int getPriorRecords();
    void beginInsertAppend();
    void endInsertAppend();
    void calculateFields(TRecordBuffer &buffer);
    void registerField(TField *field);
    void unregisterField(TField *field);
    void rebuildFieldList();
    void compileFilter();
    std::unique_ptr<FilterExpression> parseFilter(const QString &text);
    void addDataSource(TDataSource *source);
    void removeDataSource(TDataSource *source);

    TDataSetState state_ = dsInactive;
    TDataSetState disableState_ = dsInactive;
    TDataEvent enableEvent_ = deDataSetChange;
    int disableCount_ = 0;
    bool modified_ = false;
    bool bof_ = true;
    bool eof_ = true;
    bool defaultFields_ = false;
    bool autoCalcFields_ = true;
    bool fieldsBound_ = false;
    quint64 orderVersion_ = 0;
    quint64 dataVersion_ = 0;
    int navigating_ = 0;

    std::vector<std::unique_ptr<TRecordBuffer>> buffers_; // bufferCount_ + 1, the last one spare
    int bufferCount_ = 0;
    int recordCount_ = 0;   // records in the window
    int activeRecord_ = 0;
    int currentRecord_ = -1; // the buffer the cursor stands on
    TRecordBuffer *tempStateBuffer_ = nullptr;
    std::unique_ptr<TRecordBuffer> calcScratch_;

    TFieldDefs fieldDefs_;
    TFields fields_;
    TFields fieldList_;
    int calcFieldCount_ = 0;
    QList<TDataSource *> dataSources_;

    QString filterText_;
    bool filtered_ = false;
    TFilterOptions filterOptions_;
    TFilterRecordEvent onFilterRecord_;
    TFilterRecordMatch filterRecordMatch_;
    std::unique_ptr<FilterExpression> filterExpr_;
};

// Keeps DisableControls/EnableControls balanced for a scope.
class ControlsDisabler
{
public:
    explicit ControlsDisabler(TDataSet *ds) : ds_(ds) { if (ds_) ds_->DisableControls(); }
    ~ControlsDisabler() { if (ds_) ds_->EnableControls(); }
    ControlsDisabler(const ControlsDisabler &) = delete;
    ControlsDisabler &operator=(const ControlsDisabler &) = delete;

private:
    TDataSet *ds_;
};

} // namespace qdb
