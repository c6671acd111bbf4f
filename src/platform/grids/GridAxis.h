#pragma once

#include <QtGlobal>

#include <vector>

namespace qdb {

// One direction of a grid: rows or columns. Cells have sizes (a default and per-cell
// overrides), a number of fixed cells at the start that never scroll, and the first
// scrolled cell. Positions come from prefix sums rebuilt lazily after a change, so that
// hit-testing is a binary search.
class GridAxis
{
public:
    int Count() const { return count_; }
    void SetCount(int count);
    int Fixed() const { return fixed_; }
    void SetFixed(int fixed) { fixed_ = fixed; dirty_ = true; }
    int DefaultSize() const { return defaultSize_; }
    void SetDefaultSize(int size);
    int LineWidth() const { return lineWidth_; }
    void SetLineWidth(int width) { lineWidth_ = width; dirty_ = true; }
    // A negative size hides the cell, line included, when it is minus the line width.
    int Size(int index) const;
    void SetSize(int index, int size);
    // The first scrolled cell (TopRow or LeftCol).
    int First() const { return first_; }
    void SetFirst(int first) { first_ = first; }

    // Where the cell starts in the client area, or -1 when it is scrolled out of view.
    int Position(int index) const;
    // The extent of the fixed cells, lines included.
    int FixedExtent() const;
    // The cell at a client position, -1 outside the cells.
    int CellAt(int pos) const;
    // How many scrolled cells fit wholly in `extent` from the first scrolled cell.
    int VisibleCount(int extent) const;
    // The first scrolled cell that puts `last` at the far edge of `extent`.
    int FirstToShow(int last, int extent) const;
    // The largest first cell that still fills the extent.
    int MaxFirst(int extent) const;
    // Total extent of all cells.
    int TotalExtent() const;

private:
    void rebuild() const;
    int span(int index) const { return Size(index) + lineWidth_; } // size plus its line

    int count_ = 0;
    int fixed_ = 0;
    int defaultSize_ = 24;
    int lineWidth_ = 1;
    int first_ = 0;
    std::vector<int> sizes_; // -2^31 means the default
    mutable std::vector<qint64> offsets_; // offsets_[i]: start of cell i from the first cell
    mutable bool dirty_ = true;
};

} // namespace qdb
