#include "platform/db/MemTable.h"
#include "platform/sql/SQLFilter.h"
#include "platform/sql/SQLText.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;

TEST(SQLText, SplitOrderBy)
{
    struct Case
    {
        const char *sql, *body, *order;
    };
    const Case cases[] = {
        {"SELECT * FROM t ORDER BY a, b DESC;", "SELECT * FROM t", "a, b DESC"},
        {"SELECT * FROM t", "SELECT * FROM t", ""},
        {"SELECT * FROM (SELECT * FROM u ORDER BY x) q", "SELECT * FROM (SELECT * FROM u ORDER BY x) q", ""},
        {"SELECT 'ORDER BY' AS s FROM t", "SELECT 'ORDER BY' AS s FROM t", ""},
        {"SELECT * FROM t -- ORDER BY a\nWHERE 1=1", "SELECT * FROM t -- ORDER BY a\nWHERE 1=1", ""},
        {"SELECT * FROM t ORDER BY a LIMIT 10", "SELECT * FROM t ORDER BY a LIMIT 10", ""},
        {"select * from reorder order by \"Unit Price\"", "select * from reorder", "\"Unit Price\""},
    };
    for (const Case &c : cases) {
        const auto [body, order] = SplitOrderBy(QString::fromLatin1(c.sql));
        EXPECT_EQ(body, QString::fromLatin1(c.body)) << c.sql;
        EXPECT_EQ(order, QString::fromLatin1(c.order)) << c.sql;
    }
}

TEST(SQLText, FiltersBecomeTextAndValues)
{
    TMemTable t;
    t.FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
    t.FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
    t.FieldDefs().Add(QStringLiteral("Day"), ftDate);
    t.CreateDataSet();
    auto quote = [](const QString &name) { return QLatin1Char('"') + name + QLatin1Char('"'); };
    auto translate = [&](const char *filter, TFilterOptions options, TSQLDialect dialect) {
        FilterExpression e(QString::fromLatin1(filter));
        e.Bind(&t, options);
        return FilterToSQL(e, options, dialect, quote);
    };

    SQLCondition c = translate("Name LIKE '%a_b%' AND NOT Qty IN (1, 2) OR Day IS NULL", {}, TSQLDialect::SQLite);
    EXPECT_EQ(c.text, QStringLiteral("(((\"Name\" GLOB ?) AND (NOT (\"Qty\" IN (?, ?)))) OR (\"Day\" IS NULL))"));
    EXPECT_EQ(c.params, QList<QVariant>({QStringLiteral("*a?b*"), qlonglong(1), qlonglong(2)}));

    c = translate("Name LIKE 'x%' OR Name = 'ab*'", {foCaseInsensitive}, TSQLDialect::PostgreSQL);
    EXPECT_EQ(c.text, QStringLiteral("((\"Name\" ILIKE ? ESCAPE '') OR (\"Name\" ILIKE ? ESCAPE '\\'))"));
    EXPECT_EQ(c.params, QList<QVariant>({QStringLiteral("x%"), QStringLiteral("ab%")}));

    c = translate("Day >= '2024-01-31' AND Name = 'O''Hara'", {}, TSQLDialect::SQLite);
    EXPECT_EQ(c.text, QStringLiteral("((\"Day\" >= ?) AND (\"Name\" = ?))"));
    EXPECT_EQ(c.params, QList<QVariant>({QStringLiteral("2024-01-31"), QStringLiteral("O'Hara")}));
    c = translate("Day >= '2024-01-31'", {}, TSQLDialect::PostgreSQL);
    EXPECT_EQ(c.params, QList<QVariant>{QDate(2024, 1, 31)});

    c = translate("Name = 'ab*' AND Name LIKE 'a*[b'", {}, TSQLDialect::SQLite); // GLOB's own signs are literal
    EXPECT_EQ(c.params, QList<QVariant>({QStringLiteral("ab*"), QStringLiteral("a[*][[]b")}));
}
