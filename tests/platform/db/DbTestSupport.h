#pragma once

#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"

#include <QStringList>

#include <initializer_list>
#include <memory>

namespace qdb::test {

// A field of `table` made by hand, of the given type.
inline TField *AddField(TDataSet &table, const QString &name, TFieldType type, int size = 0)
{
    TField *field = CreateFieldOfType(type, &table);
    field->SetFieldName(name);
    if (size > 0)
        field->SetSize(size);
    field->SetDataSet(&table);
    return field;
}

// A lookup field of `table`: keyFields looked up in lookup's lookupKey, showing result.
inline TField *AddLookupField(TDataSet &table, const QString &name, TDataSet *lookup, const QString &keyFields,
                              const QString &lookupKey, const QString &result)
{
    TField *field = AddField(table, name, ftString);
    field->SetFieldKind(fkLookup);
    field->SetLookupDataSet(lookup);
    field->SetKeyFields(keyFields);
    field->SetLookupKeyFields(lookupKey);
    field->SetLookupResultField(result);
    return field;
}

// Customers (ID, Company) with the given names, numbered from 1, the first current.
inline void FillCustomers(TMemTable &customers, std::initializer_list<const char *> names)
{
    customers.FieldDefs().Add(QStringLiteral("ID"), ftInteger);
    customers.FieldDefs().Add(QStringLiteral("Company"), ftString, 40);
    customers.CreateDataSet();
    int id = 0;
    for (const char *name : names)
        customers.AppendRecord({++id, QString::fromLatin1(name)});
    customers.First();
}

// A table of orders: ID (auto-increment), Name, Qty, "Unit Price", OrderDate, Paid.
// Rows are named "r1" .. "rN"; Qty is the row number, the price a quarter of it, names
// at rows divisible by 5 are NULL.
inline std::unique_ptr<TMemTable> MakeOrders(int rows)
{
    auto t = std::make_unique<TMemTable>();
    t->setObjectName(QStringLiteral("Orders"));
    t->FieldDefs().Add(QStringLiteral("ID"), ftAutoInc);
    t->FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
    t->FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
    t->FieldDefs().Add(QStringLiteral("Unit Price"), ftFloat);
    t->FieldDefs().Add(QStringLiteral("OrderDate"), ftDate);
    t->FieldDefs().Add(QStringLiteral("Paid"), ftBoolean);
    t->CreateDataSet();
    for (int i = 1; i <= rows; ++i)
        t->AppendRecord({Variant(), i % 5 == 0 ? Variant::Null() : Variant(QStringLiteral("r%1").arg(i)), i,
                         i / 4.0, Variant::FromDateTime(EncodeDate(2024, 1, 1) + i), i % 2 == 0});
    t->First();
    return t;
}

// A link with a window of records that remembers what it was told.
class WindowLink : public TDataLink
{
public:
    explicit WindowLink(TDataSource *source, int buffers)
    {
        SetBufferCount(buffers);
        SetDataSource(source);
    }
    // The values of one field for each record of the window.
    QStringList Window(const QString &field)
    {
        QStringList out;
        const int saved = ActiveRecord();
        for (int i = 0; i < RecordCount(); ++i) {
            SetActiveRecord(i);
            out << DataSet()->FieldByName(field)->AsString();
        }
        SetActiveRecord(saved);
        return out;
    }
    int changes = 0, scrolls = 0, layouts = 0, records = 0, activeChanges = 0, editingChanges = 0;
    int lastScroll = 0;

protected:
    void DataSetChanged() override { ++changes; }
    void DataSetScrolled(int distance) override
    {
        ++scrolls;
        lastScroll = distance;
    }
    void LayoutChanged() override { ++layouts; }
    void RecordChanged(TField *) override { ++records; }
    void ActiveChanged() override { ++activeChanges; }
    void EditingChanged() override { ++editingChanges; }
};

} // namespace qdb::test
