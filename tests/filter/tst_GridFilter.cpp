// The auto filter on an in-memory table: what the data set is given, the application's own
// filter kept aside and given back, the record and selection kept through a new filter, the
// change bracket, refused conditions, the settings text, the title button and the key.

#include "TestSupport.h"

#include "filter/QDBFilter.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/Exceptions.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class GridFilter : public testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        table.FieldDefs().Add(QStringLiteral("id"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("name"), ftString, 20);
        table.FieldDefs().Add(QStringLiteral("qty"), ftInteger);
        table.CreateDataSet();
        const char *const names[] = {"apple", "Banana", "cherry", "APPLE", "date", "banana", "fig", "", "apple", "kiwi"};
        for (int id = 1; id <= 10; ++id)
            table.AppendRecord({id, id == 8 ? Variant::Null() : Variant(QString::fromLatin1(names[id - 1])), id * 10});
        table.First();
        source.SetDataSet(&table);
        grid.resize(500, 300);
        grid.SetKeyFields(QStringLiteral("id"));
        grid.SetDataSource(&source);
        grid.GetFilterGrid()->SetAutoFilter(true);
        grid.OnFilterUpdated = [this](TObject *) { ++updated; };
        grid.show();
        QApplication::processEvents();
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    QList<int> ids()
    {
        QList<int> result;
        const TBookmark here = table.GetBookmark();
        for (table.First(); !table.Eof(); table.Next())
            result << table.FieldByName(QStringLiteral("id"))->AsInteger();
        table.GotoBookmark(here);
        return result;
    }
    void tick(const char *field, const QStringList &values)
    {
        TStrings *list = column(field)->GetFilterList();
        list->BeginUpdate();
        list->Clear();
        list->AddStrings(values);
        list->EndUpdate();
    }
    int current() { return table.FieldByName(QStringLiteral("id"))->AsInteger(); }

    TMemTable table;
    TDataSource source;
    TQDBGrid grid;
    int updated = 0;
};

} // namespace

TEST_F(GridFilter, ConditionsAndTickedValuesNarrowTheRowsTogether)
{
    column("qty")->SetFilterText(QStringLiteral("qty > 20"));
    EXPECT_EQ(table.Filter(), QStringLiteral("(qty > 20)"));
    EXPECT_TRUE(table.Filtered());
    EXPECT_TRUE(table.OnFilterRecord() == grid.FilterRecordMethod());
    EXPECT_EQ(ids(), (QList<int>{3, 4, 5, 6, 7, 8, 9, 10}));

    // Ticked values match the text without regard to case; the empty text stands for NULL.
    tick("name", {QStringLiteral("apple"), QString()});
    EXPECT_EQ(ids(), (QList<int>{4, 8, 9}));
    column("name")->SetFilterText(QStringLiteral("name <> 'x'"));
    EXPECT_EQ(table.Filter(), QStringLiteral("(name <> 'x') AND (qty > 20)"));
    EXPECT_EQ(grid.GetFilterGrid()->GetFilterText(), table.Filter());

    // A ticked value no record shows filters everything away, quietly.
    tick("name", {QStringLiteral("mango")});
    EXPECT_EQ(ids(), QList<int>{});
    EXPECT_TRUE(grid.DataLink()->Active());

    grid.GetFilterGrid()->ClearAutoFilter();
    EXPECT_FALSE(table.Filtered());
    EXPECT_EQ(table.Filter(), QString());
    EXPECT_FALSE(table.OnFilterRecord());
    EXPECT_EQ(ids().size(), 10);
}

