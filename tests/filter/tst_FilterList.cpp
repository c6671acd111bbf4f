// The value list under a title: the distinct values with their counts and order, the ticks
// it opens with, the keys and commands that tick, and the FilterList it writes back.

#include "TestSupport.h"

#include "filter/QDBFilter.h"
#include "filter/QDBFilterList.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

TEST(FilterData, LinesSortWithoutCaseAndCountTheirRecords)
{
    QString order, list, key;
    TQDBFilterData::SplitLine(TQDBFilterData::MakeLine(QStringLiteral("07"), QStringLiteral("Seven"), QStringLiteral("7")),
                              &order, &list, &key);
    EXPECT_EQ(order, "07");
    EXPECT_EQ(list, "Seven");
    EXPECT_EQ(key, "7");
    EXPECT_EQ(TQDBFilterData::MakeLine(QString(), QStringLiteral("x"), QStringLiteral("x")), "x");

    TQDBFilterData data;
    data.BeginLoad();
    for (const char *value : {"pear", "Apple", "apple", "fig", "a longer value than twenty characters", "APPLE"})
        data.AddValue(QString(), QString::fromLatin1(value), QString::fromLatin1(value));
    data.EndLoad();
    ASSERT_EQ(data.Count(), 4);
    EXPECT_EQ(data.ListValue(0), "a longer value than twenty characters");
    EXPECT_EQ(data.ListValue(1), "Apple"); // the first met stands for those equal but for case
    EXPECT_EQ(data.RecordsOf(1), 3);
    EXPECT_EQ(data.IndexOfKey(QStringLiteral("PEAR")), 3);
    EXPECT_EQ(data.ListFieldSize(), 37);
    EXPECT_EQ(data.KeyFieldSize(), 37);
    EXPECT_EQ(data.RecordCount(), 4);
    data.First();
    EXPECT_EQ(data.FieldByName(data.ListFieldName())->AsString(), "a longer value than twenty characters");
    data.Next();
    EXPECT_EQ(data.FieldByName(TQDBFilterData::CountFieldName())->AsInteger(), 3);
    EXPECT_EQ(data.FieldByName(data.KeyFieldName())->AsString(), "Apple");
    data.BeginLoad();
    data.EndLoad();
    EXPECT_EQ(data.ListFieldSize(), TQDBFilterData::InitialFieldSize);
}

TEST(FilterData, OrderKeysSortNumbersAndDatesByValue)
{
    RegisterDBTypes();
    TMemTable table;
    table.FieldDefs().Add(QStringLiteral("i"), ftInteger);
    table.FieldDefs().Add(QStringLiteral("f"), ftFloat);
    table.FieldDefs().Add(QStringLiteral("d"), ftDateTime);
    table.CreateDataSet();
    const QList<int> ints{-70000, -3, 0, 2, 10, 1 << 30};
    const QList<double> floats{-1e9, -2.5, -0.001, 0, 0.25, 3, 1e12};
    QStringList intKeys, floatKeys;
    for (int i : ints) {
        table.AppendRecord({i, Variant::Null(), Variant::Null()});
        intKeys << TQDBGridFilterList::GetFilterOrder(table.FieldByName(QStringLiteral("i")));
    }
    for (double f : floats) {
        table.AppendRecord({Variant::Null(), f, Variant::Null()});
        floatKeys << TQDBGridFilterList::GetFilterOrder(table.FieldByName(QStringLiteral("f")));
    }
    QStringList sorted = intKeys;
    sorted.sort();
    EXPECT_EQ(sorted, intKeys);
    sorted = floatKeys;
    sorted.sort();
    EXPECT_EQ(sorted, floatKeys);
    table.AppendRecord({Variant::Null(), Variant::Null(), EncodeDate(2024, 3, 9) + EncodeTime(13, 5, 0, 7)});
    EXPECT_EQ(TQDBGridFilterList::GetFilterOrder(table.FieldByName(QStringLiteral("d"))), "20240309130500007");
    EXPECT_EQ(TQDBGridFilterList::GetFilterOrder(table.FieldByName(QStringLiteral("i"))), ""); // NULL
}

