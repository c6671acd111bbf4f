#include "QDBColumnTotals.h"
#include "QDBColumns.h"
#include "QDBGrid.h"
#include "QDBGridTotals.h"

#include "platform/db/DataSet.h"
#include "platform/db/FieldSummary.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Conversions.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/FormatDateTime.h"

#include <QScopedValueRollback>

namespace qdb {

TQColumnTotalValue::TQColumnTotalValue(TCollection *collection) : TCollectionItem(collection) {}

TQColumnTotalValue::TQColumnTotalValue(TQColumn *column) : TCollectionItem(nullptr), column_(column)
{
    setParent(column);
}

TQColumnTotalFields::TQColumnTotalFields(TQColumn *column) : TQColumnTotalValue(column)
{
    totalResult_ = trDataField; // the column is still being made: nothing to tell it
}

TQColumn *TQColumnTotalValue::Column() const
{
    if (column_)
        return column_;
    auto *values = qobject_cast<TQColumnTotalValues *>(Collection());
    return values ? values->Column() : nullptr;
}

void TQColumnTotalValue::changed()
{
    if (Collection())
        Changed(false);
    else if (TQColumn *column = Column())
        column->LayoutChanged();
}

void TQColumnTotalValue::calcChanged()
{
    if (TQCustomDBGrid *grid = Grid())
        grid->Totals()->TotalsChanged();
}

TAlignment TQColumnTotalValue::GetAlignment() const
{
    if (alignmentAssigned_)
        return alignment_;
    TQColumn *column = Column();
    return column ? column->GetAlignment() : taLeftJustify;
}

void TQColumnTotalValue::SetAlignment(TAlignment value)
{
    alignmentAssigned_ = true;
    alignment_ = value;
    changed();
}

QColor TQColumnTotalValue::GetColor() const
{
    if (color_.isValid())
        return color_;
    TQColumn *column = Column();
    return column ? column->GetTitle()->GetColor() : QColor(Qt::lightGray);
}

void TQColumnTotalValue::SetColor(const QColor &value)
{
    color_ = value;
    changed();
}

QFont TQColumnTotalValue::GetFont() const
{
    if (fontAssigned_)
        return font_;
    TQColumn *column = Column();
    return column ? column->GetFont() : QFont();
}

void TQColumnTotalValue::SetFont(const QFont &value)
{
    font_ = value;
    fontAssigned_ = true;
    changed();
}

void TQColumnTotalValue::SetValue(const Variant &value)
{
    value_ = value;
    if (TQCustomDBGrid *grid = Grid())
        grid->InvalidateGrid(); // the text only: the rows keep their sizes
}

TQCustomDBGrid *TQColumnTotalValue::Grid() const
{
    TQColumn *column = Column();
    return column ? column->GetGrid() : nullptr;
}

TField *TQColumnTotalValue::GetField() const
{
    TQCustomDBGrid *grid = Grid();
    TDataSet *ds = grid ? grid->DataSet() : nullptr;
    return ds && !fieldName_.isEmpty() ? ds->FindField(fieldName_) : nullptr;
}

bool TQColumnTotalValue::DoCalcValue(TCalcPass pass)
{
    // Found at the reset: the record pass runs millions of times.
    if (pass == cpReset || !calcGrid_)
        calcGrid_ = Grid();
    TQCustomDBGrid *grid = calcGrid_;
    if (totalResult_ != trCalcValue) {
        if (pass == cpFinal && totalResult_ == trCaption && grid)
            grid->InvalidateGrid(); // the caption is drawn again with the new figures
        return false;
    }
    if (pass == cpCalcRec && calcApply_ != caBoth && grid
        && (calcApply_ == caSelectedRows) != grid->CalculatingSelectedRows())
        return false;
    switch (pass) {
    case cpReset: {
        calcField_ = GetField();
        calcFieldMissing_ = !fieldName_.isEmpty() && !calcField_;
        counter_ = 0;
        Variant start;
        if (grid && grid->OnTotalCalcValue)
            grid->OnTotalCalcValue(this, cpReset, start);
        value_ = start;
        break;
    }
    case cpCalcRec:
        if (calcFieldMissing_)
            return false; // a name of no field: the total shows nothing
        CalcRecord(calcField_ ? calcField_->Value() : Variant());
        break;
    case cpFinal: {
        Variant v = value_;
        if (calcValue_ == cvAvg)
            v = counter_ > 0 && v.IsNumeric() ? v / Variant(qint64(counter_)) : Variant();
        if (grid && grid->OnTotalCalcValue)
            grid->OnTotalCalcValue(this, cpFinal, v);
        SetValue(v);
        break;
    }
    }
    return true;
}

void TQColumnTotalValue::CalcRecord(Variant v)
{
    // Floats add up as currency: a sum of a million prices stays exact to the cent.
    if (v.Type() == VarType::Double)
        v = SummaryValue(v);
    TQCustomDBGrid *grid = calcGrid_ ? calcGrid_ : Grid();
    if (grid && grid->OnTotalCalcValue)
        grid->OnTotalCalcValue(this, cpCalcRec, v);
    if (v.IsNull()) {
        if (nullValue_ == nvExclude)
            return;
        if (nullValue_ == nvAsZero)
            v = 0;
    }
    ++counter_;
    switch (calcValue_) {
    case cvSum:
    case cvAvg:
        if (!v.IsNumeric())
            break;
        if (value_.IsClear())
            value_ = std::move(v);
        else
            value_ += v;
        break;
    case cvCount:
        if (value_.IsUnassigned())
            value_ = 1;
        else
            value_ += Variant(1);
        break;
    case cvMax:
        if (value_.IsUnassigned() || v > value_)
            value_ = v;
        break;
    case cvMin:
        if (value_.IsUnassigned() || v < value_)
            value_ = v;
        break;
    case cvFirst:
        if (counter_ == 1)
            value_ = v;
        break;
    case cvLast: value_ = v; break;
    case cvUnique:
        if (counter_ == 1)
            value_ = v;
        else if (v != value_)
            value_ = Variant::Null();
        break;
    case cvCustom: break;
    }
}

void TQColumnTotalValue::SetCalcState(const Variant &value, quint32 counted)
{
    value_ = value;
    counter_ = counted;
}

TQColumnTotalValue *TQColumnTotalValue::referredTotal() const
{
    TQCustomDBGrid *grid = Grid();
    TQColumn *column = grid && !fieldName_.isEmpty() ? grid->GetColumns()->FindColumn(fieldName_) : nullptr;
    // Numbered top to bottom from 0, the header.
    return TQDBGridTotals::SectionAt(column, totalRecNo_ - 1);
}

TField *TQColumnTotalValue::shownField() const
{
    TField *field = GetField();
    if (!field && fieldName_.isEmpty() && Column())
        field = Column()->GetField();
    return field;
}

QString TQColumnTotalValue::formatted(const Variant &value, const TField *field) const
{
    if (value.IsClear())
        return NullValueString();
    try {
        if (!format_.isEmpty()) {
            if (value.Type() == VarType::DateTime && !formatAsFloat_)
                return FormatDateTime(format_, value.ToDateTime());
            return Format(format_, {formatAsFloat_ ? Variant(value.ToDouble()) : value});
        }
        // A figure of the field's own kind looks like the field's values.
        if (field && !formatAsFloat_) {
            if (const auto *numeric = qobject_cast<const TNumericField *>(field);
                numeric && !numeric->DisplayFormat().isEmpty() && value.IsNumeric())
                return Format(numeric->DisplayFormat(), {value});
            if (const auto *date = qobject_cast<const TDateTimeField *>(field);
                date && !date->DisplayFormat().isEmpty() && value.Type() == VarType::DateTime)
                return FormatDateTime(date->DisplayFormat(), value.ToDateTime());
        }
    } catch (const Exception &) {
        // A format that does not fit the value: the plain text rather than an error in a paint.
    }
    if (formatAsFloat_ && value.IsNumeric())
        return FloatToStr(value.ToDouble());
    return value.ToString();
}

QString TQColumnTotalValue::GetTotalText() const
{
    switch (totalResult_) {
    case trNone: return {};
    case trCaption: return caption_;
    case trDataField: {
        TField *field = shownField();
        if (!field || !field->DataSet() || !field->DataSet()->Active() || field->DataSet()->IsEmpty())
            return NullValueString();
        return format_.isEmpty() && !formatAsFloat_ ? field->DisplayText() : formatted(field->Value(), field);
    }
    case trTotalField: {
        static int depth = 0; // totals that refer to each other in a circle end somewhere
        const TQColumnTotalValue *other = referredTotal();
        if (!other || other == this || depth > 8)
            return NullValueString();
        const QScopedValueRollback<int> deeper(depth, depth + 1);
        return format_.isEmpty() && !formatAsFloat_ ? other->GetTotalText() : formatted(other->Value(), other->GetField());
    }
    case trCalcValue:
        // A count is no value of the field.
        return formatted(value_, calcValue_ == cvCount ? nullptr : shownField());
    }
    return {};
}

QString TQColumnTotalValue::DisplayName() const
{
    QString name;
    if (TField *field = GetField())
        name = field->FieldName();
    else if (!fieldName_.isEmpty())
        name = fieldName_;
    else if (Column() && !Column()->GetFieldName().isEmpty())
        name = Column()->GetFieldName();
    else if (totalResult_ == trDataField && Column())
        name = QLatin1Char('(') + Column()->GetTitle()->GetCaption() + QLatin1Char(')');
    else
        name = QStringLiteral("<Unknown>");
    switch (totalResult_) {
    case trNone: return QStringLiteral("<None>");
    case trCaption:
        if (!caption_.isEmpty())
            return caption_;
        return value_.IsNull() ? QStringLiteral("<Null>") : QStringLiteral("<Empty>");
    case trDataField:
        return (fieldName_.isEmpty() ? QStringLiteral("ColumnData: ") : QStringLiteral("DataField: ")) + name;
    case trTotalField:
        if (fieldName_.isEmpty())
            return QStringLiteral("TotalField: <Unknown>");
        return QStringLiteral("TotalField: ") + name + QLatin1Char('[') + QString::number(totalRecNo_) + QLatin1Char(']');
    case trCalcValue: {
        static const char *const functions[] = {"Sum(", "Avg(", "Count(", "Max(", "Min(", "First(", "Last(", "Unique(", "Custom("};
        return QLatin1String(functions[calcValue_]) + name + QLatin1Char(')');
    }
    }
    return name;
}

TQColumnTotalValues::TQColumnTotalValues(TQColumn *column) : TCollectionOf<TQColumnTotalValue>(column) {}

TQColumn *TQColumnTotalValues::Column() const
{
    return static_cast<TQColumn *>(Owner());
}

void TQColumnTotalValues::Update(TCollectionItem *item)
{
    Column()->LayoutChanged(); // a value added or removed changes the number of bottom rows
    if (!item) // added or removed, not one of them changed
        if (TQCustomDBGrid *grid = Column()->GetGrid())
            grid->Totals()->TotalsChanged();
}

QString &NullValueString()
{
    static QString text;
    return text;
}

int &DelayInterval()
{
    static int interval = 200;
    return interval;
}

} // namespace qdb
