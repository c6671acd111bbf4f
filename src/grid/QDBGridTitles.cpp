// The grid's lines and its titles. Title cells merge across columns (a parent's caption
// over its children, a header line shared by neighbours), so they are painted here as
// whole pieces after the cells rather than cell by cell.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "filter/QDBGridFilter.h"

#include <QPainterPath>

#include <QStyle>
#include <qdrawutil.h>
#include <QStyleOption>

namespace qdb {

namespace {

// A raw column of the title band with its left edge in the viewport.
struct TitleColumn
{
    TQColumn *column;
    int x;
    int width;
};

TQColumn *ancestorAt(TQColumn *column, int depth)
{
    TQColumn *a = column;
    while (a && a->Depth() > depth)
        a = a->GetParentColumn();
    return a;
}

QString headerSegment(const TQColumn *column, int k)
{
    return column->GetTitle()->Header().section(QLatin1Char('|'), k, k);
}

// Whether two neighbours share their own header lines 0..k, and so one cell on line k.
bool shareHeader(const TQColumn *a, const TQColumn *b, int k)
{
    if (a->GetParentColumn() != b->GetParentColumn() || a->GetTitle()->OwnHeaderRowCount() <= k
        || b->GetTitle()->OwnHeaderRowCount() <= k)
        return false;
    for (int i = 0; i <= k; ++i)
        if (headerSegment(a, i) != headerSegment(b, i))
            return false;
    return true;
}

} // namespace

void TQCustomDBGrid::DrawLines(QPainter &painter, const QRect &exposed)
{
    const int lw = GridLineWidth();
    const QColor fixedLine = palette().color(QPalette::Mid);
    if (lw > 0 && RowCount() > 0 && ColCount() > 0) {
        const TGridDrawingOptions draw = d_->drawingOptions;
        const QColor colLine = draw.Contains(gdoDataColLines) ? PaintColor(d_->dataColLineColor, DefaultDataLineColor()) : fixedLine;
        const QColor rowLine = draw.Contains(gdoDataRowLines) ? PaintColor(d_->dataRowLineColor, DefaultDataLineColor()) : fixedLine;
        const GridAxis &rows = RowAxis();
        const GridAxis &cols = ColAxis();
        const int titleBottom = rows.FixedExtent();
        const int lastCol = ColCount() - 1;
        const int right = qMin(viewport()->width(), cols.Position(lastCol) >= 0 ? cols.Position(lastCol) + qMax(0, cols.Size(lastCol)) + lw
                                                                                : viewport()->width());
        const int indicatorRight = IndicatorOffset() ? ColWidths(0) + lw : 0;
        const int firstBottom = RowCount() - d_->totalsCount; // the blank row, or the first totals row
        const int dataBottom = firstBottom < RowCount() && rows.Position(firstBottom) >= 0 ? rows.Position(firstBottom) : viewport()->height();
        const int totalsTop = d_->totalsCount > 1 && rows.Position(firstBottom + 1) >= 0 ? rows.Position(firstBottom + 1) : viewport()->height();
        const int bottom = qMin(viewport()->height(), rows.Position(RowCount() - 1) >= 0
                                                          ? rows.Position(RowCount() - 1) + qMax(0, rows.Size(RowCount() - 1)) + lw
                                                          : viewport()->height());
        // The blank row is one empty band: no lines cross it.
        if (d_->blankRows > 0 && rows.Position(firstBottom) >= 0 && rows.Size(firstBottom) >= 0) {
            const int y = rows.Position(firstBottom), h = rows.Size(firstBottom) + lw;
            painter.fillRect(QRect(0, y, indicatorRight, h), FixedFaceColor());
            painter.fillRect(QRect(indicatorRight, y, right - indicatorRight, h), CellColor());
        }
        for (int r = FixedRows(); r < RowCount(); ++r) {
            const int y = rows.Position(r);
            if (y < 0 || r == firstBottom)
                continue;
            if (y > exposed.bottom())
                break;
            const int lineY = y + rows.Size(r);
            if (r > firstBottom)
                painter.fillRect(QRect(0, lineY, right, lw), fixedLine);
            else if (d_->options.Contains(dgRowLines)) {
                painter.fillRect(QRect(0, lineY, indicatorRight, lw), fixedLine);
                painter.fillRect(QRect(indicatorRight, lineY, right - indicatorRight, lw), rowLine);
            }
        }
        for (int c = 0; c < ColCount(); ++c) {
            const int x = cols.Position(c);
            if (x < 0 || cols.Size(c) < 0)
                continue;
            if (x > exposed.right())
                break;
            const int lineX = x + cols.Size(c);
            const bool indicator = c < IndicatorOffset();
            if (d_->options.Contains(dgColLines) || indicator)
                painter.fillRect(QRect(lineX, titleBottom, lw, dataBottom - titleBottom), indicator ? fixedLine : colLine);
            if (totalsTop < bottom)
                painter.fillRect(QRect(lineX, totalsTop, lw, bottom - totalsTop), fixedLine);
        }
    }
    drawTitles(painter, exposed);
}

void TQCustomDBGrid::drawFixedFace(QPainter &painter, const QRect &r, const QColor &face)
{
    switch (d_->style->GetVisualStyle()) {
    case vsDefault: painter.fillRect(r, face); break;
    case vsThemed: {
        QStyleOptionHeader option;
        option.initFrom(this);
        option.rect = r;
        option.palette.setColor(QPalette::Button, face);
        option.palette.setColor(QPalette::Window, face);
        option.state |= QStyle::State_Raised;
        style()->drawControl(QStyle::CE_HeaderSection, &option, &painter, this);
        break;
    }
    case vsClassic: {
        const QBrush fill(face);
        qDrawShadePanel(&painter, r, palette(), false, 1, &fill);
        break;
    }
    }
}

void TQCustomDBGrid::drawFilterButton(QPainter &painter, const QRect &r, bool filtered)
{
    // A funnel: hollow while the column shows every value, filled once it filters.
    const qreal w = r.width(), h = r.height();
    QPainterPath funnel;
    funnel.moveTo(r.left() + 0.5, r.top() + h * 0.15);
    funnel.lineTo(r.left() + w - 0.5, r.top() + h * 0.15);
    funnel.lineTo(r.left() + w * 0.6, r.top() + h * 0.55);
    funnel.lineTo(r.left() + w * 0.6, r.top() + h * 0.95);
    funnel.lineTo(r.left() + w * 0.4, r.top() + h * 0.8);
    funnel.lineTo(r.left() + w * 0.4, r.top() + h * 0.55);
    funnel.closeSubpath();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (filtered) {
        painter.setPen(QPen(palette().color(QPalette::Highlight).darker(130), 1));
        painter.setBrush(palette().color(QPalette::Highlight));
    } else {
        painter.setPen(QPen(palette().color(QPalette::ButtonText), 1));
        painter.setBrush(Qt::NoBrush);
    }
    painter.drawPath(funnel);
    painter.restore();
}

void TQCustomDBGrid::drawTitles(QPainter &painter, const QRect &exposed)
{
    const int rows = TitleOffset();
    const int titleBottom = RowAxis().FixedExtent();
    if (rows == 0 || exposed.top() >= titleBottom)
        return;
    d_->filterButtons.removeIf([&](const auto &entry) { return !entry.first || entry.second.intersects(exposed); });
    const int lw = GridLineWidth();
    const QColor fixedLine = palette().color(QPalette::Mid);
    const QColor fixedFace = FixedFaceColor();
    const int hLine = d_->options.Contains(dgRowLines) ? lw : 0;
    const int vLine = d_->options.Contains(dgColLines) ? lw : 0;
    const int cellBottom = titleBottom - lw; // the band's last line lies below

    // A piece of the title band: its face, then the lines on its right and bottom.
    auto frame = [&](const QRect &r, const QColor &face) {
        drawFixedFace(painter, r, face);
        if (vLine)
            painter.fillRect(QRect(r.right() + 1, r.top(), vLine, r.height() + lw), fixedLine);
        if (hLine)
            painter.fillRect(QRect(r.left(), r.bottom() + 1, r.width() + lw, hLine), fixedLine);
    };
    auto caption = [&](const QRect &r, const TQColumnTitle *title, const QString &text) {
        painter.setFont(title->GetFont());
        painter.setPen(palette().color(QPalette::ButtonText));
        const int margin = d_->style->TitleColMargin;
        DrawCellText(painter, r.adjusted(margin, 0, -margin, 0), text,
                     HorizontalAlignment(title->GetAlignment(), false) | VerticalAlignment(title->GetVAlignment()),
                     title->GetWordWrap() && d_->titleLinesCount > 1);
    };

    // A column's own cell, from its depth down to the band's end: its header lines on top,
    // each merged with the neighbours that share it, then its caption.
    auto ownCell = [&](const QList<TitleColumn> &band, int i, int top) {
        const TitleColumn &entry = band[i];
        const TQColumnTitle *title = entry.column->GetTitle();
        const int lines = title->OwnHeaderRowCount();
        const int lineHeight = d_->headerLineHeight;
        for (int k = 0; k < lines && lineHeight > 0; ++k) {
            if (i > 0 && shareHeader(band[i - 1].column, entry.column, k))
                continue; // painted with the first column that shares it
            int j = i;
            while (j + 1 < band.size() && shareHeader(band[j].column, band[j + 1].column, k))
                ++j;
            const QRect piece(entry.x, top + k * lineHeight, band[j].x + band[j].width - entry.x, lineHeight - hLine);
            frame(piece, title->GetColor());
            caption(piece, title, headerSegment(entry.column, k));
        }
        const int captionTop = top + lines * lineHeight;
        QRect cell(entry.x, captionTop, entry.width, cellBottom - captionTop);
        frame(cell, title->GetColor());
        if (d_->options.Contains(dgTitleButtons) && title->GetButton() && cell.width() > 16) {
            QStyleOption option;
            option.initFrom(this);
            option.rect = QRect(cell.right() - 13, cell.top() + (cell.height() - 12) / 2, 12, 12);
            style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &option, &painter, this);
            cell.setRight(cell.right() - 14);
        }
        if (HasFilterButton(entry.column) && cell.width() > 24) {
            const int size = qBound(8, cell.height() - 4, QFontMetrics(title->GetFont()).height());
            const QRect button(cell.right() - size - 1, cell.top() + (cell.height() - size) / 2, size, size);
            drawFilterButton(painter, button, entry.column->Filtered() && GetFilterGrid()->GetFiltered());
            d_->filterButtons.append({entry.column, button});
            cell.setRight(button.left() - 2);
        }
        if (title->GetMarker() != tmNone && d_->markers.Count() >= 2) {
            const int size = d_->markers.Size();
            d_->markers.Draw(painter, cell.right() - size - 1, cell.top() + (cell.height() - size) / 2,
                             title->GetMarker() == tmAscend ? 0 : 1);
            cell.setRight(cell.right() - size - 2);
            // Sorted by several columns: each marker shows its level.
            if (title->GetMarkerIndex() >= 2 && d_->columns->MarkerList().size() > 1) {
                QFont small = title->GetFont();
                small.setPointSizeF(qMax(6.0, small.pointSizeF() * 0.75));
                painter.setFont(small);
                painter.setPen(palette().color(QPalette::ButtonText));
                const QString level = QString::number(title->OrderIndex() + 1);
                const int w = QFontMetrics(small).horizontalAdvance(level) + 1;
                painter.drawText(QRect(cell.right() - w, cell.top(), w, cell.height()), Qt::AlignRight | Qt::AlignVCenter, level);
                cell.setRight(cell.right() - w - 1);
            }
        }
        caption(cell, title, title->GetCaption());
    };

