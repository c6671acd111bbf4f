#pragma once

#include <QObject>

#include <functional>

namespace qdb {

using TObject = QObject;
// Events take their sender first.
using TNotifyEvent = std::function<void(TObject *sender)>;

// Calls an event when one is assigned.
template<typename F, typename... A>
void Fire(const F &event, A &&...args)
{
    if (event)
        event(std::forward<A>(args)...);
}

} // namespace qdb
