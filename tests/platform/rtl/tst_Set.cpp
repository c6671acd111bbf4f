#include "TestObjects.h"

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

TEST(Set, OperatorsAndIterationFollowBitPositions)
{
    constexpr TTestOptions a{toFirst, toThird};
    static_assert(a.Bits() == 0b101);
    const TTestOptions b{toThird, toSecond};
    EXPECT_EQ(a + b, TTestOptions({toFirst, toSecond, toThird}));
    EXPECT_EQ(a - b, TTestOptions{toFirst});
    EXPECT_EQ(a * b, TTestOptions{toThird});
    EXPECT_TRUE(TTestOptions{toFirst} <= a);
    EXPECT_FALSE(b <= a);
    QList<TTestOption> members;
    for (TTestOption o : b)
        members << o;
    EXPECT_EQ(members, QList<TTestOption>({toSecond, toThird}));
}

TEST(Set, TextForm)
{
    EXPECT_EQ(SetToString(TTestOptions{toThird, toFirst}), QStringLiteral("[toFirst,toThird]"));
    EXPECT_EQ(SetToString(TTestOptions{}), QStringLiteral("[]"));
    bool ok = false;
    EXPECT_EQ(StringToSet<TTestOption>(QStringLiteral(" [ toSecond , toFirst ] "), &ok),
              TTestOptions({toFirst, toSecond}));
    EXPECT_TRUE(ok);
    StringToSet<TTestOption>(QStringLiteral("[toFirst,toFourth]"), &ok);
    EXPECT_FALSE(ok);
}