namespace {

class FilterList : public testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        table.FieldDefs().Add(QStringLiteral("id"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("city"), ftString, 20);
        table.FieldDefs().Add(QStringLiteral("qty"), ftInteger);
        table.CreateDataSet();
        const char *const cities[] = {"Paris", "berlin", "Oslo", "paris", "", "Berlin", "Rome", "Oslo", "Paris", "Bern"};
        for (int id = 1; id <= 10; ++id)
            table.AppendRecord({id, id == 5 ? Variant::Null() : Variant(QString::fromLatin1(cities[id - 1])), 100 - id * 7});
        table.First();
        source.SetDataSet(&table);
        grid.resize(500, 300);
        grid.SetDataSource(&source);
        grid.GetFilterGrid()->SetAutoFilter(true);
        grid.GetFilterGrid()->SetOptions(grid.GetFilterGrid()->GetOptions() - TQDBGridFilterOptions{foAutoApplyList});
        grid.show();
        QApplication::setActiveWindow(&grid);
        grid.grab(); // paints the titles with their buttons
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    // Clicks the column's filter button, as a user does; the popup it opens.
    TQDBPopupFilterList *open(const char *field)
    {
        grid.grab();
        const int x0 = grid.CellRect(grid.DataToRawColumn(column(field)->Index()), 0).right() - 4;
        const int y = grid.CellRect(0, 0).center().y();
        for (int x = x0; x > x0 - 30; --x)
            if (grid.FilterButtonAt(QPoint(x, y)) == column(field)) {
                QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, QPoint(x, y));
                break;
            }
        auto *popup = grid.findChild<TQDBPopupFilterList *>();
        return popup && popup->isVisible() ? popup : nullptr;
    }
    // The values listed, with their counts, in list order; ticked ones marked with "*".
    QStringList listed(TQDBPopupFilterList *popup)
    {
        QStringList rows;
        auto *data = qobject_cast<TQDBFilterData *>(popup->DataSet());
        for (int i = 0; i < data->Count(); ++i) {
            int at = 0;
            const bool ticked = popup->SelectedRows().Find(TQDBCustomData::IndexBookmark(i), at);
            rows << QStringLiteral("%1%2 %3").arg(ticked ? QStringLiteral("*") : QString(), data->ListValue(i)).arg(data->RecordsOf(i));
        }
        return rows;
    }
    // Moves the popup to a value and turns its tick with Space.
    void toggle(TQDBPopupFilterList *popup, const char *value)
    {
        auto *data = qobject_cast<TQDBFilterData *>(popup->DataSet());
        data->SetRecNo(data->IndexOfKey(QString::fromLatin1(value)) + 1);
        QTest::keyClick(popup, Qt::Key_Space);
    }
    QStringList filterList(const char *field) { return column(field)->GetFilterList()->ToStringList(); }

