#pragma once

#include "SQLConnection.h"

#include "platform/db/DataSet.h"
#include "platform/rtl/Strings.h"

#include <QHash>
#include <QPointer>

#include <deque>
#include <map>
#include <memory>

namespace qdb {

class SQLRowSource;
struct SQLRows;

// Named values for the ":name" placeholders of a query.
class TParams
{
public:
    void SetValue(const QString &name, const Variant &value);
    Variant Value(const QString &name) const; // Null when not set
    bool Contains(const QString &name) const;
    void Clear() { values_.clear(); }
    QStringList Names() const;

private:
    QList<QPair<QString, Variant>> values_;
};

// A data set over the result of a SELECT. Rows are read when they are looked at and kept in
// a bounded cache of pages; RecordCount is exact and RecNo a position in the open result.
// Records are identified by key: KeyFields, or the table's primary key, or SQLite's rowid.
// Bookmarks hold the key values, so they find their record again after inserts, deletes,
// refreshes, filters and new orders; a data set without a key has bookmarks that last until
// its rows are read again, and says so when one is used after that. A Filter becomes a WHERE
// clause with bound values around the query, its ORDER BY kept outside. Posting writes
// UPDATE, INSERT or DELETE by key; the record is read back so that defaults and triggers show.
class TCustomSQLDataSet : public TDataSet
{
    Q_OBJECT
    Q_PROPERTY(qdb::TSQLConnection *Connection READ Connection WRITE SetConnection)
    Q_PROPERTY(QString KeyFields READ KeyFields WRITE SetKeyFields)
    Q_PROPERTY(bool ReadOnly READ ReadOnly WRITE SetReadOnly)

public:
    explicit TCustomSQLDataSet(QObject *parent = nullptr);
    ~TCustomSQLDataSet() override;

    TSQLConnection *Connection() const { return connection_; }
    void SetConnection(TSQLConnection *connection);
    // Fields that identify a record for writing (";" list); empty: the table's primary key.
    QString KeyFields() const { return keyFields_; }
    void SetKeyFields(const QString &fields) { keyFields_ = fields; }
    bool ReadOnly() const { return readOnly_; }
    void SetReadOnly(bool on) { readOnly_ = on; }

    int RecordCount() const override;
    bool RecordCountKnown() const override;
    bool Reading() const override { return connection_ && connection_->Reading(); }
    int RecNo() const override;
    void SetRecNo(int recNo) override;
    bool BookmarkValid(const TBookmark &bookmark) const override;
    // In the current order; bookmarks of records no longer in the result sort first.
    int CompareBookmarks(const TBookmark &a, const TBookmark &b) const override;

    // The values of the first record holding the keys, read by one query and leaving the
    // cursor where it is; a data set filtered by OnFilterRecord walks.
    Variant Lookup(const QString &keyFields, const Variant &keyValues, const QString &resultFields) override;
    bool LongestText(TField *field, QString &text) const override;
    // One grouping query over the result; false under an OnFilterRecord filter.
    bool DistinctValues(const TDistinctRequest &request, QList<TDistinctValue> &values) override;
    // One aggregate query over the result; false under an OnFilterRecord filter, which only
    // the records themselves can answer.
    bool Summarize(const QList<TFieldSummaryRequest> &requests, TDataSetSummary &summary) override;
    // The records' rows by their keys, a few hundred a statement; false without a key.
    bool ReadRecords(const QList<TBookmark> &bookmarks, const QList<TField *> &fields,
                     const TRecordValuesProc &each) override;

    // Rows held in memory now (bounded, whatever the size of the result).
    int CachedRows() const;
    // How many times the order of the open result was computed for reading it at any
    // position (once at most until the result changes).
    int OrderComputations() const;

protected:
    // The statement without filter, and its bound values.
    virtual QString SelectSQL() const = 0;
    virtual QList<Variant> SelectParams() const { return {}; }
    // The table written to; empty makes the data set read-only.
    virtual QString UpdateTableName() const = 0;
    // A column the database adds to identify each row where the data set has no key of its
    // own (SQLite's rowid), empty when there is none; its field is hidden and read-only.
    virtual QString ImplicitKey() const { return {}; }
    QStringList primaryKeyNames(const QString &table) const;

