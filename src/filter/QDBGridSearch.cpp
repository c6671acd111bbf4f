#include "QDBSearch.h"

#include "QDBGridFilter.h"
#include "QDBSearchPanel.h"

#include "grid/QDBColumns.h"
#include "grid/QDBGrid.h"
#include "platform/rtl/TextSearch.h"

namespace qdb {

int SearchTextPos(const QString &text, const QString &cellText, TQSearchOptions options)
{
    return TextSearchPos(text, cellText, options.Contains(soCaseSensitive), options.Contains(soWholeWords));
}

TQSearchMode ShiftStateToSearchMode(Qt::KeyboardModifiers shift)
{
    if (shift.testFlag(Qt::ControlModifier))
        return smFirst;
    if (shift.testFlag(Qt::ShiftModifier))
        return smPrev;
    if (shift.testFlag(Qt::AltModifier))
        return smLast;
    return smNext;
}

TQDBGridSearch::TQDBGridSearch(TQCustomDBGrid *grid) : QObject(grid), grid_(grid)
{
    RegisterSetType<TQSearchOption>();
}

TQDBGridSearch::~TQDBGridSearch() = default;

void TQDBGridSearch::refreshGrid()
{
    if (grid_)
        grid_->SearchChanged();
}

void TQDBGridSearch::SetActive(bool on)
{
    if (on == active_)
        return;
    active_ = on;
    refreshGrid();
}

void TQDBGridSearch::SetColor(TColor color)
{
    color_ = color;
    if (grid_)
        grid_->UpdateSearchPanel();
}

void TQDBGridSearch::SetIncremental(bool on)
{
    incremental_ = on;
}

void TQDBGridSearch::SetListWidth(int width)
{
    listWidth_ = width;
    if (grid_)
        grid_->UpdateSearchPanel();
}

void TQDBGridSearch::SetOptions(TQSearchOptions options)
{
    if (options == options_)
        return;
    const TQSearchOptions changed = (options - options_) + (options_ - options);
    options_ = options;
    const bool refilter = changed.Contains(soFilterRows)
        || (GetFilterActive() && !(changed * TQSearchOptions{soCaseSensitive, soWholeWords, soCurrentCol}).IsEmpty());
    if (refilter && grid_)
        grid_->GetFilterGrid()->FilterChanged();
    if ((active_ || incremental_) && !text_.isEmpty())
        refreshGrid();
    if (grid_)
        grid_->UpdateSearchPanel();
}

void TQDBGridSearch::SetPanelColor(TColor color)
{
    panelColor_ = color;
    if (grid_)
        grid_->UpdateSearchPanel();
}

void TQDBGridSearch::SetPanelOnTop(bool on)
{
    if (on == panelOnTop_)
        return;
    panelOnTop_ = on;
    if (grid_)
        grid_->UpdateSearchPanel();
}

bool TQDBGridSearch::GetPanelVisible() const
{
    return grid_ && grid_->SearchPanel() && !grid_->SearchPanel()->isHidden();
}

void TQDBGridSearch::SetPanelVisible(bool on)
{
    if (!grid_ || on == GetPanelVisible())
        return;
    if (on)
        grid_->ShowSearchPanel();
    else
        grid_->CloseSearchPanel();
}

void TQDBGridSearch::SetPermanent(bool on)
{
    permanent_ = on;
    if (grid_)
        grid_->UpdateSearchPanel();
}

void TQDBGridSearch::SetText(const QString &text)
{
    if (text == text_)
        return;
    text_ = text;
    if (options_.Contains(soFilterRows) && grid_)
        grid_->GetFilterGrid()->FilterChanged();
    if (active_)
        refreshGrid();
}

void TQDBGridSearch::SetVisibleOptions(TQSearchOptions options)
{
    visibleOptions_ = options - soSkipMessage;
    if (grid_)
        grid_->UpdateSearchPanel();
}

void TQDBGridSearch::SwitchOptions(TQSearchOptions options, bool on)
{
    SetOptions(on ? options_ + options : options_ - options);
}

void TQDBGridSearch::SwitchVisibleOptions(TQSearchOptions options, bool on)
{
    SetVisibleOptions(on ? visibleOptions_ + options : visibleOptions_ - options);
}

bool TQDBGridSearch::MatchesRecord() const
{
    if (!grid_)
        return true;
    const auto matches = [this](TQColumn *column) {
        return column && column->Showing() && SearchTextPos(text_, column->GetDisplayText(), options_) > 0;
    };
    if (options_.Contains(soCurrentCol))
        return matches(grid_->ColumnAt(grid_->Col()));
    TQDBGridColumns *columns = grid_->GetColumns();
    for (int i = 0; i < columns->Count(); ++i)
        if (matches(columns->Items(i)))
            return true;
    return false;
}

} // namespace qdb
