// Painting the data grid's cells: the indicator, the data cells as their columns show them,
// the blank row and the totals rows. The titles are painted with the lines (QDBGridTitles.cpp).

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include <QPainter>

namespace qdb {

bool TQCustomDBGrid::UseRightToLeftAlignmentForColumn(const TQColumn *column) const
{
    return layoutDirection() == Qt::RightToLeft && column && !column->GetSuppressRTL();
}

Qt::Alignment HorizontalAlignment(TAlignment a, bool rightToLeft)
{
    switch (a) {
    case taRightJustify: return rightToLeft ? Qt::AlignLeft : Qt::AlignRight;
    case taCenter: return Qt::AlignHCenter;
    default: return rightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    }
}

Qt::Alignment VerticalAlignment(TVAlignment a)
{
    switch (a) {
    case tvTopJustify: return Qt::AlignTop;
    case tvBottomJustify: return Qt::AlignBottom;
    default: return Qt::AlignVCenter;
    }
}

QString TextFitCache::Fit(const QFontMetrics &fm, const QFont &font, const QString &text, int width)
{
    // Text short enough to fit whatever its letters is not measured.
    if (qsizetype(fm.maxWidth()) * text.size() <= width)
        return text;
    if (font != font_ || fitted_.size() > 4096) {
        fitted_.clear();
        font_ = font;
    }
    const QPair<QString, int> key(text, width);
    auto it = fitted_.constFind(key);
    if (it == fitted_.cend())
        it = fitted_.insert(key, fm.horizontalAdvance(text) <= width ? text : fm.elidedText(text, Qt::ElideRight, width));
    return *it;
}

void DrawCellText(QPainter &painter, const QRect &rect, const QString &text, Qt::Alignment alignment, bool wrap,
                  TextFitCache *cache)
{
    if (text.isEmpty() || rect.width() <= 0)
        return;
    if (wrap) {
        painter.drawText(rect, int(alignment) | Qt::TextWordWrap, text);
        return;
    }
    // One line: what does not fit ends in an ellipsis rather than being cut mid-letter.
    const QFontMetrics fm = painter.fontMetrics();
    QString shown;
    if (cache)
        shown = cache->Fit(fm, painter.font(), text, rect.width());
    else
        shown = fm.horizontalAdvance(text) <= rect.width() ? text : fm.elidedText(text, Qt::ElideRight, rect.width());
    painter.drawText(rect, int(alignment) | Qt::TextSingleLine, shown);
}

void TQCustomDBGrid::DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state)
{
    if (row < TitleOffset())
        return; // the titles are painted as merged cells with the lines
    const int bottom = RowCount() - d_->totalsCount;
    if (row >= bottom) {
        if (row > bottom)
            drawTotalCell(painter, col, row, rect);
        else
            painter.fillRect(rect, col < IndicatorOffset() ? FixedFaceColor() : CellColor());
        return;
    }
    if (col < IndicatorOffset())
        drawIndicatorCell(painter, row, rect);
    else
        drawDataCell(painter, col, row, rect, state);
}

void TQCustomDBGrid::drawIndicatorCell(QPainter &painter, int row, const QRect &rect)
{
    painter.fillRect(rect, FixedFaceColor());
    TQGridDataLink *link = DataLink();
    const int record = row - TitleOffset();
    if (!link->Active() || DataSet()->IsEmpty() || record < 0 || record >= link->RecordCount())
        return;
    bool selected = false;
    if (GetRowsSelection() && SelectedRows().Count() > 0) {
        ActiveRecordScope scope(*link, record);
        selected = SelectedRows().CurrentRowSelected();
    }
    const bool current = row == Row();
    if (!current && !selected)
        return;
    int image = current ? 0 : 3;
    if (current && selected)
        image = 4;
    switch (current ? DataSet()->State() : dsBrowse) {
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
    ActiveRecordScope scope(*link, record);
    return column->GetDisplayText(); // nothing for a column whose field is missing
}

void TQCustomDBGrid::drawDataCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state)
{
    TQGridDataLink *link = DataLink();
    const int record = row - TitleOffset();
    TQColumn *column = ColumnAt(col);
    const bool hasRecord = link->Active() && record < link->RecordCount() && !DataSet()->IsEmpty();
    if (!hasRecord || !column) {
        painter.fillRect(rect, CellColor());
        return;
    }
    const int current = link->ActiveRecord();
    if (record == current && !d_->options.Contains(dgRowSelect))
        state += gdRowSelected; // the current record's other cells show it too
    ActiveRecordScope scope(*link, record);
    DefaultDrawColumnCell(painter, rect, RawToDataColumn(col), column, state);
}