    void InternalOpen() override;
    void InternalClose() override;
    bool IsCursorOpen() const override { return source_ != nullptr; }
    void InternalInitFieldDefs() override;
    TGetResult GetRecord(TRecordBuffer &buffer, TGetMode mode, bool doCheck) override;
    void InternalFirst() override { pos_ = -1; }
    void InternalLast() override;
    bool InternalJump(int distance, int &moved) override;
    void InternalGotoBookmark(const TBookmark &bookmark) override;
    void InternalSetToRecord(TRecordBuffer &buffer) override;
    TBookmark GetBookmarkData(const TRecordBuffer &buffer) const override;
    void InternalPost() override;
    void InternalDelete() override;
    void InternalRefresh() override;
    bool FetchFieldData(TField *field, TRecordBuffer &buffer, Variant &value) override;
    const Variant *PeekFieldData(TField *field, const TRecordBuffer &buffer) const override;
    bool GetCanModify() const override;
    // An exact search asks the database where the record is rather than reading every row.
    bool LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                      bool syncCursor) override;
    // The database is asked for the rows that may have the text, in the order from the
    // current record; `accept` sees each of them until it takes one.
    int FindTextRecord(const TTextSearch &search, TSearchFrom from, const std::function<bool()> &accept) override;
    void FilterChanged() override;

    QString Quote(const QString &name) const;
    // Reads the result again after SelectSQL changed only its order: the fields, and so the
    // controls' columns, stay; the current record stays current, at its row in the window.
    void Reorder();

private:
    struct Page
    {
        std::vector<Variant> values; // `width` values a row, one per data field
        size_t rows = 0;
        quint64 used = 0;
    };
    static constexpr int PageSize = 256;
    // The row of a record buffer that holds a row read outside the positions (probe_).
    static constexpr qint64 ProbeRow = -2;
    static constexpr size_t MaxPages = 64;
    static constexpr size_t WalkPages = 4;

    void openSource();
    // Tells the source which columns the fields read as dates.
    void tellDateColumns();
    // The names of the key fields, before any field exists.
    QStringList keyNames() const;
    // Reads the result again from the database; the record at `keep` stays current.
    void reread(const QList<QVariant> &keep);
    // After a write of its own: the record at `position` left its place (-1: inserted), the
    // one with the key values `written` (none: deleted) is current where it now sorts.
    void rowsWritten(qint64 position, const QList<QVariant> &written);
    QList<QVariant> keyValuesAt(qint64 position) const;
    QList<QVariant> keyValuesOf(const Variant *row) const;
    // Appends the fields' values of row r of what the database handed over, moved out of it.
    void typeRow(SQLRows &raw, size_t r, std::vector<Variant> &out) const;
    // Each value of rows read with a column for each field, in the fields' order, typed where it stands.
    void typeInPlace(SQLRows &raw) const;
    // The result columns of the fields and the values they must hold, for the database to
    // find the records; false when only a walk can (fields that are not columns, a filter
    // only the records can answer).
    bool matchInDatabase(const QList<TField *> &fields, const Variant &keyValues, QList<int> &columns,
                         QList<QVariant> &values) const;
    qint64 positionOf(const TBookmark &bookmark) const;
    // The key values a bookmark holds (none for a data set without a key); false for what is
    // no bookmark of a SQL data set.
    static bool bookmarkKeys(const TBookmark &bookmark, QList<QVariant> &keys);
    void releaseLater() const;
    qint64 count() const;
    // The values of the row at a position (one per data field), nullptr past the end.
    const Variant *row(qint64 position) const;
    bool rowExists(qint64 position) const { return row(position) != nullptr; }
    int width() const { return int(columnOfField_.size()); }
    void dropCache();
    QList<TField *> keyFieldList();
    void writeRecord(bool inserting);
    std::vector<Variant> readBack(const QList<TField *> &keys, const QList<Variant> &values);
    bool clientFilterAccepts(TRecordBuffer &buffer);
    // Whether OnFilterRecord must see each record: the database does not stand in for it.
    bool clientFiltering() const;

