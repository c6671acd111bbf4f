#include "platform/rtl/Exceptions.h"
#include "platform/rtl/IniFiles.h"

#include "TestSupport.h"

#include <QDir>
#include <QSettings>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

const QList<QPair<QString, QString>> &awkwardValues()
{
    static const QList<QPair<QString, QString>> values = {
        {QStringLiteral("Semicolon"), QStringLiteral("a;b ; c")},
        {QStringLiteral("Equals"), QStringLiteral("x=y=z")},
        {QStringLiteral("Commas"), QStringLiteral("Name,120,1,0,1")},
        {QStringLiteral("Backslashes"), QStringLiteral("C:\\data\\new\\")},
        {QStringLiteral("Blanks"), QStringLiteral("  padded  ")},
        {QStringLiteral("Unicode"), QStringLiteral("Größe € 日本")},
        {QStringLiteral("Quotes"), QStringLiteral("\"quoted\" and 'single'")},
        {QStringLiteral("Hash"), QStringLiteral("# not a comment")},
        {QStringLiteral("Filter1"), QStringLiteral("[Unit Price] >= 1.5 AND Name LIKE '%a_b%'")},
        {QStringLiteral("Empty"), QString()},
    };
    return values;
}

class IniFileTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    QString path() const { return dir.filePath(QStringLiteral("layout.ini")); }
};

} // namespace

TEST_F(IniFileTest, AwkwardValuesSurviveARoundTrip)
{
    {
        TIniFile ini(path());
        for (const auto &[name, value] : awkwardValues())
            ini.WriteString(QStringLiteral("Form1.Grid1"), name, value);
    }
    TIniFile ini(path());
    for (const auto &[name, value] : awkwardValues())
        EXPECT_EQ(ini.ReadString(QStringLiteral("form1.grid1"), name, QStringLiteral("<missing>")), value) << qPrintable(name);
    TStringList lines;
    ini.ReadSectionValues(QStringLiteral("Form1.Grid1"), lines);
    EXPECT_EQ(lines.Count(), awkwardValues().size());
    EXPECT_EQ(lines[1], QStringLiteral("Equals=x=y=z"));
    EXPECT_EQ(lines.Values(QStringLiteral("Blanks")), QStringLiteral("  padded  "));
}

TEST_F(IniFileTest, EraseSectionRemovesOnlyThatSection)
{
    TIniFile ini(path());
    ini.WriteString(QStringLiteral("A"), QStringLiteral("Columns"), QStringLiteral("3"));
    ini.WriteString(QStringLiteral("B"), QStringLiteral("Columns"), QStringLiteral("5"));
    ini.WriteString(QStringLiteral("A"), QStringLiteral("Column1"), QStringLiteral("Name,64,1,0,1"));
    ini.EraseSection(QStringLiteral("a"));
    EXPECT_FALSE(ini.SectionExists(QStringLiteral("A")));
    EXPECT_TRUE(ini.SectionExists(QStringLiteral("B")));
    EXPECT_EQ(ReadTextFile(path()).trimmed(), QStringLiteral("[B]\nColumns=5"));
    TIniFile again(path());
    EXPECT_EQ(again.ReadString(QStringLiteral("A"), QStringLiteral("Columns"), QStringLiteral("none")),
              QStringLiteral("none"));
    EXPECT_EQ(again.ReadInteger(QStringLiteral("B"), QStringLiteral("Columns"), 0), 5);
}

TEST_F(IniFileTest, CommentsAndUnknownLinesAreKept)
{
    WriteTextFile(path(), "; written by hand\r\n[Grid]\r\n# keep me\r\nWidth = 10\r\nstray line\r\n\r\n[Other]\r\nX=1\r\n");
    {
        TIniFile ini(path());
        EXPECT_EQ(ini.ReadString(QStringLiteral("Grid"), QStringLiteral("Width"), QString()), QStringLiteral(" 10"));
        ini.WriteString(QStringLiteral("Grid"), QStringLiteral("Height"), QStringLiteral("20"));
    }
    const QString text = ReadTextFile(path());
    EXPECT_TRUE(text.startsWith(QStringLiteral("; written by hand\n[Grid]\n# keep me\nWidth = 10\nHeight=20\nstray line\n")))
        << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("[Other]\nX=1\n")));
}

TEST_F(IniFileTest, CorruptFileReadsWithoutFailing)
{
    static const char head[] = "\x00\xff\xfe[broken\n=no name\n[]\nkey without equals\n[Good]\nA=1\n";
    QByteArray junk(head, sizeof head - 1);
    for (int i = 0; i < 256; ++i)
        junk.append(char(i * 37));
    junk.append("\n[Good2]\nB=2\n");
    WriteTextFile(path(), junk);
    TIniFile ini(path());
    EXPECT_EQ(ini.ReadString(QStringLiteral("Good"), QStringLiteral("A"), QString()), QStringLiteral("1"));
    EXPECT_EQ(ini.ReadString(QStringLiteral("Good2"), QStringLiteral("B"), QString()), QStringLiteral("2"));
    EXPECT_FALSE(ini.SectionExists(QString()));
    EXPECT_NO_THROW(ini.WriteString(QStringLiteral("Good"), QStringLiteral("C"), QStringLiteral("3")));
}

