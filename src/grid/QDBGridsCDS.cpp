#include "QDBGridsCDS.h"
#include "QDBGrid.h"
#include "QDBGridsOrderRegistry.h"
#include "QDBGridsOrderText.h"

#include "platform/db/MemTable.h"

namespace qdb {

namespace {

const QString GridIndex = QStringLiteral("TQDBGridIndex");

// The client data set family of the registry, and this platform's in-memory table.
const char *const ClassNames[] = {"TpFIBClientDataSet", "TBDEClientDataSet", "TSQLClientDataSet", "TIBClientDataSet",
                                  "TSimpleDataSet",     "TClientDataSet",    "*TMemTable"};
int references = 0;

TMemTable *tableOf(TQDBGrid *grid)
{
    return grid ? qobject_cast<TMemTable *>(grid->DataSet()) : nullptr;
}

} // namespace

QString CurrentCDSIndexFields(TQDBGrid *grid)
{
    TMemTable *table = tableOf(grid);
    if (!table)
        return {};
    if (!table->IndexName().isEmpty()) {
        const TIndexDef *def = table->IndexDefs().Find(table->IndexName());
        return def ? UnifyOrderFields(def->Fields, def->DescFields, def->Options.Contains(ixDescending)) : QString();
    }
    return SemicolonToComma(table->IndexFieldNames());
}

void ChangeCDSIndexFields(TQDBGrid *grid, const QString &orderIn)
{
    TMemTable *table = tableOf(grid);
    if (!table)
        return;
    const QString order = orderIn.isEmpty() ? grid->GetOrderFields() : orderIn;
    if (CompareOrderFields(CurrentCDSIndexFields(grid), order))
        return;
    grid->ReorderDataSet(false, [&] {
        if (table->IndexName() == GridIndex) {
            table->SetIndexName(QString());
            if (table->Active() || table->IndexDefs().IndexOf(GridIndex) >= 0)
                table->DeleteIndex(GridIndex);
        }
        QString fields, descFields;
        SplitOrderFields(order, fields, descFields);
        if (!descFields.isEmpty()) {
            table->AddIndex(GridIndex, fields, {}, descFields);
            table->SetIndexName(GridIndex);
        } else {
            table->SetIndexFieldNames(fields);
        }
    });
}

void InitializeQDBGridsCDS()
{
    if (references++ > 0)
        return;
    for (const char *name : ClassNames)
        RegisterCustomChangeOrder(QString::fromLatin1(name), ChangeCDSIndexFields, CurrentCDSIndexFields);
}

void FinalizeQDBGridsCDS()
{
    if (references == 0 || --references > 0)
        return;
    for (const char *name : ClassNames)
        UnRegisterChangeOrder(QString::fromLatin1(name), coCustomChangeOrder);
}

} // namespace qdb
