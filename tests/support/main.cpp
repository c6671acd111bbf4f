#include "platform/rtl/Dialogs.h"

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
    // A message box nobody expected would wait for a click forever: it fails the test instead.
    qdb::SetMessageDlgHook([](const QString &text, qdb::TMsgDlgType, qdb::TMsgDlgButtons) {
        ADD_FAILURE() << "unexpected message box: " << text.toStdString();
        return qdb::mrCancel;
    });
    return RUN_ALL_TESTS();
}
