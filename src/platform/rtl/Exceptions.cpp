#include "Exceptions.h"

#include <QCoreApplication>

namespace qdb {

Exception::Exception(QString message)
    : message_(std::move(message)), utf8_(message_.toUtf8())
{
}

void Abort()
{
    throw EAbort(QCoreApplication::translate("qdb", "Operation aborted"));
}

void DatabaseError(const QString &message)
{
    throw EDatabaseError(message);
}

} // namespace qdb