void TQCustomDBGrid::DefaultDrawColumnCell(QPainter &painter, const QRect &rect, int, TQColumn *column,
                                           TGridDrawState state)
{
    TQGridDataLink *link = DataLink();
    TDataSet *ds = DataSet();
    const QPalette &pal = palette();
    const TGridDrawingOptions draw = d_->drawingOptions;
    const bool showSelection = hasFocus() || d_->options.Contains(dgAlwaysShowSelection);

    // Stripes follow the records' positions, so they stay with a record when the view scrolls.
    QColor fill = column->GetColor();
    if (draw.Contains(gdoStripedRows)) {
        const int recNo = ds->RecNo(); // of the record being painted: the link points at it
        const int position = recNo > 0 ? recNo - 1 : link->ActiveRecord();
        if (position % 2 == 1)
            fill = PaintColor(d_->stripeColor, DefaultStripeColor());
    }
    QColor text = isEnabled() ? pal.color(QPalette::Text) : pal.color(QPalette::Disabled, QPalette::Text);
    const bool selectedCell = state.Contains(gdSelected) && showSelection;
    const bool multiSelected = d_->options.Contains(dgMultiSelect) && IsCellMultiSelected(column);
    if (multiSelected && !selectedCell) {
        // Many selected rows stay readable: the selection colour, with its own text colour.
        fill = draw.Contains(gdoMultiSelected) ? PaintColor(d_->selectionColor, DefaultSelectionColor())
                                               : pal.color(QPalette::Highlight);
        text = draw.Contains(gdoHighlightText) ? PaintColor(d_->highlightText, DefaultHighlightText())
                                               : pal.color(QPalette::HighlightedText);
    } else if (selectedCell) {
        fill = draw.Contains(gdoSelectedCell) ? PaintColor(d_->selectCellColor, DefaultSelectCellColor())
                                              : pal.color(QPalette::Highlight);
        text = draw.Contains(gdoHighlightText) ? PaintColor(d_->highlightText, DefaultHighlightText())
                                               : pal.color(QPalette::HighlightedText);
    } else if (state.Contains(gdRowSelected) && draw.Contains(gdoSelectedRow) && showSelection) {
        fill = PaintColor(d_->selectRowColor, DefaultSelectRowColor());
    }
    painter.fillRect(rect, fill);

    const bool rtl = UseRightToLeftAlignmentForColumn(column);
    QRect area = rect.adjusted(2, 0, -2, 0);
    TField *field = column->GetField();

    if (column->GetExpandBox() && column->Expandable()) {
        const int size = d_->expandBoxes.Size();
        const int index = int(column->GetExpandBoxSize()) * 2 + (column->GetExpanded() ? 1 : 0);
        const int x = rtl ? area.right() - size + 1 : area.left();
        d_->expandBoxes.Draw(painter, x, rect.y() + (rect.height() - size) / 2, index);
        area = rtl ? area.adjusted(0, 0, -(size + 2), 0) : area.adjusted(size + 2, 0, 0, 0);
    }
    if (TImageList *images = column->GetImages()) {
        const int index = column->ImageIndex();
        if (index >= 0 && index < images->Count()) {
            const bool textBeside = drawColumnImage(painter, area, column, images->Image(index), rtl);
            if (!textBeside)
                return;
        }
    }
    if (column->GetCheckBox()) {
        const int check = CheckBoxState(column);
        if (check >= 0) {
            const int size = d_->checkBoxes.Size();
            const int index = int(column->GetCheckBoxKind()) * 3 + check;
            int x = area.left() + (area.width() - size) / 2;
            if (column->GetAlignment() == taLeftJustify)
                x = rtl ? area.right() - size + 1 : area.left();
            else if (column->GetAlignment() == taRightJustify)
                x = rtl ? area.left() : area.right() - size + 1;
            d_->checkBoxes.Draw(painter, x, rect.y() + (rect.height() - size) / 2, index);
            return;
        }
    }
    const QFont font = column->GetFont();
    if (painter.font() != font)
        painter.setFont(font);
    painter.setPen(text);
    const Qt::Alignment alignment = HorizontalAlignment(column->GetAlignment(), rtl) | VerticalAlignment(column->GetVAlignment());
    const bool wrap = column->GetWordWrap() && d_->linesCount > 1;
    QString shown = field || column->GetAutoNumber() ? column->GetDisplayText() : QString();
    if (!wrap && column->GetMultiSelectList() && column->GetMultiSelectText() == mstEllipsis)
        shown = column->FitItems(shown, painter.fontMetrics(), area.width());
    if (wrap || !drawSearchMatch(painter, area, shown, alignment, column, selectedCell || multiSelected, fill, text))
        DrawCellText(painter, area, shown, alignment, wrap, &d_->textFit);

    if (state.Contains(gdFocused) && hasFocus() && d_->focusRect != frNone && !EditorMode()) {
        QPen pen(d_->focusRect == frGray || d_->focusRect == frMild ? pal.color(QPalette::Mid) : text, 1, Qt::DotLine);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect.adjusted(0, 0, -1, -1));
    }
}

