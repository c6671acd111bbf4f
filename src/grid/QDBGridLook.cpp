// The grid's look: fonts, line counts, colours with their computed defaults, drawing
// options and the image strips.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "editors/QDBEditor.h"

namespace qdb {

namespace {

template<typename T>
bool change(T &member, const T &value)
{
    if (member == value)
        return false;
    member = value;
    return true;
}

} // namespace

QFont TQCustomDBGrid::GetHeaderFont() const { return d_->headerFontAssigned ? d_->headerFont : d_->titleFont; }
int TQCustomDBGrid::GetLinesCount() const { return d_->linesCount; }
int TQCustomDBGrid::GetTitleLinesCount() const { return d_->titleLinesCount; }
int TQCustomDBGrid::GetHeaderLinesCount() const { return d_->headerLinesCount; }
int TQCustomDBGrid::GetStretchWidthMin() const { return d_->stretchWidthMin; }
int TQCustomDBGrid::GetStretchWidthMax() const { return d_->stretchWidthMax; }
TColor TQCustomDBGrid::GetColor() const { return d_->color; }
TColor TQCustomDBGrid::GetFixedColor() const { return d_->fixedColor; }
TColor TQCustomDBGrid::GetDataColLineColor() const { return d_->dataColLineColor; }
TColor TQCustomDBGrid::GetDataRowLineColor() const { return d_->dataRowLineColor; }
TColor TQCustomDBGrid::GetEditorColor() const { return d_->editorColor; }
TColor TQCustomDBGrid::GetHighlightText() const { return d_->highlightText; }
TColor TQCustomDBGrid::GetStripeColor() const { return d_->stripeColor; }
TColor TQCustomDBGrid::GetSelectionColor() const { return d_->selectionColor; }
TColor TQCustomDBGrid::GetSelectCellColor() const { return d_->selectCellColor; }
TColor TQCustomDBGrid::GetSelectRowColor() const { return d_->selectRowColor; }
TGridDrawingOptions TQCustomDBGrid::GetDrawingOptions() const { return d_->drawingOptions; }
void TQGridStyle::SetVisualStyle(TVisualStyle style)
{
    if (visualStyle_ == style)
        return;
    visualStyle_ = style;
    if (auto *grid = qobject_cast<TQCustomDBGrid *>(parent()))
        grid->InvalidateGrid();
}

TFixedStyle TQCustomDBGrid::GetFixedStyle() const { return d_->fixedStyle; }
TFocusRect TQCustomDBGrid::GetFocusRect() const { return d_->focusRect; }
TMarkerStyle TQCustomDBGrid::GetMarkerStyle() const { return d_->markerStyle; }
TMarkerTransparent TQCustomDBGrid::GetMarkerTransparent() const { return d_->markerTransparent; }
const TGridImageList &TQCustomDBGrid::Indicators() const { return d_->indicators; }
const TGridImageList &TQCustomDBGrid::Markers() const { return d_->markers; }
const TGridImageList &TQCustomDBGrid::CheckBoxes() const { return d_->checkBoxes; }
const TGridImageList &TQCustomDBGrid::ExpandBoxes() const { return d_->expandBoxes; }

int TQCustomDBGrid::GetIndicatorWidth() const
{
    return d_->indicatorWidth > 0 ? d_->indicatorWidth : d_->indicators.Size() + 4;
}

void TQCustomDBGrid::SetHeaderFont(const QFont &font)
{
    d_->headerFont = font;
    d_->headerFontAssigned = true;
    LayoutChanged();
}

void TQCustomDBGrid::SetLinesCount(int lines)
{
    lines = qMax(d_->linesCountMin, lines);
    if (d_->linesCountMax > 0)
        lines = qMin(lines, d_->linesCountMax);
    if (change(d_->linesCount, lines))
        LayoutChanged();
}

int TQCustomDBGrid::GetLinesCountMin() const { return d_->linesCountMin; }
int TQCustomDBGrid::GetLinesCountMax() const { return d_->linesCountMax; }

void TQCustomDBGrid::SetLinesCountMin(int lines)
{
    d_->linesCountMin = qMax(1, lines);
    if (d_->linesCountMax > 0 && d_->linesCountMax < d_->linesCountMin)
        d_->linesCountMax = d_->linesCountMin;
    SetLinesCount(d_->linesCount);
}

void TQCustomDBGrid::SetLinesCountMax(int lines)
{
    d_->linesCountMax = qMax(0, lines);
    if (d_->linesCountMax > 0 && d_->linesCountMin > d_->linesCountMax)
        d_->linesCountMin = d_->linesCountMax;
    SetLinesCount(d_->linesCount);
}

void TQCustomDBGrid::SetTitleLinesCount(int lines)
{
    if (change(d_->titleLinesCount, qMax(1, lines)))
        LayoutChanged();
}

void TQCustomDBGrid::SetHeaderLinesCount(int lines)
{
    if (change(d_->headerLinesCount, qMax(1, lines)))
        LayoutChanged();
}

void TQCustomDBGrid::SetIndicatorWidth(int width)
{
    if (change(d_->indicatorWidth, qMax(0, width)))
        LayoutChanged();
}

void TQCustomDBGrid::SetStretchWidthMin(int width)
{
    if (change(d_->stretchWidthMin, width))
        StretchGrid();
}

void TQCustomDBGrid::SetStretchWidthMax(int width)
{
    if (change(d_->stretchWidthMax, width))
        StretchGrid();
}

#define QDB_COLOR_SETTER(Name, member)                                                                             \
    void TQCustomDBGrid::Set##Name(TColor color)                                                                   \
    {                                                                                                              \
        if (change(d_->member, color))                                                                             \
            InvalidateGrid();                                                                                      \
    }
QDB_COLOR_SETTER(Color, color)
QDB_COLOR_SETTER(FixedColor, fixedColor)
QDB_COLOR_SETTER(DataColLineColor, dataColLineColor)
QDB_COLOR_SETTER(DataRowLineColor, dataRowLineColor)
QDB_COLOR_SETTER(EditorColor, editorColor)
QDB_COLOR_SETTER(HighlightText, highlightText)
QDB_COLOR_SETTER(StripeColor, stripeColor)
QDB_COLOR_SETTER(SelectionColor, selectionColor)
QDB_COLOR_SETTER(SelectCellColor, selectCellColor)
QDB_COLOR_SETTER(SelectRowColor, selectRowColor)
#undef QDB_COLOR_SETTER

void TQCustomDBGrid::SetDrawingOptions(TGridDrawingOptions options)
{
    if (change(d_->drawingOptions, options))
        InvalidateGrid();
}

void TQCustomDBGrid::SetFixedStyle(TFixedStyle style)
{
    if (change(d_->fixedStyle, style))
        InvalidateGrid();
}

void TQCustomDBGrid::SetFocusRect(TFocusRect style)
{
    if (change(d_->focusRect, style))
        InvalidateGrid();
}

void TQCustomDBGrid::SetMarkerStyle(TMarkerStyle style)
{
    if (change(d_->markerStyle, style))
        InvalidateGrid();
}

void TQCustomDBGrid::SetMarkerTransparent(TMarkerTransparent value)
{
    if (change(d_->markerTransparent, value))
        InvalidateGrid();
}

TImeMode TQCustomDBGrid::GetImeMode() const { return d_->imeMode; }
void TQCustomDBGrid::SetImeMode(TImeMode mode) { d_->imeMode = mode; }
QString TQCustomDBGrid::GetImeName() const { return d_->imeName; }
void TQCustomDBGrid::SetImeName(const QString &name) { d_->imeName = name; }

void TQCustomDBGrid::PrepareEditor(QWidget *editor)
{
    QPalette pal = palette();
    if (d_->drawingOptions.Contains(gdoEditorColor))
        pal.setColor(QPalette::Base, PaintColor(d_->editorColor, DefaultEditorColor()));
    editor->setPalette(pal);
    TQColumn *column = ColumnAt(Col());
    const TImeMode ime = column ? column->GetImeMode() : d_->imeMode;
    editor->setAttribute(Qt::WA_InputMethodEnabled, ime != imDisable && ime != imClose);
    if (auto *cellEditor = qobject_cast<TQDBGridEditor *>(editor))
        cellEditor->SetColumn(column);
}

QColor TQCustomDBGrid::PaintColor(TColor color, const QColor &computed) const
{
    const QColor own = ColorToQColor(color, palette());
    return own.isValid() ? own : computed;
}

QColor TQCustomDBGrid::CellColor() const { return PaintColor(d_->color, palette().color(QPalette::Base)); }
QColor TQCustomDBGrid::FixedFaceColor() const { return PaintColor(d_->fixedColor, palette().color(QPalette::Button)); }

QColor TQCustomDBGrid::DefaultDataLineColor() const
{
    // Silver lines vanish on a silver grid.
    return ColorToQColor(d_->color == clSilver ? clGray : clSilver);
}

QColor TQCustomDBGrid::DefaultEditorColor() const { return ColorToQColor(clInfoBk, palette()); }
QColor TQCustomDBGrid::DefaultHighlightText() const { return ColorToQColor(clHighlightText, palette()); }
QColor TQCustomDBGrid::DefaultStripeColor() const { return ColorToQColor(cl3DLight, palette()); }
QColor TQCustomDBGrid::DefaultSelectionColor() const { return ColorToQColor(clHighlight, palette()); }

QColor TQCustomDBGrid::DefaultSelectCellColor() const
{
    return GetShadowColor(ColorToQColor(clHighlight, palette()), -10);
}

QColor TQCustomDBGrid::DefaultSelectRowColor() const
{
    return GetShadowColor(ColorToQColor(clHighlight, palette()), 20);
}

} // namespace qdb
