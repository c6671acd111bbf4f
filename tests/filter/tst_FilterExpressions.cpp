// A column's condition as the filter form writes it: templates, quotes, list delimiters,
// decimal separators and the clauses each dialect is offered.

#include "FilterTestTables.h"
#include "TestSupport.h"

#include "filter/QDBFilter.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/DateTime.h"
#include "platform/rtl/FormatDateTime.h"

#include <gtest/gtest.h>

#include <memory>

using namespace qdb;
using namespace qdb::test;

namespace {

class FilterExpressions : public testing::Test
{
protected:
    // A grid over a table of the given class with the fields Name, Price, Unit Price, Qty,
    // Day and Select.
    template <typename Table = TMemTable>
    void use()
    {
        RegisterDBTypes();
        grid.SetDataSource(nullptr);
        table = std::make_unique<Table>();
        table->FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
        table->FieldDefs().Add(QStringLiteral("Price"), ftFloat);
        table->FieldDefs().Add(QStringLiteral("Unit Price"), ftInteger);
        table->FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
        table->FieldDefs().Add(QStringLiteral("Day"), ftDate);
        table->FieldDefs().Add(QStringLiteral("Select"), ftInteger);
        table->CreateDataSet();
        source.SetDataSet(table.get());
        grid.SetDataSource(&source);
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    QString build(const char *field, TQFilterCondition a, TQFilterCondition b = {}, bool andOn = true, bool notOn = false)
    {
        return TQDBColumnFilter(column(field)).BuildFilter(a, b, andOn, notOn);
    }

    TDataSource source;
    TQDBGrid grid;
    std::unique_ptr<TMemTable> table;
};

} // namespace

TEST_F(FilterExpressions, TheFormsExamplesReadAsWritten)
{
    use();
    EXPECT_EQ(build("Name", {fcContains, QStringLiteral("abc")}), QStringLiteral("Name LIKE '%abc%'"));
    EXPECT_EQ(build("Name", {fcStartsFrom, QStringLiteral("ab")}, {fcEndsWith, QStringLiteral("z")}, false),
              QStringLiteral("Name LIKE 'ab%' OR Name LIKE '%z'"));
    EXPECT_EQ(build("Name", {fcIsOnTheList, QStringLiteral("a, b ,c")}), QStringLiteral("Name IN ('a','b','c')"));
    EXPECT_EQ(build("Price", {fcIsGreaterThen, QStringLiteral("1.5")}, {fcIsLessThen, QStringLiteral("9")}),
              QStringLiteral("Price > 1.5 AND Price < 9"));
    EXPECT_EQ(build("Unit Price", {fcIsEqual, QStringLiteral("3")}), QStringLiteral("[Unit Price] = 3"));
    // A reserved word without a blank stays as it is.
    EXPECT_EQ(build("Select", {fcIsNotEqual, QStringLiteral("3")}), QStringLiteral("Select <> 3"));
    EXPECT_EQ(build("Name", {fcDoesNotContain, QStringLiteral("x_y")}), QStringLiteral("NOT Name LIKE '%x_y%'"));
    EXPECT_EQ(build("Day", {fcIsLessThenOrEqual, QStringLiteral("1/31/2024")}), QStringLiteral("Day <= '1/31/2024'"));
    EXPECT_EQ(build("Qty", {fcIsNotOnTheList, QStringLiteral("1, 2,3")}), QStringLiteral("NOT Qty IN (1,2,3)"));
    EXPECT_EQ(build("Name", {fcIsEmpty, QString()}), QStringLiteral("Name IS NULL"));

    use<TADOTable>();
    EXPECT_EQ(build("Name", {fcIsEmpty, QString()}), QStringLiteral("Name = NULL"));
    EXPECT_EQ(build("Name", {fcIsNotEmpty, QStringLiteral("ignored")}), QStringLiteral("Name <> NULL"));
}

TEST_F(FilterExpressions, EmptyValuesDropTheirConditionUnlessTheClauseNeedsNone)
{
    use();
    EXPECT_EQ(build("Name", {fcIsEqual, QStringLiteral("  ")}), QString());
    EXPECT_EQ(build("Name", {fcIsEqual, QString()}, {fcIsEmpty, QStringLiteral("x")}), QStringLiteral("Name IS NULL"));
    // Only the second condition: no joining word in front of it.
    EXPECT_EQ(build("Qty", {fcNoFilter, QStringLiteral("5")}, {fcIsGreaterThen, QStringLiteral(" 5 ")}),
              QStringLiteral("Qty > 5"));
    EXPECT_EQ(build("Qty", {fcIsGreaterThen, QStringLiteral("1")}, {}, true, true), QStringLiteral("NOT (Qty > 1)"));
    EXPECT_EQ(build("Qty", {}, {}, true, true), QString());
}

TEST_F(FilterExpressions, NotWithNothingLeftKeepsTheTickedValues)
{
    use();
    TQColumn *name = column("Name");
    name->GetFilterList()->Add(QStringLiteral("a"));
    TQDBColumnFilter(name).StoreFilter({fcIsEqual, QString()}, {}, true, true);
    EXPECT_EQ(name->GetFilterText(), QString());
    EXPECT_EQ(name->GetFilterList()->Count(), 1);
    TQDBColumnFilter(name).StoreFilter({fcContains, QStringLiteral("b")}, {}, true, false);
    EXPECT_EQ(name->GetFilterText(), QStringLiteral("Name LIKE '%b%'"));
    EXPECT_EQ(name->GetFilterList()->Count(), 0) << "a column filters by conditions or by ticked values";

    // A quote inside the value is left as typed: the data set refuses the expression, and the
    // column keeps what it had, ticked values included.
    name->SetFilterText(QString());
    name->GetFilterList()->Add(QStringLiteral("a"));
    ASSERT_EQ(name->GetFilterText(), QString());
    EXPECT_THROW(TQDBColumnFilter(name).StoreFilter({fcIsEqual, QStringLiteral("it's")}, {}, true, false), EDatabaseError);
    EXPECT_EQ(name->GetFilterText(), QString());
    EXPECT_EQ(name->GetFilterList()->ToStringList(), QStringList{QStringLiteral("a")});
    EXPECT_EQ(table->Filter(), QString());
}

TEST_F(FilterExpressions, FloatListsFollowTheLocaleAndTheDialect)
{
    TFormatSettings comma = FormatSettings();
    comma.DecimalSeparator = QLatin1Char(',');
    const ScopedFormatSettings locale(comma);

    use<TClientDataSet>();
    EXPECT_EQ(TQDBColumnFilter(column("Price")).GetDelimiterChar(), QLatin1Char(' '));
    EXPECT_EQ(build("Price", {fcIsOnTheList, QStringLiteral("1,5 2,5")}), QStringLiteral("Price IN (1,5, 2,5)"));
    EXPECT_EQ(build("Price", {fcIsOnTheList, QStringLiteral("1,5 ,  2,5")}), QStringLiteral("Price IN (1,5, 2,5)"));

    use<TADOTable>();
    EXPECT_EQ(build("Price", {fcIsOnTheList, QStringLiteral("1,5 2,5")}), QStringLiteral("Price IN (1.5,2.5)"));
    EXPECT_EQ(build("Price", {fcIsGreaterThen, QStringLiteral("1,5")}), QStringLiteral("Price > 1.5"));

    // The in-memory table reads its own dialect: numbers with a point, whatever the locale.
    use();
    EXPECT_EQ(build("Price", {fcIsGreaterThen, QStringLiteral("1,5")}), QStringLiteral("Price > 1.5"));
    grid.GetFilterGrid()->SetDecimalSeparator(true);
    EXPECT_EQ(TQDBColumnFilter(column("Price")).GetDecimalSeparator(), QLatin1Char('.'));
}

TEST_F(FilterExpressions, DialectsAreKnownByTheirExactClassName)
{
    use<TADOTable>();
    TQDBGridFilterClauses ado = TQDBColumnFilter(column("Name")).GetFilterClauses();
    EXPECT_FALSE(ado.Contains(fcEndsWith));
    EXPECT_FALSE(ado.Contains(fcIsOnTheList));
    EXPECT_TRUE(ado.Contains(fcContains));
    EXPECT_TRUE(ado.Contains(fcIsEmpty));

    use<TMyADOQuery>();
    EXPECT_EQ(TQDBColumnFilter(column("Name")).GetFilterClauses(), AllFilterClauses());
    EXPECT_EQ(build("Name", {fcIsEmpty, QString()}), QStringLiteral("Name IS NULL"));

    use<TQuery>();
    const TQDBGridFilterClauses bde = TQDBColumnFilter(column("Name")).GetFilterClauses();
    EXPECT_FALSE(bde.Contains(fcContains));
    EXPECT_FALSE(bde.Contains(fcDoesNotEndWith));
    EXPECT_TRUE(bde.Contains(fcIsEqual));

    grid.GetFilterGrid()->SwitchClauses({fcIsEqual, fcIsEmpty}, false);
    EXPECT_FALSE(TQDBColumnFilter(column("Name")).GetFilterClauses().Contains(fcIsEqual));
    EXPECT_TRUE(grid.GetFilterGrid()->IsClausesStored());
}

TEST_F(FilterExpressions, CaptionsAndTemplatesKeepTheirSpelling)
{
    EXPECT_EQ(FilterConsts::ClauseCaption(fcIsGreaterThenOrEqual), QStringLiteral("is greater then or equal"));
    EXPECT_EQ(FilterConsts::ClauseCaption(fcIsLessThen), QStringLiteral("is less then"));
    EXPECT_EQ(FilterConsts::ClauseCaption(fcNoFilter), QString());
    EXPECT_EQ(FilterConsts::ClauseTemplate(fcDoesNotStartFrom), QStringLiteral("NOT %0:s LIKE '%1:s%2:s'"));
    EXPECT_EQ(FilterConsts::ClauseTemplate(fcIsNotEmpty + 2), QStringLiteral("%0:s <> NULL"));
    EXPECT_EQ(QString::fromLatin1(QMetaEnum::fromType<TQDBGridFilterClause>().valueToKey(fcIsLessThenOrEqual)),
              QStringLiteral("fcIsLessThenOrEqual"));
    EXPECT_FALSE(DefaultFilterPeriods().Contains(fpOthers));
    EXPECT_TRUE(DefaultFilterPeriods().Contains(fpDecades));
}


TEST_F(FilterExpressions, PeriodsAreHalfOpenRangesAroundNow)
{
    TFormatSettings fs = FormatSettings();
    fs.ShortDateFormat = QStringLiteral("m/d/yyyy");
    fs.DateSeparator = QLatin1Char('/');
    fs.ShortTimeFormat = QStringLiteral("hh:nn");
    fs.TimeSeparator = QLatin1Char(':');
    const ScopedFormatSettings locale(fs);
    const TDateTime now = EncodeDate(2024, 5, 15) + (14 * 3600 + 37 * 60 + 42) / 86400.0;
    auto text = [](TDateTime dt) { return FormatDateTime(QStringLiteral("m/d/yyyy hh:nn"), dt); };
    auto range = [&](const TQFilterPeriodItem &item) { return item.Caption + QLatin1Char(' ') + text(item.Start) + QStringLiteral(" - ") + text(item.End); };

    const QList<TQFilterPeriodItem> tens = FilterPeriodItems(fp10Mins, now);
    ASSERT_EQ(tens.size(), 5);
    EXPECT_EQ(range(tens[0]), QStringLiteral("Past 10 mins 5/15/2024 14:20 - 5/15/2024 14:30"));
    EXPECT_EQ(range(tens[1]), QStringLiteral("From start of this 10 mins 5/15/2024 14:30 - 5/15/2024 14:37"));
    EXPECT_EQ(range(tens[3]), QStringLiteral("To the end of this 10 mins 5/15/2024 14:37 - 5/15/2024 14:40"));
    EXPECT_EQ(range(tens[4]), QStringLiteral("Next 10 mins 5/15/2024 14:40 - 5/15/2024 14:50"));
    EXPECT_EQ(range(FilterPeriodItems(fpDay, now)[2]), QStringLiteral("Today 5/15/2024 00:00 - 5/16/2024 00:00"));
    EXPECT_EQ(range(FilterPeriodItems(fpQuarter, now)[0]), QStringLiteral("Past quarter 1/1/2024 00:00 - 4/1/2024 00:00"));
    EXPECT_EQ(range(FilterPeriodItems(fpQuarters, now)[3]), QStringLiteral("Fourth quarter 10/1/2024 00:00 - 1/1/2025 00:00"));
    EXPECT_EQ(range(FilterPeriodItems(fpDecade, now)[4]), QStringLiteral("Next decade 1/1/2030 00:00 - 1/1/2040 00:00"));
    EXPECT_EQ(FilterPeriodItems(fpHours, now).size(), 24);
    EXPECT_EQ(FilterPeriodCaption(fp20Mins), QStringLiteral("20 minutes"));

    use();
    TQFilterCondition from, to;
    FilterPeriodConditions(FilterPeriodItems(fpDay, now)[2], ftDate, from, to);
    EXPECT_EQ(build("Day", from, to), QStringLiteral("Day >= '5/15/2024' AND Day < '5/16/2024'"));
    // A time range that ends at midnight has no upper bound.
    FilterPeriodConditions(FilterPeriodItems(fpHours, now)[23], ftTime, from, to);
    EXPECT_EQ(from.Value, QStringLiteral("23:00"));
    EXPECT_EQ(to.Clause, fcNoFilter);
}
