#include "platform/rtl/Dialogs.h"

#include <gtest/gtest.h>

using namespace qdb;

TEST(Dialogs, HookAnswersAndIsRestored)
{
    const ScopedMessageDlgHook none({}); // the test run's own hook out of the way
    QString asked;
    TMsgDlgButtons offered;
    {
        ScopedMessageDlgHook hook([&](const QString &message, TMsgDlgType type, TMsgDlgButtons buttons) {
            asked = message;
            offered = buttons;
            EXPECT_EQ(type, mtConfirmation);
            return mrYes;
        });
        EXPECT_EQ(MessageDlg(QStringLiteral("Delete record?"), mtConfirmation, {mbYes, mbNo}), mrYes);
        {
            ScopedMessageDlgHook inner([](const QString &, TMsgDlgType, TMsgDlgButtons) { return mrNo; });
            EXPECT_EQ(MessageDlg(QStringLiteral("again"), mtConfirmation, {mbYes, mbNo}), mrNo);
        }
        EXPECT_EQ(MessageDlg(QStringLiteral("third"), mtConfirmation, {mbOK}), mrYes);
    }
    EXPECT_EQ(asked, QStringLiteral("third"));
    EXPECT_EQ(offered, TMsgDlgButtons{mbOK});
    EXPECT_FALSE(SetMessageDlgHook({})); // nothing left installed
}
