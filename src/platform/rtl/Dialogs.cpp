#include "Dialogs.h"

#include <QApplication>
#include <QMessageBox>

namespace qdb {

namespace {

TMessageDlgHook &hookSlot()
{
    static TMessageDlgHook hook;
    return hook;
}

struct ButtonMap
{
    TMsgDlgBtn button;
    QMessageBox::StandardButton standard;
    TModalResult result;
};

constexpr ButtonMap buttonMap[] = {
    {mbYes, QMessageBox::Yes, mrYes},
    {mbNo, QMessageBox::No, mrNo},
    {mbOK, QMessageBox::Ok, mrOk},
    {mbCancel, QMessageBox::Cancel, mrCancel},
    {mbAbort, QMessageBox::Abort, mrAbort},
    {mbRetry, QMessageBox::Retry, mrRetry},
    {mbIgnore, QMessageBox::Ignore, mrIgnore},
    {mbAll, QMessageBox::YesToAll, mrAll},
    {mbNoToAll, QMessageBox::NoToAll, mrNoToAll},
    {mbYesToAll, QMessageBox::YesToAll, mrYesToAll},
    {mbHelp, QMessageBox::Help, mrHelp},
    {mbClose, QMessageBox::Close, mrClose},
};

} // namespace

TMessageDlgHook SetMessageDlgHook(TMessageDlgHook hook)
{
    TMessageDlgHook previous = std::move(hookSlot());
    hookSlot() = std::move(hook);
    return previous;
}

TModalResult MessageDlg(const QString &message, TMsgDlgType type, TMsgDlgButtons buttons)
{
    if (hookSlot())
        return hookSlot()(message, type, buttons);

    QMessageBox box(QApplication::activeWindow());
    // A carriage return alone breaks the line where messages come from.
    box.setText(QString(message).replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n')));
    switch (type) {
    case mtWarning:
        box.setIcon(QMessageBox::Warning);
        box.setWindowTitle(QApplication::translate("qdb", "Warning"));
        break;
    case mtError:
        box.setIcon(QMessageBox::Critical);
        box.setWindowTitle(QApplication::translate("qdb", "Error"));
        break;
    case mtInformation:
        box.setIcon(QMessageBox::Information);
        box.setWindowTitle(QApplication::translate("qdb", "Information"));
        break;
    case mtConfirmation:
        box.setIcon(QMessageBox::Question);
        box.setWindowTitle(QApplication::translate("qdb", "Confirm"));
        break;
    case mtCustom:
        box.setWindowTitle(QApplication::applicationName());
        break;
    }
    QMessageBox::StandardButtons standard;
    for (const ButtonMap &m : buttonMap)
        if (buttons.Contains(m.button))
            standard |= m.standard;
    box.setStandardButtons(standard ? standard : QMessageBox::Ok);
    const int chosen = box.exec();
    for (const ButtonMap &m : buttonMap)
        if (buttons.Contains(m.button) && m.standard == chosen)
            return m.result;
    return chosen == QMessageBox::Ok ? mrOk : mrCancel;
}

void ShowMessage(const QString &message)
{
    MessageDlg(message, mtCustom, {mbOK});
}

} // namespace qdb
