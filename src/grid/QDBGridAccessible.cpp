#include "QDBGridAccessible.h"

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QPointer>

#include <memory>
#include <vector>

namespace qdb {

namespace {

class GridAccessible;

// One cell of the table: a header line or a caption of the title band, a data cell, or a
// totals cell of the footer. Cells hold places, not texts: what they read is what is shown.
class GridCell : public QAccessibleInterface, public QAccessibleTableCellInterface
{
public:
    enum Kind { Header, Caption, Data, Total };

    GridCell(GridAccessible *table, Kind kind, int row, int column, int extent = 1)
        : table_(table), kind_(kind), row_(row), column_(column), extent_(extent)
    {
    }

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text t) const override;
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::Role role() const override
    {
        return kind_ == Header || kind_ == Caption ? QAccessible::ColumnHeader : QAccessible::Cell;
    }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TableCellInterface ? static_cast<QAccessibleTableCellInterface *>(this) : nullptr;
    }

    bool isSelected() const override;
    QList<QAccessibleInterface *> columnHeaderCells() const override;
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return column_; }
    int rowIndex() const override { return row_; }
    int columnExtent() const override { return extent_; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override;

    Kind kind() const { return kind_; }

private:
    TQCustomDBGrid *grid() const;
    TQColumn *column() const;
    int rawRow() const;

    GridAccessible *table_;
    Kind kind_;
    int row_;    // the title line, the record in view or the totals line
    int column_; // the first showing column the cell covers
    int extent_;
};

// The totals rows under the data, as one footer.
class GridFooter : public QAccessibleInterface
{
public:
    explicit GridFooter(GridAccessible *table) : table_(table) {}

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text t) const override { return t == QAccessible::Name ? QCoreApplication::translate("qdb::TQDBGridAccessible", "Totals") : QString(); }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::Footer; }
    QAccessible::State state() const override { return {}; }

private:
    GridAccessible *table_;
};

