#include "DbTestSupport.h"

#include "platform/rtl/Exceptions.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

TField *F(TDataSet *ds, const char *name)
{
    return ds->FieldByName(QString::fromLatin1(name));
}

QStringList column(TDataSet *ds, const char *name)
{
    QStringList out;
    ControlsDisabler quiet(ds);
    const TBookmark b = ds->GetBookmark();
    for (ds->First(); !ds->Eof(); ds->Next())
        out << F(ds, name)->AsString();
    if (!b.isEmpty() && ds->BookmarkValid(b))
        ds->GotoBookmark(b);
    return out;
}

} // namespace

TEST(MemTable, BookmarksSurviveResorting)
{
    auto t = MakeOrders(12);
    t->MoveBy(6); // Qty 7
    const TBookmark seven = t->GetBookmark();
    t->First();
    const TBookmark one = t->GetBookmark();
    EXPECT_LT(t->CompareBookmarks(one, seven), 0);

    t->SetIndexFieldNames(QStringLiteral("Qty:D"));
    EXPECT_EQ(F(t.get(), "Qty")->AsInteger(), 1); // the current record stays current
    EXPECT_EQ(t->RecNo(), 12);
    EXPECT_GT(t->CompareBookmarks(one, seven), 0);
    t->GotoBookmark(seven);
    EXPECT_EQ(F(t.get(), "Qty")->AsInteger(), 7);
    EXPECT_EQ(t->RecNo(), 6);
    EXPECT_EQ(column(t.get(), "Qty").first(), QStringLiteral("12"));
}

TEST(MemTable, IndexFieldNamesWithSuffixes)
{
    auto t = std::make_unique<TMemTable>();
    t->FieldDefs().Add(QStringLiteral("Name"), ftString, 10);
    t->FieldDefs().Add(QStringLiteral("N"), ftInteger);
    t->CreateDataSet();
    for (auto [name, n] : {std::pair{"b", 1}, {"A", 2}, {"a", 3}, {"B", 4}, {"c", 5}})
        t->AppendRecord({QString::fromLatin1(name), n});
    t->AppendRecord({Variant::Null(), 6});
    t->SetIndexFieldNames(QStringLiteral("Name"));
    EXPECT_EQ(column(t.get(), "N"), QStringList({"6", "2", "4", "3", "1", "5"})); // nulls first, then by code point
    t->SetIndexFieldNames(QStringLiteral("Name:N;N:D"));
    EXPECT_EQ(column(t.get(), "N"), QStringList({"6", "3", "2", "4", "1", "5"}));
    t->SetIndexFieldNames(QStringLiteral("Name:DN"));
    EXPECT_EQ(column(t.get(), "Name").first(), QStringLiteral("c"));
    EXPECT_THROW(t->SetIndexFieldNames(QStringLiteral("Nope")), EDatabaseError);
    EXPECT_EQ(t->IndexFieldNames(), QStringLiteral("Name:DN")); // unchanged after the error

    t->AddIndex(QStringLiteral("ByN"), QStringLiteral("N"), {ixDescending});
    t->SetIndexName(QStringLiteral("ByN"));
    EXPECT_TRUE(t->IndexFieldNames().isEmpty());
    EXPECT_EQ(column(t.get(), "N").first(), QStringLiteral("6"));
    t->AddIndex(QStringLiteral("Mixed"), QStringLiteral("Name;N"), {ixCaseInsensitive}, QStringLiteral("N"));
    t->SetIndexName(QStringLiteral("Mixed"));
    EXPECT_EQ(column(t.get(), "N"), QStringList({"6", "3", "2", "4", "1", "5"}));
    EXPECT_THROW(t->AddIndex(QStringLiteral("mixed"), QStringLiteral("N")), EDatabaseError);
    t->DeleteIndex(QStringLiteral("Mixed"));
    EXPECT_TRUE(t->IndexName().isEmpty());
    EXPECT_THROW(t->SetIndexName(QStringLiteral("Mixed")), EDatabaseError);
}

TEST(MemTable, PostingIntoAnIndexKeepsTheOrder)
{
    auto t = MakeOrders(6);
    t->SetIndexFieldNames(QStringLiteral("Qty:D"));
    t->Append();
    F(t.get(), "Qty")->SetAsInteger(3);
    t->Post();
    EXPECT_EQ(column(t.get(), "Qty"), QStringList({"6", "5", "4", "3", "3", "2", "1"}));
    EXPECT_EQ(F(t.get(), "Qty")->AsInteger(), 3);
    t->Edit();
    F(t.get(), "Qty")->SetAsInteger(10); // a changed key moves the record
    t->Post();
    EXPECT_EQ(t->RecNo(), 1);
    EXPECT_EQ(column(t.get(), "Qty").first(), QStringLiteral("10"));
}

