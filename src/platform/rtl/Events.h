#pragma once

#include <QObject>

#include <functional>

namespace qdb {

using TObject = QObject;
// Events take their sender first.
using TNotifyEvent = std::function<void(TObject *sender)>;

// An event handler that can be compared: two handlers are the same when both are empty
// or both carry the same non-null tag (usually the object that installed it), the way
// method pointers compare by object and method.
template<typename Signature>
class TMethod
{
public:
    TMethod() = default;
    TMethod(std::nullptr_t) {}
    template<typename F>
    TMethod(F &&fn, const void *tag = nullptr) : fn_(std::forward<F>(fn)), tag_(tag)
    {
    }
    explicit operator bool() const { return bool(fn_); }
    template<typename... A>
    auto operator()(A &&...args) const
    {
        return fn_(std::forward<A>(args)...);
    }
    const void *Tag() const { return tag_; }
    friend bool operator==(const TMethod &a, const TMethod &b)
    {
        if (!a.fn_ || !b.fn_)
            return !a.fn_ && !b.fn_;
        return a.tag_ && a.tag_ == b.tag_;
    }

private:
    std::function<Signature> fn_;
    const void *tag_ = nullptr;
};

// Calls an event when one is assigned.
template<typename F, typename... A>
void Fire(const F &event, A &&...args)
{
    if (event)
        event(std::forward<A>(args)...);
}

} // namespace qdb
