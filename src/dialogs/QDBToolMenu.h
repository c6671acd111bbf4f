#pragma once

#include <QMenu>
#include <QPointer>

namespace qdb {

class TQColumn;
class TQCustomDBGrid;

// The grid's tool menu, on its titles and indicator: the columns' widths and visibility,
// sorting, filtering, search, selection, copy and the saved layout. Each item is enabled
// only where it can act. Items are found by object name ("fitColumns", "saveLayout", ...);
// the grid's OnToolMenu may add, remove or change them before the menu shows.
class TQDBToolMenu : public QMenu
{
    Q_OBJECT

public:
    // `column`: the title the menu was opened on, if any.
    TQDBToolMenu(TQCustomDBGrid *grid, TQColumn *column, QWidget *parent = nullptr);

    TQCustomDBGrid *Grid() const { return grid_; }
    TQColumn *Column() const { return column_; }
    QAction *Item(const QString &name) const;

private:
    QAction *add(QMenu *menu, const char *name, const QString &text, bool enabled, std::function<void()> act);
    void addColumns();
    void addSelection();
    void addLayout();
    void saveLayoutAs();
    void openLayout();

    TQCustomDBGrid *grid_;
    QPointer<TQColumn> column_;
};

} // namespace qdb
