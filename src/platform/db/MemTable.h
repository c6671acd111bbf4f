#pragma once

#include "DataSet.h"

#include <QList>
#include <QString>

#include <vector>

namespace qdb {

struct TIndexDef
{
    QString Name;
    QString Fields;        // ";" list
    QString DescFields;    // the fields sorted descending ("" with ixDescending: all of them)
    QString CaseInsFields; // the fields compared without case
    TIndexOptions Options;
};

class TIndexDefs
{
public:
    TIndexDef &Add(const QString &name, const QString &fields, TIndexOptions options = {});
    int Count() const { return int(defs_.size()); }
    const TIndexDef &operator[](int i) const { return defs_.at(i); }
    int IndexOf(const QString &name) const;
    const TIndexDef *Find(const QString &name) const;
    void Delete(int i) { defs_.removeAt(i); }
    void Clear() { defs_.clear(); }
    auto begin() const { return defs_.begin(); }
    auto end() const { return defs_.end(); }

private:
    QList<TIndexDef> defs_;
};

// An in-memory data set. Records are kept in columns; the current order comes from
// IndexFieldNames (";" list, each name optionally followed by ":A", ":D" or ":N" for
// ascending, descending and case-insensitive) or from a named index of IndexDefs. The
// records survive Close and Open. Bookmarks name a record, so they stay valid through
// re-sorting and filtering. LoadFromFile/SaveToFile use a JSON document:
//
//   { "format": "qdb-memtable", "version": 1,
//     "fields":  [ { "name": "ID", "type": "ftInteger", "size": 0, "required": true,
//                    "children": [ ... ] }, ... ],
//     "indexes": [ { "name": "ByName", "fields": "Name", "descFields": "", "caseInsFields": "",
//                    "options": "[ixCaseInsensitive]" } ],
//     "records": [ [1, "Smith", null, ...], ... ] }
//
// A record lists the values of the data fields in field order (children of object fields
// in place of their parent). Dates and times are ISO 8601 text, currency and BCD values
// decimal text, bytes Base64 text, and integers beyond 2^53 decimal text.
class TMemTable : public TDataSet
{
    Q_OBJECT
    Q_PROPERTY(QString IndexFieldNames READ IndexFieldNames WRITE SetIndexFieldNames)
    Q_PROPERTY(QString IndexName READ IndexName WRITE SetIndexName)
    Q_PROPERTY(bool ReadOnly READ ReadOnly WRITE SetReadOnly)

public:
    explicit TMemTable(QObject *parent = nullptr);
    ~TMemTable() override;

    // Opens with the fields of FieldDefs (or the fields made in code) and no records.
    void CreateDataSet();
    void EmptyDataSet();

    QString IndexFieldNames() const { return indexFieldNames_; }
    void SetIndexFieldNames(const QString &names);
    QString IndexName() const { return indexName_; }
    void SetIndexName(const QString &name);
    TIndexDefs &IndexDefs() { return indexDefs_; }
    const TIndexDefs &IndexDefs() const { return indexDefs_; }
    void AddIndex(const QString &name, const QString &fields, TIndexOptions options = {},
                  const QString &descFields = QString(), const QString &caseInsFields = QString());
    void DeleteIndex(const QString &name);

    bool ReadOnly() const { return readOnly_; }
    void SetReadOnly(bool on) { readOnly_ = on; }

    int RecordCount() const override;
    int RecNo() const override;
    void SetRecNo(int recNo) override;
    bool BookmarkValid(const TBookmark &bookmark) const override;
    int CompareBookmarks(const TBookmark &a, const TBookmark &b) const override;

    // Raise EDatabaseError (the table unchanged) on a file that cannot be read or parsed.
    void LoadFromFile(const QString &fileName);
    void SaveToFile(const QString &fileName) const;
    QByteArray SaveToJson() const;
    void LoadFromJson(const QByteArray &json);

protected:
    void InternalOpen() override;
    void InternalClose() override;
    bool IsCursorOpen() const override { return cursorOpen_; }
    TGetResult GetRecord(TRecordBuffer &buffer, TGetMode mode, bool doCheck) override;
    void InternalFirst() override;
    void InternalLast() override;
    void InternalGotoBookmark(const TBookmark &bookmark) override;
    void InternalSetToRecord(TRecordBuffer &buffer) override;
    TBookmark GetBookmarkData(const TRecordBuffer &buffer) const override;
    void InternalPost() override;
    void InternalDelete() override;
    void InternalRefresh() override;
    bool FetchFieldData(TField *field, TRecordBuffer &buffer, Variant &value) override;
    const Variant *PeekFieldData(TField *field, const TRecordBuffer &buffer) const override;
    bool GetCanModify() const override { return !readOnly_; }
    void FilterChanged() override;
    bool LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                      bool syncCursor) override;

private:
    struct SortKey
    {
        int column;
        bool descending;
        bool caseInsensitive;
    };

    int columnOf(const TField *field) const { return field->FieldNo() - 1; }
    void ensureColumns();
    qint64 newRow();
    bool isLive(qint64 row) const { return row >= 0 && row < qint64(live_.size()) && live_[size_t(row)]; }
    std::vector<SortKey> sortKeys() const;
    bool rowLess(qint64 a, qint64 b, const std::vector<SortKey> &keys) const;
    void rebuildOrder();
    // Marks the view for rebuilding; ensureView builds it when it is next needed, so that
    // the filter is evaluated once the data set is ready for it.
    void rebuildView();
    void ensureView() const;
    void placeRow(qint64 row, qint64 beforeRow, bool append);
    void unplaceRow(qint64 row);
    bool rowPassesFilter(qint64 row);
    void ensurePositions() const;
    int positionOf(qint64 row) const;
    void changeOrder(const QString &indexFieldNames, const QString &indexName);

    std::vector<std::vector<Variant>> columns_; // one per data field
    std::vector<bool> live_;
    qint64 liveCount_ = 0;
    std::vector<qint64> order_; // live rows in index order
    mutable std::vector<qint64> view_; // the rows of order_ that pass the filter
    mutable bool viewDirty_ = true;
    mutable std::vector<int> rowPos_; // row -> position in view_, -1 when not in it
    mutable bool positionsValid_ = false;
    int cursor_ = -1;
    bool cursorOpen_ = false;
    bool readOnly_ = false;
    QString indexFieldNames_;
    QString indexName_;
    TIndexDefs indexDefs_;
};

} // namespace qdb
