#pragma once

// The lists a cell drops down: the column's pick list and a lookup field's list of records.

#include "QDBDropDown.h"

#include "data/QDBCustData.h"

namespace qdb {

// The items of a pick list as a data set of one text field, for the popup grid to show.
class TQDBPickData : public TQDBCustomData
{
    Q_OBJECT

public:
    explicit TQDBPickData(QObject *parent = nullptr);
    // The texts shown, in the order shown; reopens the data set.
    void SetItems(const QStringList &texts);
    const QStringList &Items() const { return items_; }
    // The item the data set stands on, -1 when empty.
    int ItemIndex();
    void SetItemIndex(int index);

protected:
    void DoOnCountRecords(int &count) override { count = int(items_.size()); }
    void DoOnGetFieldData(int index, TField *field, Variant &value) override;

private:
    QStringList items_;
};

// A column's pick list: PickList holds the values stored, PickText (when the options select
// it) the texts shown for them. A column of several values ticks its items instead, and
// stores those ticked joined by its delimiter. With loIncrementalList typing narrows the list
// to the items that begin with what is typed.
class TQDBGridPickList : public TQDBGridDropDownList
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBGridPickList(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);

    bool SelectListItem(const QString &text, QString &itemText) override;
    bool SelectNextItem(bool forward, bool cycle, QString &itemText) override;
    QString ListText() const override;

protected:
    void DoDropDown() override;
    void DoCloseUp(bool accept) override;
    // The value stored for an item: its PickList entry, or its position with poStoreItemIndex.
    Variant ItemValue(int item) const;
    // The item of the cell's value, -1 when it holds none of them.
    int CurrentItem() const;

private:
    void load();
    // The position of the item among those shown.
    int shownAt(int item) const { return int(order_.indexOf(item)); }
    // Shows the items of sorted that begin with prefix (all of them for an empty prefix).
    void showItems(const QString &prefix);
    // The items whose values the cell's value of several holds.
    QList<int> tickedItems() const;

    TQDBPickData data_;
    QStringList texts_;
    QList<int> sorted_; // every item, in the order listed
    QList<int> order_;  // shown position -> item
    int current_ = -1;
    bool multi_ = false;
};

// A lookup list: the records of the lookup data set with their list fields as columns; the
// one chosen gives the key the cell's record stores.
class TQDBGridDataList : public TQDBGridDropDownList
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBGridDataList(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);

    bool SelectListItem(const QString &text, QString &itemText) override;
    bool SelectNextItem(bool forward, bool cycle, QString &itemText) override;
    QString ListText() const override;

protected:
    void DoDropDown() override;
    void DoCloseUp(bool accept) override;

private:
    // The lookup data set, opened; an error when the column has none.
    TDataSet *lookupData() const;
};

// The same lists for the free-standing editor, which keeps its list settings in a column of
// its own.
class TQDBEditorPickList : public TQDBGridPickList
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBEditorPickList(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);
};

class TQDBEditorDataList : public TQDBGridDataList
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBEditorDataList(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);
};

} // namespace qdb
