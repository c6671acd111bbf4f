#include <gmock/gmock.h>

#include <QApplication>
#include <QStandardPaths>

int main(int argc, char **argv)
{
    // Widgets need an application; settings written by tests go to a test location.
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("qdbtests"));
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
