// The tools of the grid's user: the tool menu on the titles and the columns dialog.

#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "dialogs/QDBLists.h"
#include "dialogs/QDBToolMenu.h"

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

class GridTools : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(30);
        source.SetDataSet(table.get());
        grid.setObjectName(QStringLiteral("Grid1"));
        grid.resize(700, 300);
        grid.SetDataSource(&source);
        grid.GetSettings()->SetIniFile(true);
        grid.GetSettings()->SetFileName(dir.filePath(QStringLiteral("layout.ini")));
        grid.show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    // Right-clicks a cell of the grid; the menu that opened, if any.
    TQDBToolMenu *rightClick(int col, int row)
    {
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
        const QPoint at = grid.CellRect(col, row).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, grid.viewport()->mapToGlobal(at));
        QApplication::sendEvent(grid.viewport(), &event);
        return qobject_cast<TQDBToolMenu *>(QApplication::activePopupWidget());
    }
    TQDBToolMenu *titleMenu(const char *field = "Qty") { return rightClick(grid.DataToRawColumn(column(field)->Index()), 0); }
    bool enabled(const char *item)
    {
        TQDBToolMenu *menu = titleMenu();
        return menu && menu->Item(QString::fromLatin1(item)) && menu->Item(QString::fromLatin1(item))->isEnabled();
    }
    void trigger(const QString &item)
    {
        TQDBToolMenu *menu = titleMenu();
        ASSERT_NE(menu, nullptr);
        ASSERT_NE(menu->Item(item), nullptr) << item.toStdString();
        menu->Item(item)->trigger();
    }

    QTemporaryDir dir;
    std::unique_ptr<TMemTable> table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(GridTools, TheMenuOpensOnTitlesAndIndicatorAndOffersWhatCanAct)
{
    TQDBToolMenu *menu = titleMenu("Name");
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->Column(), column("Name"));
    EXPECT_NE(rightClick(0, 3), nullptr); // the indicator
    EXPECT_EQ(rightClick(grid.DataToRawColumn(1), 3), nullptr); // a data cell: the application's

    EXPECT_FALSE(enabled("clearSorting"));
    grid.SetOrderFields(QStringLiteral("Qty DESC"));
    EXPECT_TRUE(enabled("clearSorting"));
    trigger(QStringLiteral("clearSorting"));
    EXPECT_EQ(grid.GetOrderFields(), "");

    EXPECT_FALSE(enabled("restoreDefaults"));
    trigger(QStringLiteral("column:Qty"));
    EXPECT_FALSE(column("Qty")->GetVisible());
    EXPECT_FALSE(titleMenu("Name")->Item(QStringLiteral("column:Qty"))->isChecked());
    ASSERT_TRUE(enabled("restoreDefaults"));
    trigger(QStringLiteral("restoreDefaults"));
    EXPECT_TRUE(column("Qty")->GetVisible());

    EXPECT_EQ(titleMenu()->Item(QStringLiteral("selection")), nullptr); // no multi-select
    grid.SetOptions(grid.GetOptions() + dgMultiSelect);
    grid.SetMultiSelectOptions({msRows, msCols});
    trigger(QStringLiteral("selectColumns"));
    EXPECT_EQ(grid.GetMultiSelect(), msCols);
    EXPECT_FALSE(enabled("clearSelection"));

    // Only where the layout can go and is there to load.
    EXPECT_TRUE(enabled("saveLayout"));
    EXPECT_FALSE(enabled("loadLayout"));
    trigger(QStringLiteral("saveLayout"));
    EXPECT_TRUE(enabled("loadLayout"));
    trigger(QStringLiteral("eraseLayout"));
    EXPECT_FALSE(enabled("eraseLayout"));
    grid.setObjectName(QString());
    EXPECT_FALSE(enabled("saveLayout"));

    // The application's own items.
    grid.OnToolMenu = [](TQCustomDBGrid *, TQDBToolMenu *m) { m->addAction(QStringLiteral("Mine"))->setObjectName(QStringLiteral("mine")); };
    EXPECT_NE(titleMenu()->findChild<QAction *>(QStringLiteral("mine")), nullptr);

    table->Close();
    EXPECT_FALSE(enabled("copy"));
    EXPECT_FALSE(enabled("fitColumns"));
}

TEST_F(GridTools, TheColumnsDialogChangesTheGridAsItGoesAndUndoesExactly)
{
    TQDBGridColumns *columns = grid.GetColumns();
    columns->SetState(csCustomized);
    column("Name")->GetTitle()->SetCaption(QStringLiteral("Customer"));
    TStringList before;
    columns->GetSettings(before);
    const TQColumnValues assignedQty = column("Qty")->AssignedValues();

    TQDBColumnsDialog dialog(&grid);
    QListWidget *list = dialog.List();
    ASSERT_EQ(list->count(), 6);
    EXPECT_EQ(list->item(1)->text(), "Customer");
    list->item(1)->setCheckState(Qt::Unchecked);
    EXPECT_FALSE(column("Name")->GetVisible());
    list->setCurrentRow(2); // Qty
    QTest::mouseClick(dialog.findChildren<QPushButton *>().at(0), Qt::LeftButton); // up
    EXPECT_EQ(column("Qty")->Index(), 1);
    dialog.CaptionEdit()->selectAll();
    QTest::keyClicks(dialog.CaptionEdit(), QStringLiteral("Amount"));
    EXPECT_EQ(column("Qty")->GetTitle()->GetCaption(), "Amount");
    dialog.WidthEdit()->setValue(123);
    EXPECT_EQ(column("Qty")->GetWidth(), 123);
    dialog.AlignmentEdit()->setCurrentIndex(2);
    EXPECT_EQ(column("Qty")->GetAlignment(), taCenter);
    // A drag moves the first item to the end.
    list->model()->moveRows(QModelIndex(), 0, 1, QModelIndex(), list->count());
    EXPECT_EQ(column("ID")->Index(), 5);

    dialog.reject();
    TStringList after;
    columns->GetSettings(after);
    EXPECT_EQ(after.ToStringList(), before.ToStringList());
    EXPECT_EQ(column("Qty")->AssignedValues(), assignedQty);
    EXPECT_EQ(column("Qty")->GetTitle()->GetCaption(), "Qty");
    EXPECT_EQ(column("Name")->GetTitle()->GetCaption(), "Customer");

    // The grid's own columns stay its own after a cancel, and become the user's after OK.
    columns->SetState(csDefault);
    {
        TQDBColumnsDialog cancelled(&grid);
        cancelled.List()->item(0)->setCheckState(Qt::Unchecked);
        cancelled.reject();
    }
    EXPECT_EQ(columns->State(), csDefault);
    EXPECT_TRUE(column("ID")->GetVisible());
    {
        TQDBColumnsDialog kept(&grid);
        kept.List()->item(0)->setCheckState(Qt::Unchecked);
        kept.accept();
    }
    EXPECT_EQ(columns->State(), csCustomized);
    EXPECT_FALSE(column("ID")->GetVisible());
}
