#include "data/QDBCustData.h"
#include "platform/db/DataSource.h"
#include "platform/rtl/Exceptions.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;

namespace {

// Rows of (Name, Qty) held in lists, with a log of every call the data set makes.
class ListData : public TQDBCustomData
{
public:
    explicit ListData(int rows)
    {
        FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
        FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
        for (int i = 0; i < rows; ++i) {
            names << QStringLiteral("n%1").arg(i);
            qtys << i;
        }
    }
    QStringList names;
    QList<int> qtys;
    QStringList log;

protected:
    void DoOnCountRecords(int &count) override { count = int(names.size()); }
    void DoOnGetFieldData(int index, TField *field, Variant &value) override
    {
        log << QStringLiteral("get %1 %2").arg(index).arg(field->FieldName());
        if (index < 0 || index >= names.size())
            return;
        value = field->FieldName() == QLatin1String("Name") ? Variant(names[index]) : Variant(qtys[index]);
    }
    void DoOnSetFieldData(int index, TField *field, const Variant &value) override
    {
        log << QStringLiteral("set %1 %2").arg(index).arg(field->FieldName());
        if (field->FieldName() == QLatin1String("Name"))
            names[index] = value.ToString();
        else
            qtys[index] = value.ToInt();
    }
    void DoOnInsertRecord(int index) override
    {
        log << QStringLiteral("insert %1").arg(index);
        names.insert(index, QString());
        qtys.insert(index, 0);
    }
    void DoOnDeleteRecord(int index) override
    {
        log << QStringLiteral("delete %1").arg(index);
        names.removeAt(index);
        qtys.removeAt(index);
    }
};

} // namespace

TEST(QDBCustomData, NoRecords)
{
    ListData data(0);
    data.Open();
    EXPECT_EQ(data.RecNo(), -1);
    EXPECT_TRUE(data.Bof());
    EXPECT_TRUE(data.Eof());
    data.Last();
    EXPECT_TRUE(data.Bof());
    EXPECT_TRUE(data.Eof());
    EXPECT_FALSE(data.BookmarkValid(QByteArray(4, '\0')));
    EXPECT_FALSE(data.BookmarkValid(QByteArray()));
    data.SetRecordCount(-5);
    EXPECT_EQ(data.RecordCount(), 0);
    EXPECT_FALSE(data.FindRecord(true, true));
}

TEST(QDBCustomData, ValuesAreAskedOncePerBuffer)
{
    ListData data(5);
    data.Open();
    TField *name = data.FieldByName(QStringLiteral("Name"));
    data.log.clear();
    EXPECT_EQ(name->AsString(), QStringLiteral("n0"));
    EXPECT_EQ(name->AsString(), QStringLiteral("n0"));
    EXPECT_EQ(data.log, QStringList{QStringLiteral("get 0 Name")});
    data.Next();
    EXPECT_EQ(name->AsString(), QStringLiteral("n1"));
    EXPECT_EQ(data.log, QStringList({QStringLiteral("get 0 Name"), QStringLiteral("get 1 Name")}));
    EXPECT_EQ(data.RecNo(), 2);
    EXPECT_EQ(data.RecordIndex(), 1);
    data.SetRecNo(5);
    EXPECT_EQ(name->AsString(), QStringLiteral("n4"));
    EXPECT_TRUE(data.FindRecord(false, false));
    EXPECT_EQ(data.RecNo(), 4);
}

TEST(QDBCustomData, PostedInsertSetsOnlyWrittenFieldsInOrder)
{
    ListData data(3);
    data.Open();
    data.Next(); // index 1
    data.Insert();
    data.log.clear();
    data.FieldByName(QStringLiteral("Qty"))->SetAsInteger(42);
    data.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("new"));
    data.FieldByName(QStringLiteral("Qty"))->SetAsInteger(43);
    data.Post();
    const QStringList expected = {QStringLiteral("insert 1"), QStringLiteral("set 1 Qty"), QStringLiteral("set 1 Name")};
    EXPECT_EQ(data.log.mid(0, 3), expected);
    EXPECT_EQ(data.names, QStringList({QStringLiteral("n0"), QStringLiteral("new"), QStringLiteral("n1"), QStringLiteral("n2")}));
    EXPECT_EQ(data.qtys[1], 43);
    EXPECT_EQ(data.RecordCount(), 4);
    EXPECT_EQ(data.FieldByName(QStringLiteral("Name"))->AsString(), QStringLiteral("new"));

    data.Edit();
    data.log.clear();
    data.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("edited"));
    data.Post();
    EXPECT_EQ(data.log.first(), QStringLiteral("set 1 Name"));
    EXPECT_EQ(data.names[1], QStringLiteral("edited"));

    data.Append();
    data.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("last"));
    data.Post();
    EXPECT_EQ(data.names.last(), QStringLiteral("last"));
    EXPECT_EQ(data.RecNo(), 5);

    data.First();
    data.Delete();
    EXPECT_EQ(data.names.first(), QStringLiteral("edited"));
    EXPECT_EQ(data.RecordCount(), 4);
}

