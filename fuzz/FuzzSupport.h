#pragma once

// What every fuzz target shares: one offscreen application, no dialogs, no Qt chatter, and
// the input as text.

#include "platform/rtl/Dialogs.h"

#include <QApplication>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace qdb::fuzz {

// Widgets need an application; Qt allows one a process, so it lives until the end.
inline void EnsureApplication()
{
    if (QCoreApplication::instance())
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        if (type == QtFatalMsg)
            qFatal("%s", qPrintable(message)); // still fatal: a finding
    });
    // A message box would wait for a click that never comes.
    SetMessageDlgHook([](const QString &, TMsgDlgType, TMsgDlgButtons) { return mrCancel; });
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

inline QString Text(const uint8_t *data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
}

inline QByteArray Bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
}

// The first byte picks a variant of the run; the rest is the input.
struct Split
{
    uint8_t choice = 0;
    const uint8_t *data = nullptr;
    size_t size = 0;
};
inline Split TakeChoice(const uint8_t *data, size_t size)
{
    if (size == 0)
        return {0, data, 0};
    return {data[0], data + 1, size - 1};
}

} // namespace qdb::fuzz
