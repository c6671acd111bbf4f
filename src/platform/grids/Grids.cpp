#include "Grids.h"

#include <QLineEdit>
#include <QPainter>
#include <QPaintEvent>
#include <QScrollBar>

namespace qdb {

TCustomGrid::TCustomGrid(QWidget *parent) : QAbstractScrollArea(parent)
{
    options_ = {goFixedVertLine, goFixedHorzLine, goVertLine, goHorzLine, goRangeSelect};
    cols_.SetDefaultSize(64);
    rows_.SetDefaultSize(24);
    cols_.SetCount(5);
    rows_.SetCount(5);
    cols_.SetFixed(1);
    rows_.SetFixed(1);
    cols_.SetFirst(1);
    rows_.SetFirst(1);
    col_ = row_ = 1;
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    // Pixels of a small scroll are moved, not repainted: the viewport must not be cleared.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    UpdateScrollBars();
}

TCustomGrid::~TCustomGrid() = default;

// ---- sizes and counts ----

void TCustomGrid::layoutChanged()
{
    clampCurrent();
    UpdateScrollBars();
    placeEditor();
    viewport()->update();
}

void TCustomGrid::SetColCount(int count)
{
    cols_.SetCount(count);
    layoutChanged();
}

void TCustomGrid::SetRowCount(int count)
{
    rows_.SetCount(count);
    layoutChanged();
}

void TCustomGrid::SetFixedCols(int count)
{
    cols_.SetFixed(qBound(0, count, ColCount()));
    cols_.SetFirst(qMax(cols_.First(), cols_.Fixed()));
    layoutChanged();
}

void TCustomGrid::SetFixedRows(int count)
{
    rows_.SetFixed(qBound(0, count, RowCount()));
    rows_.SetFirst(qMax(rows_.First(), rows_.Fixed()));
    layoutChanged();
}

void TCustomGrid::SetDefaultColWidth(int width)
{
    cols_.SetDefaultSize(width);
    ColWidthsChanged();
    layoutChanged();
}

void TCustomGrid::SetDefaultRowHeight(int height)
{
    rows_.SetDefaultSize(height);
    RowHeightsChanged();
    layoutChanged();
}

void TCustomGrid::SetColWidths(int col, int width)
{
    if (cols_.Size(col) == width)
        return;
    cols_.SetSize(col, width);
    ColWidthsChanged();
    layoutChanged();
}

void TCustomGrid::SetRowHeights(int row, int height)
{
    if (rows_.Size(row) == height)
        return;
    rows_.SetSize(row, height);
    RowHeightsChanged();
    layoutChanged();
}

void TCustomGrid::SetGridLineWidth(int width)
{
    lineWidth_ = qMax(0, width);
    cols_.SetLineWidth(lineWidth_);
    rows_.SetLineWidth(lineWidth_);
    layoutChanged();
}

void TCustomGrid::SetOptions(TGridOptions options)
{
    if (options == options_)
        return;
    options_ = options;
    if (!options_.Contains(goEditing))
        HideEditor();
    InvalidateGrid();
}

// ---- position ----

void TCustomGrid::clampCurrent()
{
    col_ = qBound(FixedCols(), col_, qMax(FixedCols(), ColCount() - 1));
    row_ = qBound(FixedRows(), row_, qMax(FixedRows(), RowCount() - 1));
    cols_.SetFirst(qBound(FixedCols(), LeftCol(), qMax(FixedCols(), cols_.MaxFirst(viewport()->width()))));
    rows_.SetFirst(qBound(FixedRows(), TopRow(), qMax(FixedRows(), rows_.MaxFirst(viewport()->height()))));
}

void TCustomGrid::SetTopRow(int row)
{
    row = qBound(FixedRows(), row, qMax(FixedRows(), rows_.MaxFirst(viewport()->height())));
    const int old = TopRow();
    if (row == old)
        return;
    // The rows in between move as pixels when the distance is small.
    const int oldPos = rows_.Position(row);
    rows_.SetFirst(row);
    const int top = rows_.FixedExtent();
    if (oldPos >= 0 && row > old && oldPos - top < viewport()->height()) {
        ScrollBand(top - oldPos, top, viewport()->height());
    } else if (row < old && rows_.Position(old) >= 0 && rows_.Position(old) < viewport()->height()) {
        ScrollBand(rows_.Position(old) - top, top, viewport()->height());
    } else {
        viewport()->update();
    }
    placeEditor();
    UpdateScrollBars();
    TopLeftChanged();
}

void TCustomGrid::SetLeftCol(int col)
{
    col = qBound(FixedCols(), col, qMax(FixedCols(), cols_.MaxFirst(viewport()->width())));
    if (col == LeftCol())
        return;
    cols_.SetFirst(col);
    viewport()->update();
    placeEditor();
    UpdateScrollBars();
    TopLeftChanged();
}

void TCustomGrid::ScrollBand(int dy, int top, int bottom)
{
    if (dy == 0)
        return;
    const QRect band(0, top, viewport()->width(), bottom - top);
    if (qAbs(dy) >= band.height())
        viewport()->update(band);
    else
        viewport()->scroll(0, dy, band);
}

void TCustomGrid::scrollToCurrent()
{
    if (row_ >= FixedRows()) {
        if (row_ < TopRow())
            SetTopRow(row_);
        else if (rows_.Position(row_) < 0 || rows_.Position(row_) + rows_.Size(row_) > viewport()->height())
            SetTopRow(rows_.FirstToShow(row_, viewport()->height()));
    }
    if (col_ >= FixedCols()) {
        if (col_ < LeftCol())
            SetLeftCol(col_);
        else if (cols_.Position(col_) < 0 || cols_.Position(col_) + cols_.Size(col_) > viewport()->width())
            SetLeftCol(cols_.FirstToShow(col_, viewport()->width()));
    }
}

void TCustomGrid::FocusCell(int col, int row)
{
    col = qBound(FixedCols(), col, qMax(FixedCols(), ColCount() - 1));
    row = qBound(FixedRows(), row, qMax(FixedRows(), RowCount() - 1));
    if (col == col_ && row == row_) {
        scrollToCurrent();
        return;
    }
    if (!SelectCell(col, row))
        return;
    const bool wasEditing = EditorMode();
    HideEditor();
    if (options_.Contains(goRowSelect)) {
        InvalidateRow(row_);
        InvalidateRow(row);
    } else {
        InvalidateCell(col_, row_);
        InvalidateCell(col, row);
    }
    col_ = col;
    row_ = row;
    scrollToCurrent();
    if (wasEditing || options_.Contains(goAlwaysShowEditor))
        ShowEditor();
    CurrentChanged();
}

int TCustomGrid::VisibleRowCount() const
{
    return rows_.VisibleCount(viewport()->height());
}

int TCustomGrid::VisibleColCount() const
{
    return cols_.VisibleCount(viewport()->width());
}

QRect TCustomGrid::CellRect(int col, int row) const
{
    const int x = cols_.Position(col), y = rows_.Position(row);
    if (x < 0 || y < 0)
        return QRect();
    const QRect r(x, y, qMax(0, cols_.Size(col)), qMax(0, rows_.Size(row)));
    return r.intersects(viewport()->rect()) ? r : QRect();
}

QPoint TCustomGrid::MouseCoord(int x, int y) const
{
    const int col = cols_.CellAt(x), row = rows_.CellAt(y);
    if (col < 0 || row < 0)
        return QPoint(-1, -1);
    return QPoint(col, row);
}

void TCustomGrid::InvalidateCell(int col, int row)
{
    const QRect r = CellRect(col, row);
    if (!r.isEmpty())
        viewport()->update(r.adjusted(0, 0, lineWidth_, lineWidth_));
}

void TCustomGrid::InvalidateRow(int row)
{
    const int y = rows_.Position(row);
    if (y >= 0)
        viewport()->update(QRect(0, y, viewport()->width(), rows_.Size(row) + lineWidth_));
}

void TCustomGrid::InvalidateCol(int col)
{
    const int x = cols_.Position(col);
    if (x >= 0)
        viewport()->update(QRect(x, 0, cols_.Size(col) + lineWidth_, viewport()->height()));
}

void TCustomGrid::InvalidateGrid()
{
    viewport()->update();
}

// ---- scroll bars ----

void TCustomGrid::UpdateScrollBars()
{
    ++updatingScrollBars_;
    QScrollBar *v = verticalScrollBar();
    const int maxTop = rows_.MaxFirst(viewport()->height());
    v->setRange(FixedRows(), qMax(FixedRows(), maxTop));
    v->setPageStep(qMax(1, VisibleRowCount()));
    v->setValue(TopRow());
    QScrollBar *h = horizontalScrollBar();
    const int maxLeft = cols_.MaxFirst(viewport()->width());
    h->setRange(FixedCols(), qMax(FixedCols(), maxLeft));
    h->setPageStep(qMax(1, VisibleColCount()));
    h->setValue(LeftCol());
    --updatingScrollBars_;
}

void TCustomGrid::scrollContentsBy(int, int)
{
    if (updatingScrollBars_)
        return;
    if (verticalScrollBar()->value() != TopRow())
        SetTopRow(verticalScrollBar()->value());
    if (horizontalScrollBar()->value() != LeftCol())
        SetLeftCol(horizontalScrollBar()->value());
}

void TCustomGrid::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    clampCurrent();
    UpdateScrollBars();
    placeEditor();
}