TEST(MemTable, FilteringToNothing)
{
    auto t = MakeOrders(10);
    t->SetFilter(QStringLiteral("Qty > 1000"));
    t->SetFiltered(true);
    EXPECT_TRUE(t->IsEmpty());
    EXPECT_TRUE(t->Bof());
    EXPECT_TRUE(t->Eof());
    EXPECT_EQ(t->RecordCount(), 0);
    EXPECT_EQ(t->RecNo(), -1);
    t->Next();
    t->Last();
    EXPECT_TRUE(t->Eof());
    t->SetFiltered(false);
    EXPECT_EQ(t->RecordCount(), 10);
}

TEST(MemTable, RecNoAndLocateUnderAFilter)
{
    auto t = MakeOrders(20);
    t->SetFilter(QStringLiteral("Paid = TRUE"));
    t->SetFiltered(true);
    EXPECT_EQ(t->RecordCount(), 10);
    EXPECT_EQ(column(t.get(), "Qty").first(), QStringLiteral("2"));
    EXPECT_FALSE(t->Locate(QStringLiteral("Qty"), 7, {})); // filtered out
    EXPECT_TRUE(t->Locate(QStringLiteral("Qty"), 8, {}));
    EXPECT_EQ(t->RecNo(), 4);
    t->SetRecNo(2);
    EXPECT_EQ(F(t.get(), "Qty")->AsInteger(), 4);
    const TBookmark four = t->GetBookmark();
    t->SetFilter(QStringLiteral("Qty > 10"));
    EXPECT_FALSE(t->BookmarkValid(four));
    EXPECT_THROW(t->GotoBookmark(four), EDatabaseError);
    EXPECT_EQ(t->State(), dsBrowse);

    t->SetOnFilterRecord({[](TDataSet *ds, bool &accept) { accept = ds->FieldByName(QStringLiteral("Qty"))->AsInteger() % 3 == 0; }});
    EXPECT_EQ(column(t.get(), "Qty"), QStringList({"12", "15", "18"}));
}

TEST(MemTable, LocateOptionsAndSeveralKeys)
{
    auto t = MakeOrders(30);
    EXPECT_TRUE(t->Locate(QStringLiteral("Name"), QStringLiteral("R2"), {loCaseInsensitive}));
    EXPECT_EQ(F(t.get(), "Qty")->AsInteger(), 2);
    EXPECT_TRUE(t->Locate(QStringLiteral("Name"), QStringLiteral("r1"), {loPartialKey}));
    EXPECT_EQ(F(t.get(), "Qty")->AsInteger(), 1);
    EXPECT_FALSE(t->Locate(QStringLiteral("Name"), QStringLiteral("R1"), {loPartialKey}));
    EXPECT_TRUE(t->Locate(QStringLiteral("Paid;Qty"), VarArrayOf({true, 14}), {}));
    EXPECT_EQ(t->RecNo(), 14);
    EXPECT_FALSE(t->Locate(QStringLiteral("Paid;Qty"), VarArrayOf({false, 14}), {}));
    EXPECT_EQ(t->RecNo(), 14); // a failed locate leaves the position
    EXPECT_TRUE(t->Locate(QStringLiteral("Name"), Variant::Null(), {}));
    EXPECT_EQ(t->RecNo(), 5);
    EXPECT_TRUE(t->Locate(QStringLiteral("Qty"), QStringLiteral("9"), {})); // text keys take the field's type
    EXPECT_FALSE(t->Locate(QStringLiteral("Qty"), QStringLiteral("nine"), {}));
    EXPECT_THROW(t->Locate(QStringLiteral("Nope"), 1, {}), EDatabaseError);
    EXPECT_EQ(t->Lookup(QStringLiteral("Qty"), 3, QStringLiteral("Name")).ToString(), QStringLiteral("r3"));
    EXPECT_TRUE(t->Lookup(QStringLiteral("Qty"), 99, QStringLiteral("Name")).IsNull());
}

