#include "DbTestSupport.h"

#include "platform/db/FilterExpression.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Format.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

QStringList passingOnce(const QString &filter, TFilterOptions options, bool walked)
{
    auto t = MakeOrders(20);
    t->SetFilterOptions(options);
    t->SetFilter(filter);
    if (walked) // a record handler must see each record, so the expression is evaluated on it
        t->SetOnFilterRecord([](TDataSet *, bool &) {});
    t->SetFiltered(true);
    QStringList out;
    for (t->First(); !t->Eof(); t->Next())
        out << t->FieldByName(QStringLiteral("Qty"))->AsString();
    return out;
}

// The Qty values of the records a filter lets through (20 orders). The table looks at its
// columns itself unless a record handler is assigned: both ways must let the same through.
QStringList passing(const QString &filter, TFilterOptions options = {})
{
    const QStringList inColumns = passingOnce(filter, options, false);
    EXPECT_EQ(inColumns, passingOnce(filter, options, true)) << filter.toStdString();
    return inColumns;
}

} // namespace

TEST(FilterExpression, TemplatesOfTheFilterForm)
{
    struct Case
    {
        const char *filter;
        QStringList expected;
    };
    const Case cases[] = {
        {"Name LIKE '%1%'", {"1", "11", "12", "13", "14", "16", "17", "18", "19"}},
        {"NOT Name LIKE '%1%'", {"2", "3", "4", "6", "7", "8", "9"}}, // NULL names pass neither
        {"Name LIKE 'r1_'", {"11", "12", "13", "14", "16", "17", "18", "19"}},
        {"Name LIKE '%9'", {"9", "19"}},
        {"Name IN ('r1','r3','zz')", {"1", "3"}},
        {"NOT Name IN ('r1','r3')", {"2", "4", "6", "7", "8", "9", "11", "12", "13", "14", "16", "17", "18", "19"}},
        {"[Unit Price] >= 4.5", {"18", "19", "20"}},
        {"[Unit Price] > 1.5 AND [Unit Price] < 2", {"7"}},
        {"Name IS NULL", {"5", "10", "15", "20"}},
        {"Name = NULL", {"5", "10", "15", "20"}},
        {"Name <> NULL AND Qty <= 3", {"1", "2", "3"}},
        {"Name IS NOT NULL AND Qty < 3", {"1", "2"}},
        {"Qty IN (1, 2, 20)", {"1", "2", "20"}},
        {"(Qty < 3 OR Qty > 18) AND Paid", {"2", "20"}},
        {"NOT (Qty > 2)", {"1", "2"}},
        {"OrderDate >= '2024-01-19'", {"18", "19", "20"}},
        {"OrderDate = '01/04/2024'", {"3"}},
        {"Qty = -1 OR Qty <> Qty", {}},
        {"Name = 'r1*'", {"1", "11", "12", "13", "14", "16", "17", "18", "19"}},
        {"Qty > 19.5 OR [Unit Price] = 0.5", {"2", "20"}},
        {"Qty >= 19 AND NOT Paid", {"19"}},
        {"Name > 'r8' AND Name < 'r9'", {}},
        {"Name >= 'r8'", {"8", "9"}},
        {"Qty LIKE '1_'", {"10", "11", "12", "13", "14", "15", "16", "17", "18", "19"}},
        {"OrderDate < '2024-01-03' OR Name IN ('r4', 'r40')", {"1", "4"}},
    };
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    for (const Case &c : cases)
        EXPECT_EQ(passing(QString::fromLatin1(c.filter)), c.expected) << c.filter;
}

TEST(FilterExpression, BuiltByTheTemplates)
{
    // The expressions the filter form writes, through Format as it does.
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    EXPECT_EQ(passing(Format("%0:s LIKE '%2:s%1:s%2:s'", {QStringLiteral("Name"), QStringLiteral("1"), QStringLiteral("%")})).size(), 9);
    EXPECT_EQ(passing(Format("%0:s IN (%1:s)", {QStringLiteral("Name"), QStringLiteral("'r1','r2'")})),
              QStringList({"1", "2"}));
}

TEST(FilterExpression, OptionsChangeComparison)
{
    EXPECT_TRUE(passing(QStringLiteral("Name = 'R2'")).isEmpty());
    EXPECT_EQ(passing(QStringLiteral("Name = 'R2'"), {foCaseInsensitive}), QStringList{"2"});
    EXPECT_EQ(passing(QStringLiteral("Name LIKE 'R2%'"), {foCaseInsensitive}), QStringList{"2"});
    EXPECT_TRUE(passing(QStringLiteral("Name = 'r1*'"), {foNoPartialCompare}).isEmpty());
}

