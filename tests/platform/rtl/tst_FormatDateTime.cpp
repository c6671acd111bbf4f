#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatDateTime.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;

TEST(FormatDateTime, Patterns)
{
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    const TDateTime t = EncodeDateTime(2024, 1, 31, 23, 59, 58, 123);
    EXPECT_EQ(FormatDateTime("yyyymmddhhnnsszzz", t), QStringLiteral("20240131235958123"));
    EXPECT_EQ(FormatDateTime("MMMM yyyy", t), QStringLiteral("January 2024"));
    EXPECT_EQ(FormatDateTime("yyyy", t), QStringLiteral("2024"));
    EXPECT_EQ(FormatDateTime("hh:mm", t), QStringLiteral("23:59")); // minutes after an hour
    EXPECT_EQ(FormatDateTime("mm/dd/yy", t), QStringLiteral("01/31/24"));
    EXPECT_EQ(FormatDateTime("ddd d mmm", t), QStringLiteral("Wed 31 Jan"));
    EXPECT_EQ(FormatDateTime("h:nn am/pm", t), QStringLiteral("11:59 pm"));
    EXPECT_EQ(FormatDateTime("'day' d \"of\" m", t), QStringLiteral("day 31 of 1"));
    EXPECT_EQ(FormatDateTime("z", EncodeTime(0, 0, 0, 7)), QStringLiteral("7"));
}

TEST(FormatDateTime, LocaleFormats)
{
    ScopedFormatSettings fs(GermanStyleSettings());
    const TDateTime day = EncodeDate(2024, 1, 31);
    EXPECT_EQ(DateToStr(day), QStringLiteral("31.01.2024")); // "/" is the date separator
    EXPECT_EQ(DateTimeToStr(day), QStringLiteral("31.01.2024")); // midnight shows no time
    EXPECT_EQ(DateTimeToStr(day + EncodeTime(8, 5, 0, 0)), QStringLiteral("31.01.2024 08:05:00"));
    EXPECT_EQ(FormatDateTime("t", EncodeTime(8, 5, 0, 0)), QStringLiteral("08:05"));
}

TEST(StrToDateTime, ParsesInTheLocaleOrder)
{
    ScopedFormatSettings fs(GermanStyleSettings());
    EXPECT_EQ(StrToDate(QStringLiteral("31.01.2024")), EncodeDate(2024, 1, 31));
    EXPECT_EQ(StrToDate(QStringLiteral("2024-01-31")), EncodeDate(2024, 1, 31));
    EXPECT_EQ(StrToDateTime(QStringLiteral("31.01.2024 13:45:10")), EncodeDateTime(2024, 1, 31, 13, 45, 10, 0));
    EXPECT_EQ(StrToTime(QStringLiteral("13:45")), EncodeTime(13, 45, 0, 0));
    EXPECT_THROW(StrToDate(QStringLiteral("31.02.2024")), EConvertError);
    EXPECT_THROW(StrToDate(QStringLiteral("01/31/2024")), EConvertError);
    EXPECT_THROW(StrToDateTime(QStringLiteral("31.01.2024 25:00")), EConvertError);
    TDateTime v;
    EXPECT_TRUE(TryStrToDate(QStringLiteral("1.2.24"), v));
    EXPECT_EQ(v, EncodeDate(2024, 2, 1));
}

TEST(StrToDateTime, TwelveHourTimes)
{
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    EXPECT_EQ(StrToTime(QStringLiteral("1:05 PM")), EncodeTime(13, 5, 0, 0));
    EXPECT_EQ(StrToTime(QStringLiteral("12:00 am")), 0.0);
    EXPECT_EQ(StrToDateTime(QStringLiteral("1/31/2024 12:30:15.250 PM")), EncodeDateTime(2024, 1, 31, 12, 30, 15, 250));
    EXPECT_THROW(StrToTime(QStringLiteral("13:00 PM")), EConvertError);
}

TEST(FormatSettings, QtPatternsBecomeFormatLetters)
{
    EXPECT_EQ(QtPatternToFormat(QStringLiteral("dd.MM.yyyy HH:mm:ss")), QStringLiteral("dd.mm.yyyy hh:nn:ss"));
    EXPECT_EQ(QtPatternToFormat(QStringLiteral("h:mm AP")), QStringLiteral("h:nn AMPM"));
    const TFormatSettings fr = TFormatSettings::FromLocale(QLocale(QLocale::French, QLocale::France));
    EXPECT_EQ(fr.DecimalSeparator, QLatin1Char(','));
    EXPECT_EQ(fr.DateSeparator, QLatin1Char('/'));
    EXPECT_EQ(fr.LongMonthNames[0], QStringLiteral("janvier"));
}
