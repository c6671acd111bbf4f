#pragma once

#include "Brackets.h"

#include <QList>
#include <QObject>

#include <functional>

namespace qdb {

class TCollection;

enum class TCollectionNotification { cnAdded, cnExtracting, cnDeleting };

// An item of a TCollection. It joins its collection when created with one and leaves it
// when destroyed.
class TCollectionItem : public QObject
{
    Q_OBJECT

public:
    explicit TCollectionItem(TCollection *collection = nullptr);
    ~TCollectionItem() override;

    TCollection *Collection() const { return collection_; }
    void SetCollection(TCollection *collection);
    int Index() const;
    // Moves the item to a new position.
    void SetIndex(int index);
    int ID() const { return id_; }
    virtual QString DisplayName() const;
    // Copies the stored properties of another item of the same kind.
    virtual void Assign(const TCollectionItem &source);

protected:
    // Reports a change of this item, or of all items when it affects the others too.
    void Changed(bool allItems);

private:
    friend class TCollection;
    TCollection *collection_ = nullptr;
    int id_ = -1;
};

// An ordered, owning list of items of one class. Structural changes and item changes
// reach Update (a null item: the whole collection); BeginUpdate/EndUpdate nest and hold
// them back until the outermost end, which calls Update once.
class TCollection : public QObject
{
    Q_OBJECT

public:
    using ItemFactory = std::function<TCollectionItem *(TCollection *)>;

    explicit TCollection(ItemFactory factory, QObject *owner = nullptr);
    ~TCollection() override;

    QObject *Owner() const { return parent(); }
    int Count() const { return int(items_.size()); }
    TCollectionItem *Items(int index) const;
    TCollectionItem *Add();
    TCollectionItem *Insert(int index);
    void Delete(int index);
    void Clear();
    TCollectionItem *FindItemID(int id) const;
    // Replaces the items with copies of another collection's.
    virtual void Assign(const TCollection &source);

    void BeginUpdate();
    void EndUpdate();
    int UpdateCount() const { return updateCount_; }

protected:
    virtual void Update(TCollectionItem *item);
    virtual void Notify(TCollectionItem *item, TCollectionNotification action);
    // Reports a change of the whole collection unless updates are held back.
    void Changed();

private:
    friend class TCollectionItem;
    void insertItem(TCollectionItem *item);
    void removeItem(TCollectionItem *item);
    void moveItem(int from, int to);

    ItemFactory factory_;
    QList<TCollectionItem *> items_;
    int updateCount_ = 0;
    int nextId_ = 0;
};

// A collection with typed access to items of class T.
template<typename T>
class TCollectionOf : public TCollection
{
public:
    explicit TCollectionOf(QObject *owner = nullptr)
        : TCollection([](TCollection *c) -> TCollectionItem * { return new T(c); }, owner)
    {
    }
    TCollectionOf(ItemFactory factory, QObject *owner) : TCollection(std::move(factory), owner) {}

    T *Items(int index) const { return static_cast<T *>(TCollection::Items(index)); }
    T *Add() { return static_cast<T *>(TCollection::Add()); }
    T *Insert(int index) { return static_cast<T *>(TCollection::Insert(index)); }
    T *operator[](int index) const { return Items(index); }

    static T *ItemAt(const TCollectionOf &c, int index) { return c.Items(index); }
    using iterator = IndexIterator<TCollectionOf, T *, &TCollectionOf::ItemAt>;
    iterator begin() const { return iterator(this, 0); }
    iterator end() const { return iterator(this, Count()); }
};

using CollectionUpdateGuard = UpdateBracket<TCollection>;

} // namespace qdb
