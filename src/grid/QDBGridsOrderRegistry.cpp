#include "QDBGridsOrderRegistry.h"

#include "platform/rtl/TypInfo.h"

namespace qdb {

namespace {

bool registryMade = false;

QString text(TDataSet *ds, const char *path)
{
    return GetPropText(ds, QString::fromLatin1(path));
}

bool hasSelect(TDataSet *ds)
{
    return text(ds, "CommandText").toUpper().contains(QLatin1String("SELECT "));
}

// The validators of the built-in rows, which read the data set's properties by name.
bool clientQueryCheck(TDataSet *ds, TChangeOrder kind)
{
    if (kind == coChangeIndexFields)
        return true;
    return kind == coChangeOrderFields && hasSelect(ds) && text(ds, "FileName").isEmpty();
}

bool commandTypeCheck(TDataSet *ds, TChangeOrder kind)
{
    if (kind == coChangeIndexFields)
        return true;
    return kind == coChangeOrderFields && text(ds, "CommandType") == QLatin1String("ctQuery")
        && text(ds, "FileName").isEmpty();
}

bool simpleDataSetCheck(TDataSet *ds, TChangeOrder kind)
{
    if (kind == coChangeIndexFields)
        return true;
    return kind == coChangeOrderFields && text(ds, "DataSet.CommandType") == QLatin1String("ctQuery")
        && text(ds, "FileName").isEmpty() && text(ds, "IndexFieldNames").isEmpty();
}

bool adoCursorCheck(TDataSet *ds, TChangeOrder kind)
{
    const QString cursor = text(ds, "CursorLocation");
    if (kind == coChangeIndexFields)
        return cursor == QLatin1String("clUseClient");
    if (kind != coChangeOrderFields || cursor != QLatin1String("clUseServer"))
        return false;
    const QString type = text(ds, "CommandType");
    return type == QLatin1String("cmdText") || (type == QLatin1String("cmdUnknown") && hasSelect(ds));
}

void addItem(const QString &className, TChangeOrder kind, bool ascendOnly, TValidChangeOrder valid,
             const QString &propName = QString(), const QString &indexFormat = QString())
{
    auto item = std::make_unique<TChangeOrderItem>();
    item->ClassName = className;
    item->ChangeOrder = kind;
    item->AscendOnly = ascendOnly;
    item->ValidChangeOrder = std::move(valid);
    item->PropName = propName;
    item->IndexFormat = indexFormat;
    ChangeOrderList().Add(std::move(item));
}

void registerBuiltIns()
{
    const QString fdFormat = QStringLiteral(":A;:D;:N");
    addItem(QStringLiteral("*TQDBCustomData"), coChangeIndexFields, false, {});
    addItem(QStringLiteral("TBDEClientDataSet"), coChangeIndexFields, true, {});
    addItem(QStringLiteral("TBDEClientDataSet"), coChangeOrderFields, false, clientQueryCheck);
    addItem(QStringLiteral("TSQLClientDataSet"), coChangeIndexFields, true, {});
    addItem(QStringLiteral("TSQLClientDataSet"), coChangeOrderFields, false, commandTypeCheck);
    addItem(QStringLiteral("TSimpleDataSet"), coChangeIndexFields, true, {});
    addItem(QStringLiteral("TSimpleDataSet"), coChangeOrderFields, false, simpleDataSetCheck,
            QStringLiteral("DataSet.CommandText"));
    addItem(QStringLiteral("TClientDataSet"), coChangeIndexFields, true, {});
    addItem(QStringLiteral("TClientDataSet"), coChangeOrderFields, false, clientQueryCheck);
    addItem(QStringLiteral("TIBClientDataSet"), coChangeIndexFields, true, {});
    addItem(QStringLiteral("TIBClientDataSet"), coChangeOrderFields, false, clientQueryCheck);
    addItem(QStringLiteral("TIBDataSet"), coChangeSQLOrderFields, false, {}, QStringLiteral("SelectSQL"));
    addItem(QStringLiteral("TIBQuery"), coChangeSQLOrderFields, false, {});
    addItem(QStringLiteral("TIBTable"), coChangeIndexFields, true, {});
    addItem(QStringLiteral("TADODataSet"), coChangeOrderFields, false, adoCursorCheck);
    addItem(QStringLiteral("TADODataSet"), coChangeIndexFields, false, adoCursorCheck);
    addItem(QStringLiteral("TADOQuery"), coChangeSQLOrderFields, false, {});
    addItem(QStringLiteral("TADOTable"), coChangeIndexFields, false, {});
    addItem(QStringLiteral("TQuery"), coChangeSQLOrderFields, false, {});
    addItem(QStringLiteral("TTable"), coChangeIndexFields, true, {});
    addItem(QStringLiteral("TFDQuery"), coChangeIndexFields, false, {}, QString(), fdFormat);
    addItem(QStringLiteral("TFDTable"), coChangeIndexFields, false, {}, QString(), fdFormat);
    addItem(QStringLiteral("TFDMemTable"), coChangeIndexFields, false, {}, QString(), fdFormat);
    // This platform's own data sets.
    addItem(QStringLiteral("*TMemTable"), coChangeIndexFields, false, {}, QString(), fdFormat);
    addItem(QStringLiteral("*TSQLTable"), coChangeIndexFields, false, {});
    addItem(QStringLiteral("*TSQLQuery"), coChangeSQLOrderFields, false, {});
}

} // namespace

QString TChangeOrderItem::Property() const
{
    if (!PropName.isEmpty())
        return PropName;
    switch (ChangeOrder) {
    case coChangeIndexFields: return QStringLiteral("IndexFieldNames");
    case coChangeOrderFields: return QStringLiteral("CommandText");
    case coChangeSQLOrderFields: return QStringLiteral("SQL");
    default: return QString();
    }
}

TChangeOrderList &ChangeOrderList()
{
    static TChangeOrderList list;
    if (!registryMade) {
        registryMade = true;
        registerBuiltIns();
    }
    return list;
}

void TChangeOrderList::Remove(const QString &className, TChangeOrder changeOrder)
{
    std::erase_if(items_, [&](const std::unique_ptr<TChangeOrderItem> &item) {
        return item->ClassName == className && item->ChangeOrder == changeOrder;
    });
    found_ = -1;
}

bool TChangeOrderList::Matches(const TChangeOrderItem &item, TDataSet *dataSet, bool forChange) const
{
    if (!dataSet)
        return false;
    const bool custom = item.ChangeOrder == coCustomChangeOrder;
    bool named = false;
    if (item.ClassName.startsWith(QLatin1Char('*'))) {
        const QString base = item.ClassName.mid(1);
        for (const QString &ancestor : ClassAncestry(dataSet))
            if (ancestor == base) {
                named = true;
                break;
            }
    } else {
        named = ClassName(dataSet) == item.ClassName;
    }
    if (!named)
        return false;
    // A handler writes its property by name: the data set must publish it.
    if (!custom && !IsPublishedProp(dataSet, item.Property()))
        return false;
    if (custom && !(forChange ? bool(item.CustomChangeOrder) : bool(item.CustomCurrentOrder)))
        return false;
    return !item.ValidChangeOrder || item.ValidChangeOrder(dataSet, item.ChangeOrder);
}

const TChangeOrderItem *TChangeOrderList::Find(TDataSet *dataSet, bool forChange)
{
    if (found_ >= 0 && found_ < Count() && Matches(Item(found_), dataSet, forChange))
        return &Item(found_);
    for (int i = Count() - 1; i >= 0; --i) {
        if (Matches(Item(i), dataSet, forChange)) {
            found_ = i;
            return &Item(i);
        }
    }
    return nullptr;
}

void RegisterChangeOrder(const QString &className, TChangeOrder changeOrder, bool ascendOnly,
                         const TValidChangeOrder &validChangeOrder, const QString &propName, const QString &indexFormat)
{
    if (changeOrder == coCustomChangeOrder)
        return;
    ChangeOrderList();
    addItem(className, changeOrder, ascendOnly, validChangeOrder, propName, indexFormat);
}

void RegisterCustomChangeOrder(const QString &className, const TCustomChangeOrder &customChangeOrder,
                               const TCustomCurrentOrder &customCurrentOrder, bool ascendOnly,
                               const TValidChangeOrder &validChangeOrder)
{
    auto item = std::make_unique<TChangeOrderItem>();
    item->ClassName = className;
    item->ChangeOrder = coCustomChangeOrder;
    item->AscendOnly = ascendOnly;
    item->ValidChangeOrder = validChangeOrder;
    item->CustomChangeOrder = customChangeOrder;
    item->CustomCurrentOrder = customCurrentOrder;
    ChangeOrderList().Add(std::move(item));
}

void UnRegisterChangeOrder(const QString &className, TChangeOrder changeOrder)
{
    if (!registryMade)
        return; // never made: nothing to remove
    ChangeOrderList().Remove(className, changeOrder);
}

} // namespace qdb
