#pragma once

#include "platform/db/DataSet.h"

#include <QList>

namespace qdb {

// A data set without records of its own: the number of records and every field value come
// from the DoOn... operations that a descendant overrides, asked by record index (0 for
// the first record). Values read are cached in the record buffer until it shows another
// record. Bookmarks are the record index.
class TQDBCustomData : public TDataSet
{
    Q_OBJECT

public:
    explicit TQDBCustomData(QObject *parent = nullptr);
    ~TQDBCustomData() override;

    int RecordCount() const override { return recordCount_; }
    // A negative count is stored as 0.
    void SetRecordCount(int count) { recordCount_ = qMax(0, count); }
    // The cursor: the index of the record the data set stands on.
    int RecordNumber() const { return cursor_; }
    void SetRecordNumber(int index) { cursor_ = index; }
    // The index of the record in the current buffer.
    int RecordIndex();
    // Asks DoOnCountRecords for the number of records again.
    void CountRecords();
    // 0 for a before-first buffer, the record count for an after-last one, else its index.
    int GetIndex(const TRecordBuffer &buffer) const;
    bool ReadOnly() const { return readOnly_; }
    void SetReadOnly(bool on) { readOnly_ = on; }

    int RecNo() const override;
    void SetRecNo(int recNo) override;
    bool BookmarkValid(const TBookmark &bookmark) const override;
    int CompareBookmarks(const TBookmark &a, const TBookmark &b) const override;
    // Goes to the first or last record (restart) or one record on; answers whether it found one.
    bool FindRecord(bool restart, bool forward);
    // The fields written since the current edit began, in the order first written.
    const QList<TField *> &ModifiedFields() const { return modifiedFields_; }
    // The bookmark of a record index, and back.
    static TBookmark IndexBookmark(int index);
    static int BookmarkIndex(const TBookmark &bookmark);

protected:
    // ---- the contract for descendants ----
    virtual void DoOnCountRecords(int &count) { Q_UNUSED(count); }
    // Called with value Null; leaves it Null when the record has no value.
    virtual void DoOnGetFieldData(int index, TField *field, Variant &value)
    {
        Q_UNUSED(index);
        Q_UNUSED(field);
        Q_UNUSED(value);
    }
    virtual void DoOnSetFieldData(int index, TField *field, const Variant &value)
    {
        Q_UNUSED(index);
        Q_UNUSED(field);
        Q_UNUSED(value);
    }
    virtual void DoOnInsertRecord(int index) { Q_UNUSED(index); }
    virtual void DoOnDeleteRecord(int index) { Q_UNUSED(index); }

    // ---- the record-buffer protocol ----
    void InternalOpen() override;
    void InternalClose() override;
    bool IsCursorOpen() const override { return cursorOpen_; }
    void InternalInitFieldDefs() override;
    TGetResult GetRecord(TRecordBuffer &buffer, TGetMode mode, bool doCheck) override;
    void InternalFirst() override { cursor_ = -1; }
    void InternalLast() override { cursor_ = recordCount_; }
    void InternalSetToRecord(TRecordBuffer &buffer) override;
    void InternalGotoBookmark(const TBookmark &bookmark) override;
    void InternalEdit() override { modifiedFields_.clear(); }
    void InternalInsert() override { modifiedFields_.clear(); }
    void InternalPost() override;
    void InternalDelete() override;
    void InternalRefresh() override { CountRecords(); }
    bool FetchFieldData(TField *field, TRecordBuffer &buffer, Variant &value) override;
    void StoreFieldData(TField *field, TRecordBuffer &buffer, const Variant &value) override;
    bool GetCanModify() const override { return !readOnly_; }
    bool LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                      bool syncCursor) override;
    // The record next to, before or at the cursor, without filtering.
    virtual TGetResult InternalGetRecord(TRecordBuffer &buffer, TGetMode mode);
    // Whether the record in the buffer holds the values a running locate looks for.
    virtual bool LocateFilter(TRecordBuffer &buffer);
    // Posts the record being inserted in the buffer; with append, after the last record.
    void InternalAddRecord(TRecordBuffer &buffer, bool append) override;

private:

    int recordCount_ = 0;
    int cursor_ = -1;
    bool cursorOpen_ = false;
    bool readOnly_ = false;
    QList<TField *> modifiedFields_;
    // The running locate.
    bool locating_ = false;
    QList<TField *> locateFields_;
    Variant locateValues_;
    TLocateOptions locateOptions_;
};

} // namespace qdb
