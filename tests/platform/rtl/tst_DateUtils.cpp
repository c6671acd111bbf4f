#include "platform/rtl/DateUtils.h"
#include "platform/rtl/Exceptions.h"

#include <gtest/gtest.h>

using namespace qdb;

namespace {

TDateTime at(int y, int m, int d, int h = 0, int n = 0, int s = 0, int z = 0)
{
    return EncodeDateTime(y, m, d, h, n, s, z);
}

// Compares to the millisecond, the resolution of the helpers.
::testing::AssertionResult SameMoment(TDateTime a, TDateTime b)
{
    if (QDateTime(DateTimeToQDateTime(a)) == DateTimeToQDateTime(b))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << DateTimeToQDateTime(a).toString(Qt::ISODateWithMs).toStdString()
                                         << " vs " << DateTimeToQDateTime(b).toString(Qt::ISODateWithMs).toStdString();
}

} // namespace

TEST(DateTime, SerialNumbers)
{
    EXPECT_EQ(EncodeDate(1899, 12, 30), 0.0);
    EXPECT_EQ(EncodeDate(2000, 1, 1), 36526.0);
    EXPECT_EQ(EncodeDate(1000, 1, 1), -328716.0);
    EXPECT_EQ(EncodeDate(8999, 12, 31), 2593223.0);
    EXPECT_THROW(EncodeDate(2023, 2, 29), EConvertError);
    EXPECT_THROW(EncodeTime(24, 0, 0, 0), EConvertError);
}

TEST(DateTime, DaysBeforeTheEpochCountTimeForwards)
{
    const TDateTime dt = at(1899, 12, 29, 6);
    EXPECT_EQ(dt, -1.25);
    int y, m, d, h, n, s, z;
    DecodeDateTime(dt, y, m, d, h, n, s, z);
    EXPECT_EQ(QDate(y, m, d), QDate(1899, 12, 29));
    EXPECT_EQ(h, 6);
    EXPECT_EQ(DateOf(dt), -1.0);
    EXPECT_TRUE(SameMoment(IncHour(dt, 20), at(1899, 12, 30, 2)));
}

TEST(DateTime, DayOfWeekStartsOnSunday)
{
    EXPECT_EQ(DayOfWeek(EncodeDate(2024, 3, 3)), 1); // a Sunday
    EXPECT_EQ(DayOfWeek(EncodeDate(2024, 3, 9)), 7);
    EXPECT_EQ(DayOfTheWeek(EncodeDate(2024, 3, 3)), 7); // ISO: Monday = 1
}

TEST(DateUtils, MonthStepsClampToTheMonthEnd)
{
    EXPECT_TRUE(SameMoment(IncMonth(at(2024, 1, 31, 10, 30)), at(2024, 2, 29, 10, 30)));
    EXPECT_TRUE(SameMoment(IncMonth(at(2023, 1, 31)), at(2023, 2, 28)));
    EXPECT_TRUE(SameMoment(IncMonth(at(2024, 3, 31), -1), at(2024, 2, 29)));
    EXPECT_TRUE(SameMoment(IncMonth(at(2024, 1, 15), -13), at(2022, 12, 15)));
    EXPECT_TRUE(SameMoment(IncYear(at(2024, 2, 29)), at(2025, 2, 28)));
    EXPECT_TRUE(SameMoment(IncYear(at(2020, 6, 1), -999), at(1021, 6, 1)));
}

TEST(DateUtils, TimeStepsDoNotDrift)
{
    TDateTime t = at(2024, 5, 1);
    for (int i = 0; i < 24 * 60; ++i)
        t = IncMinute(t);
    EXPECT_EQ(t, at(2024, 5, 2));
    EXPECT_TRUE(SameMoment(IncMinute(at(2024, 12, 31, 23, 55), 10), at(2025, 1, 1, 0, 5)));
    EXPECT_TRUE(SameMoment(IncDay(at(2024, 2, 28, 12), 2), at(2024, 3, 1, 12)));
}

