#pragma once

// The totals of a grid as one object: the sections of every column, whether any of them is
// calculated, and the requests for a calculation (the timer that delays one, the data link
// that asks for one after a change of the data).

#include "QDBColumnTotals.h"

#include "platform/db/DataSource.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <vector>

namespace qdb {

class TQColumn;
class TQCustomDBGrid;

// Asks the grid for a calculation when the records change, not when the cursor moves; has
// the sections that show the current record's values painted again as it moves.
class TQTotalDataLink : public TDataLink
{
public:
    explicit TQTotalDataLink(TQCustomDBGrid *grid) : grid_(grid) {}

protected:
    void ActiveChanged() override;
    void DataSetChanged() override;
    void DataSetScrolled(int distance) override;
    void RecordChanged(TField *field) override;

private:
    // Takes note of the data set's versions; true when they moved on.
    bool changed();
    TQCustomDBGrid *grid_;
    quint64 dataVersion_ = 0;
    quint64 orderVersion_ = 0;
};

class TQDBGridTotals : public QObject
{
    Q_OBJECT

public:
    // The three sections of a column, top to bottom.
    enum Section { Header, Values, Footer };

    explicit TQDBGridTotals(TQCustomDBGrid *grid);
    ~TQDBGridTotals() override;

    TQCustomDBGrid *Grid() const { return grid_; }
    TQTotalDataLink *DataLink() const { return link_.get(); }
    // Every column's sections, header first, then the values in order, then the footer.
    // `index` numbers them as OnTotalGetText does: -1 the header, the values from 0, the
    // footer after them.
    using SectionProc = std::function<void(TQColumnTotalValue *total, Section section, int index)>;
    void ForEach(const SectionProc &proc) const;
    // Whether any section shows a calculated value.
    bool HasCalcValues() const;
    // Whether any section shows the current record's values (a data field, another total).
    bool ShowsRecordValues() const;
    // A section takes part in a calculation when its row is shown (or dgCalcInvisibleRows),
    // and in a selected-rows calculation only when it is calculated over the selected rows.
    bool TakesPart(Section section, bool selected) const;
    // Whether the section's option has it calculated over the selected rows only.
    bool OverSelectedRows(Section section) const;
    // Whether any totals row is shown.
    bool RowsShown() const;
    // The section of a column by its index as ForEach numbers them; nullptr when none.
    static TQColumnTotalValue *SectionAt(TQColumn *column, int index);
    static int IndexOf(TQColumnTotalValue *total);

    // A section was added, removed or changed how it is calculated: the figures are
    // calculated again.
    void TotalsChanged();
    // The selected rows changed: a calculation over them is asked for.
    void SelectionChanged();

    // The delayed calculation: asked for, and whether one is waiting.
    void Delay(int milliseconds);
    bool Waiting() const { return timer_ != nullptr; }
    void StopWaiting();
    // How many calculations ran since the grid was made.
    int Calculations() const { return calculations_; }

private:
    friend class TQCustomDBGrid;
    // The record pass asked of the data set instead of walking it: an aggregate query over
    // the whole data set, the selected rows read by key. False when the data set cannot, or
    // an application handler must see each record; nothing has changed then.
    bool calcFromDataSet(bool selected, bool selectedRecords);

    TQCustomDBGrid *grid_;
    std::unique_ptr<TQTotalDataLink> link_;
    // The sections the calculation running goes through.
    struct Part
    {
        QPointer<TQColumnTotalValue> total;
        bool overSelected; // takes the selected rows only
    };
    std::vector<Part> parts_;
    bool partsSelected_ = false;
    QPointer<QTimer> timer_;
    int calculating_ = 0;
    bool selectedRecords_ = false; // the calculation running goes through the selected rows
    int calculations_ = 0;
};

} // namespace qdb