TEST(MemTable, EditingKeepsOrRestoresValues)
{
    auto t = MakeOrders(5);
    TField *name = F(t.get(), "Name");
    t->Edit();
    name->SetAsString(QStringLiteral("changed"));
    EXPECT_EQ(name->AsString(), QStringLiteral("changed"));
    EXPECT_EQ(name->OldValue().ToString(), QStringLiteral("r1"));
    t->Cancel();
    EXPECT_EQ(name->AsString(), QStringLiteral("r1"));

    name->SetRequired(true);
    t->Insert();
    F(t.get(), "Qty")->SetAsInteger(77);
    try {
        t->Post();
        FAIL() << "a required field was empty";
    } catch (const EDatabaseError &e) {
        EXPECT_EQ(e.Message(), QStringLiteral("Orders: Field 'Name' must have a value"));
    }
    EXPECT_EQ(t->State(), dsInsert); // still editing, with what was typed
    EXPECT_EQ(F(t.get(), "Qty")->AsInteger(), 77);
    name->SetAsString(QStringLiteral("new"));
    t->Post();
    EXPECT_EQ(t->RecordCount(), 6);
}

TEST(MemTable, BadWritesRaiseAndChangeNothing)
{
    auto t = MakeOrders(3);
    TField *qty = F(t.get(), "Qty");
    qty->SetDisplayLabel(QStringLiteral("Quantity"));
    EXPECT_THROW(qty->SetAsInteger(5), EDatabaseError); // not in edit mode
    t->Edit();
    try {
        qty->SetAsString(QStringLiteral("abc"));
        FAIL();
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(QStringLiteral("'abc' is not a valid integer value for field 'Quantity'")));
    }
    EXPECT_EQ(qty->AsInteger(), 1);
    qty->SetReadOnly(true);
    try {
        qty->SetAsInteger(9);
        FAIL();
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(QStringLiteral("Field 'Quantity' cannot be modified")));
    }
    qty->SetReadOnly(false);
    qty->OnValidate = [](TField *f) {
        if (f->AsInteger() < 0)
            throw EDatabaseError(QStringLiteral("negative"));
    };
    EXPECT_THROW(qty->SetAsInteger(-1), EDatabaseError);
    EXPECT_EQ(qty->AsInteger(), 1);
    qty->SetAsInteger(4);
    EXPECT_EQ(qty->AsInteger(), 4);
    auto *small = new TSmallintField(t.get());
    Q_UNUSED(small);
    EXPECT_THROW(F(t.get(), "Paid")->SetAsString(QStringLiteral("maybe")), EDatabaseError);
    F(t.get(), "Paid")->SetAsString(QStringLiteral("t"));
    EXPECT_TRUE(F(t.get(), "Paid")->AsBoolean());
    t->Post();
}

TEST(MemTable, CalculatedAndLookupFields)
{
    auto customers = std::make_unique<TMemTable>();
    customers->FieldDefs().Add(QStringLiteral("CustNo"), ftInteger);
    customers->FieldDefs().Add(QStringLiteral("Company"), ftString, 30);
    customers->CreateDataSet();
    customers->AppendRecord({1, QStringLiteral("Acme")});
    customers->AppendRecord({2, QStringLiteral("Globex")});

    TMemTable orders;
    auto *qty = new TIntegerField(&orders);
    qty->SetFieldName(QStringLiteral("Qty"));
    qty->SetDataSet(&orders);
    auto *cust = new TIntegerField(&orders);
    cust->SetFieldName(QStringLiteral("CustNo"));
    cust->SetDataSet(&orders);
    auto *doubled = new TIntegerField(&orders);
    doubled->SetFieldName(QStringLiteral("Doubled"));
    doubled->SetFieldKind(fkCalculated);
    doubled->SetDataSet(&orders);
    auto *company = new TStringField(&orders);
    company->SetFieldName(QStringLiteral("Company"));
    company->SetFieldKind(fkLookup);
    company->SetLookupDataSet(customers.get());
    company->SetKeyFields(QStringLiteral("CustNo"));
    company->SetLookupKeyFields(QStringLiteral("CustNo"));
    company->SetLookupResultField(QStringLiteral("Company"));
    company->SetDataSet(&orders);
    int calcs = 0;
    orders.OnCalcFields = [&](TDataSet *ds) {
        ++calcs;
        ds->FieldByName(QStringLiteral("Doubled"))->SetAsInteger(ds->FieldByName(QStringLiteral("Qty"))->AsInteger() * 2);
    };
    orders.CreateDataSet();
    EXPECT_FALSE(orders.DefaultFields());
    orders.AppendRecord({5, 2});
    orders.AppendRecord({7, 3});
    orders.First();
    EXPECT_EQ(doubled->AsInteger(), 10);
    EXPECT_EQ(company->AsString(), QStringLiteral("Globex"));
    orders.Next();
    EXPECT_EQ(doubled->AsInteger(), 14);
    EXPECT_TRUE(company->IsNull());
    orders.Edit();
    qty->SetAsInteger(8); // recalculated as the value changes
    EXPECT_EQ(doubled->AsInteger(), 16);
    orders.Cancel();
    EXPECT_GT(calcs, 0);
    orders.SetFilter(QStringLiteral("Doubled > 12"));
    orders.SetFiltered(true);
    EXPECT_EQ(orders.RecordCount(), 1);
}

