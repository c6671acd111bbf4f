#include "platform/rtl/Exceptions.h"
#include "platform/rtl/TypInfo.h"

#include "TestObjects.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class TypInfoTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterTestTypes();
        connection.setObjectName(QStringLiteral("Connection1"));
        connection.SetDriver(QStringLiteral("QSQLITE"));
        query.SetConnection(&connection);
    }
    TTestConnection connection;
    TTestQuery query;
};

} // namespace

TEST_F(TypInfoTest, ClassNamesAndAncestry)
{
    EXPECT_EQ(ClassName(&query), QStringLiteral("TTestQuery")); // no namespace
    EXPECT_TRUE(InheritsFrom(&query, QStringLiteral("TTestDataSet")));
    EXPECT_TRUE(InheritsFrom(&query, QStringLiteral("QObject")));
    EXPECT_FALSE(InheritsFrom(&connection, QStringLiteral("TTestDataSet")));
    EXPECT_EQ(ClassAncestry(&query),
              QStringList({QStringLiteral("TTestQuery"), QStringLiteral("TTestDataSet"), QStringLiteral("QObject")}));
}

TEST_F(TypInfoTest, ReadsByNameAndPath)
{
    query.SetCommandType(ctQuery);
    query.SetOptions({toFirst, toThird});
    query.GetSQL()->SetText(QStringLiteral("SELECT *\nFROM t"));
    EXPECT_EQ(GetPropText(&query, QStringLiteral("CommandType")), QStringLiteral("ctQuery"));
    EXPECT_EQ(GetPropText(&query, QStringLiteral("Options")), QStringLiteral("[toFirst,toThird]"));
    EXPECT_EQ(GetPropText(&query, QStringLiteral("Active")), QStringLiteral("False"));
    EXPECT_EQ(GetPropText(&query, QStringLiteral("SQL")), QStringLiteral("SELECT *\nFROM t\n"));
    EXPECT_EQ(GetPropText(&query, QStringLiteral("Connection.Driver")), QStringLiteral("QSQLITE"));
    EXPECT_EQ(GetPropText(&query, QStringLiteral("Connection")), QStringLiteral("Connection1"));
    EXPECT_EQ(GetObjectProp(&query, QStringLiteral("Connection")), &connection);
}

TEST_F(TypInfoTest, MissingPropertiesReadEmpty)
{
    for (const char *path : {"IndexFieldNames", "Connection.Port", "CommandText.Length", "Title.", ".x", ""}) {
        EXPECT_FALSE(IsPublishedProp(&query, QString::fromLatin1(path))) << path;
        EXPECT_EQ(GetPropText(&query, QString::fromLatin1(path)), QString()) << path;
        EXPECT_FALSE(GetPropValue(&query, QString::fromLatin1(path)).isValid()) << path;
    }
    query.SetConnection(nullptr);
    EXPECT_EQ(GetPropText(&query, QStringLiteral("Connection.Driver")), QString());
}

TEST_F(TypInfoTest, WritesConvertText)
{
    SetPropText(&query, QStringLiteral("CommandType"), QStringLiteral("ctStoredProc"));
    EXPECT_EQ(query.GetCommandType(), ctStoredProc);
    SetPropText(&query, QStringLiteral("Options"), QStringLiteral("[toSecond]"));
    EXPECT_EQ(query.GetOptions(), TTestOptions{toSecond});
    SetPropText(&query, QStringLiteral("Active"), QStringLiteral("true"));
    EXPECT_TRUE(query.GetActive());
    SetPropText(&query, QStringLiteral("MaxRows"), QStringLiteral(" 25 "));
    EXPECT_EQ(query.GetMaxRows(), 25);
    SetPropText(&query, QStringLiteral("SQL"), QStringLiteral("SELECT 1"));
    EXPECT_EQ(query.GetSQL()->Count(), 1);
    SetPropText(&query, QStringLiteral("Connection.Driver"), QStringLiteral("QPSQL"));
    EXPECT_EQ(connection.GetDriver(), QStringLiteral("QPSQL"));
}

TEST_F(TypInfoTest, BadWritesRaiseAndCreateNothing)
{
    EXPECT_THROW(SetPropText(&query, QStringLiteral("IndexFieldNames"), QStringLiteral("Name")), EPropertyError);
    EXPECT_FALSE(query.property("IndexFieldNames").isValid()); // no dynamic property appeared
    EXPECT_THROW(SetPropText(&query, QStringLiteral("CommandType"), QStringLiteral("ctNothing")), EPropertyError);
    EXPECT_THROW(SetPropText(&query, QStringLiteral("CommandType"), QStringLiteral("7")), EPropertyError);
    EXPECT_THROW(SetPropText(&query, QStringLiteral("MaxRows"), QStringLiteral("many")), EPropertyError);
    EXPECT_THROW(SetPropText(&query, QStringLiteral("Active"), QStringLiteral("maybe")), EPropertyError);
    EXPECT_THROW(SetPropText(&query, QStringLiteral("Title"), QStringLiteral("x")), EPropertyError);
    EXPECT_EQ(query.GetCommandType(), ctTable);
    EXPECT_EQ(query.GetMaxRows(), 0);
}
