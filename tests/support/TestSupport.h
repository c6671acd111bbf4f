#pragma once

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/FormatSettings.h"

#include <QImage>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>
#include <ostream>

namespace qdb {

// Replaces the format settings for a test and puts the previous ones back.
class ScopedFormatSettings
{
public:
    explicit ScopedFormatSettings(const TFormatSettings &fs) : saved_(FormatSettings()) { FormatSettings() = fs; }
    ~ScopedFormatSettings() { FormatSettings() = saved_; }
    ScopedFormatSettings(const ScopedFormatSettings &) = delete;
    ScopedFormatSettings &operator=(const ScopedFormatSettings &) = delete;

private:
    TFormatSettings saved_;
};

// Invariant settings with day-first dates ("dd.mm.yyyy") and a comma decimal separator.
TFormatSettings GermanStyleSettings();

// Answers every message dialog with OK and keeps its text, for as long as it lives.
class MessageLog
{
public:
    MessageLog()
        : hook_([this](const QString &text, TMsgDlgType, TMsgDlgButtons) {
              texts << text;
              return mrOk;
          })
    {
    }
    QStringList texts;

private:
    ScopedMessageDlgHook hook_;
};

// Presses Esc on a progress window as soon as one shows, for as long as it lives.
class ProgressEscaper
{
public:
    ProgressEscaper();
    // Whether a progress window showed.
    bool Seen() const { return seen_; }

private:
    QTimer timer_;
    bool seen_ = false;
};

// How many colours a picture holds: a drawn shape has several, a blank area one.
int DistinctColors(const QImage &image);

// Reads a file as UTF-8 text; empty when missing.
QString ReadTextFile(const QString &path);
void WriteTextFile(const QString &path, const QByteArray &bytes);

} // namespace qdb

// Lets GoogleTest print Qt strings in failure messages.
QT_BEGIN_NAMESPACE
inline void PrintTo(const QString &s, std::ostream *os)
{
    *os << '"' << s.toStdString() << '"';
}
inline void PrintTo(const QStringList &list, std::ostream *os)
{
    *os << '{';
    for (qsizetype i = 0; i < list.size(); ++i)
        *os << (i ? ", \"" : "\"") << list[i].toStdString() << '"';
    *os << '}';
}
QT_END_NAMESPACE
