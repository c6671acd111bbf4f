#pragma once

#include "platform/db/DataSet.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace qdb {

class TQDBGrid;

namespace OrderKinds {
Q_NAMESPACE
enum TChangeOrder { coChangeIndexFields, coChangeOrderFields, coChangeSQLOrderFields, coCustomChangeOrder };
Q_ENUM_NS(TChangeOrder)
} // namespace OrderKinds
using namespace OrderKinds;

using TValidChangeOrder = std::function<bool(TDataSet *dataSet, TChangeOrder changeOrder)>;
using TCustomChangeOrder = std::function<void(TQDBGrid *grid, const QString &order)>;
using TCustomCurrentOrder = std::function<QString(TQDBGrid *grid)>;

// How the order of one data set class is changed. A ClassName starting with "*" serves
// that class and every class derived from it.
struct TChangeOrderItem
{
    QString ClassName;
    TChangeOrder ChangeOrder = coChangeIndexFields;
    bool AscendOnly = false;
    TValidChangeOrder ValidChangeOrder;
    QString PropName;    // empty: the kind's default property
    QString IndexFormat; // ascending;descending;case-insensitive suffixes, or empty
    TCustomChangeOrder CustomChangeOrder;
    TCustomCurrentOrder CustomCurrentOrder;

    // The property that carries the order for this item.
    QString Property() const;
};

// The process-wide list of handlers, searched from the last item back, so that later
// registrations win; it remembers the item it found last.
class TChangeOrderList
{
public:
    int Count() const { return int(items_.size()); }
    const TChangeOrderItem &Item(int index) const { return *items_[size_t(index)]; }
    // A new row may serve data sets an older one served: the remembered find is dropped.
    void Add(std::unique_ptr<TChangeOrderItem> item)
    {
        items_.push_back(std::move(item));
        found_ = -1;
    }
    void Remove(const QString &className, TChangeOrder changeOrder);
    // The handler for a data set: for changing its order, or for reading it.
    const TChangeOrderItem *Find(TDataSet *dataSet, bool forChange);
    bool Matches(const TChangeOrderItem &item, TDataSet *dataSet, bool forChange) const;

private:
    std::vector<std::unique_ptr<TChangeOrderItem>> items_;
    int found_ = -1;
};

// The registry with the built-in handlers, made on first use.
TChangeOrderList &ChangeOrderList();

// A call with coCustomChangeOrder is ignored: custom handlers use RegisterCustomChangeOrder.
void RegisterChangeOrder(const QString &className, TChangeOrder changeOrder, bool ascendOnly = false,
                         const TValidChangeOrder &validChangeOrder = {}, const QString &propName = QString(),
                         const QString &indexFormat = QString());
void RegisterCustomChangeOrder(const QString &className, const TCustomChangeOrder &customChangeOrder,
                               const TCustomCurrentOrder &customCurrentOrder, bool ascendOnly = false,
                               const TValidChangeOrder &validChangeOrder = {});
// Removes every item with exactly this class name (case-sensitive) and kind.
void UnRegisterChangeOrder(const QString &className, TChangeOrder changeOrder);

} // namespace qdb