TEST(DateUtils, MinuteSlots)
{
    const TDateTime t = at(2024, 5, 1, 12, 37, 45, 500);
    EXPECT_TRUE(SameMoment(StartOfTheMinute(t), at(2024, 5, 1, 12, 37)));
    EXPECT_TRUE(SameMoment(EndOfTheMinute(t), at(2024, 5, 1, 12, 37, 59, 999)));
    EXPECT_TRUE(SameMoment(StartOfThe10Mins(t), at(2024, 5, 1, 12, 30)));
    EXPECT_TRUE(SameMoment(StartOfThe15Mins(t), at(2024, 5, 1, 12, 30)));
    EXPECT_TRUE(SameMoment(StartOfThe20Mins(t), at(2024, 5, 1, 12, 20)));
    EXPECT_TRUE(SameMoment(StartOfThe30Mins(t), at(2024, 5, 1, 12, 30)));
    EXPECT_TRUE(SameMoment(StartOfTheHour(t), at(2024, 5, 1, 12)));
    EXPECT_TRUE(SameMoment(EndOfTheHour(t), at(2024, 5, 1, 12, 59, 59, 999)));
}

TEST(DateUtils, UnitBoundaries)
{
    struct Case
    {
        const char *name;
        TDateTime (*fn)(TDateTime);
        TDateTime input;
        TDateTime expected;
    };
    const Case cases[] = {
        {"week starts on Monday", StartOfTheWeek, at(2024, 3, 3, 15), at(2024, 2, 26)},
        {"week ends on Sunday", EndOfTheWeek, at(2024, 2, 26), at(2024, 3, 3, 23, 59, 59, 999)},
        {"day end", EndOfTheDay, at(2024, 3, 3, 15), at(2024, 3, 3, 23, 59, 59, 999)},
        {"leap February end", EndOfTheMonth, at(2024, 2, 10), at(2024, 2, 29, 23, 59, 59, 999)},
        {"second quarter start", StartOfTheQuarter, at(2024, 5, 15), at(2024, 4, 1)},
        {"second quarter end", EndOfTheQuarter, at(2024, 5, 15), at(2024, 6, 30, 23, 59, 59, 999)},
        {"fourth quarter end", EndOfTheQuarter, at(2024, 10, 1), at(2024, 12, 31, 23, 59, 59, 999)},
        {"first semester", StartOfTheSemester, at(2024, 6, 30), at(2024, 1, 1)},
        {"second semester", StartOfTheSemester, at(2024, 7, 1), at(2024, 7, 1)},
        {"first semester end", EndOfTheSemester, at(2024, 2, 10), at(2024, 6, 30, 23, 59, 59, 999)},
        {"year end", EndOfTheYear, at(2024, 2, 10), at(2024, 12, 31, 23, 59, 59, 999)},
        {"decade start", StartOfTheDecade, at(2029, 12, 31, 23), at(2020, 1, 1)},
        {"decade end", EndOfTheDecade, at(2020, 1, 1), at(2029, 12, 31, 23, 59, 59, 999)},
        {"century start", StartOfTheCentury, at(2099, 5, 5), at(2000, 1, 1)},
        {"century end", EndOfTheCentury, at(2000, 1, 1), at(2099, 12, 31, 23, 59, 59, 999)},
    };
    for (const Case &c : cases)
        EXPECT_TRUE(SameMoment(c.fn(c.input), c.expected)) << c.name;
}

TEST(DateUtils, IsoWeeks)
{
    EXPECT_EQ(WeekOf(EncodeDate(2020, 12, 31)), 53);
    EXPECT_EQ(WeekOf(EncodeDate(2021, 1, 3)), 53); // still the last week of 2020
    EXPECT_EQ(WeekOf(EncodeDate(2021, 1, 4)), 1);
    EXPECT_EQ(WeekOf(EncodeDate(2024, 12, 30)), 1); // already the first week of 2025
    int year = 0;
    EXPECT_EQ(WeekOfTheYear(EncodeDate(2024, 12, 30), year), 1);
    EXPECT_EQ(year, 2025);
}

TEST(DateUtils, Recode)
{
    EXPECT_TRUE(SameMoment(RecodeHour(at(2024, 5, 1, 12, 0), 7), at(2024, 5, 1, 7)));
    EXPECT_THROW(RecodeHour(at(2024, 5, 1), 24), EConvertError);
    EXPECT_TRUE(SameMoment(RecodeYear(at(2024, 2, 29), 2023), at(2023, 2, 28)));
}
