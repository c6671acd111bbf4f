// The record navigator clicked button by button: which buttons it offers as the data set
// moves and edits, what each does, and what happens to an action the data set refuses.

#include "platform/dbctrls/DBNavigator.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/MemTable.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class Navigator : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        test::AddField(table, QStringLiteral("ID"), ftInteger);
        test::AddField(table, QStringLiteral("Name"), ftString, 20)->SetRequired(true);
        table.CreateDataSet();
        for (int i = 1; i <= 3; ++i)
            table.AppendRecord({i, QStringLiteral("row %1").arg(i)});
        table.First();
        source.SetDataSet(&table);
        navigator.SetDataSource(&source);
        navigator.show();
        QApplication::processEvents();
    }
    void click(TNavigateBtn button) { QTest::mouseClick(navigator.Button(button), Qt::LeftButton); }
    // The buttons that can be clicked now, as a set.
    TNavButtonSet enabled()
    {
        TNavButtonSet set;
        for (int b = 0; b < NavigatorButtonCount; ++b)
            if (navigator.Button(TNavigateBtn(b))->isEnabled())
                set += TNavigateBtn(b);
        return set;
    }

    TMemTable table;
    TDataSource source;
    TDBNavigator navigator;
};

} // namespace

TEST_F(Navigator, ButtonsFollowThePlaceAndTheState)
{
    const TNavButtonSet browsing{nbInsert, nbDelete, nbEdit, nbRefresh};
    EXPECT_EQ(enabled(), browsing + TNavButtonSet({nbNext, nbLast})); // at the first record
    click(nbNext);
    EXPECT_EQ(table.RecNo(), 2);
    EXPECT_EQ(enabled(), browsing + TNavButtonSet({nbFirst, nbPrior, nbNext, nbLast}));
    click(nbLast);
    EXPECT_EQ(enabled(), browsing + TNavButtonSet({nbFirst, nbPrior}));
    click(nbPrior);
    click(nbFirst);
    EXPECT_EQ(table.RecNo(), 1);

    click(nbEdit);
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(enabled(), TNavButtonSet({nbNext, nbLast, nbInsert, nbDelete, nbPost, nbCancel, nbRefresh}));
    table.FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("changed"));
    click(nbPost);
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(table.FieldByName(QStringLiteral("Name"))->AsString(), "changed");
    click(nbInsert);
    EXPECT_EQ(table.State(), dsInsert);
    click(nbCancel);
    EXPECT_EQ(table.RecordCount(), 3);

    // A read-only data set is moved through, not changed; a closed one offers nothing.
    table.SetReadOnly(true);
    click(nbNext);
    EXPECT_EQ(enabled(), TNavButtonSet({nbFirst, nbPrior, nbNext, nbLast, nbRefresh}));
    table.Close();
    EXPECT_TRUE(enabled().IsEmpty());
    table.SetReadOnly(false);
    table.Open();
    navigator.setEnabled(false);
    EXPECT_TRUE(enabled().IsEmpty());
    navigator.setEnabled(true);
    EXPECT_FALSE(enabled().IsEmpty());
}

TEST_F(Navigator, DeletingAsksAndTheEventsSurroundTheAction)
{
    QStringList events;
    navigator.BeforeAction = [&](TObject *, TNavigateBtn b) { events << QStringLiteral("before %1 at %2").arg(b).arg(table.RecNo()); };
    navigator.OnClick = [&](TObject *, TNavigateBtn b) { events << QStringLiteral("click %1 at %2").arg(b).arg(table.RecNo()); };
    click(nbNext);
    EXPECT_EQ(events, QStringList({"before 2 at 1", "click 2 at 2"}));

    {
        const ScopedMessageDlgHook no([](const QString &, TMsgDlgType, TMsgDlgButtons) { return mrCancel; });
        click(nbDelete);
    }
    EXPECT_EQ(table.RecordCount(), 3);
    {
        MessageLog yes;
        click(nbDelete);
        EXPECT_EQ(yes.texts, QStringList({"Delete record?"}));
    }
    EXPECT_EQ(table.RecordCount(), 2);
    navigator.SetConfirmDelete(false);
    click(nbDelete);
    EXPECT_EQ(table.RecordCount(), 1);
}

TEST_F(Navigator, ARefusedPostIsShownAndKeepsTheRecord)
{
    MessageLog messages;
    click(nbInsert);
    table.FieldByName(QStringLiteral("ID"))->SetAsInteger(9);
    click(nbPost); // the name is required
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts[0].contains(QStringLiteral("Name"))) << messages.texts[0].toStdString();
    EXPECT_EQ(table.State(), dsInsert);
    EXPECT_EQ(table.FieldByName(QStringLiteral("ID"))->AsInteger(), 9);
    EXPECT_TRUE(navigator.Button(nbPost)->isEnabled());
}

TEST_F(Navigator, ButtonsShownHintsAndLayout)
{
    // The ten classic buttons, each reachable by Tab and named by its hint.
    for (int b = 0; b < NavigatorButtonCount; ++b) {
        QAbstractButton *button = navigator.Button(TNavigateBtn(b));
        EXPECT_EQ(button->isVisible(), b <= nbRefresh) << b;
        EXPECT_TRUE(button->focusPolicy() & Qt::TabFocus);
        EXPECT_FALSE(button->icon().isNull());
    }
    EXPECT_EQ(navigator.Button(nbPost)->accessibleName(), "Post edit");
    navigator.Hints()->SetText(QStringLiteral("Start\n\nOnward"));
    EXPECT_EQ(navigator.Button(nbFirst)->toolTip(), "Start");
    EXPECT_EQ(navigator.Button(nbPrior)->toolTip(), "Prior record");
    EXPECT_EQ(navigator.Button(nbNext)->toolTip(), "Onward");

    navigator.SetVisibleButtons({nbPrior, nbNext, nbApplyUpdates});
    EXPECT_FALSE(navigator.Button(nbFirst)->isVisible());
    EXPECT_TRUE(navigator.Button(nbApplyUpdates)->isVisible());
    EXPECT_FALSE(navigator.Button(nbApplyUpdates)->isEnabled()); // nothing cached to apply
    navigator.resize(300, 40);
    QApplication::processEvents();
    EXPECT_LT(navigator.Button(nbPrior)->x(), navigator.Button(nbNext)->x());
    navigator.SetKind(dbnVertical);
    navigator.resize(40, 300);
    QApplication::processEvents();
    EXPECT_LT(navigator.Button(nbPrior)->y(), navigator.Button(nbNext)->y());
}
