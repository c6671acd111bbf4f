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

TEST(QDBNavigator, GradientColoursAndFineThemeChangeTheFace)
{
    TQDBNavigator navigator;
    navigator.resize(navigator.sizeHint());
    navigator.show();
    QApplication::processEvents();
    QAbstractButton *next = navigator.Button(nbNext);
    navigator.SetDrawingStyle(gdsGradient);
    const QImage ownColours = next->grab().toImage();
    navigator.SetGradient({QColor(Qt::red), QColor(Qt::blue)});
    const QImage red = next->grab().toImage();
    EXPECT_NE(red, ownColours);
    const QPoint top(red.width() / 2, 2), bottom(red.width() / 2, red.height() - 3);
    EXPECT_GT(red.pixelColor(top).red(), red.pixelColor(bottom).red());
    EXPECT_LT(red.pixelColor(top).blue(), red.pixelColor(bottom).blue());
    navigator.SetDrawingStyle(gdsThemed);
    navigator.SetFine(true);
    const QImage fine = next->grab().toImage();
    navigator.SetFineTheme(true); // changes only lit buttons
    EXPECT_EQ(next->grab().toImage(), fine);
}

TEST(QDBNavigator, ARadioGroupFillsItsFrameOrShowsItsParent)
{
    QWidget form;
    form.setAutoFillBackground(true);
    QPalette pal = form.palette();
    pal.setColor(QPalette::Window, Qt::green);
    form.setPalette(pal);
    auto *group = new TQDBRadioGroup(&form);
    group->setTitle(QStringLiteral("Size"));
    group->Items()->SetText(QStringLiteral("S\nM"));
    QPalette own = group->palette();
    own.setColor(QPalette::Window, Qt::yellow);
    group->setPalette(own);
    group->resize(120, 90);
    form.resize(140, 110);
    form.show();
    QApplication::processEvents();

    // A point in the caption's band and one inside the frame beside the buttons.
    const auto colours = [&form, group] {
        const QImage image = form.grab().toImage();
        const qreal dpr = form.devicePixelRatioF();
        return std::pair{image.pixelColor(QPointF(group->width() - 20, 3).toPoint() * dpr),
                         image.pixelColor(QPointF(group->width() - 20, group->height() - 20).toPoint() * dpr)};
    };
    // Some styles lay a faint veil over the frame.
    const auto near = [](const QColor &a, Qt::GlobalColor b) {
        const QColor c(b);
        return qAbs(a.red() - c.red()) + qAbs(a.green() - c.green()) + qAbs(a.blue() - c.blue()) < 16;
    };
    auto [band, frame] = colours();
    EXPECT_TRUE(near(band, Qt::green)) << band.name().toStdString(); // only the frame is filled
    EXPECT_TRUE(near(frame, Qt::yellow)) << frame.name().toStdString();
    group->SetPartialBackground(false);
    std::tie(band, frame) = colours();
    EXPECT_TRUE(near(band, Qt::yellow)) << band.name().toStdString();
    group->SetParentBackground(true);
    std::tie(band, frame) = colours();
    EXPECT_TRUE(near(frame, Qt::green)) << frame.name().toStdString();
    group->SetParentBackground(false);
    group->SetGradient({QColor(Qt::red), QColor(Qt::blue)});
    std::tie(band, frame) = colours();
    EXPECT_GT(band.red(), frame.red());

    // The check box in the frame rests the buttons while unticked.
    int changes = 0;
    group->OnCheckBoxChanged = [&changes](TObject *) { ++changes; };
    group->SetCheckBox(true);
    group->setChecked(false);
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(group->Button(0)->isEnabled());
}
