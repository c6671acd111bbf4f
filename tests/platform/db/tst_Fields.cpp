#include "DbTestSupport.h"

#include "platform/rtl/Exceptions.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

// A one-record table with one field of each kind the tests need.
std::unique_ptr<TMemTable> MakeTypes()
{
    auto t = std::make_unique<TMemTable>();
    for (auto [name, type, size] : {std::tuple{"S", ftString, 10}, {"Small", ftSmallint, 0}, {"Word", ftWord, 0},
                                    {"Big", ftLargeint, 0}, {"F", ftFloat, 0}, {"Money", ftCurrency, 0},
                                    {"Bcd", ftBCD, 0}, {"B", ftBoolean, 0}, {"D", ftDate, 0}, {"T", ftTime, 0},
                                    {"DT", ftDateTime, 0}, {"M", ftMemo, 0}, {"Blob", ftBlob, 0}, {"G", ftGuid, 0}})
        t->FieldDefs().Add(QString::fromLatin1(name), type, size);
    t->CreateDataSet();
    t->Append();
    return t;
}

} // namespace

TEST(Fields, DefaultsByType)
{
    auto t = MakeTypes();
    struct Case
    {
        const char *field;
        int width;
        TAlignment alignment;
        VarType kind;
    };
    const Case cases[] = {
        {"S", 10, taLeftJustify, VarType::String},    {"Small", 6, taRightJustify, VarType::Integer},
        {"Word", 5, taRightJustify, VarType::Integer}, {"Big", 15, taRightJustify, VarType::Integer},
        {"F", 10, taRightJustify, VarType::Double},    {"Bcd", 20, taRightJustify, VarType::Currency},
        {"B", 5, taLeftJustify, VarType::Boolean},     {"D", 10, taLeftJustify, VarType::DateTime},
        {"DT", 18, taLeftJustify, VarType::DateTime},  {"M", 10, taLeftJustify, VarType::String},
        {"Blob", 10, taLeftJustify, VarType::Bytes},   {"G", 38, taLeftJustify, VarType::String},
    };
    for (const Case &c : cases) {
        TField *f = t->FieldByName(QString::fromLatin1(c.field));
        EXPECT_EQ(f->DisplayWidth(), c.width) << c.field;
        EXPECT_EQ(f->Alignment(), c.alignment) << c.field;
        EXPECT_EQ(f->ValueType(), c.kind) << c.field;
    }
    EXPECT_EQ(t->FieldByName(QStringLiteral("S"))->DisplayName(), QStringLiteral("S"));
    EXPECT_EQ(t->FieldByName(QStringLiteral("S"))->FieldNo(), 1);
}

TEST(Fields, RangesOfIntegerTypes)
{
    auto t = MakeTypes();
    EXPECT_THROW(t->FieldByName(QStringLiteral("Small"))->SetAsInteger(40000), EDatabaseError);
    EXPECT_THROW(t->FieldByName(QStringLiteral("Word"))->SetAsInteger(-1), EDatabaseError);
    t->FieldByName(QStringLiteral("Small"))->SetAsInteger(-32768);
    EXPECT_EQ(t->FieldByName(QStringLiteral("Small"))->AsInteger(), -32768);
    t->FieldByName(QStringLiteral("Big"))->SetAsString(QStringLiteral("9007199254740993"));
    EXPECT_EQ(t->FieldByName(QStringLiteral("Big"))->AsLargeInt(), 9007199254740993LL);
    EXPECT_THROW(t->FieldByName(QStringLiteral("Big"))->AsInteger(), EDatabaseError);
    auto *limited = qobject_cast<TIntegerField *>(t->FieldByName(QStringLiteral("Small")));
    limited->SetMinValue(1);
    limited->SetMaxValue(10);
    try {
        limited->SetAsInteger(11);
        FAIL();
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(QStringLiteral("11 is not a valid value for field 'Small'. The allowed range is 1 to 10")))
            << e.what();
    }
}