    painter.save();
    if (IndicatorOffset()) {
        painter.setClipRect(QRect(0, 0, ColWidths(0) + lw, titleBottom));
        frame(QRect(0, 0, ColWidths(0), cellBottom), fixedFace);
    }

    // The fixed columns and the scrolled ones are painted apart, each clipped to its area,
    // and no piece crosses from one to the other.
    const int fixedEnd = ColAxis().FixedExtent();
    const int regions[2][2] = {{IndicatorOffset(), FixedCols()}, {FixedCols(), ColCount()}};
    for (int region = 0; region < 2; ++region) {
        const auto [first, end] = regions[region];
        if (first >= end)
            continue;
        QList<TitleColumn> band;
        int x = region == 0 ? ColAxis().Position(first) : fixedEnd;
        if (region == 1)
            for (int c = first; c < LeftCol(); ++c)
                x -= ColWidths(c) + lw;
        for (int c = first; c < end; ++c) {
            const int w = ColWidths(c);
            if (w >= 0) {
                if (TQColumn *column = ColumnAt(c); column && column->Showing())
                    band.append({column, x, w});
                x += w + lw;
            }
            if (x > viewport()->width() && x > exposed.right())
                break;
        }
        const QRect area = region == 0 ? QRect(0, 0, fixedEnd, titleBottom)
                                       : QRect(fixedEnd, 0, viewport()->width() - fixedEnd, titleBottom);
        painter.setClipRect(area.intersected(exposed));
        for (int r = 0; r < rows; ++r) {
            const int top = RowAxis().Position(r);
            for (int i = 0; i < band.size();) {
                TQColumn *column = band[i].column;
                const int depth = column->Depth();
                if (r < depth) {
                    // An expanded parent's caption spans its showing children.
                    TQColumn *parent = ancestorAt(column, r);
                    int j = i;
                    while (j + 1 < band.size() && ancestorAt(band[j + 1].column, r) == parent)
                        ++j;
                    const QRect piece(band[i].x, top, band[j].x + band[j].width - band[i].x, RowHeights(r));
                    frame(piece, parent->GetTitle()->GetColor());
                    caption(piece, parent->GetTitle(), parent->GetTitle()->GetCaption());
                    i = j + 1;
                    continue;
                }
                if (r == depth)
                    ownCell(band, i, top);
                ++i;
            }
        }
    }
    painter.restore();
}

} // namespace qdb
