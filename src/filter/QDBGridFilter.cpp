#include "QDBGridFilter.h"

#include "QDBFilterConsts.h"

#include "grid/QDBColumns.h"
#include "grid/QDBGrid.h"
#include "grid/QDBGridsOrderText.h"
#include "platform/rtl/Conversions.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/Strings.h"

namespace qdb {

TQDBGridFilterClauses AllFilterClauses()
{
    return TQDBGridFilterClauses::FromBits((std::uint64_t(1) << (int(fcIsNotEmpty) + 1)) - 1);
}

TQDBGridFilterPeriods DefaultFilterPeriods()
{
    return TQDBGridFilterPeriods::FromBits((std::uint64_t(1) << int(fpOthers)) - 1);
}

namespace {

int flag(bool on)
{
    return on ? 1 : 0;
}

} // namespace

TQDBGridFilter::TQDBGridFilter(TQCustomDBGrid *grid)
    : QObject(grid), grid_(grid), clauses_(AllFilterClauses()), periods_(DefaultFilterPeriods())
{
    RegisterSetType<TQDBGridFilterClause>();
    RegisterSetType<TQDBGridFilterOption>();
    RegisterSetType<TQDBGridFilterPeriod>();
}

TQDBGridFilter::~TQDBGridFilter() = default;

void TQDBGridFilter::SetAutoFilter(bool on)
{
    if (on == autoFilter_)
        return;
    autoFilter_ = on;
    if (grid_)
        grid_->InvalidateTitles();
}

void TQDBGridFilter::SetAutoFilters(TFilterStyles styles)
{
    if (styles == autoFilters_)
        return;
    autoFilters_ = styles;
    if (grid_)
        grid_->InvalidateTitles();
}

void TQDBGridFilter::SetAutoUpdate(bool on)
{
    if (on == autoUpdate_)
        return;
    autoUpdate_ = on;
    if (grid_)
        grid_->UpdateFilter();
}

void TQDBGridFilter::SetClauses(TQDBGridFilterClauses clauses)
{
    clauses_ = clauses;
}

bool TQDBGridFilter::IsClausesStored() const
{
    return clauses_ != AllFilterClauses();
}

void TQDBGridFilter::SetOptions(TQDBGridFilterOptions options)
{
    options_ = options;
}

void TQDBGridFilter::SetPeriods(TQDBGridFilterPeriods periods)
{
    periods_ = periods;
}

bool TQDBGridFilter::IsPeriodsStored() const
{
    return periods_ != DefaultFilterPeriods();
}

void TQDBGridFilter::SetFiltered(bool on)
{
    if (on == filtered_)
        return;
    filtered_ = on;
    UpdateColumns();
    UpdateFilterText();
    if (grid_) {
        grid_->UpdateFilter();
        grid_->InvalidateTitles();
    }
}

void TQDBGridFilter::UpdateColumns()
{
    columns_.clear();
    if (!filtered_ || !grid_)
        return;
    TQDBGridColumns *all = grid_->GetColumns();
    for (int i = 0; i < all->Count(); ++i)
        if (all->Items(i)->Filtered())
            columns_ << all->Items(i);
}

void TQDBGridFilter::UpdateFilterText()
{
    filterText_.clear();
    if (!filtered_)
        return;
    for (TQColumn *column : columns_) {
        if (!column)
            continue;
        const QString condition = column->GetFilterText();
        if (condition.isEmpty())
            continue;
        filterText_ = filterText_.isEmpty() ? QStringLiteral("(%1)").arg(condition)
                                            : QStringLiteral("%1 AND (%2)").arg(filterText_, condition);
    }
}

QString TQDBGridFilter::JoinFilter(bool joined, const QString &extra) const
{
    if (!joined)
        return filterText_;
    if (filterText_.isEmpty())
        return extra;
    if (extra.isEmpty())
        return filterText_;
    return QStringLiteral("(%1) AND %2").arg(extra, filterText_);
}

QString TQDBGridFilter::GetFullFilter() const
{
    return grid_ ? JoinFilter(grid_->GetFiltered(), grid_->GetFilter()) : filterText_;
}

void TQDBGridFilter::BeginFilterChange()
{
    ++changeLock_;
}

void TQDBGridFilter::EndFilterChange()
{
    --changeLock_;
    FilterChanged();
}

void TQDBGridFilter::CancelFilterChange()
{
    if (changeLock_ > 0)
        --changeLock_;
}

void TQDBGridFilter::FilterChanged()
{
    if (changeLock_ > 0)
        return;
    UpdateColumns();
    UpdateFilterText();
    if (grid_)
        grid_->FilterChanged();
}

void TQDBGridFilter::ClearAutoFilter(TFilterStyles styles)
{
    BeginFilterChange();
    bool cleared = false;
    try {
        for (TQColumn *column : QList<QPointer<TQColumn>>(columns_)) {
            if (!column)
                continue;
            TStrings *list = column->GetFilterList();
            if (styles.Contains(fsFilterList) && list->Count() > 0) {
                list->BeginUpdate();
                list->Clear();
                list->EndUpdate();
                cleared = true;
            }
            if (styles.Contains(fsFilterForm) && !column->GetFilterText().isEmpty()) {
                column->SetFilterText(QString());
                cleared = true;
            }
        }
    } catch (...) {
        CancelFilterChange();
        throw;
    }
    if (cleared)
        EndFilterChange();
    else
        CancelFilterChange();
}

void TQDBGridFilter::SwitchAutoFilters(TFilterStyles styles, bool on)
{
    SetAutoFilters(on ? autoFilters_ + styles : autoFilters_ - styles);
}

void TQDBGridFilter::SwitchClauses(TQDBGridFilterClauses clauses, bool on)
{
    SetClauses(on ? clauses_ + clauses : clauses_ - clauses);
}

void TQDBGridFilter::SwitchOptions(TQDBGridFilterOptions options, bool on)
{
    SetOptions(on ? options_ + options : options_ - options);
}

void TQDBGridFilter::SwitchPeriods(TQDBGridFilterPeriods periods, bool on)
{
    SetPeriods(on ? periods_ + periods : periods_ - periods);
}

// ---- settings ----
// A filter line: the field's name, the condition and the ticked values, each quoted where
// it holds the separator.

void TQDBGridFilter::GetSettings(TStrings &layout) const
{
    layout.Add(Format("AutoFilter=%d", {flag(autoFilter_)}));
    layout.Add(Format("Filtered=%d", {flag(filtered_)}));
    GetFilterLines(layout);
}

void TQDBGridFilter::GetFilterLines(TStrings &layout) const
{
    QList<TQColumn *> filtered;
    if (grid_) {
        TQDBGridColumns *all = grid_->GetColumns();
        for (int i = 0; i < all->Count(); ++i)
            if (all->Items(i)->Filtered())
                filtered << all->Items(i);
    }
    layout.Add(Format("Filters=%d", {int(filtered.size())}));
    int n = 0;
    for (TQColumn *column : filtered) {
        TStringList parts;
        parts.SetStrictDelimiter(true);
        parts.Add(column->GetFieldName());
        parts.Add(column->GetFilterText());
        parts.Add(column->GetFilterList()->CommaText());
        layout.Add(Format("Filter%d=%s", {++n, parts.CommaText()}));
    }
}

void TQDBGridFilter::SetSettings(const TStrings &layout)
{
    if (!layout.Values(QStringLiteral("AutoFilter")).isEmpty())
        SetAutoFilter(StrToIntDef(layout.Values(QStringLiteral("AutoFilter")), flag(autoFilter_)) == 1);
    std::optional<bool> filtered;
    if (!layout.Values(QStringLiteral("Filtered")).isEmpty())
        filtered = StrToIntDef(layout.Values(QStringLiteral("Filtered")), flag(filtered_)) == 1;
    SetFilterLines(layout, filtered);
}

void TQDBGridFilter::SetFilterLines(const TStrings &layout, std::optional<bool> filtered)
{
    const QString count = layout.Values(QStringLiteral("Filters"));
    if (!grid_ || count.isEmpty()) {
        if (filtered)
            SetFiltered(*filtered);
        return;
    }
    // Read whole before anything changes: a layout that does not read leaves the filters.
    struct Line
    {
        TQColumn *column;
        QString text;
        QStringList list;
    };
    QList<Line> lines;
    TQDBGridColumns *all = grid_->GetColumns();
    const int n = StrToIntDef(count, 0);
    for (int i = 1; i <= n; ++i) {
        TStringList parts;
        parts.SetStrictDelimiter(true);
        parts.SetCommaText(layout.Values(QStringLiteral("Filter%1").arg(i)));
        if (parts.Count() != 3)
            continue;
        TQColumn *column = nullptr;
        for (int c = 0; c < all->Count() && !column; ++c)
            if (all->Items(c)->GetFieldName().compare(parts[0], Qt::CaseInsensitive) == 0)
                column = all->Items(c);
        if (!column)
            continue;
        TStringList items;
        items.SetStrictDelimiter(true);
        items.SetCommaText(parts[2]);
        lines << Line{column, parts[1], items.ToStringList()};
    }
    const bool wasFiltered = filtered_;
    QList<Line> before;
    for (int c = 0; c < all->Count(); ++c)
        before << Line{all->Items(c), all->Items(c)->GetFilterText(), all->Items(c)->GetFilterList()->ToStringList()};
    auto put = [&](const QList<Line> &state) {
        BeginFilterChange();
        try {
            for (int c = 0; c < all->Count(); ++c) {
                all->Items(c)->GetFilterList()->Clear();
                all->Items(c)->SetFilterText(QString());
            }
            for (const Line &line : state) {
                line.column->SetFilterText(line.text);
                line.column->GetFilterList()->BeginUpdate();
                line.column->GetFilterList()->AddStrings(line.list);
                line.column->GetFilterList()->EndUpdate();
            }
        } catch (...) {
            CancelFilterChange();
            throw;
        }
        EndFilterChange();
    };
    try {
        if (filtered)
            filtered_ = *filtered;
        put(lines);
    } catch (...) {
        // A condition the data set refuses: the filters stay as they were.
        filtered_ = wasFiltered;
        try {
            put(before);
        } catch (...) {
        }
        grid_->InvalidateTitles();
        throw;
    }
    grid_->InvalidateTitles();
}

TStrings *TQDBGridFilter::GetSettings() const
{
    if (!settings_)
        settings_ = new TStringList(const_cast<TQDBGridFilter *>(this));
    settings_->Clear();
    GetSettings(*settings_);
    return settings_;
}

} // namespace qdb
