// The grid on a screen of 144 pixels per inch: the application runs at a scale factor of 1.5.

#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "GridPixels.h"
#include "TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QStandardPaths>

using namespace qdb;
using namespace qdb::test;

TEST(DBGridHiDpi, LoadsTheImagesDrawnForItsDensity)
{
    auto table = MakeOrders(20);
    TDataSource source;
    source.SetDataSet(table.get());
    TQDBGrid grid;
    grid.resize(500, 300);
    grid.SetDataSource(&source);
    grid.show();
    ASSERT_EQ(grid.devicePixelRatioF(), 1.5);
    EXPECT_EQ(grid.Indicators().PixelSize(), 24); // the "_150" strip, not a scaled one
    EXPECT_EQ(grid.Indicators().Size(), 16);
    const QImage shot = Shot(grid);
    ASSERT_EQ(shot.devicePixelRatio(), 1.5);
    // The current record's arrow is drawn pixel for pixel.
    const QRect cell = grid.CellRect(0, grid.Row());
    const int size = grid.Indicators().Size();
    EXPECT_TRUE(DrawnAt(shot, grid.Indicators().Image(0),
                        QPoint(cell.x() + (cell.width() - size) / 2, cell.y() + (cell.height() - size) / 2)));
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "1.5");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