// ---- painting ----

QColor TCustomGrid::LineColor() const
{
    return palette().color(QPalette::Mid);
}

void TCustomGrid::DrawCell(QPainter &painter, int, int, const QRect &rect, TGridDrawState state)
{
    const QPalette &pal = palette();
    QColor fill = pal.color(QPalette::Base);
    if (state.Contains(gdFixed))
        fill = pal.color(QPalette::Button);
    else if (state.Contains(gdSelected))
        fill = pal.color(QPalette::Highlight);
    painter.fillRect(rect, fill);
}

void TCustomGrid::DrawLines(QPainter &painter, const QRect &exposed)
{
    if (lineWidth_ <= 0)
        return;
    const QColor color = LineColor();
    const int right = qMin(viewport()->width(), cols_.Position(ColCount() - 1) >= 0
                                                    ? cols_.Position(ColCount() - 1) + cols_.Size(ColCount() - 1) + lineWidth_
                                                    : viewport()->width());
    const int bottom = qMin(viewport()->height(), rows_.Position(RowCount() - 1) >= 0
                                                      ? rows_.Position(RowCount() - 1) + rows_.Size(RowCount() - 1) + lineWidth_
                                                      : viewport()->height());
    auto visibleRows = [&](auto f) {
        for (int r = 0; r < RowCount(); ++r) {
            const int y = rows_.Position(r);
            if (y < 0)
                continue;
            if (y > exposed.bottom())
                break;
            f(r, y);
        }
    };
    auto visibleCols = [&](auto f) {
        for (int c = 0; c < ColCount(); ++c) {
            const int x = cols_.Position(c);
            if (x < 0)
                continue;
            if (x > exposed.right())
                break;
            f(c, x);
        }
    };
    visibleRows([&](int r, int y) {
        const bool fixed = r < FixedRows();
        if (options_.Contains(fixed ? goFixedHorzLine : goHorzLine))
            painter.fillRect(QRect(0, y + rows_.Size(r), right, lineWidth_), color);
    });
    visibleCols([&](int c, int x) {
        const bool fixed = c < FixedCols();
        if (options_.Contains(fixed ? goFixedVertLine : goVertLine))
            painter.fillRect(QRect(x + cols_.Size(c), 0, lineWidth_, bottom), color);
    });
}

