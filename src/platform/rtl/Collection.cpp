#include "Collection.h"

#include "Exceptions.h"
#include "Streaming.h"
#include "TypInfo.h"

#include <QCoreApplication>

namespace qdb {

// ---- TCollectionItem ----

TCollectionItem::TCollectionItem(TCollection *collection)
{
    SetCollection(collection);
}

TCollectionItem::~TCollectionItem()
{
    SetCollection(nullptr);
}

void TCollectionItem::SetCollection(TCollection *collection)
{
    if (collection_ == collection)
        return;
    if (collection_)
        collection_->removeItem(this);
    if (collection)
        collection->insertItem(this);
}

int TCollectionItem::Index() const
{
    return collection_ ? int(collection_->items_.indexOf(const_cast<TCollectionItem *>(this))) : -1;
}

void TCollectionItem::SetIndex(int index)
{
    const int current = Index();
    if (current < 0 || current == index)
        return;
    collection_->moveItem(current, qBound(0, index, collection_->Count() - 1));
    Changed(true);
}

QString TCollectionItem::DisplayName() const
{
    return ClassName(this);
}

void TCollectionItem::Assign(const TCollectionItem &source)
{
    AssignProperties(this, &source);
}

void TCollectionItem::Changed(bool allItems)
{
    if (collection_ && collection_->updateCount_ == 0)
        collection_->Update(allItems ? nullptr : this);
}

// ---- TCollection ----

TCollection::TCollection(ItemFactory factory, QObject *owner) : QObject(owner), factory_(std::move(factory)) {}

TCollection::~TCollection()
{
    ++updateCount_; // no notifications while going away
    while (!items_.isEmpty()) {
        TCollectionItem *item = items_.takeLast();
        item->collection_ = nullptr;
        delete item;
    }
}

TCollectionItem *TCollection::Items(int index) const
{
    if (index < 0 || index >= items_.size())
        throw EListError(QCoreApplication::translate("qdb", "List index out of bounds (%1)").arg(index));
    return items_[index];
}

TCollectionItem *TCollection::Add()
{
    // The item joins the collection from its base constructor; the change is told once the
    // item is whole, so that listeners never see it half made.
    BeginUpdate();
    TCollectionItem *item = nullptr;
    try {
        item = factory_(this);
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
    return item;
}

TCollectionItem *TCollection::Insert(int index)
{
    TCollectionItem *item = Add();
    item->SetIndex(index);
    return item;
}

void TCollection::Delete(int index)
{
    TCollectionItem *item = Items(index);
    Notify(item, TCollectionNotification::cnDeleting);
    delete item;
}

void TCollection::Clear()
{
    if (items_.isEmpty())
        return;
    CollectionUpdateGuard guard(*this);
    while (!items_.isEmpty())
        Delete(Count() - 1);
}

TCollectionItem *TCollection::FindItemID(int id) const
{
    for (TCollectionItem *item : items_)
        if (item->id_ == id)
            return item;
    return nullptr;
}

void TCollection::Assign(const TCollection &source)
{
    if (&source == this)
        return;
    CollectionUpdateGuard guard(*this);
    Clear();
    for (TCollectionItem *item : source.items_)
        Add()->Assign(*item);
}

void TCollection::BeginUpdate()
{
    ++updateCount_;
}

void TCollection::EndUpdate()
{
    if (updateCount_ > 0 && --updateCount_ == 0)
        Changed();
}

void TCollection::Update(TCollectionItem *)
{
}

void TCollection::Notify(TCollectionItem *, TCollectionNotification)
{
}

void TCollection::Changed()
{
    if (updateCount_ == 0)
        Update(nullptr);
}

void TCollection::insertItem(TCollectionItem *item)
{
    items_.append(item);
    item->collection_ = this;
    item->id_ = nextId_++;
    item->setParent(this);
    Notify(item, TCollectionNotification::cnAdded);
    Changed();
}

void TCollection::removeItem(TCollectionItem *item)
{
    Notify(item, TCollectionNotification::cnExtracting);
    items_.removeOne(item);
    item->collection_ = nullptr;
    if (item->parent() == this)
        item->setParent(nullptr);
    Changed();
}

void TCollection::moveItem(int from, int to)
{
    items_.move(from, to);
}

} // namespace qdb
