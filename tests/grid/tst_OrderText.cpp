#include "grid/QDBGrids.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;

namespace {

QStringList modified(const QStringList &lines, const QString &order)
{
    TStringList list(lines);
    ModifyOrderFields(&list, order);
    return list.ToStringList();
}

} // namespace

TEST(OrderText, ExtractFindsTheLastOrderBy)
{
    TStringList sql({"SELECT * FROM t", "ORDER BY Name, City DESC ;"});
    EXPECT_EQ(ExtractOrderFields(&sql), QStringLiteral("Name, City DESC"));
    TStringList nested({"SELECT * FROM (SELECT a FROM u order by a) q", "WHERE x = 1"});
    EXPECT_EQ(ExtractOrderFields(&nested), QStringLiteral("a) q")); // a line-based scan, as it is
    TStringList none({"SELECT 1"});
    EXPECT_EQ(ExtractOrderFields(&none), QString());
    EXPECT_EQ(ExtractOrderFields(nullptr), QString());
    TStringList twoLines({"SELECT * FROM t ORDER BY", "  Name"}); // the next line is not followed
    EXPECT_EQ(ExtractOrderFields(&twoLines), QString());
}

TEST(OrderText, ModifyRewritesDropsOrAppends)
{
    EXPECT_EQ(modified({"SELECT * FROM t", "ORDER BY Name;"}, QStringLiteral("City DESC")),
              QStringList({"SELECT * FROM t", "ORDER BY City DESC;"}));
    EXPECT_EQ(modified({"SELECT * FROM t WHERE a = 1 ORDER BY Name"}, QString()),
              QStringList({"SELECT * FROM t WHERE a = 1 "}));
    EXPECT_EQ(modified({"SELECT * FROM t ORDER BY Name"}, QStringLiteral("desc")), QStringList({"SELECT * FROM t "}));
    EXPECT_EQ(modified({"SELECT * FROM t;", "", "  "}, QStringLiteral("Name")),
              QStringList({"SELECT * FROM t", "ORDER BY Name;"}));
    EXPECT_EQ(modified({"SELECT * FROM t"}, QStringLiteral("Name")), QStringList({"SELECT * FROM t", "ORDER BY Name"}));
    EXPECT_EQ(modified({"", " "}, QStringLiteral("Name")), QStringList());
    EXPECT_EQ(modified({"SELECT 1"}, QString()), QStringList({"SELECT 1"}));
}

TEST(OrderText, IndexFieldLists)
{
    const QString fd = QStringLiteral(":A;:D;:N");
    EXPECT_EQ(OrderFieldsToIndexFields(QStringLiteral("Name DESC,City"), fd), QStringLiteral("Name:D;City"));
    EXPECT_EQ(OrderFieldsToIndexFields(QStringLiteral("Name DESC,City"), QString()), QStringLiteral("Name DESC;City"));
    EXPECT_EQ(IndexFieldsToOrderFields(QStringLiteral("Name:D;City:A;Code:N;Plain"), fd),
              QStringLiteral("Name DESC,City,Code,Plain"));
    EXPECT_EQ(IndexFieldsToOrderFields(QStringLiteral("name:d"), fd), QStringLiteral("name DESC"));
    EXPECT_EQ(IndexFieldsToOrderFields(QStringLiteral("A;B"), QString()), QStringLiteral("A,B"));
}

TEST(OrderText, Comparing)
{
    EXPECT_TRUE(CompareOrderFields(QStringLiteral(" name , city desc"), QStringLiteral("NAME,CITY DESC")));
    EXPECT_TRUE(CompareOrderFields(QString(), QStringLiteral("  ")));
    EXPECT_FALSE(CompareOrderFields(QStringLiteral("A"), QStringLiteral("A,B")));
    EXPECT_FALSE(CompareOrderFields(QStringLiteral("A DESC"), QStringLiteral("A")));
    EXPECT_FALSE(CompareOrderFields(QStringLiteral("B,A"), QStringLiteral("A,B")));
}

TEST(OrderText, NamesThatAreNotWordsAreQuotedForSQL)
{
    EXPECT_EQ(QuoteOrderFields(QStringLiteral("Unit Price DESC,Name,t.Code")), QStringLiteral("\"Unit Price\" DESC,Name,t.Code"));
    EXPECT_EQ(QuoteOrderFields(QStringLiteral("say \"hi\"")), QStringLiteral("\"say \"\"hi\"\"\""));
    EXPECT_EQ(QuoteOrderFields(QStringLiteral("\"Already, quoted\" DESC")), QStringLiteral("\"Already, quoted\" DESC"));
    for (const char *order : {"Unit Price DESC,Name", "say \"hi\"", "Name ASC,Total (net)"})
        EXPECT_EQ(UnquoteOrderFields(QuoteOrderFields(QString::fromLatin1(order))), QString::fromLatin1(order)) << order;
    // A quoted name may hold what would otherwise split or end it.
    EXPECT_EQ(UnquoteOrderFields(QStringLiteral("\"A, DESC\" ASC; b")), QStringLiteral("A, DESC ASC,b"));
}

TEST(OrderText, SplitUnifyAndScan)
{
    QString fields, desc;
    SplitOrderFields(QStringLiteral("Name;City desc, Code ASC"), fields, desc);
    EXPECT_EQ(fields, QStringLiteral("Name;City;Code"));
    EXPECT_EQ(desc, QStringLiteral("City"));
    EXPECT_EQ(UnifyOrderFields(fields, desc, false), QStringLiteral("Name,City DESC,Code"));
    EXPECT_EQ(UnifyOrderFields(QStringLiteral("A;B"), QString(), true), QStringLiteral("A DESC,B DESC"));
    QString s = QStringLiteral("Column1=Name,64,1");
    EXPECT_EQ(ScanStr(s, QLatin1Char('=')), QStringLiteral("Column1"));
    EXPECT_EQ(ScanStr(s, QLatin1Char(',')), QStringLiteral("Name"));
    EXPECT_EQ(s, QStringLiteral("64,1"));
    EXPECT_EQ(ScanStr(s, QLatin1Char(';')), QStringLiteral("64,1"));
    EXPECT_TRUE(s.isEmpty());
    EXPECT_EQ(SemicolonToComma(QStringLiteral("Name;City desc")), QStringLiteral("Name,City desc"));
}
