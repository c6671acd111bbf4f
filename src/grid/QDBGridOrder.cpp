// The sort order: the markers as order text, the order-update bracket, and giving the order
// to the data set through its class's handler (an index field list, the ORDER BY of a
// query's text, or a custom procedure), keeping the current record and the selection.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"
#include "QDBGridsOrderRegistry.h"
#include "QDBGridsOrderText.h"

#include "platform/rtl/TypInfo.h"

#include <QCoreApplication>

#include <optional>

namespace qdb {

QString TQCustomDBGrid::GetDetailFields() const { return d_->detailFields; }

void TQCustomDBGrid::SetDetailFields(const QString &fields)
{
    if (fields == d_->detailFields)
        return;
    d_->detailFields = fields;
    if (DataLink()->Active())
        UpdateOrder(false);
}

bool TQCustomDBGrid::KeepSelection() const
{
    return KeepPosition() && d_->optionsEx.Contains(dgAutoKeepSelection);
}

QString TQCustomDBGrid::GetOrderFields() const
{
    // Before there are columns to mark, the order is the text as it was given.
    if (d_->columns->State() == csDefault && !DataLink()->Active())
        return d_->orderFields;
    QStringList items;
    for (TQColumn *c : d_->columns->MarkerList())
        items << (c->GetTitle()->GetMarker() == tmDescend ? c->GetFieldName() + QLatin1String(" DESC") : c->GetFieldName());
    return items.join(QLatin1Char(','));
}

void TQCustomDBGrid::SetOrderFields(const QString &value)
{
    const QString order = SemicolonToComma(value);
    WithOrderUpdate(this, [&] {
        if (d_->columns->State() == csDefault && !DataLink()->Active()) {
            d_->orderFields = order;
        } else {
            d_->columns->RemoveMarkers();
            QString rest = order;
            while (!rest.trimmed().isEmpty()) {
                const QString item = ScanStr(rest, QLatin1Char(',')).trimmed();
                const QString upper = item.toUpper();
                const bool descending = upper.contains(QLatin1String(" DESC"));
                int cut = upper.indexOf(QLatin1String(" DESC"));
                if (cut < 0)
                    cut = upper.indexOf(QLatin1String(" ASC"));
                const QString name = (cut < 0 ? item : item.left(cut)).trimmed();
                TQColumn *column = d_->columns->FindColumn(name);
                const int count = int(d_->columns->MarkerList().size());
                if (column && column->Sortable() && column->GetTitle()->OrderIndex() < 0
                    && count < TQDBGridColumns::MaxMarkers)
                    column->GetTitle()->SetMarkerIndex(2 * count + 2 + (descending ? 1 : 0));
                if (d_->options.Contains(dgMarkerAutoSwitch))
                    break; // one sorted column at a time
            }
            d_->orderFields = GetOrderFields();
        }
    });
}

void TQCustomDBGrid::BeginOrderUpdate()
{
    if (d_->orderLock++ == 0) {
        BeginUpdate();
        d_->orderBefore = GetOrderFields();
    }
}

void TQCustomDBGrid::EndOrderUpdate()
{
    if (d_->orderLock <= 0 || --d_->orderLock > 0)
        return;
    EndUpdate();
    const QString now = GetOrderFields();
    if (now == d_->orderBefore)
        return;
    d_->orderFields = now;
    if (IsLoading())
        return;
    if (DataLink()->Active())
        DataSet()->CheckBrowseMode();
    for (int r = 0; r < TitleOffset(); ++r)
        InvalidateRow(r);
    const QString before = d_->orderBefore;
    try {
        OrderChanged();
    } catch (...) {
        // The data set kept the order it had: so do the titles, or the next click would
        // toggle an order that was never applied.
        SetupOrderFields(before);
        throw;
    }
}

void TQCustomDBGrid::SetupOrderFields(const QString &order)
{
    // The outer count keeps the inner end from applying or announcing anything.
    ++d_->orderLock;
    try {
        SetOrderFields(order);
    } catch (...) {
        --d_->orderLock;
        throw;
    }
    --d_->orderLock;
    d_->orderFields = GetOrderFields();
    for (int r = 0; r < TitleOffset(); ++r)
        InvalidateRow(r);
}

void TQCustomDBGrid::SetupCurrentOrder()
{
    SetupOrderFields(CurrentDataSetOrder());
}

void TQCustomDBGrid::OrderChanged()
{
    if (d_->optionsEx.Contains(dgAutoUpdateOrder) && ChangeDataSetOrder())
        return;
    if (OnOrderChanged)
        OnOrderChanged(this);
}

void TQCustomDBGrid::OrderUpdated()
{
    UpdateTreeView(false);
    if (OnOrderUpdated)
        OnOrderUpdated(this);
}

void TQCustomDBGrid::UpdateOrder(bool load)
{
    if (IsLoading())
        return;
    if (!load)
        ChangeDataSetOrder();
    else if (d_->optionsEx.Contains(dgLoadCurrentOrder))
        SetupCurrentOrder();
    else if (d_->optionsEx.Contains(dgAutoUpdateOrder))
        ChangeDataSetOrder();
}

bool TQCustomDBGrid::ChangeDataSetOrder(const QString &order)
{
    TDataSet *ds = DataSet();
    if (!GetDataSource() || !ds)
        return false;
    const TChangeOrderItem *item = ChangeOrderList().Find(ds, true);
    if (!item)
        return false;
    if (d_->optionsEx.Contains(dgAutoAscendOrder) && item->AscendOnly != d_->options.Contains(dgMarkerAscendOnly)) {
        TQDBGridOptions options = d_->options;
        options.Switch(dgMarkerAscendOnly, item->AscendOnly);
        SetOptions(options);
    }
    switch (item->ChangeOrder) {
    case coChangeIndexFields: ChangeIndexFields(order, item->PropName, item->IndexFormat); break;
    case coChangeOrderFields: ChangeOrderFields(order, item->PropName); break;
    case coChangeSQLOrderFields: ChangeSQLOrderFields(order, item->PropName); break;
    case coCustomChangeOrder:
        if (auto *grid = qobject_cast<TQDBGrid *>(this))
            item->CustomChangeOrder(grid, order.isEmpty() ? GetOrderFields() : order);
        break;
    }
    return true;
}

QString TQCustomDBGrid::CurrentDataSetOrder()
{
    TDataSet *ds = DataSet();
    if (!GetDataSource() || !ds)
        return {};
    const TChangeOrderItem *item = ChangeOrderList().Find(ds, false);
    if (!item)
        return {};
    switch (item->ChangeOrder) {
    case coChangeIndexFields: return CurrentIndexFields(item->PropName, item->IndexFormat);
    case coChangeOrderFields: return CurrentOrderFields(item->PropName);
    case coChangeSQLOrderFields: return CurrentSQLOrderFields(item->PropName);
    case coCustomChangeOrder: {
        auto *grid = qobject_cast<TQDBGrid *>(this);
        return grid ? item->CustomCurrentOrder(grid) : QString();
    }
    }
    return {};
}

void TQCustomDBGrid::ReorderDataSet(bool reopen, const std::function<void()> &write, const std::function<void()> &undo)
{
    TDataSet *ds = DataSet();
    holdingPosition([&] {
        const bool active = ds->Active();
        std::optional<KeptPlace> place;
        auto comeBack = [&] {
            if (place)
                place->Restore();
        };
        place.emplace(this, active && KeepPosition() ? GetKeyFields() : QString(), KeepSelection());
        if (!reopen || active)
            ClearSelection();
        const bool closed = reopen && active;
        if (closed) {
            keepFieldLayout(false); // the link does not see the close: its controls are off
            ds->Close();
        }
        BeginUpdate();
        try {
            write();
            if (closed) {
                ds->Open();
                keepFieldLayout(true);
            }
        } catch (...) {
            // The order the data set refused is taken back, so that the user keeps the
            // rows and the record they had; the error still goes to the caller.
            if (undo && closed && !ds->Active()) {
                try {
                    undo();
                    ds->Open();
                    keepFieldLayout(true);
                    comeBack();
                } catch (...) {
                }
            }
            EndUpdate();
            throw;
        }
        EndUpdate();
        comeBack();
    });
    // The record found by its key stays current: the bookmark from before the new order
    // would point elsewhere now.
    OrderUpdated();
}

bool TQCustomDBGrid::detailPrefixApplies() const
{
    TDataSet *ds = DataSet();
    if (d_->detailFields.isEmpty() || !ds || GetPropText(ds, QStringLiteral("MasterFields")).isEmpty())
        return false;
    if (IsPublishedProp(ds, QStringLiteral("MasterSource")))
        return GetObjectProp(ds, QStringLiteral("MasterSource")) != nullptr;
    return GetObjectProp(ds, QStringLiteral("DataSource")) != nullptr;
}

void TQCustomDBGrid::ChangeIndexFields(const QString &orderIn, const QString &propNameIn, const QString &indexFormat)
{
    TDataSet *ds = DataSet();
    if (!ds)
        return;
    QString order = orderIn.isEmpty() ? GetOrderFields() : orderIn;
    const QString propName = propNameIn.isEmpty() ? QStringLiteral("IndexFieldNames") : propNameIn;
    if (detailPrefixApplies()) {
        const QString detail = SemicolonToComma(d_->detailFields);
        order = order.isEmpty() ? detail : detail + QLatin1Char(',') + order;
    }
    const QString current = IndexFieldsToOrderFields(GetPropText(ds, propName), indexFormat);
    if (CompareOrderFields(current, order))
        return;
    const QString before = GetPropText(ds, propName);
    ReorderDataSet(
        false, [&] { SetPropText(ds, propName, OrderFieldsToIndexFields(order, indexFormat)); },
        [&] { SetPropText(ds, propName, before); });
}

void TQCustomDBGrid::ChangeOrderFields(const QString &orderIn, const QString &propNameIn)
{
    TDataSet *ds = DataSet();
    if (!ds)
        return;
    const QString order = orderIn.isEmpty() ? GetOrderFields() : orderIn;
    const QString propName = propNameIn.isEmpty() ? QStringLiteral("CommandText") : propNameIn;
    TStringList lines;
    lines.SetText(GetPropText(ds, propName));
    if (CompareOrderFields(UnquoteOrderFields(ExtractOrderFields(&lines)), order))
        return;
    const QString before = lines.Text();
    ReorderDataSet(
        true,
        [&] {
            ModifyOrderFields(&lines, QuoteOrderFields(order));
            SetPropText(ds, propName, lines.Text());
        },
        [&] { SetPropText(ds, propName, before); });
}

void TQCustomDBGrid::ChangeSQLOrderFields(const QString &orderIn, const QString &propNameIn)
{
    TDataSet *ds = DataSet();
    if (!ds)
        return;
    const QString order = orderIn.isEmpty() ? GetOrderFields() : orderIn;
    const QString propName = propNameIn.isEmpty() ? QStringLiteral("SQL") : propNameIn;
    auto *lines = qobject_cast<TStrings *>(GetObjectProp(ds, propName));
    if (!lines)
        return; // not a list of lines: nothing this mechanism can write
    if (CompareOrderFields(UnquoteOrderFields(ExtractOrderFields(lines)), order))
        return;
    const QString before = lines->Text();
    ReorderDataSet(true, [&] { ModifyOrderFields(lines, QuoteOrderFields(order)); }, [&] { lines->SetText(before); });
}

QString TQCustomDBGrid::CurrentIndexFields(const QString &propNameIn, const QString &indexFormat)
{
    TDataSet *ds = DataSet();
    if (!ds)
        return {};
    const QString propName = propNameIn.isEmpty() ? QStringLiteral("IndexFieldNames") : propNameIn;
    QString result = IndexFieldsToOrderFields(GetPropText(ds, propName), indexFormat);
    if (detailPrefixApplies()) {
        const QString detail = SemicolonToComma(d_->detailFields);
        if (result.toUpper().startsWith(detail.toUpper()))
            result = result.mid(d_->detailFields.size() + 1);
    }
    return result;
}

QString TQCustomDBGrid::CurrentOrderFields(const QString &propNameIn)
{
    TDataSet *ds = DataSet();
    if (!ds)
        return {};
    TStringList lines;
    lines.SetText(GetPropText(ds, propNameIn.isEmpty() ? QStringLiteral("CommandText") : propNameIn));
    return UnquoteOrderFields(ExtractOrderFields(&lines));
}

QString TQCustomDBGrid::CurrentSQLOrderFields(const QString &propNameIn)
{
    TDataSet *ds = DataSet();
    if (!ds)
        return {};
    auto *lines = qobject_cast<TStrings *>(GetObjectProp(ds, propNameIn.isEmpty() ? QStringLiteral("SQL") : propNameIn));
    return lines ? UnquoteOrderFields(ExtractOrderFields(lines)) : QString();
}

bool TQCustomDBGrid::IsLoading() const
{
    return d_->loading > 0;
}

void TQCustomDBGrid::BeginLoading()
{
    ++d_->loading;
}

void TQCustomDBGrid::Loaded()
{
    if (d_->loading > 0 && --d_->loading == 0 && DataLink()->Active() && d_->optionsEx.Contains(dgAutoUpdateOrder))
        showingErrors([this] { UpdateOrder(false); }); // the order read is the data set's now
}

QStringList TQCustomDBGrid::CustomPropertyNames() const
{
    return {QStringLiteral("OrderFields")};
}

QJsonValue TQCustomDBGrid::WriteCustomProperty(const QString &name) const
{
    return name == QLatin1String("OrderFields") ? WriteOrderFields() : QJsonValue(QJsonValue::Undefined);
}

void TQCustomDBGrid::ReadCustomProperty(const QString &name, const QJsonValue &value)
{
    if (name == QLatin1String("OrderFields"))
        ReadOrderFields(value);
}

QJsonValue TQCustomDBGrid::WriteOrderFields() const
{
    const QString order = GetOrderFields();
    return order.isEmpty() ? QJsonValue(QJsonValue::Undefined) : QJsonValue(order);
}

void TQCustomDBGrid::ReadOrderFields(const QJsonValue &value)
{
    if (!value.isString())
        throw EReadError(QCoreApplication::translate("qdb", "Error reading %1.%2: %3")
                             .arg(QString::fromLatin1(metaObject()->className()), QStringLiteral("OrderFields"),
                                  QCoreApplication::translate("qdb", "invalid property value")));
    SetOrderFields(value.toString());
}

} // namespace qdb
