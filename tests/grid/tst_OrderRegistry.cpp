#include "OrderTestDataSets.h"

#include "grid/QDBGrids.h"
#include "platform/db/MemTable.h"
#include "platform/sql/SQLDataSet.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

// The registry first retries the item it found last, for any data set; each look-up here
// starts afresh (unregistering forgets that item) unless a test is about that memory.
const TChangeOrderItem *find(TDataSet *ds, bool forChange = true)
{
    UnRegisterChangeOrder(QString(), coChangeIndexFields);
    return ChangeOrderList().Find(ds, forChange);
}

} // namespace

TEST(OrderRegistry, ClientDataSetsByTheirQuery)
{
    TClientDataSet cds;
    const TChangeOrderItem *item = find(&cds);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->ChangeOrder, coChangeIndexFields); // no query: its index field list
    EXPECT_TRUE(item->AscendOnly);
    cds.commandText = QStringLiteral("select * from orders");
    item = find(&cds);
    EXPECT_EQ(item->ChangeOrder, coChangeOrderFields);
    EXPECT_EQ(item->Property(), QStringLiteral("CommandText"));
    cds.fileName = QStringLiteral("orders.cds");
    EXPECT_EQ(find(&cds)->ChangeOrder, coChangeIndexFields);
    cds.fileName.clear(); // the item found last is kept while it still serves
    EXPECT_EQ(ChangeOrderList().Find(&cds, true)->ChangeOrder, coChangeIndexFields);

    TMyClientDataSet derived; // exact names do not serve descendants
    derived.commandText = QStringLiteral("select * from orders");
    EXPECT_EQ(find(&derived)->ClassName, QStringLiteral("*TQDBCustomData"));
}

TEST(OrderRegistry, ADOByCursorLocation)
{
    TADODataSet ado;
    ado.commandText = QStringLiteral("SELECT * FROM t");
    EXPECT_EQ(find(&ado)->ChangeOrder, coChangeIndexFields);
    ado.cursorLocation = clUseServer;
    EXPECT_EQ(find(&ado)->ChangeOrder, coChangeOrderFields);
    ado.commandType = cmdTable;
    EXPECT_EQ(find(&ado)->ClassName, QStringLiteral("*TQDBCustomData"));
}

TEST(OrderRegistry, FormatsAndThisPlatformsDataSets)
{
    TFDQuery fd;
    EXPECT_EQ(find(&fd)->IndexFormat, QStringLiteral(":A;:D;:N"));
    EXPECT_FALSE(find(&fd)->AscendOnly);
    TMemTable mem;
    EXPECT_EQ(find(&mem)->IndexFormat, QStringLiteral(":A;:D;:N"));
    TSQLTable table;
    EXPECT_EQ(find(&table)->Property(), QStringLiteral("IndexFieldNames"));
    TSQLQuery query;
    EXPECT_EQ(find(&query)->ChangeOrder, coChangeSQLOrderFields);
    EXPECT_EQ(find(&query)->Property(), QStringLiteral("SQL"));
    TQDBCustomData bare; // no index property published: nothing serves it
    EXPECT_EQ(find(&bare), nullptr);
}

TEST(OrderRegistry, CustomHandlersRegisterAndLeave)
{
    TFDQuery fd;
    int changed = 0;
    RegisterCustomChangeOrder(QStringLiteral("TFDQuery"), [&](TQDBGrid *, const QString &) { ++changed; }, {}, true);
    const TChangeOrderItem *item = find(&fd, true);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->ChangeOrder, coCustomChangeOrder);
    item->CustomChangeOrder(nullptr, QStringLiteral("Name"));
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(find(&fd, false)->ChangeOrder, coChangeIndexFields); // it cannot read the order
    RegisterChangeOrder(QStringLiteral("TFDQuery"), coCustomChangeOrder); // ignored
    UnRegisterChangeOrder(QStringLiteral("TFDQuery"), coCustomChangeOrder);
    EXPECT_EQ(find(&fd, true)->ChangeOrder, coChangeIndexFields);
    UnRegisterChangeOrder(QStringLiteral("tfdquery"), coChangeIndexFields); // names compare exactly
    EXPECT_EQ(find(&fd)->ClassName, QStringLiteral("TFDQuery"));
}
