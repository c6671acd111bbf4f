#include "QDBGridsADO.h"
#include "QDBGrid.h"
#include "QDBGridsOrderRegistry.h"
#include "QDBGridsOrderText.h"

#include "platform/rtl/TypInfo.h"

namespace qdb {

namespace {

const QString ADOQuery = QStringLiteral("TADOQuery");
int references = 0;

TDataSet *adoQueryOf(TQDBGrid *grid)
{
    TDataSet *ds = grid ? grid->DataSet() : nullptr;
    return ds && InheritsFrom(ds, ADOQuery) ? ds : nullptr;
}

} // namespace

QString CurrentADOQuerySort(TQDBGrid *grid)
{
    TDataSet *ds = adoQueryOf(grid);
    if (!ds)
        return {};
    const QString sort = GetPropText(ds, QStringLiteral("Sort"));
    if (!sort.isEmpty())
        return sort;
    auto *sql = qobject_cast<TStrings *>(GetObjectProp(ds, QStringLiteral("SQL")));
    return UnquoteOrderFields(ExtractOrderFields(sql));
}

void ChangeADOQuerySort(TQDBGrid *grid, const QString &orderIn)
{
    TDataSet *ds = adoQueryOf(grid);
    if (!ds)
        return;
    const QString order = orderIn.isEmpty() ? grid->GetOrderFields() : orderIn;
    const QString before = GetPropText(ds, QStringLiteral("Sort"));
    if (CompareOrderFields(before, order))
        return;
    grid->ReorderDataSet(
        false, [&] { SetPropText(ds, QStringLiteral("Sort"), order); },
        [&] { SetPropText(ds, QStringLiteral("Sort"), before); });
}

void InitializeQDBGridsADO()
{
    if (references++ > 0)
        return;
    // Only an open query with a client-side cursor can sort this way.
    RegisterCustomChangeOrder(ADOQuery, ChangeADOQuerySort, CurrentADOQuerySort, false, [](TDataSet *ds, TChangeOrder) {
        return ds->Active() && InheritsFrom(ds, ADOQuery)
            && GetPropText(ds, QStringLiteral("CursorLocation")) == QLatin1String("clUseClient");
    });
}

void FinalizeQDBGridsADO()
{
    if (references == 0 || --references > 0)
        return;
    UnRegisterChangeOrder(ADOQuery, coCustomChangeOrder);
}

} // namespace qdb