    // Where a position of an earlier reading is now, from the writes made since; -1 when
    // the record was deleted, -2 when those writes are not all known.
    qint64 translated(quint64 generation, qint64 position) const;

    // One of the data set's own writes: the record at `from` (-1: inserted) went to `to`
    // (-1: deleted), making reading `generation`.
    struct Shift
    {
        quint64 generation;
        qint64 from;
        qint64 to;
    };
    static constexpr size_t MaxShifts = 256;

    QPointer<TSQLConnection> connection_;
    QString keyFields_;
    bool readOnly_ = false;
    std::unique_ptr<SQLRowSource> source_;
    QList<int> columnOfField_; // data field (FieldNo - 1) -> result column
    QList<const TField *> fieldOfSlot_; // data field (FieldNo - 1) -> the field, if it has a column
    bool sameShape_ = false; // each result column is the field of its place, and there are no others
    QList<TField *> keyOfRow_; // the fields of the result's key columns
    quint64 generation_ = 0;   // which reading of the result positions belong to
    mutable QHash<TBookmark, qint64> positions_; // bookmarks of older readings, found again
    std::deque<Shift> shifts_;                   // the latest writes, oldest first
    mutable bool releasePosted_ = false;
    mutable std::map<qint64, Page> pages_;
    mutable std::deque<qint64> walk_; // the pages read one after the other last, oldest first
    mutable qint64 fetchedNo_ = -2;   // the page read last
    std::unique_ptr<SQLRows> raw_; // the last page as read, before typing; its storage serves every page
    std::vector<Variant> probe_;
    mutable const Page *lastPage_ = nullptr; // the page read last, asked for again and again
    mutable qint64 lastPageNo_ = -1;
    mutable quint64 useClock_ = 0;
    mutable qint64 count_ = -1;
    qint64 pos_ = -1;
    bool matchInWhere_ = false; // the record handler's match is part of the WHERE
};

// A data set over the text of a SELECT with ":name" parameters.
class TSQLQuery : public TCustomSQLDataSet
{
    Q_OBJECT
    Q_PROPERTY(qdb::TStrings *SQL READ SQL)
    Q_PROPERTY(QString UpdateTable READ UpdateTable WRITE SetUpdateTable)

public:
    explicit TSQLQuery(QObject *parent = nullptr);
    TStrings *SQL() const { return sql_; }
    TParams &Params() { return params_; }
    // The table posts are written to; empty: the table after the first FROM.
    QString UpdateTable() const { return updateTable_; }
    void SetUpdateTable(const QString &table) { updateTable_ = table; }
    // Runs the text as a statement (no result); answers the rows it changed.
    int ExecSQL();

protected:
    QString SelectSQL() const override;
    QList<Variant> SelectParams() const override;
    QString UpdateTableName() const override;

private:
    // The text with "?" for each ":name", and the names in order.
    QPair<QString, QStringList> positional() const;
    TStringList *sql_;
    TParams params_;
    QString updateTable_;
};

// A data set over one table, in the order of IndexFieldNames (";" list, each name
// optionally followed by " DESC").
class TSQLTable : public TCustomSQLDataSet
{
    Q_OBJECT
    Q_PROPERTY(QString TableName READ TableName WRITE SetTableName)
    Q_PROPERTY(QString IndexFieldNames READ IndexFieldNames WRITE SetIndexFieldNames)

public:
    explicit TSQLTable(QObject *parent = nullptr);
    QString TableName() const { return tableName_; }
    void SetTableName(const QString &name);
    QString IndexFieldNames() const { return indexFieldNames_; }
    // Reopens an open table in the new order.
    void SetIndexFieldNames(const QString &names);

protected:
    QString SelectSQL() const override;
    QString UpdateTableName() const override { return tableName_; }
    // A SQLite table without a primary key is keyed by its rowid.
    QString ImplicitKey() const override;

private:
    QString tableName_;
    QString indexFieldNames_;
    mutable QString implicitFor_; // the connection and table the implicit key was found for
    mutable QString implicitKey_;
};

} // namespace qdb
