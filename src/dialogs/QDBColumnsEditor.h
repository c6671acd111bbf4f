#pragma once

#include <QDialog>

class QTableWidget;

namespace qdb {

class TQCustomDBGrid;

// Defines a grid's columns where no data set gives them, as in a form designer: a row a
// column with its field, caption, header path ("Sales|2024"), width and visibility. OK makes
// the grid's columns these, in this order; Cancel leaves them as they were.
class TQDBColumnsEditor : public QDialog
{
    Q_OBJECT

public:
    explicit TQDBColumnsEditor(TQCustomDBGrid *grid, QWidget *parent = nullptr);

    QTableWidget *Table() const { return table_; }
    void AddRow(const QString &field);
    void MoveRow(int from, int to);
    void accept() override;

private:
    enum Part { FieldPart, CaptionPart, HeaderPart, WidthPart, VisiblePart };
    void load();

    TQCustomDBGrid *grid_;
    QTableWidget *table_;
};

} // namespace qdb
