#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Streaming.h"

#include "TestObjects.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class StreamingTest : public ::testing::Test
{
protected:
    void SetUp() override { RegisterTestTypes(); }
};

void fill(TTestDataSet &ds)
{
    ds.SetCommandText(QStringLiteral("SELECT * FROM \"Order Lines\""));
    ds.SetCommandType(ctQuery);
    ds.SetOptions({toSecond, toThird});
    ds.SetActive(true);
    ds.SetMaxRows(100);
    ds.SetRatio(0.125);
    ds.SetBig(qint64(1) << 60);
    ds.SetColor(QColor(10, 20, 30));
    QFont font(QStringLiteral("DejaVu Sans"), 11);
    font.setBold(true);
    ds.SetFont(font);
    ds.GetSQL()->SetText(QStringLiteral("line 1\nline=2"));
    ds.GetTitle()->SetCaption(QStringLiteral("Orders"));
    ds.GetItems()->Add()->SetFieldName(QStringLiteral("Name"));
    TTestItem *wide = ds.GetItems()->Add();
    wide->SetFieldName(QStringLiteral("Unit Price"));
    wide->SetWidth(120);
    ds.SetTransient(QStringLiteral("not stored"));
}

} // namespace

TEST_F(StreamingTest, FreshObjectsStreamEmpty)
{
    TTestTitle title;
    EXPECT_TRUE(WriteComponent(&title).isEmpty());
    TTestDataSet ds;
    const QJsonObject json = WriteComponent(&ds);
    EXPECT_FALSE(json.contains(QStringLiteral("Title"))); // nothing stored in it
    EXPECT_FALSE(json.contains(QStringLiteral("MaxRows")));
    EXPECT_FALSE(json.contains(QStringLiteral("Transient")));
    EXPECT_FALSE(json.contains(QStringLiteral("objectName")));
}

TEST_F(StreamingTest, StoredPropertiesRoundTrip)
{
    TTestDataSet source;
    fill(source);
    const QJsonObject json = WriteComponent(&source);
    EXPECT_EQ(json[QStringLiteral("CommandType")].toString(), QStringLiteral("ctQuery"));
    EXPECT_EQ(json[QStringLiteral("Options")].toString(), QStringLiteral("[toSecond,toThird]"));
    EXPECT_EQ(json[QStringLiteral("Title")].toObject().keys(), QStringList{QStringLiteral("Caption")});
    const QJsonArray items = json[QStringLiteral("Items")].toArray();
    ASSERT_EQ(items.size(), 2);
    EXPECT_FALSE(items[0].toObject().contains(QStringLiteral("Width"))); // the default is not stored
    EXPECT_EQ(items[1].toObject()[QStringLiteral("Width")].toInt(), 120);
    EXPECT_FALSE(json.contains(QStringLiteral("Transient")));

    TTestDataSet target;
    JsonToComponent(&target, ComponentToJson(&source));
    EXPECT_EQ(WriteComponent(&target), json);
    EXPECT_EQ(target.GetBig(), qint64(1) << 60);
    EXPECT_EQ(target.GetFont().bold(), true);
    EXPECT_EQ(target.GetSQL()->Values(QStringLiteral("line")), QStringLiteral("2"));
    EXPECT_EQ(target.GetItems()->Items(1)->GetWidth(), 120);
    EXPECT_EQ(target.GetTransient(), QString());
    EXPECT_EQ(target.loadingBegun, 1);
    EXPECT_EQ(target.loadedCalls, 1);
}

TEST_F(StreamingTest, ReferencesAreWrittenByNameAndResolved)
{
    TTestConnection connection;
    connection.setObjectName(QStringLiteral("Connection1"));
    TTestDataSet source;
    source.SetConnection(&connection);
    const QJsonObject json = WriteComponent(&source);
    EXPECT_EQ(json[QStringLiteral("Connection")].toString(), QStringLiteral("Connection1"));

    TTestDataSet target;
    ReadComponent(&target, json, [&](const QString &name, const QMetaProperty &) -> QObject * {
        return name == connection.objectName() ? &connection : nullptr;
    });
    EXPECT_EQ(target.GetConnection(), &connection);
}

TEST_F(StreamingTest, BadStreamsRaiseReadErrors)
{
    TTestDataSet ds;
    const char *bad[] = {
        "{\"NoSuchProperty\": 1}",
        "{\"MaxRows\": \"ten\"}",
        "{\"MaxRows\": 1.5}",
        "{\"CommandType\": \"ctWhatever\"}",
        "{\"Items\": [1, 2]}",
        "{\"SQL\": \"not a list\"}",
        "{\"Color\": \"no colour\"}",
        "[1, 2]",
        "{\"MaxRows\": 5",
    };
    for (const char *json : bad)
        EXPECT_THROW(JsonToComponent(&ds, QByteArray(json)), EReadError) << json;
    EXPECT_EQ(ds.loadingBegun, ds.loadedCalls); // the bracket closes on errors too
}

TEST_F(StreamingTest, AssignCopiesItems)
{
    TTestDataSet source;
    fill(source);
    TTestItems copy;
    copy.Assign(*source.GetItems());
    ASSERT_EQ(copy.Count(), 2);
    EXPECT_EQ(copy.Items(1)->GetFieldName(), QStringLiteral("Unit Price"));
    EXPECT_EQ(copy.Items(1)->GetWidth(), 120);
}

TEST(Collection, UpdatesAndNotifications)
{
    TTestItems items;
    TTestItem *a = items.Add();
    TTestItem *b = items.Add();
    EXPECT_EQ(items.notifications,
              QList<TCollectionNotification>({TCollectionNotification::cnAdded, TCollectionNotification::cnAdded}));
    EXPECT_EQ(items.updates, QList<TTestItem *>({nullptr, nullptr}));

    items.updates.clear();
    a->SetWidth(10);
    EXPECT_EQ(items.updates, QList<TTestItem *>{a}); // an item change names the item

    items.updates.clear();
    items.BeginUpdate();
    items.BeginUpdate();
    a->SetWidth(20);
    items.Add();
    items.EndUpdate();
    EXPECT_TRUE(items.updates.isEmpty());
    items.EndUpdate();
    EXPECT_EQ(items.updates, QList<TTestItem *>{nullptr}); // once, for the whole collection

    b->SetIndex(0);
    EXPECT_EQ(items.Items(0), b);
    EXPECT_EQ(a->Index(), 1);

    items.notifications.clear();
    items.Delete(0);
    EXPECT_EQ(items.notifications, QList<TCollectionNotification>({TCollectionNotification::cnDeleting,
                                                                   TCollectionNotification::cnExtracting}));
    EXPECT_EQ(items.Count(), 2);
    EXPECT_THROW(items.Items(5), EListError);

    items.notifications.clear();
    delete items.Items(0); // an item destroyed elsewhere leaves its collection
    EXPECT_EQ(items.Count(), 1);
    EXPECT_EQ(items.notifications, QList<TCollectionNotification>{TCollectionNotification::cnExtracting});
}

TEST(Collection, UpdateGuardBalancesOnExceptions)
{
    TTestItems items;
    try {
        CollectionUpdateGuard guard(items);
        items.Add();
        throw EAbort(QStringLiteral("stop"));
    } catch (const EAbort &) {
    }
    EXPECT_EQ(items.UpdateCount(), 0);
    EXPECT_EQ(items.updates.last(), nullptr);
}