TEST(QDBCustomData, WritingNeedsEditModeAndAWritableField)
{
    ListData data(2);
    data.Open();
    TField *qty = data.FieldByName(QStringLiteral("Qty"));
    EXPECT_THROW(qty->SetAsInteger(1), EDatabaseError);
    data.Edit();
    qty->SetReadOnly(true);
    qty->SetDisplayLabel(QStringLiteral("Quantity"));
    try {
        qty->SetAsInteger(1);
        FAIL();
    } catch (const EDatabaseError &e) {
        EXPECT_EQ(e.Message(), QStringLiteral("Field 'Quantity' cannot be modified"));
    }
    EXPECT_TRUE(data.ModifiedFields().isEmpty());
    data.Cancel();
    data.SetReadOnly(true);
    EXPECT_THROW(data.Edit(), EDatabaseError);
}

TEST(QDBCustomData, LocateVisitsOnlyAcceptedRecords)
{
    ListData data(10);
    data.Open();
    QList<int> visited;
    data.SetOnFilterRecord({[&](TDataSet *ds, bool &accept) {
        const int qty = ds->FieldByName(QStringLiteral("Qty"))->AsInteger();
        visited << qty;
        accept = qty % 2 == 0;
    }});
    data.SetFiltered(true);
    EXPECT_EQ(data.FieldByName(QStringLiteral("Qty"))->AsInteger(), 0);
    EXPECT_FALSE(data.Locate(QStringLiteral("Qty"), 3, {}));
    EXPECT_TRUE(data.Locate(QStringLiteral("Name"), QStringLiteral("N6"), {loCaseInsensitive}));
    EXPECT_EQ(data.RecNo(), 7);
    EXPECT_EQ(data.Lookup(QStringLiteral("Qty"), 8, QStringLiteral("Name")).ToString(), QStringLiteral("n8"));
    data.Next();
    EXPECT_EQ(data.FieldByName(QStringLiteral("Qty"))->AsInteger(), 8); // odd records are skipped
    visited.clear();
    data.SetFiltered(false);
    EXPECT_TRUE(visited.isEmpty());
    EXPECT_EQ(data.RecNo(), 1);
}

TEST(QDBCustomData, ADescendantLocatesByItsOwnRule)
{
    // Names found by their last letters: what a descendant may decide in LocateFilter.
    class SuffixData : public ListData
    {
    public:
        using ListData::ListData;
        int reads = 0;

    protected:
        bool LocateFilter(TRecordBuffer &buffer) override
        {
            TempState look(this, dsFilter, &buffer);
            return FieldByName(QStringLiteral("Name"))->AsString().endsWith(wanted);
        }
        TGetResult InternalGetRecord(TRecordBuffer &buffer, TGetMode mode) override
        {
            ++reads;
            return ListData::InternalGetRecord(buffer, mode);
        }

    public:
        QString wanted;
    };
    SuffixData data(30);
    data.Open();
    data.wanted = QStringLiteral("7");
    data.reads = 0;
    EXPECT_TRUE(data.Locate(QStringLiteral("Name"), QStringLiteral("ignored"), {}));
    EXPECT_EQ(data.RecNo(), 8); // n7, the first that ends in 7
    EXPECT_GE(data.reads, 8);
    data.wanted = QStringLiteral("x");
    EXPECT_FALSE(data.Locate(QStringLiteral("Name"), QStringLiteral("ignored"), {}));
    EXPECT_EQ(data.RecNo(), 8);
}

// Records added whole go through InternalAddRecord: appended after the last record wherever
// the cursor is, inserted at it.
TEST(QDBCustomData, RecordsAddedWholeAreAppendedOrInsertedWhereTheySay)
{
    class Adding : public ListData
    {
    public:
        using ListData::ListData;
        QList<bool> added;

    protected:
        void InternalAddRecord(TRecordBuffer &buffer, bool append) override
        {
            added << append;
            ListData::InternalAddRecord(buffer, append);
        }
    };
    Adding data(3);
    data.Open();
    data.Next();
    data.AppendRecord({QStringLiteral("end"), 9});
    EXPECT_EQ(data.names.last(), QStringLiteral("end"));
    EXPECT_EQ(data.qtys.last(), 9);
    EXPECT_EQ(data.RecNo(), 4);
    data.First();
    data.Next();
    data.InsertRecord({QStringLiteral("mid"), 5});
    EXPECT_EQ(data.names, QStringList({QStringLiteral("n0"), QStringLiteral("mid"), QStringLiteral("n1"), QStringLiteral("n2"),
                                       QStringLiteral("end")}));
    EXPECT_EQ(data.RecNo(), 2);
    EXPECT_EQ(data.added, QList<bool>({true, false}));
}
