// Painting the data grid's cells: titles, the indicator and the data as text.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include <QPainter>

namespace qdb {

namespace {

Qt::Alignment textAlignment(TAlignment a)
{
    switch (a) {
    case taRightJustify: return Qt::AlignRight | Qt::AlignVCenter;
    case taCenter: return Qt::AlignHCenter | Qt::AlignVCenter;
    default: return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

} // namespace

void TQCustomDBGrid::DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state)
{
    if (col < IndicatorOffset()) {
        painter.fillRect(rect, palette().color(QPalette::Button));
        if (row >= TitleOffset())
            drawIndicatorCell(painter, row, rect);
    } else if (row < TitleOffset()) {
        drawTitleCell(painter, col, rect);
    } else {
        drawDataCell(painter, col, row, rect, state);
    }
}

void TQCustomDBGrid::drawTitleCell(QPainter &painter, int col, const QRect &rect)
{
    painter.fillRect(rect, palette().color(QPalette::Button));
    TQColumn *column = ColumnAt(col);
    if (!column)
        return;
    TQColumnTitle *title = column->GetTitle();
    painter.setFont(title->GetFont());
    painter.setPen(palette().color(QPalette::ButtonText));
    const int margin = d_->style->TitleColMargin;
    painter.drawText(rect.adjusted(margin, 0, -margin, 0), int(textAlignment(title->GetAlignment())),
                     title->GetCaption());
}

void TQCustomDBGrid::drawIndicatorCell(QPainter &painter, int row, const QRect &rect)
{
    if (!DataLink()->Active() || row != Row() || DataSet()->IsEmpty())
        return;
    int image = 0;
    switch (DataSet()->State()) {
    case dsEdit: image = 1; break;
    case dsInsert: image = 2; break;
    default: break;
    }
    const int size = d_->indicators.Size();
    d_->indicators.Draw(painter, rect.x() + (rect.width() - size) / 2, rect.y() + (rect.height() - size) / 2, image);
}

QString TQCustomDBGrid::CellText(int col, int row) const
{
    TQGridDataLink *link = DataLink();
    const int record = row - TitleOffset();
    TQColumn *column = ColumnAt(col);
    if (!column || !link->Active() || record < 0 || record >= link->RecordCount() || DataSet()->IsEmpty())
        return {};
    const int saved = link->ActiveRecord();
    link->SetActiveRecord(record);
    const QString text = column->GetDisplayText(); // nothing for a column whose field is missing
    link->SetActiveRecord(saved);
    return text;
}

void TQCustomDBGrid::drawDataCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state)
{
    TQGridDataLink *link = DataLink();
    const int record = row - TitleOffset();
    const bool hasRecord = link->Active() && record < link->RecordCount() && !DataSet()->IsEmpty();
    const bool selected = hasRecord && state.Contains(gdSelected) && (hasFocus() || GetOptions().Contains(dgAlwaysShowSelection));
    const QPalette &pal = palette();
    painter.fillRect(rect, selected ? pal.color(QPalette::Highlight) : pal.color(QPalette::Base));
    TQColumn *column = ColumnAt(col);
    if (!hasRecord || !column)
        return;
    painter.setFont(column->GetFont());
    painter.setPen(selected ? pal.color(QPalette::HighlightedText) : pal.color(QPalette::Text));
    painter.drawText(rect.adjusted(2, 0, -2, 0), int(textAlignment(column->GetAlignment())), CellText(col, row));
}

} // namespace qdb
