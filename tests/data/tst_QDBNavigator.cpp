// The package's navigator and data controls: captions, the buttons' look in each drawing
// style and at any screen scaling, and the keyboard.

#include "data/QDBNavigator.h"

#include "TestSupport.h"

#include "DbTestSupport.h"

#include "platform/db/MemTable.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

TEST(QDBNavigator, CaptionsFallBackToTheDefaults)
{
    TQDBNavigator navigator;
    EXPECT_EQ(navigator.Button(nbPrior)->text(), ""); // no captions unless asked for
    EXPECT_EQ(navigator.Button(nbPrior)->accessibleName(), "Prior");
    navigator.Captions()->SetText(QStringLiteral("A\n"));
    navigator.SetShowCaptions(true);
    EXPECT_EQ(navigator.Button(nbFirst)->text(), "A");
    EXPECT_EQ(navigator.Button(nbPrior)->text(), "Prior");
    EXPECT_EQ(navigator.Button(nbCancelUpdates)->text(), "Cancel Updates");
    EXPECT_EQ(navigator.Button(nbFirst)->accessibleName(), "A");
    navigator.Captions()->SetText(QStringLiteral("&Go"));
    EXPECT_EQ(navigator.Button(nbFirst)->accessibleName(), "Go");
    navigator.Hints()->SetText(QStringLiteral("Start"));
    EXPECT_EQ(navigator.Button(nbFirst)->toolTip(), "Start");
    EXPECT_EQ(navigator.Button(nbFirst)->accessibleName(), "Go");
}

TEST(QDBNavigator, ButtonsAreDrawnInEachStyleAndReachedByTab)
{
    RegisterDBTypes();
    TMemTable table;
    table.FieldDefs().Add(QStringLiteral("ID"), ftInteger);
    table.CreateDataSet();
    for (int i = 1; i <= 3; ++i)
        table.AppendRecord({i});
    table.First();
    table.Next();
    TDataSource source;
    source.SetDataSet(&table);
    QWidget form;
    auto *navigator = new TQDBNavigator(&form);
    navigator->SetDataSource(&source);
    navigator->SetShowCaptions(true);
    QAbstractButton *next = navigator->Button(nbNext);
    const QSize beside = next->sizeHint();
    navigator->SetLayout(blGlyphTop);
    EXPECT_GT(next->sizeHint().height(), beside.height()); // the caption goes under the glyph
    EXPECT_LT(next->sizeHint().width(), beside.width());
    navigator->resize(navigator->sizeHint());
    form.resize(navigator->size());
    form.show();
    QApplication::setActiveWindow(&form);
    QApplication::processEvents();

    // The test also runs at 150%: pictures at the screen's density, a face in each style.
    const QImage themed = next->grab().toImage();
    EXPECT_EQ(themed.size(), next->size() * next->devicePixelRatioF());
    EXPECT_GT(DistinctColors(themed), 2);
    navigator->SetDrawingStyle(gdsGradient);
    EXPECT_NE(next->grab().toImage(), themed);
    navigator->SetDrawingStyle(gdsThemed);
    navigator->SetFlat(true);
    EXPECT_NE(next->grab().toImage(), themed);
    navigator->SetFlat(false);
    EXPECT_EQ(next->grab().toImage(), themed);

    // Tab goes from button to button, the keyboard presses them.
    navigator->Button(nbPrior)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), next);
    QTest::keyClick(next, Qt::Key_Space);
    EXPECT_EQ(table.RecNo(), 3);
}