void TCustomGrid::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const QRect exposed = event->rect();
    painter.fillRect(exposed, palette().color(QPalette::Window)); // beyond the last cells
    for (int r = 0; r < RowCount(); ++r) {
        const int y = rows_.Position(r);
        if (y < 0)
            continue;
        if (y > exposed.bottom())
            break;
        const int h = rows_.Size(r);
        if (h <= 0 || y + h + lineWidth_ <= exposed.top())
            continue;
        for (int c = 0; c < ColCount(); ++c) {
            const int x = cols_.Position(c);
            if (x < 0)
                continue;
            if (x > exposed.right())
                break;
            const int w = cols_.Size(c);
            if (w <= 0 || x + w + lineWidth_ <= exposed.left())
                continue;
            const QRect rect(x, y, w, h);
            TGridDrawState state;
            if (c < FixedCols() || r < FixedRows())
                state += gdFixed;
            else if (r == row_ && (c == col_ || options_.Contains(goRowSelect))) {
                state += gdSelected;
                if (c == col_)
                    state += gdFocused;
                if (options_.Contains(goRowSelect))
                    state += gdRowSelected;
            }
            painter.save();
            painter.setClipRect(rect);
            DrawCell(painter, c, r, rect, state);
            painter.restore();
            ++drawCellCount_;
        }
    }
    DrawLines(painter, exposed);
}

// ---- editing ----

bool TCustomGrid::CanEditShow() const
{
    return options_.Contains(goEditing) && !options_.Contains(goRowSelect) && col_ >= FixedCols()
        && row_ >= FixedRows();
}

QString TCustomGrid::GetEditText(int, int) const
{
    return QString();
}

void TCustomGrid::SetEditText(int, int, const QString &) {}

QWidget *TCustomGrid::CreateEditor()
{
    auto *edit = new QLineEdit(viewport());
    edit->setObjectName(QStringLiteral("InplaceEditor"));
    edit->setFrame(false);
    connect(edit, &QLineEdit::textEdited, this, [this](const QString &text) { SetEditText(col_, row_, text); });
    return edit;
}

bool TCustomGrid::EditorMode() const
{
    return editor_ && editor_->isVisible();
}

void TCustomGrid::SetEditorMode(bool on)
{
    if (on)
        ShowEditor();
    else
        HideEditor();
}

void TCustomGrid::ShowEditor()
{
    if (!CanEditShow())
        return;
    if (!editor_) {
        editor_ = CreateEditor();
        editor_->installEventFilter(this);
    }
    editor_->setGeometry(CellRect(col_, row_));
    PrepareEditor(editor_);
    if (auto *edit = qobject_cast<QLineEdit *>(editor_)) {
        edit->setText(GetEditText(col_, row_));
        edit->selectAll();
    }
    editor_->show();
    editor_->setFocus();
}

void TCustomGrid::HideEditor()
{
    if (!EditorMode())
        return;
    const bool hadFocus = editor_->hasFocus();
    editor_->hide();
    if (hadFocus)
        setFocus();
    InvalidateCell(col_, row_);
}

void TCustomGrid::placeEditor()
{
    if (!editor_ || !editor_->isVisible())
        return;
    const QRect r = CellRect(col_, row_);
    if (r.isEmpty())
        editor_->hide();
    else
        editor_->setGeometry(r);
}

} // namespace qdb
