// The grid's saved layout: its names, its lines, the round trip through an INI file and the
// system's settings store on an in-memory table and a SQLite table, what a damaged or
// unwritable store does, and the automatic load and save.

#include "grid/QDBGrid.h"

#include "TestSupport.h"

#include "filter/QDBGridFilter.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/IniFiles.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

enum class Data { Memory, SQLite };

std::string DataName(const testing::TestParamInfo<Data> &info)
{
    return info.param == Data::Memory ? "Memory" : "SQLite";
}

const char *const Cities[] = {"Oslo", "Paris", "Rome"};

// Grid1 on the window Form1, over id, name, qty and city.
class GridSettings : public testing::TestWithParam<Data>
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        if (GetParam() == Data::Memory) {
            auto *t = new TMemTable;
            t->FieldDefs().Add(QStringLiteral("id"), ftInteger);
            t->FieldDefs().Add(QStringLiteral("name"), ftString, 20);
            t->FieldDefs().Add(QStringLiteral("qty"), ftInteger);
            t->FieldDefs().Add(QStringLiteral("city"), ftString, 20);
            t->CreateDataSet();
            for (int i = 1; i <= 30; ++i)
                t->AppendRecord({i, QStringLiteral("n%1").arg(i), i % 10, QString::fromLatin1(Cities[i % 3])});
            t->First();
            data.reset(t);
        } else {
            connection.SetConnectionString(QStringLiteral("sqlite:") + dir.filePath(QStringLiteral("t.db")));
            connection.SetCreateDatabase(true);
            connection.Open();
            connection.ExecSQL(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY, name VARCHAR(20), qty INTEGER, city VARCHAR(20))"));
            for (int i = 1; i <= 30; ++i)
                connection.ExecSQL(QStringLiteral("INSERT INTO t VALUES (?, ?, ?, ?)"),
                                   {i, QStringLiteral("n%1").arg(i), i % 10, QString::fromLatin1(Cities[i % 3])});
            auto *t = new TSQLTable;
            t->SetConnection(&connection);
            t->SetTableName(QStringLiteral("t"));
            t->SetIndexFieldNames(QStringLiteral("id"));
            data.reset(t);
        }
        data->Open();
        source.SetDataSet(data.get());
        form.setObjectName(QStringLiteral("Form1"));
        grid = new TQDBGrid(&form);
        grid->setObjectName(QStringLiteral("Grid1"));
        new QVBoxLayout(&form);
        form.layout()->addWidget(grid);
        grid->SetKeyFields(QStringLiteral("id"));
        grid->SetOptionsEx(grid->GetOptionsEx() + TQDBGridOptionsEx{dgAutoUpdateOrder});
        grid->SetDataSource(&source);
        settings()->SetIniFile(true);
        settings()->SetFileName(dir.filePath(QStringLiteral("layout.ini")));
        form.resize(600, 300);
        form.show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        delete grid;
        data.reset();
    }
    TQDBGridSettings *settings() const { return grid->GetSettings(); }
    TQColumn *column(const char *field) const { return grid->GetColumns()->FindColumn(QString::fromLatin1(field)); }
    QStringList lines() const { return settings()->GetLayout()->ToStringList(); }
    // The records the data set shows, by id, in its order.
    QList<int> ids() const
    {
        QList<int> out;
        const TBookmark here = data->GetBookmark();
        for (data->First(); !data->Eof(); data->Next())
            out << data->FieldByName(QStringLiteral("id"))->AsInteger();
        data->GotoBookmark(here);
        return out;
    }
    // Everything a layout holds, away from the defaults.
    void changeEverything(bool variant)
    {
        settings()->SetOptions(TQSettingsOptions::FromBits((1u << (int(soFilters) + 1)) - 1));
        TQDBGridColumns *columns = grid->GetColumns();
        columns->SetState(csCustomized);
        column(variant ? "qty" : "city")->SetIndex(0);
        column("name")->SetWidth(variant ? 150 : 90);
        column(variant ? "city" : "id")->SetVisible(false);
        column("qty")->GetReport()->Visible = !variant;
        grid->SetOrderFields(variant ? QStringLiteral("qty DESC,id") : QStringLiteral("city,id DESC"));
        grid->SetLinesCount(variant ? 2 : 3);
        grid->SetOptions(variant ? grid->GetOptions() + TQDBGridOptions{dgMultiSelect}
                                 : grid->GetOptions() - TQDBGridOptions{dgMultiSelect});
        grid->SetDrawingOptions(variant ? grid->GetDrawingOptions() + TGridDrawingOptions{gdoStripedRows}
                                        : grid->GetDrawingOptions() - TGridDrawingOptions{gdoStripedRows});
        TQDBGridFilter *filter = grid->GetFilterGrid();
        filter->SetAutoFilter(variant);
        filter->ClearAutoFilter();
        TStrings *ticked = column("city")->GetFilterList();
        ticked->BeginUpdate();
        ticked->Add(QString::fromLatin1(variant ? Cities[1] : Cities[2]));
        ticked->EndUpdate();
        column("qty")->SetFilterText(variant ? QStringLiteral("qty >= 5") : QStringLiteral("qty < 3"));
    }

    QTemporaryDir dir;
    TSQLConnection connection;
    std::unique_ptr<TDataSet> data;
    TDataSource source;
    QWidget form;
    TQDBGrid *grid = nullptr;
};

} // namespace

