#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Strings.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;

namespace {

QStringList lines(const TStrings &s)
{
    return s.ToStringList();
}

} // namespace

TEST(Strings, NameValueAccess)
{
    TStringList list;
    list.SetText(QStringLiteral("Columns=3\nFilter1=Name LIKE 'a=b'\nplain line\nEmpty="));
    EXPECT_EQ(list.Values(QStringLiteral("columns")), QStringLiteral("3")); // names ignore case
    EXPECT_EQ(list.Values(QStringLiteral("Filter1")), QStringLiteral("Name LIKE 'a=b'"));
    EXPECT_EQ(list.Names(2), QString());
    EXPECT_EQ(list.IndexOfName(QStringLiteral("plain line")), -1);
    EXPECT_EQ(list.IndexOfName(QStringLiteral("Empty")), 3);

    list.SetValues(QStringLiteral("Columns"), QStringLiteral("4"));
    EXPECT_EQ(list[0], QStringLiteral("Columns=4"));
    list.SetValues(QStringLiteral("New"), QStringLiteral("x"));
    EXPECT_EQ(list[list.Count() - 1], QStringLiteral("New=x"));
    list.SetValues(QStringLiteral("Columns"), QString()); // an empty value removes the line
    EXPECT_EQ(list.IndexOfName(QStringLiteral("Columns")), -1);
}

TEST(Strings, SortedListsFindInsertAndRefuse)
{
    TStringList list;
    list.SetSorted(true);
    for (const char *s : {"pear", "Apple", "fig", "apple"})
        list.Add(QString::fromLatin1(s));
    EXPECT_EQ(lines(list), QStringList({QStringLiteral("Apple"), QStringLiteral("fig"), QStringLiteral("pear")}));
    int index = -1;
    EXPECT_TRUE(list.Find(QStringLiteral("FIG"), index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(list.Find(QStringLiteral("grape"), index));
    EXPECT_EQ(index, 2);
    EXPECT_THROW(list.Insert(0, QStringLiteral("x")), EStringListError);
    EXPECT_THROW(list.Put(0, QStringLiteral("x")), EStringListError);

    list.SetDuplicates(TDuplicates::dupError);
    EXPECT_THROW(list.Add(QStringLiteral("PEAR")), EStringListError);
    list.SetDuplicates(TDuplicates::dupAccept);
    list.Add(QStringLiteral("fig"));
    EXPECT_TRUE(list.Find(QStringLiteral("fig"), index));
    EXPECT_EQ(index, 1); // the first of equal strings

    list.SetCaseSensitive(true);
    EXPECT_EQ(list.IndexOf(QStringLiteral("apple")), -1);
    EXPECT_GE(list.IndexOf(QStringLiteral("Apple")), 0);
}

TEST(Strings, ValuesOnASortedListKeepItSorted)
{
    TStringList list;
    list.SetSorted(true);
    list.SetValues(QStringLiteral("b"), QStringLiteral("2"));
    list.SetValues(QStringLiteral("a"), QStringLiteral("1"));
    list.SetValues(QStringLiteral("b"), QStringLiteral("0"));
    EXPECT_EQ(lines(list), QStringList({QStringLiteral("a=1"), QStringLiteral("b=0")}));
}

TEST(Strings, CommaTextQuotesWhatNeedsIt)
{
    TStringList list;
    list.AddStrings(QStringList{QStringLiteral("plain"), QStringLiteral("with blank"), QStringLiteral("a,b"),
                                QStringLiteral("say \"hi\""), QString()});
    EXPECT_EQ(list.CommaText(), QStringLiteral("plain,\"with blank\",\"a,b\",\"say \"\"hi\"\"\","));
    TStringList back;
    back.SetCommaText(list.CommaText());
    EXPECT_EQ(lines(back), lines(list));

    // Without strict delimiting a blank separates items too.
    back.SetCommaText(QStringLiteral("  one two, three ,\"four five\""));
    EXPECT_EQ(lines(back), QStringList({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three"),
                                        QStringLiteral("four five")}));
    // A lone empty item is written as two quotes and read back as one empty item.
    TStringList single;
    single.Add(QString());
    EXPECT_EQ(single.CommaText(), QStringLiteral("\"\""));
    back.SetCommaText(single.CommaText());
    EXPECT_EQ(lines(back), QStringList({QString()}));
}

TEST(Strings, StrictDelimitedText)
{
    TStringList list;
    list.SetDelimiter(QLatin1Char(';'));
    list.SetStrictDelimiter(true);
    list.SetDelimitedText(QStringLiteral("a b;;c "));
    EXPECT_EQ(lines(list), QStringList({QStringLiteral("a b"), QString(), QStringLiteral("c ")}));
    EXPECT_EQ(list.DelimitedText(), QStringLiteral("a b;;c "));
}

TEST(Strings, TextSplitsAnyLineBreak)
{
    TStringList list;
    list.SetText(QStringLiteral("a\r\nb\rc\n\nd\n"));
    EXPECT_EQ(lines(list), QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QString(),
                                        QStringLiteral("d")}));
    EXPECT_EQ(list.Text(), QStringLiteral("a\nb\nc\n\nd\n"));
}

TEST(Strings, UpdateBracketsAnnounceOneChange)
{
    TStringList list;
    int changes = 0, changing = 0;
    list.OnChange = [&](TObject *sender) {
        EXPECT_EQ(sender, &list);
        ++changes;
    };
    list.OnChanging = [&](TObject *) { ++changing; };
    list.Add(QStringLiteral("x"));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(changing, 1);

    list.BeginUpdate();
    list.BeginUpdate();
    list.SetText(QStringLiteral("a\nb\nc"));
    list.Delete(0);
    list.EndUpdate();
    EXPECT_EQ(changes, 1);
    list.EndUpdate();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(changing, 1);

    list.BeginUpdate(); // a bracket without changes announces nothing
    list.EndUpdate();
    EXPECT_EQ(changes, 2);
}

TEST(Strings, AssignMoveAndIndexErrors)
{
    TStringList a, b;
    a.AddStrings(QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")});
    a.Move(0, 2);
    EXPECT_EQ(lines(a), QStringList({QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("1")}));
    b.SetSorted(true);
    b.Assign(a);
    EXPECT_EQ(lines(b), QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
    EXPECT_THROW(a.Get(3), EStringListError);
    EXPECT_THROW(a.Delete(-1), EStringListError);
    QStringList seen;
    for (const QString &s : a)
        seen << s;
    EXPECT_EQ(seen, lines(a));
}

TEST(Strings, CustomSortAndSeparators)
{
    TStringList list;
    list.AddStrings(QStringList{QStringLiteral("10"), QStringLiteral("9"), QStringLiteral("100")});
    list.CustomSort([](TStringList &l, int a, int b) { return l[a].toInt() - l[b].toInt(); });
    EXPECT_EQ(lines(list), QStringList({"9", "10", "100"}));
    EXPECT_FALSE(list.Sorted()); // a custom order is not the list's own

    TStringList pairs;
    pairs.SetNameValueSeparator(QLatin1Char(':'));
    pairs.SetText(QStringLiteral("a:1\nb=2:3"));
    EXPECT_EQ(pairs.Values(QStringLiteral("a")), QStringLiteral("1"));
    EXPECT_EQ(pairs.Names(1), QStringLiteral("b=2"));
    EXPECT_EQ(pairs.ValueFromIndex(1), QStringLiteral("3"));
}
