#pragma once

// The grid's multi-selection: selected rows as a sorted list of bookmarks, selected columns
// as a list ordered by column index, and ranges over either for range-based loops.

#include "QDBGridTypes.h"

#include "platform/db/DataSet.h"
#include "platform/rtl/Variant.h"

#include <QList>
#include <QPointer>

namespace qdb {

class TQColumn;
class TQCustomDBGrid;

// The selected rows, kept sorted by the data set's own bookmark comparison so that a row
// is found by binary search; the last search is remembered, as painting asks about the
// same rows again and again. When the data set's records change their order (a new index,
// a refresh, an edit that moves a record), the list is sorted again before it is next read.
class TQBookmarkList
{
public:
    explicit TQBookmarkList(TQCustomDBGrid *grid) : grid_(grid) {}

    int Count() const
    {
        syncOrder();
        return int(items_.size());
    }
    const TBookmark &Items(int index) const
    {
        syncOrder();
        return items_.at(index);
    }
    int IndexOf(const TBookmark &bookmark) const;
    // Whether the bookmark is selected; `index` is its place, or where it would go.
    bool Find(const TBookmark &bookmark, int &index) const;
    int Compare(const TBookmark &a, const TBookmark &b) const;

    TBookmark CurrentRow() const;
    void SetCurrentRow(const TBookmark &bookmark);
    bool CurrentRowSelected() const;
    void SetCurrentRowSelected(bool selected);

    void InsertItem(int index, const TBookmark &bookmark);
    void DeleteItem(int index);
    void Clear();
    // Appends a bookmark known to come after every other (a walk in the data set's order).
    void AppendItem(const TBookmark &bookmark);
    // Sorts the list again after appends made in an order other than the bookmarks'.
    void Resort();

    // Drops the bookmarks of records that are gone; true when any was dropped.
    bool Refresh();
    // Deletes every selected record from the data set.
    void Delete();
    // Keeps the selection as key values (the grid's KeyFields when none are given) and
    // selects the records with those values again, after a reorder or a reload.
    void Save(const QString &keyFields = {});
    void Restore(const QString &keyFields = {});
    const QList<Variant> &SavedValues() const { return saved_; }
    void SetSavedValues(const QList<Variant> &values) { saved_ = values; }

    void LinkActive(bool active);
    void DataChanged();

    // Walking the selected rows moves the data set's cursor to each in turn.
    class Enumerator
    {
    public:
        Enumerator(const TQBookmarkList *list, int index);
        const TBookmark &operator*() const { return list_->Items(index_); }
        Enumerator &operator++();
        bool operator!=(const Enumerator &other) const { return index_ != other.index_; }

    private:
        void go() const;
        const TQBookmarkList *list_;
        int index_;
    };
    Enumerator begin() const { return Enumerator(this, 0); }
    Enumerator end() const { return Enumerator(this, Count()); }

private:
    TDataSet *dataSet() const;
    QString keyFieldsFor(const QString &keyFields) const;
    void forget() const { cacheIndex_ = -1; }
    // Sorts the list again when the data set's order moved on since it was last sorted.
    void syncOrder() const;
    void sortItems() const;
    void noteOrder() const;

    TQCustomDBGrid *grid_;
    mutable QList<TBookmark> items_;
    mutable quint64 orderVersion_ = 0;
    mutable const TDataSet *orderOf_ = nullptr;
    QList<Variant> saved_;
    mutable TBookmark cacheBookmark_;
    mutable int cacheIndex_ = -1;
    mutable bool cacheFound_ = false;
    bool linkActive_ = false;
};
using TQBookmarkListEnumerator = TQBookmarkList::Enumerator;

// The selected columns, ordered by their index in the collection. They are held by
// reference: columns that are deleted drop out, and a list saved by field names finds its
// columns again after the collection was rebuilt.
class TQColumnList
{
public:
    explicit TQColumnList(TQCustomDBGrid *grid) : grid_(grid) {}

    int Count() const;
    TQColumn *Items(int index) const;
    bool Contains(const TQColumn *column) const;
    void Add(TQColumn *column);
    void Remove(TQColumn *column);
    void Clear();
    // Drops columns that are gone and orders the rest by index again.
    void RefreshList();
    bool NeedRefresh() const;
    // Refreshes when columns were moved or deleted since.
    void AutoRefresh()
    {
        if (NeedRefresh())
            RefreshList();
    }
    void Save();
    void Restore();

