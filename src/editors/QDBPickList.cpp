// The pick list: a column's fixed values, shown by their pick texts.

#include "QDBDataList.h"

#include "QDBEditor.h"

#include <algorithm>

namespace qdb {

TQDBPickData::TQDBPickData(QObject *parent) : TQDBCustomData(parent)
{
    SetReadOnly(true);
}

void TQDBPickData::SetItems(const QStringList &texts)
{
    Close();
    items_ = texts;
    int size = 1;
    for (const QString &t : texts)
        size = qMax(size, int(t.size()));
    FieldDefs().Clear();
    FieldDefs().Add(QStringLiteral("Text"), ftString, size);
    Open();
}

int TQDBPickData::ItemIndex()
{
    return Active() && !IsEmpty() ? RecordIndex() : -1;
}

void TQDBPickData::SetItemIndex(int index)
{
    if (index >= 0 && index < items_.size())
        SetRecNo(index + 1);
}

void TQDBPickData::DoOnGetFieldData(int index, TField *, Variant &value)
{
    if (index >= 0 && index < items_.size())
        value = items_[index];
}

TQDBGridPickList::TQDBGridPickList(TQDBGridEditor *editor, TQColumn *column) : TQDBGridDropDownList(editor, column)
{
    load();
}

void TQDBGridPickList::load()
{
    TQColumn *column = Column();
    if (!column)
        return;
    const TStrings *values = column->GetPickList();
    const TStrings *shown = column->GetPickText();
    const TQPickOptions options = column->GetPickOptions();
    const bool pickText = options.Contains(poSelectPickText) && shown->Count() > 0;
    texts_.clear();
    for (int i = 0; i < values->Count(); ++i) {
        const QString text = pickText && i < shown->Count() ? shown->Get(i) : values->Get(i);
        texts_ << (options.Contains(poFormatPickText) ? column->FormatText(text) : text);
    }
    sorted_.clear();
    for (int i = 0; i < texts_.size(); ++i)
        sorted_ << i;
    if (options.Contains(poSortedByText))
        std::stable_sort(sorted_.begin(), sorted_.end(),
                         [this](int a, int b) { return texts_[a].localeAwareCompare(texts_[b]) < 0; });
    order_ = sorted_;
    multi_ = column->GetMultiSelectList();
    current_ = multi_ ? -1 : CurrentItem();
}

int TQDBGridPickList::CurrentItem() const
{
    TQColumn *column = Column();
    TField *field = column ? column->GetField() : nullptr;
    return field && !field->IsNull() ? column->PickItemOf(field->AsString()) : -1;
}

QList<int> TQDBGridPickList::tickedItems() const
{
    TQColumn *column = Column();
    TField *field = column ? column->GetField() : nullptr;
    QList<int> ticked;
    for (const QString &value : column && field ? column->SplitItems(field->AsString()) : QStringList())
        if (const int item = column->PickItemOf(value); item >= 0)
            ticked << item;
    return ticked;
}

Variant TQDBGridPickList::ItemValue(int item) const
{
    return Column() ? Column()->PickValueOf(item) : Variant::Null();
}

void TQDBGridPickList::showItems(const QString &prefix)
{
    order_.clear();
    for (int item : sorted_)
        if (texts_[item].startsWith(prefix, Qt::CaseInsensitive))
            order_ << item;
    QStringList shown;
    for (int item : order_)
        shown << texts_[item];
    data_.SetItems(shown);
}

void TQDBGridPickList::DoDropDown()
{
    showItems(QString());
    TQDBPopupList *popup = Popup();
    popup->ListSource()->SetDataSet(&data_);
    if (multi_) {
        popup->SetCheckList(true);
        const QList<int> ticked = tickedItems();
        for (int item : ticked) {
            data_.SetItemIndex(shownAt(item));
            popup->SelectedRows().SetCurrentRowSelected(true);
        }
        int first = 0;
        if (!ticked.isEmpty()) {
            first = shownAt(ticked.front());
            for (int item : ticked)
                first = qMin(first, shownAt(item));
        }
        data_.SetItemIndex(first);
        return;
    }
    if (current_ >= 0)
        data_.SetItemIndex(shownAt(current_));
}

void TQDBGridPickList::DoCloseUp(bool accept)
{
    if (!accept)
        return;
    if (!multi_) {
        const int at = data_.ItemIndex();
        if (at >= 0 && at < order_.size())
            current_ = order_[at];
        Value = ItemValue(current_);
        return;
    }
    TQColumn *column = Column();
    TQDBPopupList *popup = Popup();
    QList<int> ticked;
    for (int at = 0; at < order_.size(); ++at) {
        data_.SetItemIndex(at);
        if (popup->SelectedRows().CurrentRowSelected())
            ticked << order_[at];
    }
    std::sort(ticked.begin(), ticked.end());
    QStringList values;
    for (int item : ticked)
        values << ItemValue(item).ToString();
    // Values the list does not hold were typed; ticking others keeps them.
    TField *field = column->GetField();
    for (const QString &value : column->SplitItems(field ? field->AsString() : QString()))
        if (column->PickItemOf(value) < 0)
            values << value;
    Value = values.isEmpty() ? Variant::Null() : Variant(column->JoinItems(values, TQColumn::ItemsFor::Storing));
}

bool TQDBGridPickList::SelectListItem(const QString &text, QString &itemText)
{
    // The ticks of a list of several are the user's; typing does not pick for them.
    if (multi_)
        return false;
    if (ListOptions().Contains(loIncrementalList) && Showing()) {
        showItems(text);
        if (order_.isEmpty())
            return false;
        current_ = order_.front();
        itemText = texts_[current_];
        data_.SetItemIndex(0);
        return true;
    }
    for (int at = 0; at < order_.size(); ++at) {
        const QString &candidate = texts_[order_[at]];
        if (!candidate.startsWith(text, Qt::CaseInsensitive))
            continue;
        current_ = order_[at];
        itemText = candidate;
        if (Showing())
            data_.SetItemIndex(at);
        return true;
    }
    return false;
}

bool TQDBGridPickList::SelectNextItem(bool forward, bool cycle, QString &itemText)
{
    const int count = int(order_.size());
    if (count == 0 || multi_)
        return false;
    int at = current_ >= 0 ? shownAt(current_) + (forward ? 1 : -1) : (forward ? 0 : count - 1);
    if (at < 0 || at >= count) {
        if (!cycle)
            return false;
        at = (at + count) % count;
    }
    current_ = order_[at];
    itemText = texts_[current_];
    if (Showing())
        data_.SetItemIndex(at);
    return true;
}

QString TQDBGridPickList::ListText() const
{
    return current_ >= 0 ? texts_[current_] : QString();
}

TQDBEditorPickList::TQDBEditorPickList(TQDBGridEditor *editor, TQColumn *column) : TQDBGridPickList(editor, column) {}

} // namespace qdb
