// The grid's geometry: raw columns for the indicator and the columns, title rows per
// nesting depth, data rows, the bottom band of the blank row and the totals rows, and the
// stretching of the columns to the client width.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "platform/rtl/Conversions.h"

#include <QFontMetrics>

namespace qdb {

int TQCustomDBGrid::textHeight(const QFont &font) const
{
    return QFontMetrics(font).height();
}

void TQCustomDBGrid::loadImages()
{
    const int ppi = qRound(96 * devicePixelRatioF());
    if (ppi == d_->imagesPPI)
        return;
    d_->imagesPPI = ppi;
    d_->indicators = TGridImageList::Load(QStringLiteral("QDBINDICATORS"), ppi);
    d_->markers = TGridImageList::Load(QStringLiteral("QDBMARKERS"), ppi);
    d_->checkBoxes = TGridImageList::Load(QStringLiteral("QDBCHECKBOXES"), ppi);
    d_->expandBoxes = TGridImageList::Load(QStringLiteral("QDBEXPANDBOXES"), ppi);
}

const QList<TQColumn *> &TQCustomDBGrid::ShowingColumns() const { return d_->showing; }
int TQCustomDBGrid::GetFixedCols() const { return d_->fixedCols; }

void TQCustomDBGrid::SetFixedCols(int count)
{
    if (count == d_->fixedCols)
        return;
    d_->fixedCols = qMax(0, count);
    LayoutChanged();
}

void TQCustomDBGrid::clampFixedCols()
{
    const int count = d_->columns->Count();
    int fixed = qMin(d_->fixedCols, count - 1);
    if (fixed > 0) {
        // A fixed group never splits a parent from its children.
        TQColumn *top = d_->columns->Items(fixed - 1);
        while (TQColumn *p = top->GetParentColumn())
            top = p;
        int last = top->Index();
        for (int i = last + 1; i < count; ++i) {
            TQColumn *p = d_->columns->Items(i)->GetParentColumn();
            while (p && p != top)
                p = p->GetParentColumn();
            if (!p)
                break;
            last = i;
        }
        fixed = last + 1;
        if (fixed >= count) {
            // At least one column group scrolls.
            TQColumn *lastTop = d_->columns->Items(count - 1);
            while (TQColumn *p = lastTop->GetParentColumn())
                lastTop = p;
            fixed = lastTop->Index();
        }
    }
    d_->fixedCols = qMax(0, fixed);
}

void TQCustomDBGrid::InternalLayout()
{
    if (IsLoading())
        return;
    ++d_->layoutLock; // the columns' own change notices come back here
    loadImages();
    d_->link->ClearMapping();
    if (d_->link->Active()) {
        // The grid's own columns follow the fields: another table gets its own columns.
        if (d_->columns->State() == csDefault && !d_->columns->FitFields())
            d_->columns->RebuildColumns();
        DefineFieldMap();
    }
    d_->showing.clear();
    int depth = 0;
    for (TQColumn *c : *d_->columns)
        if (c->Showing()) {
            d_->showing.append(c);
            depth = qMax(depth, c->Depth());
        }
    const int offset = IndicatorOffset();
    SetColCount(d_->columns->Count() + offset);
    if (!d_->link->Active() && d_->columns->State() == csDefault) {
        TCustomGrid::SetFixedCols(offset);
    } else {
        for (int i = 0; i < d_->columns->Count(); ++i)
            SetColWidths(i + offset, d_->columns->Items(i)->GetWidth());
        clampFixedCols();
        TCustomGrid::SetFixedCols(qMin(offset + d_->fixedCols, ColCount()));
    }
    if (offset)
        SetColWidths(0, GetIndicatorWidth());
    TGridOptions options = Options();
    options.Switch(goVertLine, d_->options.Contains(dgColLines));
    options.Switch(goFixedVertLine, d_->options.Contains(dgColLines));
    options.Switch(goHorzLine, d_->options.Contains(dgRowLines));
    options.Switch(goFixedHorzLine, d_->options.Contains(dgRowLines));
    options.Switch(goColSizing, d_->options.Contains(dgColumnResize));
    options.Switch(goEditing, d_->options.Contains(dgEditing));
    options.Switch(goTabs, d_->options.Contains(dgTabs));
    options.Switch(goRowSelect, d_->options.Contains(dgRowSelect));
    TCustomGrid::SetOptions(options);
    d_->titleRows = 1 + depth;

    // The bottom band. Without the blank row the totals still get a filler row above them,
    // so that they stay at the bottom of the client area.
    const TQDBGridOptionsEx ex = d_->optionsEx;
    d_->blankRows = ex.Contains(dgBlankRow) ? 1 : 0;
    d_->headerRows = ex.Contains(dgTotalHeader) ? 1 : 0;
    d_->valueRows = 0;
    if (ex.Contains(dgTotalValues))
        for (TQColumn *c : *d_->columns)
            d_->valueRows = qMax(d_->valueRows, c->GetTotalValues()->Count());
    d_->fieldRows = TotalFieldRowCount();
    d_->footerRows = ex.Contains(dgTotalFooter) ? 1 : 0;
    const int totals = d_->headerRows + d_->valueRows + d_->fieldRows + d_->footerRows;
    d_->totalsCount = (totals > 0 ? 1 : d_->blankRows) + totals;

    const int lineHeight = textHeight(font());
    SetDefaultRowHeight(qMax(1, d_->linesCount * lineHeight + d_->style->DataRowSpace + rowLineWidth() - GridLineWidth()));
    d_->headerLineHeight = 0;
    if (d_->options.Contains(dgTitles) && d_->options.Contains(dgTitleHeaders))
        d_->headerLineHeight = d_->headerLinesCount * textHeight(GetHeaderFont()) + d_->style->HeaderRowSpace + rowLineWidth();
    d_->totalRowHeight = 0;
    if (d_->totalsCount > 1) {
        d_->totalRowHeight = lineHeight + d_->style->TotalRowSpace;
        for (TQColumn *c : std::as_const(d_->showing)) {
            d_->totalRowHeight = qMax(d_->totalRowHeight, textHeight(c->GetTotalHeader()->GetFont()) + d_->style->TotalRowSpace);
            for (TQColumnTotalValue *v : *c->GetTotalValues())
                d_->totalRowHeight = qMax(d_->totalRowHeight, textHeight(v->GetFont()) + d_->style->TotalRowSpace);
            d_->totalRowHeight = qMax(d_->totalRowHeight, textHeight(c->GetTotalFields()->GetFont()) + d_->style->TotalRowSpace);
            d_->totalRowHeight = qMax(d_->totalRowHeight, textHeight(c->GetTotalFooter()->GetFont()) + d_->style->TotalRowSpace);
        }
    }
    --d_->layoutLock;

    UpdateRowCount();
    layoutTitleRows();
    UpdateRowCount();
    if (ColumnAt(Col()) && !ColumnAt(Col())->Showing()) {
        for (int c = Col() + 1; c < ColCount(); ++c)
            if (ColumnAt(c) && ColumnAt(c)->Showing()) {
                SetCol(c);
                break;
            }
    }
    UpdateScrollBar();
    UpdateActive();
    UpdateRowCount();
    StretchGrid();
    InvalidateGrid();
}

void TQCustomDBGrid::layoutTitleRows()
{
    if (!d_->options.Contains(dgTitles))
        return;
    const int rows = d_->titleRows;
    const int captionDefault = d_->titleLinesCount * textHeight(d_->titleFont) + d_->style->TitleRowSpace;
    auto caption = [&](const TQColumn *c) {
        return d_->titleLinesCount * textHeight(c->GetTitle()->GetFont()) + d_->style->TitleRowSpace;
    };
    QList<int> heights(rows, 0);
    // The rows above the deepest hold the captions of expanded parents over their children.
    for (TQColumn *c : std::as_const(d_->showing))
        for (const TQColumn *p = c->GetParentColumn(); p; p = p->GetParentColumn())
            heights[p->Depth()] = qMax(heights[p->Depth()], caption(p));
    for (int r = 0; r + 1 < rows; ++r)
        if (heights[r] == 0)
            heights[r] = captionDefault;
    // A column's own cell reaches from its depth down to the last title row.
    for (TQColumn *c : std::as_const(d_->showing)) {
        int need = caption(c) + c->GetTitle()->OwnHeaderRowCount() * d_->headerLineHeight;
        for (int r = c->Depth(); r + 1 < rows; ++r)
            need -= heights[r] + rowLineWidth();
        heights[rows - 1] = qMax(heights[rows - 1], need);
    }
    if (heights[0] == 0)
        heights[0] = captionDefault;
    for (int r = 0; r < rows; ++r)
        SetRowHeights(r, qMax(1, heights[r] + rowLineWidth() - GridLineWidth()));
}

int TQCustomDBGrid::HeaderLineHeight() const { return d_->headerLineHeight; }

int TQCustomDBGrid::HeaderRow(int y, TQColumn *column) const
{
    if (!column || !d_->options.Contains(dgTitleHeaders) || d_->headerLineHeight <= 0)
        return -1;
    const int raw = DataToRawColumn(column->Index());
    const int top = RowAxis().Position(column->Depth());
    if (top < 0 || raw >= ColCount())
        return -1;
    const int dy = y - top;
    if (dy < 0 || dy >= column->GetTitle()->OwnHeaderRowCount() * d_->headerLineHeight)
        return -1;
    return dy / d_->headerLineHeight;
}

int TQCustomDBGrid::BottomRowCount() const { return d_->totalsCount; }

int TQCustomDBGrid::GetTotalRowCount() const
{
    return d_->headerRows + d_->valueRows + d_->fieldRows + d_->footerRows;
}

void TQCustomDBGrid::UpdateTotalFieldRows()
{
    if (TotalFieldRowCount() != d_->fieldRows)
        LayoutChanged();
}

int TQCustomDBGrid::TotalFieldRowCount() const
{
    const TDataLink *link = d_->totals->DataLink();
    return d_->optionsEx.Contains(dgTotalFields) && link->Active() ? link->RecordCount() : 0;
}

int TQCustomDBGrid::GetRowHeight() const
{
    return DefaultRowHeight() + GridLineWidth();
}

int TQCustomDBGrid::GetTitleHeight() const
{
    int h = 0;
    for (int r = 0; r < TitleOffset(); ++r)
        h += RowHeights(r) + GridLineWidth();
    return h;
}

int TQCustomDBGrid::GetTotalHeight() const
{
    return qMax(0, d_->totalsCount - 1) * (d_->totalRowHeight + rowLineWidth());
}

int TQCustomDBGrid::GetBlankHeight() const
{
    const int dataRows = qMax(0, RowCount() - TitleOffset() - d_->totalsCount);
    return viewport()->height() - GetTitleHeight() - GetTotalHeight() - dataRows * GetRowHeight();
}

void TQCustomDBGrid::layoutBottomRows()
{
    const int count = RowCount();
    const int totals = d_->totalsCount;
    for (int r = count - totals + 1; r < count; ++r)
        RowAxis().SetSize(r, qMax(1, d_->totalRowHeight + rowLineWidth() - GridLineWidth()));
    const int blank = count - totals;
    if (totals > 0 && blank >= FixedRows())
        RowAxis().SetSize(blank, qMax(0, GetBlankHeight() - GridLineWidth()));
}

namespace {

// A column the grid made keeps its width in whole characters: it gets the next one up
// rather than cut its widest text.
void fitToContent(TQColumn *column)
{
    const int want = column->OptimalWidth();
    column->SetWidth(want);
    if (column->GetWidth() < want)
        column->SetWidth(want + QFontMetrics(column->GetFont()).horizontalAdvance(QLatin1Char('0')));
}

} // namespace

void TQCustomDBGrid::FitColumn(int col)
{
    if (TQColumn *column = ColumnAt(col))
        fitToContent(column);
}

void TQCustomDBGrid::AdjustColumnsWidth()
{
    BeginLayout();
    for (TQColumn *c : std::as_const(d_->showing))
        fitToContent(c);
    EndLayout();
}

void TQCustomDBGrid::ScaleColumnsBy(int multiplier, int divisor)
{
    if (multiplier == divisor || multiplier <= 0 || divisor <= 0)
        return;
    const auto scaled = [&](int value) { return MulDiv(value, multiplier, divisor); };
    BeginLayout();
    for (TQColumn *c : *d_->columns) {
        // The bounds first: the width is then kept within the scaled ones.
        if (c->GetWidthMin() > 0)
            c->SetWidthMin(scaled(c->GetWidthMin()));
        if (c->GetWidthMax() > 0)
            c->SetWidthMax(scaled(c->GetWidthMax()));
        if (c->IsWidthStored())
            c->ScaleWidth(multiplier, divisor);
    }
    EndLayout();
}

// ---- stretching ----

bool TQCustomDBGrid::StretchActive() const { return d_->stretchMode; }
bool TQCustomDBGrid::Stretching() const { return d_->stretchRunning > 0; }
int TQCustomDBGrid::StretchBaseSum() const { return d_->stretchBaseSum; }
int TQCustomDBGrid::StretchWidthLeft() const { return d_->stretchWidthLeft; }

void TQCustomDBGrid::StretchGrid()
{
    if (!StretchActive() || Stretching() || d_->layoutLock > 0)
        return;
    ++d_->stretchRunning;
    ++d_->layoutLock; // the widths are applied below, not by a new layout
    d_->columns->BeginUpdate();
    const int line = GridLineWidth();
    qint64 A = viewport()->width() - IndicatorOffset() * (GetIndicatorWidth() + line);
    qint64 S = 0;
    struct Entry
    {
        TQColumn *column;
        qint64 base;
        int pin = -1;
        bool atMinimum = false;
    };
    QList<Entry> entries;
    for (TQColumn *c : std::as_const(d_->showing)) {
        A -= line;
        const qint64 base = qMax(0, c->GetWidthBase());
        S += base;
        entries.append({c, base});
    }
    if (S >= 1) {
        bool released = false;
        for (bool again = true; again && A > 0 && S > 0;) {
            again = false;
            const qint64 A0 = A, S0 = S;
            for (Entry &e : entries) {
                if (e.pin >= 0)
                    continue;
                const qint64 w = e.base * A0 / S0;
                const int min = e.column->GetWidthMin(), max = e.column->GetWidthMax();
                const int gridMin = d_->stretchWidthMin, gridMax = d_->stretchWidthMax;
                if (min >= 0 && w < min)
                    e.pin = min, e.atMinimum = true;
                else if (max >= 0 && w > max)
                    e.pin = max;
                else if (min < 0 && gridMin >= 0 && w < gridMin)
                    e.pin = gridMin, e.atMinimum = true;
                else if (max < 0 && gridMax >= 0 && w > gridMax)
                    e.pin = gridMax;
                else
                    continue;
                S -= e.base;
                A -= e.pin;
                again = true;
            }
            if (!released && S < 1 && A > 0) {
                // Room is left and every column is pinned: the ones held at a minimum may grow.
                released = true;
                for (Entry &e : entries)
                    if (e.pin >= 0 && e.atMinimum) {
                        S += e.base;
                        A += e.pin;
                        e.pin = -1;
                        e.atMinimum = false;
                        again = true;
                    }
            }
        }
        d_->stretchBaseSum = int(S);
        d_->stretchWidthLeft = int(A);
        for (Entry &e : entries) {
            int w;
            if (e.pin >= 0)
                w = e.pin;
            else if (A < 1)
                w = qMax(d_->stretchWidthMin, 0);
            else if (S < 1)
                w = 0;
            else {
                w = int(e.base * A / S);
                A -= w;
                S -= e.base;
            }
            e.column->SetStretchWidth(w);
        }
    }
    d_->columns->EndUpdate();
    bool changed = false;
    for (int i = 0; i < d_->columns->Count(); ++i) {
        const int raw = DataToRawColumn(i), w = d_->columns->Items(i)->GetWidth();
        if (ColWidths(raw) != w) {
            SetColWidths(raw, w);
            changed = true;
        }
    }
    --d_->layoutLock;
    --d_->stretchRunning;
    if (changed) {
        if (ColAxis().TotalExtent() <= viewport()->width() && FixedCols() < ColCount())
            SetLeftCol(FixedCols());
        InvalidateGrid();
    }
}

} // namespace qdb