    class Enumerator
    {
    public:
        Enumerator(const TQColumnList *list, int index) : list_(list), index_(index) {}
        TQColumn *operator*() const { return list_->Items(index_); }
        Enumerator &operator++()
        {
            ++index_;
            return *this;
        }
        bool operator!=(const Enumerator &other) const { return index_ != other.index_; }

    private:
        const TQColumnList *list_;
        int index_;
    };
    Enumerator begin() const;
    Enumerator end() const { return Enumerator(this, Count()); }

private:
    TQCustomDBGrid *grid_;
    QList<QPointer<TQColumn>> columns_;
    QStringList saved_;
};
using TQColumnListEnumerator = TQColumnList::Enumerator;

// Rows of the grid's data set for a range-based loop; each step moves the cursor there.
// Which rows: every row, the selected ones, the selected or else every row, the selected
// or else the current one, or the current one alone.
class TQRowRange
{
public:
    TQRowRange(TQCustomDBGrid *grid, TDataRowEnum rows);

    class Enumerator
    {
    public:
        Enumerator(const TQRowRange *range, bool atEnd);
        TBookmark operator*() const;
        Enumerator &operator++();
        bool operator!=(const Enumerator &other) const { return done_ != other.done_ || (!done_ && index_ != other.index_); }

    private:
        const TQRowRange *range_;
        int index_ = 0;
        bool done_ = true;
    };
    Enumerator begin() const { return Enumerator(this, false); }
    Enumerator end() const { return Enumerator(this, true); }
    // Whether the rows come from the selection, not from a walk through the data set.
    bool FromSelection() const { return fromSelection_; }
    bool CurrentOnly() const { return currentOnly_; }
    TQCustomDBGrid *Grid() const { return grid_; }

private:
    TQCustomDBGrid *grid_;
    bool fromSelection_ = false;
    bool currentOnly_ = false;
};

struct TQBookmarkListOrAllRows : TQRowRange
{
    explicit TQBookmarkListOrAllRows(TQCustomDBGrid *grid) : TQRowRange(grid, reSelectedRowsOrAllRows) {}
};
struct TQBookmarkListOrCurrent : TQRowRange
{
    explicit TQBookmarkListOrCurrent(TQCustomDBGrid *grid) : TQRowRange(grid, reSelectedRowsOrCurrent) {}
};
struct TQDBGridDataRows : TQRowRange
{
    explicit TQDBGridDataRows(TQCustomDBGrid *grid) : TQRowRange(grid, reAllRows) {}
};
struct TQDBGridCurrentRow : TQRowRange
{
    explicit TQDBGridCurrentRow(TQCustomDBGrid *grid) : TQRowRange(grid, reCurrentRow) {}
};
using TQBookmarkListOrAllRowsEnumerator = TQRowRange::Enumerator;
using TQBookmarkListOrCurrentEnumerator = TQRowRange::Enumerator;
using TQDBGridDataRowsEnumerator = TQRowRange::Enumerator;
using TQDBGridCurrentRowEnumerator = TQRowRange::Enumerator;

// Columns for a range-based loop: every showing column, the selected ones, the selected or
// else every column, the selected or else the current one, or the current one alone.
class TQColRange
{
public:
    TQColRange(TQCustomDBGrid *grid, TDataColEnum cols);
    QList<TQColumn *>::const_iterator begin() const { return columns_.cbegin(); }
    QList<TQColumn *>::const_iterator end() const { return columns_.cend(); }
    int Count() const { return int(columns_.size()); }

private:
    QList<TQColumn *> columns_;
};

struct TQColumnListOrAllCols : TQColRange
{
    explicit TQColumnListOrAllCols(TQCustomDBGrid *grid) : TQColRange(grid, ceSelectedColsOrAllCols) {}
};
struct TQColumnListOrCurrent : TQColRange
{
    explicit TQColumnListOrCurrent(TQCustomDBGrid *grid) : TQColRange(grid, ceSelectedColsOrCurrent) {}
};
struct TQDBGridCurrentCol : TQColRange
{
    explicit TQDBGridCurrentCol(TQCustomDBGrid *grid) : TQColRange(grid, ceCurrentCol) {}
};
using TQColumnListOrAllColsEnumerator = QList<TQColumn *>::const_iterator;
using TQColumnListOrCurrentEnumerator = QList<TQColumn *>::const_iterator;
using TQDBGridCurrentColEnumerator = QList<TQColumn *>::const_iterator;

// Called for each cell (a column of the current record), row or column in scope.
using TForEachCellProc = std::function<void(TQColumn *column, TForEachCellFlags flags)>;

} // namespace qdb