class GridAccessible : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit GridAccessible(TQCustomDBGrid *grid) : QAccessibleWidget(grid, QAccessible::Table) {}
    ~GridAccessible() override { clear(); }

    TQCustomDBGrid *grid() const { return static_cast<TQCustomDBGrid *>(widget()); }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TableInterface)
            return static_cast<QAccessibleTableInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    // Children: the title band's cells, the data cells row by row, then the footer.
    int childCount() const override
    {
        refresh();
        return int(titles_.size()) + rows_ * columns_ + (footer_ ? 1 : 0);
    }
    QAccessibleInterface *child(int index) const override
    {
        refresh();
        const int titles = int(titles_.size());
        if (index < 0)
            return nullptr;
        if (index < titles)
            return get(titles_[size_t(index)]);
        index -= titles;
        if (index < rows_ * columns_)
            return cellAt(index / columns_, index % columns_);
        return index == rows_ * columns_ && footer_ ? get(footer_) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        refresh();
        for (size_t i = 0; i < titles_.size(); ++i)
            if (get(titles_[i]) == child)
                return int(i);
        if (footer_ && get(footer_) == child)
            return int(titles_.size()) + rows_ * columns_;
        for (size_t i = 0; i < data_.size(); ++i)
            if (data_[i] && get(data_[i]) == child)
                return int(titles_.size() + i);
        return -1;
    }
    QAccessibleInterface *focusChild() const override
    {
        const int row = grid()->Row() - grid()->TitleOffset();
        const int column = grid()->RawToDataColumn(grid()->Col());
        return grid()->hasFocus() ? cellAt(row, column) : nullptr;
    }

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override
    {
        refresh();
        if (row < 0 || row >= rows_ || column < 0 || column >= columns_)
            return nullptr;
        QAccessible::Id &id = data_[size_t(row * columns_ + column)];
        if (!id)
            id = QAccessible::registerAccessibleInterface(
                new GridCell(const_cast<GridAccessible *>(this), GridCell::Data, row, column));
        return get(id);
    }
    int columnCount() const override
    {
        refresh();
        return columns_;
    }
    int rowCount() const override
    {
        refresh();
        return rows_;
    }
    QString columnDescription(int column) const override
    {
        TQColumn *c = showing(column);
        if (!c)
            return {};
        QStringList path = c->GetTitle()->GetHeader().split(QLatin1Char('|'), Qt::SkipEmptyParts);
        path << c->GetTitle()->GetCaption();
        return path.join(QStringLiteral(" / "));
    }
    QString rowDescription(int) const override { return {}; }

    int selectedRowCount() const override { return int(selectedRows().size()); }
    QList<int> selectedRows() const override
    {
        QList<int> rows;
        for (int r = 0, count = rowCount(); r < count; ++r)
            if (isRowSelected(r))
                rows << r;
        return rows;
    }
    bool isRowSelected(int row) const override
    {
        TQCustomDBGrid *g = grid();
        if (row < 0 || row >= rowCount() || !g->GetRowsSelection() || g->SelectedRows().Count() == 0)
            return false;
        ActiveRecordScope scope(*g->DataLink(), row);
        return g->SelectedRows().CurrentRowSelected();
    }
    int selectedColumnCount() const override { return int(selectedColumns().size()); }
    QList<int> selectedColumns() const override
    {
        QList<int> columns;
        for (int c = 0, count = columnCount(); c < count; ++c)
            if (isColumnSelected(c))
                columns << c;
        return columns;
    }
    bool isColumnSelected(int column) const override
    {
        TQColumn *c = showing(column);
        return c && grid()->GetColsSelection() && grid()->SelectedCols().Contains(c);
    }
    int selectedCellCount() const override { return int(selectedCells().size()); }
    QList<QAccessibleInterface *> selectedCells() const override
    {
        // Each row's and column's state once, not once a cell.
        const QList<int> rows = selectedRows(), columns = selectedColumns();
        QList<QAccessibleInterface *> cells;
        for (int r = 0, rowTotal = rowCount(); r < rowTotal; ++r)
            for (int c = 0, columnTotal = columnCount(); c < columnTotal; ++c)
                if (rows.contains(r) || columns.contains(c))
                    cells << cellAt(r, c);
        return cells;
    }
    // Selection stays with the user's keys and mouse.
    bool selectRow(int) override { return false; }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *) override { clear(); }

    TQColumn *showing(int column) const
    {
        const QList<TQColumn *> &columns = grid()->ShowingColumns();
        return column >= 0 && column < columns.size() ? columns[column] : nullptr;
    }
    QList<QAccessibleInterface *> headersOf(int column) const
    {
        refresh();
        QList<QAccessibleInterface *> found;
        for (QAccessible::Id id : titles_) {
            auto *cell = static_cast<GridCell *>(get(id));
            if (column >= cell->columnIndex() && column < cell->columnIndex() + cell->columnExtent())
                found << cell;
        }
        return found;
    }
    QList<QAccessible::Id> totals() const
    {
        refresh();
        return totals_;
    }
    QAccessibleInterface *footer() const
    {
        refresh();
        return footer_ ? get(footer_) : nullptr;
    }

