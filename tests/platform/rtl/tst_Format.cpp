#include "platform/rtl/Conversions.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Format.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;

namespace {

struct FormatCase
{
    const char *name;
    const char *format;
    QList<Variant> args;
    const char *expected;
};

} // namespace

TEST(Format, Specifiers)
{
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    const FormatCase cases[] = {
        {"decimal", "Columns=%d", {12}, "Columns=12"},
        {"width", "[%5d]", {42}, "[   42]"},
        {"left", "[%-5d]", {42}, "[42   ]"},
        {"precision pads with zeros after the sign", "%.3d", {-5}, "-005"},
        {"hex is upper case", "%x", {255}, "FF"},
        {"fixed-width hex", "%.8x", {255}, "000000FF"},
        {"negative 32-bit hex", "%.8x", {-1}, "FFFFFFFF"},
        {"64-bit hex", "%.16x", {qint64(0x123456789A)}, "000000123456789A"},
        {"negative 64-bit hex", "%.16x", {qint64(-0x100000000LL)}, "FFFFFFFF00000000"},
        {"wide fixed", "%31.15f", {1.5}, "              1.500000000000000"},
        {"fixed default", "%f", {2.0 / 3}, "0.67"},
        {"string precision truncates", "%.3s", {QStringLiteral("abcdef")}, "abc"},
        {"percent", "100%%", {}, "100%"},
        {"star width", "[%*d]", {4, 7}, "[   7]"},
        {"general", "%g", {0.5}, "0.5"},
        {"scientific", "%e", {1.5}, "1.50000000000000E+000"},
        {"thousands", "%n", {1234567.891}, "1,234,567.89"},
        {"indexed", "%0:s LIKE '%2:s%1:s%2:s'", {QStringLiteral("Name"), QStringLiteral("ab"), QStringLiteral("%")},
         "Name LIKE '%ab%'"},
        {"index then next", "%1:s %s %0:s", {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}, "b c a"},
        {"index repeated", "%0:s = %0:s", {QStringLiteral("x")}, "x = x"},
        {"column line", "Column%d=%s,%d,%d,%d,%d", {1, QStringLiteral("Name"), 120, 1, 0, 1}, "Column1=Name,120,1,0,1"},
    };
    for (const FormatCase &c : cases)
        EXPECT_EQ(Format(c.format, c.args), QString::fromUtf8(c.expected)) << c.name;
}

TEST(Format, BadFormatsRaise)
{
    EXPECT_THROW(Format("%d %d", {1}), EConvertError);
    EXPECT_THROW(Format("%d", {QStringLiteral("x")}), EConvertError);
    EXPECT_THROW(Format("%x", {1.5}), EConvertError);
    EXPECT_THROW(Format("%3:s", {QStringLiteral("a")}), EConvertError);
    EXPECT_THROW(Format("%", {1}), EConvertError);
    EXPECT_THROW(Format("%q", {1}), EConvertError);
    // Found by fuzzing: a "*" fed text, and numbers that would overflow or ask for gigabytes.
    EXPECT_THROW(Format("%*.*f", {-7.5, QStringLiteral("x"), 1.0}), EConvertError);
    EXPECT_THROW(Format("%*:d", {QStringLiteral("x"), 1}), EConvertError);
    EXPECT_THROW(Format("%99999999999d", {1}), EConvertError);
    EXPECT_THROW(Format("%.2147483647f", {1.0}), EConvertError);
    EXPECT_THROW(Format("%*s", {1 << 30, QStringLiteral("x")}), EConvertError);
    EXPECT_EQ(Format("%*d|%-*d", {4, 7, 3, 5}), QStringLiteral("   7|5  "));
}

TEST(Format, FloatsUseTheDecimalSeparator)
{
    const TFormatSettings german = GermanStyleSettings();
    EXPECT_EQ(Format(QStringLiteral("%31.15f"), {-2.25}, german), QStringLiteral("             -2,250000000000000"));
    EXPECT_EQ(Format(QStringLiteral("%.2n"), {1234.5}, german), QStringLiteral("1.234,50"));
    EXPECT_EQ(FloatToStr(-1.5, german), QStringLiteral("-1,5"));
}

TEST(FloatToStr, GeneralFormatWith15Digits)
{
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    EXPECT_EQ(FloatToStr(0.1 + 0.2), QStringLiteral("0.3"));
    EXPECT_EQ(FloatToStr(1.0 / 3), QStringLiteral("0.333333333333333"));
    EXPECT_EQ(FloatToStr(123456789012345.0), QStringLiteral("123456789012345"));
    EXPECT_EQ(FloatToStr(1e15), QStringLiteral("1E15"));
    EXPECT_EQ(FloatToStr(0.0001), QStringLiteral("0.0001"));
    EXPECT_EQ(FloatToStr(0.00001), QStringLiteral("1E-5"));
    EXPECT_EQ(FloatToStr(-1.5e-7), QStringLiteral("-1.5E-7"));
    EXPECT_EQ(FloatToStr(100.0), QStringLiteral("100"));
    EXPECT_EQ(FloatToStr(0.0), QStringLiteral("0"));
}

TEST(Conversions, CommaDecimalSeparator)
{
    ScopedFormatSettings fs(GermanStyleSettings());
    EXPECT_EQ(StrToFloat(QStringLiteral("1,5")), 1.5);
    EXPECT_EQ(StrToFloat(QStringLiteral(" -2,5e3 ")), -2500.0);
    EXPECT_THROW(StrToFloat(QStringLiteral("1.5")), EConvertError);
    EXPECT_THROW(StrToFloat(QStringLiteral("1.000,5")), EConvertError); // no thousand separators
    EXPECT_THROW(StrToFloat(QString()), EConvertError);
    EXPECT_THROW(StrToFloat(QStringLiteral(",")), EConvertError);
    EXPECT_EQ(StrToCurr(QStringLiteral("0,1")).Raw(), 1000);
    try {
        StrToFloat(QStringLiteral("abc"));
        FAIL() << "no exception";
    } catch (const EConvertError &e) {
        EXPECT_EQ(e.Message(), QStringLiteral("'abc' is not a valid floating point value"));
    }
}

TEST(Conversions, Integers)
{
    EXPECT_EQ(StrToInt(QStringLiteral(" 12 ")), 12);
    EXPECT_EQ(StrToInt(QStringLiteral("-7")), -7);
    EXPECT_EQ(StrToInt(QStringLiteral("$FF")), 255);
    EXPECT_EQ(StrToInt64(QStringLiteral("-9223372036854775808")), std::numeric_limits<qint64>::min());
    EXPECT_THROW(StrToInt(QStringLiteral("12a")), EConvertError);
    EXPECT_THROW(StrToInt(QStringLiteral("3000000000")), EConvertError);
    EXPECT_THROW(StrToInt(QStringLiteral("- 1")), EConvertError);
    EXPECT_EQ(StrToIntDef(QStringLiteral("x"), -1), -1);
}

TEST(Conversions, CurrencyTextIsExact)
{
    ScopedFormatSettings fs(TFormatSettings::Invariant());
    EXPECT_EQ(StrToCurr(QStringLiteral("1.23456")).Raw(), 12346);
    EXPECT_EQ(StrToCurr(QStringLiteral("-0.00005")).Raw(), -1);
    EXPECT_EQ(StrToCurr(QStringLiteral("922337203685477")).Raw(), 922337203685477LL * 10000);
    EXPECT_THROW(StrToCurr(QStringLiteral("1e30")), EConvertError);
    EXPECT_EQ(CurrToStr(Currency::FromRaw(-5)), QStringLiteral("-0.0005"));
}
