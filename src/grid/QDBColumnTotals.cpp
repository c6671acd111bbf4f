#include "QDBColumnTotals.h"
#include "QDBColumns.h"
#include "QDBGrid.h"

namespace qdb {

TQColumnTotalValue::TQColumnTotalValue(TCollection *collection) : TCollectionItem(collection) {}

TQColumnTotalValue::TQColumnTotalValue(TQColumn *column) : TCollectionItem(nullptr), column_(column)
{
    setParent(column);
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
    changed();
}

TQColumnTotalValues::TQColumnTotalValues(TQColumn *column) : TCollectionOf<TQColumnTotalValue>(column) {}

TQColumn *TQColumnTotalValues::Column() const
{
    return static_cast<TQColumn *>(Owner());
}

void TQColumnTotalValues::Update(TCollectionItem *)
{
    Column()->LayoutChanged(); // a value added or removed changes the number of bottom rows
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