TEST(Fields, TextAndDisplayText)
{
    ScopedFormatSettings fs(GermanStyleSettings());
    auto t = MakeTypes();
    auto *f = qobject_cast<TFloatField *>(t->FieldByName(QStringLiteral("F")));
    f->SetAsString(QStringLiteral("1234,5"));
    EXPECT_EQ(f->AsFloat(), 1234.5);
    EXPECT_EQ(f->Text(), QStringLiteral("1234,5"));
    f->SetDisplayFormat(QStringLiteral("%.2n"));
    EXPECT_EQ(f->DisplayText(), QStringLiteral("1.234,50"));
    EXPECT_EQ(f->Text(), QStringLiteral("1234,5")); // the edit text keeps the plain number
    EXPECT_THROW(f->SetAsString(QStringLiteral("1.5")), EDatabaseError);
    EXPECT_EQ(f->AsFloat(), 1234.5);

    TField *money = t->FieldByName(QStringLiteral("Money"));
    money->SetAsFloat(3.5);
    EXPECT_EQ(money->DisplayText(), QStringLiteral("$3,50"));

    TField *bcd = t->FieldByName(QStringLiteral("Bcd"));
    bcd->SetAsString(QStringLiteral("0,1"));
    EXPECT_EQ(bcd->Value().Type(), VarType::Currency);
    EXPECT_EQ(bcd->AsCurrency().Raw(), 1000);

    auto *b = qobject_cast<TBooleanField *>(t->FieldByName(QStringLiteral("B")));
    b->SetDisplayValues(QStringLiteral("Ja;Nein"));
    b->SetAsString(QStringLiteral("n"));
    EXPECT_FALSE(b->AsBoolean());
    EXPECT_EQ(b->DisplayText(), QStringLiteral("Nein"));
    b->SetAsString(QStringLiteral("JA"));
    EXPECT_TRUE(b->AsBoolean());

    auto *d = qobject_cast<TDateTimeField *>(t->FieldByName(QStringLiteral("D")));
    d->SetAsString(QStringLiteral("31.01.2024"));
    EXPECT_EQ(d->AsDateTime(), EncodeDate(2024, 1, 31));
    EXPECT_EQ(d->Text(), QStringLiteral("31.01.2024"));
    d->SetDisplayFormat(QStringLiteral("mmmm yyyy"));
    EXPECT_EQ(d->DisplayText(), QStringLiteral("January 2024"));
    EXPECT_THROW(d->SetAsString(QStringLiteral("31.02.2024")), EDatabaseError);
    t->FieldByName(QStringLiteral("T"))->SetAsString(QStringLiteral("13:45"));
    EXPECT_EQ(t->FieldByName(QStringLiteral("T"))->Text(), QStringLiteral("13:45:00"));

    TField *memo = t->FieldByName(QStringLiteral("M"));
    EXPECT_EQ(memo->DisplayText(), QStringLiteral("(memo)"));
    memo->SetAsString(QStringLiteral("long text"));
    EXPECT_EQ(memo->DisplayText(), QStringLiteral("(MEMO)"));
    EXPECT_EQ(memo->Text(), QStringLiteral("long text"));
    t->FieldByName(QStringLiteral("Blob"))->SetAsBytes(QByteArray("\x01\x02", 2));
    EXPECT_EQ(t->FieldByName(QStringLiteral("Blob"))->DisplayText(), QStringLiteral("(BLOB)"));
    EXPECT_EQ(t->FieldByName(QStringLiteral("Blob"))->AsBytes(), QByteArray("\x01\x02", 2));
}

TEST(Fields, TextEventsReplaceTheRules)
{
    auto t = MakeTypes();
    TField *s = t->FieldByName(QStringLiteral("S"));
    s->OnGetText = [](TField *f, QString &text, bool display) {
        text = display ? QStringLiteral("<%1>").arg(f->AsString()) : f->AsString();
    };
    s->OnSetText = [](TField *f, const QString &text) { f->SetAsString(text.toUpper()); };
    s->SetText(QStringLiteral("abc"));
    EXPECT_EQ(s->AsString(), QStringLiteral("ABC"));
    EXPECT_EQ(s->DisplayText(), QStringLiteral("<ABC>"));
    EXPECT_EQ(s->Text(), QStringLiteral("ABC"));
    int changes = 0;
    s->OnChange = [&](TField *) { ++changes; };
    s->SetAsString(QStringLiteral("x"));
    s->Clear();
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(s->IsNull());
    EXPECT_EQ(t->FieldByName(QStringLiteral("S"))->AsFloat(), 0.0); // null reads as 0
}

TEST(Fields, WrongTypesRaiseNamingTheField)
{
    auto t = MakeTypes();
    TField *d = t->FieldByName(QStringLiteral("D"));
    d->SetDisplayLabel(QStringLiteral("Order date"));
    try {
        d->SetValue(QStringLiteral("soon"));
        FAIL();
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(QStringLiteral("'Order date'"))) << e.what();
    }
    t->FieldByName(QStringLiteral("S"))->SetAsString(QStringLiteral("text"));
    EXPECT_THROW(t->FieldByName(QStringLiteral("S"))->AsInteger(), EDatabaseError);
    EXPECT_THROW(t->FieldByName(QStringLiteral("Nope")), EDatabaseError);
    EXPECT_EQ(t->FindField(QStringLiteral("nope")), nullptr);
    EXPECT_EQ(t->FindField(QStringLiteral("s")), t->FieldByName(QStringLiteral("S")));
}

TEST(Fields, FieldsCannotChangeShapeWhileOpen)
{
    auto t = MakeOrders(1);
    EXPECT_THROW(t->FieldByName(QStringLiteral("Name"))->SetFieldName(QStringLiteral("Other")), EDatabaseError);
    auto *extra = new TStringField(t.get());
    extra->SetFieldName(QStringLiteral("Extra"));
    EXPECT_THROW(extra->SetDataSet(t.get()), EDatabaseError);
    TMemTable fresh;
    auto *first = new TStringField(&fresh);
    first->SetFieldName(QStringLiteral("Name"));
    first->SetDataSet(&fresh);
    auto *dup = new TStringField(&fresh);
    dup->SetFieldName(QStringLiteral("name"));
    EXPECT_THROW(dup->SetDataSet(&fresh), EDatabaseError); // names are unique without case
}
