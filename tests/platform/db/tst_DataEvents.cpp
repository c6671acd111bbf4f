#include "DbTestSupport.h"

#include "platform/rtl/Exceptions.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

// A single-record link that edits one field, as an edit box would.
class EditLink : public TFieldDataLink
{
public:
    QString typed;
    QStringList *order = nullptr;

protected:
    void RecordChanged(TField *field) override
    {
        if (order)
            order->append(QStringLiteral("edit"));
        TFieldDataLink::RecordChanged(field);
    }
};

class GridLink : public WindowLink
{
public:
    using WindowLink::WindowLink;
    QStringList *order = nullptr;
    TField *focused = nullptr;

protected:
    void DataSetChanged() override
    {
        if (order)
            order->append(QStringLiteral("grid"));
        WindowLink::DataSetChanged();
    }
    void RecordChanged(TField *field) override
    {
        if (order)
            order->append(QStringLiteral("grid"));
        WindowLink::RecordChanged(field);
    }
    void FocusControl(TField *&field) override { focused = field; }
};

} // namespace

TEST(DataEvents, SingleRecordLinksHearFirst)
{
    auto t = MakeOrders(5);
    TDataSource source;
    source.SetDataSet(t.get());
    QStringList order;
    GridLink grid(&source, 3);
    grid.order = &order;
    EditLink edit;
    edit.order = &order;
    edit.SetDataSource(&source);
    edit.SetFieldName(QStringLiteral("Name"));
    order.clear();
    t->Edit();
    order.clear();
    t->FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("x"));
    EXPECT_EQ(order, QStringList({QStringLiteral("edit"), QStringLiteral("grid")}));
    t->Cancel();
}

TEST(DataEvents, PostAsksTheEditorsForTheirValues)
{
    auto t = MakeOrders(3);
    TDataSource source;
    source.SetDataSet(t.get());
    EditLink edit;
    edit.SetDataSource(&source);
    edit.SetFieldName(QStringLiteral("Name"));
    edit.OnUpdateData = [&](TObject *) { edit.Field()->SetAsString(edit.typed); };
    ASSERT_TRUE(edit.Edit());
    edit.typed = QStringLiteral("typed");
    edit.Modified();
    t->Post();
    EXPECT_EQ(t->FieldByName(QStringLiteral("Name"))->AsString(), QStringLiteral("typed"));
    EXPECT_FALSE(edit.IsModified());
}

TEST(DataEvents, ARequiredFieldFocusesItsControl)
{
    auto t = MakeOrders(2);
    TDataSource source;
    source.SetDataSet(t.get());
    GridLink grid(&source, 2);
    t->FieldByName(QStringLiteral("Qty"))->SetRequired(true);
    t->Append();
    EXPECT_THROW(t->Post(), EDatabaseError);
    EXPECT_EQ(grid.focused, t->FieldByName(QStringLiteral("Qty")));
    t->Cancel();
}

TEST(DataEvents, SourceEventsAndStates)
{
    auto t = MakeOrders(3);
    TDataSource source;
    QList<TDataSetState> states;
    int dataChanges = 0;
    TField *changedField = nullptr;
    source.OnStateChange = [&](TObject *) { states << source.State(); };
    source.OnDataChange = [&](TObject *, TField *field) {
        ++dataChanges;
        changedField = field;
    };
    source.SetDataSet(t.get());
    t->Edit();
    t->FieldByName(QStringLiteral("Qty"))->SetAsInteger(9);
    EXPECT_EQ(changedField, t->FieldByName(QStringLiteral("Qty")));
    t->Post();
    EXPECT_EQ(states, QList<TDataSetState>({dsBrowse, dsEdit, dsBrowse}));
    EXPECT_GT(dataChanges, 1);
    source.SetEnabled(false);
    EXPECT_EQ(source.State(), dsInactive);
    const int before = dataChanges;
    t->Next();
    EXPECT_EQ(dataChanges, before); // a disabled source passes nothing on
}

TEST(DataEvents, EventsOfEditingInOrder)
{
    auto t = MakeOrders(3);
    QStringList log;
    auto note = [&](const char *what) { return [&log, what](TDataSet *) { log << QString::fromLatin1(what); }; };
    t->BeforeInsert = note("BeforeInsert");
    t->OnNewRecord = [&](TDataSet *ds) {
        log << QStringLiteral("OnNewRecord");
        ds->FieldByName(QStringLiteral("Qty"))->SetAsInteger(1); // a default, not yet a change
    };
    t->AfterInsert = note("AfterInsert");
    t->BeforePost = note("BeforePost");
    t->AfterPost = note("AfterPost");
    t->BeforeScroll = note("BeforeScroll");
    t->AfterScroll = note("AfterScroll");
    t->Append();
    EXPECT_FALSE(t->Modified());
    t->FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("n"));
    EXPECT_TRUE(t->Modified());
    t->Post();
    EXPECT_EQ(log, QStringList({"BeforeInsert", "OnNewRecord", "AfterInsert", "BeforePost", "AfterPost"}));
    log.clear();
    t->Prior();
    EXPECT_EQ(log, QStringList({"BeforeScroll", "AfterScroll"}));
    log.clear();
    t->Edit();
    t->Next(); // an unmodified edit is cancelled by the move
    EXPECT_EQ(t->State(), dsBrowse);
    EXPECT_FALSE(log.contains(QStringLiteral("BeforePost")));
}

TEST(DataEvents, LayoutChangesWhileDisabledArriveOnEnable)
{
    auto t = MakeOrders(3);
    TDataSource source;
    source.SetDataSet(t.get());
    WindowLink link(&source, 3);
    link.layouts = link.changes = 0;
    {
        ControlsDisabler quiet(t.get());
        t->FieldByName(QStringLiteral("Name"))->SetDisplayWidth(30);
        t->Last();
    }
    EXPECT_EQ(link.layouts, 1);
    EXPECT_EQ(link.changes, 0);
    t->Close();
    EXPECT_FALSE(link.Active());
}

TEST(DataEvents, RefreshKeepsThePosition)
{
    auto t = MakeOrders(10);
    t->SetRecNo(7);
    t->Refresh();
    EXPECT_EQ(t->RecNo(), 7);
    t->EmptyDataSet();
    EXPECT_TRUE(t->IsEmpty());
    t->Close();
    t->Open();
    EXPECT_TRUE(t->IsEmpty());
}