private:
    static QAccessibleInterface *get(QAccessible::Id id) { return QAccessible::accessibleInterface(id); }

    // The shape the cells were made for: when the grid's differs, they are made anew.
    QString shape() const
    {
        TQCustomDBGrid *g = grid();
        TQGridDataLink *link = g->DataLink();
        const int rows = link->Active() && g->DataSet() && !g->DataSet()->IsEmpty() ? link->RecordCount() : 0;
        QStringList parts{QString::number(rows), QString::number(g->GetTotalRowCount())};
        for (TQColumn *c : g->ShowingColumns())
            parts << QString::number(quintptr(c)) + c->GetTitle()->GetHeader();
        return parts.join(QLatin1Char(';'));
    }

    void refresh() const
    {
        const QString now = shape();
        if (now == shape_ && !shape_.isEmpty())
            return;
        clear();
        shape_ = now;
        auto *self = const_cast<GridAccessible *>(this);
        TQCustomDBGrid *g = grid();
        const QList<TQColumn *> &columns = g->ShowingColumns();
        columns_ = int(columns.size());
        rows_ = now.section(QLatin1Char(';'), 0, 0).toInt();
        // Header lines, one cell for each run of columns that share it, then the captions.
        for (int line = 0;; ++line) {
            bool any = false;
            for (int c = 0; c < columns_; ++c) {
                TQColumnTitle *title = columns[c]->GetTitle();
                if (title->GetHeaderRowCount() <= line)
                    continue;
                any = true;
                if (title->HeaderLeft(line) != columns[c] && c > 0)
                    continue;
                const int last = int(columns.indexOf(title->HeaderRight(line)));
                titles_.push_back(QAccessible::registerAccessibleInterface(
                    new GridCell(self, GridCell::Header, line, c, std::max(1, last - c + 1))));
            }
            if (!any)
                break;
        }
        for (int c = 0; c < columns_; ++c)
            titles_.push_back(QAccessible::registerAccessibleInterface(new GridCell(self, GridCell::Caption, 0, c)));
        data_.assign(size_t(rows_ * columns_), 0);
        const int totalRows = g->GetTotalRowCount();
        for (int r = 0; r < totalRows; ++r)
            for (int c = 0; c < columns_; ++c)
                totals_ << QAccessible::registerAccessibleInterface(new GridCell(self, GridCell::Total, r, c));
        if (totalRows > 0)
            footer_ = QAccessible::registerAccessibleInterface(new GridFooter(self));
    }

    void clear() const
    {
        for (QAccessible::Id id : titles_)
            QAccessible::deleteAccessibleInterface(id);
        for (QAccessible::Id id : data_)
            if (id)
                QAccessible::deleteAccessibleInterface(id);
        for (QAccessible::Id id : totals_)
            QAccessible::deleteAccessibleInterface(id);
        if (footer_)
            QAccessible::deleteAccessibleInterface(footer_);
        titles_.clear();
        data_.clear();
        totals_.clear();
        footer_ = 0;
        shape_.clear();
    }

    mutable QString shape_;
    mutable int rows_ = 0;
    mutable int columns_ = 0;
    mutable std::vector<QAccessible::Id> titles_;
    mutable std::vector<QAccessible::Id> data_; // made when asked for
    mutable QList<QAccessible::Id> totals_;
    mutable QAccessible::Id footer_ = 0;
};

bool GridCell::isValid() const
{
    return table_->isValid();
}

QWindow *GridCell::window() const
{
    return table_->window();
}

QAccessibleInterface *GridCell::parent() const
{
    if (kind_ == Total)
        if (QAccessibleInterface *footer = table_->footer())
            return footer;
    return table_;
}

QAccessibleInterface *GridCell::table() const
{
    return table_;
}

TQCustomDBGrid *GridCell::grid() const
{
    return table_->grid();
}

TQColumn *GridCell::column() const
{
    return table_->showing(column_);
}

int GridCell::rawRow() const
{
    TQCustomDBGrid *g = grid();
    switch (kind_) {
    case Data: return row_ + g->TitleOffset();
    case Total: return g->RowCount() - g->BottomRowCount() + 1 + row_; // the blank row comes first
    default: return 0;
    }
}