TEST_P(GridSettings, NamesTheSectionAndTheStoreByTheGridAndTheApplication)
{
    EXPECT_EQ(settings()->GetSection(), "Form1.Grid1");
    settings()->SetSection(QStringLiteral("Form1.Grid1"));
    EXPECT_FALSE(settings()->IsSectionStored());
    settings()->SetSection(QStringLiteral("Orders"));
    EXPECT_EQ(settings()->GetSection(), "Orders");
    form.setObjectName(QString());
    settings()->SetSection(QString());
    EXPECT_EQ(settings()->GetSection(), "Grid1");

    const QString exe = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    settings()->SetFileName(QString());
    EXPECT_EQ(settings()->GetDefaultFileName(), QFileInfo(QCoreApplication::applicationFilePath()).dir().filePath(exe + ".ini"));
    DefaultIniFileName() = dir.filePath(QStringLiteral("all.ini"));
    EXPECT_EQ(settings()->GetDefaultFileName(), DefaultIniFileName());
    DefaultIniFileName().clear();
    settings()->SetIniFile(false);
    EXPECT_EQ(settings()->GetDefaultFileName(), "\\Software\\Quovra Software\\" + exe);
    settings()->SetExeName(false);
    EXPECT_EQ(settings()->GetDefaultFileName(), OriginalRegistryKey());
    settings()->SetExeName(true);
    DefaultRegistryKey() = QStringLiteral("\\Software\\Acme\\QDBGrid");
    EXPECT_EQ(settings()->GetDefaultFileName(), DefaultRegistryKey());
    DefaultRegistryKey() = OriginalRegistryKey();

    // Without a name there is nowhere to keep a layout: nothing is read, written or found.
    grid->setObjectName(QString());
    EXPECT_EQ(settings()->GetSection(), "");
    settings()->SetIniFile(true);
    settings()->SetFileName(dir.filePath(QStringLiteral("none.ini")));
    settings()->SaveLayout();
    EXPECT_FALSE(settings()->LayoutExists());
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("none.ini"))));
}