TEST_F(GridFilter, TheApplicationsFilterIsKeptJoinedAndGivenBack)
{
    int asked = 0;
    const TFilterRecordEvent odd([&](TDataSet *ds, bool &accept) {
        ++asked;
        accept = ds->FieldByName(QStringLiteral("id"))->AsInteger() % 2 == 1;
    }, &asked);
    grid.SetFilter(QStringLiteral("qty < 90"));
    grid.SetFilterRecord(odd);
    grid.SetFiltered(true);
    EXPECT_EQ(ids(), (QList<int>{1, 3, 5, 7}));

    tick("name", {QStringLiteral("apple"), QStringLiteral("cherry"), QStringLiteral("banana")});
    column("qty")->SetFilterText(QStringLiteral("qty >= 30"));
    EXPECT_EQ(table.Filter(), QStringLiteral("(qty < 90) AND (qty >= 30)"));
    EXPECT_TRUE(table.OnFilterRecord() == grid.FilterRecordMethod());
    // The grid's handler passes what it accepts on to the application's.
    EXPECT_EQ(ids(), (QList<int>{3}));
    EXPECT_EQ(grid.GetFilter(), QStringLiteral("qty < 90"));
    EXPECT_TRUE(grid.GetFilterRecord() == odd);

    // Changed while the grid's filter is installed: joined anew.
    grid.SetFilter(QStringLiteral("qty < 50"));
    EXPECT_EQ(table.Filter(), QStringLiteral("(qty < 50) AND (qty >= 30)"));

    grid.GetFilterGrid()->SetFiltered(false);
    EXPECT_TRUE(grid.GetFilterGrid()->FilterColumns().isEmpty());
    EXPECT_EQ(grid.GetFilterGrid()->GetFilterText(), QString());
    EXPECT_EQ(table.Filter(), QStringLiteral("qty < 50"));
    EXPECT_TRUE(table.OnFilterRecord() == odd);
    EXPECT_EQ(ids(), (QList<int>{1, 3}));

    grid.GetFilterGrid()->SetFiltered(true);
    grid.GetFilterGrid()->SetAutoUpdate(false);
    EXPECT_EQ(table.Filter(), QStringLiteral("qty < 50"));
    EXPECT_TRUE(column("name")->Filtered()) << "the grid keeps its columns' filters";
    grid.GetFilterGrid()->SetAutoUpdate(true);
    grid.SetFiltered(false);
    EXPECT_EQ(table.Filter(), QStringLiteral("(qty >= 30)")) << "an application filter not in force is not joined";
    EXPECT_EQ(ids(), (QList<int>{3, 4, 6, 9}));
}

TEST_F(GridFilter, TheRecordAndTheSelectionStayThroughANewFilter)
{
    grid.SetOptions(grid.GetOptions() + dgMultiSelect);
    for (int id : {2, 6, 9}) {
        ASSERT_TRUE(table.Locate(QStringLiteral("id"), id, {}));
        grid.SelectRow();
    }
    ASSERT_EQ(grid.SelectedRows().Count(), 3);
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 6, {}));
    tick("name", {QStringLiteral("banana"), QStringLiteral("apple")});
    EXPECT_EQ(current(), 6);
    EXPECT_EQ(grid.SelectedRows().Count(), 3);
    // The record gone from view: the grid stands on the first one left. Selected records the
    // filter hides leave the selection.
    tick("name", {QStringLiteral("kiwi")});
    EXPECT_EQ(current(), 10);
    EXPECT_EQ(grid.SelectedRows().Count(), 0);
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 10, {}));
    grid.SelectRow();
    grid.GetFilterGrid()->ClearAutoFilter({fsFilterList});
    EXPECT_EQ(current(), 10);
    EXPECT_EQ(grid.SelectedRows().Count(), 1);
}