TEST(MemTable, ObjectFieldsHaveChildren)
{
    TMemTable t;
    TFieldDef &address = t.FieldDefs().Add(QStringLiteral("Address"), ftADT);
    address.ChildDefs.append({QStringLiteral("Street"), ftString, 30, false, 0, {}});
    address.ChildDefs.append({QStringLiteral("City"), ftString, 20, false, 0, {}});
    t.FieldDefs().Add(QStringLiteral("Name"), ftString, 10);
    t.CreateDataSet();
    EXPECT_EQ(t.Fields().Count(), 2);
    EXPECT_EQ(t.FieldList().Count(), 4);
    TField *city = t.FieldByName(QStringLiteral("Address.City"));
    EXPECT_EQ(city->FullName(), QStringLiteral("Address.City"));
    EXPECT_EQ(city->ParentField(), t.Fields()[0]);
    t.Append();
    city->SetAsString(QStringLiteral("Oslo"));
    t.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("n"));
    t.Post();
    EXPECT_EQ(t.FieldByName(QStringLiteral("Address"))->Value(), VarArrayOf({Variant::Null(), QStringLiteral("Oslo")}));
    EXPECT_EQ(t.FieldByName(QStringLiteral("Address"))->DisplayText(), QStringLiteral("(, Oslo)"));
}

TEST(MemTable, FilesRoundTripAndBadFilesChangeNothing)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("orders.json"));
    auto t = MakeOrders(4);
    t->AddIndex(QStringLiteral("ByQty"), QStringLiteral("Qty"), {ixDescending});
    t->First();
    t->Edit();
    F(t.get(), "Name")->SetAsString(QStringLiteral("Größe, \"quoted\""));
    t->Post();
    t->SaveToFile(path);

    TMemTable back;
    back.LoadFromFile(path);
    EXPECT_EQ(back.RecordCount(), 4);
    EXPECT_EQ(column(&back, "Name"), column(t.get(), "Name"));
    EXPECT_EQ(column(&back, "OrderDate"), column(t.get(), "OrderDate"));
    EXPECT_EQ(column(&back, "Unit Price"), column(t.get(), "Unit Price"));
    EXPECT_EQ(back.FieldByName(QStringLiteral("ID"))->DataType(), ftAutoInc);
    EXPECT_EQ(back.IndexDefs().Count(), 1);

    for (const char *bad : {"not json", "{\"format\":\"other\"}",
                            "{\"format\":\"qdb-memtable\",\"fields\":[{\"name\":\"A\",\"type\":\"ftInteger\"}],"
                            "\"records\":[[\"x\"]]}",
                            // decimals a field cannot hold, or that are no decimal number
                            "{\"format\":\"qdb-memtable\",\"fields\":[{\"name\":\"A\",\"type\":\"ftBCD\"}],"
                            "\"records\":[[\"9007199254740994\"]]}",
                            "{\"format\":\"qdb-memtable\",\"fields\":[{\"name\":\"A\",\"type\":\"ftBCD\"}],"
                            "\"records\":[[1e300]]}",
                            "{\"format\":\"qdb-memtable\",\"fields\":[{\"name\":\"A\",\"type\":\"ftBCD\"}],"
                            "\"records\":[[\"1e5\"]]}"}) {
        EXPECT_THROW(back.LoadFromJson(QByteArray(bad)), EDatabaseError) << bad;
        EXPECT_EQ(back.RecordCount(), 4);
        EXPECT_TRUE(back.Active());
    }
    EXPECT_THROW(back.LoadFromFile(dir.filePath(QStringLiteral("missing.json"))), EDatabaseError);
}

TEST(MemTable, FieldDataLinkFollowsItsField)
{
    auto t = MakeOrders(3);
    TDataSource source;
    source.SetDataSet(t.get());
    TFieldDataLink link;
    int changes = 0;
    link.OnDataChange = [&](TObject *) { ++changes; };
    link.SetDataSource(&source);
    link.SetFieldName(QStringLiteral("Name"));
    EXPECT_EQ(link.Field(), F(t.get(), "Name"));
    EXPECT_TRUE(link.CanModify());
    const int before = changes;
    t->Next();
    EXPECT_GT(changes, before);
    EXPECT_TRUE(link.Edit());
    EXPECT_EQ(t->State(), dsEdit);
    t->Cancel();
    source.SetAutoEdit(false);
    EXPECT_FALSE(link.Edit());
}
