#pragma once

#include "QDBFilterTypes.h"

#include "grid/QDBColumns.h"
#include "grid/QDBGridTypes.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <optional>

namespace qdb {

class TQColumn;
class TQCustomDBGrid;
class TStrings;
class TStringList;

// The grid's auto filter, published as FilterGrid: which filters the user is offered, and
// the filtered columns whose conditions (FilterText) are joined into the data set's Filter
// and whose ticked values (FilterList) the grid's record handler checks.
class TQDBGridFilter : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool AutoFilter READ GetAutoFilter WRITE SetAutoFilter)
    Q_PROPERTY(qdb::TFilterStyles AutoFilters READ GetAutoFilters WRITE SetAutoFilters)
    Q_PROPERTY(bool AutoUpdate READ GetAutoUpdate WRITE SetAutoUpdate)
    Q_PROPERTY(qdb::TQDBGridFilterClauses Clauses READ GetClauses WRITE SetClauses)
    Q_PROPERTY(bool DecimalSeparator READ GetDecimalSeparator WRITE SetDecimalSeparator)
    Q_PROPERTY(int DropDownRows READ GetDropDownRows WRITE SetDropDownRows)
    Q_PROPERTY(int DropDownWidth READ GetDropDownWidth WRITE SetDropDownWidth)
    Q_PROPERTY(bool Filtered READ GetFiltered WRITE SetFiltered)
    Q_PROPERTY(QString FilterText READ GetFilterText STORED false)
    Q_PROPERTY(qdb::TQDBGridFilterOptions Options READ GetOptions WRITE SetOptions)
    Q_PROPERTY(qdb::TQDBGridFilterPeriods Periods READ GetPeriods WRITE SetPeriods)
    Q_PROPERTY(qdb::TStrings *Settings READ GetSettings STORED false)
    Q_CLASSINFO("default:AutoFilter", "false")
    Q_CLASSINFO("default:AutoFilters", "[fsFilterList,fsFilterForm]")
    Q_CLASSINFO("default:AutoUpdate", "true")
    Q_CLASSINFO("default:DecimalSeparator", "false")
    Q_CLASSINFO("default:DropDownRows", "0")
    Q_CLASSINFO("default:DropDownWidth", "0")
    Q_CLASSINFO("default:Filtered", "true")
    Q_CLASSINFO("default:Options", "[foAutoApplyList,foListAnimation,foListAlignment,foOverlayedList]")

public:
    explicit TQDBGridFilter(TQCustomDBGrid *grid);
    ~TQDBGridFilter() override;

    TQCustomDBGrid *Grid() const { return grid_; }

    bool GetAutoFilter() const { return autoFilter_; }
    void SetAutoFilter(bool on);
    TFilterStyles GetAutoFilters() const { return autoFilters_; }
    void SetAutoFilters(TFilterStyles styles);
    bool GetAutoUpdate() const { return autoUpdate_; }
    // Off: the grid keeps its columns' filters but takes its filter out of the data set.
    void SetAutoUpdate(bool on);
    TQDBGridFilterClauses GetClauses() const { return clauses_; }
    void SetClauses(TQDBGridFilterClauses clauses);
    Q_INVOKABLE bool IsClausesStored() const;
    // For data sets of no known dialect: write numbers with the locale's separator.
    bool GetDecimalSeparator() const { return decimalSeparator_; }
    void SetDecimalSeparator(bool on) { decimalSeparator_ = on; }
    int GetDropDownRows() const { return dropDownRows_; }
    void SetDropDownRows(int rows) { dropDownRows_ = rows; }
    int GetDropDownWidth() const { return dropDownWidth_; }
    void SetDropDownWidth(int width) { dropDownWidth_ = width; }
    bool GetFiltered() const { return filtered_; }
    void SetFiltered(bool on);
    // The joined conditions of the filtered columns.
    QString GetFilterText() const { return filterText_; }
    TQDBGridFilterOptions GetOptions() const { return options_; }
    void SetOptions(TQDBGridFilterOptions options);
    TQDBGridFilterPeriods GetPeriods() const { return periods_; }
    void SetPeriods(TQDBGridFilterPeriods periods);
    Q_INVOKABLE bool IsPeriodsStored() const;
    // The filters as name=value lines, made afresh on each read.
    TStrings *GetSettings() const;
    // Adds the filter's lines to a layout; applies those of a layout (columns matched by
    // field name; lines that do not read are passed over).
    void GetSettings(TStrings &layout) const;
    void SetSettings(const TStrings &layout);
    // The filtered columns' lines alone ("Filters" and "Filter1"...); applying them may
    // switch the filter on or off in the same change.
    void GetFilterLines(TStrings &layout) const;
    void SetFilterLines(const TStrings &layout, std::optional<bool> filtered = {});

    // The filtered columns in column order, as UpdateColumns found them.
    // A column deleted since reads as null.
    const QList<QPointer<TQColumn>> &FilterColumns() const { return columns_; }
    void UpdateColumns();
    void UpdateFilterText();
    QString JoinFilter(bool joined, const QString &extra) const;
    // The conditions joined to the application's own filter when that is in force.
    QString GetFullFilter() const;

    // Changes nest; the outermost end re-applies the filter once, a cancel does not.
    void BeginFilterChange();
    void EndFilterChange();
    void CancelFilterChange();
    bool FilterChanging() const { return changeLock_ > 0; }
    void FilterChanged();

    // Clears the ticked values (fsFilterList) and the conditions (fsFilterForm) of every
    // filtered column in one change.
    void ClearAutoFilter(TFilterStyles styles = {fsFilterList, fsFilterForm});
    void SwitchAutoFilters(TFilterStyles styles, bool on);
    void SwitchClauses(TQDBGridFilterClauses clauses, bool on);
    void SwitchOptions(TQDBGridFilterOptions options, bool on);
    void SwitchPeriods(TQDBGridFilterPeriods periods, bool on);

    // Whether the grid's own filter is in the data set now; only the grid switches it.
    bool Installed() const { return installed_; }
    void SetInstalled(bool on) { installed_ = on; }

private:
    void refresh();

    TQCustomDBGrid *grid_;
    bool autoFilter_ = false;
    TFilterStyles autoFilters_{fsFilterList, fsFilterForm};
    bool autoUpdate_ = true;
    TQDBGridFilterClauses clauses_;
    bool decimalSeparator_ = false;
    int dropDownRows_ = 0;
    int dropDownWidth_ = 0;
    bool filtered_ = true;
    QString filterText_;
    TQDBGridFilterOptions options_{foAutoApplyList, foListAnimation, foListAlignment, foOverlayedList};
    TQDBGridFilterPeriods periods_;
    mutable TStringList *settings_ = nullptr;
    QList<QPointer<TQColumn>> columns_;
    int changeLock_ = 0;
    bool installed_ = false;
};

} // namespace qdb
