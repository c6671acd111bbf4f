// The record pass of a calculation asked of the data set: what a walk over every record would
// leave in each total, from the figures a SQL data set gets with one aggregate query, and the
// selected rows read by key rather than gone to one by one.

#include "QDBGridPrivate.h"
#include "QDBGridTotals.h"

#include <QHash>

namespace qdb {

namespace {

TSummaryParts partsFor(TCalcValue calc, TNullValue nulls)
{
    switch (calc) {
    case cvSum:
    case cvAvg: return {spSum};
    case cvMax:
    case cvMin: return nulls == nvInclude ? TSummaryParts{spMinMax, spEnds} : TSummaryParts{spMinMax};
    case cvFirst:
    case cvLast: return nulls == nvExclude ? TSummaryParts{spValueEnds} : TSummaryParts{spEnds};
    case cvUnique: return nulls == nvAsZero ? TSummaryParts{spMinMax, spEnds} : TSummaryParts{spMinMax};
    default: return {};
    }
}

// The value and count a record pass over the records would leave, from their figures; false
// where the figures cannot tell (which comes first of a zero and a NULL counted as zero).
// A NULL counted as zero is the whole number 0, so that only numeric fields can say how it
// compares with the others.
bool passState(TCalcValue calc, TNullValue nulls, qint64 records, const TFieldSummary *f, bool numeric,
               Variant &value, quint32 &counted)
{
    const qint64 values = f ? f->Values : records; // without a field every record counts
    const qint64 nullCount = records - values;
    counted = quint32(nulls == nvExclude ? values : records);
    value = Variant();
    if (!f) { // no field: each record gives an unassigned value, which only a count counts
        if (calc == cvCount && counted > 0)
            value = qint64(counted);
        return true;
    }
    const bool zeros = nulls == nvAsZero && nullCount > 0;
    switch (calc) {
    case cvSum:
    case cvAvg:
        if (numeric && values > 0)
            value = f->Sum;
        else if (zeros)
            value = 0;
        return true;
    case cvCount:
        if (counted > 0)
            value = qint64(counted);
        return true;
    case cvMax:
    case cvMin: {
        if (records == 0 || (nulls == nvExclude && values == 0))
            return true;
        const Variant &extreme = calc == cvMax ? f->Max : f->Min;
        if (nulls == nvInclude && f->First.IsNull()) {
            value = Variant::Null(); // nothing compares with the NULL taken first
            return true;
        }
        if (!zeros) {
            value = extreme;
            return true;
        }
        if (!numeric)
            return false;
        if (values == 0) {
            value = 0;
            return true;
        }
        const Variant zero(0);
        if (extreme == zero && extreme.Type() != VarType::Integer)
            return false;
        value = (calc == cvMax ? extreme > zero : extreme < zero) ? extreme : zero;
        return true;
    }
    case cvFirst:
    case cvLast: {
        if (nulls == nvExclude) {
            value = calc == cvFirst ? f->FirstValue : f->LastValue;
            return true;
        }
        if (records == 0)
            return true;
        value = calc == cvFirst ? f->First : f->Last;
        if (nulls == nvAsZero && value.IsNull())
            value = 0;
        return true;
    }
    case cvUnique: {
        if (counted == 0)
            return true;
        if (nulls == nvInclude && nullCount > 0) {
            value = Variant::Null(); // a NULL and a value, or NULLs only: no common value
            return true;
        }
        if (!zeros) {
            value = f->Min == f->Max ? f->Min : Variant::Null();
            return true;
        }
        if (!numeric)
            return false;
        const Variant zero(0);
        if (values > 0 && !(f->Min == zero && f->Max == zero)) {
            value = Variant::Null();
            return true;
        }
        value = f->First.IsNull() ? zero : f->First; // the first record's value
        return true;
    }
    case cvCustom: return true;
    }
    return true;
}

bool numericField(const TField *field)
{
    const VarType t = field->ValueType();
    return t == VarType::Integer || t == VarType::Double || t == VarType::Currency;
}

} // namespace

bool TQDBGridTotals::calcFromDataSet(bool selected, bool selectedRecords)
{
    TDataSet *ds = grid_->DataSet();
    if (!ds || grid_->OnTotalCalcQuery || grid_->OnTotalCalcValue || (ds->Filtered() && ds->OnFilterRecord()))
        return false;

    // The sections the record pass would reach, and the records each takes.
    QList<TQColumnTotalValue *> overAll, overSelected;
    ForEach([&](TQColumnTotalValue *total, Section section, int) {
        if (!TakesPart(section, selected) || total->GetTotalResult() != trCalcValue)
            return;
        if (total->GetCalcApply() != caBoth && (total->GetCalcApply() == caSelectedRows) != selectedRecords)
            return;
        if (!total->GetFieldName().isEmpty() && !total->GetField())
            return; // a name of no field: no record reaches it
        const bool onlySelected = selectedRecords || (!selected && OverSelectedRows(section));
        (onlySelected ? overSelected : overAll) << total;
    });

    // The selected rows are read by key: the data set must be able to before anything moves.
    QList<TField *> readFields;
    for (TQColumnTotalValue *total : overSelected)
        if (TField *field = total->GetField(); field && !readFields.contains(field))
            readFields << field;
    if (!overSelected.isEmpty() && !ds->ReadRecords({}, readFields, [](const QList<Variant> &) {}))
        return false;

    if (!overAll.isEmpty()) {
        QList<TFieldSummaryRequest> requests;
        QHash<TField *, int> requestOf;
        for (TQColumnTotalValue *total : overAll) {
            TField *field = total->GetField();
            if (!field)
                continue;
            auto at = requestOf.find(field);
            if (at == requestOf.end()) {
                at = requestOf.insert(field, int(requests.size()));
                requests << TFieldSummaryRequest{field, {}};
            }
            requests[*at].Parts += partsFor(total->GetCalcValue(), total->GetNullValue());
        }
        TDataSetSummary summary;
        if (!ds->Summarize(requests, summary))
            return false;
        struct State
        {
            Variant value;
            quint32 counted;
        };
        QList<State> states;
        for (TQColumnTotalValue *total : overAll) {
            TField *field = total->GetField();
            State state;
            if (!passState(total->GetCalcValue(), total->GetNullValue(), summary.Records,
                           field ? &summary.Fields[requestOf.value(field)] : nullptr, field && numericField(field),
                           state.value, state.counted))
                return false;
            states << state;
        }
        for (qsizetype i = 0; i < overAll.size(); ++i)
            overAll[i]->SetCalcState(states[i].value, states[i].counted);
    }

    if (!overSelected.isEmpty()) {
        QList<int> fieldAt;
        for (TQColumnTotalValue *total : overSelected)
            fieldAt << int(readFields.indexOf(total->GetField()));
        QList<TBookmark> bookmarks;
        const TQBookmarkList &rows = grid_->SelectedRows();
        for (int i = 0; i < rows.Count(); ++i)
            bookmarks << rows.Items(i);
        ds->ReadRecords(bookmarks, readFields, [&](const QList<Variant> &values) {
            for (qsizetype i = 0; i < overSelected.size(); ++i)
                overSelected[i]->CalcRecord(fieldAt[i] >= 0 ? values[fieldAt[i]] : Variant());
        });
    }
    return true;
}

} // namespace qdb
