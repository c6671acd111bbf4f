#pragma once

#include <cstddef>
#include <iterator>

namespace qdb {

// Keeps a BeginUpdate/EndUpdate bracket balanced for a scope, also when an exception
// passes through.
template<typename T>
class UpdateBracket
{
public:
    explicit UpdateBracket(T &target) : target_(target) { target_.BeginUpdate(); }
    ~UpdateBracket() { target_.EndUpdate(); }
    UpdateBracket(const UpdateBracket &) = delete;
    UpdateBracket &operator=(const UpdateBracket &) = delete;

private:
    T &target_;
};

// Iterates a container that is read by position: Get(container, index) gives the value.
template<typename Container, typename Value, Value (*Get)(const Container &, int)>
class IndexIterator
{
public:
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    IndexIterator() = default;
    IndexIterator(const Container *c, int index) : c_(c), index_(index) {}
    Value operator*() const { return Get(*c_, index_); }
    IndexIterator &operator++() { ++index_; return *this; }
    IndexIterator operator++(int) { auto copy = *this; ++index_; return copy; }
    bool operator==(const IndexIterator &o) const { return index_ == o.index_; }

private:
    const Container *c_ = nullptr;
    int index_ = 0;
};

} // namespace qdb
