#pragma once

#include "GridAxis.h"

#include "platform/rtl/Set.h"

#include <QAbstractScrollArea>
#include <QPointer>

class QLineEdit;

namespace qdb {

namespace Grids {
Q_NAMESPACE
enum TGridOption {
    goFixedVertLine, goFixedHorzLine, goVertLine, goHorzLine, goRangeSelect, goDrawFocusSelected, goRowSizing,
    goColSizing, goRowMoving, goColMoving, goEditing, goTabs, goRowSelect, goAlwaysShowEditor, goThumbTracking
};
Q_ENUM_NS(TGridOption)
enum TGridDrawStateItem { gdSelected, gdFocused, gdFixed, gdRowSelected, gdHotTrack, gdPressed };
Q_ENUM_NS(TGridDrawStateItem)
// How buttons and fixed cells are drawn: flat edges, the style's own look, or a gradient.
enum TGridDrawingStyle { gdsClassic, gdsThemed, gdsGradient };
Q_ENUM_NS(TGridDrawingStyle)
} // namespace Grids
using namespace Grids;
using TGridOptions = Set<TGridOption>;
using TGridDrawState = Set<TGridDrawStateItem>;

// The plain grid: rows and columns of cells, the first ones fixed (titles, indicator), the
// rest scrolled; a current cell; an in-place editor; and the keyboard and mouse handling of
// a desktop grid. Descendants draw the cells (DrawCell) and feed the editor
// (GetEditText/SetEditText). A small vertical scroll moves pixels and repaints only what
// came into view.
class TCustomGrid : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit TCustomGrid(QWidget *parent = nullptr);
    ~TCustomGrid() override;

    int ColCount() const { return cols_.Count(); }
    void SetColCount(int count);
    int RowCount() const { return rows_.Count(); }
    void SetRowCount(int count);
    int FixedCols() const { return cols_.Fixed(); }
    void SetFixedCols(int count);
    int FixedRows() const { return rows_.Fixed(); }
    void SetFixedRows(int count);
    int DefaultColWidth() const { return cols_.DefaultSize(); }
    void SetDefaultColWidth(int width);
    int DefaultRowHeight() const { return rows_.DefaultSize(); }
    void SetDefaultRowHeight(int height);
    int ColWidths(int col) const { return cols_.Size(col); }
    void SetColWidths(int col, int width);
    int RowHeights(int row) const { return rows_.Size(row); }
    void SetRowHeights(int row, int height);
    int GridLineWidth() const { return lineWidth_; }
    void SetGridLineWidth(int width);
    TGridOptions Options() const { return options_; }
    void SetOptions(TGridOptions options);

    int TopRow() const { return rows_.First(); }
    void SetTopRow(int row);
    int LeftCol() const { return cols_.First(); }
    void SetLeftCol(int col);
    int Row() const { return row_; }
    void SetRow(int row) { FocusCell(col_, row); }
    int Col() const { return col_; }
    void SetCol(int col) { FocusCell(col, row_); }
    // Makes a cell current when SelectCell allows it, and scrolls it into view.
    void FocusCell(int col, int row);
    int VisibleRowCount() const;
    int VisibleColCount() const;

    // The cell's rectangle in the viewport, without its lines; empty when out of view.
    QRect CellRect(int col, int row) const;
    // The cell under a viewport point: {col, row}, -1 outside the cells.
    QPoint MouseCoord(int x, int y) const;

    void InvalidateCell(int col, int row);
    void InvalidateRow(int row);
    void InvalidateCol(int col);
    void InvalidateGrid();

    bool EditorMode() const;
    void SetEditorMode(bool on);
    void ShowEditor();
    void HideEditor();
    QWidget *InplaceEditor() const { return editor_; }

    // Cells drawn since the count was last reset: lets tests see what a change repaints.
    int DrawCellCount() const { return drawCellCount_; }
    void ResetDrawCellCount() { drawCellCount_ = 0; }

protected:
    virtual void DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state);
    // Draws the grid lines after the cells.
    virtual void DrawLines(QPainter &painter, const QRect &exposed);
    virtual bool SelectCell(int col, int row);
    virtual void TopLeftChanged() {}
    // After the current cell moved.
    virtual void CurrentChanged() {}
    virtual void ColumnMoved(int from, int to);
    virtual void ColWidthsChanged() {}
    virtual void RowHeightsChanged() {}
    virtual bool CanEditShow() const;
    virtual QString GetEditText(int col, int row) const;
    virtual void SetEditText(int col, int row, const QString &text);
    virtual QWidget *CreateEditor();
    // Fits the editor to the cell it is about to edit (colours, input method).
    virtual void PrepareEditor(QWidget *) {}
    // Takes the editor's text when the user confirms it; false keeps the editor open.
    virtual bool AcceptEditText() { return true; }
    // Fits a column's width to its content (a double click on its title's border).
    virtual void FitColumn(int) {}
    // A click on a fixed cell (a title, the indicator) that did not start a drag.
    virtual void FixedCellClick(int, int, Qt::KeyboardModifiers) {}
    virtual void UpdateScrollBars();
    // The keys of the grid; descendants handle their own before calling this.
    virtual void KeyDown(QKeyEvent *event);
    // A wheel turn of `rows` rows (positive: down); the grid scrolls the view.
    virtual void MouseWheel(int rows);
    // Moves the pixels of the rows between two heights of the viewport by dy; what comes
    // into view is repainted.
    void ScrollBand(int dy, int top, int bottom);
    // The colour of the grid lines.
    virtual QColor LineColor() const;

    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

    GridAxis &RowAxis() { return rows_; }
    GridAxis &ColAxis() { return cols_; }
    const GridAxis &RowAxis() const { return rows_; }
    const GridAxis &ColAxis() const { return cols_; }

private:
    void layoutChanged();
    void clampCurrent();
    void scrollToCurrent();
    void moveColumn(int from, int to);
    void placeEditor();
    int sizingColumnAt(int x, int y) const;

    GridAxis cols_;
    GridAxis rows_;
    int lineWidth_ = 1;
    TGridOptions options_;
    int col_ = 0;
    int row_ = 0;
    int drawCellCount_ = 0;
    int updatingScrollBars_ = 0;
    QPointer<QWidget> editor_;
    bool editorMode_ = false;

    enum class Drag { None, Sizing, MaybeMoving, Moving };
    Drag drag_ = Drag::None;
    QPoint pressedFixed_{-1, -1};
    int dragCol_ = -1;
    QPoint dragStart_;
    int sizingOrigin_ = 0;
};

} // namespace qdb
