#pragma once

// The auto filter's value list: the distinct values of a column with a tick each, dropped
// from the column's title; the ticked values become the column's FilterList.

#include "QDBFilterData.h"

#include "editors/QDBDropDown.h"

#include <QElapsedTimer>

class QAbstractButton;
class QPushButton;
class QToolButton;

namespace qdb {

// The popup: a grid of ticks over the filter data. The tick column's title ticks or clears
// every value, the value column's title offers the values of every record or of the rows
// shown, and the commands (remove the filter, the filter form, the grid's selected values)
// sit above the list. Without AutoApplyList, OK and Cancel sit below it.
class TQDBPopupFilterList : public TQDBPopupList
{
    Q_OBJECT

public:
    // Commands by number, as TitleClick takes them.
    enum TCommand { cmRemoveFilter, cmSelectFilter, cmAddSelected, cmLoadAll, cmCheckAll };

    explicit TQDBPopupFilterList(QWidget *owner);
    ~TQDBPopupFilterList() override;

    bool AutoApplyList() const { return autoApplyList_; }
    void SetAutoApplyList(bool on);
    bool LoadAll() const { return loadAll_; }
    void SetLoadAll(bool on) { loadAll_ = on; }
    bool CheckedFirst() const { return checkedFirst_; }
    void SetCheckedFirst(bool on) { checkedFirst_ = on; }
    void SetRemoveFilter(bool on);
    void SetSelectFilter(bool on);
    void SetAddSelected(bool on);
    QAbstractButton *CommandButton(TCommand command) const;
    QPushButton *OKButton() const { return ok_; }
    QPushButton *CancelButton() const { return cancel_; }

    // Runs a command; the list reloads for cmLoadAll.
    void TitleClick(int command);
    // Ticks the rows whose values are lines of the clipboard's text (up to a tab), without
    // regard to case; answers how many it ticked that were not ticked.
    int PasteFromClipboard();
    // Ticks the rows of these key values (case aside), after clearing the ticks if asked.
    // While the list is partial, the ticks of values not loaded are kept by value and
    // ticked when their lines come.
    void TickKeys(const QStringList &keys, bool clear);
    // The key values of the ticked rows, in list order, then those of ticked values not loaded.
    QStringList TickedKeys() const;
    // Whether the lines loaded are not all the values: a long list read page by page, or
    // one narrowed by typing.
    void SetPartial(bool on) { partial_ = on; }
    bool Partial() const { return partial_; }
    // The text typed to find a value; shown in the value column's title.
    QString SearchText() const { return search_; }
    // Ticks every row, or clears every tick.
    void CheckAll(bool on);
    void ToggleCheck() override;
    // The value column's own caption, before the marks of LoadAll and of the search.
    void SetValuesCaption(const QString &caption) { valuesCaption_ = caption; }
    int CheckedCount() const;

    QSize CalcSize() override;

    std::function<void()> OnRemoveFilter;
    std::function<void()> OnSelectFilter;
    std::function<void()> OnAddSelected;
    std::function<void()> OnReload;
    // The list reached the end of what is loaded.
    std::function<void()> OnNeedMore;
    // Loads the rest of a partial list, before every value is ticked.
    std::function<void()> OnNeedAll;
    // Loads a partial list up to the first value beginning with the text; false when no
    // value not loaded begins with it.
    std::function<bool(const QString &text)> OnFindMore;
    // The keys among these that a partial list holds beyond its loaded lines.
    std::function<QStringList(const QStringList &keys)> OnFindKeys;
    std::function<void()> OnApply;
    // Typing narrows the list to the values beginning with the text (foIncrementalList).
    std::function<void(const QString &text)> OnNarrow;

protected:
    void KeyDown(QKeyEvent *event) override;
    void FixedCellClick(int col, int row, Qt::KeyboardModifiers modifiers) override;
    void paintEvent(QPaintEvent *event) override;
    void SelectedRowsChanged();
    void resizeEvent(QResizeEvent *event) override;
    bool ClickAccepts() const override { return false; }

private:
    void placeButtons();
    void needMore();
    void incrementalSearch(const QString &typed);
    void updateTitles();

    bool autoApplyList_ = false;
    bool loadAll_ = false;
    bool checkedFirst_ = false;
    bool partial_ = false;
    QStringList pending_; // ticked values whose lines are not loaded
    QToolButton *commands_[3] = {};
    QPushButton *ok_ = nullptr;
    QPushButton *cancel_ = nullptr;
    QString search_;
    QString valuesCaption_;
    QElapsedTimer lastSearchKey_;
    friend class TQDBGridFilterList;
};

// One opened filter list of a column: it gathers the column's values into the filter data,
// ticks those of the column's FilterList, and writes the ticks back.
class TQDBGridFilterList : public TQDBGridDropDownList
{
    Q_OBJECT

public:
    TQDBGridFilterList(TQCustomDBGrid *grid, TQColumn *column);

    TQDBPopupFilterList *FilterPopup() const { return static_cast<TQDBPopupFilterList *>(Popup()); }
    TQDBFilterData *FilterData() { return &data_; }

    // Gathers the values: one page at a time from the database where it can list them,
    // else by walking the records.
    void LoadFilterData();
    // The next page of a long list, when there is one.
    void ReadMore();
    // The rest of a long list.
    void ReadAll();
    // A long list up to the first value beyond the loaded ones that begins with the text;
    // false when there is none (or the database cannot tell).
    bool ReadUpTo(const QString &text);
    // The keys among these that some record holds (case aside), for a list partly loaded.
    QStringList FindKeys(const QStringList &keys);
    bool HasMore() const { return more_; }
    // Whether the database listed the values (else the records were walked).
    bool FromDatabase() const { return fromDatabase_; }
    static constexpr int PageValues = 500;
    void LoadFilterList();
    void LoadSelectList();
    void SaveFilterList();
    void ApplyFilterList();
    void ClearFilterText();
    void ShowFilterForm();
    // The text that sorts values of a field by value: dates as a stamp, numbers fixed-width.
    static QString GetFilterOrder(const TField *field);
    // Runs after the list closed to open the filter form for the column.
    std::function<void(TQColumn *column)> OnShowFilterForm;

protected:
    TQDBPopupList *CreatePopup() override;
    void DoDropDown() override;
    void DoCloseUp(bool accept) override;

private:
    void reload();
    // Runs a read of the values with the grid standing still, its own filter off for LoadAll.
    void overValues(const std::function<void()> &read);
    // A page of values from the database; false when only the walk can list them.
    bool readPage(bool first, int limit = PageValues, const Variant *until = nullptr);
    // After lines were added: the popup learns whether more may come and ticks what waited.
    void appended();
    // Whether the database's text of the field is the text listed.
    static bool listsText(const TField *field);
    void walk();
    // The popup's choices, or the grid's options when no popup is open.
    bool checkedFirst() const;
    bool loadAll() const;

    TQDBFilterData data_;
    QString narrow_; // only values beginning with this (foIncrementalList)
    bool more_ = false;
    bool fromDatabase_ = false;
    Variant lastValue_;
    int pageLines_ = 0;
    QStringList checkedTexts_; // the ticked values listed first
};

} // namespace qdb