    TMemTable table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(FilterList, TheTitleButtonListsTheValuesAndReturnTakesTheTicks)
{
    TQDBPopupFilterList *popup = open("city");
    ASSERT_TRUE(popup);
    EXPECT_EQ(listed(popup), QStringList({"(Empty) 1", "berlin 2", "Bern 1", "Oslo 2", "Paris 3", "Rome 1"}));
    EXPECT_TRUE(popup->OKButton()->isVisible());
    // Every column, the ticks' too, fits beside the scroll bar.
    const QRect counts = popup->CellRect(popup->ColCount() - 1, 1);
    EXPECT_LE(counts.right(), popup->viewport()->width());
    toggle(popup, "oslo");
    popup->grab().save(QStringLiteral("/tmp/popup.png"));
    grid.window()->grab().save(QStringLiteral("/tmp/grid.png"));
    toggle(popup, "");
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_FALSE(popup && popup->isVisible());
    EXPECT_EQ(filterList("city"), QStringList({"", "Oslo"}));
    EXPECT_EQ(table.RecordCount(), 3);

    // Opened again: the ticks are there; Esc leaves the filter as it was.
    QApplication::processEvents(); // the closed list goes
    popup = open("city");
    ASSERT_TRUE(popup);
    EXPECT_EQ(listed(popup), QStringList({"*(Empty) 1", "*Oslo 2"})); // only the rows shown
    toggle(popup, "oslo");
    QTest::keyClick(popup, Qt::Key_Escape);
    EXPECT_EQ(filterList("city"), QStringList({"", "Oslo"}));

    // Load-all from the value column's title brings back the values of hidden rows.
    QApplication::processEvents();
    popup = open("city");
    ASSERT_TRUE(popup);
    popup->TitleClick(TQDBPopupFilterList::cmLoadAll);
    EXPECT_EQ(listed(popup).size(), 6);
    EXPECT_EQ(table.RecordCount(), 3); // the grid's filter is back in force
    toggle(popup, "Rome");
    popup->OKButton()->click();
    EXPECT_EQ(filterList("city"), QStringList({"", "Oslo", "Rome"}));
    EXPECT_EQ(table.RecordCount(), 4);
}

TEST_F(FilterList, CheckedFirstAndTheOtherColumnsFilters)
{
    grid.GetFilterGrid()->SwitchOptions({foCheckedFirst}, true);
    column("city")->GetFilterList()->SetText(QStringLiteral("Rome\nBern"));
    grid.GetFilterGrid()->SwitchOptions({foLoadAllItems}, true);
    TQDBPopupFilterList *popup = open("city");
    ASSERT_TRUE(popup);
    EXPECT_EQ(listed(popup).mid(0, 3), QStringList({"*Bern 1", "*Rome 1", "(Empty) 1"}));
    QTest::keyClick(popup, Qt::Key_Escape);

    // Numbers list by value, not as text.
    QApplication::processEvents();
    grid.GetFilterGrid()->SwitchOptions({foCheckedFirst, foLoadAllItems}, false);
    column("city")->GetFilterList()->Clear();
    column("qty")->SetFilterText(QStringLiteral("qty < 60"));
    popup = open("qty");
    ASSERT_TRUE(popup);
    EXPECT_EQ(listed(popup), QStringList({"30 1", "37 1", "44 1", "51 1", "58 1"}));
}

TEST_F(FilterList, KeysTickSearchAndPaste)
{
    TQDBPopupFilterList *popup = open("city");
    ASSERT_TRUE(popup);
    auto *data = qobject_cast<TQDBFilterData *>(popup->DataSet());
    // Typing finds a value; a blank soon after letters is part of what is typed.
    QTest::keyClicks(popup, QStringLiteral("os"));
    EXPECT_EQ(data->ListValue(data->RecordIndex()), "Oslo");
    QTest::keyClick(popup, Qt::Key_Space);
    EXPECT_EQ(popup->SearchText(), "os ");
    EXPECT_EQ(popup->CheckedCount(), 0);
    QTest::keyClick(popup, Qt::Key_Escape); // drops the text, keeps the list open
    EXPECT_TRUE(popup->isVisible());
    EXPECT_EQ(popup->SearchText(), "");
    QTest::keyClick(popup, Qt::Key_Space);
    EXPECT_EQ(popup->CheckedCount(), 1);

    // The title of the ticks ticks every value, or clears them all.
    popup->TitleClick(TQDBPopupFilterList::cmCheckAll);
    EXPECT_EQ(popup->CheckedCount(), 0);
    popup->TitleClick(TQDBPopupFilterList::cmCheckAll);
    EXPECT_EQ(popup->CheckedCount(), 6);
    popup->TitleClick(TQDBPopupFilterList::cmCheckAll);

    // Pasted lines tick their values; the text after a tab and unknown values are passed over.
    QGuiApplication::clipboard()->setText(QStringLiteral("PARIS\t3\r\nnowhere\nbern\n"));
    QTest::keyClick(popup, Qt::Key_V, Qt::ControlModifier);
    // Blank lines tick nothing (not the empty value), and a megabyte of unknown text neither.
    QString junk = QStringLiteral("\n\t\n  \n");
    while (junk.size() < (1 << 20))
        junk += QStringLiteral("no such town %1\tpaste\n").arg(junk.size());
    QGuiApplication::clipboard()->setText(junk + QStringLiteral("rome"));
    EXPECT_EQ(popup->PasteFromClipboard(), 1);
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(filterList("city"), QStringList({"Bern", "Paris", "Rome"}));
    EXPECT_EQ(table.RecordCount(), 5); // "paris" is ticked with "Paris"
}

TEST_F(FilterList, AutoApplyAndTheCommands)
{
    grid.GetFilterGrid()->SwitchOptions({foAutoApplyList, foAddSelected}, true);
    grid.SetOptions(grid.GetOptions() + TQDBGridOptions{dgMultiSelect});
    table.First();
    grid.SelectedRows().SetCurrentRowSelected(true); // Paris
    table.Next();
    grid.SelectedRows().SetCurrentRowSelected(true); // berlin
    TQDBPopupFilterList *popup = open("city");
    ASSERT_TRUE(popup);
    EXPECT_FALSE(popup->OKButton()->isVisible());
    ASSERT_TRUE(popup->CommandButton(TQDBPopupFilterList::cmAddSelected)->isVisible());
    popup->CommandButton(TQDBPopupFilterList::cmAddSelected)->click();
    EXPECT_EQ(filterList("city"), QStringList({"berlin", "Paris"})); // applied at once
    EXPECT_EQ(table.RecordCount(), 5);
    toggle(popup, "paris");
    EXPECT_EQ(filterList("city"), QStringList({"berlin"}));
    toggle(popup, "berlin"); // the last tick gone: no filter, and the list closes
    EXPECT_TRUE(filterList("city").isEmpty());
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(table.RecordCount(), 10);

    // Remove filter clears the column's condition.
    QApplication::processEvents();
    column("city")->SetFilterText(QStringLiteral("city = 'Rome'"));
    EXPECT_EQ(table.RecordCount(), 1);
    popup = open("city");
    ASSERT_TRUE(popup);
    popup->CommandButton(TQDBPopupFilterList::cmRemoveFilter)->click();
    EXPECT_EQ(column("city")->GetFilterText(), "");
    EXPECT_EQ(table.RecordCount(), 10);

    // Alt+Down drops the current column's list from the keyboard.
    QApplication::processEvents();
    grid.setFocus();
    grid.SetCol(grid.DataToRawColumn(column("qty")->Index()));
    QTest::keyClick(&grid, Qt::Key_Down, Qt::AltModifier);
    popup = grid.findChild<TQDBPopupFilterList *>();
    ASSERT_TRUE(popup && popup->isVisible());
    EXPECT_EQ(popup->GetColumns()->Items(0)->GetTitle()->GetCaption(), "qty");
}

TEST_F(FilterList, NarrowingKeepsTheTicksOfTheValuesItHides)
{
    grid.GetFilterGrid()->SwitchOptions({foIncrementalList}, true);
    TQDBPopupFilterList *popup = open("city");
    ASSERT_TRUE(popup);
    toggle(popup, "Rome");
    QTest::keyClicks(popup, QStringLiteral("b"));
    EXPECT_EQ(listed(popup), QStringList({"berlin 2", "Bern 1"}));
    EXPECT_EQ(popup->CheckedCount(), 1);
    popup->ToggleCheck(); // berlin; a Space this soon would go on with the text
    // A pasted value the narrowed list hides is looked for among all the records.
    QGuiApplication::clipboard()->setText(QStringLiteral("OSLO\nnowhere"));
    EXPECT_EQ(popup->PasteFromClipboard(), 1);
    QTest::keyClick(popup, Qt::Key_Escape); // the text, and the narrowing with it
    EXPECT_EQ(listed(popup).filter(QStringLiteral("*")), QStringList({"*berlin 2", "*Oslo 2", "*Rome 1"}));
    QTest::keyClicks(popup, QStringLiteral("p"));
    popup->TitleClick(TQDBPopupFilterList::cmCheckAll); // clears the hidden ticks too
    EXPECT_EQ(popup->CheckedCount(), 0);
    popup->ToggleCheck();
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(filterList("city"), QStringList({"Paris"}));
}
