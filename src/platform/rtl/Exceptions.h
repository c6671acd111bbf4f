#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace qdb {

// The root of every error the library raises. It carries a translated,
// user-facing message; what() gives the same text in UTF-8.
class Exception : public std::exception
{
public:
    explicit Exception(QString message);
    const QString &Message() const noexcept { return message_; }
    const char *what() const noexcept override { return utf8_.constData(); }

private:
    QString message_;
    QByteArray utf8_;
};

#define QDB_DECLARE_EXCEPTION(Name, Base)                  \
    class Name : public Base                               \
    {                                                      \
    public:                                                \
        using Base::Base;                                  \
    };

// A silent exception: it unwinds an operation without an error message.
QDB_DECLARE_EXCEPTION(EAbort, Exception)
QDB_DECLARE_EXCEPTION(EConvertError, Exception)
QDB_DECLARE_EXCEPTION(EVariantError, Exception)
QDB_DECLARE_EXCEPTION(EListError, Exception)
QDB_DECLARE_EXCEPTION(EStringListError, EListError)
QDB_DECLARE_EXCEPTION(EPropertyError, Exception)
QDB_DECLARE_EXCEPTION(EStreamError, Exception)
QDB_DECLARE_EXCEPTION(EReadError, EStreamError)
QDB_DECLARE_EXCEPTION(EWriteError, EStreamError)
QDB_DECLARE_EXCEPTION(EFOpenError, EStreamError)
QDB_DECLARE_EXCEPTION(EFCreateError, EStreamError)
QDB_DECLARE_EXCEPTION(EIniFileException, Exception)
QDB_DECLARE_EXCEPTION(EInvalidOperation, Exception)
QDB_DECLARE_EXCEPTION(EInvalidGridOperation, Exception)
QDB_DECLARE_EXCEPTION(EDatabaseError, Exception)
// A read the user cancelled: they know, so controls tell them nothing more.
QDB_DECLARE_EXCEPTION(EReadCancelled, EDatabaseError)

// Unwinds the current operation silently.
[[noreturn]] void Abort();

// Raises an EDatabaseError with the given message.
[[noreturn]] void DatabaseError(const QString &message);

} // namespace qdb
