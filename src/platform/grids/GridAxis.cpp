#include "GridAxis.h"

#include <algorithm>
#include <climits>

namespace qdb {

namespace {
constexpr int useDefault = INT_MIN;
}

void GridAxis::SetCount(int count)
{
    count_ = qMax(0, count);
    sizes_.resize(size_t(count_), useDefault);
    fixed_ = qMin(fixed_, count_);
    first_ = qBound(fixed_, first_, qMax(fixed_, count_ - 1));
    dirty_ = true;
}

void GridAxis::SetDefaultSize(int size)
{
    defaultSize_ = size;
    std::fill(sizes_.begin(), sizes_.end(), useDefault);
    dirty_ = true;
}

int GridAxis::Size(int index) const
{
    if (index < 0 || index >= count_)
        return 0;
    const int s = sizes_[size_t(index)];
    return s == useDefault ? defaultSize_ : s;
}

void GridAxis::SetSize(int index, int size)
{
    if (index < 0 || index >= count_)
        return;
    sizes_[size_t(index)] = size;
    dirty_ = true;
}

void GridAxis::rebuild() const
{
    if (!dirty_)
        return;
    offsets_.assign(size_t(count_) + 1, 0);
    for (int i = 0; i < count_; ++i)
        offsets_[size_t(i) + 1] = offsets_[size_t(i)] + qMax(0, span(i));
    dirty_ = false;
}

int GridAxis::FixedExtent() const
{
    rebuild();
    return int(offsets_[size_t(fixed_)]);
}

int GridAxis::TotalExtent() const
{
    rebuild();
    return int(offsets_[size_t(count_)]);
}

int GridAxis::Position(int index) const
{
    if (index < 0 || index >= count_)
        return -1;
    rebuild();
    if (index < fixed_)
        return int(offsets_[size_t(index)]);
    if (index < first_)
        return -1;
    return int(offsets_[size_t(fixed_)] + offsets_[size_t(index)] - offsets_[size_t(first_)]);
}

int GridAxis::CellAt(int pos) const
{
    if (pos < 0 || count_ == 0)
        return -1;
    rebuild();
    const qint64 fixedEnd = offsets_[size_t(fixed_)];
    qint64 absolute = pos;
    int lo = 0, hi = fixed_;
    if (pos >= fixedEnd) { // in the scrolled part: move into the coordinates of all cells
        absolute = pos - fixedEnd + offsets_[size_t(first_)];
        lo = first_;
        hi = count_;
    }
    // The last cell whose start is at or before the position.
    auto begin = offsets_.begin() + lo, end = offsets_.begin() + hi;
    auto it = std::upper_bound(begin, end, absolute);
    if (it == begin)
        return -1;
    const int index = int(it - offsets_.begin()) - 1;
    return absolute < offsets_[size_t(index) + 1] ? index : -1;
}

int GridAxis::VisibleCount(int extent) const
{
    rebuild();
    const qint64 room = extent - offsets_[size_t(fixed_)];
    int n = 0;
    for (int i = first_; i < count_; ++i) {
        if (offsets_[size_t(i) + 1] - offsets_[size_t(first_)] > room)
            break;
        ++n;
    }
    return n;
}

int GridAxis::FirstToShow(int last, int extent) const
{
    rebuild();
    const qint64 room = extent - offsets_[size_t(fixed_)];
    int first = last;
    while (first > fixed_ && offsets_[size_t(last) + 1] - offsets_[size_t(first) - 1] <= room)
        --first;
    return qMax(fixed_, first);
}

int GridAxis::MaxFirst(int extent) const
{
    return count_ > fixed_ ? FirstToShow(count_ - 1, extent) : fixed_;
}

} // namespace qdb