TEST_F(IniFileTest, SingleByteFilesAreReadAsLatin1)
{
    WriteTextFile(path(), "[S]\nName=Gr\xF6\xDF" "e\n");
    TIniFile ini(path());
    EXPECT_EQ(ini.ReadString(QStringLiteral("S"), QStringLiteral("Name"), QString()), QStringLiteral("Größe"));
}

TEST_F(IniFileTest, BadWritesRaiseAndChangeNothing)
{
    TIniFile ini(path());
    ini.WriteString(QStringLiteral("S"), QStringLiteral("A"), QStringLiteral("1"));
    const QString before = ReadTextFile(path());
    EXPECT_THROW(ini.WriteString(QStringLiteral("S"), QStringLiteral("B"), QStringLiteral("two\nlines")), EIniFileException);
    EXPECT_THROW(ini.WriteString(QStringLiteral("S"), QStringLiteral("a=b"), QStringLiteral("x")), EIniFileException);
    EXPECT_THROW(ini.WriteString(QString(), QStringLiteral("A"), QStringLiteral("x")), EIniFileException);
    EXPECT_EQ(ReadTextFile(path()), before);

    TIniFile nowhere(dir.filePath(QStringLiteral("missing/dir/x.ini")));
    EXPECT_THROW(nowhere.WriteString(QStringLiteral("S"), QStringLiteral("A"), QStringLiteral("1")), EIniFileException);
}

TEST_F(IniFileTest, CachedUpdatesWriteOnce)
{
    TIniFile ini(path());
    ini.SetCacheUpdates(true);
    ini.WriteString(QStringLiteral("S"), QStringLiteral("A"), QStringLiteral("1"));
    EXPECT_FALSE(QFile::exists(path()));
    ini.UpdateFile();
    EXPECT_EQ(TIniFile(path()).ReadString(QStringLiteral("S"), QStringLiteral("A"), QString()), QStringLiteral("1"));
}

TEST(RegistryIniFile, RoundTripAndErase)
{
    QTemporaryDir dir;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, dir.path());
    const QString key = QStringLiteral("\\Software\\Test Company\\Sales");
    {
        TRegistryIniFile reg(key);
        for (const auto &[name, value] : awkwardValues())
            reg.WriteString(QStringLiteral("Form1.Grid1"), name, value);
        reg.WriteString(QStringLiteral("Other"), QStringLiteral("X"), QStringLiteral("1"));
        reg.UpdateFile();
    }
    TRegistryIniFile reg(key);
    for (const auto &[name, value] : awkwardValues())
        EXPECT_EQ(reg.ReadString(QStringLiteral("Form1.Grid1"), name, QStringLiteral("<missing>")), value) << qPrintable(name);
    EXPECT_TRUE(reg.SectionExists(QStringLiteral("Form1.Grid1")));
    EXPECT_TRUE(reg.ValueExists(QStringLiteral("Other"), QStringLiteral("X")));
    reg.EraseSection(QStringLiteral("Form1.Grid1"));
    EXPECT_FALSE(reg.SectionExists(QStringLiteral("Form1.Grid1")));
    EXPECT_TRUE(reg.SectionExists(QStringLiteral("Other")));
    TStringList lines;
    reg.ReadSectionValues(QStringLiteral("Other"), lines);
    EXPECT_EQ(lines.ToStringList(), QStringList{QStringLiteral("X=1")});
}

TEST_F(IniFileTest, KeysSectionsAndTypedReads)
{
    WriteTextFile(path(), "\xEF\xBB\xBF[One]\nFlag=1\nRatio=2.5\nCount=x\n[Two]\nA=1\n");
    TIniFile ini(path());
    TStringList sections;
    ini.ReadSections(sections);
    EXPECT_EQ(sections.ToStringList(), QStringList({"One", "Two"}));
    EXPECT_TRUE(ini.ReadBool(QStringLiteral("One"), QStringLiteral("Flag"), false));
    EXPECT_EQ(ini.ReadInteger(QStringLiteral("One"), QStringLiteral("Count"), 7), 7); // not a number: the default
    {
        ScopedFormatSettings fs(TFormatSettings::Invariant());
        EXPECT_EQ(ini.ReadFloat(QStringLiteral("One"), QStringLiteral("Ratio"), 0), 2.5);
    }
    ini.DeleteKey(QStringLiteral("one"), QStringLiteral("FLAG"));
    EXPECT_FALSE(ini.ValueExists(QStringLiteral("One"), QStringLiteral("Flag")));
    EXPECT_TRUE(ini.ValueExists(QStringLiteral("One"), QStringLiteral("Ratio")));
    EXPECT_FALSE(ReadTextFile(path()).startsWith(QChar(0xFEFF))); // written back as plain UTF-8
}