TEST(FilterExpression, DatesInTheShortFormat)
{
    ScopedFormatSettings fs(GermanStyleSettings());
    EXPECT_EQ(passing(QStringLiteral("OrderDate < '04.01.2024'")), QStringList({"1", "2"}));
}

TEST(FilterExpression, ErrorsNameThePlace)
{
    const char *bad[] = {"Name LIKE", "Qty > ", "(Qty > 1", "Qty >> 1", "Name = 'open", "Qty IN 1, 2",
                         "Qty 1", "[Name", "Qty > 1 Name", "; DROP TABLE x"};
    for (const char *text : bad)
        EXPECT_THROW(FilterExpression(QString::fromLatin1(text)), EDatabaseError) << text;
    try {
        FilterExpression(QStringLiteral("Qty > 1 AND"));
        FAIL();
    } catch (const EDatabaseError &e) {
        EXPECT_EQ(e.Message(), QStringLiteral("Filter expression: expected a field name or a value at position 12 in \"Qty > 1 AND\""));
    }
}

TEST(FilterExpression, LongListsPassAndDeepNestingIsRefused)
{
    // Thousands of terms in a row are a flat list, walked without recursion.
    QStringList terms;
    for (int i = 0; i < 20000; ++i)
        terms << QStringLiteral("Qty = %1").arg(i % 2 == 0 ? 3 : 100000 + i);
    EXPECT_EQ(passing(terms.join(QStringLiteral(" OR "))), QStringList({"3"}));
    EXPECT_EQ(passing(QStringLiteral("Qty > 0 AND ") + terms.join(QStringLiteral(" OR "))), QStringList({"3"}));

    const auto nested = [](int depth, const char *open, const char *close) {
        return QString::fromLatin1(open).repeated(depth) + QStringLiteral("Qty = 3") + QString::fromLatin1(close).repeated(depth);
    };
    EXPECT_EQ(passing(nested(128, "(", ")")), QStringList({"3"}));
    EXPECT_EQ(passing(nested(128, "NOT ", "")), QStringList({"3"}));
    for (const QString &deep : {nested(129, "(", ")"), nested(5000, "(", ")"), nested(100000, "NOT (", ")")}) {
        try {
            FilterExpression expression(deep);
            ADD_FAILURE() << "a filter nested " << deep.size() << " characters deep was taken";
        } catch (const EDatabaseError &e) {
            EXPECT_TRUE(e.Message().startsWith(QStringLiteral("Filter expression: nested more than 128 deep at position")));
        }
    }
}

TEST(FilterExpression, ABadFilterLeavesTheDataSetAsItWas)
{
    auto t = MakeOrders(10);
    t->SetFilter(QStringLiteral("Qty > 5"));
    t->SetFiltered(true);
    EXPECT_THROW(t->SetFilter(QStringLiteral("Qty >")), EDatabaseError);
    EXPECT_THROW(t->SetFilter(QStringLiteral("Nope = 1")), EDatabaseError);
    EXPECT_THROW(t->SetFilter(QStringLiteral("OrderDate = 'someday'")), EDatabaseError);
    EXPECT_EQ(t->Filter(), QStringLiteral("Qty > 5"));
    EXPECT_EQ(t->RecordCount(), 5);
}

TEST(FilterExpression, LikeMatching)
{
    EXPECT_TRUE(LikeMatch(QStringLiteral("abc"), QStringLiteral("a%"), Qt::CaseSensitive));
    EXPECT_TRUE(LikeMatch(QStringLiteral("abc"), QStringLiteral("%b%"), Qt::CaseSensitive));
    EXPECT_TRUE(LikeMatch(QStringLiteral("abc"), QStringLiteral("_b_"), Qt::CaseSensitive));
    EXPECT_TRUE(LikeMatch(QStringLiteral("aXbXc"), QStringLiteral("a%b%c"), Qt::CaseSensitive));
    EXPECT_TRUE(LikeMatch(QString(), QStringLiteral("%"), Qt::CaseSensitive));
    EXPECT_FALSE(LikeMatch(QStringLiteral("abc"), QStringLiteral("a_"), Qt::CaseSensitive));
    EXPECT_FALSE(LikeMatch(QStringLiteral("ABC"), QStringLiteral("a%"), Qt::CaseSensitive));
    EXPECT_TRUE(LikeMatch(QStringLiteral("ÄBC"), QStringLiteral("äb%"), Qt::CaseInsensitive));
}
