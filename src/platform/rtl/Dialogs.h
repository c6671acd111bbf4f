#pragma once

#include "Set.h"

#include <QObject>
#include <QString>

#include <functional>

namespace qdb {

namespace MsgDlg {
Q_NAMESPACE
enum TMsgDlgType { mtWarning, mtError, mtInformation, mtConfirmation, mtCustom };
Q_ENUM_NS(TMsgDlgType)
enum TMsgDlgBtn { mbYes, mbNo, mbOK, mbCancel, mbAbort, mbRetry, mbIgnore, mbAll, mbNoToAll, mbYesToAll, mbHelp, mbClose };
Q_ENUM_NS(TMsgDlgBtn)
} // namespace MsgDlg
using MsgDlg::TMsgDlgBtn;
using MsgDlg::TMsgDlgType;
using namespace MsgDlg;
using TMsgDlgButtons = Set<TMsgDlgBtn>;

// What a dialog returns: the button the user chose.
using TModalResult = int;
inline constexpr TModalResult mrNone = 0, mrOk = 1, mrCancel = 2, mrAbort = 3, mrRetry = 4, mrIgnore = 5,
                              mrYes = 6, mrNo = 7, mrClose = 8, mrHelp = 9, mrAll = 12, mrNoToAll = 13,
                              mrYesToAll = 14;

// Answers a message dialog in place of the user; tests install one so that nothing waits
// in a modal loop.
using TMessageDlgHook =
    std::function<TModalResult(const QString &message, TMsgDlgType type, TMsgDlgButtons buttons)>;

// Installs a hook (an empty one restores the real dialog) and returns the previous one.
TMessageDlgHook SetMessageDlgHook(TMessageDlgHook hook);

// Asks the user; the window title follows the type ("Warning", "Error", "Information",
// "Confirm") and the application's name for mtCustom.
TModalResult MessageDlg(const QString &message, TMsgDlgType type, TMsgDlgButtons buttons);
void ShowMessage(const QString &message);

// Replaces the dialog hook for its lifetime.
class ScopedMessageDlgHook
{
public:
    explicit ScopedMessageDlgHook(TMessageDlgHook hook) : previous_(SetMessageDlgHook(std::move(hook))) {}
    ~ScopedMessageDlgHook() { SetMessageDlgHook(std::move(previous_)); }
    ScopedMessageDlgHook(const ScopedMessageDlgHook &) = delete;
    ScopedMessageDlgHook &operator=(const ScopedMessageDlgHook &) = delete;

private:
    TMessageDlgHook previous_;
};

} // namespace qdb
