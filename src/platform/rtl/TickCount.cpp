#include "TickCount.h"

#include <QElapsedTimer>

namespace qdb {

namespace {
std::function<qint64()> &source()
{
    static std::function<qint64()> s;
    return s;
}
} // namespace

qint64 GetTickCount()
{
    if (source())
        return source()();
    static QElapsedTimer clock;
    if (!clock.isValid())
        clock.start();
    return clock.elapsed();
}

void SetTickCountSource(std::function<qint64()> s)
{
    source() = std::move(s);
}

} // namespace qdb