TEST_P(GridSettings, BuildsItsLinesInOrderUnderItsOptions)
{
    settings()->SetOptions({});
    const int ppi = grid->CurrentPPI();
    EXPECT_EQ(lines().size(), 1 + 4 + 1);
    EXPECT_EQ(lines().last(), QStringLiteral("CurrentPPI=%1").arg(ppi));

    changeEverything(true);
    QStringList names;
    for (const QString &line : lines())
        names << line.left(line.indexOf(QLatin1Char('=')));
    EXPECT_EQ(names, (QStringList{"AutoLoadLayout", "AutoSaveLayout", "Columns", "Column1", "Column2", "Column3",
                                  "Column4", "StretchMode", "CurrentPPI", "OrderFields", "LinesCount", "MultiSelect",
                                  "SelectedRow", "StripedRows", "AutoFilter", "Filtered", "Filters", "Filter1", "Filter2"}));
    TStrings *layout = settings()->GetLayout();
    EXPECT_EQ(layout->Values("Column1"), "qty," + QString::number(column("qty")->GetWidthBase()) + ",1,0,0");
    EXPECT_EQ(layout->Values("OrderFields"), "qty DESC,id");
    EXPECT_EQ(layout->Values("MultiSelect"), "1");

    // The application adds its own lines and reads them back.
    QString seen;
    grid->OnLayout = [&](TObject *, TStrings *l, bool apply) {
        if (apply)
            seen = l->Values(QStringLiteral("Mine"));
        else
            l->Add(QStringLiteral("Mine=kept"));
    };
    settings()->SaveLayout();
    settings()->LoadLayout();
    EXPECT_EQ(seen, "kept");
}

TEST_P(GridSettings, ALayoutComesBackWholeFromAFileAndFromTheSystemStore)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir.filePath(QStringLiteral("native")));
    for (bool ini : {true, false}) {
        SCOPED_TRACE(ini ? "INI file" : "system store");
        settings()->SetIniFile(ini);
        if (!ini)
            settings()->SetFileName(QStringLiteral("\\Software\\QDB Tests\\Layouts"));
        changeEverything(true);
        const QStringList saved = lines();
        const QList<int> rows = ids();
        ASSERT_EQ(rows.size(), 5); // Paris with qty >= 5
        EXPECT_EQ(rows.first(), 19); // qty 9 first
        settings()->SaveLayout();
        EXPECT_TRUE(settings()->LayoutExists());

        changeEverything(false);
        ASSERT_NE(lines(), saved);
        ASSERT_NE(ids(), rows);
        settings()->LoadLayout();
        EXPECT_EQ(lines(), saved);
        EXPECT_EQ(ids(), rows);
        EXPECT_EQ(grid->CellText(grid->DataToRawColumn(0), grid->FixedRows()), "9");
        EXPECT_FALSE(column("city")->GetVisible());

        settings()->EraseLayout();
        EXPECT_FALSE(settings()->LayoutExists());
        settings()->LoadLayout(); // nothing stored: nothing changes
        EXPECT_EQ(lines(), saved);
    }
}

TEST_P(GridSettings, DamagedOrForeignLayoutsChangeOnlyWhatReads)
{
    changeEverything(true);
    const QString file = settings()->GetFileName();
    settings()->SaveLayout();

    // Saved again for fewer columns: the section holds that save alone.
    TIniFile(file).WriteString(QStringLiteral("Form1.Grid1"), QStringLiteral("Stale"), QStringLiteral("1"));
    grid->GetColumns()->Delete(column("name")->Index());
    settings()->SaveLayout();
    TStringList stored;
    TIniFile(file).ReadSectionValues(QStringLiteral("Form1.Grid1"), stored);
    EXPECT_EQ(stored.ToStringList(), lines());
    EXPECT_EQ(stored.Values("Columns"), "3");

    // By hand: an unknown field, bad numbers, "2" for a switch, a line without "=".
    QFile::remove(file);
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("[Form1.Grid1]\nColumns=3\nColumn1=gone,50,1,1,1\nColumn2=city,wide,0,1,1\nColumn3=id\n"
                "LinesCount=many\nMultiSelect=2\nStripedRows\nOrderFields=id\nFilters=1\nFilter1=nosuch,x,\n");
    }
    const int lines0 = grid->GetLinesCount();
    const int cityWidth = column("city")->GetWidthBase();
    settings()->LoadLayout();
    EXPECT_EQ(column("city")->Index(), 1);
    EXPECT_EQ(column("city")->GetWidthBase(), cityWidth);
    EXPECT_FALSE(column("city")->GetVisible());
    EXPECT_EQ(column("id")->Index(), 2);
    EXPECT_EQ(grid->GetLinesCount(), lines0);
    EXPECT_FALSE(grid->GetOptions().Contains(dgMultiSelect));
    EXPECT_TRUE(grid->GetDrawingOptions().Contains(gdoStripedRows));
    EXPECT_EQ(grid->GetOrderFields(), "id");
    EXPECT_EQ(ids().size(), 30); // the filters read as none

    // Random bytes neither crash nor change anything.
    QRandomGenerator random(17);
    for (int round = 0; round < 20; ++round) {
        QByteArray bytes(int(random.bounded(1, 2000)), Qt::Uninitialized);
        for (char &c : bytes)
            c = char(random.bounded(256));
        if (round % 2)
            bytes.prepend("[Form1.Grid1]\n");
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(bytes);
        f.close();
        const QStringList before = lines();
        settings()->LoadLayout();
        EXPECT_EQ(lines(), before);
    }
}