bool TQCustomDBGrid::drawSearchMatch(QPainter &painter, const QRect &area, const QString &text,
                                     Qt::Alignment alignment, TQColumn *column, bool selected, const QColor &fill,
                                     const QColor &textColor)
{
    const TQDBGridSearch *search = d_->search;
    if (!search || !search->GetActive() || search->GetText().isEmpty() || !d_->drawingOptions.Contains(gdoHighlightText)
        || area.width() <= 0)
        return false;
    const TQSearchOptions options = search->GetOptions();
    if (options.Contains(soCurrentCol) && ColumnAt(Col()) != column)
        return false;
    // The match as it shows in the line drawn, ellipsis and all.
    const QFontMetrics fm = painter.fontMetrics();
    const QString shown = d_->textFit.Fit(fm, painter.font(), text, area.width());
    const int pos = SearchTextPos(search->GetText(), shown, options);
    if (pos <= 0)
        return false;
    const int width = fm.horizontalAdvance(shown);
    int x = area.left();
    if (alignment & Qt::AlignRight)
        x = area.right() + 1 - width;
    else if (alignment & Qt::AlignHCenter)
        x = area.left() + (area.width() - width) / 2;
    const QRect mark(x + fm.horizontalAdvance(shown.left(pos - 1)), area.top() + 1,
                     fm.horizontalAdvance(shown.mid(pos - 1, search->GetText().size())), area.height() - 2);
    // On a selected cell the marks turn its colours round.
    const QColor markFill = selected ? textColor : PaintColor(d_->selectionColor, DefaultSelectionColor());
    const QColor markText = selected ? fill : PaintColor(d_->highlightText, DefaultHighlightText());
    painter.fillRect(mark.intersected(area), markFill);
    DrawCellText(painter, area, text, alignment, false, &d_->textFit);
    painter.save();
    painter.setClipRect(mark.intersected(area), Qt::IntersectClip);
    painter.setPen(markText);
    DrawCellText(painter, area, text, alignment, false, &d_->textFit);
    painter.restore();
    return true;
}

