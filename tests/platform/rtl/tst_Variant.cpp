#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Variant.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <limits>

using namespace qdb;

TEST(Variant, NullAndUnassignedAreDistinctAndEqualNoValue)
{
    const Variant unassigned;
    const Variant null = Variant::Null();
    EXPECT_TRUE(unassigned.IsUnassigned());
    EXPECT_TRUE(null.IsNull());
    EXPECT_NE(unassigned, null);
    EXPECT_EQ(null, Variant::Null());
    for (const Variant &value : {Variant(0), Variant(QString()), Variant(false), Variant(0.0)}) {
        EXPECT_NE(null, value);
        EXPECT_NE(unassigned, value);
        EXPECT_FALSE(null < value);
        EXPECT_FALSE(value < null);
        EXPECT_EQ(VarCompareValue(null, value), VariantRelationship::vrNotEqual);
    }
}

TEST(Variant, CurrencySumsStayExact)
{
    Variant currencySum = Currency();
    double doubleSum = 0;
    for (int i = 0; i < 1000; ++i) {
        currencySum += Variant(Currency::FromDouble(0.1));
        doubleSum += 0.1;
    }
    EXPECT_EQ(currencySum.Type(), VarType::Currency);
    EXPECT_EQ(currencySum.ToCurrency().Raw(), 100 * Currency::Scale);
    EXPECT_NE(doubleSum, 100.0); // what the currency sum avoids
    // Currency with whole numbers stays currency; with a double it becomes a double.
    EXPECT_EQ((Variant(Currency::FromInt(3)) * Variant(2)).Type(), VarType::Currency);
    EXPECT_EQ((Variant(Currency::FromInt(3)) + Variant(0.5)).Type(), VarType::Double);
}

TEST(Variant, DivisionIsRealAndCurrencyAverageRounds)
{
    EXPECT_EQ((Variant(7) / Variant(2)).ToDouble(), 3.5);
    const Variant avg = Variant(Currency::FromInt(10)) / Variant(3);
    EXPECT_EQ(avg.Type(), VarType::Currency);
    EXPECT_EQ(avg.ToCurrency().Raw(), 33333); // 3.3333
    EXPECT_EQ((Variant(Currency::FromInt(-10)) / Variant(3)).ToCurrency().Raw(), -33333);
    EXPECT_THROW(Variant(1) / Variant(0), EVariantError);
    EXPECT_THROW(Variant(1.5) / Variant(Currency()), EVariantError);
}

TEST(Variant, NullPropagatesAndUnassignedCountsAsZero)
{
    EXPECT_TRUE((Variant::Null() + Variant(1)).IsNull());
    EXPECT_TRUE((Variant(1) * Variant::Null()).IsNull());
    EXPECT_EQ((Variant() + Variant(5)).ToInt(), 5);
    EXPECT_EQ((Variant() + Variant(QStringLiteral("a"))).ToString(), QStringLiteral("a"));
    EXPECT_TRUE((Variant() + Variant()).IsUnassigned());
}

TEST(Variant, IntegerOverflowWidensToDouble)
{
    const Variant big(std::numeric_limits<qint64>::max());
    const Variant sum = big + Variant(1);
    EXPECT_EQ(sum.Type(), VarType::Double);
    EXPECT_DOUBLE_EQ(sum.ToDouble(), 9223372036854775808.0);
    EXPECT_EQ((Variant(2) + Variant(3)).Type(), VarType::Integer);
}

TEST(Variant, MixedComparisons)
{
    EXPECT_LT(Variant(2), Variant(2.5));
    EXPECT_LT(Variant(Currency::FromDouble(1.25)), Variant(2));
    EXPECT_GT(Variant(QStringLiteral("10")), Variant(9)); // numeric text compares as a number
    EXPECT_EQ(Variant(QStringLiteral("abc")) == Variant(1), false); // and other text as text
    EXPECT_LT(Variant(QStringLiteral("Apple")), Variant(QStringLiteral("apple")));
    EXPECT_EQ(Variant(true), Variant(true));
    EXPECT_LT(Variant::FromDateTime(EncodeDate(2024, 1, 1)), Variant::FromDateTime(EncodeDate(2024, 1, 2)));
}

TEST(Variant, ArraysCompareElementWise)
{
    const Variant a = VarArrayOf({1, QStringLiteral("x")});
    EXPECT_EQ(a, VarArrayOf({1, QStringLiteral("x")}));
    EXPECT_NE(a, VarArrayOf({1, QStringLiteral("y")}));
    EXPECT_NE(a, VarArrayOf({1}));
    EXPECT_NE(VarArrayOf({Variant::Null()}), VarArrayOf({0}));
    EXPECT_EQ(a.ArrayHighBound(), 1);
}

TEST(Variant, ConversionsRaiseOnBadValues)
{
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    EXPECT_THROW(Variant(QStringLiteral("abc")).ToInt(), EVariantError);
    EXPECT_THROW(Variant::Null().ToDouble(), EVariantError);
    EXPECT_THROW(Variant(qint64(1) << 40).ToInt(), EVariantError);
    EXPECT_EQ(Variant(QStringLiteral(" 42 ")).ToInt(), 42);
    EXPECT_EQ(Variant(2.5).ToInt64(), 3);
    EXPECT_EQ(Variant(-2.5).ToInt64(), -3);
    EXPECT_EQ(Variant(QStringLiteral("True")).ToBool(), true);
    EXPECT_EQ(Variant::Null().ToString(), QString());
    EXPECT_EQ(Variant(true).ToString(), QStringLiteral("True"));
    EXPECT_EQ(Variant(Currency::FromDouble(12.5)).ToString(), QStringLiteral("12.5"));
}

TEST(Variant, DateArithmetic)
{
    const Variant day = Variant::FromDateTime(EncodeDate(2024, 2, 28));
    const Variant next = day + Variant(1);
    EXPECT_EQ(next.Type(), VarType::DateTime);
    EXPECT_EQ(next.ToDateTime(), EncodeDate(2024, 2, 29));
    const Variant span = Variant::FromDateTime(EncodeDate(2024, 3, 1)) - day;
    EXPECT_EQ(span.Type(), VarType::Double);
    EXPECT_EQ(span.ToDouble(), 2.0);
}

TEST(Variant, QVariantRoundTrip)
{
    EXPECT_TRUE(Variant::FromQVariant(QVariant()).IsUnassigned());
    EXPECT_TRUE(Variant::FromQVariant(QVariant(QMetaType::fromType<int>())).IsNull());
    EXPECT_EQ(Variant::FromQVariant(QVariant(qulonglong(1) << 63)).Type(), VarType::Double);
    EXPECT_EQ(Variant::FromQVariant(QVariant(QDate(2024, 1, 31))).ToDateTime(), EncodeDate(2024, 1, 31));
    EXPECT_TRUE(Variant::FromQVariant(Variant::Null().ToQVariant()).IsNull());
    const QDateTime stamp(QDate(2024, 1, 31), QTime(13, 45, 10, 250));
    EXPECT_EQ(Variant::FromDateTime(QDateTimeToDateTime(stamp)).ToQVariant().toDateTime(), stamp);
}