TEST_F(GridFilter, ChangesInABracketApplyOnceAndACancelAppliesNothing)
{
    int changes = 0;
    table.AfterRefresh = [&](TDataSet *) { ++changes; };
    TQDBGridFilter *filter = grid.GetFilterGrid();
    updated = 0;
    filter->BeginFilterChange();
    column("qty")->SetFilterText(QStringLiteral("qty > 10"));
    tick("name", {QStringLiteral("fig")});
    EXPECT_FALSE(table.Filtered());
    filter->EndFilterChange();
    EXPECT_EQ(updated, 1);
    EXPECT_EQ(ids(), QList<int>{7});

    filter->BeginFilterChange();
    tick("name", {});
    filter->CancelFilterChange();
    EXPECT_EQ(updated, 1);
    EXPECT_EQ(ids(), QList<int>{7});

    // Clearing nothing refreshes nothing.
    filter->ClearAutoFilter({});
    EXPECT_EQ(updated, 1);
    // The change the cancel left unapplied is applied with the next one.
    filter->FilterChanged();
    EXPECT_EQ(updated, 2);
    EXPECT_EQ(ids(), (QList<int>{2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST_F(GridFilter, AConditionTheDataSetRefusesLeavesThePreviousOneInForce)
{
    column("qty")->SetFilterText(QStringLiteral("qty > 50"));
    ASSERT_TRUE(table.Locate(QStringLiteral("id"), 7, {}));
    for (const QString &bad : {QStringLiteral("name = 'it's'"), QStringLiteral("nosuch = 1"),
                               QStringLiteral("qty > 1; DROP TABLE t --")}) {
        try {
            column("qty")->SetFilterText(bad);
            ADD_FAILURE() << "accepted: " << bad.toStdString();
        } catch (const EDatabaseError &e) {
            EXPECT_EQ(e.Message(), QStringLiteral("Invalid filter expression: %1").arg(bad));
        }
        EXPECT_EQ(column("qty")->GetFilterText(), QStringLiteral("qty > 50"));
        EXPECT_EQ(table.Filter(), QStringLiteral("(qty > 50)"));
        EXPECT_EQ(ids(), (QList<int>{6, 7, 8, 9, 10}));
        EXPECT_EQ(current(), 7);
        EXPECT_TRUE(grid.DataLink()->Active());
    }
}

TEST_F(GridFilter, SettingsCarryTheFiltersAndPassOverWhatDoesNotRead)
{
    column("name")->SetFilterText(QStringLiteral("name LIKE '%a,b%'"));
    tick("qty", {QStringLiteral("10"), QStringLiteral("20")});
    TStringList layout;
    grid.GetFilterGrid()->GetSettings(layout);
    EXPECT_EQ(layout.Values(QStringLiteral("AutoFilter")), QStringLiteral("1"));
    EXPECT_EQ(layout.Values(QStringLiteral("Filtered")), QStringLiteral("1"));
    EXPECT_EQ(layout.Values(QStringLiteral("Filters")), QStringLiteral("2"));

    grid.GetFilterGrid()->ClearAutoFilter();
    layout.Add(QStringLiteral("Filter3=nosuch,x,"));
    layout.SetValues(QStringLiteral("Filters"), QStringLiteral("3"));
    grid.GetFilterGrid()->SetSettings(layout);
    EXPECT_EQ(column("name")->GetFilterText(), QStringLiteral("name LIKE '%a,b%'"));
    EXPECT_EQ(column("qty")->GetFilterList()->ToStringList(), (QStringList{QStringLiteral("10"), QStringLiteral("20")}));
    EXPECT_EQ(table.Filter(), QStringLiteral("(name LIKE '%a,b%')"));
    EXPECT_EQ(ids(), QList<int>{});

    // A condition that no longer reads against the data set: everything stays as it was.
    TStringList bad;
    bad.Add(QStringLiteral("Filters=1"));
    bad.Add(QStringLiteral("Filter1=name,\"name = 'x'y'\","));
    EXPECT_THROW(grid.GetFilterGrid()->SetSettings(bad), EDatabaseError);
    EXPECT_EQ(column("name")->GetFilterText(), QStringLiteral("name LIKE '%a,b%'"));
    EXPECT_EQ(column("qty")->GetFilterList()->Count(), 2);
    EXPECT_EQ(grid.GetFilterGrid()->GetSettings()->Values(QStringLiteral("Filters")), QStringLiteral("2"));
}

TEST_F(GridFilter, TheTitleShowsWhichColumnsFilterAndTheKeyClearsThem)
{
    TQColumn *name = column("name");
    ASSERT_TRUE(grid.HasFilterButton(name));
    const QRect cell = grid.CellRect(grid.DataToRawColumn(name->Index()), 0);
    const QColor highlight = grid.palette().color(QPalette::Highlight);
    auto highlighted = [&] {
        const QImage image = grid.viewport()->grab(cell).toImage();
        int n = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                n += QColor(image.pixel(x, y)) == highlight;
        return n;
    };
    EXPECT_EQ(highlighted(), 0);
    tick("name", {QStringLiteral("fig")});
    EXPECT_GT(highlighted(), 4);

    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(name->Filtered());
    EXPECT_EQ(ids().size(), 10);
    EXPECT_EQ(highlighted(), 0);

    name->GetTitle()->SetAutoFilter(false);
    EXPECT_FALSE(grid.HasFilterButton(name));
    grid.GetFilterGrid()->SetAutoFilter(false);
    EXPECT_FALSE(grid.HasFilterButton(column("qty")));
}