bool TQCustomDBGrid::drawColumnImage(QPainter &painter, QRect &area, TQColumn *column, const QPixmap &image, bool rtl)
{
    const QSize size = image.deviceIndependentSize().toSize();
    const QRect inner = area.adjusted(column->GetImageMargin(), column->GetImageMargin(), -column->GetImageMargin(),
                                      -column->GetImageMargin());
    const QPoint offset(column->GetImageOffsetX(), column->GetImageOffsetY());
    const int y = inner.top() + (inner.height() - size.height()) / 2 + offset.y();
    switch (column->GetImageDraw()) {
    case idAlignment:
    case idOpposite: {
        // Beside the text: on the side the text keeps to, or on the other one.
        const bool rightSide = (column->GetAlignment() == taRightJustify) != rtl;
        const bool right = column->GetImageDraw() == idAlignment ? rightSide : !rightSide;
        const int x = right ? inner.right() - size.width() + 1 - offset.x() : inner.left() + offset.x();
        painter.drawPixmap(x, y, image);
        const int taken = size.width() + 2 * column->GetImageMargin() + 2;
        area = right ? area.adjusted(0, 0, -taken, 0) : area.adjusted(taken, 0, 0, 0);
        return true;
    }
    case idCenter:
        painter.drawPixmap(inner.left() + (inner.width() - size.width()) / 2 + offset.x(), y, image);
        return false;
    case idScaled: {
        const QSize fitted = size.scaled(inner.size(), Qt::KeepAspectRatio);
        painter.drawPixmap(QRect(inner.left() + (inner.width() - fitted.width()) / 2,
                                 inner.top() + (inner.height() - fitted.height()) / 2, fitted.width(), fitted.height()),
                           image);
        return false;
    }
    case idStretch:
        painter.drawPixmap(inner, image);
        return false;
    default: // the tiled kinds fill the cell with copies
        painter.drawTiledPixmap(inner, image, -offset);
        return false;
    }
}

int TQCustomDBGrid::CheckBoxState(TQColumn *column) const
{
    TField *f = column->GetField();
    if (!f)
        return -1;
    if (f->DataType() == ftBoolean)
        return f->IsNull() ? 2 : f->AsBoolean() ? 1 : 0;
    const QStringList values = column->GetCheckBoxValues().split(QLatin1Char(';'));
    if (values.size() != 2)
        return -1;
    const QString text = f->Text();
    return text == values[0] ? 1 : text == values[1] ? 0 : 2;
}

QString TQCustomDBGrid::TotalText(TQColumnTotalValue *total) const
{
    QString text = total->GetTotalText();
    if (OnTotalGetText)
        OnTotalGetText(total->Column(), TQDBGridTotals::IndexOf(total), text, tkText);
    return text;
}

TQColumnTotalValue *TQCustomDBGrid::TotalAt(TQColumn *column, int row) const
{
    int k = row - (RowCount() - d_->totalsCount) - 1;
    if (!column || k < 0)
        return nullptr;
    if (k < d_->headerRows)
        return column->GetTotalHeader();
    k -= d_->headerRows;
    if (k < d_->valueRows)
        return k < column->GetTotalValues()->Count() ? column->GetTotalValues()->Items(k) : nullptr;
    k -= d_->valueRows;
    if (k < d_->fieldRows)
        return column->GetTotalFields();
    k -= d_->fieldRows;
    return k < d_->footerRows ? column->GetTotalFooter() : nullptr;
}

void TQCustomDBGrid::drawTotalCell(QPainter &painter, int col, int row, const QRect &rect)
{
    const QColor fixed = FixedFaceColor();
    TQColumn *column = ColumnAt(col);
    TQColumnTotalValue *total = TotalAt(column, row);
    if (!total || !total->GetVisible()) {
        painter.fillRect(rect, fixed);
        return;
    }
    painter.fillRect(rect, total->GetColor());
    painter.setFont(total->GetFont());
    painter.setPen(palette().color(QPalette::ButtonText));
    const int margin = d_->style->TotalColMargin;
    const bool rtl = UseRightToLeftAlignmentForColumn(column);
    DrawCellText(painter, rect.adjusted(margin, 0, -margin, 0), TotalText(total),
                 HorizontalAlignment(total->GetAlignment(), rtl) | VerticalAlignment(total->GetVAlignment()), false);
}

} // namespace qdb