TEST_P(GridSettings, AnUnwritableFileSaysSoAndKeepsTheLayout)
{
    // A folder that is a file: no user may write under it.
    const QString readOnly = dir.filePath(QStringLiteral("plain"));
    QFile plain(readOnly);
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.close();
    settings()->SetFileName(readOnly + QStringLiteral("/layout.ini"));
    changeEverything(true);
    const QStringList kept = lines();
    try {
        settings()->SaveLayout();
        ADD_FAILURE() << "saved into a read-only folder";
    } catch (const EIniFileException &e) {
        EXPECT_TRUE(e.Message().startsWith("Unable to write to " + readOnly)) << e.Message().toStdString();
    }
    EXPECT_EQ(settings()->GetLayout()->ToStringList(), kept);
    EXPECT_EQ(lines(), kept);
}

TEST_P(GridSettings, TheGridLoadsAsItsDataComesAndSavesAsItGoes)
{
    settings()->SetActive(true);
    QApplication::processEvents(); // nothing stored yet: nothing changes
    changeEverything(true);
    const QStringList shown = lines();
    data->Close(); // saved as the data goes
    EXPECT_TRUE(settings()->LayoutExists());
    changeEverything(false);
    data->Open(); // and loaded as it comes
    EXPECT_EQ(lines(), shown);

    // The user turned automatic loading off: only the two switches are written, the
    // layout stored stays, and the next start does not load it.
    changeEverything(false);
    settings()->SetOptions(settings()->GetOptions() - TQSettingsOptions{soLoadLayout, soSaveLayout});
    data->Close();
    TStringList stored;
    TIniFile(settings()->GetFileName()).ReadSectionValues(QStringLiteral("Form1.Grid1"), stored);
    EXPECT_EQ(stored.Values("AutoLoadLayout"), "0");
    EXPECT_EQ(stored.Values("OrderFields"), "qty DESC,id");
    settings()->SetOptions(settings()->GetOptions() + TQSettingsOptions{soLoadLayout, soSaveLayout});
    data->Open();
    EXPECT_FALSE(settings()->GetOptions().Contains(soLoadLayout)); // the user's choice wins
    EXPECT_EQ(grid->GetOrderFields(), "city,id DESC");

    // A grid that goes with its data saves too; errors are told, not raised.
    settings()->SetOptions(settings()->GetOptions() - TQSettingsOptions{soUserSettings} + TQSettingsOptions{soSaveLayout});
    settings()->SetFileName(dir.filePath(QStringLiteral("missing/deeper/layout.ini")));
    MessageLog log;
    delete grid;
    grid = nullptr;
    ASSERT_EQ(log.texts.size(), 1);
    EXPECT_TRUE(log.texts[0].startsWith("The layout of the grid could not be saved: Unable to write to"));
}

INSTANTIATE_TEST_SUITE_P(Data, GridSettings, testing::Values(Data::Memory, Data::SQLite), DataName);