QString GridCell::text(QAccessible::Text t) const
{
    TQColumn *c = column();
    if (!c)
        return {};
    TQCustomDBGrid *g = grid();
    if (t == QAccessible::Description && kind_ == Caption) {
        switch (c->GetTitle()->GetMarker()) {
        case QDBGridTypes::tmAscend: return QCoreApplication::translate("qdb::TQDBGridAccessible", "Sorted ascending");
        case QDBGridTypes::tmDescend: return QCoreApplication::translate("qdb::TQDBGridAccessible", "Sorted descending");
        default: return {};
        }
    }
    if (t != QAccessible::Name && t != QAccessible::Value)
        return {};
    switch (kind_) {
    case Header: return c->GetTitle()->GetHeaderRows(row_);
    case Caption: return c->GetTitle()->GetCaption();
    case Data: return g->CellText(g->DataToRawColumn(column_), rawRow());
    case Total: {
        TQColumnTotalValue *total = g->TotalAt(c, rawRow());
        return total && total->GetVisible() ? g->TotalText(total) : QString();
    }
    }
    return {};
}

QRect GridCell::rect() const
{
    TQCustomDBGrid *g = grid();
    const int rawCol = g->DataToRawColumn(column_);
    QRect r = g->CellRect(rawCol, rawRow());
    if (extent_ > 1)
        r = r.united(g->CellRect(rawCol + extent_ - 1, rawRow()));
    if (r.isEmpty())
        return {};
    return QRect(g->viewport()->mapToGlobal(r.topLeft()), r.size());
}

QAccessible::State GridCell::state() const
{
    QAccessible::State s;
    s.invisible = rect().isEmpty();
    if (kind_ != Data)
        return s;
    TQCustomDBGrid *g = grid();
    s.focusable = true;
    s.selectable = true;
    s.focused = g->hasFocus() && rawRow() == g->Row() && g->DataToRawColumn(column_) == g->Col();
    s.selected = isSelected();
    return s;
}

bool GridCell::isSelected() const
{
    return kind_ == Data && (table_->isRowSelected(row_) || table_->isColumnSelected(column_));
}

QList<QAccessibleInterface *> GridCell::columnHeaderCells() const
{
    return kind_ == Data || kind_ == Total ? table_->headersOf(column_) : QList<QAccessibleInterface *>();
}

bool GridFooter::isValid() const
{
    return table_->isValid();
}

QWindow *GridFooter::window() const
{
    return table_->window();
}

QAccessibleInterface *GridFooter::parent() const
{
    return table_;
}

QAccessibleInterface *GridFooter::child(int index) const
{
    const QList<QAccessible::Id> cells = table_->totals();
    return index >= 0 && index < cells.size() ? QAccessible::accessibleInterface(cells[index]) : nullptr;
}

int GridFooter::childCount() const
{
    return int(table_->totals().size());
}

int GridFooter::indexOfChild(const QAccessibleInterface *child) const
{
    const QList<QAccessible::Id> cells = table_->totals();
    for (qsizetype i = 0; i < cells.size(); ++i)
        if (QAccessible::accessibleInterface(cells[i]) == child)
            return int(i);
    return -1;
}

QRect GridFooter::rect() const
{
    QRect r;
    for (int i = 0; i < childCount(); ++i)
        r = r.united(child(i)->rect());
    return r;
}

QAccessibleInterface *gridFactory(const QString &className, QObject *object)
{
    if (className == QLatin1String("qdb::TQCustomDBGrid"))
        if (auto *grid = qobject_cast<TQCustomDBGrid *>(object))
            return new GridAccessible(grid);
    return nullptr;
}

} // namespace

void TQCustomDBGrid::CurrentChanged()
{
    NotifyCurrentCell(this);
}

void NotifyCurrentCell(TQCustomDBGrid *grid)
{
    if (!QAccessible::isActive() || !grid->hasFocus())
        return;
    if (QAccessibleInterface *table = QAccessible::queryAccessibleInterface(grid))
        if (QAccessibleInterface *cell = table->focusChild()) {
            QAccessibleEvent event(cell, QAccessible::Focus);
            QAccessible::updateAccessibility(&event);
        }
}

void InstallGridAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(gridFactory);
        return true;
    }();
    (void)installed;
}

} // namespace qdb
